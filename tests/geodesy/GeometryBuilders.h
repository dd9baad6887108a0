#pragma once
// Shapes for the geodesy tests, from lists of (longitude, latitude) pairs.

#include "platform/geometry/Multipoint.h"
#include "platform/geometry/Path.h"
#include "platform/geometry/Point.h"
#include "platform/geometry/Polygon.h"
#include "platform/geometry/Polyline.h"
#include "platform/geometry/Ring.h"
#include "platform/srs/SpatialReference.h"
#include "platform/srs/SpatialReferenceEnvironment.h"

#include <memory>
#include <vector>

namespace tess::testing {

using Coords = std::vector<WKSPoint>;

inline std::shared_ptr<IGeographicCoordinateSystem> Wgs84() {
    return SpatialReferenceEnvironment().CreateGeographicCoordinateSystem(4326);
}

//! A polygon of the rings as given (closed when the last point differs from the first),
//! neither simplified nor reoriented.
inline std::shared_ptr<Polygon> MakePolygon(const std::vector<Coords>& rings,
                                            std::shared_ptr<ISpatialReference> reference = Wgs84()) {
    auto polygon = std::make_shared<Polygon>();
    for (const Coords& coords : rings) {
        auto ring = std::make_shared<Ring>();
        ring->AddWKSPoints(static_cast<std::int32_t>(coords.size()), coords.data());
        ring->Close();
        polygon->AddGeometry(ring);
    }
    polygon->SpatialReference(std::move(reference));
    return polygon;
}

inline std::shared_ptr<Polyline> MakePolyline(const std::vector<Coords>& paths,
                                              std::shared_ptr<ISpatialReference> reference = Wgs84()) {
    auto polyline = std::make_shared<Polyline>();
    for (const Coords& coords : paths) {
        auto path = std::make_shared<Path>();
        path->AddWKSPoints(static_cast<std::int32_t>(coords.size()), coords.data());
        polyline->AddGeometry(path);
    }
    polyline->SpatialReference(std::move(reference));
    return polyline;
}

inline std::shared_ptr<Multipoint> MakeMultipoint(const Coords& coords,
                                                  std::shared_ptr<ISpatialReference> reference = Wgs84()) {
    auto multipoint = std::make_shared<Multipoint>();
    multipoint->AddWKSPoints(static_cast<std::int32_t>(coords.size()), coords.data());
    multipoint->SpatialReference(std::move(reference));
    return multipoint;
}

inline std::shared_ptr<Point> MakePoint(double lon, double lat,
                                        std::shared_ptr<ISpatialReference> reference = Wgs84()) {
    auto point = std::make_shared<Point>(lon, lat);
    point->SpatialReference(std::move(reference));
    return point;
}

//! The ring reversed: clockwise becomes counter-clockwise.
inline Coords Reversed(Coords coords) { return Coords(coords.rbegin(), coords.rend()); }

} // namespace tess::testing
