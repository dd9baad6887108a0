// Envelopes, points and the plane transforms of shapes.

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "GeometryTestSupport.h"

namespace tess {
namespace {

using testing::Wkt;

TEST(Envelope, PutCoordsOrdersTheCorners) {
    Envelope e;
    EXPECT_TRUE(e.IsEmpty());
    e.PutCoords(10, 8, 2, 4);
    EXPECT_FALSE(e.IsEmpty());
    EXPECT_DOUBLE_EQ(e.XMin(), 2.0);
    EXPECT_DOUBLE_EQ(e.YMax(), 8.0);
    EXPECT_DOUBLE_EQ(e.Width(), 8.0);
    EXPECT_DOUBLE_EQ(e.Height(), 4.0);
    EXPECT_DOUBLE_EQ(e.LowerLeft()->X(), 2.0);
    EXPECT_DOUBLE_EQ(e.UpperRight()->Y(), 8.0);
}

TEST(Envelope, UnionWithEmptyAndNonEmpty) {
    Envelope e;
    e.Union(Envelope(0, 0, 1, 1));
    EXPECT_DOUBLE_EQ(e.XMax(), 1.0);
    e.Union(Envelope());
    EXPECT_DOUBLE_EQ(e.XMax(), 1.0);
    e.Union(Envelope(5, -2, 6, 0));
    EXPECT_DOUBLE_EQ(e.XMax(), 6.0);
    EXPECT_DOUBLE_EQ(e.YMin(), -2.0);
}

struct ExpandCase {
    const char* name;
    double dx, dy;
    bool asRatio;
    double xMin, yMin, xMax, yMax;
};

class EnvelopeExpand : public ::testing::TestWithParam<ExpandCase> {};

TEST_P(EnvelopeExpand, GrowsAsAsked) {
    const ExpandCase& c = GetParam();
    Envelope e(0, 0, 10, 4);
    e.Expand(c.dx, c.dy, c.asRatio);
    EXPECT_DOUBLE_EQ(e.XMin(), c.xMin);
    EXPECT_DOUBLE_EQ(e.YMin(), c.yMin);
    EXPECT_DOUBLE_EQ(e.XMax(), c.xMax);
    EXPECT_DOUBLE_EQ(e.YMax(), c.yMax);
}

INSTANTIATE_TEST_SUITE_P(Modes, EnvelopeExpand,
                         ::testing::Values(ExpandCase{"ByDistance", 1, 2, false, -1, -2, 11, 6},
                                           ExpandCase{"ByRatio", 1.2, 0.5, true, -1, 1, 11, 3},
                                           ExpandCase{"ShrinkByDistance", -1, -1, false, 1, 1, 9, 3}),
                         [](const ::testing::TestParamInfo<ExpandCase>& info) { return std::string(info.param.name); });

TEST(Envelope, IntersectAndCenterAt) {
    Envelope e(0, 0, 10, 10);
    e.Intersect(Envelope(5, 5, 20, 20));
    EXPECT_DOUBLE_EQ(e.XMin(), 5.0);
    EXPECT_DOUBLE_EQ(e.XMax(), 10.0);
    e.CenterAt(Point(0, 0));
    EXPECT_DOUBLE_EQ(e.XMin(), -2.5);
    EXPECT_DOUBLE_EQ(e.YMax(), 2.5);
    e.Intersect(Envelope(100, 100, 101, 101));
    EXPECT_TRUE(e.IsEmpty());
}

TEST(Envelope, OfShapesAndOfEmptyShapes) {
    EXPECT_TRUE(Polygon().Envelope()->IsEmpty());
    EXPECT_TRUE(Point().Envelope()->IsEmpty());
    const auto e = Wkt<Polyline>("MULTILINESTRING((0 0, 1 5), (-3 2, 4 1))")->Envelope();
    EXPECT_DOUBLE_EQ(e->XMin(), -3.0);
    EXPECT_DOUBLE_EQ(e->XMax(), 4.0);
    EXPECT_DOUBLE_EQ(e->YMax(), 5.0);
    GeometryBag bag;
    bag.AddGeometry(std::make_shared<Point>(1, 1));
    bag.AddGeometry(std::make_shared<Point>(-1, 3));
    const auto b = bag.Envelope();
    EXPECT_DOUBLE_EQ(b->XMin(), -1.0);
    EXPECT_DOUBLE_EQ(b->YMax(), 3.0);
}

TEST(Point, EmptyUntilCoordinatesArePut) {
    Point p;
    EXPECT_TRUE(p.IsEmpty());
    EXPECT_TRUE(std::isnan(p.X()));
    p.X(1.0);
    EXPECT_TRUE(p.IsEmpty()); // Y still unset
    p.Y(2.0);
    EXPECT_FALSE(p.IsEmpty());
    p.SetEmpty();
    EXPECT_TRUE(p.IsEmpty());
}

TEST(Transform, RotateAndScalePolygon) {
    const auto square = Wkt<Polygon>("POLYGON((0 0, 0 2, 2 2, 2 0, 0 0))");
    square->Rotate(Point(1, 1), std::numbers::pi / 4.0);
    // Rotation keeps the area; the square stands on its corner, sqrt(2) from the centre.
    EXPECT_NEAR(square->Area(), 4.0, 1e-12);
    EXPECT_NEAR(square->Envelope()->XMax(), 1.0 + std::sqrt(2.0), 1e-12);
    square->Scale(Point(1, 1), 2.0, 0.5);
    EXPECT_NEAR(square->Area(), 4.0, 1e-12);
    // A mirror turns the orientation and so the sign of the area.
    square->Scale(Point(0, 0), -1.0, 1.0);
    EXPECT_NEAR(square->Area(), -4.0, 1e-12);
}

TEST(Transform, MoveOfEveryKind) {
    Point p(1, 1);
    p.Move(2, 3);
    EXPECT_DOUBLE_EQ(p.X(), 3.0);
    const auto mp = Wkt<Multipoint>("MULTIPOINT((0 0), (1 1))");
    mp->Move(-1, 0);
    EXPECT_DOUBLE_EQ(mp->Point(1)->X(), 0.0);
    Envelope e(0, 0, 1, 1);
    e.Move(5, 5);
    EXPECT_DOUBLE_EQ(e.XMin(), 5.0);
    BezierCurve b;
    b.PutCoords(Point(0, 0), Point(0, 1), Point(1, 1), Point(1, 0));
    b.Move(1, 0);
    Point c;
    b.QueryCoord(1, c);
    EXPECT_DOUBLE_EQ(c.X(), 1.0);
}

TEST(MultipointSimplify, ToleranceAndKnownSimpleThroughALivePoint) {
    const auto mp = Wkt<Multipoint>("MULTIPOINT((0 0), (0.0005 0), (1 1))");
    mp->SpatialReference(std::make_shared<testing::FakeReference>(0, 0, 1e4, 0.001));
    mp->Simplify();
    EXPECT_EQ(mp->PointCount(), 2);
    EXPECT_TRUE(mp->IsKnownSimple());
    std::dynamic_pointer_cast<IPoint>(mp->Geometry(0))->X(5.0);
    EXPECT_FALSE(mp->IsKnownSimple());
}

TEST(PolygonRings, LoneCounterClockwiseRingBecomesExterior) {
    const auto polygon = Wkt<Polygon>("POLYGON((0 0, 10 0, 10 10, 0 10, 0 0))");
    EXPECT_EQ(polygon->ExteriorRingCount(), 0);
    polygon->Simplify();
    EXPECT_EQ(polygon->ExteriorRingCount(), 1);
    EXPECT_DOUBLE_EQ(polygon->Area(), 100.0);
}

TEST(PolygonRings, ForeignRingIsRefused) {
    const auto polygon = Wkt<Polygon>("POLYGON((0 0, 0 10, 10 10, 10 0, 0 0))");
    const auto other = Wkt<Polygon>("POLYGON((0 0, 0 1, 1 1, 1 0, 0 0))");
    EXPECT_THROW(polygon->InteriorRingCount(other->Part(0)), Fault);
    // A copy of a member ring identifies it.
    EXPECT_EQ(polygon->InteriorRingCount(*CloneAs<Ring>(polygon->Part(0))), 0);
}

TEST(SimplifyAfterIsSimple, GivesTheSameResultAndSeesChangesInBetween) {
    const char* wkt = "POLYGON((0 0, 2 2, 2 0, 0 2, 0 0), (5 5, 6 5, 6 6, 5 6, 5 5))";
    const auto direct = Wkt<Polygon>(wkt);
    direct->Simplify();
    const auto checked = Wkt<Polygon>(wkt);
    EXPECT_FALSE(checked->IsSimple());
    checked->Simplify();
    EXPECT_TRUE(checked->IsEqual(*direct));
    const auto changed = Wkt<Polygon>(wkt);
    EXPECT_FALSE(changed->IsSimple());
    changed->RemoveGeometries(1, 1);
    changed->Simplify();
    EXPECT_EQ(changed->ExteriorRingCount(), 2);
    EXPECT_NEAR(changed->Area(), 2.0, 1e-12);
}

} // namespace
} // namespace tess
