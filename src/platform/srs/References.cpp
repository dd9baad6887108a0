// Geographic, projected and unknown references over OGR spatial references.
// Names are those of the ESRI flavour of WKT (GCS_WGS_1984, D_WGS_1984,
// WGS_1984_UTM_Zone_33N), taken from the reference's own ESRI export.

#include <cpl_conv.h>
#include <cpl_error.h>
#include <ogr_spatialref.h>
#include <ogr_srs_api.h>

#include <cmath>
#include <cstdlib>
#include <mutex>
#include <optional>

#include "platform/srs/Backend.h"
#include "platform/srs/Spheroid.h"
#include "platform/system/Fault.h"

namespace tess::srs {
namespace {

const char* const kSource = "tess.SpatialReference";

// Default XY precision. Geographic: 1e-9 degree steps and a tolerance of one
// millimetre at the equator of WGS 1984 (0.001 m / 111319.49 m per degree).
constexpr double kGeographicResolution = 1e-9;                  // degrees
constexpr double kGeographicTolerance = 8.983152841195215e-09;  // degrees
constexpr double kGeographicFalseOrigin = -400.0;               // degrees
constexpr double kProjectedResolutionMeters = 0.0001;           // metres
constexpr double kProjectedToleranceMeters = 0.001;             // metres
constexpr double kUnknownResolution = 0.0001;                   // coordinate units
constexpr double kUnknownTolerance = 0.001;                     // coordinate units
// Projected and unknown grids are centred on 0 and 2^53 resolution steps wide,
// so every grid coordinate is an integer that a double holds exactly.
constexpr double kHalfGridSteps = 4503599627370496.0; // 2^52
constexpr double kRadiansPerDegree = 0.017453292519943295;
// Unit scale factors closer to 1 than this are 1 (the ESRI degree is 0.0174532925199433 rad).
constexpr double kSameScale = 1e-12;

// XYToleranceValid answers.
constexpr std::int32_t kToleranceOK = 3;
constexpr std::int32_t kToleranceNotPositive = 1;
constexpr std::int32_t kToleranceBelowResolution = 2;

// The engine codes the degree 9122 where the ESRI tables code it 9102.
constexpr std::int32_t kEpsgDegreeCode = 9122;
constexpr std::int32_t kEsriDegreeCode = 9102;
// A reference found by identification must match this well (percent).
constexpr int kFullConfidence = 100;

const char* const kEsriWktOptions[] = {"FORMAT=WKT1_ESRI", nullptr};

// ESRI names of linear units by EPSG code. The engine's ESRI export names
// most units the ESRI way but leaves some under their EPSG names
// ("US survey foot" for Foot_US); .prj readers expect the ESRI names.
struct UnitName {
    std::int32_t code;
    const char* esri;
};
constexpr UnitName kEsriLinearUnits[] = {
    {1025, "Millimeter"},   {1033, "Centimeter"},      {9001, "Meter"},       {9002, "Foot"},
    {9003, "Foot_US"},      {9005, "Foot_Clarke"},     {9014, "Fathom"},      {9030, "Nautical_Mile"},
    {9031, "Meter_German"}, {9033, "Chain_US"},        {9034, "Link_US"},     {9035, "Mile_US"},
    {9036, "Kilometer"},    {9037, "Yard_Clarke"},     {9038, "Chain_Clarke"}, {9039, "Link_Clarke"},
    {9040, "Yard_Sears"},   {9041, "Foot_Sears"},      {9042, "Chain_Sears"}, {9043, "Link_Sears"},
    {9070, "Foot_1865"},    {9080, "Foot_Indian"},     {9081, "Foot_Indian_1937"},
    {9082, "Foot_Indian_1962"}, {9083, "Foot_Indian_1975"}, {9084, "Yard_Indian"},
    {9093, "Statute_Mile"}, {9094, "Foot_Gold_Coast"}, {9095, "Foot_British_1936"}, {9096, "Yard"},
    {9097, "Chain"},        {9098, "Link"},
};

const char* EsriLinearUnitName(std::int32_t code) {
    for (const UnitName& unit : kEsriLinearUnits)
        if (unit.code == code)
            return unit.esri;
    return nullptr;
}
const char* const kWkt2Options[] = {"FORMAT=WKT2_2019", "MULTILINE=NO", nullptr};

std::string Export(const OGRSpatialReference& sr, const char* const* options) {
    QuietErrors quiet;
    char* text = nullptr;
    std::string out;
    if (sr.exportToWkt(&text, options) == OGRERR_NONE && text)
        out = text;
    CPLFree(text);
    return out;
}

std::int32_t CodeOf(const OGRSpatialReference& sr, const char* key) {
    const char* authority = sr.GetAuthorityName(key);
    const char* code = sr.GetAuthorityCode(key);
    if (!authority || !code)
        return 0;
    const std::string name(authority);
    if (name != "EPSG" && name != "ESRI")
        return 0;
    return static_cast<std::int32_t>(std::strtol(code, nullptr, 10));
}

// Names out of the ESRI WKT tree: the first value of the node found by a path of keywords.
class EsriTree {
public:
    explicit EsriTree(const std::string& wkt) {
        const char* cursor = wkt.c_str();
        valid_ = !wkt.empty() && root_.importFromWkt(&cursor) == OGRERR_NONE;
    }
    //! Name of the node reached from the root through the keywords (immediate children first).
    std::string NameAt(std::initializer_list<const char*> path) const {
        if (!valid_)
            return {};
        const OGR_SRSNode* node = &root_;
        for (const char* keyword : path) {
            node = node->GetNode(keyword);
            if (!node)
                return {};
        }
        return node->GetChildCount() > 0 ? node->GetChild(0)->GetValue() : std::string();
    }

private:
    OGR_SRSNode root_;
    bool valid_ = false;
};

class ReferenceBase : public virtual ISpatialReference {
public:
    std::string Name() const override { return name_; }

