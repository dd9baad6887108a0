#pragma once
// The rich-text frame that every tool's report is built from, its placeholder
// words, and the timing block that closes a report. A worker copies the pieces
// it needs, puts its values in with Replace and hands the text to the report
// dialog. Pieces are joined with kReportLineBreak; RTF ignores it.

#include <string>
#include <string_view>

#include "platform/system/Variant.h" // DateValue

namespace tess {

//! Line break between the pieces of a report and of the plain-text timing block.
inline constexpr std::string_view kReportLineBreak = "\r\n";

// The shared frame, in the order of a report.
inline constexpr std::string_view kReportHeader =
    R"({\rtf1\ansi\ansicpg1252\deff0\deflang1033{\fonttbl{\f0\fswiss\fprq2\fcharset0 Arial;}})";
inline constexpr std::string_view kReportTitleLine =
    R"({\*\generator Msftedit 5.41.15.1507;}\viewkind4\uc1\pard\qc\b\f0\fs17 zzzTitle\b0\fs17\par)";
inline constexpr std::string_view kReportCountLine = R"(   zzzNumRecs Records\par)";
inline constexpr std::string_view kReportComment = "zzzComment";
inline constexpr std::string_view kReportRule =
    R"(------------------------------------------------------------------------\par)";
inline constexpr std::string_view kReportOptionTitle = R"(\pard\b zzzOptionTitle\b0\par)";
inline constexpr std::string_view kReportOption = R"(   zzzOption\par)";
inline constexpr std::string_view kReportFieldHeading = R"(\b Attribute Fields:\b0\par)";
inline constexpr std::string_view kReportFields = "zzzFields";
inline constexpr std::string_view kReportOutputHeading = R"(\b Shapefile saved to:\b0\par)";
//! Three blanks go ahead of the path on the output line.
inline constexpr std::string_view kReportOutputIndent = "   ";
inline constexpr std::string_view kReportParagraphEnd = R"(\par)";
//! Closes the report's outermost group when no timing block follows.
inline constexpr std::string_view kReportEnd = "}";

// Lines of the conversion tools.
inline constexpr std::string_view kReportInputLayerLine = R"(  ** Input Feature Layer: zzzFClass\par)";
inline constexpr std::string_view kReportDoAllLine = R"(  ** zzzDoAll\par)";
inline constexpr std::string_view kReportNumRecsLine = R"(  ** zzzNumRecs\par)";
inline constexpr std::string_view kReportSpRefLine = R"(  ** zzzSpRef\par)";
inline constexpr std::string_view kReportFilenameLine = R"(  ** zzzFilename\par)";
inline constexpr std::string_view kReportFieldReport = "zzzFieldReport";
inline constexpr std::string_view kReportLabelReport = "zzzLabelReport";
inline constexpr std::string_view kReportProbReport = "zzzProbReport";
inline constexpr std::string_view kReportRunningProblems = "zzzRunningProblems";
inline constexpr std::string_view kReportFileWorkspace = "zzzFileWorkspace";

//! The timing block that ReturnTimeElapsedRTF fills; its lines are joined with kReportLineBreak.
inline constexpr std::string_view kTimingTemplateLines[] = {
    R"(\b\fszzzFontSizezzz Analysis Began:\b0\i    zzzTimeBeganzzz\par)",
    R"(\b\i0 Analysis Complete:\b0\i    zzzTimeEndzzz\par)",
    R"(\b\i0 Time Elapsed:\b0\i    zzzTimeElapsedzzz\par)",
};

//! The shared frame in report order, pieces joined with kReportLineBreak: header, title, count,
//! comment, rule, option title, option, field heading, fields, output heading and the output line
//! with zzzFilename for the path. No closing brace: the timing block or the worker's end adds it.
std::string ReportFrameTemplate();

//! Every occurrence of `find` replaced, left to right, case-sensitive; an empty `find` changes
//! nothing. The replacement text is not searched again.
std::string Replace(std::string_view text, std::string_view find, std::string_view replacement);

//! Text of the system (UTF-8: layer, field and class names, paths, the engine's messages) as it
//! goes into a report: "\\", "{" and "}" escaped, a line break as \line and a tab as \tab, other
//! control characters left out, characters of code page 1252 above ASCII as \'hh and every other
//! character as \uN? (N the signed 16-bit value, as RTF counts; two, a surrogate pair, above
//! U+FFFF). Bytes that are not UTF-8 are taken as code page 1252. The result is ASCII.
std::string RtfText(std::string_view text);

//! A finished report with every character above ASCII written as \'hh or \uN?, as RtfText writes
//! them, so that a reader that goes by the declared code page (1252) sees the right characters.
//! RTF's own syntax is ASCII, so only text changes; ASCII input comes back as it was.
std::string RtfWithCodePageEscapes(std::string_view rtf);

//! The elapsed time in words: days, hours, minutes and seconds from the largest unit that is not
//! 0 ("1 minute, 1 second...", "0 seconds..."), then the three lines "Analysis Began: ",
//! "Analysis Complete: " (long date, ";  ", long time) and "Time Elapsed: ".
std::string ReturnTimeElapsed(DateValue beginTime, DateValue endTime);

//! The timing block in RTF: dates written long date, " at ", long time; fontSize in points
//! (written as half-points).
std::string ReturnTimeElapsedRTF(DateValue beginTime, DateValue endTime, double fontSize);

} // namespace tess
