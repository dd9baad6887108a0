// Workspaces: factories and paths, identity, bad input, edit sessions, and the
// feature datasets of file geodatabases.

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "DataTestSupport.h"
#include "platform/data/Cursor.h"
#include "platform/data/Dataset.h"
#include "platform/data/Field.h"
#include "platform/data/Fields.h"
#include "platform/data/QueryFilter.h"
#include "platform/data/Row.h"
#include "platform/data/Table.h"
#include "platform/data/WorkspaceFactories.h"
#include "platform/geometry/Geometries.h"
#include "platform/srs/SpatialReference.h"
#include "platform/srs/SpatialReferenceEnvironment.h"
#include "platform/system/Fault.h"

namespace tess::test {
namespace {

namespace fs = std::filesystem;

constexpr std::int32_t kUtm33 = 32633;
constexpr std::int32_t kWgs84 = 4326;

std::string Contents(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

std::map<std::string, std::string> FolderContents(const std::string& folder) {
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::directory_iterator(folder))
        if (entry.is_regular_file())
            files[entry.path().filename().string()] = Contents(entry.path().string());
    return files;
}

void ExpectFaultNaming(const std::function<void()>& call, const std::string& text) {
    try {
        call();
        ADD_FAILURE() << "no fault; expected one naming " << text;
    } catch (const Fault& f) {
        EXPECT_NE(f.Description().find(text), std::string::npos) << f.Description();
    }
}

void AddPoints(IFeatureClass& fc, int n) {
    auto cursor = fc.Insert(true);
    auto buffer = fc.CreateFeatureBuffer();
    for (int i = 0; i < n; ++i) {
        buffer->Shape(MakePoint(i, i));
        cursor->InsertFeature(*buffer);
    }
}

// ---- factories and paths

TEST(WorkspaceFactories, ChosenByPathAndTellingWorkspacesApart) {
    TempDir dir;
    auto shapes = MakeWorkspace(Format::Shapefile, dir);
    auto gdb = MakeWorkspace(Format::FileGDB, dir);
    auto gpkg = MakeWorkspace(Format::GeoPackage, dir);
    EXPECT_TRUE(ShapefileWorkspaceFactory().IsWorkspace(shapes->PathName()));
    EXPECT_FALSE(ShapefileWorkspaceFactory().IsWorkspace(gdb->PathName()));
    EXPECT_TRUE(FileGDBWorkspaceFactory().IsWorkspace(gdb->PathName()));
    EXPECT_TRUE(GeoPackageWorkspaceFactory().IsWorkspace(gpkg->PathName()));
    EXPECT_TRUE(FileGDBWorkspaceFactory().ContainsWorkspace(dir.Path()));
    EXPECT_TRUE(GeoPackageWorkspaceFactory().ContainsWorkspace(dir.Path()));
    EXPECT_FALSE(AccessWorkspaceFactory().ContainsWorkspace(dir.Path()));

    EXPECT_TRUE(std::dynamic_pointer_cast<FileGDBWorkspaceFactory>(WorkspaceFactoryForPath(gdb->PathName())));
    EXPECT_TRUE(std::dynamic_pointer_cast<GeoPackageWorkspaceFactory>(WorkspaceFactoryForPath(dir / "x.GPKG")));
    EXPECT_TRUE(std::dynamic_pointer_cast<AccessWorkspaceFactory>(WorkspaceFactoryForPath(dir / "x.mdb")));
    EXPECT_TRUE(std::dynamic_pointer_cast<ShapefileWorkspaceFactory>(WorkspaceFactoryForPath(dir.Path() + "\\")));
    EXPECT_FALSE(WorkspaceFactoryForPath(dir / "missing"));

    EXPECT_EQ(gdb->PathName(), dir / "data.gdb");
    EXPECT_EQ(std::dynamic_pointer_cast<IDataset>(gdb)->Category(), "File Geodatabase");
    EXPECT_EQ(std::dynamic_pointer_cast<IDataset>(shapes)->Category(), "Folder");
    EXPECT_EQ(gdb->Type(), esriLocalDatabaseWorkspace);
    EXPECT_EQ(shapes->Type(), esriFileSystemWorkspace);
    // The same path, however written, is the same workspace while it is in use.
    EXPECT_EQ(FileGDBWorkspaceFactory().OpenFromFile(dir.Path() + "//./data.gdb/", 0), gdb);
    EXPECT_THROW(FileGDBWorkspaceFactory().Create(dir.Path(), "data"), Fault);
}

TEST(WorkspaceFactories, DatasetPathsSplitIntoWorkspaceAndName) {
    const std::vector<std::tuple<std::string, std::string, std::string>> cases = {
        {"/d/roads.shp", "/d", "roads"},
        {"C:\\data\\roads.shp", "C:/data", "roads"},
        {"/d/a.gdb/transport/roads", "/d/a.gdb", "roads"},
        {"/d/a.gdb/roads", "/d/a.gdb", "roads"},
        {"/d/p.gpkg/parcels", "/d/p.gpkg", "parcels"},
        {"/d/old.mdb/fd/lines", "/d/old.mdb", "lines"},
    };
    for (const auto& [path, workspace, name] : cases) {
        std::string w, n;
        ASSERT_TRUE(SplitDatasetPath(path, w, n)) << path;
        EXPECT_EQ(w, workspace) << path;
        EXPECT_EQ(n, name) << path;
    }
    std::string w, n;
    EXPECT_FALSE(SplitDatasetPath("/d/a.gdb", w, n));
    EXPECT_FALSE(SplitDatasetPath("", w, n));
}

TEST(WorkspaceFactories, DatasetNamesOfEachKind) {
    TempDir dir;
    auto ws = MakeWorkspace(Format::FileGDB, dir);
    auto& fws = dynamic_cast<IFeatureWorkspace&>(*ws);
    CreateClass(*ws, "roads", esriGeometryPolyline, nullptr);
    auto fields = std::make_shared<Fields>();
    fields->AddField(MakeField("NOTE", esriFieldTypeString, 8));
    fws.CreateTable("notes", fields, nullptr, nullptr, "");
    fws.CreateFeatureDataset("transport", nullptr);
    EXPECT_EQ(ws->DatasetNames(esriDTFeatureClass), std::vector<std::string>{"roads"});
    EXPECT_EQ(ws->DatasetNames(esriDTTable), std::vector<std::string>{"notes"});
    EXPECT_EQ(ws->DatasetNames(esriDTFeatureDataset), std::vector<std::string>{"transport"});
}

// ---- bad input

TEST(WorkspaceFaults, MissingAndWrongPathsAreFaultsNamingThePath) {
    TempDir dir;
    const std::string missing = dir / "nowhere";
    ExpectFaultNaming([&] { ShapefileWorkspaceFactory().OpenFromFile(missing, 0); }, missing);
    ExpectFaultNaming([&] { FileGDBWorkspaceFactory().OpenFromFile(missing + ".gdb", 0); }, missing);
    ExpectFaultNaming([&] { GeoPackageWorkspaceFactory().OpenFromFile(missing + ".gpkg", 0); }, missing);
    ExpectFaultNaming([&] { FileGDBWorkspaceFactory().OpenFromFile(dir.Path(), 0); }, dir.Path());
    auto ws = MakeWorkspace(Format::Shapefile, dir);
    ExpectFaultNaming([&] { dynamic_cast<IFeatureWorkspace&>(*ws).OpenFeatureClass("absent"); }, "absent");
}

TEST(WorkspaceFaults, CorruptDataIsAFaultAndNotACrash) {
    TempDir dir;
    auto ws = MakeWorkspace(Format::Shapefile, dir);
    const std::string garbage(512, '\x5a');
    for (const char* ext : {".shp", ".shx", ".dbf"})
        std::ofstream(ws->PathName() + "/broken" + ext, std::ios::binary) << garbage;
    ExpectFaultNaming([&] { dynamic_cast<IFeatureWorkspace&>(*ws).OpenFeatureClass("broken"); }, "broken");
    std::ofstream(ws->PathName() + "/badprj.prj") << "this is not a coordinate system";
    CreateClass(*ws, "good", esriGeometryPoint, nullptr);
    fs::copy_file(ws->PathName() + "/badprj.prj", ws->PathName() + "/good.prj");
    auto reopened = ShapefileWorkspaceFactory().Create(dir.Path(), "other");
    (void)reopened;

    const std::string gpkg = dir / "broken.gpkg";
    std::ofstream(gpkg, std::ios::binary) << garbage;
    ExpectFaultNaming([&] { GeoPackageWorkspaceFactory().OpenFromFile(gpkg, 0); }, gpkg);
    const std::string gdb = dir / "broken.gdb";
    fs::create_directory(gdb);
    std::ofstream(gdb + "/a00000001.gdbtable", std::ios::binary) << garbage;
    ExpectFaultNaming([&] { FileGDBWorkspaceFactory().OpenFromFile(gdb, 0); }, gdb);
    // The corrupt files are left as they were.
    EXPECT_EQ(Contents(ws->PathName() + "/broken.shp"), garbage);
}

TEST(WorkspaceFaults, CorruptPrjIsAFaultOnOpening) {
    TempDir dir;
    {
        auto ws = MakeWorkspace(Format::Shapefile, dir);
        CreateClass(*ws, "pts", esriGeometryPoint, nullptr);
    }
    std::ofstream(dir / "shapes/pts.prj") << "GEOGCS[broken";
    auto ws = ShapefileWorkspaceFactory().OpenFromFile(dir / "shapes", 0);
    ExpectFaultNaming([&] { dynamic_cast<IFeatureWorkspace&>(*ws).OpenFeatureClass("pts"); }, "pts.prj");
}

TEST(WorkspaceFaults, PersonalGeodatabasesAreReadOnly) {
    TempDir dir;
    ExpectFaultNaming([&] { AccessWorkspaceFactory().Create(dir.Path(), "new.mdb"); }, "read-only on this platform");
    const std::string mdb = dir / "fake.mdb";
    std::ofstream(mdb, std::ios::binary) << std::string(256, '\0');
    ExpectFaultNaming([&] { AccessWorkspaceFactory().OpenFromFile(mdb, 0); }, mdb);
    EXPECT_FALSE(AccessWorkspaceFactory().CanWrite());
}

//! Makes a folder unwritable for the length of a scope: by permissions, or for the superuser,
//! whom permissions do not bind, by the immutable attribute.
class ReadOnlyFolder {
public:
    explicit ReadOnlyFolder(const std::string& path) : path_(path) {
        if (::geteuid() == 0) {
            immutable_ = std::system(("chattr +i '" + path_ + "' 2>/dev/null").c_str()) == 0;
            ok_ = immutable_;
        } else {
            fs::permissions(path_, fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write,
                            fs::perm_options::remove);
            ok_ = true;
        }
    }
    ~ReadOnlyFolder() {
        if (immutable_)
            (void)std::system(("chattr -i '" + path_ + "'").c_str());
        else
            fs::permissions(path_, fs::perms::owner_write, fs::perm_options::add);
    }
    bool Ok() const { return ok_; }

private:
    std::string path_;
    bool immutable_ = false;
    bool ok_ = false;
};

TEST(WorkspaceFaults, ReadOnlyFolderRefusesChangesAndKeepsTheData) {
    TempDir dir;
    {
        auto ws = MakeWorkspace(Format::Shapefile, dir);
        auto fc = CreateClass(*ws, "pts", esriGeometryPoint, nullptr);
        AddPoints(*fc, 3);
    }
    const std::string folder = dir / "shapes";
    const auto before = FolderContents(folder);
    ReadOnlyFolder readOnlyFolder(folder);
    if (!readOnlyFolder.Ok())
        GTEST_SKIP() << "this file system cannot make a folder read-only for the superuser";
    auto ws = ShapefileWorkspaceFactory().OpenFromFile(folder, 0);
    auto pts = dynamic_cast<IFeatureWorkspace&>(*ws).OpenFeatureClass("pts");
    EXPECT_EQ(pts->FeatureCount(nullptr), 3);
    ExpectFaultNaming([&] { pts->AddField(MakeField("NEW", esriFieldTypeInteger)); }, folder);
    ExpectFaultNaming([&] { CreateClass(*ws, "more", esriGeometryPoint, nullptr); }, folder);
    ExpectFaultNaming([&] { pts->Update(nullptr, true); }, folder);
    EXPECT_EQ(FolderContents(folder), before);
}

// ---- edit sessions

class EditSessionTest : public ::testing::TestWithParam<Format> {};

TEST_P(EditSessionTest, ChangesWaitForStopEditingAndCanBeDropped) {
    TempDir dir;
    auto ws = MakeWorkspace(GetParam(), dir);
    auto fc = CreateClass(*ws, "pts", esriGeometryPoint, nullptr, {MakeField("VAL", esriFieldTypeInteger)});
    AddPoints(*fc, 4);
    auto edit = std::dynamic_pointer_cast<IWorkspaceEdit>(ws);
    ASSERT_TRUE(edit);
    EXPECT_FALSE(edit->IsBeingEdited());
    EXPECT_THROW(edit->StartEditOperation(), Fault);

    auto rewrite = [&](int value) {
        auto cursor = fc->Update(nullptr, true);
        while (auto f = cursor->NextFeature()) {
            f->Value(fc->FindField("VAL"), value);
            cursor->UpdateFeature(*f);
        }
    };
    auto valueCount = [&](int value) {
        auto filter = std::make_shared<QueryFilter>();
        filter->WhereClause("VAL = " + std::to_string(value));
        return fc->FeatureCount(filter);
    };

    edit->StartEditing(false);
    EXPECT_TRUE(edit->IsBeingEdited());
    edit->StartEditOperation();
    rewrite(7);
    edit->StopEditOperation();
    EXPECT_TRUE(edit->HasEdits());
    EXPECT_EQ(valueCount(7), 4); // the session sees its own changes
    edit->StopEditing(false);
    EXPECT_FALSE(edit->IsBeingEdited());
    EXPECT_EQ(valueCount(7), 0);

    edit->StartEditing(true);
    rewrite(9);
    AddPoints(*fc, 1);
    edit->StopEditing(true);
    EXPECT_EQ(valueCount(9), 4);
    EXPECT_EQ(fc->FeatureCount(nullptr), 5);
    EXPECT_THROW(edit->StopEditing(true), Fault);
}

INSTANTIATE_TEST_SUITE_P(Formats, EditSessionTest,
                         ::testing::Values(Format::Shapefile, Format::FileGDB, Format::GeoPackage),
                         [](const auto& info) { return FormatName(info.param); });

TEST(EditSessions, ShapefileOriginalsStayUntouchedUntilSaved) {
    TempDir dir;
    auto ws = MakeWorkspace(Format::Shapefile, dir);
    auto fc = CreateClass(*ws, "pts", esriGeometryPoint, nullptr, {MakeField("VAL", esriFieldTypeInteger)});
    AddPoints(*fc, 4);
    const auto before = FolderContents(ws->PathName());
    auto edit = std::dynamic_pointer_cast<IWorkspaceEdit>(ws);
    edit->StartEditing(false);
    {
        auto cursor = fc->Update(nullptr, false);
        while (auto f = cursor->NextFeature()) {
            f->Value(fc->FindField("VAL"), 3);
            cursor->UpdateFeature(*f);
        }
    }
    fc->AddField(MakeField("EXTRA", esriFieldTypeDouble));
    EXPECT_EQ(FolderContents(ws->PathName()), before);
    edit->StopEditing(true);
    EXPECT_NE(FolderContents(ws->PathName()), before);
    EXPECT_FALSE(fs::exists(ws->PathName() + "/.tess-staging"));
    EXPECT_GE(fc->FindField("EXTRA"), 0);
}

// ---- file geodatabases

TEST(FileGeodatabase, ChangingOneClassLeavesTheFilesOfOthersAsTheyWere) {
    TempDir dir;
    auto ws = MakeWorkspace(Format::FileGDB, dir);
    auto a = CreateClass(*ws, "first", esriGeometryPoint, nullptr, {MakeField("VAL", esriFieldTypeInteger)});
    auto b = CreateClass(*ws, "second", esriGeometryPoint, nullptr);
    AddPoints(*a, 10);
    AddPoints(*b, 10);
    auto before = FolderContents(ws->PathName());
    {
        auto cursor = a->Update(nullptr, true);
        while (auto f = cursor->NextFeature()) {
            f->Value(a->FindField("VAL"), 5);
            cursor->UpdateFeature(*f);
        }
    }
    a->AddField(MakeField("MORE", esriFieldTypeDouble));
    auto after = FolderContents(ws->PathName());
    int changed = 0;
    for (const auto& [name, content] : before) {
        // Table files of the second class are a0000000b.* (the class made second).
        if (name.rfind("a0000000b.", 0) == 0) {
            EXPECT_EQ(after[name], content) << name;
        }
        changed += after[name] != content;
    }
    EXPECT_GT(changed, 0);
    EXPECT_EQ(b->FeatureCount(nullptr), 10);
}

// Regression: the engine's writer put a row that grew by four bytes into the freed area of a
// row that had grown before it, four bytes too small, overwriting the next row.
TEST(FileGeodatabase, RowsThatGrowDoNotOverwriteTheirNeighbours) {
    TempDir dir;
    auto ws = MakeWorkspace(Format::FileGDB, dir);
    auto fc = CreateClass(*ws, "grow", esriGeometryPoint, nullptr,
                          {MakeField("VAL", esriFieldTypeInteger), MakeField("KEEP", esriFieldTypeInteger)});
    {
        auto cursor = fc->Insert(true);
        auto buffer = fc->CreateFeatureBuffer();
        for (int i = 0; i < 50; ++i) {
            buffer->Shape(MakePoint(i, i));
            buffer->Value(fc->FindField("KEEP"), 100 + i);
            cursor->InsertFeature(*buffer);
        }
    }
    for (int pass = 0; pass < 2; ++pass) {
        auto cursor = fc->Update(nullptr, true);
        while (auto f = cursor->NextFeature()) {
            f->Value(fc->FindField("VAL"), 7 + pass);
            cursor->UpdateFeature(*f);
        }
    }
    auto cursor = fc->Search(nullptr, true);
    int n = 0;
    while (auto f = cursor->NextFeature()) {
        EXPECT_EQ(f->Value(fc->FindField("VAL")).ToLong(), 8);
        EXPECT_EQ(f->Value(fc->FindField("KEEP")).ToLong(), 100 + n);
        EXPECT_EQ(std::dynamic_pointer_cast<IPoint>(f->Shape())->X(), n);
        ++n;
    }
    EXPECT_EQ(n, 50);
}

TEST(FileGeodatabase, FeatureDatasetsHoldClassesInTheirReference) {
    TempDir dir;
    auto ws = MakeWorkspace(Format::FileGDB, dir);
    auto& fws = dynamic_cast<IFeatureWorkspace&>(*ws);
    SpatialReferenceEnvironment env;
    auto utm = env.CreateProjectedCoordinateSystem(kUtm33);
    auto fd = fws.CreateFeatureDataset("transport", utm);
    auto ds = std::dynamic_pointer_cast<IDataset>(fd);
    ASSERT_TRUE(ds);
    EXPECT_EQ(ds->Category(), "File Geodatabase Feature Dataset");
    EXPECT_EQ(ds->FullName(), ws->PathName() + "/transport");
    EXPECT_EQ(std::dynamic_pointer_cast<IGeoDataset>(fd)->SpatialReference()->Name(), "WGS_1984_UTM_Zone_33N");
    EXPECT_TRUE(fd->ClassNames().empty());

    // The class takes the dataset's reference whatever its fields say.
    auto roads = fd->CreateFeatureClass("roads", ClassFields(esriGeometryPolyline, env.CreateGeographicCoordinateSystem(kWgs84)),
                                        nullptr, nullptr, esriFTSimple, "Shape", "");
    EXPECT_EQ(std::dynamic_pointer_cast<IGeoDataset>(roads)->SpatialReference()->Name(), "WGS_1984_UTM_Zone_33N");
    EXPECT_EQ(fd->ClassNames(), std::vector<std::string>{"roads"});
    ASSERT_TRUE(roads->FeatureDataset());
    EXPECT_EQ(std::dynamic_pointer_cast<IDataset>(roads->FeatureDataset())->Name(), "transport");
    EXPECT_EQ(std::dynamic_pointer_cast<IDataset>(roads)->FullName(), ws->PathName() + "/transport/roads");
    EXPECT_EQ(fws.OpenFeatureClass("transport/roads"), roads);
    EXPECT_THROW(fws.CreateFeatureDataset("transport", utm), Fault);
    EXPECT_THROW(fws.OpenFeatureDataset("rail"), Fault);

    auto shapes = MakeWorkspace(Format::Shapefile, dir);
    EXPECT_THROW(dynamic_cast<IFeatureWorkspace&>(*shapes).CreateFeatureDataset("fd", utm), Fault);
}

TEST(FileGeodatabase, ObjectIdAndShapeNamesComeFromTheFields) {
    TempDir dir;
    auto ws = MakeWorkspace(Format::FileGDB, dir);
    auto fields = ClassFields(esriGeometryPoint, nullptr);
    std::dynamic_pointer_cast<IFieldEdit>(fields->Field(0))->Name("Object_ID");
    auto fc = dynamic_cast<IFeatureWorkspace&>(*ws).CreateFeatureClass("named", fields, nullptr, nullptr,
                                                                        esriFTSimple, "Shape", "");
    EXPECT_EQ(fc->OIDFieldName(), "Object_ID");
    EXPECT_EQ(fc->ShapeFieldName(), "Shape");
}

} // namespace
} // namespace tess::test
