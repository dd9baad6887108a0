#include "graphics/frmNameElements.h"

#include "frame/ErrorHandling.h"
#include "platform/carto/EnumElement.h"
#include "platform/carto/GraphicElements.h"
#include "platform/carto/GraphicsContainer.h"
#include "platform/carto/Map.h"
#include "platform/framework/Application.h"
#include "platform/framework/Document.h"
#include "platform/system/Fault.h"
#include "platform/ui/UIServices.h"
#include "support/GeneralHelpers.h"

namespace tess {
namespace {

constexpr const char* kSource = "frmNameElements";

// Layout, in pixels.
constexpr double kFormWidth = 360.0;
constexpr double kFormHeight = 190.0;

constexpr ControlSpec kControls[] = {
    {"lblName", ControlKind::Label, "Name:", 12, 14, 50, 18},
    {"txtName", ControlKind::TextBox, "", 64, 12, 284, 22},
    {"optAll", ControlKind::OptionButton, "Name All Graphics", 12, 46, 336, 20},
    {"optSel", ControlKind::OptionButton, "Name Selected Graphics", 12, 70, 336, 20},
    {"cmdManual", ControlKind::CommandButton, "Manual", 12, 140, 100, 28},
    {"cmdOK", ControlKind::CommandButton, "OK", 140, 140, 100, 28},
    {"cmdCancel", ControlKind::CommandButton, "Cancel", 248, 140, 100, 28},
};

constexpr const char* kCaption = " Name Graphic Elements:";
constexpr const char* kConfirmTitle = "Confirm Action:";
constexpr const char* kCrLf = "\r\n";

struct FocusGraphics {
    std::shared_ptr<IGraphicsContainer> container;
    std::shared_ptr<IGraphicsContainerSelect> selection;
};

FocusGraphics FocusGraphicsOf(const std::shared_ptr<IMxDocument>& document) {
    FocusGraphics found;
    if (document) {
        std::shared_ptr<IMap> map = document->FocusMap();
        found.container = std::dynamic_pointer_cast<IGraphicsContainer>(map);
        found.selection = std::dynamic_pointer_cast<IGraphicsContainerSelect>(map);
    }
    if (!found.container || !found.selection)
        throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
    return found;
}

void NameElement(const std::shared_ptr<IElement>& element, const std::string& name) {
    if (auto properties = std::dynamic_pointer_cast<IElementProperties>(element))
        properties->Name(name);
}

} // namespace

frmNameElements::frmNameElements() : Form("frmNameElements") {
    Caption = kCaption;
    Width = kFormWidth;
    Height = kFormHeight;
    AddControls(kControls);
    On("cmdOK", FormEvent::Click, [this] { cmdOK_Click(); });
    On("cmdCancel", FormEvent::Click, [this] { cmdCancel_Click(); });
    On("cmdManual", FormEvent::Click, [this] { cmdManual_Click(); });
    On("optAll", FormEvent::Click, [this] { optAll_Click(); });
    On("optSel", FormEvent::Click, [this] { optSel_Click(); });
}

frmNameElements::~frmNameElements() = default;

void frmNameElements::ArcApplication(const std::shared_ptr<IApplication>& application) {
    TrappedVoid("ArcApplication ", [&] {
        application_ = application;
        document_ = application ? std::dynamic_pointer_cast<IMxDocument>(application->Document()) : nullptr;
        FocusGraphics graphics = FocusGraphicsOf(document_);
        selectedCount_ = graphics.selection->ElementSelectionCount();
        Control& optSel = Ctl("optSel");
        Control& optAll = Ctl("optAll");
        optSel.Caption = "Name Selected Graphics (n = " + std::to_string(selectedCount_) + ")";
        allCount_ = 0;
        graphics.container->Reset();
        for (auto element = graphics.container->Next(); element; element = graphics.container->Next())
            ++allCount_;
        optAll.Caption = "Name All Graphics (n = " + std::to_string(allCount_) + ")";
        if (selectedCount_ > 0) {
            optSel.Enabled = true;
            optSel.Value = 1;
            optAll.Value = 0;
        } else {
            optSel.Enabled = false;
            optSel.Value = 0;
            optAll.Value = 1;
        }
    });
}

// Option buttons of one frame exclude each other, as the hosts' do.
void frmNameElements::optAll_Click() {
    Ctl("optAll").Value = 1;
    Ctl("optSel").Value = 0;
}

void frmNameElements::optSel_Click() {
    Ctl("optSel").Value = 1;
    Ctl("optAll").Value = 0;
}

void frmNameElements::cmdOK_Click() {
    TrappedVoid("cmdOK_Click ", [&] {
        const std::string name = Ctl("txtName").Text;
        const bool all = Ctl("optAll").Value == 1;
        if (name.empty()) {
            const std::string text =
                all ? "Your 'Name' value is an empty string, so your " + std::to_string(allCount_) +
                          " graphic elements will be" + kCrLf +
                          "assigned no name (i.e. they will be assigned the empty string for a name)." + kCrLf
                    : "Your 'Name' value is an empty string, so your " + std::to_string(selectedCount_) +
                          " selected graphic elements will" + kCrLf +
                          "be assigned no name (i.e. they will be assigned the empty string for a name)." + kCrLf;
            const MsgBoxResult answer = UI().MessageBox(
                text + "Any existing name will be removed." + kCrLf + kCrLf +
                    "Please click 'OK' to confirm this action, or 'Cancel' to exit without making changes...",
                MsgBoxButtons::OKCancel, MsgBoxIcon::Question, kConfirmTitle);
            if (answer != MsgBoxResult::OK)
                return;
        }
        FocusGraphics graphics = FocusGraphicsOf(document_);
        if (all) {
            graphics.container->Reset();
            for (auto element = graphics.container->Next(); element; element = graphics.container->Next())
                NameElement(element, name);
        } else if (Ctl("optSel").Value == 1) {
            std::shared_ptr<IEnumElement> selected = graphics.selection->SelectedElements();
            selected->Reset();
            for (auto element = selected->Next(); element; element = selected->Next())
                NameElement(element, name);
        }
        Unload();
    });
}

void frmNameElements::cmdCancel_Click() {
    TrappedVoid("cmdCancel_Click ", [&] { Unload(); });
}

void frmNameElements::cmdManual_Click() {
    TrappedVoid("cmdManual_Click ", [&] { OpenDoc(manualPath_); });
}

void frmNameElements::Form_Load() {
    TrappedVoid("Form_Load ", [&] {
        // Modal windows of the hosts stay above the main window by themselves.
        Left = UI().ScreenWidth() / 2 - Width / 2;
        Top = UI().ScreenHeight() / 2 - Height / 2;
    });
}

void frmNameElements::Form_Unload() {
    application_.reset();
    document_.reset();
}

void ShowNameElementsDialog(const std::shared_ptr<IApplication>& application, const std::string& manualPath) {
    TrappedVoid("ShowNameElementsDialog ", [&] {
        frmNameElements form;
        form.ManualPath(manualPath);
        form.ArcApplication(application);
        form.ShowModal();
    });
}

} // namespace tess
