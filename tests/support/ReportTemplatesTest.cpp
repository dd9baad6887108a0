#include "support/ReportTemplates.h"

#include <gtest/gtest.h>

#include <ostream>

#include "platform/system/DateTime.h"

namespace tess {
namespace {

constexpr double kSecondsPerDay = 86400.0;

struct ElapsedCase {
    int seconds;
    const char* words;
};

void PrintTo(const ElapsedCase& c, std::ostream* os) { *os << c.seconds << " s"; }

class ReturnTimeElapsedTest : public ::testing::TestWithParam<ElapsedCase> {};

TEST_P(ReturnTimeElapsedTest, WordsFromTheLargestUnitNotZero) {
    const ElapsedCase& c = GetParam();
    const DateValue begin = DateFromCalendar({2024, 3, 5, 10, 0, 0.0});
    const DateValue end{begin.days + c.seconds / kSecondsPerDay};
    const std::string text = ReturnTimeElapsed(begin, end);
    const std::string last = text.substr(text.rfind("\r\n") + 2);
    EXPECT_EQ(last, std::string("Time Elapsed: ") + c.words);
}

INSTANTIATE_TEST_SUITE_P(
    Durations, ReturnTimeElapsedTest,
    ::testing::Values(ElapsedCase{0, "0 seconds..."}, ElapsedCase{1, "1 second..."},
                      ElapsedCase{59, "59 seconds..."}, ElapsedCase{61, "1 minute, 1 second..."},
                      ElapsedCase{120, "2 minutes, 0 seconds..."},
                      ElapsedCase{3600, "1 hour, 0 minutes, 0 seconds..."},
                      ElapsedCase{7322, "2 hours, 2 minutes, 2 seconds..."},
                      ElapsedCase{86400, "1 day, 0 hours, 0 minutes, 0 seconds..."},
                      ElapsedCase{90061, "1 day, 1 hour, 1 minute, 1 second..."},
                      ElapsedCase{3 * 86400 + 59, "3 days, 0 hours, 0 minutes, 59 seconds..."}));

TEST(ReturnTimeElapsed, ThreeLinesWithLongDatesAndTimes) {
    const DateValue begin = DateFromCalendar({2024, 3, 5, 23, 59, 30.0});
    const DateValue end = DateFromCalendar({2024, 3, 6, 0, 1, 0.0});
    EXPECT_EQ(ReturnTimeElapsed(begin, end),
              "Analysis Began: Tuesday, March 05, 2024;  23:59:30\r\n"
              "Analysis Complete: Wednesday, March 06, 2024;  00:01:00\r\n"
              "Time Elapsed: 1 minute, 30 seconds...");
}

TEST(ReturnTimeElapsedRTF, FillsTheTimingTemplate) {
    const DateValue begin = DateFromCalendar({2024, 3, 5, 10, 0, 0.0});
    const DateValue end = DateFromCalendar({2024, 3, 5, 11, 0, 5.0});
    EXPECT_EQ(ReturnTimeElapsedRTF(begin, end, 8),
              "\\b\\fs16 Analysis Began:\\b0\\i    Tuesday, March 05, 2024 at 10:00:00\\par\r\n"
              "\\b\\i0 Analysis Complete:\\b0\\i    Tuesday, March 05, 2024 at 11:00:05\\par\r\n"
              "\\b\\i0 Time Elapsed:\\b0\\i    1 hour, 0 minutes, 5 seconds...\\par");
    EXPECT_NE(ReturnTimeElapsedRTF(begin, end, 8.5).find("\\fs17 "), std::string::npos);
}

TEST(Replace, AllOccurrencesLeftToRightCaseSensitive) {
    EXPECT_EQ(Replace("zzzA zzzA zzza", "zzzA", "x"), "x x zzza");
    EXPECT_EQ(Replace("aaa", "a", "aa"), "aaaaaa"); // the replacement is not searched again
    EXPECT_EQ(Replace("abc", "", "x"), "abc");
    EXPECT_EQ(Replace("zzzFieldReport zzzFields", "zzzFields", "F"), "zzzFieldReport F");
}

TEST(ReportFrameTemplate, PiecesInReportOrder) {
    const std::string frame = ReportFrameTemplate();
    std::size_t at = 0;
    for (std::string_view piece : {kReportHeader, kReportTitleLine, kReportCountLine, kReportComment, kReportRule,
                                   kReportOptionTitle, kReportOption, kReportFieldHeading, kReportFields,
                                   kReportOutputHeading}) {
        const std::size_t found = frame.find(piece, at);
        ASSERT_NE(found, std::string::npos) << piece;
        at = found + piece.size();
    }
    EXPECT_EQ(frame.substr(at), "\r\n   zzzFilename\\par");
}

} // namespace
} // namespace tess
