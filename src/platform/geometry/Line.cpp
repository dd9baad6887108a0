#include "platform/geometry/Line.h"

#include <cmath>

#include "platform/system/Fault.h"

namespace tess {

Line::Line(WKSPoint from, WKSPoint to) {
    from_ = from;
    to_ = to;
    empty_ = false;
}

void Line::PutCoords(const IPoint& from, const IPoint& to) {
    from_ = {from.X(), from.Y()};
    to_ = {to.X(), to.Y()};
    empty_ = false;
}

double Line::Angle() const { return std::atan2(to_.Y - from_.Y, to_.X - from_.X); }

std::shared_ptr<IClone> Line::Clone() const { return std::make_shared<Line>(*this); }

void Line::Assign(const detail::SegmentView& view) {
    if (view.curve) throw GeometryFault(fault::TypeMismatch, "Line", "The segment is not a line");
    from_ = view.from;
    to_ = view.to;
    curve_ = {};
    empty_ = false;
}

} // namespace tess
