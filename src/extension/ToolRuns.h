#pragma once
// The dialogs and workers behind the commands. A command looks its tool up here:
// an empty entry is a tool that this build does not have yet, and the command
// says so instead of opening anything. Wiring a tool in is one line of
// ToolRuns.cpp. Tests put their own entries in to drive a command's protocol.

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace tess {

class IApplication;
class IMxDocument;
class IFeatureLayer;
class IVariantArray;
class clsExtension;
struct ConversionRequest;

//! Creates a dialog, gives it the application (its ArcApplication property), shows it modally and
//! releases it.
using DialogRun = std::function<void(const std::shared_ptr<IApplication>& application)>;
//! The same for the layer-and-fields dialog, which is told which conversion it serves.
using LayerFieldsDialogRun =
    std::function<void(const std::shared_ptr<IApplication>& application, std::int32_t conversionOption)>;
//! The same for the planetary dialog, which takes its set-up as a list: application, extension,
//! output folder, output type, caption, instruction text.
using GeoCentricDialogRun = std::function<void(const std::shared_ptr<IVariantArray>& setup)>;

//! A conversion worker: the layer, fields, records, output and progress choice of the request.
//! Returns the RTF report.
using ConversionWorker = std::function<std::string(const ConversionRequest& request)>;

//! The calculator's run over the geometry options of its dialog; returns the RTF report.
using GeometryWorker = std::function<std::string(const std::shared_ptr<IVariantArray>& geometryOptions,
                                                 const std::shared_ptr<IApplication>& application)>;

//! Polygon building: polyline layer, all records, cluster tolerance (map units), transfer labels,
//! use all label points, use the first label point, label point layer (may be null), fields to
//! transfer (may be null), output path, document, application, extension. Returns the RTF report,
//! empty after a failure the run has already told the user about.
using BuildPolygonsWorker = std::function<std::string(
    const std::shared_ptr<IFeatureLayer>& polylineLayer, bool doAllRecords, double clusterTolerance,
    bool transferLabels, bool useAllLabelPoints, bool useFirstLabelPoint,
    const std::shared_ptr<IFeatureLayer>& labelPointLayer, const std::shared_ptr<IVariantArray>& selectedFields,
    const std::string& outputPath, const std::shared_ptr<IMxDocument>& document,
    const std::shared_ptr<IApplication>& application, const std::shared_ptr<clsExtension>& extension)>;

//! Wrap and planetary runs: application, document, extension, the argument list their dialog left
//! in the extension, show-progress flag. Returns the RTF report.
using PlanetaryWorker = std::function<std::string(
    const std::shared_ptr<IApplication>& application, const std::shared_ptr<IMxDocument>& document,
    const std::shared_ptr<clsExtension>& extension, const std::shared_ptr<IVariantArray>& arguments,
    bool showProgress)>;

struct ToolRuns {
    // Dialogs that do all their work inside.
    DialogRun GraphicsShapefileDialog; //!< frmGraphicsShapefile
    DialogRun SelectGraphicsDialog;    //!< frmSelectGraphics
    DialogRun NameElementsDialog;      //!< frmNameElements

    // The eight conversions: one dialog, one worker each.
    LayerFieldsDialogRun LayerFieldsDialog; //!< frmLayerFields
    ConversionWorker ConvertToVertices;
    ConversionWorker ConvertToLabelPoints;
    ConversionWorker ConvertToCentroids;
    ConversionWorker ConvertToSphericalCentroid;
    ConversionWorker PolylinesToPolygons;
    ConversionWorker PolygonsToPolylines;
    ConversionWorker SplitMultipart;
    ConversionWorker JoinFeatures;

    DialogRun GeometryDialog; //!< frmGeometry
    GeometryWorker CalcGeometry;

    DialogRun BuildParamsDialog; //!< frmBuildParams
    BuildPolygonsWorker orlBuildPolygons;

    DialogRun BoundaryWrapDialog; //!< frmBoundaryWrap
    PlanetaryWorker WrapToBoundaries;

    GeoCentricDialogRun GeoCentricDialog; //!< frmGeoCentric
    PlanetaryWorker CalcPlanetoCentricToPlanetoGraphic;
    PlanetaryWorker CalcPlanetoGraphicToPlanetoCentric;
};

//! The tools of this build; one table per process.
ToolRuns& Runs();
//! The table as this build makes it (for tests that changed Runs() and put it back).
ToolRuns BuiltInRuns();

} // namespace tess
