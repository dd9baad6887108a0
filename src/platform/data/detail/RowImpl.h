#pragma once
// Internal: rows and features, stored or not yet stored.

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/data/Row.h"

namespace tess::data {

class TableImpl;
struct ClassSchema;

class RowImpl : public virtual IRow {
public:
    RowImpl(std::shared_ptr<TableImpl> table, std::shared_ptr<const ClassSchema> schema);

    // IRowBuffer
    std::shared_ptr<IFields> Fields() const override;
    Variant Value(std::int32_t index) const override;
    void Value(std::int32_t index, const Variant& value) override;

    // IRow
    std::int32_t OID() const override;
    bool HasOID() const override { return fid_ >= 0; }
    void Store() override;
    void Delete() override;
    std::shared_ptr<ITable> Table() const override;

    // ---- for tables and cursors ----
    const std::shared_ptr<const ClassSchema>& SchemaOf() const { return schema_; }
    void Rebind(std::shared_ptr<const ClassSchema> schema);
    std::vector<Variant>& Values() { return values_; }
    const std::vector<Variant>& Values() const { return values_; }
    std::int64_t Fid() const { return fid_; }
    void Fid(std::int64_t fid) { fid_ = fid; }
    //! The shape (features only; null for rows of tables).
    const std::shared_ptr<IGeometry>& ShapeRef() const { return shape_; }
    void ShapeRef(std::shared_ptr<IGeometry> shape) { shape_ = std::move(shape); }

protected:
    void CheckIndex(std::int32_t index) const;
    std::shared_ptr<TableImpl> table_;
    std::shared_ptr<const ClassSchema> schema_;
    std::vector<Variant> values_; //!< by field index; the OID and shape places are unused
    std::int64_t fid_ = -1;
    std::shared_ptr<IGeometry> shape_;
};

class FeatureImpl final : public RowImpl, public virtual IFeature {
public:
    FeatureImpl(std::shared_ptr<TableImpl> table, std::shared_ptr<const ClassSchema> schema);

    std::shared_ptr<IGeometry> Shape() const override { return shape_; }
    void Shape(std::shared_ptr<IGeometry> shape) override;
    std::shared_ptr<IGeometry> ShapeCopy() const override;
    std::shared_ptr<IEnvelope> Extent() const override;
};

} // namespace tess::data
