#include "geodesy/Vincenty.h"
#include "geodesy/GeodesyConstants.h"
#include "platform/geometry/Point.h"

#include "FaultRecorder.h"

#include <GeographicLib/Geodesic.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace tess::MyGeometricOperations {
namespace {

using tess::testing::FaultRecorder;

constexpr double kWgsA = 6378137.0, kWgsB = 6356752.31424518;
constexpr double kMarsA = 3396190.0, kMarsB = 3376200.0; // Mars 2000
constexpr double kSphereR = 6371000.0;

TEST(DistanceVincentyNumbers, OneDegreeOfLongitudeOnTheEquator) {
    double az1 = -1.0, az2 = -1.0;
    const double s = DistanceVincentyNumbers(0.0, 0.0, 1.0, 0.0, az1, az2);
    EXPECT_NEAR(s, 111319.49, 0.005); // metres, to the centimetre
    EXPECT_EQ(az1, 90.0);
    EXPECT_EQ(az2, 90.0);
}

TEST(DistanceVincentyNumbers, UsesTheStoredAxesWithTheDefiningFlattening) {
    // f from 1/298.257223563 against f from (a - b) / a: the two routines may not agree to the
    // last bit, and must agree far below a millimetre.
    int differing = 0;
    for (int i = 1; i <= 60; ++i) {
        const double lon2 = 3.0 * i, lat2 = 80.0 - 2.5 * i;
        double a1, a2, b1, b2;
        const double plain = DistanceVincentyNumbers(0.5, 10.0, lon2, lat2, a1, a2);
        const double axes = DistanceVincentyNumbers2(0.5, 10.0, lon2, lat2, b1, b2, kWgsA, kWgsB);
        differing += plain != axes || a1 != b1 || a2 != b2;
        EXPECT_NEAR(plain, axes, 1e-6); // metres
    }
    EXPECT_GT(differing, 0);
}

TEST(DistanceVincentyNumbers, IdenticalPositionsGiveZeroAndZeroAzimuths) {
    FaultRecorder faults;
    double az1 = 123.0, az2 = 456.0;
    EXPECT_EQ(DistanceVincentyNumbers2(12.5, -33.0, 12.5, -33.0, az1, az2, kWgsA, kWgsB), 0.0);
    EXPECT_EQ(az1, 0.0);
    EXPECT_EQ(az2, 0.0);
    // 1e-15 degrees apart is not identical: the loop runs and gives a tiny positive length.
    const double s = DistanceVincentyNumbers2(12.5, -33.0, 12.5 + 1e-14, -33.0, az1, az2, kWgsA, kWgsB);
    EXPECT_GT(s, 0.0);
    EXPECT_LT(s, 1e-8); // metres: 1e-14 degrees is about 1e-9 m
    EXPECT_EQ(faults.Count(), 0u);
}

TEST(DistanceVincentyNumbers, LongitudesOneTurnApartGiveZeroWithoutAnyPass) {
    FaultRecorder faults;
    double az1 = -1.0, az2 = -1.0;
    // L is the literal two pi, so the loop never runs: every quantity stays 0, A is 1, B is 0.
    EXPECT_EQ(DistanceVincentyNumbers2(0.0, 10.0, 360.0, 10.0, az1, az2, kWgsA, kWgsB), 0.0);
    EXPECT_EQ(faults.Count(), 0u);
}

TEST(DistanceVincentyNumbers, LongitudeDifferenceIsNotNormalised) {
    // 179 to -179 is an L of -358 degrees; the loop still finds the 2 degree line.
    double az1, az2, g1, g2;
    const double across = DistanceVincentyNumbers2(179.0, 5.0, -179.0, 6.0, az1, az2, kWgsA, kWgsB);
    const double plain = DistanceVincentyNumbers2(179.0, 5.0, 181.0, 6.0, g1, g2, kWgsA, kWgsB);
    EXPECT_NEAR(across, plain, 1e-6); // metres
    EXPECT_NEAR(az1, g1, 1e-8);       // degrees: 6 um sideways over 220 km
}

TEST(DistanceVincentyNumbers, NearlyAntipodalEquatorialLineReturnsTheLastPassSilently) {
    FaultRecorder faults;
    double az1 = -1.0, az2 = -1.0;
    const double s = DistanceVincentyNumbers2(0.0, 0.0, 179.7, 0.0, az1, az2, kWgsA, kWgsB);
    EXPECT_EQ(faults.Count(), 0u);
    ASSERT_TRUE(std::isfinite(s));
    // The true geodesic runs over high latitudes and is tens of kilometres longer; the last
    // pass stays on the equator. Kept: no report for lines that do not converge.
    double s12, gaz1, gaz2;
    GeographicLib::Geodesic(kWgsA, (kWgsA - kWgsB) / kWgsA).Inverse(0.0, 0.0, 0.0, 179.7, s12, gaz1, gaz2);
    EXPECT_GT(s12 - s, 10000.0); // metres
    EXPECT_TRUE(az1 == 90.0 || az1 == 270.0) << az1;
}

TEST(DistanceVincentyNumbers, ZeroSinSigmaInAPassIsReportedAndLeavesTheAzimuths) {
    // Equal longitudes and latitudes one ulp apart whose reduced latitudes round to the same
    // value: sinSigma is exactly 0 and the division in the loop fails.
    FaultRecorder faults;
    double az1 = 11.0, az2 = 22.0;
    const double lat = 30.0;
    const double s = DistanceVincentyNumbers2(5.0, lat, 5.0, std::nextafter(lat, 90.0), az1, az2, kWgsA, kWgsB);
    EXPECT_EQ(s, 0.0);
    EXPECT_EQ(az1, 11.0);
    EXPECT_EQ(az2, 22.0);
    ASSERT_EQ(faults.Count(), 1u);
    EXPECT_TRUE(faults.LastNames("DistanceVincentyNumbers2 ")) << faults.Last();
}

TEST(VincentyOutcome, TellsSettledLinesFromSpentPassesAndFaults) {
    // The routines stay silent; the outcome is what a caller may show a user.
    FaultRecorder faults;
    double az1 = 0, az2 = 0;
    VincentyOutcome outcome = VincentyOutcome::Faulted;
    DistanceVincentyNumbers(-77.0365, 38.8977, 2.2945, 48.8584, az1, az2, &outcome);
    EXPECT_EQ(outcome, VincentyOutcome::Settled);
    DistanceVincentyNumbers2(10.0, 20.0, 10.0, 20.0, az1, az2, kWgsA, kWgsB, &outcome); // identical
    EXPECT_EQ(outcome, VincentyOutcome::Settled);
    DistanceVincentyNumbers2(0.0, 10.0, 360.0, 10.0, az1, az2, kWgsA, kWgsB, &outcome); // no pass either
    EXPECT_EQ(outcome, VincentyOutcome::Settled);

    // Antipodal on the equator: 40 passes and still oscillating, ~100 km short.
    const double s = DistanceVincentyNumbers(0.0, 0.0, 180.0, 0.0, az1, az2, &outcome);
    EXPECT_EQ(outcome, VincentyOutcome::PassesSpent);
    EXPECT_LT(s, 19950000.0); // metres; the geodesic over the pole is 20,003,931 m
    DistanceVincentyNumbers2(0.0, 0.5, 179.5, -0.5, az1, az2, kWgsA, kWgsB, &outcome);
    EXPECT_EQ(outcome, VincentyOutcome::PassesSpent);
    EXPECT_EQ(faults.Count(), 0u);

    // One ulp apart in latitude: sinSigma is exactly 0 and the pass faults.
    DistanceVincentyNumbers2(5.0, 30.0, 5.0, std::nextafter(30.0, 90.0), az1, az2, kWgsA, kWgsB, &outcome);
    EXPECT_EQ(outcome, VincentyOutcome::Faulted);
    EXPECT_EQ(faults.Count(), 1u);

    Point start(0.0, 0.0), end;
    double far = 0;
    outcome = VincentyOutcome::Faulted;
    PointLineVincentyPerPoint2(start, 19000000.0, 30.0, end, far, kWgsA, kWgsB, &outcome);
    EXPECT_EQ(outcome, VincentyOutcome::Settled);
    PointLineVincentyPerPoint2(start, 0.0, 30.0, end, far, kWgsA, kWgsB, &outcome);
    EXPECT_EQ(outcome, VincentyOutcome::Settled);
}

TEST(DistanceVincentyNumbers, EquatorialLineHasZeroCosSqAlpha) {
    FaultRecorder faults;
    double az1, az2;
    // cos2SigmaM is set to 0 rather than divided by a cosSqAlpha of 0.
    const double s = DistanceVincentyNumbers2(0.0, 0.0, 90.0, 0.0, az1, az2, kWgsA, kWgsB);
    // metres: a quarter of the equator; the stopping rule (1e-12 rad) is 6 um here
    EXPECT_NEAR(s, kWgsA * kPi / 2.0, 1e-5);
    EXPECT_EQ(faults.Count(), 0u);
}

// Agreement with an exact geodesic solution on thousands of generated lines. Tolerances are
// the largest differences measured over 200,000 lines, rounded up:
//  - distance: Vincenty's truncated series, 0.1 mm on WGS 1984, 0.5 mm on the flatter Mars
//    2000, 0.1 um on a sphere (no series at all);
//  - azimuths, as the sideways offset at the far end (s times the angle): the stopping rule
//    on lambda (1e-12 rad, about 6 um on an Earth-sized body) dominates short lines, so the
//    angle tolerance is 10 um / s; on long lines the series error adds a constant angle.
struct SpheroidCase {
    const char* name;
    double a, b;
    double distanceTolerance;  // metres
    double seriesAngleError;   // radians
};

class VincentyAgainstGeodesic : public ::testing::TestWithParam<SpheroidCase> {};

double AngleDifference(double x, double y) { return std::fabs(std::remainder(x - y, 360.0)); }

TEST_P(VincentyAgainstGeodesic, InverseAgreesAwayFromAntipodes) {
    const SpheroidCase& sc = GetParam();
    const GeographicLib::Geodesic exact(sc.a, (sc.a - sc.b) / sc.a);
    std::mt19937_64 rng(20240601);
    std::uniform_real_distribution<double> lonDist(-180.0, 180.0), latDist(-90.0, 90.0), unit(0.0, 1.0);
    constexpr double kSidewaysStoppingRule = 10e-6; // metres
    constexpr double kNearlyAntipodal = 179.0;      // degrees of arc on the auxiliary sphere
    int compared = 0;
    for (int i = 0; i < 5000; ++i) {
        const double lon1 = lonDist(rng), lat1 = latDist(rng);
        // Spans from 1e-6 to about 300 degrees, evenly in the logarithm.
        const double span = std::pow(10.0, -6.0 + 8.5 * unit(rng));
        const double lon2 = lon1 + (2.0 * unit(rng) - 1.0) * std::min(span, 180.0);
        const double lat2 = std::clamp(lat1 + (2.0 * unit(rng) - 1.0) * std::min(span, 90.0), -90.0, 90.0);
        double s12, gaz1, gaz2;
        if (exact.Inverse(lat1, lon1, lat2, lon2, s12, gaz1, gaz2) > kNearlyAntipodal)
            continue;
        double az1, az2;
        const double s = DistanceVincentyNumbers2(lon1, lat1, lon2, lat2, az1, az2, sc.a, sc.b);
        ASSERT_NEAR(s, s12, sc.distanceTolerance) << lon1 << " " << lat1 << " " << lon2 << " " << lat2;
        if (s12 == 0.0)
            continue;
        const double angleTolerance = (kSidewaysStoppingRule / s12 + sc.seriesAngleError) * 180.0 / M_PI;
        ASSERT_LE(AngleDifference(az1, gaz1), angleTolerance) << lon1 << " " << lat1 << " " << lon2 << " " << lat2;
        ASSERT_LE(AngleDifference(az2, gaz2), angleTolerance) << lon1 << " " << lat1 << " " << lon2 << " " << lat2;
        ASSERT_GE(az1, 0.0);
        ASSERT_LE(az1, 360.0); // -tiny + 360 rounds to 360
        ++compared;
    }
    EXPECT_GT(compared, 4900);
}

INSTANTIATE_TEST_SUITE_P(Spheroids, VincentyAgainstGeodesic,
                         ::testing::Values(SpheroidCase{"WGS1984", kWgsA, kWgsB, 1e-4, 1e-10},
                                           SpheroidCase{"Mars2000", kMarsA, kMarsB, 5e-4, 1e-9},
                                           SpheroidCase{"Sphere", kSphereR, kSphereR, 1e-7, 1e-12}),
                         [](const auto& info) { return std::string(info.param.name); });

} // namespace
} // namespace tess::MyGeometricOperations
