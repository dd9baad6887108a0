#pragma once
// Plain-valued spheroids, datums and units: what the references hand out,
// and what the catalogue builds for spheroids of its own.

#include <cstdint>
#include <memory>
#include <string>

#include "platform/srs/SpatialReference.h"
#include "platform/system/Clone.h"

namespace tess {

//! A spheroid by its axes. Implements IClone, so a catalogue can keep a private copy.
class Spheroid final : public ISpheroid, public IClone {
public:
    //! Axes in metres, semiMajor >= semiMinor > 0; code 0 for a spheroid of no authority.
    Spheroid(std::string name, double semiMajor, double semiMinor, std::int32_t code = 0);

    std::string Name() const override { return name_; }
    double SemiMajorAxis() const override { return semiMajor_; }
    double SemiMinorAxis() const override { return semiMinor_; }
    double Flattening() const override { return (semiMajor_ - semiMinor_) / semiMajor_; }
    std::int32_t FactoryCode() const override { return code_; }

    std::shared_ptr<IClone> Clone() const override { return std::make_shared<Spheroid>(*this); }
    //! Same axes, bit for bit; names and codes are not compared.
    bool IsEqual(const IClone& other) const override;

private:
    std::string name_;
    double semiMajor_;
    double semiMinor_;
    std::int32_t code_;
};

class Datum final : public IDatum {
public:
    Datum(std::string name, std::shared_ptr<ISpheroid> spheroid, std::int32_t code = 0)
        : name_(std::move(name)), spheroid_(std::move(spheroid)), code_(code) {}
    std::string Name() const override { return name_; }
    std::shared_ptr<ISpheroid> Spheroid() const override { return spheroid_; }
    std::int32_t FactoryCode() const { return code_; }

private:
    std::string name_;
    std::shared_ptr<ISpheroid> spheroid_;
    std::int32_t code_;
};

class LinearUnit final : public ILinearUnit {
public:
    LinearUnit(std::string name, double metersPerUnit, std::int32_t code = 0)
        : name_(std::move(name)), metersPerUnit_(metersPerUnit), code_(code) {}
    std::string Name() const override { return name_; }
    std::int32_t FactoryCode() const override { return code_; }
    double MetersPerUnit() const override { return metersPerUnit_; }

private:
    std::string name_;
    double metersPerUnit_;
    std::int32_t code_;
};

class AngularUnit final : public IAngularUnit {
public:
    AngularUnit(std::string name, double radiansPerUnit, std::int32_t code = 0)
        : name_(std::move(name)), radiansPerUnit_(radiansPerUnit), code_(code) {}
    std::string Name() const override { return name_; }
    std::int32_t FactoryCode() const override { return code_; }
    double RadiansPerUnit() const override { return radiansPerUnit_; }

private:
    std::string name_;
    double radiansPerUnit_;
    std::int32_t code_;
};

} // namespace tess
