#include "platform/data/detail/OgrAccess.h"

#include <cpl_conv.h>
#include <cpl_error.h>
#include <gdal_priv.h>
#include <ogr_spatialref.h>
#include <ogrsf_frmts.h>

#include <cmath>
#include <cstring>
#include <mutex>

#include "platform/data/DataNotes.h"
#include "platform/system/DateTime.h"
#include "platform/system/Fault.h"

namespace tess::data {
namespace {

constexpr const char* kSource = "tess.data";

static_assert(sizeof(WKSPoint) == sizeof(OGRRawPoint) && alignof(WKSPoint) == alignof(OGRRawPoint),
              "vertex records are handed to the engine as they are");

// What the engine said during the current operation of this thread. A few are enough to tell
// the user; a damaged file can give one per record.
constexpr std::size_t kMaxMessages = 16;
struct EngineMessage {
    bool failure = false;
    std::string text;
};
thread_local std::vector<EngineMessage> t_messages;

// Rings read as stored (see EnsureEngine) make the engine say so of every polygon with holes;
// that is the reading asked for, not a problem of the data.
bool AskedFor(const char* text) {
    return text && std::strstr(text, "All polygons will be contained in a multipolygon") != nullptr;
}

void CPL_STDCALL CollectMessage(CPLErr kind, CPLErrorNum, const char* text) {
    if (kind < CE_Warning || t_messages.size() >= kMaxMessages || (kind == CE_Warning && AskedFor(text)))
        return;
    t_messages.push_back({kind >= CE_Failure, text ? text : ""});
}

// Registers the drivers once, and for each thread that touches data: keeps the engine's
// messages off the terminal (they travel in Faults and notes instead), reads polygon rings as stored
// (one polygon per ring, in file order, orientation untouched) and writes shapefile rings as
// given, since our shapes already follow the host's ring order and orientation.
void EnsureEngine() {
    static std::once_flag once;
    std::call_once(once, [] { GDALAllRegister(); });
    thread_local bool configured = false;
    if (!configured) {
        CPLPushErrorHandler(CollectMessage);
        CPLSetThreadLocalConfigOption("OGR_ORGANIZE_POLYGONS", "SKIP");
        CPLSetThreadLocalConfigOption("SHAPE_REWIND_ON_WRITE", "NO");
        configured = true;
    }
    CPLErrorReset();
    t_messages.clear();
}

// After a read: a failure the engine reported ends the read with its words, even when it went on
// and handed over a record (a shapefile whose shape cannot be read gives the record without it);
// warnings are noted against the dataset.
void CheckRead(const std::string& what, const std::string& dataset) {
    std::string failures;
    for (const EngineMessage& m : t_messages) {
        if (!m.failure)
            continue;
        if (!failures.empty())
            failures += "; ";
        failures += m.text;
    }
    if (!failures.empty())
        throw DataFault(fault::DataFailed, kSource, what + " (" + failures + ")");
    for (const EngineMessage& m : t_messages)
        AddDataNote(dataset, m.text);
    t_messages.clear();
}

[[noreturn]] void Fail(const std::string& what, std::int32_t number = fault::DataFailed) {
    const std::string message = CPLGetLastErrorMsg();
    throw DataFault(number, kSource, message.empty() ? what : what + " (" + message + ")");
}

const char* DriverName(OgrDriver driver) {
    switch (driver) {
    case OgrDriver::Shapefile:
        return "ESRI Shapefile";
    case OgrDriver::FileGDB:
        return "OpenFileGDB";
    case OgrDriver::GeoPackage:
        return "GPKG";
    case OgrDriver::PersonalGDB:
        return "PGeo";
    case OgrDriver::Vector:
        break; // whichever reads the file
    }
    return "";
}


OGRwkbGeometryType LayerGeometryType(FlatKind kind, OgrDriver driver) {
    const bool shapefile = driver == OgrDriver::Shapefile;
    switch (kind) {
    case FlatKind::Point:
        return wkbPoint;
    case FlatKind::Multipoint:
        return wkbMultiPoint;
    case FlatKind::Polyline:
        return shapefile ? wkbLineString : wkbMultiLineString;
    case FlatKind::Polygon:
        return shapefile ? wkbPolygon : wkbMultiPolygon;
    case FlatKind::Null:
        break;
    }
    return wkbNone;
}

FlatKind KindOfType(OGRwkbGeometryType type) {
    switch (wkbFlatten(type)) {
    case wkbPoint:
        return FlatKind::Point;
    case wkbMultiPoint:
        return FlatKind::Multipoint;
    case wkbLineString:
    case wkbMultiLineString:
    case wkbCircularString:
    case wkbCompoundCurve:
    case wkbMultiCurve:
        return FlatKind::Polyline;
    case wkbPolygon:
    case wkbMultiPolygon:
    case wkbCurvePolygon:
    case wkbMultiSurface:
        return FlatKind::Polygon;
    default:
        return FlatKind::Null;
    }
}

// ---- shapes in ----

void AddPart(const OGRSimpleCurve& curve, FlatGeometry& out) {
    const int n = curve.getNumPoints();
    if (n <= 0)
        return;
    const std::size_t start = out.points.size();
    out.partStarts.push_back(static_cast<std::int32_t>(start));
    out.points.resize(start + static_cast<std::size_t>(n));
    curve.getPoints(&out.points[start].X, sizeof(WKSPoint), &out.points[start].Y, sizeof(WKSPoint));
}

void AddPolygon(const OGRPolygon& polygon, FlatGeometry& out) {
    for (const OGRLinearRing* ring : polygon)
        AddPart(*ring, out);
}

void FlattenEngine(const OGRGeometry* g, FlatGeometry& out) {
    if (!g) {
        out.Clear(FlatKind::Null);
        return;
    }
    switch (wkbFlatten(g->getGeometryType())) {
    case wkbPoint: {
        out.Clear(FlatKind::Point);
        const OGRPoint* p = g->toPoint();
        if (!p->IsEmpty()) {
            out.partStarts.push_back(0);
            out.points.push_back({p->getX(), p->getY()});
        }
        return;
    }
    case wkbMultiPoint:
        out.Clear(FlatKind::Multipoint);
        for (const OGRPoint* p : *g->toMultiPoint()) {
            if (p->IsEmpty())
                continue;
            out.partStarts.push_back(static_cast<std::int32_t>(out.points.size()));
            out.points.push_back({p->getX(), p->getY()});
        }
        return;
    case wkbLineString:
        out.Clear(FlatKind::Polyline);
        AddPart(*g->toLineString(), out);
        return;
    case wkbMultiLineString:
        out.Clear(FlatKind::Polyline);
        for (const OGRLineString* line : *g->toMultiLineString())
            AddPart(*line, out);
        return;
    case wkbPolygon:
        out.Clear(FlatKind::Polygon);
        AddPolygon(*g->toPolygon(), out);
        return;
    case wkbMultiPolygon:
        out.Clear(FlatKind::Polygon);
        for (const OGRPolygon* polygon : *g->toMultiPolygon())
            AddPolygon(*polygon, out);
        return;
    default:
        break;
    }
    if (g->hasCurveGeometry()) {
        // True curves of foreign data arrive as lines, as ours are stored.
        std::unique_ptr<OGRGeometry> linear(g->getLinearGeometry());
        FlattenEngine(linear.get(), out);
        return;
    }
    out.Clear(FlatKind::Null);
}

// ---- shapes out ----

OGRLineString* MakeLine(const FlatGeometry& f, std::size_t part, OGRLineString* line) {
    const std::size_t b = f.PartBegin(part);
    const std::size_t e = f.PartEnd(part);
    line->setPoints(static_cast<int>(e - b), reinterpret_cast<const OGRRawPoint*>(&f.points[b]), nullptr);
    return line;
}

// A shapefile takes a polygon's rings as one list, so each ring travels as its own polygon and
// keeps its place and orientation. Other storage wants rings grouped under their exterior ring.
std::unique_ptr<OGRGeometry> MakeEngineShape(const FlatGeometry& f, OgrDriver driver) {
    if (f.kind == FlatKind::Null || f.Empty())
        return nullptr;
    switch (f.kind) {
    case FlatKind::Point:
        return std::make_unique<OGRPoint>(f.points[0].X, f.points[0].Y);
    case FlatKind::Multipoint: {
        auto mp = std::make_unique<OGRMultiPoint>();
        for (const WKSPoint& p : f.points)
            mp->addGeometryDirectly(new OGRPoint(p.X, p.Y));
        return mp;
    }
    case FlatKind::Polyline: {
        auto ml = std::make_unique<OGRMultiLineString>();
        for (std::size_t i = 0; i < f.PartCount(); ++i)
            ml->addGeometryDirectly(MakeLine(f, i, new OGRLineString()));
        return ml;
    }
    case FlatKind::Polygon: {
        auto mpoly = std::make_unique<OGRMultiPolygon>();
        const std::size_t n = f.PartCount();
        const bool grouped = driver != OgrDriver::Shapefile && f.ringOwners.size() == n;
        for (std::size_t i = 0; i < n; ++i) {
            const std::int32_t owner = grouped ? f.ringOwners[i] : -1;
            if (grouped && owner != static_cast<std::int32_t>(i) && owner >= 0)
                continue; // a hole: added with its exterior ring
            auto* polygon = new OGRPolygon();
            polygon->addRingDirectly(static_cast<OGRLinearRing*>(MakeLine(f, i, new OGRLinearRing())));
            if (grouped && owner >= 0)
                for (std::size_t j = 0; j < n; ++j)
                    if (j != i && f.ringOwners[j] == static_cast<std::int32_t>(i))
                        polygon->addRingDirectly(static_cast<OGRLinearRing*>(MakeLine(f, j, new OGRLinearRing())));
            mpoly->addGeometryDirectly(polygon);
        }
        return mpoly;
    }
    case FlatKind::Null:
        break;
    }
    return nullptr;
}

OgrFieldKind KindOfField(const OGRFieldDefn& d) {
    switch (d.GetType()) {
    case OFTInteger:
        return d.GetSubType() == OFSTInt16 ? OgrFieldKind::Int16 : OgrFieldKind::Int32;
    case OFTInteger64:
        return OgrFieldKind::Int64;
    case OFTReal:
        return d.GetSubType() == OFSTFloat32 ? OgrFieldKind::Float32 : OgrFieldKind::Float64;
    case OFTString:
        return OgrFieldKind::String;
    case OFTDate:
        return OgrFieldKind::Date;
    case OFTDateTime:
        return OgrFieldKind::DateTime;
    default:
        return OgrFieldKind::Other;
    }
}

DateValue ReadDate(const OGRFeature& f, int i) {
    int y = 0, m = 0, d = 0, h = 0, mi = 0, tz = 0;
    float s = 0.0f;
    f.GetFieldAsDateTime(i, &y, &m, &d, &h, &mi, &s, &tz);
    CalendarTime t;
    t.year = y;
    t.month = m;
    t.day = d;
    t.hour = h;
    t.minute = mi;
    t.second = s;
    return DateFromCalendar(t);
}

} // namespace

// ---------------------------------------------------------------- OgrDataset

void EngineDatasetCloser::operator()(GDALDataset* dataset) const {
    EnsureEngine();
    GDALClose(GDALDataset::ToHandle(dataset));
}

void EngineFeatureDeleter::operator()(OGRFeature* feature) const { OGRFeature::DestroyFeature(feature); }

OgrDataset::OgrDataset(GDALDataset* handle, std::string path, OgrDriver driver, bool update)
    : handle_(handle), path_(std::move(path)), driver_(driver), update_(update) {}

OgrDataset::~OgrDataset() = default;

bool OgrDataset::DriverAvailable(OgrDriver driver) {
    EnsureEngine();
    return GetGDALDriverManager()->GetDriverByName(DriverName(driver)) != nullptr;
}

std::shared_ptr<OgrDataset> OgrDataset::Open(const std::string& path, OgrDriver driver, bool update) {
    EnsureEngine();
    const char* drivers[] = {DriverName(driver), nullptr};
    const unsigned flags = GDAL_OF_VECTOR | (update ? GDAL_OF_UPDATE : GDAL_OF_READONLY) | GDAL_OF_VERBOSE_ERROR;
    GDALDatasetH h =
        GDALOpenEx(path.c_str(), flags, driver == OgrDriver::Vector ? nullptr : drivers, nullptr, nullptr);
    if (!h)
        Fail("Cannot open '" + path + "'");
    return std::shared_ptr<OgrDataset>(new OgrDataset(GDALDataset::FromHandle(h), path, driver, update));
}

std::string OgrDataset::IdentifyVectorFormat(const std::string& path) {
    EnsureEngine();
    GDALDriverH driver = GDALIdentifyDriverEx(path.c_str(), GDAL_OF_VECTOR, nullptr, nullptr);
    CPLErrorReset();
    t_messages.clear();
    return driver ? GDALGetDescription(driver) : std::string();
}

std::string OgrDataset::FormatName() const {
    GDALDriver* driver = handle_.get() ? handle_.get()->GetDriver() : nullptr;
    return driver ? driver->GetDescription() : std::string();
}

std::shared_ptr<OgrDataset> OgrDataset::Create(const std::string& path, OgrDriver driver) {
    EnsureEngine();
    GDALDriver* d = GetGDALDriverManager()->GetDriverByName(DriverName(driver));
    if (!d)
        Fail("Cannot create '" + path + "': no driver for this kind of data");
    GDALDataset* ds = d->Create(path.c_str(), 0, 0, 0, GDT_Unknown, nullptr);
    if (!ds)
        Fail("Cannot create '" + path + "'");
    return std::shared_ptr<OgrDataset>(new OgrDataset(ds, path, driver, true));
}

void OgrDataset::Close() {
    if (!handle_)
        return;
    EnsureEngine();
    GDALClose(GDALDataset::ToHandle(handle_.release()));
    if (CPLGetLastErrorType() >= CE_Failure)
        Fail("Cannot write '" + path_ + "'");
}

std::vector<std::string> OgrDataset::LayerNames() const {
    EnsureEngine();
    std::vector<std::string> names;
    GDALDataset* ds = handle_.get();
    for (int i = 0; i < ds->GetLayerCount(); ++i)
        names.emplace_back(ds->GetLayer(i)->GetName());
    return names;
}

std::shared_ptr<OgrLayer> OgrDataset::Layer(const std::string& name) {
    EnsureEngine();
    GDALDataset* ds = handle_.get();
    OGRLayer* layer = driver_ == OgrDriver::Shapefile ? ds->GetLayer(0) : ds->GetLayerByName(name.c_str());
    if (!layer)
        return nullptr;
    return std::make_shared<OgrLayer>(shared_from_this(), layer, false);
}

std::shared_ptr<OgrLayer> OgrDataset::CreateLayer(const std::string& name, FlatKind kind, const std::string& srsWkt,
                                                  const OgrOptions& options) {
    EnsureEngine();
    OGRSpatialReference* srs = nullptr;
    if (!srsWkt.empty()) {
        srs = new OGRSpatialReference();
        srs->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
        if (srs->importFromWkt(srsWkt.c_str()) != OGRERR_NONE) {
            srs->Release();
            Fail("Cannot create '" + name + "' in '" + path_ + "': unusable spatial reference",
                 fault::SpatialReferenceFailed);
        }
    }
    char** opts = nullptr;
    for (const auto& [key, value] : options)
        opts = CSLSetNameValue(opts, key.c_str(), value.c_str());
    OGRLayer* layer = handle_.get()->CreateLayer(name.c_str(), srs, LayerGeometryType(kind, driver_), opts);
    CSLDestroy(opts);
    if (srs)
        srs->Release();
    if (!layer)
        Fail("Cannot create '" + name + "' in '" + path_ + "'");
    return std::make_shared<OgrLayer>(shared_from_this(), layer, false);
}

void OgrDataset::DeleteLayer(const std::string& name) {
    EnsureEngine();
    GDALDataset* ds = handle_.get();
    for (int i = 0; i < ds->GetLayerCount(); ++i) {
        if (EQUAL(ds->GetLayer(i)->GetName(), name.c_str())) {
            if (ds->DeleteLayer(i) != OGRERR_NONE)
                Fail("Cannot delete '" + name + "' from '" + path_ + "'");
            return;
        }
    }
    throw DataFault(fault::NotFound, kSource, "'" + name + "' was not found in '" + path_ + "'");
}

std::vector<std::string> OgrDataset::GroupNames() const {
    EnsureEngine();
    auto root = handle_.get()->GetRootGroup();
    return root ? root->GetGroupNames() : std::vector<std::string>{};
}

std::vector<std::string> OgrDataset::GroupLayerNames(const std::string& group) const {
    EnsureEngine();
    auto root = handle_.get()->GetRootGroup();
    if (!root)
        return {};
    auto g = root->OpenGroup(group);
    return g ? g->GetVectorLayerNames() : std::vector<std::string>{};
}

std::int64_t OgrDataset::FileGdbTableNumber(const std::string& name) const {
    EnsureEngine();
    const char* drivers[] = {"OpenFileGDB", nullptr};
    const char* openOptions[] = {"LIST_ALL_TABLES=YES", nullptr};
    GDALDatasetH h = GDALOpenEx(path_.c_str(), GDAL_OF_VECTOR | GDAL_OF_READONLY, drivers, openOptions, nullptr);
    if (!h)
        Fail("Cannot read the catalog of '" + path_ + "'");
    std::int64_t number = 0;
    if (OGRLayer* catalog = GDALDataset::FromHandle(h)->GetLayerByName("GDB_SystemCatalog")) {
        const int nameField = catalog->GetLayerDefn()->GetFieldIndex("Name");
        for (auto& feature : *catalog) {
            if (nameField >= 0 && EQUAL(feature->GetFieldAsString(nameField), name.c_str())) {
                number = feature->GetFID();
                break;
            }
        }
    }
    GDALClose(h);
    return number;
}

std::string OgrDataset::FileGdbItemDefinition(const std::string& name) const {
    EnsureEngine();
    const char* drivers[] = {"OpenFileGDB", nullptr};
    const char* openOptions[] = {"LIST_ALL_TABLES=YES", nullptr};
    GDALDatasetH h = GDALOpenEx(path_.c_str(), GDAL_OF_VECTOR | GDAL_OF_READONLY, drivers, openOptions, nullptr);
    if (!h)
        Fail("Cannot read the catalog of '" + path_ + "'");
    std::string definition;
    if (OGRLayer* items = GDALDataset::FromHandle(h)->GetLayerByName("GDB_Items")) {
        const int nameField = items->GetLayerDefn()->GetFieldIndex("Name");
        const int defField = items->GetLayerDefn()->GetFieldIndex("Definition");
        for (auto& feature : *items) {
            if (nameField >= 0 && defField >= 0 && EQUAL(feature->GetFieldAsString(nameField), name.c_str())) {
                definition = feature->GetFieldAsString(defField);
                break;
            }
        }
    }
    GDALClose(h);
    return definition;
}

std::shared_ptr<OgrLayer> OgrDataset::OpenReader(const std::string& name) {
    EnsureEngine();
    std::string quoted;
    for (char c : name)
        quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    OGRLayer* layer = handle_.get()->ExecuteSQL(("SELECT * FROM \"" + quoted + "\"").c_str(), nullptr, nullptr);
    if (!layer)
        Fail("Cannot read '" + name + "' in '" + path_ + "'");
    return std::make_shared<OgrLayer>(shared_from_this(), layer, true);
}

bool OgrDataset::StartTransaction() {
    EnsureEngine();
    return handle_.get()->StartTransaction(FALSE) == OGRERR_NONE;
}

void OgrDataset::CommitTransaction() {
    EnsureEngine();
    if (handle_.get()->CommitTransaction() != OGRERR_NONE)
        Fail("Cannot save the changes to '" + path_ + "'");
}

void OgrDataset::RollbackTransaction() {
    EnsureEngine();
    if (handle_.get()->RollbackTransaction() != OGRERR_NONE)
        Fail("Cannot drop the changes to '" + path_ + "'");
}

void OgrDataset::Flush() {
    EnsureEngine();
    handle_.get()->FlushCache(false);
    if (CPLGetLastErrorType() >= CE_Failure)
        Fail("Cannot write '" + path_ + "'");
}

// ---------------------------------------------------------------- OgrLayer

OgrLayer::OgrLayer(std::shared_ptr<OgrDataset> owner, OGRLayer* layer, bool resultSet)
    : owner_(std::move(owner)), layer_(layer), resultSet_(resultSet) {
    RefreshKinds();
}

OgrLayer::~OgrLayer() {
    writeFeature_.reset();
    if (resultSet_ && owner_->handle_) {
        EnsureEngine();
        owner_->handle_->ReleaseResultSet(layer_);
    }
}

OGRLayer* OgrLayer::Checked() const {
    if (!owner_->handle_)
        throw DataFault(fault::DataFailed, kSource,
                    "The data of '" + owner_->Path() + "' was closed; the cursor can no longer be used");
    return layer_;
}

void OgrLayer::RefreshKinds() {
    OGRFeatureDefn* defn = layer_->GetLayerDefn();
    kinds_.resize(static_cast<std::size_t>(defn->GetFieldCount()));
    for (int i = 0; i < defn->GetFieldCount(); ++i)
        kinds_[static_cast<std::size_t>(i)] = KindOfField(*defn->GetFieldDefn(i));
}

std::string OgrLayer::Name() const { return Checked()->GetName(); }
std::string OgrLayer::FidColumn() const { return Checked()->GetFIDColumn(); }
std::string OgrLayer::GeometryColumn() const { return Checked()->GetGeometryColumn(); }

FlatKind OgrLayer::GeometryKind() const {
    OGRLayer* layer = Checked();
    if (wkbFlatten(layer->GetGeomType()) != wkbUnknown || !HasGeometry())
        return KindOfType(layer->GetGeomType());
    // Formats that declare no type (GeoJSON, KML, CSV...): the kind that all the shapes there
    // share, or none when they mix kinds or there are none.
    EnsureEngine();
    FlatKind common = FlatKind::Null;
    layer->ResetReading();
    while (std::unique_ptr<OGRFeature> f{layer->GetNextFeature()}) {
        const OGRGeometry* g = f->GetGeometryRef();
        if (!g || g->IsEmpty())
            continue;
        const FlatKind kind = KindOfType(g->getGeometryType());
        if (common != FlatKind::Null && kind != common) {
            common = FlatKind::Null;
            break;
        }
        common = kind;
    }
    layer->ResetReading();
    t_messages.clear();
    return common;
}

bool OgrLayer::HasGeometry() const { return Checked()->GetLayerDefn()->GetGeomFieldCount() > 0; }

std::string OgrLayer::SpatialReferenceWkt() const {
    EnsureEngine();
    const OGRSpatialReference* srs = Checked()->GetSpatialRef();
    if (!srs)
        return {};
    char* wkt = nullptr;
    const char* options[] = {"FORMAT=WKT2_2019", nullptr};
    if (srs->exportToWkt(&wkt, options) != OGRERR_NONE) {
        CPLFree(wkt);
        return {};
    }
    std::string text = wkt ? wkt : "";
    CPLFree(wkt);
    return text;
}

std::vector<OgrFieldSpec> OgrLayer::Fields() const {
    std::vector<OgrFieldSpec> specs;
    OGRFeatureDefn* defn = Checked()->GetLayerDefn();
    for (int i = 0; i < defn->GetFieldCount(); ++i) {
        const OGRFieldDefn* d = defn->GetFieldDefn(i);
        OgrFieldSpec s;
        s.name = d->GetNameRef();
        s.alias = d->GetAlternativeNameRef() ? d->GetAlternativeNameRef() : "";
        s.kind = KindOfField(*d);
        s.width = d->GetWidth();
        s.precision = d->GetPrecision();
        s.nullable = d->IsNullable() != 0;
        specs.push_back(std::move(s));
    }
    return specs;
}

std::int32_t OgrLayer::FieldCount() const { return Checked()->GetLayerDefn()->GetFieldCount(); }

std::int32_t OgrLayer::FieldIndex(const std::string& name) const {
    return Checked()->GetLayerDefn()->GetFieldIndex(name.c_str());
}

void OgrLayer::CreateField(const OgrFieldSpec& spec) {
    EnsureEngine();
    OGRFieldType type = OFTString;
    OGRFieldSubType sub = OFSTNone;
    switch (spec.kind) {
    case OgrFieldKind::Int16:
        type = OFTInteger;
        if (owner_->Driver() != OgrDriver::Shapefile)
            sub = OFSTInt16;
        break;
    case OgrFieldKind::Int32:
        type = OFTInteger;
        break;
    case OgrFieldKind::Int64:
        type = OFTInteger64;
        break;
    case OgrFieldKind::Float32:
        type = OFTReal;
        if (owner_->Driver() != OgrDriver::Shapefile)
            sub = OFSTFloat32;
        break;
    case OgrFieldKind::Float64:
        type = OFTReal;
        break;
    case OgrFieldKind::Date:
        type = OFTDate;
        break;
    case OgrFieldKind::DateTime:
        type = OFTDateTime;
        break;
    case OgrFieldKind::String:
    case OgrFieldKind::Other:
        type = OFTString;
        break;
    }
    OGRFieldDefn d(spec.name.c_str(), type);
    d.SetSubType(sub);
    d.SetWidth(spec.width);
    d.SetPrecision(spec.precision);
    d.SetNullable(spec.nullable);
    if (!spec.alias.empty() && spec.alias != spec.name)
        d.SetAlternativeName(spec.alias.c_str());
    // Approximation would let the engine widen or rename silently; names and widths are ours.
    if (Checked()->CreateField(&d, FALSE) != OGRERR_NONE)
        Fail("Cannot add the field '" + spec.name + "' to '" + Name() + "' in '" + owner_->Path() + "'");
    RefreshKinds();
}

void OgrLayer::DeleteField(std::int32_t index) {
    EnsureEngine();
    const std::string name = Checked()->GetLayerDefn()->GetFieldDefn(index)->GetNameRef();
    if (Checked()->DeleteField(index) != OGRERR_NONE)
        Fail("Cannot delete the field '" + name + "' of '" + Name() + "' in '" + owner_->Path() + "'");
    RefreshKinds();
}

std::int64_t OgrLayer::FeatureCount() {
    EnsureEngine();
    return Checked()->GetFeatureCount(TRUE);
}

bool OgrLayer::Extent(WKSEnvelope& box) {
    EnsureEngine();
    if (!HasGeometry())
        return false;
    OGREnvelope e;
    if (Checked()->GetExtent(&e, TRUE) != OGRERR_NONE)
        return false;
    box = {e.MinX, e.MinY, e.MaxX, e.MaxY};
    return true;
}

void OgrLayer::SetAttributeFilter(const std::string& where) {
    EnsureEngine();
    OGRLayer* layer = Checked();
    const std::string what = "The where clause \"" + where + "\" cannot be used on '" + Name() + "' in '" +
                             owner_->Path() + "'";
    if (layer->SetAttributeFilter(where.empty() ? nullptr : where.c_str()) != OGRERR_NONE)
        Fail(what, fault::InvalidCall);
    if (!where.empty() && owner_->Driver() == OgrDriver::GeoPackage) {
        // SQLite reads the clause only when the rows are fetched: fetch one now to report it here.
        layer->ResetReading();
        std::unique_ptr<OGRFeature> first(layer->GetNextFeature());
        if (!first && CPLGetLastErrorType() >= CE_Failure)
            Fail(what, fault::InvalidCall);
        layer->ResetReading();
    }
}

void OgrLayer::SetSpatialFilter(const FlatGeometry* shape) {
    EnsureEngine();
    if (!shape) {
        Checked()->SetSpatialFilter(nullptr);
        return;
    }
    std::unique_ptr<OGRGeometry> g = MakeEngineShape(*shape, OgrDriver::GeoPackage);
    if (!g) {
        // An empty filter shape meets nothing: a box no shape can fall into.
        Checked()->SetSpatialFilterRect(0.0, 0.0, 0.0, 0.0);
        Checked()->SetAttributeFilter("1 = 0");
        return;
    }
    Checked()->SetSpatialFilter(g.get());
}

void OgrLayer::SetSpatialFilterRect(const WKSEnvelope& box) {
    EnsureEngine();
    Checked()->SetSpatialFilterRect(box.XMin, box.YMin, box.XMax, box.YMax);
}

void OgrLayer::SetIgnoredFields(const std::vector<std::string>& names, bool ignoreShape) {
    EnsureEngine();
    std::vector<const char*> list;
    for (const std::string& n : names)
        list.push_back(n.c_str());
    if (ignoreShape)
        list.push_back("OGR_GEOMETRY");
    list.push_back(nullptr);
    Checked()->SetIgnoredFields(list.data());
}

void OgrLayer::ResetReading() {
    EnsureEngine();
    Checked()->ResetReading();
}

namespace {

// The host's fields hold a 64-bit integer as a double, exactly up to 2^53 in magnitude.
constexpr std::int64_t kLargestExactInteger = std::int64_t{1} << 53;

void ReadRecord(OGRFeature& f, const std::vector<OgrFieldKind>& kinds, OgrRecord& record, bool wantShape) {
    record.fid = f.GetFID();
    const std::size_t n = kinds.size();
    record.values.resize(n);
    for (std::size_t k = 0; k < n; ++k) {
        const int i = static_cast<int>(k);
        if (!f.IsFieldSetAndNotNull(i)) {
            record.values[k] = Variant::Null();
            continue;
        }
        switch (kinds[k]) {
        case OgrFieldKind::Int16:
        case OgrFieldKind::Int32:
            record.values[k] = static_cast<std::int32_t>(f.GetFieldAsInteger(i));
            break;
        case OgrFieldKind::Int64: {
            const std::int64_t value = f.GetFieldAsInteger64(i);
            if (value > kLargestExactInteger || value < -kLargestExactInteger)
                t_messages.push_back({false, "values of the 64-bit integer field '" +
                                                 std::string(f.GetFieldDefnRef(i)->GetNameRef()) +
                                                 "' beyond 2^53 are held as the nearest double"});
            record.values[k] = value;
            break;
        }
        case OgrFieldKind::Float32:
        case OgrFieldKind::Float64:
            record.values[k] = f.GetFieldAsDouble(i);
            break;
        case OgrFieldKind::Date:
        case OgrFieldKind::DateTime:
            record.values[k] = ReadDate(f, i);
            break;
        case OgrFieldKind::String:
        case OgrFieldKind::Other:
            record.values[k] = std::string_view(f.GetFieldAsString(i));
            break;
        }
    }
    if (wantShape)
        FlattenEngine(f.GetGeometryRef(), record.geometry);
    else
        record.geometry.Clear(FlatKind::Null);
}

} // namespace

bool OgrLayer::Next(OgrRecord& record, bool wantShape) {
    EnsureEngine();
    std::unique_ptr<OGRFeature> f(Checked()->GetNextFeature());
    if (!f) {
        CheckRead("Cannot read '" + Name() + "' in '" + owner_->Path() + "'", owner_->Path());
        if (CPLGetLastErrorType() >= CE_Failure)
            Fail("Cannot read '" + Name() + "' in '" + owner_->Path() + "'");
        return false;
    }
    ReadRecord(*f, kinds_, record, wantShape);
    CheckRead("Cannot read record " + std::to_string(record.fid) + " of '" + Name() + "' in '" + owner_->Path() + "'",
              owner_->Path());
    return true;
}

bool OgrLayer::Get(std::int64_t fid, OgrRecord& record, bool wantShape) {
    EnsureEngine();
    std::unique_ptr<OGRFeature> f(Checked()->GetFeature(fid));
    const std::string what = "Cannot read record " + std::to_string(fid) + " of '" + Name() + "' in '" +
                             owner_->Path() + "'";
    if (!f) {
        CheckRead(what, owner_->Path());
        return false;
    }
    ReadRecord(*f, kinds_, record, wantShape);
    CheckRead(what, owner_->Path());
    return true;
}

OGRFeature* OgrLayer::WriteFeature(const OgrRecord& record) {
    OGRFeatureDefn* defn = Checked()->GetLayerDefn();
    if (static_cast<std::size_t>(defn->GetFieldCount()) != kinds_.size())
        RefreshKinds();
    // One feature per layer, refilled for every row: a row written costs no feature allocation.
    if (!writeFeature_ || writeFeature_->GetDefnRef() != defn || writeFeature_->GetFieldCount() != defn->GetFieldCount())
        writeFeature_.reset(new OGRFeature(defn));
    OGRFeature* f = writeFeature_.get();
    f->SetFID(OGRNullFID);
    const std::size_t n = kinds_.size();
    for (std::size_t k = 0; k < n; ++k) {
        const int i = static_cast<int>(k);
        if (k >= record.values.size() || record.values[k].IsNull() || record.values[k].IsEmpty()) {
            f->SetFieldNull(i);
            continue;
        }
        const Variant& v = record.values[k];
        switch (kinds_[k]) {
        case OgrFieldKind::Int16:
        case OgrFieldKind::Int32:
            f->SetField(i, v.ToLong());
            break;
        case OgrFieldKind::Int64:
            f->SetField(i, static_cast<GIntBig>(std::llround(v.ToDouble())));
            break;
        case OgrFieldKind::Float32:
        case OgrFieldKind::Float64:
            f->SetField(i, v.ToDouble());
            break;
        case OgrFieldKind::Date:
        case OgrFieldKind::DateTime: {
            const CalendarTime t = CalendarFromDate(v.ToDate());
            f->SetField(i, t.year, t.month, t.day, t.hour, t.minute, static_cast<float>(t.second), 0);
            break;
        }
        case OgrFieldKind::String:
        case OgrFieldKind::Other:
            f->SetField(i, v.ToString().c_str());
            break;
        }
    }
    const FlatGeometry& g = record.geometry;
    OGRGeometry* current = f->GetGeometryRef();
    if (g.kind == FlatKind::Point && !g.Empty() && current && wkbFlatten(current->getGeometryType()) == wkbPoint) {
        current->toPoint()->setX(g.points[0].X);
        current->toPoint()->setY(g.points[0].Y);
    } else {
        f->SetGeometryDirectly(MakeEngineShape(g, owner_->Driver()).release());
    }
    return f;
}

std::int64_t OgrLayer::Create(const OgrRecord& record) {
    EnsureEngine();
    OGRFeature* f = WriteFeature(record);
    if (Checked()->CreateFeature(f) != OGRERR_NONE)
        Fail("Cannot add a row to '" + Name() + "' in '" + owner_->Path() + "'");
    return f->GetFID();
}

void OgrLayer::Set(const OgrRecord& record) {
    EnsureEngine();
    OGRFeature* f = WriteFeature(record);
    f->SetFID(record.fid);
    const OGRErr err = Checked()->SetFeature(f);
    if (err == OGRERR_NON_EXISTING_FEATURE)
        throw DataFault(fault::NotFound, kSource,
                    "There is no row " + std::to_string(record.fid) + " in '" + Name() + "' of '" + owner_->Path() +
                        "'");
    if (err != OGRERR_NONE)
        Fail("Cannot write row " + std::to_string(record.fid) + " of '" + Name() + "' in '" + owner_->Path() + "'");
}

bool OgrLayer::Delete(std::int64_t fid) {
    EnsureEngine();
    const OGRErr err = Checked()->DeleteFeature(fid);
    if (err == OGRERR_NON_EXISTING_FEATURE)
        return false;
    if (err != OGRERR_NONE)
        Fail("Cannot delete row " + std::to_string(fid) + " of '" + Name() + "' in '" + owner_->Path() + "'");
    return true;
}

void OgrLayer::Sync() {
    EnsureEngine();
    if (Checked()->SyncToDisk() != OGRERR_NONE)
        Fail("Cannot write '" + Name() + "' in '" + owner_->Path() + "'");
}

} // namespace tess::data