    std::int32_t FactoryCode() const override {
        if (!code_)
            code_ = ogr_ ? Identify() : 0;
        return *code_;
    }

    double XYTolerance() const override { return precision_.tolerance; }
    void XYTolerance(double tolerance) override { precision_.tolerance = tolerance; }
    std::int32_t XYToleranceValid() const override {
        if (!(precision_.tolerance > 0.0) || !std::isfinite(precision_.tolerance))
            return kToleranceNotPositive;
        if (precision_.tolerance < precision_.resolution)
            return kToleranceBelowResolution;
        return kToleranceOK;
    }
    double XYResolution() const override { return precision_.resolution; }
    void XYResolution(double resolution) override {
        if (!(resolution > 0.0) || !std::isfinite(resolution))
            throw ReferenceFault(fault::InvalidCall, kSource, "Invalid procedure call or argument: resolution");
        precision_.resolution = resolution;
    }
    bool IsXYPrecisionEqual(const ISpatialReference& other) const override {
        double x = 0.0;
        double y = 0.0;
        double units = 0.0;
        other.GetFalseOriginAndUnits(x, y, units);
        return x == precision_.falseX && y == precision_.falseY && other.XYResolution() == precision_.resolution;
    }
    void GetFalseOriginAndUnits(double& falseX, double& falseY, double& xyUnits) const override {
        falseX = precision_.falseX;
        falseY = precision_.falseY;
        xyUnits = 1.0 / precision_.resolution;
    }

    bool IsEqual(const ISpatialReference& other) const override {
        const OGRSpatialReference* theirs = EngineOf(other);
        if (!ogr_ || !theirs)
            return !ogr_ && !theirs && dynamic_cast<const IUnknownCoordinateSystem*>(&other) != nullptr;
        QuietErrors quiet;
        if (ogr_->IsSame(theirs))
            return true;
        const auto* them = dynamic_cast<const ReferenceBase*>(&other);
        const OGRSpatialReference* mine = EsriForm();
        const OGRSpatialReference* theirForm = them ? them->EsriForm() : nullptr;
        return mine && theirForm && mine->IsSame(theirForm);
    }

    std::string ExportToESRI() const override { return esriWkt_; }

    const OGRSpatialReference* Engine() const { return ogr_.get(); }
    const std::string& Wkt2() const { return wkt2_; }

protected:
    ReferenceBase(OgrPtr ogr, std::string unknownName) : ogr_(std::move(ogr)) {
        if (!ogr_) {
            name_ = std::move(unknownName);
            code_ = 0;
            return;
        }
        esriWkt_ = Export(*ogr_, kEsriWktOptions);
        wkt2_ = Export(*ogr_, kWkt2Options);
        if (esriWkt_.empty()) // no ESRI form: a .prj still needs some WKT
            esriWkt_ = Export(*ogr_, nullptr);
        if (ogr_->IsProjected())
            RenameLinearUnit();
        tree_.emplace(esriWkt_);
        name_ = tree_->NameAt({});
        if (name_.empty() && ogr_->GetName())
            name_ = ogr_->GetName();
        const std::int32_t code = CodeOf(*ogr_, nullptr);
        if (code != 0)
            code_ = code;
    }

