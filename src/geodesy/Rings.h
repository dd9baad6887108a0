#pragma once
// Reshaping for measurement: the rings of a polygon as the paths of a polyline (a
// perimeter), and true curves (circular, elliptic, Bezier) replaced by straight
// pieces, since the spherical and spheroidal routines see only segment ends.

#include <cstdint>
#include <memory>

namespace tess {
class IGeometry;
class IPolygon;
class IPolyline;
} // namespace tess

namespace tess::MyGeometricOperations {

//! A new polyline with one closed path per ring, each exterior ring followed by its holes, so
//! that its length is the perimeter with the holes. Null after a report.
std::shared_ptr<IPolyline> PolygonToPolyline(const IPolygon& Polygon);

//! A polygon whose true curves are replaced by lines: each curve gets its share of PieceCount
//! by its part of the total length, and never fewer than 8 pieces. A polyline's paths are
//! closed into rings. A polygon without true curves comes back as the very same object. On a
//! failure a message box names the routine and the result is null.
std::shared_ptr<IPolygon> CurveToPolygon(const std::shared_ptr<IGeometry>& Geometry, std::int32_t PieceCount);
//! As CurveToPolygon, giving a polyline: a polygon's rings become paths. A polyline without
//! true curves comes back as the very same object.
std::shared_ptr<IPolyline> CurveToPolyline(const std::shared_ptr<IGeometry>& Geometry, std::int32_t PieceCount);

} // namespace tess::MyGeometricOperations
