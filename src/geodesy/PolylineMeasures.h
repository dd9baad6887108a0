#pragma once
// Length of a polyline on a spheroid and the position at a distance or fraction
// along it. Each segment counts as the geodesic between its ends (a true curve as
// its chord: densify first to measure the curve). Coordinates are longitude (X)
// and latitude (Y) in degrees. Gaps between parts are not counted.

#include <memory>

namespace tess {
class IPoint;
class IPolyline;
} // namespace tess

namespace tess::MyGeometricOperations {

//! Sum of the Vincenty distances of the segments on WGS 1984, in metres; 0 after a fault.
double SpheroidalPolylineLength(const IPolyline& Polyline);
//! The same on the spheroid (SemiMajor, SemiMinor), in the axes' unit.
double SpheroidalPolylineLength2(const IPolyline& Polyline, double SemiMajor, double SemiMinor);

//! A new point at Position along the line: a fraction of the length when AsRatio (clamped to
//! [0, 1] and written back), else a distance in the axes' unit. Segment lengths use SemiMajor
//! and SemiMinor; the last step along the chosen segment uses the spheroid of the polyline's
//! own reference. TotalLength receives the length. At or past the end of the line the walk
//! starts from (0, 0) with the last segment's length and azimuth: the routine serves positions
//! inside the line.
std::shared_ptr<IPoint> SpheroidalPolylineMidpoint2(const IPolyline& Polyline, double& Position, bool AsRatio,
                                                    double& TotalLength, double SemiMajor, double SemiMinor);

} // namespace tess::MyGeometricOperations
