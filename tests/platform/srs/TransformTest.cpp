#include "platform/srs/Transform.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "platform/srs/SpatialReference.h"
#include "platform/srs/SpatialReferenceEnvironment.h"
#include "platform/system/Fault.h"

namespace tess {
namespace {

TEST(TransformCoordinates, UtmRoundTripInLongitudeLatitudeOrder) {
    const SpatialReferenceEnvironment factory;
    auto wgs84 = factory.CreateGeographicCoordinateSystem(4326);
    auto utm = factory.CreateProjectedCoordinateSystem(32633);
    double x[] = {15.0, 16.5};
    double y[] = {0.0, 48.2};
    TransformCoordinates(*wgs84, *utm, x, y, 2);
    // On the central meridian at the equator: exactly the false easting and 0, to 1 mm.
    EXPECT_NEAR(x[0], 500000.0, 1e-3);
    EXPECT_NEAR(y[0], 0.0, 1e-3);
    // 16.5 E 48.2 N lies east of the central meridian, about 5340 km north.
    EXPECT_GT(x[1], 600000.0);
    EXPECT_NEAR(y[1], 5340000.0, 10000.0);
    TransformCoordinates(*utm, *wgs84, x, y, 2);
    // 1e-9 degree (0.1 mm): the forward and inverse series agree far better than that.
    EXPECT_NEAR(x[1], 16.5, 1e-9);
    EXPECT_NEAR(y[1], 48.2, 1e-9);
    EXPECT_NEAR(x[0], 15.0, 1e-9);
}

TEST(TransformCoordinates, WebMercatorKnownValue) {
    const SpatialReferenceEnvironment factory;
    auto wgs84 = factory.CreateGeographicCoordinateSystem(4326);
    auto web = factory.CreateProjectedCoordinateSystem(3857);
    double x = 180.0;
    double y = 0.0;
    TransformCoordinates(*wgs84, *web, &x, &y, 1);
    // Half the equator of the sphere of radius a: pi * 6378137 m, to 1 mm.
    EXPECT_NEAR(x, M_PI * 6378137.0, 1e-3);
    // Repeated with copies of the references: the cached transformation serves them.
    double x2 = 180.0;
    double y2 = 0.0;
    TransformCoordinates(*wgs84->Clone(), *web->Clone(), &x2, &y2, 1);
    EXPECT_EQ(x2, x);
}

TEST(TransformCoordinates, UnknownOrEqualReferencesLeavePointsAlone) {
    const SpatialReferenceEnvironment factory;
    auto wgs84 = factory.CreateGeographicCoordinateSystem(4326);
    double x = 1.25;
    double y = 2.5;
    TransformCoordinates(*factory.CreateUnknown(), *wgs84, &x, &y, 1);
    TransformCoordinates(*wgs84, *wgs84->Clone(), &x, &y, 1);
    EXPECT_EQ(x, 1.25);
    EXPECT_EQ(y, 2.5);
}

TEST(TransformCoordinates, FailingPointFaults) {
    const SpatialReferenceEnvironment factory;
    auto wgs84 = factory.CreateGeographicCoordinateSystem(4326);
    auto web = factory.CreateProjectedCoordinateSystem(3857);
    double x[] = {0.0, 0.0};
    double y[] = {0.0, 95.0}; // beyond the pole
    try {
        TransformCoordinates(*wgs84, *web, x, y, 2);
        FAIL() << "pole projected to " << y[1];
    } catch (const Fault& f) {
        EXPECT_EQ(f.Number(), fault::SpatialReferenceFailed);
        EXPECT_NE(f.Description().find("point 1"), std::string::npos) << f.Description();
    }
}

TEST(TransformCoordinates, MarsPlanetocentricToEquidistant) {
    const SpatialReferenceEnvironment factory;
    auto mars = factory.CreateGeographicCoordinateSystem(104905);
    // Mars 2000 equidistant cylindrical (ESRI 104905's projected sibling).
    auto eqc = FromWkt(R"(PROJCS["Mars_Equidistant_Cylindrical",GEOGCS["GCS_Mars_2000",)"
                       R"(DATUM["D_Mars_2000",SPHEROID["Mars_2000_IAU_IAG",3396190.0,169.894447223612]],)"
                       R"(PRIMEM["Reference_Meridian",0.0],UNIT["Degree",0.0174532925199433]],)"
                       R"(PROJECTION["Equidistant_Cylindrical"],PARAMETER["False_Easting",0.0],)"
                       R"(PARAMETER["False_Northing",0.0],PARAMETER["Central_Meridian",0.0],)"
                       R"(PARAMETER["Standard_Parallel_1",0.0],UNIT["Meter",1.0]])");
    EXPECT_EQ(eqc->Name(), "Mars_Equidistant_Cylindrical");
    double x = 90.0;
    double y = 0.0;
    TransformCoordinates(*mars, *eqc, &x, &y, 1);
    // A quarter of the equator of radius 3396190 m, to 1 mm.
    EXPECT_NEAR(x, M_PI / 2.0 * 3396190.0, 1e-3);
}

} // namespace
} // namespace tess
