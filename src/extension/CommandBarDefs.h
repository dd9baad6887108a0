#pragma once
// The toolbar and the menus of the extension: pure definitions that the host
// reads item by item. The toolbar carries the root menu only; the root menu
// carries the three sub-menus and the About command.

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "platform/framework/HostContracts.h"

namespace tess {

//! One position of a toolbar or menu.
struct BarItem {
    std::string_view ProgID;
    bool Group; //!< a separator above the item
};

class clsToolBar final : public IToolBarDef {
public:
    static constexpr const char* ProgID = "Tessarine.clsToolBar";
    static std::span<const BarItem> Items();

    std::int32_t ItemCount() override;
    //! Sets the item's ID only; Group and SubType are left alone. Outside the table: nothing.
    void GetItemInfo(std::int32_t pos, IItemDef& itemDef) override;
    std::string Name() override { return "Tessarine_ToolBar"; }
    std::string Caption() override { return "Tessarine Tools"; }
};

namespace detail {
//! A menu read from a fixed table: GetItemInfo sets ID and Group, never SubType, and does
//! nothing for a position outside the table.
class TableMenu : public IMenuDef {
public:
    std::int32_t ItemCount() override;
    void GetItemInfo(std::int32_t pos, IItemDef& itemDef) override;

protected:
    explicit TableMenu(std::span<const BarItem> items) : items_(items) {}

private:
    std::span<const BarItem> items_;
};
} // namespace detail

class clsMenu final : public detail::TableMenu, public IRootLevelMenu {
public:
    static constexpr const char* ProgID = "Tessarine.clsMenu";
    static std::span<const BarItem> Items();
    clsMenu() : TableMenu(Items()) {}
    std::string Name() override { return "Tessarine"; }
    std::string Caption() override { return "&Tessarine Tools"; }
};

class clsShapeSubMenu final : public detail::TableMenu {
public:
    static constexpr const char* ProgID = "Tessarine.clsShapeSubMenu";
    static std::span<const BarItem> Items();
    clsShapeSubMenu() : TableMenu(Items()) {}
    std::string Name() override { return "ToolsForShapes"; }
    std::string Caption() override { return "Tools for Features and Shapes"; }
};

class clsGraphicsSubMenu final : public detail::TableMenu {
public:
    static constexpr const char* ProgID = "Tessarine.clsGraphicsSubMenu";
    static std::span<const BarItem> Items();
    clsGraphicsSubMenu() : TableMenu(Items()) {}
    std::string Name() override { return "ToolsForGraphics"; }
    std::string Caption() override { return "Tools for Graphics"; }
};

class clsGeodesicSubMenu final : public detail::TableMenu {
public:
    static constexpr const char* ProgID = "Tessarine.clsGeodesicSubMenu";
    static std::span<const BarItem> Items();
    clsGeodesicSubMenu() : TableMenu(Items()) {}
    std::string Name() override { return "GeodesicTools"; }
    std::string Caption() override { return "OCentric/OGraphic Geodesic Tools"; }
};

} // namespace tess
