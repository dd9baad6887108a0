#pragma once
// Degree and radian conversion, the module's own two-argument arc tangent and a
// planar bearing. Each routine traps its faults: an overflow or division by zero
// is reported under the routine's name and the result is 0.

namespace tess {
class IPoint;
}

namespace tess::MyGeometricOperations {

//! (x * 180) / pi, pi being the module's cut literal.
double RadToDeg(double x);
//! (x * pi) / 180. Not merged with AsRadians: the two round differently in the last bit.
double DegToRad(double x);
//! (x / 180) * pi: the division first. Used by the planetary latitudes and CalcBearing2.
double AsRadians(double x);
//! (x * 180) / pi, as RadToDeg.
double AsDegrees(double x);

//! Arc tangent of y / x in radians, [-pi, pi], built on the one-argument arc tangent.
//! atan2(0, 0) is 0 without a report; atan2(+-0, x < 0) is +pi.
double atan2(double y, double x);

//! Planar bearing in degrees [0, 360] from first to second point, clockwise from +Y, on the
//! raw X and Y; -9999 for identical points.
double CalcBearing2(const IPoint& P1, const IPoint& P2);

} // namespace tess::MyGeometricOperations
