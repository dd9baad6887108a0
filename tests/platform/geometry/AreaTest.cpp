// Areas, centroids and label points of rings and polygons, straight and curved.

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "GeometryTestSupport.h"

namespace tess {
namespace {

using testing::FromWkt;
using testing::Wkt;

constexpr double kPi = std::numbers::pi;

struct AreaCase {
    const char* name;
    const char* wkt;
    double area;
    double cx;
    double cy;
};

// Plain rings are exact in double arithmetic up to rounding; 1e-9 in square units (or units for
// the centroid) leaves room for the sums of a few terms of size 1e2..1e12.
constexpr double kPlainTolerance = 1e-9;

class PolygonArea : public ::testing::TestWithParam<AreaCase> {};

TEST_P(PolygonArea, AreaAndCentroid) {
    const AreaCase& c = GetParam();
    const auto polygon = Wkt<Polygon>(c.wkt);
    ASSERT_TRUE(polygon);
    EXPECT_NEAR(polygon->Area(), c.area, kPlainTolerance * std::max(1.0, std::abs(c.area)));
    const auto centroid = polygon->Centroid();
    EXPECT_NEAR(centroid->X(), c.cx, kPlainTolerance * std::max(1.0, std::abs(c.cx)));
    EXPECT_NEAR(centroid->Y(), c.cy, kPlainTolerance * std::max(1.0, std::abs(c.cy)));
}

INSTANTIATE_TEST_SUITE_P(
    Rings, PolygonArea,
    ::testing::Values(
        AreaCase{"ClockwiseSquare", "POLYGON((0 0, 0 10, 10 10, 10 0, 0 0))", 100.0, 5.0, 5.0},
        // A lone counter-clockwise ring is a hole: its area counts negative, its centre stays.
        AreaCase{"CounterClockwiseSquare", "POLYGON((0 0, 10 0, 10 10, 0 10, 0 0))", -100.0, 5.0, 5.0},
        AreaCase{"SquareWithHole", "POLYGON((0 0, 0 10, 10 10, 10 0, 0 0), (2 2, 4 2, 4 4, 2 4, 2 2))", 96.0,
                 (500.0 - 12.0) / 96.0, (500.0 - 12.0) / 96.0},
        AreaCase{"TwoComponents", "MULTIPOLYGON(((0 0, 0 10, 10 10, 10 0, 0 0)), ((20 0, 20 2, 22 2, 22 0, 20 0)))",
                 104.0, (500.0 + 84.0) / 104.0, (500.0 + 4.0) / 104.0},
        AreaCase{"TwoComponentsWithHoles",
                 "MULTIPOLYGON(((0 0, 0 10, 10 10, 10 0, 0 0), (2 2, 4 2, 4 4, 2 4, 2 2)),"
                 "((20 0, 20 4, 24 4, 24 0, 20 0), (21 1, 22 1, 22 2, 21 2, 21 1)))",
                 96.0 + 15.0, (488.0 + 16.0 * 22.0 - 21.5) / 111.0, (488.0 + 16.0 * 2.0 - 1.5) / 111.0},
        // Far from the origin the sums are taken relative to the first vertex.
        AreaCase{"FarFromOrigin", "POLYGON((1e6 1e6, 1e6 1000001, 1000001 1000001, 1000001 1e6, 1e6 1e6))", 1.0,
                 1000000.5, 1000000.5},
        AreaCase{"OpenRingCountsClosed", "POLYGON((0 0, 0 10, 10 10, 10 0))", 100.0, 5.0, 5.0}),
    [](const ::testing::TestParamInfo<AreaCase>& info) { return std::string(info.param.name); });

// True curves are counted by their shape: analytic for circles, Gauss-Legendre exact for the
// Bezier polynomial, so the tolerance is rounding only (1e-12 relative).
constexpr double kCurveRelTolerance = 1e-12;

TEST(CurveArea, CircleIsPiRSquaredAndCentredOnItsCentre) {
    const auto circle = testing::CirclePolygon(3.0, -2.0, 2.0, true);
    EXPECT_NEAR(circle->Area(), kPi * 4.0, kCurveRelTolerance * kPi * 4.0);
    const auto c = circle->Centroid();
    EXPECT_NEAR(c->X(), 3.0, kCurveRelTolerance * 10);
    EXPECT_NEAR(c->Y(), -2.0, kCurveRelTolerance * 10);
    EXPECT_NEAR(testing::CirclePolygon(0, 0, 2.0, false)->Area(), -kPi * 4.0, kCurveRelTolerance * 20);
}

TEST(CurveArea, HalfDiscCentroidAtFourROverThreePi) {
    CircularArc arc;
    arc.PutCoords(Point(0, 0), Point(-2, 0), Point(2, 0), esriArcClockwise); // over the top
    auto ring = std::make_shared<Ring>();
    ring->AddSegment(arc);
    ring->AddSegment(Line({2, 0}, {-2, 0}));
    EXPECT_NEAR(ring->Area(), 2.0 * kPi, kCurveRelTolerance * 10);
    const auto c = ring->Centroid();
    EXPECT_NEAR(c->X(), 0.0, 1e-12);
    EXPECT_NEAR(c->Y(), 8.0 / (3.0 * kPi), 1e-12);
}

TEST(CurveArea, EllipseInEnvelopeIsPiAB) {
    EllipticArc ellipse;
    ellipse.ConstructEnvelope(Envelope(0, 0, 10, 4));
    auto polygon = std::make_shared<Polygon>();
    polygon->AddGeometry(std::make_shared<EllipticArc>(ellipse));
    EXPECT_NEAR(polygon->Area(), kPi * 5.0 * 2.0, 1e-11);
    const auto c = polygon->Centroid();
    EXPECT_NEAR(c->X(), 5.0, 1e-11);
    EXPECT_NEAR(c->Y(), 2.0, 1e-11);
}

TEST(CurveArea, BezierRegionMatchesClosedForm) {
    // Under x = 3t^2 - 2t^3, y = 3t(1 - t): area 18 B(3,3) = 0.6, centroid (1/2, 9/28).
    BezierCurve bezier;
    bezier.PutCoords(Point(0, 0), Point(0, 1), Point(1, 1), Point(1, 0));
    auto ring = std::make_shared<Ring>();
    ring->AddSegment(bezier);
    ring->Close();
    EXPECT_NEAR(ring->Area(), 0.6, 1e-14);
    const auto c = ring->Centroid();
    EXPECT_NEAR(c->X(), 0.5, 1e-14);
    EXPECT_NEAR(c->Y(), 9.0 / 28.0, 1e-14);
}

TEST(LabelPoint, LiesInsideACrescentWhoseCentroidIsOutside) {
    const auto big = testing::CirclePolygon(0, 0, 10, true);
    const auto bite = testing::CirclePolygon(3, 0, 9, true);
    const auto crescent = std::dynamic_pointer_cast<Polygon>(big->Difference(*bite));
    ASSERT_TRUE(crescent);
    ASSERT_GT(crescent->Area(), 0.0);
    const auto centroid = crescent->Centroid();
    const auto label = crescent->LabelPoint();
    EXPECT_FALSE(crescent->Contains(*centroid));
    EXPECT_TRUE(crescent->Contains(*label));
}

TEST(LabelPoint, InsideADonutAndEmptyForAnEmptyPolygon) {
    const auto donut = Wkt<Polygon>("POLYGON((0 0, 0 10, 10 10, 10 0, 0 0), (1 1, 9 1, 9 9, 1 9, 1 1))");
    EXPECT_TRUE(donut->Contains(*donut->LabelPoint()));
    EXPECT_TRUE(Polygon().LabelPoint()->IsEmpty());
}

TEST(RingArea, SignFollowsOrientation) {
    const auto polygon = Wkt<Polygon>("POLYGON((0 0, 0 1, 1 1, 1 0, 0 0), (0 0, 1 0, 1 1, 0 1, 0 0))");
    const auto cw = std::dynamic_pointer_cast<Ring>(polygon->Geometry(0));
    const auto ccw = std::dynamic_pointer_cast<Ring>(polygon->Geometry(1));
    EXPECT_TRUE(cw->IsExterior());
    EXPECT_FALSE(ccw->IsExterior());
    EXPECT_DOUBLE_EQ(cw->Area(), 1.0);
    EXPECT_DOUBLE_EQ(ccw->Area(), -1.0);
}

TEST(ComponentArea, ComponentsAddUpToTheWhole) {
    const auto polygon =
        Wkt<Polygon>("MULTIPOLYGON(((0 0, 0 10, 10 10, 10 0, 0 0)), ((20 0, 20 4, 24 4, 24 0, 20 0)))");
    polygon->AddGeometry(FromWkt("POLYGON((2 2, 4 2, 4 4, 2 4, 2 2))"));
    const auto bag = std::dynamic_pointer_cast<IGeometryCollection>(polygon->ConnectedComponentBag());
    double sum = 0.0;
    for (std::int32_t i = 0; i < bag->GeometryCount(); ++i)
        sum += std::dynamic_pointer_cast<IArea>(bag->Geometry(i))->Area();
    EXPECT_DOUBLE_EQ(sum, polygon->Area());
    EXPECT_DOUBLE_EQ(sum, 112.0);
}

TEST(EnvelopeArea, WidthTimesHeightAndCentre) {
    Envelope e(1, 2, 4, 8);
    EXPECT_DOUBLE_EQ(e.Area(), 18.0);
    EXPECT_DOUBLE_EQ(e.Centroid()->X(), 2.5);
    EXPECT_DOUBLE_EQ(e.Centroid()->Y(), 5.0);
    EXPECT_DOUBLE_EQ(Envelope().Area(), 0.0);
}

} // namespace
} // namespace tess
