// Every measure of the catalogue on made shapes, per shape kind and coordinate
// kind, against answers known in closed form, from the platform's projection,
// or from an independent geodesic solution (GeographicLib).

#include <GeographicLib/Geodesic.hpp>
#include <GeographicLib/PolygonArea.hpp>

#include <cmath>

#include "CalculatorFixtures.h"
#include "geodesy/Angles.h"
#include "geodesy/SphericalArea.h"
#include "planetary/PlanetaryLatitude.h"

namespace tess::test {
namespace {

namespace geo = MyGeometricOperations;

// Vincenty against an exact geodesic: 0.08 mm on WGS 1984, 0.4 mm on Mars 2000 (documented in
// Vincenty.h); a millimetre covers both with the sums of a few segments.
constexpr double kLengthTolerance = 1e-3; // metres
// Azimuths carry the loop's stopping rule (about 6 um sideways); 1e-7 degrees is ~1 cm at 100 km.
constexpr double kAzimuthTolerance = 1e-7; // degrees
// The direct problem of the midpoint walk: well under a millimetre, i.e. 1e-8 degrees.
constexpr double kPositionTolerance = 1e-8; // degrees
// The sum of spherical triangles against an exact geodesic polygon on the same sphere: 1e-9
// relative (SphericalArea.h); the cut pi puts the last digits off.
constexpr double kAreaRelative = 1e-8;
// Projected coordinates round-trip through the platform's projection.
constexpr double kProjectedTolerance = 1e-6; // metres

double Flattening(double a, double b) { return (a - b) / a; }

double AuthalicRadius(double a, double b) { return std::cbrt(a * a * b); } // same volume as the spheroid

TEST_F(CalcTest, UnknownPolylineMeasuresArePlanarOnTheStoredCoordinates) {
    // A 3-4-5 line with a kink, then a second part.
    auto layer = Layer("lines", esriGeometryPolyline, nullptr,
                       {MakePolyline({{{0, 0}, {3, 4}, {6, 0}}, {{10, 10}, {10, 20}}})});
    Run(layer, Defaults(esriGeometryPolyline, spatial_kind::Unknown, {1, 2, 3, 4, 5, 6, 7}));
    const RowValues row = Rows(layer, {"Length", "Start_X", "Start_Y", "Mid_X", "Mid_Y", "End_X", "End_Y", "Azimuth",
                                       "Parts", "Vertices"})
                              .at(0);
    EXPECT_DOUBLE_EQ(row.at("Length").ToDouble(), 20.0);
    EXPECT_DOUBLE_EQ(row.at("Start_X").ToDouble(), 0.0);
    EXPECT_DOUBLE_EQ(row.at("Start_Y").ToDouble(), 0.0);
    EXPECT_DOUBLE_EQ(row.at("Mid_X").ToDouble(), 6.0); // 10 units along: the end of the first part
    EXPECT_DOUBLE_EQ(row.at("Mid_Y").ToDouble(), 0.0);
    EXPECT_DOUBLE_EQ(row.at("End_X").ToDouble(), 10.0);
    EXPECT_DOUBLE_EQ(row.at("End_Y").ToDouble(), 20.0);
    // First point to last point across both parts: atan(10 / 20) east of north.
    EXPECT_NEAR(row.at("Azimuth").ToDouble(), std::atan2(10.0, 20.0) * 180.0 / 3.14159265358979, 1e-12);
    EXPECT_EQ(row.at("Parts").ToLong(), 2);
    EXPECT_EQ(row.at("Vertices").ToLong(), 5);
}

TEST_F(CalcTest, GeographicPolylineMeasuresAgreeWithAnExactGeodesic) {
    const std::vector<WKSPoint> path{{10, 50}, {12, 51}, {13, 49}};
    auto layer = Layer("lines", esriGeometryPolyline, Wgs84(), {MakePolyline({path})});
    Run(layer, Defaults(esriGeometryPolyline, spatial_kind::Geographic, {1, 2, 3, 4, 5, 6, 7, 8}));
    const RowValues row = Rows(layer, {"Sph_Len", "Start_X", "Start_Y", "Mid_X", "Mid_Y", "End_X", "End_Y",
                                       "Start_Az", "End_Az", "Parts", "Vertices"})
                              .at(0);

    const GeographicLib::Geodesic wgs(kWgsA, Flattening(kWgsA, kWgsB));
    double s1 = 0, s2 = 0, a1 = 0, a2 = 0;
    wgs.Inverse(50, 10, 51, 12, s1, a1, a2);
    wgs.Inverse(51, 12, 49, 13, s2, a1, a2);
    EXPECT_NEAR(row.at("Sph_Len").ToDouble(), s1 + s2, kLengthTolerance);

    // Half the length lies on the second segment.
    const double along = (s1 + s2) / 2 - s1;
    double azimuth = 0, s = 0, lat = 0, lon = 0, back = 0;
    wgs.Inverse(51, 12, 49, 13, s, azimuth, back);
    wgs.Direct(51, 12, azimuth, along, lat, lon);
    EXPECT_NEAR(row.at("Mid_X").ToDouble(), lon, kPositionTolerance);
    EXPECT_NEAR(row.at("Mid_Y").ToDouble(), lat, kPositionTolerance);

    // Geocentric off: the end points are the stored vertices, exactly.
    EXPECT_EQ(row.at("Start_X").ToDouble(), 10.0);
    EXPECT_EQ(row.at("Start_Y").ToDouble(), 50.0);
    EXPECT_EQ(row.at("End_X").ToDouble(), 13.0);
    EXPECT_EQ(row.at("End_Y").ToDouble(), 49.0);

    // One geodesic from the first point to the last; the end azimuth is the direction of travel.
    double whole = 0, startAz = 0, endAz = 0;
    wgs.Inverse(50, 10, 49, 13, whole, startAz, endAz);
    EXPECT_NEAR(row.at("Start_Az").ToDouble(), startAz, kAzimuthTolerance);
    EXPECT_NEAR(row.at("End_Az").ToDouble(), endAz, kAzimuthTolerance);
    EXPECT_EQ(row.at("Parts").ToLong(), 1);
    EXPECT_EQ(row.at("Vertices").ToLong(), 3);
}

TEST_F(CalcTest, ProjectedPolylineMeasuresKeepProjectedCoordinatesForEveryPoint) {
    const std::vector<WKSPoint> path{{500000, 5000000}, {503000, 5004000}};
    auto layer = Layer("lines", esriGeometryPolyline, Utm33N(), {MakePolyline({path})});
    Run(layer, Defaults(esriGeometryPolyline, spatial_kind::Projected, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}));
    const RowValues row = Rows(layer, {"Plan_Len", "Sph_Len", "Start_X", "Mid_X", "Mid_Y", "Sph_Mid_X", "Sph_Mid_Y",
                                       "End_Y", "Prj_Az", "Start_Az", "End_Az", "Parts", "Vertices"})
                              .at(0);
    EXPECT_DOUBLE_EQ(row.at("Plan_Len").ToDouble(), 5000.0);
    EXPECT_DOUBLE_EQ(row.at("Start_X").ToDouble(), 500000.0);
    EXPECT_DOUBLE_EQ(row.at("Mid_X").ToDouble(), 501500.0);
    EXPECT_DOUBLE_EQ(row.at("Mid_Y").ToDouble(), 5002000.0);
    EXPECT_DOUBLE_EQ(row.at("End_Y").ToDouble(), 5004000.0);
    EXPECT_NEAR(row.at("Prj_Az").ToDouble(), std::atan2(3.0, 4.0) * 180.0 / 3.14159265358979, 1e-12);

