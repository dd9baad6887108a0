#include "conversion/frmLayerFields.h"

#include <algorithm>
#include <cctype>

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
#include "platform/system/Arrays.h"
#include "platform/system/Fault.h"
#include "platform/system/PropertySet.h" // NamesEqual
#include "platform/ui/UIServices.h"
#include "support/AnchorObjectList.h"
#include "support/GeneralHelpers.h"
#include "support/MyGeneralOperations.h"
#include "support/aml_func_mod.h"
#include "platform/system/Text.h"

namespace tess {
namespace {

constexpr const char* kSource = "frmLayerFields";

// Layout, in pixels.
constexpr double kFormWidth = 520.0;
constexpr double kFormHeight = 470.0;
constexpr double kThirds = 3.0;

constexpr ControlSpec kControls[] = {
    {"lblLayer", ControlKind::Label, "Select Layer to Convert:", 12, 8, 240, 18},
    {"lbxLayers", ControlKind::ListBox, "", 12, 28, 240, 150},
    {"lblFields", ControlKind::Label, "Select Fields to Include:", 264, 8, 244, 18},
    {"lbxFields", ControlKind::ListBox, "", 264, 28, 244, 150},
    {"cmdSelFields", ControlKind::CommandButton, "Select All Fields", 264, 184, 244, 26},
    {"optAll", ControlKind::OptionButton, "Convert All Records", 12, 188, 240, 20},
    {"optSel", ControlKind::OptionButton, "Convert Selected Records", 12, 210, 240, 20},
    {"txtMessage", ControlKind::TextBox, "", 12, 238, 496, 110},
    {"lblOutputName", ControlKind::Label, "Output Feature Class:", 12, 356, 300, 18},
    {"txtOutput", ControlKind::TextBox, "", 12, 376, 460, 22},
    {"cmdGetWorkspace", ControlKind::CommandButton, "", 480, 374, 28, 26},
    {"cmdManual", ControlKind::CommandButton, "Manual", 12, 412, 100, 28},
    {"cmdOK", ControlKind::CommandButton, "OK", 300, 412, 100, 28},
    {"cmdCancel", ControlKind::CommandButton, "Cancel", 408, 412, 100, 28},
};

constexpr const char* kDesignCaption = " Input Parameters:";
constexpr const char* kSelectAll = "Select All Fields";
constexpr const char* kUnselectAll = "Unselect All Fields";
constexpr const char* kNoSelection = "Unable to get selection...";
constexpr const char* kBrowseTitle = "Enter the name of your new Feature Class or Shapefile:";
constexpr const char* kFailedTitle = "Failed to Create Feature Class:";
constexpr const char* kLineBreak = "\r\n";

//! What differs between the conversions in this dialog.
struct OptionSetup {
    std::int32_t option;
    const char* caption;
    std::int32_t layerMask;
    const char* defaultName;
    const char* message;
};

const OptionSetup kOptionSetups[] = {
    {conversion_option::Vertices, " Shapes to Vertices:",
     layer_type::Polyline | layer_type::Polygon | layer_type::Multipoint, "vertex",
     "This function will convert polyline, polygon and multipoint features to a point shapefile of the "
     "feature vertices.  The new point shapefile will contain fields for X- and Y-coordinates in the "
     "projection of the original feature class.  You may transfer any of the original feature attribute data "
     "to the point shapefile by selecting the respective attribute fields."},
    {conversion_option::LabelPoints, " Polygons to Label Points:", layer_type::Polygon, "Label_Points",
     "This function will generate a shapefile of points that represent the label points within each polygon. "
     "The new point shapefile will contain fields for X- and Y-coordinates in the "
     "projection of the original feature class.  You may transfer any of the original polygon attribute data "
     "to the label point shapefile by selecting the respective attribute fields."},
    {conversion_option::Centroids, " Shapes to Centroids:",
     layer_type::Polyline | layer_type::Polygon | layer_type::Multipoint, "Centroids",
     "This function will generate a shapefile of points that represent either the planimetric "
     "center of mass (centroid) of polygons or multipoints, or the midpoint of polylines.  "
     "The new point shapefile will contain fields for X- and Y-coordinates in the "
     "projection of the original feature class.  You may transfer any of the original feature attribute data "
     "to the centroid shapefile by selecting the respective attribute fields."},
    {conversion_option::SphericalCentroids, " Shapes to Spherical Centroids:",
     layer_type::Polyline | layer_type::Polygon | layer_type::Multipoint, "Spherical_Centroids",
     "This function will generate a shapefile of points that represent the spherical center of mass (centroid) "
     "of polygons (assuming a sphere containing the same volume as the data spatial reference spheroid) or "
     "spheroidal centerpoint of polylines (see manual for details).  "
     "For polygons and multipoints, the new point shapefile will contain fields for latitude and longitude "
     "coordinates in the "
     "geographic datum of the original feature class projection (i.e. polygons projected into UTM NAD27 "
     "coordinates will "
     "produce geographic centroids based on the NAD27 datum, while polygons projected into UTM NAD83 coordinates "
     "will "
     "produce geographic centroids based on the NAD83 datum).  "
     "You may transfer any of the original feature attribute data "
     "to the centroid shapefile by selecting the respective attribute fields."},
    {conversion_option::PolylinesToPolygons, " Polylines to Polygons:", layer_type::Polyline, "Polygons",
     "This function will convert polyline features to a polygon shapefile by connecting the "
     "start and endpoints of the original polylines.  Multipart polylines will be maintained as multipart "
     "polygons. "
     "The new polygon shapefile will contain a field for the area of the polygon in the "
     "projection of the original polyline feature class.  You may transfer any of the original polyline "
     "attribute data "
     "to the polygon shapefile by selecting the respective attribute fields."},
    {conversion_option::PolygonsToPolylines, " Polygons to Polylines:", layer_type::Polygon, "Polylines",
     "This function will convert polygon features to a polyline shapefile, where the polylines "
     "represent the boundaries of the original polygon.  Multipart polygons will be maintained as multipart "
     "polylines. "
     "The new polyline shapefile will contain a field for the length of the polyline in the "
     "projection of the original polygon feature class.  You may transfer any of the original polygon attribute "
     "data "
     "to the polyline shapefile by selecting the respective attribute fields."},
    {conversion_option::SplitMultipart, " Split Multipart Features:", layer_type::Feature, "Split_Shapes",
     "This function will split any multipart features found in the selected feature class."
     "The new shapefile will contain fields describing the geometry of the new feature (X- and Y-Coordinates "
     "if points, Length if polylines, or Area if polygons) in the "
     "projection of the original feature class.  You may transfer any of the original feature attribute data "
     "to the polygon shapefile by selecting the respective attribute fields."},
    {conversion_option::Combine, " Combine Features:", layer_type::Feature, "Combined_Shapes",
     "This function will combine all specified features into a single geometry.  The new geometry "
     "will be of the same type as the original geometry, with the exception of Points which will be combined "
     "into a Multipoint object.  Overlapping features will be dissolved into each other. "
     "You may transfer the original feature attribute data of the first original feature into the "
     "new feature shapefile by selecting the respective attribute fields."},
};

const OptionSetup* SetupOf(std::int32_t option) {
    for (const OptionSetup& setup : kOptionSetups)
        if (setup.option == option)
            return &setup;
    return nullptr;
}

// Field types never offered for transfer.
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
        break;
    }
    // Lengths and areas that a geodatabase keeps itself.
    return !NamesEqual(field.Name(), "Shape_Area") && !NamesEqual(field.Name(), "Shape_Length");
}

