#include "geodesy/Vincenty.h"

#include "frame/ErrorHandling.h"
#include "geodesy/detail/VincentyKernels.h"
#include "platform/geometry/Geometry.h"
#include "platform/geometry/Point.h"
#include "platform/geometry/Polyline.h"
#include "platform/srs/SpatialReference.h"
#include "platform/system/CheckedArithmetic.h"
#include "platform/system/Fault.h"

namespace tess::MyGeometricOperations {
namespace {

// Faulted until the body has finished, so that a trapped fault leaves that answer.
void Begin(VincentyOutcome* outcome) {
    if (outcome)
        *outcome = VincentyOutcome::Faulted;
}
void End(VincentyOutcome* outcome, bool settled) {
    if (outcome)
        *outcome = settled ? VincentyOutcome::Settled : VincentyOutcome::PassesSpent;
}

} // namespace

double DistanceVincentyNumbers(double Lon1, double Lat1, double Lon2, double Lat2, double& Azimuth1,
                               double& Azimuth2, VincentyOutcome* Outcome) {
    Begin(Outcome);
    return Trapped("DistanceVincentyNumbers ", 0.0, [&] {
        FloatingPointCheck check;
        // f from the defining inverse flattening, a and b as stored: they disagree in the
        // 13th digit, and both are used as they stand.
        const double f = 1.0 / kWgs84InverseFlattening;
        double az1, az2;
        bool settled;
        const double s = detail::VincentyInverse(Lon1, Lat1, Lon2, Lat2, kWgs84SemiMajor, kWgs84SemiMinor, f, az1,
                                                 az2, settled);
        check.Check("DistanceVincentyNumbers");
        Azimuth1 = az1;
        Azimuth2 = az2;
        End(Outcome, settled);
        return s;
    });
}

double DistanceVincentyNumbers2(double Lon1, double Lat1, double Lon2, double Lat2, double& Azimuth1,
                                double& Azimuth2, double SemiMajor, double SemiMinor, VincentyOutcome* Outcome) {
    Begin(Outcome);
    return Trapped("DistanceVincentyNumbers2 ", 0.0, [&] {
        FloatingPointCheck check;
        const double f = (SemiMajor - SemiMinor) / SemiMajor;
        double az1, az2;
        bool settled;
        const double s =
            detail::VincentyInverse(Lon1, Lat1, Lon2, Lat2, SemiMajor, SemiMinor, f, az1, az2, settled);
        check.Check("DistanceVincentyNumbers2");
        Azimuth1 = az1;
        Azimuth2 = az2;
        End(Outcome, settled);
        return s;
    });
}

double DistanceVincentyPoints(const IPoint& FromPoint, const IPoint& ToPoint, double& Azimuth1, double& Azimuth2) {
    return Trapped("DistanceVincentyPoints ", 0.0, [&] {
        return DistanceVincentyNumbers(FromPoint.X(), FromPoint.Y(), ToPoint.X(), ToPoint.Y(), Azimuth1, Azimuth2);
    });
}

double DistanceVincentyPoints2(const IPoint& FromPoint, const IPoint& ToPoint, double& Azimuth1,
                               double& Azimuth2, double SemiMajor, double SemiMinor) {
    return Trapped("DistanceVincentyPoints2 ", 0.0, [&] {
        return DistanceVincentyNumbers2(FromPoint.X(), FromPoint.Y(), ToPoint.X(), ToPoint.Y(), Azimuth1, Azimuth2,
                                        SemiMajor, SemiMinor);
    });
}

void PointLineVincentyPerPoint2(const IPoint& StartPoint, double Distance, double Azimuth, IPoint& EndPoint,
                                double& FarAzimuth, double SemiMajor, double SemiMinor, VincentyOutcome* Outcome) {
    Begin(Outcome);
    TrappedVoid("PointLineVincentyPerPoint2 ", [&] {
        const double lon = StartPoint.X();
        const double lat = StartPoint.Y();
        FloatingPointCheck check;
        double endLon, endLat, far;
        bool settled;
        detail::VincentyDirect(lon, lat, Distance, Azimuth, SemiMajor, SemiMinor, endLon, endLat, far, settled);
        check.Check("PointLineVincentyPerPoint2");
        EndPoint.X(endLon);
        EndPoint.Y(endLat);
        FarAzimuth = far;
        End(Outcome, settled);
    });
}

namespace {

// The geographic reference of a point: its own, or the one beneath its projection.
std::shared_ptr<IGeographicCoordinateSystem> GeographicReferenceOf(const IGeometry& geometry) {
    const auto reference = geometry.SpatialReference();
    if (auto geographic = std::dynamic_pointer_cast<IGeographicCoordinateSystem>(reference))
        return geographic;
    const auto projected = std::dynamic_pointer_cast<IProjectedCoordinateSystem>(reference);
    if (!projected)
        throw Fault(fault::ObjectNotSet, "PointLineVincenty2", "Object variable or With block variable not set");
    return projected->GeographicCoordinateSystem();
}

} // namespace

void PointLineVincenty2(const IPoint& StartPoint, double Distance, double Azimuth, IPoint& EndPoint,
                        double& FarAzimuth, std::int32_t& VertexCount, std::shared_ptr<IPolyline>& Polyline) {
    TrappedVoid("PointLineVincenty2 ", [&] {
        const auto geographic = GeographicReferenceOf(StartPoint);
        const auto spheroid = geographic->Datum()->Spheroid();
        const double a = spheroid->SemiMajorAxis();
        const double b = spheroid->SemiMinorAxis();

        if (VertexCount < 1) {
            PointLineVincentyPerPoint2(StartPoint, Distance, Azimuth, EndPoint, FarAzimuth, a, b);
            EndPoint.SpatialReference(geographic);
            return;
        }
        if (VertexCount == 1)
            VertexCount = 2;
        const double step = Checked("PointLineVincenty2", [&] { return Distance / (VertexCount - 1); });

        if (!Polyline)
            Polyline = std::make_shared<tess::Polyline>();
        auto& vertices = dynamic_cast<IPointCollection&>(*Polyline);
        vertices.AddPoint(StartPoint);
        // Every vertex is solved from the start, so that no error accumulates along the line.
        for (std::int32_t i = 1; i <= VertexCount - 2; ++i) {
            Point vertex;
            const double along = Checked("PointLineVincenty2", [&] { return i * step; });
            PointLineVincentyPerPoint2(StartPoint, along, Azimuth, vertex, FarAzimuth, a, b);
            vertices.AddPoint(vertex);
        }
        PointLineVincentyPerPoint2(StartPoint, Distance, Azimuth, EndPoint, FarAzimuth, a, b);
        vertices.AddPoint(EndPoint);
        Polyline->SpatialReference(geographic);
        EndPoint.SpatialReference(geographic);
    });
}

} // namespace tess::MyGeometricOperations
