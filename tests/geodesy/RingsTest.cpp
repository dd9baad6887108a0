#include "geodesy/Rings.h"

#include "FaultRecorder.h"
#include "GeometryBuilders.h"

#include "platform/geometry/CircularArc.h"
#include "platform/geometry/Line.h"

#include <gtest/gtest.h>

namespace tess::MyGeometricOperations {
namespace {

using namespace tess::testing;

TEST(PolygonToPolyline, OnePathPerRingExteriorsFollowedByTheirHoles) {
    const auto polygon = MakePolygon({{{0, 0}, {0, 10}, {10, 10}, {10, 0}},
                                      {{20, 0}, {20, 5}, {25, 5}, {25, 0}},
                                      {{2, 2}, {4, 2}, {4, 4}, {2, 4}}});
    const auto line = PolygonToPolyline(*polygon);
    ASSERT_TRUE(line);
    const auto& paths = dynamic_cast<const IGeometryCollection&>(*line);
    ASSERT_EQ(paths.GeometryCount(), 3);
    EXPECT_DOUBLE_EQ(line->Length(), 40.0 + 20.0 + 8.0); // planar perimeter with the hole
    EXPECT_TRUE(line->SpatialReference()->IsEqual(*Wgs84()));
    // The hole follows its exterior ring.
    EXPECT_DOUBLE_EQ(dynamic_cast<const ICurve&>(*paths.Geometry(1)).Length(), 8.0);
}

std::shared_ptr<Polygon> Circle(double radius) {
    CircularArc arc;
    arc.ConstructCircle(Point(0, 0), radius, false);
    auto ring = std::make_shared<Ring>();
    ring->AddSegment(arc);
    auto polygon = std::make_shared<Polygon>();
    polygon->AddGeometry(ring);
    polygon->SpatialReference(Wgs84());
    return polygon;
}

TEST(CurveToPolygon, StraightPolygonComesBackAsTheSameObject) {
    const std::shared_ptr<IGeometry> rectangle = MakePolygon({{{0, 0}, {0, 1}, {2, 1}, {2, 0}}});
    const auto result = CurveToPolygon(rectangle, 200);
    EXPECT_EQ(std::static_pointer_cast<IGeometry>(result), rectangle);
}

TEST(CurveToPolygon, StraightPolylineIsClosedIntoANewPolygon) {
    const std::shared_ptr<IGeometry> line = MakePolyline({{{0, 0}, {0, 1}, {1, 1}}});
    const auto polygon = CurveToPolygon(line, 200);
    ASSERT_TRUE(polygon);
    EXPECT_NE(std::static_pointer_cast<IGeometry>(polygon), line);
    EXPECT_EQ(dynamic_cast<const ISegmentCollection&>(*polygon).SegmentCount(), 3); // with the closing line
    EXPECT_NEAR(dynamic_cast<const IArea&>(*polygon).Area(), 0.5, 1e-12);
}

TEST(CurveToPolyline, StraightPolygonGivesOnePathPerRing) {
    const std::shared_ptr<IGeometry> polygon =
        MakePolygon({{{0, 0}, {0, 10}, {10, 10}, {10, 0}}, {{20, 0}, {20, 5}, {25, 5}, {25, 0}}});
    const auto line = CurveToPolyline(polygon, 200);
    ASSERT_TRUE(line);
    EXPECT_EQ(dynamic_cast<const IGeometryCollection&>(*line).GeometryCount(), 2);
    EXPECT_DOUBLE_EQ(line->Length(), 60.0);
}

TEST(CurveToPolygon, LoneCircleGetsAllThePieces) {
    const auto circle = Circle(1.0);
    const auto densified = CurveToPolygon(circle, 200);
    ASSERT_TRUE(densified);
    EXPECT_NE(std::static_pointer_cast<IGeometry>(densified), std::static_pointer_cast<IGeometry>(circle));
    EXPECT_FALSE(dynamic_cast<const ISegmentCollection&>(*densified).HasNonLinearSegments());
    EXPECT_EQ(dynamic_cast<const ISegmentCollection&>(*densified).SegmentCount(), 200);
}

TEST(CurveToPolyline, ShortCurveAmongLongLinesGetsEightPieces) {
    auto path = std::make_shared<Path>();
    path->AddSegment(Line({0, 0}, {1000, 0}));
    CircularArc bump;
    bump.PutCoordsByAngle(Point(1000.5, 0), 3.14159265358979, -3.14159265358979, 0.5);
    path->AddSegment(bump);
    path->AddSegment(Line({1001, 0}, {2000, 0}));
    auto line = std::make_shared<Polyline>();
    line->AddGeometry(path);
    const auto densified = CurveToPolyline(line, 200);
    ASSERT_TRUE(densified);
    EXPECT_EQ(dynamic_cast<const ISegmentCollection&>(*densified).SegmentCount(), 1 + 8 + 1);
}

TEST(CurveToPolygon, FailureShowsAMessageAndGivesNull) {
    FaultRecorder faults;
    const std::shared_ptr<IGeometry> point = MakePoint(1, 2);
    EXPECT_EQ(CurveToPolygon(point, 200), nullptr);
    const auto messages = faults.UI().Messages();
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].rfind("Failed in CurveToPolygon: \r\nError = Type mismatch\r\nLine Number = ", 0), 0u)
        << messages[0];
    EXPECT_EQ(faults.Count(), 0u); // not through the shared report
}

} // namespace
} // namespace tess::MyGeometricOperations
