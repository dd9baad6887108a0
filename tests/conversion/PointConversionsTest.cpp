// Label points, centroids and spherical centroids on datasets made in
// temporary folders: where the points fall, their fields, each kind of output,
// the skipped features, and the refusals and failures of bad input.

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "ConversionFixtures.h"
#include "conversion/modCreateVertices.h"
#include "geodesy/GeodesyConstants.h"
#include "platform/geometry/Envelope.h"
#include "support/ModelessFrame.h"
#include "support/ProgressForm.h"

namespace tess::test {
namespace {

constexpr double kDegree = std::numbers::pi / 180.0;
// X_Coord and Y_Coord are dBASE numbers with 8 decimals.
constexpr double kFieldTolerance = 0.5e-8; // coordinate units
// A file geodatabase keeps coordinates on its grid: about 1.2e-4 m for projected data, and a few
// billionths of a degree for geographic data. Shapefiles and GeoPackages keep the doubles.
constexpr double kStorageTolerance = 2.5e-4; // coordinate units

//! One output point as read back.
struct PointRecord {
    double x = 0, y = 0;
    double xField = 0, yField = 0;
    std::int32_t id = 0;
    std::string name; //!< the carried NAME, when there is one
};

std::vector<PointRecord> ReadPoints(IFeatureClass& output) {
    std::vector<PointRecord> records;
    const std::int32_t nameIndex = output.FindField("NAME");
    for (const auto& feature : FeaturesOf(output)) {
        PointRecord r;
        auto point = std::dynamic_pointer_cast<IPoint>(feature->Shape());
        EXPECT_TRUE(point && !point->IsEmpty());
        if (point)
            point->QueryCoords(r.x, r.y);
        r.xField = feature->Value(output.FindField("X_Coord")).ToDouble();
        r.yField = feature->Value(output.FindField("Y_Coord")).ToDouble();
        r.id = feature->Value(output.FindField("Uniq_ID")).ToLong();
        if (nameIndex >= 0)
            r.name = feature->Value(nameIndex).ToString();
        records.push_back(r);
    }
    return records;
}

//! Points on a circle from one angle to another (degrees), both ends included.
std::vector<WKSPoint> Arc(double cx, double cy, double r, double fromDeg, double toDeg, int pieces) {
    std::vector<WKSPoint> points;
    for (int i = 0; i <= pieces; ++i) {
        const double a = (fromDeg + (toDeg - fromDeg) * i / pieces) * kDegree;
        points.push_back({cx + r * std::cos(a), cy + r * std::sin(a)});
    }
    return points;
}

//! A thin crescent opening to the left: the right half of a circle of radius 10 about the origin,
//! less a circle of radius sqrt(104) about (-2, 0) that meets it at (0, 10) and (0, -10).
std::shared_ptr<Polygon> Crescent() {
    std::vector<WKSPoint> ring = Arc(0, 0, 10, 90, -90, 60); // clockwise, down the right side
    const double innerRadius = std::sqrt(104.0);
    const double tip = std::atan2(10.0, 2.0) / kDegree;
    std::vector<WKSPoint> inner = Arc(-2, 0, innerRadius, -tip, tip, 60); // and back up inside it
    ring.insert(ring.end(), inner.begin() + 1, inner.end() - 1);
    ring.push_back(ring.front());
    return MakePolygon({ring});
}

bool Inside(const IGeometry& polygon, double x, double y) {
    return dynamic_cast<const IRelationalOperator&>(polygon).Contains(Point(x, y));
}

class PointConversionsTest : public ConversionTest {};

TEST_F(PointConversionsTest, ACrescentsCentroidLiesOutsideItAndItsLabelPointInsideInEveryKindOfOutput) {
    auto shapes = CreateClass(*input_, "moons", esriGeometryPolygon, Utm33N(), {MakeField("NAME", esriFieldTypeString, 10)});
    const auto crescent = Crescent();
    AddFeature(*shapes, crescent, {{"NAME", Variant("luna")}});
    AddFeature(*shapes, MakePolygon({Square(100, 100, 4, true)}), {{"NAME", Variant("box")}});
    auto layer = AddLayer(shapes, "moons");

    for (const OutputPlace& place : MakeOutputPlaces(dir_)) {
        SCOPED_TRACE(place.label);
        OutputKind(place.directoryType);
        Run(&ConvertToCentroids, layer, SelectFields(*shapes, {"NAME"}), true, place.Path("centres"));
        Run(&ConvertToLabelPoints, layer, SelectFields(*shapes, {"NAME"}), true, place.Path("labels"));
        ASSERT_TRUE(ui_->Errors().empty()) << ui_->Errors().front();

        const auto centres = ReadPoints(*place.Open("centres"));
        const auto labels = ReadPoints(*place.Open("labels"));
        ASSERT_EQ(centres.size(), 2u);
        ASSERT_EQ(labels.size(), 2u);
        EXPECT_FALSE(Inside(*crescent, centres[0].x, centres[0].y)) << centres[0].x << " " << centres[0].y;
        EXPECT_TRUE(Inside(*crescent, labels[0].x, labels[0].y)) << labels[0].x << " " << labels[0].y;
        // The centroid is the area-weighted centre: on the axis of symmetry, where the polygon says.
        WKSPoint expected;
        crescent->Centroid()->QueryCoords(expected.X, expected.Y);
        EXPECT_NEAR(centres[0].x, expected.X, kStorageTolerance);
        EXPECT_NEAR(centres[0].y, 0.0, kStorageTolerance);
        EXPECT_NEAR(centres[1].x, 102.0, kStorageTolerance);
        EXPECT_NEAR(centres[1].y, 102.0, kStorageTolerance);
        for (const auto* records : {&centres, &labels}) {
            for (std::size_t i = 0; i < records->size(); ++i) {
                const PointRecord& r = (*records)[i];
                EXPECT_EQ(r.id, static_cast<std::int32_t>(i + 1));
                EXPECT_NEAR(r.xField, r.x, kFieldTolerance + kStorageTolerance);
                EXPECT_NEAR(r.yField, r.y, kFieldTolerance + kStorageTolerance);
                EXPECT_EQ(r.name, i == 0 ? "luna" : "box");
            }
        }
    }
}

TEST_F(PointConversionsTest, APolylinesCentroidIsHalfWayAlongAllItsPartsInOrder) {
    auto lines = CreateClass(*input_, "lines", esriGeometryPolyline, Utm33N());
    // Two parts of equal length: half-way is where the first ends (or the second starts).
    AddFeature(*lines, MakePolyline({{{0, 0}, {10, 0}}, {{20, 5}, {20, 15}}}));
    // One part of 3 + 4 + 3: half-way is in the middle of the middle segment.
    AddFeature(*lines, MakePolyline({{{0, 0}, {0, 3}, {4, 3}, {4, 0}}}));
    auto layer = AddLayer(lines, "lines");
    OutputKind("Shapefile");
    const std::string report = Run(&ConvertToCentroids, layer, nullptr, true, dir_ / "out/mid.shp");

    const auto points = ReadPoints(*ShapefileFolder(dir_ / "out")->OpenFeatureClass("mid"));
    ASSERT_EQ(points.size(), 2u);
    const bool endOfFirst = points[0].x == 10.0 && points[0].y == 0.0;
    const bool startOfSecond = points[0].x == 20.0 && points[0].y == 5.0;
    EXPECT_TRUE(endOfFirst || startOfSecond) << points[0].x << " " << points[0].y;
    EXPECT_DOUBLE_EQ(points[1].x, 2.0);
    EXPECT_DOUBLE_EQ(points[1].y, 3.0);
    EXPECT_NE(report.find(R"(  ** Contains 2 centroids\par)"), std::string::npos) << report;
}

TEST_F(PointConversionsTest, AMultipointsCentroidIsThePlainMeanWithRepeatedPointsCountedEachTime) {
    auto clusters = CreateClass(*input_, "clusters", esriGeometryMultipoint, Utm33N());
    AddFeature(*clusters, MakeMultipoint({{0, 0}, {0, 0}, {3, 6}}));
    AddFeature(*clusters, MakeMultipoint({{7, -2}}));
    auto layer = AddLayer(clusters, "clusters");
    OutputKind("Shapefile");
    Run(&ConvertToCentroids, layer, nullptr, true, dir_ / "out/c.shp");

    const auto points = ReadPoints(*ShapefileFolder(dir_ / "out")->OpenFeatureClass("c"));
    ASSERT_EQ(points.size(), 2u);
    EXPECT_DOUBLE_EQ(points[0].x, 1.0); // not 1.5: the origin counts twice
    EXPECT_DOUBLE_EQ(points[0].y, 2.0);
    EXPECT_DOUBLE_EQ(points[1].x, 7.0);
    EXPECT_DOUBLE_EQ(points[1].y, -2.0);
}

TEST_F(PointConversionsTest, EmptyAndNullShapesAreSkippedAndListedUnderTheRunsHeading) {
    auto parcels = CreateClass(*input_, "parcels", esriGeometryPolygon, Utm33N());
    AddFeature(*parcels, MakePolygon({Square(0, 0, 2, true)}));
    AddFeature(*parcels, std::make_shared<Polygon>());
    AddFeature(*parcels, nullptr);
    AddFeature(*parcels, MakePolygon({Square(10, 0, 2, true)}));
    auto layer = AddLayer(parcels, "parcels");
    OutputKind("Shapefile");

    struct Case {
        ConversionTest::Worker worker;
        const char* output;
        const char* heading;
        const char* count;
    };
    const Case cases[] = {
        {&ConvertToLabelPoints, "labels", R"(\b Empty Polygons Found:\b0  These features were skipped in the analysis...\par)",
         R"(  ** Contains 2 label points\par)"},
        {&ConvertToCentroids, "centres", R"(\b Empty Geometries Found:\b0  These features were skipped in the analysis...\par)",
         R"(  ** Contains 2 centroids\par)"},
        {&ConvertToSphericalCentroid, "spherical",
         R"(\b Empty Features Found:\b0  These features were skipped in the analysis...\par)",
         R"(  ** Contains 2 spherical centroids\par)"},
    };
    const std::string crlf = "\r\n";
    for (const Case& c : cases) {
        SCOPED_TRACE(c.output);
        const std::string report = Run(c.worker, layer, nullptr, true, dir_ / ("out/" + std::string(c.output) + ".shp"));
        ASSERT_TRUE(ui_->Errors().empty()) << ui_->Errors().front();
        const auto points = ReadPoints(*ShapefileFolder(dir_ / "out")->OpenFeatureClass(c.output));
        ASSERT_EQ(points.size(), 2u);
        EXPECT_EQ(points[1].id, 2); // numbered without gaps
        EXPECT_NE(report.find(c.count), std::string::npos) << report;
        EXPECT_NE(report.find(std::string(c.heading) + crlf + R"(  ** OID Value = 1\par)" + crlf +
                              R"(  ** OID Value = 2\par)" + crlf + crlf +
                              R"(\b ---------------------------------------------\b0\par)" + crlf),
                  std::string::npos)
            << report;
    }
    EXPECT_EQ(parcels->FeatureCount(nullptr), 4);
}

TEST_F(PointConversionsTest, APointLayerFailsWithTheFailureReportAndIsLeftAsItWas) {
    auto wells = CreateClass(*input_, "wells", esriGeometryPoint, Utm33N());
    AddFeature(*wells, std::make_shared<Point>(1.0, 2.0));
    auto layer = AddLayer(wells, "wells");
    OutputKind("Shapefile");

    struct Case {
        ConversionTest::Worker worker;
        const char* title;
        const char* function;
        const char* error;
    };
    // Label points read every shape as a polygon; centroids have no branch for points and nothing
    // to write.
    const Case cases[] = {
        {&ConvertToLabelPoints, "Polygons to Label Points", "ConvertToLabelPoints", "Error 13:  Type mismatch"},
        {&ConvertToCentroids, "Shapes to Centroids", "ConvertToCentroids",
         "Error 91:  Object variable or With block variable not set"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.function);
        ui_->Clear();
        const std::string report = Run(c.worker, layer, nullptr, true, dir_ / "out/bad.shp", false);
        EXPECT_NE(report.find(std::string("!!!  ") + c.title + R"( Failed  !!!\par)"), std::string::npos) << report;
        EXPECT_NE(report.find(std::string("Function = ") + c.function + R"(\par)"), std::string::npos) << report;
        EXPECT_NE(report.find(c.error), std::string::npos) << report;
        EXPECT_NE(report.find(R"(Analyzing Record #1\par)"), std::string::npos) << report;
        EXPECT_EQ(ui_->Errors().size(), 1u);
        std::filesystem::remove(dir_ / "out/bad.shp");
        std::filesystem::remove(dir_ / "out/bad.shx");
        std::filesystem::remove(dir_ / "out/bad.dbf");
        std::filesystem::remove(dir_ / "out/bad.prj");
        std::filesystem::remove(dir_ / "out/bad.cpg");
    }
    ASSERT_EQ(wells->FeatureCount(nullptr), 1);
    auto point = std::dynamic_pointer_cast<IPoint>(FeaturesOf(*wells).front()->Shape());
    EXPECT_EQ(point->X(), 1.0);
    EXPECT_EQ(point->Y(), 2.0);
}

TEST_F(PointConversionsTest, TheCentroidsProgressWindowRepeatsTheSphericalWordsInItsLoop) {
    auto parcels = CreateClass(*input_, "parcels", esriGeometryPolygon, Utm33N());
    AddFeature(*parcels, MakePolygon({Square(0, 0, 2, true)}));
    auto layer = AddLayer(parcels, "parcels");
    OutputKind("Shapefile");
    auto ui = std::make_shared<ProgressUI>(ui_);
    auto previous = SetUI(ui);
    Run(&ConvertToCentroids, layer, nullptr, true, dir_ / "out/c.shp", true, SteppingClock());
    SetUI(previous);
    auto* window = dynamic_cast<ProgressForm*>(ui->window);
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(window->Ctl("txtDetails").Text.rfind("Began Job: \r\nCalculating Centroids...", 0), 0u);
    EXPECT_EQ(window->Ctl("lblIndex").Caption, "Calculating Spherical Centroids...");
    window->Frame().Visible(false);
}

// ------------------------------------------------------------------ spherical centroids

namespace geo = MyGeometricOperations;

std::shared_ptr<ISpatialReference> Wgs84() { return SpatialReferenceEnvironment().CreateGeographicCoordinateSystem(4326); }

class SphericalCentroidsTest : public ConversionTest {};

TEST_F(SphericalCentroidsTest, ACapAboutThePoleHasItsCentreOnTheAxis) {
    // The cap north of 80 degrees, stored in longitude and latitude as the band it is on the map:
    // along the 80th parallel, up the antimeridian, back along the pole, clockwise.
    std::vector<WKSPoint> ring;
    for (int lon = 180; lon >= -180; lon -= 5)
        ring.push_back({static_cast<double>(lon), 80.0});
    ring.push_back({-180.0, 90.0});
    ring.push_back({180.0, 90.0});
    ring.push_back(ring.front());
    auto caps = CreateClass(*input_, "caps", esriGeometryPolygon, Wgs84());
    AddFeature(*caps, MakePolygon({ring}));
    auto layer = AddLayer(caps, "caps");
    OutputKind("Shapefile");
    Run(&ConvertToSphericalCentroid, layer, nullptr, true, dir_ / "out/s.shp");
    ASSERT_TRUE(ui_->Errors().empty()) << ui_->Errors().front();
    const auto points = ReadPoints(*ShapefileFolder(dir_ / "out")->OpenFeatureClass("s"));
    ASSERT_EQ(points.size(), 1u);
    // The planar centre of the band is at latitude 85; on the sphere the centre of mass is the
    // pole. The centre is a mean of flat triangles spun about the band's planar centre, not about
    // the pole, which leaves it 0.013 degrees (1.5 km) off the axis for a cap this size.
    EXPECT_NEAR(points[0].y, 90.0, 0.02) << points[0].x; // degrees
}

TEST_F(SphericalCentroidsTest, ACapAboutAPointOfTheEquatorHasItsCentreThere) {
    // Every point 10 degrees of arc from (20, 0), clockwise: symmetric about both the equator and
    // the 20th meridian, so its centre lies on both, whatever the weighting of its triangles.
    std::vector<WKSPoint> ring;
    const double radius = 10.0 * kDegree;
    for (int bearing = 0; bearing <= 360; bearing += 5) {
        const double b = bearing * kDegree;
        const double lat = std::asin(std::sin(radius) * std::cos(b));
        const double lon = 20.0 * kDegree + std::atan2(std::sin(b) * std::sin(radius), std::cos(radius));
        ring.push_back({lon / kDegree, lat / kDegree});
    }
    ring.back() = ring.front();
    auto caps = CreateClass(*input_, "caps", esriGeometryPolygon, Wgs84());
    AddFeature(*caps, MakePolygon({ring}));
    auto layer = AddLayer(caps, "caps");
    OutputKind("Shapefile");
    Run(&ConvertToSphericalCentroid, layer, nullptr, true, dir_ / "out/s.shp");
    const auto points = ReadPoints(*ShapefileFolder(dir_ / "out")->OpenFeatureClass("s"));
    ASSERT_EQ(points.size(), 1u);
    EXPECT_NEAR(points[0].x, 20.0, 1e-9); // degrees: rounding of the sums only
    EXPECT_NEAR(points[0].y, 0.0, 1e-9);
}

TEST_F(SphericalCentroidsTest, ProjectedDataGivesLongitudesAndLatitudesInItsGeographicSystem) {
    auto blocks = CreateClass(*input_, "blocks", esriGeometryPolygon, Utm33N(), {MakeField("NAME", esriFieldTypeString, 8)});
    AddFeature(*blocks, MakePolygon({Square(500000, 5000000, 1000, true)}), {{"NAME", Variant("one")}});
    auto layer = AddLayer(blocks, "blocks");
    for (const OutputPlace& place : MakeOutputPlaces(dir_)) {
        SCOPED_TRACE(place.label);
        OutputKind(place.directoryType);
        const std::string report =
            Run(&ConvertToSphericalCentroid, layer, SelectFields(*blocks, {"NAME"}), true, place.Path("centre"));
        ASSERT_TRUE(ui_->Errors().empty()) << ui_->Errors().front();
        auto output = place.Open("centre");
        auto reference = std::dynamic_pointer_cast<IGeoDataset>(output)->SpatialReference();
        ASSERT_TRUE(std::dynamic_pointer_cast<IGeographicCoordinateSystem>(reference));
        EXPECT_EQ(reference->Name(), "GCS_WGS_1984");
        // The block's middle, taken to longitude and latitude: the centre of a square kilometre
        // on the sphere is within a hundred-thousandth of a degree of it.
        auto middle = std::make_shared<Point>(500500.0, 5000500.0);
        middle->SpatialReference(Utm33N());
        middle->Project(Wgs84());
        const auto points = ReadPoints(*output);
        ASSERT_EQ(points.size(), 1u);
        EXPECT_NEAR(points[0].x, middle->X(), 1e-5);
        EXPECT_NEAR(points[0].y, middle->Y(), 1e-5);
        EXPECT_NEAR(points[0].xField, points[0].x, kFieldTolerance + kStorageTolerance);
        EXPECT_EQ(points[0].name, "one");
        // The report names the input's system.
        EXPECT_NE(report.find(R"(  ** Spatial Reference:  WGS_1984_UTM_Zone_33N\par)"), std::string::npos) << report;
    }
}

TEST_F(SphericalCentroidsTest, APolylineIsMeasuredOnTheSphereOfTheSemiMinorAxisAndWalkedOnItsSpheroid) {
    // Along the equator the walk covers half the line's length on the sphere of radius b, on a
    // spheroid whose equator has radius a: it stops at 5 b / a degrees, short of the middle.
    auto lines = CreateClass(*input_, "equator", esriGeometryPolyline, Wgs84());
    AddFeature(*lines, MakePolyline({{{0, 0}, {10, 0}}}));
    auto layer = AddLayer(lines, "equator");
    OutputKind("Shapefile");
    Run(&ConvertToSphericalCentroid, layer, nullptr, true, dir_ / "out/mid.shp");
    const auto points = ReadPoints(*ShapefileFolder(dir_ / "out")->OpenFeatureClass("mid"));
    ASSERT_EQ(points.size(), 1u);
    EXPECT_NEAR(points[0].x, 5.0 * geo::kWgs84SemiMinor / geo::kWgs84SemiMajor, 1e-9); // degrees
    EXPECT_NEAR(points[0].y, 0.0, 1e-12);
    EXPECT_GT(5.0 - points[0].x, 0.016); // a hundred-odd metres short of the geodesic middle
}

TEST_F(SphericalCentroidsTest, AMultipointAcrossTheAntimeridianHasItsCentreThere) {
    auto samples = CreateClass(*input_, "samples", esriGeometryMultipoint, Wgs84());
    AddFeature(*samples, MakeMultipoint({{179, 0}, {-179, 0}}));
    auto layer = AddLayer(samples, "samples");
    OutputKind("Shapefile");
    Run(&ConvertToSphericalCentroid, layer, nullptr, true, dir_ / "out/m.shp");
    const auto points = ReadPoints(*ShapefileFolder(dir_ / "out")->OpenFeatureClass("m"));
    ASSERT_EQ(points.size(), 1u);
    EXPECT_NEAR(std::abs(points[0].x), 180.0, 1e-9);
    EXPECT_NEAR(points[0].y, 0.0, 1e-9);
}

TEST_F(SphericalCentroidsTest, ALayerWithoutAKnownSystemIsRefusedBeforeAnythingIsMade) {
    auto sketch = CreateClass(*input_, "sketch", esriGeometryPolygon, nullptr);
    AddFeature(*sketch, MakePolygon({Square(0, 0, 1, true)}));
    auto layer = AddLayer(sketch, "sketch");
    OutputKind("Shapefile");
    const auto layersBefore = FocusMap()->LayerCount();
    const std::string report = Run(&ConvertToSphericalCentroid, layer, nullptr, true, dir_ / "out/s.shp");
    const std::string crlf = "\r\n";
    EXPECT_EQ(report, R"({\rtf1\ansi\ansicpg1252\deff0\deflang1033{\fonttbl{\f0\fswiss\fcharset0 Arial;}})" + crlf +
                          R"({\*\generator Msftedit 5.41.15.1507;}\viewkind4\uc1\pard\qc\b\f0\fs16 )"
                          R"(!!!  Features to Spherical Centroids Failed  !!!\par)" + crlf +
                          R"(Selected Feature Class has unknown coordinate system...\par)" + crlf + R"(\par)" + crlf +
                          R"(This function must know the projection of the data in order to calculate the )"
                          R"(geographic centroid!  Bailing out...\par)" + crlf +
                          R"(----------------------------------------------------------\par)" + crlf + "}" + crlf);
    EXPECT_FALSE(std::filesystem::exists(dir_ / "out/s.shp"));
    EXPECT_EQ(FocusMap()->LayerCount(), layersBefore);
    EXPECT_TRUE(ui_->Errors().empty());
    EXPECT_EQ(sketch->FeatureCount(nullptr), 1);
}

} // namespace
} // namespace tess::test
