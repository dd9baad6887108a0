#pragma once
// Time arithmetic of the host (DateDiff and DateAdd in seconds) and the
// injectable source of the present time that progress displays read, so that
// their arithmetic can be driven without waiting.

#include <cstdint>
#include <functional>

#include "platform/system/Variant.h" // DateValue

namespace tess {

//! The present local time, as the host's Now gives it.
using Clock = std::function<DateValue()>;

//! The system's clock (tess::Now).
Clock SystemClock();

//! Whole seconds from `from` to `to` (negative when `to` is earlier), as DateDiff("s") counts:
//! the second boundaries crossed between the two.
std::int64_t DateDiffSeconds(DateValue from, DateValue to);

//! The date `seconds` later (earlier when negative); an Overflow Fault outside the host's dates.
DateValue DateAddSeconds(DateValue date, std::int64_t seconds);

} // namespace tess
