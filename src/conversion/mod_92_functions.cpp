#include "conversion/mod_92_functions.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "frame/ErrorHandling.h"
#include "frame/clsExtension.h"
#include "platform/carto/ActiveView.h"
#include "platform/carto/FeatureLayer.h"
#include "platform/carto/Map.h"
#include "platform/data/Cursor.h"
#include "platform/data/DataNotes.h"
#include "platform/data/Dataset.h"
#include "platform/data/FeatureConstruction.h"
#include "platform/data/Field.h"
#include "platform/data/QueryFilter.h"
#include "platform/data/Row.h"
#include "platform/data/SelectionSet.h"
#include "platform/data/Table.h"
#include "platform/framework/Application.h"
#include "platform/framework/Document.h"
#include "platform/framework/StatusBar.h"
#include "platform/geometry/Envelope.h"
#include "platform/geometry/GeometryBag.h"
#include "platform/geometry/Polygon.h"
#include "platform/srs/SpatialReference.h"
#include "platform/system/Arrays.h"
#include "platform/system/Clone.h"
#include "platform/system/DateTime.h"
#include "platform/system/Fault.h"
#include "platform/ui/UIServices.h"
#include "support/DataNotesReport.h"
#include "support/Format.h"
#include "support/GeneralHelpers.h"
#include "support/MyGeneralOperations.h"
#include "support/ReportTemplates.h"
#include "support/aml_func_mod.h"

namespace tess {
namespace {

constexpr const char* kSource = "mod_92_functions";
constexpr const char* kProcedure = "orlBuildPolygons ";
const std::string kCrLf(kReportLineBreak);

// Own fields: a 32-bit identifier, and the area as a double of 16 digits with 8 behind the point.
constexpr std::int32_t kIdentifierLength = 8;
constexpr std::int32_t kMeasurePrecision = 16;
constexpr std::int32_t kMeasureScale = 8;
constexpr double kTimingFontSize = 8.0; // points, of the report's timing block

constexpr const char* kReportHeader =
    R"({\rtf1\ansi\ansicpg1252\deff0\deflang1033{\fonttbl{\f0\fswiss\fcharset0 Arial;}})";
constexpr const char* kBoldRule = R"(\b ---------------------------------------------\par)";
constexpr const char* kNoFields = R"(       <-- No Fields Selected -->\par)";
constexpr const char* kMissingHeading =
    R"(\b Missing Label Points:\b0  These polygons had no label points within the polygon boundary...\par)";
constexpr const char* kNamePrompt = "Specify New Polygon Feature Class Name:";

std::string StripTrailingSeparator(std::string path) {
    if (!path.empty() && (path.back() == '/' || path.back() == '\\'))
        path.pop_back();
    return path;
}

std::shared_ptr<IField> OwnField(const std::string& name, bool identifier) {
    auto field = std::make_shared<Field>();
    field->Name(name);
    if (identifier) {
        field->Type(esriFieldTypeInteger);
        field->Length(kIdentifierLength);
        field->Precision(0);
    } else {
        field->Type(esriFieldTypeDouble);
        field->Precision(kMeasurePrecision);
        field->Scale(kMeasureScale);
    }
    return field;
}

//! The base name, or base_2, base_3... while a label field has that name, case counting.
std::string OwnName(const std::string& base, const std::vector<std::string>& labelNames) {
    std::string candidate = base;
    for (int number = 1; std::find(labelNames.begin(), labelNames.end(), candidate) != labelNames.end();)
        candidate = base + "_" + std::to_string(++number);
    return candidate;
}

std::shared_ptr<IFeatureCursor> AsFeatureCursor(const std::shared_ptr<ICursor>& cursor) {
    auto features = std::dynamic_pointer_cast<IFeatureCursor>(cursor);
    if (cursor && !features)
        throw Fault(fault::TypeMismatch, kSource, "Type mismatch");
    return features;
}

//! One run; the members are what the steps share.
class BuildPolygonsRun {
public:
    struct Request {
        std::shared_ptr<IFeatureLayer> layer;
        bool doAll = true;
        double tolerance = 0.0;
        bool transfer = false;
        bool useAll = true;
        bool useFirst = false;
        std::shared_ptr<IFeatureLayer> pointLayer;
        std::shared_ptr<IVariantArray> fields;
        std::string outputPath;
        std::shared_ptr<IMxDocument> document;
        std::shared_ptr<IApplication> application;
        std::shared_ptr<clsExtension> extension;
    };

