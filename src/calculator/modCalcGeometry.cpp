#include "calculator/modCalcGeometry.h"

#include <algorithm>
#include <cctype>
#include <vector>

#include "calculator/MeasureCatalogue.h"
#include "frame/ErrorHandling.h"
#include "frame/clsExtension.h"
#include "geodesy/Angles.h"
#include "geodesy/MultipointCentroids.h"
#include "geodesy/PolylineMeasures.h"
#include "geodesy/Rings.h"
#include "geodesy/SphericalArea.h"
#include "geodesy/Vincenty.h"
#include "planetary/PlanetaryLatitude.h"
#include "platform/carto/ActiveView.h"
#include "platform/carto/Layers.h"
#include "platform/data/Cursor.h"
#include "platform/data/DataNotes.h"
#include "platform/data/Dataset.h"
#include "platform/data/Field.h"
#include "platform/data/Fields.h"
#include "platform/data/Row.h"
#include "platform/data/SelectionSet.h"
#include "platform/data/Table.h"
#include "platform/data/Workspace.h"
#include "platform/framework/Application.h"
#include "platform/framework/Document.h"
#include "platform/framework/StatusBar.h"
#include "platform/geometry/Geometry.h"
#include "platform/geometry/Point.h"
#include "platform/srs/SpatialReference.h"
#include "platform/system/Arrays.h"
#include "platform/system/Clone.h"
#include "platform/system/DateTime.h"
#include "platform/system/Fault.h"
#include "platform/system/Variant.h"
#include "platform/ui/UIServices.h"
#include "support/DataNotesReport.h"
#include "support/Format.h"
#include "support/GeneralHelpers.h"
#include "support/ModelessFrame.h"
#include "support/MyGeneralOperations.h"
#include "support/Progress.h"
#include "support/ReportTemplates.h"
#include "support/frmOrlProgressMeter.h"

