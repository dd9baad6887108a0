#pragma once
// `tessarine commands`: the toolbar and menus of the extension as a host shows
// them, with the name to type for each command.

#include <string>

#include "CliOptions.h"

namespace tess::cli {

ExitCode ListCommands(Console& console, const std::string& libraryPath = "");

} // namespace tess::cli
