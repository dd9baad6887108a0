#pragma once
// The catalogue of the geometry calculator: every measure that a layer offers,
// addressed by shape kind, coordinate kind and option id. One table serves the
// dialog (captions, default fields), the run (report labels, slow marks), the
// measure routines (what to compute and the type of the value) and the null
// writer (which fields take -9999 for an empty shape). The same option id
// means a different measure in each of the twelve combinations.

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "platform/geometry/GeometryTypes.h"

namespace tess {

class ISpatialReference;
class IVariantArray;
class IFeatureLayer;

//! Coordinate kind of a layer, from its spatial reference.
namespace spatial_kind {
inline constexpr std::int32_t Unknown = 0;
inline constexpr std::int32_t Projected = 1;
inline constexpr std::int32_t Geographic = 2;
} // namespace spatial_kind

//! 2 for a geographic reference, 1 for a projected one, 0 for anything else or none.
std::int32_t SpatialKindOf(const std::shared_ptr<ISpatialReference>& reference);

//! What a measure routine computes. The routine of the shape kind reads it together with the
//! coordinate kind: a geographic polyline's midpoint is SphMidpoint, for instance.
enum class Measure {
    Coordinates,  //!< X and Y of a point as stored
    LonLat,       //!< a projected point in the geographic system beneath its projection
    Centroid,     //!< planar centre: mean of a multipoint, centre of gravity of a polygon
    SphCentroid,  //!< centre on the spheroid (multipoint) or the sphere (polygon)
    PointCount,   //!< points of a multipoint
    Length,       //!< planar length of a polyline
    SphLength,    //!< spheroidal length of a polyline
    Start,        //!< first point of a polyline
    Midpoint,     //!< planar midpoint of a polyline
    SphMidpoint,  //!< spheroidal midpoint of a polyline
    End,          //!< last point of a polyline
    Bearing,      //!< planar bearing from the first point to the last
    StartAzimuth, //!< spheroidal azimuth at the first point, towards the last
    EndAzimuth,   //!< spheroidal azimuth of arrival at the last point
    Parts,        //!< parts of a polyline, exterior rings of a polygon
    Vertices,     //!< all vertices
    Area,         //!< planar area
    SphArea,      //!< area on the sphere of the spheroid
    Perimeter,    //!< planar length of all rings
    SphPerimeter, //!< spheroidal length of all rings
};

//! How a value reaches the row: a double, or a 32-bit integer for counts.
enum class ValueType { Real, Count };

//! One row of the catalogue.
struct MeasureRow {
    esriGeometryType shapeKind;
    std::int32_t spatialKind;
    std::int16_t id;         //!< option id, 1 to 11: check box chk<id>
    const char* caption;     //!< of the check box
    const char* fields[2];   //!< default field names; the second is null for one-field measures
    const char* labels[2];   //!< labels of the run's field report, one per field
    bool slow;               //!< makes the run count as slow for its progress display
    ValueType valueType;
    Measure measure;
    //! Fields that take -9999 for an empty shape: bit 0 the first, bit 1 the second. Six polyline
    //! measures keep what their fields held, and ids above 8 are never written (see WriteNullValues).
    std::uint8_t nullFields;

    std::int32_t FieldCount() const { return fields[1] ? 2 : 1; }
};

//! The 55 rows, grouped by shape kind and coordinate kind, each group in option order.
std::span<const MeasureRow> MeasureCatalogue();
//! The rows of one shape kind and coordinate kind, in option order (empty for other shape kinds).
std::vector<const MeasureRow*> CatalogueRows(esriGeometryType shapeKind, std::int32_t spatialKind);
//! The row of an option id; null when the combination has none.
const MeasureRow* FindMeasureRow(esriGeometryType shapeKind, std::int32_t spatialKind, std::int32_t id);

//! Check boxes and combo boxes of the options.
inline constexpr std::int32_t kOptionCount = 11;
inline constexpr std::int32_t kComboCount = 17;
using ComboFlags = std::array<bool, kComboCount>;

//! The index in ComboUseFlags of an option's first (position 0) or second (1) combo box; -1 for
//! a second box of options 7 to 11, which have none.
std::int32_t ComboIndex(std::int32_t id, std::int32_t position);
//! The combo box's name: cbx11, cbx12, ... cbx62, cbx71, cbx81, cbx91, cbx101, cbx111.
std::string ComboName(std::int32_t id, std::int32_t position);
//! True exactly where the catalogue row of the combo's option has a field in that position.
ComboFlags ComboUseFlagsFor(esriGeometryType shapeKind, std::int32_t spatialKind);

//! The report noun of a shape kind: "Point" for one record, "Points" for any other count.
std::string ShapeNoun(esriGeometryType shapeKind, std::int64_t count);

// The options array that the dialog hands the run (clsExtension.GeometryOptions), by position.
namespace geometry_options {
inline constexpr std::int32_t Layer = 0;
inline constexpr std::int32_t AllRecords = 1;
inline constexpr std::int32_t OptionList = 2;
inline constexpr std::int32_t ComboUseFlags = 3;
inline constexpr std::int32_t SpheroidName = 4;
inline constexpr std::int32_t SemiMajor = 5;
inline constexpr std::int32_t SemiMinor = 6;
inline constexpr std::int32_t Geocentric = 7;
} // namespace geometry_options

//! One ticked option as the dialog hands it on: id and the texts of its combo boxes.
struct OptionChoice {
    std::int16_t id = 0;
    std::string first;
    std::string second; //!< empty for options 7 to 11
};

//! The options array of eight elements; each choice becomes an OptionEntry of three.
std::shared_ptr<IVariantArray> MakeGeometryOptions(const std::shared_ptr<IFeatureLayer>& layer, bool allRecords,
                                                   const std::vector<OptionChoice>& choices,
                                                   const ComboFlags& flags, const std::string& spheroidName,
                                                   double semiMajor, double semiMinor, bool geocentric);
//! An OptionEntry: 16-bit id, first name, second name.
std::shared_ptr<IVariantArray> MakeOptionEntry(const OptionChoice& choice);

} // namespace tess
