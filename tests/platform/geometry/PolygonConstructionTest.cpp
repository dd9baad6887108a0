// Polygons from line work: what is a region, what a cluster tolerance closes, and the two ways
// it can act.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "GeometryTestSupport.h"
#include "platform/geometry/PolygonConstruction.h"

namespace tess {
namespace {

using testing::Wkt;

std::vector<std::shared_ptr<IGeometry>> Lines(std::initializer_list<const char*> wkts) {
    std::vector<std::shared_ptr<IGeometry>> out;
    for (const char* w : wkts) out.push_back(testing::FromWkt(w));
    return out;
}

double AreaOf(const IPolygon& p) { return dynamic_cast<const IArea&>(p).Area(); }

std::vector<double> SortedAreas(const std::vector<std::shared_ptr<IPolygon>>& polygons) {
    std::vector<double> areas;
    for (const auto& p : polygons) areas.push_back(AreaOf(*p));
    std::sort(areas.begin(), areas.end());
    return areas;
}

// Areas here are sums of products of small integers and halves: exact in doubles but for the
// engine's noding, which can shift a crossing by a few ulps of coordinates near 10.
constexpr double kAreaTol = 1e-9;

TEST(PolygonConstruction, LinesThatCrossOnceBoundNothing) {
    EXPECT_TRUE(ConstructPolygonsFromLines(Lines({"LINESTRING (0 0, 10 10)", "LINESTRING (0 10, 10 0)"}), 0.0).empty());
    EXPECT_TRUE(ConstructPolygonsFromLines({}, 1.0).empty());
}

TEST(PolygonConstruction, OpenLinesThatCrossMakeTheRegionBetweenThem) {
    // Four lines overshooting each other make a square; the overshoots are dangles.
    const auto polygons = ConstructPolygonsFromLines(
        Lines({"LINESTRING (-1 0, 11 0)", "LINESTRING (10 -1, 10 11)", "LINESTRING (11 10, -1 10)",
               "LINESTRING (0 11, 0 -1)"}),
        0.0);
    ASSERT_EQ(polygons.size(), 1u);
    EXPECT_NEAR(AreaOf(*polygons[0]), 100.0, kAreaTol);
    // Exterior rings are clockwise, so the area is positive.
    EXPECT_TRUE(polygons[0]->QueryExteriorRings().front()->IsExterior());
}

TEST(PolygonConstruction, SharedBoundaryMakesTwoRegionsOnce) {
    // Two squares drawn as closed lines along a common side: the side counts once, not as a sliver.
    const auto polygons = ConstructPolygonsFromLines(
        Lines({"LINESTRING (0 0, 0 10, 10 10, 10 0, 0 0)", "LINESTRING (10 0, 10 10, 20 10, 20 0, 10 0)"}), 0.0);
    EXPECT_EQ(SortedAreas(polygons), (std::vector<double>{100.0, 100.0}));
}

TEST(PolygonConstruction, InnerRingOfLinesMakesAHoleAndAnIsland) {
    const auto polygons = ConstructPolygonsFromLines(
        Lines({"LINESTRING (0 0, 0 10, 10 10, 10 0, 0 0)", "LINESTRING (3 3, 3 6, 6 6)", "LINESTRING (6 6, 6 3, 3 3)"}),
        0.0);
    ASSERT_EQ(polygons.size(), 2u);
    const auto areas = SortedAreas(polygons);
    EXPECT_NEAR(areas[0], 9.0, kAreaTol);
    EXPECT_NEAR(areas[1], 91.0, kAreaTol);
    for (const auto& p : polygons)
        if (std::abs(AreaOf(*p) - 91.0) < 1.0) {
            EXPECT_EQ(p->ExteriorRingCount(), 1);
            EXPECT_EQ(dynamic_cast<IGeometryCollection&>(*p).GeometryCount(), 2); // the ring and its hole
        }
}

// A square whose right side stops short of the top by `gap` (an undershoot onto a segment), and
// whose top and left sides leave an end-to-end gap of `gap` at the top-left corner.
std::vector<std::shared_ptr<IGeometry>> GappySquare(double gap) {
    auto line = [](std::vector<WKSPoint> pts) {
        auto polyline = std::make_shared<Polyline>();
        polyline->AddWKSPoints(static_cast<std::int32_t>(pts.size()), pts.data());
        return std::static_pointer_cast<IGeometry>(polyline);
    };
    return {line({{0, 0}, {10, 0}}), line({{10, 0}, {10, 10 - gap}}), line({{12, 10}, {gap, 10}}),
            line({{0, 10}, {0, 0}})};
}

TEST(PolygonConstruction, GapsUnderTheToleranceCloseAndGapsOverItStayOpen) {
    EXPECT_TRUE(ConstructPolygonsFromLines(GappySquare(0.05), 0.0).empty());
    const auto closed = ConstructPolygonsFromLines(GappySquare(0.05), 0.1);
    ASSERT_EQ(closed.size(), 1u);
    // The end-to-end gap closes at the first vertex of the pair, (0.05, 10); the top takes the
    // undershooting end (10, 9.95) as a vertex: the region is (0 0, 10 0, 10 9.95, 0.05 10).
    EXPECT_NEAR(AreaOf(*closed[0]), (99.5 + 100.0 - 0.05 * 9.95) / 2.0, 1e-9);
    EXPECT_TRUE(ConstructPolygonsFromLines(GappySquare(0.15), 0.1).empty());
    // Only what is closer than the tolerance comes together; 0.125 is exact in binary.
    EXPECT_TRUE(ConstructPolygonsFromLines(GappySquare(0.125), 0.125).empty());
    EXPECT_EQ(ConstructPolygonsFromLines(GappySquare(0.125), 0.126).size(), 1u);
}

TEST(PolygonConstruction, SnapRoundingMovesLineWorkToTheGrid) {
    // Snap-rounding with cells 1 wide puts every vertex on whole numbers: a square of side 9.6
    // becomes one of side 10, where snapping vertices keeps it exact.
    const auto lines = Lines({"LINESTRING (0.2 0.2, 0.2 9.8, 9.8 9.8, 9.8 0.2, 0.2 0.2)"});
    const auto snapped = ConstructPolygonsFromLines(lines, 1.0, ClusterMethod::SnapVertices);
    const auto rounded = ConstructPolygonsFromLines(lines, 1.0, ClusterMethod::SnapRound);
    ASSERT_EQ(snapped.size(), 1u);
    ASSERT_EQ(rounded.size(), 1u);
    EXPECT_NEAR(AreaOf(*snapped[0]), 9.6 * 9.6, 1e-9);
    EXPECT_NEAR(AreaOf(*rounded[0]), 100.0, 1e-9);
}

TEST(PolygonConstruction, NearVerticesMergeIntoTheFirst) {
    // A triangle whose closing vertex misses its start by 0.01: with tolerance it closes at the
    // start, so the area is that of the triangle through the first vertex.
    const auto polygons =
        ConstructPolygonsFromLines(Lines({"LINESTRING (0 0, 4 0, 0 3, 0.01 0)"}), 0.02);
    ASSERT_EQ(polygons.size(), 1u);
    EXPECT_NEAR(AreaOf(*polygons[0]), 6.0, 1e-12);
}

TEST(PolygonConstruction, PolygonsGiveTheirRingsAndPointsAreRefused) {
    EXPECT_EQ(ConstructPolygonsFromLines({testing::FromWkt("POLYGON ((0 0, 0 1, 1 1, 1 0, 0 0))")}, 0.0).size(), 1u);
    EXPECT_THROW(ConstructPolygonsFromLines({testing::FromWkt("POINT (1 1)")}, 0.0), Fault);
    EXPECT_THROW(ConstructPolygonsFromLines(GappySquare(0.0), -1.0), Fault);
    EXPECT_THROW(ConstructPolygonsFromLines(GappySquare(0.0), std::nan("")), Fault);
}

} // namespace
} // namespace tess
