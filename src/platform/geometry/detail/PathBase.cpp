#include "platform/geometry/detail/PathBase.h"

#include <string>

#include "platform/geometry/Envelope.h"
#include "platform/geometry/Point.h"
#include "platform/geometry/detail/Helpers.h"
#include "platform/geometry/detail/Projection.h"
#include "platform/geometry/detail/SegmentBase.h"
#include "platform/system/Fault.h"

namespace tess::detail {

template <class I> void PathBase<I>::SetEmpty() {
    part_.Clear();
    Touch();
}

template <class I> std::shared_ptr<IEnvelope> PathBase<I>::Envelope() const {
    auto e = std::make_shared<tess::Envelope>();
    QueryEnvelope(*e);
    return e;
}

template <class I> void PathBase<I>::QueryEnvelope(IEnvelope& envelope) const { FillEnvelope(*this, sr_, envelope); }

template <class I> void PathBase<I>::Project(std::shared_ptr<ISpatialReference> reference) {
    const ProjectAction action = PlanProjection(sr_, reference);
    if (action == ProjectAction::None) return;
    if (action == ProjectAction::Transform) {
        ProjectPart(part_, *sr_, *reference);
        Touch();
    }
    sr_ = std::move(reference);
}

template <class I> void PathBase<I>::SnapToSpatialReference() {
    SnapPart(part_, GridOf(sr_));
    Touch();
}

template <class I> double PathBase<I>::Length() const { return SourceLength(*this); }

template <class I> std::shared_ptr<IPoint> PathBase<I>::FromPoint() const {
    auto p = std::make_shared<tess::Point>();
    QueryFromPoint(*p);
    return p;
}

template <class I> std::shared_ptr<IPoint> PathBase<I>::ToPoint() const {
    auto p = std::make_shared<tess::Point>();
    QueryToPoint(*p);
    return p;
}

template <class I> void PathBase<I>::QueryFromPoint(IPoint& point) const {
    PutPoint(point, part_.vertices.empty() ? nullptr : &part_.vertices.front(), sr_);
}

template <class I> void PathBase<I>::QueryToPoint(IPoint& point) const {
    PutPoint(point, part_.vertices.empty() ? nullptr : &part_.vertices.back(), sr_);
}

template <class I> void PathBase<I>::FromPoint(const IPoint& point) {
    if (part_.vertices.empty()) {
        part_.vertices.push_back({point.X(), point.Y()});
    } else {
        part_.vertices.front() = {point.X(), point.Y()};
        part_.StraightenAround(0);
    }
    Touch();
}

template <class I> void PathBase<I>::ToPoint(const IPoint& point) {
    if (part_.vertices.empty()) {
        part_.vertices.push_back({point.X(), point.Y()});
    } else {
        part_.vertices.back() = {point.X(), point.Y()};
        part_.StraightenAround(static_cast<std::int32_t>(part_.vertices.size() - 1));
    }
    Touch();
}

template <class I>
void PathBase<I>::QueryPoint(esriSegmentExtension extension, double distanceAlongCurve, bool asRatio,
                             IPoint& outPoint) const {
    WKSPoint p;
    const bool found = SourcePointAlong(*this, extension, distanceAlongCurve, asRatio, p);
    PutPoint(outPoint, found ? &p : nullptr, sr_);
}

template <class I>
void PathBase<I>::QueryPointAndDistance(esriSegmentExtension extension, const IPoint& inPoint, bool asRatio,
                                        IPoint& outPoint, double& distanceAlongCurve, double& distanceFromCurve,
                                        bool& rightSide) const {
    NearestQuery(*this, sr_, extension, inPoint, asRatio, outPoint, distanceAlongCurve, distanceFromCurve,
                 rightSide);
}

template <class I> void PathBase<I>::ReverseOrientation() {
    part_.Reverse();
    Touch();
}

template <class I> std::shared_ptr<IPoint> PathBase<I>::Point(std::int32_t index) const {
    auto p = std::make_shared<tess::Point>();
    QueryPoint(index, *p);
    return p;
}

template <class I> void PathBase<I>::QueryPoint(std::int32_t index, IPoint& point) const {
    CheckIndex(index, PointCount(), "QueryPoint");
    PutPoint(point, &part_.vertices[index], sr_);
}

template <class I> void PathBase<I>::AddPoint(const IPoint& point) {
    part_.vertices.push_back({point.X(), point.Y()});
    Touch();
}

template <class I> void PathBase<I>::AddWKSPoints(std::int32_t count, const WKSPoint* points) {
    if (count <= 0) return;
    part_.vertices.insert(part_.vertices.end(), points, points + count);
    Touch();
}

template <class I> void PathBase<I>::UpdatePoint(std::int32_t index, const IPoint& point) {
    CheckIndex(index, PointCount(), "UpdatePoint");
    StoreSet(0, index, {point.X(), point.Y()});
}

template <class I> void PathBase<I>::InsertWKSPoints(std::int32_t index, std::int32_t count, const WKSPoint* points) {
    CheckIndex(index, PointCount() + 1, "InsertPoints");
    part_.InsertVertices(index, points, count);
    Touch();
}

template <class I> void PathBase<I>::RemovePoints(std::int32_t index, std::int32_t count) {
    if (count <= 0) return;
    CheckIndex(index, PointCount(), "RemovePoints");
    CheckIndex(index + count - 1, PointCount(), "RemovePoints");
    part_.RemoveVertices(index, count);
    Touch();
}

template <class I> void PathBase<I>::SetPointCollection(const IPointCollection& other) {
    if (const auto* src = dynamic_cast<const PartSource*>(&other); src && src->SourcePartCount() == 1) {
        const PartData copy = src->SourcePart(0);
        part_ = copy;
    } else {
        std::vector<WKSPoint> pts(static_cast<std::size_t>(other.PointCount()));
        if (!pts.empty()) other.QueryWKSPoints(0, other.PointCount(), pts.data());
        part_.Clear();
        part_.vertices = std::move(pts);
    }
    Touch();
}

template <class I> void PathBase<I>::QueryWKSPoints(std::int32_t index, std::int32_t count, WKSPoint* points) const {
    if (count <= 0) return;
    CheckIndex(index, PointCount(), "QueryWKSPoints");
    CheckIndex(index + count - 1, PointCount(), "QueryWKSPoints");
    std::copy_n(part_.vertices.begin() + index, count, points);
}

template <class I> std::shared_ptr<IEnumVertex> PathBase<I>::EnumVertices() const {
    // Writing through the enumerator is the point of it, hence the const_cast.
    auto& self = const_cast<PathBase&>(*this);
    return MakeVertexEnumerator(std::shared_ptr<const void>(this->weak_from_this().lock()), self);
}

template <class I> std::shared_ptr<ISegment> PathBase<I>::Segment(std::int32_t index) const {
    CheckIndex(index, SegmentCount(), "Segment");
    return MakeSegment(part_.SegmentAt(index), sr_);
}

template <class I> void PathBase<I>::AddSegment(const ISegment& segment) {
    if (segment.IsEmpty()) return;
    part_.AppendSegment(StoreOf(segment).View());
    Touch();
}

template <class I> void PathBase<I>::AddSegmentCollection(const ISegmentCollection& segments) {
    if (const auto* src = dynamic_cast<const PartSource*>(&segments)) {
        // Copy first: the collection may be this path.
        std::vector<PartData> parts;
        for (std::size_t p = 0; p < src->SourcePartCount(); ++p) parts.push_back(src->SourcePart(p));
        for (const PartData& part : parts)
            part.ForEachSegment([this](std::int32_t, const SegmentView& s) { part_.AppendSegment(s); });
    } else {
        const std::int32_t n = segments.SegmentCount();
        for (std::int32_t i = 0; i < n; ++i) part_.AppendSegment(StoreOf(*segments.Segment(i)).View());
    }
    Touch();
}

template <class I> std::shared_ptr<IEnumSegment> PathBase<I>::EnumSegments() const {
    return MakeSegmentEnumerator(std::shared_ptr<const void>(this->weak_from_this().lock()), *this);
}

template <class I> void PathBase<I>::Move(double dx, double dy) {
    part_.Transform(Affine::Translation(dx, dy));
    Touch();
}

template <class I> void PathBase<I>::Scale(const IPoint& origin, double sx, double sy) {
    part_.Transform(Affine::Scaling({origin.X(), origin.Y()}, sx, sy));
    Touch();
}

template <class I> void PathBase<I>::Rotate(const IPoint& origin, double angle) {
    part_.Transform(Affine::Rotation({origin.X(), origin.Y()}, angle));
    Touch();
}

template <class I> bool PathBase<I>::IsEqual(const IClone& other) const {
    const auto* o = dynamic_cast<const PathBase*>(&other);
    if (!o || o->GeometryType() != this->GeometryType()) return false;
    return part_.vertices == o->part_.vertices && part_.curves == o->part_.curves;
}

template <class I> void PathBase<I>::StoreSet(std::int32_t, std::int32_t vertex, WKSPoint p) {
    part_.vertices[vertex] = p;
    part_.StraightenAround(vertex);
    Touch();
}

template class PathBase<IPath>;
template class PathBase<IRing>;

} // namespace tess::detail
