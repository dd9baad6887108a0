#include "platform/geometry/detail/GeosBridge.h"

#include <geos_c.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <unordered_map>

#include "platform/geometry/Geometries.h"
#include "platform/geometry/detail/PartData.h"
#include "platform/system/Fault.h"

namespace tess::detail {

namespace {

//! Segments per quarter circle of a buffer's round joins and caps: 3 degrees per piece.
constexpr int kBufferQuadrantSegments = 30;
//! Distance, relative to the size of the shapes, below which a piece counts as lying on a line.
constexpr double kOnLineRelTolerance = 1e-9;

// One engine context per thread: the reentrant API keeps no global state.
class Context {
public:
    Context() : handle_(GEOS_init_r()) { GEOSContext_setErrorMessageHandler_r(handle_, &Context::OnError, this); }
    ~Context() { GEOS_finish_r(handle_); }
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;
    GEOSContextHandle_t Handle() const { return handle_; }
    const std::string& Message() const { return message_; }
    void ClearMessage() { message_.clear(); }

private:
    static void OnError(const char* message, void* userdata) {
        static_cast<Context*>(userdata)->message_ = message ? message : "";
    }
    GEOSContextHandle_t handle_;
    std::string message_;
};

Context& Ctx() {
    thread_local Context context;
    return context;
}

GEOSContextHandle_t H() { return Ctx().Handle(); }

struct GeomDeleter {
    void operator()(GEOSGeometry* g) const {
        if (g) GEOSGeom_destroy_r(H(), g);
    }
};
using GeomPtr = std::unique_ptr<GEOSGeometry, GeomDeleter>;

[[noreturn]] void Fail(const char* operation) {
    const std::string message = Ctx().Message().empty() ? "The geometry engine failed" : Ctx().Message();
    throw GeometryFault(fault::GeometryFailed, operation, message);
}

GeomPtr Check(GEOSGeometry* g, const char* operation) {
    if (!g) Fail(operation);
    return GeomPtr(g);
}

bool CheckChar(char r, const char* operation) {
    if (r == 2) Fail(operation);
    return r == 1;
}

// ---------------------------------------------------------------- to the engine

GEOSCoordSequence* Sequence(std::span<const WKSPoint> pts) {
    // WKSPoint is two doubles, laid out as the engine's interleaved XY buffer.
    GEOSCoordSequence* s =
        GEOSCoordSeq_copyFromBuffer_r(H(), reinterpret_cast<const double*>(pts.data()), pts.size(), 0, 0);
    if (!s) Fail("CoordinateSequence");
    return s;
}

GeomPtr MakeLine(std::span<const WKSPoint> pts) {
    if (pts.size() < 2) return Check(GEOSGeom_createEmptyLineString_r(H()), "LineString");
    return Check(GEOSGeom_createLineString_r(H(), Sequence(pts)), "LineString");
}

//! Null when the ring has fewer than three distinct positions' worth of vertices.
GeomPtr MakeLinearRing(std::span<const WKSPoint> pts) {
    std::vector<WKSPoint> closed;
    if (!pts.empty() && !(pts.front() == pts.back())) {
        closed.assign(pts.begin(), pts.end());
        closed.push_back(pts.front());
        pts = closed;
    }
    if (pts.size() < 4) return nullptr;
    return Check(GEOSGeom_createLinearRing_r(H(), Sequence(pts)), "LinearRing");
}

GeomPtr MakeCollection(int type, std::vector<GeomPtr>& parts) {
    std::vector<GEOSGeometry*> raw;
    raw.reserve(parts.size());
    for (auto& p : parts)
        if (p) raw.push_back(p.get());
    GEOSGeometry* g = GEOSGeom_createCollection_r(H(), type, raw.data(), static_cast<unsigned>(raw.size()));
    if (!g) Fail("Collection");
    for (auto& p : parts) (void)p.release(); // now owned by the collection
    return GeomPtr(g);
}

GeomPtr MakePolygon(GeomPtr shell, std::vector<GeomPtr>& holes) {
    std::vector<GEOSGeometry*> raw;
    for (auto& h : holes)
        if (h) raw.push_back(h.get());
    GEOSGeometry* g =
        GEOSGeom_createPolygon_r(H(), shell.get(), raw.data(), static_cast<unsigned>(raw.size()));
    if (!g) Fail("Polygon");
    (void)shell.release();
    for (auto& h : holes) (void)h.release();
    return GeomPtr(g);
}

std::vector<WKSPoint> Dense(const PartData& part) {
    std::vector<WKSPoint> out;
    DensifyPart(part, DefaultDensifyLimits(), out);
    return out;
}

GeomPtr PolygonToGeos(const Polygon& input) {
    std::shared_ptr<Polygon> simplified;
    const Polygon* p = &input;
    if (!input.SimplifyChangesNothing()) {
        simplified = std::make_shared<Polygon>(input);
        simplified->Simplify();
        p = simplified.get();
    }
    const std::vector<std::int32_t> owners = p->RingOwners();
    std::vector<GeomPtr> polygons;
    for (std::size_t e = 0; e < p->PartCount(); ++e) {
        if (owners[e] != static_cast<std::int32_t>(e)) continue;
        GeomPtr shell = MakeLinearRing(Dense(p->Part(e).Data()));
        if (!shell) continue;
        std::vector<GeomPtr> holes;
        for (std::size_t h = 0; h < p->PartCount(); ++h)
            if (h != e && owners[h] == static_cast<std::int32_t>(e))
                if (GeomPtr ring = MakeLinearRing(Dense(p->Part(h).Data()))) holes.push_back(std::move(ring));
        polygons.push_back(MakePolygon(std::move(shell), holes));
    }
    return MakeCollection(GEOS_MULTIPOLYGON, polygons);
}

GeomPtr ToGeos(const IGeometry& g) {
    if (const auto* pt = dynamic_cast<const Point*>(&g)) {
        if (pt->IsEmpty()) return Check(GEOSGeom_createEmptyPoint_r(H()), "Point");
        return Check(GEOSGeom_createPointFromXY_r(H(), pt->X(), pt->Y()), "Point");
    }
    if (const auto* mp = dynamic_cast<const Multipoint*>(&g)) {
        std::vector<GeomPtr> pts;
        for (std::size_t i = 0; i < static_cast<std::size_t>(mp->PointCount()); ++i)
            pts.push_back(Check(GEOSGeom_createPointFromXY_r(H(), mp->PointAt(i).X(), mp->PointAt(i).Y()), "Point"));
        return MakeCollection(GEOS_MULTIPOINT, pts);
    }
    if (const auto* poly = dynamic_cast<const Polygon*>(&g)) return PolygonToGeos(*poly);
    if (const auto* ring = dynamic_cast<const Ring*>(&g)) {
        Polygon polygon;
        polygon.AddPart(std::make_shared<Ring>(*ring));
        return PolygonToGeos(polygon);
    }
    if (const auto* env = dynamic_cast<const Envelope*>(&g)) {
        if (env->IsEmpty()) return Check(GEOSGeom_createEmptyPolygon_r(H()), "Polygon");
        const WKSEnvelope b = env->Box();
        return Check(GEOSGeom_createRectangle_r(H(), b.XMin, b.YMin, b.XMax, b.YMax), "Rectangle");
    }
    if (const auto* src = dynamic_cast<const PartSource*>(&g)) {
        // Polyline or path.
        std::vector<GeomPtr> lines;
        for (std::size_t i = 0; i < src->SourcePartCount(); ++i)
            if (src->SourcePart(i).vertices.size() >= 2) lines.push_back(MakeLine(Dense(src->SourcePart(i))));
        return MakeCollection(GEOS_MULTILINESTRING, lines);
    }
    if (const auto* seg = dynamic_cast<const SegmentStore*>(&g)) {
        PartData part;
        if (!g.IsEmpty()) part.AppendSegment(seg->View());
        return MakeLine(Dense(part));
    }
    if (const auto* bag = dynamic_cast<const GeometryBag*>(&g)) {
        std::vector<GeomPtr> members;
        for (std::int32_t i = 0; i < bag->GeometryCount(); ++i) members.push_back(ToGeos(*bag->Geometry(i)));
        return MakeCollection(GEOS_GEOMETRYCOLLECTION, members);
    }
    throw GeometryFault(fault::TypeMismatch, "Geometry", "This geometry cannot be handed to the topology engine");
}

// ---------------------------------------------------------------- from the engine

std::vector<WKSPoint> Coords(const GEOSGeometry* g) {
    const GEOSCoordSequence* seq = GEOSGeom_getCoordSeq_r(H(), g);
    if (!seq) Fail("CoordinateSequence");
    unsigned int n = 0;
    GEOSCoordSeq_getSize_r(H(), seq, &n);
    std::vector<WKSPoint> pts(n);
    if (n > 0 && !GEOSCoordSeq_copyToBuffer_r(H(), seq, reinterpret_cast<double*>(pts.data()), 0, 0))
        Fail("CoordinateSequence");
    return pts;
}

struct Components {
    std::vector<const GEOSGeometry*> points;
    std::vector<const GEOSGeometry*> lines;
    std::vector<const GEOSGeometry*> polygons;
};

void Collect(const GEOSGeometry* g, Components& c) {
    if (GEOSisEmpty_r(H(), g) == 1) return;
    switch (GEOSGeomTypeId_r(H(), g)) {
    case GEOS_POINT:
        c.points.push_back(g);
        break;
    case GEOS_LINESTRING:
    case GEOS_LINEARRING:
        c.lines.push_back(g);
        break;
    case GEOS_POLYGON:
        c.polygons.push_back(g);
        break;
    default: {
        const int n = GEOSGetNumGeometries_r(H(), g);
        for (int i = 0; i < n; ++i) Collect(GEOSGetGeometryN_r(H(), g, i), c);
    }
    }
}

std::shared_ptr<Ring> OrientedRing(std::vector<WKSPoint> pts, bool exterior) {
    auto ring = std::make_shared<Ring>();
    ring->AddWKSPoints(static_cast<std::int32_t>(pts.size()), pts.data());
    const double signedArea = PartSignedArea(ring->Data());
    if ((exterior && signedArea > 0.0) || (!exterior && signedArea < 0.0)) ring->ReverseOrientation();
    return ring;
}

std::shared_ptr<IGeometry> FromGeos(const GEOSGeometry* g, esriGeometryType type) {
    Components c;
    Collect(g, c);
    switch (type) {
    case esriGeometryPolygon: {
        auto polygon = std::make_shared<Polygon>();
        for (const GEOSGeometry* p : c.polygons) {
            polygon->AddPart(OrientedRing(Coords(GEOSGetExteriorRing_r(H(), p)), true));
            const int holes = GEOSGetNumInteriorRings_r(H(), p);
            for (int i = 0; i < holes; ++i)
                polygon->AddPart(OrientedRing(Coords(GEOSGetInteriorRingN_r(H(), p, i)), false));
        }
        polygon->MarkKnownSimple(true);
        return polygon;
    }
    case esriGeometryPolyline: {
        auto polyline = std::make_shared<Polyline>();
        for (const GEOSGeometry* l : c.lines) {
            const std::vector<WKSPoint> pts = Coords(l);
            auto path = std::make_shared<Path>();
            path->AddWKSPoints(static_cast<std::int32_t>(pts.size()), pts.data());
            polyline->AddPart(std::move(path));
        }
        return polyline;
    }
    case esriGeometryMultipoint: {
        auto mp = std::make_shared<Multipoint>();
        for (const GEOSGeometry* p : c.points) {
            double x = 0.0, y = 0.0;
            GEOSGeomGetX_r(H(), p, &x);
            GEOSGeomGetY_r(H(), p, &y);
            mp->AddPoint(Point(x, y));
        }
        return mp;
    }
    case esriGeometryPoint: {
        auto pt = std::make_shared<Point>();
        if (!c.points.empty()) {
            double x = 0.0, y = 0.0;
            GEOSGeomGetX_r(H(), c.points.front(), &x);
            GEOSGeomGetY_r(H(), c.points.front(), &y);
            pt->PutCoords(x, y);
        }
        return pt;
    }
    default:
        throw GeometryFault(fault::TypeMismatch, "Geometry", "Unsupported result type");
    }
}

GeomPtr MergeLines(GeomPtr g) {
    if (GEOSisEmpty_r(H(), g.get()) == 1) return g;
    return Check(GEOSLineMerge_r(H(), g.get()), "LineMerge");
}

double SizeOf(const GEOSGeometry* a) {
    double xmin = 0, ymin = 0, xmax = 0, ymax = 0;
    if (GEOSisEmpty_r(H(), a) == 1 || !GEOSGeom_getXMin_r(H(), a, &xmin) || !GEOSGeom_getYMin_r(H(), a, &ymin) ||
        !GEOSGeom_getXMax_r(H(), a, &xmax) || !GEOSGeom_getYMax_r(H(), a, &ymax))
        return 1.0;
    return std::max({1.0, std::abs(xmax - xmin), std::abs(ymax - ymin), std::abs(xmin), std::abs(ymin)});
}

WKSPoint InteriorPoint(const GEOSGeometry* g) {
    GeomPtr p = Check(GEOSPointOnSurface_r(H(), g), "PointOnSurface");
    double x = 0.0, y = 0.0;
    GEOSGeomGetX_r(H(), p.get(), &x);
    GEOSGeomGetY_r(H(), p.get(), &y);
    return {x, y};
}

} // namespace

std::shared_ptr<IGeometry> GeosOverlay(OverlayOp op, const IGeometry& a, const IGeometry& b,
                                       esriGeometryType resultType) {
    Ctx().ClearMessage();
    const GeomPtr ga = ToGeos(a);
    const GeomPtr gb = ToGeos(b);
    GeomPtr r;
    switch (op) {
    case OverlayOp::Union:
        r = Check(GEOSUnion_r(H(), ga.get(), gb.get()), "Union");
        if (resultType == esriGeometryPolyline) r = MergeLines(std::move(r));
        break;
    case OverlayOp::Intersection:
        r = Check(GEOSIntersection_r(H(), ga.get(), gb.get()), "Intersect");
        break;
    case OverlayOp::Difference:
        r = Check(GEOSDifference_r(H(), ga.get(), gb.get()), "Difference");
        break;
    case OverlayOp::SymDifference:
        r = Check(GEOSSymDifference_r(H(), ga.get(), gb.get()), "SymmetricDifference");
        break;
    }
    return FromGeos(r.get(), resultType);
}

bool GeosPredicate(Predicate predicate, const IGeometry& a, const IGeometry& b) {
    Ctx().ClearMessage();
    const GeomPtr ga = ToGeos(a);
    const GeomPtr gb = ToGeos(b);
    switch (predicate) {
    case Predicate::Disjoint:
        return CheckChar(GEOSDisjoint_r(H(), ga.get(), gb.get()), "Disjoint");
    case Predicate::Intersects:
        return CheckChar(GEOSIntersects_r(H(), ga.get(), gb.get()), "Intersects");
    case Predicate::Contains:
        return CheckChar(GEOSContains_r(H(), ga.get(), gb.get()), "Contains");
    case Predicate::Within:
        return CheckChar(GEOSWithin_r(H(), ga.get(), gb.get()), "Within");
    case Predicate::Touches:
        return CheckChar(GEOSTouches_r(H(), ga.get(), gb.get()), "Touches");
    case Predicate::Overlaps:
        return CheckChar(GEOSOverlaps_r(H(), ga.get(), gb.get()), "Overlaps");
    case Predicate::Crosses:
        return CheckChar(GEOSCrosses_r(H(), ga.get(), gb.get()), "Crosses");
    case Predicate::Equals:
        if (a.IsEmpty() || b.IsEmpty()) return a.IsEmpty() && b.IsEmpty();
        return CheckChar(GEOSEquals_r(H(), ga.get(), gb.get()), "Equals");
    }
    return false;
}

bool GeosRelate(const IGeometry& a, const IGeometry& b, const std::string& pattern) {
    Ctx().ClearMessage();
    const GeomPtr ga = ToGeos(a);
    const GeomPtr gb = ToGeos(b);
    return CheckChar(GEOSRelatePattern_r(H(), ga.get(), gb.get(), pattern.c_str()), "Relation");
}

std::shared_ptr<IGeometry> GeosBuffer(const IGeometry& a, double distance) {
    Ctx().ClearMessage();
    const GeomPtr ga = ToGeos(a);
    const GeomPtr r = Check(GEOSBuffer_r(H(), ga.get(), distance, kBufferQuadrantSegments), "Buffer");
    return FromGeos(r.get(), esriGeometryPolygon);
}

std::shared_ptr<IGeometry> GeosConvexHull(const IGeometry& a) {
    Ctx().ClearMessage();
    const GeomPtr ga = ToGeos(a);
    const GeomPtr r = Check(GEOSConvexHull_r(H(), ga.get()), "ConvexHull");
    switch (GEOSGeomTypeId_r(H(), r.get())) {
    case GEOS_POLYGON:
    case GEOS_MULTIPOLYGON:
        return FromGeos(r.get(), esriGeometryPolygon);
    case GEOS_LINESTRING:
    case GEOS_MULTILINESTRING:
        return FromGeos(r.get(), esriGeometryPolyline);
    default:
        return FromGeos(r.get(), esriGeometryPoint);
    }
}

std::shared_ptr<IGeometry> GeosUnionAll(const std::vector<std::shared_ptr<IGeometry>>& members,
                                        esriGeometryType resultType) {
    Ctx().ClearMessage();
    std::vector<GeomPtr> parts;
    for (const auto& m : members)
        if (m && !m->IsEmpty()) parts.push_back(ToGeos(*m));
    const GeomPtr all = MakeCollection(GEOS_GEOMETRYCOLLECTION, parts);
    GeomPtr r = Check(GEOSUnaryUnion_r(H(), all.get()), "ConstructUnion");
    if (resultType == esriGeometryPolyline) r = MergeLines(std::move(r));
    return FromGeos(r.get(), resultType);
}

bool GeosLabelPoint(const Polygon& polygon, WKSPoint& out) {
    Ctx().ClearMessage();
    const GeomPtr g = PolygonToGeos(polygon);
    if (GEOSisEmpty_r(H(), g.get()) == 1) return false;
    out = InteriorPoint(g.get());
    return true;
}

bool GeosRingsSimple(std::span<const std::span<const WKSPoint>> rings) {
    Ctx().ClearMessage();
    std::vector<GeomPtr> lines;
    for (const auto& r : rings) lines.push_back(MakeLine(r));
    const GeomPtr g = lines.size() == 1 ? std::move(lines.front()) : MakeCollection(GEOS_MULTILINESTRING, lines);
    const char r = GEOSisSimple_r(H(), g.get());
    return r == 1;
}

void GeosEvenOddPolygon(std::span<const std::span<const WKSPoint>> rings, Polygon& out) {
    Ctx().ClearMessage();
    std::vector<GeomPtr> lines;
    for (const auto& r : rings)
        if (r.size() >= 2) lines.push_back(MakeLine(r));
    const GeomPtr all = MakeCollection(GEOS_MULTILINESTRING, lines);
    const GeomPtr noded = Check(GEOSNode_r(H(), all.get()), "Simplify");
    const GEOSGeometry* input[1] = {noded.get()};
    const GeomPtr faces = Check(GEOSPolygonize_r(H(), input, 1), "Simplify");
    std::vector<GeomPtr> kept;
    const int n = GEOSGetNumGeometries_r(H(), faces.get());
    for (int i = 0; i < n; ++i) {
        const GEOSGeometry* face = GEOSGetGeometryN_r(H(), faces.get(), i);
        if (GEOSisEmpty_r(H(), face) == 1) continue;
        const WKSPoint p = InteriorPoint(face);
        bool inside = false;
        for (const auto& r : rings)
            if (PointInRing(r.data(), r.size(), p) == 1) inside = !inside;
        if (inside) kept.push_back(Check(GEOSGeom_clone_r(H(), face), "Simplify"));
    }
    const GeomPtr keptAll = MakeCollection(GEOS_GEOMETRYCOLLECTION, kept);
    const GeomPtr merged = Check(GEOSUnaryUnion_r(H(), keptAll.get()), "Simplify");
    const auto result = std::dynamic_pointer_cast<Polygon>(FromGeos(merged.get(), esriGeometryPolygon));
    out.SetEmpty();
    for (std::size_t i = 0; i < result->PartCount(); ++i) out.AddPart(result->PartPtr(i));
}

void GeosCut(const IGeometry& shape, const IPolyline& cutter, std::shared_ptr<IGeometry>& left,
             std::shared_ptr<IGeometry>& right) {
    Ctx().ClearMessage();
    const auto* cutSource = dynamic_cast<const PartSource*>(&cutter);
    if (!cutSource) throw GeometryFault(fault::TypeMismatch, "Cut", "Unsupported cutter");
    const GeomPtr self = ToGeos(shape);
    const GeomPtr blade = ToGeos(cutter);
    const double eps = kOnLineRelTolerance * std::max(SizeOf(self.get()), SizeOf(blade.get()));
    auto rightOf = [cutSource](WKSPoint p) {
        NearestResult r;
        SourceNearest(*cutSource, esriExtendTangents, p, r);
        return r.right;
    };
    auto distanceTo = [](const GEOSGeometry* g, WKSPoint p) {
        const GeomPtr pt = Check(GEOSGeom_createPointFromXY_r(H(), p.X, p.Y), "Cut");
        double d = 0.0;
        if (!GEOSDistance_r(H(), g, pt.get(), &d)) Fail("Cut");
        return d;
    };
    std::vector<GeomPtr> leftParts;
    std::vector<GeomPtr> rightParts;
    const bool isPolygon = shape.GeometryType() == esriGeometryPolygon;
    if (!isPolygon && shape.GeometryType() != esriGeometryPolyline)
        throw GeometryFault(fault::TypeMismatch, "Cut", "Only polylines and polygons can be cut");

    // Node the shape's linework together with the cutter.
    const GeomPtr lines = isPolygon ? Check(GEOSBoundary_r(H(), self.get()), "Cut") : nullptr;
    const GEOSGeometry* linework = isPolygon ? lines.get() : self.get();
    Components lc;
    Collect(linework, lc);
    Collect(blade.get(), lc);
    std::vector<GeomPtr> all;
    for (const GEOSGeometry* l : lc.lines) all.push_back(Check(GEOSGeom_clone_r(H(), l), "Cut"));
    const GeomPtr multi = MakeCollection(GEOS_MULTILINESTRING, all);
    const GeomPtr noded = Check(GEOSNode_r(H(), multi.get()), "Cut");

    if (isPolygon) {
        const GEOSGeometry* input[1] = {noded.get()};
        const GeomPtr faces = Check(GEOSPolygonize_r(H(), input, 1), "Cut");
        const int n = GEOSGetNumGeometries_r(H(), faces.get());
        for (int i = 0; i < n; ++i) {
            const GEOSGeometry* face = GEOSGetGeometryN_r(H(), faces.get(), i);
            const WKSPoint p = InteriorPoint(face);
            const GeomPtr pt = Check(GEOSGeom_createPointFromXY_r(H(), p.X, p.Y), "Cut");
            if (!CheckChar(GEOSContains_r(H(), self.get(), pt.get()), "Cut")) continue;
            (rightOf(p) ? rightParts : leftParts).push_back(Check(GEOSGeom_clone_r(H(), face), "Cut"));
        }
    } else {
        Components pieces;
        Collect(noded.get(), pieces);
        for (const GEOSGeometry* piece : pieces.lines) {
            const std::vector<WKSPoint> pts = Coords(piece);
            if (pts.size() < 2) continue;
            // The middle of the piece by length tells where it came from and on which side it lies.
            double total = 0.0;
            for (std::size_t k = 1; k < pts.size(); ++k)
                total += std::hypot(pts[k].X - pts[k - 1].X, pts[k].Y - pts[k - 1].Y);
            WKSPoint mid = pts.front();
            double acc = 0.0;
            for (std::size_t k = 1; k < pts.size(); ++k) {
                const double len = std::hypot(pts[k].X - pts[k - 1].X, pts[k].Y - pts[k - 1].Y);
                if (acc + len >= 0.5 * total && len > 0.0) {
                    const double u = (0.5 * total - acc) / len;
                    mid = {pts[k - 1].X + u * (pts[k].X - pts[k - 1].X), pts[k - 1].Y + u * (pts[k].Y - pts[k - 1].Y)};
                    break;
                }
                acc += len;
            }
            if (distanceTo(self.get(), mid) > eps || distanceTo(blade.get(), mid) <= eps) continue;
            (rightOf(mid) ? rightParts : leftParts).push_back(Check(GEOSGeom_clone_r(H(), piece), "Cut"));
        }
    }
    if (leftParts.empty() || rightParts.empty())
        throw GeometryFault(fault::GeometryFailed, "Cut", "The cutter does not cut the shape");
    const esriGeometryType type = isPolygon ? esriGeometryPolygon : esriGeometryPolyline;
    auto build = [type](std::vector<GeomPtr>& parts) {
        const GeomPtr all = MakeCollection(GEOS_GEOMETRYCOLLECTION, parts);
        GeomPtr merged = Check(GEOSUnaryUnion_r(H(), all.get()), "Cut");
        if (type == esriGeometryPolyline) merged = MergeLines(std::move(merged));
        return FromGeos(merged.get(), type);
    };
    left = build(leftParts);
    right = build(rightParts);
}

namespace {

// A square grid of cells of the tolerance's size over points, so that the neighbours of a point
// within the tolerance are in its own cell or the eight around it.
class PointGrid {
public:
    explicit PointGrid(double cell) : cell_(cell) {}
    void Add(WKSPoint p, std::size_t id) {
        const std::int64_t i = Cell(p.X), j = Cell(p.Y);
        Bucket& bucket = cells_[Key(i, j)];
        bucket.i = i;
        bucket.j = j;
        bucket.ids.push_back(id);
    }
    //! Ids in the cells that the box [min, max] touches. A box of more cells than are filled walks
    //! the filled ones instead, so that a long line costs no more than the points there are.
    template <class F> void Visit(WKSPoint min, WKSPoint max, F&& f) const {
        const std::int64_t i0 = Cell(min.X), i1 = Cell(max.X), j0 = Cell(min.Y), j1 = Cell(max.Y);
        const double boxCells = (static_cast<double>(i1 - i0) + 1.0) * (static_cast<double>(j1 - j0) + 1.0);
        if (boxCells > static_cast<double>(cells_.size())) {
            for (const auto& [key, bucket] : cells_)
                if (bucket.i >= i0 && bucket.i <= i1 && bucket.j >= j0 && bucket.j <= j1)
                    for (std::size_t id : bucket.ids) f(id);
            return;
        }
        for (std::int64_t i = i0; i <= i1; ++i)
            for (std::int64_t j = j0; j <= j1; ++j)
                if (auto it = cells_.find(Key(i, j)); it != cells_.end())
                    for (std::size_t id : it->second.ids) f(id);
    }

private:
    struct Bucket {
        std::int64_t i = 0, j = 0;
        std::vector<std::size_t> ids;
    };
    std::int64_t Cell(double v) const { return static_cast<std::int64_t>(std::floor(v / cell_)); }
    static std::uint64_t Key(std::int64_t i, std::int64_t j) {
        return (static_cast<std::uint64_t>(i) * 0x9E3779B97F4A7C15ULL) ^ static_cast<std::uint64_t>(j);
    }
    double cell_;
    std::unordered_map<std::uint64_t, Bucket> cells_;
};

//! Each vertex joins the first earlier vertex closer than the tolerance, so that the result does not
//! depend on anything but the order of the input.
void ClusterVertices(std::vector<std::vector<WKSPoint>>& lines, double tolerance) {
    PointGrid grid(tolerance);
    std::vector<WKSPoint> representatives;
    const double limit = tolerance * tolerance;
    for (auto& line : lines) {
        for (WKSPoint& v : line) {
            std::size_t best = SIZE_MAX;
            grid.Visit({v.X - tolerance, v.Y - tolerance}, {v.X + tolerance, v.Y + tolerance}, [&](std::size_t id) {
                const WKSPoint r = representatives[id];
                const double dx = r.X - v.X, dy = r.Y - v.Y;
                if (dx * dx + dy * dy < limit && id < best) best = id;
            });
            if (best == SIZE_MAX) {
                grid.Add(v, representatives.size());
                representatives.push_back(v);
            } else {
                v = representatives[best];
            }
        }
        line.erase(std::unique(line.begin(), line.end()), line.end());
    }
}

GeomPtr LineFromPoints(const std::vector<WKSPoint>& pts) { return MakeLine(std::span<const WKSPoint>(pts)); }

//! Ends of lines that stop short of, or run past, another line by less than the tolerance: each
//! line takes the ends near it as vertices of its own, so that noding finds the junction.
std::vector<GeomPtr> SnapEndsIntoSegments(const std::vector<std::vector<WKSPoint>>& lines, double tolerance) {
    PointGrid grid(tolerance);
    std::vector<WKSPoint> ends;
    for (const auto& line : lines) {
        for (const WKSPoint e : {line.front(), line.back()}) {
            grid.Add(e, ends.size());
            ends.push_back(e);
        }
    }
    std::vector<GeomPtr> out;
    out.reserve(lines.size());
    for (const auto& line : lines) {
        WKSPoint min = line.front(), max = line.front();
        for (const WKSPoint& v : line) {
            min = {std::min(min.X, v.X), std::min(min.Y, v.Y)};
            max = {std::max(max.X, v.X), std::max(max.Y, v.Y)};
        }
        std::vector<WKSPoint> candidates;
        grid.Visit({min.X - tolerance, min.Y - tolerance}, {max.X + tolerance, max.Y + tolerance},
                   [&](std::size_t id) { candidates.push_back(ends[id]); });
        GeomPtr g = LineFromPoints(line);
        // Only the ends really near the line: the engine's snapping weighs every target against
        // every segment, and the box of a long line holds many ends that are far from it.
        std::vector<WKSPoint> near;
        if (!candidates.empty()) {
            const GEOSPreparedGeometry* prepared = GEOSPrepare_r(H(), g.get());
            if (!prepared) Fail("Snap");
            for (const WKSPoint& p : candidates) {
                const GeomPtr pt = Check(GEOSGeom_createPointFromXY_r(H(), p.X, p.Y), "Snap");
                double d = 0.0;
                if (!GEOSPreparedDistance_r(H(), prepared, pt.get(), &d)) {
                    GEOSPreparedGeom_destroy_r(H(), prepared);
                    Fail("Snap");
                }
                if (d < tolerance) near.push_back(p);
            }
            GEOSPreparedGeom_destroy_r(H(), prepared);
        }
        if (!near.empty()) {
            std::sort(near.begin(), near.end(),
                      [](WKSPoint a, WKSPoint b) { return a.X < b.X || (a.X == b.X && a.Y < b.Y); });
            near.erase(std::unique(near.begin(), near.end()), near.end());
            std::vector<GeomPtr> pts;
            for (const WKSPoint& p : near) pts.push_back(Check(GEOSGeom_createPointFromXY_r(H(), p.X, p.Y), "Snap"));
            const GeomPtr targets = MakeCollection(GEOS_MULTIPOINT, pts);
            g = Check(GEOSSnap_r(H(), g.get(), targets.get(), tolerance), "Snap");
        }
        out.push_back(std::move(g));
    }
    return out;
}

} // namespace

std::vector<std::shared_ptr<Polygon>> GeosPolygonizeLines(const std::vector<std::vector<WKSPoint>>& input,
                                                          double tolerance, ClusterMethod method) {
    Ctx().ClearMessage();
    if (!(tolerance >= 0.0) || !std::isfinite(tolerance))
        throw GeometryFault(fault::InvalidCall, "ConstructPolygons", "The cluster tolerance must be 0 or more");
    std::vector<std::vector<WKSPoint>> lines;
    for (const auto& line : input) {
        std::vector<WKSPoint> pts(line);
        pts.erase(std::unique(pts.begin(), pts.end()), pts.end());
        if (pts.size() >= 2) lines.push_back(std::move(pts));
    }
    std::vector<std::shared_ptr<Polygon>> result;
    if (lines.empty()) return result;

    std::vector<GeomPtr> parts;
    GeomPtr noded;
    if (tolerance > 0.0 && method == ClusterMethod::SnapVertices) {
        ClusterVertices(lines, tolerance);
        std::erase_if(lines, [](const std::vector<WKSPoint>& l) { return l.size() < 2; });
        if (lines.empty()) return result;
        parts = SnapEndsIntoSegments(lines, tolerance);
    } else {
        for (const auto& line : lines) parts.push_back(LineFromPoints(line));
    }
    const GeomPtr all = MakeCollection(GEOS_MULTILINESTRING, parts);
    // Union nodes the lines where they cross and keeps one copy of shared pieces.
    if (tolerance > 0.0 && method == ClusterMethod::SnapRound)
        noded = Check(GEOSUnaryUnionPrec_r(H(), all.get(), tolerance), "ConstructPolygons");
    else
        noded = Check(GEOSUnaryUnion_r(H(), all.get()), "ConstructPolygons");

    const GEOSGeometry* faceInput[1] = {noded.get()};
    const GeomPtr faces = Check(GEOSPolygonize_r(H(), faceInput, 1), "ConstructPolygons");
    const int n = GEOSGetNumGeometries_r(H(), faces.get());
    for (int i = 0; i < n; ++i) {
        const GEOSGeometry* face = GEOSGetGeometryN_r(H(), faces.get(), i);
        if (GEOSisEmpty_r(H(), face) == 1) continue;
        double area = 0.0;
        if (!GEOSArea_r(H(), face, &area) || !(area > 0.0)) continue;
        result.push_back(std::dynamic_pointer_cast<Polygon>(FromGeos(face, esriGeometryPolygon)));
    }
    return result;
}

std::vector<std::shared_ptr<Polygon>> GeosPolygonizeShapes(const std::vector<std::shared_ptr<IGeometry>>& shapes,
                                                           double tolerance, ClusterMethod method) {
    Ctx().ClearMessage();
    std::vector<std::vector<WKSPoint>> lines;
    for (const auto& shape : shapes) {
        if (!shape || shape->IsEmpty()) continue;
        const esriGeometryType type = shape->GeometryType();
        if (type != esriGeometryPolyline && type != esriGeometryPolygon && type != esriGeometryPath &&
            type != esriGeometryRing && type != esriGeometryLine)
            throw GeometryFault(fault::TypeMismatch, "ConstructPolygons", "Only polylines and polygons bound regions");
        GeomPtr g = ToGeos(*shape);
        if (type == esriGeometryPolygon || type == esriGeometryRing)
            g = Check(GEOSBoundary_r(H(), g.get()), "ConstructPolygons");
        Components c;
        Collect(g.get(), c);
        for (const GEOSGeometry* l : c.lines) lines.push_back(Coords(l));
    }
    return GeosPolygonizeLines(lines, tolerance, method);
}

} // namespace tess::detail
