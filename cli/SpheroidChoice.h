#pragma once
// The spheroid of `tessarine geod`: a name or code of the system's spheroid
// catalogue, a code the platform knows, or two semi-axes.

#include <optional>
#include <string>
#include <vector>

namespace tess::cli {

struct Spheroid {
    std::string name;
    double semiMajor = 0; //!< metres for Earth and planets; any unit for given axes
    double semiMinor = 0;
    std::string group;    //!< "custom", "planetary", "Earth" or "" for given axes and codes
    std::string constant; //!< the platform's constant name, e.g. "esriSRSpheroid_Mars2000"
    std::string code;     //!< e.g. "107905"
};

//! The catalogue: custom spheroids (spheroids.dat beside the extension), planetary, Earth.
std::vector<Spheroid> SpheroidCatalogue();

//! The spheroid that `text` names: "a,b" (two axes, b <= a, both above 0), a code such as 7030 or
//! 107905, or a catalogue name ("Mars 2000", "mars2000", "esriSRSpheroid_Mars2000"; case, blanks
//! and the closing full stop do not matter). Nothing, and `problem` says why, otherwise.
std::optional<Spheroid> ParseSpheroid(const std::string& text, std::string& problem);

} // namespace tess::cli
