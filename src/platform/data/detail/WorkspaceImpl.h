#pragma once
// Internal: the workspace object behind every factory, its write sessions and
// the handles its tables read and write through.
//
// Reading. Each cursor iterates a layer handle nobody else iterates. Handles
// are pooled per table and dropped when the workspace's generation moves on
// (every saved or dropped change of a shapefile folder or file geodatabase
// replaces files, so old handles would read the old ones).
//
// Writing. All writes of a workspace go through one write session:
//  - shapefile folders and file geodatabases: a Staging (see Staging.h) that
//    tables join as they are first written; the engine writes the copies;
//  - GeoPackages: a transaction of the workspace's connection.
// A session lives while tickets to it are held (cursors, a row being
// stored, a schema change) and, inside an edit session, until StopEditing.
// The last ticket released outside an edit session saves it.

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/data/Dataset.h"
#include "platform/data/Workspace.h"
#include "platform/data/detail/Facets.h"
#include "platform/data/detail/OgrAccess.h"

namespace tess {
class ISpatialReference;
class IField;
}

namespace tess::data {

class Staging;
class TableImpl;

//! Case-insensitive ordering of names, for maps keyed by table name.
struct NameLess {
    bool operator()(const std::string& a, const std::string& b) const;
};

class WorkspaceImpl;

//! A layer handle lent to one cursor; given back when the lease ends.
class LayerLease {
public:
    LayerLease() = default;
    LayerLease(std::shared_ptr<WorkspaceImpl> ws, std::string table, std::shared_ptr<OgrLayer> layer,
               std::uint64_t generation, bool pooled, bool writer);
    LayerLease(LayerLease&& other) noexcept;
    LayerLease& operator=(LayerLease&& other) noexcept;
    ~LayerLease();
    OgrLayer& operator*() const { return *layer_; }
    OgrLayer* operator->() const { return layer_.get(); }
    explicit operator bool() const { return layer_ != nullptr; }
    void Release();

private:
    std::shared_ptr<WorkspaceImpl> ws_;
    std::string table_;
    std::shared_ptr<OgrLayer> layer_;
    std::uint64_t generation_ = 0;
    bool pooled_ = false;
    bool writer_ = false;
};

//! Keeps the write session open; see above.
class WriteTicket {
public:
    WriteTicket() = default;
    WriteTicket(std::shared_ptr<WorkspaceImpl> ws, std::uint64_t session);
    WriteTicket(WriteTicket&& other) noexcept;
    WriteTicket& operator=(WriteTicket&& other) noexcept;
    ~WriteTicket();
    explicit operator bool() const { return ws_ != nullptr; }
    std::uint64_t Session() const { return session_; }
    void Release();

private:
    std::shared_ptr<WorkspaceImpl> ws_;
    std::uint64_t session_ = 0;
};

struct WriteSession;

class WorkspaceImpl : public WorkspaceTypeFacet,
                      public IFeatureWorkspace,
                      public IWorkspaceEdit,
                      public DatasetTypeFacet,
                      public std::enable_shared_from_this<WorkspaceImpl> {
public:
    //! The workspace at path (already normalized), from the cache of open workspaces when it is there.
    static std::shared_ptr<WorkspaceImpl> Open(const std::string& path, OgrDriver driver,
                                               std::shared_ptr<IWorkspaceFactory> factory);
    WorkspaceImpl(std::string path, OgrDriver driver, std::shared_ptr<IWorkspaceFactory> factory);
    ~WorkspaceImpl() override;

    // IWorkspace
    std::string PathName() const override { return path_; }
    std::shared_ptr<IWorkspaceFactory> WorkspaceFactory() const override { return factory_; }
    bool IsDirectory() const override;
    std::vector<std::string> DatasetNames(esriDatasetType type) const override;

    // IFeatureWorkspace
    std::shared_ptr<ITable> OpenTable(const std::string& name) override;
    std::shared_ptr<IFeatureClass> OpenFeatureClass(const std::string& name) override;
    std::shared_ptr<IFeatureClass> CreateFeatureClass(const std::string& name, const std::shared_ptr<IFields>& fields,
                                                      const std::shared_ptr<IUID>& clsid,
                                                      const std::shared_ptr<IUID>& extclsid,
                                                      esriFeatureType featureType, const std::string& shapeFieldName,
                                                      const std::string& configKeyword) override;
    std::shared_ptr<ITable> CreateTable(const std::string& name, const std::shared_ptr<IFields>& fields,
                                        const std::shared_ptr<IUID>& clsid, const std::shared_ptr<IUID>& extclsid,
                                        const std::string& configKeyword) override;
    std::shared_ptr<IFeatureDataset> OpenFeatureDataset(const std::string& name) override;
    std::shared_ptr<IFeatureDataset> CreateFeatureDataset(const std::string& name,
                                                          const std::shared_ptr<ISpatialReference>& sr) override;

    // IWorkspaceEdit
    void StartEditing(bool withUndoRedo) override;
    void StopEditing(bool saveEdits) override;
    bool IsBeingEdited() const override { return editing_; }
    void StartEditOperation() override;
    void StopEditOperation() override;
    void AbortEditOperation() override;
    bool HasEdits() const override;

    // IDataset
    std::string Name() const override;
    std::string FullName() const override { return path_; }
    std::string BrowseName() const override;
    void BrowseName(const std::string& name) override { browseName_ = name; }
    std::string Category() const override;
    std::shared_ptr<IWorkspace> Workspace() const override;
    std::shared_ptr<IPropertySet> PropertySet() const override;
    bool CanDelete() const override { return false; }
    void Delete() override;

    // ---- for the tables ----
    OgrDriver Driver() const { return driver_; }
    bool ReadOnly() const { return readOnly_; }
    std::uint64_t Generation() const { return generation_; }
    //! The category of a class or table of this workspace, in the host's words.
    std::string ClassCategory(bool featureClass) const;
    //! The full path of a class ("folder/name.shp", "db.gdb/dataset/name", "db.gpkg/name").
    std::string ClassFullName(const std::string& name, bool featureClass, const std::string& featureDataset) const;
    //! The feature dataset holding a class of a file geodatabase; empty when stand-alone.
    std::string FeatureDatasetOf(const std::string& name) const;
    //! The file of a shapefile or dBASE table ("folder/name.shp"); empty when there is none.
    std::string ShapefilePath(const std::string& name) const;

    //! A handle for reading the table, not iterated by anyone else. Inside a write session that holds
    //! the table it reads the session's copy.
    LayerLease BorrowReader(const std::string& table);
    //! Opens (or joins) the write session; a Fault naming the workspace when it cannot be written.
    WriteTicket Acquire();
    //! The session's writing handle of the table (the table joins the session). A ticket must be held.
    std::shared_ptr<OgrLayer> Writer(const std::string& table);
    //! A handle to iterate while writing through Writer (never the writer itself, see the .cpp).
    LayerLease BorrowIterator(const std::string& table);
    //! The writing handle of the table when it has joined the open session; null otherwise. Nobody
    //! iterates it, so it serves reads of single rows that must see the session's changes.
    std::shared_ptr<OgrLayer> SessionWriter(const std::string& table) const;
    //! Writes the session's buffers out so that readers of the copies see every row.
    void FlushSession();

    //! Removes a table or feature class (shapefile files, geodatabase or GeoPackage table).
    void DeleteClass(const std::string& name);
    //! Creates a feature class inside a feature dataset of a file geodatabase.
    std::shared_ptr<IFeatureClass> CreateClass(const std::string& name, const std::shared_ptr<IFields>& fields,
                                               esriFeatureType featureType, const std::string& shapeFieldName,
                                               const std::string& configKeyword, bool featureClass,
                                               const std::string& featureDataset,
                                               const std::shared_ptr<ISpatialReference>& datasetReference);
    //! The reference of a feature dataset of a file geodatabase (unknown when none is recorded).
    std::shared_ptr<ISpatialReference> FeatureDatasetReference(const std::string& name) const;
    std::vector<std::string> FeatureDatasetClasses(const std::string& name) const;

    //! Called by leases and tickets.
    void GiveBack(const std::string& table, std::shared_ptr<OgrLayer> layer, std::uint64_t generation, bool pooled,
                  bool writer);
    void Release(std::uint64_t session);

protected:
    esriWorkspaceType WorkspaceType() const override;
    esriDatasetType DatasetType() const override { return esriDTContainer; }

private:
    std::shared_ptr<OgrDataset> Shared() const;
    //! Whether the table is there; canonical is its name as stored.
    bool Locate(const std::string& name, std::string& canonical, bool& hasShape) const;
    std::string NormalizeName(const std::string& name) const;
    std::shared_ptr<TableImpl> Find(const std::string& name);
    void StartSession();
    void EndSession(bool save);
    void JoinSession(const std::string& table);
    void BlockNewFreelists();
    std::shared_ptr<OgrLayer> OpenPooledReader(const std::string& table);
    std::shared_ptr<OgrLayer> OpenSessionReader(const std::string& table);
    std::vector<std::string> ShapefileComponents(const std::string& name) const;
    void CheckWritable(const std::string& what) const;
    [[noreturn]] void ReadOnlyFault(const std::string& what) const;

    std::string path_;
    OgrDriver driver_;
    std::shared_ptr<IWorkspaceFactory> factory_;
    std::string browseName_;
    bool readOnly_ = false;
    mutable std::shared_ptr<OgrDataset> shared_;
    std::uint64_t generation_ = 1;
    std::map<std::string, std::weak_ptr<TableImpl>, NameLess> tables_;
    std::map<std::string, std::vector<std::shared_ptr<OgrLayer>>, NameLess> idle_;
    std::set<std::string, NameLess> primaryOut_;
    std::set<std::string, NameLess> busy_; //!< GeoPackage tables whose handle a cursor iterates

    std::unique_ptr<WriteSession> session_;
    std::uint64_t nextSession_ = 1;
    std::int32_t users_ = 0;
    bool editing_ = false;
    std::int32_t editOperations_ = 0;
    std::optional<std::string> pendingFault_;
};

//! Makes the table object of a stored table (feature class when it has shapes).
std::shared_ptr<TableImpl> MakeTable(const std::shared_ptr<WorkspaceImpl>& ws, const std::string& name, bool featureClass);

//! Paths with "/" separators, absolute and without a trailing separator.
std::string NormalizePath(const std::string& path);

} // namespace tess::data
