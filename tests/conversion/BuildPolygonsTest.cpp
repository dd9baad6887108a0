// Polygon building on real datasets in temporary folders: which regions come out, what the
// tolerance closes, which label point gives each polygon its attributes, the report, the two
// cancellations, input that is refused before anything is written; and the dialog in front of it.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>

#include "ConversionFixtures.h"
#include "conversion/frmBuildParams.h"
#include "conversion/mod_92_functions.h"
#include "support/aml_func_mod.h"
#include "platform/carto/Layers.h"
#include "platform/data/SelectionSet.h"
#include "platform/system/Fault.h"

namespace tess::test {
namespace {

// Areas of squares of whole metres near (500000, 5000000): the engine nodes them exactly, and
// the shapefile keeps the doubles; the dBASE Area field keeps 8 decimals.
constexpr double kAreaTol = 1e-6; // square metres

std::vector<WKSPoint> Path(std::initializer_list<WKSPoint> pts) { return pts; }

//! A ring of lines around the square, as one closed path.
std::vector<WKSPoint> Outline(double x, double y, double size) {
    return {{x, y}, {x, y + size}, {x + size, y + size}, {x + size, y}, {x, y}};
}

constexpr double kX = 500000; // metres, UTM zone 33N
constexpr double kY = 5000000;

struct PolygonRecord {
    std::int32_t oid = 0;
    std::int32_t id = 0;
    double area = 0;       // own field
    double shapeArea = 0;  // of the stored shape
    WKSPoint centroid{};
    std::map<std::string, Variant> labels;
};

std::vector<PolygonRecord> ReadPolygons(IFeatureClass& output, const std::string& areaField = "Area",
                                        const std::vector<std::string>& labelFields = {}) {
    std::vector<PolygonRecord> out;
    auto cursor = output.Search(nullptr, false);
    for (auto f = cursor->NextFeature(); f; f = cursor->NextFeature()) {
        PolygonRecord r;
        r.oid = f->OID();
        r.id = f->Value(output.FindField("Uniq_ID")).ToLong();
        r.area = f->Value(output.FindField(areaField)).ToDouble();
        const auto& area = dynamic_cast<const IArea&>(*f->Shape());
        r.shapeArea = area.Area();
        area.Centroid()->QueryCoords(r.centroid.X, r.centroid.Y);
        for (const auto& name : labelFields) r.labels[name] = f->Value(output.FindField(name));
        out.push_back(std::move(r));
    }
    return out;
}

//! The record whose centroid lies in the box.
const PolygonRecord* Find(const std::vector<PolygonRecord>& records, double x0, double y0, double x1, double y1) {
    for (const auto& r : records)
        if (r.centroid.X > x0 && r.centroid.X < x1 && r.centroid.Y > y0 && r.centroid.Y < y1) return &r;
    return nullptr;
}

class BuildPolygonsTest : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        std::filesystem::create_directories(dir_ / "in");
        std::filesystem::create_directories(dir_ / "out");
        input_ = ShapefileFolder(dir_ / "in");
        extension_->DirectoryType("Shapefile");
    }

    std::shared_ptr<FeatureLayer> Lines(const std::vector<std::vector<WKSPoint>>& paths, const std::string& name = "lines") {
        auto lines = CreateClass(*input_, name, esriGeometryPolyline, Utm33N());
        for (const auto& p : paths) AddFeature(*lines, MakePolyline({p}));
        return AddLayer(lines, name);
    }

    //! Points with NAME and a field called Area, in the given reference; coordinates in UTM 33N,
    //! projected when the reference is another.
    std::shared_ptr<FeatureLayer> Labels(const std::vector<std::pair<WKSPoint, std::string>>& points,
                                         std::shared_ptr<ISpatialReference> reference = Utm33N()) {
        auto labels = CreateClass(*input_, "labels", esriGeometryPoint, reference,
                                  {MakeField("NAME", esriFieldTypeString, 12), MakeField("Area", esriFieldTypeDouble, 0, 12, 3)});
        double value = 0.5;
        for (const auto& [at, name] : points) {
            auto point = MakePoint(at.X, at.Y);
            point->SpatialReference(Utm33N());
            point->Project(reference);
            AddFeature(*labels, point, {{"NAME", Variant(name)}, {"Area", Variant(value)}});
            value += 1.0;
        }
        return AddLayer(labels, "labels");
    }

