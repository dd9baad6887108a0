#include "platform/system/DateTime.h"

#include <gtest/gtest.h>

#include "platform/system/Fault.h"

namespace tess {
namespace {

struct DateCase {
    CalendarTime time;
    double days;
};

// Day numbers as the host counts them; the fraction is the time of day.
const DateCase kDates[] = {
    {{1899, 12, 30, 0, 0, 0.0}, 0.0},
    {{1900, 1, 1, 0, 0, 0.0}, 2.0},
    {{2000, 1, 1, 0, 0, 0.0}, 36526.0},
    {{2000, 1, 1, 18, 0, 0.0}, 36526.75},
    {{2024, 2, 29, 12, 0, 0.0}, 45351.5},
    // Before day zero the whole days count down but the time still counts up from midnight.
    {{1899, 12, 29, 6, 0, 0.0}, -1.25},
    {{1899, 12, 30, 6, 0, 0.0}, 0.25},
    {{100, 1, 1, 0, 0, 0.0}, kMinDateDays},
};

TEST(DateTime, CalendarToDayNumberAndBack) {
    for (const DateCase& c : kDates) {
        SCOPED_TRACE(c.days);
        // Quarter days are exact in binary; 1e-9 day (86 us) allows the seconds' division.
        EXPECT_NEAR(DateFromCalendar(c.time).days, c.days, 1e-9);
        const CalendarTime back = CalendarFromDate(DateValue{c.days});
        EXPECT_EQ(back.year, c.time.year);
        EXPECT_EQ(back.month, c.time.month);
        EXPECT_EQ(back.day, c.time.day);
        EXPECT_EQ(back.hour, c.time.hour);
        EXPECT_EQ(back.minute, c.time.minute);
    }
}

TEST(DateTime, TmRoundsToTheNearestSecondAcrossMidnight) {
    const double almostMidnight = 36526.0 + (86400.0 - 0.4) / 86400.0;
    const std::tm tm = TmFromDate(DateValue{almostMidnight});
    EXPECT_EQ(tm.tm_mday, 2);
    EXPECT_EQ(tm.tm_hour, 0);
    EXPECT_EQ(tm.tm_sec, 0);
    EXPECT_EQ(tm.tm_wday, 0); // 2000-01-02 was a Sunday
    EXPECT_EQ(DateFromTm(tm).days, 36527.0);
}

TEST(DateTime, TimePointsAreUtcInstants) {
    using namespace std::chrono;
    const auto instant = sys_days{year{1970} / January / 1} + hours{12};
    const DateValue d = DateFromTimePoint(instant);
    EXPECT_EQ(d.days, 25569.5);
    EXPECT_EQ(TimePointFromDate(d), instant);
}

TEST(DateTime, OutOfRangeAndImpossibleFields) {
    EXPECT_THROW(CalendarFromDate(DateValue{kMaxDateDays + 1.0}), Fault);
    EXPECT_THROW(DateFromCalendar({10000, 1, 1, 0, 0, 0.0}), Fault);
    try {
        DateFromCalendar({2023, 2, 29, 0, 0, 0.0});
        FAIL() << "2023-02-29 accepted";
    } catch (const Fault& f) {
        EXPECT_EQ(f.Number(), fault::InvalidCall);
    }
}

} // namespace
} // namespace tess
