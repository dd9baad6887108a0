#include "platform/data/Field.h"

#include <string>

#include "platform/srs/SpatialReference.h"
#include "platform/system/Fault.h"

namespace tess {
namespace {

constexpr const char* kGeometryDefSource = "tess.GeometryDef";

bool SameReference(const std::shared_ptr<ISpatialReference>& a, const std::shared_ptr<ISpatialReference>& b) {
    if (!a || !b)
        return !a && !b;
    return a == b || a->IsEqual(*b);
}

} // namespace

void GeometryDef::GridCount(std::int32_t count) {
    if (count < 0)
        throw DataFault(fault::InvalidCall, kGeometryDefSource, "A grid count cannot be negative");
    grid_.resize(static_cast<std::size_t>(count), 0.0);
}

double GeometryDef::GridSize(std::int32_t index) const {
    if (index < 0 || index >= GridCount())
        throw DataFault(fault::OutOfRange, kGeometryDefSource,
                    "Grid level " + std::to_string(index) + " of " + std::to_string(GridCount()));
    return grid_[static_cast<std::size_t>(index)];
}

void GeometryDef::GridSize(std::int32_t index, double size) {
    if (index < 0 || index >= GridCount())
        throw DataFault(fault::OutOfRange, kGeometryDefSource,
                    "Grid level " + std::to_string(index) + " of " + std::to_string(GridCount()));
    grid_[static_cast<std::size_t>(index)] = size;
}

std::shared_ptr<IClone> GeometryDef::Clone() const { return std::make_shared<GeometryDef>(*this); }

bool GeometryDef::IsEqual(const IClone& other) const {
    const auto* o = dynamic_cast<const GeometryDef*>(&other);
    return o && o->type_ == type_ && o->grid_ == grid_ && o->avgNumPoints_ == avgNumPoints_ && o->hasM_ == hasM_ &&
           o->hasZ_ == hasZ_ && SameReference(o->sr_, sr_);
}

std::shared_ptr<IClone> Field::Clone() const {
    auto copy = std::make_shared<Field>(*this);
    if (auto* def = dynamic_cast<const IClone*>(geometryDef_.get()))
        copy->geometryDef_ = std::dynamic_pointer_cast<IGeometryDef>(def->Clone());
    return copy;
}

bool Field::IsEqual(const IClone& other) const {
    const auto* o = dynamic_cast<const Field*>(&other);
    if (!o || o->name_ != name_ || o->AliasName() != AliasName() || o->type_ != type_ || o->length_ != length_ ||
        o->precision_ != precision_ || o->scale_ != scale_ || o->editable_ != editable_ ||
        o->nullable_ != nullable_ || o->required_ != required_)
        return false;
    if (!geometryDef_ || !o->geometryDef_)
        return !geometryDef_ && !o->geometryDef_;
    const auto* mine = dynamic_cast<const IClone*>(geometryDef_.get());
    const auto* theirs = dynamic_cast<const IClone*>(o->geometryDef_.get());
    return mine && theirs && mine->IsEqual(*theirs);
}

} // namespace tess
