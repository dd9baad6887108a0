#include "planetary/frmPlanetaryDialog.h"

#include <algorithm>
#include <cctype>

#include "frame/ErrorHandling.h"
#include "frame/clsExtension.h"
#include "planetary/PlanetaryArguments.h"
#include "platform/carto/Layers.h"
#include "platform/data/Field.h"
#include "platform/data/Fields.h"
#include "platform/data/Table.h"
#include "platform/data/Workspace.h"
#include "platform/data/WorkspaceFactories.h"
#include "platform/framework/Application.h"
#include "platform/framework/Document.h"
#include "platform/srs/SpatialReference.h"
#include "platform/system/Arrays.h"
#include "platform/system/Clone.h"
#include "platform/system/Fault.h"
#include "platform/system/Variant.h"
#include "platform/ui/UIServices.h"
#include "support/GeneralHelpers.h"
#include "support/MyGeneralOperations.h"
#include "support/aml_func_mod.h"

namespace tess {
namespace {

constexpr const char* kSource = "frmPlanetaryDialog";
constexpr const char* kDefaultName = "Output";
constexpr const char* kBrowseTitle = "Enter the name of your new Feature Class or Shapefile:";
constexpr const char* kBrowseFilter = "Feature Classes";
constexpr const char* kFailedTitle = "Failed to Create Feature Class:";
constexpr const char* kLineBreak = "\r\n";
constexpr double kThirds = 3.0;
// A dBASE field name holds at most this many characters.
constexpr std::size_t kShapefileFieldLength = 10;

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

bool IsGeographic(const std::shared_ptr<ILayer>& layer) {
    auto featureLayer = std::dynamic_pointer_cast<IFeatureLayer>(layer);
    if (!featureLayer || !featureLayer->FeatureClass())
        return false;
    auto geo = std::dynamic_pointer_cast<IGeoDataset>(featureLayer->FeatureClass());
    return geo && std::dynamic_pointer_cast<IGeographicCoordinateSystem>(geo->SpatialReference());
}

bool Carried(const IField& field) {
    switch (field.Type()) {
    case esriFieldTypeGeometry:
    case esriFieldTypeOID:
    case esriFieldTypeBlob:
    case esriFieldTypeRaster:
        return false;
    default:
        return true;
    }
}

//! The name a shapefile can hold: cut to 10 characters, and a leading digit turned into "Z"
//! ahead of the cut name's last 9.
std::string ShapefileFieldName(const std::string& name) {
    const bool leadingDigit = !name.empty() && std::isdigit(static_cast<unsigned char>(name.front()));
    if (name.size() <= kShapefileFieldLength && !leadingDigit)
        return name;
    std::string cut = name.substr(0, kShapefileFieldLength);
    if (leadingDigit)
        cut = "Z" + cut.substr(cut.size() > kShapefileFieldLength - 1 ? cut.size() - (kShapefileFieldLength - 1) : 0);
    return cut;
}

} // namespace

frmPlanetaryDialog::frmPlanetaryDialog(const std::string& name) : Form(name) {}

frmPlanetaryDialog::~frmPlanetaryDialog() = default;

void frmPlanetaryDialog::Attach(const std::shared_ptr<IApplication>& application,
                                std::shared_ptr<clsExtension> extension) {
    application_ = application;
    document_ = application ? std::dynamic_pointer_cast<IMxDocument>(application->Document()) : nullptr;
    extension_ = std::move(extension);
    if (!extension_ && application_)
        extension_ = FindTessExtension(*application_);
    if (!extension_)
        throw Fault(fault::ObjectNotSet, kSource, "The extension Tessarine.clsExtension is not loaded");
    extension_->ShouldContinue(false);
}

void frmPlanetaryDialog::WireSharedControls() {
    On("txtOutput", FormEvent::Change, [this] { txtOutput_Change(); });
    On("cmdGetWorkspace", FormEvent::Click, [this] { cmdGetWorkspace_Click(); });
    On("txtLongShift", FormEvent::Change, [this] { txtLongShift_Change(); });
    On("txtLongShift", FormEvent::KeyPress, [this](EventArgs& args) {
        TrappedVoid("txtLongShift_KeyPress ", [&] { CheckNumericReal(args.KeyAscii, Ctl("txtLongShift")); });
    });
    On("lbxLayers", FormEvent::Click, [this] { lbxLayers_Click(); });
    On("cmdCancel", FormEvent::Click, [this] { cmdCancel_Click(); });
    On("cmdManual", FormEvent::Click, [this] { TrappedVoid("cmdManual_Click ", [&] { OpenDoc(manualPath_); }); });
}

void frmPlanetaryDialog::FillLayers() {
    layers_ = std::make_shared<VarArray>();
    Control& list = Ctl("lbxLayers");
    list.Clear();
    std::string preferred;
    if (document_)
        if (auto chosen = document_->SelectedLayer())
            preferred = chosen->Name();
    std::shared_ptr<IMap> map = document_ ? document_->FocusMap() : nullptr;
    std::shared_ptr<IVariantArray> found = map ? ReturnLayersByType(map, layer_type::Feature) : nullptr;
    int chosen = 0;
    for (std::int32_t i = 0; found && i < found->Count(); ++i) {
        auto layer = found->Element(i).As<ILayer>();
        if (!layer || !layer->Valid() || !IsGeographic(layer))
            continue;
        if (layer->Name() == preferred)
            chosen = list.ListCount();
        layers_->Add(Variant(layer));
        list.AddItem(layer->Name());
    }
    Ctl("cmdOK").Enabled = list.ListCount() > 0;
    if (list.ListCount() > 0) {
        list.ListIndex = chosen;
        lbxLayers_Click();
    }
}

std::shared_ptr<IFeatureLayer> frmPlanetaryDialog::CurrentLayer() const {
    const int index = Ctl("lbxLayers").ListIndex;
    if (!layers_ || index < 0 || index >= layers_->Count())
        return nullptr;
    return layers_->Element(index).As<IFeatureLayer>();
}

void frmPlanetaryDialog::SetDefaultOutput(std::string directory, const std::string& directoryType) {
    bool isFeatureDataset = extension_ && extension_->IsFeatureDataset();
    std::string datasetName = extension_ ? extension_->FeatDatasetName() : std::string();
    std::int32_t kind = directoryType.empty() ? output_kind::Shapefile : OutputKindOfDirectoryType(directoryType);
    if (!ExistFileDir(directory) || kind == output_kind::Unknown) {
        directory = ReturnDir(GetFullFileString(GetMxDocPath(application_)));
        kind = output_kind::Shapefile;
        isFeatureDataset = false;
        datasetName.clear();
    }
    std::string name = kDefaultName;
    std::string path;
    if (kind == output_kind::Shapefile) {
        if (directory.empty() || !IsSeparator(directory.back()))
            directory += '/';
        path = MakeUniqueShapeFilename(directory + name + ".shp");
        directory = StripTrailingSeparator(ReturnDir(path));
        name = ReturnFilename(path);
    } else {
        directory = StripTrailingSeparator(directory);
        auto workspace = GeodatabaseFactory(kind)->OpenFromFile(directory, application_ ? application_->hWnd() : 0);
        name = MakeUniqueGDBFeatureClassName(workspace, name);
        path = isFeatureDataset ? directory + "/" + datasetName + "/" + name : directory + "/" + name;
    }
    Ctl("txtOutput").Text = path;
    directory_ = directory;
    name_ = name;
    kind_ = kind;
    isFeatureDataset_ = isFeatureDataset;
    datasetName_ = datasetName;
}

void frmPlanetaryDialog::ShowShift(double shift) {
    shift_ = shift;
    Ctl("txtLongShift").Text = TrimZerosAndDecimals(shift, false);
}

void frmPlanetaryDialog::txtLongShift_Change() {
    TrappedVoid("txtLongShift_Change ", [&] {
        const std::string& text = Ctl("txtLongShift").Text;
        // The value follows valid text only; a half-typed "-" keeps the last number.
        if (IsNumeric(text))
            shift_ = Variant(text).ToDouble();
    });
}

void frmPlanetaryDialog::txtOutput_Change() {
    TrappedVoid("txtOutput_Change ", [&] {
        const std::string text = Ctl("txtOutput").Text;
        directory_ = StripTrailingSeparator(ReturnDir(text));
        name_ = ReturnFilename(text);
        isFeatureDataset_ = false;
        datasetName_.clear();
        if (EndsWithNoCase(directory_, ".gdb")) {
            kind_ = output_kind::FileGeodatabase;
        } else if (EndsWithNoCase(directory_, ".mdb")) {
            kind_ = output_kind::PersonalGeodatabase;
        } else if (EndsWithNoCase(directory_, ".gpkg")) {
            kind_ = output_kind::GeoPackage;
        } else {
            kind_ = output_kind::Shapefile;
            name_ = SetExtension(name_, "shp");
        }
    });
}

void frmPlanetaryDialog::cmdGetWorkspace_Click() {
    TrappedVoid("cmdGetWorkspace_Click ", [&] {
        BrowseRequest request;
        request.Save = true;
        request.Title = kBrowseTitle;
        request.StartingLocation = directory_;
        request.Name = name_;
        request.Filters = {kBrowseFilter};
        const std::optional<BrowseResult> chosen = UI().Browse(request);
        if (!chosen)
            return;
        const OutputPlace place = OutputPlaceOf(*chosen);
        if (place.kind == output_kind::Unknown)
            return;
        std::string name = place.name;
        if (place.kind == output_kind::Shapefile) {
            name = SetExtension(name, "shp");
        } else {
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
    });
}

bool frmPlanetaryDialog::CheckWorkspace() {
    const std::string text = Ctl("txtOutput").Text;
    // A feature dataset is no folder of its own: its geodatabase is what must exist.
    const std::string place = isFeatureDataset_ ? directory_ : StripTrailingSeparator(ReturnDir(text));
    if (ExistFileDir(place))
        return true;
    UI().MessageBox(std::string("Unable to create Feature Class:") + kLineBreak + place + " is not a valid workspace...",
                    MsgBoxButtons::OK, MsgBoxIcon::Exclamation, kFailedTitle);
    return false;
}

std::shared_ptr<IVariantArray> frmPlanetaryDialog::OutputDescription(const IFeatureLayer& layer) {
    auto fields = std::make_shared<VarArray>();
    auto fieldMap = std::make_shared<VarArray>();
    if (auto featureClass = layer.FeatureClass()) {
        auto all = featureClass->Fields();
        for (std::int32_t i = 0; i < all->FieldCount(); ++i) {
            auto field = all->Field(i);
            if (!Carried(*field))
                continue;
            auto clone = CloneAs<IFieldEdit>(*field);
            if (!clone)
                throw Fault(fault::TypeMismatch, kSource, "Type mismatch");
            const std::string outputName =
                kind_ == output_kind::Shapefile ? ShapefileFieldName(field->Name()) : field->Name();
            clone->Name(outputName);
            fields->Add(std::shared_ptr<IField>(clone));
            auto pair = std::make_shared<StrArray>();
            pair->Add(field->Name());
            pair->Add(outputName);
            fieldMap->Add(Variant(std::shared_ptr<IStringArray>(pair)));
        }
    }
    auto description = std::make_shared<VarArray>();
    description->Add(Variant(directory_));
    description->Add(Variant(name_));
    description->Add(Variant(kind_));
    description->Add(Variant(std::shared_ptr<IVariantArray>(fields)));
    description->Add(Variant(std::shared_ptr<IVariantArray>(fieldMap)));
    description->Add(Variant(isFeatureDataset_));
    description->Add(Variant(datasetName_));

    extension_->NewShapefileLocation(Ctl("txtOutput").Text);
    extension_->DirectoryPath(directory_);
    extension_->DirectoryType(DirectoryTypeOfOutputKind(kind_));
    extension_->IsFeatureDataset(isFeatureDataset_);
    extension_->FeatDatasetName(datasetName_);
    return description;
}

void frmPlanetaryDialog::cmdCancel_Click() {
    TrappedVoid("cmdCancel_Click ", [&] {
        if (extension_)
            extension_->ShouldContinue(false);
        Unload();
    });
}

void frmPlanetaryDialog::Form_Load() {
    // Modal windows of the hosts stay above the main window by themselves.
    Left = UI().ScreenWidth() / 2 - Width / 2;
    Top = UI().ScreenHeight() / kThirds - Height / kThirds;
}

void frmPlanetaryDialog::Form_Unload() {
    application_.reset();
    document_.reset();
    layers_.reset();
}

} // namespace tess
