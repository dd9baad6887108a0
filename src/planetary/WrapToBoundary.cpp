#include "planetary/WrapToBoundary.h"

#include <cstdint>
#include <string>
#include <vector>

#include "frame/ErrorHandling.h"
#include "platform/geometry/Envelope.h"
#include "platform/geometry/GeometryBag.h"
#include "platform/geometry/Multipoint.h"
#include "platform/geometry/Point.h"
#include "platform/geometry/Polygon.h"
#include "platform/geometry/Polyline.h"
#include "platform/geometry/Ring.h"
#include "platform/system/Arrays.h"
#include "platform/system/CheckedArithmetic.h"
#include "platform/system/Clone.h"
#include "platform/system/Fault.h"
#include "platform/ui/UIServices.h"

namespace tess::MyGeometricOperations {
namespace {

constexpr const char* kSource = "MyGeometricOperations";

[[noreturn]] void ObjectNotSet() {
    throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
}

//! The box's own width and height; a box without either would make the walks below endless.
void CheckBox(double West, double East, double South, double North, double& width, double& height) {
    FloatingPointCheck check;
    width = East - West;
    height = North - South;
    check.Check("WrapToBoundary");
    if (!(width > 0.0) || !(height > 0.0))
        throw Fault(fault::InvalidCall, kSource, "Invalid procedure call or argument");
}

std::shared_ptr<IGeometry> WrapPoint(const IPoint& in, double West, double East, double South, double North,
                                     double width, double height) {
    double x = in.X();
    double y = in.Y();
    while (x > East)
        x -= width;
    while (x < West)
        x += width;
    while (y > North)
        y -= height;
    while (y < South)
        y += height;
    auto out = std::make_shared<Point>(x, y);
    out->SpatialReference(in.SpatialReference());
    return out;
}

std::shared_ptr<Polygon> TilePolygon(double tileX, double tileY, double width, double height) {
    const WKSPoint corners[] = {{tileX, tileY},
                                {tileX, tileY + height},
                                {tileX + width, tileY + height},
                                {tileX + width, tileY},
                                {tileX, tileY}};
    auto ring = std::make_shared<Ring>();
    ring->AddWKSPoints(static_cast<std::int32_t>(std::size(corners)), corners);
    auto tile = std::make_shared<Polygon>();
    tile->AddGeometry(ring);
    tile->Simplify();
    return tile;
}

ITopologicalOperator& Topology(IGeometry& geometry) { return dynamic_cast<ITopologicalOperator&>(geometry); }

void SimplifyPiece(IGeometry& geometry) {
    ITopologicalOperator& topology = Topology(geometry);
    topology.IsKnownSimple();
    topology.Simplify();
}

std::shared_ptr<IGeometry> EmptyTarget(esriGeometryType type) {
    switch (type) {
    case esriGeometryPolyline:
        return std::make_shared<Polyline>();
    case esriGeometryPolygon:
        return std::make_shared<Polygon>();
    case esriGeometryMultipoint:
        return std::make_shared<Multipoint>();
    default:
        return nullptr;
    }
}

std::shared_ptr<IGeometry> WrapShape(const IGeometry& Geometry, double West, double South, double width,
                                     double height) {
    const auto envelope = Geometry.Envelope();
    const double xMin = envelope->XMin();
    const double xMax = envelope->XMax();
    const double yMin = envelope->YMin();
    const double yMax = envelope->YMax();

    // The first tile's lower corner at or below the envelope's; a shape far east or north of the
    // box starts at the box, and the walk passes over the empty tiles.
    double tileX = West;
    double tileY = South;
    double shiftX = 0.0;
    double shiftY = 0.0;
    while (tileX > xMin) {
        tileX -= width;
        shiftX -= width;
    }
    while (tileY > yMin) {
        tileY -= height;
        shiftY -= height;
    }
    const double columnStartY = tileY;
    const double columnStartShiftY = shiftY;

    const auto& relation = dynamic_cast<const IRelationalOperator&>(Geometry);
    std::vector<std::shared_ptr<Polygon>> tiles;
    std::vector<std::shared_ptr<IDoubleArray>> shifts;
    while (tileX < xMax) {
        while (tileY < yMax) {
            auto tile = TilePolygon(tileX, tileY, width, height);
            if (!relation.Disjoint(*tile)) {
                tiles.push_back(tile);
                auto shift = std::make_shared<DoubleArray>();
                shift->Add(shiftX);
                shift->Add(shiftY);
                shifts.push_back(shift);
            }
            tileY += height;
            shiftY += height;
        }
        tileY = columnStartY;
        shiftY = columnStartShiftY;
        tileX += width;
        shiftX += width;
    }

    auto bag = std::make_shared<GeometryBag>();
    const esriGeometryType type = Geometry.GeometryType();
    std::shared_ptr<IGeometry> target = EmptyTarget(type);
    const auto& cloneable = dynamic_cast<const IClone&>(Geometry);
    for (std::size_t i = 0; i < tiles.size(); ++i) {
        auto piece = std::dynamic_pointer_cast<IGeometry>(cloneable.Clone());
        if (!piece)
            ObjectNotSet();
        const auto box = tiles[i]->Envelope();
        switch (type) {
        case esriGeometryPolyline:
            SimplifyPiece(*piece);
            Topology(*piece).Clip(*box);
            break;
        case esriGeometryPolygon:
            SimplifyPiece(*piece);
            Topology(*piece).ClipDense(*box, kWrapDensifySpacing);
            break;
        default:
            Topology(*piece).Clip(*box);
            break;
        }
        ShiftPointsToWrapBoundary(*piece, *shifts[i]);
        SimplifyPiece(*piece);
        bag->AddGeometry(piece);
    }

    // A shape of another kind has no target to unite into: that is this routine's fault.
    if (!target)
        ObjectNotSet();
    ITopologicalOperator& topology = Topology(*target);
    topology.ConstructUnion(*bag);
    topology.IsKnownSimple();
    topology.IsSimple();
    topology.Simplify();
    return target;
}

} // namespace

std::shared_ptr<IGeometry> WrapToBoundary(const IGeometry& Geometry, double West, double East, double South,
                                          double North, const std::shared_ptr<IMxDocument>& /*Document*/) {
    return Trapped("WrapToBoundary ", std::shared_ptr<IGeometry>(), [&]() -> std::shared_ptr<IGeometry> {
        double width = 0.0;
        double height = 0.0;
        CheckBox(West, East, South, North, width, height);
        if (Geometry.GeometryType() == esriGeometryPoint)
            return WrapPoint(dynamic_cast<const IPoint&>(Geometry), West, East, South, North, width, height);
        return WrapShape(Geometry, West, South, width, height);
    });
}

void ShiftPointsToWrapBoundary(IGeometry& Geometry, const IDoubleArray& Shift) {
    const double dx = Shift.Element(0);
    const double dy = Shift.Element(1);
    dynamic_cast<ITransform2D&>(Geometry).Move(-dx, -dy);
}

std::shared_ptr<IGeometry> FeatureLongitudeShift(const IGeometry& Geometry, double Shift) {
    return Trapped("FeatureLongitudeShift ", std::shared_ptr<IGeometry>(), [&]() -> std::shared_ptr<IGeometry> {
        FloatingPointCheck check;
        switch (Geometry.GeometryType()) {
        case esriGeometryPoint: {
            const auto& in = dynamic_cast<const IPoint&>(Geometry);
            auto out = std::make_shared<Point>();
            out->SpatialReference(Geometry.SpatialReference());
            out->PutCoords(in.X() + Shift, in.Y());
            check.Check("FeatureLongitudeShift");
            return out;
        }
        case esriGeometryPolyline:
        case esriGeometryPolygon:
        case esriGeometryMultipoint: {
            auto copy = std::dynamic_pointer_cast<IGeometry>(dynamic_cast<const IClone&>(Geometry).Clone());
            if (!copy)
                ObjectNotSet();
            const auto vertices = dynamic_cast<const IPointCollection&>(*copy).EnumVertices();
            vertices->Reset();
            Point scratch;
            std::int32_t part = 0, vertex = 0;
            vertices->QueryNext(scratch, part, vertex);
            while (vertex > -1) {
                vertices->put_Y(scratch.Y());
                vertices->put_X(scratch.X() + Shift);
                vertices->QueryNext(scratch, part, vertex);
            }
            check.Check("FeatureLongitudeShift");
            return copy;
        }
        default:
            UI().MessageBox("The function 'FeatureLongitudeShift' only accepts points, polylines, polygons or "
                            "multipoints.",
                            MsgBoxButtons::OK, MsgBoxIcon::None, "Unexpected Geometry Type:");
            return nullptr;
        }
    });
}

} // namespace tess::MyGeometricOperations
