// tessarine build-polygons run as a user runs it, on the demo fence lines: the regions that a
// tolerance closes and the ones it leaves open, the label points they take, and input refused
// with exit code 2 before anything is written.

#include <gtest/gtest.h>

#include <algorithm>

#include "CliTestSupport.h"

namespace tess::test {
namespace {

namespace fs = std::filesystem;

// The demo regions are rectangles and a pond of whole metres; the dBASE Area keeps 8 decimals.
constexpr double kAreaTol = 1e-6; // square metres
// West meadow 150 x 200 less the pond; east field 150 x 200; the pond itself.
constexpr double kPondArea = 2800.0;
constexpr double kWestArea = 150.0 * 200.0 - kPondArea;
constexpr double kEastArea = 150.0 * 200.0;

class BuildPolygonsCli : public ::testing::Test {
protected:
    void SetUp() override { CopyDemoData(dir_.Path()); }
    std::string Data(const std::string& name) const { return (dir_.Path() / "data" / "demo" / name).string(); }
    std::string Out(const std::string& name) const { return dir_ / name; }
    ProcessResult Run(std::vector<std::string> args) {
        args.insert(args.begin(), "build-polygons");
        args.insert(args.end(), {"--progress", "none"});
        return RunTessarine(args, dir_.Path());
    }
    //! Area and label name by region.
    std::map<std::string, double> Regions(const std::string& path) {
        std::map<std::string, double> regions;
        for (const FeatureRecord& f : ReadFeatures(path))
            regions[f.values.count("NAME") ? f.values.at("NAME") : "#" + f.values.at("UNIQ_ID")] =
                std::stod(f.values.at("AREA"));
        return regions;
    }
    TempDir dir_;
};

TEST_F(BuildPolygonsCli, GapsUnderTheToleranceCloseAndTheNearestLabelNamesEachRegion) {
    const ProcessResult run = Run({"--layer", Data("boundaries.shp"), "--cluster-tolerance", "0.5", "--labels",
                                   Data("region_labels.shp"), "--label-rule", "nearest", "--fields", "NAME,KIND",
                                   "--output", Out("regions.shp")});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const auto regions = Regions(Out("regions.shp"));
    // The 2 m gap of the paddock stays open: no region there, and its label is unused.
    ASSERT_EQ(regions.size(), 3u) << run.out;
    EXPECT_NEAR(regions.at("West Meadow"), kWestArea, kAreaTol);
    EXPECT_NEAR(regions.at("East Field"), kEastArea, kAreaTol);
    EXPECT_NEAR(regions.at("Pond"), kPondArea, kAreaTol);
    EXPECT_NE(run.out.find("Cluster Tolerance: 0.5 Meter"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("Contains 3 features"), std::string::npos) << run.out;
    EXPECT_EQ(run.out.find("Missing Label Points"), std::string::npos) << run.out;
}

TEST_F(BuildPolygonsCli, TheFirstLabelRuleAndASmallerToleranceChangeTheResult) {
    const ProcessResult first = Run({"--layer", Data("boundaries.shp"), "--cluster-tolerance", "0.5", "--labels",
                                     Data("region_labels.shp"), "--label-rule", "first", "--fields", "NAME",
                                     "--output", Out("first.shp")});
    ASSERT_EQ(first.exitCode, 0) << first.err;
    const auto regions = Regions(Out("first.shp"));
    EXPECT_EQ(regions.count("East Barn"), 1u); // comes before East Field in the label layer
    EXPECT_EQ(regions.count("East Field"), 0u);

    // 0.2 m closes neither 0.3 m gap: only the pond is a closed region.
    const ProcessResult tight =
        Run({"--layer", Data("boundaries.shp"), "--cluster-tolerance", "0.2", "--output", Out("tight.shp")});
    ASSERT_EQ(tight.exitCode, 0) << tight.err;
    const auto only = ReadFeatures(Out("tight.shp"));
    ASSERT_EQ(only.size(), 1u);
    EXPECT_NEAR(std::stod(only[0].values.at("AREA")), kPondArea, kAreaTol);
    EXPECT_NE(tight.out.find("No label point attributes used"), std::string::npos);
}

TEST_F(BuildPolygonsCli, BadInputIsRefusedWithoutWritingAnything) {
    struct Case {
        std::vector<std::string> args;
        const char* says;
    };
    const Case cases[] = {
        {{"--layer", Data("wells.shp"), "--cluster-tolerance", "1"}, "takes polyline layers only"},
        {{"--layer", Data("boundaries.shp"), "--cluster-tolerance", "-1"}, "is not a distance"},
        {{"--layer", Data("boundaries.shp"), "--cluster-tolerance", "half"}, "is not a distance"},
        {{"--layer", Data("boundaries.shp"), "--labels", Data("region_labels.shp"), "--fields", "NOSUCH"},
         "has no field \"NOSUCH\"; its fields: NAME, KIND"},
        {{"--layer", Data("boundaries.shp"), "--labels", Data("region_labels.shp")}, "--fields A,B or --all-fields"},
        {{"--layer", Data("boundaries.shp"), "--fields", "NAME"}, "give --labels"},
        {{"--layer", Data("boundaries.shp"), "--label-rule", "first"}, "go with --labels"},
        {{"--layer", Data("boundaries.shp"), "--labels", Data("wells.shp"), "--label-rule", "middle", "--fields",
          "STATUS"},
         "give first or nearest"},
    };
    for (const Case& c : cases) {
        std::vector<std::string> args = c.args;
        args.insert(args.end(), {"--output", Out("bad.shp")});
        const ProcessResult run = Run(args);
        SCOPED_TRACE(c.says);
        EXPECT_EQ(run.exitCode, 2) << run.err;
        EXPECT_NE(run.err.find(c.says), std::string::npos) << run.err;
        EXPECT_FALSE(fs::exists(Out("bad.shp")));
    }
}

TEST_F(BuildPolygonsCli, LinesThatBoundNothingSaySoAndLeaveAnEmptyClass) {
    // Two fences that meet at a corner enclose nothing.
    const ProcessResult run = Run({"--layer", Data("boundaries.shp"), "--where",
                                   "NAME = 'south fence' OR NAME = 'east fence'", "--selected", "--cluster-tolerance",
                                   "0", "--output", Out("none.shp")});
    const std::string said = run.out + run.err;
    EXPECT_NE(said.find("No polygons were created from 'boundaries'!  Possibly no polylines intersected in such a "
                        "way as to create a bounded region.  Function cancelled..."),
              std::string::npos)
        << said;
    ASSERT_TRUE(fs::exists(Out("none.shp")));
    EXPECT_TRUE(ReadFeatures(Out("none.shp")).empty());
}

TEST_F(BuildPolygonsCli, TheDemoBuildsTheRegionsOfTheFences) {
    const ProcessResult run = RunTessarine({"demo", "--progress", "none"}, dir_.Path());
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.out.find("Build Polygons Function Complete:"), std::string::npos) << run.out;
    const auto regions = Regions((dir_.Path() / "demo-output" / "regions.shp").string());
    EXPECT_EQ(regions.size(), 3u);
    EXPECT_EQ(regions.count("East Field"), 1u);
}

} // namespace
} // namespace tess::test
