// Output datasets: creation in every kind of storage with the user's answers
// scripted, and the naming helpers at the edges where names break.

#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "platform/carto/FeatureLayer.h"
#include "platform/carto/GroupLayer.h"
#include "platform/carto/Map.h"
#include "platform/carto/StandaloneTable.h"
#include "platform/data/Dataset.h"
#include "platform/data/Field.h"
#include "platform/data/Fields.h"
#include "platform/data/Table.h"
#include "platform/data/Workspace.h"
#include "platform/data/WorkspaceFactories.h"
#include "platform/geometry/Envelope.h"
#include "platform/srs/SpatialReference.h"
#include "platform/srs/SpatialReferenceEnvironment.h"
#include "platform/system/Arrays.h"
#include "platform/ui/ScriptedUI.h"
#include "support/MyGeneralOperations.h"

namespace tess::test {
namespace {

namespace fs = std::filesystem;

class TempFolder {
public:
    TempFolder() {
        path_ = (fs::temp_directory_path() / ("tess-out-" + std::to_string(::getpid()) + "-" + std::to_string(++n_)))
                    .string();
        fs::remove_all(path_);
        fs::create_directories(path_);
    }
    ~TempFolder() {
        std::error_code ec;
        fs::remove_all(path_, ec);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    std::string operator/(const std::string& name) const { return path_ + "/" + name; }
    const std::string& Path() const { return path_; }

private:
    static inline int n_ = 0;
    std::string path_;
};

std::shared_ptr<IField> NewField(const std::string& name, esriFieldType type = esriFieldTypeInteger) {
    auto f = std::make_shared<Field>();
    f->Name(name);
    f->Type(type);
    return f;
}

std::shared_ptr<IVariantArray> FieldArray(const std::vector<std::string>& names) {
    auto list = std::make_shared<VarArray>();
    for (const auto& name : names)
        list->Add(NewField(name));
    return list;
}

std::vector<std::string> FieldNames(const IFeatureClass& featureClass) {
    std::vector<std::string> names;
    for (std::int32_t i = 0; i < featureClass.Fields()->FieldCount(); ++i)
        names.push_back(featureClass.Fields()->Field(i)->Name());
    return names;
}

std::shared_ptr<ISpatialReference> Wgs84() {
    constexpr std::int32_t kWgs84 = 4326;
    return SpatialReferenceEnvironment().CreateGeographicCoordinateSystem(kWgs84);
}

std::shared_ptr<IFeatureWorkspace> AsFeatureWorkspace(const std::shared_ptr<IWorkspace>& ws) {
    return std::dynamic_pointer_cast<IFeatureWorkspace>(ws);
}

class OutputTest : public ::testing::Test {
protected:
    void SetUp() override { previous_ = SetUI(ui_); }
    void TearDown() override { SetUI(previous_); }

    //! Creates through the general routine with the arguments every tool passes.
    std::shared_ptr<IFeatureClass> Create(std::string& directory, std::string& name, std::int32_t kind,
                                          bool& inDataset, std::string& dataset,
                                          const std::shared_ptr<IVariantArray>& fields = nullptr,
                                          bool addUniqueID = false) {
        esriGeometryType type = esriGeometryPoint;
        return CreateGeneralFeatureClass(type, Wgs84(), directory, name, kind, fields, "Name the output:", inDataset,
                                         dataset, addUniqueID);
    }
    std::shared_ptr<IFeatureClass> Create(std::string directory, std::string name, std::int32_t kind,
                                          const std::shared_ptr<IVariantArray>& fields = nullptr,
                                          bool addUniqueID = false) {
        bool inDataset = false;
        std::string dataset;
        return Create(directory, name, kind, inDataset, dataset, fields, addUniqueID);
    }