bool IsSeparator(char c) { return c == '/' || c == '\\'; }

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

} // namespace

frmLayerFields::frmLayerFields() : Form("frmLayerFields") {
    Caption = kDesignCaption;
    Width = kFormWidth;
    Height = kFormHeight;
    AddControls(kControls);
    Ctl("lbxFields").MultiSelect = true;
    Ctl("txtMessage").Locked = true;
    Ctl("cmdGetWorkspace").ToolTipText = "Browse for Output Folder...";
    On("lbxLayers", FormEvent::Click, [this] { lbxLayers_Click(); });
    On("cmdSelFields", FormEvent::Click, [this] { cmdSelFields_Click(); });
    On("optAll", FormEvent::Click, [this] { optAll_Click(); });
    On("optSel", FormEvent::Click, [this] { optSel_Click(); });
    On("txtOutput", FormEvent::Change, [this] { txtOutput_Change(); });
    On("cmdGetWorkspace", FormEvent::Click, [this] { cmdGetWorkspace_Click(); });
    On("cmdOK", FormEvent::Click, [this] { cmdOK_Click(); });
    On("cmdCancel", FormEvent::Click, [this] { cmdCancel_Click(); });
    On("cmdManual", FormEvent::Click, [this] { cmdManual_Click(); });
}

