#include "platform/framework/detail/GeometryJson.h"

#include <cmath>
#include <string>

#include <nlohmann/json.hpp>

#include "platform/geometry/Geometries.h"
#include "platform/system/Fault.h"

namespace tess::detail {
namespace {

using json = nlohmann::ordered_json;

constexpr const char* kSource = "MapDocument";

[[noreturn]] void Malformed(const std::string& what) {
    throw Fault(fault::InvalidFileFormat, kSource, what);
}

json XY(double x, double y) { return json::array({x, y}); }
json XY(const IPoint& p) { return XY(p.X(), p.Y()); }

WKSPoint ReadXY(const json& value) {
    if (!value.is_array() || value.size() != 2 || !value[0].is_number() || !value[1].is_number())
        Malformed("a coordinate pair must be written [x, y], not " + value.dump());
    return {value[0].get<double>(), value[1].get<double>()};
}

double ReadNumber(const json& object, const char* member) {
    const json& value = object.at(member);
    if (!value.is_number())
        Malformed(std::string("\"") + member + "\" must be a number");
    return value.get<double>();
}

json SegmentToJson(const ISegment& segment) {
    if (auto* arc = dynamic_cast<const ICircularArc*>(&segment)) {
        return json{{"arc",
                     {{"to", XY(*arc->ToPoint())},
                      {"center", XY(*arc->CenterPoint())},
                      {"radius", arc->Radius()},
                      {"fromAngle", arc->FromAngle()},
                      {"centralAngle", arc->CentralAngle()}}}};
    }
    if (auto* arc = dynamic_cast<const IEllipticArc*>(&segment)) {
        return json{{"ellipticArc",
                     {{"to", XY(*arc->ToPoint())},
                      {"center", XY(*arc->CenterPoint())},
                      {"rotation", arc->Rotation()},
                      {"semiMajor", arc->SemiMajor()},
                      {"minorMajorRatio", arc->MinorMajorRatio()},
                      {"fromAngle", arc->FromAngle()},
                      {"centralAngle", arc->CentralAngle()}}}};
    }
    if (auto* bezier = dynamic_cast<const IBezierCurve*>(&segment)) {
        Point c1;
        Point c2;
        bezier->QueryCoord(1, c1);
        bezier->QueryCoord(2, c2);
        return json{{"bezier", {{"to", XY(*bezier->ToPoint())}, {"controlPoints", json::array({XY(c1), XY(c2)})}}}};
    }
    return XY(*segment.ToPoint());
}

//! [start, then for each segment: [x, y] for a line or an object for a true curve].
template <class PartT>
json PartToJson(const PartT& part) {
    json items = json::array();
    const auto vertices = part.Vertices();
    if (vertices.empty())
        return items;
    items.push_back(XY(vertices[0].X, vertices[0].Y));
    if (!part.HasNonLinearSegments()) {
        for (std::size_t i = 1; i < vertices.size(); ++i)
            items.push_back(XY(vertices[i].X, vertices[i].Y));
        return items;
    }
    for (std::int32_t i = 0; i < part.SegmentCount(); ++i) {
        auto segment = part.Segment(i);
        if (segment->GeometryType() == esriGeometryLine)
            items.push_back(XY(vertices[static_cast<std::size_t>(i) + 1].X, vertices[static_cast<std::size_t>(i) + 1].Y));
        else
            items.push_back(SegmentToJson(*segment));
    }
    return items;
}

std::shared_ptr<ISegment> SegmentFromJson(const json& item, WKSPoint start) {
    Point center;
    if (item.contains("arc")) {
        const json& arc = item["arc"];
        const WKSPoint c = ReadXY(arc.at("center"));
        center.PutCoords(c.X, c.Y);
        auto segment = std::make_shared<CircularArc>();
        segment->PutCoordsByAngle(center, ReadNumber(arc, "fromAngle"), ReadNumber(arc, "centralAngle"),
                                  ReadNumber(arc, "radius"));
        return segment;
    }
    if (item.contains("ellipticArc")) {
        const json& arc = item["ellipticArc"];
        const WKSPoint c = ReadXY(arc.at("center"));
        center.PutCoords(c.X, c.Y);
        auto segment = std::make_shared<EllipticArc>();
        segment->PutCoordsByAngle(center, ReadNumber(arc, "rotation"), ReadNumber(arc, "semiMajor"),
                                  ReadNumber(arc, "minorMajorRatio"), ReadNumber(arc, "fromAngle"),
                                  ReadNumber(arc, "centralAngle"));
        return segment;
    }
    if (item.contains("bezier")) {
        const json& curve = item["bezier"];
        const json& controls = curve.at("controlPoints");
        if (!controls.is_array() || controls.size() != 2)
            Malformed("a Bezier curve has two control points");
        const WKSPoint a = ReadXY(controls[0]);
        const WKSPoint b = ReadXY(controls[1]);
        const WKSPoint t = ReadXY(curve.at("to"));
        Point from(start.X, start.Y);
        Point c1(a.X, a.Y);
        Point c2(b.X, b.Y);
        Point to(t.X, t.Y);
        auto segment = std::make_shared<BezierCurve>();
        segment->PutCoords(from, c1, c2, to);
        return segment;
    }
    Malformed("unknown segment " + item.dump());
}

template <class PartT>
std::shared_ptr<PartT> PartFromJson(const json& items) {
    if (!items.is_array())
        Malformed("a part must be a list of vertices and curves");
    auto part = std::make_shared<PartT>();
    bool first = true;
    for (const json& item : items) {
        if (item.is_array()) {
            const WKSPoint p = ReadXY(item);
            part->AddWKSPoints(1, &p);
        } else if (first) {
            Malformed("a part must start with a vertex");
        } else {
            part->AddSegment(*SegmentFromJson(item, part->Vertices().back()));
        }
        first = false;
    }
    return part;
}

template <class Owner, class PartT>
std::shared_ptr<Owner> PartsFromJson(const json& value, const char* member) {
    auto owner = std::make_shared<Owner>();
    const json& parts = value.at(member);
    if (!parts.is_array())
        Malformed(std::string("\"") + member + "\" must be a list");
    for (const json& items : parts)
        owner->AddPart(PartFromJson<PartT>(items));
    return owner;
}

} // namespace

json GeometryToJson(const IGeometry& geometry) {
    switch (geometry.GeometryType()) {
    case esriGeometryPoint: {
        const auto& point = dynamic_cast<const IPoint&>(geometry);
        json value{{"type", "point"}};
        if (!point.IsEmpty()) {
            value["x"] = point.X();
            value["y"] = point.Y();
        }
        return value;
    }
    case esriGeometryEnvelope: {
        const auto& box = dynamic_cast<const IEnvelope&>(geometry);
        json value{{"type", "envelope"}};
        if (!box.IsEmpty()) {
            value["xmin"] = box.XMin();
            value["ymin"] = box.YMin();
            value["xmax"] = box.XMax();
            value["ymax"] = box.YMax();
        }
        return value;
    }
    case esriGeometryMultipoint: {
        const auto& points = dynamic_cast<const IPointCollection&>(geometry);
        json list = json::array();
        Point p;
        for (std::int32_t i = 0; i < points.PointCount(); ++i) {
            points.QueryPoint(i, p);
            list.push_back(XY(p));
        }
        json value{{"type", "multipoint"}};
        value["points"] = std::move(list);
        return value;
    }
    case esriGeometryPolyline: {
        const auto& polyline = dynamic_cast<const Polyline&>(geometry);
        json paths = json::array();
        for (std::size_t i = 0; i < polyline.PartCount(); ++i)
            paths.push_back(PartToJson(polyline.Part(i)));
        json value{{"type", "polyline"}};
        value["paths"] = std::move(paths);
        return value;
    }
    case esriGeometryPolygon: {
        const auto& polygon = dynamic_cast<const Polygon&>(geometry);
        json rings = json::array();
        for (std::size_t i = 0; i < polygon.PartCount(); ++i)
            rings.push_back(PartToJson(polygon.Part(i)));
        json value{{"type", "polygon"}};
        value["rings"] = std::move(rings);
        return value;
    }
    default:
        throw Fault(fault::InvalidCall, kSource,
                    "A shape of type " + std::to_string(geometry.GeometryType()) + " cannot be written to a map document");
    }
}

std::shared_ptr<IGeometry> GeometryFromJson(const json& value) {
    if (!value.is_object())
        Malformed("a shape must be an object");
    const std::string type = value.at("type").get<std::string>();
    if (type == "point") {
        auto point = std::make_shared<Point>();
        if (value.contains("x") || value.contains("y"))
            point->PutCoords(ReadNumber(value, "x"), ReadNumber(value, "y"));
        return point;
    }
    if (type == "envelope") {
        auto box = std::make_shared<Envelope>();
        if (value.contains("xmin"))
            box->PutCoords(ReadNumber(value, "xmin"), ReadNumber(value, "ymin"), ReadNumber(value, "xmax"),
                           ReadNumber(value, "ymax"));
        return box;
    }
    if (type == "multipoint") {
        auto multipoint = std::make_shared<Multipoint>();
        for (const json& item : value.at("points")) {
            const WKSPoint p = ReadXY(item);
            multipoint->AddWKSPoints(1, &p);
        }
        return multipoint;
    }
    if (type == "polyline")
        return PartsFromJson<Polyline, Path>(value, "paths");
    if (type == "polygon")
        return PartsFromJson<Polygon, Ring>(value, "rings");
    Malformed("unknown shape type \"" + type + "\"");
}

} // namespace tess::detail
