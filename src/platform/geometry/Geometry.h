#pragma once
// Interfaces of the geometry model, as the logic sees them. Every concrete
// class (Point.h, Polygon.h, ...) implements several of these; move between
// them with std::dynamic_pointer_cast. Shape interfaces form one chain down to
// IGeometry (IPolygon4 : IPolygon2 : IPolygon : IPolycurve : ICurve : IGeometry);
// the collection, operator and transform interfaces are separate roots, so no
// class inherits IGeometry twice.
//
// Conventions: indexes and counts are 32-bit, from 0. Angles are radians,
// counter-clockwise positive. Getters that return a geometry return a new
// object (a copy) unless they say "live".

#include <cstdint>
#include <memory>
#include <string>
#include <vector> // QueryExteriorRings answers a list

#include "platform/geometry/GeometryTypes.h"

namespace tess {

class ISpatialReference;
class IEnvelope;
class IPoint;
class IRing;
class IPolyline;
class IGeometryBag;
class IEnumVertex;
class IEnumGeometry;
class IEnumSegment;

//! Common base of shapes.
class IGeometry {
public:
    virtual ~IGeometry() = default;
    virtual esriGeometryType GeometryType() const = 0;
    //! Shared, not copied: several geometries may hold the same reference. May be null.
    virtual std::shared_ptr<ISpatialReference> SpatialReference() const = 0;
    virtual void SpatialReference(std::shared_ptr<ISpatialReference> reference) = 0;
    virtual bool IsEmpty() const = 0;
    virtual void SetEmpty() = 0;
    //! A new envelope around the shape (true curves by their extreme points). Empty for an empty shape.
    virtual std::shared_ptr<IEnvelope> Envelope() const = 0;
    virtual void QueryEnvelope(IEnvelope& envelope) const = 0;
    //! Changes the coordinates in place to the given reference. Nothing happens when either
    //! reference is absent or unknown. True curves are densified first.
    virtual void Project(std::shared_ptr<ISpatialReference> reference) = 0;
    //! Rounds X and Y to the grid of the reference: origin + round((v - origin) * units) / units.
    virtual void SnapToSpatialReference() = 0;
};

class IPoint : public IGeometry {
public:
    virtual void PutCoords(double x, double y) = 0;
    virtual void QueryCoords(double& x, double& y) const = 0;
    virtual double X() const = 0;
    virtual void X(double x) = 0;
    virtual double Y() const = 0;
    virtual void Y(double y) = 0;
};

//! An axis-aligned rectangle. A new envelope is empty until coordinates are put.
class IEnvelope : public IGeometry {
public:
    virtual void PutCoords(double xMin, double yMin, double xMax, double yMax) = 0;
    virtual void QueryCoords(double& xMin, double& yMin, double& xMax, double& yMax) const = 0;
    virtual double XMin() const = 0;
    virtual void XMin(double value) = 0;
    virtual double YMin() const = 0;
    virtual void YMin(double value) = 0;
    virtual double XMax() const = 0;
    virtual void XMax(double value) = 0;
    virtual double YMax() const = 0;
    virtual void YMax(double value) = 0;
    virtual double Width() const = 0;
    virtual double Height() const = 0;
    //! Grows to take in the other envelope; an empty one adds nothing.
    virtual void Union(const IEnvelope& other) = 0;
    //! Grows by dx, dy on each side, or when asRatio scales width and height by dx, dy about the centre.
    virtual void Expand(double dx, double dy, bool asRatio) = 0;
    //! Shrinks to the common part; empty when the two do not meet.
    virtual void Intersect(const IEnvelope& other) = 0;
    //! Moves the centre to the point, keeping width and height.
    virtual void CenterAt(const IPoint& center) = 0;
    virtual std::shared_ptr<IPoint> LowerLeft() const = 0;
    virtual std::shared_ptr<IPoint> LowerRight() const = 0;
    virtual std::shared_ptr<IPoint> UpperLeft() const = 0;
    virtual std::shared_ptr<IPoint> UpperRight() const = 0;
};

//! A shape with a start and an end: segments, paths, rings, polylines, polygons.
class ICurve : public IGeometry {
public:
    //! Planar length in the units of the reference; true curves by their shape, not their chord.
    virtual double Length() const = 0;
    virtual std::shared_ptr<IPoint> FromPoint() const = 0;
    virtual void FromPoint(const IPoint& point) = 0;
    virtual std::shared_ptr<IPoint> ToPoint() const = 0;
    virtual void ToPoint(const IPoint& point) = 0;
    virtual void QueryFromPoint(IPoint& point) const = 0;
    virtual void QueryToPoint(IPoint& point) const = 0;
    //! The point at a distance along the curve (or at a ratio of its length when asRatio).
    //! With esriNoExtension a distance beyond an end clamps to that end; the extend options
    //! continue along the tangent at that end instead. Parts are walked in order.
    virtual void QueryPoint(esriSegmentExtension extension, double distanceAlongCurve, bool asRatio,
                            IPoint& outPoint) const = 0;
    //! Nearest point of the curve to inPoint, its distance along the curve (a ratio when asRatio),
    //! its distance from inPoint, and whether inPoint lies right of the curve's direction there.
    virtual void QueryPointAndDistance(esriSegmentExtension extension, const IPoint& inPoint, bool asRatio,
                                       IPoint& outPoint, double& distanceAlongCurve,
                                       double& distanceFromCurve, bool& rightSide) const = 0;
    //! Start and end coincide (every part, for a multipart shape).
    virtual bool IsClosed() const = 0;
    virtual void ReverseOrientation() = 0;
};

//! One piece between two vertices: Line, CircularArc, EllipticArc or BezierCurve.
class ISegment : public ICurve {};

class ILine : public ISegment {
public:
    virtual void PutCoords(const IPoint& from, const IPoint& to) = 0;
    //! Direction from start to end.
    virtual double Angle() const = 0;
};

class ICircularArc : public ISegment {
public:
    //! Centre and ends; the radius is the distance from centre to start, and the end is
    //! moved onto the circle. Minor and major choose the shorter or the longer way round.
    virtual void PutCoords(const IPoint& center, const IPoint& from, const IPoint& to,
                           esriArcOrientation orientation) = 0;
    //! The arc through three points, from first to last by way of the middle one.
    //! Collinear points give a straight arc of infinite radius, which is refused (Fault).
    virtual void ConstructThreePoints(const IPoint& from, const IPoint& middle, const IPoint& to) = 0;
    //! centralAngle > 0 runs counter-clockwise; |centralAngle| of 2 pi or more gives a full circle.
    virtual void PutCoordsByAngle(const IPoint& center, double fromAngle, double centralAngle,
                                  double radius) = 0;
    //! A full circle starting and ending at the point east of the centre.
    virtual void ConstructCircle(const IPoint& center, double radius, bool isCounterClockwise) = 0;
    virtual std::shared_ptr<IPoint> CenterPoint() const = 0;
    virtual void QueryCenterPoint(IPoint& center) const = 0;
    virtual double Radius() const = 0;
    //! Signed: positive counter-clockwise.
    virtual double CentralAngle() const = 0;
    virtual double FromAngle() const = 0;
    virtual double ToAngle() const = 0;
    virtual bool IsCounterClockwise() const = 0;
    virtual bool IsMinor() const = 0;
};

//! An arc of an ellipse. Angles of points on it are polar angles as seen from the centre,
//! measured from the major axis (so they do not depend on the rotation).
class IEllipticArc : public ISegment {
public:
    //! rotation: direction of the major axis; minorMajorRatio in (0, 1]; centralAngle > 0 runs
    //! counter-clockwise and |centralAngle| of 2 pi or more gives the full ellipse.
    virtual void PutCoordsByAngle(const IPoint& center, double rotation, double semiMajor,
                                  double minorMajorRatio, double fromAngle, double centralAngle) = 0;
    //! The full ellipse inscribed in the envelope, major axis along its longer side, starting
    //! at the end of the major axis on the right (or top) and running clockwise, so that a
    //! ring made of it is an exterior ring.
    virtual void ConstructEnvelope(const IEnvelope& envelope) = 0;
    virtual std::shared_ptr<IPoint> CenterPoint() const = 0;
    virtual void QueryCenterPoint(IPoint& center) const = 0;
    virtual double SemiMajor() const = 0;
    virtual double SemiMinor() const = 0;
    virtual double MinorMajorRatio() const = 0;
    virtual double Rotation() const = 0;
    virtual double FromAngle() const = 0;
    virtual double CentralAngle() const = 0;
    virtual bool IsCounterClockwise() const = 0;
};

//! A cubic Bezier curve of four control points; the first and last are its ends.
class IBezierCurve : public ISegment {
public:
    virtual void PutCoords(const IPoint& from, const IPoint& control1, const IPoint& control2,
                           const IPoint& to) = 0;
    //! index 0 to 3.
    virtual void QueryCoord(std::int32_t index, IPoint& point) const = 0;
    virtual void PutCoord(std::int32_t index, const IPoint& point) = 0;
};

//! One connected run of segments.
class IPath : public ICurve {};

class IRing : public IPath {
public:
    //! Adds a closing line when the end is not the start.
    virtual void Close() = 0;
    //! Clockwise rings are exterior, counter-clockwise rings are holes.
    virtual bool IsExterior() const = 0;
};

class IPolycurve : public ICurve {};

class IPolyline : public IPolycurve {
public:
    //! Removes repeated vertices and parts without length, keeping paths as they are.
    virtual void SimplifyNetwork() = 0;
};

class IPolygon : public IPolycurve {
public:
    virtual std::int32_t ExteriorRingCount() const = 0;
    //! Holes of the given exterior ring: those whose smallest containing exterior ring it is.
    virtual std::int32_t InteriorRingCount(const IRing& exteriorRing) const = 0;
    //! The exterior rings, live, in the order of the polygon.
    virtual std::vector<std::shared_ptr<IRing>> QueryExteriorRings() const = 0;
    //! Closes every ring.
    virtual void Close() = 0;
};

class IPolygon2 : public IPolygon {
public:
    //! At most count exterior rings, live, in order.
    virtual void QueryExteriorRingsEx(std::int32_t count, std::vector<std::shared_ptr<IRing>>& rings) const = 0;
    virtual void QueryInteriorRingsEx(const IRing& exteriorRing, std::int32_t count,
                                      std::vector<std::shared_ptr<IRing>>& rings) const = 0;
};

class IPolygon4 : public IPolygon2 {
public:
    //! A bag of the exterior rings (live), in order.
    virtual std::shared_ptr<IGeometryBag> ExteriorRingBag() const = 0;
    //! A bag of the holes (live) of the given exterior ring, in order.
    virtual std::shared_ptr<IGeometryBag> InteriorRingBag(const IRing& exteriorRing) const = 0;
    //! A bag of new polygons, one for each exterior ring with copies of it and its holes,
    //! in the order of the exterior rings.
    virtual std::shared_ptr<IGeometryBag> ConnectedComponentBag() const = 0;
};

class IMultipoint : public IGeometry {};

class IGeometryBag : public IGeometry {};

//! Vertices of a shape, in order, from 0. A closed ring counts its closing vertex.
class IPointCollection {
public:
    virtual ~IPointCollection() = default;
    virtual std::int32_t PointCount() const = 0;
    //! A copy of the vertex.
    virtual std::shared_ptr<IPoint> Point(std::int32_t index) const = 0;
    virtual void QueryPoint(std::int32_t index, IPoint& point) const = 0;
    //! Appends to the last part, starting one when there is none.
    virtual void AddPoint(const IPoint& point) = 0;
    virtual void AddWKSPoints(std::int32_t count, const WKSPoint* points) = 0;
    virtual void UpdatePoint(std::int32_t index, const IPoint& point) = 0;
    //! Inserts before the vertex at index (within its part); index PointCount appends.
    virtual void InsertWKSPoints(std::int32_t index, std::int32_t count, const WKSPoint* points) = 0;
    virtual void RemovePoints(std::int32_t index, std::int32_t count) = 0;
    //! Replaces the vertices by those of the other collection, parts included.
    virtual void SetPointCollection(const IPointCollection& other) = 0;
    virtual void QueryWKSPoints(std::int32_t index, std::int32_t count, WKSPoint* points) const = 0;
    //! An enumerator that can also write the vertices it returns. Valid while the shape lives.
    virtual std::shared_ptr<IEnumVertex> EnumVertices() const = 0;
};

//! Walks vertices: part by part, vertex by vertex.
class IEnumVertex {
public:
    virtual ~IEnumVertex() = default;
    virtual void Reset() = 0;
    //! point is null and vertexIndex -1 at the end.
    virtual void Next(std::shared_ptr<IPoint>& point, std::int32_t& partIndex, std::int32_t& vertexIndex) = 0;
    //! partIndex and vertexIndex become -1 at the end; point is left as it is then.
    virtual void QueryNext(IPoint& point, std::int32_t& partIndex, std::int32_t& vertexIndex) = 0;
    //! Write to the vertex last returned.
    virtual void put_X(double x) = 0;
    virtual void put_Y(double y) = 0;
    virtual bool IsLastInPart() const = 0;
};

//! Segments of a path, ring or multipart shape.
class ISegmentCollection {
public:
    virtual ~ISegmentCollection() = default;
    virtual std::int32_t SegmentCount() const = 0;
    //! A copy of the segment (write back with the collection's own operations).
    virtual std::shared_ptr<ISegment> Segment(std::int32_t index) const = 0;
    //! Appends a copy. On a path or ring the segment is joined to the end; on a polyline or
    //! polygon a segment that does not start where the last part ends starts a new part.
    virtual void AddSegment(const ISegment& segment) = 0;
    //! Appends copies of all segments of the other collection, by the rule of AddSegment.
    virtual void AddSegmentCollection(const ISegmentCollection& segments) = 0;
    virtual bool HasNonLinearSegments() const = 0;
    virtual std::shared_ptr<IEnumSegment> EnumSegments() const = 0;
};

class IEnumSegment {
public:
    virtual ~IEnumSegment() = default;
    virtual void Reset() = 0;
    //! segment is null and segmentIndex -1 at the end; each segment is a copy.
    virtual void Next(std::shared_ptr<ISegment>& segment, std::int32_t& partIndex,
                      std::int32_t& segmentIndex) = 0;
    virtual bool IsLastInPart() const = 0;
};

//! Parts of a multipart shape (paths, rings, points) or members of a bag.
class IGeometryCollection {
public:
    virtual ~IGeometryCollection() = default;
    virtual std::int32_t GeometryCount() const = 0;
    //! The live part: changing it changes the owner.
    virtual std::shared_ptr<IGeometry> Geometry(std::int32_t index) const = 0;
    //! Adds the part itself when it is of the owner's part kind (a ring to a polygon, a path to a
    //! polyline, a point to a multipoint, anything to a bag); other kinds are converted to a new part.
    virtual void AddGeometry(std::shared_ptr<IGeometry> geometry) = 0;
    virtual void RemoveGeometries(std::int32_t index, std::int32_t count) = 0;
};

//! Walks the members of a bag.
class IEnumGeometry {
public:
    virtual ~IEnumGeometry() = default;
    virtual void Reset() = 0;
    //! Null at the end.
    virtual std::shared_ptr<IGeometry> Next() = 0;
};

//! Planar area, centre of gravity and an inside point.
class IArea {
public:
    virtual ~IArea() = default;
    //! Positive for clockwise exterior rings, holes subtract; true curves counted exactly.
    virtual double Area() const = 0;
    //! Area-weighted centre, holes subtracted; may lie outside the shape.
    virtual std::shared_ptr<IPoint> Centroid() const = 0;
    virtual void QueryCentroid(IPoint& centroid) const = 0;
    //! A point strictly inside the interior.
    virtual std::shared_ptr<IPoint> LabelPoint() const = 0;
    virtual void QueryLabelPoint(IPoint& labelPoint) const = 0;
};

//! Set operations. True curves are densified on their way to the engine; results come back as lines.
class ITopologicalOperator {
public:
    virtual ~ITopologicalOperator() = default;
    //! True after Simplify until the shape is changed.
    virtual bool IsKnownSimple() const = 0;
    //! Whether Simplify would leave the shape as it is.
    virtual bool IsSimple() const = 0;
    //! Makes the shape valid in place: polygon exterior rings clockwise and holes counter-clockwise,
    //! rings nested even-odd, self-intersections resolved, repeated vertices and collapsed rings or
    //! parts removed; each exterior ring followed by its holes.
    virtual void Simplify() = 0;
    virtual std::shared_ptr<IGeometry> Buffer(double distance) const = 0;
    virtual std::shared_ptr<IGeometry> Union(const IGeometry& other) const = 0;
    //! Replaces this shape by the union of the members.
    virtual void ConstructUnion(IEnumGeometry& geometries) = 0;
    //! Splits by a polyline into the pieces left and right of its direction. Fault when it does not cut.
    virtual void Cut(const IPolyline& cutter, std::shared_ptr<IGeometry>& leftGeometry,
                     std::shared_ptr<IGeometry>& rightGeometry) const = 0;
    //! Keeps the part inside the envelope, in place.
    virtual void Clip(const IEnvelope& clipper) = 0;
    //! As Clip; the new edges along the envelope get a vertex every denseDistance.
    virtual void ClipDense(const IEnvelope& clipper, double denseDistance) = 0;
    virtual std::shared_ptr<IGeometry> Intersect(const IGeometry& other,
                                                 esriGeometryDimension resultDimension) const = 0;
    virtual std::shared_ptr<IGeometry> Difference(const IGeometry& other) const = 0;
    virtual std::shared_ptr<IGeometry> SymmetricDifference(const IGeometry& other) const = 0;
    //! Polygon: its rings as a polyline; polyline: its end points as a multipoint; point: empty.
    virtual std::shared_ptr<IGeometry> Boundary() const = 0;
    virtual std::shared_ptr<IGeometry> ConvexHull() const = 0;
};

//! Spatial predicates, evaluated on densified copies of true curves.
class IRelationalOperator {
public:
    virtual ~IRelationalOperator() = default;
    virtual bool Disjoint(const IGeometry& other) const = 0;
    virtual bool Intersects(const IGeometry& other) const = 0;
    virtual bool Contains(const IGeometry& other) const = 0;
    virtual bool Within(const IGeometry& other) const = 0;
    virtual bool Touches(const IGeometry& other) const = 0;
    virtual bool Overlaps(const IGeometry& other) const = 0;
    virtual bool Crosses(const IGeometry& other) const = 0;
    virtual bool Equals(const IGeometry& other) const = 0;
    //! A DE-9IM pattern such as "T*F**F***".
    virtual bool Relation(const IGeometry& other, const std::string& pattern) const = 0;
};

class ITransform2D {
public:
    virtual ~ITransform2D() = default;
    virtual void Move(double dx, double dy) = 0;
    //! Unequal factors turn the circular arcs of a path, ring or multipart shape into elliptic
    //! arcs; a lone CircularArc refuses them (Fault), as it cannot change its kind.
    virtual void Scale(const IPoint& origin, double sx, double sy) = 0;
    virtual void Rotate(const IPoint& origin, double angle) = 0;
};

} // namespace tess
