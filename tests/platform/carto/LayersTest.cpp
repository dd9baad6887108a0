// Feature layers over real shapefiles: validity, data source types, selection
// sets through layers, fields as the layer shows them, and the walk a tool
// makes to list layers by shape type.

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "DataFixtures.h"
#include "platform/carto/FeatureLayer.h"
#include "platform/carto/GroupLayer.h"
#include "platform/carto/Map.h"
#include "platform/carto/SimpleRenderer.h"
#include "platform/carto/StandaloneTable.h"
#include "platform/carto/Symbols.h"
#include "platform/data/Field.h"
#include "platform/data/Fields.h"
#include "platform/data/QueryFilter.h"
#include "platform/data/SelectionSet.h"
#include "platform/data/Table.h"
#include "platform/data/Workspace.h"
#include "platform/data/WorkspaceFactories.h"
#include "platform/geometry/Geometries.h"
#include "platform/srs/SpatialReference.h"
#include "platform/srs/SpatialReferenceEnvironment.h"
#include "platform/system/Fault.h"

namespace tess {
namespace {

using testing::MakeShapefile;
using testing::PointFeatures;
using testing::SquareFeatures;
using testing::TempFolder;

constexpr std::int32_t kWgs84 = 4326;

std::shared_ptr<FeatureLayer> LayerOf(const std::shared_ptr<IFeatureClass>& featureClass) {
    auto layer = std::make_shared<FeatureLayer>();
    layer->FeatureClass(featureClass);
    return layer;
}

std::shared_ptr<IQueryFilter> Where(const std::string& clause) {
    auto filter = std::make_shared<QueryFilter>();
    filter->WhereClause(clause);
    return filter;
}

std::vector<std::int32_t> Ids(const ISelectionSet& set) {
    std::vector<std::int32_t> ids;
    auto walk = set.IDs();
    walk->Reset();
    for (auto id = walk->Next(); id != -1; id = walk->Next())
        ids.push_back(id);
    return ids;
}

class LayersTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::shared_ptr<ISpatialReference> wgs84 =
            SpatialReferenceEnvironment().CreateGeographicCoordinateSystem(kWgs84);
        points = MakeShapefile(folder.Path(), "towns", esriGeometryPoint, wgs84, PointFeatures(5));
        squares = MakeShapefile(folder.Path(), "fields", esriGeometryPolygon, wgs84, SquareFeatures(3));
    }
    TempFolder folder{"layers"};
    std::shared_ptr<IFeatureClass> points;
    std::shared_ptr<IFeatureClass> squares;
};

TEST_F(LayersTest, ALayerOfAShapefileIsValidNamedAndTypedInTheHostsWords) {
    auto layer = LayerOf(points);
    EXPECT_TRUE(layer->Valid());
    EXPECT_EQ(layer->Name(), "towns");
    EXPECT_EQ(layer->DataSourceType(), "Shapefile Feature Class");
    EXPECT_EQ(layer->DataSource().datasetName, "towns");
    EXPECT_EQ(layer->SpatialReference()->Name(), "GCS_WGS_1984");
    auto extent = layer->Extent();
    EXPECT_EQ(extent->XMax(), 4.0);
    EXPECT_TRUE(std::dynamic_pointer_cast<ISimpleMarkerSymbol>(
        std::dynamic_pointer_cast<ISimpleRenderer>(layer->Renderer())->Symbol()));
    EXPECT_EQ(layer->SelectionSet()->Count(), 0);
}

TEST_F(LayersTest, SelectFeaturesCombinesWithTheSelectionThatStands) {
    auto layer = LayerOf(points); // POP is 0, 10, 20, 30, 40
    layer->SelectFeatures(Where("POP >= 20"), esriSelectionResultNew, false);
    EXPECT_EQ(layer->SelectionSet()->Count(), 3);
    layer->SelectFeatures(Where("POP = 0"), esriSelectionResultAdd, false);
    EXPECT_EQ(layer->SelectionSet()->Count(), 4);
    layer->SelectFeatures(Where("POP >= 30"), esriSelectionResultSubtract, false);
    EXPECT_EQ(Ids(*layer->SelectionSet()), (std::vector<std::int32_t>{0, 2}));
    layer->SelectFeatures(Where("POP <= 10"), esriSelectionResultXOR, false);
    EXPECT_EQ(Ids(*layer->SelectionSet()), (std::vector<std::int32_t>{1, 2}));
    layer->SelectFeatures(Where("POP >= 10"), esriSelectionResultAnd, false);
    EXPECT_EQ(Ids(*layer->SelectionSet()), (std::vector<std::int32_t>{1, 2}));
    layer->SelectFeatures(nullptr, esriSelectionResultNew, true);
    EXPECT_EQ(layer->SelectionSet()->Count(), 1);
    layer->Clear();
    EXPECT_EQ(layer->SelectionSet()->Count(), 0);
}

