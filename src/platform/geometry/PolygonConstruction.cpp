#include "platform/geometry/PolygonConstruction.h"

#include "platform/geometry/Polygon.h"
#include "platform/geometry/detail/GeosBridge.h"

namespace tess {

std::vector<std::shared_ptr<IPolygon>> ConstructPolygonsFromLines(const std::vector<std::shared_ptr<IGeometry>>& lines,
                                                                  double clusterTolerance, ClusterMethod method) {
    std::shared_ptr<ISpatialReference> reference;
    for (const auto& line : lines)
        if (line && !reference)
            reference = line->SpatialReference();
    std::vector<std::shared_ptr<IPolygon>> out;
    for (auto& polygon : detail::GeosPolygonizeShapes(lines, clusterTolerance, method)) {
        polygon->SpatialReference(reference);
        out.push_back(polygon);
    }
    return out;
}

} // namespace tess
