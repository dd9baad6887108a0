#include "planetary/PlanetaryLatitude.h"

#include "frame/ErrorHandling.h"
#include "geodesy/detail/AngleKernels.h"
#include "platform/system/CheckedArithmetic.h"

#include <cmath>

namespace tess::MyGeometricOperations {

namespace {

// (SemiMajor / SemiMinor) squared.
double AxisRatioSquared(double SemiMajor, double SemiMinor) {
    const double ratio = SemiMajor / SemiMinor;
    return ratio * ratio;
}

} // namespace

void XYOCentricToOGraphic(double Lon, double Lat, double SemiMajor, double SemiMinor, double LongShift,
                          double& NewLon, double& NewLat) {
    TrappedVoid("XYOCentricToOGraphic ", [&] {
        FloatingPointCheck check;
        const double lon = Lon + LongShift;
        check.Check("XYOCentricToOGraphic");
        NewLon = lon;
        const double k = AxisRatioSquared(SemiMajor, SemiMinor);
        const double lat = detail::AsDegrees(std::atan(k * std::tan(detail::AsRadians(Lat))));
        check.Check("XYOCentricToOGraphic");
        NewLat = lat;
    });
}

void XYOGraphicToOCentric(double Lon, double Lat, double SemiMajor, double SemiMinor, double LongShift,
                          double& NewLon, double& NewLat) {
    TrappedVoid("XYOGraphicToOCentric ", [&] {
        FloatingPointCheck check;
        const double lon = Lon + LongShift;
        check.Check("XYOGraphicToOCentric");
        NewLon = lon;
        const double k = AxisRatioSquared(SemiMajor, SemiMinor);
        const double lat = detail::AsDegrees(std::atan(std::tan(detail::AsRadians(Lat)) / k));
        check.Check("XYOGraphicToOCentric");
        NewLat = lat;
    });
}

} // namespace tess::MyGeometricOperations
