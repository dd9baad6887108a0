#include "platform/data/Fields.h"

#include <algorithm>
#include <string>

#include "platform/data/Field.h"
#include "platform/system/Fault.h"
#include "platform/system/PropertySet.h"

namespace tess {
namespace {

constexpr const char* kSource = "tess.Fields";

[[noreturn]] void OutOfRange(std::int32_t index, std::size_t count) {
    throw DataFault(fault::OutOfRange, kSource,
                "Field " + std::to_string(index) + " of a list of " + std::to_string(count));
}

} // namespace

std::shared_ptr<IField> Fields::Field(std::int32_t index) const {
    if (index < 0 || static_cast<std::size_t>(index) >= fields_.size())
        OutOfRange(index, fields_.size());
    return fields_[static_cast<std::size_t>(index)];
}

std::int32_t Fields::FindField(const std::string& name) const {
    for (std::size_t i = 0; i < fields_.size(); ++i)
        if (fields_[i] && NamesEqual(fields_[i]->Name(), name))
            return static_cast<std::int32_t>(i);
    return -1;
}

std::int32_t Fields::FindFieldByAliasName(const std::string& alias) const {
    for (std::size_t i = 0; i < fields_.size(); ++i)
        if (fields_[i] && NamesEqual(fields_[i]->AliasName(), alias))
            return static_cast<std::int32_t>(i);
    return -1;
}

void Fields::AddField(std::shared_ptr<IField> field) {
    if (!field)
        throw DataFault(fault::ObjectNotSet, kSource, "A field to add is not set");
    fields_.push_back(std::move(field));
}

void Fields::FieldCount(std::int32_t count) {
    if (count < 0)
        throw DataFault(fault::InvalidCall, kSource, "A field count cannot be negative");
    fields_.resize(static_cast<std::size_t>(count));
}

void Fields::Field(std::int32_t index, std::shared_ptr<IField> field) {
    if (index < 0 || static_cast<std::size_t>(index) >= fields_.size())
        OutOfRange(index, fields_.size());
    fields_[static_cast<std::size_t>(index)] = std::move(field);
}

void Fields::DeleteField(const std::shared_ptr<IField>& field) {
    const auto it = std::find(fields_.begin(), fields_.end(), field);
    if (it == fields_.end())
        throw DataFault(fault::NotFound, kSource,
                    "The field '" + (field ? field->Name() : std::string()) + "' is not in the list");
    fields_.erase(it);
}

std::shared_ptr<IClone> Fields::Clone() const {
    auto copy = std::make_shared<Fields>();
    for (const auto& f : fields_) {
        const auto* c = dynamic_cast<const IClone*>(f.get());
        copy->fields_.push_back(c ? std::dynamic_pointer_cast<IField>(c->Clone()) : f);
    }
    return copy;
}

bool Fields::IsEqual(const IClone& other) const {
    const auto* o = dynamic_cast<const Fields*>(&other);
    if (!o || o->fields_.size() != fields_.size())
        return false;
    for (std::size_t i = 0; i < fields_.size(); ++i) {
        const auto* a = dynamic_cast<const IClone*>(fields_[i].get());
        const auto* b = dynamic_cast<const IClone*>(o->fields_[i].get());
        if (!(a && b ? a->IsEqual(*b) : fields_[i] == o->fields_[i]))
            return false;
    }
    return true;
}

} // namespace tess
