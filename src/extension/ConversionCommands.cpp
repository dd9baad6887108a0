#include "extension/ConversionCommands.h"

#include "frame/ErrorHandling.h"
#include "frame/clsExtension.h"

namespace tess::detail {

void ConversionCommand::OnClick() {
    TrappedVoid("ICommand_OnClick ", [&] {
        const ToolRuns& runs = Runs();
        const ConversionWorker& worker = runs.*worker_;
        if (!runs.LayerFieldsDialog || !worker)
            NotAvailable();

        runs.LayerFieldsDialog(application_, option_);
        std::shared_ptr<clsExtension> extension = Extension();
        if (!extension->ShouldContinue())
            return;

        const bool doAllRecords = extension->DoAllRecords();
        const std::string outputPath = extension->NewShapefileLocation();
        const auto layer = extension->SelectedLayer();
        const auto fields = extension->SelectedFields();
        const std::int32_t count = extension->AnalysisRecordCount();
        const bool showProgress = threshold_ ? count > *threshold_ : true;

        const std::string report =
            worker(layer, fields, doAllRecords, outputPath, application_, extension, showProgress, false);
        ShowReport(report);

        extension->SelectedFeatureClass(nullptr);
        extension->SelectedFields(nullptr);
        MarkDocumentDirty();
    });
}

} // namespace tess::detail
