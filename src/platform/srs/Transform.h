#pragma once
// Coordinate transformation between references, and the WKT bridge that other
// platform implementation files use to hand references to the data engines.

#include <cstddef>
#include <memory>
#include <string>

namespace tess {

class ISpatialReference;

//! Transforms n points in place from one reference to another. Axis order is
//! the GIS one whatever the authority says: x is longitude or easting, y is
//! latitude or northing; angles in the reference's angular unit (degrees).
//! Transformations are cached per pair of references, so repeated calls are cheap.
//! Nothing happens when both references are equal or either is unknown.
//! Throws a Fault (fault::SpatialReferenceFailed) when a point cannot be transformed;
//! points before it may already have been changed.
void TransformCoordinates(const ISpatialReference& from, const ISpatialReference& to, double* x, double* y,
                          std::size_t n);

//! The reference as full WKT (WKT2:2019, authority codes kept) for the data
//! engines; empty for an unknown reference.
std::string ExportToWkt(const ISpatialReference& sr);

//! A reference from any WKT flavour, PROJ string or "AUTHORITY:CODE"; empty text
//! gives an unknown reference. Throws a Fault when the text cannot be read.
std::shared_ptr<ISpatialReference> FromWkt(const std::string& text);

} // namespace tess
