#include "conversion/ShapeSteps.h"

#include "platform/geometry/Path.h"

namespace tess {

void SimplifyStep(IGeometry& shape) {
    auto& topology = ShapeAs<ITopologicalOperator>(shape);
    (void)topology.IsKnownSimple();
    (void)topology.IsSimple();
    topology.Simplify();
}

void AddRingAsPath(const IRing& ring, IGeometryCollection& polyline) {
    auto path = std::make_shared<Path>();
    path->AddSegmentCollection(ShapeAs<const ISegmentCollection>(ring));
    polyline.AddGeometry(path);
}

} // namespace tess
