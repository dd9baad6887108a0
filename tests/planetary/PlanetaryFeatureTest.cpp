#include "planetary/PlanetaryLatitude.h"

#include "FaultRecorder.h"
#include "GeometryBuilders.h"

#include "platform/geometry/Envelope.h"

#include <gtest/gtest.h>

namespace tess::MyGeometricOperations {
namespace {

using namespace tess::testing;

TEST(PlanetaryFeature, ZeroAxisTakesTheSpheroidOfThePointAndKeepsIt) {
    const auto point = MakePoint(10.0, 45.0);
    double a = 0.0, b = 0.0;
    const auto converted = FeaturePlanetOCentricToPlanetOGraphic(*point, a, b, 0.0);
    const auto spheroid = Wgs84()->Datum()->Spheroid();
    EXPECT_EQ(a, spheroid->SemiMajorAxis());
    EXPECT_EQ(b, spheroid->SemiMinorAxis());
    const auto out = std::dynamic_pointer_cast<IPoint>(converted);
    ASSERT_TRUE(out);
    EXPECT_NE(out.get(), point.get());
    EXPECT_NEAR(out->Y(), 45.19242, 5e-6); // degrees
    EXPECT_EQ(out->X(), 10.0);
    EXPECT_TRUE(out->SpatialReference()->IsEqual(*Wgs84()));
}

TEST(PlanetaryFeature, VerticesOfACopyAreConvertedAndTheInputIsLeft) {
    const auto line = MakePolyline({{{0, 45}, {10, -45}, {20, 0}}});
    double a = 6378137.0, b = 6356752.31424518;
    const auto converted = FeaturePlanetOGraphicToPlanetOCentric(*line, a, b, 360.0);
    const auto& points = dynamic_cast<const IPointCollection&>(*converted);
    ASSERT_EQ(points.PointCount(), 3);
    EXPECT_EQ(points.Point(0)->X(), 360.0); // shifted, not wrapped
    EXPECT_NEAR(points.Point(0)->Y(), 44.80758, 5e-6);
    EXPECT_NEAR(points.Point(1)->Y(), -44.80758, 5e-6);
    EXPECT_EQ(points.Point(2)->Y(), 0.0);
    EXPECT_EQ(line->Point(0)->X(), 0.0);
    EXPECT_EQ(line->Point(0)->Y(), 45.0);

    const auto polygon = MakePolygon({{{0, 0}, {0, 10}, {10, 10}, {10, 0}}});
    const auto multipoint = MakeMultipoint({{1, 1}, {2, 2}});
    EXPECT_TRUE(std::dynamic_pointer_cast<IPolygon>(FeaturePlanetOCentricToPlanetOGraphic(*polygon, a, b, 0.0)));
    EXPECT_TRUE(std::dynamic_pointer_cast<IMultipoint>(FeaturePlanetOCentricToPlanetOGraphic(*multipoint, a, b, 0.0)));
}

TEST(PlanetaryFeature, ProjectedReferenceShowsTheMessageThenFails) {
    FaultRecorder faults;
    const auto point = MakePoint(500000, 4000000, SpatialReferenceEnvironment().CreateProjectedCoordinateSystem(32633));
    double a = 0.0, b = 0.0;
    EXPECT_EQ(FeaturePlanetOGraphicToPlanetOCentric(*point, a, b, 0.0), nullptr);
    const auto& log = faults.UI().Log();
    ASSERT_GE(log.size(), 2u);
    EXPECT_EQ(log[0].title, "Unexpected Spatial Reference:");
    EXPECT_EQ(log[0].text, "The function 'FeaturePlanetOgraphicToPlanetOcentric' only accepts geometries with "
                           "geographic projections.\r\nThis geometry has spatial reference 'WGS_1984_UTM_Zone_33N...");
    EXPECT_TRUE(faults.LastNames("FeaturePlanetOGraphicToPlanetOCentric ")) << faults.Last();
}

TEST(PlanetaryFeature, OtherGeometryKindsAreRefusedWithOneTextForBoth) {
    FaultRecorder faults;
    Envelope box;
    box.PutCoords(0, 0, 1, 1);
    double a = 1.0, b = 1.0;
    EXPECT_EQ(FeaturePlanetOCentricToPlanetOGraphic(box, a, b, 0.0), nullptr);
    EXPECT_EQ(FeaturePlanetOGraphicToPlanetOCentric(box, a, b, 0.0), nullptr);
    const auto messages = faults.UI().Messages();
    ASSERT_EQ(messages.size(), 2u);
    for (const auto& text : messages)
        EXPECT_EQ(text, "The function 'PlanetOCentricToPlanetOGraphic' only accepts points, polylines, polygons or "
                        "multipoints.");
    EXPECT_EQ(faults.UI().Log()[0].title, "Unexpected Geometry Type:");
    EXPECT_EQ(faults.Count(), 0u);
}

} // namespace
} // namespace tess::MyGeometricOperations
