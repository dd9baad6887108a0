#pragma once
// Internal: the bridge to the topology engine. Shapes go over as densified
// copies (true curves become straight pieces) and come back as new shapes of
// our own model made of straight lines. No engine type appears here; each
// thread has its own engine context.

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "platform/geometry/Geometry.h"
#include "platform/geometry/PolygonConstruction.h" // ClusterMethod

namespace tess {
class Polygon;
}

namespace tess::detail {

enum class OverlayOp { Union, Intersection, Difference, SymDifference };
enum class Predicate { Disjoint, Intersects, Contains, Within, Touches, Overlaps, Crosses, Equals };

//! resultType: esriGeometryPoint, Multipoint, Polyline or Polygon; components of other dimensions
//! are dropped. A polygon result has clockwise exterior rings, each followed by its holes.
std::shared_ptr<IGeometry> GeosOverlay(OverlayOp op, const IGeometry& a, const IGeometry& b,
                                       esriGeometryType resultType);
bool GeosPredicate(Predicate predicate, const IGeometry& a, const IGeometry& b);
bool GeosRelate(const IGeometry& a, const IGeometry& b, const std::string& pattern);
std::shared_ptr<IGeometry> GeosBuffer(const IGeometry& a, double distance);
std::shared_ptr<IGeometry> GeosConvexHull(const IGeometry& a);
//! Union of all members; polylines are merged into maximal paths afterwards.
std::shared_ptr<IGeometry> GeosUnionAll(const std::vector<std::shared_ptr<IGeometry>>& members,
                                        esriGeometryType resultType);
//! A point strictly inside a polygon (densified, made valid first). False for an empty polygon.
bool GeosLabelPoint(const Polygon& polygon, WKSPoint& out);
//! Whether closed vertex rings neither cross nor touch themselves or one another.
bool GeosRingsSimple(std::span<const std::span<const WKSPoint>> rings);
//! The even-odd area of closed rings (a point is inside when an odd number of rings surround it),
//! made valid, into out (replacing its rings).
void GeosEvenOddPolygon(std::span<const std::span<const WKSPoint>> rings, Polygon& out);
//! Splits a polyline or polygon by a polyline into the pieces left and right of the cutter's
//! direction. Fault when the cutter leaves one side empty.
//! The faces of the line work: the lines are brought together by the tolerance (none at 0), noded
//! where they cross, and every bounded region becomes one polygon (clockwise exterior, holes
//! counter-clockwise). Each line is a list of vertices; lines of fewer than two take no part.
std::vector<std::shared_ptr<Polygon>> GeosPolygonizeLines(const std::vector<std::vector<WKSPoint>>& lines,
                                                          double tolerance, ClusterMethod method);
//! The same for shapes: the paths of polylines and the rings of polygons, densified.
std::vector<std::shared_ptr<Polygon>> GeosPolygonizeShapes(const std::vector<std::shared_ptr<IGeometry>>& shapes,
                                                           double tolerance, ClusterMethod method);

void GeosCut(const IGeometry& shape, const IPolyline& cutter, std::shared_ptr<IGeometry>& left,
             std::shared_ptr<IGeometry>& right);

} // namespace tess::detail