frmLayerFields::~frmLayerFields() = default;

void frmLayerFields::FindExtension() {
    if (!extension_ && application_)
        extension_ = FindTessExtension(*application_);
    if (!extension_)
        throw Fault(fault::ObjectNotSet, kSource, "The extension Tessarine.clsExtension is not loaded");
}

void frmLayerFields::ArcApplication(const std::shared_ptr<IApplication>& application) {
    TrappedVoid("ArcApplication ", [&] {
        application_ = application;
        document_ = application ? std::dynamic_pointer_cast<IMxDocument>(application->Document()) : nullptr;
        preferredLayer_.clear();
        if (document_)
            if (auto layer = std::dynamic_pointer_cast<IFeatureLayer>(document_->SelectedLayer()))
                preferredLayer_ = layer->Name();
        FindExtension();
        extension_->ShouldContinue(false);
        allSelected_ = false;
        UpdateSelName();
    });
}

void frmLayerFields::ConversionOption(std::int32_t option) {
    TrappedVoid("ConversionOption ", [&] {
        option_ = option;
        Ctl("lbxLayers").Clear();
        Ctl("lbxFields").Clear();
        layers_ = std::make_shared<VarArray>();
        fieldList_ = std::make_shared<VarArray>();
        const OptionSetup* setup = SetupOf(option);
        if (setup) {
            Caption = setup->caption;
            FillLayers(setup->layerMask);
            Ctl("txtMessage").Text = setup->message;
        }
        SetDefaultOutput(setup ? setup->defaultName : "");
    });
}

void frmLayerFields::FillLayers(std::int32_t layerMask) {
    std::shared_ptr<IMap> map = document_ ? document_->FocusMap() : nullptr;
    if (map)
        if (auto found = ReturnLayersByType(map, layerMask))
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
    // Choosing a line of the list is a click on it, as in the hosts.
    if (list.ListCount() > 0) {
        list.ListIndex = std::min(preferred, list.ListCount() - 1);
        lbxLayers_Click();
    }
}

void frmLayerFields::SetDefaultOutput(std::string defaultName) {
    std::string directory = extension_ ? extension_->DirectoryPath() : std::string();
    const std::string directoryType = extension_ ? extension_->DirectoryType() : std::string();
    bool isFeatureDataset = extension_ && extension_->IsFeatureDataset();
    std::string datasetName = extension_ ? extension_->FeatDatasetName() : std::string();

    std::int32_t kind = output_kind::Unknown;
    if (directoryType.empty()) {
        kind = output_kind::Shapefile;
    } else {
        kind = OutputKindOfDirectoryType(directoryType);
    }
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

    if (Ctl("lbxLayers").ListCount() == 0) {
        Ctl("optAll").Value = 1;
        Ctl("optSel").Value = 0;
        Ctl("cmdOK").Enabled = false;
    }
}

std::shared_ptr<IFeatureLayer> frmLayerFields::CurrentLayer() const {
    const std::int32_t index = Ctl("lbxLayers").ListIndex;
    if (!layers_ || index < 0)
        return nullptr;
    return layers_->Element(index).As<IFeatureLayer>();
}

