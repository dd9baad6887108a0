#pragma once
// Internal: what Project and SnapToSpatialReference need of a spatial
// reference, shared by every geometry class.

#include <cstddef>
#include <memory>

#include "platform/geometry/GeometryTypes.h"

namespace tess {
class ISpatialReference;
}

namespace tess::detail {

struct PartData;

enum class ProjectAction {
    None,       //!< either reference absent or unknown: nothing happens
    AssignOnly, //!< the same coordinate system: only the reference changes
    Transform,  //!< coordinates change
};
ProjectAction PlanProjection(const std::shared_ptr<ISpatialReference>& from,
                             const std::shared_ptr<ISpatialReference>& to);
//! In place; Fault when the transformation fails.
void TransformPoints(const ISpatialReference& from, const ISpatialReference& to, WKSPoint* points,
                     std::size_t count);
//! Densifies the true curves of the part, then transforms its vertices.
void ProjectPart(PartData& part, const ISpatialReference& from, const ISpatialReference& to);

//! The coordinate grid of a reference. Snap is the identity when there is no usable grid.
struct SnapGrid {
    double originX = 0.0;
    double originY = 0.0;
    double units = 0.0; //!< grid steps per coordinate unit; 0 when there is no grid
    WKSPoint Snap(WKSPoint p) const;
};
SnapGrid GridOf(const std::shared_ptr<ISpatialReference>& reference);
void SnapPart(PartData& part, const SnapGrid& grid);

//! The reference's cluster tolerance, 0 when there is no reference or no usable tolerance.
double ClusterTolerance(const std::shared_ptr<ISpatialReference>& reference);

} // namespace tess::detail