    // The oracle works on the same geographic positions, as the platform projects them.
    const auto gcs = std::dynamic_pointer_cast<IProjectedCoordinateSystem>(Utm33N())->GeographicCoordinateSystem();
    auto from = MakePoint(500000, 5000000);
    auto to = MakePoint(503000, 5004000);
    for (const auto& p : {from, to}) {
        p->SpatialReference(Utm33N());
        p->Project(gcs);
    }
    const GeographicLib::Geodesic wgs(kWgsA, Flattening(kWgsA, kWgsB));
    double s = 0, az1 = 0, az2 = 0, midLat = 0, midLon = 0;
    wgs.Inverse(from->Y(), from->X(), to->Y(), to->X(), s, az1, az2);
    EXPECT_NEAR(row.at("Sph_Len").ToDouble(), s, kLengthTolerance);
    EXPECT_NEAR(row.at("Start_Az").ToDouble(), az1, kAzimuthTolerance);
    EXPECT_NEAR(row.at("End_Az").ToDouble(), az2, kAzimuthTolerance);
    wgs.Direct(from->Y(), from->X(), az1, s / 2, midLat, midLon);
    auto mid = MakePoint(midLon, midLat);
    mid->SpatialReference(gcs);
    mid->Project(Utm33N());
    // A millimetre of the geodesic on the ground, in metres of the projection.
    EXPECT_NEAR(row.at("Sph_Mid_X").ToDouble(), mid->X(), kLengthTolerance);
    EXPECT_NEAR(row.at("Sph_Mid_Y").ToDouble(), mid->Y(), kLengthTolerance);
    EXPECT_EQ(row.at("Parts").ToLong(), 1);
    EXPECT_EQ(row.at("Vertices").ToLong(), 2);
}

TEST_F(CalcTest, GeographicPolygonAreaMatchesAnExactGeodesicPolygonOnTheSameSphere) {
    // Clockwise exterior ring with a counter-clockwise hole.
    auto layer = Layer("parcels", esriGeometryPolygon, Wgs84(),
                       {MakePolygon({Square(10, 50, 2, true), Square(10.5, 50.5, 1, false)})});
    Run(layer, Defaults(esriGeometryPolygon, spatial_kind::Geographic, {1, 2, 3, 4, 5}));
    const RowValues row = Rows(layer, {"Sph_Area", "Longitude", "Latitude", "Sph_Len", "Parts", "Vertices"}).at(0);

    const GeographicLib::Geodesic sphere(AuthalicRadius(kWgsA, kWgsB), 0);
    auto ringArea = [&sphere](const std::vector<WKSPoint>& ring) {
        GeographicLib::PolygonArea polygon(sphere);
        for (std::size_t i = 0; i + 1 < ring.size(); ++i)
            polygon.AddPoint(ring[i].Y, ring[i].X);
        double perimeter = 0, area = 0;
        polygon.Compute(true, true, perimeter, area); // clockwise counts positive, as here
        return area;
    };
    const double expected = ringArea(Square(10, 50, 2, true)) - ringArea(Square(10.5, 50.5, 1, true));
    EXPECT_NEAR(row.at("Sph_Area").ToDouble(), expected, expected * kAreaRelative);

    // The hole is centred in the square: the centre stays on the middle meridian, and a little
    // north of the middle parallel, where the square is wider on the ground (0.01 degrees).
    EXPECT_NEAR(row.at("Longitude").ToDouble(), 11.0, 1e-6);
    EXPECT_NEAR(row.at("Latitude").ToDouble(), 51.0, 0.01);

    // Every ring as a path, the hole included.
    const GeographicLib::Geodesic wgs(kWgsA, Flattening(kWgsA, kWgsB));
    double perimeter = 0;
    for (const auto& ring : {Square(10, 50, 2, true), Square(10.5, 50.5, 1, false)})
        for (std::size_t i = 0; i + 1 < ring.size(); ++i) {
            double s = 0, z1 = 0, z2 = 0;
            wgs.Inverse(ring[i].Y, ring[i].X, ring[i + 1].Y, ring[i + 1].X, s, z1, z2);
            perimeter += s;
        }
    EXPECT_NEAR(row.at("Sph_Len").ToDouble(), perimeter, kLengthTolerance);
    EXPECT_EQ(row.at("Parts").ToLong(), 1);     // holes are no parts
    EXPECT_EQ(row.at("Vertices").ToLong(), 10); // both rings, closing vertices included
}

TEST_F(CalcTest, ProjectedPolygonMeasuresAreInDataUnitsAndOnTheSphere) {
    auto layer = Layer("parcels", esriGeometryPolygon, Utm33N(), {MakePolygon({Square(500000, 5000000, 1000, true)})});
    Run(layer, Defaults(esriGeometryPolygon, spatial_kind::Projected, {1, 2, 3, 4, 5, 6, 7, 8}));
    const RowValues row = Rows(layer, {"Plan_Area", "Sph_Area", "Cent_X", "Cent_Y", "Sph_Cen_X", "Sph_Cen_Y",
                                       "Pl_Perim", "Sph_Perim", "Parts", "Vertices"})
                              .at(0);
    EXPECT_DOUBLE_EQ(row.at("Plan_Area").ToDouble(), 1e6);
    EXPECT_DOUBLE_EQ(row.at("Cent_X").ToDouble(), 500500.0);
    EXPECT_DOUBLE_EQ(row.at("Cent_Y").ToDouble(), 5000500.0);
    EXPECT_DOUBLE_EQ(row.at("Pl_Perim").ToDouble(), 4000.0);
    // On the central meridian the projection's scale is 0.9996: the ground square is larger by
    // 1 / 0.9996^2, and the sphere of equal volume differs from the spheroid by a few 1e-3 there.
    EXPECT_NEAR(row.at("Sph_Area").ToDouble() / 1e6, 1.0 / (0.9996 * 0.9996), 5e-3);
    EXPECT_NEAR(row.at("Sph_Perim").ToDouble() / 4000.0, 1.0 / 0.9996, 1e-3);
    // The centre on the sphere, projected back, lies within a metre of the planar one.
    EXPECT_NEAR(row.at("Sph_Cen_X").ToDouble(), 500500.0, 1.0);
    EXPECT_NEAR(row.at("Sph_Cen_Y").ToDouble(), 5000500.0, 1.0);
    EXPECT_EQ(row.at("Parts").ToLong(), 1);
    EXPECT_EQ(row.at("Vertices").ToLong(), 5);
}

TEST_F(CalcTest, UnknownPolygonMeasuresSubtractHoles) {
    auto layer = Layer("parcels", esriGeometryPolygon, nullptr,
                       {MakePolygon({Square(0, 0, 4, true), Square(1, 1, 2, false), Square(10, 0, 2, true)})});
    Run(layer, Defaults(esriGeometryPolygon, spatial_kind::Unknown, {1, 2, 3, 4, 5}));
    const RowValues row = Rows(layer, {"Poly_Area", "X_Coord", "Y_Coord", "Length", "Parts", "Vertices"}).at(0);
    EXPECT_DOUBLE_EQ(row.at("Poly_Area").ToDouble(), 16.0 - 4.0 + 4.0);
    // Centre of gravity: 12 units of area about (2, 2) and 4 about (11, 1).
    EXPECT_DOUBLE_EQ(row.at("X_Coord").ToDouble(), (12.0 * 2 + 4.0 * 11) / 16.0);
    EXPECT_DOUBLE_EQ(row.at("Y_Coord").ToDouble(), (12.0 * 2 + 4.0 * 1) / 16.0);
    EXPECT_DOUBLE_EQ(row.at("Length").ToDouble(), 16.0 + 8.0 + 8.0);
    EXPECT_EQ(row.at("Parts").ToLong(), 2);
    EXPECT_EQ(row.at("Vertices").ToLong(), 15);
}

TEST_F(CalcTest, PointsGiveTheirCoordinatesAndProjectedOnesTheirLongitudeAndLatitude) {
    auto unknown = Layer("u", esriGeometryPoint, nullptr, {MakePoint(12.5, -3.25)});
    Run(unknown, Defaults(esriGeometryPoint, spatial_kind::Unknown, {1}));
    EXPECT_EQ(Rows(unknown, {"X_Coord"}).at(0).at("X_Coord").ToDouble(), 12.5);
    EXPECT_EQ(Rows(unknown, {"Y_Coord"}).at(0).at("Y_Coord").ToDouble(), -3.25);

    auto geographic = Layer("g", esriGeometryPoint, Wgs84(), {MakePoint(-70.25, 41.5)});
    // Geocentric is ignored for points: the stored coordinates go out as they are.
    Run(geographic, Defaults(esriGeometryPoint, spatial_kind::Geographic, {1}), kWgsA, kWgsB, true);
    EXPECT_EQ(Rows(geographic, {"Longitude"}).at(0).at("Longitude").ToDouble(), -70.25);
    EXPECT_EQ(Rows(geographic, {"Latitude"}).at(0).at("Latitude").ToDouble(), 41.5);

    auto projected = Layer("p", esriGeometryPoint, Utm33N(), {MakePoint(512345.5, 5123456.25)});
    Run(projected, Defaults(esriGeometryPoint, spatial_kind::Projected, {1, 2}));
    auto expected = MakePoint(512345.5, 5123456.25);
    expected->SpatialReference(Utm33N());
    expected->Project(std::dynamic_pointer_cast<IProjectedCoordinateSystem>(Utm33N())->GeographicCoordinateSystem());
    const RowValues row = Rows(projected, {"X_Coord", "Y_Coord", "Longitude", "Latitude"}).at(0);
    EXPECT_EQ(row.at("X_Coord").ToDouble(), 512345.5);
    EXPECT_EQ(row.at("Y_Coord").ToDouble(), 5123456.25);
    EXPECT_EQ(row.at("Longitude").ToDouble(), expected->X());
    EXPECT_EQ(row.at("Latitude").ToDouble(), expected->Y());
}

TEST_F(CalcTest, MultipointCentroidsArePlanarOrOnTheSpheroid) {
    auto unknown = Layer("u", esriGeometryMultipoint, nullptr, {MakeMultipoint({{0, 0}, {4, 0}, {2, 6}})});
    Run(unknown, Defaults(esriGeometryMultipoint, spatial_kind::Unknown, {1, 2}));
    const RowValues u = Rows(unknown, {"Cent_X", "Cent_Y", "Points"}).at(0);
    EXPECT_DOUBLE_EQ(u.at("Cent_X").ToDouble(), 2.0);
    EXPECT_DOUBLE_EQ(u.at("Cent_Y").ToDouble(), 2.0);
    EXPECT_EQ(u.at("Points").ToLong(), 3);

    // Symmetric about the equator and the meridian 20: the centre is on both.
    auto geographic =
        Layer("g", esriGeometryMultipoint, Wgs84(), {MakeMultipoint({{10, 30}, {30, 30}, {10, -30}, {30, -30}}),
                                                     MakeMultipoint({{-45.5, 12.25}})});
    Run(geographic, Defaults(esriGeometryMultipoint, spatial_kind::Geographic, {1, 2}));
    const auto g = Rows(geographic, {"Sph_Cen_X", "Sph_Cen_Y", "Points"});
    EXPECT_NEAR(g.at(0).at("Sph_Cen_X").ToDouble(), 20.0, 1e-9);
    EXPECT_NEAR(g.at(0).at("Sph_Cen_Y").ToDouble(), 0.0, 1e-9);
    EXPECT_EQ(g.at(0).at("Points").ToLong(), 4);
    // One point is its own centre.
    EXPECT_NEAR(g.at(1).at("Sph_Cen_X").ToDouble(), -45.5, 1e-9);
    EXPECT_NEAR(g.at(1).at("Sph_Cen_Y").ToDouble(), 12.25, 1e-9);

    // Projected: the plain centre and the spheroidal one, projected back, differ.
    auto projected = Layer("p", esriGeometryMultipoint, Utm33N(),
                           {MakeMultipoint({{300000, 5000000}, {700000, 5000000}, {500000, 6000000}})});
    Run(projected, Defaults(esriGeometryMultipoint, spatial_kind::Projected, {1, 2, 3}));
    const RowValues p = Rows(projected, {"Cent_X", "Cent_Y", "Sph_Cen_X", "Sph_Cen_Y", "Points"}).at(0);
    EXPECT_DOUBLE_EQ(p.at("Cent_X").ToDouble(), 500000.0);
    EXPECT_NEAR(p.at("Cent_Y").ToDouble(), 16000000.0 / 3.0, 1e-6);
    EXPECT_NEAR(p.at("Sph_Cen_X").ToDouble(), 500000.0, 1e-3); // symmetric about the central meridian
    EXPECT_GT(std::abs(p.at("Sph_Cen_Y").ToDouble() - p.at("Cent_Y").ToDouble()), 10.0);
    EXPECT_EQ(p.at("Points").ToLong(), 3);
}

TEST_F(CalcTest, PlanetocentricMarsLinesAreMeasuredOnPlanetographicLatitudes) {
    auto mars = Mars2000();
    ASSERT_TRUE(mars) << "the platform knows no Mars 2000 reference";
    auto layer = Layer("canyon", esriGeometryPolyline, mars, {MakePolyline({{{-60, -10}, {-50, -5}}})});
    Run(layer, Defaults(esriGeometryPolyline, spatial_kind::Geographic, {1, 2, 3, 5}), kMarsA, kMarsB, true,
        true, "Mars_2000_IAU_IAG");
    const RowValues row = Rows(layer, {"Sph_Len", "Start_X", "Start_Y", "Mid_X", "Mid_Y", "Start_Az"}).at(0);

    double lon1 = 0, lat1 = 0, lon2 = 0, lat2 = 0;
    geo::XYOCentricToOGraphic(-60, -10, kMarsA, kMarsB, 0, lon1, lat1);
    geo::XYOCentricToOGraphic(-50, -5, kMarsA, kMarsB, 0, lon2, lat2);
    const GeographicLib::Geodesic marsGeodesic(kMarsA, Flattening(kMarsA, kMarsB));
    double s = 0, az1 = 0, az2 = 0, midLat = 0, midLon = 0;
    marsGeodesic.Inverse(lat1, lon1, lat2, lon2, s, az1, az2);
    EXPECT_NEAR(row.at("Sph_Len").ToDouble(), s, kLengthTolerance);
    EXPECT_NEAR(row.at("Start_Az").ToDouble(), az1, kAzimuthTolerance);

    // The midpoint goes back to the data's planetocentric latitudes.
    marsGeodesic.Direct(lat1, lon1, az1, s / 2, midLat, midLon);
    double centricLon = 0, centricLat = 0;
    geo::XYOGraphicToOCentric(midLon, midLat, kMarsA, kMarsB, 0, centricLon, centricLat);
    EXPECT_NEAR(row.at("Mid_X").ToDouble(), centricLon, kPositionTolerance);
    EXPECT_NEAR(row.at("Mid_Y").ToDouble(), centricLat, kPositionTolerance);

    // The start point is converted once more although it is stored planetocentric already.
    double startLon = 0, startLat = 0;
    geo::XYOGraphicToOCentric(-60, -10, kMarsA, kMarsB, 0, startLon, startLat);
    EXPECT_EQ(row.at("Start_X").ToDouble(), -60.0);
    EXPECT_EQ(row.at("Start_Y").ToDouble(), startLat);
    EXPECT_NE(startLat, -10.0);
}

TEST_F(CalcTest, PlanetocentricMarsPolygonCentreIsFoundOnPlanetographicLatitudes) {
    auto mars = Mars2000();
    ASSERT_TRUE(mars);
    auto layer = Layer("crater", esriGeometryPolygon, mars, {MakePolygon({Square(20, 40, 2, true)})});
    Run(layer, Defaults(esriGeometryPolygon, spatial_kind::Geographic, {1, 2}), kMarsA, kMarsB, true);
    const RowValues row = Rows(layer, {"Sph_Area", "Longitude", "Latitude"}).at(0);

    // The same steps by hand: every vertex to planetographic, the pair on the sphere, the centre
    // back to planetocentric.
    std::vector<WKSPoint> ring = Square(20, 40, 2, true);
    for (WKSPoint& p : ring)
        geo::XYOCentricToOGraphic(p.X, p.Y, kMarsA, kMarsB, 0, p.X, p.Y);
    auto graphic = MakePolygon({ring});
    graphic->SpatialReference(mars);
    double x = 0, y = 0;
    const double area = geo::SphericalPolygonArea2(*graphic, true, x, y, kMarsA, kMarsB);
    double lon = 0, lat = 0;
    geo::XYOGraphicToOCentric(x, y, kMarsA, kMarsB, 0, lon, lat);
    EXPECT_DOUBLE_EQ(row.at("Sph_Area").ToDouble(), area);
    EXPECT_DOUBLE_EQ(row.at("Longitude").ToDouble(), lon);
    EXPECT_DOUBLE_EQ(row.at("Latitude").ToDouble(), lat);
    EXPECT_EQ(GeodesyCalls::toGraphic, 1); // once for the record, before the options
}

} // namespace
} // namespace tess::test
