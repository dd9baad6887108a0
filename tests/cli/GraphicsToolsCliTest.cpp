// The graphics tools run as a user runs them, on the demo document in a test's
// own folder: graphics to shapes read back and measured against GeographicLib,
// selection and naming saved into the document, the listing, bad input, and the
// demo's graphics step.

#include <gtest/gtest.h>

#include <GeographicLib/Geodesic.hpp>
#include <GeographicLib/PolygonArea.hpp>
#include <nlohmann/json.hpp>

#include <cmath>
#include <fstream>

#include "CliTestSupport.h"
#include "platform/data/Table.h"
#include "platform/geometry/Geometry.h"
#include "platform/geometry/Polyline.h"
#include "platform/srs/SpatialReference.h"
#include "platform/srs/SpatialReferenceEnvironment.h"

namespace tess::test {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

constexpr double kSphereRadius = 6371000.790009154; // metres: the sphere of WGS 1984's volume
// Flat-apex triangle sums against the exact sphere, through 15-digit text: relative.
constexpr double kAreaRelativeTolerance = 1e-9;
// Vincenty against GeographicLib, with vertices rounded to the geodatabase's 0.0001 m grid on the
// way: a few tenths of a millimetre per vertex.
constexpr double kLengthTolerance = 5e-3; // metres

double SphereArea(const std::vector<std::pair<double, double>>& ring) {
    const GeographicLib::Geodesic sphere(kSphereRadius, 0.0);
    GeographicLib::PolygonArea polygon(sphere);
    for (std::size_t i = 0; i + 1 < ring.size(); ++i)
        polygon.AddPoint(ring[i].second, ring[i].first);
    double perimeter = 0.0;
    double area = 0.0;
    polygon.Compute(false, true, perimeter, area);
    return std::abs(area);
}

class GraphicsTools : public ::testing::Test {
protected:
    void SetUp() override {
        CopyDemoData(dir_.Path());
        fs::create_directories(dir_ / "out");
    }

    std::string Doc() const { return dir_ / "data/demo.map.json"; }
    std::string Out(const std::string& name) const { return dir_ / ("out/" + name); }

    json Saved() const {
        std::ifstream file(Doc());
        return json::parse(file);
    }
    void Write(const json& document) const { std::ofstream(Doc()) << document.dump(1); }

    ProcessResult Run(std::vector<std::string> args) const {
        args.insert(args.begin() + (args[0] == "graphics" ? 2 : 1), {"--doc", Doc()});
        return RunTessarine(args, dir_.Path());
    }

    std::vector<std::string> SelectedNames(const char* where = "maps") const {
        const json document = Saved();
        const json& graphics = std::string(where) == "maps" ? document["maps"][0]["graphics"]
                                                            : document["layout"]["graphics"];
        std::vector<std::string> names;
        for (const json& element : graphics)
            if (element.value("selected", false))
                names.push_back(element.value("name", ""));
        return names;
    }