    std::shared_ptr<IVariantArray> Fields(const FeatureLayer& layer, const std::vector<std::string>& names) {
        auto fc = layer.FeatureClass();
        auto fields = std::make_shared<VarArray>();
        for (const auto& name : names) fields->Add(fc->Fields()->Field(fc->FindField(name)));
        return fields;
    }

    struct Options {
        double tolerance = 0.0;
        bool doAll = true;
        std::shared_ptr<FeatureLayer> labels;
        bool useAll = true;
        bool useFirst = false;
        std::shared_ptr<IVariantArray> fields;
    };
    static Options Tolerance(double tolerance) {
        Options o;
        o.tolerance = tolerance;
        return o;
    }

    std::string Build(const std::shared_ptr<FeatureLayer>& lines, const Options& o, const std::string& name = "polys.shp") {
        return orlBuildPolygons(lines, o.doAll, o.tolerance, o.labels != nullptr, o.useAll, o.useFirst, o.labels,
                                o.fields, dir_ / ("out/" + name), Document(), app_, extension_);
    }

    std::shared_ptr<IFeatureClass> Output(const std::string& name = "polys") {
        return ShapefileFolder(dir_ / "out")->OpenFeatureClass(name);
    }
    bool OutputExists(const std::string& name = "polys") const {
        return std::filesystem::exists(dir_ / ("out/" + name + ".shp"));
    }

    std::shared_ptr<IFeatureWorkspace> input_;
};

TEST_F(BuildPolygonsTest, LinesThatBoundNothingLeaveAnEmptyClassAndSaySo) {
    auto lines = Lines({Path({{kX, kY}, {kX + 10, kY + 10}}), Path({{kX, kY + 10}, {kX + 10, kY}})});
    EXPECT_EQ(Build(lines, {}), "");
    ASSERT_EQ(ui_->Messages().size(), 1u);
    EXPECT_EQ(ui_->Messages()[0], "No polygons were created from 'lines'!  Possibly no polylines intersected in such "
                                  "a way as to create a bounded region.  Function cancelled...");
    ASSERT_TRUE(OutputExists());
    EXPECT_EQ(Output()->FeatureCount(nullptr), 0);
    EXPECT_EQ(FocusMap()->LayerCount(), 1); // no layer for the empty class
    EXPECT_TRUE(ui_->Errors().empty());
}

TEST_F(BuildPolygonsTest, RegionsWithSharedSidesAndHolesGetNumbersAndAreas) {
    // Two squares sharing a side, the left one with an inner ring drawn as two lines.
    auto lines = Lines({Outline(kX, kY, 10), Outline(kX + 10, kY, 10),
                        Path({{kX + 3, kY + 3}, {kX + 3, kY + 6}, {kX + 6, kY + 6}}),
                        Path({{kX + 6, kY + 6}, {kX + 6, kY + 3}, {kX + 3, kY + 3}})});
    const std::string report = Build(lines, {});
    ASSERT_TRUE(ui_->Errors().empty()) << ui_->Errors().front();
    const auto records = ReadPolygons(*Output());
    ASSERT_EQ(records.size(), 3u);
    std::vector<std::int32_t> ids;
    double total = 0;
    for (const auto& r : records) {
        ids.push_back(r.id);
        EXPECT_NEAR(r.area, r.shapeArea, kAreaTol);
        total += r.area;
    }
    EXPECT_EQ(ids, (std::vector<std::int32_t>{1, 2, 3}));
    EXPECT_NEAR(total, 200.0, kAreaTol);
    const auto* holed = Find(records, kX, kY, kX + 10, kY + 10);
    ASSERT_TRUE(holed);
    EXPECT_NEAR(holed->area, 91.0, kAreaTol);
    // The new class is on the map, named as its file.
    EXPECT_EQ(FocusMap()->Layer(0)->Name(), "polys");
    EXPECT_NE(report.find(R"(Build Polygons Function Complete:\par)"), std::string::npos);
    EXPECT_NE(report.find(R"(  ** Used all polylines to build polygons (n = 4)\par)"), std::string::npos);
    EXPECT_NE(report.find("  ** Cluster Tolerance: 0. Meter\\par\\b -----"), std::string::npos) << report;
    EXPECT_NE(report.find(R"(  ** No label point attributes used...\par)"), std::string::npos);
    EXPECT_NE(report.find(R"(  ** Contains 3 features\par)"), std::string::npos);
    EXPECT_EQ(report.find("Missing Label Points"), std::string::npos);
}

