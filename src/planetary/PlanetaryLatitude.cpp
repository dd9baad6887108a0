#include "planetary/PlanetaryLatitude.h"

#include "frame/ErrorHandling.h"
#include "geodesy/detail/AngleKernels.h"
#include "platform/geometry/Geometry.h"
#include "platform/geometry/Point.h"
#include "platform/srs/SpatialReference.h"
#include "platform/system/CheckedArithmetic.h"
#include "platform/system/Clone.h"
#include "platform/system/Fault.h"
#include "platform/ui/UIServices.h"

#include <cmath>
#include <string>

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

namespace {

using LatitudeConversion = void (*)(double, double, double, double, double, double&, double&);

struct FeatureRoutine {
    const char* procedure;        //!< with the trailing blank of the procedure line
    const char* nameInMessage;    //!< as the routine spells itself to the user
    LatitudeConversion convert;
};

constexpr const char* kLineBreak = "\r\n";

void TakeAxesFromReference(const FeatureRoutine& routine, const IGeometry& Geometry, double& SemiMajor,
                           double& SemiMinor) {
    const auto reference = Geometry.SpatialReference();
    const auto geographic = std::dynamic_pointer_cast<IGeographicCoordinateSystem>(reference);
    if (!geographic) {
        if (!reference)
            throw Fault(fault::ObjectNotSet, routine.nameInMessage, "Object variable or With block variable not set");
        // The message does not stop the routine: the next step fails and is reported.
        UI().MessageBox(std::string("The function '") + routine.nameInMessage +
                            "' only accepts geometries with geographic projections." + kLineBreak +
                            "This geometry has spatial reference '" + reference->Name() + "...",
                        MsgBoxButtons::OK, MsgBoxIcon::None, "Unexpected Spatial Reference:");
        throw Fault(fault::ObjectNotSet, routine.nameInMessage, "Object variable or With block variable not set");
    }
    const auto spheroid = geographic->Datum()->Spheroid();
    SemiMajor = spheroid->SemiMajorAxis();
    SemiMinor = spheroid->SemiMinorAxis();
}

std::shared_ptr<IGeometry> ConvertFeature(const FeatureRoutine& routine, const IGeometry& Geometry, double& SemiMajor,
                                          double& SemiMinor, double LongShift) {
    return Trapped(routine.procedure, std::shared_ptr<IGeometry>(), [&]() -> std::shared_ptr<IGeometry> {
        if (SemiMajor <= 0.0 || SemiMinor <= 0.0)
            TakeAxesFromReference(routine, Geometry, SemiMajor, SemiMinor);

        switch (Geometry.GeometryType()) {
        case esriGeometryPoint: {
            const auto& in = dynamic_cast<const IPoint&>(Geometry);
            auto out = std::make_shared<Point>();
            out->SpatialReference(Geometry.SpatialReference());
            double lon = 0.0, lat = 0.0;
            routine.convert(in.X(), in.Y(), SemiMajor, SemiMinor, LongShift, lon, lat);
            out->PutCoords(lon, lat);
            return out;
        }
        case esriGeometryPolyline:
        case esriGeometryPolygon:
        case esriGeometryMultipoint: {
            auto copy = std::dynamic_pointer_cast<IGeometry>(dynamic_cast<const IClone&>(Geometry).Clone());
            const auto vertices = dynamic_cast<const IPointCollection&>(*copy).EnumVertices();
            Point scratch;
            std::int32_t part = 0, vertex = 0;
            vertices->QueryNext(scratch, part, vertex);
            while (vertex > -1) {
                double lon = 0.0, lat = 0.0;
                routine.convert(scratch.X(), scratch.Y(), SemiMajor, SemiMinor, LongShift, lon, lat);
                vertices->put_Y(lat);
                vertices->put_X(lon);
                vertices->QueryNext(scratch, part, vertex);
            }
            return copy;
        }
        default:
            // One text serves both directions.
            UI().MessageBox("The function 'PlanetOCentricToPlanetOGraphic' only accepts points, polylines, "
                            "polygons or multipoints.",
                            MsgBoxButtons::OK, MsgBoxIcon::None, "Unexpected Geometry Type:");
            return nullptr;
        }
    });
}

constexpr FeatureRoutine kCentricToGraphic{"FeaturePlanetOCentricToPlanetOGraphic ",
                                           "FeaturePlanetOCentricToPlanetOGraphic", &XYOCentricToOGraphic};
constexpr FeatureRoutine kGraphicToCentric{"FeaturePlanetOGraphicToPlanetOCentric ",
                                           "FeaturePlanetOgraphicToPlanetOcentric", &XYOGraphicToOCentric};

} // namespace

std::shared_ptr<IGeometry> FeaturePlanetOCentricToPlanetOGraphic(const IGeometry& Geometry, double& SemiMajor,
                                                                 double& SemiMinor, double LongShift) {
    return ConvertFeature(kCentricToGraphic, Geometry, SemiMajor, SemiMinor, LongShift);
}

std::shared_ptr<IGeometry> FeaturePlanetOGraphicToPlanetOCentric(const IGeometry& Geometry, double& SemiMajor,
                                                                 double& SemiMinor, double LongShift) {
    return ConvertFeature(kGraphicToCentric, Geometry, SemiMajor, SemiMinor, LongShift);
}

} // namespace tess::MyGeometricOperations
