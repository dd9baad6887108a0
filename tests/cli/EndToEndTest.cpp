// The built tessarine run as a user runs it, on the demo data in a test's own
// folder: the outputs of Shapes to Vertices read back and compared with their
// inputs, the report, the exit codes and messages of bad input, and Ctrl-C.

#include <gtest/gtest.h>

#include <signal.h>

#include <fstream>

#include "CliTestSupport.h"
#include "platform/data/Cursor.h"
#include "platform/data/Field.h"
#include "platform/data/Fields.h"
#include "platform/data/Row.h"
#include "platform/data/Table.h"
#include "platform/data/Workspace.h"
#include "platform/data/WorkspaceFactories.h"
#include "platform/geometry/Path.h"
#include "platform/geometry/Polyline.h"
#include "platform/srs/SpatialReference.h"
#include "platform/srs/SpatialReferenceEnvironment.h"

namespace tess::test {
namespace {

namespace fs = std::filesystem;

// A shapefile keeps the input's doubles: the vertices come back exactly.
constexpr double kExact = 0.0;
// A file geodatabase rounds coordinates to its grid of 1e-9 degree (geographic references).
constexpr double kGeodatabaseGrid = 1e-9; // degrees
// X_Coord and Y_Coord are doubles of 16 digits, 8 behind the point, in a dBASE table.
constexpr double kFieldTolerance = 5e-9; // half a unit of the 8th decimal, in the data's units

class Vertices : public ::testing::Test {
protected:
    void SetUp() override { CopyDemoData(dir_.Path()); }

    std::string Data(const std::string& name) const { return (dir_.Path() / "data" / "demo" / name).string(); }
    std::string Out(const std::string& name) const { return dir_ / name; }

    //! Checks the vertex points against the input features they came from, feature by feature.
    void ExpectVerticesOf(const std::vector<FeatureRecord>& inputs, const std::string& output,
                          const std::vector<std::string>& carried, double coordinateTolerance = kExact) {
        const std::vector<FeatureRecord> points = ReadFeatures(output);
        std::size_t next = 0;
        for (const FeatureRecord& input : inputs) {
            for (const auto& [x, y] : input.points) {
                ASSERT_LT(next, points.size()) << "too few vertex points";
                const FeatureRecord& point = points[next];
                ASSERT_EQ(point.points.size(), 1u);
                EXPECT_NEAR(point.points[0].first, x, coordinateTolerance) << "vertex " << next;
                EXPECT_NEAR(point.points[0].second, y, coordinateTolerance) << "vertex " << next;
                EXPECT_EQ(point.values.at("UNIQ_ID"), std::to_string(next + 1));
                EXPECT_NEAR(std::stod(point.values.at("X_COORD")), x, kFieldTolerance + coordinateTolerance);
                EXPECT_NEAR(std::stod(point.values.at("Y_COORD")), y, kFieldTolerance + coordinateTolerance);
                for (const std::string& field : carried)
                    EXPECT_EQ(point.values.at(field), input.values.at(field)) << field << " of vertex " << next;
                ++next;
            }
        }
        EXPECT_EQ(next, points.size()) << "more vertex points than vertices";
    }

