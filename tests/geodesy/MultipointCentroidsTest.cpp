#include "geodesy/MultipointCentroids.h"

#include "FaultRecorder.h"
#include "GeometryBuilders.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tess::MyGeometricOperations {
namespace {

using namespace tess::testing;

constexpr double kWgsA = 6378137.0, kWgsB = 6356752.31424518;

TEST(MultipointCentroidSpheroid, OnePointReturnsItselfWithoutReference) {
    const auto points = MakeMultipoint({{-120.25, 37.5}});
    const auto centre = MultipointCentroidSpheroid(*points, kWgsA, kWgsB, 0.0);
    ASSERT_TRUE(centre);
    EXPECT_NEAR(centre->X(), -120.25, 1e-11); // degrees: the round trip's rounding
    EXPECT_NEAR(centre->Y(), 37.5, 1e-11);
    EXPECT_EQ(centre->SpatialReference(), nullptr); // the caller sets it
}

TEST(MultipointCentroids, AcrossTheAntimeridianOnlyTheSpheroidalFormStaysThere) {
    const auto points = MakeMultipoint({{179, 0}, {-179, 0}});
    const auto round = MultipointCentroidSpheroid(*points, kWgsA, kWgsB, 0.0);
    EXPECT_NEAR(std::fabs(round->X()), 180.0, 1e-9);
    EXPECT_NEAR(round->Y(), 0.0, 1e-9);
    const auto flat = MultipointCentroid(*points);
    EXPECT_EQ(flat->X(), 0.0);
    EXPECT_EQ(flat->Y(), 0.0);
    EXPECT_TRUE(flat->SpatialReference()->IsEqual(*Wgs84()));
}

TEST(MultipointCentroidSpheroid, AntipodesGiveALatitudeBeyondThePole) {
    // The mean lies at the centre, but for the remainders of the cut pi (sin(pi) is not 0), so
    // its direction is arbitrary; the single Bowring step then gives a colatitude below 0 and a
    // latitude past 90, without a report. (At the exact centre: see SpheroidalCartToLatLong.)
    FaultRecorder faults;
    const auto points = MakeMultipoint({{0, 0}, {180, 0}});
    const auto centre = MultipointCentroidSpheroid(*points, kWgsA, kWgsB, 0.0);
    ASSERT_TRUE(centre);
    EXPECT_GT(centre->Y(), 90.0);
    EXPECT_EQ(faults.Count(), 0u);
}

TEST(MultipointCentroids, EmptyMultipointIsADivisionByZero) {
    FaultRecorder faults;
    const auto none = MakeMultipoint({});
    EXPECT_EQ(MultipointCentroidSpheroid(*none, kWgsA, kWgsB, 0.0), nullptr);
    EXPECT_TRUE(faults.LastNames("MultipointCentroidSpheroid ")) << faults.Last();
    EXPECT_NE(faults.Last().find("\t11\r\nDescription\r\n\tDivision by zero"), std::string::npos);
    EXPECT_EQ(MultipointCentroid(*none), nullptr);
    EXPECT_TRUE(faults.LastNames("MultipointCentroid ")) << faults.Last();
}

TEST(MultipointCentroid, IsThePlainMean) {
    const auto centre = MultipointCentroid(*MakeMultipoint({{0, 0}, {2, 0}, {4, 6}}));
    EXPECT_EQ(centre->X(), 2.0);
    EXPECT_EQ(centre->Y(), 2.0);
}

} // namespace
} // namespace tess::MyGeometricOperations
