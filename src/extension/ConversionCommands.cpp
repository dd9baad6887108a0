#include "extension/ConversionCommands.h"

#include "conversion/ConversionRun.h"
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

        ConversionRequest request;
        request.doAllRecords = extension->DoAllRecords();
        request.outputPath = extension->NewShapefileLocation();
        request.layer = extension->SelectedLayer();
        request.selectedFields = extension->SelectedFields();
        request.application = application_;
        request.extension = extension;
        const std::int32_t count = extension->AnalysisRecordCount();
        request.showProgress = threshold_ ? count > *threshold_ : true;

        const std::string report = worker(request);
        ShowReport(report);

        extension->SelectedFeatureClass(nullptr);
        extension->SelectedFields(nullptr);
        MarkDocumentDirty();
    });
}

} // namespace tess::detail
