#pragma once
// The spheroid of `tessarine geod`: a name or code of the system's spheroid
// catalogue, a spheroid the platform knows by authority code or by the
// coordinate engine's ellipsoid name, or given numbers.

#include <optional>
#include <string>
#include <vector>

namespace tess::cli {

struct Spheroid {
    std::string name;
    double semiMajor = 0; //!< metres for Earth and planets; any unit for given axes
    double semiMinor = 0;
    std::string group;    //!< "custom", "planetary", "Earth" or "" for the others
    std::string constant; //!< the platform's constant name, e.g. "esriSRSpheroid_Mars2000"
    std::string code;     //!< e.g. "107905", or "EPSG:7030" as it was asked for
};

//! The catalogue: custom spheroids (spheroids.dat beside the extension), planetary, Earth.
std::vector<Spheroid> SpheroidCatalogue();

//! The spheroid that `text` names, tried in this order:
//! - "a,b": semi-major and semi-minor axis, a > 0 and a/2 <= b <= a (flattening up to 1/2, as
//!   far as the series of the solutions reach); "6378137,298.257223563" (a and 1/f) is refused
//!   with a hint to the next form;
//! - "a,f=1/RF" or "a,f=F": semi-major axis and flattening, 0 <= f <= 1/2;
//! - "AUTHORITY:CODE" (EPSG:7030, ESRI:107905);
//! - a code of the catalogue, or another spheroid code the platform knows (7030, 107905);
//! - a catalogue name ("Mars 2000", "mars2000", "esriSRSpheroid_Mars2000"; case, blanks and the
//!   closing full stop do not matter);
//! - an ellipsoid name of the coordinate engine (WGS84, GRS80, clrk66, intl, sphere...).
//! Nothing, and `problem` says why and what to write, otherwise.
std::optional<Spheroid> ParseSpheroid(const std::string& text, std::string& problem);

} // namespace tess::cli