namespace tess {

namespace geo = MyGeometricOperations;

namespace {

constexpr const char* kSource = "modCalcGeometry";
constexpr std::string_view kCrLf = kReportLineBreak;

// New fields: doubles of 16 digits with 12 behind the point, counts included.
constexpr std::int32_t kFieldPrecision = 16;
constexpr std::int32_t kFieldScale = 12;
// Substitute names keep their last characters, so that the counter survives the cut.
constexpr std::size_t kSubstituteLength = 10;

constexpr double kNoValue = -9999.0;                 // empty mark of the per-record caches
constexpr std::int16_t kNullMark = -9999;            // written for empty shapes
constexpr std::int32_t kLastNullOption = 8;          // the null writer stops here
constexpr std::int64_t kUpdateSeconds = 1;           // the display changes at most once a second
constexpr std::int32_t kAlwaysShowProgress = 1000;   // records above which the meter shows
constexpr std::int32_t kSlowShowProgress = 11;       // records from which a slow measure shows it
constexpr double kTimingFontSize = 8.0;              // points, of the report's timing block
constexpr double kMidpointRatio = 0.5;
constexpr double kNoHeight = 0.0;
constexpr double kNoLongShift = 0.0;
constexpr int kChecked = 1;

constexpr const char* kStampFormat = "ttttt,  ddddd";
constexpr const char* kClockFormat = "ttttt";
constexpr const char* kLogRule = "-------------------------------------------";
constexpr const char* kWorkingText = "Performing Calculations...";
constexpr const char* kMeterCaption = " Current Status:";

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

std::string CrLf() { return std::string(kCrLf); }

[[noreturn]] void ObjectNotSet() {
    throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
}

std::shared_ptr<IField> MeasureField(const std::string& name) {
    auto field = std::make_shared<Field>();
    field->Name(name);
    field->Type(esriFieldTypeDouble);
    field->Precision(kFieldPrecision);
    field->Scale(kFieldScale);
    return field;
}

//! The options' own values, as every routine reads them.
struct RunInputs {
    std::shared_ptr<IFeatureLayer> layer;
    std::shared_ptr<IFeatureClass> featureClass;
    std::shared_ptr<ISpatialReference> reference;
    std::int32_t spatialKind = spatial_kind::Unknown;
    esriGeometryType shapeKind = esriGeometryNull;
    bool allRecords = true;
    std::shared_ptr<IVariantArray> optionList;
    ComboFlags flags{};
    std::string spheroidName;
    double semiMajor = 0;
    double semiMinor = 0;
    bool geocentric = false;
};

RunInputs ReadInputs(const IVariantArray& options) {
    RunInputs in;
    in.layer = options.Element(geometry_options::Layer).As<IFeatureLayer>();
    if (!in.layer)
        ObjectNotSet();
    in.featureClass = in.layer->FeatureClass();
    if (!in.featureClass)
        ObjectNotSet();
    if (auto geoDataset = std::dynamic_pointer_cast<IGeoDataset>(in.featureClass))
        in.reference = geoDataset->SpatialReference();
    in.spatialKind = SpatialKindOf(in.reference);
    in.shapeKind = in.featureClass->ShapeType();
    in.allRecords = options.Element(geometry_options::AllRecords).ToBool();
    in.optionList = options.Element(geometry_options::OptionList).As<IVariantArray>();
    if (!in.optionList)
        ObjectNotSet();
    const Variant flagArray = options.Element(geometry_options::ComboUseFlags);
    const std::vector<Variant>& flags = flagArray.ArrayItems();
    for (std::size_t i = 0; i < in.flags.size() && i < flags.size(); ++i)
        in.flags[i] = flags[i].ToBool();
    in.spheroidName = options.Element(geometry_options::SpheroidName).ToString();
    in.semiMajor = options.Element(geometry_options::SemiMajor).ToDouble();
    in.semiMinor = options.Element(geometry_options::SemiMinor).ToDouble();
    in.geocentric = options.Element(geometry_options::Geocentric).ToBool();
    return in;
}

//! One entry of the option list as the routines read it: the id and the names of the fields in
//! use (empty where the flags say the combo box is not used).
struct EntryFields {
    std::int32_t id = 0;
    std::string names[2];
    bool used[2] = {false, false};
};

//! Ids outside 1 to 11 give id 0, which every consumer skips.
EntryFields ReadEntry(const IVariantArray& optionList, std::int32_t i, const ComboFlags& flags) {
    EntryFields e;
    auto entry = optionList.Element(i).As<IVariantArray>();
    if (!entry)
        ObjectNotSet();
    const std::int32_t id = entry->Element(0).ToLong();
    if (id < 1 || id > kOptionCount)
        return e;
    e.id = id;
    for (std::int32_t position = 0; position < 2; ++position) {
        const std::int32_t flag = ComboIndex(id, position);
        if (flag >= 0 && flags[static_cast<std::size_t>(flag)]) {
            e.used[position] = true;
            e.names[position] = entry->Element(position + 1).ToString();
        }
    }
    return e;
}

//! An option ready for the record loop: its catalogue row and the field indexes (-1: not used).
struct ResolvedOption {
    const MeasureRow* row = nullptr;
    std::int32_t index[2] = {-1, -1};
};

std::vector<ResolvedOption> ResolveOptions(const RunInputs& in, const FieldIndexes& indexes) {
    std::vector<ResolvedOption> resolved;
    for (std::int32_t i = 0; i < in.optionList->Count(); ++i) {
        const EntryFields e = ReadEntry(*in.optionList, i, in.flags);
        const MeasureRow* row = e.id ? FindMeasureRow(in.shapeKind, in.spatialKind, e.id) : nullptr;
        if (!row)
            continue;
        ResolvedOption option;
        option.row = row;
        for (std::int32_t position = 0; position < row->FieldCount(); ++position)
            if (e.used[position])
                option.index[position] = indexes.Item(e.names[position]);
        resolved.push_back(option);
    }
    return resolved;
}

void PutReal(IFeature& feature, std::int32_t index, double value) {
    if (index >= 0)
        feature.Value(index, Variant(value));
}

void PutCount(IFeature& feature, std::int32_t index, std::int32_t value) {
    if (index >= 0)
        feature.Value(index, Variant(value));
}

void PutPoint(IFeature& feature, const ResolvedOption& option, const IPoint& point) {
    PutReal(feature, option.index[0], point.X());
    PutReal(feature, option.index[1], point.Y());
}

std::shared_ptr<IGeographicCoordinateSystem> GeographicBeneath(const std::shared_ptr<ISpatialReference>& reference) {
    auto projected = std::dynamic_pointer_cast<IProjectedCoordinateSystem>(reference);
    if (!projected)
        throw Fault(fault::TypeMismatch, kSource, "Type mismatch");
    return projected->GeographicCoordinateSystem();
}

//! A clone of the shape in the geographic system beneath its projection, simplified.
template <class T>
std::shared_ptr<T> ProjectedWorkingCopy(const IGeometry& shape) {
    auto copy = CloneAs<IGeometry>(shape);
    if (!copy)
        ObjectNotSet();
    copy->Project(GeographicBeneath(shape.SpatialReference()));
    auto topology = std::dynamic_pointer_cast<ITopologicalOperator>(copy);
    if (!topology)
        throw Fault(fault::TypeMismatch, kSource, "Type mismatch");
    // The host's sequence; the answers of the first two are not needed.
    (void)topology->IsKnownSimple();
    (void)topology->IsSimple();
    topology->Simplify();
    auto typed = std::dynamic_pointer_cast<T>(copy);
    if (!typed)
        throw Fault(fault::TypeMismatch, kSource, "Type mismatch");
    return typed;
}

std::shared_ptr<IGeometry> ToGraphic(const IGeometry& shape, const RunInputs& in) {
    double a = in.semiMajor;
    double b = in.semiMinor;
    auto result = CalcGeodesy().FeaturePlanetOCentricToPlanetOGraphic(shape, a, b, kNoLongShift);
    if (!result)
        ObjectNotSet();
    return result;
}

std::shared_ptr<IGeometry> ToCentric(const IGeometry& shape, const RunInputs& in) {
    double a = in.semiMajor;
    double b = in.semiMinor;
    auto result = CalcGeodesy().FeaturePlanetOGraphicToPlanetOCentric(shape, a, b, kNoLongShift);
    if (!result)
        ObjectNotSet();
    return result;
}

template <class T>
std::shared_ptr<T> As(const std::shared_ptr<IGeometry>& geometry) {
    auto typed = std::dynamic_pointer_cast<T>(geometry);
    if (!typed)
        throw Fault(fault::TypeMismatch, kSource, "Type mismatch");
    return typed;
}

// ------------------------------------------------------------------ measures per shape kind

//! What a record loop asks of its shape kind: the measures of one record with a shape.
class RecordMeasures {
public:
    virtual ~RecordMeasures() = default;
    virtual void Measure(IFeature& feature, const std::shared_ptr<IGeometry>& shape,
                         const std::vector<ResolvedOption>& options) = 0;
};

class PointMeasures final : public RecordMeasures {
public:
    explicit PointMeasures(const RunInputs& in) : in_(in) {}
    void Measure(IFeature& feature, const std::shared_ptr<IGeometry>& shape,
                 const std::vector<ResolvedOption>& options) override {
        const auto point = As<IPoint>(shape);
        for (const ResolvedOption& option : options) {
            if (option.row->measure == Measure::LonLat) {
                // The geographic system of the layer's own projection, not the options' spheroid.
                auto clone = CloneAs<IPoint>(*point);
                clone->Project(GeographicBeneath(point->SpatialReference()));
                PutPoint(feature, option, *clone);
            } else {
                PutPoint(feature, option, *point);
            }
        }
    }

private:
    const RunInputs& in_;
};

class MultipointMeasures final : public RecordMeasures {
public:
    explicit MultipointMeasures(const RunInputs& in) : in_(in) {}
    void Measure(IFeature& feature, const std::shared_ptr<IGeometry>& shape,
                 const std::vector<ResolvedOption>& options) override {
        std::shared_ptr<IGeometry> working = shape;
        if (in_.spatialKind == spatial_kind::Geographic && in_.geocentric)
            working = ToGraphic(*shape, in_);
        for (const ResolvedOption& option : options) {
            const auto& points = dynamic_cast<const IPointCollection&>(*shape);
            switch (option.row->measure) {
            case Measure::Centroid: {
                auto centroid = geo::MultipointCentroid(points);
                if (!centroid)
                    ObjectNotSet();
                PutPoint(feature, option, *centroid);
                break;
            }
            case Measure::PointCount:
                PutCount(feature, option.index[0], points.PointCount());
                break;
            case Measure::SphCentroid:
                if (in_.spatialKind == spatial_kind::Projected)
                    ProjectedCentroid(feature, *shape, option);
                else
                    GeographicCentroid(feature, *working, option);
                break;
            default:
                break;
            }
        }
    }

private:
    // The shape copy itself goes to geographic coordinates; the catalogue's order puts the plain
    // centroid ahead of this and only the count after it, which does not care.
    void ProjectedCentroid(IFeature& feature, IGeometry& shape, const ResolvedOption& option) {
        const auto projected = shape.SpatialReference();
        const auto geographic = GeographicBeneath(projected);
        shape.Project(geographic);
        auto centroid = CalcGeodesy().MultipointCentroidSpheroid(dynamic_cast<const IPointCollection&>(shape),
                                                                  in_.semiMajor, in_.semiMinor, kNoHeight);
        if (!centroid)
            ObjectNotSet();
        centroid->SpatialReference(geographic);
        centroid->Project(projected);
        PutPoint(feature, option, *centroid);
    }

