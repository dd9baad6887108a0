#pragma once
// Checked floating-point arithmetic. A computation runs inside a
// FloatingPointCheck; Check() turns the IEEE exception flags that it raised
// (invalid operation, division by zero, overflow) into a Fault, so that no
// infinity or NaN travels on. Underflow and inexact results are normal.
//
// This relies on the build keeping IEEE semantics: -ffp-contract=off and no
// fast-math (set for every target), so that operations are neither fused nor
// reordered nor assumed finite. Operands known at compile time may be folded
// without raising flags, and a result that is never used may be removed with
// its flags: check what the caller goes on to use.

#include <cfenv>
#include <type_traits>
#include <utility>

namespace tess {

//! RAII scope: clears the three flags on entry; a check nested in another restores the
//! outer check's flags on exit. No allocation; cheap enough to wrap every geodesic call:
//! flags left raised by code outside any check are cleared, not saved, and on x86-64 the
//! flags are read and cleared in the registers rather than through the whole environment.
class FloatingPointCheck {
public:
    FloatingPointCheck() noexcept;
    ~FloatingPointCheck();
    FloatingPointCheck(const FloatingPointCheck&) = delete;
    FloatingPointCheck& operator=(const FloatingPointCheck&) = delete;

    //! Throws the Fault of the first raised flag, in the order division by zero
    //! (fault::DivisionByZero), overflow (fault::Overflow), invalid operation
    //! (fault::InvalidOperation), with source as the Fault's source; then clears them.
    void Check(const char* source);
    //! True when none of the three flags is raised.
    bool Clean() const noexcept;

private:
    int callerRaised_ = 0;     //!< flags an enclosing check had raised; saved and restored only then
    std::fexcept_t saved_{};
};

//! Runs f inside a FloatingPointCheck and checks before returning f's result.
template <class F>
auto Checked(const char* source, F&& f) -> std::invoke_result_t<F> {
    FloatingPointCheck check;
    if constexpr (std::is_void_v<std::invoke_result_t<F>>) {
        std::forward<F>(f)();
        check.Check(source);
    } else {
        auto result = std::forward<F>(f)();
        check.Check(source);
        return result;
    }
}

} // namespace tess
