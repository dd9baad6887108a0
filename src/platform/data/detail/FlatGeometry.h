#pragma once
// Internal: shapes as plain vertex arrays on their way between the geometry
// model and the storage engine. Buffers are reused from row to row, so a
// cursor reads and writes shapes without allocating once warmed up.

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/geometry/GeometryTypes.h"

namespace tess {
class IGeometry;
class ISpatialReference;
}

namespace tess::data {

enum class FlatKind : std::uint8_t { Null, Point, Multipoint, Polyline, Polygon };

struct FlatGeometry {
    FlatKind kind = FlatKind::Null;
    //! Every vertex of every part, parts one after the other; a closed ring repeats its first vertex.
    std::vector<WKSPoint> points;
    //! Index in points where each part (path, ring, or point of a multipoint) starts.
    std::vector<std::int32_t> partStarts;
    //! Polygons being written: for each ring, the index of the exterior ring it belongs to (itself
    //! for an exterior ring, -1 for a hole outside every exterior ring).
    std::vector<std::int32_t> ringOwners;

    void Clear(FlatKind k) {
        kind = k;
        points.clear();
        partStarts.clear();
        ringOwners.clear();
    }
    bool Empty() const { return points.empty(); }
    std::size_t PartCount() const { return partStarts.size(); }
    std::size_t PartBegin(std::size_t i) const { return static_cast<std::size_t>(partStarts[i]); }
    std::size_t PartEnd(std::size_t i) const {
        return i + 1 < partStarts.size() ? static_cast<std::size_t>(partStarts[i + 1]) : points.size();
    }
};

FlatKind FlatKindOf(esriGeometryType type);
esriGeometryType GeometryTypeOf(FlatKind kind);

//! Flattens a shape of the model (point, multipoint, polyline, polygon, envelope as a polygon, or a
//! bare path, ring or segment as a one-part line or polygon). True curves are densified with the
//! geometry library's limits. Ring owners are filled for polygons. A FlatKind::Null for null input.
void Flatten(const IGeometry* shape, FlatGeometry& out);

//! Builds a shape of the model of the given type from the flat form, reusing `reuse` when it is of
//! that type and not shared with anyone else (use_count 1). An empty shape for empty input.
std::shared_ptr<IGeometry> Unflatten(const FlatGeometry& flat, esriGeometryType type,
                                     const std::shared_ptr<ISpatialReference>& sr, std::shared_ptr<IGeometry> reuse);

//! A new, empty shape of the type (a Point for esriGeometryPoint...); null for other types.
std::shared_ptr<IGeometry> MakeEmptyShape(esriGeometryType type);

} // namespace tess::data
