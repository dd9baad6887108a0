#pragma once
// The conversion workers: each turns the features of one layer into a new
// feature class and answers the report of the run (RTF). All take the same
// request, the choices that the layer-and-fields dialog left. Each output
// feature carries Uniq_ID (from 1 across the run), the worker's own measures
// in the units of the input's reference, and the selected attributes.

#include <string>

namespace tess {

struct ConversionRequest;

//! Every vertex of every polyline, polygon and multipoint feature as a point, in the shape's own
//! order: all parts one after the other, a ring's closing vertex as a point of its own, with
//! X_Coord and Y_Coord in the input's coordinates.
std::string ConvertToVertices(const ConversionRequest& request);

//! One point strictly inside each polygon, with X_Coord and Y_Coord.
std::string ConvertToLabelPoints(const ConversionRequest& request);

//! One point per feature, by the class's shape type: a polygon's area-weighted centre (which may
//! lie outside it), the point half-way along a polyline's whole length (parts in order), the mean
//! of a multipoint's vertices (a repeated vertex counts each time). X_Coord and Y_Coord.
std::string ConvertToCentroids(const ConversionRequest& request);

//! One point per feature on the curved body: a polygon's centre on the sphere of the spheroid's
//! volume, a polyline's geodesic mid-position, a multipoint's mean through Earth-centred space.
//! The output is in the input's geographic system, X_Coord longitude and Y_Coord latitude in
//! degrees. A layer without a known coordinate system is refused before anything is made.
std::string ConvertToSphericalCentroid(const ConversionRequest& request);

//! One polygon per polyline: each part closed into a ring, the rings then simplified (a ring
//! inside another becomes a hole; a part that encloses nothing vanishes, and the record is still
//! written). Area.
std::string PolylinesToPolygons(const ConversionRequest& request);

//! One polyline per polygon: a closed path for each ring, each exterior ring followed by its
//! holes. Length, holes included.
std::string PolygonsToPolylines(const ConversionRequest& request);

//! One feature per part: a point per vertex of a multipoint (X_Coord, Y_Coord), a polyline per
//! path (Length), a polygon per exterior ring with its holes (Area). Every part carries its
//! feature's attributes.
std::string SplitMultipart(const ConversionRequest& request);

//! One feature for all the input: the points as a multipoint without repeats (Count), the union
//! of the polylines (Length) or of the polygons (Area), with the attributes of the first feature.
std::string JoinFeatures(const ConversionRequest& request);

} // namespace tess
