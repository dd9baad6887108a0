#include "planetary/WrapToBoundary.h"

#include "FaultRecorder.h"
#include "GeometryBuilders.h"

#include "platform/geometry/Envelope.h"
#include "platform/system/Arrays.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tess::MyGeometricOperations {
namespace {

using namespace tess::testing;

// Coordinates here are sums and differences of whole degrees and of the 0.1 degree spacing;
// a few units in the last place of 180 cover them.
constexpr double kCoordinateTolerance = 1e-12; // degrees

WKSPoint WrappedPoint(double x, double y, double west = -180, double east = 180, double south = -90,
                      double north = 90) {
    const auto wrapped = WrapToBoundary(*MakePoint(x, y), west, east, south, north, nullptr);
    const auto point = std::dynamic_pointer_cast<IPoint>(wrapped);
    EXPECT_TRUE(point);
    return point ? WKSPoint{point->X(), point->Y()} : WKSPoint{NAN, NAN};
}

std::vector<std::vector<WKSPoint>> Parts(const IGeometry& shape) {
    std::vector<std::vector<WKSPoint>> parts;
    const auto& collection = dynamic_cast<const IGeometryCollection&>(shape);
    for (std::int32_t i = 0; i < collection.GeometryCount(); ++i) {
        const auto& points = dynamic_cast<const IPointCollection&>(*collection.Geometry(i));
        std::vector<WKSPoint> v(static_cast<std::size_t>(points.PointCount()));
        points.QueryWKSPoints(0, points.PointCount(), v.data());
        parts.push_back(v);
    }
    return parts;
}

double Area(const IGeometry& shape) { return dynamic_cast<const IArea&>(shape).Area(); }

TEST(WrapToBoundary, PointsMoveByWholeWidthsAndBothEdgesBelongToTheBox) {
    EXPECT_EQ(WrappedPoint(190, 10).X, -170);
    EXPECT_EQ(WrappedPoint(180, 10).X, 180);
    EXPECT_EQ(WrappedPoint(-180, 10).X, -180);
    EXPECT_EQ(WrappedPoint(540, 10).X, 180);  // 540 - 360 = 180 is inside: no second step
    EXPECT_EQ(WrappedPoint(-541, 10).X, 179);
    EXPECT_EQ(WrappedPoint(10, 95).Y, -85);   // wrapped, not reflected at the pole
    EXPECT_EQ(WrappedPoint(10, -90).Y, -90);
    EXPECT_EQ(WrappedPoint(350, 0, 0, 360).X, 350);
    EXPECT_EQ(WrappedPoint(-10, 0, 0, 360).X, 350);
}

TEST(WrapToBoundary, PointKeepsItsReferenceAndIsANewObject) {
    const auto point = MakePoint(190, 0);
    const auto wrapped = WrapToBoundary(*point, -180, 180, -90, 90, nullptr);
    ASSERT_TRUE(wrapped);
    EXPECT_NE(wrapped.get(), point.get());
    EXPECT_EQ(point->X(), 190);
    EXPECT_TRUE(wrapped->SpatialReference()->IsEqual(*Wgs84()));
}

TEST(WrapToBoundary, PolylineAcrossTheEdgeBecomesTwoPartsOfOneShape) {
    const auto line = MakePolyline({{{170, 10}, {190, 10}}});
    const auto wrapped = WrapToBoundary(*line, -180, 180, -90, 90, nullptr);
    ASSERT_TRUE(std::dynamic_pointer_cast<IPolyline>(wrapped));
    auto parts = Parts(*wrapped);
    ASSERT_EQ(parts.size(), 2u);
    std::sort(parts.begin(), parts.end(), [](const auto& a, const auto& b) { return a.front().X < b.front().X; });
    // The western piece starts at -180, the eastern one ends at 180.
    ASSERT_EQ(parts[0].size(), 2u);
    EXPECT_NEAR(std::min(parts[0][0].X, parts[0][1].X), -180, kCoordinateTolerance);
    EXPECT_NEAR(std::max(parts[0][0].X, parts[0][1].X), -170, kCoordinateTolerance);
    ASSERT_EQ(parts[1].size(), 2u);
    EXPECT_NEAR(std::min(parts[1][0].X, parts[1][1].X), 170, kCoordinateTolerance);
    EXPECT_NEAR(std::max(parts[1][0].X, parts[1][1].X), 180, kCoordinateTolerance);
    EXPECT_TRUE(wrapped->SpatialReference());
}

TEST(WrapToBoundary, PolygonAcrossTheEdgeIsCutWithDenseEdgesAndKeepsItsArea) {
    // 2 degrees east-west by 1 north-south, straddling 180.
    const auto polygon = MakePolygon({{{179, 0}, {179, 1}, {181, 1}, {181, 0}}});
    const auto wrapped = WrapToBoundary(*polygon, -180, 180, -90, 90, nullptr);
    ASSERT_TRUE(std::dynamic_pointer_cast<IPolygon>(wrapped));
    const auto rings = Parts(*wrapped);
    ASSERT_EQ(rings.size(), 2u);
    EXPECT_NEAR(Area(*wrapped), Area(*polygon), 1e-12 * Area(*polygon));
    for (const auto& ring : rings) {
        // The cut edge lies on -180 or 180 and carries a vertex every 0.1 degree of its 1 degree
        // (the closing vertex repeats the first, so latitudes are counted once).
        std::vector<double> onEdge;
        for (std::size_t i = 0; i + 1 < ring.size(); ++i) {
            const WKSPoint& p = ring[i];
            EXPECT_GE(p.X, -180 - kCoordinateTolerance);
            EXPECT_LE(p.X, 180 + kCoordinateTolerance);
            if (std::abs(std::abs(p.X) - 180) < kCoordinateTolerance)
                onEdge.push_back(p.Y);
        }
        std::sort(onEdge.begin(), onEdge.end());
        ASSERT_EQ(onEdge.size(), 11u) << "ring starting at " << ring.front().X; // 0, 0.1 ... 1
        for (std::size_t i = 0; i < onEdge.size(); ++i)
            EXPECT_NEAR(onEdge[i], 0.1 * static_cast<double>(i), kCoordinateTolerance);
    }
}

TEST(WrapToBoundary, ShapeInsideTheBoxComesBackUnchangedInArea) {
    const auto polygon = MakePolygon({{{10, 10}, {10, 20}, {20, 20}, {20, 10}}});
    const auto wrapped = WrapToBoundary(*polygon, -180, 180, -90, 90, nullptr);
    ASSERT_TRUE(wrapped);
    EXPECT_NE(wrapped.get(), polygon.get());
    EXPECT_DOUBLE_EQ(Area(*wrapped), 100);
    EXPECT_EQ(Parts(*wrapped)[0].size(), 5u); // no edge touched, nothing densified
}

TEST(WrapToBoundary, ShapeFarOutsideIsBroughtHomeInOnePiece) {
    const auto multipoint = MakeMultipoint({{370, 95}, {375, 100}, {-350, -95}});
    const auto wrapped = WrapToBoundary(*multipoint, -180, 180, -90, 90, nullptr);
    ASSERT_TRUE(std::dynamic_pointer_cast<IMultipoint>(wrapped));
    const auto& points = dynamic_cast<const IPointCollection&>(*wrapped);
    ASSERT_EQ(points.PointCount(), 3);
    std::vector<std::pair<double, double>> got;
    for (std::int32_t i = 0; i < 3; ++i)
        got.emplace_back(points.Point(i)->X(), points.Point(i)->Y());
    std::sort(got.begin(), got.end());
    EXPECT_EQ(got[0], std::make_pair(10.0, -85.0));
    EXPECT_EQ(got[1], std::make_pair(10.0, 85.0));
    EXPECT_EQ(got[2], std::make_pair(15.0, -80.0));
}

TEST(WrapToBoundary, VerticalLineOnTheWesternEdgeFindsNoTileAndComesBackEmpty) {
    const auto line = MakePolyline({{{-180, 0}, {-180, 10}}});
    FaultRecorder faults;
    const auto wrapped = WrapToBoundary(*line, -180, 180, -90, 90, nullptr);
    ASSERT_TRUE(wrapped);
    EXPECT_TRUE(wrapped->IsEmpty());
    EXPECT_EQ(faults.Count(), 0u);
}

TEST(WrapToBoundary, OtherShapeKindsAndBoxesWithoutWidthAreFaultsOfTheRoutine) {
    FaultRecorder faults;
    Envelope box(0, 0, 1, 1);
    EXPECT_EQ(WrapToBoundary(box, -180, 180, -90, 90, nullptr), nullptr);
    EXPECT_TRUE(faults.LastNames("WrapToBoundary ")) << faults.Last();
    // A box that is no box would tile forever; it is refused instead.
    EXPECT_EQ(WrapToBoundary(*MakePoint(0, 0), 10, 10, -90, 90, nullptr), nullptr);
    EXPECT_EQ(WrapToBoundary(*MakePoint(0, 0), -180, 180, 90, -90, nullptr), nullptr);
    EXPECT_EQ(faults.Count(), 3u);
}

TEST(ShiftPointsToWrapBoundary, MovesByMinusTheTileOffset) {
    auto line = MakePolyline({{{370, 5}, {380, 6}}});
    DoubleArray shift;
    shift.Add(360);
    shift.Add(-180);
    ShiftPointsToWrapBoundary(*line, shift);
    EXPECT_EQ(line->Point(0)->X(), 10);
    EXPECT_EQ(line->Point(0)->Y(), 185);
    EXPECT_EQ(line->Point(1)->X(), 20);
}

TEST(FeatureLongitudeShift, ShiftsXOfEveryVertexOfACopyOnly) {
    const auto point = MakePoint(10, 20);
    const auto shifted = std::dynamic_pointer_cast<IPoint>(FeatureLongitudeShift(*point, -190));
    ASSERT_TRUE(shifted);
    EXPECT_EQ(shifted->X(), -180);
    EXPECT_EQ(shifted->Y(), 20);
    EXPECT_TRUE(shifted->SpatialReference()->IsEqual(*Wgs84()));

    const auto polygon = MakePolygon({{{0, 0}, {0, 1}, {1, 1}, {1, 0}}});
    const auto moved = FeatureLongitudeShift(*polygon, 360);
    ASSERT_TRUE(std::dynamic_pointer_cast<IPolygon>(moved));
    const auto& points = dynamic_cast<const IPointCollection&>(*moved);
    for (std::int32_t i = 0; i < points.PointCount(); ++i) {
        EXPECT_EQ(points.Point(i)->X(), polygon->Point(i)->X() + 360);
        EXPECT_EQ(points.Point(i)->Y(), polygon->Point(i)->Y());
    }
    EXPECT_EQ(polygon->Point(0)->X(), 0);
}

TEST(FeatureLongitudeShift, OtherShapeKindsGetTheMessageAndNothing) {
    FaultRecorder faults;
    Envelope box(0, 0, 1, 1);
    EXPECT_EQ(FeatureLongitudeShift(box, 10), nullptr);
    ASSERT_EQ(faults.UI().Messages().size(), 1u);
    EXPECT_EQ(faults.UI().Messages()[0], "The function 'FeatureLongitudeShift' only accepts points, polylines, "
                                         "polygons or multipoints.");
    EXPECT_EQ(faults.UI().Log()[0].title, "Unexpected Geometry Type:");
}

TEST(WrapToBoundary, ShiftPastTheBoxIsUndoneByTheWrap) {
    const auto line = MakePolyline({{{-170, 0}, {-160, 5}}});
    const auto shifted = FeatureLongitudeShift(*line, 720);
    ASSERT_TRUE(shifted);
    const auto wrapped = WrapToBoundary(*shifted, -180, 180, -90, 90, nullptr);
    ASSERT_TRUE(wrapped);
    const auto parts = Parts(*wrapped);
    ASSERT_EQ(parts.size(), 1u);
    ASSERT_EQ(parts[0].size(), 2u);
    const double west = std::min(parts[0][0].X, parts[0][1].X);
    const double east = std::max(parts[0][0].X, parts[0][1].X);
    EXPECT_NEAR(west, -170, kCoordinateTolerance);
    EXPECT_NEAR(east, -160, kCoordinateTolerance);
}

} // namespace
} // namespace tess::MyGeometricOperations
