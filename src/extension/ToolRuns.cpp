#include "extension/ToolRuns.h"

#include "calculator/frmGeometry.h"
#include "calculator/modCalcGeometry.h"
#include "conversion/frmLayerFields.h"
#include "conversion/modCreateVertices.h"
#include "extension/ComponentFolder.h"

namespace tess {

ToolRuns BuiltInRuns() {
    ToolRuns runs;
    // Tools join the table here as their layers land, one assignment each, e.g.
    //   runs.ConvertToVertices = &ConvertToVertices;
    // Until then the commands report that the tool is not available yet.
    runs.LayerFieldsDialog = [](const std::shared_ptr<IApplication>& application, std::int32_t option) {
        ShowLayerFieldsDialog(application, option, ManualPath());
    };
    runs.ConvertToVertices = [](const std::shared_ptr<IFeatureLayer>& layer,
                                const std::shared_ptr<IVariantArray>& selectedFields, bool doAllRecords,
                                const std::string& outputPath, const std::shared_ptr<IApplication>& application,
                                const std::shared_ptr<clsExtension>& extension, bool showProgress, bool reserved) {
        return ConvertToVertices(layer, selectedFields, doAllRecords, outputPath, application, extension,
                                 showProgress, reserved);
    };
    runs.GeometryDialog = [](const std::shared_ptr<IApplication>& application) {
        ShowGeometryDialog(application, ManualPath());
    };
    runs.CalcGeometry = [](const std::shared_ptr<IVariantArray>& options,
                           const std::shared_ptr<IApplication>& application) {
        return CalcGeometry(options, application);
    };
    return runs;
}

ToolRuns& Runs() {
    static ToolRuns runs = BuiltInRuns();
    return runs;
}

} // namespace tess
