// Shapes of the model to and from the flat form the storage door speaks.

#include "platform/data/detail/FlatGeometry.h"

#include "platform/geometry/Geometries.h"
#include "platform/geometry/detail/PartData.h"
#include "platform/geometry/detail/SegmentBase.h"

namespace tess::data {
namespace {

// Appends one part, true curves replaced by straight pieces (the storage keeps lines only).
void AppendPart(const detail::PartData& part, FlatGeometry& out) {
    if (part.Empty())
        return;
    out.partStarts.push_back(static_cast<std::int32_t>(out.points.size()));
    if (part.curves.empty())
        out.points.insert(out.points.end(), part.vertices.begin(), part.vertices.end());
    else
        detail::DensifyPart(part, detail::DefaultDensifyLimits(), out.points);
}

template <class Polycurve>
void AppendParts(const Polycurve& shape, FlatGeometry& out) {
    for (std::size_t i = 0; i < shape.PartCount(); ++i)
        AppendPart(shape.Part(i).Data(), out);
}

void FlattenPolygon(const Polygon& polygon, FlatGeometry& out) {
    out.Clear(FlatKind::Polygon);
    AppendParts(polygon, out);
    if (out.PartCount() != polygon.PartCount()) {
        // Empty rings were skipped; owners would no longer line up, so every ring stands alone.
        out.ringOwners.clear();
        return;
    }
    if (polygon.PartCount() == 1)
        out.ringOwners.assign(1, polygon.Part(0).IsExterior() ? 0 : -1);
    else
        out.ringOwners = polygon.RingOwners();
}

} // namespace

FlatKind FlatKindOf(esriGeometryType type) {
    switch (type) {
    case esriGeometryPoint:
        return FlatKind::Point;
    case esriGeometryMultipoint:
        return FlatKind::Multipoint;
    case esriGeometryPolyline:
    case esriGeometryPath:
    case esriGeometryLine:
    case esriGeometryCircularArc:
    case esriGeometryEllipticArc:
    case esriGeometryBezier3Curve:
        return FlatKind::Polyline;
    case esriGeometryPolygon:
    case esriGeometryRing:
    case esriGeometryEnvelope:
        return FlatKind::Polygon;
    default:
        return FlatKind::Null;
    }
}

esriGeometryType GeometryTypeOf(FlatKind kind) {
    switch (kind) {
    case FlatKind::Point:
        return esriGeometryPoint;
    case FlatKind::Multipoint:
        return esriGeometryMultipoint;
    case FlatKind::Polyline:
        return esriGeometryPolyline;
    case FlatKind::Polygon:
        return esriGeometryPolygon;
    case FlatKind::Null:
        break;
    }
    return esriGeometryNull;
}

void Flatten(const IGeometry* shape, FlatGeometry& out) {
    if (!shape) {
        out.Clear(FlatKind::Null);
        return;
    }
    if (const auto* point = dynamic_cast<const Point*>(shape)) {
        out.Clear(FlatKind::Point);
        if (!point->IsEmpty()) {
            out.partStarts.push_back(0);
            out.points.push_back(point->Coords());
        }
        return;
    }
    if (const auto* polygon = dynamic_cast<const Polygon*>(shape)) {
        FlattenPolygon(*polygon, out);
        return;
    }
    if (const auto* polyline = dynamic_cast<const Polyline*>(shape)) {
        out.Clear(FlatKind::Polyline);
        AppendParts(*polyline, out);
        return;
    }
    if (const auto* multipoint = dynamic_cast<const Multipoint*>(shape)) {
        out.Clear(FlatKind::Multipoint);
        for (std::int32_t i = 0; i < multipoint->PointCount(); ++i) {
            out.partStarts.push_back(i);
            out.points.push_back(multipoint->PointAt(static_cast<std::size_t>(i)).Coords());
        }
        return;
    }
    if (const auto* envelope = dynamic_cast<const Envelope*>(shape)) {
        out.Clear(FlatKind::Polygon);
        if (!envelope->IsEmpty()) {
            const WKSEnvelope b = envelope->Box();
            // Clockwise, as an exterior ring.
            out.points = {{b.XMin, b.YMin}, {b.XMin, b.YMax}, {b.XMax, b.YMax}, {b.XMax, b.YMin}, {b.XMin, b.YMin}};
            out.partStarts.push_back(0);
            out.ringOwners.push_back(0);
        }
        return;
    }
    if (const auto* ring = dynamic_cast<const Ring*>(shape)) {
        out.Clear(FlatKind::Polygon);
        AppendPart(ring->Data(), out);
        if (!out.Empty())
            out.ringOwners.push_back(ring->IsExterior() ? 0 : -1);
        return;
    }
    if (const auto* path = dynamic_cast<const Path*>(shape)) {
        out.Clear(FlatKind::Polyline);
        AppendPart(path->Data(), out);
        return;
    }
    if (const auto* segment = dynamic_cast<const ISegment*>(shape)) {
        out.Clear(FlatKind::Polyline);
        if (segment->IsEmpty())
            return;
        const detail::SegmentView view = detail::StoreOf(*segment).View();
        out.partStarts.push_back(0);
        out.points.push_back(view.from);
        detail::Densify(view, detail::DefaultDensifyLimits(), out.points);
        return;
    }
    out.Clear(FlatKind::Null);
}

std::shared_ptr<IGeometry> MakeEmptyShape(esriGeometryType type) {
    switch (type) {
    case esriGeometryPoint:
        return std::make_shared<Point>();
    case esriGeometryMultipoint:
        return std::make_shared<Multipoint>();
    case esriGeometryPolyline:
        return std::make_shared<Polyline>();
    case esriGeometryPolygon:
        return std::make_shared<Polygon>();
    default:
        return nullptr;
    }
}

std::shared_ptr<IGeometry> Unflatten(const FlatGeometry& flat, esriGeometryType type,
                                     const std::shared_ptr<ISpatialReference>& sr, std::shared_ptr<IGeometry> reuse) {
    // Data of another kind than the class declares (a multipoint in a point class) keeps its own kind.
    const esriGeometryType kind = flat.kind == FlatKind::Null ? type : GeometryTypeOf(flat.kind);
    if (kind == esriGeometryPoint) {
        // A recycled point that nobody else holds is refilled rather than made anew.
        std::shared_ptr<Point> point;
        if (reuse && reuse.use_count() == 1)
            point = std::dynamic_pointer_cast<Point>(reuse);
        if (!point)
            point = std::make_shared<Point>();
        if (flat.Empty())
            point->SetEmpty();
        else
            point->PutCoords(flat.points[0].X, flat.points[0].Y);
        point->SpatialReference(sr);
        return point;
    }
    std::shared_ptr<IGeometry> shape;
    switch (kind) {
    case esriGeometryMultipoint: {
        auto mp = std::make_shared<Multipoint>();
        if (!flat.points.empty())
            mp->AddWKSPoints(static_cast<std::int32_t>(flat.points.size()), flat.points.data());
        shape = mp;
        break;
    }
    case esriGeometryPolyline: {
        auto line = std::make_shared<Polyline>();
        for (std::size_t i = 0; i < flat.PartCount(); ++i) {
            auto path = std::make_shared<Path>();
            path->AddWKSPoints(static_cast<std::int32_t>(flat.PartEnd(i) - flat.PartBegin(i)),
                               &flat.points[flat.PartBegin(i)]);
            line->AddPart(std::move(path));
        }
        shape = line;
        break;
    }
    case esriGeometryPolygon: {
        auto polygon = std::make_shared<Polygon>();
        for (std::size_t i = 0; i < flat.PartCount(); ++i) {
            auto ring = std::make_shared<Ring>();
            ring->AddWKSPoints(static_cast<std::int32_t>(flat.PartEnd(i) - flat.PartBegin(i)),
                               &flat.points[flat.PartBegin(i)]);
            polygon->AddPart(std::move(ring));
        }
        shape = polygon;
        break;
    }
    default:
        return nullptr;
    }
    shape->SpatialReference(sr);
    return shape;
}

} // namespace tess::data