    explicit BuildPolygonsRun(Request request) : r_(std::move(request)) {}
    std::string Execute();

private:
    void Cancel(const std::string& text) const;
    void OpenInput();
    bool CreateOutput();
    void PrepareTransfer();
    void Construct();
    void SecondPass();
    void TransferLabel(const IPolygon& polygon, const std::shared_ptr<IPoint>& centroid, IFeature& output);
    void AddLayer();
    std::string Report() const;

    Request r_;
    DateValue start_{};
    std::shared_ptr<IAnimationProgressor> animation_;
    std::shared_ptr<IFeatureClass> input_;
    std::shared_ptr<IFeatureCursor> cursor_;
    std::int32_t count_ = 0;
    std::shared_ptr<IFeatureClass> pointClass_;
    std::shared_ptr<ISpatialReference> pointReference_;
    std::shared_ptr<ISpatialReference> reference_;
    std::string unitWord_;
    std::vector<std::shared_ptr<IGeometry>> shapes_;
    std::string directory_;
    std::string name_;
    std::string idName_;
    std::string areaName_;
    std::shared_ptr<IFeatureClass> output_;
    std::vector<std::pair<std::int32_t, std::int32_t>> transferIndexes_; // point class, output
    std::string fieldReport_;
    std::int32_t idIndex_ = -1;
    std::int32_t areaIndex_ = -1;
    std::string problems_;
    bool problem_ = false;
};

void BuildPolygonsRun::Cancel(const std::string& text) const {
    UI().MessageBox(text, MsgBoxButtons::OK, MsgBoxIcon::None, "");
    UI().SetMousePointer(MousePointer::Default);
}

std::string BuildPolygonsRun::Execute() {
    start_ = Now();
    ClearDataNotes();
    if (r_.application)
        if (auto bar = r_.application->StatusBar()) {
            animation_ = bar->ProgressAnimation();
            if (animation_) {
                animation_->Show();
                animation_->Play(0, -1, -1);
            }
        }
    UI().SetMousePointer(MousePointer::Hourglass);

    OpenInput();
    for (auto shape = cursor_->NextFeature(); shape; shape = cursor_->NextFeature())
        shapes_.push_back(shape->ShapeCopy());
    cursor_.reset();
    if (shapes_.empty()) {
        Cancel("No polylines available in '" + r_.layer->Name() + "'!  Function cancelled...");
        return {};
    }
    if (!CreateOutput())
        throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
    PrepareTransfer();
    Construct();
    if (output_->FeatureCount(nullptr) == 0) {
        Cancel("No polygons were created from '" + r_.layer->Name() + "'!  Possibly no " +
               "polylines intersected in such a way as to create a bounded region.  Function cancelled...");
        return {};
    }
    SecondPass();
    AddLayer();
    std::string report = Report();
    try {
        if (animation_) {
            animation_->Stop();
            animation_->Hide();
        }
        UI().SetMousePointer(MousePointer::Default);
    } catch (const std::exception&) {
        // The polygons are written and the report made; nothing left here is worth a fault.
    }
    return report;
}

void BuildPolygonsRun::OpenInput() {
    if (!r_.layer || !r_.document || !r_.extension)
        throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
    input_ = r_.layer->FeatureClass();
    if (!input_)
        throw Fault(fault::ObjectNotSet, kSource, "The layer '" + r_.layer->Name() + "' has no data");
    if (input_->ShapeType() != esriGeometryPolyline)
        throw Fault(fault::TypeMismatch, kSource, "The layer '" + r_.layer->Name() + "' does not hold polylines");
    if (r_.doAll) {
        cursor_ = input_->Search(nullptr, true);
        count_ = input_->FeatureCount(nullptr);
    } else {
        auto owner = std::dynamic_pointer_cast<IFeatureSelection>(r_.layer);
        std::shared_ptr<ISelectionSet> selection = owner ? owner->SelectionSet() : nullptr;
        if (!selection)
            throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
        cursor_ = AsFeatureCursor(selection->Search(nullptr, true));
        count_ = selection->Count();
    }
    if (r_.transfer) {
        if (!r_.pointLayer || !(pointClass_ = r_.pointLayer->FeatureClass()))
            throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
        if (auto geo = std::dynamic_pointer_cast<IGeoDataset>(pointClass_))
            pointReference_ = geo->SpatialReference();
    }
    if (auto geo = std::dynamic_pointer_cast<IGeoDataset>(input_))
        reference_ = geo->SpatialReference();
    unitWord_ = CoordinateUnitWord(reference_);
    // What would only fail once the output exists is refused before anything is written.
    if (!(r_.tolerance >= 0.0) || !std::isfinite(r_.tolerance))
        throw Fault(fault::InvalidCall, kSource, "The cluster tolerance must be a number of 0 or more");
    if (r_.transfer && r_.fields)
        for (std::int32_t i = 0; i < r_.fields->Count(); ++i)
            if (auto field = r_.fields->Element(i).As<IField>(); field && pointClass_->FindField(field->Name()) < 0)
                throw Fault(fault::InvalidCall, kSource,
                            "The label point layer '" + r_.pointLayer->Name() + "' has no field '" + field->Name() +
                                "'");
}

bool BuildPolygonsRun::CreateOutput() {
    const std::string path = MakeUniqueFilename(r_.outputPath);
    directory_ = ReturnDir(path);
    name_ = ReturnFilename(path);

    std::vector<std::string> labelNames;
    if (r_.fields)
        for (std::int32_t i = 0; i < r_.fields->Count(); ++i)
            if (auto field = r_.fields->Element(i).As<IField>())
                labelNames.push_back(field->Name());
    // Here the own fields give way to the label fields, which keep their names.
    idName_ = OwnName("Uniq_ID", labelNames);
    areaName_ = OwnName("Area", labelNames);

    auto fields = std::make_shared<VarArray>();
    fields->Add(OwnField(idName_, true));
    fields->Add(OwnField(areaName_, false));
    fieldReport_.clear();
    std::vector<std::pair<std::string, std::string>> nameMap;
    if (r_.fields) {
        for (std::int32_t i = 0; i < r_.fields->Count(); ++i) {
            auto field = r_.fields->Element(i).As<IField>();
            if (!field)
                throw Fault(fault::TypeMismatch, kSource, "Type mismatch");
            auto clone = CloneAs<IFieldEdit>(*field);
            if (!clone)
                throw Fault(fault::TypeMismatch, kSource, "Type mismatch");
            const std::string outputName = ReturnDBASEFieldName(field->Name(), Variant(fields));
            clone->Name(outputName);
            fields->Add(std::shared_ptr<IField>(clone));
            nameMap.emplace_back(field->Name(), outputName);
        }
    }

    clsExtension& extension = *r_.extension;
    const std::int32_t kind = OutputKindOfDirectoryType(extension.DirectoryType());
    bool isFeatureDataset = extension.IsFeatureDataset();
    std::string datasetName = extension.FeatDatasetName();
    if (isFeatureDataset && kind != output_kind::Shapefile) {
        // The path names the dataset between the geodatabase and the class.
        const std::string folder = StripTrailingSeparator(directory_);
        if (ReturnFilename(folder) == datasetName)
            directory_ = StripTrailingSeparator(ReturnDir(folder));
    }
    std::shared_ptr<IEnvelope> extent;
    if (auto geo = std::dynamic_pointer_cast<IGeoDataset>(input_))
        extent = geo->Extent();
    esriGeometryType type = esriGeometryPolygon;
    output_ = CreateGeneralFeatureClass(type, reference_, directory_, name_, kind, fields, kNamePrompt,
                                        isFeatureDataset, datasetName, false, extent);
    if (!output_)
        return false;

    if (r_.transfer) {
        std::int32_t ordinal = 0;
        for (const auto& [inputName, outputName] : nameMap) {
            transferIndexes_.emplace_back(pointClass_->FindField(inputName), output_->FindField(outputName));
            fieldReport_ += "       " + std::to_string(++ordinal) + "] " + RtfText(inputName) + R"(\par)" + kCrLf;
        }
        if (nameMap.empty())
            fieldReport_ = kNoFields + kCrLf;
    }
    return true;
}

void BuildPolygonsRun::PrepareTransfer() {
    idIndex_ = output_->FindField(idName_);
    areaIndex_ = output_->FindField(areaName_);
}

void BuildPolygonsRun::Construct() {
    auto bag = std::make_shared<GeometryBag>();
    auto bounds = std::make_shared<Envelope>();
    for (const auto& shape : shapes_) {
        bounds->Union(*shape->Envelope());
        bag->AddGeometry(shape);
    }
    FeatureConstruction construction;
    construction.ConstructPolygonsFromGeometries(nullptr, *output_, bounds, false, *bag, nullptr, r_.tolerance);
}

void BuildPolygonsRun::SecondPass() {
    const bool needCentroid = r_.transfer && !r_.useFirst;
    std::shared_ptr<IFeatureCursor> cursor = output_->Update(nullptr, false);
    std::int32_t counter = 0;
    for (auto feature = cursor->NextFeature(); feature; feature = cursor->NextFeature()) {
        auto polygon = std::dynamic_pointer_cast<IPolygon>(feature->ShapeCopy());
        if (!polygon)
            throw Fault(fault::TypeMismatch, kSource, "Type mismatch");
        auto& topology = dynamic_cast<ITopologicalOperator&>(*polygon);
        topology.Simplify();
        feature->Shape(polygon);
        feature->Value(idIndex_, Variant(++counter));
        const auto& area = dynamic_cast<const IArea&>(*polygon);
        feature->Value(areaIndex_, Variant(area.Area()));
        std::shared_ptr<IPoint> centroid = needCentroid ? area.Centroid() : nullptr;
        if (r_.transfer)
            TransferLabel(*polygon, centroid, *feature);
        cursor->UpdateFeature(*feature);
    }
}

void BuildPolygonsRun::TransferLabel(const IPolygon& polygon, const std::shared_ptr<IPoint>& centroid,
                                     IFeature& output) {
    // The search, and the distances, happen in the points' reference; the polygon keeps its own.
    auto searchShape = CloneAs<IGeometry>(polygon);
    if (!CompareSpatialReferences(pointReference_, reference_)) {
        searchShape->Project(pointReference_);
        if (centroid)
            centroid->Project(pointReference_);
    }
    auto filter = std::make_shared<SpatialFilter>();
    filter->Geometry(searchShape);
    filter->SpatialRel(esriSpatialRelIntersects);

    std::int32_t hits = 0;
    std::shared_ptr<IFeatureCursor> points;
    if (r_.useAll) {
        hits = pointClass_->FeatureCount(filter);
        points = pointClass_->Search(filter, true);
    } else {
        auto owner = std::dynamic_pointer_cast<IFeatureSelection>(r_.pointLayer);
        std::shared_ptr<ISelectionSet> selection = owner ? owner->SelectionSet() : nullptr;
        if (!selection)
            throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
        points = AsFeatureCursor(selection->Search(filter, true));
        while (points->NextFeature())
            ++hits;
        points = AsFeatureCursor(selection->Search(filter, true));
    }
    if (hits == 0) {
        problems_ += "  ** OID Value = " + std::to_string(output.OID()) + R"(\par)" + kCrLf;
        problem_ = true;
        return;
    }
    std::shared_ptr<IFeature> chosen = points->NextFeature();
    if (!chosen)
        throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
    if (!r_.useFirst) {
        auto distance = [&](const IFeature& point) {
            auto shape = std::dynamic_pointer_cast<IPoint>(point.Shape());
            if (!shape || !centroid)
                throw Fault(fault::TypeMismatch, kSource, "Type mismatch");
            const double dx = shape->X() - centroid->X();
            const double dy = shape->Y() - centroid->Y();
            return std::sqrt(dx * dx + dy * dy);
        };
        std::int32_t best = chosen->OID();
        double nearest = distance(*chosen);
        for (auto point = points->NextFeature(); point; point = points->NextFeature()) {
            const double d = distance(*point);
            if (d < nearest) { // a tie keeps the earlier point
                nearest = d;
                best = point->OID();
            }
        }
        points.reset();
        chosen = pointClass_->GetFeature(best);
    }
    for (const auto& [from, to] : transferIndexes_)
        output.Value(to, chosen->Value(from));
}

void BuildPolygonsRun::AddLayer() {
    auto layer = std::make_shared<FeatureLayer>();
    layer->Name(name_);
    layer->FeatureClass(output_);
    r_.document->FocusMap()->AddLayer(layer);
    r_.document->UpdateContents();
    if (auto view = r_.document->ActiveView())
        view->PartialRefresh(esriViewGeography, Variant::Nothing(), nullptr);
}

std::string BuildPolygonsRun::Report() const {
    std::string report;
    report += std::string(kReportHeader) + kCrLf;
    report += R"({\*\generator Msftedit 5.41.15.1507;}\viewkind4\uc1\pard\qc\b\f0\fs16 Build Polygons Function Complete:\par)" + kCrLf;
    report += R"(\pard ---------------------------------------------\par)" + kCrLf;
    report += R"(Input Parameters:\b0\par)" + kCrLf;
    report += R"(  ** Input Polyline Feature Layer:  \b zzzFClass\b0\par)" + kCrLf;
    report += R"(  ** zzzDoAll\par)" + kCrLf;
    report += "  ** Cluster Tolerance: " + Format(r_.tolerance, "0.###############") + " " + RtfText(unitWord_) +
              R"(\par)" + kBoldRule + kCrLf;
    report += "zzzLabelReport" + kCrLf;
    report += kBoldRule + kCrLf;
    report += R"(Output:\b0\par)" + kCrLf;
    report += R"(  ** zzzFilename\par)" + kCrLf;
    report += R"(  ** zzzSpRef\par)" + kCrLf;
    report += R"(  ** zzzNumRecs\par)" + kCrLf;
    report += R"(\b ---------------------------------------------\b0\par)" + kCrLf;
    report += "zzzProbReport" + kCrLf;
    report += DataNotesRtf(DataNotes());
    report += R"(\pard\qc TimeSpentString\par)" + kCrLf;
    report += "}";

    std::string labels;
    if (r_.transfer) {
        labels = R"(\b Label Point Layer:   \b0 )" + RtfText(r_.pointLayer->Name()) + R"(\par)" + kCrLf +
                 "  ** Option: " +
                 (r_.useAll ? " Consider all label points" : " Consider only selected label points") + R"(\par)" +
                 kCrLf + "  ** Option: " +
                 (r_.useFirst ? " If multiple points in polygon, use first point"
                              : " If multiple points in polygon, use point closest to polygon centroid") +
                 R"(\par)" + kCrLf + R"(  ** Attribute Fields to Include:\par)" + kCrLf + fieldReport_ + kCrLf;
    } else {
        labels = R"(  ** No label point attributes used...\par)" + kCrLf;
    }
    std::string problems;
    if (problem_)
        problems = std::string(kMissingHeading) + kCrLf + problems_ + kCrLf +
                   R"(\b ---------------------------------------------\b0\par)" + kCrLf;
    std::string reference = "Unknown";
    if (reference_)
        reference = reference_->Name();
    std::string outputPath = directory_ + "/" + name_;
    if (auto dataset = std::dynamic_pointer_cast<IDataset>(output_))
        outputPath = dataset->FullName();
    const std::string doAll =
        std::string(r_.doAll ? "Used all polylines to build polygons (n = "
                             : "Used only selected polylines to build polygons (n = ") +
        std::to_string(count_) + ")";

    report = Replace(report, "zzzLabelReport", labels);
    report = Replace(report, "zzzProbReport", problems);
    report = Replace(report, "zzzFClass", RtfText(r_.layer->Name()));
    report = Replace(report, "zzzDoAll", doAll);
    report = Replace(report, "zzzFilename", RtfText(outputPath));
    report = Replace(report, "zzzSpRef", "Spatial Reference:  " + RtfText(reference));
    report = Replace(report, "zzzNumRecs", "Contains " + std::to_string(output_->FeatureCount(nullptr)) + " features");
    report = Replace(report, "TimeSpentString", ReturnTimeElapsedRTF(start_, Now(), kTimingFontSize));
    return report;
}

} // namespace

std::string CoordinateUnitWord(const std::shared_ptr<ISpatialReference>& reference) {
    if (std::dynamic_pointer_cast<IGeographicCoordinateSystem>(reference))
        return "Decimal Degrees";
    if (auto projected = std::dynamic_pointer_cast<IProjectedCoordinateSystem>(reference))
        if (auto unit = projected->CoordinateUnit())
            return unit->Name();
    return "Unknown Coordinates";
}

std::string orlBuildPolygons(const std::shared_ptr<IFeatureLayer>& polylineLayer, bool doAllRecords,
                             double clusterTolerance, bool transferLabels, bool useAllLabelPoints,
                             bool useFirstLabelPoint, const std::shared_ptr<IFeatureLayer>& labelPointLayer,
                             const std::shared_ptr<IVariantArray>& selectedFields, const std::string& outputPath,
                             const std::shared_ptr<IMxDocument>& document,
                             const std::shared_ptr<IApplication>& application,
                             const std::shared_ptr<clsExtension>& extension) {
    return Trapped(kProcedure, std::string(), [&] {
        BuildPolygonsRun run({polylineLayer, doAllRecords, clusterTolerance, transferLabels, useAllLabelPoints,
                              useFirstLabelPoint, labelPointLayer, selectedFields, outputPath, document, application,
                              extension});
        try {
            return run.Execute();
        } catch (...) {
            UI().SetMousePointer(MousePointer::Default);
            throw;
        }
    });
}

} // namespace tess
