#pragma once
// Renders the rich text of the reports to HTML (for the desktop host's report
// window and clipboard) and to plain text (for the terminal).
//
// The reports use a small subset of RTF: groups, the font table, paragraphs and
// their alignment, bold, italic, underline, font sizes, \tab, \line, escaped
// characters (\\ \{ \}), \'hh code-page characters and \uN characters. Anything
// else is read and ignored: unknown control words and destinations are skipped,
// unbalanced braces are tolerated, and no input makes the renderer fail.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tess {

//! A stretch of text with one character format.
struct RtfRun {
    std::string text; //!< UTF-8; "\n" where the text had \line, "\t" for \tab
    bool bold = false;
    bool italic = false;
    bool underline = false;
    int fontSize = 24;  //!< half-points, as \fs counts them (24 is 12 pt)
    int font = -1;      //!< number of the font table entry; -1 for the default font
};

enum class RtfAlignment { Left, Center, Right, Justify };

struct RtfParagraph {
    RtfAlignment alignment = RtfAlignment::Left;
    std::vector<RtfRun> runs;
    //! False for the text after the last \par, which no paragraph mark closed.
    bool closed = true;
};

struct RtfFont {
    int number = 0;
    std::string name;
};

struct RtfDocument {
    std::vector<RtfFont> fonts;
    int defaultFont = 0; //!< \deff
    std::vector<RtfParagraph> paragraphs;

    //! The font's name, or "" when the table has no such entry.
    std::string FontName(int number) const;
};

//! Reads RTF text into paragraphs and runs. Never throws for any input.
RtfDocument ParseRtf(std::string_view rtf);

//! The text of the report: one line per paragraph, each ending in "\n"; text after the last
//! paragraph mark follows without one.
std::string RtfToText(std::string_view rtf);

//! A complete HTML document (UTF-8): one <p> per paragraph with its alignment, blanks kept,
//! bold, italic and underline as <b>, <i>, <u>, font sizes in points.
std::string RtfToHtml(std::string_view rtf);

} // namespace tess
