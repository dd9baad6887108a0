#include "support/ReportTemplates.h"

#include <cmath>
#include <cstdint>

#include "frame/ErrorHandling.h"
#include "support/Format.h"
#include "support/HostTime.h"

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
