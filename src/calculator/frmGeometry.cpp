#include "calculator/frmGeometry.h"

#include <algorithm>
#include <cctype>

#include "frame/ErrorHandling.h"
#include "frame/clsExtension.h"
#include "platform/carto/Layers.h"
#include "platform/data/Field.h"
#include "platform/data/Fields.h"
#include "platform/data/SelectionSet.h"
#include "platform/data/Table.h"
#include "platform/framework/Application.h"
#include "platform/framework/Document.h"
#include "platform/srs/SpatialReference.h"
#include "platform/system/Arrays.h"
#include "platform/system/Fault.h"
#include "platform/ui/UIServices.h"
#include "spheroids/frmSpheroidOptionsExt.h"
#include "support/GeneralHelpers.h"
#include "support/MyGeneralOperations.h"
#include "support/aml_func_mod.h"
#include "support/frmMessageBox.h"

namespace tess {
namespace {

constexpr const char* kSource = "frmGeometry";

// Layout, in pixels.
constexpr double kFormWidth = 640.0;
constexpr double kFormHeight = 560.0;
constexpr double kThirds = 3.0;
constexpr double kRowHeight = 26.0;
constexpr double kFirstRowTop = 196.0;

constexpr ControlSpec kControls[] = {
    {"lbxLayers", ControlKind::ListBox, "", 12, 8, 300, 150},
    {"imgLayers", ControlKind::Image, "", 320, 8, 32, 32},
    {"lbSelFeatureType", ControlKind::Label, "Selected Feature Class and Characteristics", 12, 160, 616, 18},
    {"lblSelGeometry", ControlKind::Label, "Select Geometry:", 12, 178, 200, 18},
    {"lblFields", ControlKind::Label, "Enter name for new field, or select existing field:", 220, 178, 400, 18},
    {"imgOptions", ControlKind::Image, "", 600, 178, 16, 16},
    {"Line1", ControlKind::Other, "", 12, 480, 616, 2},
    {"lblSpheroidOptions", ControlKind::Label, "Spheroid Parameters:", 12, 486, 500, 18},
    {"optAll", ControlKind::OptionButton, "", 360, 40, 268, 20},
    {"optSel", ControlKind::OptionButton, "", 360, 62, 268, 20},
    {"txtMessage", ControlKind::RichTextBox, "", 360, 88, 268, 70},
    {"cmdAdvanced", ControlKind::CommandButton, "Advanced", 520, 482, 108, 26},
    {"cmdManual", ControlKind::CommandButton, "Manual", 12, 520, 100, 28},
    {"cmdOK", ControlKind::CommandButton, "OK", 420, 520, 100, 28},
    {"cmdCancel", ControlKind::CommandButton, "Cancel", 528, 520, 100, 28},
};

// Colours as blue-green-red integers of the host.
constexpr std::uint32_t kOddRowColor = 14081762;
constexpr std::uint32_t kEvenRowColor = 14673899;
constexpr std::uint32_t kFormColor = 13160660;
constexpr std::uint32_t kTakenColor = 12845055; // pale yellow: an existing field would be overwritten
constexpr std::uint32_t kNewColor = 16777215;   // white

constexpr const char* kNoAdvancedTip = "Advanced functions available only for Geographic Datasets:";
constexpr const char* kPointTip = "Advanced functions irrelevant for Point feature classes:";
constexpr const char* kLineBreak = "\r\n";
constexpr const char* kDashes = "---------------------------------------------------------";
constexpr const char* kLetters = "abcdefghijklmnopqrstuvwxyz";
constexpr const char* kNameCharacters = "abcdefghijklmnopqrstuvwxyz1234567890_";
constexpr std::size_t kShapefileNameLimit = 10;
constexpr std::size_t kCoverageNameLimit = 16;

constexpr std::int32_t kFeatureLayerMask = layer_type::Point | layer_type::Polyline | layer_type::Polygon |
                                           layer_type::Multipoint; // 120

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

bool EqualNoCase(const std::string& a, const std::string& b) { return Lower(a) == Lower(b); }

std::string CheckName(std::int32_t id) { return "chk" + std::to_string(id); }

const char* ShapeWord(esriGeometryType type) {
    switch (type) {
    case esriGeometryPoint:
        return "Point";
    case esriGeometryMultipoint:
        return "Multipoint";
    case esriGeometryPolyline:
        return "Polyline";
    case esriGeometryPolygon:
        return "Polygon";
    default:
        return "";
    }
}

const char* KindWords(std::int32_t kind) {
    switch (kind) {
    case spatial_kind::Projected:
        return "Projected Coordinate System";
    case spatial_kind::Geographic:
        return "Geographic Coordinate System";
    default:
        return "Unknown Coordinate System";
    }
}

std::string RtfHelp() {
    return std::string(R"({\rtf1\ansi\ansicpg1252\deff0\deflang1033{\fonttbl{\f0\fswiss\fcharset0 Arial;}})") +
           kLineBreak + R"({\*\generator Msftedit 5.41.15.1507;}\viewkind4\uc1\pard\f0\fs16 This function will calculate a )" +
           "number of geometric attributes of points, multipoints, polygons and polylines and add them to your " +
           "feature attribute table.  You may add the attributes to existing fields or create new fields.  " +
           "Please refer to the manual for descriptions of the geometric measures. " +
           R"(\b Important:\b0   This function will modify your feature class!  If you are concerned about this, )" +
           R"(please make a backup copy of your data before running this function.\fs20\par)" + kLineBreak + "}";
}

} // namespace

frmGeometry::frmGeometry() : Form("frmGeometry") {
    Caption = " Calculate Geometry";
    Width = kFormWidth;
    Height = kFormHeight;
    AddControls(kControls);
    // The eleven options, each with its combo boxes in the same row.
    for (std::int32_t id = 1; id <= kOptionCount; ++id) {
        const double top = kFirstRowTop + kRowHeight * (id - 1);
        Control& check = AddControl(CheckName(id), ControlKind::CheckBox);
        check.Left = 12;
        check.Top = top;
        check.Width = 200;
        check.Height = 22;
        for (std::int32_t position = 0; position < 2; ++position) {
            if (ComboIndex(id, position) < 0)
                continue;
            Control& combo = AddControl(ComboName(id, position), ControlKind::ComboBox);
            combo.Left = 220 + 204 * position;
            combo.Top = top;
            combo.Width = 196;
            combo.Height = 22;
            On(combo.Name(), FormEvent::Change, [this, name = combo.Name()] {
                TrappedVoid("cbx_Change ", [&] { Ctl(name).BackColor = kNewColor; });
            });
            On(combo.Name(), FormEvent::LostFocus, [this, name = combo.Name()] {
                TrappedVoid("cbx_LostFocus ", [&] { CheckComboBoxEntry(Ctl(name)); });
            });
        }
        On(check.Name(), FormEvent::Click, [this, id] { chk_Click(id); });
    }
    Ctl("txtMessage").Locked = true;
    On("lbxLayers", FormEvent::Click, [this] { TrappedVoid("lbxLayers_Click ", [&] { SetGeometryControls(); }); });
    On("optAll", FormEvent::Click, [this] {
        Ctl("optAll").Value = 1;
        Ctl("optSel").Value = 0;
    });
    On("optSel", FormEvent::Click, [this] {
        Ctl("optSel").Value = 1;
        Ctl("optAll").Value = 0;
    });
    On("imgLayers", FormEvent::Click, [] {});
    On("cmdAdvanced", FormEvent::Click, [this] { cmdAdvanced_Click(); });
    On("cmdOK", FormEvent::Click, [this] { cmdOK_Click(); });
    On("cmdCancel", FormEvent::Click, [this] { cmdCancel_Click(); });
    On("cmdManual", FormEvent::Click, [this] { TrappedVoid("cmdManual_Click ", [&] { OpenDoc(manualPath_); }); });
}

frmGeometry::~frmGeometry() = default;

void frmGeometry::ArcApplication(const std::shared_ptr<IApplication>& application) {
    TrappedVoid("ArcApplication ", [&] {
        application_ = application;
        document_ = application ? std::dynamic_pointer_cast<IMxDocument>(application->Document()) : nullptr;
        selectedLayerName_.clear();
        if (document_)
            if (auto layer = std::dynamic_pointer_cast<IFeatureLayer>(document_->SelectedLayer()))
                selectedLayerName_ = layer->Name();
        if (!extension_ && application_) {
            extension_ = FindTessExtension(*application_);
            if (extension_)
                extension_->ShouldContinue(false);
        }
        layers_ = std::make_shared<VarArray>();
        if (document_)
            if (auto found = ReturnLayersByType(document_->FocusMap(), kFeatureLayerMask))
                layers_ = found;
        Control& list = Ctl("lbxLayers");
        list.Clear();
        if (layers_->Count() == 0) {
            SetGeometryControls();
        } else {
            std::int32_t chosen = 0;
            for (std::int32_t i = 0; i < layers_->Count(); ++i) {
                auto layer = layers_->Element(i).As<ILayer>();
                list.AddItem(layer ? layer->Name() : std::string());
                if (layer && EqualNoCase(layer->Name(), selectedLayerName_))
                    chosen = i;
            }
            // Choosing a line of the list is a click on it, as in the hosts.
            list.ListIndex = chosen;
            Fire("lbxLayers", FormEvent::Click);
        }
        geocentric_ = false;
    });
}

std::shared_ptr<IFeatureLayer> frmGeometry::CurrentLayer() const {
    const std::int32_t index = Ctl("lbxLayers").ListIndex;
    if (!layers_ || index < 0 || index >= layers_->Count())
        return nullptr;
    return layers_->Element(index).As<IFeatureLayer>();
}

void frmGeometry::ShowSpheroidLine(std::int32_t spatialKind) {
    Ctl("lblSpheroidOptions").Caption =
        spatialKind == spatial_kind::Unknown
            ? std::string("Spheroid Unknown")
            : "Spheroid: " + spheroidName_ + ",  Maj.Rad. = " + TrimZerosAndDecimals(semiMajor_, false) +
                  "m,  Min.Rad. = " + TrimZerosAndDecimals(semiMinor_, false) + "m";
}

void frmGeometry::SetGeometryControls() {
    for (std::int32_t id = 1; id <= kOptionCount; ++id)
        for (std::int32_t position = 0; position < 2; ++position)
            if (ComboIndex(id, position) >= 0) {
                Control& combo = Ctl(ComboName(id, position));
                combo.Clear();
                combo.Visible = false;
                combo.AddItem("");
            }

    if (!layers_ || layers_->Count() == 0) {
        Ctl("optAll").Value = 1;
        Ctl("optAll").Caption = "Calculate All Records";
        Ctl("optSel").Caption = "Only Selected Records";
        for (const auto& control : Controls()) {
            const std::string name = Lower(control->Name());
            if (name != "cmdcancel" && name != "cmdmanual" && name != "txtmessage" && name != "line1")
                control->Enabled = false;
        }
        for (std::int32_t id = 1; id <= kOptionCount; ++id)
            Ctl(CheckName(id)).Caption = "No Feature Layers";
        flags_ = ComboFlags{};
        CheckOK();
        return;
    }

    auto layer = CurrentLayer();
    auto featureClass = layer ? layer->FeatureClass() : nullptr;
    if (!featureClass)
        throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
    auto geoDataset = std::dynamic_pointer_cast<IGeoDataset>(featureClass);
    const auto reference = geoDataset ? geoDataset->SpatialReference() : nullptr;
    const std::int32_t kind = SpatialKindOf(reference);
    numericFieldNames_.clear();

    Control& advanced = Ctl("cmdAdvanced");
    std::shared_ptr<IGeographicCoordinateSystem> geographic;
    if (kind == spatial_kind::Geographic) {
        advanced.Enabled = true;
        advanced.ToolTipText.clear();
        geographic = std::dynamic_pointer_cast<IGeographicCoordinateSystem>(reference);
    } else {
        advanced.Enabled = false;
        advanced.ToolTipText = kNoAdvancedTip;
        geocentric_ = false;
        if (kind == spatial_kind::Projected)
            geographic = std::dynamic_pointer_cast<IProjectedCoordinateSystem>(reference)->GeographicCoordinateSystem();
    }
    if (geographic) {
        auto spheroid = geographic->Datum()->Spheroid();
        spheroidName_ = spheroid->Name();
        semiMajor_ = spheroid->SemiMajorAxis();
        semiMinor_ = spheroid->SemiMinorAxis();
    }
    ShowSpheroidLine(kind);
    const esriGeometryType shape = featureClass->ShapeType();
    if (shape == esriGeometryPoint) {
        advanced.Enabled = false;
        advanced.ToolTipText = kPointTip;
        geocentric_ = false;
    }

    // Numeric fields that the layer shows.
    auto layerFields = std::dynamic_pointer_cast<ILayerFields>(layer);
    auto fields = featureClass->Fields();
    for (std::int32_t i = 0; i < fields->FieldCount(); ++i) {
        auto field = fields->Field(i);
        if (FieldIsNumeric(field) && (!layerFields || layerFields->FindField(field->Name()) >= 0))
            numericFieldNames_.push_back(field->Name());
    }

    Ctl("lbSelFeatureType").Caption = std::string(ShapeWord(shape)) + " Feature Class:  " + KindWords(kind);
    flags_ = ComboUseFlagsFor(shape, kind);
    for (std::int32_t id = 1; id <= kOptionCount; ++id) {
        const MeasureRow* row = FindMeasureRow(shape, kind, id);
        Control& check = Ctl(CheckName(id));
        check.Visible = row != nullptr;
        check.Value = 0;
        check.Caption = row ? row->caption : "";
        if (!row)
            continue;
        for (std::int32_t position = 0; position < row->FieldCount(); ++position)
            FillComboBox(Ctl(ComboName(id, position)), row->fields[position]);
    }

    const std::int32_t total = featureClass->FeatureCount(nullptr);
    auto owner = std::dynamic_pointer_cast<IFeatureSelection>(layer);
    auto selection = owner ? owner->SelectionSet() : nullptr;
    Control& optAll = Ctl("optAll");
    Control& optSel = Ctl("optSel");
    optAll.Caption = "Calculate All Records (n = " + std::to_string(total) + ")";
    if (!selection) {
        optAll.Value = 1;
        optAll.Enabled = true;
        optSel.Value = 0;
        optSel.Enabled = false;
        optSel.Caption = "Unable to get selection...";
    } else {
        const std::int32_t selected = selection->Count();
        optAll.Value = selected == 0 ? 1 : 0;
        optAll.Enabled = true;
        optSel.Value = selected > 0 ? 1 : 0;
        optSel.Enabled = selected > 0;
        optSel.Caption = "Selected Records (n = " + std::to_string(selected) + ")";
    }
    CheckOK();
}

void frmGeometry::FillComboBox(Control& combo, const std::string& defaultName) {
    combo.Clear();
    combo.Visible = false;
    int position = 0;
    for (std::size_t i = 0; i < numericFieldNames_.size(); ++i) {
        combo.AddItem(numericFieldNames_[i]);
        if (EqualNoCase(numericFieldNames_[i], defaultName))
            position = static_cast<int>(i);
    }
    if (position > 0) {
        combo.ListIndex = position;
        combo.Text = combo.List[static_cast<std::size_t>(position)];
        combo.BackColor = kTakenColor;
    } else {
        // A match at position 0 counts as none: that field then stands twice and the box is white.
        combo.List.insert(combo.List.begin(), defaultName);
        combo.Selected.insert(combo.Selected.begin(), false);
        combo.ListIndex = 0;
        combo.Text = defaultName;
        combo.BackColor = kNewColor;
    }
}

void frmGeometry::CheckComboBoxEntry(Control& combo) {
    const std::string text = combo.Text;
    for (std::size_t i = 0; i < numericFieldNames_.size(); ++i) {
        if (EqualNoCase(numericFieldNames_[i], text)) {
            combo.Clear();
            for (const std::string& name : numericFieldNames_)
                combo.AddItem(name);
            combo.ListIndex = static_cast<int>(i);
            combo.Text = numericFieldNames_[i];
            combo.BackColor = kTakenColor;
            return;
        }
    }
    combo.BackColor = kNewColor;
}

void frmGeometry::chk_Click(std::int32_t id) {
    TrappedVoid("chk_Click ", [&] {
        const bool ticked = Ctl(CheckName(id)).Value == 1;
        for (std::int32_t position = 0; position < 2; ++position) {
            const std::int32_t index = ComboIndex(id, position);
            if (index >= 0)
                Ctl(ComboName(id, position)).Visible = ticked && flags_[static_cast<std::size_t>(index)];
        }
        CheckOK();
    });
}

void frmGeometry::CheckOK() {
    bool any = false;
    for (std::int32_t id = 1; id <= kOptionCount; ++id)
        any = any || Ctl(CheckName(id)).Value == 1;
    Ctl("cmdOK").Enabled = any;
}

bool frmGeometry::FieldExists(const std::string& name) const {
    return std::any_of(numericFieldNames_.begin(), numericFieldNames_.end(),
                       [&](const std::string& field) { return EqualNoCase(field, name); });
}

void frmGeometry::cmdAdvanced_Click() {
    TrappedVoid("cmdAdvanced_Click ", [&] {
        frmSpheroidOptionsExt dialog;
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
            geocentric_ = extension_->CurrentSpheroidGeocentric();
            ShowSpheroidLine(spatial_kind::Geographic);
        }
    });
}

