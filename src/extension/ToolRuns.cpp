#include "extension/ToolRuns.h"

#include "conversion/frmLayerFields.h"
#include "conversion/modCreateVertices.h"
#include "extension/ComponentFolder.h"
#include "graphics/frmGraphicsShapefile.h"
#include "graphics/frmNameElements.h"
#include "graphics/frmSelectGraphics.h"

namespace tess {

ToolRuns BuiltInRuns() {
    ToolRuns runs;
    runs.LayerFieldsDialog = [](const std::shared_ptr<IApplication>& application, std::int32_t option) {
        ShowLayerFieldsDialog(application, option, ManualPath());
    };
    runs.ConvertToVertices = &ConvertToVertices;
    runs.ConvertToLabelPoints = &ConvertToLabelPoints;
    runs.ConvertToCentroids = &ConvertToCentroids;
    runs.ConvertToSphericalCentroid = &ConvertToSphericalCentroid;
    runs.PolylinesToPolygons = &PolylinesToPolygons;
    runs.PolygonsToPolylines = &PolygonsToPolylines;
    runs.SplitMultipart = &SplitMultipart;
    runs.JoinFeatures = &JoinFeatures;
    runs.GraphicsShapefileDialog = [](const auto& application) { ShowGraphicsShapefileDialog(application, ManualPath()); };
    runs.SelectGraphicsDialog = [](const auto& application) { ShowSelectGraphicsDialog(application, ManualPath()); };
    runs.NameElementsDialog = [](const auto& application) { ShowNameElementsDialog(application, ManualPath()); };
    return runs;
}

ToolRuns& Runs() {
    static ToolRuns runs = BuiltInRuns();
    return runs;
}

} // namespace tess
