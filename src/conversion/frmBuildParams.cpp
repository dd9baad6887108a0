#include "conversion/frmBuildParams.h"

#include <algorithm>
#include <cctype>

#include "conversion/mod_92_functions.h"
#include "frame/ErrorHandling.h"
#include "frame/clsExtension.h"
#include "platform/carto/Layers.h"
#include "platform/data/Field.h"
#include "platform/data/Fields.h"
#include "platform/data/SelectionSet.h"
#include "platform/data/Table.h"
#include "platform/data/Workspace.h"
#include "platform/data/WorkspaceFactories.h"
#include "platform/framework/Application.h"
#include "platform/framework/Document.h"
#include "platform/srs/SpatialReference.h"
#include "platform/system/Arrays.h"
#include "platform/system/Fault.h"
#include "platform/ui/UIServices.h"
#include "support/AnchorObjectList.h"
#include "support/Format.h"
#include "support/GeneralHelpers.h"
#include "support/MyGeneralOperations.h"
#include "support/aml_func_mod.h"

namespace tess {
namespace {

constexpr const char* kSource = "frmBuildParams";

// Layout, in pixels.
constexpr double kFormWidth = 560.0;
constexpr double kFormHeight = 600.0;
constexpr double kThirds = 3.0;

constexpr ControlSpec kControls[] = {
    {"lblLayer", ControlKind::Label, "Select Polyline Layer to Convert:", 12, 8, 260, 18},
    {"lbxLayers", ControlKind::ListBox, "", 12, 28, 260, 120},
    {"framePolylines", ControlKind::Frame, "", 12, 152, 260, 56},
    {"optAll", ControlKind::OptionButton, "Use All Polylines", 20, 164, 244, 20},
    {"optSel", ControlKind::OptionButton, "Selected Polylines", 20, 184, 244, 20},
    {"lblTolerance", ControlKind::Label, "Cluster Tolerance:", 12, 216, 110, 18},
    {"txtCluster", ControlKind::TextBox, "", 124, 214, 148, 22},
    {"lblUnits", ControlKind::Label, "Units:", 12, 240, 260, 18},
    {"chkUseLabelPoints", ControlKind::CheckBox, "Transfer Label Point Attributes", 284, 8, 264, 20},
    {"lblLabelPoints", ControlKind::Label, "Label Point Attributes:", 284, 30, 264, 18},
    {"cbxPointLayers", ControlKind::ComboBox, "", 284, 50, 264, 22},
    {"frameLabelPoints", ControlKind::Frame, "", 284, 76, 264, 56},
    {"optAllLabelPoints", ControlKind::OptionButton, "Consider All Label Points", 292, 88, 248, 20},
    {"optSelLabelPoints", ControlKind::OptionButton, "Only Selected Points", 292, 108, 248, 20},
    {"frameWhichPoint", ControlKind::Frame, "", 284, 136, 264, 76},
    {"lblChooseLabelPoint", ControlKind::Label, "If multiple label points in polygon, choose: ", 292, 146, 248, 18},
    {"optFirstLabelPoint", ControlKind::OptionButton, "First Label Point", 292, 166, 248, 20},
    {"optCentroidLabelPoint", ControlKind::OptionButton, "Point Closest to Polygon Centroid", 292, 186, 248, 20},
    {"lblFields", ControlKind::Label, "Layer and Attribute Fields to Include:", 284, 216, 264, 18},
    {"lbxFields", ControlKind::ListBox, "", 284, 236, 264, 120},
    {"cmdSelFields", ControlKind::CommandButton, "Select All Fields", 284, 360, 264, 26},
    {"txtMessage", ControlKind::TextBox, "", 12, 392, 536, 90},
    {"lblOutputName", ControlKind::Label, "Output Polygon Feature Class:", 12, 488, 300, 18},
    {"txtOutput", ControlKind::TextBox, "", 12, 508, 500, 22},
    {"cmdGetWorkspace", ControlKind::CommandButton, "", 520, 506, 28, 26},
    {"cmdManual", ControlKind::CommandButton, "Manual", 12, 544, 100, 28},
    {"cmdOK", ControlKind::CommandButton, "OK", 340, 544, 100, 28},
    {"cmdCancel", ControlKind::CommandButton, "Cancel", 448, 544, 100, 28},
};

// The label point controls that the check box switches together.
constexpr const char* kLabelControls[] = {
    "frameLabelPoints",   "optAllLabelPoints",  "optSelLabelPoints",     "frameWhichPoint",
    "lblChooseLabelPoint", "optFirstLabelPoint", "optCentroidLabelPoint", "lblFields",
    "cbxPointLayers",     "lbxFields",          "cmdSelFields",
};

constexpr int kUnchecked = 0;
constexpr int kChecked = 1;
constexpr int kGrey = 2;
constexpr double kDefaultTolerance = 0.0001; // coordinate units, when the reference has none valid
constexpr std::int32_t kToleranceValid = 3;  // esriSRToleranceOK

constexpr const char* kCaption = " Build Polygons:";
constexpr const char* kDefaultName = "Polygons";
constexpr const char* kNoPointLayers = "[No Point Layers Available]";
constexpr const char* kSelectAll = "Select All Fields";
constexpr const char* kUnselectAll = "Unselect All Fields";
constexpr const char* kNoSelection = "Unable to get selection...";
constexpr const char* kBrowseTitle = "Enter the name of your new Polygon Feature Class:";
constexpr const char* kFailedTitle = "Failed to Create Feature Class:";
constexpr const char* kLineBreak = "\r\n";
constexpr const char* kMessage =
    "This function will build a polygon shapefile from a set of polylines by identifying the regions "
    "formed by intersecting polylines.  Attribute fields for the polygons will include a unique ID field and an area "
    "field.  No attributes from the polylines themselves will be transferred to the polygons.  Optionally, attributes "
    "from a point feature class may be transferred to the polygons.";

bool IsTransferable(const IField& field) {
    switch (field.Type()) {
    case esriFieldTypeOID:
    case esriFieldTypeGeometry:
    case esriFieldTypeBlob:
    case esriFieldTypeRaster:
    case esriFieldTypeGUID:
    case esriFieldTypeGlobalID:
    case esriFieldTypeXML:
        return false;
    default:
        return true; // unlike the conversions' dialog, Shape_Area and Shape_Length are offered
    }
}

bool IsSeparator(char c) { return c == '/' || c == '\\'; }

std::string StripTrailingSeparator(std::string path) {
    if (!path.empty() && IsSeparator(path.back()))
        path.pop_back();
    return path;
}

bool EndsWithNoCase(const std::string& text, const std::string& tail) {
    if (text.size() < tail.size())
        return false;
    return std::equal(tail.begin(), tail.end(), text.end() - static_cast<std::ptrdiff_t>(tail.size()),
                      [](char a, char b) {
                          return std::tolower(static_cast<unsigned char>(a)) ==
                                 std::tolower(static_cast<unsigned char>(b));
                      });
}

std::shared_ptr<IWorkspaceFactory> GeodatabaseFactory(std::int32_t kind) {
    switch (kind) {
    case output_kind::FileGeodatabase:
        return std::make_shared<FileGDBWorkspaceFactory>();
    case output_kind::PersonalGeodatabase:
        return std::make_shared<AccessWorkspaceFactory>();
    case output_kind::GeoPackage:
        return std::make_shared<GeoPackageWorkspaceFactory>();
    default:
        return nullptr;
    }
}

//! The selection of a layer, or null when it has none to give.
std::shared_ptr<ISelectionSet> SelectionOf(const std::shared_ptr<IFeatureLayer>& layer) {
    auto owner = std::dynamic_pointer_cast<IFeatureSelection>(layer);
    return owner ? owner->SelectionSet() : nullptr;
}

} // namespace

frmBuildParams::frmBuildParams() : Form("frmBuildParams") {
    Caption = kCaption;
    Width = kFormWidth;
    Height = kFormHeight;
    AddControls(kControls);
    Ctl("lbxFields").MultiSelect = true;
    Ctl("lbxFields").ToolTipText = "Select Label Point Attribute Fields";
    Ctl("cbxPointLayers").ToolTipText = "Select Label Point Layer";
    Ctl("txtMessage").Locked = true;
    Ctl("cmdGetWorkspace").ToolTipText = "Browse for Output Folder...";
    On("lbxLayers", FormEvent::Click, [this] { lbxLayers_Click(); });
    On("cbxPointLayers", FormEvent::Click, [this] { cbxPointLayers_Click(); });
    On("chkUseLabelPoints", FormEvent::Click, [this] { chkUseLabelPoints_Click(); });
    On("lbxFields", FormEvent::Click, [this] { CheckOK(); });
    On("txtCluster", FormEvent::Change, [this] { CheckOK(); });
    On("txtCluster", FormEvent::KeyPress, [this](EventArgs& args) { txtCluster_KeyPress(args); });
    On("cmdSelFields", FormEvent::Click, [this] { cmdSelFields_Click(); });
    On("optAll", FormEvent::Click, [this] { Choose("optAll", "optSel"); });
    On("optSel", FormEvent::Click, [this] { Choose("optSel", "optAll"); });
    On("optAllLabelPoints", FormEvent::Click, [this] { Choose("optAllLabelPoints", "optSelLabelPoints"); });
    On("optSelLabelPoints", FormEvent::Click, [this] { Choose("optSelLabelPoints", "optAllLabelPoints"); });
    On("optFirstLabelPoint", FormEvent::Click, [this] { Choose("optFirstLabelPoint", "optCentroidLabelPoint"); });
    On("optCentroidLabelPoint", FormEvent::Click, [this] { Choose("optCentroidLabelPoint", "optFirstLabelPoint"); });
    On("txtOutput", FormEvent::Change, [this] { txtOutput_Change(); });
    On("cmdGetWorkspace", FormEvent::Click, [this] { cmdGetWorkspace_Click(); });
    On("cmdOK", FormEvent::Click, [this] { cmdOK_Click(); });
    On("cmdCancel", FormEvent::Click, [this] { cmdCancel_Click(); });
    On("cmdManual", FormEvent::Click, [this] { cmdManual_Click(); });
}

frmBuildParams::~frmBuildParams() = default;

void frmBuildParams::FindExtension() {
    if (!extension_ && application_)
        extension_ = FindTessExtension(*application_);
    if (!extension_)
        throw Fault(fault::ObjectNotSet, kSource, "The extension Tessarine.clsExtension is not loaded");
}

void frmBuildParams::ArcApplication(const std::shared_ptr<IApplication>& application) {
    TrappedVoid("ArcApplication ", [&] {
        application_ = application;
        document_ = application ? std::dynamic_pointer_cast<IMxDocument>(application->Document()) : nullptr;
        preferredLayer_.clear();
        if (document_)
            if (auto layer = std::dynamic_pointer_cast<IFeatureLayer>(document_->SelectedLayer()))
                preferredLayer_ = layer->Name();
        FindExtension();
        extension_->ShouldContinue(false);
        std::shared_ptr<IMap> map = document_ ? document_->FocusMap() : nullptr;

        pointLayers_ = std::make_shared<VarArray>();
        fieldList_ = std::make_shared<VarArray>();
        if (map)
            if (auto found = ReturnLayersByType(map, layer_type::Point))
                pointLayers_ = found;
        Control& points = Ctl("cbxPointLayers");
        points.Clear();
        Ctl("lbxFields").Clear();
        if (pointLayers_->Count() == 0) {
            Ctl("chkUseLabelPoints").Value = kGrey;
        } else {
            Ctl("chkUseLabelPoints").Value = kUnchecked;
            for (std::int32_t i = 0; i < pointLayers_->Count(); ++i)
                if (auto layer = pointLayers_->Element(i).As<ILayer>())
                    points.AddItem(layer->Name());
            points.ListIndex = 0;
            cbxPointLayers_Click();
        }
        SetLabelPointParams();
        allSelected_ = false;
        UpdateSelName();

        Ctl("lbxLayers").Clear();
        layers_ = std::make_shared<VarArray>();
        if (map)
            if (auto found = ReturnLayersByType(map, layer_type::Polyline))
                layers_ = found;
        Control& list = Ctl("lbxLayers");
        std::int32_t preferred = 0;
        for (std::int32_t position = 0; position < layers_->Count(); ++position) {
            auto layer = layers_->Element(position).As<ILayer>();
            if (!layer || !layer->Valid())
                continue;
            list.AddItem(layer->Name());
            if (layer->Name() == preferredLayer_)
                preferred = position;
        }
        if (list.ListCount() > 0) {
            list.ListIndex = std::min(preferred, list.ListCount() - 1);
            lbxLayers_Click();
        }
        Ctl("txtMessage").Text = kMessage;

        const bool first = extension_->BuildUseFirstLabelPoint();
        Ctl("optFirstLabelPoint").Value = first ? 1 : 0;
        Ctl("optCentroidLabelPoint").Value = first ? 0 : 1;

        SetDefaultOutput(kDefaultName);
        if (list.ListCount() == 0) {
            Ctl("optAll").Value = 1;
            Ctl("optSel").Value = 0;
            Ctl("cmdOK").Enabled = false;
            Ctl("txtCluster").Enabled = false;
            Ctl("lblUnits").Caption = "Units:  [No Polyline Layer Selected]";
        }
        CheckOK();
    });
}

void frmBuildParams::SetLabelPointParams() {
    TrappedVoid("SetLabelPointParams ", [&] {
        const int value = Ctl("chkUseLabelPoints").Value;
        if (value == kUnchecked) {
            for (const char* name : kLabelControls)
                Ctl(name).Enabled = false;
        } else if (value == kChecked) {
            for (const char* name : kLabelControls)
                Ctl(name).Enabled = true;
            Ctl("optSelLabelPoints").Enabled = pointSelectionUsable_;
            if (Ctl("cbxPointLayers").ListIndex < 0 && Ctl("cbxPointLayers").ListCount() > 0) {
                Ctl("cbxPointLayers").ListIndex = 0;
                cbxPointLayers_Click();
            }
        } else {
            Control& points = Ctl("cbxPointLayers");
            points.Clear();
            points.AddItem(kNoPointLayers);
            points.ListIndex = 0;
            for (const char* name : kLabelControls)
                Ctl(name).Enabled = false;
        }
    });
}

void frmBuildParams::chkUseLabelPoints_Click() {
    TrappedVoid("chkUseLabelPoints_Click ", [&] {
        SetLabelPointParams();
        CheckOK();
    });
}

void frmBuildParams::CheckOK() {
    TrappedVoid("CheckOK ", [&] {
        const bool fieldsReady = Ctl("lbxFields").SelCount() > 0 || Ctl("chkUseLabelPoints").Value != kChecked;
        Ctl("cmdOK").Enabled = Ctl("lbxLayers").ListIndex >= 0 && !Ctl("txtCluster").Text.empty() && fieldsReady;
    });
}

void frmBuildParams::txtCluster_KeyPress(EventArgs& args) {
    TrappedVoid("txtCluster_KeyPress ", [&] { CheckNumericRealPositive(args.KeyAscii, Ctl("txtCluster")); });
}

std::shared_ptr<IFeatureLayer> frmBuildParams::CurrentLayer() const {
    const std::int32_t index = Ctl("lbxLayers").ListIndex;
    if (!layers_ || index < 0 || index >= layers_->Count())
        return nullptr;
    return layers_->Element(index).As<IFeatureLayer>();
}

std::shared_ptr<IFeatureLayer> frmBuildParams::CurrentPointLayer() const {
    const std::int32_t index = Ctl("cbxPointLayers").ListIndex;
    if (!pointLayers_ || index < 0 || index >= pointLayers_->Count())
        return nullptr;
    return pointLayers_->Element(index).As<IFeatureLayer>();
}

void frmBuildParams::lbxLayers_Click() {
    TrappedVoid("lbxLayers_Click ", [&] {
        std::shared_ptr<IFeatureLayer> layer = CurrentLayer();
        if (!layer)
            return;
        std::shared_ptr<IFeatureClass> featureClass = layer->FeatureClass();
        if (!featureClass)
            throw Fault(fault::ObjectNotSet, kSource, "The layer '" + layer->Name() + "' has no data");
        const std::int32_t total = featureClass->FeatureCount(nullptr);
        std::shared_ptr<ISelectionSet> selection = SelectionOf(layer);
        Control& optAll = Ctl("optAll");
        Control& optSel = Ctl("optSel");
        optAll.Caption = "Use All Polylines (n = " + std::to_string(total) + ")";
        optAll.Enabled = true;
        if (!selection) {
            optAll.Value = 1;
            optSel.Value = 0;
            optSel.Enabled = false;
            optSel.Caption = kNoSelection;
        } else {
            const std::int32_t selected = selection->Count();
            optSel.Caption = "Selected Polylines (n = " + std::to_string(selected) + ")";
            optSel.Enabled = selected > 0;
            optSel.Value = selected > 0 ? 1 : 0;
            optAll.Value = selected > 0 ? 0 : 1;
        }

        std::shared_ptr<ISpatialReference> reference;
        if (auto geo = std::dynamic_pointer_cast<IGeoDataset>(featureClass))
            reference = geo->SpatialReference();
        double tolerance = kDefaultTolerance;
        if (reference && reference->XYToleranceValid() == kToleranceValid)
            tolerance = reference->XYTolerance();
        Ctl("txtCluster").Text = Format(tolerance, "0.#############");
        Ctl("lblUnits").Caption = "Units: " + CoordinateUnitWord(reference);
        CheckOK();
    });
}

void frmBuildParams::cbxPointLayers_Click() {
    TrappedVoid("cbxPointLayers_Click ", [&] {
        Control& points = Ctl("cbxPointLayers");
        if (points.ListIndex < 0 || points.List[static_cast<std::size_t>(points.ListIndex)] == kNoPointLayers)
            return;
        std::shared_ptr<IFeatureLayer> layer = CurrentPointLayer();
        if (!layer)
            return;
        std::shared_ptr<IFeatureClass> featureClass = layer->FeatureClass();
        if (!featureClass)
            throw Fault(fault::ObjectNotSet, kSource, "The layer '" + layer->Name() + "' has no data");
        fieldList_ = std::make_shared<VarArray>();
        Control& fieldBox = Ctl("lbxFields");
        fieldBox.Clear();
        auto layerFields = std::dynamic_pointer_cast<ILayerFields>(layer);
        std::shared_ptr<IFields> fields = featureClass->Fields();
        for (std::int32_t i = 0; i < fields->FieldCount(); ++i) {
            std::shared_ptr<IField> field = fields->Field(i);
            if (!IsTransferable(*field))
                continue;
            fieldList_->Add(field);
            std::string alias = field->AliasName();
            if (layerFields) {
                std::int32_t index = layerFields->FindField(field->Name());
                if (index < 0)
                    index = i;
                alias = layerFields->FieldInfo(index)->Alias();
            }
            fieldBox.AddItem(alias);
        }
        allSelected_ = false;
        UpdateSelName();

        const std::int32_t total = featureClass->FeatureCount(nullptr);
        std::shared_ptr<ISelectionSet> selection = SelectionOf(layer);
        Control& optAll = Ctl("optAllLabelPoints");
        Control& optSel = Ctl("optSelLabelPoints");
        optAll.Caption = "Consider All Label Points (n = " + std::to_string(total) + ")";
        if (!selection) {
            pointSelectionUsable_ = false;
            optAll.Value = 1;
            optSel.Value = 0;
            optSel.Caption = kNoSelection;
        } else {
            const std::int32_t selected = selection->Count();
            pointSelectionUsable_ = selected > 0;
            optSel.Caption = "Only Selected Points (n = " + std::to_string(selected) + ")";
            optSel.Value = selected > 0 ? 1 : 0;
            optAll.Value = selected > 0 ? 0 : 1;
        }
        // The panel stays switched off while the check box is not checked.
        const bool panelOn = Ctl("chkUseLabelPoints").Value == kChecked;
        optAll.Enabled = panelOn;
        optSel.Enabled = panelOn && pointSelectionUsable_;
        CheckOK();
    });
}

void frmBuildParams::UpdateSelName() {
    Ctl("cmdSelFields").Caption = allSelected_ ? kUnselectAll : kSelectAll;
    CheckOK();
}

void frmBuildParams::cmdSelFields_Click() {
    TrappedVoid("cmdSelFields_Click ", [&] {
        Control& fields = Ctl("lbxFields");
        // A toggle of the button, not a reading of the list.
        std::fill(fields.Selected.begin(), fields.Selected.end(), !allSelected_);
        allSelected_ = !allSelected_;
        UpdateSelName();
        CheckOK();
    });
}

// Option buttons of one frame exclude each other, as the hosts' do.
void frmBuildParams::Choose(const char* on, const char* off) {
    TrappedVoid("opt_Click ", [&] {
        Ctl(on).Value = 1;
        Ctl(off).Value = 0;
        CheckOK();
    });
}

void frmBuildParams::SetDefaultOutput(std::string defaultName) {
    std::string directory = extension_ ? extension_->DirectoryPath() : std::string();
    const std::string directoryType = extension_ ? extension_->DirectoryType() : std::string();
    bool isFeatureDataset = extension_ && extension_->IsFeatureDataset();
    std::string datasetName = extension_ ? extension_->FeatDatasetName() : std::string();

    std::int32_t kind = directoryType.empty() ? output_kind::Shapefile : OutputKindOfDirectoryType(directoryType);
    if (kind == output_kind::Shapefile)
        defaultName += ".shp";
    if (!ExistFileDir(directory) || kind == output_kind::Unknown) {
        directory = ReturnDir(GetFullFileString(GetMxDocPath(application_)));
        kind = output_kind::Shapefile;
        isFeatureDataset = false;
        datasetName.clear();
    }
    std::string path;
    if (kind == output_kind::Shapefile) {
        if (directory.empty() || !IsSeparator(directory.back()))
            directory += '/';
        path = MakeUniqueShapeFilename(directory + defaultName);
        directory = StripTrailingSeparator(ReturnDir(path));
        defaultName = ReturnFilename(path);
    } else {
        directory = StripTrailingSeparator(directory);
        auto workspace = GeodatabaseFactory(kind)->OpenFromFile(directory, application_ ? application_->hWnd() : 0);
        defaultName = MakeUniqueGDBFeatureClassName(workspace, defaultName);
        path = isFeatureDataset ? directory + "/" + datasetName + "/" + defaultName : directory + "/" + defaultName;
    }
    Ctl("txtOutput").Text = path;
    directory_ = directory;
    name_ = defaultName;
    kind_ = kind;
    isFeatureDataset_ = isFeatureDataset;
    datasetName_ = datasetName;
}

void frmBuildParams::txtOutput_Change() {
    TrappedVoid("txtOutput_Change ", [&] {
        const std::string text = Ctl("txtOutput").Text;
        directory_ = StripTrailingSeparator(ReturnDir(text));
        name_ = ReturnFilename(text);
        // Only the end of the whole path is looked at; only browsing tells geodatabase places apart.
        if (EndsWithNoCase(text, ".gdb")) {
            kind_ = output_kind::FileGeodatabase;
        } else if (EndsWithNoCase(text, ".mdb")) {
            kind_ = output_kind::PersonalGeodatabase;
        } else if (EndsWithNoCase(directory_, ".gpkg")) {
            kind_ = output_kind::GeoPackage;
        } else {
            kind_ = output_kind::Shapefile;
            name_ = SetExtension(name_, "shp");
        }
    });
}

void frmBuildParams::cmdGetWorkspace_Click() {
    TrappedVoid("cmdGetWorkspace_Click ", [&] {
        const std::string text = Ctl("txtOutput").Text;
        const std::string current = kind_ == output_kind::Shapefile ? MakeUniqueShapeFilename(text) : text;
        const std::optional<OutputPlace> chosen =
            BrowseForOutputPlace(kBrowseTitle, directory_, ReturnFilename(current), true);
        if (!chosen)
            return;
        const OutputPlace& place = *chosen;
        std::string name = place.name;
        if (place.kind != output_kind::Shapefile) {
            if (EndsWithNoCase(name, ".shp"))
                name.resize(name.size() - 4);
            name = ReplaceBadChars(name, true, true, true, true);
        }
        directory_ = place.directory;
        name_ = name;
        kind_ = place.kind;
        isFeatureDataset_ = place.isFeatureDataset;
        datasetName_ = place.datasetName;
        Ctl("txtOutput").Text = OutputPathText(directory_, isFeatureDataset_, datasetName_, name_);
        CheckOK();
    });
}

void frmBuildParams::cmdOK_Click() {
    TrappedVoid("cmdOK_Click ", [&] {
        FindExtension();
        const std::string text = Ctl("txtOutput").Text;
        const std::string directory = StripTrailingSeparator(ReturnDir(text));
        const std::string place = isFeatureDataset_ && kind_ != output_kind::Shapefile ? directory_ : directory;
        if (!ExistFileDir(place)) {
            UI().MessageBox(std::string("Unable to create Feature Class:") + kLineBreak + directory +
                                " is not a valid workspace...",
                            MsgBoxButtons::OK, MsgBoxIcon::Exclamation, kFailedTitle);
            return; // the form stays, for the user to mend the path
        }
        // The key filter keeps typing numeric; text put in otherwise is read as the host reads
        // numbers, and what is no number is refused as such.
        const std::string toleranceText = Ctl("txtCluster").Text;
        std::size_t used = 0;
        double tolerance = 0.0;
        try {
            tolerance = std::stod(toleranceText, &used);
        } catch (const std::exception&) {
            used = 0;
        }
        if (used == 0 || used != toleranceText.size())
            throw Fault(fault::TypeMismatch, kSource, "Type mismatch");

        extension_->NewShapefileLocation(text);
        extension_->DirectoryPath(directory_);
        extension_->IsFeatureDataset(isFeatureDataset_);
        extension_->FeatDatasetName(datasetName_);
        extension_->DirectoryType(DirectoryTypeOfOutputKind(kind_));

        std::shared_ptr<IFeatureLayer> layer = CurrentLayer();
        extension_->SelectedLayer(layer);
        const bool doAll = Ctl("optAll").Value == 1;
        std::int32_t count = 0;
        if (layer && layer->FeatureClass()) {
            if (doAll)
                count = layer->FeatureClass()->FeatureCount(nullptr);
            else if (auto selection = SelectionOf(layer))
                count = selection->Count();
        }
        extension_->AnalysisRecordCount(count);
        extension_->DoAllRecords(doAll);
        extension_->BuildClusterTolerance(tolerance);

        const bool transfer = Ctl("chkUseLabelPoints").Value == kChecked;
        extension_->BuildShouldTransferLabels(transfer);
        extension_->BuildUseAllLabelPoints(Ctl("optAllLabelPoints").Value == 1);
        extension_->BuildUseFirstLabelPoint(Ctl("optFirstLabelPoint").Value == 1);
        if (transfer) {
            extension_->SelectedPointLayer(CurrentPointLayer());
            auto selected = std::make_shared<VarArray>();
            const Control& fieldBox = Ctl("lbxFields");
            for (int i = 0; i < fieldBox.ListCount(); ++i)
                if (fieldBox.Selected[static_cast<std::size_t>(i)])
                    selected->Add(fieldList_->Element(i));
            extension_->SelectedFields(selected);
        } else {
            extension_->SelectedPointLayer(nullptr);
            extension_->SelectedFields(nullptr);
        }
        extension_->ShouldContinue(true);
        Unload();
    });
}

void frmBuildParams::cmdCancel_Click() {
    TrappedVoid("cmdCancel_Click ", [&] {
        if (extension_) {
            extension_->ShouldContinue(false);
            extension_->SelectedFields(nullptr);
            extension_->SelectedLayer(nullptr);
        }
        Unload();
    });
}

void frmBuildParams::cmdManual_Click() {
    TrappedVoid("cmdManual_Click ", [&] { OpenDoc(manualPath_); });
}

void frmBuildParams::Form_Load() {
    TrappedVoid("Form_Load ", [&] {
        Left = UI().ScreenWidth() / 2 - Width / 2;
        Top = UI().ScreenHeight() / kThirds - Height / kThirds;
        FindExtension();
        anchors_ = std::make_unique<AnchorObjectList>(*this);
        for (const char* name : {"lblLayer", "lblTolerance", "lblUnits", "framePolylines", "optAll", "optSel"})
            anchors_->Item(Ctl(name)).SetAnchors(enumStartSize, enumStartSize);
        anchors_->Item(Ctl("lbxLayers")).SetAnchors(enumNone, enumStartSize);
        anchors_->Item(Ctl("txtCluster")).SetAnchors(enumStartSize, enumStartSize);
        for (const char* name : {"chkUseLabelPoints", "lblLabelPoints", "cbxPointLayers", "frameLabelPoints",
                                 "optAllLabelPoints", "optSelLabelPoints", "frameWhichPoint", "lblChooseLabelPoint",
                                 "optFirstLabelPoint", "optCentroidLabelPoint", "lblFields"})
            anchors_->Item(Ctl(name)).SetAnchors(enumEnd, enumStartSize);
        anchors_->Item(Ctl("lbxFields")).SetAnchors(enumEnd, enumStartEnd);
        anchors_->Item(Ctl("cmdSelFields")).SetAnchors(enumEnd, enumSizeEnd);
        anchors_->Item(Ctl("txtMessage")).SetAnchors(enumStartEnd, enumSizeEnd);
        anchors_->Item(Ctl("lblOutputName")).SetAnchors(enumStartSize, enumSizeEnd);
        anchors_->Item(Ctl("txtOutput")).SetAnchors(enumStartEnd, enumSizeEnd);
        for (const char* name : {"cmdGetWorkspace", "cmdOK", "cmdCancel"})
            anchors_->Item(Ctl(name)).SetAnchors(enumSizeEnd, enumSizeEnd);
        anchors_->Item(Ctl("cmdManual")).SetAnchors(enumStartSize, enumSizeEnd);
    });
}

void frmBuildParams::Form_Resize() {
    if (anchors_)
        anchors_->DoAnchors();
}

void frmBuildParams::Form_Unload() {
    application_.reset();
    document_.reset();
    extension_.reset();
    layers_.reset();
    pointLayers_.reset();
    fieldList_.reset();
}

void ShowBuildParamsDialog(const std::shared_ptr<IApplication>& application, const std::string& manualPath) {
    TrappedVoid("ShowBuildParamsDialog ", [&] {
        frmBuildParams form;
        form.ManualPath(manualPath);
        form.ArcApplication(application);
        form.ShowModal();
    });
}

} // namespace tess
