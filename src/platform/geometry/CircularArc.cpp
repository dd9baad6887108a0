#include "platform/geometry/CircularArc.h"

#include <cmath>
#include <numbers>

#include "platform/geometry/Point.h"
#include "platform/system/Fault.h"

namespace tess {

namespace {
constexpr double kTwoPi = 2.0 * std::numbers::pi;
constexpr double kPi = std::numbers::pi;
} // namespace

std::shared_ptr<IClone> CircularArc::Clone() const { return std::make_shared<CircularArc>(*this); }

void CircularArc::Assign(const detail::SegmentView& view) {
    if (!view.curve || view.curve->kind != detail::SegKind::Circular)
        throw GeometryFault(fault::TypeMismatch, "CircularArc", "The segment is not a circular arc");
    from_ = view.from;
    to_ = view.to;
    curve_ = *view.curve;
    empty_ = false;
}

void CircularArc::PutCoords(const IPoint& center, const IPoint& from, const IPoint& to,
                            esriArcOrientation orientation) {
    const WKSPoint c{center.X(), center.Y()};
    const WKSPoint f{from.X(), from.Y()};
    const double r = std::hypot(f.X - c.X, f.Y - c.Y);
    const double a0 = std::atan2(f.Y - c.Y, f.X - c.X);
    const double a1 = std::atan2(to.Y() - c.Y, to.X() - c.X);
    // Counter-clockwise turn from a0 to a1 in (0, 2 pi]; equal angles make a full circle.
    double ccw = std::fmod(a1 - a0, kTwoPi);
    if (ccw <= 0.0) ccw += kTwoPi;
    const double cw = ccw - kTwoPi == 0.0 ? -kTwoPi : ccw - kTwoPi;
    double sweep = ccw;
    switch (orientation) {
    case esriArcClockwise:
        sweep = cw;
        break;
    case esriArcCounterClockwise:
        sweep = ccw;
        break;
    case esriArcMinor:
        sweep = ccw <= kPi ? ccw : cw;
        break;
    case esriArcMajor:
        sweep = ccw > kPi ? ccw : cw;
        break;
    }
    curve_ = detail::MakeConic(c, 0.0, r, 1.0, a0, sweep, true);
    from_ = f;
    to_ = std::abs(sweep) >= kTwoPi ? f : detail::ConicPoint(curve_, a0 + sweep);
    empty_ = false;
}

void CircularArc::ConstructThreePoints(const IPoint& from, const IPoint& middle, const IPoint& to) {
    const double ax = from.X(), ay = from.Y();
    const double bx = middle.X(), by = middle.Y();
    const double cx = to.X(), cy = to.Y();
    if (ax == cx && ay == cy) {
        // Start and end coincide: the full circle with the middle point opposite.
        const Point centre(0.5 * (ax + bx), 0.5 * (ay + by));
        const double r = 0.5 * std::hypot(bx - ax, by - ay);
        PutCoordsByAngle(centre, std::atan2(ay - centre.Y(), ax - centre.X()), kTwoPi, r);
        return;
    }
    const double d = 2.0 * (ax * (by - cy) + bx * (cy - ay) + cx * (ay - by));
    if (d == 0.0)
        throw GeometryFault(fault::GeometryFailed, "ConstructThreePoints", "The three points lie on a line");
    const double a2 = ax * ax + ay * ay, b2 = bx * bx + by * by, c2 = cx * cx + cy * cy;
    const Point centre((a2 * (by - cy) + b2 * (cy - ay) + c2 * (ay - by)) / d,
                       (a2 * (cx - bx) + b2 * (ax - cx) + c2 * (bx - ax)) / d);
    // A left turn at the middle point means the arc runs counter-clockwise.
    const double turn = (bx - ax) * (cy - by) - (by - ay) * (cx - bx);
    PutCoords(centre, from, to, turn > 0.0 ? esriArcCounterClockwise : esriArcClockwise);
}

void CircularArc::PutCoordsByAngle(const IPoint& center, double fromAngle, double centralAngle, double radius) {
    curve_ = detail::MakeConic({center.X(), center.Y()}, 0.0, radius, 1.0, fromAngle, centralAngle, true);
    from_ = detail::ConicPoint(curve_, curve_.fromParam);
    to_ = std::abs(curve_.sweep) >= kTwoPi ? from_ : detail::ConicPoint(curve_, curve_.fromParam + curve_.sweep);
    empty_ = false;
}

void CircularArc::ConstructCircle(const IPoint& center, double radius, bool isCounterClockwise) {
    PutCoordsByAngle(center, 0.0, isCounterClockwise ? kTwoPi : -kTwoPi, radius);
}

std::shared_ptr<IPoint> CircularArc::CenterPoint() const {
    auto p = std::make_shared<Point>();
    QueryCenterPoint(*p);
    return p;
}

void CircularArc::QueryCenterPoint(IPoint& center) const {
    if (empty_)
        center.SetEmpty();
    else
        center.PutCoords(curve_.p1.X, curve_.p1.Y);
    center.SpatialReference(sr_);
}

double CircularArc::FromAngle() const { return curve_.fromParam; }
double CircularArc::ToAngle() const { return curve_.fromParam + curve_.sweep; }
bool CircularArc::IsMinor() const { return std::abs(curve_.sweep) <= kPi; }

} // namespace tess
