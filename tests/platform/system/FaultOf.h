#pragma once
// The number of the fault a call raises, 0 when it raises none: what the system tests compare.

#include <cstdint>
#include <functional>

#include "platform/system/Fault.h"

namespace tess {

inline std::int32_t FaultOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const Fault& fault) {
        return fault.Number();
    }
    return 0;
}

} // namespace tess
