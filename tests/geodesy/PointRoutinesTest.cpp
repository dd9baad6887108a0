// Routines that read and fill points: bearings and the direct geodesic problem.
#include "geodesy/Angles.h"
#include "geodesy/Vincenty.h"

#include "FaultRecorder.h"
#include "GeometryBuilders.h"

#include <GeographicLib/Geodesic.hpp>
#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace tess::MyGeometricOperations {
namespace {

using namespace tess::testing;

constexpr double kWgsA = 6378137.0, kWgsB = 6356752.31424518;

TEST(CalcBearing2, QuartersClockwiseFromNorth) {
    FaultRecorder faults;
    const Point origin(0, 0);
    struct Case {
        double x, y, bearing;
    } cases[] = {{0, 1, 0}, {1, 0, 90}, {0, -1, 180}, {-1, 0, 270}, {1, 1, 45}, {-1, -1, 225}, {1, -1, 135}};
    for (const auto& c : cases)
        EXPECT_NEAR(CalcBearing2(origin, Point(c.x, c.y)), c.bearing, 1e-12) << c.x << "," << c.y; // degrees
    EXPECT_EQ(CalcBearing2(origin, Point(0, 0)), -9999.0); // identical points have no bearing, not 0
    EXPECT_EQ(faults.Count(), 0u);
}

TEST(CalcBearing2, OverflowOfTheSlopeIsReported) {
    FaultRecorder faults;
    EXPECT_EQ(CalcBearing2(Point(0, 0), Point(-1e308, 1e-308)), 0.0);
    EXPECT_TRUE(faults.LastNames("CalcBearing2 ")) << faults.Last();
}

TEST(DistanceVincentyPoints, ReadsLongitudeFromXAndLatitudeFromY) {
    double az1, az2, n1, n2;
    const double byPoints = DistanceVincentyPoints(Point(10, 50), Point(12, 51), az1, az2);
    EXPECT_EQ(byPoints, DistanceVincentyNumbers(10, 50, 12, 51, n1, n2));
    EXPECT_EQ(az1, n1);
    EXPECT_EQ(DistanceVincentyPoints2(Point(10, 50), Point(12, 51), az1, az2, 3396190.0, 3376200.0),
              DistanceVincentyNumbers2(10, 50, 12, 51, n1, n2, 3396190.0, 3376200.0));
}

struct DirectCase {
    const char* name;
    double a, b;
    double endTolerance; // metres between our end point and the exact one
};

class DirectAgainstGeodesic : public ::testing::TestWithParam<DirectCase> {};

// Tolerances from the same measurement as the inverse problem: Vincenty's series error on
// lines from 1 cm to 15,000 km, rounded up.
TEST_P(DirectAgainstGeodesic, EndPointAndFarAzimuthAgree) {
    const DirectCase& dc = GetParam();
    const GeographicLib::Geodesic exact(dc.a, (dc.a - dc.b) / dc.a);
    std::mt19937_64 rng(99);
    std::uniform_real_distribution<double> lonDist(-180, 180), latDist(-85, 85), azDist(0, 360), unit(0, 1);
    const double maxDistance = 15e6 * dc.a / kWgsA;
    for (int i = 0; i < 2000; ++i) {
        const double lon = lonDist(rng), lat = latDist(rng), az = azDist(rng);
        const double distance = 0.01 * std::pow(maxDistance / 0.01, unit(rng));
        Point end;
        double far = -1;
        PointLineVincentyPerPoint2(Point(lon, lat), distance, az, end, far, dc.a, dc.b);
        double lat2, lon2, azi2;
        exact.Direct(lat, lon, az, distance, lat2, lon2, azi2);
        double apart, a1, a2;
        exact.Inverse(lat2, lon2, end.Y(), end.X(), apart, a1, a2);
        ASSERT_LT(apart, dc.endTolerance) << lon << " " << lat << " " << az << " " << distance;
        // Degrees: the same sideways tolerance as the end point, over the line's length.
        ASSERT_LE(std::fabs(std::remainder(far - azi2, 360.0)), (10e-6 + dc.endTolerance) / distance * 180 / M_PI)
            << distance;
        ASSERT_GE(far, 0.0);
    }
}

INSTANTIATE_TEST_SUITE_P(Spheroids, DirectAgainstGeodesic,
                         ::testing::Values(DirectCase{"WGS1984", kWgsA, kWgsB, 2e-4},
                                           DirectCase{"Mars2000", 3396190.0, 3376200.0, 1e-3},
                                           DirectCase{"Sphere", 6371000.0, 6371000.0, 1e-7}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(PointLineVincentyPerPoint2, ZeroDistanceCopiesTheStartAndTheAzimuth) {
    Point end;
    double far = 0;
    PointLineVincentyPerPoint2(Point(-75.5, 40.25), 0.0, 123.0, end, far, kWgsA, kWgsB);
    EXPECT_EQ(end.X(), -75.5);
    EXPECT_EQ(end.Y(), 40.25);
    EXPECT_EQ(far, 123.0); // handed back, not turned by 180
}

TEST(PointLineVincentyPerPoint2, LongitudeIsNotWrapped) {
    Point end;
    double far = 0;
    PointLineVincentyPerPoint2(Point(179.5, 0), 111319.49 /* about 1 degree */, 90.0, end, far, kWgsA, kWgsB);
    EXPECT_NEAR(end.X(), 180.5, 1e-6); // degrees
}

TEST(PointLineVincenty2, VertexCountOneBecomesTwoAndLineIsBuiltFromTheStart) {
    auto start = MakePoint(0, 0);
    Point end;
    double far = 0;
    std::int32_t count = 1;
    std::shared_ptr<IPolyline> line;
    PointLineVincenty2(*start, 100000.0, 45.0, end, far, count, line);
    EXPECT_EQ(count, 2);
    ASSERT_TRUE(line);
    const auto& points = dynamic_cast<const IPointCollection&>(*line);
    EXPECT_EQ(points.PointCount(), 2);
    EXPECT_TRUE(line->SpatialReference()->IsEqual(*Wgs84()));
    EXPECT_TRUE(end.SpatialReference()->IsEqual(*Wgs84()));

    // Intermediate vertices are solved from the start at i * step: the middle of five lies at
    // half the distance.
    count = 5;
    std::shared_ptr<IPolyline> five;
    PointLineVincenty2(*start, 100000.0, 45.0, end, far, count, five);
    const auto middle = dynamic_cast<const IPointCollection&>(*five).Point(2);
    // The routine takes the axes of the point's reference, whose minor axis is derived from the
    // flattening and differs from the module's stored one in the last digits.
    const auto spheroid = Wgs84()->Datum()->Spheroid();
    Point expected;
    double ignored;
    PointLineVincentyPerPoint2(*start, 50000.0, 45.0, expected, ignored, spheroid->SemiMajorAxis(),
                               spheroid->SemiMinorAxis());
    EXPECT_EQ(middle->X(), expected.X());
    EXPECT_EQ(middle->Y(), expected.Y());
}

TEST(PointLineVincenty2, ZeroVertexCountLeavesThePolylineAlone) {
    auto start = MakePoint(10, 10);
    auto existing = MakePolyline({{{0, 0}, {1, 1}}});
    std::shared_ptr<IPolyline> line = existing;
    Point end;
    double far = 0;
    std::int32_t count = 0;
    PointLineVincenty2(*start, 5000.0, 0.0, end, far, count, line);
    EXPECT_EQ(line, existing);
    EXPECT_EQ(existing->PointCount(), 2);
    EXPECT_GT(end.Y(), 10.0);
    EXPECT_TRUE(end.SpatialReference()->IsEqual(*Wgs84()));
}

TEST(PointLineVincenty2, UsesTheSpheroidBeneathAProjection) {
    auto projected = SpatialReferenceEnvironment().CreateProjectedCoordinateSystem(32633);
    auto start = MakePoint(15, 45, projected);
    Point end;
    double far = 0;
    std::int32_t count = 0;
    std::shared_ptr<IPolyline> none;
    PointLineVincenty2(*start, 1000.0, 0.0, end, far, count, none);
    EXPECT_NEAR(end.Y(), 45.0 + 1000.0 / 111132.0, 1e-4); // degrees: a kilometre north
    EXPECT_EQ(end.SpatialReference()->Name(), "GCS_WGS_1984");
}

TEST(PointLineVincenty2, PointWithoutReferenceIsReported) {
    FaultRecorder faults;
    Point start(0, 0), end;
    double far = 0;
    std::int32_t count = 0;
    std::shared_ptr<IPolyline> none;
    PointLineVincenty2(start, 1000.0, 0.0, end, far, count, none);
    EXPECT_TRUE(end.IsEmpty());
    EXPECT_TRUE(faults.LastNames("PointLineVincenty2 ")) << faults.Last();
}

} // namespace
} // namespace tess::MyGeometricOperations
