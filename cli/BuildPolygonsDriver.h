#pragma once
// The build-polygons command: its own options, and the driver that answers
// the polygon-building dialog from them as a user would: the polyline layer,
// all or selected lines, the cluster tolerance, the label point layer with its
// rule and fields, and the output. Every rule of the dialog applies; when it
// does not take the options, the driver says why and cancels.

#include <memory>

#include "LayerFieldsDriver.h" // InputChoice
#include "TerminalUI.h"

namespace CLI {
class App;
}

namespace tess {
class Map;
}

namespace tess::cli {

struct RunOptions;
struct BuildPolygonsOptions;

//! Adds --cluster-tolerance, --labels, --label-rule, --all-labels and --selected-labels.
void AddBuildPolygonsOptions(CLI::App& sub, BuildPolygonsOptions& options);
//! After parsing: a --labels that names a dataset becomes one more layer of the map, behind the
//! --layer ones, so that the input stays the first --layer. Throws std::invalid_argument for
//! label options without --labels.
void CompleteBuildPolygonsOptions(RunOptions& run);
//! The closing text of the command's help.
const char* BuildPolygonsFooter();

//! The driver for frmBuildParams. `map` is the focus map, where the dialog's layers are found.
TerminalUI::FormDriver MakeBuildPolygonsDriver(const RunOptions& options, TerminalUI& ui, std::shared_ptr<Map> map,
                                               InputChoice input);

} // namespace tess::cli
