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
    // One line in the host's words; none of the parser's own.
    EXPECT_EQ(result.err.rfind("tessarine: ", 0), 0u) << result.err;
    for (const char* raw : {"The following arguments", "FAILED", "At Most", "Excludes", "required"})
        EXPECT_EQ(result.err.find(raw), std::string::npos) << raw << " in " << result.err;
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
        UsageCase{"DesktopOnlyDialog", {"about", "--layer", "a.shp"}, "tessarine-map"},
        UsageCase{"GeodWithThreeNumbers", {"geod", "inverse", "1", "2", "3"}, "lon1 lat1 lon2 lat2"},
        UsageCase{"GeodUnknownSpheroid", {"geod", "inverse", "--spheroid", "Vulcan", "0", "0", "1", "1"},
                  "Vulcan"},
        UsageCase{"OptionTypo",
                  {"vertices", "--layer", "a.shp", "out/a.shp", "--ouput"},
                  "vertices has no option --ouput; did you mean --output?"},
        UsageCase{"OptionTypoWithValueJoined", {"graphics", "flip", "--sav=x.map.json"},
                  "graphics flip has no option --sav; did you mean --save?"},
        UsageCase{"WordOfNoOption", {"vertices", "--layer", "a.shp", "out/a.shp"}, "unexpected argument \"out/a.shp\""},
        UsageCase{"ValueOffTheList", {"vertices", "--layer", "a.shp", "--progress", "plian"},
                  "--progress takes auto, line, plain or none, not \"plian\" (did you mean plain?)"},
        UsageCase{"OptionTwice", {"vertices", "--layer", "a.shp", "--output", "a.shp", "--output", "b.shp"},
                  "--output was given more than once"},
        UsageCase{"OptionWithoutValue", {"vertices", "--layer", "a.shp", "--output"}, "--output needs a value (PATH)"},
        UsageCase{"CommandTypo", {"vertexes"}, "did you mean vertices?"},
        UsageCase{"GroupCommandTypo", {"graphics", "fip"}, "graphics has no command \"fip\" (did you mean flip?)"},
        UsageCase{"TwoCommands", {"graphics", "flip", "zoom"}, "one command at a time"},
        UsageCase{"NegativeNumberTooMany", {"geod", "inverse", "1", "2", "3", "4", "-5"},
                  "unexpected argument \"-5\""},
        UsageCase{"GeodAxesTheWrongWayRound", {"geod", "direct", "--spheroid", "6356752,6378137", "0", "0", "0", "1"},
                  "semi-minor"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(CommandLine, CommandsExplainThemselves) {
    // With --help each level shows its help with examples and ends well; without what it needs to
    // run it shows the same help, but a script must not take that for a run: exit code 2.
    for (const auto& [args, code] : std::vector<std::pair<std::vector<std::string>, int>>{
             {{"--help"}, 0},
             {{"vertices", "--help"}, 0},
             {{"graphics", "flip", "--help"}, 0},
             {{"geod", "direct", "--help"}, 0},
             {{}, 2},
             {{"vertices"}, 2},
             {{"Tessarine_ShapesToVertices"}, 2},
             {{"graphics"}, 2},
             {{"graphics", "flip"}, 2},
             {{"geod"}, 2}}) {
        const Captured result = RunLine(args);
        std::string line;
        for (const auto& a : args)
            line += a + " ";
        EXPECT_EQ(result.code, code) << line << result.err;
        EXPECT_NE(result.out.find("Examples:"), std::string::npos) << line << result.out;
        EXPECT_NE(result.out.find("Usage: tessarine"), std::string::npos) << line << result.out;
    }
}

TEST(CommandLine, HelpKeepsItsColumnsStatesDefaultsAndSaysDesktopOnlyOneWay) {
    constexpr std::size_t kDescriptionColumn = 34; // where every description starts
    constexpr std::size_t kHelpWidth = 100;        // characters a help line takes at most
    for (const std::vector<std::string>& args : std::vector<std::vector<std::string>>{
             {"--help"}, {"vertices", "--help"}, {"graphics", "flip", "--help"}, {"demo", "--help"},
             {"calculate", "--help"}, {"geod", "inverse", "--help"}, {"graphics", "--help"}}) {
        const std::string help = RunLine(args).out;
        EXPECT_EQ(help.find("Excludes"), std::string::npos) << help;
        EXPECT_EQ(help.find("x)]"), std::string::npos) << "CLI11's repeat marks in the usage line\n" << help;
        EXPECT_EQ(help.find("tessarine-map for now"), std::string::npos) << help;
        std::istringstream lines(help);
        bool inList = false; // the lists of options and commands, up to the next blank line
        for (std::string line; std::getline(lines, line);) {
            if (line == "Options:" || line == "Subcommands:" || line == "Positionals:") {
                inList = true;
                continue;
            }
            if (line.empty())
                inList = false;
            if (!inList)
                continue;
            EXPECT_LE(line.size(), kHelpWidth) << line;
            if (line.size() <= kDescriptionColumn || line[2] == ' ')
                continue;
            // The option and its value end before the column, with two blanks at least.
            EXPECT_EQ(line.substr(kDescriptionColumn - 2, 2), "  ") << line;
            EXPECT_NE(line[kDescriptionColumn], ' ') << line;
        }
    }
    // Descriptions wrap: the words count, not where the lines break.
    std::string vertices;
    for (const std::string& word : SplitAny(RunLine({"vertices", "--help"}).out, " \n"))
        vertices += word + " ";
    for (const char* stated : {"(default: auto)", "(default: the dialog's proposal", "(default: none)",
                               "(default: ask on a terminal, else No)"})
        EXPECT_NE(vertices.find(stated), std::string::npos) << stated;
    std::string top;
    for (const std::string& word : SplitAny(RunLine({"--help"}).out, " \n"))
        top += word + " ";
    EXPECT_NE(top.find(std::string("About Tools for Tessarine Tools (Tessarine_About); ") + std::string(kDesktopOnly)),
              std::string::npos)
        << top;
    const Captured run = RunLine({"about", "--layer", "a.shp"});
    EXPECT_NE(run.err.find(std::string(kDesktopOnly) + ": " + std::string(kDesktopOnlyWhere)), std::string::npos)
        << run.err;
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

TEST(TextUtil, NearestWordIsOnlyOfferedWhenCloseEnough) {
    const std::vector<std::string> options{"--output", "--input", "--all", "--all-fields", "--save"};
    EXPECT_EQ(EditDistance("ouput", "output"), 1u);
    EXPECT_EQ(EditDistance("otuput", "OUTPUT"), 1u) << "a swap of neighbours is one edit, case aside";
    EXPECT_EQ(EditDistance("", "abc"), 3u);
    EXPECT_EQ(NearestWord("--ouput", options), "--output");
    EXPECT_EQ(NearestWord("--all-field", options), "--all-fields");
    EXPECT_EQ(NearestWord("--inp", options), "--input") << "the only option it begins";
    EXPECT_EQ(NearestWord("--al", options), "--all");
    EXPECT_EQ(NearestWord("--colour", options), "") << "nothing near: no guess";
    EXPECT_EQ(NearestWord("-", options), "");
    EXPECT_EQ(JoinWords({"a"}), "a");
    EXPECT_EQ(JoinWords({"a", "b", "c"}), "a, b or c");
}

TEST(OutputTarget, NamesTheClassAsTheDialogWillMakeIt) {
    test::TempDir dir;
    std::filesystem::create_directories(dir.Path() / "plain");
    const OutputTarget shapefile = ReadOutputTarget(dir / "plain/roads");
    EXPECT_EQ(shapefile.problem, "");
    EXPECT_EQ(shapefile.name, "roads.shp");
    EXPECT_TRUE(shapefile.placeExists);
    EXPECT_FALSE(OutputExists(shapefile));
    const OutputTarget package = ReadOutputTarget(dir / "plain/new.gpkg/my roads.shp");
    EXPECT_EQ(package.problem, "") << "a GeoPackage is made with its first class";
    EXPECT_EQ(package.name, "my_roads");
    EXPECT_FALSE(package.placeExists);
    EXPECT_NE(ReadOutputTarget(dir / "plain/a.geojson").problem.find(".geojson"), std::string::npos);
    EXPECT_NE(ReadOutputTarget("x.mdb").problem.find("a personal geodatabase"), std::string::npos);
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
    // A GeoPackage that is not there yet is chosen as one, to be made in its folder.
    auto newPackage = OutputLocation(dir / "plain/new.gpkg/points");
    ASSERT_TRUE(newPackage);
    EXPECT_EQ(newPackage->Category, "GeoPackage");
    EXPECT_FALSE(OutputLocation(dir / "nowhere/new.gpkg/points"));
}

} // namespace
} // namespace tess::cli
