// Shapes to Vertices on real datasets in temporary folders: what comes out
// (records, fields, values, vertex order, closing vertices), in which kind of
// output, and the reports of success, stop and failure.

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <optional>

#include "ConversionFixtures.h"
#include "conversion/ConversionRun.h"
#include "conversion/modCreateVertices.h"
#include "platform/data/SelectionSet.h"
#include "platform/framework/StatusBar.h"
#include "platform/system/DateTime.h"
#include "support/HostTime.h"
#include "support/ModelessFrame.h"
#include "support/ProgressForm.h"

namespace tess::test {
namespace {

// Coordinates go through storage as doubles (shapes) and as dBASE numbers of 8 decimals (the
// X_Coord and Y_Coord fields): the fields hold them to half a unit of the 8th decimal.
constexpr double kFieldTolerance = 0.5e-8; // coordinate units (metres here)

//! One output point as read back.
struct VertexRecord {
    double x = 0, y = 0;         // the shape
    double xField = 0, yField = 0;
    std::int32_t id = 0;
    std::vector<Variant> extra;  // the carried-over fields asked for, in order
};

std::vector<VertexRecord> ReadVertices(IFeatureClass& output, const std::vector<std::string>& extraFields = {},
                                       const std::string& idField = "Uniq_ID") {
    std::vector<VertexRecord> records;
    auto cursor = output.Search(nullptr, false);
    for (auto feature = cursor->NextFeature(); feature; feature = cursor->NextFeature()) {
        VertexRecord r;
        auto point = std::dynamic_pointer_cast<IPoint>(feature->Shape());
        EXPECT_TRUE(point);
        if (point)
            point->QueryCoords(r.x, r.y);
        r.xField = feature->Value(output.FindField("X_Coord")).ToDouble();
        r.yField = feature->Value(output.FindField("Y_Coord")).ToDouble();
        r.id = feature->Value(output.FindField(idField)).ToLong();
        for (const auto& name : extraFields)
            r.extra.push_back(feature->Value(output.FindField(name)));
        records.push_back(std::move(r));
    }
    return records;
}

class VerticesTest : public ConversionTest {
protected:
    //! A polygon class "parcels" with NAME and POP: feature 0 has two parts, one with a hole;
    //! feature 1 is a lone square.
    std::shared_ptr<IFeatureClass> MakeParcels() {
        auto parcels = CreateClass(*input_, "parcels", esriGeometryPolygon, Utm33N(),
                                   {MakeField("NAME", esriFieldTypeString, 20), MakeField("POP", esriFieldTypeInteger)});
        AddFeature(*parcels,
                   MakePolygon({Square(500000, 5000000, 10, true), Square(500002, 5000002, 2, false),
                                Square(500020, 5000000, 5, true)}),
                   {{"NAME", Variant("A")}, {"POP", Variant(7)}});
        AddFeature(*parcels, MakePolygon({Square(500100, 5000100, 1, true)}),
                   {{"NAME", Variant("B")}, {"POP", Variant(9)}});
        return parcels;
    }

