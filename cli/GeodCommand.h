#pragma once
// `tessarine geod`: the system's own Vincenty solutions for users, on any
// spheroid. Positions are longitude before latitude, in decimal degrees.
//
//   inverse: lon1 lat1 lon2 lat2         ->  distance azimuth1 azimuth2
//   direct:  lon1 lat1 azimuth distance  ->  lon2 lat2 azimuth2
//
// Azimuth2 is the direction of travel on arrival, not the azimuth back. Distances
// are in the unit of the spheroid's axes (metres for the catalogue's spheroids).

#include <array>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "CliOptions.h"

namespace CLI {
class App;
}

namespace tess::cli {

struct GeodOptions {
    bool direct = false;              //!< the direct problem; false: the inverse one
    std::vector<std::string> values;  //!< one problem from the command line; empty: lines of input
    std::string spheroid;             //!< see ParseSpheroid; empty: WGS 1984
    int precision = 4;                //!< decimal places of distances; angles get 5 more
};

//! Solves one problem from the arguments, or one per line of console.in. Blank lines and lines
//! starting with "#" pass through, so that output lines stay beside their input lines. A problem
//! that cannot be solved gets "error" and a message, the others are still answered, and the exit
//! code is 1 at the end. A solution whose loop ran out of passes is printed with a marker and a
//! warning. A wrong count of numbers on the command line is bad usage.
ExitCode RunGeod(const GeodOptions& options, Console& console);

//! Lists the spheroid catalogue: group, code, name and axes.
ExitCode ListSpheroids(Console& console);

//! `geod` and its subcommands, declared on a command line.
class GeodCommandLine {
public:
    explicit GeodCommandLine(CLI::App& parent);
    GeodCommandLine(const GeodCommandLine&) = delete;
    GeodCommandLine& operator=(const GeodCommandLine&) = delete;

    //! The `geod` group, whose help is shown when no subcommand follows it.
    CLI::App* Group() const { return group_; }
    //! Runs the subcommand that the parsed command line chose; nothing when none was chosen.
    std::optional<ExitCode> Dispatch(Console& console);

private:
    static constexpr std::size_t kValues = 4;
    struct Problem {
        GeodOptions options;
        std::array<std::string, kValues> words; //!< the positionals as given
    };
    CLI::App* group_ = nullptr;
    CLI::App* spheroids_ = nullptr;
    std::map<CLI::App*, Problem> problems_;
};

} // namespace tess::cli