    void GeographicCentroid(IFeature& feature, const IGeometry& working, const ResolvedOption& option) {
        std::shared_ptr<IPoint> centroid = CalcGeodesy().MultipointCentroidSpheroid(
            dynamic_cast<const IPointCollection&>(working), in_.semiMajor, in_.semiMinor, kNoHeight);
        if (!centroid)
            ObjectNotSet();
        if (in_.geocentric)
            centroid = As<IPoint>(ToCentric(*centroid, in_));
        PutPoint(feature, option, *centroid);
    }

    const RunInputs& in_;
};

class PolylineMeasures final : public RecordMeasures {
public:
    explicit PolylineMeasures(const RunInputs& in) : in_(in) {}

    void Measure(IFeature& feature, const std::shared_ptr<IGeometry>& shape,
                 const std::vector<ResolvedOption>& options) override {
        working_.reset();
        midpoint_.reset();
        length_ = kNoValue;
        startAzimuth_ = kNoValue;
        endAzimuth_ = kNoValue;
        const auto line = As<IPolyline>(shape);
        switch (in_.spatialKind) {
        case spatial_kind::Geographic:
            working_ = CloneAs<IPolyline>(*line);
            if (in_.geocentric)
                working_ = As<IPolyline>(ToGraphic(*working_, in_));
            for (const ResolvedOption& option : options)
                Geographic(feature, *line, option);
            break;
        case spatial_kind::Projected:
            for (const ResolvedOption& option : options)
                Projected(feature, *line, option);
            break;
        default:
            for (const ResolvedOption& option : options)
                Planar(feature, *line, option);
            break;
        }
    }

private:
    //! Measures that read the stored coordinates alone, in any kind of layer.
    void Planar(IFeature& feature, const IPolyline& line, const ResolvedOption& option) {
        switch (option.row->measure) {
        case Measure::Length:
            PutReal(feature, option.index[0], line.Length());
            break;
        case Measure::Start:
            PutPoint(feature, option, *line.FromPoint());
            break;
        case Measure::Midpoint: {
            Point midpoint;
            line.QueryPoint(esriNoExtension, kMidpointRatio, true, midpoint);
            PutPoint(feature, option, midpoint);
            break;
        }
        case Measure::End:
            PutPoint(feature, option, *line.ToPoint());
            break;
        case Measure::Bearing:
            PutReal(feature, option.index[0], geo::CalcBearing2(*line.FromPoint(), *line.ToPoint()));
            break;
        case Measure::Parts:
            PutCount(feature, option.index[0], dynamic_cast<const IGeometryCollection&>(line).GeometryCount());
            break;
        case Measure::Vertices:
            PutCount(feature, option.index[0], dynamic_cast<const IPointCollection&>(line).PointCount());
            break;
        default:
            break;
        }
    }

    void Projected(IFeature& feature, const IPolyline& line, const ResolvedOption& option) {
        switch (option.row->measure) {
        case Measure::SphLength:
            if (!working_ || !midpoint_) {
                working_ = ProjectedWorkingCopy<IPolyline>(line);
                SpheroidalPair();
            }
            PutReal(feature, option.index[0], length_);
            break;
        case Measure::SphMidpoint:
            if (!working_ || !midpoint_) {
                working_ = ProjectedWorkingCopy<IPolyline>(line);
                SpheroidalPair();
            }
            midpoint_->SpatialReference(working_->SpatialReference());
            midpoint_->Project(line.SpatialReference());
            PutPoint(feature, option, *midpoint_);
            break;
        case Measure::StartAzimuth:
        case Measure::EndAzimuth:
            if (!working_)
                working_ = ProjectedWorkingCopy<IPolyline>(line);
            AzimuthPair();
            PutReal(feature, option.index[0],
                    option.row->measure == Measure::StartAzimuth ? startAzimuth_ : endAzimuth_);
            break;
        default:
            Planar(feature, line, option);
            break;
        }
    }

    void Geographic(IFeature& feature, const IPolyline& line, const ResolvedOption& option) {
        switch (option.row->measure) {
        case Measure::SphLength:
        case Measure::SphMidpoint:
            if (!midpoint_) {
                SpheroidalPair();
                if (in_.geocentric)
                    midpoint_ = As<IPoint>(ToCentric(*midpoint_, in_));
            }
            if (option.row->measure == Measure::SphLength)
                PutReal(feature, option.index[0], length_);
            else
                PutPoint(feature, option, *midpoint_);
            break;
        case Measure::Start:
        case Measure::End: {
            // From the stored shape, and through the conversion to planetocentric latitudes even
            // though they already are: the fields have always held it so.
            std::shared_ptr<IPoint> point = option.row->measure == Measure::Start ? line.FromPoint() : line.ToPoint();
            if (in_.geocentric)
                point = As<IPoint>(ToCentric(*point, in_));
            PutPoint(feature, option, *point);
            break;
        }
        case Measure::StartAzimuth:
        case Measure::EndAzimuth:
            AzimuthPair();
            PutReal(feature, option.index[0],
                    option.row->measure == Measure::StartAzimuth ? startAzimuth_ : endAzimuth_);
            break;
        default:
            Planar(feature, line, option);
            break;
        }
    }

