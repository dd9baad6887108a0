// What a user's input survives through tessarine: an output named as the
// input or as a layer of the document, damaged files, and kill -9 in the
// middle of a run.

#include <gtest/gtest.h>

#include <signal.h>

#include <cstdlib>
#include <cstring>
#include <fstream>

#include "CliTestSupport.h"
#include "platform/data/Table.h"

namespace tess::test {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kShapefileHeader = 100;

class DataSafety : public ::testing::Test {
protected:
    void SetUp() override { CopyDemoData(dir_.Path()); }
    std::string Data(const std::string& name) const { return (dir_.Path() / "data" / "demo" / name).string(); }
    std::string Out(const std::string& name) const { return dir_ / name; }

    TempDir dir_;
};

struct SameAsInput {
    const char* name;
    const char* dataset; //!< under data/demo
    const char* stored;  //!< the file or folder that holds it
};

class OutputNamedAsInput : public DataSafety, public ::testing::WithParamInterface<SameAsInput> {};

TEST_P(OutputNamedAsInput, IsRefusedAndTheInputStaysByteForByte) {
    const SameAsInput& c = GetParam();
    if (std::string(c.stored) == "demo.gpkg") {
        const std::string copy = "ogr2ogr -q -f GPKG '" + Data("demo.gpkg") + "' '" + Data("parcels.shp") + "'";
        ASSERT_EQ(std::system(copy.c_str()), 0);
    }
    const auto before = Snapshot(Data(c.stored));
    const ProcessResult run = RunTessarine(
        {"vertices", "--layer", Data(c.dataset), "--output", Data(c.dataset), "--all-fields", "--yes"}, dir_.Path());
    // Refused before the run starts; the data layer's own refusal stands behind it for every host.
    EXPECT_EQ(run.exitCode, 2) << run.err;
    EXPECT_NE(run.err.find("is the data of the map's layer \"parcels\""), std::string::npos) << run.err;
    EXPECT_EQ(Snapshot(Data(c.stored)), before);
}

INSTANTIATE_TEST_SUITE_P(EveryFormat, OutputNamedAsInput,
                         ::testing::Values(SameAsInput{"Shapefile", "parcels.shp", "."},
                                           SameAsInput{"FileGeodatabase", "demo.gdb/parcels", "demo.gdb"},
                                           SameAsInput{"GeoPackage", "demo.gpkg/parcels", "demo.gpkg"}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(DataSafety, AnOutputThatALayerOfTheDocumentShowsIsRefused) {
    const auto before = Snapshot(Data("."));
    const ProcessResult run = RunTessarine({"vertices", "--doc", dir_ / "data/demo.map.json", "--input", "parcels",
                                            "--output", Data("trails.shp"), "--yes"},
                                           dir_.Path());
    EXPECT_EQ(run.exitCode, 2) << run.err;
    EXPECT_NE(run.err.find("is the data of the map's layer \"trails\""), std::string::npos) << run.err;
    EXPECT_EQ(Snapshot(Data(".")), before);
}

struct Damage {
    const char* name;
    void (*apply)(const std::string& folder);
};

void CutShapes(const std::string& folder) { fs::resize_file(folder + "/parcels.shp", fs::file_size(folder + "/parcels.shp") / 2); }
void CutTable(const std::string& folder) { fs::resize_file(folder + "/parcels.dbf", fs::file_size(folder + "/parcels.dbf") / 2); }
void GarbleRecord(const std::string& folder) {
    // The vertex count of the second record claims far more than the record holds.
    std::fstream file(folder + "/parcels.shp", std::ios::in | std::ios::out | std::ios::binary);
    char header[8];
    file.seekg(kShapefileHeader);
    file.read(header, sizeof header);
    const std::uint32_t words = (std::uint32_t(std::uint8_t(header[4])) << 24) |
                                (std::uint32_t(std::uint8_t(header[5])) << 16) |
                                (std::uint32_t(std::uint8_t(header[6])) << 8) | std::uint8_t(header[7]);
    const std::size_t second = kShapefileHeader + 8 + 2 * words;
    const std::int32_t huge = 0x0fffffff;
    file.seekp(static_cast<std::streamoff>(second + 8 + 4 + 32 + 4));
    file.write(reinterpret_cast<const char*>(&huge), sizeof huge);
}

class DamagedInput : public DataSafety, public ::testing::WithParamInterface<Damage> {};

TEST_P(DamagedInput, EndsInTheFailureReportWithExitCodeOne) {
    GetParam().apply(Data("."));
    const auto before = Snapshot(Data("."));
    const ProcessResult run =
        RunTessarine({"vertices", "--layer", Data("parcels.shp"), "--output", Out("v.shp"), "--all-fields"}, dir_.Path());
    EXPECT_EQ(run.exitCode, 1) << run.out << run.err;
    EXPECT_NE(run.out.find("Failed"), std::string::npos) << run.out;
    EXPECT_NE((run.out + run.err).find("Cannot read"), std::string::npos) << run.out << run.err;
    EXPECT_EQ(Snapshot(Data(".")), before);
}

INSTANTIATE_TEST_SUITE_P(Shapefiles, DamagedInput,
                         ::testing::Values(Damage{"TruncatedShapes", CutShapes}, Damage{"TruncatedTable", CutTable},
                                           Damage{"GarbledRecord", GarbleRecord}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(DataSafety, ABareOutputNameIsAClassOfTheCurrentFolder) {
    const ProcessResult run =
        RunTessarine({"vertices", "--layer", Data("parcels.shp"), "--output", "bare_vertices.shp"}, dir_.Path());
    ASSERT_EQ(run.exitCode, 0) << run.out << run.err;
    EXPECT_FALSE(ReadFeatures(Out("bare_vertices.shp")).empty());
}

TEST_F(DataSafety, InputsOfOtherFormatsAndANewGeoPackage) {
    fs::copy_file(fs::path(TESS_SOURCE_DATA_DIR) / "src/trails.geojson", Out("trails.geojson"));
    const ProcessResult fromGeoJson =
        RunTessarine({"vertices", "--layer", "trails.geojson", "--output", "out.gpkg/trail_vertices", "--all-fields"},
                     dir_.Path());
    ASSERT_EQ(fromGeoJson.exitCode, 0) << fromGeoJson.out << fromGeoJson.err;
    EXPECT_FALSE(ReadFeatures(Out("out.gpkg/trail_vertices")).empty());
    // A GeoPackage alone names its only class.
    const ProcessResult fromContainer =
        RunTessarine({"vertices", "--layer", "out.gpkg", "--output", "again.shp"}, dir_.Path());
    EXPECT_EQ(fromContainer.exitCode, 2) << "points are not what Shapes to Vertices takes: " << fromContainer.err;
    EXPECT_EQ(fromContainer.err.find("holds several"), std::string::npos) << fromContainer.err;
}

TEST_F(DataSafety, TextOfAnyScriptAndHugeIntegersAreKeptOrSaidToChange) {
    std::ofstream(Out("places.geojson")) << R"({"type": "FeatureCollection", "features": [
 {"type": "Feature", "properties": {"名前": "Zürich Straße 東京", "ID": 9007199254740993},
  "geometry": {"type": "LineString", "coordinates": [[8.5, 47.3], [8.6, 47.4]]}}]})";
    const ProcessResult run = RunTessarine(
        {"vertices", "--layer", "places.geojson", "--output", "places_vertices.shp", "--all-fields"}, dir_.Path());
    ASSERT_EQ(run.exitCode, 0) << run.out << run.err;
    const std::vector<FeatureRecord> points = ReadFeatures(Out("places_vertices.shp"));
    ASSERT_EQ(points.size(), 2u);
    // The value keeps every character; the name takes the dBASE rules of every output, and the
    // run says how it was written.
    EXPECT_EQ(points[0].values.at("Z______"), "Zürich Straße 東京");
    EXPECT_NE(run.err.find("the field '名前' is written as 'z______'"), std::string::npos) << run.err;
    // The identifier cannot be held exactly by the output's double: the run says so, on stderr
    // and in its report.
    EXPECT_NE(run.err.find("'ID' beyond 2^53"), std::string::npos) << run.err;
    EXPECT_NE(run.out.find("Warnings:"), std::string::npos) << run.out;
}

TEST_F(DataSafety, ARunKilledInTheMiddleLeavesNothingHalfMadeAndRunsAgain) {
    constexpr int kFeatures = 2000;
    constexpr int kVerticesEach = 1000;
    MakeLongLines(dir_.Path().string(), kFeatures, kVerticesEach);
    const auto input = Snapshot(Out("long_lines.shp"));
    const std::vector<std::string> args{"vertices", "--layer", Out("long_lines.shp"), "--output", Out("v.shp"),
                                        "--progress", "plain", "--yes"};
    {
        Child child(args, dir_.Path());
        ASSERT_TRUE(child.WaitForErr("Extracting Vertices...")) << child.Finish().err;
        ::kill(child.Pid(), SIGKILL);
        EXPECT_EQ(child.Finish().exitCode, 128 + SIGKILL);
    }
    EXPECT_EQ(Snapshot(Out("long_lines.shp")), input);
    const ProcessResult again = RunTessarine(args, dir_.Path());
    ASSERT_EQ(again.exitCode, 0) << again.err;
    EXPECT_EQ(OpenClass(Out("v.shp"))->FeatureCount(nullptr), kFeatures * kVerticesEach);
    for (const auto& entry : fs::directory_iterator(dir_.Path()))
        EXPECT_EQ(entry.path().filename().string().find(".tess"), std::string::npos) << entry.path();
}

} // namespace
} // namespace tess::test
