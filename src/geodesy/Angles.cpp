#include "geodesy/Angles.h"

#include "frame/ErrorHandling.h"
#include "geodesy/detail/AngleKernels.h"
#include "platform/geometry/Geometry.h"
#include "platform/system/CheckedArithmetic.h"
#include "platform/system/Fault.h"

#include <cfenv>
#include <string>

namespace tess::MyGeometricOperations {

namespace detail {

double ReportNestedOverflow(const char* procedureName, std::source_location where) {
    if (std::fetestexcept(FE_DIVBYZERO | FE_INVALID) != 0)
        return 0.0;
    std::feclearexcept(FE_OVERFLOW);
    std::string source(procedureName);
    source.pop_back(); // the trailing blank belongs to the procedure line only
    try {
        throw Fault(fault::Overflow, source, "Overflow");
    } catch (const Fault&) {
        ReportCaughtFault(true, procedureName, where);
    }
    return 0.0;
}

} // namespace detail

double RadToDeg(double x) {
    return Trapped("RadToDeg ", 0.0, [&] { return Checked("RadToDeg", [&] { return detail::RadToDegFormula(x); }); });
}

double DegToRad(double x) {
    return Trapped("DegToRad ", 0.0, [&] { return Checked("DegToRad", [&] { return detail::DegToRadFormula(x); }); });
}

double AsRadians(double x) {
    return Trapped("AsRadians ", 0.0,
                   [&] { return Checked("AsRadians", [&] { return detail::AsRadiansFormula(x); }); });
}

double AsDegrees(double x) {
    return Trapped("AsDegrees ", 0.0,
                   [&] { return Checked("AsDegrees", [&] { return detail::RadToDegFormula(x); }); });
}

double atan2(double y, double x) {
    return Trapped("atan2 ", 0.0, [&] {
        return Checked("atan2", [&] {
            double quotient;
            return detail::Atan2Formula(y, x, quotient);
        });
    });
}

double CalcBearing2(const IPoint& P1, const IPoint& P2) {
    return Trapped("CalcBearing2 ", 0.0, [&] {
        FloatingPointCheck check;
        // The difference runs from the second point to the first.
        const double dX = P1.X() - P2.X();
        const double dY = P1.Y() - P2.Y();
        if (dX == 0.0 && dY == 0.0)
            return kNoValue;
        double angle;
        if (dY == 0.0)
            angle = dX < 0.0 ? -kDegreesPerQuarterTurn : (dX == 0.0 ? 0.0 : kDegreesPerQuarterTurn);
        else {
            const double ratio = dX / dY;
            check.Check("CalcBearing2");
            angle = detail::AsDegrees(std::atan(ratio));
        }
        double bearing;
        if (dY >= 0.0)
            bearing = angle + kDegreesPerHalfTurn;
        else if (dX <= 0.0)
            bearing = angle;
        else
            bearing = angle + kDegreesPerTurn;
        check.Check("CalcBearing2");
        return std::fabs(bearing);
    });
}

} // namespace tess::MyGeometricOperations
