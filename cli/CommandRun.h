#pragma once
// One run of a command of the extension, headless: the document opened or made
// from datasets, the command clicked, its dialog driven from the options, the
// report printed and the document saved. The library function behind
// `tessarine vertices`, `tessarine graphics ...` and `tessarine demo`.

#include <memory>
#include <string>

#include "CliOptions.h"

namespace tess {
class IFeatureLayer;
}

namespace tess::cli {

//! Runs options.commandName with the extension library at libraryPath (FindExtensionLibrary's
//! answer when empty). Messages go to console.err, the report to console.out.
ExitCode RunCommand(const RunOptions& options, Console& console, const std::string& libraryPath = "");

//! A layer over the dataset at `path` (see LayerSource): a shapefile, a class of a file
//! geodatabase (also inside a feature dataset), a table of a GeoPackage. A tess::Fault names
//! the path when it cannot be opened.
std::shared_ptr<IFeatureLayer> OpenDatasetLayer(const std::string& path);

} // namespace tess::cli
