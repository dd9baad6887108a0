#include "platform/geometry/Polygon.h"

#include <cmath>

#include "platform/geometry/GeometryBag.h"
#include "platform/geometry/Point.h"
#include "platform/geometry/detail/Cleaning.h"
#include "platform/geometry/detail/GeosBridge.h"
#include "platform/geometry/detail/Helpers.h"
#include "platform/geometry/detail/Projection.h"
#include "platform/system/Fault.h"

namespace tess {

std::shared_ptr<IClone> Polygon::Clone() const { return std::make_shared<Polygon>(*this); }

// ------------------------------------------------------------------ rings and their relations

std::int32_t Polygon::ExteriorRingCount() const {
    std::int32_t n = 0;
    for (const auto& ring : parts_)
        if (ring->IsExterior()) ++n;
    return n;
}

namespace {

bool BoxContains(const WKSEnvelope& outer, const WKSEnvelope& inner) {
    return outer.XMin <= inner.XMin && outer.YMin <= inner.YMin && outer.XMax >= inner.XMax &&
           outer.YMax >= inner.YMax;
}

//! Whether the ring lies inside the other, judged by its first vertex that is not on the
//! other's boundary (all on the boundary counts as inside).
bool RingInside(const detail::PartData& inner, const detail::PartData& outer) {
    for (const WKSPoint& v : inner.vertices) {
        const int where = detail::RingContainsPoint(outer, v);
        if (where != 0) return where > 0;
    }
    return true;
}

WKSEnvelope RingBox(const Ring& ring) {
    WKSEnvelope box;
    detail::SourceEnvelope(ring, box);
    return box;
}

} // namespace

std::vector<std::int32_t> Polygon::RingOwners() const {
    const std::size_t n = parts_.size();
    std::vector<std::int32_t> owners(n, -1);
    std::vector<double> areas(n);
    std::vector<WKSEnvelope> boxes(n);
    for (std::size_t i = 0; i < n; ++i) {
        areas[i] = parts_[i]->Area();
        boxes[i] = RingBox(*parts_[i]);
        if (areas[i] > 0.0) owners[i] = static_cast<std::int32_t>(i);
    }
    for (std::size_t h = 0; h < n; ++h) {
        if (areas[h] > 0.0 || parts_[h]->IsEmpty()) continue;
        double best = 0.0;
        for (std::size_t e = 0; e < n; ++e) {
            if (!(areas[e] > 0.0) || !BoxContains(boxes[e], boxes[h])) continue;
            if (owners[h] >= 0 && areas[e] >= best) continue;
            if (RingInside(parts_[h]->Data(), parts_[e]->Data())) {
                owners[h] = static_cast<std::int32_t>(e);
                best = areas[e];
            }
        }
        // A counter-clockwise ring inside no exterior ring stands alone: it is a component of
        // its own (with a negative area) rather than vanishing from the polygon's structure.
        if (owners[h] < 0)
            owners[h] = static_cast<std::int32_t>(h);
    }
    return owners;
}

std::int32_t Polygon::IndexOfRing(const IRing& ring) const {
    for (std::size_t i = 0; i < parts_.size(); ++i)
        if (static_cast<const IRing*>(parts_[i].get()) == &ring) return static_cast<std::int32_t>(i);
    // A copy of one of the rings (a clone, or a ring of a component) identifies it too.
    if (const auto* r = dynamic_cast<const Ring*>(&ring)) {
        for (std::size_t i = 0; i < parts_.size(); ++i)
            if (parts_[i]->IsEqual(*r)) return static_cast<std::int32_t>(i);
    }
    throw GeometryFault(fault::InvalidCall, "InteriorRingCount", "The ring is not a ring of this polygon");
}

std::int32_t Polygon::InteriorRingCount(const IRing& exteriorRing) const {
    const std::int32_t e = IndexOfRing(exteriorRing);
    const std::vector<std::int32_t> owners = RingOwners();
    std::int32_t n = 0;
    for (std::size_t i = 0; i < owners.size(); ++i)
        if (owners[i] == e && static_cast<std::int32_t>(i) != e) ++n;
    return n;
}

std::vector<std::shared_ptr<IRing>> Polygon::QueryExteriorRings() const {
    std::vector<std::shared_ptr<IRing>> rings;
    for (const auto& ring : parts_)
        if (ring->IsExterior()) rings.push_back(ring);
    return rings;
}

void Polygon::Close() {
    for (auto& ring : parts_) ring->Close();
    Changed();
}

void Polygon::QueryExteriorRingsEx(std::int32_t count, std::vector<std::shared_ptr<IRing>>& rings) const {
    rings = QueryExteriorRings();
    if (count >= 0 && rings.size() > static_cast<std::size_t>(count)) rings.resize(static_cast<std::size_t>(count));
}

void Polygon::QueryInteriorRingsEx(const IRing& exteriorRing, std::int32_t count,
                                   std::vector<std::shared_ptr<IRing>>& rings) const {
    const std::int32_t e = IndexOfRing(exteriorRing);
    const std::vector<std::int32_t> owners = RingOwners();
    rings.clear();
    for (std::size_t i = 0; i < owners.size() && static_cast<std::int32_t>(rings.size()) < count; ++i)
        if (owners[i] == e && static_cast<std::int32_t>(i) != e) rings.push_back(parts_[i]);
}

std::shared_ptr<IGeometryBag> Polygon::ExteriorRingBag() const {
    auto bag = std::make_shared<GeometryBag>();
    for (const auto& ring : parts_)
        if (ring->IsExterior()) bag->AddGeometry(ring);
    return bag;
}

std::shared_ptr<IGeometryBag> Polygon::InteriorRingBag(const IRing& exteriorRing) const {
    auto bag = std::make_shared<GeometryBag>();
    std::vector<std::shared_ptr<IRing>> holes;
    QueryInteriorRingsEx(exteriorRing, static_cast<std::int32_t>(parts_.size()), holes);
    for (auto& h : holes) bag->AddGeometry(h);
    return bag;
}

std::shared_ptr<IGeometryBag> Polygon::ConnectedComponentBag() const {
    auto bag = std::make_shared<GeometryBag>();
    const std::vector<std::int32_t> owners = RingOwners();
    // Components of a polygon simple under its tolerance are simple under the same tolerance.
    const bool simple = SimplifyChangesNothing();
    for (std::size_t e = 0; e < parts_.size(); ++e) {
        if (owners[e] != static_cast<std::int32_t>(e)) continue;
        auto component = std::make_shared<Polygon>();
        component->SpatialReference(sr_);
        component->AddPart(std::make_shared<Ring>(*parts_[e]));
        for (std::size_t h = 0; h < parts_.size(); ++h)
            if (h != e && owners[h] == static_cast<std::int32_t>(e))
                component->AddPart(std::make_shared<Ring>(*parts_[h]));
        component->MarkKnownSimple(simple);
        bag->AddGeometry(component);
    }
    return bag;
}

// ------------------------------------------------------------------ area

namespace {

//! Sums over all rings with one origin (the first vertex), so large coordinates cost no precision.
detail::AreaTerms PolygonTerms(const Polygon& polygon, WKSPoint& origin) {
    detail::AreaTerms sum;
    bool haveOrigin = false;
    for (std::size_t i = 0; i < polygon.PartCount(); ++i) {
        const detail::PartData& part = polygon.Part(i).Data();
        if (part.vertices.empty()) continue;
        if (!haveOrigin) {
            origin = part.vertices.front();
            haveOrigin = true;
        }
        const detail::AreaTerms t = detail::PartAreaTerms(part, origin);
        sum.area += t.area;
        sum.mx += t.mx;
        sum.my += t.my;
    }
    return sum;
}

} // namespace

double Polygon::Area() const {
    WKSPoint origin{0.0, 0.0};
    return -PolygonTerms(*this, origin).area;
}

std::shared_ptr<IPoint> Polygon::Centroid() const {
    auto p = std::make_shared<tess::Point>();
    QueryCentroid(*p);
    return p;
}

void Polygon::QueryCentroid(IPoint& centroid) const {
    if (IsEmpty()) {
        detail::PutPoint(centroid, nullptr, sr_);
        return;
    }
    WKSPoint origin{0.0, 0.0};
    const detail::AreaTerms t = PolygonTerms(*this, origin);
    WKSPoint c;
    if (t.area != 0.0) {
        c = {origin.X + t.mx / t.area, origin.Y + t.my / t.area};
    } else {
        // No area: the centre of the extent stands in.
        WKSEnvelope box;
        detail::SourceEnvelope(*this, box);
        c = {0.5 * (box.XMin + box.XMax), 0.5 * (box.YMin + box.YMax)};
    }
    detail::PutPoint(centroid, &c, sr_);
}

std::shared_ptr<IPoint> Polygon::LabelPoint() const {
    auto p = std::make_shared<tess::Point>();
    QueryLabelPoint(*p);
    return p;
}

void Polygon::QueryLabelPoint(IPoint& labelPoint) const {
    WKSPoint p;
    const bool found = !IsEmpty() && detail::GeosLabelPoint(*this, p);
    detail::PutPoint(labelPoint, found ? &p : nullptr, sr_);
}

// ------------------------------------------------------------------ simplify

namespace {

//! Orients and orders rings that neither cross nor touch: a ring inside an even number of
//! others is exterior (clockwise), inside an odd number a hole (counter-clockwise) of the
//! smallest ring around it; each exterior ring is followed by its holes.
std::vector<std::shared_ptr<Ring>> OrientAndOrder(const std::vector<std::shared_ptr<Ring>>& rings,
                                                  std::span<const std::span<const WKSPoint>> views) {
    const std::size_t n = rings.size();
    std::vector<int> depth(n, 0);
    std::vector<std::int32_t> parent(n, -1);
    if (n > 1) {
        std::vector<WKSEnvelope> boxes(n);
        std::vector<double> areas(n);
        for (std::size_t i = 0; i < n; ++i) {
            boxes[i] = RingBox(*rings[i]);
            areas[i] = std::abs(detail::PartSignedArea(rings[i]->Data()));
        }
        for (std::size_t i = 0; i < n; ++i) {
            for (std::size_t j = 0; j < n; ++j) {
                if (i == j || !BoxContains(boxes[j], boxes[i])) continue;
                if (detail::PointInRing(views[j].data(), views[j].size(), views[i].front()) > 0) {
                    ++depth[i];
                    if (parent[i] < 0 || areas[j] < areas[parent[i]]) parent[i] = static_cast<std::int32_t>(j);
                }
            }
        }
    }
    for (std::size_t i = 0; i < n; ++i) {
        const bool exterior = depth[i] % 2 == 0;
        const double signedArea = detail::PartSignedArea(rings[i]->Data());
        if ((exterior && signedArea > 0.0) || (!exterior && signedArea < 0.0)) rings[i]->ReverseOrientation();
    }
    std::vector<std::shared_ptr<Ring>> ordered;
    ordered.reserve(n);
    for (std::size_t e = 0; e < n; ++e) {
        if (depth[e] % 2 != 0) continue;
        ordered.push_back(rings[e]);
        for (std::size_t h = 0; h < n; ++h)
            if (depth[h] % 2 != 0 && parent[h] == static_cast<std::int32_t>(e)) ordered.push_back(rings[h]);
    }
    return ordered;
}

} // namespace

void Polygon::Simplify() {
    // Components of a simple polygon, results of the engine and shapes simplified before are
    // left as they are: simplifying them again would cost an engine pass and change nothing.
    if (SimplifyChangesNothing()) {
        simplified_.reset();
        return;
    }
    if (simplified_ && simplifiedAt_ == LatestChange() && simplifiedWith_ == sr_.get()) {
        const std::shared_ptr<Polygon> done = std::move(simplified_);
        parts_.clear();
        for (std::size_t i = 0; i < done->PartCount(); ++i) {
            parts_.push_back(done->PartPtr(i));
            parts_.back()->SpatialReference(sr_);
        }
        MarkKnownSimple(true);
        return;
    }
    simplified_.reset();
    SimplifyInPlace();
}

void Polygon::SimplifyInPlace() {
    const double tolerance = detail::ClusterTolerance(sr_);
    std::vector<std::shared_ptr<Ring>> rings;
    for (auto& part : parts_) {
        detail::PartData clean = detail::CleanRing(part->Data(), tolerance);
        // Fewer than three distinct vertices (a true curve may close on itself with two): the ring
        // has collapsed. Flat rings that fold back on themselves are not simple and vanish in the
        // overlay below; a zero signed area alone proves nothing (a figure-eight has it).
        const std::size_t minimum = clean.curves.empty() ? 4 : 2;
        if (clean.vertices.size() < minimum) continue;
        if (!(clean.vertices == part->Data().vertices) || !(clean.curves == part->Data().curves))
            part->MutableData() = std::move(clean);
        rings.push_back(part);
    }
    if (rings.empty()) {
        parts_.clear();
        MarkKnownSimple(true);
        return;
    }
    // The engine sees straight rings: plain rings in place, true curves densified.
    std::vector<std::vector<WKSPoint>> dense(rings.size());
    std::vector<std::span<const WKSPoint>> views(rings.size());
    for (std::size_t i = 0; i < rings.size(); ++i) {
        if (rings[i]->HasNonLinearSegments()) {
            detail::DensifyPart(rings[i]->Data(), detail::DefaultDensifyLimits(), dense[i]);
            views[i] = dense[i];
        } else {
            views[i] = rings[i]->Vertices();
        }
    }
    // Valid rings (no crossing or touching) only need orientation and order; the overlay is
    // for the rest.
    if (detail::GeosRingsSimple(views)) {
        parts_ = OrientAndOrder(rings, views);
    } else {
        detail::GeosEvenOddPolygon(views, *this);
        for (auto& ring : parts_) ring->SpatialReference(sr_);
    }
    MarkKnownSimple(true);
}

bool Polygon::IsSimple() const {
    if (SimplifyChangesNothing()) return true;
    auto copy = std::make_shared<Polygon>(*this);
    copy->SimplifyInPlace();
    const bool simple = copy->IsEqual(*this);
    simplified_ = std::move(copy);
    simplifiedAt_ = LatestChange();
    simplifiedWith_ = sr_.get();
    return simple;
}

void Polygon::AssignResult(const IGeometry& result) {
    const auto* other = dynamic_cast<const Polygon*>(&result);
    if (!other) {
        if (result.IsEmpty()) {
            SetEmpty();
            return;
        }
        throw GeometryFault(fault::GeometryFailed, "Polygon", "The result is not a polygon");
    }
    const bool simple = other->IsKnownSimple();
    parts_.clear();
    for (std::size_t i = 0; i < other->PartCount(); ++i) {
        auto ring = std::make_shared<Ring>(other->Part(i));
        ring->SpatialReference(sr_);
        parts_.push_back(std::move(ring));
    }
    if (!sr_ && result.SpatialReference()) SpatialReference(result.SpatialReference());
    MarkKnownSimple(simple);
}

} // namespace tess