    //! Length and midpoint of the working polyline in one pass over its segments.
    void SpheroidalPair() {
        double position = kMidpointRatio;
        midpoint_ = CalcGeodesy().SpheroidalPolylineMidpoint2(*working_, position, true, length_, in_.semiMajor,
                                                              in_.semiMinor);
        if (!midpoint_)
            ObjectNotSet();
    }

    //! Both azimuths from one solution, unless both are known. A pair marked -9999 (a closed
    //! line) is looked at again by the next azimuth option, with the same answer.
    void AzimuthPair() {
        if (startAzimuth_ >= 0 && endAzimuth_ >= 0)
            return;
        const auto from = working_->FromPoint();
        const auto to = working_->ToPoint();
        if (from->X() == to->X() && from->Y() == to->Y()) {
            startAzimuth_ = kNoValue;
            endAzimuth_ = kNoValue;
            return;
        }
        (void)CalcGeodesy().DistanceVincentyPoints2(*from, *to, startAzimuth_, endAzimuth_, in_.semiMajor,
                                                    in_.semiMinor);
    }

    const RunInputs& in_;
    std::shared_ptr<IPolyline> working_;
    std::shared_ptr<IPoint> midpoint_;
    double length_ = kNoValue;
    double startAzimuth_ = kNoValue;
    double endAzimuth_ = kNoValue;
};

class PolygonMeasures final : public RecordMeasures {
public:
    explicit PolygonMeasures(const RunInputs& in) : in_(in) {}

    void Measure(IFeature& feature, const std::shared_ptr<IGeometry>& shape,
                 const std::vector<ResolvedOption>& options) override {
        area_ = kNoValue;
        centroidX_ = kNoValue;
        centroidY_ = kNoValue;
        working_.reset();
        const auto polygon = As<IPolygon>(shape);
        switch (in_.spatialKind) {
        case spatial_kind::Geographic:
            working_ = polygon;
            if (in_.geocentric)
                working_ = As<IPolygon>(ToGraphic(*polygon, in_));
            for (const ResolvedOption& option : options)
                Geographic(feature, *polygon, option);
            break;
        case spatial_kind::Projected:
            for (const ResolvedOption& option : options)
                Projected(feature, *polygon, option);
            break;
        default:
            for (const ResolvedOption& option : options)
                Planar(feature, *polygon, option);
            break;
        }
    }

private:
    void Planar(IFeature& feature, const IPolygon& polygon, const ResolvedOption& option) {
        switch (option.row->measure) {
        case Measure::Area:
            PutReal(feature, option.index[0], dynamic_cast<const IArea&>(polygon).Area());
            break;
        case Measure::Centroid:
            PutPoint(feature, option, *dynamic_cast<const IArea&>(polygon).Centroid());
            break;
        case Measure::Perimeter:
            PutReal(feature, option.index[0], polygon.Length());
            break;
        case Measure::Parts:
            // Exterior rings: holes are no parts.
            PutCount(feature, option.index[0], polygon.ExteriorRingCount());
            break;
        case Measure::Vertices:
            PutCount(feature, option.index[0], dynamic_cast<const IPointCollection&>(polygon).PointCount());
            break;
        default:
            break;
        }
    }

    // The caches test by sign: a centroid west or south of 0 counts as unknown and the pair is
    // solved again, with the same result. It costs time only.
    bool AreaKnown() const { return area_ >= 0; }
    bool CentroidKnown() const { return centroidX_ >= 0 && centroidY_ >= 0; }

    void Projected(IFeature& feature, const IPolygon& polygon, const ResolvedOption& option) {
        switch (option.row->measure) {
        case Measure::SphArea:
            if (!(AreaKnown() && working_)) {
                working_ = ProjectedWorkingCopy<IPolygon>(polygon);
                SphericalPair();
            }
            PutReal(feature, option.index[0], area_);
            break;
        case Measure::SphCentroid: {
            if (!(CentroidKnown() && working_)) {
                working_ = ProjectedWorkingCopy<IPolygon>(polygon);
                SphericalPair();
            }
            Point centroid(centroidX_, centroidY_);
            centroid.SpatialReference(working_->SpatialReference());
            centroid.Project(polygon.SpatialReference());
            PutPoint(feature, option, centroid);
            break;
        }
        case Measure::SphPerimeter:
            if (!working_)
                working_ = ProjectedWorkingCopy<IPolygon>(polygon);
            PutReal(feature, option.index[0], SpheroidalPerimeter());
            break;
        default:
            Planar(feature, polygon, option);
            break;
        }
    }

    void Geographic(IFeature& feature, const IPolygon& polygon, const ResolvedOption& option) {
        switch (option.row->measure) {
        case Measure::SphArea:
            if (!AreaKnown())
                SphericalPair();
            PutReal(feature, option.index[0], area_);
            break;
        case Measure::SphCentroid: {
            if (!CentroidKnown())
                SphericalPair();
            double x = centroidX_;
            double y = centroidY_;
            if (in_.geocentric) {
                auto centric = As<IPoint>(ToCentric(Point(x, y), in_));
                x = centric->X();
                y = centric->Y();
            }
            PutReal(feature, option.index[0], x);
            PutReal(feature, option.index[1], y);
            break;
        }
        case Measure::SphPerimeter:
            PutReal(feature, option.index[0], SpheroidalPerimeter());
            break;
        default:
            Planar(feature, polygon, option);
            break;
        }
    }

    //! Area and centre from one walk over the triangles; snaps the working polygon in place.
    void SphericalPair() {
        area_ = CalcGeodesy().SphericalPolygonArea2(*working_, true, centroidX_, centroidY_, in_.semiMajor,
                                                    in_.semiMinor);
    }

    //! Every ring as a path, holes included.
    double SpheroidalPerimeter() {
        auto rings = geo::PolygonToPolyline(*working_);
        if (!rings)
            ObjectNotSet();
        return CalcGeodesy().SpheroidalPolylineLength2(*rings, in_.semiMajor, in_.semiMinor);
    }

