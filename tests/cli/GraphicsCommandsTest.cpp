// The one-click graphics commands run on the demo document and saved: which
// elements end up selected, where the view ends up, and the listing of the
// toolbar and menus.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <fstream>

#include "CliTestSupport.h"
#include "CommandTable.h"
#include "platform/framework/Registry.h"

namespace tess::test {
namespace {

using nlohmann::json;

// The demo map's graphics, bottom first, and which of them the document has selected.
const std::vector<std::string> kNames{"Trailhead",    "Planned path", "Survey area", "Study frame", "Buffer",
                                      "Lake outline", "Label",        "Wells sketch", "",            "",
                                      "Survey area",  "Site photo",   ""};
const std::vector<bool> kSelectedAtStart{true,  false, true,  false, false, false, false,
                                         false, false, false, false, false, false};
// Zoom: the selected marker (10.2, 44.2) and polygon (12.4..13.4, 45.0..45.8) make the box
// 10.2..13.4 by 44.2..45.8, which grows by 1.05 about its centre (11.8, 45.0).
const std::vector<double> kZoomedExtent{10.12, 44.16, 13.48, 45.84};
constexpr double kExtentTolerance = 1e-9; // degrees: a few rounding steps of the arithmetic

class GraphicsCommands : public ::testing::Test {
protected:
    void SetUp() override { CopyDemoData(dir_.Path()); }

    std::string Document() const { return dir_ / "data/demo.map.json"; }

    json Saved() const {
        std::ifstream file(Document());
        return json::parse(file);
    }

    std::vector<bool> Selection() const {
        const json document = Saved();
        std::vector<bool> selected;
        std::vector<std::string> names;
        for (const json& element : document["maps"][0]["graphics"]) {
            names.push_back(element.value("name", ""));
            selected.push_back(element.value("selected", false));
        }
        EXPECT_EQ(names, kNames);
        return selected;
    }

    void Run(const std::string& command) {
        const ProcessResult run = RunTessarine({"graphics", command, "--doc", Document(), "--save"}, dir_.Path());
        ASSERT_EQ(run.exitCode, 0) << run.err;
    }

    TempDir dir_;
};

TEST_F(GraphicsCommands, SelectAllUnselectAndFlipChangeAndSaveTheSelection) {
    ASSERT_EQ(Selection(), kSelectedAtStart);
    Run("flip");
    std::vector<bool> flipped;
    for (bool s : kSelectedAtStart)
        flipped.push_back(!s);
    EXPECT_EQ(Selection(), flipped);
    Run("select-all");
    EXPECT_EQ(Selection(), std::vector<bool>(kNames.size(), true));
    Run("unselect");
    EXPECT_EQ(Selection(), std::vector<bool>(kNames.size(), false));
    // Flipping everything unselected selects everything.
    Run("flip");
    EXPECT_EQ(Selection(), std::vector<bool>(kNames.size(), true));
}

TEST_F(GraphicsCommands, ZoomSetsTheExtentAroundTheSelectedElements) {
    Run("zoom");
    const json extent = Saved()["maps"][0]["extent"];
    ASSERT_TRUE(extent.is_array()) << extent;
    ASSERT_EQ(extent.size(), 4u);
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_NEAR(extent[i].get<double>(), kZoomedExtent[i], kExtentTolerance) << i;
    EXPECT_EQ(Selection(), kSelectedAtStart); // zooming selects nothing
}

TEST_F(GraphicsCommands, WithoutSaveTheDocumentStaysAsItWas) {
    const ProcessResult run = RunTessarine({"graphics", "select-all", "--doc", Document()}, dir_.Path());
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(Selection(), kSelectedAtStart);
}

TEST(Commands, ListTheToolbarAndMenusAsAHostShowsThem) {
    TempDir dir;
    const ProcessResult run = RunTessarine({"commands"}, dir.Path());
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const std::string& out = run.out;
    // Captions lose their access-key marks, every command shows its name and what to type.
    EXPECT_NE(out.find("[Tessarine Tools]"), std::string::npos) << out;
    EXPECT_EQ(out.find('&'), std::string::npos) << out;
    for (const char* expected : {"Tools for Features and Shapes", "Tools for Graphics",
                                 "OCentric/OGraphic Geodesic Tools", "Tessarine_ShapesToVertices",
                                 "About Tools for Tessarine Tools"})
        EXPECT_NE(out.find(expected), std::string::npos) << expected;
    const auto vertices = out.find("Convert Shapes to Vertices");
    ASSERT_NE(vertices, std::string::npos);
    const std::string line = out.substr(vertices, out.find('\n', vertices) - vertices);
    EXPECT_NE(line.find(" vertices"), std::string::npos) << line;
    // The host's table of friendly names agrees with the extension: each command is on the menus
    // under the caption the help gives it.
    for (const cli::FriendlyCommand& entry : cli::FriendlyCommands()) {
        const auto at = out.find(std::string(entry.commandName) + " ");
        ASSERT_NE(at, std::string::npos) << entry.commandName;
        const std::string itemLine = out.substr(out.rfind('\n', at) + 1, out.find('\n', at) - out.rfind('\n', at) - 1);
        EXPECT_NE(itemLine.find(std::string(entry.caption) + " "), std::string::npos) << itemLine;
    }
    // Groups start with a separator line: one before "Convert Polygons to Label Points".
    const auto labelPoints = out.find("Convert Polygons to Label Points");
    ASSERT_NE(labelPoints, std::string::npos);
    const auto previousLineEnd = out.rfind('\n', out.rfind('\n', labelPoints) - 1);
    EXPECT_NE(out.substr(previousLineEnd, labelPoints - previousLineEnd).find("-----"), std::string::npos);
}

TEST(Commands, MarkTheItemsThatAreDisabled) {
    // A host older than 9.2 greys polygon building, and says why in its caption.
    TempDir dir;
    Registry(dir / "registry.json").WriteString(RegistryHive::LocalMachine, kHostVersionKey, kHostVersionValue, "9.1");
    const ProcessResult run = RunTessarine({"commands"}, dir.Path());
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const auto at = run.out.find("Build Polygons (Disabled:");
    ASSERT_NE(at, std::string::npos) << run.out;
    EXPECT_NE(run.out.substr(at, run.out.find('\n', at) - at).find("[disabled]"), std::string::npos);
    EXPECT_EQ(std::count(run.out.begin(), run.out.end(), ']'), 2) << "the toolbar's name and one disabled item";
}

TEST(Demo, RunsOnTheDemoDataIntoItsOutputFolder) {
    TempDir dir;
    CopyDemoData(dir.Path());
    const ProcessResult run = RunTessarine({"demo"}, dir.Path());
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.out.find("Shapes to Vertices Successful:"), std::string::npos) << run.out;
    EXPECT_TRUE(std::filesystem::exists(dir.Path() / "demo-output/parcels_vertices.shp"));
    EXPECT_TRUE(std::filesystem::exists(dir.Path() / "demo-output/demo.map.json"));
    // Again: the same names, not parcels_vertices_2.
    ASSERT_EQ(RunTessarine({"demo"}, dir.Path()).exitCode, 0);
    EXPECT_FALSE(std::filesystem::exists(dir.Path() / "demo-output/parcels_vertices_2.shp"));
}

} // namespace
} // namespace tess::test
