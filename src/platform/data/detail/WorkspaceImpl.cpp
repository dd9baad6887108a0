#include "platform/data/detail/WorkspaceImpl.h"

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <mutex>

#include "platform/data/Field.h"
#include "platform/data/Fields.h"
#include "platform/data/detail/DatasetUse.h"
#include "platform/data/detail/FeatureDatasetImpl.h"
#include "platform/data/detail/FieldRules.h"
#include "platform/data/detail/Staging.h"
#include "platform/data/detail/TableImpl.h"
#include "platform/srs/PrjFile.h"
#include "platform/srs/SpatialReference.h"
#include "platform/srs/SpatialReferenceEnvironment.h"
#include "platform/srs/Transform.h"
#include "platform/system/Fault.h"
#include "platform/system/PropertySet.h"
#include "platform/system/Text.h"

namespace tess::data {
namespace {

namespace fs = std::filesystem;

constexpr const char* kSource = "tess.data";
constexpr const char* kShapefileStaging = ".tess-staging";
constexpr const char* kGdbStaging = ".tess-staging.gdb"; // the engine opens only folders named *.gdb
constexpr std::size_t kMaxIdleReaders = 4;
constexpr std::int64_t kLastSystemTable = 8; // tables 1 to 8 of a file geodatabase are its catalog
constexpr const char* kFeatureDatasetSeed = "tess_feature_dataset_seed";
constexpr std::int32_t kDefaultIdWidth = 6; // the "Id" field a shapefile gets when it has no other

// Component files of a shapefile or dBASE table, by the extension after the name.
constexpr const char* kShapefileExtensions[] = {".shp", ".shx", ".dbf", ".prj", ".cpg", ".qix", ".sbn", ".sbx",
                                                ".fbn", ".fbx", ".ain", ".aih", ".atx", ".ixs", ".mxs", ".shp.xml"};

std::mutex& CacheMutex() {
    static std::mutex m;
    return m;
}

std::map<std::string, std::weak_ptr<WorkspaceImpl>>& Cache() {
    static std::map<std::string, std::weak_ptr<WorkspaceImpl>> cache;
    return cache;
}

std::string StagingName(OgrDriver driver) {
    return driver == OgrDriver::FileGDB ? kGdbStaging : kShapefileStaging;
}

bool IsUnknown(const std::shared_ptr<ISpatialReference>& sr) {
    return !sr || std::dynamic_pointer_cast<IUnknownCoordinateSystem>(sr) != nullptr;
}

// The shortest text that reads back as the same double: a tolerance of 8.98e-9 degrees must not
// become "0.000000".
std::string RoundTrip(double value) {
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

std::string TableFilePrefix(std::int64_t number) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "a%08llx.", static_cast<unsigned long long>(number));
    return buffer;
}

std::string XmlUnescape(const std::string& text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '&') {
            out += text[i];
            continue;
        }
        const std::size_t end = text.find(';', i);
        if (end == std::string::npos) {
            out += text.substr(i);
            break;
        }
        const std::string entity = text.substr(i + 1, end - i - 1);
        if (entity == "lt")
            out += '<';
        else if (entity == "gt")
            out += '>';
        else if (entity == "amp")
            out += '&';
        else if (entity == "quot")
            out += '"';
        else if (entity == "apos")
            out += '\'';
        else
            out += "&" + entity + ";";
        i = end;
    }
    return out;
}

void ResetLayer(OgrLayer& layer) {
    layer.ResetReading();
    layer.SetAttributeFilter("");
    layer.SetSpatialFilter(nullptr);
    layer.SetIgnoredFields({}, false);
}

} // namespace

bool NameLess::operator()(const std::string& a, const std::string& b) const {
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
        return std::tolower(static_cast<unsigned char>(x)) < std::tolower(static_cast<unsigned char>(y));
    });
}

std::string NormalizePath(const std::string& path) {
    std::string p = path;
    std::replace(p.begin(), p.end(), '\\', '/');
    std::error_code ec;
    std::string out = fs::absolute(fs::path(p), ec).lexically_normal().string();
    while (out.size() > 1 && out.back() == '/')
        out.pop_back();
    return out;
}

struct WriteSession {
    std::uint64_t id = 0;
    std::unique_ptr<Staging> staging;                                      // shapefile folders, geodatabases
    std::map<std::string, std::shared_ptr<OgrDataset>, NameLess> datasets; // shapefiles: one per table
    std::shared_ptr<OgrDataset> gdb;                                       // the geodatabase's copy
    std::map<std::string, std::shared_ptr<OgrLayer>, NameLess> writers;
    std::set<std::string, NameLess> created;
    std::set<std::string, NameLess> deleted;
    bool transaction = false; // GeoPackages
    bool changed = false;
};

// ---------------------------------------------------------------- leases and tickets

LayerLease::LayerLease(std::shared_ptr<WorkspaceImpl> ws, std::string table, std::shared_ptr<OgrLayer> layer,
                       std::uint64_t generation, bool pooled, bool writer)
    : ws_(std::move(ws)), table_(std::move(table)), layer_(std::move(layer)), generation_(generation),
      pooled_(pooled), writer_(writer) {}

LayerLease::LayerLease(LayerLease&& other) noexcept { *this = std::move(other); }

LayerLease& LayerLease::operator=(LayerLease&& other) noexcept {
    if (this != &other) {
        Release();
        ws_ = std::move(other.ws_);
        table_ = std::move(other.table_);
        layer_ = std::move(other.layer_);
        generation_ = other.generation_;
        pooled_ = other.pooled_;
        writer_ = other.writer_;
    }
    return *this;
}

LayerLease::~LayerLease() { Release(); }

void LayerLease::Release() {
    if (ws_ && layer_)
        ws_->GiveBack(table_, std::move(layer_), generation_, pooled_, writer_);
    layer_.reset();
    ws_.reset();
}