bool frmGeometry::Confirm(const std::string& text, const std::string& title) {
    extension_->ShouldContinue(false);
    UI().Beep();
    frmMessageBox box;
    box.ArcApplication(application_);
    box.Caption = title;
    box.Ctl("txtMessage").Text = text;
    box.ShowModal();
    return extension_->ShouldContinue();
}

void frmGeometry::cmdOK_Click() {
    TrappedVoid("cmdOK_Click ", [&] {
        if (!extension_)
            throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
        auto layer = CurrentLayer();
        if (!layer)
            throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
        const std::string sourceType = Lower(layer->DataSourceType());

        std::string invalid = std::string("The following field names might not be valid, either because they are "
                                          "too long or they contain ") +
                              "invalid characters.  If they are invalid, they may corrupt your data.  Please click "
                              "'YES' to continue " +
                              "and use these field names, or 'NO' if you wish to exit and define new names:" +
                              kLineBreak + kDashes + kLineBreak;
        std::string existing = std::string("The following field names already exist in your dataset, and therefore "
                                           "the existing data will be overwritten. ") +
                               "Please click 'YES' to continue " +
                               "and use these field names, or 'NO' if you wish to exit and define new names:" +
                               kLineBreak + kDashes + kLineBreak;

        std::vector<OptionChoice> choices;
        std::vector<std::string> names;
        std::vector<std::string> captions;
        for (std::int32_t id = 1; id <= kOptionCount; ++id) {
            const Control& check = Ctl(CheckName(id));
            if (check.Value != 1)
                continue;
            OptionChoice choice;
            choice.id = static_cast<std::int16_t>(id);
            choice.first = Ctl(ComboName(id, 0)).Text;
            names.push_back(choice.first);
            captions.push_back(check.Caption);
            if (ComboIndex(id, 1) >= 0) {
                choice.second = Ctl(ComboName(id, 1)).Text;
                names.push_back(choice.second);
                captions.push_back(check.Caption);
            }
            choices.push_back(choice);
        }

        std::size_t limit = 0;
        if (sourceType.find("shapefile") != std::string::npos)
            limit = kShapefileNameLimit;
        else if (sourceType.find("arc feature class") != std::string::npos ||
                 sourceType.find("point feature class") != std::string::npos ||
                 sourceType.find("polygon feature class") != std::string::npos)
            limit = kCoverageNameLimit;
        bool problem = false;
        if (limit > 0) {
            const std::string letters = kLetters;
            const std::string allowed = kNameCharacters;
            for (std::size_t i = 0; i < names.size(); ++i) {
                const std::string& name = names[i];
                if (name.empty())
                    continue;
                const std::string lead = "  --> Option '" + captions[i] + "',  Field Name = " + name;
                if (name.size() > limit) {
                    invalid += lead + "  (> " + std::to_string(limit) + " characters)" + kLineBreak;
                    problem = true;
                }
                const char first = static_cast<char>(std::tolower(static_cast<unsigned char>(name[0])));
                if (letters.find(first) == std::string::npos) {
                    invalid += lead + "  (Begins with invalid character '" + name.substr(0, 1) + "')" + kLineBreak;
                    problem = true;
                }
                for (char c : name)
                    if (allowed.find(static_cast<char>(std::tolower(static_cast<unsigned char>(c)))) ==
                        std::string::npos) {
                        invalid += lead + "  (Contains invalid character '" + std::string(1, c) + "')" + kLineBreak;
                        problem = true;
                    }
            }
        }
        if (problem && !Confirm(invalid, " Possible Problems with Field Names:"))
            return; // the dialog stays as it was

        bool taken = false;
        for (std::size_t i = 0; i < names.size(); ++i)
            if (!names[i].empty() && FieldExists(names[i])) {
                existing += "  --> Option '" + captions[i] + "',  Field Name = " + names[i] + kLineBreak;
                taken = true;
            }
        if (taken && !Confirm(existing, " Confirm Field Names:"))
            return;

        extension_->GeometryOptions(MakeGeometryOptions(layer, Ctl("optAll").Value == 1, choices, flags_,
                                                        spheroidName_, semiMajor_, semiMinor_, geocentric_));
        extension_->ShouldContinue(true);
        Unload();
    });
}

