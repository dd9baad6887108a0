#include "platform/system/Variant.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

#include "platform/system/Arrays.h"
#include "platform/system/Fault.h"
#include "FaultOf.h"

namespace tess {
namespace {

// Whole-number conversions: CInt and CLng agree except where 16 bits overflow.
struct WholeCase {
    Variant input;
    std::int32_t toLong;       // expected CLng, when longFault is 0
    std::int32_t longFault;    // expected fault number of CLng
    std::int32_t integerFault; // expected fault number of CInt (0: same value as CLng)
};

TEST(VariantConversion, WholeNumbersRoundHalfToEvenAndCheckRange) {
    const WholeCase cases[] = {
        {Variant(2.5), 2, 0, 0},
        {Variant(3.5), 4, 0, 0},
        {Variant(-2.5), -2, 0, 0},
        {Variant(0.5), 0, 0, 0},
        {Variant(2.5000001), 3, 0, 0},
        {Variant(1.5f), 2, 0, 0},
        {Variant("2.5"), 2, 0, 0},
        {Variant(" -7 "), -7, 0, 0},
        {Variant("1,234"), 1234, 0, 0},
        {Variant(true), -1, 0, 0},
        {Variant(), 0, 0, 0},
        {Variant(DateValue{36526.75}), 36527, 0, fault::Overflow},
        {Variant(32767.5), 32768, 0, fault::Overflow},
        {Variant(-32768.5), -32768, 0, 0},
        {Variant(2147483647.4), 2147483647, 0, fault::Overflow},
        {Variant(2147483647.5), 0, fault::Overflow, fault::Overflow},
        {Variant("3000000000"), 0, fault::Overflow, fault::Overflow},
        {Variant(std::numeric_limits<double>::quiet_NaN()), 0, fault::Overflow, fault::Overflow},
        {Variant("abc"), 0, fault::TypeMismatch, fault::TypeMismatch},
        {Variant("12abc"), 0, fault::TypeMismatch, fault::TypeMismatch},
        {Variant(""), 0, fault::TypeMismatch, fault::TypeMismatch},
        {Variant::Null(), 0, fault::InvalidUseOfNull, fault::InvalidUseOfNull},
        {Variant::Nothing(), 0, fault::TypeMismatch, fault::TypeMismatch},
        {Variant(std::vector<Variant>{1}), 0, fault::TypeMismatch, fault::TypeMismatch},
    };
    for (const WholeCase& c : cases) {
        SCOPED_TRACE(c.input.TypeName() + " " + (c.input.Type() == VarType::String ? c.input.ToString() : ""));
        EXPECT_EQ(FaultOf([&] { (void)c.input.ToLong(); }), c.longFault);
        if (c.longFault == 0) {
            EXPECT_EQ(c.input.ToLong(), c.toLong);
        }
        const std::int32_t integerFault = c.integerFault ? c.integerFault : c.longFault;
        EXPECT_EQ(FaultOf([&] { (void)c.input.ToInteger(); }), integerFault);
        if (integerFault == 0) {
            EXPECT_EQ(c.input.ToInteger(), c.toLong);
        }
    }
}

TEST(VariantConversion, TextToDouble) {
    struct Case {
        const char* text;
        double value;
        std::int32_t fault;
    };
    const Case cases[] = {
        {"1.5", 1.5, 0},          {" 1,234.5 ", 1234.5, 0}, {"-1.5E3", -1500.0, 0}, {"+.5", 0.5, 0},
        {"5.", 5.0, 0},           {"1D2", 100.0, 0},        {"1e-400", 0.0, 0},     {"0.1", 0.1, 0},
        {"1e400", 0, fault::Overflow},   {"abc", 0, fault::TypeMismatch}, {".", 0, fault::TypeMismatch},
        {"-", 0, fault::TypeMismatch},   {"1e", 0, fault::TypeMismatch},  {",5", 0, fault::TypeMismatch},
        {"1.2.3", 0, fault::TypeMismatch}, {"1 2", 0, fault::TypeMismatch},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        const Variant v(c.text);
        EXPECT_EQ(FaultOf([&] { (void)v.ToDouble(); }), c.fault);
        if (c.fault == 0) { // exact: the parse must give the nearest double, as a literal does
            EXPECT_EQ(v.ToDouble(), c.value);
        }
        EXPECT_EQ(IsNumeric(c.text), c.fault == 0);
    }
    // Many significant digits still read to the nearest double.
    EXPECT_EQ(Variant("6356752.31424518").ToDouble(), 6356752.31424518);
    EXPECT_EQ(Variant("0.000000000000000000001234").ToDouble(), 1.234e-21);
}

TEST(VariantConversion, SingleOverflowsBeyondItsRange) {
    EXPECT_EQ(FaultOf([] { (void)Variant(1e39).ToSingle(); }), fault::Overflow);
    EXPECT_EQ(Variant(0.1).ToSingle(), 0.1f);
    EXPECT_EQ(Variant(static_cast<double>(std::numeric_limits<float>::max())).ToSingle(),
              std::numeric_limits<float>::max());
}

TEST(VariantConversion, NumbersToTextWithHostDigits) {
    struct Case {
        Variant value;
        const char* text;
    };
    const Case cases[] = {
        {Variant(0.1), "0.1"},
        {Variant(1.0 / 3.0), "0.333333333333333"},
        {Variant(1e15), "1E+15"},
        {Variant(123456789012345.0), "123456789012345"},
        {Variant(0.00001), "1E-05"},
        {Variant(0.0001), "0.0001"},
        {Variant(-0.0), "0"},
        {Variant(-2.5), "-2.5"},
        {Variant(6378137.0), "6378137"},
        {Variant(0.1f), "0.1"},
        {Variant(3.14159265f), "3.141593"},
        {Variant(std::int16_t{-5}), "-5"},
        {Variant(70000), "70000"},
        {Variant(true), "True"},
        {Variant(false), "False"},
        {Variant(), ""},
    };
    for (const Case& c : cases)
        EXPECT_EQ(c.value.ToString(), c.text) << c.value.TypeName();
    EXPECT_EQ(FaultOf([] { (void)Variant::Null().ToString(); }), fault::InvalidUseOfNull);
}

TEST(VariantConversion, Booleans) {
    EXPECT_TRUE(Variant("true").ToBool());
    EXPECT_FALSE(Variant(" FALSE ").ToBool());
    EXPECT_FALSE(Variant("0").ToBool());
    EXPECT_TRUE(Variant("-2").ToBool());
    EXPECT_TRUE(Variant(0.25).ToBool());
    EXPECT_FALSE(Variant().ToBool());
    EXPECT_EQ(FaultOf([] { (void)Variant("maybe").ToBool(); }), fault::TypeMismatch);
}

TEST(VariantConversion, DatesFromTextAndNumbers) {
    EXPECT_EQ(Variant("2000-01-01").ToDate().days, 36526.0);
    EXPECT_EQ(Variant("1/1/2000 6:00 PM").ToDate().days, 36526.75);
    EXPECT_EQ(Variant("12:00").ToDate().days, 0.5);
    EXPECT_EQ(Variant(36526).ToDate().days, 36526.0);
    EXPECT_EQ(FaultOf([] { (void)Variant("2023-02-29").ToDate(); }), fault::TypeMismatch);
    EXPECT_EQ(FaultOf([] { (void)Variant(1e9).ToDate(); }), fault::Overflow);
}

TEST(VariantKind, TypesAndNames) {
    struct Case {
        Variant value;
        VarType type;
        const char* name;
    };
    const Case cases[] = {
        {Variant(), VarType::Empty, "Empty"},
        {Variant::Null(), VarType::Null, "Null"},
        {Variant(std::int16_t{1}), VarType::Integer, "Integer"},
        {Variant(1), VarType::Long, "Long"},
        {Variant(std::int64_t{1} << 40), VarType::Double, "Double"},
        {Variant(1.0f), VarType::Single, "Single"},
        {Variant(1.0), VarType::Double, "Double"},
        {Variant(DateValue{1.0}), VarType::Date, "Date"},
        {Variant("x"), VarType::String, "String"},
        {Variant(true), VarType::Boolean, "Boolean"},
        {Variant::Nothing(), VarType::Object, "Nothing"},
        {Variant(std::make_shared<VarArray>()), VarType::Object, "VarArray"},
        {Variant(std::vector<Variant>{}), static_cast<VarType>(8204), "Variant()"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(c.value.Type(), c.type) << c.name;
        EXPECT_EQ(c.value.TypeName(), c.name);
    }
}

TEST(VariantKind, NumericTestOfValues) {
    EXPECT_TRUE(IsNumeric(Variant()));
    EXPECT_TRUE(IsNumeric(Variant(true)));
    EXPECT_TRUE(IsNumeric(Variant(" 12 ")));
    EXPECT_FALSE(IsNumeric(Variant::Null()));
    EXPECT_FALSE(IsNumeric(Variant(DateValue{1.0})));
    EXPECT_FALSE(IsNumeric(Variant("abc")));
    EXPECT_FALSE(IsNumeric(Variant::Nothing()));
}

// Interfaces that an object implements side by side, as platform classes do.
struct IShape {
    virtual ~IShape() = default;
    virtual int Sides() const = 0;
};
struct INamed {
    virtual ~INamed() = default;
    virtual std::string Label() const = 0;
};
struct IUnrelated {
    virtual ~IUnrelated() = default;
};
struct Square final : IShape, INamed {
    int Sides() const override { return 4; }
    std::string Label() const override { return "square"; }
};

TEST(VariantObject, CastsUpDownAndAcrossInterfaces) {
    auto square = std::make_shared<Square>();
    const Variant v(std::static_pointer_cast<IShape>(square));
    ASSERT_TRUE(v.IsObject());
    EXPECT_FALSE(v.IsNothing());
    EXPECT_EQ(v.As<IShape>()->Sides(), 4);
    EXPECT_EQ(v.As<INamed>()->Label(), "square"); // across
    EXPECT_EQ(v.As<Square>(), square);            // down
    EXPECT_EQ(v.As<IUnrelated>(), nullptr);
    EXPECT_EQ(v.TypeName(), "Square");
    // The variant shares ownership.
    EXPECT_EQ(square.use_count(), 2);
}

TEST(VariantObject, NothingAndNonObjects) {
    EXPECT_EQ(Variant::Nothing().As<IShape>(), nullptr);
    EXPECT_EQ(FaultOf([] { (void)Variant(1.0).As<IShape>(); }), fault::TypeMismatch);
    EXPECT_EQ(FaultOf([] { (void)Variant().As<IShape>(); }), fault::TypeMismatch);
}

TEST(VariantObject, EqualityIsIdentity) {
    auto square = std::make_shared<Square>();
    const Variant asShape(std::static_pointer_cast<IShape>(square));
    const Variant asNamed(std::static_pointer_cast<INamed>(square));
    EXPECT_EQ(asShape, asNamed);
    EXPECT_FALSE(asShape == Variant(std::make_shared<Square>()));
    EXPECT_EQ(Variant::Nothing(), Variant::Nothing());
}

TEST(VariantArray, HoldsVariantsByValue) {
    Variant list(std::vector<Variant>{1, "two", 3.0});
    Variant copy = list;
    copy.ArrayItems()[0] = 10;
    EXPECT_EQ(list.ArrayItems()[0].ToLong(), 1);
    EXPECT_EQ(copy.ArrayItems()[0].ToLong(), 10);
    EXPECT_EQ(list.ArrayItems()[1].ToString(), "two");
    EXPECT_EQ(FaultOf([] { (void)Variant(1).ArrayItems(); }), fault::TypeMismatch);
}

} // namespace
} // namespace tess