WriteTicket::WriteTicket(std::shared_ptr<WorkspaceImpl> ws, std::uint64_t session)
    : ws_(std::move(ws)), session_(session) {}

WriteTicket::WriteTicket(WriteTicket&& other) noexcept { *this = std::move(other); }

WriteTicket& WriteTicket::operator=(WriteTicket&& other) noexcept {
    if (this != &other) {
        Release();
        ws_ = std::move(other.ws_);
        session_ = other.session_;
        other.ws_.reset();
    }
    return *this;
}

WriteTicket::~WriteTicket() { Release(); }

void WriteTicket::Release() {
    if (ws_) {
        auto ws = std::move(ws_);
        ws_.reset();
        ws->Release(session_);
    }
}

// ---------------------------------------------------------------- opening

WorkspaceImpl::WorkspaceImpl(std::string path, OgrDriver driver, std::shared_ptr<IWorkspaceFactory> factory)
    : path_(std::move(path)), driver_(driver), factory_(std::move(factory)) {}

WorkspaceImpl::~WorkspaceImpl() {
    if (session_) {
        try {
            EndSession(!editing_);
        } catch (...) {
            // A destructor cannot report; the staged change is dropped and the data stays as it was.
        }
    }
}

std::shared_ptr<WorkspaceImpl> WorkspaceImpl::Open(const std::string& path, OgrDriver driver,
                                                   std::shared_ptr<IWorkspaceFactory> factory) {
    std::lock_guard lock(CacheMutex());
    auto& cache = Cache();
    if (auto it = cache.find(path); it != cache.end()) {
        if (auto ws = it->second.lock(); ws && ws->driver_ == driver)
            return ws;
    }
    auto ws = std::make_shared<WorkspaceImpl>(path, driver, std::move(factory));
    switch (driver) {
    case OgrDriver::Shapefile:
        Staging::Recover(path, StagingName(driver));
        ws->readOnly_ = ::access(path.c_str(), W_OK) != 0;
        break;
    case OgrDriver::FileGDB:
        Staging::Recover(path, StagingName(driver));
        ws->readOnly_ = ::access(path.c_str(), W_OK) != 0;
        ws->shared_ = OgrDataset::Open(path, driver, false);
        break;
    case OgrDriver::GeoPackage: {
        const std::string folder = fs::path(path).parent_path().string();
        // SQLite writes a journal beside the file, so the folder must be writable too.
        const bool writable = ::access(path.c_str(), W_OK) == 0 && ::access(folder.c_str(), W_OK) == 0;
        ws->shared_ = OgrDataset::Open(path, driver, writable);
        ws->readOnly_ = !writable;
        break;
    }
    case OgrDriver::PersonalGDB:
        ws->readOnly_ = true;
        try {
            ws->shared_ = OgrDataset::Open(path, driver, false);
        } catch (const Fault& f) {
            throw DataFault(fault::DataFailed, kSource,
                        "Cannot open the personal geodatabase '" + path +
                            "': it needs an MDB driver for ODBC, and this system has none that can read it (" +
                            f.Description() + ")");
        }
        break;
    case OgrDriver::Vector:
        ws->readOnly_ = true;
        ws->shared_ = OgrDataset::Open(path, driver, false);
        break;
    }
    cache[path] = ws;
    return ws;
}

std::shared_ptr<OgrDataset> WorkspaceImpl::Shared() const {
    if (!shared_ && driver_ != OgrDriver::Shapefile)
        shared_ = OgrDataset::Open(path_, driver_, driver_ == OgrDriver::GeoPackage && !readOnly_);
    return shared_;
}

esriWorkspaceType WorkspaceImpl::WorkspaceType() const {
    return driver_ == OgrDriver::Shapefile ? esriFileSystemWorkspace : esriLocalDatabaseWorkspace;
}

bool WorkspaceImpl::IsDirectory() const {
    return driver_ == OgrDriver::Shapefile || driver_ == OgrDriver::FileGDB;
}

// ---------------------------------------------------------------- names

std::string WorkspaceImpl::NormalizeName(const std::string& name) const {
    std::string n = name;
    std::replace(n.begin(), n.end(), '\\', '/');
    while (!n.empty() && std::isspace(static_cast<unsigned char>(n.back())))
        n.pop_back();
    while (!n.empty() && std::isspace(static_cast<unsigned char>(n.front())))
        n.erase(0, 1);
    if (driver_ == OgrDriver::Shapefile || driver_ == OgrDriver::FileGDB) {
        // A feature dataset or folder in front of the name is not part of it.
        if (const std::size_t slash = n.rfind('/'); slash != std::string::npos)
            n = n.substr(slash + 1);
    }
    if (driver_ == OgrDriver::Shapefile && (EndsWithNoCase(n, ".shp") || EndsWithNoCase(n, ".dbf")))
        n.resize(n.size() - 4);
    return n;
}

std::string WorkspaceImpl::ShapefilePath(const std::string& name) const {
    if (session_ && session_->deleted.count(name))
        return {};
    if (session_ && session_->staging && session_->created.count(name)) {
        for (const char* ext : {".shp", ".dbf"}) {
            const std::string staged = session_->staging->Staged(name + ext);
            if (fs::exists(staged))
                return staged;
        }
    }
    std::error_code ec;
    std::string dbf;
    for (const auto& entry : fs::directory_iterator(path_, ec)) {
        const std::string file = entry.path().filename().string();
        if (file.size() != name.size() + 4 || Lower(file.substr(0, name.size())) != Lower(name))
            continue;
        const std::string ext = Lower(file.substr(name.size()));
        if (ext == ".shp")
            return entry.path().string();
        if (ext == ".dbf")
            dbf = entry.path().string();
    }
    return dbf;
}

