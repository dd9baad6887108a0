// Graphics to features: what the dialog reads from the map and offers, and what
// each branch of its run writes (shapes, measures, names, symbol, report).

#include <gtest/gtest.h>

#include <GeographicLib/Geodesic.hpp>
#include <GeographicLib/PolygonArea.hpp>

#include <cmath>
#include <filesystem>
#include <fstream>

#include "GraphicsFixtures.h"
#include "graphics/frmGraphicsShapefile.h"
#include "platform/carto/FeatureLayer.h"
#include "platform/carto/Layers.h"
#include "platform/data/Cursor.h"
#include "platform/data/Field.h"
#include "platform/data/Fields.h"
#include "platform/data/Row.h"
#include "platform/data/Table.h"
#include "platform/data/Workspace.h"
#include "platform/data/WorkspaceFactories.h"
#include "platform/system/Arrays.h"

namespace tess::test {
namespace {

namespace fs = std::filesystem;

// WGS 1984, and the sphere of its volume that the areas are taken on.
constexpr double kWgs84A = 6378137.0;
constexpr double kWgs84F = 1 / 298.257223563;
constexpr double kSphereRadius = 6371000.790009154; // (a^2 b)^(1/3), metres
// Vincenty against GeographicLib's geodesics: both converge far below a millimetre.
constexpr double kLengthTolerance = 1e-3; // metres
// Sums of flat-apex triangles against GeographicLib's exact sphere: rounding of the trigonometry.
constexpr double kAreaRelativeTolerance = 1e-9;

struct Feature {
    std::vector<WKSPoint> points;
    std::map<std::string, Variant> values;
};

std::vector<Feature> ReadBack(const std::shared_ptr<IFeatureClass>& featureClass) {
    std::vector<Feature> features;
    auto cursor = featureClass->Search(nullptr, false);
    auto fields = featureClass->Fields();
    for (auto feature = cursor->NextFeature(); feature; feature = cursor->NextFeature()) {
        Feature f;
        const auto& points = dynamic_cast<const IPointCollection*>(feature->Shape().get());
        if (points) {
            f.points.resize(static_cast<std::size_t>(points->PointCount()));
            points->QueryWKSPoints(0, points->PointCount(), f.points.data());
        } else if (auto point = std::dynamic_pointer_cast<IPoint>(feature->Shape())) {
            f.points.push_back({point->X(), point->Y()});
        }
        for (std::int32_t i = 0; i < fields->FieldCount(); ++i)
            f.values[fields->Field(i)->Name()] = feature->Value(i);
        features.push_back(std::move(f));
    }
    return features;
}

// A shapefile gives an empty text back as Null.
std::string TextOf(const Variant& value) { return value.IsNull() ? std::string() : value.ToString(); }

std::vector<std::string> FieldNames(const IFeatureClass& featureClass) {
    std::vector<std::string> names;
    for (std::int32_t i = 0; i < featureClass.Fields()->FieldCount(); ++i)
        names.push_back(featureClass.Fields()->Field(i)->Name());
    return names;
}

double GeodesicLength(const std::vector<WKSPoint>& points) {
    const GeographicLib::Geodesic wgs84(kWgs84A, kWgs84F);
    double total = 0.0;
    for (std::size_t i = 1; i < points.size(); ++i) {
        double s12 = 0.0;
        wgs84.Inverse(points[i - 1].Y, points[i - 1].X, points[i].Y, points[i].X, s12);
        total += s12;
    }
    return total;
}

// Area of a ring with great-circle edges on the sphere of the same volume as WGS 1984.
double SphereArea(const std::vector<WKSPoint>& ring) {
    const GeographicLib::Geodesic sphere(kSphereRadius, 0.0);
    GeographicLib::PolygonArea polygon(sphere);
    for (std::size_t i = 0; i + 1 < ring.size(); ++i)
        polygon.AddPoint(ring[i].Y, ring[i].X);
    double perimeter = 0.0;
    double area = 0.0;
    polygon.Compute(false, true, perimeter, area);
    return std::abs(area);
}

class GraphicsShapefileTest : public GraphicsHostTest {
protected:
    std::unique_ptr<frmGraphicsShapefile> Open() {
        auto form = std::make_unique<frmGraphicsShapefile>();
        form->ArcApplication(app_);
        form->Load();
        return form;
    }

