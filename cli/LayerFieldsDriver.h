#pragma once
// Drives the layer-and-fields dialog of the conversions from the options, as a
// user would: picks the layer, the fields, all or selected records and the
// output, then clicks OK. Every rule and message of the dialog applies; when the
// dialog does not take the options, the driver tells the UI why and cancels.

#include <memory>

#include "TerminalUI.h"

namespace tess {
class Map;
}

namespace tess::cli {

struct RunOptions;

//! The driver for frmLayerFields. `map` is the focus map, where field aliases are looked up.
TerminalUI::FormDriver MakeLayerFieldsDriver(const RunOptions& options, TerminalUI& ui,
                                             std::shared_ptr<Map> map);

//! Where a --output path lies, in the words of the catalog's browse dialog: the location (a
//! folder, a geodatabase, a feature dataset), the name in it and the location's category.
//! Nothing for a plain folder, which the dialog takes typed into its output box.
std::optional<BrowseResult> OutputLocation(const std::string& outputPath);

} // namespace tess::cli
