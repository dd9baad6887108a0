// `tessarine wrap`, `ocentric-to-ographic` and `ographic-to-ocentric` end to
// end on the demo's Mars regions (0..360, planetocentric): the pieces of one
// feature in one record, areas kept, latitudes against their closed form, and
// the options the dialogs refuse, with nothing written.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include <signal.h>

#include "CliTestSupport.h"
#include "platform/data/Cursor.h"
#include "platform/data/Row.h"
#include "platform/data/Table.h"
#include "platform/geometry/Geometry.h"

namespace tess::test {
namespace {

namespace fs = std::filesystem;

constexpr double kMarsA = 3396190.0; // metres, Mars 2000
constexpr double kMarsB = 3376200.0;

class PlanetaryCli : public ::testing::Test {
protected:
    void SetUp() override { CopyDemoData(dir_.Path()); }
    std::string Data(const std::string& name) const { return (dir_.Path() / "data" / "demo" / name).string(); }
    std::string Out(const std::string& name) const { return (dir_.Path() / name).string(); }
    bool Written(const std::string& name) const { return fs::exists(dir_.Path() / name); }

    TempDir dir_;
};

double TotalArea(const std::string& dataset) {
    double total = 0;
    auto cursor = OpenClass(dataset)->Search(nullptr, false);
    for (auto feature = cursor->NextFeature(); feature; feature = cursor->NextFeature())
        total += dynamic_cast<const IArea&>(*feature->ShapeCopy()).Area();
    return total;
}

TEST_F(PlanetaryCli, WrapTo180KeepsOneRecordPerFeatureAndTheArea) {
    const ProcessResult run = RunTessarine(
        {"wrap", "--layer", Data("mars_regions.shp"), "--range", "-180,180", "--output", Out("regions_180.shp")},
        dir_.Path());
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.out.find("Wrap to Boundary Conversion Complete:"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("** Option:  Wrap to Range -180 to 180 Degrees"), std::string::npos);
    const auto before = ReadFeatures(Data("mars_regions.shp"));
    const auto after = ReadFeatures(Out("regions_180.shp"));
    ASSERT_EQ(after.size(), before.size());
    for (std::size_t i = 0; i < after.size(); ++i) {
        SCOPED_TRACE(after[i].values.at("REGION"));
        EXPECT_EQ(after[i].values.at("REGION"), before[i].values.at("REGION"));
        for (const auto& [x, y] : after[i].points) {
            EXPECT_GE(x, -180.0);
            EXPECT_LE(x, 180.0);
        }
    }
    // Elysium Planitia runs from 150 to 215 and comes out as two rings of one record.
    EXPECT_EQ(after[0].partStarts.size(), 2u);
    const double area = TotalArea(Data("mars_regions.shp"));
    EXPECT_NEAR(TotalArea(Out("regions_180.shp")), area, 1e-9 * area); // planar square degrees
}

TEST_F(PlanetaryCli, OCentricToOGraphicFollowsTheClosedFormAndWraps) {
    const ProcessResult run =
        RunTessarine({"ocentric-to-ographic", "--layer", Data("mars_regions.shp"), "--spheroid", "Mars 2000", "--range",
                      "-180,180", "--output", Out("graphic.shp")},
                     dir_.Path());
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.out.find("** Spheroid Name:  Mars 2000"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("** Conversion Type: OCentric to OGraphic"), std::string::npos);
    const auto after = ReadFeatures(Out("graphic.shp"));
    ASSERT_EQ(after.size(), 5u);
    // Tharsis: 235..275 by -15..15, now -125..-85 with its latitudes made planetographic.
    const FeatureRecord& tharsis = after[1];
    ASSERT_EQ(tharsis.values.at("REGION"), "Tharsis");
    const double k = (kMarsA / kMarsB) * (kMarsA / kMarsB);
    const double expected = std::atan(k * std::tan(15.0 * std::numbers::pi / 180.0)) * 180.0 / std::numbers::pi;
    double north = -90;
    for (const auto& [x, y] : tharsis.points) {
        EXPECT_GE(x, -125.0 - 1e-9);
        EXPECT_LE(x, -85.0 + 1e-9);
        north = std::max(north, y);
    }
    EXPECT_NEAR(north, expected, 1e-12); // degrees, as stored in the shapefile's doubles
}

TEST_F(PlanetaryCli, RefusedOptionsWriteNothing) {
    struct Case {
        std::vector<std::string> args;
        const char* says;
    };
    const Case cases[] = {
        {{"wrap", "--layer", Data("mars_regions.shp"), "--box", "10,0,0,10"},
         "Western Boundary Value >= Eastern Boundary Value..."},
        {{"wrap", "--layer", Data("mars_regions.shp"), "--box", "0,10,10,10"},
         "Southern Boundary Value >= Northern Boundary Value..."},
        {{"wrap", "--layer", Data("mars_regions.shp")}, "choose the box"},
        {{"wrap", "--layer", Data("mars_regions.shp"), "--range", "0,180"}, "the ranges are -180,180 and 0,360"},
        {{"wrap", "--layer", Data("blocks_utm.shp"), "--range", "0,360"}, "geographic coordinates"},
        {{"ocentric-to-ographic", "--layer", Data("sketch.shp")}, "geographic coordinates"},
        {{"ographic-to-ocentric", "--layer", Data("mars_regions.shp"), "--spheroid", "0,0"}, "semi-major axis above 0"},
        {{"ographic-to-ocentric", "--layer", Data("mars_regions.shp"), "--shift", "east"}, "--shift"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.says);
        std::vector<std::string> args = c.args;
        args.insert(args.end(), {"--output", Out("refused.shp")});
        const ProcessResult run = RunTessarine(args, dir_.Path());
        EXPECT_EQ(run.exitCode, 2) << run.err;
        EXPECT_NE(run.err.find(c.says), std::string::npos) << run.err;
        EXPECT_FALSE(Written("refused.shp"));
    }
}

TEST_F(PlanetaryCli, AnOutputThatIsTakenAndNotOverwrittenIsRefusedAndStaysAsItWas) {
    const std::vector<std::string> args = {"wrap",   "--layer", Data("mars_regions.shp"), "--range", "0,360",
                                           "--output", Out("taken.shp")};
    ASSERT_EQ(RunTessarine(args, dir_.Path()).exitCode, 0);
    const auto before = Snapshot(dir_.Path() / "taken.shp");
    // No terminal to ask: the command line takes No before the run starts.
    const ProcessResult run = RunTessarine(args, dir_.Path());
    EXPECT_EQ(run.exitCode, 2) << run.err;
    EXPECT_NE(run.err.find("exists and was not replaced"), std::string::npos) << run.err;
    EXPECT_EQ(Snapshot(dir_.Path() / "taken.shp"), before);
}

TEST_F(PlanetaryCli, CtrlCKeepsTheFeaturesWrittenSoFarAsAPartialLayer) {
    // Enough lines, each cut into 20 tiles of the small box, for seconds of work: the signal
    // lands inside the loop.
    constexpr int kFeatures = 4000;
    constexpr int kVerticesEach = 400;
    MakeLongLines(dir_.Path().string(), kFeatures, kVerticesEach);
    Child child({"wrap", "--layer", dir_ / "long_lines.shp", "--box", "0,0,0.002,0.002", "--output", Out("partial.shp"),
                 "--progress", "plain"},
                dir_.Path());
    ASSERT_TRUE(child.WaitForErr("Converting Features...")) << child.Finish().err;
    ::kill(child.Pid(), SIGINT);
    const ProcessResult run = child.Finish();
    EXPECT_EQ(run.exitCode, 3) << run.err;
    const auto note = run.out.find("NOTE:  Exited Function Prematurely at Record ");
    ASSERT_NE(note, std::string::npos) << run.out;
    const int stoppedAt = std::stoi(run.out.substr(note + std::string("NOTE:  Exited Function Prematurely at Record ").size()));
    const std::int32_t written = OpenClass(Out("partial.shp"))->FeatureCount(nullptr);
    EXPECT_EQ(written, stoppedAt - 1);
    EXPECT_LT(written, kFeatures);
}

TEST_F(PlanetaryCli, HelpNamesTheChoices) {
    const ProcessResult run = RunTessarine({"wrap", "--help"}, dir_.Path());
    ASSERT_EQ(run.exitCode, 0);
    EXPECT_NE(run.out.find("--box"), std::string::npos);
    EXPECT_NE(run.out.find("--range"), std::string::npos);
    const ProcessResult other = RunTessarine({"ographic-to-ocentric", "--help"}, dir_.Path());
    EXPECT_NE(other.out.find("--spheroid"), std::string::npos);
}

} // namespace
} // namespace tess::test