std::vector<std::string> WorkspaceImpl::ShapefileComponents(const std::string& name) const {
    std::vector<std::string> files;
    std::error_code ec;
    for (const auto& entry : fs::directory_iterator(path_, ec)) {
        if (!entry.is_regular_file())
            continue;
        const std::string file = entry.path().filename().string();
        if (file.size() <= name.size() || Lower(file.substr(0, name.size())) != Lower(name))
            continue;
        const std::string ext = Lower(file.substr(name.size()));
        if (std::find(std::begin(kShapefileExtensions), std::end(kShapefileExtensions), ext) !=
            std::end(kShapefileExtensions))
            files.push_back(file);
    }
    return files;
}

bool WorkspaceImpl::Locate(const std::string& name, std::string& canonical, bool& hasShape) const {
    if (name.empty())
        return false;
    if (driver_ == OgrDriver::Shapefile) {
        const std::string file = ShapefilePath(name);
        if (file.empty())
            return false;
        const fs::path p(file);
        canonical = p.stem().string();
        hasShape = EndsWithNoCase(file, ".shp");
        return true;
    }
    std::shared_ptr<OgrDataset> ds = session_ && session_->gdb ? session_->gdb : Shared();
    auto layer = ds->Layer(name);
    if (!layer)
        return false;
    canonical = layer->Name();
    hasShape = layer->HasGeometry();
    return true;
}

std::shared_ptr<TableImpl> WorkspaceImpl::Find(const std::string& name) {
    auto it = tables_.find(name);
    if (it == tables_.end())
        return nullptr;
    auto table = it->second.lock();
    if (!table)
        tables_.erase(it);
    return table;
}

std::vector<std::string> WorkspaceImpl::DatasetNames(esriDatasetType type) const {
    std::vector<std::string> names;
    const bool wantClasses = type == esriDTAny || type == esriDTFeatureClass;
    const bool wantTables = type == esriDTAny || type == esriDTTable;
    if (driver_ == OgrDriver::Shapefile) {
        std::error_code ec;
        std::set<std::string, NameLess> shapes;
        std::set<std::string, NameLess> tables;
        for (const auto& entry : fs::directory_iterator(path_, ec)) {
            if (!entry.is_regular_file())
                continue;
            const fs::path p = entry.path();
            const std::string ext = Lower(p.extension().string());
            if (ext == ".shp")
                shapes.insert(p.stem().string());
            else if (ext == ".dbf")
                tables.insert(p.stem().string());
        }
        if (wantClasses)
            names.insert(names.end(), shapes.begin(), shapes.end());
        if (wantTables)
            for (const std::string& t : tables)
                if (!shapes.count(t))
                    names.push_back(t);
        return names;
    }
    std::shared_ptr<OgrDataset> ds = session_ && session_->gdb ? session_->gdb : Shared();
    for (const std::string& n : ds->LayerNames()) {
        const bool shape = ds->Layer(n)->HasGeometry();
        if ((shape && wantClasses) || (!shape && wantTables))
            names.push_back(n);
    }
    if (type == esriDTAny || type == esriDTFeatureDataset) {
        const auto groups = ds->GroupNames();
        names.insert(names.end(), groups.begin(), groups.end());
    }
    return names;
}

// ---------------------------------------------------------------- tables

std::shared_ptr<ITable> WorkspaceImpl::OpenTable(const std::string& name) {
    const std::string n = NormalizeName(name);
    std::string canonical;
    bool hasShape = false;
    if (!Locate(n, canonical, hasShape))
        throw DataFault(fault::NotFound, kSource, "The table '" + n + "' was not found in '" + path_ + "'");
    if (auto table = Find(canonical))
        return table;
    auto table = MakeTable(shared_from_this(), canonical, hasShape);
    table->Schema(); // a table that cannot be read is a fault here, not at its first search
    tables_[canonical] = table;
    return table;
}

std::shared_ptr<IFeatureClass> WorkspaceImpl::OpenFeatureClass(const std::string& name) {
    const std::string n = NormalizeName(name);
    std::string canonical;
    bool hasShape = false;
    if (!Locate(n, canonical, hasShape))
        throw DataFault(fault::NotFound, kSource, "The feature class '" + n + "' was not found in '" + path_ + "'");
    if (!hasShape)
        throw DataFault(fault::NotFound, kSource,
                    "'" + canonical + "' in '" + path_ + "' is a table, not a feature class");
    return std::dynamic_pointer_cast<IFeatureClass>(OpenTable(canonical));
}

std::shared_ptr<IFeatureClass> WorkspaceImpl::CreateFeatureClass(
    const std::string& name, const std::shared_ptr<IFields>& fields, const std::shared_ptr<IUID>&,
    const std::shared_ptr<IUID>&, esriFeatureType featureType, const std::string& shapeFieldName,
    const std::string& configKeyword) {
    return CreateClass(name, fields, featureType, shapeFieldName, configKeyword, true, "", nullptr);
}

std::shared_ptr<ITable> WorkspaceImpl::CreateTable(const std::string& name, const std::shared_ptr<IFields>& fields,
                                                   const std::shared_ptr<IUID>&, const std::shared_ptr<IUID>&,
                                                   const std::string& configKeyword) {
    CreateClass(name, fields, esriFTSimple, "", configKeyword, false, "", nullptr);
    return OpenTable(name);
}

void WorkspaceImpl::ReadOnlyFault(const std::string& what) const {
    if (driver_ == OgrDriver::PersonalGDB)
        throw DataFault(fault::InvalidCall, kSource,
                    "Personal geodatabases are read-only on this platform: cannot " + what + " in '" + path_ + "'");
    throw DataFault(fault::DataFailed, kSource, "'" + path_ + "' is read-only: cannot " + what);
}

