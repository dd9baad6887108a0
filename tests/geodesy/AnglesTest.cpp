#include "geodesy/Angles.h"
#include "geodesy/GeodesyConstants.h"

#include "FaultRecorder.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>

namespace tess::MyGeometricOperations {
namespace {

using tess::testing::FaultRecorder;

std::uint64_t Bits(double v) { return std::bit_cast<std::uint64_t>(v); }

TEST(GeodesyLiterals, AreTheCutDecimalsNotTheNearestDoubles) {
    EXPECT_EQ(Bits(kPi), 0x400921FB54442D11u);
    EXPECT_EQ(Bits(kTwoPi), 0x401921FB54442D11u);
    EXPECT_EQ(Bits(kNoValue), 0xC0C3878000000000u);
    EXPECT_NE(kPi, std::acos(-1.0));
}

// Expected bits computed independently as IEEE doubles: the two conversion orders
// round differently for these arguments, and each routine must keep its own.
struct ConversionCase {
    double degrees;
    std::uint64_t degToRad;  // (x * pi) / 180
    std::uint64_t asRadians; // (x / 180) * pi
};

TEST(AngleConversion, EachRoutineKeepsItsOrderOfOperations) {
    const ConversionCase cases[] = {
        {13.0, 0x3fcd0ad2c7c63f75u, 0x3fcd0ad2c7c63f74u},
        {30.0, 0x3fe0c152382d7361u, 0x3fe0c152382d7360u},
        {60.0, 0x3ff0c152382d7361u, 0x3ff0c152382d7360u},
        {359.0, 0x4019101c0da1da73u, 0x4019101c0da1da74u},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Bits(DegToRad(c.degrees)), c.degToRad) << c.degrees;
        EXPECT_EQ(Bits(AsRadians(c.degrees)), c.asRadians) << c.degrees;
    }
    EXPECT_EQ(DegToRad(180.0), kPi);
    EXPECT_EQ(AsRadians(180.0), kPi);
    EXPECT_EQ(RadToDeg(kPi), 180.0);
    EXPECT_EQ(AsDegrees(kPi), 180.0);
}

TEST(ModuleAtan2, FollowsItsCaseTableExactly) {
    FaultRecorder faults;
    const double quarter = std::atan(1.0);
    struct Case {
        double y, x, expected;
    } cases[] = {
        {0.0, 0.0, 0.0},                 // no error for a vector of length zero
        {0.0, -5.0, kPi},                // positive, and the literal itself
        {-0.0, -5.0, kPi},               // negative zero counts as 0
        {-1.0, 0.0, -kPi / 2.0},
        {1.0, 0.0, kPi / 2.0},
        {1.0, 1.0, quarter},
        {1.0, -1.0, kPi - quarter},
        {-1.0, -1.0, -(kPi - quarter)},
    };
    for (const auto& c : cases)
        EXPECT_EQ(atan2(c.y, c.x), c.expected) << c.y << ", " << c.x;
    EXPECT_EQ(faults.Count(), 0u);
}

TEST(ModuleAtan2, OverflowOfTheQuotientIsReportedAndGivesZero) {
    FaultRecorder faults;
    EXPECT_EQ(atan2(1e308, 1e-308), 0.0); // not pi / 2
    ASSERT_EQ(faults.Count(), 1u);
    EXPECT_TRUE(faults.LastNames("atan2 Angles.cpp Line : ")) << faults.Last();
    EXPECT_NE(faults.Last().find("Error Number \r\n\t6\r\nDescription\r\n\tOverflow"), std::string::npos);
}

TEST(AngleConversion, OverflowIsReportedUnderTheRoutinesName) {
    FaultRecorder faults;
    EXPECT_EQ(RadToDeg(1e307), 0.0);
    EXPECT_TRUE(faults.LastNames("RadToDeg ")) << faults.Last();
    EXPECT_EQ(DegToRad(1e308), 0.0);
    EXPECT_TRUE(faults.LastNames("DegToRad ")) << faults.Last();
    EXPECT_EQ(AsDegrees(1e307), 0.0);
    EXPECT_TRUE(faults.LastNames("AsDegrees ")) << faults.Last();
    EXPECT_EQ(faults.Count(), 3u);
}

} // namespace
} // namespace tess::MyGeometricOperations
