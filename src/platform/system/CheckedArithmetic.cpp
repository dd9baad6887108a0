#include "platform/system/CheckedArithmetic.h"

#include "platform/system/Fault.h"

#if defined(__x86_64__)
#include <xmmintrin.h>
#endif

namespace tess {
namespace {

constexpr int kCheckedFlags = FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW;

// Nesting depth of checks on this thread. Flags raised outside any check (by
// engines that leave them set) mean nothing to us: the outermost check simply
// clears them, and only a nested check keeps its caller's flags.
thread_local int tDepth = 0;

#if defined(__x86_64__)
// Reading and clearing the SSE control register and the x87 status word
// directly costs a few cycles; the <cfenv> calls save and reload the whole
// x87 environment each time. The flag bits have the same positions in both
// registers and in glibc's FE_* values.
int RaisedFlags() noexcept {
    unsigned short x87Status;
    __asm__ volatile("fnstsw %0" : "=am"(x87Status));
    return static_cast<int>((_mm_getcsr() | x87Status) & kCheckedFlags);
}
void ClearFlags() noexcept {
    _mm_setcsr(_mm_getcsr() & ~static_cast<unsigned>(kCheckedFlags));
    __asm__ volatile("fnclex");
}
static_assert(FE_INVALID == 0x01 && FE_DIVBYZERO == 0x04 && FE_OVERFLOW == 0x08,
              "the flag bits of the registers and of <cfenv> must agree");
#else
int RaisedFlags() noexcept { return std::fetestexcept(kCheckedFlags); }
void ClearFlags() noexcept { std::feclearexcept(kCheckedFlags); }
#endif

} // namespace

FloatingPointCheck::FloatingPointCheck() noexcept {
    const int raised = RaisedFlags();
    if (raised != 0) {
        if (tDepth > 0) {
            callerRaised_ = raised;
            std::fegetexceptflag(&saved_, kCheckedFlags);
        }
        ClearFlags();
    }
    ++tDepth;
}

FloatingPointCheck::~FloatingPointCheck() {
    --tDepth;
    if (callerRaised_ != 0)
        std::fesetexceptflag(&saved_, kCheckedFlags);
    else if (RaisedFlags() != 0)
        ClearFlags();
}

bool FloatingPointCheck::Clean() const noexcept { return RaisedFlags() == 0; }

void FloatingPointCheck::Check(const char* source) {
    const int raised = RaisedFlags();
    if (raised == 0)
        return;
    ClearFlags();
    if (raised & FE_DIVBYZERO)
        throw ArithmeticFault(fault::DivisionByZero, source, "Division by zero");
    if (raised & FE_OVERFLOW)
        throw ArithmeticFault(fault::Overflow, source, "Overflow");
    throw ArithmeticFault(fault::InvalidOperation, source, "Invalid procedure call or argument");
}

} // namespace tess