void WorkspaceImpl::CheckWritable(const std::string& what) const {
    if (readOnly_ || driver_ == OgrDriver::PersonalGDB)
        ReadOnlyFault(what);
}

std::shared_ptr<IFeatureClass> WorkspaceImpl::CreateClass(const std::string& name,
                                                          const std::shared_ptr<IFields>& fields,
                                                          esriFeatureType featureType,
                                                          const std::string& shapeFieldName,
                                                          const std::string& configKeyword, bool featureClass,
                                                          const std::string& featureDataset,
                                                          const std::shared_ptr<ISpatialReference>& datasetReference) {
    const std::string n = NormalizeName(name);
    CheckWritable("create '" + n + "'");
    if (n.empty())
        throw DataFault(fault::InvalidCall, kSource, "A new table in '" + path_ + "' needs a name");
    if (!fields)
        throw DataFault(fault::ObjectNotSet, kSource, "No fields were given for '" + n + "' in '" + path_ + "'");
    if (featureType == esriFTAnnotation || featureType == esriFTCoverageAnnotation ||
        featureType == esriFTDimension || featureType == esriFTRasterCatalogItem)
        throw DataFault(fault::InvalidCall, kSource,
                    "Only simple feature classes can be created on this platform ('" + n + "' in '" + path_ + "')");
    std::string existing;
    bool existingShape = false;
    if (Locate(n, existing, existingShape))
        throw DataFault(fault::InvalidCall, kSource, "'" + existing + "' already exists in '" + path_ + "'");

    // The geometry field: by the name given, else the first one.
    std::shared_ptr<IField> shapeField;
    if (featureClass) {
        const std::int32_t byName = shapeFieldName.empty() ? -1 : fields->FindField(shapeFieldName);
        if (byName >= 0 && fields->Field(byName)->Type() == esriFieldTypeGeometry)
            shapeField = fields->Field(byName);
        for (std::int32_t i = 0; !shapeField && i < fields->FieldCount(); ++i)
            if (fields->Field(i) && fields->Field(i)->Type() == esriFieldTypeGeometry)
                shapeField = fields->Field(i);
        if (!shapeField)
            throw DataFault(fault::InvalidCall, kSource,
                        "The fields of '" + n + "' in '" + path_ + "' hold no geometry field");
    }
    esriGeometryType shapeType = esriGeometryNull;
    std::shared_ptr<ISpatialReference> sr = datasetReference;
    if (shapeField) {
        auto def = shapeField->GeometryDef();
        shapeType = def ? def->GeometryType() : esriGeometryNull;
        if (!sr && def)
            sr = def->SpatialReference();
        const FlatKind kind = FlatKindOf(shapeType);
        if (kind == FlatKind::Null)
            throw DataFault(fault::InvalidCall, kSource,
                        "The geometry field of '" + n + "' in '" + path_ + "' has no point, multipoint, polyline "
                        "or polygon type");
    }
    std::string oidName;
    std::vector<std::shared_ptr<IField>> attributes;
    for (std::int32_t i = 0; i < fields->FieldCount(); ++i) {
        auto f = fields->Field(i);
        if (!f || f == shapeField)
            continue;
        if (f->Type() == esriFieldTypeOID) {
            if (oidName.empty())
                oidName = f->Name();
            continue;
        }
        if (f->Type() == esriFieldTypeGeometry)
            continue; // a second geometry field: the storage keeps one
        attributes.push_back(f);
    }
    const FlatKind kind = featureClass ? FlatKindOf(shapeType) : FlatKind::Null;
    const std::string wkt = IsUnknown(sr) ? std::string() : ExportToWkt(*sr);

    WriteTicket ticket = Acquire();
    session_->changed = true;
    std::string created = n;
    switch (driver_) {
    case OgrDriver::Shapefile: {
        const std::string file = session_->staging->Staged(n + (featureClass ? ".shp" : ".dbf"));
        auto ds = OgrDataset::Create(file, OgrDriver::Shapefile);
        // No reference for the engine: the .prj is ours, written below in the host's flavour.
        // Text is stored as UTF-8 and the .cpg says so, so that no character of any script is lost.
        auto layer = ds->CreateLayer(n, kind, "", {{"ENCODING", "UTF-8"}});
        std::vector<std::string> taken;
        for (const auto& f : attributes) {
            OgrFieldSpec spec = StorageSpec(*f, OgrDriver::Shapefile);
            spec.name = DbaseFieldName(f->Name(), taken);
            taken.push_back(spec.name);
            layer->CreateField(spec);
        }
        if (attributes.empty()) {
            // A dBASE file needs one field; the host's shapefiles get "Id".
            OgrFieldSpec id;
            id.name = "Id";
            id.kind = OgrFieldKind::Int32;
            id.width = kDefaultIdWidth;
            layer->CreateField(id);
        }
        if (featureClass && !IsUnknown(sr))
            WritePrjFile(session_->staging->Staged(n + ".prj"), *sr);
        session_->datasets[n] = ds;
        session_->writers[n] = layer;
        session_->created.insert(n);
        session_->deleted.erase(n);
        break;
    }
    case OgrDriver::FileGDB:
    case OgrDriver::GeoPackage: {
        const bool gdb = driver_ == OgrDriver::FileGDB;
        OgrOptions options;
        options.emplace_back("FID", oidName.empty() ? (gdb ? "OBJECTID" : "fid") : oidName);
        if (featureClass)
            options.emplace_back("GEOMETRY_NAME", shapeField->Name().empty() ? (gdb ? "SHAPE" : "geom")
                                                                               : shapeField->Name());
        if (gdb && !featureDataset.empty())
            options.emplace_back("FEATURE_DATASET", featureDataset);
        if (gdb && featureClass && sr) {
            double falseX = 0.0, falseY = 0.0, units = 0.0;
            sr->GetFalseOriginAndUnits(falseX, falseY, units);
            options.emplace_back("XORIGIN", RoundTrip(falseX));
            options.emplace_back("YORIGIN", RoundTrip(falseY));
            // The scale is the reciprocal of the resolution; its last bits are noise of the division
            // (1 / 1e-9 is 999999999.9999999), which would shift every stored coordinate off the grid.
            char scale[32];
            std::snprintf(scale, sizeof scale, "%.15g", units);
            options.emplace_back("XYSCALE", scale);
            options.emplace_back("XYTOLERANCE", RoundTrip(sr->XYTolerance()));
        }
        const std::string keyword = Lower(configKeyword);
        if (gdb && (keyword == "max_file_size_4gb" || keyword == "max_file_size_256tb" || keyword == "text_utf16"))
            options.emplace_back("CONFIGURATION_KEYWORD", configKeyword);
        std::shared_ptr<OgrDataset> ds = gdb ? session_->gdb : Shared();
        auto layer = ds->CreateLayer(n, kind, wkt, options);
        for (const auto& f : attributes)
            layer->CreateField(StorageSpec(*f, driver_));
        if (gdb)
            BlockNewFreelists();
        // The engine renames what the storage reserves ("values" becomes "values_").
        created = layer->Name();
        session_->writers[created] = layer;
        session_->created.insert(created);
        session_->deleted.erase(created);
        break;
    }
    case OgrDriver::PersonalGDB:
    case OgrDriver::Vector:
        ReadOnlyFault("create '" + n + "'");
    }
    ticket.Release();
    tables_.erase(created);
    if (!featureClass) {
        OpenTable(created);
        return nullptr;
    }
    return OpenFeatureClass(created);
}

