#include "platform/geometry/EllipticArc.h"

#include <cmath>
#include <numbers>

#include "platform/geometry/Point.h"
#include "platform/system/Fault.h"

namespace tess {

namespace {
constexpr double kTwoPi = 2.0 * std::numbers::pi;
constexpr double kHalfPi = 0.5 * std::numbers::pi;
} // namespace

std::shared_ptr<IClone> EllipticArc::Clone() const { return std::make_shared<EllipticArc>(*this); }

void EllipticArc::Assign(const detail::SegmentView& view) {
    if (!view.curve || view.curve->kind != detail::SegKind::Elliptic)
        throw GeometryFault(fault::TypeMismatch, "EllipticArc", "The segment is not an elliptic arc");
    from_ = view.from;
    to_ = view.to;
    curve_ = *view.curve;
    empty_ = false;
}

void EllipticArc::PutCoordsByAngle(const IPoint& center, double rotation, double semiMajor, double minorMajorRatio,
                                   double fromAngle, double centralAngle) {
    if (!(semiMajor > 0.0) || !(minorMajorRatio > 0.0) || minorMajorRatio > 1.0)
        throw GeometryFault(fault::InvalidCall, "PutCoordsByAngle", "Invalid axes of an ellipse");
    curve_ = detail::MakeConic({center.X(), center.Y()}, rotation, semiMajor, minorMajorRatio, fromAngle,
                               centralAngle, false);
    from_ = detail::ConicPoint(curve_, curve_.fromParam);
    to_ = std::abs(curve_.sweep) >= kTwoPi ? from_ : detail::ConicPoint(curve_, curve_.fromParam + curve_.sweep);
    empty_ = false;
}

void EllipticArc::ConstructEnvelope(const IEnvelope& envelope) {
    if (envelope.IsEmpty()) throw GeometryFault(fault::InvalidCall, "ConstructEnvelope", "The envelope is empty");
    const Point centre(0.5 * (envelope.XMin() + envelope.XMax()), 0.5 * (envelope.YMin() + envelope.YMax()));
    const double w = envelope.Width();
    const double h = envelope.Height();
    if (!(w > 0.0) || !(h > 0.0)) throw GeometryFault(fault::InvalidCall, "ConstructEnvelope", "The envelope is flat");
    if (w >= h)
        PutCoordsByAngle(centre, 0.0, 0.5 * w, h / w, 0.0, -kTwoPi);
    else
        PutCoordsByAngle(centre, kHalfPi, 0.5 * h, w / h, 0.0, -kTwoPi);
}

std::shared_ptr<IPoint> EllipticArc::CenterPoint() const {
    auto p = std::make_shared<Point>();
    QueryCenterPoint(*p);
    return p;
}

void EllipticArc::QueryCenterPoint(IPoint& center) const {
    if (empty_)
        center.SetEmpty();
    else
        center.PutCoords(curve_.p1.X, curve_.p1.Y);
    center.SpatialReference(sr_);
}

namespace {
//! Polar angle, in the ellipse's own frame, of the point at parameter t.
double PolarOf(const detail::CurveParams& c, double t) { return std::atan2(c.ratio * std::sin(t), std::cos(t)); }
} // namespace

double EllipticArc::FromAngle() const { return PolarOf(curve_, curve_.fromParam); }

double EllipticArc::CentralAngle() const {
    if (std::abs(curve_.sweep) >= kTwoPi) return curve_.sweep;
    double d = PolarOf(curve_, curve_.fromParam + curve_.sweep) - PolarOf(curve_, curve_.fromParam);
    if (curve_.sweep > 0.0) {
        while (d <= 0.0) d += kTwoPi;
    } else if (curve_.sweep < 0.0) {
        while (d >= 0.0) d -= kTwoPi;
    } else {
        d = 0.0;
    }
    return d;
}

} // namespace tess
