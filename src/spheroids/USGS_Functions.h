#pragma once
// The spheroid catalogue: custom spheroids from the text file "spheroids.dat"
// beside the extension, and the planetary and common Earth spheroids that the
// platform knows by code. Only names and codes are kept here; the axes always
// come from the platform's spheroid factory. Nothing is cached: each call of
// GetSpheroids reads the file again.

#include <memory>
#include <string>

namespace tess {
class IVariantArray;
class ISpheroid;
class ISpatialReferenceFactory;
} // namespace tess

namespace tess::USGS_Functions {

//! The folder that holds "spheroids.dat": the extension's own folder. The extension sets it
//! when it loads; until then it is the current folder.
std::string AppPath();
void AppPath(const std::string& folder);

//! Six entries, in this order: custom rows (a Collection keyed by unique name, or Nothing when
//! the file is missing), custom names (an IStringArray in file order, or Nothing), planetary
//! rows, planetary names, Earth rows, Earth names. A custom row is an IVariantArray of name,
//! semi-major axis, semi-minor axis and the line's fourth field; a platform row has name,
//! SemiMajorAxis, SemiMinorAxis, the constant's name and a clone of the ISpheroid.
//! Null, after a report, when the catalogue fails, which a file without one valid line does.
std::shared_ptr<IVariantArray> GetSpheroids();

//! One line per planetary spheroid (71, codes 107900 to 107970): constant name, code and display
//! text separated by blanks, each line ended by CR LF.
std::string ESRIPlanetString();
//! The same for the 56 common Earth spheroids, in their own order.
std::string ESRICommonEarthString();

//! The platform's spheroid for the code text, or null, silently, for a code it does not know.
std::shared_ptr<ISpheroid> SpheroidFromCode(const ISpatialReferenceFactory& factory, const std::string& code);

} // namespace tess::USGS_Functions
