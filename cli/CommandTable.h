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
    BuildPolygons, //!< the polygon-building dialog, driven from the options
    None,        //!< a direct action on the document's graphics, nothing to answer
    GraphicsShapefile, //!< graphics to shapes and empty classes, driven from the options
    SelectGraphics,    //!< selection of graphics by kind, name or pattern
    NameElements,      //!< naming graphics
    Unsupported, //!< a dialog the host cannot answer yet; listed, not run
};

//! How every text of the host says that a command cannot run from the command line yet.
inline constexpr std::string_view kDesktopOnly = "desktop only for now";
//! Where such a command runs, said after kDesktopOnly where there is room.
inline constexpr std::string_view kDesktopOnlyWhere = "its dialog runs in tessarine-map";

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
