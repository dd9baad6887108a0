#pragma once
// The field list of a table or of a table to be created.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/system/Clone.h"

namespace tess {

class IField;

class IFields {
public:
    virtual ~IFields() = default;
    virtual std::int32_t FieldCount() const = 0;
    //! OutOfRange Fault for an index outside the list.
    virtual std::shared_ptr<IField> Field(std::int32_t index) const = 0;
    //! Index of the field of that name, compared without regard to case; -1 when there is none.
    virtual std::int32_t FindField(const std::string& name) const = 0;
    virtual std::int32_t FindFieldByAliasName(const std::string& alias) const = 0;
};

class IFieldsEdit : public IFields {
public:
    using IFields::Field;
    using IFields::FieldCount;
    virtual void AddField(std::shared_ptr<IField> field) = 0;
    //! Grows the list with empty places (to fill with Field(i, field)) or cuts it.
    virtual void FieldCount(std::int32_t count) = 0;
    virtual void Field(std::int32_t index, std::shared_ptr<IField> field) = 0;
    //! Removes the field object itself; a field not in the list is a NotFound Fault.
    virtual void DeleteField(const std::shared_ptr<IField>& field) = 0;
    virtual void DeleteAllFields() = 0;
};

class Fields final : public IFieldsEdit, public IClone {
public:
    Fields() = default;
    explicit Fields(std::vector<std::shared_ptr<IField>> fields) : fields_(std::move(fields)) {}

    std::int32_t FieldCount() const override { return static_cast<std::int32_t>(fields_.size()); }
    std::shared_ptr<IField> Field(std::int32_t index) const override;
    std::int32_t FindField(const std::string& name) const override;
    std::int32_t FindFieldByAliasName(const std::string& alias) const override;

    void AddField(std::shared_ptr<IField> field) override;
    void FieldCount(std::int32_t count) override;
    void Field(std::int32_t index, std::shared_ptr<IField> field) override;
    void DeleteField(const std::shared_ptr<IField>& field) override;
    void DeleteAllFields() override { fields_.clear(); }

    //! Clones every field.
    std::shared_ptr<IClone> Clone() const override;
    bool IsEqual(const IClone& other) const override;

    const std::vector<std::shared_ptr<IField>>& Items() const { return fields_; }

private:
    std::vector<std::shared_ptr<IField>> fields_;
};

} // namespace tess
