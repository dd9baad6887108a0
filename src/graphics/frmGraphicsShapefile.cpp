#include "graphics/frmGraphicsShapefile.h"

#include <algorithm>

#include "frame/ErrorHandling.h"
#include "frame/clsExtension.h"
#include "platform/carto/ActiveView.h"
#include "platform/carto/EnumElement.h"
#include "platform/carto/GraphicElements.h"
#include "platform/carto/GraphicsContainer.h"
#include "platform/carto/Map.h"
#include "platform/carto/PageLayout.h"
#include "platform/data/WorkspaceFactories.h"
#include "platform/framework/Application.h"
#include "platform/framework/Document.h"
#include "platform/geometry/Geometry.h"
#include "platform/srs/SpatialReference.h"
#include "platform/system/Arrays.h"
#include "platform/system/Fault.h"
#include "platform/ui/UIServices.h"
#include "support/GeneralHelpers.h"
#include "support/MyGeneralOperations.h"
#include "support/aml_func_mod.h"
#include "platform/system/Text.h"

namespace tess {
namespace {

constexpr const char* kSource = "frmGraphicsShapefile";

// Layout, in pixels.
constexpr double kFormWidth = 470.0;
constexpr double kFormHeight = 430.0;
// The form sits off centre: two thirds across, less two thirds (across) or one third (down) of itself.
constexpr double kPlacementNumerator = 2.0;
constexpr double kPlacementDenominator = 3.0;

constexpr ControlSpec kControls[] = {
    {"optNew", ControlKind::OptionButton, "Create empty shapefile", 12, 8, 440, 20},
    {"frmNew", ControlKind::Frame, "", 24, 30, 428, 76},
    {"optPoint", ControlKind::OptionButton, "Point Shapefile", 36, 36, 200, 20},
    {"optPolyline", ControlKind::OptionButton, "Polyline Shapefile", 36, 58, 200, 20},
    {"optPolygon", ControlKind::OptionButton, "Polygon Shapefile", 36, 80, 200, 20},
    {"optConvert", ControlKind::OptionButton, "Convert graphics to feature class:", 12, 114, 440, 20},
    {"lbxGraphics", ControlKind::ListBox, "", 24, 136, 428, 96},
    {"chkSelected", ControlKind::CheckBox, "Only convert selected graphics", 24, 238, 428, 20},
    {"cmdSpRef", ControlKind::CommandButton, "Set Spatial Reference", 12, 266, 160, 26},
    {"lblSpRef", ControlKind::Label, "Feature Class Spatial Reference =", 180, 270, 272, 36},
    {"lblOutputName", ControlKind::Label, "Output Feature Class or Shapefile:", 12, 312, 300, 18},
    {"txtOutput", ControlKind::TextBox, "", 12, 332, 404, 22},
    {"cmdGetWorkspace", ControlKind::CommandButton, "", 424, 330, 28, 26},
    {"cmdHelp", ControlKind::CommandButton, "Manual", 12, 372, 100, 28},
    {"cmdOK", ControlKind::CommandButton, "OK", 244, 372, 100, 28},
    {"cmdCancel", ControlKind::CommandButton, "Cancel", 352, 372, 100, 28},
};

constexpr const char* kCaption = " Create Shapefile:";
constexpr const char* kLayoutLine = "Conversion Unavailable in Layout View...";
constexpr const char* kNoGraphicsLine = "No graphics available...";
constexpr const char* kNoReference = "Spatial Reference = <-- No Spatial Reference Set -->";
constexpr const char* kReferenceLead = "Spatial Reference = ";
constexpr const char* kDefaultName = "NewShape";
constexpr const char* kBrowseTitle = "Enter the name of your new Feature Class or Shapefile:";
constexpr const char* kLineBreak = "\r\n";
constexpr std::uint32_t kOptionBackColor = 0xC2C2C2; // red, green and blue of 194

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

bool IsUnknownReference(const std::shared_ptr<ISpatialReference>& reference) {
    return std::dynamic_pointer_cast<IUnknownCoordinateSystem>(reference) != nullptr;
}

// "1 Point", "2 Points": the plural everywhere but at exactly one.
std::string Counted(std::int32_t count, const char* word) {
    return std::to_string(count) + " " + word + (count == 1 ? "" : "s");
}

} // namespace

void GraphicsHarvest::Clear() {
    Points = std::make_shared<VarArray>();
    Polylines = std::make_shared<VarArray>();
    Polygons = std::make_shared<VarArray>();
    PointNames = std::make_shared<StrArray>();
    PolylineNames = std::make_shared<StrArray>();
    PolygonNames = std::make_shared<StrArray>();
    PointsNamed = PolylinesNamed = PolygonsNamed = false;
    PointSymbol.reset();
    LineSymbol.reset();
    FillSymbol.reset();
    ListLines = std::make_shared<StrArray>();
}

frmGraphicsShapefile::frmGraphicsShapefile() : Form("frmGraphicsShapefile") {
    Caption = kCaption;
    Width = kFormWidth;
    Height = kFormHeight;
    AddControls(kControls);
    Ctl("cmdGetWorkspace").ToolTipText = "Browse for Output Folder...";
    all_.Clear();
    selected_.Clear();
    On("chkSelected", FormEvent::Click, [this] { chkSelected_Click(); });
    On("optNew", FormEvent::Click, [this] { optNew_Click(); });
    On("optConvert", FormEvent::Click, [this] { optConvert_Click(); });
    for (const char* option : {"optPoint", "optPolyline", "optPolygon"})
        On(option, FormEvent::Click, [this, option] { optShape_Click(option); });
    On("lbxGraphics", FormEvent::Click, [this] { lbxGraphics_Click(); });
    On("cmdSpRef", FormEvent::Click, [this] { cmdSpRef_Click(); });
    On("txtOutput", FormEvent::Change, [this] { txtOutput_Change(); });
    On("cmdGetWorkspace", FormEvent::Click, [this] { cmdGetWorkspace_Click(); });
    On("cmdOK", FormEvent::Click, [this] { cmdOK_Click(); });
    On("cmdCancel", FormEvent::Click, [this] { cmdCancel_Click(); });
    On("cmdHelp", FormEvent::Click, [this] { cmdHelp_Click(); });
}

frmGraphicsShapefile::~frmGraphicsShapefile() = default;

void frmGraphicsShapefile::FindExtension() {
    if (!extension_ && application_)
        extension_ = FindTessExtension(*application_);
    if (!extension_)
        throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
}

void frmGraphicsShapefile::ArcApplication(const std::shared_ptr<IApplication>& application) {
    TrappedVoid("ArcApplication ", [&] {
        application_ = application;
        document_ = application ? std::dynamic_pointer_cast<IMxDocument>(application->Document()) : nullptr;
        FindExtension();
        extension_->ShouldContinue(false);
        makeFeatureClass_ = true;
        CheckEnable();
    });
}

void frmGraphicsShapefile::Harvest(GraphicsHarvest& target, bool selectedOnly) {
    auto container = std::dynamic_pointer_cast<IGraphicsContainer>(document_->ActiveView());
    auto selection = std::dynamic_pointer_cast<IGraphicsContainerSelect>(document_->ActiveView());
    if (!container || !selection)
        throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");

    std::shared_ptr<IEnumElement> walk;
    if (selectedOnly) {
        walk = selection->SelectedElements();
        walk->Reset();
    } else {
        container->Reset();
    }
    auto next = [&] { return selectedOnly ? walk->Next() : container->Next(); };
    for (std::shared_ptr<IElement> element = next(); element; element = next()) {
        if (std::dynamic_pointer_cast<IFrameElement>(element))
            continue;
        // The element hands out a copy of its shape: the lists own what they keep.
        std::shared_ptr<IGeometry> shape = element->Geometry();
        auto properties = std::dynamic_pointer_cast<IElementProperties>(element);
        const std::string name = properties ? properties->Name() : std::string();
        if (!shape)
            continue;
        switch (shape->GeometryType()) {
        case esriGeometryPoint:
            // The point of a text element places the text; it is no point graphic.
            if (std::dynamic_pointer_cast<ITextElement>(element))
                break;
            target.Points->Add(shape);
            target.PointNames->Add(name);
            target.PointsNamed = target.PointsNamed || !name.empty();
            if (target.Points->Count() == 1)
                if (auto marker = std::dynamic_pointer_cast<IMarkerElement>(element))
                    target.PointSymbol = marker->Symbol();
            break;
        case esriGeometryPolyline:
            target.Polylines->Add(shape);
            target.PolylineNames->Add(name);
            target.PolylinesNamed = target.PolylinesNamed || !name.empty();
            if (target.Polylines->Count() == 1)
                if (auto line = std::dynamic_pointer_cast<ILineElement>(element))
                    target.LineSymbol = line->Symbol();
            break;
        case esriGeometryPolygon:
            target.Polygons->Add(shape);
            target.PolygonNames->Add(name);
            target.PolygonsNamed = target.PolygonsNamed || !name.empty();
            if (target.Polygons->Count() == 1)
                if (auto fill = std::dynamic_pointer_cast<IFillShapeElement>(element))
                    target.FillSymbol = fill->Symbol();
            break;
        default:
            break;
        }
    }

    const std::int32_t points = target.Points->Count();
    const std::int32_t polylines = target.Polylines->Count();
    const std::int32_t polygons = target.Polygons->Count();
    IStringArray& lines = *target.ListLines;
    lines.Add("1) Point Shapefile: " + Counted(points, "Point"));
    lines.Add("2) Polyline Shapefile: " + Counted(polylines, "Polyline"));
    lines.Add("3) Polyline Shapefile: " + Counted(polylines, "Polyline") + " + " + Counted(polygons, "Polygon"));
    lines.Add("4) Polygon Shapefile: " + Counted(polygons, "Polygon"));
    lines.Add("5) Polygon Shapefile: " + Counted(polylines, "Polyline") + " + " + Counted(polygons, "Polygon"));
}

void frmGraphicsShapefile::FillGraphicsArrays() {
    TrappedNested("FillGraphicsArrays ", [&] {
        if (!document_)
            throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
        all_.Clear();
        selected_.Clear();
        Harvest(all_, false);
        // Without a selection the walk is empty, and the selected set's lines read "0 Points" and so on.
        Harvest(selected_, true);
    });
}

void frmGraphicsShapefile::FillGraphicsListBox() {
    TrappedNested("FillGraphicsListBox ", [&] {
        Control& list = Ctl("lbxGraphics");
        list.Clear();
        const GraphicsHarvest& set = Ctl("chkSelected").Value == 1 ? selected_ : all_;
        for (std::int32_t i = 0; i < set.ListLines->Count(); ++i)
            list.AddItem(set.ListLines->Element(i));
    });
}

void frmGraphicsShapefile::Form_Load() {
    TrappedVoid("Form_Load ", [&] {
        Left = kPlacementNumerator * UI().ScreenWidth() / kPlacementDenominator -
               kPlacementNumerator * Width / kPlacementDenominator;
        Top = kPlacementNumerator * UI().ScreenHeight() / kPlacementDenominator - Height / kPlacementDenominator;
        FindExtension();
        Control& optNew = Ctl("optNew");
        Control& optConvert = Ctl("optConvert");
        Control& chkSelected = Ctl("chkSelected");
        Control& list = Ctl("lbxGraphics");
        optNew.Value = 1;
        optConvert.Value = 0;
        Ctl("optPolygon").Value = 1;
        Ctl("optPolyline").Value = 0;
        Ctl("optPoint").Value = 0;
        list.Clear();
        makeFeatureClass_ = true;

        if (!document_)
            throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
        if (std::dynamic_pointer_cast<IPageLayout>(document_->ActiveView())) {
            chkSelected.Value = 0;
            chkSelected.Enabled = false;
            optConvert.Value = 0;
            optConvert.Enabled = false;
            optNew.Value = 1;
            list.Enabled = false;
            list.AddItem(kLayoutLine);
        } else {
            FillGraphicsArrays();
            const std::int32_t total = all_.Points->Count() + all_.Polylines->Count() + all_.Polygons->Count();
            const std::int32_t chosen =
                selected_.Points->Count() + selected_.Polylines->Count() + selected_.Polygons->Count();
            if (total > 0) {
                if (chosen == 0) {
                    optConvert.Value = 0;
                    optNew.Value = 1;
                    chkSelected.Value = 0;
                } else {
                    chkSelected.Value = 1;
                    optConvert.Value = 1;
                    optNew.Value = 0;
                }
                FillGraphicsListBox();
            } else {
                chkSelected.Value = 0;
                chkSelected.Enabled = false;
                optConvert.Value = 0;
                optConvert.Enabled = false;
                list.Enabled = false;
                list.AddItem(kNoGraphicsLine);
            }
        }

        std::shared_ptr<ISpatialReference> reference = document_->FocusMap()->SpatialReference();
        spatialReference_ = reference && !IsUnknownReference(reference) ? reference : nullptr;
        ShowSpatialReference();
        SetDefaultOutput();
        optNew.BackColor = kOptionBackColor;
        optConvert.BackColor = kOptionBackColor;
        CheckEnable();
    });
}

void frmGraphicsShapefile::ShowSpatialReference() {
    Ctl("lblSpRef").Caption = spatialReference_ ? kReferenceLead + spatialReference_->Name() : kNoReference;
}

void frmGraphicsShapefile::SetDefaultOutput() {
    std::string directory = extension_->DirectoryPath();
    const std::string directoryType = extension_->DirectoryType();
    bool isFeatureDataset = extension_->IsFeatureDataset();
    std::string datasetName = extension_->FeatDatasetName();
    std::int32_t kind = directoryType.empty() ? output_kind::Shapefile : OutputKindOfDirectoryType(directoryType);
    if (!ExistFileDir(directory) || kind == output_kind::Unknown) {
        directory = ReturnDir(GetFullFileString(GetMxDocPath(application_)));
        kind = output_kind::Shapefile;
        isFeatureDataset = false;
        datasetName.clear();
    }

    std::string path;
    std::string name = kDefaultName;
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

void frmGraphicsShapefile::CheckEnable() {
    TrappedNested("CheckEnable ", [&] {
        const bool newMode = Ctl("optNew").Value == 1;
        const bool convertMode = Ctl("optConvert").Value == 1;
        const bool anyShape =
            Ctl("optPoint").Value == 1 || Ctl("optPolyline").Value == 1 || Ctl("optPolygon").Value == 1;
        const bool ready = (newMode && anyShape) || (convertMode && Ctl("lbxGraphics").ListIndex >= 0);
        const bool valid = spatialReference_ && !IsUnknownReference(spatialReference_);
        if (newMode) {
            for (const char* name : {"optPoint", "optPolyline", "optPolygon", "frmNew"})
                Ctl(name).Enabled = true;
            Ctl("lbxGraphics").Enabled = false;
            Ctl("chkSelected").Enabled = false;
        }
        if (convertMode) {
            for (const char* name : {"optPoint", "optPolyline", "optPolygon", "frmNew"})
                Ctl(name).Enabled = false;
            Ctl("lbxGraphics").Enabled = true;
            Ctl("chkSelected").Enabled = true;
        }
        Ctl("cmdOK").Enabled = ready && valid;
    });
}

void frmGraphicsShapefile::chkSelected_Click() {
    TrappedVoid("chkSelected_Click ", [&] {
        FillGraphicsListBox();
        CheckEnable();
    });
}

// Option buttons of one frame exclude each other, as the hosts' do.
void frmGraphicsShapefile::optNew_Click() {
    TrappedVoid("optNew_Click ", [&] {
        Ctl("optNew").Value = 1;
        Ctl("optConvert").Value = 0;
        FillGraphicsListBox();
        CheckEnable();
    });
}

void frmGraphicsShapefile::optConvert_Click() {
    TrappedVoid("optConvert_Click ", [&] {
        Ctl("optConvert").Value = 1;
        Ctl("optNew").Value = 0;
        FillGraphicsListBox();
        CheckEnable();
    });
}

void frmGraphicsShapefile::optShape_Click(const char* option) {
    TrappedVoid("optShape_Click ", [&] {
        for (const char* name : {"optPoint", "optPolyline", "optPolygon"})
            Ctl(name).Value = std::string(name) == option ? 1 : 0;
        CheckEnable();
    });
}

void frmGraphicsShapefile::lbxGraphics_Click() {
    TrappedVoid("lbxGraphics_Click ", [&] { CheckEnable(); });
}

void frmGraphicsShapefile::cmdSpRef_Click() {
    TrappedVoid("cmdSpRef_Click ", [&] {
        if (std::shared_ptr<ISpatialReference> chosen = UI().ChooseSpatialReference(spatialReference_)) {
            spatialReference_ = chosen;
            Ctl("lblSpRef").Caption = kReferenceLead + chosen->Name();
        }
        CheckEnable();
    });
}

void frmGraphicsShapefile::txtOutput_Change() {
    TrappedVoid("txtOutput_Change ", [&] {
        const std::string text = Ctl("txtOutput").Text;
        directory_ = StripTrailingSeparator(ReturnDir(text));
        name_ = ReturnFilename(text);
    });
}

void frmGraphicsShapefile::cmdGetWorkspace_Click() {
    TrappedVoid("cmdGetWorkspace_Click ", [&] {
        const std::string text = Ctl("txtOutput").Text;
        const std::optional<OutputPlace> chosen =
            BrowseForOutputPlace(kBrowseTitle, directory_, ReturnFilename(text), false);
        if (!chosen)
            return;
        const OutputPlace& place = *chosen;
        std::string name = place.name;
        if (place.kind == output_kind::Shapefile && !EndsWithNoCase(name, ".shp"))
            name += ".shp";
        directory_ = place.directory;
        name_ = name;
        kind_ = place.kind;
        isFeatureDataset_ = place.isFeatureDataset;
        datasetName_ = place.datasetName;
        Ctl("txtOutput").Text = OutputPathText(directory_, isFeatureDataset_, datasetName_, name_);
    });
}

void frmGraphicsShapefile::cmdCancel_Click() {
    TrappedVoid("cmdCancel_Click ", [&] { Unload(); });
}

void frmGraphicsShapefile::cmdHelp_Click() {
    TrappedVoid("cmdHelp_Click ", [&] { OpenDoc(manualPath_); });
}

void frmGraphicsShapefile::Form_Unload() {
    all_.Clear();
    selected_.Clear();
    spatialReference_.reset();
    application_.reset();
    document_.reset();
    extension_.reset();
}

void ShowGraphicsShapefileDialog(const std::shared_ptr<IApplication>& application, const std::string& manualPath) {
    TrappedVoid("ShowGraphicsShapefileDialog ", [&] {
        frmGraphicsShapefile form;
        form.ManualPath(manualPath);
        form.ArcApplication(application);
        form.ShowModal();
    });
}

} // namespace tess