void WorkspaceImpl::DeleteClass(const std::string& name) {
    const std::string n = NormalizeName(name);
    CheckWritable("delete '" + n + "'");
    std::string canonical;
    bool hasShape = false;
    if (!Locate(n, canonical, hasShape))
        throw DataFault(fault::NotFound, kSource, "'" + n + "' was not found in '" + path_ + "'");
    // Every overwrite of a class comes through here: what a map shows or a cursor reads stays.
    CheckNotHeld(path_, canonical, ClassFullName(canonical, hasShape, FeatureDatasetOf(canonical)));
    WriteTicket ticket = Acquire();
    session_->changed = true;
    switch (driver_) {
    case OgrDriver::Shapefile: {
        if (auto it = session_->datasets.find(canonical); it != session_->datasets.end()) {
            it->second->Close();
            session_->datasets.erase(it);
        }
        session_->writers.erase(canonical);
        // Staged and then gone: the commit removes the originals.
        const auto components = ShapefileComponents(canonical);
        session_->staging->Link(components);
        std::error_code ec;
        for (const auto& entry : fs::directory_iterator(session_->staging->Folder(), ec)) {
            const std::string file = entry.path().filename().string();
            if (file.size() > canonical.size() && Lower(file.substr(0, canonical.size() + 1)) == Lower(canonical + "."))
                fs::remove(entry.path(), ec);
        }
        session_->created.erase(canonical);
        session_->deleted.insert(canonical);
        break;
    }
    case OgrDriver::FileGDB:
        JoinSession(canonical);
        session_->writers.erase(canonical);
        session_->gdb->DeleteLayer(canonical);
        break;
    case OgrDriver::GeoPackage:
        session_->writers.erase(canonical);
        Shared()->DeleteLayer(canonical);
        break;
    case OgrDriver::PersonalGDB:
    case OgrDriver::Vector:
        ReadOnlyFault("delete '" + n + "'");
    }
    idle_.erase(canonical);
    tables_.erase(canonical);
    ticket.Release();
}

std::string WorkspaceImpl::FeatureDatasetOf(const std::string& name) const {
    if (driver_ != OgrDriver::FileGDB)
        return {};
    std::shared_ptr<OgrDataset> ds = session_ && session_->gdb ? session_->gdb : Shared();
    for (const std::string& group : ds->GroupNames())
        for (const std::string& member : ds->GroupLayerNames(group))
            if (!NameLess{}(member, name) && !NameLess{}(name, member))
                return group;
    return {};
}

std::shared_ptr<IFeatureDataset> WorkspaceImpl::OpenFeatureDataset(const std::string& name) {
    const std::string n = NormalizeName(name);
    if (driver_ == OgrDriver::FileGDB || driver_ == OgrDriver::PersonalGDB) {
        std::shared_ptr<OgrDataset> ds = session_ && session_->gdb ? session_->gdb : Shared();
        for (const std::string& group : ds->GroupNames())
            if (!NameLess{}(group, n) && !NameLess{}(n, group))
                return std::make_shared<FeatureDatasetImpl>(shared_from_this(), group);
    }
    throw DataFault(fault::NotFound, kSource, "The feature dataset '" + n + "' was not found in '" + path_ + "'");
}

std::shared_ptr<IFeatureDataset> WorkspaceImpl::CreateFeatureDataset(const std::string& name,
                                                                    const std::shared_ptr<ISpatialReference>& sr) {
    const std::string n = NormalizeName(name);
    if (driver_ != OgrDriver::FileGDB) {
        if (driver_ == OgrDriver::PersonalGDB)
            ReadOnlyFault("create the feature dataset '" + n + "'");
        throw DataFault(fault::InvalidCall, kSource,
                    "Feature datasets exist only in file geodatabases ('" + n + "' in '" + path_ + "')");
    }
    CheckWritable("create the feature dataset '" + n + "'");
    if (n.empty())
        throw DataFault(fault::InvalidCall, kSource, "A new feature dataset in '" + path_ + "' needs a name");
    for (const std::string& group : (session_ && session_->gdb ? session_->gdb : Shared())->GroupNames())
        if (!NameLess{}(group, n) && !NameLess{}(n, group))
            throw DataFault(fault::InvalidCall, kSource, "'" + group + "' already exists in '" + path_ + "'");
    WriteTicket ticket = Acquire();
    session_->changed = true;
    // The engine makes a feature dataset with its first class; a class made and dropped leaves it empty.
    session_->gdb->CreateLayer(kFeatureDatasetSeed, FlatKind::Point, IsUnknown(sr) ? std::string() : ExportToWkt(*sr),
                               {{"FEATURE_DATASET", n}});
    session_->gdb->DeleteLayer(kFeatureDatasetSeed);
    ticket.Release();
    return OpenFeatureDataset(n);
}

