#pragma once
// The centre of a multipoint: in three dimensions about the spheroid's centre, for
// geographic data, or as the plain mean of X and Y, for planar data. The caller
// chooses; neither routine looks at the spatial reference to decide.

#include <memory>

namespace tess {
class IPoint;
class IPointCollection;
} // namespace tess

namespace tess::MyGeometricOperations {

//! Mean of the vertices as Earth-centred positions, taken back to the spheroid's normal through
//! it (longitude X, latitude Y, degrees). The new point has no spatial reference: the caller
//! sets it. Null after a report for an empty multipoint. Two antipodal points give (0, 180).
std::shared_ptr<IPoint> MultipointCentroidSpheroid(const IPointCollection& Multipoint, double SemiMajor,
                                                   double SemiMinor, double Height);
//! Mean X and mean Y, with the multipoint's spatial reference. Null after a report when empty.
std::shared_ptr<IPoint> MultipointCentroid(const IPointCollection& Multipoint);

} // namespace tess::MyGeometricOperations