    //! Chooses the conversion line and the set, types the output and clicks OK; the report
    //! shown afterwards is kept.
    void Convert(frmGraphicsShapefile& form, int option, bool selected, const std::string& output) {
        if (form.Ctl("optConvert").Value != 1)
            form.Fire("optConvert", FormEvent::Click);
        if ((form.Ctl("chkSelected").Value == 1) != selected) {
            form.Ctl("chkSelected").Value = selected ? 1 : 0;
            form.Fire("chkSelected", FormEvent::Click);
        }
        form.Ctl("lbxGraphics").ListIndex = option;
        form.Fire("lbxGraphics", FormEvent::Click);
        form.Ctl("txtOutput").Text = output;
        form.Fire("txtOutput", FormEvent::Change);
        ASSERT_TRUE(form.Ctl("cmdOK").Enabled);
        ui_->QueueFormScript("frmReport_modal", [this](Form& report) {
            report_ = report.Ctl("txtReport").Text;
            report.Fire("cmdOK", FormEvent::Click);
        });
        form.Fire("cmdOK", FormEvent::Click);
    }

    //! The class of the layer the run put on top of the map.
    std::shared_ptr<IFeatureClass> NewClass() const {
        auto layer = std::dynamic_pointer_cast<IFeatureLayer>(FocusMap()->Layer(0));
        return layer ? layer->FeatureClass() : nullptr;
    }