std::shared_ptr<ISpatialReference> WorkspaceImpl::FeatureDatasetReference(const std::string& name) const {
    std::shared_ptr<OgrDataset> ds = session_ && session_->gdb ? session_->gdb : Shared();
    const std::string definition = ds->FileGdbItemDefinition(name);
    const std::size_t begin = definition.find("<WKT>");
    const std::size_t end = definition.find("</WKT>");
    if (begin != std::string::npos && end != std::string::npos && end > begin) {
        const std::string wkt = XmlUnescape(definition.substr(begin + 5, end - begin - 5));
        if (!wkt.empty())
            return FromWkt(wkt);
    }
    return SpatialReferenceEnvironment().CreateUnknown();
}

std::vector<std::string> WorkspaceImpl::FeatureDatasetClasses(const std::string& name) const {
    std::shared_ptr<OgrDataset> ds = session_ && session_->gdb ? session_->gdb : Shared();
    return ds->GroupLayerNames(name);
}

std::string WorkspaceImpl::ClassCategory(bool featureClass) const {
    switch (driver_) {
    case OgrDriver::Shapefile:
        return featureClass ? "Shapefile Feature Class" : "dBASE Table";
    case OgrDriver::FileGDB:
        return featureClass ? "File Geodatabase Feature Class" : "File Geodatabase Table";
    case OgrDriver::PersonalGDB:
        return featureClass ? "Personal Geodatabase Feature Class" : "Personal Geodatabase Table";
    case OgrDriver::Vector:
        return Shared()->FormatName() + (featureClass ? " Feature Class" : " Table");
    case OgrDriver::GeoPackage:
        return featureClass ? "GeoPackage Feature Class" : "GeoPackage Table";
    }
    return {};
}

std::string WorkspaceImpl::ClassFullName(const std::string& name, bool featureClass,
                                         const std::string& featureDataset) const {
    if (driver_ == OgrDriver::Shapefile)
        return path_ + "/" + name + (featureClass ? ".shp" : ".dbf");
    return path_ + "/" + (featureDataset.empty() ? std::string() : featureDataset + "/") + name;
}

// ---------------------------------------------------------------- IDataset of the workspace

std::string WorkspaceImpl::Name() const { return fs::path(path_).filename().string(); }

std::string WorkspaceImpl::BrowseName() const { return browseName_.empty() ? Name() : browseName_; }

std::string WorkspaceImpl::Category() const {
    switch (driver_) {
    case OgrDriver::Shapefile:
        return "Folder";
    case OgrDriver::FileGDB:
        return "File Geodatabase";
    case OgrDriver::PersonalGDB:
        return "Personal Geodatabase";
    case OgrDriver::Vector:
        return Shared()->FormatName();
    case OgrDriver::GeoPackage:
        return "GeoPackage";
    }
    return {};
}

std::shared_ptr<IWorkspace> WorkspaceImpl::Workspace() const {
    return std::const_pointer_cast<WorkspaceImpl>(shared_from_this());
}

std::shared_ptr<IPropertySet> WorkspaceImpl::PropertySet() const {
    auto set = std::make_shared<tess::PropertySet>();
    set->SetProperty("DATABASE", path_);
    return set;
}

void WorkspaceImpl::Delete() {
    throw DataFault(fault::InvalidCall, kSource, "The workspace '" + path_ + "' cannot be deleted through its dataset");
}

// ---------------------------------------------------------------- edit sessions

void WorkspaceImpl::StartEditing(bool) {
    if (editing_)
        throw DataFault(fault::InvalidCall, kSource, "'" + path_ + "' is already being edited");
    CheckWritable("edit");
    if (pendingFault_) {
        const std::string message = *pendingFault_;
        pendingFault_.reset();
        throw DataFault(fault::DataFailed, kSource, message);
    }
    if (!session_)
        StartSession();
    editing_ = true;
}

void WorkspaceImpl::StopEditing(bool saveEdits) {
    if (!editing_)
        throw DataFault(fault::InvalidCall, kSource, "'" + path_ + "' is not being edited");
    editing_ = false;
    editOperations_ = 0;
    if (session_)
        EndSession(saveEdits);
}

void WorkspaceImpl::StartEditOperation() {
    if (!editing_)
        throw DataFault(fault::InvalidCall, kSource, "An edit operation needs an edit session of '" + path_ + "'");
    ++editOperations_;
}

void WorkspaceImpl::StopEditOperation() {
    if (editOperations_ <= 0)
        throw DataFault(fault::InvalidCall, kSource, "No edit operation of '" + path_ + "' is open");
    --editOperations_;
}

void WorkspaceImpl::AbortEditOperation() {
    if (editOperations_ <= 0)
        throw DataFault(fault::InvalidCall, kSource, "No edit operation of '" + path_ + "' is open");
    --editOperations_;
    throw DataFault(fault::InvalidCall, kSource,
                "Edit operations cannot be undone on this platform; StopEditing(false) drops all changes of '" +
                    path_ + "'");
}

bool WorkspaceImpl::HasEdits() const { return session_ && session_->changed; }

