#pragma once
// Internal: shapes as JSON in the map document, true curves kept (see docs/map-document.md).

#include <memory>

#include <nlohmann/json_fwd.hpp>

namespace tess {
class IGeometry;
}

namespace tess::detail {

//! Points, multipoints, polylines, polygons and envelopes; a Fault (InvalidCall) for other shapes.
nlohmann::ordered_json GeometryToJson(const IGeometry& geometry);
//! The shape written by GeometryToJson; malformed input throws nlohmann's exceptions or a Fault
//! (InvalidFileFormat), which the document reader turns into one fault naming the file.
std::shared_ptr<IGeometry> GeometryFromJson(const nlohmann::ordered_json& value);

} // namespace tess::detail
