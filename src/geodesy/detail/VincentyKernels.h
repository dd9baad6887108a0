#pragma once
// The two Vincenty problems as plain arithmetic, shared by the routines with and
// without spheroid arguments. The caller owns the floating-point check: these
// functions only compute, and never write their outputs halfway.

#include "geodesy/detail/AngleKernels.h"

#include <cmath>

namespace tess::MyGeometricOperations::detail {

//! uSq of Vincenty's series: (a^2 - b^2) cos^2(alpha) / b^2.
inline double VincentyUSquared(double a, double b, double cosSqAlpha) {
    return ((a * a - b * b) * cosSqAlpha) / (b * b);
}
inline double VincentyA(double uSq) {
    return 1.0 + (uSq / 16384.0) * (4096.0 + uSq * (-768.0 + uSq * (320.0 - 175.0 * uSq)));
}
inline double VincentyB(double uSq) {
    return (uSq / 1024.0) * (256.0 + uSq * (-128.0 + uSq * (74.0 - 47.0 * uSq)));
}
inline double VincentyDeltaSigma(double B, double sinSigma, double cosSigma, double cos2SigmaM) {
    const double c2 = cos2SigmaM * cos2SigmaM;
    return (B * sinSigma) *
           (cos2SigmaM + (B / 4.0) * (cosSigma * (2.0 * c2 - 1.0) -
                                      (((B / 6.0) * cos2SigmaM) * (4.0 * (sinSigma * sinSigma) - 3.0)) *
                                          (4.0 * c2 - 3.0)));
}
inline double VincentyC(double f, double cosSqAlpha) {
    return ((f / 16.0) * cosSqAlpha) * (4.0 + f * (4.0 - 3.0 * cosSqAlpha));
}
//! (1 - C) f sin(alpha) (sigma + C sin(sigma) (cos2SigmaM + C cos(sigma) (2 cos2SigmaM^2 - 1))).
inline double VincentyLambdaTerm(double C, double f, double sinAlpha, double sigma, double sinSigma,
                                 double cosSigma, double cos2SigmaM) {
    return (((1.0 - C) * f) * sinAlpha) *
           (sigma + (C * sinSigma) * (cos2SigmaM + (C * cosSigma) * (2.0 * (cos2SigmaM * cos2SigmaM) - 1.0)));
}

//! Inverse problem: distance in the axes' unit, azimuths in degrees [0, 360]. a and b give uSq
//! and the distance, f the reduced latitudes and the series: the caller chooses where f comes
//! from. Identical positions give 0 with both azimuths 0. No normalisation of the longitude
//! difference, no report when the loop runs out of passes: `settled` tells whether the last
//! pass met the tolerance (true also when no pass was needed).
inline double VincentyInverse(double Lon1, double Lat1, double Lon2, double Lat2, double a, double b, double f,
                              double& Azimuth1, double& Azimuth2, bool& settled) {
    settled = true;
    if (Lon1 == Lon2 && Lat1 == Lat2) {
        Azimuth1 = 0.0;
        Azimuth2 = 0.0;
        return 0.0;
    }
    const double L = DegToRad(Lon2 - Lon1);
    const double U1 = std::atan((1.0 - f) * std::tan(DegToRad(Lat1)));
    const double U2 = std::atan((1.0 - f) * std::tan(DegToRad(Lat2)));
    const double sinU1 = std::sin(U1), cosU1 = std::cos(U1);
    const double sinU2 = std::sin(U2), cosU2 = std::cos(U2);

    // When the loop never runs (L already within tolerance of two pi) these stay 0.
    double sinLambda = 0.0, cosLambda = 0.0, sinSigma = 0.0, cosSigma = 0.0, sigma = 0.0;
    double cosSqAlpha = 0.0, cos2SigmaM = 0.0;
    double lambda = L;
    double lambdaP = kTwoPi;
    int passesLeft = kVincentyPassLimit;
    while (std::fabs(lambda - lambdaP) > kTolerance && passesLeft >= 1) {
        sinLambda = std::sin(lambda);
        cosLambda = std::cos(lambda);
        const double t1 = cosU2 * sinLambda;
        const double t2 = cosU1 * sinU2 - (sinU1 * cosU2) * cosLambda;
        sinSigma = std::sqrt(t1 * t1 + t2 * t2);
        cosSigma = sinU1 * sinU2 + (cosU1 * cosU2) * cosLambda;
        sigma = atan2(sinSigma, cosSigma);
        const double sinAlpha = ((cosU1 * cosU2) * sinLambda) / sinSigma;
        cosSqAlpha = 1.0 - sinAlpha * sinAlpha;
        // An equatorial line has cosSqAlpha of exactly 0.
        cos2SigmaM = cosSqAlpha == 0.0 ? 0.0 : cosSigma - ((2.0 * sinU1) * sinU2) / cosSqAlpha;
        const double C = VincentyC(f, cosSqAlpha);
        lambdaP = lambda;
        lambda = L + VincentyLambdaTerm(C, f, sinAlpha, sigma, sinSigma, cosSigma, cos2SigmaM);
        --passesLeft;
    }
    // Written so that a NaN counts as unsettled.
    settled = std::fabs(lambda - lambdaP) <= kTolerance;

    const double uSq = VincentyUSquared(a, b, cosSqAlpha);
    const double A = VincentyA(uSq);
    const double B = VincentyB(uSq);
    const double deltaSigma = VincentyDeltaSigma(B, sinSigma, cosSigma, cos2SigmaM);
    const double s = (b * A) * (sigma - deltaSigma);

    // The last pass's sines and cosines, not those of the final lambda.
    double az1 = RadToDeg(atan2(cosU2 * sinLambda, cosU1 * sinU2 - (sinU1 * cosU2) * cosLambda));
    double az2 = RadToDeg(atan2(cosU1 * sinLambda, (cosU1 * sinU2) * cosLambda - sinU1 * cosU2));
    if (az1 < 0.0)
        az1 += kDegreesPerTurn;
    if (az2 < 0.0)
        az2 += kDegreesPerTurn;
    Azimuth1 = az1;
    Azimuth2 = az2;
    return s;
}

//! Direct problem: the end of the geodesic from (lon, lat) at Distance along Azimuth (degrees).
//! f is (a - b) / a. The longitude is not brought into any range; FarAzimuth is the direction
//! of travel at the end, in [0, 360]. A Distance of 0 copies the start and hands the azimuth back.
//! `settled` tells whether the last pass met the tolerance.
inline void VincentyDirect(double lon, double lat, double Distance, double Azimuth, double a, double b,
                           double& EndLon, double& EndLat, double& FarAzimuth, bool& settled) {
    settled = true;
    if (Distance == 0.0) {
        EndLon = lon;
        EndLat = lat;
        FarAzimuth = Azimuth;
        return;
    }
    const double f = (a - b) / a;
    const double tanU1 = (1.0 - f) * std::tan(DegToRad(lat));
    const double U1 = std::atan(tanU1);
    const double cosU1 = std::cos(U1), sinU1 = std::sin(U1);
    const double alpha1 = DegToRad(Azimuth);
    const double cosAlpha1 = std::cos(alpha1), sinAlpha1 = std::sin(alpha1);
    const double sigma1 = atan2(tanU1, cosAlpha1);
    const double sinAlpha = cosU1 * sinAlpha1;
    const double cosSqAlpha = 1.0 - sinAlpha * sinAlpha;
    const double uSq = VincentyUSquared(a, b, cosSqAlpha);
    const double A = VincentyA(uSq);
    const double B = VincentyB(uSq);

    double sigma = Distance / (b * A);
    double sigmaP = kTwoPi;
    int passesLeft = kVincentyPassLimit;
    while (std::fabs(sigma - sigmaP) > kTolerance && passesLeft >= 1) {
        const double cos2SigmaM = std::cos(2.0 * sigma1 + sigma);
        const double sinSigma = std::sin(sigma);
        const double cosSigma = std::cos(sigma);
        const double deltaSigma = VincentyDeltaSigma(B, sinSigma, cosSigma, cos2SigmaM);
        sigmaP = sigma;
        sigma = Distance / (b * A) + deltaSigma;
        --passesLeft;
    }
    settled = std::fabs(sigma - sigmaP) <= kTolerance;
    // Taken again from the final sigma, unlike the inverse problem.
    const double cos2SigmaM = std::cos(2.0 * sigma1 + sigma);
    const double sinSigma = std::sin(sigma);
    const double cosSigma = std::cos(sigma);

    const double tmp = sinU1 * sinSigma - (cosU1 * cosSigma) * cosAlpha1;
    const double lat2 = atan2(sinU1 * cosSigma + (cosU1 * sinSigma) * cosAlpha1,
                              (1.0 - f) * std::sqrt(sinAlpha * sinAlpha + tmp * tmp));
    const double lambda = atan2(sinSigma * sinAlpha1, cosU1 * cosSigma - (sinU1 * sinSigma) * cosAlpha1);
    const double C = VincentyC(f, cosSqAlpha);
    const double L = lambda - VincentyLambdaTerm(C, f, sinAlpha, sigma, sinSigma, cosSigma, cos2SigmaM);

    double far = RadToDeg(atan2(sinAlpha, -tmp));
    if (far < 0.0)
        far += kDegreesPerTurn;
    EndLon = lon + RadToDeg(L);
    EndLat = RadToDeg(lat2);
    FarAzimuth = far;
}

} // namespace tess::MyGeometricOperations::detail
