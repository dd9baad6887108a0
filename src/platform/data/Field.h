#pragma once
// One attribute field and the shape definition of a geometry field.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/data/DataTypes.h"
#include "platform/geometry/GeometryTypes.h"
#include "platform/system/Clone.h"

namespace tess {

class ISpatialReference;

//! Shape definition of a geometry field.
class IGeometryDef {
public:
    virtual ~IGeometryDef() = default;
    virtual esriGeometryType GeometryType() const = 0;
    //! Levels of the spatial index grid; 0 where the storage keeps none.
    virtual std::int32_t GridCount() const = 0;
    //! Cell size of grid level index, in coordinate units; OutOfRange Fault for a level not there.
    virtual double GridSize(std::int32_t index) const = 0;
    virtual std::int32_t AvgNumPoints() const = 0;
    virtual bool HasM() const = 0;
    virtual bool HasZ() const = 0;
    //! May be null (an unknown reference is an IUnknownCoordinateSystem, not null).
    virtual std::shared_ptr<ISpatialReference> SpatialReference() const = 0;
};

class IGeometryDefEdit : public IGeometryDef {
public:
    using IGeometryDef::AvgNumPoints;
    using IGeometryDef::GeometryType;
    using IGeometryDef::GridCount;
    using IGeometryDef::GridSize;
    using IGeometryDef::HasM;
    using IGeometryDef::HasZ;
    using IGeometryDef::SpatialReference;
    virtual void GeometryType(esriGeometryType type) = 0;
    //! Sets the number of levels; new levels have size 0.
    virtual void GridCount(std::int32_t count) = 0;
    virtual void GridSize(std::int32_t index, double size) = 0;
    virtual void AvgNumPoints(std::int32_t count) = 0;
    virtual void HasM(bool hasM) = 0;
    virtual void HasZ(bool hasZ) = 0;
    virtual void SpatialReference(std::shared_ptr<ISpatialReference> reference) = 0;
};

class GeometryDef final : public IGeometryDefEdit, public IClone {
public:
    esriGeometryType GeometryType() const override { return type_; }
    void GeometryType(esriGeometryType type) override { type_ = type; }
    std::int32_t GridCount() const override { return static_cast<std::int32_t>(grid_.size()); }
    void GridCount(std::int32_t count) override;
    double GridSize(std::int32_t index) const override;
    void GridSize(std::int32_t index, double size) override;
    std::int32_t AvgNumPoints() const override { return avgNumPoints_; }
    void AvgNumPoints(std::int32_t count) override { avgNumPoints_ = count; }
    bool HasM() const override { return hasM_; }
    void HasM(bool hasM) override { hasM_ = hasM; }
    bool HasZ() const override { return hasZ_; }
    void HasZ(bool hasZ) override { hasZ_ = hasZ; }
    std::shared_ptr<ISpatialReference> SpatialReference() const override { return sr_; }
    void SpatialReference(std::shared_ptr<ISpatialReference> reference) override { sr_ = std::move(reference); }

    //! The reference is shared, as the host's clone of a definition shares it.
    std::shared_ptr<IClone> Clone() const override;
    bool IsEqual(const IClone& other) const override;

private:
    esriGeometryType type_ = esriGeometryNull;
    std::vector<double> grid_;
    std::int32_t avgNumPoints_ = 0;
    bool hasM_ = false;
    bool hasZ_ = false;
    std::shared_ptr<ISpatialReference> sr_;
};

//! One field of a table. For numbers Precision is the count of digits (a dBASE width) and Scale
//! the digits after the point; Length is the width of text in characters.
class IField {
public:
    virtual ~IField() = default;
    virtual std::string Name() const = 0;
    virtual std::string AliasName() const = 0;
    virtual esriFieldType Type() const = 0;
    virtual std::int32_t Length() const = 0;
    virtual std::int32_t Precision() const = 0;
    virtual std::int32_t Scale() const = 0;
    //! False for fields the storage maintains itself (object IDs, shape length and area).
    virtual bool Editable() const = 0;
    virtual bool IsNullable() const = 0;
    virtual bool Required() const = 0;
    //! The shape definition of a geometry field; null for other fields.
    virtual std::shared_ptr<IGeometryDef> GeometryDef() const = 0;
};

class IFieldEdit : public IField {
public:
    using IField::AliasName;
    using IField::Editable;
    using IField::GeometryDef;
    using IField::IsNullable;
    using IField::Length;
    using IField::Name;
    using IField::Precision;
    using IField::Required;
    using IField::Scale;
    using IField::Type;
    virtual void Name(const std::string& name) = 0;
    virtual void AliasName(const std::string& alias) = 0;
    virtual void Type(esriFieldType type) = 0;
    virtual void Length(std::int32_t length) = 0;
    virtual void Precision(std::int32_t precision) = 0;
    virtual void Scale(std::int32_t scale) = 0;
    virtual void Editable(bool editable) = 0;
    virtual void IsNullable(bool nullable) = 0;
    virtual void Required(bool required) = 0;
    virtual void GeometryDef(std::shared_ptr<IGeometryDef> definition) = 0;
};

//! A new field is a nullable, editable string with no name; the alias follows the name until set.
class Field final : public IFieldEdit, public IClone {
public:
    std::string Name() const override { return name_; }
    void Name(const std::string& name) override { name_ = name; }
    std::string AliasName() const override { return alias_.empty() ? name_ : alias_; }
    void AliasName(const std::string& alias) override { alias_ = alias; }
    esriFieldType Type() const override { return type_; }
    void Type(esriFieldType type) override { type_ = type; }
    std::int32_t Length() const override { return length_; }
    void Length(std::int32_t length) override { length_ = length; }
    std::int32_t Precision() const override { return precision_; }
    void Precision(std::int32_t precision) override { precision_ = precision; }
    std::int32_t Scale() const override { return scale_; }
    void Scale(std::int32_t scale) override { scale_ = scale; }
    bool Editable() const override { return editable_; }
    void Editable(bool editable) override { editable_ = editable; }
    bool IsNullable() const override { return nullable_; }
    void IsNullable(bool nullable) override { nullable_ = nullable; }
    bool Required() const override { return required_; }
    void Required(bool required) override { required_ = required; }
    std::shared_ptr<IGeometryDef> GeometryDef() const override { return geometryDef_; }
    void GeometryDef(std::shared_ptr<IGeometryDef> definition) override { geometryDef_ = std::move(definition); }

    //! A deep copy; the geometry definition is cloned too.
    std::shared_ptr<IClone> Clone() const override;
    bool IsEqual(const IClone& other) const override;

private:
    std::string name_;
    std::string alias_;
    esriFieldType type_ = esriFieldTypeString;
    std::int32_t length_ = 0;
    std::int32_t precision_ = 0;
    std::int32_t scale_ = 0;
    bool editable_ = true;
    bool nullable_ = true;
    bool required_ = false;
    std::shared_ptr<IGeometryDef> geometryDef_;
};

} // namespace tess
