#pragma once
// Spatial references as the logic sees them: interfaces only. The OGR/PROJ
// backing lives in the implementation files of this folder.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace tess {

class ISpheroid;
class IDatum;
class IUnit;
class ILinearUnit;
class IAngularUnit;
class IGeographicCoordinateSystem;

//! A reference of coordinates. Geographic, projected and unknown references
//! all implement it; tell them apart with std::dynamic_pointer_cast.
class ISpatialReference {
public:
    virtual ~ISpatialReference() = default;
    //! The name as the host shows it, e.g. "GCS_WGS_1984", "WGS_1984_UTM_Zone_33N", "Unknown".
    virtual std::string Name() const = 0;
    //! EPSG or ESRI code, 0 when the reference has none.
    virtual std::int32_t FactoryCode() const = 0;

    // ISpatialReferenceTolerance / ISpatialReferenceResolution / ISpatialReference2
    //! Cluster tolerance in coordinate units.
    virtual double XYTolerance() const = 0;
    virtual void XYTolerance(double tolerance) = 0;
    //! 3 (esriSRToleranceOK) when the tolerance is usable, other values as the host gives them.
    virtual std::int32_t XYToleranceValid() const = 0;
    //! Smallest coordinate step in coordinate units; coordinates snap to it.
    virtual double XYResolution() const = 0;
    virtual void XYResolution(double resolution) = 0;
    virtual bool IsXYPrecisionEqual(const ISpatialReference& other) const = 0;
    //! Origin and units (1 / resolution) of the coordinate grid that SnapToSpatialReference rounds to.
    virtual void GetFalseOriginAndUnits(double& falseX, double& falseY, double& xyUnits) const = 0;

    // IClone
    virtual std::shared_ptr<ISpatialReference> Clone() const = 0;
    //! Same coordinate system (not merely the same name); precision is not compared.
    virtual bool IsEqual(const ISpatialReference& other) const = 0;

    //! The reference as ESRI-flavoured WKT, as written into a .prj file; empty for unknown.
    virtual std::string ExportToESRI() const = 0;
};

class IUnknownCoordinateSystem : public virtual ISpatialReference {};

class IGeographicCoordinateSystem : public virtual ISpatialReference {
public:
    virtual std::shared_ptr<IDatum> Datum() const = 0;
    virtual std::shared_ptr<IAngularUnit> CoordinateUnit() const = 0;
};

class IProjectedCoordinateSystem : public virtual ISpatialReference {
public:
    virtual std::shared_ptr<IGeographicCoordinateSystem> GeographicCoordinateSystem() const = 0;
    virtual std::shared_ptr<ILinearUnit> CoordinateUnit() const = 0;
};

class IDatum {
public:
    virtual ~IDatum() = default;
    virtual std::string Name() const = 0; //!< e.g. "D_WGS_1984"
    virtual std::shared_ptr<ISpheroid> Spheroid() const = 0;
};

class ISpheroid {
public:
    virtual ~ISpheroid() = default;
    virtual std::string Name() const = 0;      //!< e.g. "WGS_1984"
    virtual double SemiMajorAxis() const = 0;  //!< metres
    virtual double SemiMinorAxis() const = 0;  //!< metres
    virtual double Flattening() const = 0;     //!< (a - b) / a
    virtual std::int32_t FactoryCode() const = 0;
};

class IUnit {
public:
    virtual ~IUnit() = default;
    virtual std::string Name() const = 0; //!< e.g. "Meter", "Degree", "Foot_US"
    virtual std::int32_t FactoryCode() const = 0;
};

class ILinearUnit : public IUnit {
public:
    virtual double MetersPerUnit() const = 0;
};

class IAngularUnit : public IUnit {
public:
    virtual double RadiansPerUnit() const = 0;
};

} // namespace tess