    const RunInputs& in_;
    std::shared_ptr<IPolygon> working_;
    double area_ = kNoValue;
    double centroidX_ = kNoValue;
    double centroidY_ = kNoValue;
};

// ------------------------------------------------------------------ the record loop

//! The words that differ between the four loops.
struct LoopWords {
    const char* routine;  //!< "CalcGeometryPoint " (with the blank), for fault reports
    const char* plural;   //!< "Points", in the meter's first log line
    const char* singular; //!< "Point", in the meter's heading
};

constexpr LoopWords kPointWords{"CalcGeometryPoint ", "Points", "Point"};
constexpr LoopWords kMultipointWords{"CalcGeometryMultipoint ", "Multipoints", "Multipoint"};
constexpr LoopWords kPolylineWords{"CalcGeometryPolyline ", "Polylines", "Polyline"};
constexpr LoopWords kPolygonWords{"CalcGeometryPolygon ", "Polygons", "Polygon"};

std::string ProblemTemplate() {
    const std::string crlf = CrLf();
    return R"(\b Empty Features Found:\b0  These features have no geometry and were skipped in the analysis. )" + crlf +
           R"(\b Note:\b0  All field values for these records have been set to -9999.  Please be )" +
           "aware of this if you calculate statistics on the geometry fields...\\par" + crlf + "zzzRunningProblems" +
           crlf + R"(\b ---------------------------------------------\b0\par)" + crlf;
}

std::string TimeStampLine(DateValue now) {
    return "          [time stamp " + Format(now, kStampFormat) + "]";
}

class RecordLoop {
public:
    RecordLoop(const LoopWords& words, const std::shared_ptr<IVariantArray>& options,
               const std::shared_ptr<IApplication>& application, const FieldIndexes& indexes, const Clock& clock)
        : words_(words), options_(options), application_(application), indexes_(indexes),
          clock_(clock ? clock : SystemClock()) {}

    std::string Run(RecordMeasures& measures, const RunInputs& in, std::int32_t& recordCount, bool showProgress) {
        const std::vector<ResolvedOption> resolved = ResolveOptions(in, indexes_);
        const std::string problems = ProblemTemplate();
        std::string running;
        bool empties = false;

        std::shared_ptr<IFeatureCursor> cursor;
        std::int32_t count = 0;
        if (in.allRecords) {
            cursor = in.featureClass->Update(nullptr, false);
            count = in.featureClass->FeatureCount(nullptr);
        } else {
            auto owner = std::dynamic_pointer_cast<IFeatureSelection>(in.layer);
            auto selection = std::dynamic_pointer_cast<ISelectionSet2>(owner ? owner->SelectionSet() : nullptr);
            if (!selection)
                ObjectNotSet();
            cursor = std::dynamic_pointer_cast<IFeatureCursor>(selection->Update(nullptr, false));
            if (!cursor)
                throw Fault(fault::TypeMismatch, kSource, "Type mismatch");
            count = selection->Count();
        }
        recordCount = count;

        const DateValue start = clock_();
        DateValue lastUpdate = start;
        std::shared_ptr<IStatusBar> statusBar = application_ ? application_->StatusBar() : nullptr;
        const std::string prefix = "Calculating Geometry on " + in.layer->Name();
        if (statusBar) {
            statusBar->ShowProgressBar(prefix, 1, count, 1, true);
            statusBar->ProgressBar()->Position(1);
        }
        std::shared_ptr<frmOrlProgressMeter> meter;
        if (showProgress)
            meter = OpenMeter(start, count);

        const std::string heading = std::string("Calculating ") + words_.singular + " Attributes...";
        std::int32_t counter = 0;
        for (std::shared_ptr<IFeature> feature = cursor->NextFeature(); feature; feature = cursor->NextFeature()) {
            ++counter;
            const DateValue now = clock_();
            if (DateDiffSeconds(lastUpdate, now) >= kUpdateSeconds || counter == count) {
                if (statusBar)
                    statusBar->Message(0, CalcTimeLeft(prefix, start, counter, count, clock_));
                lastUpdate = now;
                if (meter) {
                    UI().DoEvents();
                    const std::string line = "Working on Feature " + std::to_string(counter) + " of " +
                                             std::to_string(count) + "...";
                    meter->AppendDetails(" --> " + line + CrLf() + TimeStampLine(now) + CrLf());
                    meter->Est_Time_Left(counter, heading, kWorkingText);
                    meter->Ctl("lblCurrentTime").Caption = Format(now, kClockFormat);
                    UI().DoEvents();
                    if (BailOutOfProgress(meter, application_)) {
                        const std::string stopped =
                            "Exited Function Prematurely at Record " + std::to_string(counter) + "\\par" + CrLf();
                        if (empties)
                            return Replace(problems, kReportRunningProblems, running) + "Note:  " + stopped;
                        return stopped;
                    }
                }
            }
            if (statusBar)
                statusBar->StepProgressBar();

            // A private copy: the measures project and simplify it.
            std::shared_ptr<IGeometry> shape = feature->ShapeCopy();
            if (!shape)
                ObjectNotSet();
            if (shape->IsEmpty()) {
                running += "  ** OID Value = " + std::to_string(feature->OID()) + "\\par" + CrLf();
                empties = true;
                WriteNullValues(in.optionList, in.shapeKind, in.spatialKind, *feature, indexes_);
            } else {
                measures.Measure(*feature, shape, resolved);
            }
            cursor->UpdateFeature(*feature);
        }

        if (statusBar) {
            statusBar->ProgressBar()->Position(0);
            statusBar->HideProgressBar();
        }
        if (meter)
            CloseMeter(*meter);
        return empties ? Replace(problems, kReportRunningProblems, running) : std::string();
    }

private:
    std::shared_ptr<frmOrlProgressMeter> OpenMeter(DateValue start, std::int32_t count) {
        auto meter = std::make_shared<frmOrlProgressMeter>(clock_);
        std::shared_ptr<clsExtension> extension = application_ ? FindTessExtension(*application_) : nullptr;
        meter->SetExpanded(extension ? extension->ProgressDialogSetExpanded() : false);
        meter->SetAutoClose(extension ? extension->ProgressDialogAutoClose() : false);
        meter->ShouldContinue(true);
        meter->ProgBeginTime(start);
        meter->ProgRecCount(count);
        const std::string stamp = Format(start, kStampFormat);
        meter->Ctl("lblCurrentTime").Caption = Format(start, kClockFormat);
        meter->Ctl("lblBeginTime").Caption = "Began Job: " + stamp;
        meter->Ctl("txtDetails").Text = std::string("Calculating Geometry on ") + words_.plural + "..." + CrLf() +
                                        "Began Job: " + stamp + CrLf() + kLogRule + CrLf();
        meter->Ctl("chkClose").Value = meter->SetAutoClose() ? kChecked : 0;
        meter->ExpandProgress();
        meter->Frame().Caption(kMeterCaption);
        meter->Frame().Visible(true);
        return meter;
    }

