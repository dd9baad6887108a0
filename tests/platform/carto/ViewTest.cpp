// Views and the map's layer list: recorded refreshes, extents, walks through
// group layers with interface filters.

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/carto/Display.h"
#include "platform/carto/Elements.h"
#include "platform/carto/FeatureLayer.h"
#include "platform/carto/GroupLayer.h"
#include "platform/carto/Map.h"
#include "platform/carto/PageLayout.h"
#include "platform/carto/StandaloneTable.h"
#include "platform/geometry/Geometries.h"
#include "platform/system/Fault.h"
#include "platform/system/UID.h"

namespace tess {
namespace {

constexpr const char* kFeatureLayerId = "{40A9E885-5533-11d0-98BE-00805F7CED21}";
constexpr const char* kDataLayerId = "{6CA416B1-E160-11D2-9F4E-00C04F6BC78E}";
constexpr const char* kGroupLayerId = "{EDAD6644-1810-11D1-86AE-0000F8751720}";

std::shared_ptr<FeatureLayer> Named(const std::string& name) {
    auto layer = std::make_shared<FeatureLayer>();
    layer->Name(name);
    return layer;
}

std::shared_ptr<GroupLayer> Group(const std::string& name, std::vector<std::shared_ptr<ILayer>> members) {
    auto group = std::make_shared<GroupLayer>();
    group->Name(name);
    for (auto& member : members)
        group->Add(member);
    return group;
}

std::vector<std::string> Names(IEnumLayer& layers) {
    std::vector<std::string> names;
    layers.Reset();
    while (auto layer = layers.Next())
        names.push_back(layer->Name());
    return names;
}

std::shared_ptr<UID> Uid(const char* value) { return std::make_shared<UID>(value); }

//! Map order, top first: roads, [hydro: rivers, [lakes group: lakes]], parcels.
class LayerWalkTest : public ::testing::Test {
protected:
    void SetUp() override {
        map = std::make_shared<Map>();
        map->AddLayer(Named("parcels"));
        map->AddLayer(Group("hydro", {Named("rivers"), Group("lakes group", {Named("lakes")})}));
        map->AddLayer(Named("roads"));
    }
    std::shared_ptr<Map> map;
};

TEST_F(LayerWalkTest, AddLayerPutsTheNewLayerOnTop) {
    ASSERT_EQ(map->LayerCount(), 3);
    EXPECT_EQ(map->Layer(0)->Name(), "roads");
    EXPECT_EQ(map->Layer(2)->Name(), "parcels");
    EXPECT_THROW(map->Layer(3), Fault);
}

TEST_F(LayerWalkTest, WalksDescendIntoGroupsOnlyWhenRecursive) {
    EXPECT_EQ(Names(*map->Layers(nullptr, false)), (std::vector<std::string>{"roads", "hydro", "parcels"}));
    EXPECT_EQ(Names(*map->Layers(nullptr, true)),
              (std::vector<std::string>{"roads", "hydro", "rivers", "lakes group", "lakes", "parcels"}));
}

TEST_F(LayerWalkTest, InterfaceIdsFilterTheWalk) {
    EXPECT_EQ(Names(*map->Layers(Uid(kFeatureLayerId), true)),
              (std::vector<std::string>{"roads", "rivers", "lakes", "parcels"}));
    EXPECT_EQ(Names(*map->Layers(Uid(kFeatureLayerId), false)), (std::vector<std::string>{"roads", "parcels"}));
    EXPECT_EQ(Names(*map->Layers(Uid(kDataLayerId), true)),
              (std::vector<std::string>{"roads", "rivers", "lakes", "parcels"}));
    EXPECT_EQ(Names(*map->Layers(Uid(kGroupLayerId), true)), (std::vector<std::string>{"hydro", "lakes group"}));
    // An empty UID filters nothing.
    EXPECT_EQ(Names(*map->Layers(std::make_shared<UID>(), false)).size(), 3u);
}

TEST_F(LayerWalkTest, AnUnknownInterfaceIdIsAFault) {
    EXPECT_THROW(map->Layers(Uid("{00000000-0000-0000-0000-000000000001}"), true), Fault);
}

TEST_F(LayerWalkTest, LayersWithoutDataAreNotValidButGroupsAre) {
    auto walk = map->Layers(nullptr, true);
    while (auto layer = walk->Next())
        EXPECT_EQ(layer->Valid(), std::dynamic_pointer_cast<IGroupLayer>(layer) != nullptr) << layer->Name();
    EXPECT_EQ(map->SelectionCount(), 0);
}

TEST_F(LayerWalkTest, DeleteFindsLayersInsideGroupsAndALayerCannotBeAddedTwice) {
    auto all = map->AllLayers();
    auto rivers = all[2];
    EXPECT_THROW(map->AddLayer(rivers), Fault);
    map->DeleteLayer(rivers);
    EXPECT_EQ(Names(*map->Layers(nullptr, true)),
              (std::vector<std::string>{"roads", "hydro", "lakes group", "lakes", "parcels"}));
    map->MoveLayer(map->Layer(0), 99);
    EXPECT_EQ(map->Layer(2)->Name(), "roads");
}

TEST(GroupLayers, RefuseCycles) {
    auto outer = std::make_shared<GroupLayer>();
    auto inner = std::make_shared<GroupLayer>();
    outer->Add(inner);
    EXPECT_THROW(outer->Add(outer), Fault);
    EXPECT_THROW(inner->Add(outer), Fault);
    EXPECT_THROW(outer->Add(inner), Fault);
    EXPECT_THROW(outer->Layer(1), Fault);
}

TEST(StandaloneTables, ListInTheOrderAdded) {
    auto map = std::make_shared<Map>();
    auto a = std::make_shared<StandaloneTable>();
    a->Name("a");
    auto b = std::make_shared<StandaloneTable>();
    b->Name("b");
    map->AddStandaloneTable(a);
    map->AddStandaloneTable(b);
    ASSERT_EQ(map->StandaloneTableCount(), 2);
    EXPECT_EQ(map->StandaloneTable(1)->Name(), "b");
    EXPECT_FALSE(a->Valid());
    EXPECT_THROW(map->AddStandaloneTable(a), Fault);
    map->RemoveStandaloneTable(a);
    EXPECT_EQ(map->StandaloneTable(0)->Name(), "b");
}

TEST(Views, PartialRefreshesAreRecordedWithACopyOfTheArea) {
    auto map = std::make_shared<Map>();
    std::vector<std::int32_t> heard;
    map->RefreshListener([&](const ViewRefresh& request) { heard.push_back(request.phase); });
    auto area = std::make_shared<Envelope>(0, 0, 10, 10);
    const std::int32_t phase = esriViewGeography | esriViewGraphics | esriViewGraphicSelection;
    map->PartialRefresh(phase, Variant::Nothing(), area);
    area->PutCoords(5, 5, 6, 6); // the record keeps what was asked
    auto layer = std::make_shared<FeatureLayer>();
    map->PartialRefresh(esriViewGeography, Variant(std::static_pointer_cast<ILayer>(layer)), nullptr);
    map->Refresh();

    const auto& log = map->Refreshes();
    ASSERT_EQ(log.size(), 3u);
    EXPECT_EQ(log[0].phase, 26);
    EXPECT_FALSE(log[0].full);
    EXPECT_TRUE(log[0].data.IsNothing());
    ASSERT_TRUE(log[0].envelope);
    EXPECT_EQ(log[0].envelope->XMax(), 10.0);
    EXPECT_EQ(log[1].data.As<ILayer>(), layer);
    EXPECT_EQ(log[1].envelope, nullptr);
    EXPECT_TRUE(log[2].full);
    EXPECT_EQ(heard, (std::vector<std::int32_t>{26, 2, 0}));
    map->ClearRefreshes();
    EXPECT_TRUE(map->Refreshes().empty());
}

TEST(Views, TheExtentIsTheFullExtentUntilSetAndIsKeptAsACopy) {
    auto map = std::make_shared<Map>();
    EXPECT_TRUE(map->Extent()->IsEmpty());
    auto marker = std::make_shared<MarkerElement>();
    marker->Geometry(std::make_shared<Point>(2, 3));
    auto circle = std::make_shared<CircleElement>();
    circle->Geometry(MakeCirclePolygon(Point(10, 10), 1));
    map->AddElement(marker, 0);
    map->AddElement(circle, 0);
    auto full = map->FullExtent();
    EXPECT_EQ(full->XMin(), 2.0);
    EXPECT_EQ(full->YMin(), 3.0);
    EXPECT_EQ(full->XMax(), 11.0);
    EXPECT_EQ(full->YMax(), 11.0);
    EXPECT_FALSE(map->ExtentIsSet());

    // A zoom to one point element: a zero-sized extent is kept as it stands.
    auto zoom = std::make_shared<Envelope>(2, 3, 2, 3);
    map->Extent(zoom);
    zoom->PutCoords(0, 0, 1, 1);
    EXPECT_TRUE(map->ExtentIsSet());
    EXPECT_EQ(map->Extent()->Width(), 0.0);
    EXPECT_EQ(map->Extent()->XMin(), 2.0);
}

TEST(Views, ThePageLayoutIsALetterSheetAndItsFocusMapCanBeSet) {
    auto layout = std::make_shared<PageLayout>();
    auto full = layout->FullExtent();
    EXPECT_EQ(full->Width(), 8.5);
    EXPECT_EQ(full->Height(), 11.0);
    EXPECT_EQ(layout->FocusMap(), nullptr);
    auto first = std::make_shared<Map>();
    auto second = std::make_shared<Map>();
    layout->AddMapFrame(first);
    layout->AddMapFrame(second);
    EXPECT_EQ(layout->FocusMap(), first);
    layout->FocusMap(second);
    EXPECT_EQ(layout->FocusMap(), second);
    EXPECT_THROW(layout->PageSize(0, 11), Fault);
    EXPECT_TRUE(layout->ScreenDisplay());
    EXPECT_EQ(layout->ScreenDisplay()->hWnd(), 0);
}

} // namespace
} // namespace tess
