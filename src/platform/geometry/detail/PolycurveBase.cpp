#include "platform/geometry/detail/PolycurveBase.h"

#include <algorithm>
#include <type_traits>

#include "platform/geometry/Envelope.h"
#include "platform/geometry/Point.h"
#include "platform/geometry/detail/Helpers.h"
#include "platform/geometry/detail/Projection.h"
#include "platform/geometry/detail/SegmentBase.h"
#include "platform/system/Fault.h"

namespace tess::detail {

template <class I, class P>
PolycurveBase<I, P>::PolycurveBase(const PolycurveBase& other)
    : I(other), IPointCollection(other), ISegmentCollection(other), IGeometryCollection(other), ITransform2D(other),
      IClone(other), PartSource(other), VertexStore(other), std::enable_shared_from_this<PolycurveBase>(),
      sr_(other.sr_) {
    parts_.reserve(other.parts_.size());
    for (const auto& part : other.parts_) parts_.push_back(std::make_shared<P>(*part));
    knownSimple_ = other.KnownSimpleState();
    simpleStamp_ = NextStamp();
    simpleTolerance_ = other.simpleTolerance_;
}

template <class I, class P> void PolycurveBase<I, P>::AddPart(std::shared_ptr<P> part) {
    if (!part) throw GeometryFault(fault::ObjectNotSet, "AddGeometry", "Object variable not set");
    if (!part->SpatialReference()) part->SpatialReference(sr_);
    parts_.push_back(std::move(part));
    Changed();
}

template <class I, class P> void PolycurveBase<I, P>::SpatialReference(std::shared_ptr<ISpatialReference> reference) {
    sr_ = std::move(reference);
    for (auto& part : parts_) part->SpatialReference(sr_);
}

template <class I, class P> bool PolycurveBase<I, P>::IsEmpty() const {
    for (const auto& part : parts_)
        if (!part->IsEmpty()) return false;
    return true;
}

template <class I, class P> void PolycurveBase<I, P>::SetEmpty() {
    parts_.clear();
    Changed();
}

template <class I, class P> std::shared_ptr<IEnvelope> PolycurveBase<I, P>::Envelope() const {
    auto e = std::make_shared<tess::Envelope>();
    QueryEnvelope(*e);
    return e;
}

template <class I, class P> void PolycurveBase<I, P>::QueryEnvelope(IEnvelope& envelope) const {
    FillEnvelope(*this, sr_, envelope);
}

template <class I, class P> void PolycurveBase<I, P>::Project(std::shared_ptr<ISpatialReference> reference) {
    const ProjectAction action = PlanProjection(sr_, reference);
    if (action == ProjectAction::None) return;
    if (action == ProjectAction::Transform)
        for (auto& part : parts_) ProjectPart(part->MutableData(), *sr_, *reference);
    SpatialReference(std::move(reference));
    Changed();
}

template <class I, class P> void PolycurveBase<I, P>::SnapToSpatialReference() {
    const SnapGrid grid = GridOf(sr_);
    for (auto& part : parts_) SnapPart(part->MutableData(), grid);
    Changed();
}

template <class I, class P> double PolycurveBase<I, P>::Length() const { return SourceLength(*this); }

template <class I, class P> std::shared_ptr<IPoint> PolycurveBase<I, P>::FromPoint() const {
    auto p = std::make_shared<tess::Point>();
    QueryFromPoint(*p);
    return p;
}

template <class I, class P> std::shared_ptr<IPoint> PolycurveBase<I, P>::ToPoint() const {
    auto p = std::make_shared<tess::Point>();
    QueryToPoint(*p);
    return p;
}

template <class I, class P> void PolycurveBase<I, P>::QueryFromPoint(IPoint& point) const {
    for (const auto& part : parts_) {
        if (!part->IsEmpty()) {
            PutPoint(point, &part->Vertices().front(), sr_);
            return;
        }
    }
    PutPoint(point, nullptr, sr_);
}

template <class I, class P> void PolycurveBase<I, P>::QueryToPoint(IPoint& point) const {
    for (auto it = parts_.rbegin(); it != parts_.rend(); ++it) {
        if (!(*it)->IsEmpty()) {
            PutPoint(point, &(*it)->Vertices().back(), sr_);
            return;
        }
    }
    PutPoint(point, nullptr, sr_);
}

template <class I, class P> void PolycurveBase<I, P>::FromPoint(const IPoint& point) {
    if (parts_.empty()) AddPart(std::make_shared<P>());
    parts_.front()->FromPoint(point);
    Changed();
}

template <class I, class P> void PolycurveBase<I, P>::ToPoint(const IPoint& point) {
    if (parts_.empty()) AddPart(std::make_shared<P>());
    parts_.back()->ToPoint(point);
    Changed();
}

template <class I, class P>
void PolycurveBase<I, P>::QueryPoint(esriSegmentExtension extension, double distanceAlongCurve, bool asRatio,
                                     IPoint& outPoint) const {
    WKSPoint p;
    const bool found = SourcePointAlong(*this, extension, distanceAlongCurve, asRatio, p);
    PutPoint(outPoint, found ? &p : nullptr, sr_);
}

template <class I, class P>
void PolycurveBase<I, P>::QueryPointAndDistance(esriSegmentExtension extension, const IPoint& inPoint, bool asRatio,
                                                IPoint& outPoint, double& distanceAlongCurve,
                                                double& distanceFromCurve, bool& rightSide) const {
    NearestQuery(*this, sr_, extension, inPoint, asRatio, outPoint, distanceAlongCurve, distanceFromCurve,
                 rightSide);
}

template <class I, class P> bool PolycurveBase<I, P>::IsClosed() const {
    if (parts_.empty()) return false;
    for (const auto& part : parts_)
        if (!part->IsClosed()) return false;
    return true;
}

template <class I, class P> void PolycurveBase<I, P>::ReverseOrientation() {
    for (auto& part : parts_) part->ReverseOrientation();
    Changed();
}

template <class I, class P> std::int32_t PolycurveBase<I, P>::PointCount() const {
    std::int32_t n = 0;
    for (const auto& part : parts_) n += part->PointCount();
    return n;
}

template <class I, class P>
void PolycurveBase<I, P>::Locate(std::int32_t index, std::size_t& part, std::int32_t& vertex, bool allowEnd) const {
    const std::int32_t total = PointCount();
    CheckIndex(index, allowEnd ? total + 1 : total, "Point");
    std::int32_t rest = index;
    for (std::size_t p = 0; p < parts_.size(); ++p) {
        const std::int32_t n = parts_[p]->PointCount();
        if (rest < n || (allowEnd && rest == n && p + 1 == parts_.size())) {
            part = p;
            vertex = rest;
            return;
        }
        rest -= n;
    }
    throw GeometryFault(fault::OutOfRange, "Point", "Index out of range");
}

template <class I, class P> std::shared_ptr<IPoint> PolycurveBase<I, P>::Point(std::int32_t index) const {
    auto p = std::make_shared<tess::Point>();
    QueryPoint(index, *p);
    return p;
}

template <class I, class P> void PolycurveBase<I, P>::QueryPoint(std::int32_t index, IPoint& point) const {
    std::size_t part = 0;
    std::int32_t vertex = 0;
    Locate(index, part, vertex, false);
    PutPoint(point, &parts_[part]->Vertices()[vertex], sr_);
}

template <class I, class P> void PolycurveBase<I, P>::AddPoint(const IPoint& point) {
    if (parts_.empty()) AddPart(std::make_shared<P>());
    parts_.back()->AddPoint(point);
    Changed();
}

template <class I, class P> void PolycurveBase<I, P>::AddWKSPoints(std::int32_t count, const WKSPoint* points) {
    if (count <= 0) return;
    if (parts_.empty()) AddPart(std::make_shared<P>());
    parts_.back()->AddWKSPoints(count, points);
    Changed();
}

template <class I, class P> void PolycurveBase<I, P>::UpdatePoint(std::int32_t index, const IPoint& point) {
    std::size_t part = 0;
    std::int32_t vertex = 0;
    Locate(index, part, vertex, false);
    parts_[part]->UpdatePoint(vertex, point);
    Changed();
}

template <class I, class P>
void PolycurveBase<I, P>::InsertWKSPoints(std::int32_t index, std::int32_t count, const WKSPoint* points) {
    if (parts_.empty()) AddPart(std::make_shared<P>());
    std::size_t part = 0;
    std::int32_t vertex = 0;
    Locate(index, part, vertex, true);
    parts_[part]->InsertWKSPoints(vertex, count, points);
    Changed();
}

template <class I, class P> void PolycurveBase<I, P>::RemovePoints(std::int32_t index, std::int32_t count) {
    if (count <= 0) return;
    CheckIndex(index + count - 1, PointCount(), "RemovePoints");
    for (std::int32_t k = 0; k < count; ++k) {
        std::size_t part = 0;
        std::int32_t vertex = 0;
        Locate(index, part, vertex, false);
        parts_[part]->RemovePoints(vertex, 1);
    }
    Changed();
}

template <class I, class P> void PolycurveBase<I, P>::SetPointCollection(const IPointCollection& other) {
    if (&other == static_cast<const IPointCollection*>(this)) return;
    std::vector<std::shared_ptr<P>> parts;
    if (const auto* src = dynamic_cast<const PartSource*>(&other)) {
        for (std::size_t i = 0; i < src->SourcePartCount(); ++i) {
            auto part = std::make_shared<P>();
            part->MutableData() = src->SourcePart(i);
            part->SpatialReference(sr_);
            parts.push_back(std::move(part));
        }
    } else if (other.PointCount() > 0) {
        auto part = std::make_shared<P>();
        std::vector<WKSPoint> pts(static_cast<std::size_t>(other.PointCount()));
        other.QueryWKSPoints(0, other.PointCount(), pts.data());
        part->AddWKSPoints(other.PointCount(), pts.data());
        part->SpatialReference(sr_);
        parts.push_back(std::move(part));
    }
    parts_ = std::move(parts);
    Changed();
}

template <class I, class P>
void PolycurveBase<I, P>::QueryWKSPoints(std::int32_t index, std::int32_t count, WKSPoint* points) const {
    if (count <= 0) return;
    CheckIndex(index + count - 1, PointCount(), "QueryWKSPoints");
    std::size_t part = 0;
    std::int32_t vertex = 0;
    Locate(index, part, vertex, false);
    while (count > 0) {
        const auto v = parts_[part]->Vertices();
        const std::int32_t take = std::min<std::int32_t>(count, static_cast<std::int32_t>(v.size()) - vertex);
        std::copy_n(v.begin() + vertex, take, points);
        points += take;
        count -= take;
        ++part;
        vertex = 0;
    }
}

template <class I, class P> std::shared_ptr<IEnumVertex> PolycurveBase<I, P>::EnumVertices() const {
    // Writing through the enumerator is the point of it, hence the const_cast.
    auto& self = const_cast<PolycurveBase&>(*this);
    return MakeVertexEnumerator(std::shared_ptr<const void>(this->weak_from_this().lock()), self);
}

template <class I, class P> std::int32_t PolycurveBase<I, P>::SegmentCount() const {
    std::int32_t n = 0;
    for (const auto& part : parts_) n += part->SegmentCount();
    return n;
}

template <class I, class P> std::shared_ptr<ISegment> PolycurveBase<I, P>::Segment(std::int32_t index) const {
    CheckIndex(index, SegmentCount(), "Segment");
    std::int32_t rest = index;
    for (const auto& part : parts_) {
        const std::int32_t n = part->SegmentCount();
        if (rest < n) return MakeSegment(part->Data().SegmentAt(rest), sr_);
        rest -= n;
    }
    throw GeometryFault(fault::OutOfRange, "Segment", "Index out of range");
}

template <class I, class P> void PolycurveBase<I, P>::AddSegment(const ISegment& segment) {
    if (segment.IsEmpty()) return;
    const SegmentView view = StoreOf(segment).View();
    if (parts_.empty() || parts_.back()->IsEmpty() || !(parts_.back()->Vertices().back() == view.from)) {
        if (parts_.empty() || !parts_.back()->IsEmpty()) AddPart(std::make_shared<P>());
    }
    parts_.back()->MutableData().AppendSegment(view);
    Changed();
}

template <class I, class P> void PolycurveBase<I, P>::AddSegmentCollection(const ISegmentCollection& segments) {
    std::vector<PartData> source;
    if (const auto* src = dynamic_cast<const PartSource*>(&segments)) {
        for (std::size_t p = 0; p < src->SourcePartCount(); ++p) source.push_back(src->SourcePart(p));
    } else {
        PartData part;
        const std::int32_t n = segments.SegmentCount();
        for (std::int32_t i = 0; i < n; ++i) part.AppendSegment(StoreOf(*segments.Segment(i)).View());
        source.push_back(std::move(part));
    }
    for (const PartData& part : source) {
        part.ForEachSegment([this](std::int32_t, const SegmentView& s) {
            if (parts_.empty() || (!parts_.back()->IsEmpty() && !(parts_.back()->Vertices().back() == s.from)))
                AddPart(std::make_shared<P>());
            parts_.back()->MutableData().AppendSegment(s);
        });
    }
    Changed();
}

template <class I, class P> bool PolycurveBase<I, P>::HasNonLinearSegments() const {
    for (const auto& part : parts_)
        if (part->HasNonLinearSegments()) return true;
    return false;
}

template <class I, class P> std::shared_ptr<IEnumSegment> PolycurveBase<I, P>::EnumSegments() const {
    return MakeSegmentEnumerator(std::shared_ptr<const void>(this->weak_from_this().lock()), *this);
}

template <class I, class P> std::shared_ptr<IGeometry> PolycurveBase<I, P>::Geometry(std::int32_t index) const {
    CheckIndex(index, GeometryCount(), "Geometry");
    return parts_[index];
}

template <class I, class P> std::shared_ptr<P> PolycurveBase<I, P>::ConvertPart(const IGeometry& geometry) const {
    auto part = std::make_shared<P>();
    if (const auto* src = dynamic_cast<const PartSource*>(&geometry)) {
        for (std::size_t i = 0; i < src->SourcePartCount(); ++i) {
            // Several parts run into one, each joined to the end of the previous.
            src->SourcePart(i).ForEachSegment(
                [&part](std::int32_t, const SegmentView& s) { part->MutableData().AppendSegment(s); });
        }
    } else if (const auto* seg = dynamic_cast<const ISegment*>(&geometry)) {
        if (!seg->IsEmpty()) part->MutableData().AppendSegment(StoreOf(*seg).View());
    } else if (const auto* env = dynamic_cast<const IEnvelope*>(&geometry)) {
        if (!env->IsEmpty()) {
            // Clockwise, so that it is an exterior ring.
            const WKSPoint pts[5] = {{env->XMin(), env->YMin()},
                                     {env->XMin(), env->YMax()},
                                     {env->XMax(), env->YMax()},
                                     {env->XMax(), env->YMin()},
                                     {env->XMin(), env->YMin()}};
            part->AddWKSPoints(5, pts);
        }
    } else {
        throw GeometryFault(fault::TypeMismatch, "AddGeometry", "The geometry cannot be a part of this shape");
    }
    if (part->IsEmpty()) return nullptr;
    if constexpr (std::is_same_v<P, Ring>) part->Close();
    part->SpatialReference(sr_);
    return part;
}

template <class I, class P> void PolycurveBase<I, P>::AddGeometry(std::shared_ptr<IGeometry> geometry) {
    if (!geometry) throw GeometryFault(fault::ObjectNotSet, "AddGeometry", "Object variable not set");
    if (auto part = std::dynamic_pointer_cast<P>(geometry)) {
        AddPart(std::move(part));
        return;
    }
    if (const auto* src = dynamic_cast<const PartSource*>(geometry.get()); src && src->SourcePartCount() > 1) {
        for (std::size_t i = 0; i < src->SourcePartCount(); ++i) {
            auto part = std::make_shared<P>();
            part->MutableData() = src->SourcePart(i);
            if constexpr (std::is_same_v<P, Ring>) part->Close();
            part->SpatialReference(sr_);
            AddPart(std::move(part));
        }
        return;
    }
    if (auto part = ConvertPart(*geometry)) AddPart(std::move(part));
}

template <class I, class P> void PolycurveBase<I, P>::RemoveGeometries(std::int32_t index, std::int32_t count) {
    if (count <= 0) return;
    CheckIndex(index, GeometryCount(), "RemoveGeometries");
    CheckIndex(index + count - 1, GeometryCount(), "RemoveGeometries");
    parts_.erase(parts_.begin() + index, parts_.begin() + index + count);
    Changed();
}

template <class I, class P> void PolycurveBase<I, P>::Move(double dx, double dy) {
    for (auto& part : parts_) part->Move(dx, dy);
}

template <class I, class P> void PolycurveBase<I, P>::Scale(const IPoint& origin, double sx, double sy) {
    for (auto& part : parts_) part->Scale(origin, sx, sy);
}

template <class I, class P> void PolycurveBase<I, P>::Rotate(const IPoint& origin, double angle) {
    for (auto& part : parts_) part->Rotate(origin, angle);
}

template <class I, class P> bool PolycurveBase<I, P>::IsEqual(const IClone& other) const {
    const auto* o = dynamic_cast<const PolycurveBase*>(&other);
    if (!o || o->parts_.size() != parts_.size()) return false;
    for (std::size_t i = 0; i < parts_.size(); ++i)
        if (!parts_[i]->IsEqual(*o->parts_[i])) return false;
    return true;
}

template <class I, class P> void PolycurveBase<I, P>::StoreSet(std::int32_t part, std::int32_t vertex, WKSPoint p) {
    parts_[part]->StoreSet(0, vertex, p);
    Changed();
}

template <class I, class P> bool PolycurveBase<I, P>::KnownSimpleState() const {
    if (!knownSimple_) return false;
    for (const auto& part : parts_)
        if (part->Stamp() > simpleStamp_) return false;
    return true;
}

template <class I, class P> void PolycurveBase<I, P>::MarkKnownSimple(bool simple) {
    knownSimple_ = simple;
    simpleStamp_ = NextStamp();
    simpleTolerance_ = ClusterTolerance(sr_);
}

template <class I, class P> bool PolycurveBase<I, P>::SimplifyChangesNothing() const {
    // A reference of a larger tolerance may find segments short that were not before.
    return KnownSimpleState() && ClusterTolerance(sr_) <= simpleTolerance_;
}

template <class I, class P> std::uint64_t PolycurveBase<I, P>::LatestChange() const {
    std::uint64_t latest = changeStamp_;
    for (const auto& part : parts_) latest = std::max(latest, part->Stamp());
    return latest;
}

template class PolycurveBase<IPolyline, Path>;
template class PolycurveBase<IPolygon4, Ring>;

} // namespace tess::detail
