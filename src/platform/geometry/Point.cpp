#include "platform/geometry/Point.h"

#include <cmath>
#include <limits>

#include "platform/geometry/Envelope.h"
#include "platform/geometry/Multipoint.h"
#include "platform/geometry/detail/PartData.h"
#include "platform/geometry/detail/Projection.h"
#include "platform/geometry/detail/SegmentMath.h"
#include "platform/system/Fault.h"

namespace tess {

namespace {
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
}

Point::Point() : x_(kNaN), y_(kNaN), empty_(true), stamp_(detail::NextStamp()) {}

Point::Point(double x, double y) : x_(x), y_(y), empty_(false), stamp_(detail::NextStamp()) {}

Point::Point(const Point& other)
    : IPoint(), ITransform2D(), IClone(), TopologicalOperatorImpl(), RelationalOperatorImpl(), x_(other.x_),
      y_(other.y_), empty_(other.empty_), sr_(other.sr_), stamp_(detail::NextStamp()) {}

void Point::Touch() { stamp_ = detail::NextStamp(); }

void Point::SetEmpty() {
    x_ = kNaN;
    y_ = kNaN;
    empty_ = true;
    Touch();
}

std::shared_ptr<IEnvelope> Point::Envelope() const {
    auto e = std::make_shared<tess::Envelope>();
    QueryEnvelope(*e);
    return e;
}

void Point::QueryEnvelope(IEnvelope& envelope) const {
    if (empty_)
        envelope.SetEmpty();
    else
        envelope.PutCoords(x_, y_, x_, y_);
    envelope.SpatialReference(sr_);
}

void Point::Project(std::shared_ptr<ISpatialReference> reference) {
    switch (detail::PlanProjection(sr_, reference)) {
    case detail::ProjectAction::None:
        return;
    case detail::ProjectAction::AssignOnly:
        break;
    case detail::ProjectAction::Transform:
        if (!empty_) {
            WKSPoint p{x_, y_};
            detail::TransformPoints(*sr_, *reference, &p, 1);
            x_ = p.X;
            y_ = p.Y;
            Touch();
        }
        break;
    }
    sr_ = std::move(reference);
}

void Point::SnapToSpatialReference() {
    if (empty_) return;
    const WKSPoint p = detail::GridOf(sr_).Snap({x_, y_});
    x_ = p.X;
    y_ = p.Y;
    Touch();
}

void Point::PutCoords(double x, double y) {
    x_ = x;
    y_ = y;
    empty_ = false;
    Touch();
}

void Point::QueryCoords(double& x, double& y) const {
    x = x_;
    y = y_;
}

void Point::X(double x) {
    x_ = x;
    empty_ = std::isnan(x_) || std::isnan(y_);
    Touch();
}

void Point::Y(double y) {
    y_ = y;
    empty_ = std::isnan(x_) || std::isnan(y_);
    Touch();
}

void Point::Move(double dx, double dy) {
    if (empty_) return;
    x_ += dx;
    y_ += dy;
    Touch();
}

void Point::Scale(const IPoint& origin, double sx, double sy) {
    if (empty_) return;
    const WKSPoint p = detail::Affine::Scaling({origin.X(), origin.Y()}, sx, sy).Apply({x_, y_});
    PutCoords(p.X, p.Y);
}

void Point::Rotate(const IPoint& origin, double angle) {
    if (empty_) return;
    const WKSPoint p = detail::Affine::Rotation({origin.X(), origin.Y()}, angle).Apply({x_, y_});
    PutCoords(p.X, p.Y);
}

std::shared_ptr<IClone> Point::Clone() const { return std::make_shared<Point>(*this); }

bool Point::IsEqual(const IClone& other) const {
    const auto* p = dynamic_cast<const Point*>(&other);
    if (!p) return false;
    if (empty_ || p->empty_) return empty_ == p->empty_;
    return x_ == p->x_ && y_ == p->y_;
}

void Point::AssignResult(const IGeometry& result) {
    if (const auto* p = dynamic_cast<const Point*>(&result)) {
        if (p->empty_)
            SetEmpty();
        else
            PutCoords(p->x_, p->y_);
    } else if (const auto* m = dynamic_cast<const Multipoint*>(&result); m && m->PointCount() == 1) {
        PutCoords(m->PointAt(0).X(), m->PointAt(0).Y());
    } else if (result.IsEmpty()) {
        SetEmpty();
    } else {
        throw GeometryFault(fault::GeometryFailed, "Point", "The result is not a point");
    }
    if (!sr_) sr_ = result.SpatialReference();
}

} // namespace tess
