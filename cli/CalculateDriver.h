#pragma once
// `tessarine calculate`: its options, and the drivers that answer the geometry
// calculator's dialog and its spheroid dialog from them, as a user would: the
// layer, the measures by caption or id with their field names, all or selected
// records, the spheroid and the latitude kind; then OK, with the dialog's own
// questions answered by --yes/--no. --list prints what the layer offers instead.

#include <iosfwd>
#include <memory>
#include <optional>
#include <string>

#include "TerminalUI.h"

namespace CLI {
class App;
}

namespace tess {
class Map;
}

namespace tess::cli {

struct RunOptions;

//! The options of calculate besides those of every command: --input, --all/--selected,
//! --measure, --list, --spheroid, --planetocentric. `all` and `selected` are the caller's flags.
void AddCalculateOptions(CLI::App& sub, RunOptions& run, bool& all, bool& selected);

//! The help's closing text.
extern const char* const kCalculateExamples;

//! Registers the drivers of frmGeometry and frmSpheroidOptionsExt; --list goes to `out`.
void RegisterCalculateDrivers(const RunOptions& options, TerminalUI& ui, std::shared_ptr<Map> map, std::ostream& out);

//! Why a run that ended with this report calculated nothing (a layer that cannot be edited, a
//! field that cannot be made, a spheroid without radii); nothing when it ran.
std::optional<std::string> CalculateFailure(const std::string& report);

} // namespace tess::cli
