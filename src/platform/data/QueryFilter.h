#pragma once
// Row filters: an attribute condition, and a shape and a spatial relation.

#include <memory>
#include <string>

#include "platform/geometry/GeometryTypes.h"

namespace tess {

class IGeometry;

class IQueryFilter {
public:
    virtual ~IQueryFilter() = default;
    //! A condition in SQL ("POP > 1000 AND NAME LIKE 'A%'"): OGR SQL for shapefiles and file
    //! geodatabases, SQLite's for GeoPackages (the same for plain comparisons); empty means every row.
    //! A condition the storage cannot read is an InvalidCall Fault naming the table when a cursor opens.
    virtual std::string WhereClause() const = 0;
    virtual void WhereClause(const std::string& clause) = 0;
    //! Comma-separated field names to fetch, or "*" (the default) for all. Only a hint: fields
    //! left out read Null from search cursors; update cursors always fetch every field.
    virtual std::string SubFields() const = 0;
    virtual void SubFields(const std::string& fields) = 0;
    //! Adds a name to SubFields (replacing "*").
    virtual void AddField(const std::string& name) = 0;
};

class ISpatialFilter : public IQueryFilter {
public:
    //! Shared, not copied. In the spatial reference of the class, or projected to it when both are known.
    virtual std::shared_ptr<IGeometry> Geometry() const = 0;
    virtual void Geometry(std::shared_ptr<IGeometry> geometry) = 0;
    //! esriSpatialRelIntersects is exact: a point on a polygon's boundary intersects it.
    virtual esriSpatialRelEnum SpatialRel() const = 0;
    virtual void SpatialRel(esriSpatialRelEnum relation) = 0;
    //! Name of the shape field to test; empty means the class's shape field.
    virtual std::string GeometryField() const = 0;
    virtual void GeometryField(const std::string& name) = 0;
};

class QueryFilter : public IQueryFilter {
public:
    std::string WhereClause() const override { return where_; }
    void WhereClause(const std::string& clause) override { where_ = clause; }
    std::string SubFields() const override { return subFields_; }
    void SubFields(const std::string& fields) override { subFields_ = fields; }
    void AddField(const std::string& name) override;

private:
    std::string where_;
    std::string subFields_ = "*";
};

class SpatialFilter final : public ISpatialFilter {
public:
    std::string WhereClause() const override { return base_.WhereClause(); }
    void WhereClause(const std::string& clause) override { base_.WhereClause(clause); }
    std::string SubFields() const override { return base_.SubFields(); }
    void SubFields(const std::string& fields) override { base_.SubFields(fields); }
    void AddField(const std::string& name) override { base_.AddField(name); }

    std::shared_ptr<IGeometry> Geometry() const override { return geometry_; }
    void Geometry(std::shared_ptr<IGeometry> geometry) override { geometry_ = std::move(geometry); }
    esriSpatialRelEnum SpatialRel() const override { return relation_; }
    void SpatialRel(esriSpatialRelEnum relation) override { relation_ = relation; }
    std::string GeometryField() const override { return geometryField_; }
    void GeometryField(const std::string& name) override { geometryField_ = name; }

private:
    QueryFilter base_;
    std::shared_ptr<IGeometry> geometry_;
    esriSpatialRelEnum relation_ = esriSpatialRelIntersects;
    std::string geometryField_;
};

} // namespace tess
