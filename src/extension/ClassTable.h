#pragma once
// The classes of the extension library by name: what DllGetClassObject creates
// and DllRegisterServer registers.

#include <cstdint>
#include <span>
#include <string_view>

namespace tess {

struct ComponentObject;

//! What a class is to the host, which decides its component category.
enum class ClassKind { Extension, ToolBar, Menu, Command, FunctionFactory };

struct ClassEntry {
    std::string_view ClassName; //!< the ProgID is "Tessarine." and this name
    ClassKind Kind;
    ComponentObject (*Create)();
};

//! The ProgIDs' common prefix.
inline constexpr std::string_view kProgIDPrefix = "Tessarine.";

//! Every class: the extension, the toolbar, the four menus, the commands, the function factory.
std::span<const ClassEntry> ClassTable();
//! The class a ProgID names, compared without regard to case; null for none.
const ClassEntry* FindClass(std::string_view progId);
//! Objects made through the table that are still alive.
std::int32_t LiveComponentObjects();

} // namespace tess
