#include "calculator/MeasureCatalogue.h"

#include "platform/carto/Layers.h"
#include "platform/srs/SpatialReference.h"
#include "platform/system/Arrays.h"
#include "platform/system/Variant.h"

namespace tess {
namespace {

constexpr esriGeometryType kPoint = esriGeometryPoint;
constexpr esriGeometryType kMultipoint = esriGeometryMultipoint;
constexpr esriGeometryType kPolyline = esriGeometryPolyline;
constexpr esriGeometryType kPolygon = esriGeometryPolygon;
constexpr std::int32_t kU = spatial_kind::Unknown;
constexpr std::int32_t kP = spatial_kind::Projected;
constexpr std::int32_t kG = spatial_kind::Geographic;
constexpr ValueType kReal = ValueType::Real;
constexpr ValueType kCount = ValueType::Count;

// Null-writer cells: which fields of a row take -9999.
constexpr std::uint8_t kNone = 0;
constexpr std::uint8_t kFirst = 1;
constexpr std::uint8_t kBoth = 3;

// Options 1 to 6 own two combo boxes each, 7 to 11 one.
constexpr std::int32_t kLastTwoBoxOption = 6;
constexpr std::int32_t kSingleBoxOffset = 5; // option 7 answers to flag 12

using M = Measure;

// The names of the same idea differ between kinds on purpose (a polygon centroid is X_Coord,
// Cent_X or Longitude), the azimuths are not marked slow, and the geographic polyline's plain
// "Midpoint" is the spheroidal one: users' tables already carry these names and meanings.
constexpr MeasureRow kRows[] = {
    // Point, unknown
    {kPoint, kU, 1, "Coordinates", {"X_Coord", "Y_Coord"}, {"X-Coordinate", "Y-Coordinate"}, false, kReal, M::Coordinates, kBoth},
    // Point, projected
    {kPoint, kP, 1, "Coordinates", {"X_Coord", "Y_Coord"}, {"Projected X-Coordinate", "Projected Y-Coordinate"}, false, kReal, M::Coordinates, kBoth},
    {kPoint, kP, 2, "Longitude / Latitude", {"Longitude", "Latitude"}, {"Longitude", "Latitude"}, false, kReal, M::LonLat, kBoth},
    // Point, geographic
    {kPoint, kG, 1, "Longitude / Latitude", {"Longitude", "Latitude"}, {"Longitude", "Latitude"}, false, kReal, M::Coordinates, kBoth},

    // Multipoint, unknown
    {kMultipoint, kU, 1, "Centroid", {"Cent_X", "Cent_Y"}, {"Centroid X-Coordinate", "Centroid Y-Coordinate"}, false, kReal, M::Centroid, kBoth},
    {kMultipoint, kU, 2, "Number of Points", {"Points", nullptr}, {"Point Count", nullptr}, false, kCount, M::PointCount, kFirst},
    // Multipoint, projected
    {kMultipoint, kP, 1, "Centroid", {"Cent_X", "Cent_Y"}, {"Centroid X-Coordinate", "Centroid Y-Coordinate"}, false, kReal, M::Centroid, kBoth},
    {kMultipoint, kP, 2, "Sph. Centroid", {"Sph_Cen_X", "Sph_Cen_Y"}, {"Spherical Centroid X-Coordinate", "Spherical Centroid Y-Coordinate"}, true, kReal, M::SphCentroid, kBoth},
    {kMultipoint, kP, 3, "Number of Points", {"Points", nullptr}, {"Point Count", nullptr}, false, kCount, M::PointCount, kFirst},
    // Multipoint, geographic
    {kMultipoint, kG, 1, "Sph. Centroid", {"Sph_Cen_X", "Sph_Cen_Y"}, {"Spherical Centroid X-Coordinate", "Spherical Centroid Y-Coordinate"}, true, kReal, M::SphCentroid, kBoth},
    {kMultipoint, kG, 2, "Number of Points", {"Points", nullptr}, {"Point Count", nullptr}, false, kCount, M::PointCount, kFirst},

    // Polyline, unknown
    {kPolyline, kU, 1, "Length", {"Length", nullptr}, {"Length", nullptr}, false, kReal, M::Length, kFirst},
    {kPolyline, kU, 2, "Starting Point", {"Start_X", "Start_Y"}, {"Start Point X-Coordinate", "Start Point Y-Coordinate"}, false, kReal, M::Start, kBoth},
    {kPolyline, kU, 3, "Midpoint", {"Mid_X", "Mid_Y"}, {"Midpoint X-Coordinate", "Midpoint Y-Coordinate"}, false, kReal, M::Midpoint, kBoth},
    {kPolyline, kU, 4, "Ending Point", {"End_X", "End_Y"}, {"End Point X-Coordinate", "End Point Y-Coordinate"}, false, kReal, M::End, kBoth},
    {kPolyline, kU, 5, "Average Azimuth", {"Azimuth", nullptr}, {"Average Azimuth", nullptr}, false, kReal, M::Bearing, kFirst},
    {kPolyline, kU, 6, "Number of Parts", {"Parts", nullptr}, {"Count of Sub-Polylines", nullptr}, false, kCount, M::Parts, kFirst},
    {kPolyline, kU, 7, "Number of Vertices", {"Vertices", nullptr}, {"Number of Vertices", nullptr}, false, kCount, M::Vertices, kNone},
    // Polyline, projected
    {kPolyline, kP, 1, "Plan. Length", {"Plan_Len", nullptr}, {"Planimetric Length", nullptr}, false, kReal, M::Length, kFirst},
    {kPolyline, kP, 2, "Spheroidal Length", {"Sph_Len", nullptr}, {"Spheroidal Length", nullptr}, true, kReal, M::SphLength, kFirst},
    {kPolyline, kP, 3, "Starting Point", {"Start_X", "Start_Y"}, {"Start Point X-Coordinate", "Start Point Y-Coordinate"}, false, kReal, M::Start, kBoth},
    {kPolyline, kP, 4, "Midpoint", {"Mid_X", "Mid_Y"}, {"Projected Midpoint X-Coordinate", "Projected Midpoint Y-Coordinate"}, false, kReal, M::Midpoint, kBoth},
    {kPolyline, kP, 5, "Spheroidal Midpoint", {"Sph_Mid_X", "Sph_Mid_Y"}, {"Spheroidal Midpoint X-Coordinate", "Spheroidal Midpoint Y-Coordinate"}, true, kReal, M::SphMidpoint, kBoth},
    {kPolyline, kP, 6, "Ending Point", {"End_X", "End_Y"}, {"End Point X-Coordinate", "End Point Y-Coordinate"}, false, kReal, M::End, kBoth},
    {kPolyline, kP, 7, "Projected Azimuth", {"Prj_Az", nullptr}, {"Projected Azimuth", nullptr}, false, kReal, M::Bearing, kFirst},
    {kPolyline, kP, 8, "Sph. Start Azimuth", {"Start_Az", nullptr}, {"Spheroidal Start Azimuth", nullptr}, false, kReal, M::StartAzimuth, kFirst},
    {kPolyline, kP, 9, "Sph. End Azimuth", {"End_Az", nullptr}, {"Spheroidal End Azimuth", nullptr}, false, kReal, M::EndAzimuth, kNone},
    {kPolyline, kP, 10, "Number of Parts", {"Parts", nullptr}, {"Count of Sub-Polylines", nullptr}, false, kCount, M::Parts, kNone},
    {kPolyline, kP, 11, "Number of Vertices", {"Vertices", nullptr}, {"Number of Vertices", nullptr}, false, kCount, M::Vertices, kNone},
    // Polyline, geographic
    {kPolyline, kG, 1, "Spheroidal Length", {"Sph_Len", nullptr}, {"Spheroidal Length", nullptr}, true, kReal, M::SphLength, kFirst},
    {kPolyline, kG, 2, "Starting Point", {"Start_X", "Start_Y"}, {"Start Point Longitude", "Start Point Latitude"}, false, kReal, M::Start, kBoth},
    {kPolyline, kG, 3, "Midpoint", {"Mid_X", "Mid_Y"}, {"Spheroidal Midpoint Longitude", "Spheroidal Midpoint Latitude"}, true, kReal, M::SphMidpoint, kBoth},
    {kPolyline, kG, 4, "Ending Point", {"End_X", "End_Y"}, {"End Point Longitude", "End Point Latitude"}, false, kReal, M::End, kBoth},
    {kPolyline, kG, 5, "Start Azimuth", {"Start_Az", nullptr}, {"Spheroidal Start Azimuth", nullptr}, false, kReal, M::StartAzimuth, kFirst},
    {kPolyline, kG, 6, "End Azimuth", {"End_Az", nullptr}, {"Spheroidal End Azimuth", nullptr}, false, kReal, M::EndAzimuth, kFirst},
    {kPolyline, kG, 7, "Number of Parts", {"Parts", nullptr}, {"Count of Sub-Polylines", nullptr}, false, kCount, M::Parts, kNone},
    {kPolyline, kG, 8, "Number of Vertices", {"Vertices", nullptr}, {"Number of Vertices", nullptr}, false, kCount, M::Vertices, kNone},

    // Polygon, unknown
    {kPolygon, kU, 1, "Area", {"Poly_Area", nullptr}, {"Area", nullptr}, false, kReal, M::Area, kFirst},
    {kPolygon, kU, 2, "Centroid", {"X_Coord", "Y_Coord"}, {"Centroid X-Coordinate", "Centroid Y-Coordinate"}, false, kReal, M::Centroid, kBoth},
    {kPolygon, kU, 3, "Perimeter Length", {"Length", nullptr}, {"Perimeter Length", nullptr}, false, kReal, M::Perimeter, kFirst},
    {kPolygon, kU, 4, "Number of Parts", {"Parts", nullptr}, {"Count of Sub-Polygons", nullptr}, false, kCount, M::Parts, kFirst},
    {kPolygon, kU, 5, "Number of Vertices", {"Vertices", nullptr}, {"Number of Vertices", nullptr}, false, kCount, M::Vertices, kFirst},
    // Polygon, projected
    {kPolygon, kP, 1, "Plan. Area", {"Plan_Area", nullptr}, {"Planimetric Area", nullptr}, false, kReal, M::Area, kFirst},
    {kPolygon, kP, 2, "Spherical Area", {"Sph_Area", nullptr}, {"Spherical Area", nullptr}, true, kReal, M::SphArea, kFirst},
    {kPolygon, kP, 3, "Plan. Centroid", {"Cent_X", "Cent_Y"}, {"Planimetric Centroid X-Coordinate", "Planimetric Centroid Y-Coordinate"}, false, kReal, M::Centroid, kBoth},
    {kPolygon, kP, 4, "Sph. Centroid", {"Sph_Cen_X", "Sph_Cen_Y"}, {"Spherical Centroid X-Coordinate", "Spherical Centroid Y-Coordinate"}, true, kReal, M::SphCentroid, kBoth},
    {kPolygon, kP, 5, "Plan. Perimeter", {"Pl_Perim", nullptr}, {"Projected Perimeter Length", nullptr}, false, kReal, M::Perimeter, kFirst},
    {kPolygon, kP, 6, "Sph. Perimeter", {"Sph_Perim", nullptr}, {"Spheroidal Perimeter Length", nullptr}, true, kReal, M::SphPerimeter, kFirst},
    {kPolygon, kP, 7, "Number of Parts", {"Parts", nullptr}, {"Count of Sub-Polygons", nullptr}, false, kCount, M::Parts, kFirst},
    {kPolygon, kP, 8, "Number of Vertices", {"Vertices", nullptr}, {"Number of Vertices", nullptr}, false, kCount, M::Vertices, kFirst},
    // Polygon, geographic
    {kPolygon, kG, 1, "Sph. Area", {"Sph_Area", nullptr}, {"Spherical Area", nullptr}, true, kReal, M::SphArea, kFirst},
    {kPolygon, kG, 2, "Sph. Centroid", {"Longitude", "Latitude"}, {"Spherical Centroid X-Coordinate", "Spherical Centroid Y-Coordinate"}, true, kReal, M::SphCentroid, kBoth},
    {kPolygon, kG, 3, "Perimeter Length", {"Sph_Len", nullptr}, {"Spheroidal Perimeter Length", nullptr}, true, kReal, M::SphPerimeter, kFirst},
    {kPolygon, kG, 4, "Number of Parts", {"Parts", nullptr}, {"Count of Sub-Polygons", nullptr}, false, kCount, M::Parts, kFirst},
    {kPolygon, kG, 5, "Number of Vertices", {"Vertices", nullptr}, {"Number of Vertices", nullptr}, false, kCount, M::Vertices, kFirst},
};

} // namespace

std::int32_t SpatialKindOf(const std::shared_ptr<ISpatialReference>& reference) {
    if (std::dynamic_pointer_cast<IGeographicCoordinateSystem>(reference))
        return spatial_kind::Geographic;
    if (std::dynamic_pointer_cast<IProjectedCoordinateSystem>(reference))
        return spatial_kind::Projected;
    return spatial_kind::Unknown;
}

std::span<const MeasureRow> MeasureCatalogue() { return kRows; }

std::vector<const MeasureRow*> CatalogueRows(esriGeometryType shapeKind, std::int32_t spatialKind) {
    std::vector<const MeasureRow*> rows;
    for (const MeasureRow& row : kRows)
        if (row.shapeKind == shapeKind && row.spatialKind == spatialKind)
            rows.push_back(&row);
    return rows;
}

const MeasureRow* FindMeasureRow(esriGeometryType shapeKind, std::int32_t spatialKind, std::int32_t id) {
    for (const MeasureRow& row : kRows)
        if (row.shapeKind == shapeKind && row.spatialKind == spatialKind && row.id == id)
            return &row;
    return nullptr;
}

std::int32_t ComboIndex(std::int32_t id, std::int32_t position) {
    if (id < 1 || id > kOptionCount || position < 0 || position > 1)
        return -1;
    if (id <= kLastTwoBoxOption)
        return 2 * (id - 1) + position;
    return position == 0 ? id + kSingleBoxOffset : -1;
}

std::string ComboName(std::int32_t id, std::int32_t position) {
    return "cbx" + std::to_string(id) + std::to_string(position + 1);
}

ComboFlags ComboUseFlagsFor(esriGeometryType shapeKind, std::int32_t spatialKind) {
    ComboFlags flags{};
    for (const MeasureRow* row : CatalogueRows(shapeKind, spatialKind))
        for (std::int32_t position = 0; position < row->FieldCount(); ++position) {
            const std::int32_t index = ComboIndex(row->id, position);
            if (index >= 0)
                flags[static_cast<std::size_t>(index)] = true;
        }
    return flags;
}

std::string ShapeNoun(esriGeometryType shapeKind, std::int64_t count) {
    std::string noun;
    switch (shapeKind) {
    case esriGeometryPoint:
        noun = "Point";
        break;
    case esriGeometryMultipoint:
        noun = "Multipoint";
        break;
    case esriGeometryPolyline:
        noun = "Polyline";
        break;
    case esriGeometryPolygon:
        noun = "Polygon";
        break;
    default:
        return {};
    }
    return count == 1 ? noun : noun + "s";
}

std::shared_ptr<IVariantArray> MakeOptionEntry(const OptionChoice& choice) {
    auto entry = std::make_shared<VarArray>();
    entry->Add(Variant(choice.id));
    entry->Add(Variant(choice.first));
    entry->Add(Variant(choice.second));
    return entry;
}

std::shared_ptr<IVariantArray> MakeGeometryOptions(const std::shared_ptr<IFeatureLayer>& layer, bool allRecords,
                                                   const std::vector<OptionChoice>& choices,
                                                   const ComboFlags& flags, const std::string& spheroidName,
                                                   double semiMajor, double semiMinor, bool geocentric) {
    auto options = std::make_shared<VarArray>();
    options->Add(Variant(layer));
    options->Add(Variant(allRecords));
    auto list = std::make_shared<VarArray>();
    for (const OptionChoice& choice : choices)
        list->Add(Variant(MakeOptionEntry(choice)));
    options->Add(Variant(std::shared_ptr<IVariantArray>(list)));
    std::vector<Variant> flagItems;
    for (bool flag : flags)
        flagItems.emplace_back(flag);
    options->Add(Variant(std::move(flagItems)));
    options->Add(Variant(spheroidName));
    options->Add(Variant(semiMajor));
    options->Add(Variant(semiMinor));
    options->Add(Variant(geocentric));
    return options;
}

} // namespace tess
