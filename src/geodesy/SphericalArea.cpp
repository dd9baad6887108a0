#include "geodesy/SphericalArea.h"

#include "frame/ErrorHandling.h"
#include "geodesy/detail/CartesianKernels.h"
#include "geodesy/detail/SegmentWalk.h"
#include "geodesy/detail/SphericalKernels.h"
#include "platform/geometry/Geometry.h"
#include "platform/system/CheckedArithmetic.h"
#include "platform/system/Fault.h"

namespace tess::MyGeometricOperations {

namespace {

using detail::SphericalVertex;

struct RoutineName {
    const char* procedure; //!< with the trailing blank of the procedure line
    const char* source;
};
constexpr RoutineName kTriangle{"SphericalTriangleArea ", "SphericalTriangleArea"};
constexpr RoutineName kTriangle2{"SphericalTriangleArea2 ", "SphericalTriangleArea2"};
constexpr RoutineName kPolygon{"SphericalPolygonArea ", "SphericalPolygonArea"};
constexpr RoutineName kPolygon2{"SphericalPolygonArea2 ", "SphericalPolygonArea2"};

constexpr double kUnitRadius = 1.0;

// One triangle as its own trapped routine: a failure reports under the triangle's name and
// gives 0, and the polygon that asked goes on.
double TriangleArea(const RoutineName& name, const SphericalVertex& p1, const SphericalVertex& p2,
                    const SphericalVertex& p3, detail::RadiusOnDemand& radius, double& Sign) {
    return Trapped(name.procedure, 0.0, [&] {
        FloatingPointCheck check;
        double sign = Sign;
        const double area = detail::SphericalTriangle(p1, p2, p3, radius, sign);
        check.Check(name.source);
        Sign = sign;
        return area;
    });
}

double TriangleFromPoints(const RoutineName& name, const IPoint& P1, const IPoint& P2, const IPoint& P3,
                          double& Sign, double SemiMajor, double SemiMinor) {
    return Trapped(name.procedure, 0.0, [&] {
        FloatingPointCheck check;
        const SphericalVertex v1 = detail::MakeSphericalVertex({P1.X(), P1.Y()});
        const SphericalVertex v2 = detail::MakeSphericalVertex({P2.X(), P2.Y()});
        const SphericalVertex v3 = detail::MakeSphericalVertex({P3.X(), P3.Y()});
        check.Check(name.source);
        detail::RadiusOnDemand radius(SemiMajor, SemiMinor);
        return TriangleArea(name, v1, v2, v3, radius, Sign);
    });
}

// A vertex with what the walk needs of it: its latitude's sine and cosine and, for the
// centre, its direction on the unit sphere.
struct WalkVertex {
    SphericalVertex sphere;
    double x = 0.0, y = 0.0, z = 0.0;
};

WalkVertex MakeWalkVertex(WKSPoint p, bool wantDirection) {
    WalkVertex v{detail::MakeSphericalVertex(p)};
    if (wantDirection)
        detail::SphericalLatLongToCart(p.X, p.Y, v.x, v.y, v.z, kUnitRadius);
    return v;
}

double PolygonArea(const RoutineName& name, const RoutineName& triangle, const IPolygon& Polygon,
                   bool WantCentroid, double& CentroidLon, double& CentroidLat, double SemiMajor,
                   double SemiMinor) {
    return Trapped(name.procedure, 0.0, [&] {
        FloatingPointCheck check;
        const auto* rings = dynamic_cast<const IPolygon4*>(&Polygon);
        if (!rings)
            throw Fault(fault::TypeMismatch, name.source, "Type mismatch");
        const auto bag = rings->ConnectedComponentBag();
        const auto& components = dynamic_cast<const IGeometryCollection&>(*bag);

        detail::RadiusOnDemand radius(SemiMajor, SemiMinor);
        double area = 0.0;
        double SX = 0.0, SY = 0.0, SZ = 0.0;
        const std::int32_t componentCount = components.GeometryCount();
        for (std::int32_t c = 0; c < componentCount; ++c) {
            const auto component = components.Geometry(c);
            const auto centroid = dynamic_cast<const IArea&>(*component).Centroid();
            const WalkVertex apex = MakeWalkVertex({centroid->X(), centroid->Y()}, WantCentroid);

            // The end of one segment is the start of the next within a ring.
            WKSPoint lastTo{};
            WalkVertex lastToVertex;
            bool haveLast = false;
            detail::ForEachSegment(*component, [&](WKSPoint from, WKSPoint to) {
                const WalkVertex fromVertex =
                    haveLast && from == lastTo ? lastToVertex : MakeWalkVertex(from, WantCentroid);
                const WalkVertex toVertex = MakeWalkVertex(to, WantCentroid);
                double sign = 0.0; // the polygon has no use for the triangle's sign
                const double t = TriangleArea(triangle, fromVertex.sphere, toVertex.sphere, apex.sphere, radius, sign);
                area += t;
                if (WantCentroid) {
                    double cx, cy, cz;
                    detail::TriangleCentroid3D(fromVertex.x, fromVertex.y, fromVertex.z, toVertex.x, toVertex.y,
                                               toVertex.z, apex.x, apex.y, apex.z, cx, cy, cz);
                    const double length = std::sqrt(cx * cx + cy * cy + cz * cz);
                    SX += (cx / length) * t;
                    SY += (cy / length) * t;
                    SZ += (cz / length) * t;
                }
                // Stops at the first failure of the polygon's own arithmetic, as a trap would.
                check.Check(name.source);
                lastTo = to;
                lastToVertex = toVertex;
                haveLast = true;
            });
        }

        if (WantCentroid) {
            double lon = kNoValue, lat = kNoValue;
            if (area > 0.0)
                detail::SphericalCartToLatLong(lon, lat, SX / area, SY / area, SZ / area);
            check.Check(name.source);
            CentroidLon = lon;
            CentroidLat = lat;
        }
        check.Check(name.source);
        return area;
    });
}

} // namespace

double SphericalTriangleArea(const IPoint& P1, const IPoint& P2, const IPoint& P3, double& Sign) {
    return TriangleFromPoints(kTriangle, P1, P2, P3, Sign, kWgs84SemiMajor, kWgs84SemiMinor);
}

double SphericalTriangleArea2(const IPoint& P1, const IPoint& P2, const IPoint& P3, double& Sign,
                              double SemiMajor, double SemiMinor) {
    return TriangleFromPoints(kTriangle2, P1, P2, P3, Sign, SemiMajor, SemiMinor);
}

double SphericalPolygonArea(const IPolygon& Polygon, bool WantCentroid, double& CentroidLon, double& CentroidLat) {
    return PolygonArea(kPolygon, kTriangle, Polygon, WantCentroid, CentroidLon, CentroidLat, kWgs84SemiMajor,
                       kWgs84SemiMinor);
}

double SphericalPolygonArea2(IPolygon& Polygon, bool WantCentroid, double& CentroidLon, double& CentroidLat,
                             double SemiMajor, double SemiMinor) {
    return Trapped(kPolygon2.procedure, 0.0, [&] {
        Polygon.SnapToSpatialReference();
        return PolygonArea(kPolygon2, kTriangle2, Polygon, WantCentroid, CentroidLon, CentroidLat, SemiMajor,
                           SemiMinor);
    });
}

} // namespace tess::MyGeometricOperations
