#include "geodesy/Rings.h"

#include "frame/ErrorHandling.h"
#include "platform/geometry/Line.h"
#include "platform/geometry/Path.h"
#include "platform/geometry/Point.h"
#include "platform/geometry/Polygon.h"
#include "platform/geometry/Polyline.h"
#include "platform/geometry/Ring.h"
#include "platform/system/CheckedArithmetic.h"
#include "platform/system/Clone.h"
#include "platform/system/Fault.h"
#include "platform/ui/UIServices.h"

#include <cmath>
#include <source_location>
#include <string>

namespace tess::MyGeometricOperations {

namespace {

constexpr std::int32_t kMinimumPieces = 8;

// The interface T of object, or a type-mismatch fault naming source.
template <class T, class U>
T& Require(U& object, const char* source) {
    auto* cast = dynamic_cast<T*>(&object);
    if (!cast)
        throw Fault(fault::TypeMismatch, source, "Type mismatch");
    return *cast;
}

// The sequence that stands before every store of a constructed shape: both flags are read,
// whatever they say, then the shape is simplified.
void SimplifyAsStored(IGeometry& geometry) {
    auto& topology = dynamic_cast<ITopologicalOperator&>(geometry);
    [[maybe_unused]] const bool knownSimple = topology.IsKnownSimple();
    [[maybe_unused]] const bool simple = topology.IsSimple();
    topology.Simplify();
}

void AppendAsPath(IGeometryCollection& polyline, const IGeometry& ring) {
    auto path = std::make_shared<Path>();
    path->AddSegmentCollection(dynamic_cast<const ISegmentCollection&>(ring));
    polyline.AddGeometry(path);
}

// The segments of one part, with every true curve replaced by at least kMinimumPieces lines,
// appended to output. Sets sawCurve when a curve was met.
void DensifyPart(const ISegmentCollection& part, ISegmentCollection& output, double totalLength,
                 std::int32_t PieceCount, bool& sawCurve, const char* source) {
    const std::int32_t count = part.SegmentCount();
    for (std::int32_t i = 0; i < count; ++i) {
        const auto segment = part.Segment(i);
        if (segment->GeometryType() == esriGeometryLine) {
            output.AddSegment(*CloneAs<ISegment>(*segment));
            continue;
        }
        sawCurve = true;
        const double share = Checked(source, [&] { return segment->Length() / totalLength * PieceCount; });
        std::int32_t pieces = static_cast<std::int32_t>(std::floor(share));
        if (pieces < kMinimumPieces)
            pieces = kMinimumPieces;
        Path pieceLine;
        Point next;
        auto start = segment->FromPoint();
        for (std::int32_t k = 1; k <= pieces; ++k) {
            segment->QueryPoint(esriNoExtension, k * (1.0 / pieces), true, next);
            Line line;
            line.PutCoords(*start, next);
            pieceLine.AddSegment(*CloneAs<ISegment>(line));
            start = CloneAs<IPoint>(next);
        }
        output.AddSegmentCollection(pieceLine);
    }
}

template <class Result>
std::shared_ptr<Result> ShowCurveFailure(const char* routine, std::source_location where) {
    std::string description;
    try {
        throw;
    } catch (const std::exception& e) {
        description = e.what();
    }
    UI().MessageBox(std::string("Failed in ") + routine + ": \r\nError = " + description +
                        "\r\nLine Number = " + std::to_string(where.line()),
                    MsgBoxButtons::OK, MsgBoxIcon::None, "");
    return nullptr;
}

} // namespace

std::shared_ptr<IPolyline> PolygonToPolyline(const IPolygon& Polygon) {
    return Trapped("PolygonToPolyline ", std::shared_ptr<IPolyline>(), [&] {
        auto polyline = std::make_shared<Polyline>();
        const auto reference = Polygon.SpatialReference();
        const auto& rings = dynamic_cast<const IPolygon4&>(Polygon);
        const std::int32_t exteriorCount = rings.ExteriorRingCount();
        const auto bag = rings.ConnectedComponentBag();
        const auto& components = dynamic_cast<const IGeometryCollection&>(*bag);
        for (std::int32_t c = 0; c < exteriorCount && c < components.GeometryCount(); ++c) {
            const auto component = components.Geometry(c);
            SimplifyAsStored(*component);
            const auto& componentRings = dynamic_cast<const IPolygon4&>(*component);
            const auto exteriorBag = componentRings.ExteriorRingBag();
            const auto exterior =
                std::dynamic_pointer_cast<IRing>(dynamic_cast<const IGeometryCollection&>(*exteriorBag).Geometry(0));
            AppendAsPath(*polyline, *exterior);
            if (componentRings.InteriorRingCount(*exterior) > 0) {
                const auto holesBag = componentRings.InteriorRingBag(*exterior);
                const auto& holes = dynamic_cast<const IGeometryCollection&>(*holesBag);
                for (std::int32_t h = 0; h < holes.GeometryCount(); ++h)
                    AppendAsPath(*polyline, *holes.Geometry(h));
            }
        }
        SimplifyAsStored(*polyline);
        polyline->SpatialReference(reference);
        return std::static_pointer_cast<IPolyline>(polyline);
    });
}

std::shared_ptr<IPolygon> CurveToPolygon(const std::shared_ptr<IGeometry>& Geometry, std::int32_t PieceCount) {
    const auto where = std::source_location::current();
    try {
        const auto reference = Geometry->SpatialReference();
        const double totalLength = Require<const ICurve>(*Geometry, "CurveToPolygon").Length();
        bool sawCurve = false;
        auto target = std::make_shared<Polygon>();
        const bool isPolyline = Geometry->GeometryType() == esriGeometryPolyline;
        const auto& parts = Require<const IGeometryCollection>(*Geometry, "CurveToPolygon");
        for (std::int32_t i = 0; i < parts.GeometryCount(); ++i) {
            std::shared_ptr<IGeometry> part = parts.Geometry(i);
            if (isPolyline) {
                // An open line becomes a closed ring.
                auto closed = std::make_shared<Ring>();
                closed->AddSegmentCollection(Require<const ISegmentCollection>(*part, "CurveToPolygon"));
                closed->Close();
                part = closed;
            } else {
                Require<IRing>(*part, "CurveToPolygon");
            }
            auto ring = std::make_shared<Ring>();
            DensifyPart(Require<const ISegmentCollection>(*part, "CurveToPolygon"), *ring, totalLength, PieceCount, sawCurve,
                        "CurveToPolygon");
            target->AddGeometry(ring);
        }
        if (isPolyline || sawCurve) {
            SimplifyAsStored(*target);
            target->SpatialReference(reference);
            return target;
        }
        // Nothing was densified: the polygon itself is the answer.
        auto same = std::dynamic_pointer_cast<IPolygon>(Geometry);
        same->SpatialReference(reference);
        return same;
    } catch (const std::exception&) {
        return ShowCurveFailure<IPolygon>("CurveToPolygon", where);
    }
}

std::shared_ptr<IPolyline> CurveToPolyline(const std::shared_ptr<IGeometry>& Geometry, std::int32_t PieceCount) {
    const auto where = std::source_location::current();
    try {
        const auto reference = Geometry->SpatialReference();
        const double totalLength = Require<const ICurve>(*Geometry, "CurveToPolyline").Length();
        bool sawCurve = false;
        auto target = std::make_shared<Polyline>();
        const bool isPolygon = Geometry->GeometryType() == esriGeometryPolygon;
        const auto& parts = Require<const IGeometryCollection>(*Geometry, "CurveToPolyline");
        for (std::int32_t i = 0; i < parts.GeometryCount(); ++i) {
            const auto part = parts.Geometry(i);
            Require<IPath>(*part, "CurveToPolyline"); // a polygon's rings are taken as paths
            auto path = std::make_shared<Path>();
            DensifyPart(Require<const ISegmentCollection>(*part, "CurveToPolyline"), *path, totalLength, PieceCount, sawCurve,
                        "CurveToPolyline");
            target->AddGeometry(path);
        }
        if (isPolygon || sawCurve) {
            SimplifyAsStored(*target);
            target->SpatialReference(reference);
            return target;
        }
        auto same = std::dynamic_pointer_cast<IPolyline>(Geometry);
        same->SpatialReference(reference);
        return same;
    } catch (const std::exception&) {
        return ShowCurveFailure<IPolyline>("CurveToPolyline", where);
    }
}

} // namespace tess::MyGeometricOperations
