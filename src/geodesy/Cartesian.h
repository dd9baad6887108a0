#pragma once
// Earth-centred Cartesian coordinates from and to longitude and latitude
// (decimal degrees): on a sphere and on a spheroid. Z runs through the north
// pole, X through longitude 0, Y through longitude 90 east. The formulas work
// with the colatitude (90 - latitude). Each routine reports its own faults and
// then leaves its outputs as they were.

namespace tess::MyGeometricOperations {

//! Position on a sphere of the given radius.
void SphericalLatLongToCart(double Lon, double Lat, double& X, double& Y, double& Z, double Radius);
//! Position at height Height above the spheroid (SemiMajor, SemiMinor), along its normal.
void SpheroidalLatLongToCart(double Lon, double Lat, double& X, double& Y, double& Z, double SemiMajor,
                             double SemiMinor, double Height);
//! Direction of (X, Y, Z) from the centre; Lon in [-180, 180]. The origin gives Lon 0, Lat 90.
void SphericalCartToLatLong(double& Lon, double& Lat, double X, double Y, double Z);
//! One closed step of Bowring's formula, no iteration: the latitude of the spheroid's normal
//! through the point, also for points well inside. Height is not read and no height is given.
void SpheroidalCartToLatLong(double& Lon, double& Lat, double X, double Y, double Z, double SemiMajor,
                             double SemiMinor, double Height);
//! Plain mean of three points, neither normalised nor put back on a surface.
void TriangleCentroid3D(double X1, double Y1, double Z1, double X2, double Y2, double Z2, double X3, double Y3,
                        double Z3, double& CX, double& CY, double& CZ);

} // namespace tess::MyGeometricOperations
