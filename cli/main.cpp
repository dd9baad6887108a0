// tessarine: the headless host. Runs the toolkit's commands on map documents and
// datasets from the command line; everything but the process's streams is in tess_cli.

#include <unistd.h>

#include <iostream>
#include <string>
#include <vector>

#include "CliApp.h"

int main(int argc, char** argv) {
    std::vector<std::string> args(argv + 1, argv + argc);
    tess::cli::Console console{std::cin, std::cout, std::cerr, ::isatty(STDIN_FILENO) == 1,
                               ::isatty(STDERR_FILENO) == 1};
    return tess::cli::RunTessarine(args, console);
}
