#include "platform/data/detail/RowImpl.h"

#include "platform/data/Field.h"
#include "platform/data/Fields.h"
#include "platform/data/detail/FieldRules.h"
#include "platform/data/detail/FlatGeometry.h"
#include "platform/data/detail/TableImpl.h"
#include "platform/data/detail/WorkspaceImpl.h"
#include "platform/geometry/Envelope.h"
#include "platform/geometry/Geometry.h"
#include "platform/system/Clone.h"
#include "platform/system/Fault.h"

namespace tess::data {
namespace {
constexpr const char* kSource = "tess.data";
}

RowImpl::RowImpl(std::shared_ptr<TableImpl> table, std::shared_ptr<const ClassSchema> schema)
    : table_(std::move(table)), schema_(std::move(schema)) {
    values_.resize(schema_->slots.size());
}

void RowImpl::Rebind(std::shared_ptr<const ClassSchema> schema) {
    schema_ = std::move(schema);
    values_.resize(schema_->slots.size());
}

std::shared_ptr<IFields> RowImpl::Fields() const { return schema_->fields; }

void RowImpl::CheckIndex(std::int32_t index) const {
    if (index < 0 || static_cast<std::size_t>(index) >= schema_->slots.size())
        throw DataFault(fault::OutOfRange, kSource,
                    "Field " + std::to_string(index) + " of '" + table_->Name() + "', which has " +
                        std::to_string(schema_->slots.size()));
}

Variant RowImpl::Value(std::int32_t index) const {
    CheckIndex(index);
    switch (schema_->slots[static_cast<std::size_t>(index)].kind) {
    case FieldSlot::Oid:
        return fid_ >= 0 ? Variant(static_cast<std::int32_t>(fid_)) : Variant::Null();
    case FieldSlot::Shape:
        return shape_ ? Variant(shape_) : Variant::Null();
    case FieldSlot::Attribute:
        break;
    }
    return values_[static_cast<std::size_t>(index)];
}

void RowImpl::Value(std::int32_t index, const Variant& value) {
    CheckIndex(index);
    const FieldSlot& slot = schema_->slots[static_cast<std::size_t>(index)];
    const std::string name = schema_->fields->Field(index)->Name();
    switch (slot.kind) {
    case FieldSlot::Oid:
        throw DataFault(fault::InvalidCall, kSource,
                    "The object ID field '" + name + "' of '" + table_->Name() + "' cannot be written");
    case FieldSlot::Shape:
        if (value.IsNull() || value.IsEmpty() || value.IsNothing()) {
            shape_ = MakeEmptyShape(schema_->shapeType);
            if (shape_)
                shape_->SpatialReference(schema_->reference);
            return;
        }
        if (value.IsObject()) {
            if (auto g = value.As<IGeometry>()) {
                shape_ = std::move(g);
                return;
            }
        }
        throw DataFault(fault::TypeMismatch, kSource,
                    "The shape field '" + name + "' of '" + table_->Name() + "' takes geometries only");
    case FieldSlot::Attribute:
        break;
    }
    if (!slot.editable)
        throw DataFault(fault::InvalidCall, kSource,
                    "The field '" + name + "' of '" + table_->Name() + "' is kept by the storage and cannot be written");
    values_[static_cast<std::size_t>(index)] = ToFieldType(value, slot.type);
}

std::int32_t RowImpl::OID() const { return fid_ >= 0 ? static_cast<std::int32_t>(fid_) : -1; }

void RowImpl::Store() { table_->StoreRow(*this); }

void RowImpl::Delete() {
    if (fid_ < 0)
        throw DataFault(fault::InvalidCall, kSource, "A row not yet stored in '" + table_->Name() + "' cannot be deleted");
    table_->DeleteStoredRow(fid_);
    fid_ = -1;
}

std::shared_ptr<ITable> RowImpl::Table() const { return table_; }

FeatureImpl::FeatureImpl(std::shared_ptr<TableImpl> table, std::shared_ptr<const ClassSchema> schema)
    : RowImpl(std::move(table), std::move(schema)) {}

void FeatureImpl::Shape(std::shared_ptr<IGeometry> shape) { shape_ = std::move(shape); }

std::shared_ptr<IGeometry> FeatureImpl::ShapeCopy() const { return shape_ ? CloneAs<IGeometry>(*shape_) : nullptr; }

std::shared_ptr<IEnvelope> FeatureImpl::Extent() const {
    if (shape_)
        return shape_->Envelope();
    auto box = std::make_shared<tess::Envelope>();
    box->SpatialReference(schema_->reference);
    return box;
}

} // namespace tess::data
