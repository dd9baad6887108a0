// The run around the measures: the work a record pays for, fields made and
// substituted, empty shapes, the progress meter's thresholds, Stop, the report,
// and the runs that refuse to start.

#include <unistd.h>

#include <filesystem>
#include <functional>

#include "CalculatorFixtures.h"
#include "platform/data/Dataset.h"
#include "platform/data/SelectionSet.h"
#include "platform/framework/StatusBar.h"
#include "platform/system/DateTime.h"
#include "support/ModelessFrame.h"
#include "support/ProgressForm.h"

namespace tess::test {
namespace {

constexpr double kEmptyMark = -9999.0;

std::vector<std::shared_ptr<IGeometry>> Repeat(int count, const std::function<std::shared_ptr<IGeometry>()>& make) {
    std::vector<std::shared_ptr<IGeometry>> shapes;
    for (int i = 0; i < count; ++i)
        shapes.push_back(make());
    return shapes;
}

// ------------------------------------------------------------------ the work of one record

TEST_F(CalcTest, SphericalPairIsSolvedOncePerRecordUnlessTheCentreIsWestOrSouth) {
    auto layer = Layer("parcels", esriGeometryPolygon, Wgs84(),
                       {MakePolygon({Square(10, 50, 1, true)}), MakePolygon({Square(-11, 50, 1, true)}),
                        MakePolygon({Square(10, -51, 1, true)})});
    Run(layer, Defaults(esriGeometryPolygon, spatial_kind::Geographic, {1, 2}));
    // East and north: one pair. West, and south: the sign test fails and the pair is solved again.
    EXPECT_EQ(GeodesyCalls::sphericalPairs, 1 + 2 + 2);
    const auto rows = Rows(layer, {"Sph_Area", "Longitude"});
    EXPECT_GT(rows.at(1).at("Sph_Area").ToDouble(), 0.0);
    EXPECT_NEAR(rows.at(1).at("Longitude").ToDouble(), -10.5, 1e-6);
}

TEST_F(CalcTest, ProjectedPolygonSharesOnePairBetweenAreaAndCentre) {
    auto layer = Layer("parcels", esriGeometryPolygon, Utm33N(),
                       {MakePolygon({Square(500000, 5000000, 1000, true)}),
                        MakePolygon({Square(400000, 5100000, 1000, true)})});
    Run(layer, Defaults(esriGeometryPolygon, spatial_kind::Projected, {2, 4, 6}));
    EXPECT_EQ(GeodesyCalls::sphericalPairs, 2);
}

TEST_F(CalcTest, PolylineLengthAndMidpointShareOnePassAndTheAzimuthsOneSolution) {
    auto layer = Layer("lines", esriGeometryPolyline, Wgs84(),
                       {MakePolyline({{{1, 1}, {2, 2}, {3, 1}}}), MakePolyline({{{-5, -5}, {-4, -4}}})});
    Run(layer, Defaults(esriGeometryPolyline, spatial_kind::Geographic, {1, 3, 5, 6}));
    EXPECT_EQ(GeodesyCalls::spheroidalPairs, 2);
    EXPECT_EQ(GeodesyCalls::vincenty, 2);
}

TEST_F(CalcTest, ClosedPolylineHasNoAzimuthButALength) {
    auto geographic = Layer("rings", esriGeometryPolyline, Wgs84(), {MakePolyline({Square(10, 10, 1, true)})});
    Run(geographic, Defaults(esriGeometryPolyline, spatial_kind::Geographic, {1, 5, 6}));
    EXPECT_EQ(GeodesyCalls::vincenty, 0);
    const RowValues g = Rows(geographic, {"Sph_Len", "Start_Az", "End_Az"}).at(0);
    EXPECT_GT(g.at("Sph_Len").ToDouble(), 400000.0);
    EXPECT_EQ(g.at("Start_Az").ToDouble(), kEmptyMark);
    EXPECT_EQ(g.at("End_Az").ToDouble(), kEmptyMark);

    auto unknown = Layer("plain", esriGeometryPolyline, nullptr, {MakePolyline({Square(0, 0, 1, true)})});
    Run(unknown, Defaults(esriGeometryPolyline, spatial_kind::Unknown, {5}));
    EXPECT_EQ(Rows(unknown, {"Azimuth"}).at(0).at("Azimuth").ToDouble(), kEmptyMark);
}

TEST_F(CalcTest, GeocentricConversionRunsOncePerRecordAndNeverWhenOff) {
    auto layer = Layer("lines", esriGeometryPolyline, Wgs84(),
                       {MakePolyline({{{1, 1}, {2, 2}}}), MakePolyline({{{3, 3}, {4, 4}}})});
    Run(layer, Defaults(esriGeometryPolyline, spatial_kind::Geographic, {1, 3, 5}), kWgsA, kWgsB, false);
    EXPECT_EQ(GeodesyCalls::toGraphic, 0);
    Run(layer, Defaults(esriGeometryPolyline, spatial_kind::Geographic, {1, 3, 5}), kWgsA, kWgsB, true);
    EXPECT_EQ(GeodesyCalls::toGraphic, 2);
}

// ------------------------------------------------------------------ fields

TEST_F(CalcTest, RepeatedNamesMakeOneFieldThatTheLaterMeasureFills) {
    auto layer = Layer("lines", esriGeometryPolyline, nullptr, {MakePolyline({{{0, 0}, {0, 7}}})});
    Run(layer, {{1, "Measure", ""}, {7, "Measure", ""}});
    IFeatureClass& featureClass = *layer->FeatureClass();
    int named = 0;
    for (std::int32_t i = 0; i < featureClass.Fields()->FieldCount(); ++i)
        named += featureClass.Fields()->Field(i)->Name() == "Measure";
    EXPECT_EQ(named, 1);
    EXPECT_EQ(Rows(layer, {"Measure"}).at(0).at("Measure").ToDouble(), 2.0); // vertices, after the length
}

TEST_F(CalcTest, NewFieldsAreDoublesOfSixteenDigitsWithTwelveDecimalsCountsIncluded) {
    auto layer = Layer("lines", esriGeometryPolyline, nullptr, {MakePolyline({{{0, 0}, {0, 7}}})});
    Run(layer, Defaults(esriGeometryPolyline, spatial_kind::Unknown, {6}));
    auto fields = layer->FeatureClass()->Fields();
    auto parts = fields->Field(layer->FeatureClass()->FindField("Parts"));
    EXPECT_EQ(parts->Type(), esriFieldTypeDouble);
    EXPECT_EQ(Rows(layer, {"Parts"}).at(0).at("Parts").ToDouble(), 1.0);
}

TEST_F(CalcTest, ExistingFieldsOfAnyNumericTypeAreWrittenAsTheyAre) {
    auto featureClass = CreateClass(*workspace_, "lines", esriGeometryPolyline, nullptr,
                                    {MakeField("Nodes", esriFieldTypeInteger)});
    AddFeature(*featureClass, MakePolyline({{{0, 0}, {1, 1}, {2, 0}}}), {{"Nodes", Variant(std::int32_t{0})}});
    auto layer = AddLayer(featureClass, "lines");
    Run(layer, {{7, "Nodes", ""}});
    auto field = featureClass->Fields()->Field(featureClass->FindField("Nodes"));
    EXPECT_EQ(field->Type(), esriFieldTypeInteger);
    EXPECT_EQ(Rows(layer, {"Nodes"}).at(0).at("Nodes").ToLong(), 3);
}

TEST_F(CalcTest, NonEditableFieldsGetSubstitutesWhoseCounterRunsOn) {
    auto gdb = std::dynamic_pointer_cast<IFeatureWorkspace>(MakeWorkspace(Format::FileGDB, dir_));
    // The platform keeps these two up to date in a geodatabase, so users cannot write them.
    auto featureClass = CreateClass(*gdb, "parcels", esriGeometryPolygon, nullptr,
                                    {MakeField("Shape_Length", esriFieldTypeDouble),
                                     MakeField("Shape_Area", esriFieldTypeDouble)});
    AddFeature(*featureClass, MakePolygon({Square(0, 0, 2, true)}));
    auto layer = AddLayer(featureClass, "parcels");
    ASSERT_GE(featureClass->FindField("Shape_Length"), 0) << "the geodatabase keeps no length field";
    ASSERT_FALSE(featureClass->Fields()->Field(featureClass->FindField("Shape_Length"))->Editable());

    const std::string report = Run(layer, {{1, "Shape_Area", ""}, {3, "Shape_Length", ""}});

    // Counter 2 for the first, 3 for the second; each cut to its last 10 characters.
    EXPECT_GE(featureClass->FindField("hape_Area2"), 0);
    EXPECT_GE(featureClass->FindField("pe_Length3"), 0);
    const auto messages = ui_->Log();
    std::vector<std::string> titles;
    for (const auto& shown : messages)
        if (shown.kind == "message")
            titles.push_back(shown.title);
    EXPECT_EQ(titles, (std::vector<std::string>{"Problem with Field Name 'Shape_Area':",
                                                "Problem with Field Name 'Shape_Length':"}));
    // The key keeps the old field's index: the first write is refused, reported under the
    // polygon routine's name, and the run still reports success with the substituted names.
    ASSERT_EQ(ui_->Errors().size(), 1U);
    EXPECT_NE(ui_->Errors().front().find("CalcGeometryPolygon"), std::string::npos);
    EXPECT_NE(report.find("Geometry Calculation Successful:"), std::string::npos);
    EXPECT_NE(report.find("[hape_Area2]"), std::string::npos);
    EXPECT_NE(report.find("[pe_Length3]"), std::string::npos);
}

// ------------------------------------------------------------------ empty shapes

TEST_F(CalcTest, EmptyPolygonGetsTheMarkInEveryField) {
    auto layer = Layer("parcels", esriGeometryPolygon, Utm33N(),
                       {MakePolygon({Square(500000, 5000000, 10, true)}), std::make_shared<Polygon>()});
    const std::string report = Run(layer, Defaults(esriGeometryPolygon, spatial_kind::Projected, {1, 2, 3, 4, 5, 6, 7, 8}));
    const std::vector<std::string> fields{"Plan_Area", "Sph_Area", "Cent_X",   "Cent_Y", "Sph_Cen_X",
                                          "Sph_Cen_Y", "Pl_Perim", "Sph_Perim", "Parts",  "Vertices"};
    const RowValues empty = Rows(layer, fields).at(1);
    for (const std::string& name : fields)
        EXPECT_EQ(empty.at(name).ToDouble(), kEmptyMark) << name;
    EXPECT_NE(report.find(R"(\b Empty Features Found:\b0)"), std::string::npos);
    EXPECT_NE(report.find(R"(  ** OID Value = 2\par)"), std::string::npos);
}

TEST_F(CalcTest, EmptyPolylineLeavesTheSixExceptedFieldsAlone) {
    auto projected = Layer("p", esriGeometryPolyline, Utm33N(), {std::make_shared<Polyline>()});
    Run(projected, Defaults(esriGeometryPolyline, spatial_kind::Projected, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}));
    const RowValues p = Rows(projected, {"Plan_Len", "Sph_Len", "Start_X", "Start_Y", "Mid_X", "Mid_Y", "Sph_Mid_X",
                                         "Sph_Mid_Y", "End_X", "End_Y", "Prj_Az", "Start_Az", "End_Az", "Parts",
                                         "Vertices"})
                            .at(0);
    for (const char* name : {"Plan_Len", "Sph_Len", "Start_X", "Start_Y", "Mid_X", "Mid_Y", "Sph_Mid_X", "Sph_Mid_Y",
                             "End_X", "End_Y", "Prj_Az", "Start_Az"})
        EXPECT_EQ(p.at(name).ToDouble(), kEmptyMark) << name;
    for (const char* name : {"End_Az", "Parts", "Vertices"})
        EXPECT_TRUE(p.at(name).IsNull()) << name;

