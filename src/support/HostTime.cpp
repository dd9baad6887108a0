#include "support/HostTime.h"

#include <chrono>

#include "platform/system/DateTime.h"

namespace tess {

Clock SystemClock() {
    return [] { return Now(); };
}

std::int64_t DateDiffSeconds(DateValue from, DateValue to) {
    using namespace std::chrono;
    const auto a = floor<seconds>(TimePointFromDate(from));
    const auto b = floor<seconds>(TimePointFromDate(to));
    return (b - a).count();
}

DateValue DateAddSeconds(DateValue date, std::int64_t seconds) {
    return DateFromTimePoint(TimePointFromDate(date) + std::chrono::seconds(seconds));
}

} // namespace tess
