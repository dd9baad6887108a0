#pragma once
// The command line of `tessarine`: parses the arguments into the options of
// one of its commands and runs it. main() only hands over the process's streams.

#include <string>
#include <vector>

#include "CliOptions.h"

namespace tess::cli {

//! Runs the command line `args` (without the program's name); answers the exit code.
int RunTessarine(const std::vector<std::string>& args, Console& console);

} // namespace tess::cli