    auto geographic = Layer("g", esriGeometryPolyline, Wgs84(), {std::make_shared<Polyline>()});
    Run(geographic, Defaults(esriGeometryPolyline, spatial_kind::Geographic, {1, 6, 7, 8}));
    const RowValues g = Rows(geographic, {"Sph_Len", "End_Az", "Parts", "Vertices"}).at(0);
    EXPECT_EQ(g.at("Sph_Len").ToDouble(), kEmptyMark);
    EXPECT_EQ(g.at("End_Az").ToDouble(), kEmptyMark);
    EXPECT_TRUE(g.at("Parts").IsNull());
    EXPECT_TRUE(g.at("Vertices").IsNull());
}

// ------------------------------------------------------------------ records, progress, Stop

TEST_F(CalcTest, SelectedRecordsOnlyAreWritten) {
    auto layer = Layer("lines", esriGeometryPolyline, nullptr,
                       Repeat(4, [] { return MakePolyline({{{0, 0}, {0, 2}}}); }));
    auto selection = MakeSelectionSet(std::dynamic_pointer_cast<ITable>(layer->FeatureClass()));
    selection->Add(2);
    selection->Add(4);
    layer->SelectionSet(selection);
    const std::string report = Run(layer, {{1, "Length", ""}}, kWgsA, kWgsB, false, false);
    const auto rows = Rows(layer, {"Length"});
    EXPECT_TRUE(rows.at(0).at("Length").IsNull());
    EXPECT_EQ(rows.at(1).at("Length").ToDouble(), 2.0);
    EXPECT_TRUE(rows.at(2).at("Length").IsNull());
    EXPECT_EQ(rows.at(3).at("Length").ToDouble(), 2.0);
    EXPECT_NE(report.find("Calculated Geometry for Selected Features (n = 2)"), std::string::npos);
    EXPECT_NE(report.find("Contains 4 Polylines"), std::string::npos);
}

bool MeterShown(const ScriptedUI& ui) {
    for (const auto& shown : ui.Log())
        if (shown.kind == "modeless")
            return true;
    return false;
}

TEST_F(CalcTest, MeterShowsFromElevenRecordsWithASlowMeasure) {
    auto ten = Layer("ten", esriGeometryPolyline, Wgs84(), Repeat(10, [] { return MakePolyline({{{0, 0}, {1, 1}}}); }));
    Run(ten, Defaults(esriGeometryPolyline, spatial_kind::Geographic, {1}));
    EXPECT_FALSE(MeterShown(*ui_));
    auto eleven =
        Layer("eleven", esriGeometryPolyline, Wgs84(), Repeat(11, [] { return MakePolyline({{{0, 0}, {1, 1}}}); }));
    Run(eleven, Defaults(esriGeometryPolyline, spatial_kind::Geographic, {5})); // azimuths are not slow
    EXPECT_FALSE(MeterShown(*ui_));
    Run(eleven, Defaults(esriGeometryPolyline, spatial_kind::Geographic, {1}));
    EXPECT_TRUE(MeterShown(*ui_));
}

TEST_F(CalcTest, MeterShowsAboveAThousandRecordsWithoutASlowMeasure) {
    auto thousand = Layer("k", esriGeometryPoint, nullptr, Repeat(1000, [] { return MakePoint(1, 2); }));
    Run(thousand, Defaults(esriGeometryPoint, spatial_kind::Unknown, {1}));
    EXPECT_FALSE(MeterShown(*ui_));
    auto more = Layer("k1", esriGeometryPoint, nullptr, Repeat(1001, [] { return MakePoint(1, 2); }));
    Run(more, Defaults(esriGeometryPoint, spatial_kind::Unknown, {1}));
    EXPECT_TRUE(MeterShown(*ui_));
    EXPECT_EQ(Rows(more, {"X_Coord"}).back().at("X_Coord").ToDouble(), 1.0);
}

//! The scripted UI, with Stop pressed on the meter at a chosen event pump.
class StoppingUI final : public IUIServices {
public:
    explicit StoppingUI(std::shared_ptr<ScriptedUI> inner) : inner_(std::move(inner)) {}
    std::function<bool()> stopWhen; //!< Stop is pressed at the first pump where this holds
    Form* meter = nullptr;

