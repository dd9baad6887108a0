#pragma once
// Unchecked forms of the Cartesian conversions, for loops whose routine owns the
// floating-point check.

#include "geodesy/detail/AngleKernels.h"

#include <cmath>

namespace tess::MyGeometricOperations::detail {

inline void SphericalLatLongToCart(double Lon, double Lat, double& X, double& Y, double& Z, double Radius) {
    const double theta = DegToRad(kDegreesPerQuarterTurn - Lat);
    const double phi = DegToRad(Lon);
    const double sinTheta = std::sin(theta);
    X = (Radius * sinTheta) * std::cos(phi);
    Y = (Radius * sinTheta) * std::sin(phi);
    Z = Radius * std::cos(theta);
}

inline void SphericalCartToLatLong(double& Lon, double& Lat, double X, double Y, double Z) {
    const double r = std::sqrt(X * X + Y * Y);
    Lon = RadToDeg(atan2(Y, X));
    Lat = kDegreesPerQuarterTurn - RadToDeg(atan2(r, Z));
}

inline void SpheroidalLatLongToCart(double Lon, double Lat, double& X, double& Y, double& Z, double SemiMajor,
                                    double SemiMinor, double Height) {
    const double a = SemiMajor, b = SemiMinor, h = Height;
    const double theta = DegToRad(kDegreesPerQuarterTurn - Lat);
    const double phi = DegToRad(Lon);
    const double e2 = (a * a - b * b) / (a * a);
    const double cosTheta = std::cos(theta);
    const double sinTheta = std::sin(theta);
    const double N = a / std::sqrt(1.0 - (cosTheta * cosTheta) * e2);
    X = ((N + h) * sinTheta) * std::cos(phi);
    Y = ((N + h) * sinTheta) * std::sin(phi);
    Z = ((1.0 - e2) * N + h) * cosTheta;
}

inline void SpheroidalCartToLatLong(double& Lon, double& Lat, double X, double Y, double Z, double SemiMajor,
                                    double SemiMinor) {
    constexpr double kCube = 3.0; // a general power, as the formula was first written
    const double a = SemiMajor, b = SemiMinor;
    const double p = std::sqrt(X * X + Y * Y);
    const double t = atan2(Z * a, p * b);
    const double e2 = (a * a - b * b) / (a * a);
    const double ep2 = e2 / (1.0 - e2);
    const double numerator = Z + (ep2 * b) * std::pow(std::sin(t), kCube);
    const double denominator = p - (e2 * a) * std::pow(std::cos(t), kCube);
    // Arguments this way round on purpose: the angle from the pole.
    const double colatitude = atan2(denominator, numerator);
    Lon = RadToDeg(atan2(Y, X));
    Lat = kDegreesPerQuarterTurn - RadToDeg(colatitude);
}

inline void TriangleCentroid3D(double X1, double Y1, double Z1, double X2, double Y2, double Z2, double X3,
                               double Y3, double Z3, double& CX, double& CY, double& CZ) {
    constexpr double kCorners = 3.0;
    CX = (X1 + X2 + X3) / kCorners;
    CY = (Y1 + Y2 + Y3) / kCorners;
    CZ = (Z1 + Z2 + Z3) / kCorners;
}

} // namespace tess::MyGeometricOperations::detail
