#include "platform/geometry/Polyline.h"

#include "platform/geometry/detail/Cleaning.h"
#include "platform/geometry/detail/Projection.h"
#include "platform/system/Fault.h"

namespace tess {

std::shared_ptr<IClone> Polyline::Clone() const { return std::make_shared<Polyline>(*this); }

void Polyline::SimplifyNetwork() { Simplify(); }

namespace {
bool HasLength(const detail::PartData& part) {
    bool any = false;
    part.ForEachSegment([&any](std::int32_t, const detail::SegmentView& s) {
        if (!any && detail::Length(s) > 0.0) any = true;
    });
    return any;
}
} // namespace

bool Polyline::IsSimple() const {
    if (SimplifyChangesNothing()) return true;
    const double tolerance = detail::ClusterTolerance(sr_);
    for (const auto& part : parts_)
        if (!HasLength(part->Data()) || detail::HasShortSegments(part->Data(), tolerance)) return false;
    return true;
}

void Polyline::Simplify() {
    if (SimplifyChangesNothing()) return;
    const double tolerance = detail::ClusterTolerance(sr_);
    std::vector<std::shared_ptr<Path>> kept;
    for (auto& part : parts_) {
        detail::PartData clean = detail::WithoutShortSegments(part->Data(), tolerance);
        if (clean.vertices.size() < 2 || !HasLength(clean)) continue;
        if (!(clean.vertices == part->Data().vertices) || !(clean.curves == part->Data().curves))
            part->MutableData() = std::move(clean);
        kept.push_back(part);
    }
    parts_ = std::move(kept);
    MarkKnownSimple(true);
}

void Polyline::AssignResult(const IGeometry& result) {
    const auto* other = dynamic_cast<const Polyline*>(&result);
    if (!other) {
        if (result.IsEmpty()) {
            SetEmpty();
            return;
        }
        throw GeometryFault(fault::GeometryFailed, "Polyline", "The result is not a polyline");
    }
    const bool simple = other->IsKnownSimple();
    parts_.clear();
    for (std::size_t i = 0; i < other->PartCount(); ++i) {
        auto part = std::make_shared<Path>(other->Part(i));
        part->SpatialReference(sr_);
        parts_.push_back(std::move(part));
    }
    if (!sr_ && result.SpatialReference()) SpatialReference(result.SpatialReference());
    MarkKnownSimple(simple);
}

} // namespace tess