    MsgBoxResult MessageBox(const std::string& t, MsgBoxButtons b, MsgBoxIcon i, const std::string& title) override {
        return inner_->MessageBox(t, b, i, title);
    }
    void ShowErrorWindow(const std::string& text) override { inner_->ShowErrorWindow(text); }
    void Beep() override {}
    void DoEvents() override {
        if (meter && stopWhen && stopWhen()) {
            stopWhen = nullptr;
            meter->Fire("cmdStop", FormEvent::Click);
        }
    }
    bool OpenDocument(const std::string& path) override { return inner_->OpenDocument(path); }
    void ShowModal(Form& form) override { inner_->ShowModal(form); }
    void ShowModeless(Form& form) override {
        meter = &form;
        inner_->ShowModeless(form);
    }
    void HideModeless(Form& form) override { inner_->HideModeless(form); }
    std::optional<BrowseResult> Browse(const BrowseRequest& request) override { return inner_->Browse(request); }
    std::shared_ptr<ISpatialReference> ChooseSpatialReference(const std::shared_ptr<ISpatialReference>& s) override {
        return inner_->ChooseSpatialReference(s);
    }
    void SetMousePointer(MousePointer) override {}
    double ScreenWidth() const override { return inner_->ScreenWidth(); }
    double ScreenHeight() const override { return inner_->ScreenHeight(); }
    void CopyToClipboard(const std::string&, const std::string&, const std::string&) override {}
    bool PrintReport(const std::string&, const std::string&) override { return false; }

private:
    std::shared_ptr<ScriptedUI> inner_;
};

TEST_F(CalcTest, StopKeepsTheRowsWrittenSoFar) {
    auto ui = std::make_shared<StoppingUI>(ui_);
    auto bar = app_->StatusBar();
    ui->stopWhen = [bar] { return bar->Message(0).find("[record #3 of") != std::string::npos; };
    SetUI(ui);
    auto now = std::make_shared<DateValue>(DateFromCalendar(CalendarTime{2024, 3, 5, 10, 0, 0.0}));
    clock_ = [now] { return *now = DateAddSeconds(*now, 1); }; // every record is due an update
    auto layer = Layer("lines", esriGeometryPolyline, Wgs84(), Repeat(12, [] { return MakePolyline({{{0, 0}, {1, 1}}}); }));
    const std::string report = Run(layer, Defaults(esriGeometryPolyline, spatial_kind::Geographic, {1}));
    SetUI(ui_);
    ASSERT_TRUE(ui_->Errors().empty()) << ui_->Errors().front();
    ASSERT_NE(report.find("Exited Function"), std::string::npos) << report;
    const auto rows = Rows(layer, {"Sph_Len"});
    EXPECT_GT(rows.at(1).at("Sph_Len").ToDouble(), 0.0);
    EXPECT_TRUE(rows.at(2).at("Sph_Len").IsNull()); // stopped before record 3 was calculated
    EXPECT_TRUE(rows.at(11).at("Sph_Len").IsNull());
    EXPECT_NE(report.find(R"(Exited Function Prematurely at Record 3\par)"), std::string::npos);
    EXPECT_NE(report.find("Geometry Calculation Successful:"), std::string::npos);
    EXPECT_NE(report.find("(n = 12)"), std::string::npos);
}

// ------------------------------------------------------------------ the report

TEST_F(CalcTest, ReportListsFieldsSpheroidAndCoordinateSystem) {
    auto layer = Layer("parcels", esriGeometryPolygon, Wgs84(), {MakePolygon({Square(1, 1, 1, true)})});
    const std::string report = Run(layer, {{1, "Sph_Area", ""}, {2, "Lon", "Lat"}}, 6378137.0, 6356752.31424518,
                                   false, true, "WGS_1984");
    EXPECT_EQ(report.rfind(R"({\rtf1\ansi\ansicpg1252\deff0\deflang1033{\fonttbl{\f0\fswiss\fcharset0 Arial;}})", 0), 0U);
    EXPECT_NE(report.find(R"(  ** Input Feature Layer: parcels\par)"), std::string::npos);
    EXPECT_NE(report.find(R"(  ** Contains 1 Polygon\par)"), std::string::npos);
    EXPECT_NE(report.find(R"(  ** Calculated Geometry for All Features (n = 1)\par)"), std::string::npos);
    EXPECT_NE(report.find(R"(  ** Spatial Reference:  GCS_WGS_1984\par)"), std::string::npos);
    EXPECT_NE(report.find("       1] Spherical Area: \\i Field Name = [Sph_Area]\\i0\\par\r\n"
                          "       2] Spherical Centroid X-Coordinate: \\i Field Name = [Lon]\\i0\\par\r\n"
                          "       3] Spherical Centroid Y-Coordinate: \\i Field Name = [Lat]\\i0\\par"),
              std::string::npos);
    EXPECT_NE(report.find(R"(  ** Spheroid Semi-Major (Equatorial) Radius: 6378137 meters\par)"), std::string::npos);
    EXPECT_NE(report.find(R"(  ** Spheroid Semi-Minor (Polar) Radius: 6356752.31424518 meters\par)"),
              std::string::npos);
    EXPECT_NE(report.find(R"(  ** Coordinate System: Data are in Planetographic Coordinates\par)"), std::string::npos);
    // No empty shape: the time line follows the rule directly.
    EXPECT_NE(report.find("---------------------------------------------\\par\r\n\\pard\\qc "), std::string::npos);
}

TEST_F(CalcTest, AShapeKindWithoutCatalogueCalculatesNothing) {
    auto layer = Layer("u", esriGeometryPoint, nullptr, {MakePoint(1, 1)});
    const std::string report = Run(layer, {{5, "Nothing", ""}});
    EXPECT_LT(layer->FeatureClass()->FindField("Nothing"), 0); // no flag for a row that is not there
    EXPECT_NE(report.find("Geometry Calculation Successful:"), std::string::npos);
}

// ------------------------------------------------------------------ runs that do not start

TEST_F(CalcTest, EditSessionStopsTheRunBeforeAnyField) {
    auto layer = Layer("lines", esriGeometryPolyline, nullptr, {MakePolyline({{{0, 0}, {0, 2}}})});
    auto edit = std::dynamic_pointer_cast<IWorkspaceEdit>(workspace_);
    edit->StartEditing(false);
    const std::string report = Run(layer, {{1, "Length", ""}});
    edit->StopEditing(false);
    EXPECT_EQ(report, "FUNCTION FAILED:  This fuction is written to run outside of an edit session and therefore "
                      "requires that ArcMap not be in edit mode.  Please turn off your edit session before running "
                      "this function.");
    EXPECT_LT(layer->FeatureClass()->FindField("Length"), 0);
}

TEST_F(CalcTest, FieldThatCannotBeMadeEndsTheRunWithItsMessage) {
    auto layer = Layer("lines", esriGeometryPolyline, nullptr, {MakePolyline({{{0, 0}, {0, 2}}})});
    const std::string report = Run(layer, {{1, "Length", ""}, {7, "", ""}});
    EXPECT_EQ(report, "Failed to add field '' to Feature Layer lines!");
    ASSERT_EQ(ui_->Messages().size(), 1U);
    EXPECT_EQ(ui_->Messages().front(), "Failed to add field '' to Feature Layer lines!  Bailing out...");
    EXPECT_GE(layer->FeatureClass()->FindField("Length"), 0); // made before the failure, kept
    EXPECT_TRUE(Rows(layer, {"Length"}).at(0).at("Length").IsNull());
}

TEST_F(CalcTest, SpheroidWithoutRadiiOrWithSwappedRadiiIsRefusedBeforeAnyField) {
    auto layer = Layer("lines", esriGeometryPolyline, Wgs84(), {MakePolyline({{{0, 0}, {0, 2}}})});
    const auto choices = Defaults(esriGeometryPolyline, spatial_kind::Geographic, {1});
    std::string report = Run(layer, choices, 0.0, 0.0, false, true, "Custom Spheroid");
    EXPECT_EQ(report.rfind("FUNCTION FAILED:  The spheroid 'Custom Spheroid'", 0), 0U) << report;
    EXPECT_NE(report.find("Both radii must be greater than 0."), std::string::npos);
    report = Run(layer, choices, kWgsB, kWgsA);
    EXPECT_NE(report.find("The polar radius cannot exceed the equatorial radius."), std::string::npos);
    EXPECT_LT(layer->FeatureClass()->FindField("Sph_Len"), 0);
    EXPECT_TRUE(ui_->Errors().empty());
    // Planar measures do not read the spheroid: any radii pass.
    Run(layer, Defaults(esriGeometryPolyline, spatial_kind::Geographic, {7}), 0.0, 0.0);
    EXPECT_EQ(Rows(layer, {"Parts"}).at(0).at("Parts").ToDouble(), 1.0);
}

TEST_F(CalcTest, ReadOnlyShapefileIsReportedAndLeftAsItWas) {
    if (::geteuid() == 0)
        GTEST_SKIP() << "permissions do not bind the superuser";
    std::filesystem::create_directories(dir_ / "ro");
    auto folder = ShapefileFolder(dir_ / "ro");
    auto featureClass = CreateClass(*folder, "lines", esriGeometryPolyline, nullptr,
                                    {MakeField("Length", esriFieldTypeDouble, 0, 16, 6)});
    AddFeature(*featureClass, MakePolyline({{{0, 0}, {0, 2}}}));
    auto layer = AddLayer(featureClass, "lines");
    for (const auto& entry : std::filesystem::directory_iterator(dir_ / "ro"))
        std::filesystem::permissions(entry.path(), std::filesystem::perms::owner_write,
                                     std::filesystem::perm_options::remove);
    std::filesystem::permissions(dir_ / "ro", std::filesystem::perms::owner_write,
                                 std::filesystem::perm_options::remove);
    const std::string report = Run(layer, {{1, "Length", ""}});
    std::filesystem::permissions(dir_ / "ro", std::filesystem::perms::owner_write, std::filesystem::perm_options::add);
    ASSERT_EQ(ui_->Errors().size(), 1U);
    EXPECT_NE(ui_->Errors().front().find("CalcGeometryPolyline"), std::string::npos);
    EXPECT_TRUE(Rows(layer, {"Length"}).at(0).at("Length").IsNull());
}

TEST_F(CalcTest, ShapefileFieldsHoldLargeMeasures) {
    // dBASE numbers of 16 characters with 12 decimals: an area of square metres keeps its whole
    // part; the decimals beyond the field's width go.
    std::filesystem::create_directories(dir_ / "shp");
    auto folder = ShapefileFolder(dir_ / "shp");
    auto featureClass = CreateClass(*folder, "parcels", esriGeometryPolygon, Wgs84());
    AddFeature(*featureClass, MakePolygon({Square(10, 50, 1, true)}));
    auto layer = AddLayer(featureClass, "parcels");
    Run(layer, Defaults(esriGeometryPolygon, spatial_kind::Geographic, {1}));
    const double area = Rows(layer, {"Sph_Area"}).at(0).at("Sph_Area").ToDouble();
    EXPECT_NEAR(area, 7.9e9, 0.2e9); // a degree square at 50 N: 111 km x 71 km
}

} // namespace
} // namespace tess::test
