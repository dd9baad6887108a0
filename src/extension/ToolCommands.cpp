#include "extension/ToolCommands.h"

#include "frame/ErrorHandling.h"
#include "frame/clsExtension.h"
#include "platform/carto/Layers.h"
#include "platform/data/Table.h"
#include "platform/framework/Application.h"
#include "platform/system/Arrays.h"
#include "platform/system/Variant.h"

namespace tess {
namespace {

constexpr const char* kDisabledCaption = "Buil&d Polygons (Disabled: Pre-ArcGIS 9.2)";
constexpr const char* kDisabledText = "Disabled:  This function requires ArcGIS 9.2 or newer...";

// A wrap or planetary run over more features than this opens its progress dialog, as the planar
// conversions do.
constexpr std::int32_t kPlanetaryProgressThreshold = 500; // features

// Positions in the argument lists of the wrap and planetary dialogs.
constexpr std::int32_t kArgumentLayer = 0;

} // namespace

std::string GeoCentricInstructions() {
    return std::string("Select your feature layer to convert from the list below.  If the default spheroid "
                       "equatorial and polar ") +
           "radii are incorrect, you may enter the correct values or load predefined values.  You also have the "
           "option to " +
           "apply a longitudinal shift to your output.  NOTE: Only geographically-projected feature layers "
           "listed... ";
}

bool IsLargePlanetaryRun(const IVariantArray& arguments) {
    auto layer = arguments.Element(kArgumentLayer).As<IFeatureLayer>();
    if (!layer || !layer->FeatureClass())
        return false;
    return layer->FeatureClass()->FeatureCount(nullptr) > kPlanetaryProgressThreshold;
}

void clsConvertGeometry::OnClick() {
    TrappedVoid("ICommand_OnClick ", [&] {
        const ToolRuns& runs = Runs();
        if (!runs.GeometryDialog || !runs.CalcGeometry)
            NotAvailable();

        runs.GeometryDialog(application_);
        std::shared_ptr<clsExtension> extension = Extension();
        if (!extension->ShouldContinue())
            return;

        const std::string report = runs.CalcGeometry(extension->GeometryOptions(), application_);
        ShowReport(report);
        extension->GeometryOptions(nullptr);
        MarkDocumentDirty();
    });
}

std::string clsBuildPolygon::Caption() {
    return preVersion92_ ? kDisabledCaption : CommandBase::Caption();
}

std::string clsBuildPolygon::Tooltip() { return preVersion92_ ? kDisabledText : CommandBase::Tooltip(); }

std::string clsBuildPolygon::Message() { return preVersion92_ ? kDisabledText : CommandBase::Message(); }

void clsBuildPolygon::OnCreate(const std::shared_ptr<IApplication>& hook) {
    CommandBase::OnCreate(hook);
    TrappedVoid("ICommand_OnCreate ", [&] {
        extension_ = Extension();
        preVersion92_ = !extension_->IsVersion92();
    });
}

void clsBuildPolygon::OnClick() {
    TrappedVoid("ICommand_OnClick ", [&] {
        const ToolRuns& runs = Runs();
        if (!runs.BuildParamsDialog || !runs.orlBuildPolygons)
            NotAvailable();

        std::shared_ptr<clsExtension> extension = Extension();
        runs.BuildParamsDialog(application_);
        if (!extension->ShouldContinue())
            return;

        const auto layer = extension->SelectedLayer();
        const bool doAllRecords = extension->DoAllRecords();
        const double clusterTolerance = extension->BuildClusterTolerance();
        const bool transferLabels = extension->BuildShouldTransferLabels();
        bool useAllLabelPoints = false;
        bool useFirstLabelPoint = false;
        std::shared_ptr<IFeatureLayer> pointLayer;
        std::shared_ptr<IVariantArray> fields;
        if (transferLabels) {
            useAllLabelPoints = extension->BuildUseAllLabelPoints();
            useFirstLabelPoint = extension->BuildUseFirstLabelPoint();
            pointLayer = extension->SelectedPointLayer();
            fields = extension->SelectedFields();
        }
        const std::string outputPath = extension->NewShapefileLocation();

        const std::string report =
            runs.orlBuildPolygons(layer, doAllRecords, clusterTolerance, transferLabels, useAllLabelPoints,
                                  useFirstLabelPoint, pointLayer, fields, outputPath, document_, application_,
                                  extension);
        ShowReport(report);

        extension->SelectedFeatureClass(nullptr);
        extension->SelectedFields(nullptr);
        extension->SelectedPointLayer(nullptr);
        MarkDocumentDirty();
    });
}

void clsWrapBoundary::OnClick() {
    TrappedVoid("ICommand_OnClick ", [&] {
        const ToolRuns& runs = Runs();
        if (!runs.BoundaryWrapDialog || !runs.WrapToBoundaries)
            NotAvailable();

        runs.BoundaryWrapDialog(application_);
        std::shared_ptr<clsExtension> extension = Extension();
        // The dialog leaves its argument list only on OK.
        const auto arguments = extension->frmBoundaryWrapReturn();
        if (!extension->ShouldContinue() || !arguments)
            return;

        const std::string report = runs.WrapToBoundaries(application_, document_, extension, arguments,
                                                         IsLargePlanetaryRun(*arguments));
        ShowReport(report);
        extension->frmBoundaryWrapReturn(nullptr);
        MarkDocumentDirty();
    });
}

namespace detail {

void GeoCentricCommand::OnClick() {
    TrappedVoid("ICommand_OnClick ", [&] {
        const ToolRuns& runs = Runs();
        const PlanetaryWorker& worker = runs.*worker_;
        if (!runs.GeoCentricDialog || !worker)
            NotAvailable();

        std::shared_ptr<clsExtension> extension = Extension();
        auto setup = std::make_shared<VarArray>();
        setup->Add(Variant(application_));
        setup->Add(Variant(extension));
        setup->Add(Variant(extension->DirectoryPath()));
        setup->Add(Variant(extension->DirectoryType()));
        setup->Add(Variant(dialogCaption_));
        setup->Add(Variant(GeoCentricInstructions()));
        runs.GeoCentricDialog(setup);

        const auto arguments = extension->frmGeoCentricReturn();
        if (!extension->ShouldContinue() || !arguments)
            return;

        const std::string report =
            worker(application_, document_, extension, arguments, IsLargePlanetaryRun(*arguments));
        ShowReport(report);
        extension->frmGeoCentricReturn(nullptr);
        MarkDocumentDirty();
    });
}

} // namespace detail
} // namespace tess
