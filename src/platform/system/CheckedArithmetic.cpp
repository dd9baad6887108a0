#include "platform/system/CheckedArithmetic.h"

#include "platform/system/Fault.h"

namespace tess {
namespace {
constexpr int kCheckedFlags = FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW;
}

FloatingPointCheck::FloatingPointCheck() noexcept : callerRaised_(std::fetestexcept(kCheckedFlags)) {
    if (callerRaised_ != 0) {
        std::fegetexceptflag(&saved_, kCheckedFlags);
        std::feclearexcept(kCheckedFlags);
    }
}

FloatingPointCheck::~FloatingPointCheck() {
    if (callerRaised_ != 0)
        std::fesetexceptflag(&saved_, kCheckedFlags);
    else if (std::fetestexcept(kCheckedFlags) != 0)
        std::feclearexcept(kCheckedFlags);
}

bool FloatingPointCheck::Clean() const noexcept { return std::fetestexcept(kCheckedFlags) == 0; }

void FloatingPointCheck::Check(const char* source) {
    const int raised = std::fetestexcept(kCheckedFlags);
    if (raised == 0)
        return;
    std::feclearexcept(kCheckedFlags);
    if (raised & FE_DIVBYZERO)
        throw Fault(fault::DivisionByZero, source, "Division by zero");
    if (raised & FE_OVERFLOW)
        throw Fault(fault::Overflow, source, "Overflow");
    throw Fault(fault::InvalidOperation, source, "Invalid procedure call or argument");
}

} // namespace tess
