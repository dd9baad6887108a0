#include "platform/system/DateTime.h"

#include <cmath>

#include "platform/system/Fault.h"

namespace tess {
namespace {

constexpr double kSecondsPerDay = 86400.0;
constexpr double kMillisecondsPerDay = 86400000.0;
constexpr std::int64_t kMillisecondsPerDayInt = 86400000;
constexpr std::int64_t kMillisecondsPerSecond = 1000;
constexpr int kSecondsPerMinute = 60;
constexpr int kMinutesPerHour = 60;
constexpr int kTmYearBase = 1900;

// Day zero of the host's dates.
constexpr std::chrono::sys_days kEpoch = std::chrono::year{1899} / std::chrono::December / 30;

const char* const kSource = "tess.DateTime";

// The host's dates count whole days with a sign, but the time of day is
// always added away from zero: -1.25 is 1899-12-29 06:00. Split into a
// calendar day index and milliseconds into that day.
void Split(double value, std::int64_t& dayIndex, std::int64_t& milliseconds) {
    const double whole = std::trunc(value);
    const double fraction = std::fabs(value - whole);
    dayIndex = static_cast<std::int64_t>(whole);
    milliseconds = static_cast<std::int64_t>(std::llround(fraction * kMillisecondsPerDay));
    if (milliseconds >= kMillisecondsPerDayInt) {
        milliseconds -= kMillisecondsPerDayInt;
        dayIndex += 1;
    }
}

double Join(std::int64_t dayIndex, double dayFraction) {
    const double days = static_cast<double>(dayIndex);
    return dayIndex < 0 ? days - dayFraction : days + dayFraction;
}

void CheckRange(double days) {
    if (!(days >= kMinDateDays && days <= kMaxDateDays))
        throw Fault(fault::Overflow, kSource, "Overflow");
}

} // namespace

DateValue DateFromCalendar(const CalendarTime& time) {
    using namespace std::chrono;
    const year_month_day ymd{year{time.year}, month{static_cast<unsigned>(time.month)},
                             day{static_cast<unsigned>(time.day)}};
    if (time.month < 1 || time.day < 1 || !ymd.ok() || time.hour < 0 || time.minute < 0 || time.second < 0.0)
        throw Fault(fault::InvalidCall, kSource, "Invalid procedure call or argument");
    const std::int64_t dayIndex = (sys_days{ymd} - kEpoch).count();
    const double seconds =
        (static_cast<double>(time.hour) * kMinutesPerHour + time.minute) * kSecondsPerMinute + time.second;
    const double result = Join(dayIndex, seconds / kSecondsPerDay);
    CheckRange(result);
    return DateValue{result};
}

CalendarTime CalendarFromDate(DateValue date) {
    using namespace std::chrono;
    CheckRange(date.days);
    std::int64_t dayIndex = 0;
    std::int64_t ms = 0;
    Split(date.days, dayIndex, ms);
    const year_month_day ymd{kEpoch + days{dayIndex}};
    CalendarTime out;
    out.year = static_cast<int>(ymd.year());
    out.month = static_cast<int>(static_cast<unsigned>(ymd.month()));
    out.day = static_cast<int>(static_cast<unsigned>(ymd.day()));
    const std::int64_t totalSeconds = ms / kMillisecondsPerSecond;
    out.hour = static_cast<int>(totalSeconds / (kSecondsPerMinute * kMinutesPerHour));
    out.minute = static_cast<int>(totalSeconds / kSecondsPerMinute % kMinutesPerHour);
    out.second = static_cast<double>(totalSeconds % kSecondsPerMinute) +
                 static_cast<double>(ms % kMillisecondsPerSecond) / kMillisecondsPerSecond;
    return out;
}

std::tm TmFromDate(DateValue date) {
    using namespace std::chrono;
    CheckRange(date.days);
    std::int64_t dayIndex = 0;
    std::int64_t ms = 0;
    Split(date.days, dayIndex, ms);
    std::int64_t seconds = (ms + kMillisecondsPerSecond / 2) / kMillisecondsPerSecond;
    if (seconds >= static_cast<std::int64_t>(kSecondsPerDay)) {
        seconds -= static_cast<std::int64_t>(kSecondsPerDay);
        dayIndex += 1;
    }
    const sys_days day = kEpoch + days{dayIndex};
    const year_month_day ymd{day};
    std::tm out{};
    out.tm_year = static_cast<int>(ymd.year()) - kTmYearBase;
    out.tm_mon = static_cast<int>(static_cast<unsigned>(ymd.month())) - 1;
    out.tm_mday = static_cast<int>(static_cast<unsigned>(ymd.day()));
    out.tm_hour = static_cast<int>(seconds / (kSecondsPerMinute * kMinutesPerHour));
    out.tm_min = static_cast<int>(seconds / kSecondsPerMinute % kMinutesPerHour);
    out.tm_sec = static_cast<int>(seconds % kSecondsPerMinute);
    out.tm_wday = static_cast<int>(weekday{day}.c_encoding());
    out.tm_yday = static_cast<int>((day - sys_days{ymd.year() / January / 1}).count());
    out.tm_isdst = -1;
    return out;
}

DateValue DateFromTm(const std::tm& time) {
    CalendarTime c;
    c.year = time.tm_year + kTmYearBase;
    c.month = time.tm_mon + 1;
    c.day = time.tm_mday;
    c.hour = time.tm_hour;
    c.minute = time.tm_min;
    c.second = time.tm_sec;
    return DateFromCalendar(c);
}

DateValue DateFromTimePoint(std::chrono::system_clock::time_point instant) {
    using namespace std::chrono;
    const auto ms = duration_cast<milliseconds>(instant - time_point_cast<milliseconds>(sys_days{kEpoch}));
    const std::int64_t count = ms.count();
    std::int64_t dayIndex = count / kMillisecondsPerDayInt;
    std::int64_t rest = count % kMillisecondsPerDayInt;
    if (rest < 0) {
        rest += kMillisecondsPerDayInt;
        dayIndex -= 1;
    }
    const double result = Join(dayIndex, static_cast<double>(rest) / kMillisecondsPerDay);
    CheckRange(result);
    return DateValue{result};
}

std::chrono::system_clock::time_point TimePointFromDate(DateValue date) {
    using namespace std::chrono;
    CheckRange(date.days);
    std::int64_t dayIndex = 0;
    std::int64_t ms = 0;
    Split(date.days, dayIndex, ms);
    return time_point_cast<system_clock::duration>(sys_days{kEpoch} + days{dayIndex} + milliseconds{ms});
}

DateValue Now() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return DateFromTm(local);
}

} // namespace tess
