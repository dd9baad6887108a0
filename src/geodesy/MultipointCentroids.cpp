#include "geodesy/MultipointCentroids.h"

#include "frame/ErrorHandling.h"
#include "geodesy/Cartesian.h"
#include "platform/geometry/Geometry.h"
#include "platform/geometry/Point.h"
#include "platform/system/CheckedArithmetic.h"
#include "platform/system/Fault.h"

namespace tess::MyGeometricOperations {

namespace {

// The mean divides by the point count: none is a division by zero, reported as such.
double CountOrFault(const IPointCollection& points, const char* source) {
    const std::int32_t count = points.PointCount();
    if (count == 0)
        throw Fault(fault::DivisionByZero, source, "Division by zero");
    return static_cast<double>(count);
}

} // namespace

std::shared_ptr<IPoint> MultipointCentroidSpheroid(const IPointCollection& Multipoint, double SemiMajor,
                                                   double SemiMinor, double Height) {
    return Trapped("MultipointCentroidSpheroid ", std::shared_ptr<IPoint>(), [&] {
        FloatingPointCheck check;
        const std::int32_t n = Multipoint.PointCount();
        Point scratch;
        double sumX = 0.0, sumY = 0.0, sumZ = 0.0;
        for (std::int32_t i = 0; i < n; ++i) {
            Multipoint.QueryPoint(i, scratch);
            double x = 0.0, y = 0.0, z = 0.0;
            SpheroidalLatLongToCart(scratch.X(), scratch.Y(), x, y, z, SemiMajor, SemiMinor, Height);
            sumX += x;
            sumY += y;
            sumZ += z;
        }
        const double count = CountOrFault(Multipoint, "MultipointCentroidSpheroid");
        const double meanX = sumX / count, meanY = sumY / count, meanZ = sumZ / count;
        check.Check("MultipointCentroidSpheroid");
        // The mean lies inside the spheroid; its depth is dropped.
        double lon = 0.0, lat = 0.0;
        SpheroidalCartToLatLong(lon, lat, meanX, meanY, meanZ, SemiMajor, SemiMinor, Height);
        auto centre = std::make_shared<Point>();
        centre->PutCoords(lon, lat);
        return std::static_pointer_cast<IPoint>(centre);
    });
}

std::shared_ptr<IPoint> MultipointCentroid(const IPointCollection& Multipoint) {
    return Trapped("MultipointCentroid ", std::shared_ptr<IPoint>(), [&] {
        FloatingPointCheck check;
        const std::int32_t n = Multipoint.PointCount();
        Point scratch;
        double sumX = 0.0, sumY = 0.0;
        for (std::int32_t i = 0; i < n; ++i) {
            Multipoint.QueryPoint(i, scratch);
            sumX += scratch.X();
            sumY += scratch.Y();
        }
        const double count = CountOrFault(Multipoint, "MultipointCentroid");
        const double meanX = sumX / count, meanY = sumY / count;
        check.Check("MultipointCentroid");
        auto centre = std::make_shared<Point>();
        centre->PutCoords(meanX, meanY);
        if (const auto* geometry = dynamic_cast<const IGeometry*>(&Multipoint))
            centre->SpatialReference(geometry->SpatialReference());
        return std::static_pointer_cast<IPoint>(centre);
    });
}

} // namespace tess::MyGeometricOperations
