#pragma once
// Internal: the one door to the storage engine. Everything above this file
// speaks our own types; OgrAccess.cpp alone includes the engine's headers.
// Every failure is a Fault (fault::DataFailed unless said otherwise) whose
// text names the path and carries the engine's message.

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/data/detail/FlatGeometry.h"
#include "platform/system/Variant.h"

// The engine's classes, by name only: their headers stay in OgrAccess.cpp.
class GDALDataset;
class OGRLayer;
class OGRFeature;

namespace tess::data {

//! Closes an engine dataset (writing out what it holds).
struct EngineDatasetCloser {
    void operator()(GDALDataset* dataset) const;
};
//! Destroys an engine feature.
struct EngineFeatureDeleter {
    void operator()(OGRFeature* feature) const;
};

//! The kinds of storage. Vector is any other vector format the engine reads (GeoJSON, FlatGeobuf,
//! KML, GML, CSV with geometry...), read-only.
enum class OgrDriver : std::uint8_t { Shapefile, FileGDB, GeoPackage, PersonalGDB, Vector };

//! Storage types of fields as the engine reports them.
enum class OgrFieldKind : std::uint8_t { Int16, Int32, Int64, Float32, Float64, String, Date, DateTime, Other };

struct OgrFieldSpec {
    std::string name;
    std::string alias;
    OgrFieldKind kind = OgrFieldKind::String;
    std::int32_t width = 0;     //!< characters of text, digits of a dBASE number; 0 when unknown
    std::int32_t precision = 0; //!< digits after the point of a dBASE number
    bool nullable = true;
};

using OgrOptions = std::vector<std::pair<std::string, std::string>>;

//! One row on its way in or out. values are indexed as the layer's fields; a skipped field is Null.
struct OgrRecord {
    std::int64_t fid = -1;
    std::vector<Variant> values;
    FlatGeometry geometry;
};

class OgrLayer;

//! An open dataset: a shapefile, a file geodatabase, a GeoPackage, a personal geodatabase.
class OgrDataset : public std::enable_shared_from_this<OgrDataset> {
public:
    //! Fault naming the path when it cannot be opened as this kind of data.
    static std::shared_ptr<OgrDataset> Open(const std::string& path, OgrDriver driver, bool update);
    static std::shared_ptr<OgrDataset> Create(const std::string& path, OgrDriver driver);
    //! Whether the engine has a driver for the kind at all (the MDB one needs ODBC support).
    static bool DriverAvailable(OgrDriver driver);
    //! The engine's short name of the format of a file it can read as vector data ("GeoJSON",
    //! "FlatGeobuf", "KML"...); empty when it reads none.
    static std::string IdentifyVectorFormat(const std::string& path);
    //! The engine's short name of this dataset's format.
    std::string FormatName() const;

    ~OgrDataset();
    OgrDataset(const OgrDataset&) = delete;
    OgrDataset& operator=(const OgrDataset&) = delete;

    //! Writes everything out and closes; layers of this dataset must not be used afterwards.
    void Close();
    const std::string& Path() const { return path_; }
    OgrDriver Driver() const { return driver_; }
    bool Updatable() const { return update_; }

    std::vector<std::string> LayerNames() const;
    //! The layer of that name (any case); null when there is none.
    std::shared_ptr<OgrLayer> Layer(const std::string& name);
    //! A layer of a new table; kind Null makes a table without shapes.
    std::shared_ptr<OgrLayer> CreateLayer(const std::string& name, FlatKind kind, const std::string& srsWkt,
                                          const OgrOptions& options);
    void DeleteLayer(const std::string& name);
    //! Feature datasets of a file geodatabase, and the classes in one.
    std::vector<std::string> GroupNames() const;
    std::vector<std::string> GroupLayerNames(const std::string& group) const;
    //! The table number of a class in a file geodatabase's catalog (its files are a%08x.*); 0 when absent.
    std::int64_t FileGdbTableNumber(const std::string& name) const;
    //! The XML definition of an item (a feature dataset, a class) of a file geodatabase; empty when absent.
    std::string FileGdbItemDefinition(const std::string& name) const;
    //! An independent reader over a table ("SELECT * FROM name"), for a second cursor on one connection.
    std::shared_ptr<OgrLayer> OpenReader(const std::string& name);

    //! False when the storage has no transactions.
    bool StartTransaction();
    void CommitTransaction();
    void RollbackTransaction();
    void Flush();

private:
    OgrDataset(GDALDataset* handle, std::string path, OgrDriver driver, bool update);
    std::unique_ptr<GDALDataset, EngineDatasetCloser> handle_;
    std::string path_;
    OgrDriver driver_;
    bool update_;
    friend class OgrLayer;
};

//! One table of a dataset. Keeps its dataset alive.
class OgrLayer {
public:
    //! layer belongs to owner; a result set is handed back to it when this object goes.
    OgrLayer(std::shared_ptr<OgrDataset> owner, OGRLayer* layer, bool resultSet);
    ~OgrLayer();
    OgrLayer(const OgrLayer&) = delete;
    OgrLayer& operator=(const OgrLayer&) = delete;

    const std::shared_ptr<OgrDataset>& Dataset() const { return owner_; }
    std::string Name() const;
    std::string FidColumn() const;
    std::string GeometryColumn() const;
    FlatKind GeometryKind() const;
    bool HasGeometry() const;
    //! Full WKT of the layer's reference; empty when it has none.
    std::string SpatialReferenceWkt() const;

    std::vector<OgrFieldSpec> Fields() const;
    std::int32_t FieldCount() const;
    //! -1 when absent; any case.
    std::int32_t FieldIndex(const std::string& name) const;
    void CreateField(const OgrFieldSpec& spec);
    void DeleteField(std::int32_t index);

    //! Rows passing the filters now set.
    std::int64_t FeatureCount();
    //! False when the layer has no shapes.
    bool Extent(WKSEnvelope& box);

    //! A Fault naming the table when the clause cannot be read.
    void SetAttributeFilter(const std::string& where);
    //! Exact intersection with the shape (boundaries count); null clears.
    void SetSpatialFilter(const FlatGeometry* shape);
    void SetSpatialFilterRect(const WKSEnvelope& box);
    //! Fields to skip on reading (by name), and the shape too when ignoreShape.
    void SetIgnoredFields(const std::vector<std::string>& names, bool ignoreShape);

    void ResetReading();
    //! Reads the next row into record; false at the end. wantShape false leaves the geometry Null.
    bool Next(OgrRecord& record, bool wantShape);
    //! False when there is no row with that fid.
    bool Get(std::int64_t fid, OgrRecord& record, bool wantShape);
    //! Stores a new row and answers its fid.
    std::int64_t Create(const OgrRecord& record);
    //! Rewrites the row record.fid. A Fault when it is not there.
    void Set(const OgrRecord& record);
    //! False when there was no such row.
    bool Delete(std::int64_t fid);
    void Sync();

private:
    //! The layer's feature for writing, refilled from the record.
    OGRFeature* WriteFeature(const OgrRecord& record);
    //! The engine's layer; a Fault once the dataset has been closed.
    OGRLayer* Checked() const;
    std::shared_ptr<OgrDataset> owner_;
    OGRLayer* layer_;
    bool resultSet_;
    std::vector<OgrFieldKind> kinds_; // cached, refreshed when the field count changes
    //! The feature reused for every row written.
    std::unique_ptr<OGRFeature, EngineFeatureDeleter> writeFeature_;
    void RefreshKinds();
};

} // namespace tess::data