TEST_F(BuildPolygonsTest, GapsCloseUnderTheToleranceOnly) {
    // The right side stops 0.05 m short of the top, and the top misses the left side's end by 0.05 m.
    const double gap = 0.05;
    auto lines = Lines({Path({{kX, kY}, {kX + 10, kY}}), Path({{kX + 10, kY}, {kX + 10, kY + 10 - gap}}),
                        Path({{kX + 12, kY + 10}, {kX + gap, kY + 10}}), Path({{kX, kY + 10}, {kX, kY}})});
    Build(lines, Tolerance(0.04), "under.shp");
    EXPECT_EQ(ui_->Messages().size(), 1u); // bounded nothing
    Build(lines, Tolerance(0.1), "over.shp");
    EXPECT_EQ(ui_->Messages().size(), 1u);
    const auto records = ReadPolygons(*Output("over"));
    ASSERT_EQ(records.size(), 1u);
    EXPECT_NEAR(records[0].area, 99.50125, kAreaTol);
}

TEST_F(BuildPolygonsTest, EachPolygonTakesTheFirstOrTheNearestLabelPoint) {
    // Left square: a far point first, then one at the centroid. Right square: two points equally far
    // from the centroid (the earlier wins). Square apart: no point at all.
    auto lines = Lines({Outline(kX, kY, 10), Outline(kX + 10, kY, 10), Outline(kX + 40, kY, 10)});
    auto labels = Labels({{{kX + 1, kY + 1}, "far"},
                          {{kX + 5, kY + 5}, "centre"},
                          {{kX + 13, kY + 5}, "west"},
                          {{kX + 17, kY + 5}, "east"}});
    for (const bool first : {true, false}) {
        SCOPED_TRACE(first ? "first" : "nearest");
        const std::string name = first ? "first.shp" : "nearest.shp";
        const std::string report =
            Build(lines, {.labels = labels, .useFirst = first, .fields = Fields(*labels, {"NAME", "Area"})}, name);
        ASSERT_TRUE(ui_->Errors().empty()) << ui_->Errors().front();
        // The label field called Area keeps its name; the own area field gives way.
        auto output = Output(first ? "first" : "nearest");
        ASSERT_GE(output->FindField("Area_2"), 0);
        const auto records = ReadPolygons(*output, "Area_2", {"NAME", "Area"});
        ASSERT_EQ(records.size(), 3u);
        const auto* left = Find(records, kX, kY, kX + 10, kY + 10);
        const auto* right = Find(records, kX + 10, kY, kX + 20, kY + 10);
        const auto* apart = Find(records, kX + 40, kY, kX + 50, kY + 10);
        ASSERT_TRUE(left && right && apart);
        EXPECT_EQ(left->labels.at("NAME").ToString(), first ? "far" : "centre");
        EXPECT_DOUBLE_EQ(left->labels.at("Area").ToDouble(), first ? 0.5 : 1.5);
        EXPECT_NEAR(left->area, 100.0, kAreaTol);
        EXPECT_EQ(right->labels.at("NAME").ToString(), "west");
        EXPECT_TRUE(apart->labels.at("NAME").IsNull() || apart->labels.at("NAME").ToString().empty());
        EXPECT_NE(report.find("\\b Missing Label Points:\\b0  These polygons had no label points within the polygon "
                              "boundary...\\par\r\n  ** OID Value = " + std::to_string(apart->oid) + "\\par"),
                  std::string::npos)
            << report;
        EXPECT_NE(report.find(first ? " If multiple points in polygon, use first point"
                                    : " If multiple points in polygon, use point closest to polygon centroid"),
                  std::string::npos);
        EXPECT_NE(report.find("       1] NAME\\par\r\n       2] Area\\par"), std::string::npos);
    }
}