void frmLayerFields::lbxLayers_Click() {
    TrappedVoid("lbxLayers_Click ", [&] {
        std::shared_ptr<IFeatureLayer> layer = CurrentLayer();
        fieldList_ = std::make_shared<VarArray>();
        Control& fieldBox = Ctl("lbxFields");
        fieldBox.Clear();
        if (!layer)
            return;
        std::shared_ptr<IFeatureClass> featureClass = layer->FeatureClass();
        if (!featureClass)
            throw Fault(fault::ObjectNotSet, kSource, "The layer '" + layer->Name() + "' has no data");
        auto layerFields = std::dynamic_pointer_cast<ILayerFields>(layer);
        std::shared_ptr<IFields> fields = featureClass->Fields();
        for (std::int32_t i = 0; i < fields->FieldCount(); ++i) {
            std::shared_ptr<IField> field = fields->Field(i);
            if (!IsTransferable(*field))
                continue;
            fieldList_->Add(field);
            std::string alias = field->AliasName();
            if (layerFields) {
                // A field the layer hides has no index of its own there; its position in the class serves.
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
        auto selectionOwner = std::dynamic_pointer_cast<IFeatureSelection>(layer);
        std::shared_ptr<ISelectionSet> selection = selectionOwner ? selectionOwner->SelectionSet() : nullptr;
        const bool combine = option_ == conversion_option::Combine;
        const std::string allLabel = combine ? "Combine All Records (n = " : "Convert All Records (n = ";
        const std::string selectedLabel = combine ? "Combine Selected Records (n = " : "Convert Selected Records (n = ";
        Control& optAll = Ctl("optAll");
        Control& optSel = Ctl("optSel");
        optAll.Caption = allLabel + std::to_string(total) + ")";
        if (!selection) {
            optAll.Value = 1;
            optAll.Enabled = true;
            optSel.Value = 0;
            optSel.Enabled = false;
            optSel.Caption = kNoSelection;
        } else {
            const std::int32_t selected = selection->Count();
            optSel.Caption = selectedLabel + std::to_string(selected) + ")";
            optAll.Enabled = true;
            if (selected == 0) {
                optAll.Value = 1;
                optSel.Value = 0;
                optSel.Enabled = false;
            } else {
                optSel.Value = 1;
                optSel.Enabled = true;
                optAll.Value = 0;
            }
        }
        UpdateOKState();
    });
}

void frmLayerFields::UpdateSelName() {
    TrappedVoid("UpdateSelName ", [&] {
        Ctl("cmdSelFields").Caption = allSelected_ ? kUnselectAll : kSelectAll;
        UpdateOKState();
    });
}

void frmLayerFields::UpdateOKState() {
    TrappedVoid("UpdateOKState ", [&] { Ctl("cmdOK").Enabled = Ctl("lbxLayers").ListIndex >= 0; });
}

void frmLayerFields::cmdSelFields_Click() {
    TrappedVoid("cmdSelFields_Click ", [&] {
        Control& fields = Ctl("lbxFields");
        // A toggle of the button, not a reading of the list.
        std::fill(fields.Selected.begin(), fields.Selected.end(), !allSelected_);
        allSelected_ = !allSelected_;
        UpdateSelName();
        UpdateOKState();
    });
}

// Option buttons of one frame exclude each other, as the hosts' do.
void frmLayerFields::optAll_Click() {
    TrappedVoid("optAll_Click ", [&] {
        Ctl("optAll").Value = 1;
        Ctl("optSel").Value = 0;
        UpdateOKState();
    });
}

void frmLayerFields::optSel_Click() {
    TrappedVoid("optSel_Click ", [&] {
        Ctl("optSel").Value = 1;
        Ctl("optAll").Value = 0;
        UpdateOKState();
    });
}

void frmLayerFields::txtOutput_Change() {
    TrappedVoid("txtOutput_Change ", [&] {
        const std::string text = Ctl("txtOutput").Text;
        directory_ = StripTrailingSeparator(ReturnDir(text));
        name_ = ReturnFilename(text);
        // Only the end of the whole path is looked at: a class typed into a geodatabase by hand
        // reads as a shapefile, and only browsing tells such places apart.
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

void frmLayerFields::ShowOutputPath() {
    Ctl("txtOutput").Text = OutputPathText(directory_, isFeatureDataset_, datasetName_, name_);
}

void frmLayerFields::cmdGetWorkspace_Click() {
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
        ShowOutputPath();
        UpdateOKState();
    });
}

void frmLayerFields::cmdOK_Click() {
    TrappedVoid("cmdOK_Click ", [&] {
        FindExtension();
        const std::string text = Ctl("txtOutput").Text;
        const std::string directory = StripTrailingSeparator(ReturnDir(text));
        // A feature dataset is no folder of its own: its geodatabase is what must exist.
        const std::string place = isFeatureDataset_ && kind_ != output_kind::Shapefile ? directory_ : directory;
        if (!ExistFileDir(place)) {
            UI().MessageBox(std::string("Unable to create Feature Class:") + kLineBreak + directory +
                                " is not a valid workspace...",
                            MsgBoxButtons::OK, MsgBoxIcon::Exclamation, kFailedTitle);
            return; // the form stays, for the user to mend the path
        }
        extension_->NewShapefileLocation(text);
        extension_->DirectoryPath(directory);
        std::shared_ptr<IFeatureLayer> layer = CurrentLayer();
        extension_->SelectedLayer(layer);

        auto selected = std::make_shared<VarArray>();
        const Control& fieldBox = Ctl("lbxFields");
        for (int i = 0; i < fieldBox.ListCount(); ++i)
            if (fieldBox.Selected[static_cast<std::size_t>(i)])
                selected->Add(fieldList_->Element(i));
        extension_->SelectedFields(selected);

        extension_->DirectoryPath(directory_);
        extension_->IsFeatureDataset(isFeatureDataset_);
        extension_->FeatDatasetName(datasetName_);
        extension_->DirectoryType(DirectoryTypeOfOutputKind(kind_));
        extension_->ShouldContinue(true);
        const bool doAll = Ctl("optAll").Value == 1;
        extension_->DoAllRecords(doAll);

        std::int32_t count = 0;
        if (layer && layer->FeatureClass()) {
            if (doAll) {
                count = layer->FeatureClass()->FeatureCount(nullptr);
            } else if (auto owner = std::dynamic_pointer_cast<IFeatureSelection>(layer)) {
                if (auto selection = owner->SelectionSet())
                    count = selection->Count();
            }
        }
        extension_->AnalysisRecordCount(count);
        Unload();
    });
}

void frmLayerFields::cmdCancel_Click() {
    TrappedVoid("cmdCancel_Click ", [&] {
        if (extension_) {
            extension_->ShouldContinue(false);
            extension_->SelectedFields(nullptr);
            extension_->SelectedLayer(nullptr);
        }
        Unload();
    });
}

void frmLayerFields::cmdManual_Click() {
    TrappedVoid("cmdManual_Click ", [&] { OpenDoc(manualPath_); });
}

void frmLayerFields::Form_Load() {
    TrappedVoid("Form_Load ", [&] {
        // Modal windows of the hosts stay above the main window by themselves.
        Left = UI().ScreenWidth() / 2 - Width / 2;
        Top = UI().ScreenHeight() / kThirds - Height / kThirds;
        FindExtension();
        anchors_ = std::make_unique<AnchorObjectList>(*this);
        anchors_->Item(Ctl("lblLayer")).SetAnchors(enumStartSize, enumStartSize);
        anchors_->Item(Ctl("lbxLayers")).SetAnchors(enumNone, enumStartEnd);
        anchors_->Item(Ctl("lblFields")).SetAnchors(enumEnd, enumStartSize);
        anchors_->Item(Ctl("lbxFields")).SetAnchors(enumEnd, enumStartEnd);
        anchors_->Item(Ctl("cmdSelFields")).SetAnchors(enumEnd, enumSizeEnd);
        for (const char* name : {"optAll", "optSel"})
            anchors_->Item(Ctl(name)).SetAnchors(enumStartSize, enumSizeEnd);
        anchors_->Item(Ctl("txtMessage")).SetAnchors(enumStartEnd, enumSizeEnd);
        anchors_->Item(Ctl("lblOutputName")).SetAnchors(enumStartSize, enumSizeEnd);
        anchors_->Item(Ctl("txtOutput")).SetAnchors(enumStartEnd, enumSizeEnd);
        for (const char* name : {"cmdGetWorkspace", "cmdOK", "cmdCancel"})
            anchors_->Item(Ctl(name)).SetAnchors(enumSizeEnd, enumSizeEnd);
        anchors_->Item(Ctl("cmdManual")).SetAnchors(enumStartSize, enumSizeEnd);
    });
}

void frmLayerFields::Form_Resize() {
    if (anchors_)
        anchors_->DoAnchors();
}

void frmLayerFields::Form_Unload() {
    application_.reset();
    document_.reset();
    extension_.reset();
    layers_.reset();
    fieldList_.reset();
}

void ShowLayerFieldsDialog(const std::shared_ptr<IApplication>& application, std::int32_t conversionOption,
                           const std::string& manualPath) {
    TrappedVoid("ShowLayerFieldsDialog ", [&] {
        frmLayerFields form;
        form.ManualPath(manualPath);
        form.ArcApplication(application);
        form.ConversionOption(conversionOption);
        form.ShowModal();
    });
}

} // namespace tess
