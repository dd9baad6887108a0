#include "geodesy/SphericalArea.h"
#include "geodesy/GeodesyConstants.h"

#include "FaultRecorder.h"
#include "GeometryBuilders.h"

#include <GeographicLib/Geodesic.hpp>
#include <GeographicLib/PolygonArea.hpp>
#include <gtest/gtest.h>

#include <cmath>

namespace tess::MyGeometricOperations {
namespace {

using namespace tess::testing;

constexpr double kWgsA = 6378137.0, kWgsB = 6356752.31424518;
constexpr double kMarsA = 3396190.0, kMarsB = 3376200.0;

double EqualVolumeRadius(double a, double b) { return std::cbrt(a * a * b); }

// Independent area of geodesic rings on the sphere of radius R, signed the way of the module:
// positive for clockwise rings.
double ExactArea(const std::vector<Coords>& rings, double R) {
    const GeographicLib::Geodesic sphere(R, 0.0);
    double total = 0.0;
    for (const Coords& ring : rings) {
        GeographicLib::PolygonArea polygon(sphere);
        for (const WKSPoint& p : ring)
            polygon.AddPoint(p.Y, p.X);
        double perimeter, area;
        polygon.Compute(false, true, perimeter, area);
        total -= area; // counter-clockwise is positive there
    }
    return total;
}

struct Vec {
    double x, y, z;
};
Vec UnitVector(WKSPoint p) {
    const double lon = p.X * M_PI / 180.0, lat = p.Y * M_PI / 180.0;
    return {std::cos(lat) * std::cos(lon), std::cos(lat) * std::sin(lon), std::sin(lat)};
}
Vec Cross(Vec a, Vec b) { return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x}; }
double Dot(Vec a, Vec b) { return a.x * b.x + a.y * b.y + a.z * b.z; }

// The exact area-weighted centre of geodesic rings on the sphere, by another route: the integral
// of the surface normal over the region is half the sum, over the edges, of the arc length times
// the unit normal of the edge's plane. Clockwise rings count positive, as in the module.
void ExactCentroid(const std::vector<Coords>& rings, double& lon, double& lat) {
    Vec m{0, 0, 0};
    for (const Coords& ring : rings)
        for (std::size_t i = 0; i < ring.size(); ++i) {
            const Vec a = UnitVector(ring[i]), b = UnitVector(ring[(i + 1) % ring.size()]);
            const Vec n = Cross(b, a);
            const double length = std::sqrt(Dot(n, n));
            if (length == 0.0)
                continue;
            const double arc = std::atan2(length, Dot(a, b));
            m = {m.x + arc * n.x / length, m.y + arc * n.y / length, m.z + arc * n.z / length};
        }
    lon = std::atan2(m.y, m.x) * 180.0 / M_PI;
    lat = std::atan2(m.z, std::hypot(m.x, m.y)) * 180.0 / M_PI;
}

double AngleBetween(double lon1, double lat1, double lon2, double lat2) {
    const Vec a = UnitVector({lon1, lat1}), b = UnitVector({lon2, lat2});
    return std::atan2(std::sqrt(Dot(Cross(a, b), Cross(a, b))), Dot(a, b)) * 180.0 / M_PI;
}

const Coords kSquareCW = {{10, 10}, {10, 20}, {20, 20}, {20, 10}};
const Coords kHoleCCW = {{13, 13}, {17, 13}, {17, 17}, {13, 17}};

// Relative tolerance: the sum of triangles is exact on the sphere; what remains is rounding
// and the cut pi (1e-15 relative on every angle).
constexpr double kRelative = 1e-9;

struct AreaCase {
    const char* name;
    std::vector<Coords> rings;
    double centroidTolerance; // degrees of arc
};

class SphericalPolygonAgainstExact : public ::testing::TestWithParam<AreaCase> {};

TEST_P(SphericalPolygonAgainstExact, AreaAgreesOnTheEqualVolumeSphere) {
    FaultRecorder faults;
    const AreaCase& c = GetParam();
    for (auto [a, b] : {std::pair{kWgsA, kWgsB}, std::pair{kMarsA, kMarsB}}) {
        const auto polygon = MakePolygon(c.rings);
        double lon = 0, lat = 0;
        const double area = SphericalPolygonArea2(*polygon, false, lon, lat, a, b);
        const double expected = ExactArea(c.rings, EqualVolumeRadius(a, b));
        EXPECT_NEAR(area, expected, std::fabs(expected) * kRelative) << c.name << " a=" << a;
    }
    // The centre weights the direction of each flat triangle's mean by the triangle's spherical
    // area: an approximation that grows with the triangles. Measured: 5e-5 degrees for a ring of
    // 10 degrees, 0.008 for components 70 degrees apart, 0.023 for a ring round the pole, 2.9
    // for a triangle 120 degrees across; exact for shapes symmetric about their apex.
    const auto polygon = MakePolygon(c.rings);
    double lon = 0, lat = 0, exactLon, exactLat;
    SphericalPolygonArea(*polygon, true, lon, lat);
    ExactCentroid(c.rings, exactLon, exactLat);
    EXPECT_LT(AngleBetween(lon, lat, exactLon, exactLat), c.centroidTolerance) << c.name << " " << lon << " " << lat
                                                                               << " vs " << exactLon << " " << exactLat;
    EXPECT_EQ(faults.Count(), 0u);
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, SphericalPolygonAgainstExact,
    ::testing::Values(
        AreaCase{"ClockwiseSquare", {kSquareCW}, 1e-4},
        AreaCase{"SquareWithHole", {kSquareCW, kHoleCCW}, 1e-4},
        AreaCase{"ApexInTheHole", {{{0, -30}, {0, 30}, {60, 30}, {60, -30}}, {{5, -25}, {55, -25}, {55, 25}, {5, 25}}}, 1e-9},
        AreaCase{"TwoComponents", {kSquareCW, {{-60, -40}, {-60, -35}, {-50, -35}, {-50, -40}}}, 0.01},
        AreaCase{"NearNorthPole", {{{-170, 80}, {-170, 89}, {-10, 89}, {-10, 80}}}, 0.03},
        AreaCase{"SplitAtTheAntimeridian", {{{170, -5}, {170, 5}, {180, 5}, {180, -5}}, {{-180, -5}, {-180, 5}, {-170, 5}, {-170, -5}}}, 1e-9},
        AreaCase{"LargeTriangle", {{{-60, -50}, {0, 70}, {60, -50}}}, 3.0}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(SphericalPolygonArea, PolarCapToThePoleIsWhole) {
    // A cap from latitude 80 to the pole stored as a lon-lat rectangle: edges along the pole have
    // no length, and the geodesic edges between vertices 90 degrees apart cut the parallel.
    const Coords cap = {{-180, 80}, {-180, 90}, {-90, 90}, {0, 90}, {90, 90}, {180, 90}, {180, 80}, {90, 80}, {0, 80}, {-90, 80}};
    const auto polygon = MakePolygon({cap});
    double lon, lat;
    const double area = SphericalPolygonArea2(*polygon, false, lon, lat, kWgsA, kWgsB);
    const double R = EqualVolumeRadius(kWgsA, kWgsB);
    EXPECT_NEAR(area, ExactArea({cap}, R), ExactArea({cap}, R) * kRelative);
}

TEST(SphericalPolygonArea, SplitHalvesAddUpToTheWhole) {
    const Coords west = {{170, -5}, {170, 5}, {180, 5}, {180, -5}};
    const Coords east = {{-180, -5}, {-180, 5}, {-170, 5}, {-170, -5}};
    // No jump: continues past 180, with the same vertices on the 180 meridian.
    const Coords whole = {{170, -5}, {170, 5}, {180, 5}, {190, 5}, {190, -5}, {180, -5}};
    double lon, lat;
    const double halves = SphericalPolygonArea(*MakePolygon({west, east}), false, lon, lat);
    const double one = SphericalPolygonArea(*MakePolygon({whole}), false, lon, lat);
    EXPECT_NEAR(halves, one, one * kRelative);
}

TEST(SphericalPolygonArea, RingStoredAcrossTheAntimeridianIsMeasuredAroundTheFarSideCentroid) {
    // 170 -> -170 as a jump: clockwise in the plane, so one exterior ring, but on the globe a
    // ring of 20 by 20 degrees around (180, 0). Its planar centroid is (0, 0), the antipode of
    // the ring's middle, and the triangles around it add up to the rest of the globe instead of
    // the ring. Kept as it is; callers split such rings first.
    const Coords jump = {{170, -10}, {-170, -10}, {-170, 10}, {170, 10}};
    const Coords unwrapped = {{170, -10}, {190, -10}, {190, 10}, {170, 10}};
    const double R = 6371000.790009154;
    double lon, lat;
    const double measured = SphericalPolygonArea(*MakePolygon({jump}), false, lon, lat);
    const double ring = std::fabs(ExactArea({unwrapped}, R));
    const double restOfGlobe = 4.0 * M_PI * R * R - ring;
    EXPECT_NEAR(measured, restOfGlobe, restOfGlobe * kRelative);
    // A ring whose planar centroid stays near it comes out right even across the jump.
    const Coords nearJump = {{179, 0}, {-179, 0}, {-179, 10}, {179, 10}};
    const Coords nearUnwrapped = {{179, 0}, {181, 0}, {181, 10}, {179, 10}};
    const double near = SphericalPolygonArea(*MakePolygon({nearJump}), false, lon, lat);
    EXPECT_NEAR(near, ExactArea({nearUnwrapped}, R), std::fabs(near) * kRelative);
}

TEST(SphericalPolygonArea, CentroidOfSymmetricShapesIsTheirCentre) {
    // Symmetric about the equator and the 30 meridian: the centre is (30, 0) whatever the
    // method; with a hole off-centre it moves away from the hole.
    double lon = 0, lat = 0;
    SphericalPolygonArea(*MakePolygon({{{10, -20}, {10, 20}, {50, 20}, {50, -20}}}), true, lon, lat);
    EXPECT_NEAR(lon, 30.0, 1e-9); // degrees: rounding only
    EXPECT_NEAR(lat, 0.0, 1e-9);
    SphericalPolygonArea(*MakePolygon({{{10, -20}, {10, 20}, {50, 20}, {50, -20}}, {{35, -5}, {45, -5}, {45, 5}, {35, 5}}}),
                         true, lon, lat);
    EXPECT_LT(lon, 30.0);
    EXPECT_NEAR(lat, 0.0, 1e-9);
}

TEST(SphericalPolygonArea, CounterClockwiseOrEmptyGivesNoCentroid) {
    FaultRecorder faults;
    double lon = 1, lat = 1;
    // A lone counter-clockwise ring is a component of its own and measures negative.
    const double ccw = SphericalPolygonArea(*MakePolygon({Reversed(kSquareCW)}), true, lon, lat);
    EXPECT_LT(ccw, 0.0);
    EXPECT_EQ(lon, kNoValue);
    EXPECT_EQ(lat, kNoValue);
    lon = lat = 1;
    EXPECT_EQ(SphericalPolygonArea(Polygon(), true, lon, lat), 0.0);
    EXPECT_EQ(lon, kNoValue);
    EXPECT_EQ(lat, kNoValue);
    EXPECT_EQ(faults.Count(), 0u);
}

TEST(SphericalTriangleArea, UnitSphereOctantIsAQuarterOfPi) {
    const auto p1 = MakePoint(0, 0), p2 = MakePoint(90, 0), p3 = MakePoint(0, 90);
    double sign = 0;
    const double area = SphericalTriangleArea2(*p1, *p2, *p3, sign, 1.0, 1.0);
    EXPECT_NEAR(std::fabs(area), M_PI / 2.0, 1e-12); // square units of the unit sphere
    EXPECT_EQ(sign, area > 0 ? 1.0 : -1.0);
    // Seen from above the octant, (0,0) -> (0,90) -> (90,0) runs clockwise.
    EXPECT_GT(SphericalTriangleArea2(*p1, *p3, *p2, sign, 1.0, 1.0), 0.0);
    EXPECT_EQ(sign, 1.0);
}

TEST(SphericalTriangleArea, DegenerateTrianglesAreZeroAndLeaveTheSign) {
    double sign = 42.0;
    EXPECT_EQ(SphericalTriangleArea(*MakePoint(5, 0), *MakePoint(5, 10), *MakePoint(5, 20), sign), 0.0);
    EXPECT_EQ(SphericalTriangleArea(*MakePoint(0, 0), *MakePoint(1e-13, 0), *MakePoint(3, 3), sign), 0.0);
    EXPECT_EQ(SphericalTriangleArea(*MakePoint(0, 0), *MakePoint(3, 3), *MakePoint(0, 0), sign), 0.0);
    EXPECT_EQ(SphericalTriangleArea(*MakePoint(9, 1), *MakePoint(3, 3), *MakePoint(3, 3), sign), 0.0);
    EXPECT_EQ(sign, 42.0);
    // Three points on one parallel are not caught, and give the sliver between parallel and arc.
    EXPECT_NE(SphericalTriangleArea(*MakePoint(0, 40), *MakePoint(10, 40), *MakePoint(20, 40), sign), 0.0);
}

TEST(SphericalTriangleArea, Wgs84SphereRadius) {
    double sign;
    const double unit = SphericalTriangleArea2(*MakePoint(0, 0), *MakePoint(0, 90), *MakePoint(90, 0), sign, 1, 1);
    const double wgs = SphericalTriangleArea(*MakePoint(0, 0), *MakePoint(0, 90), *MakePoint(90, 0), sign);
    EXPECT_NEAR(wgs / unit, 6371000.790009154 * 6371000.790009154, 1e-3); // m^2 per unit: R squared
}

TEST(SphericalPolygonArea2, SnapsTheCallersPolygonInPlace) {
    auto polygon = MakePolygon({{{10.000000000123, 10}, {10, 20}, {20, 20}, {20, 10}}});
    double lon, lat;
    SphericalPolygonArea2(*polygon, false, lon, lat, kWgsA, kWgsB);
    EXPECT_NE(polygon->Part(0).Vertices()[0].X, 10.000000000123);
    auto untouched = MakePolygon({{{10.000000000123, 10}, {10, 20}, {20, 20}, {20, 10}}});
    SphericalPolygonArea(*untouched, false, lon, lat);
    EXPECT_EQ(untouched->Part(0).Vertices()[0].X, 10.000000000123);
}

} // namespace
} // namespace tess::MyGeometricOperations
