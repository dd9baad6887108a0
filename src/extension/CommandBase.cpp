#include "extension/CommandBase.h"

#include "extension/CommandBitmaps.h"
#include "extension/CommandTable.h"
#include "frame/ErrorHandling.h"
#include "frame/clsExtension.h"
#include "platform/framework/Application.h"
#include "platform/framework/Document.h"
#include "platform/system/Fault.h"
#include "support/frmReport_modal.h"

namespace tess {

CommandBase::CommandBase(std::string_view className)
    : info_(&CommandInfoOf(className)), picture_(LoadCommandBitmap(info_->BitmapId)) {}

CommandBase::~CommandBase() {
    // Released in this order: the picture, the document, the application.
    picture_ = nullptr;
    document_.reset();
    application_.reset();
}

std::string CommandBase::Name() { return std::string(info_->Name); }
std::string CommandBase::Caption() { return std::string(info_->Caption); }
std::string CommandBase::Tooltip() { return std::string(info_->Tooltip); }
std::string CommandBase::Message() { return std::string(info_->Message); }
std::int32_t CommandBase::Bitmap() { return info_->BitmapId; }
std::string CommandBase::Category() { return std::string(kCommandCategory); }

void CommandBase::OnCreate(const std::shared_ptr<IApplication>& hook) {
    TrappedVoid("ICommand_OnCreate ", [&] {
        application_ = hook;
        if (!application_)
            throw Fault(fault::ObjectNotSet, std::string(info_->ClassName),
                        "Object variable or With block variable not set");
        document_ = std::dynamic_pointer_cast<IMxDocument>(application_->Document());
    });
}

void CommandBase::NotAvailable() const {
    throw Fault(fault::InvalidCall, std::string(info_->ClassName),
                "The tool \"" + CaptionText(info_->Caption) + "\" is not available yet in this build.");
}

std::shared_ptr<clsExtension> CommandBase::Extension() const {
    std::shared_ptr<clsExtension> extension = application_ ? FindTessExtension(*application_) : nullptr;
    if (!extension)
        throw Fault(fault::ObjectNotSet, std::string(info_->ClassName),
                    "Object variable or With block variable not set");
    return extension;
}

void CommandBase::ShowReport(const std::string& rtf) {
    frmReport_modal report;
    report.Ctl("txtReport").Text = rtf;
    report.ShowModal();
}

void CommandBase::MarkDocumentDirty() const {
    auto dirty = std::dynamic_pointer_cast<IDocumentDirty>(document_);
    if (!dirty)
        throw Fault(fault::ObjectNotSet, std::string(info_->ClassName),
                    "Object variable or With block variable not set");
    dirty->SetDirty();
}

} // namespace tess
