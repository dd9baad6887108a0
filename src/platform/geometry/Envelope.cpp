#include "platform/geometry/Envelope.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "platform/geometry/Point.h"
#include "platform/geometry/detail/Projection.h"
#include "platform/geometry/detail/SegmentMath.h"

namespace tess {

namespace {
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
//! Points per edge when an envelope is projected: edges may bend in the new system.
constexpr int kProjectedEdgePoints = 32;
} // namespace

namespace detail {
std::shared_ptr<IEnvelope> EnvelopeGeometryBase::Envelope() const {
    auto e = std::make_shared<tess::Envelope>();
    QueryEnvelope(*e);
    return e;
}
} // namespace detail

Envelope::Envelope() : box_{kNaN, kNaN, kNaN, kNaN}, empty_(true) {}

Envelope::Envelope(double xMin, double yMin, double xMax, double yMax) : Envelope() {
    PutCoords(xMin, yMin, xMax, yMax);
}

void Envelope::Normalize() {
    empty_ = std::isnan(box_.XMin) || std::isnan(box_.YMin) || std::isnan(box_.XMax) || std::isnan(box_.YMax);
}

void Envelope::SetEmpty() {
    box_ = {kNaN, kNaN, kNaN, kNaN};
    empty_ = true;
}

void Envelope::QueryEnvelope(IEnvelope& envelope) const {
    if (empty_)
        envelope.SetEmpty();
    else
        envelope.PutCoords(box_.XMin, box_.YMin, box_.XMax, box_.YMax);
    envelope.SpatialReference(sr_);
}

void Envelope::Project(std::shared_ptr<ISpatialReference> reference) {
    const detail::ProjectAction action = detail::PlanProjection(sr_, reference);
    if (action == detail::ProjectAction::None) return;
    if (action == detail::ProjectAction::Transform && !empty_) {
        std::vector<WKSPoint> pts;
        pts.reserve(4 * kProjectedEdgePoints);
        for (int i = 0; i < kProjectedEdgePoints; ++i) {
            const double u = static_cast<double>(i) / kProjectedEdgePoints;
            const double x = box_.XMin + u * (box_.XMax - box_.XMin);
            const double y = box_.YMin + u * (box_.YMax - box_.YMin);
            pts.push_back({x, box_.YMin});
            pts.push_back({box_.XMax, y});
            pts.push_back({box_.XMax - (x - box_.XMin), box_.YMax});
            pts.push_back({box_.XMin, box_.YMax - (y - box_.YMin)});
        }
        detail::TransformPoints(*sr_, *reference, pts.data(), pts.size());
        box_ = {pts[0].X, pts[0].Y, pts[0].X, pts[0].Y};
        for (const WKSPoint& p : pts) {
            box_.XMin = std::min(box_.XMin, p.X);
            box_.YMin = std::min(box_.YMin, p.Y);
            box_.XMax = std::max(box_.XMax, p.X);
            box_.YMax = std::max(box_.YMax, p.Y);
        }
    }
    sr_ = std::move(reference);
}

void Envelope::SnapToSpatialReference() {
    if (empty_) return;
    const detail::SnapGrid grid = detail::GridOf(sr_);
    const WKSPoint lo = grid.Snap({box_.XMin, box_.YMin});
    const WKSPoint hi = grid.Snap({box_.XMax, box_.YMax});
    box_ = {lo.X, lo.Y, hi.X, hi.Y};
}

void Envelope::PutCoords(double xMin, double yMin, double xMax, double yMax) {
    box_ = {std::min(xMin, xMax), std::min(yMin, yMax), std::max(xMin, xMax), std::max(yMin, yMax)};
    Normalize();
}

void Envelope::QueryCoords(double& xMin, double& yMin, double& xMax, double& yMax) const {
    xMin = box_.XMin;
    yMin = box_.YMin;
    xMax = box_.XMax;
    yMax = box_.YMax;
}

void Envelope::XMin(double value) {
    box_.XMin = value;
    Normalize();
}
void Envelope::YMin(double value) {
    box_.YMin = value;
    Normalize();
}
void Envelope::XMax(double value) {
    box_.XMax = value;
    Normalize();
}
void Envelope::YMax(double value) {
    box_.YMax = value;
    Normalize();
}

double Envelope::Width() const { return empty_ ? 0.0 : box_.XMax - box_.XMin; }
double Envelope::Height() const { return empty_ ? 0.0 : box_.YMax - box_.YMin; }

void Envelope::Union(const IEnvelope& other) {
    if (other.IsEmpty()) return;
    if (empty_) {
        PutCoords(other.XMin(), other.YMin(), other.XMax(), other.YMax());
        if (!sr_) sr_ = other.SpatialReference();
        return;
    }
    box_.XMin = std::min(box_.XMin, other.XMin());
    box_.YMin = std::min(box_.YMin, other.YMin());
    box_.XMax = std::max(box_.XMax, other.XMax());
    box_.YMax = std::max(box_.YMax, other.YMax());
}

void Envelope::Expand(double dx, double dy, bool asRatio) {
    if (empty_) return;
    if (asRatio) {
        const double cx = 0.5 * (box_.XMin + box_.XMax);
        const double cy = 0.5 * (box_.YMin + box_.YMax);
        const double hw = 0.5 * Width() * dx;
        const double hh = 0.5 * Height() * dy;
        PutCoords(cx - hw, cy - hh, cx + hw, cy + hh);
    } else {
        PutCoords(box_.XMin - dx, box_.YMin - dy, box_.XMax + dx, box_.YMax + dy);
    }
}

void Envelope::Intersect(const IEnvelope& other) {
    if (empty_) return;
    if (other.IsEmpty()) {
        SetEmpty();
        return;
    }
    const WKSEnvelope r{std::max(box_.XMin, other.XMin()), std::max(box_.YMin, other.YMin()),
                        std::min(box_.XMax, other.XMax()), std::min(box_.YMax, other.YMax())};
    if (r.XMin > r.XMax || r.YMin > r.YMax)
        SetEmpty();
    else
        box_ = r;
}

void Envelope::CenterAt(const IPoint& center) {
    if (empty_) return;
    const double hw = 0.5 * Width();
    const double hh = 0.5 * Height();
    box_ = {center.X() - hw, center.Y() - hh, center.X() + hw, center.Y() + hh};
}

namespace {
std::shared_ptr<IPoint> Corner(double x, double y, bool empty, const std::shared_ptr<ISpatialReference>& sr) {
    auto p = std::make_shared<Point>();
    if (!empty) p->PutCoords(x, y);
    p->SpatialReference(sr);
    return p;
}
} // namespace

std::shared_ptr<IPoint> Envelope::LowerLeft() const { return Corner(box_.XMin, box_.YMin, empty_, sr_); }
std::shared_ptr<IPoint> Envelope::LowerRight() const { return Corner(box_.XMax, box_.YMin, empty_, sr_); }
std::shared_ptr<IPoint> Envelope::UpperLeft() const { return Corner(box_.XMin, box_.YMax, empty_, sr_); }
std::shared_ptr<IPoint> Envelope::UpperRight() const { return Corner(box_.XMax, box_.YMax, empty_, sr_); }

double Envelope::Area() const { return empty_ ? 0.0 : Width() * Height(); }

std::shared_ptr<IPoint> Envelope::Centroid() const {
    auto p = std::make_shared<Point>();
    QueryCentroid(*p);
    return p;
}

void Envelope::QueryCentroid(IPoint& centroid) const {
    if (empty_)
        centroid.SetEmpty();
    else
        centroid.PutCoords(0.5 * (box_.XMin + box_.XMax), 0.5 * (box_.YMin + box_.YMax));
    centroid.SpatialReference(sr_);
}

std::shared_ptr<IPoint> Envelope::LabelPoint() const { return Centroid(); }
void Envelope::QueryLabelPoint(IPoint& labelPoint) const { QueryCentroid(labelPoint); }

void Envelope::Move(double dx, double dy) {
    if (empty_) return;
    box_ = {box_.XMin + dx, box_.YMin + dy, box_.XMax + dx, box_.YMax + dy};
}

void Envelope::Scale(const IPoint& origin, double sx, double sy) {
    if (empty_) return;
    const detail::Affine m = detail::Affine::Scaling({origin.X(), origin.Y()}, sx, sy);
    const WKSPoint a = m.Apply({box_.XMin, box_.YMin});
    const WKSPoint b = m.Apply({box_.XMax, box_.YMax});
    PutCoords(a.X, a.Y, b.X, b.Y);
}

void Envelope::Rotate(const IPoint& origin, double angle) {
    if (empty_) return;
    const detail::Affine m = detail::Affine::Rotation({origin.X(), origin.Y()}, angle);
    const WKSPoint c[4] = {m.Apply({box_.XMin, box_.YMin}), m.Apply({box_.XMax, box_.YMin}),
                           m.Apply({box_.XMax, box_.YMax}), m.Apply({box_.XMin, box_.YMax})};
    WKSEnvelope r{c[0].X, c[0].Y, c[0].X, c[0].Y};
    for (const WKSPoint& p : c) {
        r.XMin = std::min(r.XMin, p.X);
        r.YMin = std::min(r.YMin, p.Y);
        r.XMax = std::max(r.XMax, p.X);
        r.YMax = std::max(r.YMax, p.Y);
    }
    box_ = r;
}

std::shared_ptr<IClone> Envelope::Clone() const { return std::make_shared<Envelope>(*this); }

bool Envelope::IsEqual(const IClone& other) const {
    const auto* e = dynamic_cast<const Envelope*>(&other);
    if (!e) return false;
    if (empty_ || e->empty_) return empty_ == e->empty_;
    return box_.XMin == e->box_.XMin && box_.YMin == e->box_.YMin && box_.XMax == e->box_.XMax &&
           box_.YMax == e->box_.YMax;
}

} // namespace tess