// ---------------------------------------------------------------- write sessions

WriteTicket WorkspaceImpl::Acquire() {
    if (pendingFault_) {
        const std::string message = *pendingFault_;
        pendingFault_.reset();
        throw DataFault(fault::DataFailed, kSource, message);
    }
    CheckWritable("write");
    if (!session_)
        StartSession();
    ++users_;
    return WriteTicket(shared_from_this(), session_->id);
}

void WorkspaceImpl::Release(std::uint64_t session) {
    if (!session_ || session_->id != session)
        return;
    if (--users_ > 0 || editing_)
        return;
    try {
        EndSession(true);
    } catch (const Fault& f) {
        // The releasing cursor cannot report; the next write or edit session of the workspace does.
        pendingFault_ = f.Description();
    } catch (const std::exception& e) {
        pendingFault_ = std::string("Cannot save the changes to '") + path_ + "': " + e.what();
    }
}

void WorkspaceImpl::StartSession() {
    auto s = std::make_unique<WriteSession>();
    s->id = nextSession_++;
    switch (driver_) {
    case OgrDriver::Shapefile:
        s->staging = std::make_unique<Staging>(path_, StagingName(driver_));
        break;
    case OgrDriver::FileGDB: {
        s->staging = std::make_unique<Staging>(path_, StagingName(driver_));
        // The catalog tables are written by any change; the tables stay links until they join.
        std::vector<std::string> copies;
        std::vector<std::string> links;
        std::error_code ec;
        for (const auto& entry : fs::directory_iterator(path_, ec)) {
            if (!entry.is_regular_file())
                continue;
            const std::string file = entry.path().filename().string();
            unsigned long long number = 0;
            const bool table = file.size() > 10 && file[0] == 'a' && std::sscanf(file.c_str() + 1, "%8llx", &number) == 1 &&
                               file[9] == '.';
            (table && number > static_cast<unsigned long long>(kLastSystemTable) ? links : copies).push_back(file);
        }
        s->staging->Copy(copies);
        s->staging->Link(links);
        s->gdb = OgrDataset::Open(s->staging->Folder(), OgrDriver::FileGDB, true);
        break;
    }
    case OgrDriver::GeoPackage:
        if (!Shared()->StartTransaction())
            throw DataFault(fault::DataFailed, kSource, "Cannot start a change of '" + path_ + "'");
        s->transaction = true;
        break;
    case OgrDriver::PersonalGDB:
    case OgrDriver::Vector:
        ReadOnlyFault("write");
    }
    users_ = 0;
    session_ = std::move(s);
}

void WorkspaceImpl::EndSession(bool save) {
    std::unique_ptr<WriteSession> s = std::move(session_);
    users_ = 0;
    if (!s)
        return;
    s->writers.clear();
    if (s->transaction) {
        if (save)
            Shared()->CommitTransaction();
        else {
            Shared()->RollbackTransaction();
            ++generation_; // fields added in the dropped change are gone again
        }
        return;
    }
    // Files change under every handle: readers of the old generation are dropped as they come back.
    ++generation_;
    idle_.clear();
    primaryOut_.clear();
    shared_.reset();
    try {
        for (auto& [name, ds] : s->datasets)
            ds->Close();
        if (s->gdb)
            s->gdb->Close();
        if (save)
            s->staging->Commit();
        else
            s->staging->Rollback();
    } catch (...) {
        s->staging->Rollback();
        throw;
    }
}

void WorkspaceImpl::JoinSession(const std::string& table) {
    WriteSession& s = *session_;
    if (s.writers.count(table))
        return;
    switch (driver_) {
    case OgrDriver::Shapefile: {
        const auto components = ShapefileComponents(table);
        for (const std::string& file : components)
            if (::access((path_ + "/" + file).c_str(), W_OK) != 0)
                ReadOnlyFault("change '" + table + "' ('" + file + "' cannot be written)");
        s.staging->Copy(components);
        const std::string original = ShapefilePath(table);
        if (original.empty())
            throw DataFault(fault::NotFound, kSource, "'" + table + "' was not found in '" + path_ + "'");
        auto ds = OgrDataset::Open(s.staging->Staged(fs::path(original).filename().string()), driver_, true);
        s.writers[table] = ds->Layer(table);
        s.datasets[table] = ds;
        break;
    }
    case OgrDriver::FileGDB: {
        const std::int64_t number = s.gdb->FileGdbTableNumber(table);
        if (number > kLastSystemTable) {
            const std::string prefix = TableFilePrefix(number);
            std::vector<std::string> files;
            std::error_code ec;
            for (const auto& entry : fs::directory_iterator(path_, ec)) {
                const std::string file = entry.path().filename().string();
                if (Lower(file).rfind(prefix, 0) == 0)
                    files.push_back(file);
            }
            s.staging->Copy(files);
            s.staging->Block(prefix + "freelist");
        }
        auto layer = s.gdb->Layer(table);
        if (!layer)
            throw DataFault(fault::NotFound, kSource, "'" + table + "' was not found in '" + path_ + "'");
        s.writers[table] = layer;
        break;
    }
    case OgrDriver::GeoPackage: {
        auto layer = Shared()->Layer(table);
        if (!layer)
            throw DataFault(fault::NotFound, kSource, "'" + table + "' was not found in '" + path_ + "'");
        s.writers[table] = layer;
        break;
    }
    case OgrDriver::PersonalGDB:
    case OgrDriver::Vector:
        ReadOnlyFault("change '" + table + "'");
    }
}

