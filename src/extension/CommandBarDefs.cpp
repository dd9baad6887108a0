#include "extension/CommandBarDefs.h"

#include "frame/ErrorHandling.h"

#include <array>

namespace tess {
namespace {

constexpr std::array<BarItem, 1> kToolBarItems{{{"Tessarine.clsMenu", false}}};

constexpr std::array<BarItem, 4> kMenuItems{{
    {"Tessarine.clsShapeSubMenu", false},
    {"Tessarine.clsGeodesicSubMenu", false},
    {"Tessarine.clsGraphicsSubMenu", false},
    {"Tessarine.cmdAbout", true},
}};

// The menu names the label-point command "clsConvertLabelPoint", the class itself is spelt
// "clsConvertLabelpoint"; the host matches ProgIDs without regard to case.
constexpr std::array<BarItem, 10> kShapeItems{{
    {"Tessarine.clsConvertGeometry", false},
    {"Tessarine.clsConvertLabelPoint", true},
    {"Tessarine.clsConvertCentroid", false},
    {"Tessarine.clsConvertSphCentroid", false},
    {"Tessarine.clsShapesToVertices", false},
    {"Tessarine.clsConvertToPolygon", false},
    {"Tessarine.clsConvertToPolyline", false},
    {"Tessarine.clsBuildPolygon", false},
    {"Tessarine.clsConvertSplit", true},
    {"Tessarine.clsConvertJoin", false},
}};

constexpr std::array<BarItem, 7> kGraphicsItems{{
    {"Tessarine.cmdNewShapefile", false},
    {"Tessarine.clsSelGraphics", true},
    {"Tessarine.clsSelAllElements", false},
    {"Tessarine.clsUnselElements", false},
    {"Tessarine.clsFlipGraphicSel", false},
    {"Tessarine.clsZoomToSelected", false},
    {"Tessarine.clsNameGraphics", false},
}};

constexpr std::array<BarItem, 3> kGeodesicItems{{
    {"Tessarine.OGraphicToOCentric", false},
    {"Tessarine.OCentricToOGraphic", false},
    {"Tessarine.clsWrapBoundary", true},
}};

bool InTable(std::int32_t pos, std::span<const BarItem> items) {
    return pos >= 0 && static_cast<std::size_t>(pos) < items.size();
}

} // namespace

std::span<const BarItem> clsToolBar::Items() { return kToolBarItems; }
std::span<const BarItem> clsMenu::Items() { return kMenuItems; }
std::span<const BarItem> clsShapeSubMenu::Items() { return kShapeItems; }
std::span<const BarItem> clsGraphicsSubMenu::Items() { return kGraphicsItems; }
std::span<const BarItem> clsGeodesicSubMenu::Items() { return kGeodesicItems; }

std::int32_t clsToolBar::ItemCount() { return static_cast<std::int32_t>(kToolBarItems.size()); }

void clsToolBar::GetItemInfo(std::int32_t pos, IItemDef& itemDef) {
    TrappedVoid("IToolBarDef_GetItemInfo ", [&] {
        if (InTable(pos, kToolBarItems))
            itemDef.ID(std::string(kToolBarItems[static_cast<std::size_t>(pos)].ProgID));
    });
}

namespace detail {

std::int32_t TableMenu::ItemCount() { return static_cast<std::int32_t>(items_.size()); }

void TableMenu::GetItemInfo(std::int32_t pos, IItemDef& itemDef) {
    TrappedVoid("IMenuDef_GetItemInfo ", [&] {
        if (!InTable(pos, items_))
            return;
        const BarItem& item = items_[static_cast<std::size_t>(pos)];
        itemDef.ID(std::string(item.ProgID));
        itemDef.Group(item.Group);
    });
}

} // namespace detail
} // namespace tess
