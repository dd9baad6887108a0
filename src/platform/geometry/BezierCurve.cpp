#include "platform/geometry/BezierCurve.h"

#include "platform/system/Fault.h"

namespace tess {

std::shared_ptr<IClone> BezierCurve::Clone() const { return std::make_shared<BezierCurve>(*this); }

void BezierCurve::Assign(const detail::SegmentView& view) {
    if (!view.curve || view.curve->kind != detail::SegKind::Bezier)
        throw GeometryFault(fault::TypeMismatch, "BezierCurve", "The segment is not a Bezier curve");
    from_ = view.from;
    to_ = view.to;
    curve_ = *view.curve;
    empty_ = false;
}

void BezierCurve::PutCoords(const IPoint& from, const IPoint& control1, const IPoint& control2, const IPoint& to) {
    curve_ = {};
    curve_.kind = detail::SegKind::Bezier;
    from_ = {from.X(), from.Y()};
    curve_.p1 = {control1.X(), control1.Y()};
    curve_.p2 = {control2.X(), control2.Y()};
    to_ = {to.X(), to.Y()};
    empty_ = false;
}

void BezierCurve::QueryCoord(std::int32_t index, IPoint& point) const {
    switch (index) {
    case 0:
        point.PutCoords(from_.X, from_.Y);
        break;
    case 1:
        point.PutCoords(curve_.p1.X, curve_.p1.Y);
        break;
    case 2:
        point.PutCoords(curve_.p2.X, curve_.p2.Y);
        break;
    case 3:
        point.PutCoords(to_.X, to_.Y);
        break;
    default:
        throw GeometryFault(fault::OutOfRange, "QueryCoord", "Control point index out of range");
    }
    point.SpatialReference(sr_);
}

void BezierCurve::PutCoord(std::int32_t index, const IPoint& point) {
    const WKSPoint p{point.X(), point.Y()};
    if (empty_) {
        curve_.kind = detail::SegKind::Bezier;
        from_ = to_ = curve_.p1 = curve_.p2 = p;
        empty_ = false;
    }
    switch (index) {
    case 0:
        from_ = p;
        break;
    case 1:
        curve_.p1 = p;
        break;
    case 2:
        curve_.p2 = p;
        break;
    case 3:
        to_ = p;
        break;
    default:
        throw GeometryFault(fault::OutOfRange, "PutCoord", "Control point index out of range");
    }
}

} // namespace tess
