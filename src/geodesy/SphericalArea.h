#pragma once
// Area and centre of polygons on the globe, in geographic coordinates (X
// longitude, Y latitude, degrees). The globe is the sphere of the same volume as
// the spheroid, R = (a^2 b)^(1/3). The area is the sum of signed spherical
// triangles, one per segment, with the planar centroid of the segment's connected
// component as the third corner; holes subtract because they run the other way.
// True curves count as their chords.
//
// Accuracy: the sum of triangles is exact on the sphere; against an independent
// computation on the same sphere the areas agree to 1e-9 relative (rounding and
// the cut pi), holes, several components and polar rings included. The centre
// weights the direction of each flat triangle's mean by the triangle's spherical
// area: within 1e-4 degrees of the exact spherical centre for rings 10 degrees
// across, a few degrees off for shapes of continental size. The apex is the
// planar centroid: a ring stored across the antimeridian (179 to -179) puts it on
// the far side of the globe and its area is wrong. Callers split such rings.

namespace tess {
class IPoint;
class IPolygon;
} // namespace tess

namespace tess::MyGeometricOperations {

//! Signed area of the triangle on the WGS 1984 sphere (R = 6371000.790009154 m), in m^2;
//! positive when P1, P2, P3 run clockwise seen from above. Sign receives -1 or +1; a degenerate
//! triangle (all on one meridian, or two corners equal within 1e-12 degrees) gives 0 and
//! leaves Sign as it was.
double SphericalTriangleArea(const IPoint& P1, const IPoint& P2, const IPoint& P3, double& Sign);
//! As SphericalTriangleArea, on the sphere of the spheroid (SemiMajor, SemiMinor).
double SphericalTriangleArea2(const IPoint& P1, const IPoint& P2, const IPoint& P3, double& Sign,
                              double SemiMajor, double SemiMinor);

//! Signed area on the WGS 1984 sphere, m^2: positive for clockwise exterior rings. With
//! WantCentroid the area-weighted centre goes to CentroidLon and CentroidLat (degrees), or
//! -9999 for both when the area is 0 or negative (an empty polygon, counter-clockwise rings).
double SphericalPolygonArea(const IPolygon& Polygon, bool WantCentroid, double& CentroidLon, double& CentroidLat);
//! As SphericalPolygonArea, on the sphere of the spheroid. Snaps the caller's polygon to its
//! spatial reference first, in place.
double SphericalPolygonArea2(IPolygon& Polygon, bool WantCentroid, double& CentroidLon, double& CentroidLat,
                             double SemiMajor, double SemiMinor);

} // namespace tess::MyGeometricOperations