    ReferenceBase(const ReferenceBase& other)
        : ISpatialReference(other), ogr_(other.ogr_ ? other.ogr_->Clone() : nullptr), name_(other.name_),
          esriWkt_(other.esriWkt_), wkt2_(other.wkt2_), code_(other.code_), precision_(other.precision_) {
        if (!esriWkt_.empty())
            tree_.emplace(esriWkt_);
    }

    void RenameLinearUnit() {
        const char* esri = EsriLinearUnitName(CodeOf(*ogr_, "PROJCS|UNIT"));
        const char* engineName = nullptr;
        ogr_->GetLinearUnits(&engineName);
        if (!esri || !engineName)
            return;
        const std::string from = std::string("UNIT[\"") + engineName + "\",";
        const std::string to = std::string("UNIT[\"") + esri + "\",";
        for (auto at = esriWkt_.find(from); at != std::string::npos; at = esriWkt_.find(from, at + to.size()))
            esriWkt_.replace(at, from.size(), to);
    }

    // The reference read back from its own ESRI form: the host's view of it, in
    // which a datum ensemble and its datum, or EPSG and ESRI spellings, are the same.
    const OGRSpatialReference* EsriForm() const {
        if (!esriForm_ && ogr_) {
            QuietErrors quiet;
            OgrPtr form(new OGRSpatialReference());
            if (form->importFromWkt(esriWkt_.c_str()) == OGRERR_NONE) {
                form->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
                esriForm_ = std::move(form);
            }
        }
        return esriForm_.get();
    }

    std::int32_t Identify() const {
        QuietErrors quiet;
        int count = 0;
        int* confidence = nullptr;
        OGRSpatialReferenceH* matches = ogr_->FindMatches(nullptr, &count, &confidence);
        std::int32_t found = 0;
        for (int i = 0; i < count && found == 0; ++i) {
            if (confidence[i] >= kFullConfidence)
                found = CodeOf(*OGRSpatialReference::FromHandle(matches[i]), nullptr);
        }
        OSRFreeSRSArray(matches);
        CPLFree(confidence);
        return found;
    }

    OgrPtr ogr_;
    std::string name_;
    std::string esriWkt_;
    std::string wkt2_;
    std::optional<EsriTree> tree_;
    mutable OgrPtr esriForm_;
    mutable std::optional<std::int32_t> code_;
    Precision precision_{};
};

class GeographicReference final : public ReferenceBase, public IGeographicCoordinateSystem {
public:
    explicit GeographicReference(OgrPtr ogr) : ReferenceBase(std::move(ogr), {}) {
        const OGRSpatialReference& sr = *ogr_;
        auto spheroid = std::make_shared<tess::Spheroid>(tree_->NameAt({"DATUM", "SPHEROID"}), sr.GetSemiMajor(),
                                                         sr.GetSemiMinor(), CodeOf(sr, "GEOGCS|DATUM|SPHEROID"));
        datum_ = std::make_shared<tess::Datum>(tree_->NameAt({"DATUM"}), std::move(spheroid),
                                               CodeOf(sr, "GEOGCS|DATUM"));
        const char* engineUnitName = nullptr;
        const double radians = sr.GetAngularUnits(&engineUnitName);
        std::int32_t unitCode = CodeOf(sr, "GEOGCS|UNIT");
        if (unitCode == kEpsgDegreeCode)
            unitCode = kEsriDegreeCode;
        std::string unitName = tree_->NameAt({"UNIT"});
        if (unitName.empty() && engineUnitName)
            unitName = engineUnitName;
        unit_ = std::make_shared<AngularUnit>(unitName, radians, unitCode);

        double unitsPerDegree = kRadiansPerDegree / radians;
        if (std::fabs(unitsPerDegree - 1.0) < kSameScale)
            unitsPerDegree = 1.0;
        precision_ = Precision{kGeographicResolution * unitsPerDegree, kGeographicTolerance * unitsPerDegree,
                               kGeographicFalseOrigin * unitsPerDegree, kGeographicFalseOrigin * unitsPerDegree};
    }