    TempDir dir_;
};

TEST_F(GraphicsTools, ListShowsEveryElementOfTheFocusMapAndTheLayout) {
    const ProcessResult map = Run({"graphics", "list"});
    ASSERT_EQ(map.exitCode, 0) << map.err;
    EXPECT_NE(map.out.find("13 elements, 2 selected"), std::string::npos) << map.out;
    EXPECT_NE(map.out.find("4      Circle     \"Buffer\"                 no  12.95 44.35 13.45 44.85"),
              std::string::npos)
        << map.out;
    EXPECT_NE(map.out.find("  7.2    Line       \"Pipe\""), std::string::npos) << map.out;
    const ProcessResult layout = Run({"graphics", "list", "--layout"});
    ASSERT_EQ(layout.exitCode, 0) << layout.err;
    EXPECT_NE(layout.out.find("MapFrame"), std::string::npos);
    EXPECT_NE(layout.out.find("\"Legend box\"             yes"), std::string::npos) << layout.out;
}

TEST_F(GraphicsTools, PolygonsBecomeAShapefileWithSphericalAreasAndTheDocumentOnlyChangesWithSave) {
    const auto before = Snapshot(Doc());
    const ProcessResult run = Run({"graphics-to-shapes", "--convert", "polygons", "--output", Out("areas.shp")});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(Snapshot(Doc()), before);
    EXPECT_NE(run.out.find("Graphics to Feature Classes Conversion Complete"), std::string::npos);
    EXPECT_NE(run.out.find("Survey area  (2 elements)"), std::string::npos) << run.out;

    const std::vector<FeatureRecord> features = ReadFeatures(Out("areas.shp"));
    ASSERT_EQ(features.size(), 5u);
    const std::vector<std::string> names{"Survey area", "Study frame", "Buffer", "Lake outline", "Survey area"};
    for (std::size_t i = 0; i < features.size(); ++i) {
        SCOPED_TRACE(names[i]);
        EXPECT_EQ(features[i].values.at("NAME"), names[i]);
        EXPECT_EQ(features[i].values.at("UNIQUE_ID"), std::to_string(i + 1));
        const double expected = SphereArea(features[i].points);
        EXPECT_NEAR(std::stod(features[i].values.at("AREA")), expected, expected * kAreaRelativeTolerance);
    }
    // The circle and the ellipse, each alone in its ring, become 200 pieces.
    EXPECT_EQ(features[2].points.size(), 201u);
    EXPECT_EQ(features[3].points.size(), 201u);

    const ProcessResult saved =
        Run({"graphics-to-shapes", "--convert", "4", "--output", Out("areas2.shp"), "--save"});
    ASSERT_EQ(saved.exitCode, 0) << saved.err;
    const json layer = Saved()["maps"][0]["layers"][0];
    EXPECT_EQ(layer["name"], "areas2");
    // Drawn with the fill of the first polygon graphic.
    EXPECT_EQ(layer["renderer"]["symbol"]["color"], json::array({150, 200, 120}));
}

TEST_F(GraphicsTools, SelectedOutlinesGoToAGeodatabaseInTheReferenceAsked) {
    fs::copy(dir_ / "data/demo/demo.gdb", Out("work.gdb"), fs::copy_options::recursive);
    const ProcessResult run = Run({"graphics-to-shapes", "--convert", "all-to-polylines", "--selected-only",
                                   "--output", Out("work.gdb/outlines"), "--spatial-reference", "EPSG:32633"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.out.find("Convert selected graphic polylines and polygons to Polyline Feature Class"),
              std::string::npos);
    const std::vector<FeatureRecord> features = ReadFeatures(Out("work.gdb/outlines"));
    ASSERT_EQ(features.size(), 1u); // the selected polygon; the selected marker is no line
    EXPECT_EQ(features[0].values.at("NAME"), "Survey area");
    EXPECT_EQ(features[0].values.count("UNIQUE_ID"), 0u);
    // The outline in zone 33N, taken back to degrees and measured by GeographicLib.
    auto line = std::make_shared<Polyline>();
    std::vector<WKSPoint> points;
    for (const auto& [x, y] : features[0].points)
        points.push_back({x, y});
    line->AddWKSPoints(static_cast<std::int32_t>(points.size()), points.data());
    ASSERT_GT(points[0].X, 1000.0) << "metres expected";
    SpatialReferenceEnvironment environment;
    line->SpatialReference(environment.CreateProjectedCoordinateSystem(32633));
    line->Project(environment.CreateGeographicCoordinateSystem(4326));
    std::vector<WKSPoint> degrees(points.size());
    line->QueryWKSPoints(0, static_cast<std::int32_t>(degrees.size()), degrees.data());
    const GeographicLib::Geodesic& wgs84 = GeographicLib::Geodesic::WGS84();
    double expected = 0.0;
    for (std::size_t i = 1; i < degrees.size(); ++i) {
        double s12 = 0.0;
        wgs84.Inverse(degrees[i - 1].Y, degrees[i - 1].X, degrees[i].Y, degrees[i].X, s12);
        expected += s12;
    }
    EXPECT_NEAR(std::stod(features[0].values.at("LENGTH")), expected, kLengthTolerance);
}

TEST_F(GraphicsTools, EmptyClassesAndBadInputGetClearAnswers) {
    const ProcessResult empty = Run({"graphics-to-shapes", "--empty", "polyline", "--output", Out("empty.shp")});
    ASSERT_EQ(empty.exitCode, 0) << empty.err;
    EXPECT_TRUE(ReadFeatures(Out("empty.shp")).empty());
    EXPECT_NE(empty.out.find("Create Empty Polyline Feature Class"), std::string::npos);

    const auto before = Snapshot(Doc());
    // An output that exists: No keeps it and makes nothing; Yes replaces it.
    const auto kept = fs::file_size(Out("empty.shp"));
    const ProcessResult no = Run({"graphics-to-shapes", "--convert", "polygons", "--output", Out("empty.shp"),
                                  "--no", "--save"});
    EXPECT_EQ(no.exitCode, 2);
    EXPECT_NE(no.err.find("exists and was not replaced (--yes replaces it)"), std::string::npos) << no.err;
    EXPECT_EQ(fs::file_size(Out("empty.shp")), kept);
    EXPECT_EQ(Snapshot(Doc()), before); // a run that made nothing saves nothing
    const ProcessResult yes =
        Run({"graphics-to-shapes", "--convert", "polygons", "--output", Out("empty.shp"), "--yes"});
    EXPECT_EQ(yes.exitCode, 0) << yes.err;
    EXPECT_EQ(ReadFeatures(Out("empty.shp")).size(), 5u);

    struct Bad {
        std::vector<std::string> args;
        int code;
        const char* message;
    };
    const Bad cases[] = {
        {{"graphics-to-shapes", "--convert", "polygons", "--output", "@/nowhere/x.shp"}, 2, "does not exist"},
        {{"graphics-to-shapes", "--convert", "polygons", "--output", "@/out/made.gdb/x"}, 2,
         "made.gdb\" is not there"},
        {{"graphics-to-shapes", "--empty", "point", "--spatial-reference", "EPSG:999999"}, 2,
         "unknown spatial reference \"EPSG:999999\""},
        {{"graphics-to-shapes", "--convert", "lines"}, 2, "not a line of the dialog"},
        {{"graphics-to-shapes", "--output", "@/out/x.shp"}, 2, "--empty point|polyline|polygon, or --convert"},
        {{"graphics", "select", "--type", "frames"}, 2, "Frames [0]"},
        {{"graphics", "select", "--type", "squares"}, 2, "not a kind of element"},
        {{"graphics", "select", "--name", "River"}, 2, "no element bears that name"},
        {{"graphics", "name", "--name", ""}, 2, "Confirm Action:"},
    };
    for (const Bad& c : cases) {
        std::vector<std::string> args;
        for (const std::string& arg : c.args)
            args.push_back(arg.rfind("@/", 0) == 0 ? dir_ / arg.substr(2) : arg);
        args.push_back("--save");
        const ProcessResult run = Run(args);
        SCOPED_TRACE(args[0] + " " + args[1] + " " + args[2]);
        EXPECT_EQ(run.exitCode, c.code) << run.err;
        EXPECT_NE(run.err.find(c.message), std::string::npos) << run.err;
        EXPECT_EQ(Snapshot(Doc()), before);
    }

    // A document without graphics: the dialog's own words.
    json document = Saved();
    document["maps"][0]["graphics"] = json::array();
    Write(document);
    const ProcessResult none = Run({"graphics-to-shapes", "--convert", "polygons", "--output", Out("none.shp")});
    EXPECT_EQ(none.exitCode, 2);
    EXPECT_NE(none.err.find("No graphics available..."), std::string::npos) << none.err;
    EXPECT_FALSE(fs::exists(Out("none.shp")));
}

TEST_F(GraphicsTools, SelectionByTypeNameAndPatternIsAddedAndSaved) {
    ASSERT_EQ(SelectedNames(), (std::vector<std::string>{"Trailhead", "Survey area"}));
    const ProcessResult run =
        Run({"graphics", "select", "--type", "circles", "--name", "study FRAME", "--pattern", "*o&tline", "--save"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.out.find("Selected graphic elements: 5 of 13 (3 added)"), std::string::npos) << run.out;
    EXPECT_EQ(SelectedNames(), (std::vector<std::string>{"Trailhead", "Survey area", "Study frame", "Buffer",
                                                          "Lake outline"}));
    // Both elements of one name.
    ASSERT_EQ(Run({"graphics", "unselect", "--save"}).exitCode, 0);
    ASSERT_EQ(Run({"graphics", "select", "--name", "Survey area", "--save"}).exitCode, 0);
    EXPECT_EQ(SelectedNames(), (std::vector<std::string>{"Survey area", "Survey area"}));

    // In layout view the page layout's elements are the ones offered.
    json document = Saved();
    document["activeView"] = "layout";
    Write(document);
    const ProcessResult layout = Run({"graphics", "select", "--type", "frames", "--save"});
    ASSERT_EQ(layout.exitCode, 0) << layout.err;
    EXPECT_EQ(SelectedNames("layout"), (std::vector<std::string>{"", "Legend box"}));
}

TEST_F(GraphicsTools, NamingAllOrSelectedElementsIsSaved) {
    ASSERT_EQ(Run({"graphics", "name", "--name", "Site", "--save"}).exitCode, 0);
    std::vector<std::string> names;
    const json named = Saved();
    for (const json& element : named["maps"][0]["graphics"])
        names.push_back(element.value("name", ""));
    EXPECT_EQ(names[0], "Site");
    EXPECT_EQ(names[1], "Planned path");
    EXPECT_EQ(names[2], "Site");

    const ProcessResult all = Run({"graphics", "name", "--name", "", "--all", "--yes", "--save"});
    ASSERT_EQ(all.exitCode, 0) << all.err;
    const json cleared = Saved();
    for (const json& element : cleared["maps"][0]["graphics"])
        EXPECT_EQ(element.value("name", ""), "");
    // Group members keep theirs.
    EXPECT_EQ(cleared["maps"][0]["graphics"][7]["elements"][0]["name"], "Well A");
}

TEST_F(GraphicsTools, TheDemoTurnsItsGraphicsIntoPolygons) {
    const ProcessResult run =
        RunTessarine({"demo", "--data", dir_ / "data", "--output", Out("demo"), "--progress", "none"}, dir_.Path());
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.out.find("\"Graphic Elements to Shapes\""), std::string::npos);
    auto polygons = OpenClass(Out("demo/graphics_polygons.shp"));
    ASSERT_TRUE(polygons);
    EXPECT_EQ(polygons->FeatureCount(nullptr), 7); // two polylines closed, five polygons
}

} // namespace
} // namespace tess::test
