#pragma once
// The graphics tools on the command line: `graphics-to-shapes`, `graphics select`,
// `graphics name` drive their dialogs from the options as a user would (every
// rule and message of the dialog applies), and `graphics list` shows the
// elements of a document so that a user can see what the others act on.

#include <memory>
#include <string>
#include <vector>

#include "CliOptions.h"
#include "TerminalUI.h"

namespace CLI {
class App;
class Option;
}

namespace tess {
class Form;
}

namespace tess::cli {

struct FriendlyCommand;
enum class DialogKind;

//! The parsed options of one graphics tool, as CLI11 fills them.
struct GraphicsToolOptions {
    DialogKind kind{};
    bool list = false;
    std::string commandName;
    std::string documentPath;
    // graphics-to-shapes
    std::string empty;
    std::string convert;
    bool selectedOnly = false;
    std::string output;
    std::string spatialReference;
    // graphics select
    std::vector<std::string> types;
    std::vector<std::string> names;
    std::string pattern;
    // graphics name
    std::string name;
    CLI::Option* nameOption = nullptr;
    bool all = false;
    bool selected = false;
    // graphics list
    bool layout = false;
    // the run
    bool yes = false;
    bool no = false;
    std::string reportPath;
    CLI::Option* saveOption = nullptr;
    std::string savePath;
    ProgressStyle progress = ProgressStyle::Auto;
};

//! Whether the command's dialog is one of the graphics tools'.
bool IsGraphicsTool(DialogKind kind);

//! Adds the options of the graphics tool `entry` to its sub-command; the result must live as long
//! as `sub` parses into it.
std::unique_ptr<GraphicsToolOptions> AddGraphicsToolOptions(CLI::App& sub, const FriendlyCommand& entry);
//! Adds `list` to the `graphics` group; answers the sub-command and its options.
std::unique_ptr<GraphicsToolOptions> AddGraphicsList(CLI::App& graphics, CLI::App*& listCommand);

//! Runs the tool whose sub-command was parsed; without options it prints its help.
ExitCode RunGraphicsTool(const CLI::App& sub, GraphicsToolOptions& options, Console& console,
                         const std::string& libraryPath = "");

//! The choices of `graphics-to-shapes`, for its dialog.
struct GraphicsShapefileChoices {
    std::string empty;         //!< point, polyline or polygon; empty when converting
    int convert = -1;          //!< the conversion line, 0 to 4; -1 for an empty class
    bool selectedOnly = false;
    std::string output;
    std::string spatialReference; //!< EPSG:n, a code, a .prj file or WKT; empty: the map's
};

//! The driver of frmGraphicsShapefile.
TerminalUI::FormDriver MakeGraphicsShapefileDriver(const GraphicsShapefileChoices& choices, TerminalUI& ui);

} // namespace tess::cli