    std::shared_ptr<ScriptedUI> ui_ = std::make_shared<ScriptedUI>();
    TempFolder dir_;

private:
    std::shared_ptr<IUIServices> previous_;
};

TEST_F(OutputTest, EachKindOfStorageGetsItsOwnLeadingFields) {
    auto gdb = AsFeatureWorkspace(FileGDBWorkspaceFactory().Create(dir_.Path(), "out.gdb"));
    gdb->CreateFeatureDataset("survey", Wgs84());
    GeoPackageWorkspaceFactory().Create(dir_.Path(), "out.gpkg");
    auto callerFields = FieldArray({"VALUE"});

    auto shapefile = Create(dir_.Path(), "pts", 1, callerFields, true);
    ASSERT_TRUE(shapefile);
    EXPECT_EQ(FieldNames(*shapefile), (std::vector<std::string>{"FID", "Shape", "Unique_ID", "VALUE"}));
    EXPECT_TRUE(fs::exists(dir_ / "pts.shp"));
    EXPECT_EQ(shapefile->ShapeType(), esriGeometryPoint);

    auto standalone = Create(dir_ / "out.gdb", "pts", 2, callerFields);
    ASSERT_TRUE(standalone);
    EXPECT_EQ(standalone->OIDFieldName(), "Object_ID");
    EXPECT_GE(standalone->FindField("VALUE"), 0);
    EXPECT_FALSE(standalone->FeatureDataset());

    bool inDataset = true;
    std::string dataset = "survey";
    std::string directory = dir_ / "out.gdb";
    std::string name = "inside";
    auto contained = Create(directory, name, 2, inDataset, dataset, callerFields);
    ASSERT_TRUE(contained);
    EXPECT_TRUE(contained->FeatureDataset());
    EXPECT_EQ(std::dynamic_pointer_cast<IDataset>(contained)->FullName(), dir_ / "out.gdb/survey/inside");

    auto packaged = Create(dir_ / "out.gpkg", "pts", 8, callerFields);
    ASSERT_TRUE(packaged);
    EXPECT_GE(packaged->FindField("VALUE"), 0);
    EXPECT_TRUE(ui_->Log().empty());
}

TEST_F(OutputTest, AddedFieldsStepAsideForTheCallersNames) {
    struct Case {
        std::vector<std::string> callerNames;
        const char* added;
    };
    // The counter grows the name within 10 characters ("Unique_ID") or 11 ("Object_ID").
    const Case shapefileCases[] = {
        {{"Unique_ID"}, "Unique_ID2"},
        {{"Unique_ID", "Unique_ID2", "Unique_ID3", "Unique_ID4", "Unique_ID5", "Unique_ID6", "Unique_ID7",
          "Unique_ID8", "Unique_ID9"},
         "Unique_I10"},
        {{"unique_id"}, "Unique_ID"}, // only the exact name is a clash
    };
    int n = 0;
    for (const Case& c : shapefileCases) {
        SCOPED_TRACE(c.added);
        auto created = Create(dir_.Path(), "pts" + std::to_string(++n), 1, FieldArray(c.callerNames), true);
        ASSERT_TRUE(created);
        EXPECT_GE(created->FindField(c.added), 0);
    }
    AsFeatureWorkspace(FileGDBWorkspaceFactory().Create(dir_.Path(), "out.gdb"));
    const Case gdbCases[] = {
        {{"Object_ID"}, "Object_ID2"},
        {{"Object_ID", "Object_ID2", "Object_ID3", "Object_ID4", "Object_ID5", "Object_ID6", "Object_ID7",
          "Object_ID8", "Object_ID9"},
         "Object_ID10"},
    };
    for (const Case& c : gdbCases) {
        SCOPED_TRACE(c.added);
        auto created = Create(dir_ / "out.gdb", "pts" + std::to_string(++n), 2, FieldArray(c.callerNames));
        ASSERT_TRUE(created);
        EXPECT_EQ(created->OIDFieldName(), c.added);
    }
}

TEST_F(OutputTest, OverwritingAnsweredYesReplacesTheClass) {
    auto first = Create(dir_.Path(), "pts", 1, FieldArray({"OLD"}));
    ASSERT_TRUE(first);
    first.reset();
    ui_->QueueAnswer(MsgBoxResult::Yes);
    std::string directory = dir_.Path();
    std::string name = "pts";
    bool inDataset = false;
    std::string dataset;
    auto second = Create(directory, name, 1, inDataset, dataset, FieldArray({"NEW"}));
    ASSERT_TRUE(second);
    EXPECT_GE(second->FindField("NEW"), 0);
    EXPECT_EQ(second->FindField("OLD"), -1);
    ASSERT_EQ(ui_->Messages().size(), 1u);
    EXPECT_EQ(ui_->Messages()[0], "The Feature Class 'pts.shp' already exists!  Do you wish to overwrite it?");
    EXPECT_EQ(ui_->Log()[0].title, "Feature Class Already Exists:");
    EXPECT_EQ(ui_->Log()[0].buttons, MsgBoxButtons::YesNo);
    EXPECT_EQ(directory, dir_.Path()); // the trailing separator is gone again
    EXPECT_EQ(name, "pts");            // the shapefile's own routine cut ".shp"
}

TEST_F(OutputTest, OverwritingAnsweredNoAsksForAnotherPlace) {
    auto gdb = AsFeatureWorkspace(FileGDBWorkspaceFactory().Create(dir_.Path(), "out.gdb"));
    gdb->CreateFeatureDataset("survey", Wgs84());
    ASSERT_TRUE(Create(dir_ / "out.gdb", "pts", 2));

    // No, then a new name in a feature dataset of the same geodatabase.
    ui_->QueueAnswer(MsgBoxResult::No);
    ui_->QueueBrowse(BrowseResult{dir_ / "out.gdb/survey", "pts_b", "File Geodatabase Feature Dataset"});
    std::string directory = dir_ / "out.gdb";
    std::string name = "pts";
    bool inDataset = false;
    std::string dataset;
    auto created = Create(directory, name, 2, inDataset, dataset);
    ASSERT_TRUE(created);
    EXPECT_EQ(ui_->LastBrowse().Name, ""); // the name was emptied for the new choice
    EXPECT_EQ(ui_->LastBrowse().Title, "Name the output:");
    EXPECT_EQ(ui_->LastBrowse().ButtonCaption, "Enter");
    EXPECT_TRUE(inDataset);
    EXPECT_EQ(dataset, "survey");
    EXPECT_EQ(name, "pts_b");
    EXPECT_EQ(std::dynamic_pointer_cast<IDataset>(created)->FullName(), dir_ / "out.gdb/survey/pts_b");

    // No, then the browse dialog cancelled: nothing, and nothing else said.
    ui_->Clear();
    ui_->QueueAnswer(MsgBoxResult::No);
    EXPECT_FALSE(Create(dir_ / "out.gdb", "pts", 2));
    EXPECT_EQ(ui_->Messages().size(), 1u);
    EXPECT_TRUE(ui_->Errors().empty());
}

TEST_F(OutputTest, InsideADatasetTheQuestionNamesTheDataset) {
    auto gdb = AsFeatureWorkspace(FileGDBWorkspaceFactory().Create(dir_.Path(), "out.gdb"));
    gdb->CreateFeatureDataset("survey", Wgs84());
    std::string directory = dir_ / "out.gdb";
    std::string name = "pts";
    bool inDataset = true;
    std::string dataset = "survey";
    ASSERT_TRUE(Create(directory, name, 2, inDataset, dataset));
    ui_->QueueAnswer(MsgBoxResult::Yes);
    name = "pts";
    ASSERT_TRUE(Create(directory, name, 2, inDataset, dataset));
    ASSERT_EQ(ui_->Messages().size(), 1u);
    EXPECT_EQ(ui_->Messages()[0], "The Feature Class 'survey:pts' already exists!  Do you wish to overwrite it?");
}

TEST_F(OutputTest, WithoutAPlaceTheUserIsAskedAndMayGiveUp) {
    std::string directory;
    std::string name = "pts";
    bool inDataset = false;
    std::string dataset;
    EXPECT_FALSE(Create(directory, name, 1, inDataset, dataset));
    EXPECT_TRUE(ui_->Messages().empty());
    EXPECT_TRUE(ui_->Errors().empty());

    ui_->QueueBrowse(BrowseResult{dir_.Path(), "chosen", "Folder"});
    auto created = Create(directory, name, 1, inDataset, dataset);
    ASSERT_TRUE(created);
    EXPECT_TRUE(fs::exists(dir_ / "chosen.shp"));
    EXPECT_EQ(directory, dir_.Path());
}

TEST_F(OutputTest, RequestsThatCannotBeMetAreExplained) {
    EXPECT_FALSE(Create(dir_.Path(), "pts", 3));
    ASSERT_EQ(ui_->Messages().size(), 1u);
    EXPECT_EQ(ui_->Messages()[0], "PROBLEM:  This function can only create shapefiles, file geodatabase feature "
                                  "classes, or \r\npersonal geodatabase feature classes.  Bailing out...");
    EXPECT_EQ(ui_->Log()[0].title, "Invalid Output Type:");

    ui_->Clear();
    ui_->QueueBrowse(BrowseResult{dir_ / "a.tif", "x", "Raster Dataset"});
    std::string directory;
    std::string name;
    bool inDataset = false;
    std::string dataset;
    EXPECT_FALSE(Create(directory, name, 1, inDataset, dataset));
    ASSERT_EQ(ui_->Messages().size(), 1u);
    EXPECT_EQ(ui_->Messages()[0], "Unexpected Feature Class Type (Raster Dataset)!  Need to write new code for this...");
    EXPECT_EQ(ui_->Log().back().title, "");
}

TEST_F(OutputTest, AShapefileNamedByItsFullPathLandsInItsFolder) {
    std::string directory = dir_ / "pts.shp";
    std::string name = "pts.shp";
    esriGeometryType type = esriGeometryPolyline;
    auto created = CreateShapefileFeatureClass(directory, name, Wgs84(), type, nullptr, false);
    ASSERT_TRUE(created);
    EXPECT_EQ(name, "pts");
    EXPECT_TRUE(fs::exists(dir_ / "pts.shp"));
    EXPECT_EQ(created->ShapeType(), esriGeometryPolyline);

    directory = dir_ / "missing";
    name = "pts";
    EXPECT_FALSE(CreateShapefileFeatureClass(directory, name, Wgs84(), type, nullptr, false));
    ASSERT_EQ(ui_->Messages().size(), 1u);
    EXPECT_EQ(ui_->Messages()[0], "Unable to create Feature Class:\r\n" + (dir_ / "missing") + " is not a valid workspace...");
    EXPECT_EQ(ui_->Log()[0].title, "Failed to Create Feature Class:");
}

TEST_F(OutputTest, GeodatabaseClassesOfSpecialFeatureTypes) {
    auto gdb = AsFeatureWorkspace(FileGDBWorkspaceFactory().Create(dir_.Path(), "out.gdb"));
    // A line becomes a polyline; annotation is refused quietly.
    esriGeometryType type = esriGeometryLine;
    auto lines = CreateGDBFeatureClass(gdb, "lines", esriFTSimple, Wgs84(), type, nullptr, nullptr, nullptr, "", 2,
                                       nullptr, 0);
    ASSERT_TRUE(lines);
    EXPECT_EQ(type, esriGeometryPolyline);
    EXPECT_EQ(lines->ShapeType(), esriGeometryPolyline);
    type = esriGeometryPolygon;
    EXPECT_FALSE(CreateGDBFeatureClass(gdb, "notes", esriFTAnnotation, Wgs84(), type, nullptr, nullptr, nullptr, "",
                                       2, nullptr, 0));
    EXPECT_FALSE(CreateGDBFeatureClass(gdb, "", esriFTSimple, Wgs84(), type, nullptr, nullptr, nullptr, "", 2,
                                       nullptr, 0));
    EXPECT_FALSE(CreateGDBFeatureClass(nullptr, "x", esriFTSimple, Wgs84(), type, nullptr, nullptr, nullptr, "", 2,
                                       nullptr, 0));
    EXPECT_TRUE(ui_->Errors().empty());
}

TEST(GridSize, FollowsTheDataToCome) {
    // Square roots of exact products: the results are exact in binary, so equality is asked.
    auto box = std::make_shared<Envelope>();
    box->PutCoords(0, 0, 1000, 10);
    EXPECT_EQ(GeodatabaseGridSize(nullptr, 200), 100.0);
    EXPECT_EQ(GeodatabaseGridSize(box, 0), 100.0);
    EXPECT_EQ(GeodatabaseGridSize(std::make_shared<Envelope>(), 200), 100.0);
    EXPECT_EQ(GeodatabaseGridSize(box, 200), 10.0);       // sqrt(10000) = 100, cut to the width, then height
    box->PutCoords(0, 0, 400, 400);
    EXPECT_EQ(GeodatabaseGridSize(box, 800), 200.0);      // four tiles of 200 x 200
    EXPECT_EQ(GeodatabaseGridSize(box, 2), 400.0);        // one tile larger than the box
}

TEST_F(OutputTest, ExistenceCountsTablesAsClassesAndNamesRunOn) {
    auto folder = AsFeatureWorkspace(ShapefileWorkspaceFactory().OpenFromFile(dir_.Path(), 0));
    auto fields = std::make_shared<Fields>();
    fields->AddField(NewField("CODE"));
    folder->CreateTable("codes", fields, nullptr, nullptr, "");
    ASSERT_TRUE(Create(dir_.Path(), "pts", 1));
    EXPECT_TRUE(CheckIfFeatureClassExists(folder, "codes"));
    EXPECT_TRUE(CheckIfTableExists(folder, "pts"));
    EXPECT_FALSE(CheckIfFeatureClassExists(folder, "none"));
    EXPECT_FALSE(CheckIfTableExists(nullptr, "pts"));

    auto gdbWorkspace = FileGDBWorkspaceFactory().Create(dir_.Path(), "out.gdb");
    ASSERT_TRUE(Create(dir_ / "out.gdb", "pts", 2));
    ASSERT_TRUE(Create(dir_ / "out.gdb", "pts_2", 2));
    EXPECT_EQ(MakeUniqueGDBFeatureClassName(gdbWorkspace, "pts"), "pts_3");
    EXPECT_EQ(MakeUniqueGDBFeatureClassName(gdbWorkspace, "free"), "free");
    EXPECT_EQ(MakeUniqueGDBTableName(gdbWorkspace, "pts_2"), "pts_2_2");

    EXPECT_EQ(MakeUniqueShapeFilename(dir_ / "pts.shp"), dir_ / "pts_2.shp");
    EXPECT_EQ(MakeUniqueShapeFilename(dir_ / "free.shp"), dir_ / "free.shp");
    EXPECT_EQ(MakeUniquedBASEName(dir_ / "codes.dbf"), dir_ / "codes_2.dbf");
}

TEST(DbaseFieldName, MakesLegalUnusedNames) {
    struct Case {
        const char* name;
        std::vector<std::string> existing;
        const char* expected;
    };
    const Case cases[] = {
        {"2009 area (km)", {}, "z2009_area"},
        {"", {}, "zField"},
        {"POP", {}, "POP"},
        {"Name-2", {}, "Name_2"},
        {"Area", {"AREA"}, "Area2"},                                 // names clash without regard to case
        {"LongFieldName", {"longfieldn"}, "LongField2"},             // cut to nine plus the counter
        {"_hidden", {}, "z_hidden"},
        {"LongFieldName",
         {"LongFieldN", "LongField2", "LongField3", "LongField4", "LongField5", "LongField6", "LongField7",
          "LongField8", "LongField9"},
         "LongFiel10"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        auto strings = std::make_shared<StrArray>();
        auto variants = std::make_shared<VarArray>();
        auto fieldsArray = std::make_shared<VarArray>();
        auto fields = std::make_shared<Fields>();
        for (const auto& e : c.existing) {
            strings->Add(e);
            variants->Add(e);
            fieldsArray->Add(NewField(e));
            fields->AddField(NewField(e));
        }
        // Every form a caller may hand in says the same.
        EXPECT_EQ(ReturnDBASEFieldName(c.name, Variant(std::shared_ptr<IStringArray>(strings))), c.expected);
        EXPECT_EQ(ReturnDBASEFieldName(c.name, Variant(std::shared_ptr<IVariantArray>(variants))), c.expected);
        EXPECT_EQ(ReturnDBASEFieldName(c.name, Variant(std::shared_ptr<IVariantArray>(fieldsArray))), c.expected);
        EXPECT_EQ(ReturnDBASEFieldName(c.name, Variant(std::shared_ptr<IFields>(fields))), c.expected);
    }
    // Anything else counts as no names at all.
    EXPECT_EQ(ReturnDBASEFieldName("Area", Variant(5)), "Area");
    EXPECT_EQ(ReturnDBASEFieldName("Area", Variant::Nothing()), "Area");
}

TEST(ReplaceBadChars, KeepsWhatItIsToldToKeep) {
    struct Case {
        const char* text;
        bool dot, backslash, blank, prefix;
        const char* expected;
    };
    const Case cases[] = {
        {"", true, true, true, true, "z"},
        {"my pts.shp", true, true, true, true, "my_pts_shp"},
        {"my pts.shp", false, true, false, true, "my pts.shp"},
        {"a\\b c", false, false, true, false, "a\\b_c"},
        {"1st-class", true, true, true, true, "z1st_class"},
        {"1st-class", true, true, true, false, "1st_class"},
        {"Ünïcode", true, true, true, true, "z__n__code"}, // bytes outside the set, each replaced
    };
    for (const Case& c : cases)
        EXPECT_EQ(ReplaceBadChars(c.text, c.dot, c.backslash, c.blank, c.prefix), c.expected) << c.text;
}

TEST_F(OutputTest, BinaryDigitsArePaddedToTheWidth) {
    EXPECT_EQ(ConvertLongBinary(1, 9), "000000001");
    EXPECT_EQ(ConvertLongBinary(120, 9), "001111000");
    EXPECT_EQ(ConvertLongBinary(256, 9), "100000000");
    EXPECT_EQ(ConvertLongBinary(5, 0), "101");
    EXPECT_EQ(ConvertLongBinary(1023, 9), "1111111111");
    // Zero has no leading one to end on: reported, and nothing comes back.
    EXPECT_EQ(ConvertLongBinary(0, 9), "");
    EXPECT_EQ(ui_->Errors().size(), 1u);
}

TEST_F(OutputTest, LayersAreListedByTypeInMapOrder) {
    auto folder = AsFeatureWorkspace(ShapefileWorkspaceFactory().OpenFromFile(dir_.Path(), 0));
    auto makeLayer = [&](const std::string& name, esriGeometryType type) {
        esriGeometryType t = type;
        std::string directory = dir_.Path();
        std::string n = name;
        auto featureClass = CreateShapefileFeatureClass(directory, n, Wgs84(), t, nullptr, false);
        auto layer = std::make_shared<FeatureLayer>();
        layer->FeatureClass(featureClass);
        layer->Name(name);
        return layer;
    };
    auto map = std::make_shared<Map>();
    auto group = std::make_shared<GroupLayer>();
    group->Name("group");
    group->Add(makeLayer("inner_line", esriGeometryPolyline));
    auto broken = std::make_shared<FeatureLayer>(); // no data: not valid
    broken->Name("broken");
    // AddLayer puts each on top: the map reads pts, group (inner_line), area, broken, multi.
    map->AddLayer(makeLayer("multi", esriGeometryMultipoint));
    map->AddLayer(broken);
    map->AddLayer(makeLayer("area", esriGeometryPolygon));
    map->AddLayer(group);
    map->AddLayer(makeLayer("pts", esriGeometryPoint));
    auto fields = std::make_shared<Fields>();
    fields->AddField(NewField("CODE"));
    auto table = std::make_shared<StandaloneTable>();
    table->Table(folder->CreateTable("codes", fields, nullptr, nullptr, ""));
    table->Name("codes");
    map->AddStandaloneTable(table);

    auto names = [&](std::int32_t flags) {
        std::vector<std::string> out;
        auto list = ReturnLayersByType(map, flags);
        for (std::int32_t i = 0; list && i < list->Count(); ++i) {
            const Variant item = list->Element(i);
            if (auto layer = item.As<ILayer>())
                out.push_back(layer->Name());
            else if (auto t = item.As<IStandaloneTable>())
                out.push_back("table:" + t->Name());
        }
        return out;
    };
    using Names = std::vector<std::string>;
    EXPECT_EQ(names(layer_type::Point), Names{"pts"});
    EXPECT_EQ(names(layer_type::Polyline), Names{"inner_line"});
    EXPECT_EQ(names(layer_type::Polyline | layer_type::Polygon | layer_type::Multipoint),
              (Names{"inner_line", "area", "multi"}));
    EXPECT_EQ(names(layer_type::Feature), (Names{"pts", "inner_line", "area", "multi"}));
    EXPECT_EQ(names(layer_type::Table | layer_type::Point), (Names{"pts", "table:codes"}));
    EXPECT_EQ(names(layer_type::Raster | layer_type::Tin | layer_type::Special), Names{});
    EXPECT_TRUE(ui_->Errors().empty());
}

TEST_F(OutputTest, FieldNamePairsCarryIndexesOnBothSides) {
    auto from = Create(dir_.Path(), "from", 1, FieldArray({"A", "B"}));
    auto to = Create(dir_.Path(), "to", 1, FieldArray({"B", "C"}));
    auto selected = std::make_shared<VarArray>();
    selected->Add(from->Fields()->Field(from->FindField("B")));
    selected->Add(from->Fields()->Field(from->FindField("A")));
    auto rows = MakeFieldNameVarArray(from, to, selected, false);
    ASSERT_TRUE(rows);
    ASSERT_EQ(rows->Count(), 2);
    auto first = rows->Element(0).As<IVariantArray>();
    EXPECT_EQ(first->Element(0).ToString(), "B");
    EXPECT_EQ(first->Element(1).ToLong(), from->FindField("B"));
    EXPECT_EQ(first->Element(2).ToString(), "B");
    EXPECT_EQ(first->Element(3).ToLong(), to->FindField("B"));
    EXPECT_EQ(rows->Element(1).As<IVariantArray>()->Element(3).ToLong(), -1); // "A" is not in "to"

    auto pairs = std::make_shared<VarArray>();
    auto pair = std::make_shared<StrArray>();
    pair->Add("A");
    pair->Add("C");
    pairs->Add(std::shared_ptr<IStringArray>(pair));
    auto renamed = MakeFieldNameVarArray(from, to, pairs, true)->Element(0).As<IVariantArray>();
    EXPECT_EQ(renamed->Element(2).ToString(), "C");
    EXPECT_EQ(renamed->Element(3).ToLong(), to->FindField("C"));
}

} // namespace
} // namespace tess::test
