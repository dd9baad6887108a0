#include "extension/DialogCommands.h"

#include "extension/frmAbout.h"
#include "frame/ErrorHandling.h"
#include "platform/framework/Document.h"

namespace tess {

namespace detail {

void DialogCommand::OnClick() {
    TrappedVoid("ICommand_OnClick ", [&] {
        const DialogRun& dialog = Runs().*dialog_;
        if (!dialog)
            NotAvailable();
        dialog(DialogApplication());
    });
}

} // namespace detail

std::shared_ptr<IApplication> clsNameGraphics::DialogApplication() const {
    // The dialog is given the application of the document, which is the kept one in every host.
    if (auto document = std::dynamic_pointer_cast<IDocument>(document_))
        if (auto parent = document->Parent())
            return parent;
    return application_;
}

void cmdAbout::OnClick() {
    TrappedVoid("ICommand_OnClick ", [&] {
        frmAbout about;
        about.ArcApplication(application_);
        about.ShowModal();
    });
}

} // namespace tess
