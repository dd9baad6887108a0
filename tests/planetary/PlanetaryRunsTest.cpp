#include "planetary/PlanetaryRuns.h"

#include "ConversionFixtures.h"

#include "planetary/PlanetaryArguments.h"
#include "platform/data/Cursor.h"
#include "platform/framework/StatusBar.h"
#include "platform/ui/Form.h"
#include "platform/system/DateTime.h"
#include "support/HostTime.h"
#include "support/MyGeneralOperations.h"

#include <cmath>
#include <numbers>

namespace tess::test {
namespace {

// Mars 2000, metres.
constexpr double kMarsA = 3396190.0;
constexpr double kMarsB = 3376200.0;

std::shared_ptr<ISpatialReference> Mars2000() {
    constexpr std::int32_t kMars2000 = 104905; // GCS_Mars_2000
    return SpatialReferenceEnvironment().CreateGeographicCoordinateSystem(kMars2000);
}

std::shared_ptr<ISpatialReference> Wgs84() { return SpatialReferenceEnvironment().CreateGeographicCoordinateSystem(4326); }

double Radians(double degrees) { return degrees * std::numbers::pi / 180.0; }
double Degrees(double radians) { return radians * 180.0 / std::numbers::pi; }

struct OutputRow {
    std::shared_ptr<IGeometry> shape;
    std::string name;
};

class PlanetaryRunTest : public HostTest {
protected:
    //! A shapefile class of the shapes, with a NAME field of long name to check the carry-over.
    std::shared_ptr<FeatureLayer> Layer(const std::string& name, esriGeometryType type,
                                        const std::shared_ptr<ISpatialReference>& sr,
                                        const std::vector<std::shared_ptr<IGeometry>>& shapes) {
        auto folder = ShapefileFolder(dir_.Path());
        auto featureClass = CreateClass(*folder, name, type, sr, {MakeField("NAME", esriFieldTypeString, 20)});
        int n = 0;
        for (const auto& shape : shapes)
            AddFeature(*featureClass, shape, {{"NAME", Variant("f" + std::to_string(++n))}});
        return AddLayer(featureClass, name);
    }

    std::shared_ptr<IVariantArray> Output(const std::string& name) {
        auto fields = std::make_shared<VarArray>();
        fields->Add(std::shared_ptr<IField>(MakeField("NAME", esriFieldTypeString, 20)));
        auto pair = std::make_shared<StrArray>();
        pair->Add("NAME");
        pair->Add("NAME");
        auto map = std::make_shared<VarArray>();
        map->Add(Variant(std::shared_ptr<IStringArray>(pair)));
        auto out = std::make_shared<VarArray>();
        out->Add(Variant(dir_.Path()));
        out->Add(Variant(name + ".shp"));
        out->Add(Variant(output_kind::Shapefile));
        out->Add(Variant(std::shared_ptr<IVariantArray>(fields)));
        out->Add(Variant(std::shared_ptr<IVariantArray>(map)));
        out->Add(Variant(false));
        out->Add(Variant(std::string()));
        return out;
    }

    std::string Wrap(const std::shared_ptr<FeatureLayer>& layer, const std::string& output, double west,
                     double north, double east, double south, std::int32_t option, double shift,
                     bool showProgress = false) {
        auto args = std::make_shared<VarArray>();
        args->Add(Variant(std::shared_ptr<IFeatureLayer>(layer)));
        for (double value : {west, north, east, south})
            args->Add(Variant(value));
        args->Add(Variant(option));
        args->Add(Variant(Output(output)));
        args->Add(Variant(shift));
        return WrapToBoundaries(app_, Document(), extension_, args, showProgress, clock_);
    }

    std::string Latitudes(bool toGraphic, const std::shared_ptr<FeatureLayer>& layer, const std::string& output,
                          double a, double b, double shift, std::int32_t option) {
        auto args = std::make_shared<VarArray>();
        args->Add(Variant(std::shared_ptr<IFeatureLayer>(layer)));
        args->Add(Variant(std::string("Mars 2000")));
        args->Add(Variant(a));
        args->Add(Variant(b));
        args->Add(Variant(shift));
        args->Add(Variant(option));
        args->Add(Variant(Output(output)));
        return toGraphic ? CalcPlanetoCentricToPlanetoGraphic(app_, Document(), extension_, args, false, clock_)
                         : CalcPlanetoGraphicToPlanetoCentric(app_, Document(), extension_, args, false, clock_);
    }