// The file geodatabase writer of the engine this platform is built on can write a grown row
// four bytes past a reused free area, over the next row. Without a free list (a folder stands
// where the engine would keep it) every moved row goes to the end of the table instead, at the
// cost of leaving the old areas unused.
void WorkspaceImpl::BlockNewFreelists() {
    std::error_code ec;
    for (const auto& entry : fs::directory_iterator(session_->staging->Folder(), ec)) {
        const std::string file = entry.path().filename().string();
        if (!entry.is_regular_file() || !EndsWithNoCase(file, ".gdbtable") || session_->staging->Has(file) ||
            fs::exists(session_->staging->Original(file)))
            continue;
        session_->staging->Block(file.substr(0, file.size() - std::string(".gdbtable").size()) + ".freelist");
    }
}

std::shared_ptr<OgrLayer> WorkspaceImpl::Writer(const std::string& table) {
    if (!session_)
        throw DataFault(fault::InvalidCall, kSource, "No change of '" + path_ + "' is open");
    JoinSession(table);
    session_->changed = true;
    return session_->writers[table];
}

std::shared_ptr<OgrLayer> WorkspaceImpl::SessionWriter(const std::string& table) const {
    if (!session_)
        return nullptr;
    const auto it = session_->writers.find(table);
    return it == session_->writers.end() ? nullptr : it->second;
}

void WorkspaceImpl::FlushSession() {
    if (!session_)
        return;
    for (auto& [name, layer] : session_->writers)
        layer->Sync();
}

// ---------------------------------------------------------------- reading handles

std::shared_ptr<OgrLayer> WorkspaceImpl::OpenPooledReader(const std::string& table) {
    std::shared_ptr<OgrLayer> layer;
    switch (driver_) {
    case OgrDriver::Shapefile: {
        const std::string file = ShapefilePath(table);
        if (file.empty())
            throw DataFault(fault::NotFound, kSource, "'" + table + "' was not found in '" + path_ + "'");
        layer = OgrDataset::Open(file, driver_, false)->Layer(table);
        break;
    }
    case OgrDriver::FileGDB:
    case OgrDriver::PersonalGDB:
    case OgrDriver::Vector:
        if (!primaryOut_.count(table)) {
            layer = Shared()->Layer(table);
            if (layer)
                primaryOut_.insert(table);
        } else {
            layer = OgrDataset::Open(path_, driver_, false)->Layer(table);
        }
        break;
    case OgrDriver::GeoPackage:
        break; // see BorrowReader
    }
    if (!layer)
        throw DataFault(fault::NotFound, kSource, "'" + table + "' was not found in '" + path_ + "'");
    return layer;
}

std::shared_ptr<OgrLayer> WorkspaceImpl::OpenSessionReader(const std::string& table) {
    FlushSession();
    std::shared_ptr<OgrLayer> layer;
    if (driver_ == OgrDriver::Shapefile) {
        const std::string file = ShapefilePath(table);
        const std::string staged = session_->staging->Staged(fs::path(file).filename().string());
        layer = OgrDataset::Open(fs::exists(staged) ? staged : file, driver_, false)->Layer(table);
    } else {
        layer = OgrDataset::Open(session_->staging->Folder(), driver_, false)->Layer(table);
    }
    if (!layer)
        throw DataFault(fault::NotFound, kSource, "'" + table + "' was not found in '" + path_ + "'");
    return layer;
}

LayerLease WorkspaceImpl::BorrowReader(const std::string& table) {
    auto self = shared_from_this();
    if (driver_ == OgrDriver::GeoPackage) {
        // One connection: its table handle goes to one cursor at a time (it sees the open
        // transaction's rows); a cursor meanwhile gets a reader of its own on the connection.
        if (!busy_.count(table)) {
            auto layer = Shared()->Layer(table);
            if (!layer)
                throw DataFault(fault::NotFound, kSource, "'" + table + "' was not found in '" + path_ + "'");
            busy_.insert(table);
            return LayerLease(self, table, std::move(layer), generation_, false, true);
        }
        return LayerLease(self, table, Shared()->OpenReader(table), generation_, false, false);
    }
    const bool inSession = session_ && session_->staging &&
                           (session_->writers.count(table) || session_->created.count(table));
    if (inSession)
        return LayerLease(self, table, OpenSessionReader(table), generation_, false, false);
    auto& idle = idle_[table];
    if (!idle.empty()) {
        auto layer = std::move(idle.back());
        idle.pop_back();
        return LayerLease(self, table, std::move(layer), generation_, true, false);
    }
    return LayerLease(self, table, OpenPooledReader(table), generation_, true, false);
}

LayerLease WorkspaceImpl::BorrowIterator(const std::string& table) {
    // Rows are read through a handle of their own and written through the writer: a file read and
    // written by turns through one handle flushes its buffers at every turn. Each row is read
    // before it is written, so the reader's read-ahead never holds a row already rewritten.
    Writer(table);
    return BorrowReader(table);
}

void WorkspaceImpl::GiveBack(const std::string& table, std::shared_ptr<OgrLayer> layer, std::uint64_t generation,
                             bool pooled, bool writer) {
    if (writer && driver_ == OgrDriver::GeoPackage) {
        busy_.erase(table);
        try {
            ResetLayer(*layer);
        } catch (const Fault&) {
            // The connection is closed: nothing to reset.
        }
        return;
    }
    if (!pooled || generation != generation_)
        return;
    try {
        ResetLayer(*layer);
    } catch (const Fault&) {
        return;
    }
    auto& idle = idle_[table];
    if (idle.size() < kMaxIdleReaders)
        idle.push_back(std::move(layer));
    else if (shared_ && layer->Dataset() == shared_)
        primaryOut_.erase(table);
}

std::shared_ptr<TableImpl> MakeTable(const std::shared_ptr<WorkspaceImpl>& ws, const std::string& name,
                                     bool featureClass) {
    if (featureClass)
        return std::make_shared<FeatureClassImpl>(ws, name);
    return std::make_shared<TableImpl>(ws, name, false);
}

} // namespace tess::data
