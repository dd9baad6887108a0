#include "planetary/frmGeoCentric.h"

#include "frame/ErrorHandling.h"
#include "frame/clsExtension.h"
#include "planetary/PlanetaryArguments.h"
#include "platform/carto/Layers.h"
#include "platform/data/Table.h"
#include "platform/framework/Application.h"
#include "platform/srs/SpatialReference.h"
#include "platform/system/Arrays.h"
#include "platform/system/Fault.h"
#include "platform/system/Variant.h"
#include "platform/ui/UIServices.h"
#include "spheroids/frmSpheroidOptions.h"
#include "support/GeneralHelpers.h"

namespace tess {
namespace {

constexpr const char* kSource = "frmGeoCentric";
constexpr double kFormWidth = 520.0;  // pixels
constexpr double kFormHeight = 540.0; // pixels

constexpr ControlSpec kControls[] = {
    {"lblLayer", ControlKind::Label, "Select Layer to Convert:", 12, 8, 240, 18},
    {"lbxLayers", ControlKind::ListBox, "", 12, 28, 240, 160},
    {"lblCurrent", ControlKind::Label, "", 264, 28, 244, 18},
    {"lblMajor", ControlKind::Label, "Semi-Major (Equatorial) Radius =", 264, 52, 244, 16},
    {"txtMajor", ControlKind::TextBox, "", 264, 70, 180, 20},
    {"lblM1", ControlKind::Label, "Meters", 450, 72, 58, 16},
    {"lblMinor", ControlKind::Label, "Semi-Minor (Polar) Radius =", 264, 96, 244, 16},
    {"txtMinor", ControlKind::TextBox, "", 264, 114, 180, 20},
    {"lblM2", ControlKind::Label, "Meters", 450, 116, 58, 16},
    {"cmdGetSpheroid", ControlKind::CommandButton, "Load Predefined Spheroid", 264, 142, 244, 26},
    {"lblLongShift", ControlKind::Label, "Longitudinal Shift =", 12, 204, 130, 18},
    {"txtLongShift", ControlKind::TextBox, "", 146, 202, 120, 22},
    {"lblDegrees", ControlKind::Label, "Decimal Degrees", 272, 204, 120, 18},
    {"optNoWrap", ControlKind::OptionButton, "Do not wrap Longitude values", 12, 232, 300, 20},
    {"optWrap180", ControlKind::OptionButton, kWrap180Caption, 12, 254, 300, 20},
    {"optWrap360", ControlKind::OptionButton, kWrap360Caption, 12, 276, 300, 20},
    {"txtMessage", ControlKind::TextBox, "", 12, 304, 496, 80},
    {"lblOutputName", ControlKind::Label, "Output Feature Class:", 12, 392, 300, 18},
    {"txtOutput", ControlKind::TextBox, "", 12, 412, 460, 22},
    {"cmdGetWorkspace", ControlKind::CommandButton, "", 480, 410, 28, 26},
    {"cmdManual", ControlKind::CommandButton, "Manual", 12, 452, 100, 28},
    {"cmdOK", ControlKind::CommandButton, "OK", 300, 452, 100, 28},
    {"cmdCancel", ControlKind::CommandButton, "Cancel", 408, 452, 100, 28},
};

constexpr const char* kCurrentLead = "Current Spheroid = ";
constexpr const char* kCustomName = "<-- Custom Spheroid -->";
constexpr const char* kInvalidTitle = "Invalid Spheroid Parameter:";
// The dialog opens on this spheroid until a layer gives its own.
constexpr const char* kDefaultSpheroid = "WGS 1984";
constexpr double kDefaultMajor = 6378137.0;         // metres
constexpr double kDefaultMinor = 6356752.31424518;  // metres

// Positions in the opening list.
constexpr std::int32_t kSetupApplication = 0;
constexpr std::int32_t kSetupExtension = 1;
constexpr std::int32_t kSetupDirectory = 2;
constexpr std::int32_t kSetupDirectoryType = 3;
constexpr std::int32_t kSetupCaption = 4;
constexpr std::int32_t kSetupInstructions = 5;

std::shared_ptr<IGeographicCoordinateSystem> GeographicOf(const std::shared_ptr<ISpatialReference>& reference) {
    if (auto geographic = std::dynamic_pointer_cast<IGeographicCoordinateSystem>(reference))
        return geographic;
    if (auto projected = std::dynamic_pointer_cast<IProjectedCoordinateSystem>(reference))
        return projected->GeographicCoordinateSystem();
    return nullptr;
}

} // namespace

frmGeoCentric::frmGeoCentric() : frmPlanetaryDialog("frmGeoCentric") {
    Width = kFormWidth;
    Height = kFormHeight;
    AddControls(kControls);
    Ctl("txtMessage").Locked = true;
    Ctl("cmdGetWorkspace").ToolTipText = "Browse for Output Feature Class...";
    WireSharedControls();
    On("txtMajor", FormEvent::Change, [this] { TrappedVoid("txtMajor_Change ", [&] { AxisChange("txtMajor", semiMajor_); }); });
    On("txtMinor", FormEvent::Change, [this] { TrappedVoid("txtMinor_Change ", [&] { AxisChange("txtMinor", semiMinor_); }); });
    for (const char* box : {"txtMajor", "txtMinor"})
        On(box, FormEvent::KeyPress, [this, box](EventArgs& args) {
            TrappedVoid("KeyPress ", [&] { CheckNumericRealPositive(args.KeyAscii, Ctl(box)); });
        });
    for (const char* option : {"optNoWrap", "optWrap180", "optWrap360"})
        On(option, FormEvent::Click, [this, option] { TrappedVoid("opt_Click ", [&] { SetOption(option); }); });
    On("cmdGetSpheroid", FormEvent::Click, [this] { cmdGetSpheroid_Click(); });
    On("cmdOK", FormEvent::Click, [this] { cmdOK_Click(); });
}

frmGeoCentric::~frmGeoCentric() = default;

void frmGeoCentric::ArcApplication(const std::shared_ptr<IVariantArray>& setup) {
    TrappedVoid("ArcApplication ", [&] {
        if (!setup)
            throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
        Attach(setup->Element(kSetupApplication).As<IApplication>(),
               setup->Element(kSetupExtension).As<clsExtension>());
        extension_->frmGeoCentricReturn(nullptr);
        Caption = setup->Element(kSetupCaption).ToString();
        Ctl("txtMessage").Text = setup->Element(kSetupInstructions).ToString();

        spheroidName_ = kDefaultSpheroid;
        semiMajor_ = kDefaultMajor;
        semiMinor_ = kDefaultMinor;
        ShowSpheroid();
        ShowShift(extension_->LongitudeShift());
        const std::int32_t option = extension_->LongitudeWrapOption();
        SetOption(option == wrap_option::Range180   ? "optWrap180"
                  : option == wrap_option::Range360 ? "optWrap360"
                                                    : "optNoWrap");
        // The layer's own spheroid replaces the default as the list picks a layer.
        FillLayers();
        SetDefaultOutput(setup->Element(kSetupDirectory).ToString(), setup->Element(kSetupDirectoryType).ToString());
    });
}

void frmGeoCentric::ShowSpheroid() {
    Ctl("lblCurrent").Caption = kCurrentLead + spheroidName_;
    Ctl("txtMajor").Text = SpheroidAxisText(semiMajor_);
    Ctl("txtMinor").Text = SpheroidAxisText(semiMinor_);
}

void frmGeoCentric::lbxLayers_Click() {
    TrappedVoid("lbxLayers_Click ", [&] {
        const auto layer = CurrentLayer();
        if (!layer || !layer->FeatureClass())
            return;
        auto geoDataset = std::dynamic_pointer_cast<IGeoDataset>(layer->FeatureClass());
        const auto geographic = GeographicOf(geoDataset ? geoDataset->SpatialReference() : nullptr);
        if (!geographic)
            throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
        const auto spheroid = geographic->Datum()->Spheroid();
        spheroidName_ = spheroid->Name();
        semiMajor_ = spheroid->SemiMajorAxis();
        semiMinor_ = spheroid->SemiMinorAxis();
        ShowSpheroid();
    });
}

void frmGeoCentric::AxisChange(const char* box, double& axis) {
    spheroidName_ = kCustomName;
    Ctl("lblCurrent").Caption = kCurrentLead + spheroidName_;
    const std::string& text = Ctl(box).Text;
    // Anything but a number leaves no radius, which OK refuses.
    axis = IsNumeric(text) ? Variant(text).ToDouble() : 0.0;
}

void frmGeoCentric::SetOption(const char* option) {
    for (const char* name : {"optNoWrap", "optWrap180", "optWrap360"})
        Ctl(name).Value = std::string(name) == option ? 1 : 0;
}

void frmGeoCentric::cmdGetSpheroid_Click() {
    TrappedVoid("cmdGetSpheroid_Click ", [&] {
        frmSpheroidOptions dialog;
        dialog.ManualPath(manualPath_);
        auto setup = std::make_shared<VarArray>();
        setup->Add(Variant(application_));
        setup->Add(Variant(extension_));
        setup->Add(Variant(spheroidName_));
        setup->Add(Variant(semiMajor_));
        setup->Add(Variant(semiMinor_));
        dialog.ArcApplication(setup);
        dialog.ShowModal();
        if (extension_ && !extension_->CurrentSpheroidCanceled()) {
            spheroidName_ = extension_->CurrentSpheroidName();
            semiMajor_ = extension_->CurrentSpheroidMajorAxis();
            semiMinor_ = extension_->CurrentSpheroidMinorAxis();
            ShowSpheroid();
        }
    });
}

void frmGeoCentric::cmdOK_Click() {
    TrappedVoid("cmdOK_Click ", [&] {
        if (!extension_)
            throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
        // The texts say ">= 0" although 0 itself is refused.
        if (semiMajor_ <= 0.0) {
            UI().MessageBox("Semi-Major (Equatorial) Radius value must be >= 0...", MsgBoxButtons::OK,
                            MsgBoxIcon::Exclamation, kInvalidTitle);
            return;
        }
        if (semiMinor_ <= 0.0) {
            UI().MessageBox("Semi-Minor (Polar) Radius value must be >= 0...", MsgBoxButtons::OK,
                            MsgBoxIcon::Exclamation, kInvalidTitle);
            return;
        }
        if (!CheckWorkspace())
            return;
        const auto layer = CurrentLayer();
        if (!layer)
            throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");

        const std::int32_t option = Ctl("optWrap180").Value == 1   ? wrap_option::Range180
                                    : Ctl("optWrap360").Value == 1 ? wrap_option::Range360
                                                                   : wrap_option::None;
        extension_->LongitudeShift(shift_);
        extension_->LongitudeWrapOption(option);

        auto arguments = std::make_shared<VarArray>();
        arguments->Add(Variant(std::shared_ptr<IFeatureLayer>(layer)));
        arguments->Add(Variant(spheroidName_));
        arguments->Add(Variant(semiMajor_));
        arguments->Add(Variant(semiMinor_));
        arguments->Add(Variant(shift_));
        arguments->Add(Variant(option));
        arguments->Add(Variant(OutputDescription(*layer)));
        extension_->frmGeoCentricReturn(arguments);
        extension_->ShouldContinue(true);
        Hide();
    });
}

void ShowGeoCentricDialog(const std::shared_ptr<IVariantArray>& setup, const std::string& manualPath) {
    TrappedVoid("ShowGeoCentricDialog ", [&] {
        frmGeoCentric form;
        form.ManualPath(manualPath);
        form.ArcApplication(setup);
        form.ShowModal();
    });
}

} // namespace tess
