#include "planetary/frmBoundaryWrap.h"

#include "frame/ErrorHandling.h"
#include "frame/clsExtension.h"
#include "planetary/PlanetaryArguments.h"
#include "platform/carto/Layers.h"
#include "platform/system/Arrays.h"
#include "platform/system/Fault.h"
#include "platform/system/Variant.h"
#include "platform/ui/UIServices.h"
#include "spheroids/frmSpheroidOptions.h" // SpheroidAxisText: 13 decimals, trimmed

namespace tess {
namespace {

constexpr double kFormWidth = 520.0;  // pixels
constexpr double kFormHeight = 520.0; // pixels

constexpr ControlSpec kControls[] = {
    {"lblLayer", ControlKind::Label, "Select Layer to Convert:", 12, 8, 240, 18},
    {"lbxLayers", ControlKind::ListBox, "", 12, 28, 240, 160},
    {"optWrap180", ControlKind::OptionButton, kWrap180Caption, 264, 28, 244, 20},
    {"optWrap360", ControlKind::OptionButton, kWrap360Caption, 264, 50, 244, 20},
    {"optCustom", ControlKind::OptionButton, "Custom Boundary", 264, 72, 244, 20},
    {"lblNorth", ControlKind::Label, "Northern Boundary", 340, 96, 100, 16},
    {"txtNorth", ControlKind::TextBox, "", 340, 112, 100, 20},
    {"lblWest", ControlKind::Label, "Western Boundary", 264, 136, 100, 16},
    {"txtWest", ControlKind::TextBox, "", 264, 152, 100, 20},
    {"lblEast", ControlKind::Label, "Eastern Boundary", 408, 136, 100, 16},
    {"txtEast", ControlKind::TextBox, "", 408, 152, 100, 20},
    {"lblSouth", ControlKind::Label, "Southern Boundary", 340, 176, 100, 16},
    {"txtSouth", ControlKind::TextBox, "", 340, 192, 100, 20},
    {"lblLongShift", ControlKind::Label, "Longitudinal Shift =", 12, 224, 130, 18},
    {"txtLongShift", ControlKind::TextBox, "", 146, 222, 120, 22},
    {"lblDegrees", ControlKind::Label, "Decimal Degrees", 272, 224, 120, 18},
    {"txtMessage", ControlKind::TextBox, "", 12, 256, 496, 90},
    {"lblOutputName", ControlKind::Label, "Output Feature Class:", 12, 356, 300, 18},
    {"txtOutput", ControlKind::TextBox, "", 12, 376, 460, 22},
    {"cmdGetWorkspace", ControlKind::CommandButton, "", 480, 374, 28, 26},
    {"cmdManual", ControlKind::CommandButton, "Manual", 12, 420, 100, 28},
    {"cmdOK", ControlKind::CommandButton, "OK", 300, 420, 100, 28},
    {"cmdCancel", ControlKind::CommandButton, "Cancel", 408, 420, 100, 28},
};

constexpr const char* kBoxes[] = {"txtWest", "txtEast", "txtNorth", "txtSouth"};
constexpr std::uint32_t kWindowColor = 0xFFFFFF;
constexpr std::uint32_t kButtonFaceColor = 0xF0F0F0;

// The whole globe, for a remembered box that is no box.
constexpr double kWorldWest = -180.0;
constexpr double kWorldEast = 180.0;
constexpr double kWorldSouth = -90.0;
constexpr double kWorldNorth = 90.0;
constexpr double kRange360West = 0.0;
constexpr double kRange360East = 360.0;

std::string Instructions() {
    return std::string("Select your feature layer to convert from the list below.  If any features extend past the "
                       "selected ") +
           "boundary, this tool will clip that feature at the boundary and wrap the clipped portion to the other "
           "side. All clipped " +
           "portions of a feature will be maintained in a single record.  NOTE: Only geographically-projected "
           "feature layers listed... ";
}

} // namespace

frmBoundaryWrap::frmBoundaryWrap() : frmPlanetaryDialog("frmBoundaryWrap") {
    Caption = " Wrap to Boundary:";
    Width = kFormWidth;
    Height = kFormHeight;
    AddControls(kControls);
    Ctl("txtMessage").Locked = true;
    Ctl("txtMessage").Text = Instructions();
    Ctl("cmdGetWorkspace").ToolTipText = "Browse for Output Feature Class...";
    WireSharedControls();
    for (const char* option : {"optWrap180", "optWrap360", "optCustom"})
        On(option, FormEvent::Click, [this, option] { TrappedVoid("opt_Click ", [&] { SetOption(option); }); });
    On("cmdOK", FormEvent::Click, [this] { cmdOK_Click(); });
}

frmBoundaryWrap::~frmBoundaryWrap() = default;

void frmBoundaryWrap::ArcApplication(const std::shared_ptr<IApplication>& application) {
    TrappedVoid("ArcApplication ", [&] {
        Attach(application, nullptr);
        extension_->frmBoundaryWrapReturn(nullptr);
        FillLayers();

        double west = extension_->CustomBoundaryWest();
        double east = extension_->CustomBoundaryEast();
        double south = extension_->CustomBoundarySouth();
        double north = extension_->CustomBoundaryNorth();
        if (!(west < east) || !(south < north)) {
            west = kWorldWest;
            north = kWorldNorth;
            east = kWorldEast;
            south = kWorldSouth;
        }
        Ctl("txtWest").Text = SpheroidAxisText(west);
        Ctl("txtEast").Text = SpheroidAxisText(east);
        Ctl("txtSouth").Text = SpheroidAxisText(south);
        Ctl("txtNorth").Text = SpheroidAxisText(north);

        const std::int32_t option = extension_->LongitudeWrapOption();
        SetOption(option == wrap_option::Range180   ? "optWrap180"
                  : option == wrap_option::Range360 ? "optWrap360"
                                                    : "optCustom");
        ShowShift(extension_->LongitudeShift());
        SetDefaultOutput(extension_->DirectoryPath(), extension_->DirectoryType());
    });
}

void frmBoundaryWrap::SetOption(const char* option) {
    for (const char* name : {"optWrap180", "optWrap360", "optCustom"})
        Ctl(name).Value = std::string(name) == option ? 1 : 0;
    const bool custom = std::string(option) == "optCustom";
    for (const char* box : kBoxes) {
        Ctl(box).Enabled = custom;
        Ctl(box).BackColor = custom ? kWindowColor : kButtonFaceColor;
    }
}

bool frmBoundaryWrap::ReadBoundary(const char* box, const char* what, double& value) {
    const std::string& text = Ctl(box).Text;
    if (IsNumeric(text)) {
        value = Variant(text).ToDouble();
        return true;
    }
    UI().MessageBox(std::string(what) + " Boundary Value is invalid...", MsgBoxButtons::OK, MsgBoxIcon::Exclamation,
                    "Invalid Boundary Value:");
    return false;
}

void frmBoundaryWrap::cmdOK_Click() {
    TrappedVoid("cmdOK_Click ", [&] {
        if (!extension_)
            throw Fault(fault::ObjectNotSet, "frmBoundaryWrap", "Object variable or With block variable not set");
        if (!CheckWorkspace())
            return;

        std::int32_t option = wrap_option::Custom;
        double west = kWorldWest, north = kWorldNorth, east = kWorldEast, south = kWorldSouth;
        if (Ctl("optWrap180").Value == 1) {
            option = wrap_option::Range180;
        } else if (Ctl("optWrap360").Value == 1) {
            option = wrap_option::Range360;
            west = kRange360West;
            east = kRange360East;
        } else {
            if (!ReadBoundary("txtNorth", "Northern", north) || !ReadBoundary("txtEast", "Eastern", east) ||
                !ReadBoundary("txtSouth", "Southern", south) || !ReadBoundary("txtWest", "Western", west))
                return;
        }
        if (!(west < east)) {
            UI().MessageBox("Western Boundary Value >= Eastern Boundary Value...", MsgBoxButtons::OK,
                            MsgBoxIcon::Exclamation, "Invalid Boundary Values:");
            return;
        }
        if (!(south < north)) {
            UI().MessageBox("Southern Boundary Value >= Northern Boundary Value...", MsgBoxButtons::OK,
                            MsgBoxIcon::Exclamation, "Invalid Boundary Values:");
            return;
        }

        const auto layer = CurrentLayer();
        if (!layer)
            throw Fault(fault::ObjectNotSet, "frmBoundaryWrap", "Object variable or With block variable not set");
        extension_->CustomBoundaryWest(west);
        extension_->CustomBoundaryNorth(north);
        extension_->CustomBoundaryEast(east);
        extension_->CustomBoundarySouth(south);
        extension_->LongitudeShift(shift_);
        extension_->LongitudeWrapOption(option);

        auto arguments = std::make_shared<VarArray>();
        arguments->Add(Variant(std::shared_ptr<IFeatureLayer>(layer)));
        arguments->Add(Variant(west));
        arguments->Add(Variant(north));
        arguments->Add(Variant(east));
        arguments->Add(Variant(south));
        arguments->Add(Variant(option));
        arguments->Add(Variant(OutputDescription(*layer)));
        arguments->Add(Variant(shift_));
        extension_->frmBoundaryWrapReturn(arguments);
        extension_->ShouldContinue(true);
        Hide();
    });
}

void ShowBoundaryWrapDialog(const std::shared_ptr<IApplication>& application, const std::string& manualPath) {
    TrappedVoid("ShowBoundaryWrapDialog ", [&] {
        frmBoundaryWrap form;
        form.ManualPath(manualPath);
        form.ArcApplication(application);
        form.ShowModal();
    });
}

} // namespace tess
