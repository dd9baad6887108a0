#pragma once
// Small helpers that dialogs and workers share: key filters of numeric text
// boxes, number text without trailing zeros, opening the manual, comparing
// spatial references.

#include <memory>
#include <string>

namespace tess {

class Control;
class IApplication;
class ISpatialReference;

//! Caret position meaning "behind the last character".
inline constexpr int kCaretAtEnd = -1;

//! KeyPress filter of a text box that takes a real number: digits, "-", "," and backspace pass;
//! "." passes only when the text with "." put in at the caret is numeric; every other key is
//! refused by setting keyCode to 0. The comma passes on purpose, whatever it does to the number.
//! \param caret characters ahead of the caret in textBox.Text; kCaretAtEnd for the end.
void CheckNumericReal(int& keyCode, const Control& textBox, int caret = kCaretAtEnd);
//! CheckNumericReal without the minus sign.
void CheckNumericRealPositive(int& keyCode, const Control& textBox, int caret = kCaretAtEnd);

//! The number with 15 decimals ("#,##0.000000000000000" with thousands separators, else
//! "0.000000000000000"), trailing zeros cut, then a trailing point: 2.5 gives "2.5", 3 gives "3".
std::string TrimZerosAndDecimals(double number, bool useThousands);

//! Opens the file in the desktop's default viewer; a missing file gets the "Missing File:"
//! message and nothing opens.
void OpenDoc(const std::string& path);

//! True when both are nothing, or both are set, equal as coordinate systems and of equal
//! XY precision.
bool CompareSpatialReferences(const std::shared_ptr<ISpatialReference>& first,
                              const std::shared_ptr<ISpatialReference>& second);

//! Makes the host's tool for selecting graphic elements the current tool, by running its item of
//! the document's command bars.
void EnableSelectTool(const std::shared_ptr<IApplication>& application);

} // namespace tess
