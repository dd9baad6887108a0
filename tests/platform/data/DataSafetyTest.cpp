// What keeps users' data whole: a dataset in use cannot be deleted or
// replaced, a read the engine could not finish is a fault with the engine's
// words, and its warnings are noted rather than dropped.

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "DataTestSupport.h"
#include "platform/data/Cursor.h"
#include "platform/data/DataNotes.h"
#include "platform/data/DatasetUse.h"
#include "platform/data/Dataset.h"
#include "platform/data/Row.h"
#include "platform/data/Table.h"
#include "platform/data/Workspace.h"
#include "platform/data/WorkspaceFactories.h"
#include "platform/geometry/Geometries.h"
#include "platform/srs/SpatialReference.h"
#include "platform/srs/SpatialReferenceEnvironment.h"
#include "platform/system/Fault.h"

namespace tess::test {
namespace {

namespace fs = std::filesystem;

constexpr std::int32_t kWgs84 = 4326;
constexpr std::size_t kShapefileHeader = 100;

std::string Contents(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

//! Every file under path (or the file itself), by relative name.
std::map<std::string, std::string> Snapshot(const std::string& path) {
    std::map<std::string, std::string> files;
    if (fs::is_regular_file(path)) {
        files[path] = Contents(path);
        return files;
    }
    for (const auto& entry : fs::recursive_directory_iterator(path))
        if (entry.is_regular_file())
            files[fs::relative(entry.path(), path).string()] = Contents(entry.path().string());
    return files;
}

std::string FaultText(const std::function<void()>& call) {
    try {
        call();
    } catch (const Fault& f) {
        return f.Description();
    }
    return "(no fault)";
}

IFeatureWorkspace& Features(IWorkspace& ws) { return dynamic_cast<IFeatureWorkspace&>(ws); }

std::shared_ptr<IFeatureClass> SquaresClass(IWorkspace& ws, const std::string& name, int count) {
    auto sr = SpatialReferenceEnvironment().CreateGeographicCoordinateSystem(kWgs84);
    auto fc = CreateClass(ws, name, esriGeometryPolygon, sr);
    auto cursor = fc->Insert(true);
    auto buffer = fc->CreateFeatureBuffer();
    for (int i = 0; i < count; ++i) {
        buffer->Shape(MakePolygon({Square(i, 0.0, 0.5, true)}));
        cursor->InsertFeature(*buffer);
    }
    cursor->Flush();
    return fc;
}

//! Reads every feature with its shape; a Fault when a read fails.
int ReadAll(IFeatureClass& fc) {
    auto cursor = fc.Search(nullptr, true);
    int n = 0;
    while (auto feature = cursor->NextFeature()) {
        (void)feature->Shape();
        ++n;
    }
    return n;
}

// ---- datasets in use

class DatasetHoldTest : public ::testing::TestWithParam<Format> {};

TEST_P(DatasetHoldTest, AHeldClassIsNeitherDeletedNorChangedAndIsFreeOnceLetGo) {
    TempDir dir;
    auto ws = MakeWorkspace(GetParam(), dir);
    const std::string where = ws->PathName();
    auto held = SquaresClass(*ws, "parcels", 3);
    DatasetHold hold = HoldDataset(dynamic_cast<IDataset&>(*held), [] { return "the layer 'Parcels' of the map"; });
    ASSERT_TRUE(hold);
    held.reset();
    const auto before = Snapshot(where);

    // Reached again by another spelling of its place, as a second run would.
    const std::string spelled = where + "/../" + fs::path(where).filename().string() + "/";
    auto again = std::dynamic_pointer_cast<IDataset>(
        Features(*WorkspaceFactoryForPath(spelled)->OpenFromFile(spelled, 0)).OpenTable("PARCELS"));
    ASSERT_TRUE(again);
    const std::string refusal = FaultText([&] { again->Delete(); });
    EXPECT_NE(refusal.find("parcels"), std::string::npos) << refusal;
    EXPECT_NE(refusal.find("in use by the layer 'Parcels' of the map"), std::string::npos) << refusal;
    again.reset();
    EXPECT_EQ(Snapshot(where), before);

    hold.Release();
    auto table = std::dynamic_pointer_cast<IDataset>(Features(*ws).OpenTable("parcels"));
    table->Delete();
    EXPECT_NE(FaultText([&] { Features(*ws).OpenTable("parcels"); }).find("was not found"), std::string::npos);
}

TEST_P(DatasetHoldTest, AnOpenCursorHoldsItsClassUntilItGoes) {
    TempDir dir;
    auto ws = MakeWorkspace(GetParam(), dir);
    auto fc = SquaresClass(*ws, "roads", 2);
    auto cursor = fc->Search(nullptr, true);
    auto dataset = std::dynamic_pointer_cast<IDataset>(fc);
    EXPECT_EQ(DatasetUsers(*dataset), std::vector<std::string>{"an open cursor"});
    EXPECT_NE(FaultText([&] { dataset->Delete(); }).find("in use by an open cursor"), std::string::npos);
    EXPECT_EQ(ReadAll(*fc), 2);
    cursor.reset();
    EXPECT_TRUE(DatasetUsers(*dataset).empty());
    EXPECT_EQ(FaultText([&] { dataset->Delete(); }), "(no fault)");
}

INSTANTIATE_TEST_SUITE_P(EveryFormat, DatasetHoldTest,
                         ::testing::Values(Format::Shapefile, Format::FileGDB, Format::GeoPackage),
                         [](const auto& info) { return FormatName(info.param); });

TEST(DatasetHolds, AClassInAFeatureDatasetAndAFolderReachedThroughALink) {
    TempDir dir;
    auto gdb = MakeWorkspace(Format::FileGDB, dir);
    auto sr = SpatialReferenceEnvironment().CreateGeographicCoordinateSystem(kWgs84);
    auto group = Features(*gdb).CreateFeatureDataset("network", sr);
    auto inside = group->CreateFeatureClass("pipes", ClassFields(esriGeometryPolyline, sr), nullptr, nullptr,
                                            esriFTSimple, "Shape", "");
    DatasetHold hold = HoldDataset(dynamic_cast<IDataset&>(*inside), [] { return "the layer 'pipes' of the map"; });
    const auto before = Snapshot(gdb->PathName());
    auto again = std::dynamic_pointer_cast<IDataset>(Features(*gdb).OpenFeatureClass("pipes"));
    const std::string refusal = FaultText([&] { again->Delete(); });
    EXPECT_NE(refusal.find("network/pipes"), std::string::npos) << refusal;
    EXPECT_EQ(Snapshot(gdb->PathName()), before);

    auto folder = MakeWorkspace(Format::Shapefile, dir);
    auto lakes = SquaresClass(*folder, "lakes", 1);
    DatasetHold lakesHold = HoldDataset(dynamic_cast<IDataset&>(*lakes), [] { return "the layer 'lakes' of the map"; });
    fs::create_directory_symlink(folder->PathName(), dir / "link");
    auto linked = std::dynamic_pointer_cast<IDataset>(
        Features(*ShapefileWorkspaceFactory().OpenFromFile(dir / "link", 0)).OpenFeatureClass("lakes"));
    EXPECT_NE(FaultText([&] { linked->Delete(); }).find("in use"), std::string::npos);
    EXPECT_TRUE(fs::exists(folder->PathName() + "/lakes.shp"));
}

// ---- what the engine says while reading

class DamagedShapefile : public ::testing::Test {
protected:
    void SetUp() override {
        ws_ = MakeWorkspace(Format::Shapefile, dir_);
        SquaresClass(*ws_, "parcels", 40);
        ws_.reset();
        shp_ = dir_ / "shapes/parcels.shp";
        dbf_ = dir_ / "shapes/parcels.dbf";
    }
    std::shared_ptr<IFeatureClass> Open() {
        return Features(*ShapefileWorkspaceFactory().OpenFromFile(dir_ / "shapes", 0)).OpenFeatureClass("parcels");
    }
    static void Cut(const std::string& path, double keep) {
        fs::resize_file(path, static_cast<std::uintmax_t>(static_cast<double>(fs::file_size(path)) * keep));
    }

    TempDir dir_;
    std::shared_ptr<IWorkspace> ws_;
    std::string shp_;
    std::string dbf_;
};

TEST_F(DamagedShapefile, ATruncatedShapeFileFailsTheReadWithTheEnginesWords) {
    Cut(shp_, 0.5);
    const std::string bytes = Contents(shp_);
    auto fc = Open();
    const std::string fault = FaultText([&] { ReadAll(*fc); });
    EXPECT_NE(fault.find("parcels"), std::string::npos) << fault;
    EXPECT_NE(fault.find("fread"), std::string::npos) << fault;
    EXPECT_THROW(ReadAll(*fc), DataFault);
    EXPECT_EQ(Contents(shp_), bytes);
}

TEST_F(DamagedShapefile, ATruncatedTableFailsTheRead) {
    Cut(dbf_, 0.5);
    auto fc = Open();
    const std::string fault = FaultText([&] { ReadAll(*fc); });
    EXPECT_NE(fault.find("Cannot read"), std::string::npos) << fault;
    EXPECT_NE(fault.find("DBF"), std::string::npos) << fault;
}

TEST_F(DamagedShapefile, AGarbledRecordFailsTheRead) {
    // The vertex count of the third record claims far more than the record holds.
    std::string bytes = Contents(shp_);
    const std::size_t recordSize = (bytes.size() - kShapefileHeader) / 40;
    const std::size_t pointCount = kShapefileHeader + 2 * recordSize + 8 + 4 + 32 + 4;
    const std::int32_t huge = 0x0fffffff;
    std::memcpy(&bytes[pointCount], &huge, sizeof huge);
    std::ofstream(shp_, std::ios::binary | std::ios::trunc) << bytes;
    auto fc = Open();
    const std::string fault = FaultText([&] { ReadAll(*fc); });
    EXPECT_NE(fault.find("record 2"), std::string::npos) << fault;
}

TEST_F(DamagedShapefile, WarningsThatLetTheReadGoOnAreNotedAndCounted) {
    // The last vertex of the first ring no longer meets the first: an open ring, which the engine
    // reads with a warning. Each square has 5 vertices in one part.
    std::string bytes = Contents(shp_);
    const std::size_t lastX = kShapefileHeader + 8 + 4 + 32 + 4 + 4 + 4 + 16 * 4;
    const double moved = 123.25;
    std::memcpy(&bytes[lastX], &moved, sizeof moved);
    std::ofstream(shp_, std::ios::binary | std::ios::trunc) << bytes;
    ClearDataNotes();
    auto fc = Open();
    EXPECT_EQ(ReadAll(*fc), 40);
    const std::vector<DataNote> notes = DataNotes();
    ASSERT_EQ(notes.size(), 1u);
    EXPECT_NE(notes[0].text.find("closed ring"), std::string::npos) << notes[0].text;
    EXPECT_NE(notes[0].dataset.find("parcels"), std::string::npos);
    EXPECT_EQ(notes[0].count, 1);
    EXPECT_EQ(ReadAll(*fc), 40);
    EXPECT_EQ(DataNotes()[0].count, 2);
    ClearDataNotes();
}

// ---- numbers in a class's definition

TEST(DatasetDefinitions, ToleranceAndOriginOfAGeodatabaseClassReadBackExactly) {
    TempDir dir;
    auto gdb = MakeWorkspace(Format::FileGDB, dir);
    auto sr = SpatialReferenceEnvironment().CreateGeographicCoordinateSystem(kWgs84);
    const double tolerance = sr->XYTolerance();
    ASSERT_LT(tolerance, 1e-6) << "a geographic tolerance is a tiny angle";
    CreateClass(*gdb, "wells", esriGeometryPoint, sr);
    gdb.reset();
    // The class's definition in the geodatabase's catalog carries the tolerance as text.
    std::string catalog;
    for (const auto& entry : fs::directory_iterator(dir / "data.gdb"))
        catalog += Contents(entry.path().string());
    const std::size_t at = catalog.find("<XYTolerance>");
    ASSERT_NE(at, std::string::npos);
    const std::size_t begin = at + std::strlen("<XYTolerance>");
    const double stored = std::stod(catalog.substr(begin, catalog.find('<', begin) - begin));
    EXPECT_EQ(stored, tolerance);
}

} // namespace
} // namespace tess::test
