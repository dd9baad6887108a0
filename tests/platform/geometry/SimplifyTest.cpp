// Simplify: orientation, hole nesting, self-intersections, repeated vertices,
// collapse, multipoints and polylines, and the known-simple state.

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

#include "GeometryTestSupport.h"

namespace tess {
namespace {

using testing::FromWkt;
using testing::Wkt;

const char* const kOuterCW = "(0 0, 0 10, 10 10, 10 0, 0 0)";
const char* const kOuterCCW = "(0 0, 10 0, 10 10, 0 10, 0 0)";
const char* const kHoleCW = "(2 2, 2 4, 4 4, 4 2, 2 2)";
const char* const kHoleCCW = "(2 2, 4 2, 4 4, 2 4, 2 2)";

double RingArea(const Polygon& p, std::size_t i) { return p.Part(i).Area(); }

struct NestingCase {
    const char* name;
    std::string first;
    std::string second;
};

class HoleNesting : public ::testing::TestWithParam<NestingCase> {};

// Whatever the orientation and order of the two rings, the inner one becomes the hole.
TEST_P(HoleNesting, InnerRingBecomesCounterClockwiseHoleAfterItsExterior) {
    const auto polygon = Wkt<Polygon>("POLYGON(" + GetParam().first + ", " + GetParam().second + ")");
    polygon->Simplify();
    ASSERT_EQ(polygon->PartCount(), 2u);
    EXPECT_DOUBLE_EQ(RingArea(*polygon, 0), 100.0); // exterior first, clockwise
    EXPECT_DOUBLE_EQ(RingArea(*polygon, 1), -4.0);  // then its hole, counter-clockwise
    EXPECT_DOUBLE_EQ(polygon->Area(), 96.0);
    EXPECT_EQ(polygon->ExteriorRingCount(), 1);
    EXPECT_EQ(polygon->InteriorRingCount(polygon->Part(0)), 1);
    EXPECT_TRUE(polygon->IsKnownSimple());
    EXPECT_TRUE(polygon->IsSimple());
}

INSTANTIATE_TEST_SUITE_P(
    EveryOrientation, HoleNesting,
    ::testing::Values(NestingCase{"CW_CCW", kOuterCW, kHoleCCW}, NestingCase{"CW_CW", kOuterCW, kHoleCW},
                      NestingCase{"CCW_CCW", kOuterCCW, kHoleCCW}, NestingCase{"CCW_CW", kOuterCCW, kHoleCW},
                      NestingCase{"HoleFirst_CCW_CW", kHoleCCW, kOuterCW},
                      NestingCase{"HoleFirst_CW_CCW", kHoleCW, kOuterCCW}),
    [](const ::testing::TestParamInfo<NestingCase>& info) { return std::string(info.param.name); });

TEST(Simplify, IslandInAHoleIsAnExteriorRingAgain) {
    const auto polygon = Wkt<Polygon>("POLYGON((0 0, 10 0, 10 10, 0 10, 0 0), (1 1, 1 9, 9 9, 9 1, 1 1),"
                                      " (3 3, 3 5, 5 5, 5 3, 3 3))");
    polygon->Simplify();
    ASSERT_EQ(polygon->PartCount(), 3u);
    EXPECT_EQ(polygon->ExteriorRingCount(), 2);
    EXPECT_DOUBLE_EQ(RingArea(*polygon, 0), 100.0);
    EXPECT_DOUBLE_EQ(RingArea(*polygon, 1), -64.0);
    EXPECT_DOUBLE_EQ(RingArea(*polygon, 2), 4.0);
    EXPECT_DOUBLE_EQ(polygon->Area(), 40.0);
}

TEST(Simplify, EachExteriorRingIsFollowedByItsHoles) {
    // Two islands, the hole of the first given last.
    const auto polygon = Wkt<Polygon>("POLYGON((0 0, 0 10, 10 10, 10 0, 0 0), (20 0, 20 10, 30 10, 30 0, 20 0),"
                                      " (2 2, 4 2, 4 4, 2 4, 2 2))");
    polygon->Simplify();
    ASSERT_EQ(polygon->PartCount(), 3u);
    EXPECT_DOUBLE_EQ(polygon->Part(0).Vertices()[0].X, 0.0);
    EXPECT_DOUBLE_EQ(RingArea(*polygon, 1), -4.0);
    EXPECT_DOUBLE_EQ(polygon->Part(2).Vertices()[0].X, 20.0);
}

TEST(Simplify, FigureEightBecomesTwoRings) {
    const auto polygon = Wkt<Polygon>("POLYGON((0 0, 2 2, 2 0, 0 2, 0 0))");
    polygon->Simplify();
    ASSERT_EQ(polygon->PartCount(), 2u);
    EXPECT_EQ(polygon->ExteriorRingCount(), 2);
    EXPECT_NEAR(polygon->Area(), 2.0, 1e-12); // two triangles of area 1; the crossing is computed
    EXPECT_NEAR(RingArea(*polygon, 0), 1.0, 1e-12);
    EXPECT_NEAR(RingArea(*polygon, 1), 1.0, 1e-12);
}

TEST(Simplify, RingsSharingAnEdgeMerge) {
    const auto polygon = Wkt<Polygon>("POLYGON((0 0, 0 1, 1 1, 1 0, 0 0), (1 0, 1 1, 2 1, 2 0, 1 0))");
    polygon->Simplify();
    ASSERT_EQ(polygon->PartCount(), 1u);
    EXPECT_NEAR(polygon->Area(), 2.0, 1e-12);
}

TEST(Simplify, RepeatedVerticesGo) {
    const auto polygon = Wkt<Polygon>("POLYGON((0 0, 0 0, 0 10, 10 10, 10 10, 10 10, 10 0, 0 0, 0 0))");
    polygon->Simplify();
    EXPECT_EQ(polygon->PointCount(), 5);
    EXPECT_DOUBLE_EQ(polygon->Area(), 100.0);
}

TEST(Simplify, VerticesWithinTheClusterToleranceGo) {
    const auto polygon = Wkt<Polygon>("POLYGON((0 0, 0 10, 0.001 10.001, 10 10, 10 0, 0.0005 0, 0 0))");
    polygon->SpatialReference(std::make_shared<testing::FakeReference>(0, 0, 1e4, 0.01));
    polygon->Simplify();
    EXPECT_EQ(polygon->PointCount(), 5);
}

TEST(Simplify, AShapeKnownSimpleIsSimplifiedAgainUnderALargerTolerance) {
    // Simple without a reference; a reference whose tolerance swallows the short segments makes
    // the known-simple state stale.
    const auto polygon = Wkt<Polygon>("POLYGON((0 0, 0 10, 0.001 10.001, 10 10, 10 0, 0 0))");
    polygon->Simplify();
    EXPECT_EQ(polygon->PointCount(), 6);
    polygon->SpatialReference(std::make_shared<testing::FakeReference>(0, 0, 1e4, 0.01));
    // Nor are its components taken for simple.
    const auto components = std::dynamic_pointer_cast<IGeometryCollection>(polygon->ConnectedComponentBag());
    EXPECT_FALSE(std::dynamic_pointer_cast<Polygon>(components->Geometry(0))->IsKnownSimple());
    EXPECT_FALSE(polygon->IsSimple());
    polygon->Simplify();
    EXPECT_EQ(polygon->PointCount(), 5);

    const auto line = Wkt<Polyline>("LINESTRING(0 0, 5 5, 5.001 5, 9 9)");
    line->Simplify();
    EXPECT_EQ(line->PointCount(), 4);
    line->SpatialReference(std::make_shared<testing::FakeReference>(0, 0, 1e4, 0.01));
    EXPECT_FALSE(line->IsSimple());
    line->Simplify();
    EXPECT_EQ(line->PointCount(), 3);
}

TEST(Simplify, ASegmentAsLongAsTheToleranceIsShort) {
    // 3-4-5: the first segment is 5 long exactly. At a tolerance of 5 it goes, just under 5 it stays.
    struct Case {
        double tolerance;
        std::int32_t points;
    };
    for (const Case c : {Case{5.0, 2}, Case{5.0 * (1 - 1e-15), 3}, Case{5.0 * (1 + 1e-15), 2}}) {
        SCOPED_TRACE(c.tolerance);
        const auto line = Wkt<Polyline>("LINESTRING(0 0, 3 4, 20 4)");
        line->SpatialReference(std::make_shared<testing::FakeReference>(0, 0, 1e4, c.tolerance));
        EXPECT_EQ(line->IsSimple(), c.points == 3);
        line->Simplify();
        EXPECT_EQ(line->PointCount(), c.points);
    }
}

struct CollapseCase {
    const char* name;
    const char* wkt;
};

class Collapse : public ::testing::TestWithParam<CollapseCase> {};

TEST_P(Collapse, BecomesEmpty) {
    const auto g = FromWkt(GetParam().wkt);
    std::dynamic_pointer_cast<ITopologicalOperator>(g)->Simplify();
    EXPECT_TRUE(g->IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, Collapse,
    ::testing::Values(CollapseCase{"FlatRing", "POLYGON((0 0, 1 1, 2 2, 0 0))"},
                      CollapseCase{"BackAndForth", "POLYGON((0 0, 1 0, 0 0))"},
                      CollapseCase{"OnePointRing", "POLYGON((3 3, 3 3, 3 3, 3 3))"},
                      CollapseCase{"ZeroLengthLine", "LINESTRING(1 1, 1 1, 1 1)"},
                      CollapseCase{"ZeroLengthParts", "MULTILINESTRING((1 1, 1 1), (2 2, 2 2))"}),
    [](const ::testing::TestParamInfo<CollapseCase>& info) { return std::string(info.param.name); });

TEST(Simplify, MultipointKeepsTheFirstOfEachRepeatedPoint) {
    const auto mp = Wkt<Multipoint>("MULTIPOINT((0 0), (1 1), (0 0), (2 2), (1 1))");
    EXPECT_FALSE(mp->IsSimple());
    mp->Simplify();
    ASSERT_EQ(mp->PointCount(), 3);
    EXPECT_DOUBLE_EQ(mp->Point(0)->X(), 0.0);
    EXPECT_DOUBLE_EQ(mp->Point(1)->X(), 1.0);
    EXPECT_DOUBLE_EQ(mp->Point(2)->X(), 2.0);
    EXPECT_TRUE(mp->IsSimple());
}

TEST(Simplify, PolylineLosesRepeatsButIsNotPlanarized) {
    const auto line = Wkt<Polyline>("MULTILINESTRING((0 0, 0 0, 10 10, 10 0, 0 10), (5 5, 5 5))");
    line->Simplify();
    ASSERT_EQ(line->PartCount(), 1u);
    EXPECT_EQ(line->PointCount(), 4); // the self-crossing stays
    EXPECT_TRUE(line->IsKnownSimple());
}

TEST(Simplify, KnownSimpleLastsUntilTheShapeChanges) {
    const auto polygon = Wkt<Polygon>("POLYGON((0 0, 0 10, 10 10, 10 0, 0 0))");
    EXPECT_FALSE(polygon->IsKnownSimple());
    polygon->Simplify();
    EXPECT_TRUE(polygon->IsKnownSimple());
    polygon->UpdatePoint(1, Point(0, 11));
    EXPECT_FALSE(polygon->IsKnownSimple());
    polygon->Simplify();
    EXPECT_TRUE(polygon->IsKnownSimple());
    // Through a live part too.
    std::dynamic_pointer_cast<ITransform2D>(polygon->Geometry(0))->Move(1, 0);
    EXPECT_FALSE(polygon->IsKnownSimple());
}

TEST(Simplify, CounterClockwiseSquareIsNotSimple) {
    EXPECT_FALSE(Wkt<Polygon>("POLYGON((0 0, 10 0, 10 10, 0 10, 0 0))")->IsSimple());
    EXPECT_TRUE(Wkt<Polygon>("POLYGON((0 0, 0 10, 10 10, 10 0, 0 0))")->IsSimple());
}

TEST(Simplify, LargeValidRingIsOnlyReoriented) {
    // A counter-clockwise notched circle of 10,000 vertices: valid, so the vertices stay and only the
    // direction turns.
    constexpr int kVertices = 10000;
    std::vector<WKSPoint> pts;
    for (int i = 0; i < kVertices; ++i) {
        const double a = 2.0 * std::numbers::pi * i / kVertices;
        const double r = i % 2 == 0 ? 100.0 : 99.98;
        pts.push_back({r * std::cos(a), r * std::sin(a)});
    }
    pts.push_back(pts.front());
    auto ring = std::make_shared<Ring>();
    ring->AddWKSPoints(static_cast<std::int32_t>(pts.size()), pts.data());
    Polygon polygon;
    polygon.AddPart(ring);
    const double before = polygon.Area();
    polygon.Simplify();
    EXPECT_EQ(polygon.PointCount(), kVertices + 1);
    // The same terms summed in the other order: equal to rounding (1e-12 relative).
    EXPECT_NEAR(polygon.Area(), -before, 1e-12 * std::abs(before));
    EXPECT_GT(polygon.Area(), 0.0);
    const auto v = polygon.Part(0).Vertices();
    EXPECT_EQ(v[0], pts[0]);
    EXPECT_EQ(v[1], pts[kVertices - 1]);
}

TEST(Simplify, ValidCurvedRingKeepsItsCurve) {
    const auto circle = testing::CirclePolygon(0, 0, 5, false);
    circle->Simplify();
    EXPECT_TRUE(circle->HasNonLinearSegments());
    EXPECT_NEAR(circle->Area(), 25.0 * std::numbers::pi, 1e-11);
}

} // namespace
} // namespace tess
