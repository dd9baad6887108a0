// Set operations and spatial predicates through the topology engine.

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "GeometryTestSupport.h"

namespace tess {
namespace {

using testing::FromWkt;
using testing::Wkt;

const char* const kSquare = "POLYGON((0 0, 0 10, 10 10, 10 0, 0 0))";

// Overlay results of straight input are exact or off by a rounding of the cut points;
// 1e-9 square units is far above that and far below any misplaced vertex.
constexpr double kOverlayTolerance = 1e-9;

TEST(Clip, PolygonToEnvelope) {
    const auto polygon = Wkt<Polygon>(kSquare);
    polygon->Clip(Envelope(5, -5, 15, 5));
    EXPECT_NEAR(polygon->Area(), 25.0, kOverlayTolerance);
    const auto e = polygon->Envelope();
    EXPECT_DOUBLE_EQ(e->XMin(), 5.0);
    EXPECT_DOUBLE_EQ(e->YMax(), 5.0);
    EXPECT_EQ(polygon->ExteriorRingCount(), 1);
}

TEST(Clip, DisjointEnvelopeEmptiesAndPolylineIsCut) {
    const auto polygon = Wkt<Polygon>(kSquare);
    polygon->Clip(Envelope(20, 20, 30, 30));
    EXPECT_TRUE(polygon->IsEmpty());
    const auto line = Wkt<Polyline>("LINESTRING(170 0, 190 0)");
    line->Clip(Envelope(-180, -90, 180, 90));
    EXPECT_NEAR(line->Length(), 10.0, kOverlayTolerance);
    const auto points = Wkt<Multipoint>("MULTIPOINT((1 1), (50 50), (2 2))");
    points->Clip(Envelope(0, 0, 10, 10));
    EXPECT_EQ(points->PointCount(), 2);
}

TEST(ClipDense, NewEdgesGetAVertexEverySpacing) {
    const auto polygon = Wkt<Polygon>("POLYGON((-2 0, -2 10, 10 10, 10 0, -2 0))");
    constexpr double kSpacing = 0.1;
    polygon->ClipDense(Envelope(0, -5, 20, 15), kSpacing);
    EXPECT_NEAR(polygon->Area(), 100.0, kOverlayTolerance);
    // Along the cut at x = 0 from y = 0 to 10: 101 vertices, 0.1 apart (1e-9: rounding of
    // the steps); the old edges keep their two vertices.
    const auto v = polygon->Part(0).Vertices();
    int onCut = 0;
    for (std::size_t i = 0; i < v.size(); ++i) {
        if (std::abs(v[i].X) > 1e-12) continue;
        ++onCut;
        if (i > 0 && std::abs(v[i - 1].X) <= 1e-12) {
            EXPECT_LE(std::abs(std::abs(v[i].Y - v[i - 1].Y) - kSpacing), 1e-9);
        }
    }
    EXPECT_EQ(onCut, 101);
    EXPECT_EQ(static_cast<int>(v.size()), 101 + 2 + 1); // two old corners and the closing vertex
}

TEST(WrapAcrossTheEdge, DenseCutsMovedHomeAndUnitedInOneShape) {
    // A polygon from 170 to 190 degrees, cut at 180 and the eastern piece brought home.
    const auto shape = Wkt<Polygon>("POLYGON((170 0, 170 10, 190 10, 190 0, 170 0))");
    shape->Simplify();
    GeometryBag pieces;
    for (const double shift : {0.0, 360.0}) {
        const auto piece = CloneAs<Polygon>(*shape);
        piece->ClipDense(Envelope(-180 + shift, -90, 180 + shift, 90), 0.1);
        piece->Move(-shift, 0.0);
        piece->Simplify();
        pieces.AddGeometry(piece);
    }
    Polygon united;
    united.ConstructUnion(pieces);
    united.Simplify();
    EXPECT_EQ(united.ExteriorRingCount(), 2);
    EXPECT_NEAR(united.Area(), 200.0, kOverlayTolerance);
    int onEdge = 0;
    for (std::size_t r = 0; r < united.PartCount(); ++r) {
        const auto v = united.Part(r).Vertices();
        for (std::size_t i = 0; i + 1 < v.size(); ++i) // the closing vertex repeats the first
            if (std::abs(std::abs(v[i].X) - 180.0) < 1e-9) ++onEdge;
    }
    EXPECT_EQ(onEdge, 2 * 101); // 0 to 10 every 0.1 on each side of the edge
}

TEST(Union, OverlappingSquaresAndSeparateOnes) {
    const auto a = Wkt<Polygon>("POLYGON((0 0, 0 2, 2 2, 2 0, 0 0))");
    const auto b = FromWkt("POLYGON((1 1, 1 3, 3 3, 3 1, 1 1))");
    const auto u = std::dynamic_pointer_cast<Polygon>(a->Union(*b));
    ASSERT_TRUE(u);
    EXPECT_NEAR(u->Area(), 7.0, kOverlayTolerance);
    EXPECT_EQ(u->ExteriorRingCount(), 1);
    EXPECT_TRUE(u->IsSimple());
}

TEST(ConstructUnion, ReplacesTheTargetByTheUnionOfABag) {
    GeometryBag bag;
    bag.AddGeometry(FromWkt("POLYGON((0 0, 0 2, 2 2, 2 0, 0 0))"));
    bag.AddGeometry(FromWkt("POLYGON((1 0, 1 2, 3 2, 3 0, 1 0))"));
    bag.AddGeometry(FromWkt("POLYGON((10 10, 10 11, 11 11, 11 10, 10 10))"));
    const auto sr = std::make_shared<testing::FakeReference>(0, 0, 1e4, 1e-3);
    std::dynamic_pointer_cast<IGeometry>(bag.Geometry(0))->SpatialReference(sr);
    Polygon target;
    target.AddGeometry(FromWkt("POLYGON((50 50, 50 60, 60 60, 60 50, 50 50))"));
    target.ConstructUnion(bag);
    EXPECT_NEAR(target.Area(), 7.0, kOverlayTolerance);
    EXPECT_EQ(target.ExteriorRingCount(), 2);
    EXPECT_EQ(target.SpatialReference(), sr); // taken from the pieces when the target has none
}

TEST(ConstructUnion, PolylinePiecesStayApartWhereTheyDoNotMeet) {
    GeometryBag bag;
    bag.AddGeometry(FromWkt("LINESTRING(170 0, 180 0)"));
    bag.AddGeometry(FromWkt("LINESTRING(-180 0, -170 0)"));
    Polyline target;
    target.ConstructUnion(bag);
    EXPECT_EQ(target.GeometryCount(), 2);
    EXPECT_NEAR(target.Length(), 20.0, kOverlayTolerance);
    GeometryBag joined;
    joined.AddGeometry(FromWkt("LINESTRING(0 0, 1 0)"));
    joined.AddGeometry(FromWkt("LINESTRING(1 0, 2 0)"));
    target.ConstructUnion(joined);
    EXPECT_EQ(target.GeometryCount(), 1);
}

TEST(Intersect, ResultOfTheAskedDimension) {
    const auto square = Wkt<Polygon>(kSquare);
    const auto line = FromWkt("LINESTRING(-5 5, 15 5)");
    const auto inside = std::dynamic_pointer_cast<Polyline>(square->Intersect(*line, esriGeometry1Dimension));
    ASSERT_TRUE(inside);
    EXPECT_NEAR(inside->Length(), 10.0, kOverlayTolerance);
    const auto crossings =
        std::dynamic_pointer_cast<Multipoint>(Wkt<Polyline>("LINESTRING(-5 5, 15 5)")
                                                  ->Intersect(*FromWkt("LINESTRING(0 0, 0 10)"), esriGeometry0Dimension));
    ASSERT_TRUE(crossings);
    EXPECT_EQ(crossings->PointCount(), 1);
}

TEST(Difference, RemovesTheOtherShape) {
    const auto square = Wkt<Polygon>(kSquare);
    const auto d = std::dynamic_pointer_cast<Polygon>(square->Difference(*FromWkt("POLYGON((5 -1, 5 11, 11 11, 11 -1, 5 -1))")));
    EXPECT_NEAR(d->Area(), 50.0, kOverlayTolerance);
}

TEST(Cut, PolygonSplitsIntoLeftAndRightOfTheCutter) {
    const auto square = Wkt<Polygon>(kSquare);
    std::shared_ptr<IGeometry> left, right;
    square->Cut(*Wkt<Polyline>("LINESTRING(3 -1, 3 11)"), left, right); // upwards at x = 3
    EXPECT_NEAR(std::dynamic_pointer_cast<IArea>(left)->Area(), 30.0, kOverlayTolerance);
    EXPECT_NEAR(std::dynamic_pointer_cast<IArea>(right)->Area(), 70.0, kOverlayTolerance);
    EXPECT_THROW(square->Cut(*Wkt<Polyline>("LINESTRING(20 0, 20 10)"), left, right), Fault);
}

TEST(Cut, PolylineSplitsAtTheCrossing) {
    const auto line = Wkt<Polyline>("LINESTRING(0 0, 10 10)");
    std::shared_ptr<IGeometry> left, right;
    line->Cut(*Wkt<Polyline>("LINESTRING(0 10, 10 0)"), left, right);
    const double half = std::sqrt(50.0);
    EXPECT_NEAR(std::dynamic_pointer_cast<ICurve>(left)->Length(), half, kOverlayTolerance);
    EXPECT_NEAR(std::dynamic_pointer_cast<ICurve>(right)->Length(), half, kOverlayTolerance);
}

TEST(Buffer, OfAPointIsNearlyACircle) {
    const auto disc = std::dynamic_pointer_cast<IArea>(Point(3, 4).Buffer(1.0));
    ASSERT_TRUE(disc);
    // 120 chords per circle: the area falls short of pi by (2pi/120)^2/6 relative, about 5e-4.
    EXPECT_NEAR(disc->Area(), std::numbers::pi, 1e-3 * std::numbers::pi);
    EXPECT_NEAR(disc->Centroid()->X(), 3.0, 1e-9);
}

struct RelationCase {
    const char* name;
    const char* a;
    const char* b;
    bool disjoint, intersects, contains, within, touches;
};

class Relations : public ::testing::TestWithParam<RelationCase> {};

TEST_P(Relations, Predicates) {
    const RelationCase& c = GetParam();
    const auto a = FromWkt(c.a);
    const auto b = FromWkt(c.b);
    const auto rel = std::dynamic_pointer_cast<IRelationalOperator>(a);
    EXPECT_EQ(rel->Disjoint(*b), c.disjoint);
    EXPECT_EQ(rel->Intersects(*b), c.intersects);
    EXPECT_EQ(rel->Contains(*b), c.contains);
    EXPECT_EQ(rel->Within(*b), c.within);
    EXPECT_EQ(rel->Touches(*b), c.touches);
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, Relations,
    ::testing::Values(
        RelationCase{"PointInside", kSquare, "POINT(5 5)", false, true, true, false, false},
        RelationCase{"PointOnEdge", kSquare, "POINT(10 5)", false, true, false, false, true},
        RelationCase{"PointOutside", kSquare, "POINT(15 5)", true, false, false, false, false},
        RelationCase{"AdjacentSquares", kSquare, "POLYGON((10 0, 10 10, 20 10, 20 0, 10 0))", false, true, false,
                     false, true},
        RelationCase{"InnerSquareWithin", "POLYGON((2 2, 2 3, 3 3, 3 2, 2 2))", kSquare, false, true, false, true,
                     false},
        // A counter-clockwise ring still describes the same area to the predicates.
        RelationCase{"UnsimplifiedOrientation", "POLYGON((0 0, 10 0, 10 10, 0 10, 0 0))", "POINT(5 5)", false, true,
                     true, false, false}),
    [](const ::testing::TestParamInfo<RelationCase>& info) { return std::string(info.param.name); });

TEST(Relations, CurvesAreSeenByTheirShape) {
    const auto circle = testing::CirclePolygon(0, 0, 1, true);
    EXPECT_TRUE(circle->Contains(Point(0, 0.99)));   // inside the arc, far outside any chord polygon
    EXPECT_FALSE(circle->Contains(Point(0.8, 0.8))); // outside the circle, inside its envelope
    EXPECT_TRUE(circle->Equals(*CloneAs<IGeometry>(*circle)));
}

TEST(Boundary, OfAPolygonAndOfAPolyline) {
    const auto polygon = Wkt<Polygon>("POLYGON((0 0, 0 10, 10 10, 10 0, 0 0), (2 2, 4 2, 4 4, 2 4, 2 2))");
    const auto rings = std::dynamic_pointer_cast<Polyline>(polygon->Boundary());
    EXPECT_EQ(rings->PartCount(), 2u);
    EXPECT_DOUBLE_EQ(rings->Length(), 48.0);
    const auto ends = std::dynamic_pointer_cast<Multipoint>(Wkt<Polyline>("MULTILINESTRING((0 0, 1 0), (1 0, 2 0))")->Boundary());
    EXPECT_EQ(ends->PointCount(), 2); // the shared end counts twice and drops out
}

} // namespace
} // namespace tess
