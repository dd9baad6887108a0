#pragma once
// The constants of the extension's commands: name, caption, tool tip, status
// message and bitmap id of each command class, in one table.

#include <cstdint>
#include <span>
#include <string_view>

namespace tess {

struct CommandInfo {
    std::string_view ClassName; //!< e.g. "clsShapesToVertices"
    std::string_view Name;      //!< ICommand::Name, e.g. "Tessarine_ShapesToVertices"
    std::string_view Caption;   //!< with the menu's access key mark "&"
    std::string_view Tooltip;   //!< may be empty
    std::string_view Message;
    std::int32_t BitmapId;      //!< id of the 16 x 16 picture among the library's resources
};

//! The category every command is listed under.
inline constexpr std::string_view kCommandCategory = "Halvorn";

//! Every command class, in the order of the menus (features and shapes, graphics, planetary, about).
std::span<const CommandInfo> AllCommands();
//! The entry of a command class (exact spelling); a Fault for a class that is not a command.
const CommandInfo& CommandInfoOf(std::string_view className);
//! The caption without its "&" marks, as a sentence names the tool.
std::string CaptionText(std::string_view caption);

} // namespace tess
