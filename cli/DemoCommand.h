#pragma once
// `tessarine demo`: each conversion in turn on the bundled demo data, into
// ./demo-output/, with the reports printed and the map of the new layers saved
// there.

#include <string>

#include "CliOptions.h"

namespace tess::cli {

struct DemoOptions {
    std::string dataFolder;                   //!< holds demo.map.json; empty: ./data, then the sources' data/
    std::string outputFolder = "demo-output"; //!< made when missing
    ProgressStyle progress = ProgressStyle::Auto;
};

ExitCode RunDemo(const DemoOptions& options, Console& console, const std::string& libraryPath = "");

} // namespace tess::cli
