#pragma once
// `tessarine geod`: the system's own Vincenty solutions for users, on any
// spheroid. Positions are longitude before latitude, in decimal degrees.
//
//   inverse: lon1 lat1 lon2 lat2         ->  distance azimuth1 azimuth2
//   direct:  lon1 lat1 azimuth distance  ->  lon2 lat2 azimuth2
//
// Azimuth2 is the direction of travel on arrival, not the azimuth back. Distances
// are in the unit of the spheroid's axes (metres for the catalogue's spheroids).

#include <string>
#include <vector>

#include "CliOptions.h"

namespace tess::cli {

struct GeodOptions {
    bool direct = false;              //!< the direct problem; false: the inverse one
    std::vector<std::string> values;  //!< one problem from the command line; empty: lines of input
    std::string spheroid;             //!< see ParseSpheroid; empty: WGS 1984
};

//! Solves one problem from the arguments, or one per line of console.in. Blank lines and lines
//! starting with "#" pass through, so that output lines stay beside their input lines. A line
//! that is no problem gets "error" and a message, and the exit code 1 at the end.
ExitCode RunGeod(const GeodOptions& options, Console& console);

//! Lists the spheroid catalogue: group, code, name and axes.
ExitCode ListSpheroids(Console& console);

} // namespace tess::cli
