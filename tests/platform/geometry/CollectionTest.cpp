// Points, segments and parts of shapes; enumerators; clone; snapping and projection.

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <numbers>

#include "GeometryTestSupport.h"
#include "platform/srs/SpatialReferenceEnvironment.h"

namespace tess {
namespace {

using testing::FromWkt;
using testing::PartsOf;
using testing::Wkt;

TEST(PointCollection, ClosingVertexCountsAndIndexesRunAcrossParts) {
    const auto polygon = Wkt<Polygon>("POLYGON((0 0, 0 10, 10 10, 10 0, 0 0), (2 2, 4 2, 4 4, 2 4, 2 2))");
    EXPECT_EQ(polygon->PointCount(), 10);
    EXPECT_EQ(polygon->SegmentCount(), 8);
    EXPECT_DOUBLE_EQ(polygon->Point(6)->X(), 4.0);
    WKSPoint pts[3];
    polygon->QueryWKSPoints(4, 3, pts); // across the part boundary
    EXPECT_DOUBLE_EQ(pts[0].X, 0.0);
    EXPECT_DOUBLE_EQ(pts[1].X, 2.0);
    EXPECT_DOUBLE_EQ(pts[2].X, 4.0);
    EXPECT_THROW(polygon->Point(10), Fault);
}

TEST(PointCollection, AddPointStartsAPartWhenThereIsNone) {
    Polyline line;
    line.AddPoint(Point(0, 0));
    line.AddPoint(Point(3, 4));
    EXPECT_EQ(line.GeometryCount(), 1);
    EXPECT_DOUBLE_EQ(line.Length(), 5.0);
    line.InsertWKSPoints(1, 1, std::array<WKSPoint, 1>{{{3, 0}}}.data());
    EXPECT_DOUBLE_EQ(line.Length(), 7.0);
    line.RemovePoints(1, 1);
    EXPECT_DOUBLE_EQ(line.Length(), 5.0);
}

TEST(PointCollection, SetPointCollectionCopiesParts) {
    const auto source = Wkt<Polyline>("MULTILINESTRING((0 0, 1 0), (5 5, 6 6))");
    Polyline copy;
    copy.SetPointCollection(*source);
    EXPECT_EQ(copy.GeometryCount(), 2);
    EXPECT_EQ(PartsOf(copy)[1][1].X, 6.0);
}

TEST(GeometryCollection, PartsAreLive) {
    const auto polygon = Wkt<Polygon>("POLYGON((0 0, 0 10, 10 10, 10 0, 0 0))");
    const auto ring = std::dynamic_pointer_cast<IPointCollection>(polygon->Geometry(0));
    ring->UpdatePoint(2, Point(20, 10));
    EXPECT_DOUBLE_EQ(polygon->Envelope()->XMax(), 20.0);
    const auto mp = Wkt<Multipoint>("MULTIPOINT((1 1), (2 2))");
    std::dynamic_pointer_cast<IPoint>(mp->Geometry(1))->X(7.0);
    EXPECT_DOUBLE_EQ(mp->Point(1)->X(), 7.0);
    auto bag = std::make_shared<GeometryBag>();
    bag->AddGeometry(polygon);
    std::dynamic_pointer_cast<ITransform2D>(bag->Geometry(0))->Move(1, 0);
    EXPECT_DOUBLE_EQ(polygon->Envelope()->XMin(), 1.0);
}

TEST(GeometryCollection, OtherKindsOfPartsAreConverted) {
    Polygon polygon;
    polygon.AddGeometry(FromWkt("LINESTRING(0 0, 0 1, 1 1)")); // a path becomes a closed ring
    polygon.AddGeometry(std::make_shared<Envelope>(5, 5, 6, 6));
    EXPECT_EQ(polygon.GeometryCount(), 2);
    EXPECT_EQ(polygon.Geometry(0)->GeometryType(), esriGeometryRing);
    EXPECT_TRUE(std::dynamic_pointer_cast<ICurve>(polygon.Geometry(0))->IsClosed());
    EXPECT_DOUBLE_EQ(polygon.Area(), 0.5 + 1.0);
    EXPECT_THROW(polygon.AddGeometry(std::make_shared<Point>(1, 1)), Fault);
}

TEST(SegmentCollection, AddSegmentCollectionStartsAPartAtAGap) {
    const auto a = Wkt<Polyline>("LINESTRING(0 0, 1 0)");
    a->AddSegmentCollection(*Wkt<Polyline>("LINESTRING(1 0, 2 0)")); // joins
    EXPECT_EQ(a->GeometryCount(), 1);
    a->AddSegmentCollection(*Wkt<Polyline>("LINESTRING(5 0, 6 0)")); // gap
    EXPECT_EQ(a->GeometryCount(), 2);
    EXPECT_EQ(a->SegmentCount(), 3);
    // On a path the segment joins the end whatever its start.
    Path path;
    path.AddSegment(Line({0, 0}, {1, 0}));
    path.AddSegment(Line({5, 5}, {1, 1}));
    EXPECT_EQ(path.PointCount(), 3);
}

TEST(SegmentCollection, SegmentKindsSurviveCopiesBetweenCollections) {
    const auto circle = testing::CirclePolygon(0, 0, 1, true);
    Path path;
    path.AddSegmentCollection(*std::dynamic_pointer_cast<ISegmentCollection>(circle->Geometry(0)));
    ASSERT_EQ(path.SegmentCount(), 1);
    EXPECT_EQ(path.Segment(0)->GeometryType(), esriGeometryCircularArc);
    const auto e = circle->EnumSegments();
    std::shared_ptr<ISegment> s;
    std::int32_t part = 0, index = 0;
    e->Next(s, part, index);
    EXPECT_EQ(s->GeometryType(), esriGeometryCircularArc);
    EXPECT_TRUE(e->IsLastInPart());
    e->Next(s, part, index);
    EXPECT_EQ(s, nullptr);
    EXPECT_EQ(index, -1);
}

TEST(EnumVertices, WalksPartsAndEndsWithMinusOne) {
    const auto line = Wkt<Polyline>("MULTILINESTRING((0 0, 1 0), (5 5, 6 6, 7 7))");
    const auto e = line->EnumVertices();
    Point p;
    std::int32_t part = 0, vertex = 0;
    std::vector<std::pair<int, int>> seen;
    std::vector<bool> last;
    for (e->QueryNext(p, part, vertex); vertex >= 0; e->QueryNext(p, part, vertex)) {
        seen.emplace_back(part, vertex);
        last.push_back(e->IsLastInPart());
    }
    EXPECT_EQ(seen, (std::vector<std::pair<int, int>>{{0, 0}, {0, 1}, {1, 0}, {1, 1}, {1, 2}}));
    EXPECT_EQ(last, (std::vector<bool>{false, true, false, false, true}));
    EXPECT_EQ(part, -1);
    e->Reset();
    e->QueryNext(p, part, vertex);
    EXPECT_EQ(vertex, 0);
}

TEST(EnumVertices, WritesGoThroughToTheCloneOnly) {
    const auto original = Wkt<Polygon>("POLYGON((0 0, 0 10, 10 10, 10 0, 0 0))");
    const auto shifted = CloneAs<Polygon>(*original);
    const auto e = shifted->EnumVertices();
    Point p;
    std::int32_t part = 0, vertex = 0;
    for (e->QueryNext(p, part, vertex); vertex >= 0; e->QueryNext(p, part, vertex)) {
        e->put_Y(p.Y());
        e->put_X(p.X() + 360.0);
    }
    EXPECT_DOUBLE_EQ(shifted->Envelope()->XMin(), 360.0);
    EXPECT_DOUBLE_EQ(shifted->Area(), 100.0);
    EXPECT_DOUBLE_EQ(original->Envelope()->XMin(), 0.0);
}

TEST(EnumVertices, WritingTheEndOfACurveStraightensIt) {
    Polyline line;
    CircularArc arc;
    arc.PutCoordsByAngle(Point(0, 0), 0.0, std::numbers::pi / 2.0, 1.0);
    line.AddSegment(arc);
    line.AddSegment(Line({0, 1}, {-1, 1}));
    const auto e = line.EnumVertices();
    Point p;
    std::int32_t part = 0, vertex = 0;
    e->QueryNext(p, part, vertex);
    e->QueryNext(p, part, vertex); // the arc's end
    e->put_X(0.5);
    EXPECT_EQ(line.Segment(0)->GeometryType(), esriGeometryLine);
    EXPECT_EQ(line.Segment(1)->GeometryType(), esriGeometryLine);
}

TEST(ConnectedComponents, OneBagMemberPerExteriorRingInOrderWithItsHoles) {
    // Exterior A, exterior B, then the hole of B, then the hole of A.
    const auto polygon = Wkt<Polygon>(
        "POLYGON((0 0, 0 10, 10 10, 10 0, 0 0), (20 0, 20 10, 30 10, 30 0, 20 0),"
        " (22 2, 24 2, 24 4, 22 4, 22 2), (2 2, 3 2, 3 3, 2 3, 2 2))");
    EXPECT_EQ(polygon->ExteriorRingCount(), 2);
    EXPECT_EQ(polygon->InteriorRingCount(polygon->Part(0)), 1);
    const auto bag = std::dynamic_pointer_cast<IGeometryCollection>(polygon->ConnectedComponentBag());
    ASSERT_EQ(bag->GeometryCount(), 2);
    const auto a = std::dynamic_pointer_cast<Polygon>(bag->Geometry(0));
    const auto b = std::dynamic_pointer_cast<Polygon>(bag->Geometry(1));
    EXPECT_DOUBLE_EQ(a->Area(), 99.0);
    EXPECT_DOUBLE_EQ(b->Area(), 96.0);
    EXPECT_EQ(a->GeometryCount(), 2);
    // Components are copies.
    a->Move(100, 0);
    EXPECT_DOUBLE_EQ(polygon->Envelope()->XMin(), 0.0);
    const auto exteriors = std::dynamic_pointer_cast<IGeometryCollection>(polygon->ExteriorRingBag());
    EXPECT_EQ(exteriors->GeometryCount(), 2);
    const auto holesOfB = std::dynamic_pointer_cast<IGeometryCollection>(polygon->InteriorRingBag(polygon->Part(1)));
    ASSERT_EQ(holesOfB->GeometryCount(), 1);
    EXPECT_DOUBLE_EQ(std::dynamic_pointer_cast<IArea>(holesOfB->Geometry(0))->Area(), -4.0);
}

TEST(ConnectedComponents, HoleGoesToTheSmallestSurroundingExterior) {
    const auto polygon = Wkt<Polygon>("POLYGON((0 0, 0 100, 100 100, 100 0, 0 0), (10 10, 10 20, 20 20, 20 10, 10 10),"
                                      " (12 12, 14 12, 14 14, 12 14, 12 12))");
    EXPECT_EQ(polygon->InteriorRingCount(polygon->Part(0)), 0);
    EXPECT_EQ(polygon->InteriorRingCount(polygon->Part(1)), 1);
}

TEST(ConnectedComponents, CounterClockwiseRingOutsideEveryExteriorStandsAlone) {
    // The second ring runs counter-clockwise but lies inside nothing.
    const auto polygon = Wkt<Polygon>("POLYGON((0 0, 0 10, 10 10, 10 0, 0 0), (20 0, 30 0, 30 10, 20 10, 20 0))");
    EXPECT_EQ(polygon->InteriorRingCount(polygon->Part(0)), 0);
    const auto bag = std::dynamic_pointer_cast<IGeometryCollection>(polygon->ConnectedComponentBag());
    ASSERT_EQ(bag->GeometryCount(), 2);
    EXPECT_DOUBLE_EQ(std::dynamic_pointer_cast<IArea>(bag->Geometry(1))->Area(), -100.0);
}

TEST(GeometryBagEnumeration, ResetAndNext) {
    GeometryBag bag;
    bag.AddGeometry(std::make_shared<Point>(1, 1));
    bag.AddGeometry(std::make_shared<Point>(2, 2));
    IEnumGeometry& e = bag;
    e.Reset();
    EXPECT_TRUE(e.Next());
    EXPECT_TRUE(e.Next());
    EXPECT_FALSE(e.Next());
    e.Reset();
    EXPECT_DOUBLE_EQ(std::dynamic_pointer_cast<IPoint>(e.Next())->X(), 1.0);
}

TEST(CloneAndEqual, DeepCopySameContentSharedReference) {
    const auto sr = std::make_shared<testing::FakeReference>(0, 0, 1000, 0.001);
    const auto polygon = testing::CirclePolygon(0, 0, 1, true);
    polygon->SpatialReference(sr);
    const auto copy = CloneAs<Polygon>(*polygon);
    EXPECT_TRUE(copy->IsEqual(*polygon));
    EXPECT_EQ(copy->SpatialReference(), sr);
    copy->Move(1, 0);
    EXPECT_FALSE(copy->IsEqual(*polygon));
    // Same vertices, different segment kind.
    Polygon chords;
    chords.AddGeometry(FromWkt("LINESTRING(1 0, 1 0)"));
    EXPECT_FALSE(chords.IsEqual(*polygon));
    EXPECT_FALSE(Point(1, 2).IsEqual(Point(1, 3)));
    EXPECT_TRUE(Point(1, 2).IsEqual(*Point(1, 2).Clone()));
}

TEST(Snap, RoundsToTheReferenceGrid) {
    const auto sr = std::make_shared<testing::FakeReference>(-400.0, -400.0, 1000.0, 0.001);
    const auto line = Wkt<Polyline>("LINESTRING(1.23456 -7.65432, 2.0004 3.0006)");
    line->SpatialReference(sr);
    line->SnapToSpatialReference();
    const auto v = line->Part(0).Vertices();
    // origin + round((v - origin) * units) / units, to within the rounding of that expression.
    EXPECT_NEAR(v[0].X, 1.235, 1e-12);
    EXPECT_NEAR(v[0].Y, -7.654, 1e-12);
    EXPECT_NEAR(v[1].X, 2.0, 1e-12);
    EXPECT_NEAR(v[1].Y, 3.001, 1e-12);
    Point p(0.0004, 0.0006);
    p.SnapToSpatialReference(); // no reference: nothing to snap to
    EXPECT_DOUBLE_EQ(p.X(), 0.0004);
}

class Projection : public ::testing::Test {
protected:
    SpatialReferenceEnvironment env;
};

TEST_F(Projection, PointToUtmAndBack) {
    const auto wgs84 = env.CreateGeographicCoordinateSystem(4326);
    const auto utm33 = env.CreateProjectedCoordinateSystem(32633);
    Point p(15.0, 0.0); // on the central meridian at the equator
    p.SpatialReference(wgs84);
    p.Project(utm33);
    EXPECT_NEAR(p.X(), 500000.0, 1e-3); // 1 mm
    EXPECT_NEAR(p.Y(), 0.0, 1e-3);
    EXPECT_EQ(p.SpatialReference(), utm33);
    p.Project(wgs84);
    EXPECT_NEAR(p.X(), 15.0, 1e-9); // degrees; well under a millimetre
}

TEST_F(Projection, NothingHappensWithoutAKnownReference) {
    const auto wgs84 = env.CreateGeographicCoordinateSystem(4326);
    Point p(15.0, 10.0);
    p.Project(wgs84); // no reference of its own
    EXPECT_DOUBLE_EQ(p.X(), 15.0);
    EXPECT_EQ(p.SpatialReference(), nullptr);
    p.SpatialReference(env.CreateUnknown());
    p.Project(wgs84);
    EXPECT_DOUBLE_EQ(p.X(), 15.0);
}

TEST_F(Projection, CurvesAreDensifiedFirst) {
    const auto wgs84 = env.CreateGeographicCoordinateSystem(4326);
    const auto mercator = env.CreateProjectedCoordinateSystem(3857);
    const auto circle = testing::CirclePolygon(10.0, 45.0, 1.0, true);
    circle->SpatialReference(wgs84);
    circle->Project(mercator);
    EXPECT_FALSE(circle->HasNonLinearSegments());
    EXPECT_GT(circle->PointCount(), 300); // one vertex per degree of turning at least
    EXPECT_GT(circle->Area(), 0.0);
}

} // namespace
} // namespace tess
