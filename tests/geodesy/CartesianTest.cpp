#include "geodesy/Cartesian.h"

#include "FaultRecorder.h"

#include <GeographicLib/Geocentric.hpp>
#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace tess::MyGeometricOperations {
namespace {

using tess::testing::FaultRecorder;

constexpr double kWgsA = 6378137.0, kWgsB = 6356752.31424518;

TEST(SphericalCartToLatLong, OriginGivesLongitudeZeroLatitudeNinety) {
    FaultRecorder faults;
    double lon = -1.0, lat = -1.0;
    SphericalCartToLatLong(lon, lat, 0.0, 0.0, 0.0);
    EXPECT_EQ(lon, 0.0);
    EXPECT_EQ(lat, 90.0);
    EXPECT_EQ(faults.Count(), 0u);
}

TEST(SphericalLatLongToCart, PolesKeepOrLoseTheLongitude) {
    double x, y, z, lon, lat;
    // North: the colatitude is exactly 0, X and Y are exactly 0 and the longitude is lost.
    SphericalLatLongToCart(30.0, 90.0, x, y, z, 1.0);
    EXPECT_EQ(x, 0.0);
    EXPECT_EQ(y, 0.0);
    SphericalCartToLatLong(lon, lat, x, y, z);
    EXPECT_EQ(lon, 0.0);
    // South: sin of the cut pi is not 0, so tiny remainders still carry the longitude.
    SphericalLatLongToCart(30.0, -90.0, x, y, z, 1.0);
    EXPECT_NE(x, 0.0);
    SphericalCartToLatLong(lon, lat, x, y, z);
    EXPECT_NEAR(lon, 30.0, 1e-9); // degrees
    EXPECT_NEAR(lat, -90.0, 1e-12);
}

TEST(SphericalCartToLatLong, LongitudesComeBackBetweenMinusAndPlus180) {
    double x, y, z, lon, lat;
    SphericalLatLongToCart(540.0 - 10.0, 20.0, x, y, z, 1.0);
    SphericalCartToLatLong(lon, lat, x, y, z);
    EXPECT_NEAR(lon, 170.0, 1e-9); // degrees: 530 is 170 once round
    EXPECT_NEAR(lat, 20.0, 1e-9);
    SpheroidalCartToLatLong(lon, lat, -x, -y, z, 1.0, 1.0, 0.0);
    EXPECT_NEAR(lon, -10.0, 1e-9);
}

// Tolerances: the cut pi scales every angle by 1 - 1e-15, about 1e-8 m on the Earth.
TEST(SpheroidalLatLongToCart, AgreesWithAnIndependentGeocentricConversion) {
    const GeographicLib::Geocentric exact(kWgsA, (kWgsA - kWgsB) / kWgsA);
    std::mt19937_64 rng(7);
    std::uniform_real_distribution<double> lonDist(-180.0, 180.0), latDist(-90.0, 90.0), hDist(-5000.0, 9000.0);
    for (int i = 0; i < 2000; ++i) {
        const double lon = lonDist(rng), lat = latDist(rng), h = hDist(rng);
        double x, y, z, ex, ey, ez;
        SpheroidalLatLongToCart(lon, lat, x, y, z, kWgsA, kWgsB, h);
        exact.Forward(lat, lon, h, ex, ey, ez);
        ASSERT_NEAR(x, ex, 1e-7); // metres
        ASSERT_NEAR(y, ey, 1e-7);
        ASSERT_NEAR(z, ez, 1e-7);
    }
}

TEST(SpheroidalCartToLatLong, SurfacePositionsComeBackToThemselves) {
    std::mt19937_64 rng(11);
    std::uniform_real_distribution<double> lonDist(-180.0, 180.0), latDist(-89.999, 89.999);
    for (int i = 0; i < 2000; ++i) {
        const double lon = lonDist(rng), lat = latDist(rng);
        double x, y, z, lon2, lat2;
        SpheroidalLatLongToCart(lon, lat, x, y, z, kWgsA, kWgsB, 0.0);
        SpheroidalCartToLatLong(lon2, lat2, x, y, z, kWgsA, kWgsB, 0.0);
        ASSERT_NEAR(lon2, lon, 1e-11) << lat; // degrees: rounding only, about 1 um
        ASSERT_NEAR(lat2, lat, 1e-11) << lon;
    }
}

TEST(SpheroidalCartToLatLong, PointWellInsideGoesToTheNormalThroughIt) {
    // The mean of two surface points 40 degrees apart lies 150 km deep. One Bowring step
    // finds the latitude of the normal through it to well within 1e-6 degrees (0.1 m).
    const GeographicLib::Geocentric exact(kWgsA, (kWgsA - kWgsB) / kWgsA);
    double x1, y1, z1, x2, y2, z2;
    SpheroidalLatLongToCart(10.0, 20.0, x1, y1, z1, kWgsA, kWgsB, 0.0);
    SpheroidalLatLongToCart(30.0, 55.0, x2, y2, z2, kWgsA, kWgsB, 0.0);
    const double mx = (x1 + x2) / 2, my = (y1 + y2) / 2, mz = (z1 + z2) / 2;
    double lon, lat, elat, elon, eh;
    SpheroidalCartToLatLong(lon, lat, mx, my, mz, kWgsA, kWgsB, 12345.0 /* not read */);
    exact.Reverse(mx, my, mz, elat, elon, eh);
    EXPECT_LT(eh, -100000.0); // metres below the surface: a true inside point
    EXPECT_NEAR(lat, elat, 1e-6);
    EXPECT_NEAR(lon, elon, 1e-12);
}

TEST(SpheroidalCartToLatLong, CentreGivesLatitude180OnASpheroidAnd90OnASphere) {
    // atan2(0, 0) is 0, the numerator is 0 and the denominator -e2 a: the colatitude is minus
    // half pi. On a sphere e2 is 0 and the colatitude is atan2(0, 0), 0.
    FaultRecorder faults;
    double lon = -1, lat = -1;
    SpheroidalCartToLatLong(lon, lat, 0.0, 0.0, 0.0, kWgsA, kWgsB, 0.0);
    EXPECT_EQ(lon, 0.0);
    EXPECT_NEAR(lat, 180.0, 1e-12);
    SpheroidalCartToLatLong(lon, lat, 0.0, 0.0, 0.0, kWgsA, kWgsA, 0.0);
    EXPECT_EQ(lat, 90.0);
    EXPECT_EQ(faults.Count(), 0u);
}

TEST(SpheroidalCartToLatLong, ZeroSemiMajorIsReportedAndLeavesTheOutputs) {
    FaultRecorder faults;
    double lon = 1.5, lat = 2.5;
    SpheroidalCartToLatLong(lon, lat, 100.0, 200.0, 300.0, 0.0, 6356752.0, 0.0);
    EXPECT_EQ(lon, 1.5);
    EXPECT_EQ(lat, 2.5);
    ASSERT_EQ(faults.Count(), 1u);
    EXPECT_TRUE(faults.LastNames("SpheroidalCartToLatLong ")) << faults.Last();
    double x = 7.0, y = 8.0, z = 9.0;
    SpheroidalLatLongToCart(10.0, 20.0, x, y, z, 0.0, 6356752.0, 0.0);
    EXPECT_EQ(x, 7.0);
    EXPECT_TRUE(faults.LastNames("SpheroidalLatLongToCart ")) << faults.Last();
}

TEST(TriangleCentroid3D, IsThePlainMeanNeitherNormalisedNorProjected) {
    double cx, cy, cz;
    TriangleCentroid3D(1, 0, 0, 0, 1, 0, 0, 0, 1, cx, cy, cz);
    EXPECT_EQ(cx, 1.0 / 3.0);
    EXPECT_EQ(cy, 1.0 / 3.0);
    EXPECT_EQ(cz, 1.0 / 3.0);
}

} // namespace
} // namespace tess::MyGeometricOperations
