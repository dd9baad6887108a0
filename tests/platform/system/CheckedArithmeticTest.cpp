#include "platform/system/CheckedArithmetic.h"

#include <gtest/gtest.h>

#include <cfenv>
#include <cmath>
#include <functional>

#include "platform/system/Fault.h"
#include "FaultOf.h"

namespace tess {
namespace {

// Operands through volatile so that the compiler cannot fold the operations away.
double Value(double x) {
    volatile double v = x;
    return v;
}

// Results go to a volatile sink: a result nobody uses may be optimised away with its flags.
volatile double sink = 0.0;

TEST(CheckedArithmetic, EachRaisedFlagGivesItsFault) {
    struct Case {
        const char* what;
        std::function<double()> compute;
        std::int32_t fault;
    };
    const Case cases[] = {
        {"1/0", [] { return Value(1.0) / Value(0.0); }, fault::DivisionByZero},
        {"sqrt(-1)", [] { return std::sqrt(Value(-1.0)); }, fault::InvalidOperation},
        {"0/0", [] { return Value(0.0) / Value(0.0); }, fault::InvalidOperation},
        {"1e308*10", [] { return Value(1e308) * Value(10.0); }, fault::Overflow},
        {"log(0)", [] { return std::log(Value(0.0)); }, fault::DivisionByZero},
        {"acos(2)", [] { return std::acos(Value(2.0)); }, fault::InvalidOperation},
        // Underflow to a subnormal or to zero and inexact results are ordinary.
        {"1e-308/1e10", [] { return Value(1e-308) / Value(1e10); }, 0},
        {"1e-308*1e-308", [] { return Value(1e-308) * Value(1e-308); }, 0},
        {"1/3", [] { return Value(1.0) / Value(3.0); }, 0},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(FaultOf([&] { sink = Checked("Test", c.compute); }), c.fault) << c.what;
    }
}

TEST(CheckedArithmetic, FaultCarriesTheSourceAndTellsItselfFromABadArgument) {
    try {
        sink = Checked("MyGeometricOperations.Vincenty", [] { return Value(1.0) / Value(0.0); });
        FAIL();
    } catch (const Fault& f) {
        EXPECT_EQ(f.Source(), "MyGeometricOperations.Vincenty");
        EXPECT_EQ(f.Description(), "Division by zero");
    }
    // A NaN and a bad argument share the host's number 5; the type tells them apart.
    static_assert(fault::InvalidOperation == fault::InvalidCall);
    bool arithmetic = false;
    try {
        sink = Checked("Test", [] { return std::sqrt(Value(-1.0)); });
    } catch (const ArithmeticFault&) {
        arithmetic = true;
    } catch (const Fault&) {
    }
    EXPECT_TRUE(arithmetic);
}

TEST(CheckedArithmetic, CauseComesBeforeConsequence) {
    // inf - inf after a division by zero raises invalid too; the division is what is reported.
    EXPECT_EQ(FaultOf([] {
                  sink = Checked("Test", [] {
                      const double inf = Value(1.0) / Value(0.0);
                      return inf - inf;
                  });
              }),
              fault::DivisionByZero);
}

TEST(CheckedArithmetic, OutermostScopeDiscardsFlagsLeftByUncheckedCode) {
    std::feclearexcept(FE_ALL_EXCEPT);
    sink = Value(1.0) / Value(0.0); // unchecked code (an engine) leaves a flag raised
    ASSERT_TRUE(std::fetestexcept(FE_DIVBYZERO));
    {
        FloatingPointCheck check;
        EXPECT_TRUE(check.Clean());
        sink = std::sqrt(Value(-1.0));
        EXPECT_FALSE(check.Clean());
        EXPECT_THROW(check.Check("Test"), Fault);
        EXPECT_TRUE(check.Clean());
    }
    EXPECT_FALSE(std::fetestexcept(FE_DIVBYZERO | FE_INVALID));
}

TEST(CheckedArithmetic, NestedScopeKeepsTheEnclosingChecksFlags) {
    std::feclearexcept(FE_ALL_EXCEPT);
    FloatingPointCheck outer;
    sink = Value(1.0) / Value(0.0); // raised inside the outer check, not yet checked
    {
        FloatingPointCheck inner;
        EXPECT_TRUE(inner.Clean());
        sink = std::sqrt(Value(-1.0));
        EXPECT_THROW(inner.Check("Inner"), Fault);
    }
    EXPECT_TRUE(std::fetestexcept(FE_DIVBYZERO));
    EXPECT_FALSE(std::fetestexcept(FE_INVALID));
    try {
        outer.Check("Outer");
        FAIL() << "the outer division by zero must still be seen";
    } catch (const Fault& f) {
        EXPECT_EQ(f.Number(), fault::DivisionByZero);
    }
}

TEST(CheckedArithmetic, VoidAndValueResults) {
    double out = 0.0;
    Checked("Test", [&] { out = Value(2.0) * Value(3.0); });
    EXPECT_EQ(out, 6.0);
    EXPECT_EQ(Checked("Test", [] { return 7; }), 7);
}

} // namespace
} // namespace tess
