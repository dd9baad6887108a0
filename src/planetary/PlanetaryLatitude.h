#pragma once
// Planetocentric latitudes (measured at the planet's centre) and planetographic
// ones (measured from the normal to the spheroid), point by point and for a
// whole geometry. Angles in decimal degrees. k = (SemiMajor / SemiMinor)^2, and
// tan(graphic) = k tan(centric). Longitudes are shifted by LongShift and not
// brought into any range.

#include <memory>

namespace tess {
class IGeometry;
}

namespace tess::MyGeometricOperations {

//! Planetocentric to planetographic. On a fault (e.g. SemiMinor 0) the report names this
//! routine and the latitude output is left as it was.
void XYOCentricToOGraphic(double Lon, double Lat, double SemiMajor, double SemiMinor, double LongShift,
                          double& NewLon, double& NewLat);
//! Planetographic to planetocentric.
void XYOGraphicToOCentric(double Lon, double Lat, double SemiMajor, double SemiMinor, double LongShift,
                          double& NewLon, double& NewLat);

//! A new geometry (point, polyline, polygon or multipoint) with every vertex converted from
//! planetocentric to planetographic. An axis of 0 or less asks for the spheroid of the
//! geometry's own geographic reference; its axes are then written back to SemiMajor and
//! SemiMinor. Null, after a message, for another reference or geometry kind.
std::shared_ptr<IGeometry> FeaturePlanetOCentricToPlanetOGraphic(const IGeometry& Geometry, double& SemiMajor,
                                                                 double& SemiMinor, double LongShift);
//! As FeaturePlanetOCentricToPlanetOGraphic, the other way.
std::shared_ptr<IGeometry> FeaturePlanetOGraphicToPlanetOCentric(const IGeometry& Geometry, double& SemiMajor,
                                                                 double& SemiMinor, double LongShift);

} // namespace tess::MyGeometricOperations
