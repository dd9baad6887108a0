#pragma once
// Small text helpers of the headless host.

#include <string>
#include <string_view>
#include <vector>

namespace tess::cli {

std::string Lower(std::string_view text);
bool EqualsNoCase(std::string_view a, std::string_view b);
//! The text without the given characters at either end.
std::string Trim(std::string_view text, std::string_view characters = " \t\r\n");
//! The text in double quotes, for messages that name a thing.
std::string Quoted(std::string_view text);
//! A caption as a menu shows it: "&&" is an "&", any other "&" only marks the access key.
std::string CaptionText(std::string_view caption);
//! Splits on any of the separators; empty pieces are dropped.
std::vector<std::string> SplitAny(std::string_view text, std::string_view separators);

} // namespace tess::cli
