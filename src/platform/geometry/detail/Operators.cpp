#include "platform/geometry/detail/Operators.h"

#include <cmath>
#include <map>

#include "platform/geometry/Geometries.h"
#include "platform/geometry/detail/GeosBridge.h"
#include "platform/geometry/detail/PartData.h"
#include "platform/system/Fault.h"

namespace tess::detail {

// ------------------------------------------------------------------ relational

bool RelationalOperatorImpl::Disjoint(const IGeometry& other) const {
    return GeosPredicate(Predicate::Disjoint, RelationalSelf(), other);
}
bool RelationalOperatorImpl::Intersects(const IGeometry& other) const {
    return GeosPredicate(Predicate::Intersects, RelationalSelf(), other);
}
bool RelationalOperatorImpl::Contains(const IGeometry& other) const {
    return GeosPredicate(Predicate::Contains, RelationalSelf(), other);
}
bool RelationalOperatorImpl::Within(const IGeometry& other) const {
    return GeosPredicate(Predicate::Within, RelationalSelf(), other);
}
bool RelationalOperatorImpl::Touches(const IGeometry& other) const {
    return GeosPredicate(Predicate::Touches, RelationalSelf(), other);
}
bool RelationalOperatorImpl::Overlaps(const IGeometry& other) const {
    return GeosPredicate(Predicate::Overlaps, RelationalSelf(), other);
}
bool RelationalOperatorImpl::Crosses(const IGeometry& other) const {
    return GeosPredicate(Predicate::Crosses, RelationalSelf(), other);
}
bool RelationalOperatorImpl::Equals(const IGeometry& other) const {
    return GeosPredicate(Predicate::Equals, RelationalSelf(), other);
}
bool RelationalOperatorImpl::Relation(const IGeometry& other, const std::string& pattern) const {
    return GeosRelate(RelationalSelf(), other, pattern);
}

// ------------------------------------------------------------------ topological

namespace {

//! A point set joined with more points is a multipoint; everything else keeps its type.
esriGeometryType SetResultType(esriGeometryType self) {
    return self == esriGeometryPoint ? esriGeometryMultipoint : self;
}

std::shared_ptr<IGeometry> WithReference(std::shared_ptr<IGeometry> g, const IGeometry& from) {
    if (g) g->SpatialReference(from.SpatialReference());
    return g;
}

//! Relative closeness to an envelope side that counts as lying on it: the engine computes
//! cut points on the sides, so they may miss them by a few ulps.
constexpr double kOnSideRelTolerance = 1e-12;

bool OnSameSide(WKSPoint a, WKSPoint b, const WKSEnvelope& e, double tol) {
    auto near = [tol](double u, double v) { return std::abs(u - v) <= tol; };
    return (near(a.X, e.XMin) && near(b.X, e.XMin)) || (near(a.X, e.XMax) && near(b.X, e.XMax)) ||
           (near(a.Y, e.YMin) && near(b.Y, e.YMin)) || (near(a.Y, e.YMax) && near(b.Y, e.YMax));
}

//! Inserts vertices every spacing along the straight segments that lie on a side of the envelope.
void DensifyAlongEnvelope(Polygon& polygon, const WKSEnvelope& e, double spacing) {
    const double scale = std::max({1.0, std::abs(e.XMin), std::abs(e.XMax), std::abs(e.YMin), std::abs(e.YMax)});
    const double tol = kOnSideRelTolerance * scale;
    for (std::size_t r = 0; r < polygon.PartCount(); ++r) {
        const PartData& part = polygon.Part(r).Data();
        PartData out;
        if (part.vertices.empty()) continue;
        out.vertices.push_back(part.vertices.front());
        part.ForEachSegment([&](std::int32_t, const SegmentView& s) {
            if (!s.curve && OnSameSide(s.from, s.to, e, tol)) {
                const double length = std::hypot(s.to.X - s.from.X, s.to.Y - s.from.Y);
                // Vertices at whole multiples of the spacing from the segment's start; a remainder
                // shorter than the tolerance would only duplicate the end.
                for (double d = spacing; d < length - tol; d += spacing) {
                    const double u = d / length;
                    out.vertices.push_back({s.from.X + u * (s.to.X - s.from.X), s.from.Y + u * (s.to.Y - s.from.Y)});
                }
            }
            out.AppendSegment(s);
        });
        polygon.Part(r).MutableData() = std::move(out);
    }
}

} // namespace

std::shared_ptr<IGeometry> TopologicalOperatorImpl::Buffer(double distance) const {
    return WithReference(GeosBuffer(OperatorSelf(), distance), OperatorSelf());
}

std::shared_ptr<IGeometry> TopologicalOperatorImpl::Union(const IGeometry& other) const {
    const IGeometry& self = OperatorSelf();
    return WithReference(GeosOverlay(OverlayOp::Union, self, other, SetResultType(self.GeometryType())), self);
}

void TopologicalOperatorImpl::ConstructUnion(IEnumGeometry& geometries) {
    std::vector<std::shared_ptr<IGeometry>> members;
    geometries.Reset();
    for (auto g = geometries.Next(); g; g = geometries.Next()) members.push_back(g);
    IGeometry& self = OperatorSelf();
    auto result = GeosUnionAll(members, SetResultType(self.GeometryType()));
    if (!self.SpatialReference()) {
        for (const auto& m : members) {
            if (m && m->SpatialReference()) {
                result->SpatialReference(m->SpatialReference());
                break;
            }
        }
    }
    AssignResult(*result);
}

void TopologicalOperatorImpl::Cut(const IPolyline& cutter, std::shared_ptr<IGeometry>& leftGeometry,
                                  std::shared_ptr<IGeometry>& rightGeometry) const {
    GeosCut(OperatorSelf(), cutter, leftGeometry, rightGeometry);
    WithReference(leftGeometry, OperatorSelf());
    WithReference(rightGeometry, OperatorSelf());
}

void TopologicalOperatorImpl::Clip(const IEnvelope& clipper) {
    IGeometry& self = OperatorSelf();
    if (self.IsEmpty()) return;
    if (clipper.IsEmpty()) {
        self.SetEmpty();
        return;
    }
    const Envelope box(clipper.XMin(), clipper.YMin(), clipper.XMax(), clipper.YMax());
    auto result = GeosOverlay(OverlayOp::Intersection, self, box, self.GeometryType());
    AssignResult(*result);
}

void TopologicalOperatorImpl::ClipDense(const IEnvelope& clipper, double denseDistance) {
    Clip(clipper);
    if (!(denseDistance > 0.0)) return;
    if (auto* polygon = dynamic_cast<Polygon*>(&OperatorSelf())) {
        const bool simple = polygon->IsKnownSimple();
        DensifyAlongEnvelope(*polygon, {clipper.XMin(), clipper.YMin(), clipper.XMax(), clipper.YMax()},
                             denseDistance);
        polygon->MarkKnownSimple(simple);
    }
}

std::shared_ptr<IGeometry> TopologicalOperatorImpl::Intersect(const IGeometry& other,
                                                              esriGeometryDimension resultDimension) const {
    const IGeometry& self = OperatorSelf();
    esriGeometryType type = esriGeometryNull;
    switch (resultDimension) {
    case esriGeometry0Dimension:
        type = self.GeometryType() == esriGeometryPoint ? esriGeometryPoint : esriGeometryMultipoint;
        break;
    case esriGeometry1Dimension:
        type = esriGeometryPolyline;
        break;
    case esriGeometry2Dimension:
        type = esriGeometryPolygon;
        break;
    default:
        throw GeometryFault(fault::InvalidCall, "Intersect", "Invalid result dimension");
    }
    return WithReference(GeosOverlay(OverlayOp::Intersection, self, other, type), self);
}

std::shared_ptr<IGeometry> TopologicalOperatorImpl::Difference(const IGeometry& other) const {
    const IGeometry& self = OperatorSelf();
    return WithReference(GeosOverlay(OverlayOp::Difference, self, other, self.GeometryType()), self);
}

std::shared_ptr<IGeometry> TopologicalOperatorImpl::SymmetricDifference(const IGeometry& other) const {
    const IGeometry& self = OperatorSelf();
    return WithReference(
        GeosOverlay(OverlayOp::SymDifference, self, other, SetResultType(self.GeometryType())), self);
}

std::shared_ptr<IGeometry> TopologicalOperatorImpl::Boundary() const {
    const IGeometry& self = OperatorSelf();
    if (const auto* polygon = dynamic_cast<const Polygon*>(&self)) {
        auto line = std::make_shared<Polyline>();
        for (std::size_t i = 0; i < polygon->PartCount(); ++i) {
            auto path = std::make_shared<Path>();
            path->MutableData() = polygon->Part(i).Data();
            line->AddPart(std::move(path));
        }
        return WithReference(line, self);
    }
    if (const auto* polyline = dynamic_cast<const Polyline*>(&self)) {
        // Ends that occur an odd number of times, in order of first appearance.
        std::map<std::pair<double, double>, int> count;
        std::vector<WKSPoint> order;
        for (std::size_t i = 0; i < polyline->PartCount(); ++i) {
            const auto v = polyline->Part(i).Vertices();
            if (v.size() < 2 || v.front() == v.back()) continue;
            for (const WKSPoint& p : {v.front(), v.back()})
                if (count[{p.X, p.Y}]++ == 0) order.push_back(p);
        }
        auto mp = std::make_shared<Multipoint>();
        for (const WKSPoint& p : order)
            if (count[{p.X, p.Y}] % 2 == 1) mp->AddPoint(Point(p.X, p.Y));
        return WithReference(mp, self);
    }
    return WithReference(std::make_shared<Polyline>(), self);
}

std::shared_ptr<IGeometry> TopologicalOperatorImpl::ConvexHull() const {
    return WithReference(GeosConvexHull(OperatorSelf()), OperatorSelf());
}

} // namespace tess::detail
