#pragma once
// The signed spherical triangle of the area routines, on plain numbers. A vertex
// carries its latitude's sine and cosine so that a polygon walk computes them once
// per vertex: the values are the same as computing them again at each use.

#include "geodesy/detail/AngleKernels.h"
#include "platform/geometry/GeometryTypes.h"

#include <cmath>

namespace tess::MyGeometricOperations::detail {

struct SphericalVertex {
    double lon;    //!< degrees
    double lat;    //!< degrees
    double phi;    //!< latitude, radians
    double sinPhi;
    double cosPhi;
};

inline SphericalVertex MakeSphericalVertex(WKSPoint p) {
    const double phi = DegToRad(p.Y);
    return {p.X, p.Y, phi, std::sin(phi), std::cos(phi)};
}

//! Radius of the sphere of the same volume as the spheroid: (a^2 b)^(1/3).
inline double EqualVolumeRadius(double SemiMajor, double SemiMinor) {
    return std::pow((SemiMajor * SemiMajor) * SemiMinor, 1.0 / 3.0);
}

//! Central angle between two vertices by the haversine form.
inline double HaversineSide(const SphericalVertex& A, const SphericalVertex& B) {
    const double dPhi = A.phi - B.phi;
    const double dLambda = DegToRad(A.lon - B.lon);
    const double sinHalfLambda = std::sin(dLambda / 2.0);
    const double sinHalfPhi = std::sin(dPhi / 2.0);
    const double h = (A.cosPhi * B.cosPhi) * (sinHalfLambda * sinHalfLambda) + sinHalfPhi * sinHalfPhi;
    return 2.0 * atan2(std::sqrt(h), std::sqrt(1.0 - h));
}

//! Azimuth from P1 towards T on the sphere, radians in [0, 2 pi].
inline double SphericalAzimuth(const SphericalVertex& P1, const SphericalVertex& T) {
    const double dLambda = DegToRad(T.lon - P1.lon);
    double azimuth = atan2(T.cosPhi * std::sin(dLambda),
                           P1.cosPhi * T.sinPhi - (P1.sinPhi * T.cosPhi) * std::cos(dLambda));
    if (azimuth < 0.0)
        azimuth += kTwoPi;
    return azimuth;
}

inline bool SameCoordinate(double u, double v) { return std::fabs(u - v) < kTolerance; }

//! The radius, computed when a triangle first needs it and kept while it is a usable value,
//! so that a polygon takes the power once and a bad spheroid still fails every triangle.
class RadiusOnDemand {
public:
    RadiusOnDemand(double SemiMajor, double SemiMinor) : a_(SemiMajor), b_(SemiMinor) {}
    double Get() {
        if (known_)
            return radius_;
        const double radius = EqualVolumeRadius(a_, b_);
        known_ = std::isfinite(radius);
        radius_ = radius;
        return radius;
    }

private:
    double a_, b_;
    double radius_ = 0.0;
    bool known_ = false;
};

//! Signed area of the triangle in the square of the radius's unit: positive when the corners run
//! clockwise seen from above the globe. A degenerate triangle (all on one meridian, or two
//! equal corners) is 0 and leaves Sign as it was.
inline double SphericalTriangle(const SphericalVertex& P1, const SphericalVertex& P2, const SphericalVertex& P3,
                                RadiusOnDemand& radius, double& Sign) {
    if (SameCoordinate(P1.lon, P2.lon) && SameCoordinate(P1.lon, P3.lon))
        return 0.0;
    if (SameCoordinate(P1.lon, P2.lon) && SameCoordinate(P1.lat, P2.lat))
        return 0.0;
    if (SameCoordinate(P1.lon, P3.lon) && SameCoordinate(P1.lat, P3.lat))
        return 0.0;
    if (SameCoordinate(P2.lon, P3.lon) && SameCoordinate(P2.lat, P3.lat))
        return 0.0;

    const double R = radius.Get();
    const double s12 = HaversineSide(P1, P2);
    const double s23 = HaversineSide(P2, P3);
    const double s31 = HaversineSide(P3, P1);

    const double A12 = SphericalAzimuth(P1, P2);
    const double A13 = SphericalAzimuth(P1, P3);
    const double d = A13 - A12;
    double sign;
    if (d <= 0.0)
        sign = std::fabs(d) <= kPi ? -1.0 : 1.0;
    else
        sign = d <= kPi ? 1.0 : -1.0;

    // L'Huilier; the abs keeps a product rounded just below zero out of the root.
    const double s = (s12 + s23 + s31) / 2.0;
    const double product =
        std::tan(s / 2.0) * std::tan((s - s12) / 2.0) * std::tan((s - s23) / 2.0) * std::tan((s - s31) / 2.0);
    const double E = 4.0 * std::atan(std::sqrt(std::fabs(product)));
    Sign = sign;
    return ((R * R) * E) * sign;
}

} // namespace tess::MyGeometricOperations::detail