    using ConversionTest::Run;
    std::string Run(const std::shared_ptr<IFeatureLayer>& layer, const std::shared_ptr<IVariantArray>& fields,
                    bool doAll, const std::string& outputPath, bool showProgress = false, Clock clock = {}) {
        return Run(&ConvertToVertices, layer, fields, doAll, outputPath, showProgress, std::move(clock));
    }
};

std::string LastPart(const std::string& path) { return path.substr(path.find_last_of('/') + 1); }

std::vector<WKSPoint> StoredVertices(IFeatureClass& featureClass) {
    std::vector<WKSPoint> all;
    auto cursor = featureClass.Search(nullptr, false);
    for (auto f = cursor->NextFeature(); f; f = cursor->NextFeature()) {
        const auto v = VerticesOf(*f->Shape());
        all.insert(all.end(), v.begin(), v.end());
    }
    return all;
}

TEST_F(VerticesTest, PolygonsGiveEveryVertexOfEveryRingInOrderWithTheirAttributes) {
    auto parcels = MakeParcels();
    auto layer = AddLayer(parcels, "parcels");
    OutputKind("Shapefile");
    const std::string report = Run(layer, SelectFields(*parcels, {"NAME", "POP"}), true, dir_ / "out/vertex.shp");
    ASSERT_TRUE(ui_->Errors().empty()) << ui_->Errors().front();

    auto output = ShapefileFolder(dir_ / "out")->OpenFeatureClass("vertex");
    const auto records = ReadVertices(*output, {"NAME", "POP"});
    // Three rings of five vertices and one of five: each ring gives its closing vertex too.
    ASSERT_EQ(records.size(), 20u);
    const std::vector<WKSPoint> expected = StoredVertices(*parcels);
    ASSERT_EQ(expected.size(), records.size());
    for (std::size_t i = 0; i < records.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(records[i].id, static_cast<std::int32_t>(i + 1));
        EXPECT_EQ(records[i].x, expected[i].X); // shapes are stored as doubles, exactly
        EXPECT_EQ(records[i].y, expected[i].Y);
        EXPECT_NEAR(records[i].xField, expected[i].X, kFieldTolerance);
        EXPECT_NEAR(records[i].yField, expected[i].Y, kFieldTolerance);
        EXPECT_EQ(records[i].extra[0].ToString(), i < 15 ? "A" : "B");
        EXPECT_EQ(records[i].extra[1].ToLong(), i < 15 ? 7 : 9);
    }
    // Each ring closes on its own first vertex.
    for (std::size_t ring = 0; ring < 4; ++ring) {
        EXPECT_EQ(records[ring * 5].x, records[ring * 5 + 4].x);
        EXPECT_EQ(records[ring * 5].y, records[ring * 5 + 4].y);
    }

    // The new layer is on the map under the output's name, and the view was asked to redraw.
    auto added = std::dynamic_pointer_cast<IFeatureLayer>(FocusMap()->Layer(0));
    ASSERT_TRUE(added);
    EXPECT_EQ(added->Name(), "vertex");
    EXPECT_EQ(Document()->UpdateContentsCount(), 1);
    const auto& refreshes = Document()->ActiveView()->Refreshes();
    ASSERT_FALSE(refreshes.empty());
    EXPECT_EQ(refreshes.back().phase, esriViewGeography);

    const std::string crlf = "\r\n";
    EXPECT_EQ(report.rfind(R"({\rtf1\ansi\ansicpg1252\deff0\deflang1033{\fonttbl{\f0\fswiss\fcharset0 Arial;}})" + crlf +
                               R"({\*\generator Msftedit 5.41.15.1507;}\viewkind4\uc1\pard\qc\b\f0\fs16 )"
                               R"(Shapes to Vertices Successful:\par)" + crlf,
                           0),
              0u);
    const std::string middle = R"(  ** Input Feature Layer: parcels\par)" + crlf + R"(  ** Convert All Records (n = 2)\par)" +
                               crlf + R"(  ** Fields to Include:\par)" + crlf + R"(       1] NAME\par)" + crlf +
                               R"(       2] POP\par)" + crlf + crlf + R"(\b ---------------------------------------------\par)" +
                               crlf + R"(Output:\b0\par)" + crlf + "  ** " + (dir_ / "out/vertex.shp") + R"(\par)" + crlf +
                               R"(  ** Spatial Reference:  WGS_1984_UTM_Zone_33N\par)" + crlf +
                               R"(  ** Contains 20 vertex points\par)" + crlf;
    EXPECT_NE(report.find(middle), std::string::npos) << report;
    EXPECT_NE(report.find(R"(\pard\qc \b\fs16 Analysis Began:)"), std::string::npos) << report;
    EXPECT_EQ(report.back(), '}');
}

TEST_F(VerticesTest, PolylinesWithClosedPartsAndMultipointsKeepTheirOwnOrder) {
    auto lines = CreateClass(*input_, "roads", esriGeometryPolyline, Utm33N());
    const std::vector<WKSPoint> open = {{1, 1}, {2, 3}, {4, 2}};
    const std::vector<WKSPoint> loop = {{10, 10}, {12, 10}, {12, 12}, {10, 10}};
    AddFeature(*lines, MakePolyline({open, loop}));
    auto points = CreateClass(*input_, "wells", esriGeometryMultipoint, Utm33N());
    const std::vector<WKSPoint> wells = {{5, 5}, {3, 3}, {5, 5}, {9, 1}};
    AddFeature(*points, MakeMultipoint(wells));

    struct Case {
        std::shared_ptr<IFeatureClass> input;
        std::string outputName;
        std::vector<WKSPoint> expected;
    };
    std::vector<WKSPoint> lineVertices = open;
    lineVertices.insert(lineVertices.end(), loop.begin(), loop.end());
    const Case cases[] = {{lines, "road_vertices", lineVertices}, {points, "well_vertices", wells}};
    OutputKind("Shapefile");
    for (const Case& c : cases) {
        SCOPED_TRACE(c.outputName);
        auto layer = AddLayer(c.input, c.outputName + "_in");
        Run(layer, nullptr, true, dir_ / ("out/" + c.outputName + ".shp"));
        auto output = ShapefileFolder(dir_ / "out")->OpenFeatureClass(c.outputName);
        const auto records = ReadVertices(*output);
        ASSERT_EQ(records.size(), c.expected.size());
        for (std::size_t i = 0; i < records.size(); ++i) {
            EXPECT_EQ(records[i].x, c.expected[i].X) << i;
            EXPECT_EQ(records[i].y, c.expected[i].Y) << i;
            EXPECT_EQ(records[i].id, static_cast<std::int32_t>(i + 1));
        }
    }
    EXPECT_TRUE(ui_->Errors().empty());
}

TEST_F(VerticesTest, OnlyTheSelectedFeaturesAreConverted) {
    auto parcels = MakeParcels();
    auto layer = AddLayer(parcels, "parcels");
    // The lone square, feature 1 of the shapefile.
    auto selection = MakeSelectionSet(std::dynamic_pointer_cast<ITable>(parcels));
    selection->Add(1);
    layer->SelectionSet(selection);
    OutputKind("Shapefile");
    const std::string report = Run(layer, SelectFields(*parcels, {"NAME"}), false, dir_ / "out/picked.shp");

    auto output = ShapefileFolder(dir_ / "out")->OpenFeatureClass("picked");
    const auto records = ReadVertices(*output, {"NAME"});
    ASSERT_EQ(records.size(), 5u);
    for (const auto& r : records)
        EXPECT_EQ(r.extra[0].ToString(), "B");
    EXPECT_NE(report.find(R"(  ** Convert Selected Records (n = 1)\par)"), std::string::npos) << report;
    EXPECT_NE(report.find(R"(  ** Contains 5 vertex points\par)"), std::string::npos) << report;
}

TEST_F(VerticesTest, EveryKindOfOutputHoldsTheSameRecords) {
    auto parcels = MakeParcels();
    auto layer = AddLayer(parcels, "parcels");
    auto gdb = FileGDBWorkspaceFactory().Create(dir_.Path(), "out.gdb");
    std::dynamic_pointer_cast<IFeatureWorkspace>(gdb)->CreateFeatureDataset("survey", Utm33N());
    GeoPackageWorkspaceFactory().Create(dir_.Path(), "out.gpkg");

    struct Case {
        const char* label;
        const char* directoryType;
        bool inDataset;
        std::string outputPath;
        std::string workspace;
        std::string fullName; // the output as the report names it
    };
    const Case cases[] = {
        {"folder", "Shapefile", false, dir_ / "out/vertex.shp", dir_ / "out", dir_ / "out/vertex.shp"},
        {"geodatabase", "File Geodatabase", false, dir_ / "out.gdb/vertex", dir_ / "out.gdb", dir_ / "out.gdb/vertex"},
        {"feature dataset", "File Geodatabase", true, dir_ / "out.gdb/survey/inside", dir_ / "out.gdb",
         dir_ / "out.gdb/survey/inside"},
        {"GeoPackage", "GeoPackage", false, dir_ / "out.gpkg/vertex", dir_ / "out.gpkg", dir_ / "out.gpkg/vertex"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        OutputKind(c.directoryType, c.inDataset, c.inDataset ? "survey" : "");
        const std::string report = Run(layer, SelectFields(*parcels, {"NAME", "POP"}), true, c.outputPath);
        ASSERT_TRUE(ui_->Errors().empty()) << ui_->Errors().front();
        auto ws = std::dynamic_pointer_cast<IFeatureWorkspace>(
            WorkspaceFactoryForPath(c.workspace)->OpenFromFile(c.workspace, 0));
        auto output = ws->OpenFeatureClass(LastPart(c.outputPath));
        EXPECT_EQ(output->FeatureCount(nullptr), 20);
        EXPECT_EQ(output->ShapeType(), esriGeometryPoint);
        for (const char* field : {"Uniq_ID", "X_Coord", "Y_Coord", "NAME", "POP"})
            EXPECT_GE(output->FindField(field), 0) << field;
        const auto records = ReadVertices(*output, {"NAME"});
        ASSERT_EQ(records.size(), 20u);
        EXPECT_EQ(records.front().id, 1);
        EXPECT_EQ(records.back().id, 20);
        EXPECT_EQ(records.back().extra[0].ToString(), "B");
        EXPECT_EQ(std::dynamic_pointer_cast<IDataset>(output)->FullName(), c.fullName);
        EXPECT_NE(report.find("  ** " + c.fullName + R"(\par)"), std::string::npos) << report;
        EXPECT_EQ(output->FeatureDataset() != nullptr, c.inDataset);
    }
}

TEST_F(VerticesTest, OwnFieldsStepAsideForInputFieldsOfTheirName) {
    auto parcels = CreateClass(*input_, "parcels", esriGeometryPolygon, Utm33N(),
                               {MakeField("Uniq_ID", esriFieldTypeInteger), MakeField("X_Coord", esriFieldTypeInteger)});
    AddFeature(*parcels, MakePolygon({Square(0, 0, 1, true)}), {{"Uniq_ID", Variant(42)}, {"X_Coord", Variant(3)}});
    auto layer = AddLayer(parcels, "parcels");
    OutputKind("Shapefile");
    Run(layer, SelectFields(*parcels, {"Uniq_ID"}), true, dir_ / "out/vertex.shp");

    auto output = ShapefileFolder(dir_ / "out")->OpenFeatureClass("vertex");
    // Own fields first, renamed against the input; the carried field then keeps its own name.
    std::vector<std::string> names;
    for (std::int32_t i = 0; i < output->Fields()->FieldCount(); ++i)
        names.push_back(output->Fields()->Field(i)->Name());
    EXPECT_EQ(names, (std::vector<std::string>{"FID", "Shape", "Uniq_ID_2", "X_Coord_2", "Y_Coord", "Uniq_ID"}));
    auto cursor = output->Search(nullptr, false);
    auto first = cursor->NextFeature();
    ASSERT_TRUE(first);
    EXPECT_EQ(first->Value(output->FindField("Uniq_ID_2")).ToLong(), 1);
    EXPECT_EQ(first->Value(output->FindField("Uniq_ID")).ToLong(), 42);
}

TEST_F(VerticesTest, WithoutSelectedFieldsTheOutputHoldsItsOwnFieldsOnly) {
    auto parcels = MakeParcels();
    auto layer = AddLayer(parcels, "parcels");
    OutputKind("Shapefile");
    const std::string report = Run(layer, std::make_shared<VarArray>(), true, dir_ / "out/vertex.shp");
    auto output = ShapefileFolder(dir_ / "out")->OpenFeatureClass("vertex");
    EXPECT_EQ(output->Fields()->FieldCount(), 5); // FID, Shape, Uniq_ID, X_Coord, Y_Coord
    EXPECT_NE(report.find("  ** Fields to Include:\\par\r\n       <-- No Fields Selected -->\\par\r\n"),
              std::string::npos)
        << report;
}

TEST_F(VerticesTest, EmptyShapesAreSkippedWithoutAWordInTheReport) {
    auto parcels = CreateClass(*input_, "parcels", esriGeometryPolygon, Utm33N());
    AddFeature(*parcels, std::make_shared<Polygon>());
    AddFeature(*parcels, std::make_shared<Polygon>());
    auto layer = AddLayer(parcels, "parcels");
    OutputKind("Shapefile");
    const std::string report = Run(layer, nullptr, true, dir_ / "out/vertex.shp");
    auto output = ShapefileFolder(dir_ / "out")->OpenFeatureClass("vertex");
    EXPECT_EQ(output->FeatureCount(nullptr), 0);
    EXPECT_NE(report.find(R"(  ** Contains 0 vertex points\par)"), std::string::npos) << report;
    EXPECT_EQ(report.find("Empty Geometries Found"), std::string::npos) << report;
    EXPECT_TRUE(ui_->Errors().empty());
}

TEST_F(VerticesTest, ALargeRunKeepsTheStatusBarAndTheProgressWindowInStep) {
    auto parcels = MakeParcels();
    AddFeature(*parcels, MakePolygon({Square(500200, 5000200, 1, true)}));
    auto layer = AddLayer(parcels, "parcels");
    OutputKind("Shapefile");
    auto ui = std::make_shared<ProgressUI>(ui_);
    auto previous = SetUI(ui);
    Run(layer, nullptr, true, dir_ / "out/vertex.shp", true, SteppingClock());
    SetUI(previous);

    auto bar = app_->StatusBarObject();
    const auto& events = bar->Events();
    auto show = std::find_if(events.begin(), events.end(),
                             [](const StatusBarEvent& e) { return e.kind == StatusBarEvent::Kind::ShowProgressBar; });
    ASSERT_NE(show, events.end());
    EXPECT_EQ(show->text, "Generating Vertices from parcels");
    EXPECT_EQ(show->min, 1);
    EXPECT_EQ(show->max, 3);
    std::int64_t steps = 0;
    std::vector<std::string> messages;
    for (const auto& e : events) {
        if (e.kind == StatusBarEvent::Kind::StepProgressBar)
            steps += e.count;
        if (e.kind == StatusBarEvent::Kind::Message && e.panel == 0)
            messages.push_back(e.text);
    }
    EXPECT_EQ(steps, 3);
    // Every record of the stepping clock passes the once-a-second test.
    ASSERT_EQ(messages.size(), 3u);
    EXPECT_EQ(messages[0].rfind("Generating Vertices from parcels.....[record #1 of 3", 0), 0u) << messages[0];
    EXPECT_FALSE(bar->ProgressBarVisible());

    ASSERT_NE(ui->window, nullptr);
    auto* window = dynamic_cast<ProgressForm*>(ui->window);
    ASSERT_NE(window, nullptr);
    const std::string log = window->Ctl("txtDetails").Text;
    EXPECT_EQ(log.rfind("Began Job: \r\nExtracting Vertices...", 0), 0u) << log;
    for (const char* line : {" --> Working on Feature 1 of 3...\r\n          [time stamp ",
                             " --> Working on Feature 3 of 3...", " --> Calculations Complete..."})
        EXPECT_NE(log.find(line), std::string::npos) << line << "\n" << log;
    // Left open for the user to read; it keeps itself alive until hidden.
    EXPECT_TRUE(window->Frame().Visible());
    window->Frame().Visible(false);
    EXPECT_GE(ui->pumps, 3);
}

TEST_F(VerticesTest, StopKeepsWhatWasWrittenAndSaysWhere) {
    auto parcels = MakeParcels();
    AddFeature(*parcels, std::make_shared<Polygon>()); // an empty shape, skipped before the stop
    AddFeature(*parcels, MakePolygon({Square(500200, 5000200, 1, true)}));
    auto layer = AddLayer(parcels, "parcels");
    OutputKind("Shapefile");
    const std::size_t layersBefore = static_cast<std::size_t>(FocusMap()->LayerCount());
    auto ui = std::make_shared<ProgressUI>(ui_);
    // Stop while the status bar tells of record 4, with records 1 to 3 done.
    auto bar = app_->StatusBarObject();
    ui->stopWhen = [bar] { return bar->Message(0).find("[record #4 of") != std::string::npos; };
    auto previous = SetUI(ui);
    const std::string outputPath = dir_ / "out/vertex.shp";
    const std::string report = Run(layer, nullptr, true, outputPath, true, SteppingClock());
    SetUI(previous);

    const std::string crlf = "\r\n";
    EXPECT_EQ(report, R"({\rtf1\ansi\ansicpg1252\deff0\deflang1033{\fonttbl{\f0\fswiss\fcharset0 Arial;}})" + crlf +
                          R"({\*\generator Msftedit 5.41.15.1507;}\viewkind4\uc1\pard\qc\b\f0\fs16 )"
                          R"(Exited Function Prematurely at Record 4\par)" + crlf + "Partial output saved to " +
                          outputPath + R"(\par)" + crlf +
                          R"(\b Empty Geometries Found:\b0  These features were skipped in the analysis...\par)" +
                          crlf + R"(  ** OID Value = 2\par)" + crlf + crlf +
                          R"(\b ---------------------------------------------\b0\par)" + crlf + "}");
    // The two polygons before the stop are on disk; no layer joined the map.
    auto output = ShapefileFolder(dir_ / "out")->OpenFeatureClass("vertex");
    EXPECT_EQ(output->FeatureCount(nullptr), 20);
    EXPECT_EQ(static_cast<std::size_t>(FocusMap()->LayerCount()), layersBefore);
    auto* window = dynamic_cast<ProgressForm*>(ui->window);
    ASSERT_NE(window, nullptr);
    EXPECT_NE(window->Ctl("txtDetails").Text.find("Operation cancelled prematurely at "), std::string::npos);
    EXPECT_FALSE(extension_->ProgressDialogAutoClose());
    window->Frame().Visible(false);
}

TEST_F(VerticesTest, AFaultEndsTheRunWithTheFailureReportAndKeepsTheOutput) {
    // Points have no vertex collection: the first feature fails.
    auto wells = CreateClass(*input_, "wells", esriGeometryPoint, Utm33N());
    AddFeature(*wells, std::make_shared<Point>(1.0, 2.0));
    auto layer = AddLayer(wells, "wells");
    OutputKind("Shapefile");
    const std::size_t layersBefore = static_cast<std::size_t>(FocusMap()->LayerCount());
    const std::string report = Run(layer, nullptr, true, dir_ / "out/vertex.shp");

    const std::string crlf = "\r\n";
    EXPECT_EQ(report.rfind(R"({\rtf1\ansi\ansicpg1252\deff0\deflang1033{\fonttbl{\f0\fswiss\fcharset0 Arial;}})" + crlf +
                               R"({\*\generator Msftedit 5.41.15.1507;}\viewkind4\uc1\pard\qc\b\f0\fs16 )"
                               R"(!!!  Shapes to Vertices Failed  !!!\par)" + crlf +
                               R"(\pard ---------------------------------------------\b0\par)" + crlf +
                               R"(Module = modCreateVertices\par)" + crlf + R"(Function = ConvertToVertices\par)" +
                               crlf + "Line Number = ",
                           0),
              0u)
        << report;
    EXPECT_NE(report.find(R"(Error 13:  Type mismatch\par)" + crlf +
                          R"(----------------------------------------------------------\par)" + crlf +
                          R"(Analyzing Record #1\par)" + crlf + "}"),
              std::string::npos)
        << report;
    ASSERT_EQ(ui_->Errors().size(), 1u);
    EXPECT_NE(ui_->Errors().front().find("ConvertToVertices"), std::string::npos);
    EXPECT_TRUE(ShapefileFolder(dir_ / "out")->OpenFeatureClass("vertex"));
    EXPECT_EQ(static_cast<std::size_t>(FocusMap()->LayerCount()), layersBefore);
}

} // namespace
} // namespace tess::test