TEST_F(BuildPolygonsTest, OnlySelectedLabelPointsCountWhenAsked) {
    auto lines = Lines({Outline(kX, kY, 10), Outline(kX + 10, kY, 10)});
    auto labels = Labels({{{kX + 1, kY + 1}, "far"}, {{kX + 5, kY + 5}, "centre"}, {{kX + 13, kY + 5}, "west"}});
    auto selection = MakeSelectionSet(std::dynamic_pointer_cast<ITable>(labels->FeatureClass()));
    selection->AddList({1}); // "centre"
    labels->SelectionSet(selection);
    const std::string report =
        Build(lines, {.labels = labels, .useAll = false, .useFirst = true, .fields = Fields(*labels, {"NAME"})});
    ASSERT_TRUE(ui_->Errors().empty()) << ui_->Errors().front();
    const auto records = ReadPolygons(*Output(), "Area", {"NAME"});
    const auto* left = Find(records, kX, kY, kX + 10, kY + 10);
    const auto* right = Find(records, kX + 10, kY, kX + 20, kY + 10);
    ASSERT_TRUE(left && right);
    EXPECT_EQ(left->labels.at("NAME").ToString(), "centre");
    EXPECT_NE(report.find("  ** OID Value = " + std::to_string(right->oid)), std::string::npos);
    EXPECT_NE(report.find(" Consider only selected label points"), std::string::npos);
}

TEST_F(BuildPolygonsTest, LabelPointsInAnotherReferenceAreSearchedInTheirs) {
    constexpr std::int32_t kWgs84 = 4326;
    auto geographic = SpatialReferenceEnvironment().CreateGeographicCoordinateSystem(kWgs84);
    auto lines = Lines({Outline(kX, kY, 100), Outline(kX + 100, kY, 100)});
    // Nearest to the right square's centroid is "inner", though "outer" comes first.
    auto labels = Labels({{{kX + 105, kY + 50}, "outer"}, {{kX + 150, kY + 52}, "inner"}, {{kX + 50, kY + 50}, "left"}},
                         geographic);
    Build(lines, {.labels = labels, .useFirst = false, .fields = Fields(*labels, {"NAME"})});
    ASSERT_TRUE(ui_->Errors().empty()) << ui_->Errors().front();
    const auto records = ReadPolygons(*Output(), "Area", {"NAME"});
    ASSERT_EQ(records.size(), 2u);
    // The polygons keep the lines' reference and coordinates.
    const auto* left = Find(records, kX, kY, kX + 100, kY + 100);
    const auto* right = Find(records, kX + 100, kY, kX + 200, kY + 100);
    ASSERT_TRUE(left && right);
    EXPECT_EQ(left->labels.at("NAME").ToString(), "left");
    EXPECT_EQ(right->labels.at("NAME").ToString(), "inner");
    EXPECT_NEAR(right->area, 10000.0, kAreaTol);
}

TEST_F(BuildPolygonsTest, BadInputIsRefusedBeforeAnythingIsWritten) {
    auto labels = Labels({{{kX + 1, kY + 1}, "a"}});
    {
        SCOPED_TRACE("no polylines");
        auto empty = Lines({}, "empty");
        EXPECT_EQ(Build(empty, {}), "");
        ASSERT_EQ(ui_->Messages().size(), 1u);
        EXPECT_EQ(ui_->Messages()[0], "No polylines available in 'empty'!  Function cancelled...");
    }
    auto lines = Lines({Outline(kX, kY, 10)});
    {
        SCOPED_TRACE("a point layer");
        EXPECT_EQ(Build(labels, {}), "");
    }
    {
        SCOPED_TRACE("a negative tolerance");
        EXPECT_EQ(Build(lines, Tolerance(-1.0)), "");
        EXPECT_EQ(Build(lines, Tolerance(std::nan(""))), "");
    }
    {
        SCOPED_TRACE("a label field the point layer lacks");
        auto other = std::make_shared<VarArray>();
        other->Add(MakeField("NOSUCH", esriFieldTypeString, 8));
        EXPECT_EQ(Build(lines, {.labels = labels, .fields = other}), "");
    }
    const auto errors = ui_->Errors();
    ASSERT_EQ(errors.size(), 4u);
    for (const auto& e : errors) EXPECT_NE(e.find("orlBuildPolygons"), std::string::npos) << e;
    EXPECT_NE(errors[0].find("The layer 'labels' does not hold polylines"), std::string::npos);
    EXPECT_NE(errors[1].find("cluster tolerance must be a number of 0 or more"), std::string::npos);
    EXPECT_NE(errors[2].find("cluster tolerance must be a number of 0 or more"), std::string::npos);
    EXPECT_NE(errors[3].find("no field 'NOSUCH'"), std::string::npos);
    EXPECT_FALSE(OutputExists());
}

