#include "support/ReportTemplates.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

#include "frame/ErrorHandling.h"
#include "support/Format.h"
#include "support/HostTime.h"
#include "support/TextCoding.h"

namespace tess {
namespace {

constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::int64_t kSecondsPerHour = 3600;
constexpr std::int64_t kSecondsPerMinute = 60;
constexpr double kHalfPointsPerPoint = 2.0;

std::string Counted(std::int64_t value, const char* one, const char* many) {
    return std::to_string(value) + (value == 1 ? one : many);
}

// Floor division, as the host's Int of a quotient.
std::int64_t IntOfQuotient(std::int64_t a, std::int64_t b) {
    return static_cast<std::int64_t>(std::floor(static_cast<double>(a) / static_cast<double>(b)));
}

std::string ElapsedWords(DateValue beginTime, DateValue endTime) {
    const std::int64_t total = DateDiffSeconds(beginTime, endTime);
    const std::int64_t days = IntOfQuotient(total, kSecondsPerDay);
    std::int64_t rest = total % kSecondsPerDay;
    const std::int64_t hours = IntOfQuotient(rest, kSecondsPerHour);
    rest %= kSecondsPerHour;
    const std::int64_t minutes = IntOfQuotient(rest, kSecondsPerMinute);
    const std::int64_t seconds = rest % kSecondsPerMinute;

    const std::string dayText = Counted(days, " day", " days");
    const std::string hourText = Counted(hours, " hour", " hours");
    const std::string minuteText = Counted(minutes, " minute", " minutes");
    const std::string secondText = Counted(seconds, " second...", " seconds...");
    if (days > 0)
        return dayText + ", " + hourText + ", " + minuteText + ", " + secondText;
    if (hours > 0)
        return hourText + ", " + minuteText + ", " + secondText;
    if (minutes > 0)
        return minuteText + ", " + secondText;
    return secondText;
}

constexpr char kHexDigits[] = "0123456789abcdef";
constexpr std::int32_t kUnicodeWrap = 65536; // \u takes signed 16-bit values
constexpr char32_t kLastAscii = 0x7E;        // 0x7F (delete) is a control character
constexpr char32_t kFirstAfterControls = 0xA0; // delete and the C1 controls come before it

//! One character above ASCII as RTF: \'hh where the code page has it, else \uN? (a pair above
//! U+FFFF); the "?" stands in for readers without Unicode and is skipped by the others (\uc1).
void AppendEscaped(std::string& out, char32_t c) {
    if (const int byte = coding::ToCp1252(c); byte >= 0) {
        out += "\\'";
        out += kHexDigits[byte >> 4];
        out += kHexDigits[byte & 0xF];
        return;
    }
    const auto unit = [&out](char32_t value) {
        const auto code = static_cast<std::int32_t>(value);
        const std::int32_t signedCode = code > std::numeric_limits<std::int16_t>::max() ? code - kUnicodeWrap : code;
        out += "\\u" + std::to_string(signedCode) + "?";
    };
    if (c >= coding::kFirstAstral) {
        const char32_t offset = c - coding::kFirstAstral;
        unit(coding::kHighSurrogateFirst + (offset >> 10));
        unit(coding::kLowSurrogateFirst + (offset & 0x3FF));
    } else {
        unit(c);
    }
}

//! Walks the text character by character: UTF-8 sequences, or single bytes of code page 1252.
template <class F>
void ForEachCharacter(std::string_view text, F&& visit) {
    for (std::size_t i = 0; i < text.size();) {
        char32_t c = 0;
        const std::size_t length = coding::DecodeUtf8(text, i, c);
        if (length == 0) {
            visit(coding::FromCp1252(static_cast<unsigned char>(text[i])));
            ++i;
        } else {
            visit(c);
            i += length;
        }
    }
}

std::string Joined(std::initializer_list<std::string_view> pieces) {
    std::string out;
    for (std::string_view piece : pieces) {
        if (!out.empty())
            out += kReportLineBreak;
        out += piece;
    }
    return out;
}

} // namespace

std::string ReportFrameTemplate() {
    const std::string outputLine =
        std::string(kReportOutputIndent) + "zzzFilename" + std::string(kReportParagraphEnd);
    return Joined({kReportHeader, kReportTitleLine, kReportCountLine, kReportComment, kReportRule, kReportOptionTitle,
                   kReportOption, kReportFieldHeading, kReportFields, kReportOutputHeading, outputLine});
}

std::string Replace(std::string_view text, std::string_view find, std::string_view replacement) {
    if (find.empty())
        return std::string(text);
    std::string out;
    std::size_t from = 0;
    for (std::size_t at = text.find(find); at != std::string_view::npos; at = text.find(find, from)) {
        out.append(text.substr(from, at - from));
        out.append(replacement);
        from = at + find.size();
    }
    out.append(text.substr(from));
    return out;
}

std::string RtfText(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    bool afterCarriageReturn = false;
    ForEachCharacter(text, [&](char32_t c) {
        const bool lineFeedOfPair = afterCarriageReturn && c == U'\n';
        afterCarriageReturn = c == U'\r';
        if (c == U'\\' || c == U'{' || c == U'}') {
            out += '\\';
            out += static_cast<char>(c);
        } else if (c == U'\r' || c == U'\n') {
            if (!lineFeedOfPair)
                out += "\\line ";
        } else if (c == U'\t') {
            out += "\\tab ";
        } else if (c >= U' ' && c <= kLastAscii) {
            out += static_cast<char>(c);
        } else if (c >= kFirstAfterControls) {
            AppendEscaped(out, c);
        }
        // Other control characters (C0, delete, C1) have nothing to show.
    });
    return out;
}

std::string RtfWithCodePageEscapes(std::string_view rtf) {
    std::string out;
    out.reserve(rtf.size());
    ForEachCharacter(rtf, [&out](char32_t c) {
        if (c < 0x80)
            out += static_cast<char>(c);
        else
            AppendEscaped(out, c);
    });
    return out;
}

std::string ReturnTimeElapsed(DateValue beginTime, DateValue endTime) {
    return Trapped("ReturnTimeElapsed ", std::string(), [&] {
        const std::string lineBreak(kReportLineBreak);
        return "Analysis Began: " + Format(beginTime, "long date") + ";  " + Format(beginTime, "long time") +
               lineBreak + "Analysis Complete: " + Format(endTime, "long date") + ";  " +
               Format(endTime, "long time") + lineBreak + "Time Elapsed: " + ElapsedWords(beginTime, endTime);
    });
}

std::string ReturnTimeElapsedRTF(DateValue beginTime, DateValue endTime, double fontSize) {
    return Trapped("ReturnTimeElapsedRTF ", std::string(), [&] {
        std::string text = Joined({kTimingTemplateLines[0], kTimingTemplateLines[1], kTimingTemplateLines[2]});
        text = Replace(text, "zzzFontSizezzz", Variant(fontSize * kHalfPointsPerPoint).ToString());
        text = Replace(text, "zzzTimeBeganzzz", Format(beginTime, "long date") + " at " + Format(beginTime, "long time"));
        text = Replace(text, "zzzTimeEndzzz", Format(endTime, "long date") + " at " + Format(endTime, "long time"));
        return Replace(text, "zzzTimeElapsedzzz", ElapsedWords(beginTime, endTime));
    });
}

} // namespace tess
