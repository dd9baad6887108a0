#include "spheroids/frmSpheroidOptions.h"

#include <vector>

#include "frame/ErrorHandling.h"
#include "frame/clsExtension.h"
#include "platform/system/Arrays.h"
#include "platform/system/Collection.h"
#include "platform/system/Fault.h"
#include "platform/system/Variant.h"
#include "spheroids/USGS_Functions.h"
#include "support/Format.h"
#include "support/GeneralHelpers.h"
#include "support/QuickSort.h"
#include "support/aml_func_mod.h"

namespace tess {
namespace {

constexpr const char* kSource = "frmSpheroidOptions";

// Layout, in pixels.
constexpr double kFormWidth = 460.0;
constexpr double kFormHeight = 330.0;

constexpr ControlSpec kControls[] = {
    {"lblUSGS", ControlKind::Label, "Custom Spheroids [from ..\\install_dir\\spheroid.dat:]", 12, 8, 330, 18},
    {"cbxUSGS", ControlKind::ComboBox, "", 12, 28, 330, 22},
    {"cmdLoadUSGS", ControlKind::CommandButton, "Load", 350, 26, 96, 26},
    {"lblESRIPlanetary", ControlKind::Label, "ESRI Planetary Spheroids:", 12, 58, 330, 18},
    {"cbxESRIPlanets", ControlKind::ComboBox, "", 12, 78, 330, 22},
    {"cmdLoadESRIPlanetary", ControlKind::CommandButton, "Load", 350, 76, 96, 26},
    {"lblESRIEarth", ControlKind::Label, "ESRI Earth Spheroids (Common):", 12, 108, 330, 18},
    {"cbxESRIEarth", ControlKind::ComboBox, "", 12, 128, 330, 22},
    {"cmdLoadESRIEarth", ControlKind::CommandButton, "Load", 350, 126, 96, 26},
    {"cmdLoadCurrent", ControlKind::CommandButton, "", 12, 160, 434, 26},
    {"lblCurrent", ControlKind::Label, "", 12, 194, 434, 18},
    {"lblMajor", ControlKind::Label, "Semi-Major (Equatorial) Radius =", 12, 218, 200, 18},
    {"txtMajor", ControlKind::TextBox, "", 216, 216, 160, 22},
    {"lblM1", ControlKind::Label, "Meters", 382, 218, 64, 18},
    {"lblMinor", ControlKind::Label, "Semi-Minor (Polar) Radius =", 12, 244, 200, 18},
    {"txtMinor", ControlKind::TextBox, "", 216, 242, 160, 22},
    {"lblM2", ControlKind::Label, "Meters", 382, 244, 64, 18},
    {"cmdManual", ControlKind::CommandButton, "Manual", 12, 288, 96, 28},
    {"cmdOK", ControlKind::CommandButton, "OK", 242, 288, 96, 28},
    {"cmdCancel", ControlKind::CommandButton, "Cancel", 350, 288, 96, 28},
};

constexpr std::uint32_t kWindowColor = 0xFFFFFF;
constexpr std::uint32_t kButtonFaceColor = 0xF0F0F0;
constexpr const char* kMissingFile = "<-- Missing 'Spheroids.dat' file -->";
constexpr const char* kCurrentLead = "Current Spheroid = ";
constexpr const char* kCustomName = "Custom Spheroid";
constexpr double kNotANumber = -999.0; // a typed axis that is no number; keeps OK disabled

// Entries of GetSpheroids.
constexpr std::int32_t kCustomRows = 0;
constexpr std::int32_t kCustomNames = 1;
constexpr std::int32_t kPlanetRows = 2;
constexpr std::int32_t kPlanetNames = 3;
constexpr std::int32_t kEarthRows = 4;
constexpr std::int32_t kEarthNames = 5;

std::vector<std::string> SortedNames(const Variant& entry) {
    std::vector<std::string> names;
    auto array = entry.IsObject() ? entry.As<IStringArray>() : nullptr;
    if (!array)
        return names;
    for (std::int32_t i = 0; i < array->Count(); ++i)
        names.push_back(array->Element(i));
    if (!names.empty())
        StringsAscending(names, 0, static_cast<std::int32_t>(names.size()) - 1);
    return names;
}

void Fill(Control& combo, const std::vector<std::string>& names) {
    combo.Clear();
    for (const std::string& name : names)
        combo.AddItem(name);
    if (combo.ListCount() > 0) {
        combo.ListIndex = 0;
        combo.Text = combo.List.front();
    }
}

} // namespace

std::string SpheroidAxisText(double axis) {
    return BasicTrimAvenue(BasicTrimAvenue(Format(axis, "0.0000000000000"), "", "0"), "", ".");
}

frmSpheroidOptions::frmSpheroidOptions() : frmSpheroidOptions("frmSpheroidOptions", " Spheroid Parameters:") {}

frmSpheroidOptions::frmSpheroidOptions(const std::string& name, const std::string& caption) : Form(name) {
    Build(caption);
}

frmSpheroidOptions::~frmSpheroidOptions() = default;

void frmSpheroidOptions::Build(const std::string& caption) {
    Caption = caption;
    Width = kFormWidth;
    Height = kFormHeight;
    AddControls(kControls);
    On("cmdLoadUSGS", FormEvent::Click, [this] {
        TrappedVoid("cmdLoadUSGS_Click ", [&] { LoadRow(custom_, "cbxUSGS"); });
    });
    On("cmdLoadESRIPlanetary", FormEvent::Click, [this] {
        TrappedVoid("cmdLoadESRIPlanetary_Click ", [&] { LoadRow(planets_, "cbxESRIPlanets"); });
    });
    On("cmdLoadESRIEarth", FormEvent::Click, [this] {
        TrappedVoid("cmdLoadESRIEarth_Click ", [&] { LoadRow(earth_, "cbxESRIEarth"); });
    });
    On("cmdLoadCurrent", FormEvent::Click, [this] {
        TrappedVoid("cmdLoadCurrent_Click ", [&] {
            Ctl("lblCurrent").Caption = kCurrentLead + receivedName_;
            name_ = receivedName_;
            major_ = receivedMajor_;
            minor_ = receivedMinor_;
            ShowAxes();
        });
    });
    On("txtMajor", FormEvent::Change, [this] { TrappedVoid("txtMajor_Change ", [&] { AxisChange("txtMajor", major_); }); });
    On("txtMinor", FormEvent::Change, [this] { TrappedVoid("txtMinor_Change ", [&] { AxisChange("txtMinor", minor_); }); });
    for (const char* box : {"txtMajor", "txtMinor"})
        On(box, FormEvent::KeyPress, [this, box](EventArgs& args) {
            TrappedVoid("KeyPress ", [&] { CheckNumericRealPositive(args.KeyAscii, Ctl(box)); });
        });
    On("cmdOK", FormEvent::Click, [this] { cmdOK_Click(); });
    On("cmdCancel", FormEvent::Click, [this] { cmdCancel_Click(); });
    On("cmdManual", FormEvent::Click, [this] { TrappedVoid("cmdManual_Click ", [&] { OpenDoc(manualPath_); }); });
}

void frmSpheroidOptions::ArcApplication(const std::shared_ptr<IVariantArray>& setup) {
    TrappedVoid("ArcApplication ", [&] {
        if (!setup)
            throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
        extension_ = setup->Element(1).As<clsExtension>();
        if (!extension_)
            throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
        receivedName_ = setup->Element(2).ToString();
        receivedMajor_ = setup->Element(3).ToDouble();
        receivedMinor_ = setup->Element(4).ToDouble();
        Ctl("lblCurrent").Caption = kCurrentLead + receivedName_;
        Ctl("cmdLoadCurrent").Caption = "Load '" + receivedName_ + "' Parameters";
        name_ = receivedName_;
        major_ = receivedMajor_;
        minor_ = receivedMinor_;
        guard_ = false;
        Ctl("txtMajor").Text = SpheroidAxisText(major_);
        Ctl("txtMinor").Text = SpheroidAxisText(minor_);

        std::shared_ptr<IVariantArray> catalogue = USGS_Functions::GetSpheroids();
        if (!catalogue)
            throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
        Control& customBox = Ctl("cbxUSGS");
        const Variant customRows = catalogue->Element(kCustomRows);
        custom_ = customRows.IsObject() ? customRows.As<Collection>() : nullptr;
        if (custom_) {
            customBox.Enabled = true;
            customBox.BackColor = kWindowColor;
            Fill(customBox, SortedNames(catalogue->Element(kCustomNames)));
        } else {
            customBox.Enabled = false;
            customBox.BackColor = kButtonFaceColor;
            Fill(customBox, {kMissingFile});
        }
        planets_ = catalogue->Element(kPlanetRows).As<Collection>();
        Fill(Ctl("cbxESRIPlanets"), SortedNames(catalogue->Element(kPlanetNames)));
        earth_ = catalogue->Element(kEarthRows).As<Collection>();
        Fill(Ctl("cbxESRIEarth"), SortedNames(catalogue->Element(kEarthNames)));

        extension_->CurrentSpheroidCanceled(true);
        guard_ = true;
        CheckOK();
    });
}

void frmSpheroidOptions::LoadRow(const std::shared_ptr<Collection>& rows, const std::string& comboName) {
    // A missing custom file leaves no collection: asking it for a row is the handler's fault.
    if (!rows)
        throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
    auto row = rows->Item(Ctl(comboName).Text).As<IVariantArray>();
    if (!row)
        throw Fault(fault::TypeMismatch, kSource, "Type mismatch");
    name_ = row->Element(0).ToString();
    major_ = row->Element(1).ToDouble();
    minor_ = row->Element(2).ToDouble();
    Ctl("lblCurrent").Caption = kCurrentLead + name_;
    ShowAxes();
}

void frmSpheroidOptions::ShowAxes() {
    guard_ = false;
    Ctl("txtMajor").Text = SpheroidAxisText(major_);
    Ctl("txtMinor").Text = SpheroidAxisText(minor_);
    guard_ = true;
    CheckOK();
}

void frmSpheroidOptions::AxisChange(const std::string& box, double& axis) {
    if (!guard_)
        return;
    Ctl("lblCurrent").Caption = std::string(kCurrentLead) + "<-- CUSTOM -->";
    name_ = kCustomName;
    const std::string text = Ctl(box).Text;
    axis = IsNumeric(text) ? Variant(text).ToDouble() : kNotANumber;
    CheckOK();
}

void frmSpheroidOptions::CheckOK() { Ctl("cmdOK").Enabled = major_ > 0 && minor_ > 0; }

void frmSpheroidOptions::cmdOK_Click() {
    TrappedVoid("cmdOK_Click ", [&] {
        if (!extension_)
            throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
        extension_->CurrentSpheroidCanceled(false);
        extension_->CurrentSpheroidName(name_);
        extension_->CurrentSpheroidMajorAxis(major_);
        extension_->CurrentSpheroidMinorAxis(minor_);
        WriteExtra(*extension_);
        Unload();
    });
}

void frmSpheroidOptions::cmdCancel_Click() {
    TrappedVoid("cmdCancel_Click ", [&] {
        if (extension_)
            extension_->CurrentSpheroidCanceled(true);
        Unload();
    });
}

} // namespace tess