// ---------------------------------------------------------------- the dialog

class BuildParamsTest : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        std::filesystem::create_directories(dir_ / "in");
        std::filesystem::create_directories(dir_ / "doc");
        in_ = ShapefileFolder(dir_ / "in");
        auto roads = CreateClass(*in_, "roads", esriGeometryPolyline, Utm33N());
        AddFeature(*roads, MakePolyline({Outline(kX, kY, 10)}));
        roads_ = AddLayer(roads, "roads");
        app_->SaveDocument(dir_ / "doc/map.map.json");
    }
    std::shared_ptr<FeatureLayer> AddPoints() {
        auto wells = CreateClass(*in_, "wells", esriGeometryPoint, Utm33N(),
                                 {MakeField("NAME", esriFieldTypeString, 12), MakeField("Shape_Area", esriFieldTypeDouble)});
        AddFeature(*wells, MakePoint(kX + 1, kY + 1));
        return AddLayer(wells, "wells");
    }
    std::unique_ptr<frmBuildParams> Open() {
        auto form = std::make_unique<frmBuildParams>();
        form->ArcApplication(app_);
        form->Load();
        return form;
    }
    void Check(frmBuildParams& form, int value) {
        form.Ctl("chkUseLabelPoints").Value = value;
        form.Fire("chkUseLabelPoints", FormEvent::Click);
    }
    std::shared_ptr<IFeatureWorkspace> in_;
    std::shared_ptr<FeatureLayer> roads_;
};

const char* const kPanel[] = {"frameLabelPoints", "optAllLabelPoints", "optSelLabelPoints", "frameWhichPoint",
                              "lblChooseLabelPoint", "optFirstLabelPoint", "optCentroidLabelPoint", "lblFields",
                              "cbxPointLayers", "lbxFields", "cmdSelFields"};

TEST_F(BuildParamsTest, WithoutPointLayersTheLabelPanelIsGreyAndOKNeedsOnlyLayerAndTolerance) {
    auto form = Open();
    EXPECT_EQ(form->Caption, " Build Polygons:");
    EXPECT_EQ(form->Ctl("chkUseLabelPoints").Value, 2);
    EXPECT_EQ(form->Ctl("cbxPointLayers").List, std::vector<std::string>{"[No Point Layers Available]"});
    EXPECT_EQ(form->Ctl("cbxPointLayers").ListIndex, 0);
    for (const char* name : kPanel) EXPECT_FALSE(form->Ctl(name).Enabled) << name;
    EXPECT_EQ(form->Ctl("optAll").Caption, "Use All Polylines (n = 1)");
    EXPECT_EQ(form->Ctl("lblUnits").Caption, "Units: Meter");
    EXPECT_TRUE(form->Ctl("cmdOK").Enabled);
    EXPECT_EQ(ReturnFilename(form->Ctl("txtOutput").Text), "Polygons.shp");
    form->Ctl("txtCluster").Text = "";
    form->Fire("txtCluster", FormEvent::Change);
    EXPECT_FALSE(form->Ctl("cmdOK").Enabled);
}

