#include "platform/geometry/Multipoint.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "platform/geometry/Envelope.h"
#include "platform/geometry/detail/Helpers.h"
#include "platform/geometry/detail/PartData.h"
#include "platform/geometry/detail/Projection.h"
#include "platform/system/Fault.h"

namespace tess {

Multipoint::Multipoint(const Multipoint& other)
    : IMultipoint(other), IPointCollection(other), IGeometryCollection(other), ITransform2D(other), IClone(other),
      TopologicalOperatorImpl(other), RelationalOperatorImpl(other), VertexStore(other),
      std::enable_shared_from_this<Multipoint>(), sr_(other.sr_) {
    points_.reserve(other.points_.size());
    for (const auto& p : other.points_) points_.push_back(std::make_shared<tess::Point>(*p));
    knownSimple_ = other.IsKnownSimple();
    simpleStamp_ = detail::NextStamp();
}

void Multipoint::SpatialReference(std::shared_ptr<ISpatialReference> reference) {
    sr_ = std::move(reference);
    for (auto& p : points_) p->SpatialReference(sr_);
}

void Multipoint::SetEmpty() {
    points_.clear();
    knownSimple_ = false;
}

std::shared_ptr<IEnvelope> Multipoint::Envelope() const {
    auto e = std::make_shared<tess::Envelope>();
    QueryEnvelope(*e);
    return e;
}

void Multipoint::QueryEnvelope(IEnvelope& envelope) const {
    envelope.SpatialReference(sr_);
    if (points_.empty()) {
        envelope.SetEmpty();
        return;
    }
    WKSEnvelope b{points_[0]->X(), points_[0]->Y(), points_[0]->X(), points_[0]->Y()};
    for (const auto& p : points_) {
        b.XMin = std::min(b.XMin, p->X());
        b.YMin = std::min(b.YMin, p->Y());
        b.XMax = std::max(b.XMax, p->X());
        b.YMax = std::max(b.YMax, p->Y());
    }
    envelope.PutCoords(b.XMin, b.YMin, b.XMax, b.YMax);
}

void Multipoint::Project(std::shared_ptr<ISpatialReference> reference) {
    const detail::ProjectAction action = detail::PlanProjection(sr_, reference);
    if (action == detail::ProjectAction::None) return;
    if (action == detail::ProjectAction::Transform && !points_.empty()) {
        std::vector<WKSPoint> pts;
        pts.reserve(points_.size());
        for (const auto& p : points_) pts.push_back(p->Coords());
        detail::TransformPoints(*sr_, *reference, pts.data(), pts.size());
        for (std::size_t i = 0; i < pts.size(); ++i) points_[i]->PutCoords(pts[i].X, pts[i].Y);
    }
    SpatialReference(std::move(reference));
    knownSimple_ = false;
}

void Multipoint::SnapToSpatialReference() {
    const detail::SnapGrid grid = detail::GridOf(sr_);
    for (auto& p : points_) {
        const WKSPoint s = grid.Snap(p->Coords());
        p->PutCoords(s.X, s.Y);
    }
}

std::shared_ptr<IPoint> Multipoint::Point(std::int32_t index) const {
    detail::CheckIndex(index, PointCount(), "Point");
    return std::make_shared<tess::Point>(*points_[index]);
}

void Multipoint::QueryPoint(std::int32_t index, IPoint& point) const {
    detail::CheckIndex(index, PointCount(), "QueryPoint");
    const WKSPoint p = points_[index]->Coords();
    detail::PutPoint(point, &p, sr_);
}

void Multipoint::AddPoint(const IPoint& point) {
    auto p = std::make_shared<tess::Point>(point.X(), point.Y());
    p->SpatialReference(sr_);
    points_.push_back(std::move(p));
    knownSimple_ = false;
}

void Multipoint::AddWKSPoints(std::int32_t count, const WKSPoint* points) {
    for (std::int32_t i = 0; i < count; ++i) AddPoint(tess::Point(points[i].X, points[i].Y));
}

void Multipoint::UpdatePoint(std::int32_t index, const IPoint& point) {
    detail::CheckIndex(index, PointCount(), "UpdatePoint");
    points_[index]->PutCoords(point.X(), point.Y());
}

void Multipoint::InsertWKSPoints(std::int32_t index, std::int32_t count, const WKSPoint* points) {
    detail::CheckIndex(index, PointCount() + 1, "InsertPoints");
    std::vector<std::shared_ptr<tess::Point>> added;
    for (std::int32_t i = 0; i < count; ++i) {
        added.push_back(std::make_shared<tess::Point>(points[i].X, points[i].Y));
        added.back()->SpatialReference(sr_);
    }
    points_.insert(points_.begin() + index, added.begin(), added.end());
    knownSimple_ = false;
}

void Multipoint::RemovePoints(std::int32_t index, std::int32_t count) {
    if (count <= 0) return;
    detail::CheckIndex(index, PointCount(), "RemovePoints");
    detail::CheckIndex(index + count - 1, PointCount(), "RemovePoints");
    points_.erase(points_.begin() + index, points_.begin() + index + count);
    knownSimple_ = false;
}

void Multipoint::SetPointCollection(const IPointCollection& other) {
    if (&other == static_cast<const IPointCollection*>(this)) return;
    std::vector<WKSPoint> pts(static_cast<std::size_t>(other.PointCount()));
    if (!pts.empty()) other.QueryWKSPoints(0, other.PointCount(), pts.data());
    points_.clear();
    AddWKSPoints(static_cast<std::int32_t>(pts.size()), pts.data());
}

void Multipoint::QueryWKSPoints(std::int32_t index, std::int32_t count, WKSPoint* points) const {
    if (count <= 0) return;
    detail::CheckIndex(index, PointCount(), "QueryWKSPoints");
    detail::CheckIndex(index + count - 1, PointCount(), "QueryWKSPoints");
    for (std::int32_t i = 0; i < count; ++i) points[i] = points_[index + i]->Coords();
}

std::shared_ptr<IEnumVertex> Multipoint::EnumVertices() const {
    // Writing through the enumerator is the point of it, hence the const_cast.
    auto& self = const_cast<Multipoint&>(*this);
    return detail::MakeVertexEnumerator(std::shared_ptr<const void>(weak_from_this().lock()), self);
}

std::shared_ptr<IGeometry> Multipoint::Geometry(std::int32_t index) const {
    detail::CheckIndex(index, PointCount(), "Geometry");
    return points_[index];
}

void Multipoint::AddGeometry(std::shared_ptr<IGeometry> geometry) {
    if (!geometry) throw GeometryFault(fault::ObjectNotSet, "AddGeometry", "Object variable not set");
    if (auto p = std::dynamic_pointer_cast<tess::Point>(geometry)) {
        if (!p->SpatialReference()) p->SpatialReference(sr_);
        points_.push_back(std::move(p));
    } else if (auto m = std::dynamic_pointer_cast<Multipoint>(geometry)) {
        for (const auto& q : m->points_) AddPoint(*q);
    } else {
        throw GeometryFault(fault::TypeMismatch, "AddGeometry", "Only points can be parts of a multipoint");
    }
    knownSimple_ = false;
}

void Multipoint::RemoveGeometries(std::int32_t index, std::int32_t count) { RemovePoints(index, count); }

void Multipoint::Move(double dx, double dy) {
    for (auto& p : points_) p->Move(dx, dy);
}

void Multipoint::Scale(const IPoint& origin, double sx, double sy) {
    for (auto& p : points_) p->Scale(origin, sx, sy);
}

void Multipoint::Rotate(const IPoint& origin, double angle) {
    for (auto& p : points_) p->Rotate(origin, angle);
}

std::shared_ptr<IClone> Multipoint::Clone() const { return std::make_shared<Multipoint>(*this); }

bool Multipoint::IsEqual(const IClone& other) const {
    const auto* m = dynamic_cast<const Multipoint*>(&other);
    if (!m || m->points_.size() != points_.size()) return false;
    for (std::size_t i = 0; i < points_.size(); ++i)
        if (!points_[i]->IsEqual(*m->points_[i])) return false;
    return true;
}

bool Multipoint::IsKnownSimple() const {
    if (!knownSimple_) return false;
    for (const auto& p : points_)
        if (p->Stamp() > simpleStamp_) return false;
    return true;
}

namespace {

//! Indexes of the points to keep: the first of each cluster of points within tolerance
//! (exactly equal points when the tolerance is 0), and no empty point.
std::vector<std::size_t> DistinctPoints(const std::vector<std::shared_ptr<Point>>& points, double tolerance) {
    std::vector<std::size_t> order(points.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(), [&points](std::size_t a, std::size_t b) {
        return points[a]->X() < points[b]->X() || (points[a]->X() == points[b]->X() && a < b);
    });
    std::vector<bool> dropped(points.size(), false);
    for (std::size_t k = 0; k < order.size(); ++k) {
        const std::size_t i = order[k];
        if (dropped[i] || points[i]->IsEmpty()) {
            dropped[i] = true;
            continue;
        }
        for (std::size_t m = k + 1; m < order.size(); ++m) {
            const std::size_t j = order[m];
            if (points[j]->X() - points[i]->X() > tolerance) break;
            if (dropped[j]) continue;
            const double d = std::hypot(points[j]->X() - points[i]->X(), points[j]->Y() - points[i]->Y());
            // Of two close points the earlier one stays.
            if (d <= tolerance) dropped[std::max(i, j)] = true;
        }
    }
    std::vector<std::size_t> keep;
    for (std::size_t i = 0; i < points.size(); ++i)
        if (!dropped[i]) keep.push_back(i);
    return keep;
}

} // namespace

bool Multipoint::IsSimple() const {
    return DistinctPoints(points_, detail::ClusterTolerance(sr_)).size() == points_.size();
}

void Multipoint::Simplify() {
    const std::vector<std::size_t> keep = DistinctPoints(points_, detail::ClusterTolerance(sr_));
    if (keep.size() != points_.size()) {
        std::vector<std::shared_ptr<tess::Point>> kept;
        kept.reserve(keep.size());
        for (std::size_t i : keep) kept.push_back(points_[i]);
        points_ = std::move(kept);
    }
    knownSimple_ = true;
    simpleStamp_ = detail::NextStamp();
}

void Multipoint::StoreSet(std::int32_t part, std::int32_t, WKSPoint p) {
    points_[part]->PutCoords(p.X, p.Y);
}

void Multipoint::AssignResult(const IGeometry& result) {
    std::vector<std::shared_ptr<tess::Point>> pts;
    if (const auto* m = dynamic_cast<const Multipoint*>(&result)) {
        for (const auto& p : m->points_) pts.push_back(std::make_shared<tess::Point>(*p));
    } else if (const auto* p = dynamic_cast<const tess::Point*>(&result)) {
        if (!p->IsEmpty()) pts.push_back(std::make_shared<tess::Point>(*p));
    } else if (!result.IsEmpty()) {
        throw GeometryFault(fault::GeometryFailed, "Multipoint", "The result is not a multipoint");
    }
    points_ = std::move(pts);
    if (!sr_ && result.SpatialReference()) sr_ = result.SpatialReference();
    for (auto& p : points_) p->SpatialReference(sr_);
    knownSimple_ = false;
}

} // namespace tess
