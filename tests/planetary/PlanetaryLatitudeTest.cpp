#include "planetary/PlanetaryLatitude.h"

#include "FaultRecorder.h"

#include <gtest/gtest.h>

namespace tess::MyGeometricOperations {
namespace {

using tess::testing::FaultRecorder;

constexpr double kWgsA = 6378137.0, kWgsB = 6356752.31424518;

TEST(PlanetaryLatitude, Wgs1984Latitude45) {
    double lon, graphic, centric;
    XYOCentricToOGraphic(10.0, 45.0, kWgsA, kWgsB, 0.0, lon, graphic);
    EXPECT_NEAR(graphic, 45.19242, 5e-6); // degrees: the five decimals quoted for WGS 1984
    XYOGraphicToOCentric(10.0, graphic, kWgsA, kWgsB, 0.0, lon, centric);
    EXPECT_NEAR(centric, 45.0, 1e-12); // degrees: rounding of tan and atan only
}

TEST(PlanetaryLatitude, SphereZeroAndPoleCases) {
    FaultRecorder faults;
    double lon, lat;
    for (double in : {-60.0, -1.0, 0.5, 33.0, 89.0}) {
        XYOCentricToOGraphic(0.0, in, 1737400.0, 1737400.0, 0.0, lon, lat);
        EXPECT_NEAR(lat, in, 1e-12) << in; // degrees: k is 1 on a sphere
    }
    XYOCentricToOGraphic(0.0, 0.0, kWgsA, kWgsB, 0.0, lon, lat);
    EXPECT_EQ(lat, 0.0);
    // The cut pi keeps tan(90 degrees) finite: about 90 comes back, not a fault.
    XYOCentricToOGraphic(0.0, 90.0, kWgsA, kWgsB, 0.0, lon, lat);
    EXPECT_NEAR(lat, 90.0, 1e-9);
    XYOGraphicToOCentric(0.0, 90.0, kWgsA, kWgsB, 0.0, lon, lat);
    EXPECT_NEAR(lat, 90.0, 1e-9);
    EXPECT_EQ(faults.Count(), 0u);
}

TEST(PlanetaryLatitude, LongitudeIsShiftedAndNotWrapped) {
    double lon, lat;
    XYOGraphicToOCentric(170.0, 10.0, kWgsA, kWgsB, 20.0, lon, lat);
    EXPECT_EQ(lon, 190.0);
    XYOCentricToOGraphic(-170.0, 10.0, kWgsA, kWgsB, -360.0, lon, lat);
    EXPECT_EQ(lon, -530.0);
}

TEST(PlanetaryLatitude, ZeroMinorAxisIsReportedUnderEachName) {
    FaultRecorder faults;
    double lon = 0.0, lat = -1.0;
    XYOCentricToOGraphic(5.0, 10.0, kWgsA, 0.0, 1.0, lon, lat);
    EXPECT_EQ(lon, 6.0); // written before the axes are divided
    EXPECT_EQ(lat, -1.0);
    EXPECT_TRUE(faults.LastNames("XYOCentricToOGraphic ")) << faults.Last();
    XYOGraphicToOCentric(5.0, 10.0, kWgsA, 0.0, 1.0, lon, lat);
    EXPECT_EQ(lat, -1.0);
    EXPECT_TRUE(faults.LastNames("XYOGraphicToOCentric ")) << faults.Last();
    EXPECT_EQ(faults.Count(), 2u);
}

} // namespace
} // namespace tess::MyGeometricOperations
