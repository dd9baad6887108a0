#pragma once
// What a worker's record loop calls besides the progress window itself: the
// status-bar text with the time left, and the poll that tells a stopped run.

#include <cstdint>
#include <memory>
#include <string>

#include "platform/system/Variant.h" // DateValue
#include "support/HostTime.h"

namespace tess {

class Form;
class IApplication;

//! The one-line status of a run for the host's status bar:
//! Prefix ".....[record #" Done " of " Total "  ---  " percent "%].....Est. Time Left = " h ":" mm ":" ss "...".
//! The estimate is Total x elapsed seconds in 32-bit integer arithmetic, divided by Done and
//! rounded. An overflow of that product, or Done 0, is a fault passed on to the calling loop.
std::string CalcTimeLeft(const std::string& Prefix, DateValue StartTime, std::int32_t Done, std::int32_t Total,
                         const Clock& clock = SystemClock());

//! The poll of a worker's loop: true when the user has stopped the run. Also hands the window's
//! "Close When Finished..." box and its details state to the extension, so that the next tool
//! opens its window the same way. On a stop the log gets the cancellation line and the elapsed
//! time, and a window that closes when finished is hidden. A form that is no progress window
//! gives false.
bool BailOutOfProgress(const std::shared_ptr<Form>& form, const std::shared_ptr<IApplication>& application);

} // namespace tess
