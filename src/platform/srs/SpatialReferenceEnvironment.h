#pragma once
// Predefined references, spheroids and datums by their EPSG or ESRI code, and
// references read from WKT or .prj text. Codes answer from the coordinate
// database installed with the engine; nothing is tabulated here.

#include <cstdint>
#include <memory>
#include <string>

namespace tess {

class ISpatialReference;
class IGeographicCoordinateSystem;
class IProjectedCoordinateSystem;
class IUnknownCoordinateSystem;
class ISpheroid;
class IDatum;

//! Makes predefined references. Every Create... throws a Fault
//! (fault::SpatialReferenceFailed) naming the code when the code is unknown.
class ISpatialReferenceFactory {
public:
    virtual ~ISpatialReferenceFactory() = default;

    //! A geographic reference by EPSG or ESRI code (4326, 104905...).
    virtual std::shared_ptr<IGeographicCoordinateSystem> CreateGeographicCoordinateSystem(std::int32_t code) const = 0;
    //! A projected reference by EPSG or ESRI code (32633, 3857, 102100...).
    virtual std::shared_ptr<IProjectedCoordinateSystem> CreateProjectedCoordinateSystem(std::int32_t code) const = 0;
    //! A spheroid by EPSG or ESRI code (7030, 7008, 107900...); axes in metres.
    virtual std::shared_ptr<ISpheroid> CreateSpheroid(std::int32_t code) const = 0;
    //! A datum by EPSG or ESRI code (6326, 106905...).
    virtual std::shared_ptr<IDatum> CreateDatum(std::int32_t code) const = 0;
    //! Reads a .prj file (ESRI WKT). A missing file gives an unknown reference; unreadable content is a
    //! Fault naming the path.
    virtual std::shared_ptr<ISpatialReference> CreateESRISpatialReferenceFromPRJFile(const std::string& path) const = 0;
    //! Any WKT flavour (ESRI, WKT1, WKT2), PROJ string or "AUTHORITY:CODE". Empty text gives an unknown
    //! reference; unreadable text is a Fault.
    virtual std::shared_ptr<ISpatialReference> CreateFromWkt(const std::string& text) const = 0;
    virtual std::shared_ptr<IUnknownCoordinateSystem> CreateUnknown() const = 0;
};

//! The factory. Stateless and cheap to make; safe to create wherever one is needed.
//!
//! References come with the host's default XY precision, in their coordinate units:
//! - geographic: resolution 1e-9 degree, tolerance 8.983152841195215e-09 degree (1 mm at the
//!   equator), false origin (-400, -400);
//! - projected: resolution 0.0001 m and tolerance 0.001 m, converted to the linear unit;
//! - unknown: resolution 0.0001, tolerance 0.001.
//! Projected and unknown grids are centred on 0 and 2^53 resolution steps wide: the false origin
//! is -2^52 x resolution on both axes (-450359962737.0496 for 0.0001), so every grid coordinate is
//! an integer a double holds exactly.
//! XYToleranceValid answers 3 for a usable tolerance, 1 for one that is not a positive number and
//! 2 for one below the resolution.
class SpatialReferenceEnvironment : public ISpatialReferenceFactory {
public:
    std::shared_ptr<IGeographicCoordinateSystem> CreateGeographicCoordinateSystem(std::int32_t code) const override;
    std::shared_ptr<IProjectedCoordinateSystem> CreateProjectedCoordinateSystem(std::int32_t code) const override;
    std::shared_ptr<ISpheroid> CreateSpheroid(std::int32_t code) const override;
    std::shared_ptr<IDatum> CreateDatum(std::int32_t code) const override;
    std::shared_ptr<ISpatialReference> CreateESRISpatialReferenceFromPRJFile(const std::string& path) const override;
    std::shared_ptr<ISpatialReference> CreateFromWkt(const std::string& text) const override;
    std::shared_ptr<IUnknownCoordinateSystem> CreateUnknown() const override;

    //! A spheroid as a user names it: "AUTHORITY:CODE" ("EPSG:7030", "ESRI:107905") or one of the
    //! engine's own ellipsoid names of PROJ strings ("WGS84", "GRS80", "clrk66", "intl"; case,
    //! blanks, "_", "-" and "." do not matter). Axes in metres. nullptr when the engine knows none.
    std::shared_ptr<ISpheroid> FindSpheroid(const std::string& text) const;
};

} // namespace tess
