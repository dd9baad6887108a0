// Data from other programs: text of any script in shapefiles, and the vector
// formats read as input only, named as users write them.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "DataTestSupport.h"
#include "platform/data/Cursor.h"
#include "platform/data/DataNotes.h"
#include "platform/data/Dataset.h"
#include "platform/data/Field.h"
#include "platform/data/Fields.h"
#include "platform/data/Row.h"
#include "platform/data/Table.h"
#include "platform/data/Workspace.h"
#include "platform/data/WorkspaceFactories.h"
#include "platform/geometry/Geometries.h"
#include "platform/system/Fault.h"
#include "platform/system/Variant.h"

namespace tess::test {
namespace {

namespace fs = std::filesystem;

std::string Contents(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

std::string FaultText(const std::function<void()>& call) {
    try {
        call();
    } catch (const Fault& f) {
        return f.Description();
    }
    return "(no fault)";
}

bool ValidUtf8(const std::string& text) {
    for (std::size_t i = 0; i < text.size();) {
        const auto lead = static_cast<unsigned char>(text[i]);
        const std::size_t length = lead < 0x80 ? 1 : (lead >> 5) == 0x6 ? 2 : (lead >> 4) == 0xE ? 3 : (lead >> 3) == 0x1E ? 4 : 0;
        if (length == 0 || i + length > text.size())
            return false;
        for (std::size_t k = 1; k < length; ++k)
            if ((static_cast<unsigned char>(text[i + k]) & 0xC0) != 0x80)
                return false;
        i += length;
    }
    return true;
}

TEST(ShapefileText, AnyScriptSurvivesInValuesAndFieldNames) {
    TempDir dir;
    auto ws = MakeWorkspace(Format::Shapefile, dir);
    const std::string street = "Zürich Straße 東京 🌍";
    auto fc = CreateClass(*ws, "places", esriGeometryPoint, nullptr,
                          {MakeField("名前", esriFieldTypeString, 80), MakeField("Straßenname_lang", esriFieldTypeString, 20)});
    {
        auto cursor = fc->Insert(true);
        auto buffer = fc->CreateFeatureBuffer();
        buffer->Shape(MakePoint(8.5, 47.4));
        buffer->Value(fc->FindField("名前"), Variant(street));
        cursor->InsertFeature(*buffer);
        cursor->Flush();
    }
    fc.reset();
    EXPECT_EQ(Contents(dir / "shapes/places.cpg").substr(0, 5), "UTF-8");

    auto again = dynamic_cast<IFeatureWorkspace&>(*ShapefileWorkspaceFactory().OpenFromFile(dir / "shapes", 0))
                     .OpenFeatureClass("places");
    const std::int32_t name = again->FindField("名前");
    ASSERT_GE(name, 0) << "a name of 6 bytes fits a dBASE table as it is";
    auto feature = again->Search(nullptr, false)->NextFeature();
    ASSERT_TRUE(feature);
    EXPECT_EQ(feature->Value(name).ToString(), street);
    // A long name is cut to 10 bytes, never inside a character.
    auto fields = again->Fields();
    bool found = false;
    for (std::int32_t i = 0; i < fields->FieldCount(); ++i) {
        const std::string n = fields->Field(i)->Name();
        EXPECT_TRUE(ValidUtf8(n)) << n;
        EXPECT_LE(n.size(), 10u) << n;
        found = found || n.rfind("Stra", 0) == 0;
    }
    EXPECT_TRUE(found);
}

// Lines and multi-lines mixed, as such files often have them: one polyline class.
const char* const kRoads = R"({"type": "FeatureCollection", "features": [
 {"type": "Feature", "properties": {"name": "Ring road", "lanes": 4},
  "geometry": {"type": "MultiLineString", "coordinates": [[[10, 45], [11, 45.5]], [[11, 45.5], [12, 45]]]}},
 {"type": "Feature", "properties": {"name": "Via Ünterführung", "lanes": 2},
  "geometry": {"type": "LineString", "coordinates": [[10, 46], [10.5, 46.5]]}}]})";

