#pragma once
// Internal: stored tables and feature classes of every workspace kind.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/data/Fields.h"
#include "platform/data/Table.h"
#include "platform/data/detail/Facets.h"
#include "platform/data/detail/OgrAccess.h"

namespace tess {
class ISpatialReference;
class IGeometry;
}

namespace tess::data {

class WorkspaceImpl;
class RowImpl;
class CursorImpl;
enum class CursorMode : std::uint8_t;

//! Where a field of the host's list lives in the storage.
struct FieldSlot {
    enum Kind : std::uint8_t { Oid, Shape, Attribute };
    Kind kind = Attribute;
    std::int32_t storageIndex = -1; //!< index among the storage's fields (attributes only)
    esriFieldType type = esriFieldTypeString;
    bool editable = true;
};

//! The fields of a table as read at one generation of the workspace. Shared by the rows and
//! cursors made from it, so a later schema change does not pull the ground from under them.
struct ClassSchema {
    std::shared_ptr<Fields> fields;
    std::vector<FieldSlot> slots;
    std::int32_t oidIndex = -1;
    std::int32_t shapeIndex = -1;
    std::string oidName;
    std::string shapeName;
    esriGeometryType shapeType = esriGeometryNull;
    std::shared_ptr<ISpatialReference> reference;
    std::int32_t storageFieldCount = 0;
    std::uint64_t generation = 0;
};

class TableImpl : public virtual ITable,
                  public DatasetTypeFacet,
                  public IObjectClassInfo2,
                  public IVersionedObject,
                  public std::enable_shared_from_this<TableImpl> {
public:
    TableImpl(std::shared_ptr<WorkspaceImpl> ws, std::string name, bool featureClass);
    ~TableImpl() override;

    // IClass
    std::shared_ptr<IFields> Fields() const override;
    std::int32_t FindField(const std::string& name) const override;
    void AddField(const std::shared_ptr<IField>& field) override;
    void DeleteField(const std::shared_ptr<IField>& field) override;
    bool HasOID() const override { return true; }
    std::string OIDFieldName() const override;
    std::string AliasName() const override { return name_; }

    // ITable
    std::int32_t RowCount(const std::shared_ptr<IQueryFilter>& filter) const override;
    std::shared_ptr<ICursor> Search(const std::shared_ptr<IQueryFilter>& filter, bool recycling) override;
    std::shared_ptr<ICursor> Update(const std::shared_ptr<IQueryFilter>& filter, bool recycling) override;
    std::shared_ptr<ICursor> Insert(bool useBuffering) override;
    std::shared_ptr<IRow> CreateRow() override;
    std::shared_ptr<IRowBuffer> CreateRowBuffer() override;
    std::shared_ptr<IRow> GetRow(std::int32_t oid) override;
    std::shared_ptr<ISelectionSet> Select(const std::shared_ptr<IQueryFilter>& filter, esriSelectionType type,
                                          esriSelectionOption option,
                                          const std::shared_ptr<IWorkspace>& selectionContainer) override;

    // IDataset
    std::string Name() const override { return name_; }
    std::string FullName() const override;
    std::string BrowseName() const override { return browseName_.empty() ? name_ : browseName_; }
    void BrowseName(const std::string& name) override { browseName_ = name; }
    std::string Category() const override;
    std::shared_ptr<IWorkspace> Workspace() const override;
    std::shared_ptr<IPropertySet> PropertySet() const override;
    bool CanDelete() const override;
    void Delete() override;

    // IObjectClassInfo2, IVersionedObject
    bool CanBypassEditSession() const override { return true; }
    bool CanBypassStoreMethod() const override { return true; }
    bool IsRegisteredAsVersioned() const override { return false; }

    // ---- for rows, cursors and selections ----
    bool IsFeatureClass() const { return featureClass_; }
    const std::shared_ptr<WorkspaceImpl>& Owner() const { return ws_; }
    //! The schema of the workspace's current generation (read again after saved changes).
    std::shared_ptr<const ClassSchema> Schema() const;
    //! A new, unstored row or feature.
    std::shared_ptr<RowImpl> NewRow() const;
    //! Moves a stored record into a row (values converted to the fields' types; the shape object
    //! of the row is refilled when nobody else holds it).
    void Fill(RowImpl& row, OgrRecord& record) const;
    void ToRecord(const RowImpl& row, OgrRecord& record) const;
    void StoreRow(RowImpl& row);
    void DeleteStoredRow(std::int64_t fid);
    std::shared_ptr<CursorImpl> OpenCursor(const std::shared_ptr<IQueryFilter>& filter, bool recycling,
                                           CursorMode mode, std::shared_ptr<const std::vector<std::int32_t>> ids);
    //! Object IDs of the rows passing the filter, ascending.
    std::vector<std::int32_t> SelectIds(const std::shared_ptr<IQueryFilter>& filter, bool onlyOne);
    std::string FeatureDatasetName() const { return featureDataset_; }

protected:
    esriDatasetType DatasetType() const override { return featureClass_ ? esriDTFeatureClass : esriDTTable; }
    [[noreturn]] void FieldFault(const std::string& field, const std::string& what) const;

    std::shared_ptr<WorkspaceImpl> ws_;
    std::string name_;
    bool featureClass_;
    std::string featureDataset_;
    std::string browseName_;
    mutable std::shared_ptr<const ClassSchema> schema_;

private:
    std::shared_ptr<const ClassSchema> LoadSchema(OgrLayer& layer) const;
    void SchemaChanged(OgrLayer& layer);
};

class FeatureClassImpl final : public TableImpl, public FeatureClassFacet, public IGeoDataset {
public:
    FeatureClassImpl(std::shared_ptr<WorkspaceImpl> ws, std::string name) : TableImpl(std::move(ws), std::move(name), true) {}

    // IFeatureClass
    esriGeometryType ShapeType() const override;
    std::string ShapeFieldName() const override;
    esriFeatureType FeatureType() const override { return esriFTSimple; }
    std::int32_t FeatureCount(const std::shared_ptr<IQueryFilter>& filter) const override { return RowCount(filter); }
    std::shared_ptr<IFeature> CreateFeature() override;
    std::shared_ptr<IFeatureBuffer> CreateFeatureBuffer() override;
    std::shared_ptr<IFeature> GetFeature(std::int32_t oid) override;
    std::shared_ptr<IFeatureDataset> FeatureDataset() const override;

    // IGeoDataset
    std::shared_ptr<ISpatialReference> SpatialReference() const override;
    std::shared_ptr<IEnvelope> Extent() const override;

protected:
    std::shared_ptr<IFeatureCursor> SearchFeatures(const std::shared_ptr<IQueryFilter>& filter, bool recycling) override;
    std::shared_ptr<IFeatureCursor> UpdateFeatures(const std::shared_ptr<IQueryFilter>& filter, bool recycling) override;
    std::shared_ptr<IFeatureCursor> InsertFeatures(bool useBuffering) override;
    std::shared_ptr<ISelectionSet> SelectFeatures(const std::shared_ptr<IQueryFilter>& filter, esriSelectionType type,
                                                  esriSelectionOption option,
                                                  const std::shared_ptr<IWorkspace>& selectionContainer) override {
        return TableImpl::Select(filter, type, option, selectionContainer);
    }
};

} // namespace tess::data
