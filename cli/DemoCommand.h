#pragma once
// `tessarine demo`: Shapes to Vertices on the bundled demo data, into
// ./demo-output/, with the report printed. The demo grows as the tools land.

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