    std::vector<OutputRow> Rows(const std::string& name) {
        auto featureClass = ShapefileFolder(dir_.Path())->OpenFeatureClass(name);
        std::vector<OutputRow> rows;
        auto cursor = featureClass->Search(nullptr, false);
        const std::int32_t nameField = featureClass->FindField("NAME");
        for (auto feature = cursor->NextFeature(); feature; feature = cursor->NextFeature())
            rows.push_back({feature->ShapeCopy(), feature->Value(nameField).ToString()});
        return rows;
    }

    static double Area(const IGeometry& shape) { return dynamic_cast<const IArea&>(shape).Area(); }

    Clock clock_;
};

TEST_F(PlanetaryRunTest, WrapKeepsEveryRecordAndNamesTheEmptyOnes) {
    auto layer = Layer("lines", esriGeometryPolyline, Wgs84(),
                       {MakePolyline({{{170, 10}, {190, 10}}}), std::make_shared<Polyline>(),
                        MakePolyline({{{-180, 0}, {-180, 10}}}), MakePolyline({{{10, 0}, {20, 0}}})});
    const std::string report = Wrap(layer, "wrapped", -180, 90, 180, -90, 1, 0.0);
    ASSERT_TRUE(ui_->Errors().empty()) << ui_->Errors().front();

    const auto rows = Rows("wrapped");
    ASSERT_EQ(rows.size(), 4u);
    EXPECT_EQ(rows[0].name, "f1");
    EXPECT_EQ(dynamic_cast<const IGeometryCollection&>(*rows[0].shape).GeometryCount(), 2); // one record, two parts
    EXPECT_TRUE(rows[1].shape->IsEmpty());
    EXPECT_TRUE(rows[2].shape->IsEmpty());
    EXPECT_EQ(rows[3].name, "f4");

    EXPECT_NE(report.find(R"(NOTE:  The following problems were found in the dataset:)"), std::string::npos) << report;
    EXPECT_NE(report.find(R"(  --> Feature at OID #1 is empty...\par)"), std::string::npos) << report;
    EXPECT_NE(report.find(R"(  --> Wrapped Feature at OID #2 is empty...\par)"), std::string::npos) << report;
    EXPECT_EQ(report.find("OID #0"), std::string::npos);
    EXPECT_EQ(report.find("OID #3"), std::string::npos);
    EXPECT_NE(report.find(R"(Wrap to Boundary Conversion Complete:\par)"), std::string::npos);
    EXPECT_NE(report.find(R"(  ** Input Feature Layer: lines\par)"), std::string::npos);
    EXPECT_NE(report.find(R"(  ** Option:  Wrap to Range -180 to 180 Degrees\par)"), std::string::npos);
    EXPECT_NE(report.find(R"(  ** Western Boundary:  -180\par)"), std::string::npos);
    EXPECT_NE(report.find(R"(  ** Northern Boundary:  90 decimal degrees\par)"), std::string::npos);
    EXPECT_NE(report.find(R"(  ** Longitudinal Shift:  0 decimal degrees\par)"), std::string::npos);
    EXPECT_NE(report.find(R"(  ** Feature Class:  wrapped\par)"), std::string::npos) << report;
    EXPECT_NE(report.find("  ** Workspace:  " + dir_.Path() + R"(\par)"), std::string::npos);
    EXPECT_NE(report.find(R"(  ** Contains 4 Features\par)"), std::string::npos) << report;

    // The new layer joins the map, named by the class.
    EXPECT_EQ(FocusMap()->Layer(0)->Name(), "wrapped");
}

TEST_F(PlanetaryRunTest, WrappedPolygonLayerKeepsItsTotalArea) {
    std::vector<std::shared_ptr<IGeometry>> shapes;
    // Pieces of a 0..360 world: across 180, across 360, wholly east of 180, and a holed one.
    shapes.push_back(MakePolygon({Square(170, -20, 25, true)}));
    shapes.push_back(MakePolygon({Square(350, 40, 20, true)}));
    shapes.push_back(MakePolygon({Square(200, 60, 30, true)}));
    shapes.push_back(MakePolygon({Square(175, -80, 12, true), Square(178, -77, 4, false)}));
    auto layer = Layer("world", esriGeometryPolygon, Wgs84(), shapes);
    Wrap(layer, "world_wrapped", -180, 90, 180, -90, 1, 0.0);
    ASSERT_TRUE(ui_->Errors().empty()) << ui_->Errors().front();

    double before = 0, after = 0;
    for (const auto& shape : shapes)
        before += Area(*shape);
    const auto rows = Rows("world_wrapped");
    ASSERT_EQ(rows.size(), shapes.size());
    for (const auto& row : rows) {
        after += Area(*row.shape);
        const auto envelope = row.shape->Envelope();
        EXPECT_GE(envelope->XMin(), -180.0);
        EXPECT_LE(envelope->XMax(), 180.0);
    }
    // Planar areas of pieces cut and moved by whole boxes; the stored doubles keep them.
    EXPECT_NEAR(after, before, 1e-9 * before);
}

TEST_F(PlanetaryRunTest, ShiftPastTheBoxIsBroughtBackByTheWrapOfTheSameRun) {
    auto layer = Layer("points", esriGeometryPoint, Wgs84(), {MakePoint(10, 5), MakePoint(-170, -5)});
    const std::string report = Wrap(layer, "shifted", 0, 90, 360, -90, 2, 720.5);
    ASSERT_TRUE(ui_->Errors().empty()) << ui_->Errors().front();
    const auto rows = Rows("shifted");
    ASSERT_EQ(rows.size(), 2u);
    auto x = [](const OutputRow& row) { return dynamic_cast<const IPoint&>(*row.shape).X(); };
    EXPECT_EQ(x(rows[0]), 10.5);
    EXPECT_EQ(x(rows[1]), 190.5);
    EXPECT_NE(report.find(R"(  ** Longitudinal Shift:  720.5 decimal degrees\par)"), std::string::npos);
    EXPECT_NE(report.find(R"(  ** Option:  Wrap to Range 0 to 360 Degrees\par)"), std::string::npos);
}

TEST_F(PlanetaryRunTest, CustomBoxIsNamedAsSuch) {
    auto layer = Layer("pts", esriGeometryPoint, Wgs84(), {MakePoint(25, 5)});
    const std::string report = Wrap(layer, "custom", -10, 10, 10, -10, 0, 0.0);
    const auto rows = Rows("custom");
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(dynamic_cast<const IPoint&>(*rows[0].shape).X(), 5);
    EXPECT_NE(report.find(R"(  ** Option:  Custom Wrap Boundaries\par)"), std::string::npos);
}

// tan(graphic) = (a/b)^2 tan(centric), in closed form with the standard library's pi.
double GraphicOf(double centric) {
    const double k = (kMarsA / kMarsB) * (kMarsA / kMarsB);
    return Degrees(std::atan(k * std::tan(Radians(centric))));
}
double CentricOf(double graphic) {
    const double k = (kMarsA / kMarsB) * (kMarsA / kMarsB);
    return Degrees(std::atan(std::tan(Radians(graphic)) / k));
}

TEST_F(PlanetaryRunTest, Mars2000LatitudesFollowTheClosedFormBothWays) {
    const double latitudes[] = {-89.5, -60, -33.3, -1e-3, 0, 12.25, 45, 71, 89.9};
    std::vector<std::shared_ptr<IGeometry>> points;
    for (double lat : latitudes)
        points.push_back(MakePoint(100, lat));
    auto layer = Layer("mars", esriGeometryPoint, Mars2000(), points);
    const std::string toGraphic = Latitudes(true, layer, "graphic", kMarsA, kMarsB, 0.0, 0);
    const std::string toCentric = Latitudes(false, layer, "centric", kMarsA, kMarsB, 0.0, 0);
    ASSERT_TRUE(ui_->Errors().empty()) << ui_->Errors().front();
    const auto graphic = Rows("graphic");
    const auto centric = Rows("centric");
    ASSERT_EQ(graphic.size(), std::size(latitudes));
    ASSERT_EQ(centric.size(), std::size(latitudes));
    // The routines' pi is cut to 15 digits; the difference it makes stays far below this.
    constexpr double kLatitudeTolerance = 1e-12; // degrees
    for (std::size_t i = 0; i < std::size(latitudes); ++i) {
        SCOPED_TRACE(latitudes[i]);
        const auto& g = dynamic_cast<const IPoint&>(*graphic[i].shape);
        const auto& c = dynamic_cast<const IPoint&>(*centric[i].shape);
        EXPECT_NEAR(g.Y(), GraphicOf(latitudes[i]), kLatitudeTolerance);
        EXPECT_NEAR(c.Y(), CentricOf(latitudes[i]), kLatitudeTolerance);
        EXPECT_EQ(g.X(), 100);
        EXPECT_EQ(graphic[i].name, "f" + std::to_string(i + 1));
    }
    EXPECT_NE(toGraphic.find(R"(  ** Conversion Type: OCentric to OGraphic\par)"), std::string::npos);
    EXPECT_NE(toCentric.find(R"(  ** Conversion Type: OGraphic to OCentric\par)"), std::string::npos);
    // Both runs carry the one title.
    EXPECT_NE(toCentric.find(R"(OCentric to OGraphic Conversion Complete:\par)"), std::string::npos);
    EXPECT_NE(toGraphic.find(R"(  ** Spheroid Semi-Major (Equatorial) Radius:  3396190 meters\par)"),
              std::string::npos);
    EXPECT_NE(toGraphic.find(R"(  ** Spheroid Semi-Minor (Polar) Radius:  3376200 meters\par)"), std::string::npos);
    EXPECT_NE(toGraphic.find(R"(  ** Wrap Option:  No Wrap Option\par)"), std::string::npos);
}

TEST_F(PlanetaryRunTest, ConversionShiftsThenWrapsAndZeroAxesTakeTheLayersSpheroid) {
    auto layer = Layer("mars_lines", esriGeometryPolyline, Mars2000(),
                       {MakePolyline({{{-10, 30}, {-5, 35}}}), std::make_shared<Polyline>()});
    // Axes 0 ask for the data's own spheroid, Mars 2000 here.
    const std::string report = Latitudes(true, layer, "wrapped360", 0, 0, 0.0, 2);
    ASSERT_TRUE(ui_->Errors().empty()) << ui_->Errors().front();
    const auto rows = Rows("wrapped360");
    ASSERT_EQ(rows.size(), 2u);
    const auto parts = PartsOf(*rows[0].shape);
    ASSERT_EQ(parts.size(), 1u);
    std::vector<WKSPoint> v = parts[0];
    std::sort(v.begin(), v.end(), [](WKSPoint a, WKSPoint b) { return a.X < b.X; });
    EXPECT_NEAR(v.front().X, 350, 1e-12);
    EXPECT_NEAR(v.front().Y, GraphicOf(30), 1e-12);
    EXPECT_NEAR(v.back().X, 355, 1e-12);
    EXPECT_TRUE(rows[1].shape->IsEmpty());
    EXPECT_NE(report.find(R"(  --> Feature at OID #1 is empty...\par)"), std::string::npos);
    EXPECT_NE(report.find(R"(  ** Wrap Option:  Wrap to Range 0 to 360 Degrees\par)"), std::string::npos);
}

TEST_F(PlanetaryRunTest, ATakenOutputThatIsNotOverwrittenBailsOut) {
    auto layer = Layer("pts", esriGeometryPoint, Wgs84(), {MakePoint(1, 1)});
    Wrap(layer, "once", -180, 90, 180, -90, 1, 0.0);
    ui_->QueueAnswer(MsgBoxResult::No);              // do not overwrite "once"
    ui_->QueueBrowse(std::nullopt);                  // and pick no other name
    const std::string report = Wrap(layer, "once", -180, 90, 180, -90, 1, 0.0);
    EXPECT_NE(report.find("'CreateGeneralFeatureClass' Function failed unexpectedly..."), std::string::npos);
    const auto messages = ui_->Messages();
    ASSERT_FALSE(messages.empty());
    EXPECT_EQ(messages.back(), "No Feature Class Created:\r\nBailing out...");
    EXPECT_EQ(Rows("once").size(), 1u);
}

//! The scripted UI, with Stop pressed on the progress window at the first pump where asked.
class StoppingUI final : public IUIServices {
public:
    explicit StoppingUI(std::shared_ptr<ScriptedUI> inner) : inner_(std::move(inner)) {}
    std::function<bool()> stopWhen;
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

TEST_F(PlanetaryRunTest, StopKeepsThePartialOutputAndSaysWhere) {
    std::vector<std::shared_ptr<IGeometry>> points;
    for (int i = 0; i < 10; ++i)
        points.push_back(MakePoint(170 + 5 * i, 0));
    auto layer = Layer("many", esriGeometryPoint, Wgs84(), points);
    auto ui = std::make_shared<StoppingUI>(ui_);
    auto bar = app_->StatusBar();
    ui->stopWhen = [bar] { return bar->Message(0).find("[record #4 of") != std::string::npos; };
    SetUI(ui);
    auto now = std::make_shared<DateValue>(DateFromCalendar(CalendarTime{2024, 3, 5, 10, 0, 0.0}));
    clock_ = [now] { return *now = DateAddSeconds(*now, 1); }; // every record is due an update
    const std::string report = Wrap(layer, "partial", -180, 90, 180, -90, 1, 0.0, true);
    SetUI(ui_);
    ASSERT_TRUE(ui_->Errors().empty()) << ui_->Errors().front();
    EXPECT_NE(report.find(R"(NOTE:  Exited Function Prematurely at Record 4\par)"), std::string::npos) << report;
    EXPECT_EQ(Rows("partial").size(), 3u);
    EXPECT_EQ(FocusMap()->Layer(0)->Name(), "partial  [Partial]");
    ASSERT_TRUE(ui->meter);
    EXPECT_EQ(ui->meter->Ctl("cmdStop").Caption, "Close");
}

} // namespace
} // namespace tess::test
