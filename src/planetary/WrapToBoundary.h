#pragma once
// Longitude shift and the wrap of a shape into a box of longitude and latitude.
// The plane is tiled with copies of the box; the part of a shape in each tile is
// cut out, moved home by whole box widths and heights, and the pieces are joined
// into one shape again. Latitudes wrap as longitudes do: there is no reflection
// at a pole. Angles in decimal degrees.

#include <memory>

namespace tess {
class IDoubleArray;
class IGeometry;
class IMxDocument;
} // namespace tess

namespace tess::MyGeometricOperations {

//! Vertex spacing along the edges that a cut by the box makes in a polygon (degrees).
inline constexpr double kWrapDensifySpacing = 0.1;

//! A new shape inside the box West..East, South..North (both edges belong to the box). A point is
//! moved by whole widths and heights; a polyline, polygon or multipoint is cut tile by tile and its
//! pieces are united into one shape of the input's kind, polygons with vertices every 0.1 degree
//! along the cut edges. Null after a fault (reported under this routine's name), e.g. for another
//! kind of shape. The document is not read; callers pass null.
std::shared_ptr<IGeometry> WrapToBoundary(const IGeometry& Geometry, double West, double East, double South,
                                          double North, const std::shared_ptr<IMxDocument>& Document);

//! Moves the shape by minus Shift(0) in X and minus Shift(1) in Y: Shift holds a tile's offset
//! from the home box, and the move brings the tile's content home.
void ShiftPointsToWrapBoundary(IGeometry& Geometry, const IDoubleArray& Shift);

//! A new point, polyline, polygon or multipoint with Shift added to every X; the input is left
//! alone. Another kind of shape gets a message and null.
std::shared_ptr<IGeometry> FeatureLongitudeShift(const IGeometry& Geometry, double Shift);

} // namespace tess::MyGeometricOperations
