#pragma once
// Tables and feature classes. A stored table object also answers to IDataset,
// IObjectClassInfo2 and IVersionedObject; a feature class also to IGeoDataset.

#include <cstdint>
#include <memory>
#include <string>

#include "platform/data/DataTypes.h"
#include "platform/geometry/GeometryTypes.h"

namespace tess {

class IFields;
class IField;
class IQueryFilter;
class ICursor;
class IFeatureCursor;
class IRow;
class IRowBuffer;
class IFeature;
class IFeatureBuffer;
class IFeatureDataset;
class ISelectionSet;
class IWorkspace;
class ISpatialReference;
class IEnvelope;

//! Base of tables and feature classes.
class IClass {
public:
    virtual ~IClass() = default;
    virtual std::shared_ptr<IFields> Fields() const = 0;
    //! Index of the field (any case), -1 for an unknown name.
    virtual std::int32_t FindField(const std::string& name) const = 0;
    //! Adds a field to the stored table. Shapefile names are cut to 10 characters and made unique.
    //! A Fault naming the table and the field when the storage refuses.
    virtual void AddField(const std::shared_ptr<IField>& field) = 0;
    virtual void DeleteField(const std::shared_ptr<IField>& field) = 0;
    virtual bool HasOID() const = 0;
    //! "FID" for shapefiles, the geodatabase's object ID column ("OBJECTID"), "fid" for GeoPackages.
    virtual std::string OIDFieldName() const = 0;
    virtual std::string AliasName() const = 0;
};

class ITable : public virtual IClass {
public:
    //! Rows passing the filter; all rows for a null filter.
    virtual std::int32_t RowCount(const std::shared_ptr<IQueryFilter>& filter) const = 0;
    virtual std::shared_ptr<ICursor> Search(const std::shared_ptr<IQueryFilter>& filter, bool recycling) = 0;
    //! An update cursor; writes go to the table as the rows are updated (see IWorkspaceEdit for
    //! how they reach the disk).
    virtual std::shared_ptr<ICursor> Update(const std::shared_ptr<IQueryFilter>& filter, bool recycling) = 0;
    virtual std::shared_ptr<ICursor> Insert(bool useBuffering) = 0;
    //! A new row, not stored until Store.
    virtual std::shared_ptr<IRow> CreateRow() = 0;
    virtual std::shared_ptr<IRowBuffer> CreateRowBuffer() = 0;
    //! NotFound Fault naming the table and the OID when there is no such row.
    virtual std::shared_ptr<IRow> GetRow(std::int32_t oid) = 0;
    //! The rows passing the filter as a selection set (empty with esriSelectionOptionEmpty, at most
    //! one row with esriSelectionOptionOnlyOne). The container argument of the host is not needed.
    virtual std::shared_ptr<ISelectionSet> Select(const std::shared_ptr<IQueryFilter>& filter,
                                                  esriSelectionType type, esriSelectionOption option,
                                                  const std::shared_ptr<IWorkspace>& selectionContainer) = 0;
};

class IFeatureClass : public virtual IClass {
public:
    virtual esriGeometryType ShapeType() const = 0;
    //! "Shape" for shapefiles; the geometry column of a geodatabase or GeoPackage.
    virtual std::string ShapeFieldName() const = 0;
    virtual esriFeatureType FeatureType() const = 0;
    virtual std::int32_t FeatureCount(const std::shared_ptr<IQueryFilter>& filter) const = 0;
    virtual std::shared_ptr<IFeatureCursor> Search(const std::shared_ptr<IQueryFilter>& filter,
                                                   bool recycling) = 0;
    virtual std::shared_ptr<IFeatureCursor> Update(const std::shared_ptr<IQueryFilter>& filter,
                                                   bool recycling) = 0;
    virtual std::shared_ptr<IFeatureCursor> Insert(bool useBuffering) = 0;
    //! A new feature, not stored until Store.
    virtual std::shared_ptr<IFeature> CreateFeature() = 0;
    virtual std::shared_ptr<IFeatureBuffer> CreateFeatureBuffer() = 0;
    virtual std::shared_ptr<IFeature> GetFeature(std::int32_t oid) = 0;
    //! The feature dataset holding the class; null for a stand-alone class.
    virtual std::shared_ptr<IFeatureDataset> FeatureDataset() const = 0;
    virtual std::shared_ptr<ISelectionSet> Select(const std::shared_ptr<IQueryFilter>& filter,
                                                  esriSelectionType type, esriSelectionOption option,
                                                  const std::shared_ptr<IWorkspace>& selectionContainer) = 0;
};

class IGeoDataset {
public:
    virtual ~IGeoDataset() = default;
    //! The reference of the data: from the .prj of a shapefile (unknown without one).
    virtual std::shared_ptr<ISpatialReference> SpatialReference() const = 0;
    //! The envelope of all shapes; empty for a class without shapes.
    virtual std::shared_ptr<IEnvelope> Extent() const = 0;
};

class IObjectClassInfo2 {
public:
    virtual ~IObjectClassInfo2() = default;
    //! Whether rows may be written outside an edit session. True for every class here.
    virtual bool CanBypassEditSession() const = 0;
    virtual bool CanBypassStoreMethod() const = 0;
};

class IVersionedObject {
public:
    virtual ~IVersionedObject() = default;
    //! Nothing is registered as versioned on this platform.
    virtual bool IsRegisteredAsVersioned() const = 0;
};

} // namespace tess
