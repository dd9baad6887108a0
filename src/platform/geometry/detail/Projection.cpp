#include "platform/geometry/detail/Projection.h"

#include <cmath>
#include <vector>

#include "platform/geometry/detail/PartData.h"
#include "platform/srs/SpatialReference.h"
#include "platform/srs/Transform.h"

namespace tess::detail {

namespace {
//! esriSRToleranceOK: the reference's tolerance is usable.
constexpr std::int32_t kToleranceOK = 3;
} // namespace

ProjectAction PlanProjection(const std::shared_ptr<ISpatialReference>& from,
                             const std::shared_ptr<ISpatialReference>& to) {
    if (!from || !to) return ProjectAction::None;
    if (std::dynamic_pointer_cast<IUnknownCoordinateSystem>(from) ||
        std::dynamic_pointer_cast<IUnknownCoordinateSystem>(to))
        return ProjectAction::None;
    if (from == to || from->IsEqual(*to)) return ProjectAction::AssignOnly;
    return ProjectAction::Transform;
}

void TransformPoints(const ISpatialReference& from, const ISpatialReference& to, WKSPoint* points,
                     std::size_t count) {
    if (count == 0) return;
    std::vector<double> x(count);
    std::vector<double> y(count);
    for (std::size_t i = 0; i < count; ++i) {
        x[i] = points[i].X;
        y[i] = points[i].Y;
    }
    TransformCoordinates(from, to, x.data(), y.data(), count);
    for (std::size_t i = 0; i < count; ++i) points[i] = {x[i], y[i]};
}

void ProjectPart(PartData& part, const ISpatialReference& from, const ISpatialReference& to) {
    if (!part.curves.empty()) {
        std::vector<WKSPoint> dense;
        DensifyPart(part, DefaultDensifyLimits(), dense);
        part.vertices = std::move(dense);
        part.curves.clear();
    }
    TransformPoints(from, to, part.vertices.data(), part.vertices.size());
}

WKSPoint SnapGrid::Snap(WKSPoint p) const {
    if (!(units > 0.0) || !std::isfinite(units)) return p;
    return {originX + std::round((p.X - originX) * units) / units,
            originY + std::round((p.Y - originY) * units) / units};
}

SnapGrid GridOf(const std::shared_ptr<ISpatialReference>& reference) {
    SnapGrid grid;
    if (!reference) return grid;
    reference->GetFalseOriginAndUnits(grid.originX, grid.originY, grid.units);
    return grid;
}

void SnapPart(PartData& part, const SnapGrid& grid) {
    for (WKSPoint& v : part.vertices) v = grid.Snap(v);
    for (CurveEntry& e : part.curves) {
        // Centres and control points follow the grid too; radii are kept, the ends are the vertices.
        e.params.p1 = grid.Snap(e.params.p1);
        if (e.params.kind == SegKind::Bezier) e.params.p2 = grid.Snap(e.params.p2);
    }
}

double ClusterTolerance(const std::shared_ptr<ISpatialReference>& reference) {
    if (!reference) return 0.0;
    if (reference->XYToleranceValid() != kToleranceOK) return 0.0;
    const double tolerance = reference->XYTolerance();
    return tolerance > 0.0 && std::isfinite(tolerance) ? tolerance : 0.0;
}

} // namespace tess::detail
