// The run behind OK of frmGraphicsShapefile: an empty feature class of the chosen
// geometry, or the harvested graphics written into a new one.

#include <vector>

#include "frame/ErrorHandling.h"
#include "frame/clsExtension.h"
#include "geodesy/PolylineMeasures.h"
#include "geodesy/Rings.h"
#include "geodesy/SphericalArea.h"
#include "graphics/frmGraphicsShapefile.h"
#include "platform/carto/ActiveView.h"
#include "platform/carto/FeatureLayer.h"
#include "platform/carto/Map.h"
#include "platform/carto/SimpleRenderer.h"
#include "platform/carto/Symbols.h"
#include "platform/data/Cursor.h"
#include "platform/data/Dataset.h"
#include "platform/data/Field.h"
#include "platform/data/Row.h"
#include "platform/data/Table.h"
#include "platform/framework/Application.h"
#include "platform/framework/Document.h"
#include "platform/geometry/Geometry.h"
#include "platform/srs/SpatialReference.h"
#include "platform/system/Arrays.h"
#include "platform/system/Clone.h"
#include "platform/system/Collection.h"
#include "platform/system/Fault.h"
#include "platform/ui/UIServices.h"
#include "support/GeneralHelpers.h"
#include "support/MyGeneralOperations.h"
#include "support/QuickSort.h"
#include "support/ReportTemplates.h"
#include "support/aml_func_mod.h"
#include "support/frmReport_modal.h"

namespace tess {
namespace {

constexpr const char* kSource = "frmGraphicsShapefile";
constexpr std::string_view kCrLf = kReportLineBreak;

// Measure fields hold doubles of 16 digits with 8 behind the point; names up to 50 characters.
constexpr std::int32_t kMeasurePrecision = 16;
constexpr std::int32_t kMeasureScale = 8;
constexpr std::int32_t kNameWidth = 50;
// True curves become this many straight pieces in all (at least 8 for each curve).
constexpr std::int32_t kCurvePieces = 200;

constexpr const char* kCreateTitle = "Specify New Feature Class Name:";
constexpr const char* kUniqueIdField = "Unique_ID";

// The five conversions, by their line in lbxGraphics.
enum ConversionOption : std::int32_t {
    kPointsToPoints = 0,
    kPolylinesToPolylines = 1,
    kGraphicsToPolylines = 2,
    kPolygonsToPolygons = 3,
    kGraphicsToPolygons = 4,
};

const char* const kOptionTexts[][2] = {
    {"Convert all graphic points to Point Feature Class", "Convert selected graphic points to Point Feature Class"},
    {"Convert all graphic polylines to Polyline Feature Class",
     "Convert selected graphic polylines to Polyline Feature Class"},
    {"Convert all graphic polylines and polygons to Polyline Feature Class",
     "Convert selected graphic polylines and polygons to Polyline Feature Class"},
    {"Convert all graphic polygons to Polygon Feature Class",
     "Convert selected graphic polygons to Polygon Feature Class"},
    {"Convert all graphic polylines and polygons to Polygon Feature Class",
     "Convert selected graphic polylines and polygons to Polygon Feature Class"},
};

struct EmptySource {
    const char* title;
    const char* all;
    const char* selected;
};

const EmptySource kEmptySources[] = {
    {"Unable to Make Point Feature Class:", "No graphic points in map!  No new Feature Class will be made.",
     "No selected graphic points in map!  No new Feature Class will be made."},
    {"Unable to Make Polyline Feature Class:", "No graphic polylines in map!  No new Feature Class will be made.",
     "No selected graphic polylines in map!  No new Feature Class will be made."},
    {"Unable to Make Polyline Feature Class:",
     "No graphic polylines or polygons in map!  No new Feature Class will be made.",
     "No selected graphic polylines or polygons in map!  No new Feature Class will be made."},
    {"Unable to Make Polygon Feature Class:", "No graphic polygons in map!  No new Feature Class will be made.",
     "No selected graphic polygons in map!  No new Feature Class will be made."},
    {"Unable to Make Polygon Feature Class:",
     "No graphic polylines or polygons in map!  No new Feature Class will be made.",
     "No selected graphic polylines or polygons in map!  No new Feature Class will be made."},
};

constexpr const char* kXLine = R"(   [X_Coord]:  Coordinates in )";
constexpr const char* kYLine = R"(   [Y_Coord]:  Coordinates in )";
constexpr const char* kFrameStampAll = "          *** Data Frame Projection = ";
constexpr const char* kFrameStampSelected = "          *** Data Frame Projection  ";
constexpr const char* kLengthLine = R"(   [Length]: Length (m) calculated from geodesic curves over WGS84 spheroid\par)";
constexpr const char* kAreaLine = R"(   [Area]: Area (m^2) calculated on spherical polygon (sphere radius ~6371 km)\par)";
constexpr const char* kNameLine = R"(   [Name]:  Names of graphic elements\par)";
constexpr const char* kParagraph = R"(\par)";

[[noreturn]] void NotSet() {
    throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
}

std::shared_ptr<IField> MeasureField(const char* name) {
    auto field = std::make_shared<Field>();
    field->Name(name);
    field->Type(esriFieldTypeDouble);
    field->Precision(kMeasurePrecision);
    field->Scale(kMeasureScale);
    return field;
}

std::shared_ptr<IField> NameField() {
    auto field = std::make_shared<Field>();
    field->Name("Name");
    field->Type(esriFieldTypeString);
    field->Length(kNameWidth);
    return field;
}

// Text that goes into the report as it is: RTF's own characters escaped.
std::string RtfText(const std::string& text) {
    std::string out;
    for (char c : text) {
        if (c == '\\' || c == '{' || c == '}')
            out += '\\';
        out += c;
    }
    return out;
}

std::string ReferenceName(const std::shared_ptr<ISpatialReference>& reference) {
    return reference ? reference->Name() : std::string("Unknown");
}

void Simplify(IGeometry& shape) {
    if (auto* topology = dynamic_cast<ITopologicalOperator*>(&shape)) {
        // Asked for their own sake, as the engine's callers do; Simplify runs in any case.
        [[maybe_unused]] const bool known = topology->IsKnownSimple();
        [[maybe_unused]] const bool simple = topology->IsSimple();
        topology->Simplify();
    }
}

// The clone that the measures read: in the geographic base of the shape's own reference.
std::shared_ptr<IGeometry> GeographicClone(const IGeometry& shape) {
    std::shared_ptr<IGeometry> clone = CloneAs<IGeometry>(shape);
    if (!clone)
        NotSet();
    std::shared_ptr<ISpatialReference> reference = clone->SpatialReference();
    if (!std::dynamic_pointer_cast<IGeographicCoordinateSystem>(reference)) {
        if (auto projected = std::dynamic_pointer_cast<IProjectedCoordinateSystem>(reference))
            clone->Project(projected->GeographicCoordinateSystem());
        Simplify(*clone);
    }
    return clone;
}

} // namespace

//! What one run carries from its head through the branches to the report.
struct frmGraphicsShapefile::RunState {
    std::string directory;
    std::string name;
    std::shared_ptr<IField> area = MeasureField("Area");
    std::shared_ptr<IField> length = MeasureField("Length");
    std::shared_ptr<IField> xCoord = MeasureField("X_Coord");
    std::shared_ptr<IField> yCoord = MeasureField("Y_Coord");
    // Built with the others and given to no class.
    std::shared_ptr<IField> geoXCoord = MeasureField("GeoX_Coord");
    std::shared_ptr<IField> geoYCoord = MeasureField("GeoY_Coord");
    std::shared_ptr<IField> nameField = NameField();

