#pragma once
// Inline forms of the angle routines for the inner loops of the module. They fail
// only by overflow of a finite argument, which shows in the result; then, as the
// trapped routine would, they report under that routine's name and give 0. The
// normal path touches no floating-point state and allocates nothing.

#include "geodesy/GeodesyConstants.h"

#include <cmath>
#include <source_location>

namespace tess::MyGeometricOperations::detail {

//! Reports an overflow under procedureName (which carries its trailing blank) and clears the
//! overflow flag it left, so that the enclosing routine's check does not report it again.
//! When the enclosing routine has already failed (division by zero or invalid operation
//! raised), that failure came first and is the one reported, by the enclosing routine; this
//! one stays silent. Returns 0.
[[gnu::cold, gnu::noinline]] double ReportNestedOverflow(const char* procedureName, std::source_location where);

//! +1, 0 or -1 as a double.
inline double Sgn(double v) { return v > 0.0 ? 1.0 : (v < 0.0 ? -1.0 : 0.0); }

// The formulas, unchecked. The order of operations is part of their definition.
inline double RadToDegFormula(double x) { return (x * kDegreesPerHalfTurn) / kPi; }
inline double DegToRadFormula(double x) { return (x * kPi) / kDegreesPerHalfTurn; }
inline double AsRadiansFormula(double x) { return (x / kDegreesPerHalfTurn) * kPi; }

//! The module's arc tangent; sets quotient to y / x where it is formed, so that a caller
//! can tell an overflow (an infinite quotient of finite arguments) from the result.
inline double Atan2Formula(double y, double x, double& quotient) {
    quotient = 0.0;
    if (x > 0.0) {
        quotient = y / x;
        return std::atan(quotient);
    }
    if (x < 0.0) {
        quotient = y / x;
        if (y == 0.0)
            return kPi - std::atan(std::fabs(quotient));
        return (kPi - std::atan(std::fabs(quotient))) * Sgn(y);
    }
    if (y == 0.0)
        return 0.0;
    return (Sgn(y) * kPi) / 2.0;
}

inline bool Overflowed(double result, double argument) { return std::isinf(result) && std::isfinite(argument); }

inline double RadToDeg(double x, std::source_location where = std::source_location::current()) {
    const double r = RadToDegFormula(x);
    if (Overflowed(r, x)) [[unlikely]]
        return ReportNestedOverflow("RadToDeg ", where);
    return r;
}

inline double DegToRad(double x, std::source_location where = std::source_location::current()) {
    const double r = DegToRadFormula(x);
    if (Overflowed(r, x)) [[unlikely]]
        return ReportNestedOverflow("DegToRad ", where);
    return r;
}

//! (x / 180) * pi cannot overflow for a finite x.
inline double AsRadians(double x) { return AsRadiansFormula(x); }

inline double AsDegrees(double x, std::source_location where = std::source_location::current()) {
    const double r = RadToDegFormula(x);
    if (Overflowed(r, x)) [[unlikely]]
        return ReportNestedOverflow("AsDegrees ", where);
    return r;
}

inline double atan2(double y, double x, std::source_location where = std::source_location::current()) {
    double quotient;
    const double r = Atan2Formula(y, x, quotient);
    if (std::isinf(quotient) && std::isfinite(y) && std::isfinite(x)) [[unlikely]]
        return ReportNestedOverflow("atan2 ", where);
    return r;
}

} // namespace tess::MyGeometricOperations::detail
