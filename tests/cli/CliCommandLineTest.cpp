// The command line of tessarine run in-process: what is bad usage (exit code 2),
// what explains itself, and the small helpers behind the options.

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "CliApp.h"
#include "CommandTable.h"
#include "LayerFieldsDriver.h"
#include "TextUtil.h"
#include "CliTestSupport.h"

namespace tess::cli {
namespace {

struct Captured {
    int code = -1;
    std::string out;
    std::string err;
};

Captured RunLine(const std::vector<std::string>& args, const std::string& input = "") {
    std::istringstream in(input);
    std::ostringstream out;
    std::ostringstream err;
    Console console{in, out, err, false, false};
    Captured captured;
    captured.code = RunTessarine(args, console);
    captured.out = out.str();
    captured.err = err.str();
    return captured;
}

struct UsageCase {
    const char* name;
    std::vector<std::string> args;
    const char* message; // part of what the error stream must say
};

// ctest lists a case by its name, not its bytes.
void PrintTo(const UsageCase& c, std::ostream* os) { *os << c.name; }

class BadUsage : public ::testing::TestWithParam<UsageCase> {};

TEST_P(BadUsage, ExitsWithTwoAndSaysWhy) {
    const Captured result = RunLine(GetParam().args);
    EXPECT_EQ(result.code, 2) << result.err;
    EXPECT_NE(result.err.find(GetParam().message), std::string::npos) << result.err;
}

INSTANTIATE_TEST_SUITE_P(
    CommandLine, BadUsage,
    ::testing::Values(
        UsageCase{"UnknownCommand", {"vertexes", "--doc", "x.map.json"}, "vertexes"},
        UsageCase{"WhereWithoutLayer", {"vertices", "--where", "A = 1", "--output", "o.shp"}, "--where"},
        UsageCase{"TwoWheresForOneLayer",
                  {"vertices", "--layer", "a.shp", "--where", "A = 1", "--where", "B = 2"},
                  "only one --where"},
        UsageCase{"YesAndNo", {"vertices", "--layer", "a.shp", "--yes", "--no"}, "--no"},
        UsageCase{"AllAndSelected", {"vertices", "--layer", "a.shp", "--all", "--selected"}, "--selected"},
        UsageCase{"FieldsAndAllFields", {"vertices", "--layer", "a.shp", "--fields", "A", "--all-fields"},
                  "--all-fields"},
        UsageCase{"NeitherDocumentNorLayer", {"vertices", "--output", "o.shp"}, "--doc FILE"},
        UsageCase{"SaveOfMadeDocumentWithoutFile", {"vertices", "--layer", "a.shp", "--save"}, "--save FILE"},
        UsageCase{"UnknownProgressStyle", {"vertices", "--layer", "a.shp", "--progress", "fancy"}, "fancy"},
        UsageCase{"DesktopOnlyDialog", {"wrap", "--layer", "a.shp"}, "tessarine-map"},
        UsageCase{"GeodWithThreeNumbers", {"geod", "inverse", "1", "2", "3"}, "lon1 lat1 lon2 lat2"},
        UsageCase{"GeodUnknownSpheroid", {"geod", "inverse", "--spheroid", "Vulcan", "0", "0", "1", "1"},
                  "Vulcan"},
        UsageCase{"GeodAxesTheWrongWayRound", {"geod", "direct", "--spheroid", "6356752,6378137", "0", "0", "0", "1"},
                  "semi-minor"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(CommandLine, CommandsExplainThemselves) {
    // Without arguments, and with --help, each level shows its help with examples; nothing is run.
    for (const std::vector<std::string>& args :
         std::vector<std::vector<std::string>>{{}, {"--help"}, {"vertices"}, {"vertices", "--help"},
                                               {"graphics"}, {"graphics", "flip", "--help"}, {"geod"},
                                               {"geod", "direct", "--help"}}) {
        const Captured result = RunLine(args);
        std::string line;
        for (const auto& a : args)
            line += a + " ";
        EXPECT_EQ(result.code, 0) << line << result.err;
        EXPECT_NE(result.out.find("Examples:"), std::string::npos) << line << result.out;
    }
}

TEST(CommandLine, CommandNameStandsForItsFriendlyName) {
    const Captured byName = RunLine({"Tessarine_ShapesToVertices", "--help"});
    const Captured friendly = RunLine({"vertices", "--help"});
    EXPECT_EQ(byName.code, 0);
    EXPECT_EQ(byName.out, friendly.out);
    const Captured graphics = RunLine({"Tessarine_FlipSelection", "--help"});
    EXPECT_EQ(graphics.code, 0);
    EXPECT_NE(graphics.out.find("flip"), std::string::npos) << graphics.out;
}

TEST(CommandLine, VersionIsTheProject) {
    const Captured result = RunLine({"--version"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.out.rfind("tessarine ", 0), 0u) << result.out;
}

TEST(CommandTable, FriendlyNamesAndCommandNamesAreUnique) {
    const auto commands = FriendlyCommands();
    for (std::size_t i = 0; i < commands.size(); ++i)
        for (std::size_t j = i + 1; j < commands.size(); ++j) {
            EXPECT_FALSE(EqualsNoCase(commands[i].friendly, commands[j].friendly)) << commands[i].friendly;
            EXPECT_FALSE(EqualsNoCase(commands[i].commandName, commands[j].commandName)) << commands[i].commandName;
        }
    ASSERT_NE(FindFriendlyCommand("tessarine_shapestovertices"), nullptr);
    EXPECT_EQ(FindFriendlyCommand("tessarine_shapestovertices")->friendly, "vertices");
    EXPECT_EQ(FindFriendlyCommand("no-such"), nullptr);
}

TEST(TextUtil, CaptionsLoseTheirAccessKeyMarks) {
    EXPECT_EQ(CaptionText("Convert Shapes to &Vertices"), "Convert Shapes to Vertices");
    EXPECT_EQ(CaptionText("Save && &Close"), "Save & Close");
    EXPECT_EQ(CaptionText("&"), "");
    EXPECT_EQ(SplitAny(",a,, b ,", ","), (std::vector<std::string>{"a", " b "}));
}

TEST(OutputLocation, GeodatabasesAndDatasetsAreChosenAsTheCatalogWouldShowThem) {
    test::TempDir dir;
    std::filesystem::create_directories(dir.Path() / "out.gdb");
    std::filesystem::create_directories(dir.Path() / "plain");
    std::ofstream(dir / "pack.gpkg") << "";

    auto gdb = OutputLocation(dir / "out.gdb/vertices");
    ASSERT_TRUE(gdb);
    EXPECT_EQ(gdb->Category, "File Geodatabase");
    EXPECT_EQ(gdb->Name, "vertices");
    EXPECT_EQ(gdb->FullName, dir / "out.gdb");

    auto dataset = OutputLocation(dir / "out.gdb/Survey/vertices");
    ASSERT_TRUE(dataset);
    EXPECT_EQ(dataset->Category, "File Geodatabase Feature Dataset");
    EXPECT_EQ(dataset->FullName, dir / "out.gdb/Survey");

    auto package = OutputLocation(dir / "pack.gpkg/points");
    ASSERT_TRUE(package);
    EXPECT_EQ(package->Category, "GeoPackage");

    // Folders of shapefiles are typed in; so is any place that is not there, for the dialog to refuse.
    EXPECT_FALSE(OutputLocation(dir / "plain/v.shp"));
    EXPECT_FALSE(OutputLocation(dir / "missing.gdb/v"));
    EXPECT_FALSE(OutputLocation("v.shp"));
}

} // namespace
} // namespace tess::cli
