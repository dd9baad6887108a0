#include "support/frmReport_modal.h"

#include "frame/ErrorHandling.h"
#include "platform/ui/UIServices.h"
#include "support/AnchorObjectList.h"
#include "support/ReportTemplates.h"
#include "support/RtfRenderer.h"

namespace tess {
namespace {

// Layout, in pixels.
constexpr double kFormWidth = 560.0;
constexpr double kFormHeight = 420.0;

constexpr ControlSpec kControls[] = {
    {"txtBackground", ControlKind::TextBox, "", 8, 8, 544, 356},
    {"txtReport", ControlKind::RichTextBox, "", 12, 12, 536, 348},
    {"cmdCopy", ControlKind::CommandButton, "&Copy to Clipboard", 8, 376, 160, 28},
    {"cmdPrint", ControlKind::CommandButton, "&Print", 200, 376, 160, 28},
    {"cmdOK", ControlKind::CommandButton, "&Exit", 392, 376, 160, 28},
    {"imgCornerBars", ControlKind::Image, "", 540, 404, 16, 16},
    {"CommonDialog1", ControlKind::Other, "", 0, 0, 0, 0},
};

} // namespace

frmReport_modal::frmReport_modal() : Form("frmReport_modal") {
    Caption = " Report";
    Width = kFormWidth;
    Height = kFormHeight;
    AddControls(kControls);
    Ctl("txtReport").Locked = true;
    Ctl("txtBackground").Locked = true;
    Ctl("CommonDialog1").Visible = false;
    On("cmdOK", FormEvent::Click, [this] { cmdOK_Click(); });
    On("cmdCopy", FormEvent::Click, [this] { cmdCopy_Click(); });
    On("cmdPrint", FormEvent::Click, [this] { cmdPrint_Click(); });
}

frmReport_modal::~frmReport_modal() = default;

void frmReport_modal::ShowReport(const std::string& rtf) {
    TrappedVoid("ShowReport ", [&] {
        frmReport_modal form;
        form.Ctl("txtReport").Text = rtf;
        form.ShowModal();
    });
}

void frmReport_modal::Form_Load() {
    // Modal windows of the hosts stay above the main window by themselves.
    TrappedVoid("Form_Load ", [&] {
        anchors_ = std::make_unique<AnchorObjectList>(*this);
        anchors_->Item(Ctl("txtReport")).SetAnchors(enumStartEnd, enumStartEnd);
        anchors_->Item(Ctl("txtBackground")).SetAnchors(enumStartEnd, enumStartEnd);
        for (const char* button : {"cmdCopy", "cmdPrint", "cmdOK"})
            anchors_->Item(Ctl(button)).SetAnchors(enumNone, enumSizeEnd);
        anchors_->Item(Ctl("imgCornerBars")).SetAnchors(enumSizeEnd, enumSizeEnd);
    });
}

void frmReport_modal::Form_Resize() {
    if (anchors_)
        anchors_->DoAnchors();
}

void frmReport_modal::cmdOK_Click() {
    TrappedVoid("cmdOK_Click ", [&] { Unload(); });
}

void frmReport_modal::cmdCopy_Click() {
    TrappedVoid("cmdCopy_Click ", [&] {
        const std::string& rtf = Ctl("txtReport").Text;
        // Other programs read the rich text by its declared code page.
        UI().CopyToClipboard(RtfWithCodePageEscapes(rtf), RtfToHtml(rtf), RtfToText(rtf));
    });
}

void frmReport_modal::cmdPrint_Click() {
    // The host asks for the printer and prints page by page inside one-inch margins;
    // a cancelled printer dialog is a normal end, with no message.
    TrappedVoid("cmdPrint_Click ", [&] { UI().PrintReport(Ctl("txtReport").Text, Caption); });
}

} // namespace tess
