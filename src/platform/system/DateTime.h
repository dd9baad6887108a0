#pragma once
// Conversions between the host's date numbers (days since 1899-12-30, the
// fraction being the time of day) and calendar time.

#include <chrono>
#include <ctime>

#include "platform/system/Variant.h"

namespace tess {

//! Calendar fields of a date; month 1-12, day 1-31, second may carry a fraction.
struct CalendarTime {
    int year = 1899;
    int month = 12;
    int day = 30;
    int hour = 0;
    int minute = 0;
    double second = 0.0;
};

//! Earliest and latest dates the host accepts: 100-01-01 and 9999-12-31 23:59:59.
inline constexpr double kMinDateDays = -657434.0;
inline constexpr double kMaxDateDays = 2958465.999988426;

//! Overflow Fault outside 100-01-01 .. 9999-12-31; InvalidCall Fault for impossible fields (month 13).
DateValue DateFromCalendar(const CalendarTime& time);
//! Fields of a date; the time is rounded to the nearest millisecond.
CalendarTime CalendarFromDate(DateValue date);

//! std::tm views, for strftime. Seconds are rounded to the nearest whole second.
std::tm TmFromDate(DateValue date);
DateValue DateFromTm(const std::tm& time);

//! UTC instants, treating the date as UTC.
DateValue DateFromTimePoint(std::chrono::system_clock::time_point instant);
std::chrono::system_clock::time_point TimePointFromDate(DateValue date);

//! The local date and time now, as the host's Now.
DateValue Now();

} // namespace tess
