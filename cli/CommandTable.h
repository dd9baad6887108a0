#pragma once
// The one table of the host's friendly command names: the word a user types,
// the command's own Name (ICommand::Name) that the extension answers to, and how
// the headless host answers the command's dialog.

#include <span>
#include <string_view>

namespace tess::cli {

//! How the host runs a command without a screen.
enum class DialogKind {
    LayerFields, //!< the layer-and-fields dialog of the conversions, driven from the options
    Calculate,   //!< the geometry calculator's dialog, driven from the options
    Planetary,   //!< the wrap and planetary dialogs, driven from the options
    None,        //!< a direct action on the document's graphics, nothing to answer
    Unsupported, //!< a dialog the host cannot answer yet; listed, not run
};

struct FriendlyCommand {
    std::string_view friendly;    //!< e.g. "vertices"; "graphics select-all" for the graphics group
    std::string_view commandName; //!< e.g. "Tessarine_ShapesToVertices"
    DialogKind dialog;
    std::string_view caption;     //!< the menu item without its "&", for the help

};

std::span<const FriendlyCommand> FriendlyCommands();
//! The entry of a friendly name or a command Name (either compared without regard to case).
const FriendlyCommand* FindFriendlyCommand(std::string_view name);

} // namespace tess::cli
