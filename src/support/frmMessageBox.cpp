#include "support/frmMessageBox.h"

#include "frame/ErrorHandling.h"
#include "frame/clsExtension.h"
#include "platform/system/Fault.h"
#include "platform/ui/UIServices.h"
#include "support/AnchorObjectList.h"

namespace tess {
namespace {

constexpr const char* kSource = "frmMessageBox";

// Layout, in pixels.
constexpr double kFormWidth = 420.0;
constexpr double kFormHeight = 260.0;

constexpr ControlSpec kControls[] = {
    {"txtMessage", ControlKind::TextBox, "", 8, 8, 404, 196},
    {"cmdYes", ControlKind::CommandButton, "&Yes", 204, 216, 96, 28},
    {"cmdNo", ControlKind::CommandButton, "&No", 308, 216, 96, 28},
    {"imgCornerBars", ControlKind::Image, "", 400, 244, 16, 16},
};

} // namespace

frmMessageBox::frmMessageBox() : Form("frmMessageBox") {
    Caption = " Message";
    Width = kFormWidth;
    Height = kFormHeight;
    AddControls(kControls);
    Ctl("txtMessage").Locked = true;
    On("cmdYes", FormEvent::Click, [this] { Answer(true); });
    On("cmdNo", FormEvent::Click, [this] { Answer(false); });
}

frmMessageBox::~frmMessageBox() = default;

void frmMessageBox::ArcApplication(const std::shared_ptr<IApplication>& application) {
    TrappedVoid("ArcApplication ", [&] {
        application_ = application;
        if (!extension_ && application_)
            extension_ = FindTessExtension(*application_);
        if (!extension_)
            throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
        extension_->ShouldContinue(false);
    });
}

void frmMessageBox::Form_Load() {
    // Modal windows of the hosts stay above the main window by themselves.
    TrappedVoid("Form_Load ", [&] {
        if (!extension_ && application_)
            extension_ = FindTessExtension(*application_);
        Left = UI().ScreenWidth() / 2 - Width / 2;
        Top = UI().ScreenHeight() / 2 - Height / 2;
        anchors_ = std::make_unique<AnchorObjectList>(*this);
        // The text grows with the window; buttons and corner keep to the far corner.
        anchors_->Item(Ctl("txtMessage")).SetAnchors(enumStartEnd, enumStartEnd);
        for (const char* name : {"cmdYes", "cmdNo", "imgCornerBars"})
            anchors_->Item(Ctl(name)).SetAnchors(enumSizeEnd, enumSizeEnd);
    });
}

void frmMessageBox::Form_Resize() {
    if (anchors_)
        anchors_->DoAnchors();
}

void frmMessageBox::Answer(bool yes) {
    TrappedVoid(yes ? "cmdYes_Click " : "cmdNo_Click ", [&] {
        if (!extension_)
            throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
        extension_->ShouldContinue(yes);
        Unload();
    });
}

} // namespace tess
