// `tessarine calculate` end to end: the measures a layer offers, values written
// into the layer's own table, the options the dialog refuses, planetocentric
// data, Ctrl-C, and kill -9 in the middle of a run.

#include <gtest/gtest.h>

#include <signal.h>

#include <cmath>
#include <cstdlib>

#include "CliTestSupport.h"
#include "platform/data/Cursor.h"
#include "platform/data/Row.h"
#include "platform/data/Table.h"

namespace tess::test {
namespace {

namespace fs = std::filesystem;

class Calculate : public ::testing::Test {
protected:
    void SetUp() override { CopyDemoData(dir_.Path()); }
    std::string Data(const std::string& name) const { return (dir_.Path() / "data" / "demo" / name).string(); }

    TempDir dir_;
};

double Number(const FeatureRecord& record, const std::string& field) {
    const auto it = record.values.find(field);
    return it == record.values.end() || it->second.empty() ? std::nan("") : std::stod(it->second);
}

//! One numeric field of every row, in storage order; NaN where the row holds a null.
std::vector<double> Column(const std::string& dataset, const std::string& field) {
    auto featureClass = OpenClass(dataset);
    const std::int32_t index = featureClass->FindField(field);
    EXPECT_GE(index, 0) << field;
    std::vector<double> values;
    auto cursor = featureClass->Search(nullptr, true);
    for (auto feature = cursor->NextFeature(); feature; feature = cursor->NextFeature()) {
        const Variant value = index >= 0 ? feature->Value(index) : Variant::Null();
        values.push_back(value.IsNull() ? std::nan("") : value.ToDouble());
    }
    return values;
}

TEST_F(Calculate, ListShowsTheMeasuresOfTheLayerAndChangesNothing) {
    const auto before = Snapshot(dir_.Path() / "data" / "demo");
    const ProcessResult run = RunTessarine({"calculate", "--layer", Data("parcels.shp"), "--list"}, dir_.Path());
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.out.find("Polygon Feature Class:  Geographic Coordinate System"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("   1  Sph. Area             Sph_Area                slow\n"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("   2  Sph. Centroid         Longitude,Latitude      slow\n"), std::string::npos);
    EXPECT_NE(run.out.find("   4  Number of Parts       Parts\n"), std::string::npos);
    EXPECT_EQ(Snapshot(dir_.Path() / "data" / "demo"), before);
}

TEST_F(Calculate, MeasuresAreWrittenIntoTheLayersOwnTable) {
    const ProcessResult run = RunTessarine({"calculate", "--layer", Data("parcels.shp"), "--measure",
                                            "Sph. Area=SPH_AREA", "--measure", "4", "--measure", "sph. centroid=CX,CY"},
                                           dir_.Path());
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.out.find("Geometry Calculation Successful:"), std::string::npos);
    EXPECT_NE(run.out.find("1] Spherical Area: Field Name = [SPH_AREA]"), std::string::npos) << run.out;
    const auto features = ReadFeatures(Data("parcels.shp"));
    ASSERT_EQ(features.size(), 4U);
    for (const FeatureRecord& f : features)
        EXPECT_GT(Number(f, "SPH_AREA"), 0.0);
    // Meadow: one ring of a degree with a hole in its south-west; Islands: three rings.
    EXPECT_EQ(Number(features[0], "PARTS"), 1.0);
    EXPECT_EQ(Number(features[1], "PARTS"), 3.0);
    EXPECT_GT(Number(features[0], "CX"), 10.5);
    EXPECT_LT(Number(features[0], "CX"), 11.0);
    EXPECT_GT(Number(features[0], "CY"), 45.5);
    EXPECT_LT(Number(features[0], "CY"), 46.0);
}

TEST_F(Calculate, PlanetocentricMarsDataOnTheMarsSpheroid) {
    const ProcessResult run =
        RunTessarine({"calculate", "--layer", Data("craters.shp"), "--measure", "Perimeter Length=PERIM",
                      "--spheroid", "Mars 2000", "--planetocentric"},
                     dir_.Path());
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.out.find("Spheroid Name: Mars 2000"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("Data are in Planetocentric Coordinates"), std::string::npos);
    // Gale's ring: 0.8 degrees about its centre, on a planet of about 3390 km.
    const auto features = ReadFeatures(Data("craters.shp"));
    const double expected = 2 * M_PI * (0.8 * M_PI / 180.0) * 3390.0; // km
    EXPECT_NEAR(Number(features.at(0), "PERIM") / 1000.0, expected, 3.0);
}

TEST_F(Calculate, OptionsTheDialogDoesNotTakeAreUsageErrorsAndChangeNothing) {
    const auto before = Snapshot(dir_.Path() / "data" / "demo");
    struct Case {
        std::vector<std::string> args;
        const char* says;
    };
    const Case cases[] = {
        {{"--layer", Data("parcels.shp"), "--measure", "Length"}, "offers no measure \"Length\"; it offers: 1 \"Sph. Area\""},
        {{"--layer", Data("parcels.shp")}, "--measure"},
        {{"--layer", Data("parcels.shp"), "--measure", "Sph. Centroid=ONLYONE"}, "takes two field names"},
        {{"--layer", Data("blocks_utm.shp"), "--measure", "1", "--spheroid", "Clarke 1866"},
         "Advanced functions available only for Geographic Datasets"},
        {{"--layer", Data("parcels.shp"), "--measure", "1", "--spheroid", "0,0"}, "--spheroid \"0,0\""},
        {{"--layer", Data("parcels.shp"), "--measure", "1", "--spheroid", "6356752,6378137"}, "--spheroid"},
        {{"--layer", Data("wells.shp"), "--measure", "1", "--planetocentric"}, "Point feature classes"},
    };
    for (const Case& c : cases) {
        std::vector<std::string> args{"calculate"};
        args.insert(args.end(), c.args.begin(), c.args.end());
        const ProcessResult run = RunTessarine(args, dir_.Path());
        EXPECT_EQ(run.exitCode, 2) << args[2] << " " << run.err;
        EXPECT_NE(run.err.find(c.says), std::string::npos) << run.err;
    }
    EXPECT_EQ(Snapshot(dir_.Path() / "data" / "demo"), before);
}

TEST_F(Calculate, ExistingFieldIsOverwrittenOnlyWhenTheQuestionIsAnsweredYes) {
    const auto before = Snapshot(dir_.Path() / "data" / "demo");
    const std::vector<std::string> args{"calculate", "--layer", Data("craters.shp"), "--measure", "Sph. Area=DIAM_KM"};
    const ProcessResult asked = RunTessarine(args, dir_.Path());
    EXPECT_EQ(asked.exitCode, 2) << asked.err;
    EXPECT_NE(asked.err.find("Confirm Field Names:"), std::string::npos) << asked.err;
    EXPECT_NE(asked.err.find("not confirmed"), std::string::npos) << asked.err;
    EXPECT_EQ(Snapshot(dir_.Path() / "data" / "demo"), before);

    std::vector<std::string> yes = args;
    yes.push_back("--yes");
    const ProcessResult answered = RunTessarine(yes, dir_.Path());
    ASSERT_EQ(answered.exitCode, 0) << answered.err;
    EXPECT_GT(Number(ReadFeatures(Data("craters.shp")).at(0), "DIAM_KM"), 1e9); // square metres now
}

// Enough lines for several seconds of work, so that the signal lands inside the loop.
constexpr int kLongRunFeatures = 10000;

TEST_F(Calculate, CtrlCKeepsTheRowsWrittenSoFar) {
    constexpr int kFeatures = kLongRunFeatures;
    constexpr int kVerticesEach = 1000;
    MakeLongLines(dir_.Path().string(), kFeatures, kVerticesEach);
    const std::string lines = dir_ / "long_lines.shp";
    Child child({"calculate", "--layer", lines, "--measure", "Spheroidal Length=LEN", "--progress", "plain"},
                dir_.Path());
    ASSERT_TRUE(child.WaitForErr("Calculating Polyline Attributes...")) << child.Finish().err;
    ::kill(child.Pid(), SIGINT);
    const ProcessResult run = child.Finish();
    EXPECT_EQ(run.exitCode, 3) << run.err;
    EXPECT_NE(run.out.find("Exited Function Prematurely at Record"), std::string::npos) << run.out;

    const std::vector<double> lengths = Column(lines, "LEN");
    ASSERT_EQ(lengths.size(), static_cast<std::size_t>(kFeatures));
    std::size_t written = 0;
    while (written < lengths.size() && !std::isnan(lengths[written]))
        ++written;
    EXPECT_GT(written, 0U);
    EXPECT_LT(written, lengths.size());
    for (std::size_t i = written; i < lengths.size(); ++i)
        ASSERT_TRUE(std::isnan(lengths[i])) << i;
}

TEST_F(Calculate, AKilledRunLeavesEveryRowOldOrNewAndRunsAgain) {
    constexpr int kFeatures = kLongRunFeatures;
    constexpr int kVerticesEach = 1000;
    MakeLongLines(dir_.Path().string(), kFeatures, kVerticesEach);
    const std::string lines = dir_ / "long_lines.shp";
    const std::vector<std::string> args{"calculate", "--layer", lines, "--measure", "Spheroidal Length=LEN",
                                        "--progress", "plain"};
    {
        Child child(args, dir_.Path());
        ASSERT_TRUE(child.WaitForErr("Calculating Polyline Attributes...")) << child.Finish().err;
        ::kill(child.Pid(), SIGKILL);
        EXPECT_EQ(child.Finish().exitCode, 128 + SIGKILL);
    }
    // Each row as the kill left it is compared with the full run's value for that row.
    const std::vector<double> killed = Column(lines, "LEN");
    ASSERT_EQ(killed.size(), static_cast<std::size_t>(kFeatures));
    // The field was made before the loop and stays: the second run overwrites it.
    std::vector<std::string> confirmed = args;
    confirmed.push_back("--yes");
    const ProcessResult again = RunTessarine(confirmed, dir_.Path());
    ASSERT_EQ(again.exitCode, 0) << again.err;
    const std::vector<double> full = Column(lines, "LEN");
    ASSERT_EQ(full.size(), killed.size());
    for (std::size_t i = 0; i < full.size(); ++i) {
        ASSERT_TRUE(std::isnan(killed[i]) || killed[i] == full[i]) << i;
        ASSERT_GT(full[i], 0.0) << i;
    }
    for (const auto& entry : fs::directory_iterator(dir_.Path()))
        EXPECT_EQ(entry.path().filename().string().find(".tess"), std::string::npos) << entry.path();
}

} // namespace
} // namespace tess::test
