#include "geodesy/Cartesian.h"

#include "frame/ErrorHandling.h"
#include "geodesy/detail/CartesianKernels.h"
#include "platform/system/CheckedArithmetic.h"

namespace tess::MyGeometricOperations {

void SphericalLatLongToCart(double Lon, double Lat, double& X, double& Y, double& Z, double Radius) {
    TrappedVoid("SphericalLatLongToCart ", [&] {
        FloatingPointCheck check;
        double x, y, z;
        detail::SphericalLatLongToCart(Lon, Lat, x, y, z, Radius);
        check.Check("SphericalLatLongToCart");
        X = x;
        Y = y;
        Z = z;
    });
}

void SpheroidalLatLongToCart(double Lon, double Lat, double& X, double& Y, double& Z, double SemiMajor,
                             double SemiMinor, double Height) {
    TrappedVoid("SpheroidalLatLongToCart ", [&] {
        FloatingPointCheck check;
        double x, y, z;
        detail::SpheroidalLatLongToCart(Lon, Lat, x, y, z, SemiMajor, SemiMinor, Height);
        check.Check("SpheroidalLatLongToCart");
        X = x;
        Y = y;
        Z = z;
    });
}

void SphericalCartToLatLong(double& Lon, double& Lat, double X, double Y, double Z) {
    TrappedVoid("SphericalCartToLatLong ", [&] {
        FloatingPointCheck check;
        double lon, lat;
        detail::SphericalCartToLatLong(lon, lat, X, Y, Z);
        check.Check("SphericalCartToLatLong");
        Lon = lon;
        Lat = lat;
    });
}

void SpheroidalCartToLatLong(double& Lon, double& Lat, double X, double Y, double Z, double SemiMajor,
                             double SemiMinor, double /*Height: accepted for symmetry, read by nothing*/) {
    TrappedVoid("SpheroidalCartToLatLong ", [&] {
        FloatingPointCheck check;
        double lon, lat;
        detail::SpheroidalCartToLatLong(lon, lat, X, Y, Z, SemiMajor, SemiMinor);
        check.Check("SpheroidalCartToLatLong");
        Lon = lon;
        Lat = lat;
    });
}

void TriangleCentroid3D(double X1, double Y1, double Z1, double X2, double Y2, double Z2, double X3, double Y3,
                        double Z3, double& CX, double& CY, double& CZ) {
    TrappedVoid("TriangleCentroid3D ", [&] {
        FloatingPointCheck check;
        double cx, cy, cz;
        detail::TriangleCentroid3D(X1, Y1, Z1, X2, Y2, Z2, X3, Y3, Z3, cx, cy, cz);
        check.Check("TriangleCentroid3D");
        CX = cx;
        CY = cy;
        CZ = cz;
    });
}

} // namespace tess::MyGeometricOperations