    std::string report_;
};

TEST_F(GraphicsShapefileTest, TheHarvestSortsElementsByShapeAndLeavesTextPicturesGroupsOut) {
    AddEveryKind();
    auto form = Open();
    const GraphicsHarvest& all = form->AllGraphics();
    EXPECT_EQ(all.Points->Count(), 2);
    EXPECT_EQ(all.Polylines->Count(), 2);
    EXPECT_EQ(all.Polygons->Count(), 4); // polygon, rectangle, circle, ellipse
    EXPECT_EQ(all.PolygonNames->Element(0), "Field");
    EXPECT_EQ(all.PolygonNames->Element(3), "");
    EXPECT_TRUE(all.PointsNamed && all.PolylinesNamed && all.PolygonsNamed);
    ASSERT_TRUE(all.PointSymbol);
    EXPECT_EQ(all.PointSymbol->Size(), 9);
    ASSERT_TRUE(all.FillSymbol);
    EXPECT_EQ(std::dynamic_pointer_cast<IRgbColor>(all.FillSymbol->Color())->Green(), 150);

    const GraphicsHarvest& selected = form->SelectedGraphics();
    EXPECT_EQ(selected.Points->Count(), 1);
    EXPECT_EQ(selected.Polylines->Count(), 1);
    EXPECT_EQ(selected.Polygons->Count(), 1);
    EXPECT_EQ(selected.PolygonNames->Element(0), "Frame");

    // A selection preselects the conversion of the selected graphics, with the singular words.
    EXPECT_EQ(form->Ctl("optConvert").Value, 1);
    EXPECT_EQ(form->Ctl("chkSelected").Value, 1);
    EXPECT_EQ(form->Ctl("lbxGraphics").List,
              (std::vector<std::string>{"1) Point Shapefile: 1 Point", "2) Polyline Shapefile: 1 Polyline",
                                        "3) Polyline Shapefile: 1 Polyline + 1 Polygon",
                                        "4) Polygon Shapefile: 1 Polygon",
                                        "5) Polygon Shapefile: 1 Polyline + 1 Polygon"}));
    form->Ctl("chkSelected").Value = 0;
    form->Fire("chkSelected", FormEvent::Click);
    EXPECT_EQ(form->Ctl("lbxGraphics").List[2], "3) Polyline Shapefile: 2 Polylines + 4 Polygons");
    // Nothing chosen in the list yet.
    EXPECT_FALSE(form->Ctl("cmdOK").Enabled);
    EXPECT_EQ(form->Ctl("lblSpRef").Caption, "Spatial Reference = GCS_WGS_1984");
    EXPECT_EQ(form->Ctl("txtOutput").Text, dir_ / "NewShape.shp");
    EXPECT_TRUE(ui_->Errors().empty()) << ui_->Errors().front();
}

TEST_F(GraphicsShapefileTest, WithoutSelectionOrGraphicsOrInLayoutTheDialogOffersEmptyClasses) {
    FocusMap()->SpatialReference(Wgs84());
    {
        auto form = Open();
        EXPECT_EQ(form->Ctl("lbxGraphics").List, std::vector<std::string>{"No graphics available..."});
        EXPECT_FALSE(form->Ctl("optConvert").Enabled);
        EXPECT_EQ(form->Ctl("optNew").Value, 1);
        EXPECT_EQ(form->Ctl("optPolygon").Value, 1);
        EXPECT_TRUE(form->Ctl("cmdOK").Enabled);
    }
    auto line = std::make_shared<LineElement>();
    line->Geometry(MakePolyline({{{0, 0}, {1, 1}}}));
    Add(line);
    auto polygon = std::make_shared<PolygonElement>();
    polygon->Geometry(MakePolygon({Square(0, 0, 1, true)}));
    Add(polygon);
    Add(std::make_shared<LineElement>())->Geometry(MakePolyline({{{2, 2}, {3, 3}}}));
    {
        auto form = Open();
        EXPECT_EQ(form->Ctl("optConvert").Value, 0);
        EXPECT_EQ(form->Ctl("optNew").Value, 1);
        EXPECT_EQ(form->Ctl("lbxGraphics").List[0], "1) Point Shapefile: 0 Points");
        EXPECT_EQ(form->Ctl("lbxGraphics").List[2], "3) Polyline Shapefile: 2 Polylines + 1 Polygon");
        EXPECT_FALSE(form->Ctl("lbxGraphics").Enabled); // the empty mode is on
    }
    Doc()->ActiveView(std::dynamic_pointer_cast<IActiveView>(Doc()->Layout()));
    auto form = Open();
    EXPECT_EQ(form->Ctl("lbxGraphics").List, std::vector<std::string>{"Conversion Unavailable in Layout View..."});
    EXPECT_FALSE(form->Ctl("optConvert").Enabled);
    EXPECT_FALSE(form->Ctl("chkSelected").Enabled);
    EXPECT_EQ(form->AllGraphics().Polylines->Count(), 0); // nothing harvested in layout view
}

TEST_F(GraphicsShapefileTest, AMapWithoutReferenceNeedsOneChosenAndATakenNameGetsANumber) {
    std::ofstream(dir_ / "NewShape.shp") << "taken";
    auto form = Open();
    EXPECT_EQ(form->Ctl("lblSpRef").Caption, "Spatial Reference = <-- No Spatial Reference Set -->");
    EXPECT_FALSE(form->Ctl("cmdOK").Enabled);
    EXPECT_EQ(form->Ctl("txtOutput").Text, dir_ / "NewShape_2.shp");
    // A cancelled reference dialog changes nothing.
    form->Fire("cmdSpRef", FormEvent::Click);
    EXPECT_FALSE(form->Ctl("cmdOK").Enabled);
    ui_->QueueSpatialReference(Utm33N());
    form->Fire("cmdSpRef", FormEvent::Click);
    EXPECT_EQ(form->Ctl("lblSpRef").Caption, "Spatial Reference = WGS_1984_UTM_Zone_33N");
    EXPECT_TRUE(form->Ctl("cmdOK").Enabled);
}

TEST_F(GraphicsShapefileTest, EmptyClassesGetTheirFieldsLayerAndReport) {
    FocusMap()->SpatialReference(Wgs84());
    struct Case {
        const char* option;
        esriGeometryType type;
        std::vector<std::string> fields;
        const char* words;
    };
    const Case cases[] = {
        {"optPoint", esriGeometryPoint, {"FID", "Shape", "Unique_ID", "X_Coord", "Y_Coord"},
         "Create Empty Point Feature Class"},
        {"optPolyline", esriGeometryPolyline, {"FID", "Shape", "Unique_ID", "Length"},
         "Create Empty Polyline Feature Class"},
        {"optPolygon", esriGeometryPolygon, {"FID", "Shape", "Unique_ID", "Area"},
         "Create Empty Polygon Feature Class"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.option);
        auto form = Open();
        form->Fire(c.option, FormEvent::Click);
        ui_->QueueFormScript("frmReport_modal", [this](Form& report) { report_ = report.Ctl("txtReport").Text; });
        form->Fire("cmdOK", FormEvent::Click);
        EXPECT_FALSE(form->IsLoaded());
        auto created = NewClass();
        ASSERT_TRUE(created);
        EXPECT_EQ(created->ShapeType(), c.type);
        EXPECT_EQ(FieldNames(*created), c.fields);
        EXPECT_EQ(created->FeatureCount(nullptr), 0);
        EXPECT_NE(report_.find("Empty Shapefile Created and Added to Map"), std::string::npos);
        EXPECT_NE(report_.find(c.words), std::string::npos);
        EXPECT_NE(report_.find(R"(\b Shapefile saved to:\b0\par)"), std::string::npos);
    }
    EXPECT_EQ(extension_->DirectoryType(), "Shapefile");
    EXPECT_EQ(extension_->DirectoryPath(), dir_.Path() + "/");
    EXPECT_TRUE(Doc()->IsDirty());
    EXPECT_TRUE(ui_->Errors().empty()) << ui_->Errors().front();
}

TEST_F(GraphicsShapefileTest, PolygonsAreDensifiedMeasuredOnTheSphereAndNamed) {
    AddEveryKind();
    auto form = Open();
    Convert(*form, 3, false, dir_ / "polygons.shp");
    EXPECT_FALSE(form->IsLoaded());
    auto created = NewClass();
    ASSERT_TRUE(created);
    EXPECT_EQ(FieldNames(*created), (std::vector<std::string>{"FID", "Shape", "Unique_ID", "Area", "Name"}));
    const std::vector<Feature> features = ReadBack(created);
    ASSERT_EQ(features.size(), 4u);
    const std::vector<std::string> names{"Field", "Frame", "Pond", ""};
    for (std::size_t i = 0; i < features.size(); ++i) {
        SCOPED_TRACE(names[i]);
        EXPECT_EQ(features[i].values.at("Unique_ID").ToLong(), static_cast<std::int32_t>(i + 1));
        EXPECT_EQ(TextOf(features[i].values.at("Name")), names[i]);
        const double expected = SphereArea(features[i].points);
        EXPECT_NEAR(features[i].values.at("Area").ToDouble(), expected, expected * kAreaRelativeTolerance);
    }
    // A lone circle or ellipse takes all 200 pieces: 201 vertices with the closing one.
    EXPECT_EQ(features[2].points.size(), 201u);
    EXPECT_EQ(features[3].points.size(), 201u);
    EXPECT_EQ(features[1].points.size(), 5u); // the rectangle stays as it was

    auto layer = std::dynamic_pointer_cast<IGeoFeatureLayer>(FocusMap()->Layer(0));
    auto renderer = std::dynamic_pointer_cast<ISimpleRenderer>(layer->Renderer());
    ASSERT_TRUE(renderer);
    auto fill = std::dynamic_pointer_cast<IFillSymbol>(renderer->Symbol());
    ASSERT_TRUE(fill);
    EXPECT_EQ(std::dynamic_pointer_cast<IRgbColor>(fill->Color())->Green(), 150);

    EXPECT_NE(report_.find("Graphics to Feature Classes Conversion Complete"), std::string::npos);
    EXPECT_NE(report_.find("Convert all graphic polygons to Polygon Feature Class"), std::string::npos);
    EXPECT_NE(report_.find(R"(   [Area]: Area (m^2) calculated on spherical polygon (sphere radius ~6371 km)\par)"),
              std::string::npos);
    EXPECT_NE(report_.find(R"(4 polygon graphics\par)"), std::string::npos);
    // Sorted by bytes: the empty name first.
    const std::string names_block = R"(   1] <- NO NAME ->  (1 elements)\par)"
                                    "\r\n"
                                    R"(   2] Field  (1 elements)\par)";
    EXPECT_NE(report_.find(names_block), std::string::npos) << report_;
    EXPECT_NE(report_.find(R"(   4] Pond  (1 elements)\par)"), std::string::npos);
    EXPECT_TRUE(ui_->Errors().empty()) << ui_->Errors().front();
}

TEST_F(GraphicsShapefileTest, PolylinesGetGeodesicLengthsAndPolygonsBecomeTheirOutlines) {
    AddEveryKind();
    auto form = Open();
    Convert(*form, 2, false, dir_ / "lines.shp");
    auto created = NewClass();
    ASSERT_TRUE(created);
    const std::vector<Feature> features = ReadBack(created);
    ASSERT_EQ(features.size(), 6u); // two polylines, then four polygon outlines
    for (const Feature& f : features)
        EXPECT_NEAR(f.values.at("Length").ToDouble(), GeodesicLength(f.points), kLengthTolerance);
    // The straight road keeps its three vertices. The half circle of radius 0.5 after a line of 1
    // gets its share of 200 pieces by length: Int(pi/2 / (1 + pi/2) * 200) = 122, after the
    // line's two vertices.
    EXPECT_EQ(features[0].points.size(), 3u);
    EXPECT_EQ(features[1].points.size(), 2u + 122u);
    EXPECT_EQ(features[0].values.at("Name").ToString(), "Road");
    EXPECT_EQ(features[2].values.at("Name").ToString(), "Field");
    EXPECT_NE(report_.find(R"(2 polyline graphics\par)"), std::string::npos);
    EXPECT_NE(report_.find(R"(4 polygon graphics\par)"), std::string::npos);
    EXPECT_NE(report_.find(R"(   [Length]: Length (m) calculated from geodesic curves over WGS84 spheroid\par)"),
              std::string::npos);
    auto layer = std::dynamic_pointer_cast<IGeoFeatureLayer>(FocusMap()->Layer(0));
    auto line = std::dynamic_pointer_cast<ILineSymbol>(
        std::dynamic_pointer_cast<ISimpleRenderer>(layer->Renderer())->Symbol());
    ASSERT_TRUE(line);
    EXPECT_EQ(line->Width(), 3);
}

TEST_F(GraphicsShapefileTest, SelectedPointsGoToAGeodatabaseWithCoordinatesInTheOutputReference) {
    AddEveryKind();
    auto gdb = FileGDBWorkspaceFactory().Create(dir_.Path(), "out.gdb");
    ASSERT_TRUE(gdb);
    auto form = Open();
    ui_->QueueSpatialReference(Utm33N());
    form->Fire("cmdSpRef", FormEvent::Click);
    ui_->QueueBrowse(BrowseResult{dir_ / "out.gdb", "wells", "File Geodatabase"});
    form->Fire("cmdGetWorkspace", FormEvent::Click);
    EXPECT_EQ(form->OutputKind(), 2);
    form->Ctl("lbxGraphics").ListIndex = 0;
    form->Fire("lbxGraphics", FormEvent::Click);
    ui_->QueueFormScript("frmReport_modal", [this](Form& report) { report_ = report.Ctl("txtReport").Text; });
    form->Fire("cmdOK", FormEvent::Click);
    auto created = NewClass();
    ASSERT_TRUE(created);
    // A geodatabase class has no Unique_ID; the one selected point is named.
    EXPECT_EQ(created->FindField("Unique_ID"), -1);
    const std::vector<Feature> features = ReadBack(created);
    ASSERT_EQ(features.size(), 1u);
    EXPECT_EQ(features[0].values.at("Name").ToString(), "Well");
    // (10 E, 45 N) in zone 33N (central meridian 15 E): west of it, north of the equator.
    // The class keeps its shapes on a grid of 0.0001 m; the field keeps the computed double.
    constexpr double kGridTolerance = 2e-4; // metres: two grid steps
    EXPECT_NEAR(features[0].values.at("X_Coord").ToDouble(), features[0].points[0].X, kGridTolerance);
    EXPECT_NEAR(features[0].values.at("Y_Coord").ToDouble(), features[0].points[0].Y, kGridTolerance);
    EXPECT_LT(features[0].points[0].X, 500000.0);
    EXPECT_GT(features[0].points[0].Y, 4.9e6);
    EXPECT_NE(report_.find("Convert selected graphic points to Point Feature Class"), std::string::npos);
    EXPECT_NE(report_.find("          *** Data Frame Projection  GCS_WGS_1984"), std::string::npos);
    EXPECT_NE(report_.find("   [X_Coord]:  Coordinates in WGS_1984_UTM_Zone_33N"), std::string::npos);
    EXPECT_EQ(extension_->DirectoryType(), "File Geodatabase");
}

TEST_F(GraphicsShapefileTest, AProjectedPolygonIsMeasuredInItsGeographicBase) {
    auto utm = Utm33N();
    FocusMap()->SpatialReference(utm);
    // A 10 km square in zone 33N, drawn in map units.
    auto square = Named(std::make_shared<PolygonElement>(), "Block");
    square->Geometry(Labelled(MakePolygon({Square(500000, 5000000, 10000, true)}), utm));
    Add(square);
    // Two elements of one name give one line with their count.
    auto twin = Named(std::make_shared<PolygonElement>(), "Block");
    twin->Geometry(Labelled(MakePolygon({Square(520000, 5000000, 10000, true)}), utm));
    Add(twin);
    auto form = Open();
    Convert(*form, 3, false, dir_ / "blocks.shp");
    auto created = NewClass();
    ASSERT_TRUE(created);
    const std::vector<Feature> features = ReadBack(created);
    ASSERT_EQ(features.size(), 2u);
    auto geographic = MakePolygon({features[0].points});
    geographic->SpatialReference(utm);
    geographic->Project(Wgs84());
    const auto& vertices = dynamic_cast<const IPointCollection&>(*geographic);
    std::vector<WKSPoint> ring(static_cast<std::size_t>(vertices.PointCount()));
    vertices.QueryWKSPoints(0, vertices.PointCount(), ring.data());
    const double expected = SphereArea(ring);
    const double area = features[0].values.at("Area").ToDouble();
    EXPECT_NEAR(area, expected, expected * kAreaRelativeTolerance);
    // Not the planar 1e8 m^2 of the projected square (the scale factor makes a difference).
    EXPECT_GT(std::abs(area - 1e8), 1e4);
    EXPECT_NE(report_.find(R"(   1] Block  (2 elements)\par)"), std::string::npos) << report_;
}

TEST_F(GraphicsShapefileTest, ShapesWithoutReferenceAreLabelledWithTheMapsGeographicBaseNotMoved) {
    // On a geographic map a bare point is taken to be in the map's degrees.
    FocusMap()->SpatialReference(Wgs84());
    auto marker = std::make_shared<MarkerElement>();
    marker->Geometry(std::make_shared<Point>(15.0, 0.0)); // on zone 33N's central meridian
    Add(marker);
    auto form = Open();
    ui_->QueueSpatialReference(Utm33N());
    form->Fire("cmdSpRef", FormEvent::Click);
    Convert(*form, 0, false, dir_ / "bare.shp");
    std::vector<Feature> features = ReadBack(NewClass());
    ASSERT_EQ(features.size(), 1u);
    constexpr double kFalseEasting = 500000.0; // metres
    constexpr double kProjectionTolerance = 1e-6; // metres
    EXPECT_NEAR(features[0].points[0].X, kFalseEasting, kProjectionTolerance);
    EXPECT_NEAR(features[0].points[0].Y, 0.0, kProjectionTolerance);
    EXPECT_EQ(FieldNames(*NewClass()), (std::vector<std::string>{"FID", "Shape", "Unique_ID", "X_Coord", "Y_Coord"}));

    // On a projected map the label is the projection's geographic base: the numbers stay, read as degrees.
    FocusMap()->SpatialReference(Utm33N());
    auto projected = Open();
    EXPECT_EQ(projected->OutputSpatialReference()->Name(), "WGS_1984_UTM_Zone_33N");
    Convert(*projected, 0, false, dir_ / "bare2.shp");
    features = ReadBack(NewClass());
    ASSERT_EQ(features.size(), 1u);
    EXPECT_NEAR(features[0].points[0].X, kFalseEasting, kProjectionTolerance);
}

TEST_F(GraphicsShapefileTest, AnEmptySetAsksToGoBackAndAnExistingOutputCanBeKept) {
    AddEveryKind();
    FocusMap()->UnselectAllElements();
    FocusMap()->SelectElement(FocusMap()->ElementAt(4)); // the polygon "Field" only
    auto form = Open();
    form->Ctl("lbxGraphics").ListIndex = 0; // selected points: none
    form->Fire("lbxGraphics", FormEvent::Click);
    ui_->QueueAnswer(MsgBoxResult::OK);
    form->Fire("cmdOK", FormEvent::Click);
    ASSERT_EQ(ui_->Messages().size(), 1u);
    EXPECT_EQ(ui_->Log().back().title, "Unable to Make Point Feature Class:");
    EXPECT_EQ(ui_->Messages()[0], "No selected graphic points in map!  No new Feature Class will be made.\r\n"
                                  "Do you wish to go back and \r\nmake a different selection?");
    EXPECT_TRUE(form->IsLoaded());
    ui_->QueueAnswer(MsgBoxResult::Cancel);
    form->Fire("cmdOK", FormEvent::Click);
    EXPECT_FALSE(form->IsLoaded());
    const std::int32_t layers = FocusMap()->LayerCount();

    // An output that exists: No to overwriting, then a cancelled browse: nothing is made.
    auto again = Open();
    Convert(*again, 3, true, dir_ / "kept.shp");
    ASSERT_TRUE(NewClass());
    const auto before = fs::file_size(dir_ / "kept.shp");
    auto third = Open();
    report_.clear();
    ui_->QueueAnswer(MsgBoxResult::No);
    third->Ctl("lbxGraphics").ListIndex = 3;
    third->Fire("lbxGraphics", FormEvent::Click);
    third->Ctl("chkSelected").Value = 0;
    third->Fire("chkSelected", FormEvent::Click);
    third->Ctl("lbxGraphics").ListIndex = 3;
    third->Fire("lbxGraphics", FormEvent::Click);
    third->Ctl("txtOutput").Text = dir_ / "kept.shp";
    third->Fire("txtOutput", FormEvent::Change);
    third->Fire("cmdOK", FormEvent::Click);
    EXPECT_EQ(ui_->Log().back().kind, "browse");
    EXPECT_FALSE(third->IsLoaded());
    EXPECT_EQ(FocusMap()->LayerCount(), layers + 1); // the first run's layer only
    EXPECT_TRUE(report_.empty());
    EXPECT_EQ(fs::file_size(dir_ / "kept.shp"), before);
}

} // namespace
} // namespace tess::test
