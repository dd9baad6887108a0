#include "extension/ToolRuns.h"

#include "calculator/frmGeometry.h"
#include "calculator/modCalcGeometry.h"
#include "conversion/frmBuildParams.h"
#include "conversion/frmLayerFields.h"
#include "conversion/mod_92_functions.h"
#include "conversion/modCreateVertices.h"
#include "extension/ComponentFolder.h"
#include "graphics/frmGraphicsShapefile.h"
#include "graphics/frmNameElements.h"
#include "graphics/frmSelectGraphics.h"
#include "planetary/PlanetaryRuns.h"
#include "planetary/frmBoundaryWrap.h"
#include "planetary/frmGeoCentric.h"

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
    runs.GeometryDialog = [](const std::shared_ptr<IApplication>& application) {
        ShowGeometryDialog(application, ManualPath());
    };
    runs.CalcGeometry = [](const std::shared_ptr<IVariantArray>& options,
                           const std::shared_ptr<IApplication>& application) {
        return CalcGeometry(options, application);
    };
    runs.BoundaryWrapDialog = [](const std::shared_ptr<IApplication>& application) {
        ShowBoundaryWrapDialog(application, ManualPath());
    };
    runs.WrapToBoundaries = [](const std::shared_ptr<IApplication>& application,
                               const std::shared_ptr<IMxDocument>& document,
                               const std::shared_ptr<clsExtension>& extension,
                               const std::shared_ptr<IVariantArray>& arguments, bool showProgress) {
        return WrapToBoundaries(application, document, extension, arguments, showProgress);
    };
    runs.GeoCentricDialog = [](const std::shared_ptr<IVariantArray>& setup) {
        ShowGeoCentricDialog(setup, ManualPath());
    };
    runs.CalcPlanetoCentricToPlanetoGraphic = [](const std::shared_ptr<IApplication>& application,
                                                 const std::shared_ptr<IMxDocument>& document,
                                                 const std::shared_ptr<clsExtension>& extension,
                                                 const std::shared_ptr<IVariantArray>& arguments, bool showProgress) {
        return CalcPlanetoCentricToPlanetoGraphic(application, document, extension, arguments, showProgress);
    };
    runs.CalcPlanetoGraphicToPlanetoCentric = [](const std::shared_ptr<IApplication>& application,
                                                 const std::shared_ptr<IMxDocument>& document,
                                                 const std::shared_ptr<clsExtension>& extension,
                                                 const std::shared_ptr<IVariantArray>& arguments, bool showProgress) {
        return CalcPlanetoGraphicToPlanetoCentric(application, document, extension, arguments, showProgress);
    };
    runs.BuildParamsDialog = [](const std::shared_ptr<IApplication>& application) {
        ShowBuildParamsDialog(application, ManualPath());
    };
    runs.orlBuildPolygons = &orlBuildPolygons;
    return runs;
}

ToolRuns& Runs() {
    static ToolRuns runs = BuiltInRuns();
    return runs;
}

} // namespace tess