    TempDir dir_;
};

TEST_F(Vertices, PolygonsGiveEveryVertexInOrderWithClosingVerticesAndAttributes) {
    const ProcessResult run =
        RunTessarine({"vertices", "--layer", Data("parcels.shp"), "--output", Out("v.shp"), "--all-fields"},
                     dir_.Path());
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const std::vector<FeatureRecord> parcels = ReadFeatures(Data("parcels.shp"));
    ExpectVerticesOf(parcels, Out("v.shp"), {"NAME", "OWNER", "ZONE"});

    // Each ring's closing vertex is a point of its own: the ring's first vertex again, as its last.
    std::size_t total = 0;
    std::size_t rings = 0;
    for (const FeatureRecord& parcel : parcels) {
        total += parcel.points.size();
        for (std::size_t r = 0; r < parcel.partStarts.size(); ++r) {
            const std::size_t end = r + 1 < parcel.partStarts.size() ? parcel.partStarts[r + 1] : parcel.points.size();
            EXPECT_EQ(parcel.points[parcel.partStarts[r]], parcel.points[end - 1]) << "ring " << r;
            ++rings;
        }
    }
    EXPECT_GT(rings, parcels.size()) << "the demo parcels have holes and several parts";
    EXPECT_NE(run.out.find("Shapes to Vertices Successful:"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("Contains " + std::to_string(total) + " vertex points"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("Input Feature Layer: parcels"), std::string::npos) << run.out;
}

TEST_F(Vertices, SelectionAndChosenFieldsOfPolylines) {
    const ProcessResult run = RunTessarine({"vertices", "--layer", Data("trails.shp") + ":Trails", "--where",
                                            "KM < 10", "--selected", "--fields", "TRAIL", "--output",
                                            Out("sel.shp"), "--report", Out("report.rtf")},
                                           dir_.Path());
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const std::vector<FeatureRecord> selected = ReadFeatures(Data("trails.shp"), "KM < 10");
    ASSERT_FALSE(selected.empty());
    ASSERT_LT(selected.size(), ReadFeatures(Data("trails.shp")).size()) << "the condition should pick a part";
    ExpectVerticesOf(selected, Out("sel.shp"), {"TRAIL"});
    const FeatureRecord first = ReadFeatures(Out("sel.shp")).at(0);
    EXPECT_EQ(first.values.count("KM"), 0u) << "a field that was not chosen is not carried";

    std::ifstream report(Out("report.rtf"));
    const std::string rtf((std::istreambuf_iterator<char>(report)), std::istreambuf_iterator<char>());
    EXPECT_EQ(rtf.rfind("{\\rtf1", 0), 0u);
    EXPECT_NE(rtf.find("Trails"), std::string::npos);
}

TEST_F(Vertices, EachWhereSelectsOnTheLayerBeforeIt) {
    const ProcessResult run = RunTessarine({"vertices", "--layer", Data("trails.shp"), "--where", "KM < 10", "--layer",
                                            Data("parcels.shp") + ":Plots", "--where", "ZONE = 1", "--input", "Plots",
                                            "--selected", "--all-fields", "--output", Out("plots.shp")},
                                           dir_.Path());
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.out.find("Input Feature Layer: Plots"), std::string::npos) << run.out;
    ExpectVerticesOf(ReadFeatures(Data("parcels.shp"), "ZONE = 1"), Out("plots.shp"), {"NAME", "OWNER", "ZONE"});
}

TEST_F(Vertices, IntoAFileGeodatabaseFromADocumentWhichIsSaved) {
    fs::copy(Data("demo.gdb"), Out("out.gdb"), fs::copy_options::recursive);
    const std::string document = (dir_.Path() / "data" / "demo.map.json").string();
    const ProcessResult run = RunTessarine({"vertices", "--doc", document, "--input", "samples", "--output",
                                            Out("out.gdb") + "/sample_vertices", "--save"},
                                           dir_.Path());
    ASSERT_EQ(run.exitCode, 0) << run.err;
    ExpectVerticesOf(ReadFeatures(Data("samples.shp")), Out("out.gdb") + "/sample_vertices", {}, kGeodatabaseGrid);
    // The new layer is in the saved document, and with it the extension's settings.
    std::ifstream saved(document);
    const std::string text((std::istreambuf_iterator<char>(saved)), std::istreambuf_iterator<char>());
    EXPECT_NE(text.find("sample_vertices"), std::string::npos);
    EXPECT_NE(text.find("Tessarine.clsExtension"), std::string::npos);
}

TEST_F(Vertices, IntoAFeatureDatasetAndAGeoPackage) {
    // The places are chosen as in the browse dialog: the dataset inside its geodatabase, the package.
    fs::copy(Data("demo.gdb"), Out("out.gdb"), fs::copy_options::recursive);
    auto geodatabase =
        std::dynamic_pointer_cast<IFeatureWorkspace>(FileGDBWorkspaceFactory().OpenFromFile(Out("out.gdb"), 0));
    geodatabase->CreateFeatureDataset("Survey", SpatialReferenceEnvironment().CreateGeographicCoordinateSystem(4326));
    GeoPackageWorkspaceFactory().Create(dir_.Path().string(), "out.gpkg");
    geodatabase.reset();

    const std::vector<FeatureRecord> trails = ReadFeatures(Data("trails.shp"));
    for (const auto& [output, tolerance] : {std::pair{Out("out.gdb") + "/Survey/trail_vertices", kGeodatabaseGrid},
                                           std::pair{Out("out.gpkg") + "/trail_vertices", kExact}}) {
        const ProcessResult run =
            RunTessarine({"vertices", "--layer", Data("trails.shp"), "--output", output, "--fields", "KM"}, dir_.Path());
        ASSERT_EQ(run.exitCode, 0) << output << "\n" << run.err;
        ExpectVerticesOf(trails, output, {"KM"}, tolerance);
        EXPECT_NE(run.out.find("** " + output), std::string::npos) << "the report names the place\n" << run.out;
    }
}

struct BadInput {
    const char* name;
    std::vector<std::string> args; // "@" stands for the test's folder
    int exitCode;
    const char* message;
};

void PrintTo(const BadInput& c, std::ostream* os) { *os << c.name; }

class BadInputs : public Vertices, public ::testing::WithParamInterface<BadInput> {};

TEST_P(BadInputs, GiveAClearMessageAndExitCode) {
    std::vector<std::string> args;
    for (std::string arg : GetParam().args) {
        if (const auto at = arg.find('@'); at != std::string::npos)
            arg.replace(at, 1, dir_.Path().string());
        args.push_back(arg);
    }
    std::ofstream(Out("broken.map.json")) << "{\"format\": \"tessarine.map\", \"maps\": [";
    const ProcessResult run = RunTessarine(args, dir_.Path());
    EXPECT_EQ(run.exitCode, GetParam().exitCode) << run.err;
    EXPECT_NE(run.err.find(GetParam().message), std::string::npos) << run.err;
}

INSTANTIATE_TEST_SUITE_P(
    EndToEnd, BadInputs,
    ::testing::Values(
        BadInput{"UnknownLayer", {"vertices", "--doc", "@/data/demo.map.json", "--input", "roads"}, 2, "\"roads\""},
        BadInput{"MistypedLayer", {"vertices", "--doc", "@/data/demo.map.json", "--input", "Trials"}, 2,
                 "no layer \"Trials\" (did you mean \"trails\"?)"},
        BadInput{"LayerOfTheWrongKind", {"vertices", "--doc", "@/data/demo.map.json", "--input", "wells"}, 2,
                 "\"wells\" is not one that"},
        BadInput{"MissingOutputFolder",
                 {"vertices", "--layer", "@/data/demo/trails.shp", "--output", "@/nowhere/v.shp"}, 2,
                 "is not a valid workspace"},
        BadInput{"MissingDataset", {"vertices", "--layer", "@/data/demo/rivers.shp"}, 2, "rivers"},
        BadInput{"UnknownField", {"vertices", "--layer", "@/data/demo/trails.shp", "--fields", "WIDTH"}, 2,
                 "\"WIDTH\""},
        BadInput{"NoSelectionToConvert", {"vertices", "--layer", "@/data/demo/trails.shp", "--selected"}, 2,
                 "--selected"},
        BadInput{"BadCondition", {"vertices", "--layer", "@/data/demo/trails.shp", "--where", "NOPE >"}, 2,
                 "--where"},
        BadInput{"UnreadableDocument", {"vertices", "--doc", "@/broken.map.json"}, 2, "broken.map.json"},
        BadInput{"MissingDocument", {"graphics", "flip", "--doc", "@/none.map.json"}, 2, "none.map.json"},
        BadInput{"UnknownCommand", {"Tessarine_NoSuchThing", "--doc", "@/data/demo.map.json"}, 2,
                 "Tessarine_NoSuchThing"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(Vertices, ExistingOutputIsOnlyReplacedWhenTheUserSaysYes) {
    const std::vector<std::string> args{"vertices", "--layer", Data("trails.shp"), "--output", Out("v.shp")};
    ASSERT_EQ(RunTessarine(args, dir_.Path()).exitCode, 0);
    // No terminal and no --yes: the safe answer, No, and the run makes nothing.
    const ProcessResult refused = RunTessarine(args, dir_.Path());
    EXPECT_EQ(refused.exitCode, 2);
    EXPECT_NE(refused.err.find("there is no terminal to ask (--yes replaces it)"), std::string::npos) << refused.err;
    const std::vector<std::string> yes{"vertices", "--layer", Data("trails.shp"), "--output", Out("v.shp"), "--yes"};
    const ProcessResult replaced = RunTessarine(yes, dir_.Path());
    EXPECT_EQ(replaced.exitCode, 0) << replaced.err;
}

TEST_F(Vertices, CtrlCStopsWithExitCodeThreeAndKeepsAReadablePartialOutput) {
    // Large enough for the progress window (over 500 features) and for several seconds of work.
    constexpr int kFeatures = 2000;
    constexpr int kVerticesEach = 1000;
    MakeLongLines(dir_.Path().string(), kFeatures, kVerticesEach);
    Child child({"vertices", "--layer", Out("long_lines.shp"), "--output", Out("partial.shp"), "--progress",
                 "plain"},
                dir_.Path());
    // The progress line shows once the loop runs; Ctrl-C goes in then.
    ASSERT_TRUE(child.WaitForErr("Extracting Vertices...")) << child.Finish().err;
    ::kill(child.Pid(), SIGINT);
    const ProcessResult run = child.Finish();
    EXPECT_EQ(run.exitCode, 3) << run.err;
    EXPECT_NE(run.out.find("Exited Function Prematurely at Record"), std::string::npos) << run.out;

    const std::vector<FeatureRecord> points = ReadFeatures(Out("partial.shp"));
    ASSERT_FALSE(points.empty());
    EXPECT_LT(points.size(), static_cast<std::size_t>(kFeatures) * kVerticesEach);
    for (std::size_t i = 0; i < points.size(); ++i)
        ASSERT_EQ(points[i].values.at("UNIQ_ID"), std::to_string(i + 1));
}

} // namespace
} // namespace tess::test