TEST_F(LayersTest, ASelectionSetMustBeOverTheLayersOwnClass) {
    auto layer = LayerOf(points);
    auto other = std::dynamic_pointer_cast<ITable>(squares)->Select(nullptr, esriSelectionTypeIDSet,
                                                                    esriSelectionOptionNormal, nullptr);
    EXPECT_THROW(layer->SelectionSet(other), Fault);
    auto own = std::dynamic_pointer_cast<ITable>(points)->Select(Where("POP = 40"), esriSelectionTypeIDSet,
                                                                 esriSelectionOptionNormal, nullptr);
    layer->SelectionSet(own);
    EXPECT_EQ(Ids(*layer->SelectionSet()), std::vector<std::int32_t>{4});
}

TEST_F(LayersTest, TheMapCountsSelectedFeaturesOfEveryLayerGroupsIncluded) {
    auto map = std::make_shared<Map>();
    auto towns = LayerOf(points);
    auto fields = LayerOf(squares);
    auto group = std::make_shared<GroupLayer>();
    group->Add(fields);
    map->AddLayer(towns);
    map->AddLayer(group);
    towns->SelectFeatures(Where("POP > 0"), esriSelectionResultNew, false);
    fields->SelectFeatures(nullptr, esriSelectionResultNew, false);
    EXPECT_EQ(map->SelectionCount(), 4 + 3);
    map->ClearSelection();
    EXPECT_EQ(map->SelectionCount(), 0);
    // The first layer with a reference gave the map its own.
    ASSERT_TRUE(map->SpatialReference());
    EXPECT_EQ(map->SpatialReference()->Name(), "GCS_WGS_1984");
    EXPECT_EQ(map->FullExtent()->XMax(), 5.0);
}

TEST_F(LayersTest, LayerFieldsCarryAliasAndVisibilityAndHiddenFieldsAreNotFound) {
    auto layer = LayerOf(points);
    ASSERT_EQ(layer->FieldCount(), points->Fields()->FieldCount());
    const std::int32_t name = layer->FindField("name");
    ASSERT_GE(name, 0);
    EXPECT_EQ(layer->Field(name)->Name(), "NAME");
    auto info = layer->FieldInfo(name);
    EXPECT_EQ(info->Alias(), "NAME");
    EXPECT_TRUE(info->Visible());
    info->Alias("Town name");
    EXPECT_EQ(layer->FieldInfo(name)->Alias(), "Town name");

    const std::int32_t pop = layer->FindField("POP");
    layer->FieldInfo(pop)->Visible(false);
    EXPECT_EQ(layer->FindField("POP"), -1);
    EXPECT_FALSE(layer->FieldInfo(pop)->Visible());
    EXPECT_EQ(layer->FindField("NO_SUCH"), -1);
    EXPECT_THROW(layer->Field(layer->FieldCount()), Fault);

    const auto displays = layer->FieldDisplays();
    ASSERT_EQ(displays.size(), 2u);
    EXPECT_EQ(displays[0], (FieldDisplay{"NAME", "Town name", true}));
    EXPECT_EQ(displays[1], (FieldDisplay{"POP", "", false}));
}

TEST_F(LayersTest, WalkingLayersByShapeTypeSkipsInvalidOnesAndEntersGroups) {
    // What a tool does to list the polygon layers of a map: walk every layer, groups included,
    // and keep the valid feature layers of polygon shape.
    auto map = std::make_shared<Map>();
    auto missing = std::make_shared<FeatureLayer>();
    missing->Name("gone");
    missing->DataSource({"no/such/folder", "lost", "Shapefile Feature Class"});
    EXPECT_FALSE(missing->Connect(folder.Path()));
    auto group = std::make_shared<GroupLayer>();
    group->Name("group");
    auto inner = LayerOf(squares);
    inner->Name("inner fields");
    group->Add(inner);
    group->Add(missing);
    map->AddLayer(LayerOf(squares));
    map->AddLayer(group);
    map->AddLayer(LayerOf(points));

    std::vector<std::string> polygons;
    auto walk = map->Layers(nullptr, true);
    walk->Reset();
    while (auto layer = walk->Next()) {
        auto feature = std::dynamic_pointer_cast<IFeatureLayer>(layer);
        if (!feature || !layer->Valid())
            continue;
        if (feature->FeatureClass()->ShapeType() == esriGeometryPolygon)
            polygons.push_back(layer->Name());
    }
    EXPECT_EQ(polygons, (std::vector<std::string>{"inner fields", "fields"}));
}

TEST_F(LayersTest, ALayerWhoseDataIsMissingKeepsItsSourceTypeAndSelection) {
    FeatureLayer layer;
    layer.Name("gone");
    layer.DataSource({"elsewhere", "lost", "File Geodatabase Feature Class"});
    layer.Kept({{3, 4}, ""});
    EXPECT_FALSE(layer.Connect(folder.Path()));
    EXPECT_FALSE(layer.Valid());
    EXPECT_EQ(layer.DataSourceType(), "File Geodatabase Feature Class");
    EXPECT_EQ(layer.SelectionSet(), nullptr);
    EXPECT_EQ(layer.FieldCount(), 0);
    EXPECT_EQ(layer.FindField("NAME"), -1);
    EXPECT_EQ(layer.Extent(), nullptr);
    EXPECT_EQ(layer.Kept().oids, (std::vector<std::int32_t>{3, 4}));
    EXPECT_THROW(layer.SelectFeatures(nullptr, esriSelectionResultNew, false), Fault);
}