    void CloseMeter(frmOrlProgressMeter& meter) {
        if (meter.Ctl("chkClose").Value == kChecked) {
            meter.Frame().Visible(false);
            return;
        }
        // The meter stays for the user to read and close.
        const DateValue now = clock_();
        meter.AppendDetails(" --> Calculations Complete..." + CrLf() + TimeStampLine(now) + CrLf() +
                            ReturnTimeElapsed(meter.ProgBeginTime(), now));
    }

    const LoopWords& words_;
    std::shared_ptr<IVariantArray> options_;
    std::shared_ptr<IApplication> application_;
    const FieldIndexes& indexes_;
    Clock clock_;
};

template <class Measures>
std::string RunLoop(const LoopWords& words, const std::shared_ptr<IVariantArray>& Options,
                    const std::shared_ptr<IApplication>& Application, const FieldIndexes& indexes,
                    std::int32_t& recordCount, bool showProgress, const Clock& clock) {
    // A fault ends the loop here; the cursor goes with it, which saves the rows written so far.
    return Trapped(words.routine, std::string(), [&] {
        if (!Options)
            ObjectNotSet();
        const RunInputs in = ReadInputs(*Options);
        Measures measures(in);
        RecordLoop loop(words, Options, Application, indexes, clock);
        return loop.Run(measures, in, recordCount, showProgress);
    });
}

// ------------------------------------------------------------------ CalcGeometry's pieces

std::string CompressedReport(const std::string& layerName) {
    const std::string crlf = CrLf();
    return R"({\rtf1\ansi\ansicpg1252\deff0\deflang1033{\fonttbl{\f0\fnil\fcharset0 MS Sans Serif;}{\f1\fswiss\fcharset0 Arial;}})" +
           crlf + R"({\*\generator Msftedit 5.41.15.1507;}\viewkind4\uc1\pard\qc\b\f0\fs17 FUNCTION FAILED\par)" + crlf +
           R"(---------------------------------------------------\par)" + crlf + R"(\pard\b0 The layer ')" + layerName +
           R"(' comes from a compressed file geodatabase.  Compressed file geodatabases cannot be edited!  Please uncompress the file geodatabase before running this operation.\par)" +
           crlf + R"(\par)" + crlf +
           R"(\b Hint: \b0  You can uncompress it by either right-clicking on it in ArcCatalog and choosing the option 'Uncompress File Geodatabase...', or you can find the uncompress tool in the ArcToolbox 'Data Management Tools', and then File Geodatabase...\f1\fs20\par)" +
           crlf + "}";
}

//! Whether an edit session is open on the class's workspace, which the run must stay out of.
bool InEditSession(const std::shared_ptr<IFeatureClass>& featureClass) {
    auto dataset = std::dynamic_pointer_cast<IDataset>(featureClass);
    auto edit = dataset ? std::dynamic_pointer_cast<IWorkspaceEdit>(dataset->Workspace()) : nullptr;
    return edit && edit->IsBeingEdited();
}

//! Whether any chosen measure works on the spheroid of the options.
bool UsesSpheroid(const RunInputs& in) {
    for (std::int32_t i = 0; i < in.optionList->Count(); ++i) {
        const EntryFields e = ReadEntry(*in.optionList, i, in.flags);
        const MeasureRow* row = e.id ? FindMeasureRow(in.shapeKind, in.spatialKind, e.id) : nullptr;
        if (!row)
            continue;
        switch (row->measure) {
        case Measure::SphCentroid:
        case Measure::SphLength:
        case Measure::SphMidpoint:
        case Measure::StartAzimuth:
        case Measure::EndAzimuth:
        case Measure::SphArea:
        case Measure::SphPerimeter:
            return true;
        case Measure::Start:
        case Measure::End:
            if (in.geocentric)
                return true;
            break;
        default:
            break;
        }
    }
    return false;
}

std::string SpheroidProblem(const RunInputs& in) {
    const bool zero = !(in.semiMajor > 0) || !(in.semiMinor > 0);
    if (!zero && in.semiMinor <= in.semiMajor)
        return {};
    return "FUNCTION FAILED:  The spheroid '" + in.spheroidName + "' has a semi-major (equatorial) radius of " +
           TrimZerosAndDecimals(in.semiMajor, false) + " meters and a semi-minor (polar) radius of " +
           TrimZerosAndDecimals(in.semiMinor, false) + " meters.  " +
           (zero ? "Both radii must be greater than 0.  " : "The polar radius cannot exceed the equatorial radius.  ") +
           "Please choose another spheroid; no field was added or changed.";
}

std::string SuccessTemplate() {
    const std::string crlf = CrLf();
    std::string t;
    t += R"({\rtf1\ansi\ansicpg1252\deff0\deflang1033{\fonttbl{\f0\fswiss\fcharset0 Arial;}})" + crlf;
    t += R"({\*\generator Msftedit 5.41.15.1507;}\viewkind4\uc1\pard\qc\b\f0\fs16 Geometry Calculation Successful:\par)" + crlf;
    t += R"(\pard ---------------------------------------------\par)" + crlf;
    t += R"(Input Parameters:\b0\par)" + crlf;
    t += R"(  ** Input Feature Layer: zzzFClass\par)" + crlf;
    t += R"(  ** zzzNumRecs\par)" + crlf;
    t += R"(  ** zzzDoAll\par)" + crlf;
    t += R"(  ** zzzSpRef\par)" + crlf;
    t += R"(  ** Geometry Statistics:\par)" + crlf;
    t += "zzzFieldReport" + crlf;
    t += R"(\b ---------------------------------------------\par)" + crlf;
    t += R"(Spheroid Parameters:\b0\par)" + crlf;
    return t;
}

} // namespace

// ------------------------------------------------------------------ public

bool FieldIndexes::Exists(const std::string& name) const { return indexes_.count(Lower(name)) != 0; }

void FieldIndexes::Add(const std::string& name, std::int32_t index) { indexes_.emplace(Lower(name), index); }

std::int32_t FieldIndexes::Item(const std::string& name) const {
    const auto it = indexes_.find(Lower(name));
    if (it == indexes_.end())
        throw Fault(fault::InvalidCall, kSource, "Invalid procedure call or argument");
    return it->second;
}

CalculatorGeodesy DefaultCalcGeodesy() {
    return CalculatorGeodesy{&geo::SphericalPolygonArea2,
                             &geo::SpheroidalPolylineMidpoint2,
                             &geo::DistanceVincentyPoints2,
                             &geo::SpheroidalPolylineLength2,
                             &geo::MultipointCentroidSpheroid,
                             &geo::FeaturePlanetOCentricToPlanetOGraphic,
                             &geo::FeaturePlanetOGraphicToPlanetOCentric};
}

CalculatorGeodesy& CalcGeodesy() {
    static CalculatorGeodesy table = DefaultCalcGeodesy();
    return table;
}

bool CanEditWOEditSession(const std::shared_ptr<IFeatureClass>& featureClass) {
    auto info = std::dynamic_pointer_cast<IObjectClassInfo2>(featureClass);
    if (!info || !info->CanBypassEditSession())
        return false;
    auto versioned = std::dynamic_pointer_cast<IVersionedObject>(featureClass);
    return !(versioned && versioned->IsRegisteredAsVersioned());
}

void WriteNullValues(const std::shared_ptr<IVariantArray>& OptionList, esriGeometryType ShapeKind,
                     std::int32_t SpatialKind, IFeature& Feature, const FieldIndexes& indexes) {
    TrappedVoid("WriteNullValues ", [&] {
        if (!OptionList)
            ObjectNotSet();
        for (std::int32_t i = 0; i < OptionList->Count(); ++i) {
            auto entry = OptionList->Element(i).As<IVariantArray>();
            if (!entry)
                ObjectNotSet();
            const std::int32_t id = entry->Element(0).ToLong();
            if (id > kLastNullOption)
                continue;
            const MeasureRow* row = FindMeasureRow(ShapeKind, SpatialKind, id);
            if (!row)
                continue;
            for (std::int32_t position = 0; position < 2; ++position)
                if (row->nullFields & (1U << position))
                    Feature.Value(indexes.Item(entry->Element(position + 1).ToString()), Variant(kNullMark));
        }
    });
}

std::string CalcGeometryPoint(const std::shared_ptr<IVariantArray>& Options,
                              const std::shared_ptr<IApplication>& Application, const FieldIndexes& indexes,
                              std::int32_t& recordCount, bool showProgress, const Clock& clock) {
    return RunLoop<PointMeasures>(kPointWords, Options, Application, indexes, recordCount, showProgress, clock);
}

std::string CalcGeometryMultipoint(const std::shared_ptr<IVariantArray>& Options,
                                   const std::shared_ptr<IApplication>& Application, const FieldIndexes& indexes,
                                   std::int32_t& recordCount, bool showProgress, const Clock& clock) {
    return RunLoop<MultipointMeasures>(kMultipointWords, Options, Application, indexes, recordCount, showProgress,
                                       clock);
}

std::string CalcGeometryPolyline(const std::shared_ptr<IVariantArray>& Options,
                                 const std::shared_ptr<IApplication>& Application, const FieldIndexes& indexes,
                                 std::int32_t& recordCount, bool showProgress, const Clock& clock) {
    return RunLoop<PolylineMeasures>(kPolylineWords, Options, Application, indexes, recordCount, showProgress,
                                     clock);
}

std::string CalcGeometryPolygon(const std::shared_ptr<IVariantArray>& Options,
                                const std::shared_ptr<IApplication>& Application, const FieldIndexes& indexes,
                                std::int32_t& recordCount, bool showProgress, const Clock& clock) {
    return RunLoop<PolygonMeasures>(kPolygonWords, Options, Application, indexes, recordCount, showProgress,
                                    clock);
}

std::string CalcGeometry(const std::shared_ptr<IVariantArray>& Options,
                         const std::shared_ptr<IApplication>& Application, bool /*reserved1*/,
                         bool /*reserved2*/, const Clock& clockGiven) {
    const Clock clock = clockGiven ? clockGiven : SystemClock();
    std::string report;
    try {
        if (!Options)
            ObjectNotSet();
        ClearDataNotes();
        RunInputs in = ReadInputs(*Options);
        const std::string layerName = in.layer->Name();
        auto dataset = std::dynamic_pointer_cast<IDataset>(in.featureClass);
        const std::string category = dataset ? dataset->Category() : std::string();
        if (Lower(category).find("file geodatabase") != std::string::npos && CheckDatafileFormat(dataset))
            return CompressedReport(layerName);

        if (InEditSession(in.featureClass))
            return std::string("FUNCTION FAILED:  This fuction is written to run outside of an edit session and "
                               "therefore ") +
                   "requires that ArcMap not be in edit mode.  Please turn off your edit session before running "
                   "this function.";
        if (!CanEditWOEditSession(in.featureClass))
            return std::string("FUNCTION FAILED:  This layer cannot be edited outside of an edit session.  It may "
                               "be a versioned dataset. ") +
                   "Please try copying this feature class to a stand-alone dataset and calculating the geometric "
                   "attributes " +
                   "on the dataset copy.";
        // Radii of 0 would fault in every record, and the dialogs never hand them on.
        if (UsesSpheroid(in))
            if (std::string problem = SpheroidProblem(in); !problem.empty())
                return problem;

        // The fields in use, in option order, first before second, repeats kept.
        std::vector<std::string> names;
        for (std::int32_t i = 0; i < in.optionList->Count(); ++i) {
            const EntryFields e = ReadEntry(*in.optionList, i, in.flags);
            if (!e.id)
                continue;
            for (std::int32_t position = 0; position < 2; ++position)
                if (e.used[position])
                    names.push_back(e.names[position]);
        }

        IFeatureClass& featureClass = *in.featureClass;
        for (const std::string& name : names) {
            if (featureClass.FindField(name) >= 0)
                continue;
            try {
                featureClass.AddField(MeasureField(name));
            } catch (const Fault&) {
                // The storage's refusal; the test below reports it.
            }
            if (featureClass.FindField(name) < 0) {
                const std::string text = "Failed to add field '" + name + "' to Feature Layer " + layerName + "!";
                UI().MessageBox(text + "  Bailing out...", MsgBoxButtons::OK, MsgBoxIcon::Exclamation,
                                "Failed to Add Field:");
                return text;
            }
        }

        FieldIndexes indexes;
        std::vector<std::pair<std::string, std::string>> substitutions;
        std::int32_t counter = 1; // runs on across fields: a second substitute never repeats a suffix
        for (const std::string& name : names) {
            std::int32_t index = featureClass.FindField(name);
            std::string current = name;
            if (!featureClass.Fields()->Field(index)->Editable()) {
                std::string candidate = name;
                while (featureClass.FindField(candidate) != -1) {
                    ++counter;
                    const std::string numbered = name + std::to_string(counter);
                    candidate = numbered.size() > kSubstituteLength
                                    ? numbered.substr(numbered.size() - kSubstituteLength)
                                    : numbered;
                }
                featureClass.AddField(MeasureField(candidate));
                index = featureClass.FindField(name);
                UI().MessageBox("The field named '" + name + "' was not editable!  Substituting the name '" +
                                    candidate + "'...",
                                MsgBoxButtons::OK, MsgBoxIcon::Information,
                                "Problem with Field Name '" + name + "':");
                substitutions.emplace_back(name, candidate);
                current = candidate;
            }
            // After a substitution the key holds the old field's index: the write to it fails into
            // the measure routine's report, as the tool has always done.
            if (!indexes.Exists(current))
                indexes.Add(current, index);
        }
        for (std::int32_t i = 0; i < in.optionList->Count(); ++i) {
            auto entry = in.optionList->Element(i).As<IVariantArray>();
            for (const auto& [oldName, candidate] : substitutions)
                for (std::int32_t position = 1; position <= 2; ++position)
                    if (entry->Element(position).ToString() == oldName)
                        entry->Element(position, Variant(candidate));
        }

        // The field report and the slow mark.
        std::string fieldReport;
        std::int32_t number = 0;
        bool slow = false;
        for (std::int32_t i = 0; i < in.optionList->Count(); ++i) {
            auto entry = in.optionList->Element(i).As<IVariantArray>();
            const MeasureRow* row = FindMeasureRow(in.shapeKind, in.spatialKind, entry->Element(0).ToLong());
            if (!row)
                continue;
            slow = slow || row->slow;
            for (std::int32_t position = 0; position < row->FieldCount(); ++position) {
                const std::string fieldName = entry->Element(position + 1).ToString();
                if (fieldName.empty())
                    continue;
                fieldReport += "       " + std::to_string(++number) + "] " + row->labels[position] +
                               R"(: \i Field Name = [)" + fieldName + R"(]\i0\par)" + CrLf();
            }
        }

        const DateValue start = clock();
        std::int32_t count = 0;
        if (in.allRecords) {
            count = featureClass.FeatureCount(nullptr);
        } else {
            auto owner = std::dynamic_pointer_cast<IFeatureSelection>(in.layer);
            auto selection = owner ? owner->SelectionSet() : nullptr;
            if (!selection)
                ObjectNotSet();
            count = selection->Count();
        }
        const bool showProgress = count > kAlwaysShowProgress || (count >= kSlowShowProgress && slow);

        std::string problemReport;
        std::int32_t recordCount = 0;
        switch (in.shapeKind) {
        case esriGeometryPoint:
            problemReport = CalcGeometryPoint(Options, Application, indexes, recordCount, showProgress, clock);
            break;
        case esriGeometryMultipoint:
            problemReport = CalcGeometryMultipoint(Options, Application, indexes, recordCount, showProgress, clock);
            break;
        case esriGeometryPolyline:
            problemReport = CalcGeometryPolyline(Options, Application, indexes, recordCount, showProgress, clock);
            break;
        case esriGeometryPolygon:
            problemReport = CalcGeometryPolygon(Options, Application, indexes, recordCount, showProgress, clock);
            break;
        default:
            break;
        }
        const std::int32_t total = featureClass.FeatureCount(nullptr);

        // Whatever shows the table draws it again.
        if (Application)
            if (auto document = std::dynamic_pointer_cast<IMxDocument>(Application->Document()))
                if (auto view = document->ActiveView())
                    view->PartialRefresh(esriViewGeography, Variant::Nothing(), nullptr);

        const std::string coordinates = in.geocentric ? "Data are in Planetocentric Coordinates"
                                                      : "Data are in Planetographic Coordinates";
        const std::string crlf = CrLf();
        report = SuccessTemplate();
        report += R"(  ** Spheroid Name: )" + in.spheroidName + R"(\par)" + crlf;
        report += R"(  ** Spheroid Semi-Major (Equatorial) Radius: )" + TrimZerosAndDecimals(in.semiMajor, false) +
                  R"( meters\par)" + crlf;
        report += R"(  ** Spheroid Semi-Minor (Polar) Radius: )" + TrimZerosAndDecimals(in.semiMinor, false) +
                  R"( meters\par)" + crlf;
        report += R"(  ** Coordinate System: )" + coordinates + R"(\par)" + crlf;
        report += R"(\b ---------------------------------------------\par)" + crlf;
        report += "zzzProbReport" + DataNotesRtf(DataNotes()) + R"(\pard\qc TimeSpentString\par)" + crlf;
        report += "}";

        const std::string reference = in.reference ? in.reference->Name() : std::string("Unknown");
        const std::string doAll = std::string(in.allRecords ? "Calculated Geometry for All Features (n = "
                                                            : "Calculated Geometry for Selected Features (n = ") +
                                  std::to_string(count) + ")";
        report = Replace(report, kReportProbReport, problemReport);
        report = Replace(report, kReportFieldReport, fieldReport);
        report = Replace(report, "zzzFClass", layerName);
        report = Replace(report, "zzzSpRef", "Spatial Reference:  " + reference);
        report = Replace(report, "zzzDoAll", doAll);
        report = Replace(report, "zzzNumRecs", "Contains " + std::to_string(total) + " " + ShapeNoun(in.shapeKind, total));
        report = Replace(report, "TimeSpentString", ReturnTimeElapsedRTF(start, clock(), kTimingFontSize));
        return report;
    } catch (const std::exception&) {
        ReportCaughtFault(true, "CalcGeometry ", std::source_location::current());
        return report;
    }
}

} // namespace tess