    std::string title;
    std::string optionTitle;
    std::string option;
    std::string fieldLines;
    std::string comment;

    esriGeometryType outputType = esriGeometryPolygon;
    std::shared_ptr<IFeatureClass> featureClass;
    std::shared_ptr<IFeatureBuffer> buffer;
    std::shared_ptr<IFeatureCursor> cursor;
    std::shared_ptr<ISymbol> symbol;
    std::shared_ptr<ISpatialReference> mapReference;
    std::int32_t uniqueIdIndex = -1;
    std::int32_t xIndex = -1, yIndex = -1, lengthIndex = -1, areaIndex = -1, nameIndex = -1;
    std::int32_t recordNumber = 1;
    Collection nameCounts;             // name -> elements that bear it (keys ignore case)
    std::vector<std::string> nameList; // the names, each once, as first met
    bool backToDialog = false;
};

void frmGraphicsShapefile::cmdOK_Click() {
    TrappedVoid("cmdOK_Click ", [&] {
        FindExtension();
        RunState run;
        const std::string text = Ctl("txtOutput").Text;
        run.directory = ReturnDir(text);
        run.name = ReturnFilename(text);
        // A feature dataset sits between the geodatabase and the class in the path; the
        // geodatabase is the workspace.
        if (isFeatureDataset_ && kind_ != output_kind::Shapefile && !datasetName_.empty()) {
            std::string folder = run.directory;
            if (!folder.empty() && (folder.back() == '/' || folder.back() == '\\'))
                folder.pop_back();
            if (ReturnFilename(folder) == datasetName_)
                run.directory = ReturnDir(folder);
        }
        extension_->DirectoryPath(run.directory);
        extension_->IsFeatureDataset(isFeatureDataset_);
        extension_->FeatDatasetName(datasetName_);
        extension_->DirectoryType(DirectoryTypeOfOutputKind(kind_));
        if (run.directory.empty() || (run.directory.back() != '/' && run.directory.back() != '\\'))
            run.directory += '/';

        if (Ctl("optNew").Value == 1)
            RunEmpty(run);
        else if (!RunConversion(run))
            return;
        if (run.backToDialog)
            return;
        if (run.featureClass)
            FinishRun(run);
        Unload();
    });
}

void frmGraphicsShapefile::RunEmpty(RunState& run) {
    auto fields = std::make_shared<VarArray>();
    std::string option;
    if (Ctl("optPoint").Value == 1) {
        run.outputType = esriGeometryPoint;
        fields->Add(run.xCoord);
        fields->Add(run.yCoord);
        option = "Create Empty Point Feature Class";
        run.fieldLines = std::string(R"(   [X_Coord]\par)") + std::string(kCrLf) + R"(   [Y_Coord]\par)";
    } else if (Ctl("optPolyline").Value == 1) {
        run.outputType = esriGeometryPolyline;
        fields->Add(run.length);
        option = "Create Empty Polyline Feature Class";
        run.fieldLines = R"(   [Length]\par)";
    } else {
        run.outputType = esriGeometryPolygon;
        fields->Add(run.area);
        option = "Create Empty Polygon Feature Class";
        run.fieldLines = R"(   [Area]\par)";
    }
    bool isFeatureDataset = isFeatureDataset_;
    std::string datasetName = datasetName_;
    run.featureClass = CreateGeneralFeatureClass(run.outputType, spatialReference_, run.directory, run.name, kind_,
                                                 fields, kCreateTitle, isFeatureDataset, datasetName,
                                                 kind_ == output_kind::Shapefile);
    if (!run.featureClass)
        return;
    run.option = option;
    run.title = "Empty Shapefile Created and Added to Map";
    run.optionTitle = "Feature Class Option:";
}

bool frmGraphicsShapefile::ConfirmSources(RunState& run, std::int32_t option, bool selected) {
    const GraphicsHarvest& set = selected ? selected_ : all_;
    std::int32_t count = 0;
    switch (option) {
    case kPointsToPoints:
        count = set.Points->Count();
        break;
    case kPolylinesToPolylines:
        count = set.Polylines->Count();
        break;
    case kPolygonsToPolygons:
        count = set.Polygons->Count();
        break;
    default:
        count = set.Polylines->Count() + set.Polygons->Count();
        break;
    }
    if (count > 0)
        return true;
    const EmptySource& words = kEmptySources[option];
    const MsgBoxResult answer = UI().MessageBox(std::string(selected ? words.selected : words.all) + "\r\n" +
                                                    "Do you wish to go back and " + "\r\n" +
                                                    "make a different selection?",
                                                MsgBoxButtons::OKCancel, MsgBoxIcon::Exclamation, words.title);
    run.backToDialog = answer == MsgBoxResult::OK;
    return false;
}

bool frmGraphicsShapefile::RunConversion(RunState& run) {
    // The focus map's view, as the original takes it with its extent; nothing is drawn from them here.
    auto view = std::dynamic_pointer_cast<IActiveView>(document_->FocusMap());
    if (!view)
        NotSet();
    run.mapReference = document_->FocusMap()->SpatialReference();
    run.comment = std::string(R"(\b Conversion Count:\b0\par)") + std::string(kCrLf);
    run.title = "Graphics to Feature Classes Conversion Complete";
    run.optionTitle = "Conversion Option:";
    const bool selected = Ctl("chkSelected").Value == 1;
    const std::int32_t option = Ctl("lbxGraphics").ListIndex;
    if (option < kPointsToPoints || option > kGraphicsToPolygons)
        throw Fault(fault::InvalidCall, kSource, "Invalid procedure call or argument");
    if (!ConfirmSources(run, option, selected))
        return !run.backToDialog;

    const GraphicsHarvest& set = selected ? selected_ : all_;
    auto fields = std::make_shared<VarArray>();
    bool named = false;
    std::string lines;
    switch (option) {
    case kPointsToPoints:
        run.outputType = esriGeometryPoint;
        named = set.PointsNamed;
        fields->Add(run.xCoord);
        fields->Add(run.yCoord);
        lines = kXLine + RtfText(ReferenceName(spatialReference_)) + kParagraph + std::string(kCrLf) + kYLine +
                RtfText(ReferenceName(spatialReference_)) + kParagraph + std::string(kCrLf) +
                (selected ? kFrameStampSelected : kFrameStampAll) + RtfText(ReferenceName(run.mapReference)) +
                kParagraph;
        run.symbol = set.PointSymbol;
        break;
    case kPolylinesToPolylines:
    case kGraphicsToPolylines:
        run.outputType = esriGeometryPolyline;
        named = set.PolylinesNamed || (option == kGraphicsToPolylines && set.PolygonsNamed);
        fields->Add(run.length);
        lines = kLengthLine;
        run.symbol = set.LineSymbol;
        break;
    default:
        run.outputType = esriGeometryPolygon;
        named = set.PolygonsNamed || (option == kGraphicsToPolygons && set.PolylinesNamed);
        fields->Add(run.area);
        lines = kAreaLine;
        run.symbol = set.FillSymbol;
        break;
    }
    if (named) {
        fields->Add(run.nameField);
        lines += std::string(kCrLf) + kNameLine;
    }
    run.fieldLines = lines;
    run.option = kOptionTexts[option][selected ? 1 : 0];

    bool isFeatureDataset = isFeatureDataset_;
    std::string datasetName = datasetName_;
    run.featureClass = CreateGeneralFeatureClass(run.outputType, spatialReference_, run.directory, run.name, kind_,
                                                 fields, kCreateTitle, isFeatureDataset, datasetName, true);
    if (!run.featureClass)
        return true;
    run.buffer = run.featureClass->CreateFeatureBuffer();
    run.cursor = run.featureClass->Insert(true);
    run.uniqueIdIndex = run.featureClass->FindField(kUniqueIdField);
    run.xIndex = run.featureClass->FindField("X_Coord");
    run.yIndex = run.featureClass->FindField("Y_Coord");
    run.lengthIndex = run.featureClass->FindField("Length");
    run.areaIndex = run.featureClass->FindField("Area");
    run.nameIndex = named ? run.featureClass->FindField("Name") : -1;

    auto countLine = [&](std::int32_t count, const char* what) {
        run.comment += std::to_string(count) + what + kParagraph + std::string(kCrLf);
    };
    switch (option) {
    case kPointsToPoints:
        ConvertList(run, set.Points, set.PointNames, named);
        countLine(set.Points->Count(), " point graphics");
        break;
    case kPolylinesToPolylines:
        ConvertList(run, set.Polylines, set.PolylineNames, named);
        countLine(set.Polylines->Count(), " polyline graphics");
        break;
    case kPolygonsToPolygons:
        ConvertList(run, set.Polygons, set.PolygonNames, named);
        countLine(set.Polygons->Count(), " polygon graphics");
        break;
    default:
        ConvertList(run, set.Polylines, set.PolylineNames, named);
        ConvertList(run, set.Polygons, set.PolygonNames, named);
        countLine(set.Polylines->Count(), " polyline graphics");
        countLine(set.Polygons->Count(), " polygon graphics");
        break;
    }
    run.cursor->Flush();
    // Letting go of the cursor puts the features on disk before the layer reads them.
    run.cursor.reset();
    run.buffer.reset();
    return true;
}

void frmGraphicsShapefile::ConvertList(RunState& run, const std::shared_ptr<IVariantArray>& shapes,
                                       const std::shared_ptr<IStringArray>& names, bool named) {
    for (std::int32_t index = 0; index < shapes->Count(); ++index) {
        std::shared_ptr<IGeometry> source = shapes->Element(index).As<IGeometry>();
        if (!source)
            NotSet();
        // True curves become straight pieces, so that the measures see the curve, not its chord.
        std::shared_ptr<IGeometry> shape;
        if (run.outputType == esriGeometryPolygon)
            shape = MyGeometricOperations::CurveToPolygon(source, kCurvePieces);
        else if (run.outputType == esriGeometryPolyline)
            shape = MyGeometricOperations::CurveToPolyline(source, kCurvePieces);
        else
            shape = source;
        if (!shape)
            NotSet(); // the densifier has told the user why

        // A shape drawn without a reference is labelled with the map's geographic one; its
        // coordinates stay as they are.
        std::shared_ptr<ISpatialReference> reference = shape->SpatialReference();
        if (!reference || std::dynamic_pointer_cast<IUnknownCoordinateSystem>(reference)) {
            if (std::dynamic_pointer_cast<IGeographicCoordinateSystem>(run.mapReference))
                shape->SpatialReference(run.mapReference);
            else if (auto projected = std::dynamic_pointer_cast<IProjectedCoordinateSystem>(run.mapReference))
                shape->SpatialReference(projected->GeographicCoordinateSystem());
        }
        if (!CompareSpatialReferences(shape->SpatialReference(), spatialReference_))
            shape->Project(spatialReference_);
        Simplify(*shape);
        run.buffer->Shape(shape);
        if (run.uniqueIdIndex >= 0)
            run.buffer->Value(run.uniqueIdIndex, run.recordNumber);

        if (run.outputType == esriGeometryPoint) {
            auto point = std::dynamic_pointer_cast<IPoint>(shape);
            if (!point)
                NotSet();
            run.buffer->Value(run.xIndex, point->X());
            run.buffer->Value(run.yIndex, point->Y());
        } else if (run.outputType == esriGeometryPolyline) {
            auto clone = std::dynamic_pointer_cast<IPolyline>(GeographicClone(*shape));
            if (!clone)
                NotSet();
            run.buffer->Value(run.lengthIndex, MyGeometricOperations::SpheroidalPolylineLength(*clone));
        } else {
            auto clone = std::dynamic_pointer_cast<IPolygon>(GeographicClone(*shape));
            if (!clone)
                NotSet();
            double lon = 0.0;
            double lat = 0.0;
            run.buffer->Value(run.areaIndex, MyGeometricOperations::SphericalPolygonArea(*clone, false, lon, lat));
        }

        if (named && run.nameIndex >= 0) {
            const std::string name = names->Element(index);
            run.buffer->Value(run.nameIndex, name);
            if (run.nameCounts.Exists(name)) {
                const std::int32_t count = run.nameCounts.Item(name).ToLong();
                run.nameCounts.Remove(name);
                run.nameCounts.Add(Variant(count + 1), name);
            } else {
                run.nameCounts.Add(Variant(std::int32_t{1}), name);
                run.nameList.push_back(name);
            }
        }
        run.cursor->InsertFeature(*run.buffer);
        ++run.recordNumber;
    }
}

void frmGraphicsShapefile::FinishRun(RunState& run) {
    const std::string crlf(kCrLf);
    std::string nameText;
    if (!run.nameList.empty()) {
        std::vector<std::string> sorted = run.nameList;
        StringsAscending(sorted, 0, static_cast<std::int32_t>(sorted.size()) - 1);
        nameText = R"(\b The following graphic element names were added to the attribute table:\b0\par)" + crlf;
        for (std::size_t i = 0; i < sorted.size(); ++i) {
            const std::string count = std::to_string(run.nameCounts.Item(sorted[i]).ToLong());
            const std::string lead = "   " + std::to_string(i + 1);
            nameText += sorted[i].empty() ? lead + "] <- NO NAME ->  (" + count + " elements)" + kParagraph
                                          : lead + "] " + RtfText(sorted[i]) + "  (" + count + " elements)" +
                                                kParagraph;
            nameText += crlf;
        }
    }

    std::string path = run.directory + run.name;
    if (auto dataset = std::dynamic_pointer_cast<IDataset>(run.featureClass))
        path = dataset->FullName();
    std::string report = ReportFrameTemplate();
    report = Replace(report, "zzzTitle", run.title);
    report = Replace(report, "zzzOptionTitle", run.optionTitle);
    report = Replace(report, "zzzOption", run.option);
    report = Replace(report, "zzzFields", run.fieldLines);
    report = Replace(report, "zzzNumRecs", InsertCommas(Variant(run.featureClass->FeatureCount(nullptr))));
    report = Replace(report, "zzzComment", run.comment + nameText);
    report = Replace(report, "zzzFilename", RtfText(path));
    report += crlf + std::string(kReportEnd);

    auto layer = std::make_shared<FeatureLayer>();
    layer->FeatureClass(run.featureClass);
    std::string layerName = run.featureClass->AliasName();
    if (layerName.empty())
        if (auto dataset = std::dynamic_pointer_cast<IDataset>(run.featureClass))
            layerName = dataset->Name();
    layer->Name(layerName);
    // The new layer looks like the graphics it came from.
    if (run.symbol) {
        auto renderer = std::make_shared<SimpleRenderer>();
        renderer->Symbol(run.symbol);
        layer->Renderer(renderer);
    }
    document_->FocusMap()->AddLayer(layer);
    document_->UpdateContents();
    if (auto dirty = std::dynamic_pointer_cast<IDocumentDirty>(document_))
        dirty->SetDirty();
    EnableSelectTool(application_);
    UI().Beep();
    Hide();
    frmReport_modal::ShowReport(report);
}

} // namespace tess