    std::shared_ptr<ISpatialReference> Clone() const override {
        return std::make_shared<GeographicReference>(*this);
    }
    std::shared_ptr<IDatum> Datum() const override { return datum_; }
    std::shared_ptr<IAngularUnit> CoordinateUnit() const override { return unit_; }

private:
    std::shared_ptr<IDatum> datum_;
    std::shared_ptr<IAngularUnit> unit_;
};

class ProjectedReference final : public ReferenceBase, public IProjectedCoordinateSystem {
public:
    explicit ProjectedReference(OgrPtr ogr) : ReferenceBase(std::move(ogr), {}) {
        const OGRSpatialReference& sr = *ogr_;
        const char* engineUnitName = nullptr;
        const double meters = sr.GetLinearUnits(&engineUnitName);
        std::string unitName = tree_->NameAt({"UNIT"});
        if (unitName.empty() && engineUnitName)
            unitName = engineUnitName;
        unit_ = std::make_shared<LinearUnit>(unitName, meters, CodeOf(sr, "PROJCS|UNIT"));
        const double resolution = kProjectedResolutionMeters / meters;
        const double origin = -kHalfGridSteps * resolution;
        precision_ = Precision{resolution, kProjectedToleranceMeters / meters, origin, origin};
    }

    std::shared_ptr<ISpatialReference> Clone() const override { return std::make_shared<ProjectedReference>(*this); }
    std::shared_ptr<IGeographicCoordinateSystem> GeographicCoordinateSystem() const override {
        QuietErrors quiet;
        OgrPtr geographic(ogr_->CloneGeogCS());
        if (!geographic)
            throw ReferenceFault(fault::SpatialReferenceFailed, kSource,
                        quiet.LastMessage("No geographic coordinate system under " + name_));
        geographic->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
        return std::make_shared<GeographicReference>(std::move(geographic));
    }
    std::shared_ptr<ILinearUnit> CoordinateUnit() const override { return unit_; }

private:
    std::shared_ptr<ILinearUnit> unit_;
};

class UnknownReference final : public ReferenceBase, public IUnknownCoordinateSystem {
public:
    UnknownReference() : ReferenceBase(nullptr, "Unknown") {
        const double origin = -kHalfGridSteps * kUnknownResolution;
        precision_ = Precision{kUnknownResolution, kUnknownTolerance, origin, origin};
    }
    std::shared_ptr<ISpatialReference> Clone() const override { return std::make_shared<UnknownReference>(*this); }
};

void QuietHandler(CPLErr, CPLErrorNum, const char*) {}

} // namespace

void OgrDeleter::operator()(OGRSpatialReference* sr) const {
    if (sr)
        sr->Release();
}

void EnsureEngineConfigured() {
    static std::once_flag once;
    std::call_once(once, [] {
        // Every code and grid this system uses is in the installed database;
        // nothing may be fetched, so runs stay the same offline and in tests.
        CPLSetConfigOption("PROJ_NETWORK", "OFF");
        OSRSetPROJEnableNetwork(FALSE);
    });
}

QuietErrors::QuietErrors() {
    CPLPushErrorHandler(QuietHandler);
    CPLErrorReset();
}

QuietErrors::~QuietErrors() { CPLPopErrorHandler(); }

std::string QuietErrors::LastMessage(const std::string& fallback) const {
    const char* message = CPLGetLastErrorMsg();
    return message && *message ? fallback + ": " + message : fallback;
}

std::shared_ptr<ISpatialReference> Wrap(OgrPtr sr) {
    EnsureEngineConfigured();
    if (!sr)
        return MakeUnknown();
    sr->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    if (sr->IsCompound())
        sr->StripVertical();
    if (sr->IsLocal())
        return MakeUnknown();
    if (sr->IsProjected())
        return std::make_shared<ProjectedReference>(std::move(sr));
    if (sr->IsGeographic())
        return std::make_shared<GeographicReference>(std::move(sr));
    const char* name = sr->GetName();
    throw ReferenceFault(fault::SpatialReferenceFailed, kSource,
                std::string("Not a geographic or projected coordinate system: ") + (name ? name : "(unnamed)"));
}

std::shared_ptr<IUnknownCoordinateSystem> MakeUnknown() { return std::make_shared<UnknownReference>(); }

const OGRSpatialReference* EngineOf(const ISpatialReference& sr) {
    const auto* ours = dynamic_cast<const ReferenceBase*>(&sr);
    return ours ? ours->Engine() : nullptr;
}

const std::string& Wkt2Of(const ISpatialReference& sr) {
    static const std::string kNone;
    const auto* ours = dynamic_cast<const ReferenceBase*>(&sr);
    return ours ? ours->Wkt2() : kNone;
}

} // namespace tess::srs