TEST_F(BuildParamsTest, TransferNeedsAFieldAndOKLeavesEveryChoice) {
    auto wells = AddPoints();
    auto form = Open();
    EXPECT_EQ(form->Ctl("chkUseLabelPoints").Value, 0);
    for (const char* name : kPanel) EXPECT_FALSE(form->Ctl(name).Enabled) << name;
    // The point layer's fields, stored measures included.
    EXPECT_EQ(form->Ctl("lbxFields").List, (std::vector<std::string>{"NAME", "Shape_Area"}));
    EXPECT_EQ(form->Ctl("optAllLabelPoints").Caption, "Consider All Label Points (n = 1)");

    Check(*form, 1);
    EXPECT_TRUE(form->Ctl("cbxPointLayers").Enabled);
    EXPECT_FALSE(form->Ctl("optSelLabelPoints").Enabled); // nothing selected
    EXPECT_FALSE(form->Ctl("cmdOK").Enabled);             // no field chosen
    form->Ctl("lbxFields").Selected[0] = true;
    form->Fire("lbxFields", FormEvent::Click);
    EXPECT_TRUE(form->Ctl("cmdOK").Enabled);

    // Typing: letters are refused, digits and the point pass.
    EventArgs key;
    key.KeyAscii = 'x';
    form->Fire("txtCluster", FormEvent::KeyPress, key);
    EXPECT_EQ(key.KeyAscii, 0);
    form->Ctl("txtCluster").Text = "0.25";
    form->Fire("optCentroidLabelPoint", FormEvent::Click);
    form->Fire("cmdOK", FormEvent::Click);
    EXPECT_FALSE(form->Visible());
    EXPECT_TRUE(extension_->ShouldContinue());
    EXPECT_DOUBLE_EQ(extension_->BuildClusterTolerance(), 0.25);
    EXPECT_TRUE(extension_->BuildShouldTransferLabels());
    EXPECT_TRUE(extension_->BuildUseAllLabelPoints());
    EXPECT_FALSE(extension_->BuildUseFirstLabelPoint());
    EXPECT_EQ(extension_->SelectedPointLayer(), wells);
    EXPECT_EQ(extension_->SelectedLayer(), roads_);
    ASSERT_EQ(extension_->SelectedFields()->Count(), 1);
    EXPECT_EQ(extension_->SelectedFields()->Element(0).As<IField>()->Name(), "NAME");
}

TEST_F(BuildParamsTest, UncheckingTheBoxSendsNoLabelChoices) {
    AddPoints();
    auto form = Open();
    Check(*form, 1);
    Check(*form, 0);
    for (const char* name : kPanel) EXPECT_FALSE(form->Ctl(name).Enabled) << name;
    EXPECT_TRUE(form->Ctl("cmdOK").Enabled);
    form->Fire("cmdOK", FormEvent::Click);
    EXPECT_FALSE(extension_->BuildShouldTransferLabels());
    EXPECT_FALSE(extension_->SelectedPointLayer());
    EXPECT_FALSE(extension_->SelectedFields());
}

TEST_F(BuildParamsTest, WithoutAPolylineLayerOKAndToleranceAreOff) {
    FocusMap()->DeleteLayer(roads_);
    auto form = Open();
    EXPECT_FALSE(form->Ctl("cmdOK").Enabled);
    EXPECT_FALSE(form->Ctl("txtCluster").Enabled);
    EXPECT_EQ(form->Ctl("lblUnits").Caption, "Units:  [No Polyline Layer Selected]");
    EXPECT_EQ(form->Ctl("optAll").Value, 1);
}

TEST_F(BuildParamsTest, AReferenceWithoutAValidToleranceProposesATenThousandth) {
    FocusMap()->DeleteLayer(roads_);
    auto bare = CreateClass(*in_, "bare", esriGeometryPolyline, SpatialReferenceEnvironment().CreateUnknown());
    // Storage gives every reference a tolerance; the one in use loses it here.
    auto reference = std::dynamic_pointer_cast<IGeoDataset>(bare)->SpatialReference();
    reference->XYTolerance(0.0);
    ASSERT_NE(std::dynamic_pointer_cast<IGeoDataset>(bare)->SpatialReference()->XYToleranceValid(), 3);
    AddLayer(bare, "bare");
    auto form = Open();
    EXPECT_EQ(form->Ctl("txtCluster").Text, "0.0001");
    EXPECT_EQ(form->Ctl("lblUnits").Caption, "Units: Unknown Coordinates");
}

} // namespace
} // namespace tess::test
