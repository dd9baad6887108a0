#pragma once
// Internal: the shape of one segment as plain data, and the measurements of
// it (length, point at a distance, tangent, extreme points, area terms,
// nearest point, densification). Paths keep straight segments as nothing but
// their two vertices and true curves as a CurveParams aside; the segment
// classes hold one CurveParams each. Everything here is allocation-free except
// Densify, which appends to the caller's vector.

#include <cstdint>
#include <vector>

#include "platform/geometry/GeometryTypes.h"

namespace tess::detail {

enum class SegKind : std::uint8_t { Line, Circular, Elliptic, Bezier };

//! The curve of a segment beyond its two end vertices.
//! Conics (circular and elliptic): point(t) = p1 + R(rotation) * (a cos t, a * ratio * sin t),
//! t running from fromParam to fromParam + sweep (sweep > 0 counter-clockwise). For a circular
//! arc ratio is 1 and rotation 0, so t is the polar angle.
//! Bezier: p1 and p2 are the inner control points; the vertices are the outer ones.
struct CurveParams {
    SegKind kind = SegKind::Line;
    WKSPoint p1{0.0, 0.0};
    WKSPoint p2{0.0, 0.0};
    double semiMajor = 0.0;
    double ratio = 1.0;
    double rotation = 0.0;
    double fromParam = 0.0;
    double sweep = 0.0;
    friend bool operator==(const CurveParams&, const CurveParams&) = default;
};

//! A segment seen through its end vertices and, for a true curve, its parameters.
struct SegmentView {
    WKSPoint from;
    WKSPoint to;
    const CurveParams* curve; //!< null for a straight line
};

//! Affine map x' = a x + b y + c, y' = d x + e y + f.
struct Affine {
    double a = 1.0, b = 0.0, c = 0.0, d = 0.0, e = 1.0, f = 0.0;
    WKSPoint Apply(WKSPoint p) const { return {a * p.X + b * p.Y + c, d * p.X + e * p.Y + f}; }
    static Affine Translation(double dx, double dy) { return {1.0, 0.0, dx, 0.0, 1.0, dy}; }
    static Affine Scaling(WKSPoint origin, double sx, double sy);
    static Affine Rotation(WKSPoint origin, double angle);
};

//! Densification limits for handing true curves to the engine and to projection.
struct DensifyLimits {
    double maxAngleStep;   //!< radians of turning per piece
    double maxDeviation;   //!< chord deviation bound, coordinate units (relative to size when <= 0)
};
//! One degree of turning per piece for conics, which bounds the chord deviation by
//! r (1 - cos 0.5 deg) = 3.8e-5 of the radius; Bezier curves also by a deviation of 1e-5 of the
//! length of their control polygon.
DensifyLimits DefaultDensifyLimits();

double Length(const SegmentView& s);
//! Point at parameter u in [0, 1] (not arc length). u = 0 and 1 give the vertices exactly.
WKSPoint PointAtParameter(const SegmentView& s, double u);
//! Point at arc length d from the start, clamped to [0, Length].
WKSPoint PointAtDistance(const SegmentView& s, double d);
//! Unit tangent at parameter u (direction of travel). Zero vector for a degenerate segment.
WKSPoint TangentAt(const SegmentView& s, double u);
//! Grows the box (XMin > XMax means empty) by the segment's exact extreme points.
void ExtendEnvelope(const SegmentView& s, WKSEnvelope& box);
//! Line integrals along the segment with coordinates taken relative to origin o:
//! area term (1/2) int (x dy - y dx), and first moments (1/3) int x (x dy - y dx), (1/3) int y (x dy - y dx).
//! Summed over a closed ring, they give its signed area (counter-clockwise positive) and the
//! area-weighted sums of the centroid.
struct AreaTerms {
    double area = 0.0;
    double mx = 0.0;
    double my = 0.0;
};
AreaTerms AreaIntegrals(const SegmentView& s, WKSPoint o);
//! Nearest point of the segment to p: parameter u in [0, 1] and the point.
double NearestParameter(const SegmentView& s, WKSPoint p, WKSPoint& nearest);
//! Arc length from the start to parameter u.
double LengthToParameter(const SegmentView& s, double u);
//! Appends the points after the start, ending with the end vertex itself.
void Densify(const SegmentView& s, const DensifyLimits& limits, std::vector<WKSPoint>& out);
//! The curve parameters after mapping the segment by m; kind may change (circle to ellipse).
CurveParams TransformCurve(const CurveParams& c, const Affine& m);
//! The curve parameters of the same segment run backwards.
CurveParams ReverseCurve(const CurveParams& c);

//! Conic parameters from polar angles in the ellipse's own frame.
CurveParams MakeConic(WKSPoint center, double rotation, double semiMajor, double ratio, double fromAngle,
                      double centralAngle, bool circular);
//! The ends of a conic, computed from its parameters.
WKSPoint ConicPoint(const CurveParams& c, double t);

} // namespace tess::detail