TEST(VectorFiles, AreReadAsInputWithTheirFormatInTheCategoryAndRefuseChanges) {
    TempDir dir;
    const std::string file = dir / "roads.geojson";
    std::ofstream(file) << kRoads;
    auto factory = WorkspaceFactoryForPath(file);
    ASSERT_TRUE(std::dynamic_pointer_cast<VectorFileWorkspaceFactory>(factory));
    EXPECT_FALSE(factory->CanWrite());
    EXPECT_TRUE(factory->ContainsWorkspace(dir.Path()));

    auto roads = OpenFeatureClassAtPath(file);
    ASSERT_TRUE(roads);
    EXPECT_EQ(roads->ShapeType(), esriGeometryPolyline);
    EXPECT_EQ(roads->FeatureCount(nullptr), 2);
    EXPECT_EQ(dynamic_cast<IDataset&>(*roads).Category(), "GeoJSON Feature Class");
    auto cursor = roads->Search(nullptr, false);
    cursor->NextFeature();
    EXPECT_EQ(cursor->NextFeature()->Value(roads->FindField("name")).ToString(), "Via Ünterführung");

    // Named with its layer, as in a container.
    EXPECT_EQ(OpenFeatureClassAtPath(file + "/roads")->FeatureCount(nullptr), 2);
    const std::string before = Contents(file);
    auto ws = dynamic_cast<IDataset&>(*roads).Workspace();
    EXPECT_NE(FaultText([&] { CreateClass(*ws, "more", esriGeometryPoint, nullptr); }).find("read-only"),
              std::string::npos);
    EXPECT_NE(FaultText([&] { roads->Update(nullptr, true); }), "(no fault)");
    EXPECT_NE(FaultText([&] { dynamic_cast<IDataset&>(*roads).Delete(); }), "(no fault)");
    EXPECT_EQ(Contents(file), before);
}

TEST(VectorFiles, MixedKindsGiveNoShapeTypeAndHugeIntegersAreNoted) {
    TempDir dir;
    const std::string mixed = dir / "mixed.geojson";
    std::ofstream(mixed) << R"({"type": "FeatureCollection", "features": [
 {"type": "Feature", "properties": {}, "geometry": {"type": "Point", "coordinates": [1, 2]}},
 {"type": "Feature", "properties": {}, "geometry": {"type": "LineString", "coordinates": [[1, 2], [3, 4]]}}]})";
    EXPECT_EQ(OpenFeatureClassAtPath(mixed)->ShapeType(), esriGeometryNull);

    const std::string ids = dir / "ids.geojson";
    std::ofstream(ids) << R"({"type": "FeatureCollection", "features": [
 {"type": "Feature", "properties": {"ID": 9007199254740993}, "geometry": {"type": "Point", "coordinates": [1, 2]}},
 {"type": "Feature", "properties": {"ID": 12}, "geometry": {"type": "Point", "coordinates": [1, 2]}}]})";
    ClearDataNotes();
    auto points = OpenFeatureClassAtPath(ids);
    auto cursor = points->Search(nullptr, false);
    EXPECT_EQ(cursor->NextFeature()->Value(points->FindField("ID")).ToDouble(), 9007199254740992.0);
    EXPECT_EQ(cursor->NextFeature()->Value(points->FindField("ID")).ToDouble(), 12.0);
    const std::vector<DataNote> notes = DataNotes();
    ASSERT_EQ(notes.size(), 1u);
    EXPECT_NE(notes[0].text.find("'ID' beyond 2^53"), std::string::npos) << notes[0].text;
    EXPECT_EQ(notes[0].count, 1);
    ClearDataNotes();
}

TEST(DatasetPaths, AContainerAloneIsItsOnlyClassOrAListToChooseFrom) {
    TempDir dir;
    auto one = GeoPackageWorkspaceFactory().Create(dir.Path(), "one.gpkg");
    CreateClass(*one, "wells", esriGeometryPoint, nullptr);
    EXPECT_EQ(dynamic_cast<IDataset&>(*OpenFeatureClassAtPath(dir / "one.gpkg")).Name(), "wells");

    auto two = GeoPackageWorkspaceFactory().Create(dir.Path(), "two.gpkg");
    CreateClass(*two, "wells", esriGeometryPoint, nullptr);
    CreateClass(*two, "roads", esriGeometryPolyline, nullptr);
    const std::string choice = FaultText([&] { OpenFeatureClassAtPath(dir / "two.gpkg"); });
    EXPECT_NE(choice.find("wells"), std::string::npos) << choice;
    EXPECT_NE(choice.find("roads"), std::string::npos) << choice;
    EXPECT_NE(choice.find("two.gpkg/NAME"), std::string::npos) << choice;

    EXPECT_NE(FaultText([&] { OpenFeatureClassAtPath(dir / "absent.gpkg"); }).find("does not exist"),
              std::string::npos);
    std::ofstream(dir / "notes.txt") << "just words\n";
    EXPECT_NE(FaultText([&] { OpenFeatureClassAtPath(dir / "notes.txt"); }), "(no fault)");
}

} // namespace
} // namespace tess::test