void frmGeometry::cmdCancel_Click() {
    TrappedVoid("cmdCancel_Click ", [&] {
        if (extension_) {
            extension_->GeometryOptions(nullptr);
            extension_->ShouldContinue(false);
        }
        Unload();
    });
}

void frmGeometry::Form_Load() {
    TrappedVoid("Form_Load ", [&] {
        // Modal windows of the hosts stay above the main window by themselves.
        Left = UI().ScreenWidth() / 2 - Width / 2;
        Top = UI().ScreenHeight() / kThirds - Height / 2;
        if (!extension_ && application_)
            extension_ = FindTessExtension(*application_);
        for (std::int32_t id = 1; id <= kOptionCount; ++id)
            Ctl(CheckName(id)).BackColor = id % 2 == 1 ? kOddRowColor : kEvenRowColor;
        BackColor = kFormColor;
        Ctl("txtMessage").Text = RtfHelp();
    });
}

void frmGeometry::Form_Unload() {
    application_.reset();
    document_.reset();
    extension_.reset();
    layers_.reset();
}

void ShowGeometryDialog(const std::shared_ptr<IApplication>& application, const std::string& manualPath) {
    TrappedVoid("ShowGeometryDialog ", [&] {
        frmGeometry form;
        form.ManualPath(manualPath);
        form.ArcApplication(application);
        form.ShowModal();
    });
}

} // namespace tess
