#include "platform/data/FeatureConstruction.h"

#include <cmath>
#include <vector>

#include "platform/data/Cursor.h"
#include "platform/data/Row.h"
#include "platform/data/Table.h"
#include "platform/geometry/Geometry.h"
#include "platform/geometry/PolygonConstruction.h"
#include "platform/system/Fault.h"

namespace tess {
namespace {
constexpr const char* kSource = "FeatureConstruction";
}

void FeatureConstruction::ConstructPolygonsFromGeometries(const std::shared_ptr<IStepProgressor>& /*progress*/,
                                                          IFeatureClass& target,
                                                          const std::shared_ptr<IEnvelope>& processingBounds,
                                                          bool changedShapesOnly, IEnumGeometry& geometries,
                                                          const std::shared_ptr<ISelectionSet>& selection,
                                                          double clusterTolerance) {
    if (target.ShapeType() != esriGeometryPolygon)
        throw DataFault(fault::TypeMismatch, kSource, "Polygons can only be constructed into a polygon feature class");
    if (changedShapesOnly || selection)
        throw DataFault(fault::InvalidCall, kSource, "Only all shapes can be constructed into new polygons");
    if (!(clusterTolerance >= 0.0) || !std::isfinite(clusterTolerance))
        throw DataFault(fault::InvalidCall, kSource, "The cluster tolerance must be a number of 0 or more");

    std::vector<std::shared_ptr<IGeometry>> shapes;
    geometries.Reset();
    for (std::shared_ptr<IGeometry> shape = geometries.Next(); shape; shape = geometries.Next()) {
        if (shape->IsEmpty())
            continue;
        if (processingBounds && !processingBounds->IsEmpty()) {
            const auto box = shape->Envelope();
            if (box->XMax() < processingBounds->XMin() || box->XMin() > processingBounds->XMax() ||
                box->YMax() < processingBounds->YMin() || box->YMin() > processingBounds->YMax())
                continue;
        }
        shapes.push_back(std::move(shape));
    }
    const std::vector<std::shared_ptr<IPolygon>> polygons = ConstructPolygonsFromLines(shapes, clusterTolerance);
    if (polygons.empty())
        return;

    std::shared_ptr<ISpatialReference> reference;
    if (auto* geo = dynamic_cast<IGeoDataset*>(&target))
        reference = geo->SpatialReference();
    std::shared_ptr<IFeatureCursor> cursor = target.Insert(true);
    std::shared_ptr<IFeatureBuffer> buffer = target.CreateFeatureBuffer();
    for (const auto& polygon : polygons) {
        if (reference)
            polygon->SpatialReference(reference);
        buffer->Shape(polygon);
        cursor->InsertFeature(*buffer);
    }
    cursor->Flush();
}

} // namespace tess
