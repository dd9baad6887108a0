// The toolbar and menu definitions: counts, ProgIDs and groups position by
// position, what GetItemInfo leaves alone, positions outside the tables.

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "ExtensionTestSupport.h"
#include "extension/ClassTable.h"
#include "extension/CommandBarDefs.h"

namespace tess {
namespace {

//! Records what GetItemInfo sets; nothing set stays nullopt.
class RecordingItem final : public IItemDef {
public:
    void ID(const std::string& progId) override { id = progId; }
    void Group(bool startsGroup) override { group = startsGroup; }
    void SubType(std::int32_t value) override { subType = value; }
    std::optional<std::string> id;
    std::optional<bool> group;
    std::optional<std::int32_t> subType;
};

struct Expected {
    std::string progId;
    bool group;
};

template <class Def>
std::vector<RecordingItem> ReadAll(Def& def) {
    std::vector<RecordingItem> items(static_cast<std::size_t>(def.ItemCount()));
    for (std::int32_t pos = 0; pos < def.ItemCount(); ++pos)
        def.GetItemInfo(pos, items[static_cast<std::size_t>(pos)]);
    return items;
}

void ExpectMenu(IMenuDef& menu, const std::string& name, const std::string& caption,
                const std::vector<Expected>& expected) {
    SCOPED_TRACE(name);
    EXPECT_EQ(menu.Name(), name);
    EXPECT_EQ(menu.Caption(), caption);
    ASSERT_EQ(menu.ItemCount(), static_cast<std::int32_t>(expected.size()));
    const auto items = ReadAll(menu);
    for (std::size_t i = 0; i < expected.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(items[i].id, expected[i].progId);
        EXPECT_EQ(items[i].group, expected[i].group);
        EXPECT_FALSE(items[i].subType); // never set
    }
}

class CommandBarsTest : public test::ScriptedUITest {};

TEST_F(CommandBarsTest, TheToolBarCarriesTheRootMenuAndLeavesGroupAlone) {
    clsToolBar bar;
    EXPECT_EQ(bar.Name(), "Tessarine_ToolBar");
    EXPECT_EQ(bar.Caption(), "Tessarine Tools");
    ASSERT_EQ(bar.ItemCount(), 1);
    RecordingItem item;
    bar.GetItemInfo(0, item);
    EXPECT_EQ(item.id, "Tessarine.clsMenu");
    EXPECT_FALSE(item.group);
    EXPECT_FALSE(item.subType);
}

TEST_F(CommandBarsTest, MenusListTheirItemsWithSeparatorsWhereTheGroupsStart) {
    clsMenu root;
    ExpectMenu(root, "Tessarine", "&Tessarine Tools",
               {{"Tessarine.clsShapeSubMenu", false},
                {"Tessarine.clsGeodesicSubMenu", false},
                {"Tessarine.clsGraphicsSubMenu", false},
                {"Tessarine.cmdAbout", true}});
    clsShapeSubMenu shapes;
    ExpectMenu(shapes, "ToolsForShapes", "Tools for Features and Shapes",
               {{"Tessarine.clsConvertGeometry", false},
                {"Tessarine.clsConvertLabelPoint", true},
                {"Tessarine.clsConvertCentroid", false},
                {"Tessarine.clsConvertSphCentroid", false},
                {"Tessarine.clsShapesToVertices", false},
                {"Tessarine.clsConvertToPolygon", false},
                {"Tessarine.clsConvertToPolyline", false},
                {"Tessarine.clsBuildPolygon", false},
                {"Tessarine.clsConvertSplit", true},
                {"Tessarine.clsConvertJoin", false}});
    clsGraphicsSubMenu graphics;
    ExpectMenu(graphics, "ToolsForGraphics", "Tools for Graphics",
               {{"Tessarine.cmdNewShapefile", false},
                {"Tessarine.clsSelGraphics", true},
                {"Tessarine.clsSelAllElements", false},
                {"Tessarine.clsUnselElements", false},
                {"Tessarine.clsFlipGraphicSel", false},
                {"Tessarine.clsZoomToSelected", false},
                {"Tessarine.clsNameGraphics", false}});
    clsGeodesicSubMenu geodesic;
    ExpectMenu(geodesic, "GeodesicTools", "OCentric/OGraphic Geodesic Tools",
               {{"Tessarine.OGraphicToOCentric", false},
                {"Tessarine.OCentricToOGraphic", false},
                {"Tessarine.clsWrapBoundary", true}});
    EXPECT_TRUE(ui_->Errors().empty());
}

TEST_F(CommandBarsTest, PositionsOutsideTheTablesDoNothing) {
    clsToolBar bar;
    clsMenu root;
    clsShapeSubMenu shapes;
    clsGraphicsSubMenu graphics;
    clsGeodesicSubMenu geodesic;
    std::vector<IMenuDef*> menus{&root, &shapes, &graphics, &geodesic};
    for (std::int32_t pos : {-1, 1, 100, INT32_MIN}) {
        RecordingItem item;
        bar.GetItemInfo(pos, item);
        EXPECT_FALSE(item.id || item.group || item.subType) << pos;
    }
    for (IMenuDef* menu : menus)
        for (std::int32_t pos : {-1, menu->ItemCount(), menu->ItemCount() + 1, INT32_MAX}) {
            RecordingItem item;
            menu->GetItemInfo(pos, item);
            EXPECT_FALSE(item.id || item.group || item.subType) << menu->Name() << " " << pos;
        }
    EXPECT_TRUE(ui_->Errors().empty());
}

TEST_F(CommandBarsTest, EveryItemNamesAClassOfTheLibrary) {
    clsToolBar bar;
    clsMenu root;
    clsShapeSubMenu shapes;
    clsGraphicsSubMenu graphics;
    clsGeodesicSubMenu geodesic;
    std::vector<std::string> ids;
    for (const auto& item : ReadAll(bar))
        ids.push_back(*item.id);
    for (IMenuDef* menu : std::vector<IMenuDef*>{&root, &shapes, &graphics, &geodesic})
        for (const auto& item : ReadAll(*menu))
            ids.push_back(*item.id);
    // 1 + 4 + 10 + 7 + 3 items: the menu tree reaches every command once and every menu.
    EXPECT_EQ(ids.size(), 25u);
    for (const std::string& id : ids)
        EXPECT_NE(FindClass(id), nullptr) << id;
}

} // namespace
} // namespace tess