TEST_F(LayersTest, ConnectResolvesRelativePathsWrittenWithEitherSlashAndAppliesTheKeptSelection) {
    const std::string parent = folder.Path().substr(0, folder.Path().find_last_of('/'));
    const std::string leaf = folder.Path().substr(folder.Path().find_last_of('/') + 1);
    FeatureLayer byIds;
    byIds.DataSource({".\\" + leaf, "towns", ""});
    byIds.Kept({{1, 3}, ""});
    ASSERT_TRUE(byIds.Connect(parent));
    EXPECT_EQ(byIds.DataSourceType(), "Shapefile Feature Class");
    EXPECT_EQ(Ids(*byIds.SelectionSet()), (std::vector<std::int32_t>{1, 3}));
    EXPECT_TRUE(byIds.Kept().Empty());

    FeatureLayer byWhere;
    byWhere.DataSource({folder.Path(), "towns", ""});
    byWhere.Kept({{}, "NAME = 'p2'"});
    ASSERT_TRUE(byWhere.Connect(""));
    EXPECT_EQ(Ids(*byWhere.SelectionSet()), std::vector<std::int32_t>{2});

    // A condition the data cannot answer selects nothing and stays to be saved back.
    FeatureLayer badWhere;
    badWhere.DataSource({folder.Path(), "towns", ""});
    badWhere.Kept({{}, "NO_SUCH_FIELD = 1"});
    ASSERT_TRUE(badWhere.Connect(""));
    EXPECT_EQ(badWhere.SelectionSet()->Count(), 0);
    EXPECT_EQ(badWhere.Kept().whereClause, "NO_SUCH_FIELD = 1");

    // What was asked stays known after it was applied, so that an empty outcome is told apart
    // from no selection at all; new data forgets it.
    FeatureLayer none;
    none.DataSource({folder.Path(), "towns", ""});
    none.Kept({{}, "NAME = 'nowhere'"});
    ASSERT_TRUE(none.Connect(""));
    EXPECT_EQ(none.SelectionSet()->Count(), 0);
    EXPECT_EQ(none.SelectionAsked().whereClause, "NAME = 'nowhere'");
    EXPECT_EQ(byIds.SelectionAsked().oids, (std::vector<std::int32_t>{1, 3}));
    none.FeatureClass(byWhere.FeatureClass());
    EXPECT_TRUE(none.SelectionAsked().Empty());
}

TEST_F(LayersTest, EachKindOfWorkspaceGivesItsOwnDataSourceType) {
    struct Kind {
        std::shared_ptr<IWorkspaceFactory> factory;
        const char* name;
        const char* type;
    };
    const std::vector<Kind> kinds{
        {std::make_shared<FileGDBWorkspaceFactory>(), "site.gdb", "File Geodatabase Feature Class"},
        {std::make_shared<GeoPackageWorkspaceFactory>(), "site.gpkg", "GeoPackage Feature Class"},
    };
    for (const auto& kind : kinds) {
        SCOPED_TRACE(kind.type);
        auto workspace = std::dynamic_pointer_cast<IFeatureWorkspace>(kind.factory->Create(folder.Path(), kind.name));
        ASSERT_TRUE(workspace);
        auto featureClass = testing::MakeFeatureClass(*workspace, "wells", esriGeometryPoint, nullptr, PointFeatures(3));
        auto layer = LayerOf(featureClass);
        EXPECT_EQ(layer->DataSourceType(), kind.type);
        EXPECT_EQ(layer->DataSource().datasetName, "wells");
        layer->SelectFeatures(Where("POP > 0"), esriSelectionResultNew, false);
        EXPECT_EQ(layer->SelectionSet()->Count(), 2);

        // The same data found again from the layer's source alone.
        FeatureLayer again;
        again.DataSource(layer->DataSource());
        ASSERT_TRUE(again.Connect(""));
        EXPECT_EQ(again.FeatureClass()->FeatureCount(nullptr), 3);
    }
}

TEST_F(LayersTest, AStandaloneTableConnectsToATableOfAWorkspace) {
    StandaloneTable table;
    table.DataSource({folder.Path(), "towns", ""});
    ASSERT_TRUE(table.Connect(""));
    EXPECT_TRUE(table.Valid());
    EXPECT_EQ(table.Table()->RowCount(nullptr), 5);
    StandaloneTable missing;
    missing.DataSource({folder.Path(), "nothing", ""});
    EXPECT_FALSE(missing.Connect(""));
    EXPECT_FALSE(missing.Valid());
}

} // namespace
} // namespace tess
