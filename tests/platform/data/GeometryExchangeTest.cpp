// Shapes through storage: ring order and orientation, parts, curves densified,
// empty shapes, projection on store, and the spatial reference of shapefiles.

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>

#include "DataTestSupport.h"
#include "platform/data/Cursor.h"
#include "platform/data/Row.h"
#include "platform/data/Table.h"
#include "platform/data/Workspace.h"
#include "platform/geometry/Geometries.h"
#include "platform/srs/SpatialReference.h"
#include "platform/srs/SpatialReferenceEnvironment.h"
#include "platform/system/Fault.h"

namespace tess::test {
namespace {

constexpr std::int32_t kUtm33 = 32633;
constexpr std::int32_t kWgs84 = 4326;
constexpr std::int32_t kWebMercator = 3857;

class GeometryExchangeTest : public ::testing::TestWithParam<Format> {
protected:
    void SetUp() override { ws = MakeWorkspace(GetParam(), dir); }

    //! Stores the shape in a new class of its type and reads it back.
    std::shared_ptr<IGeometry> RoundTrip(const std::shared_ptr<IGeometry>& shape, esriGeometryType type) {
        auto fc = CreateClass(*ws, "shapes" + std::to_string(++count), type, nullptr);
        auto f = fc->CreateFeature();
        f->Shape(shape);
        f->Store();
        return fc->GetFeature(f->OID())->ShapeCopy();
    }

    TempDir dir;
    std::shared_ptr<IWorkspace> ws;
    int count = 0;
};

TEST_P(GeometryExchangeTest, PolygonRingsKeepOrderOrientationAndParts) {
    // Each exterior ring (clockwise) followed by its holes (counter-clockwise), as Simplify leaves them.
    const Rings rings = {Square(0, 0, 10, true), Square(2, 2, 2, false), Square(6, 6, 2, false),
                         Square(20, 0, 5, true)};
    auto back = RoundTrip(MakePolygon(rings), esriGeometryPolygon);
    EXPECT_EQ(PartsOf(*back), rings);
    auto polygon = std::dynamic_pointer_cast<Polygon>(back);
    ASSERT_TRUE(polygon);
    EXPECT_EQ(polygon->ExteriorRingCount(), 2);
    EXPECT_EQ(polygon->Area(), 100 - 4 - 4 + 25); // whole-number squares: exact
}

TEST_P(GeometryExchangeTest, PolylinePartsAndMultipointsSurvive) {
    const Rings paths = {{{0, 0}, {1, 1}, {2, 0}}, {{5, 5}, {6, 7}}};
    EXPECT_EQ(PartsOf(*RoundTrip(MakePolyline(paths), esriGeometryPolyline)), paths);

    auto mp = std::make_shared<Multipoint>();
    const std::vector<WKSPoint> points = {{1, 2}, {3, 4}, {-5, 0.5}};
    mp->AddWKSPoints(3, points.data());
    auto back = std::dynamic_pointer_cast<Multipoint>(RoundTrip(mp, esriGeometryMultipoint));
    ASSERT_TRUE(back);
    ASSERT_EQ(back->PointCount(), 3);
    for (std::size_t i = 0; i < points.size(); ++i)
        EXPECT_EQ(back->PointAt(i).Coords(), points[i]);
}

TEST_P(GeometryExchangeTest, TrueCurvesAreDensifiedOnStorage) {
    constexpr double kRadius = 10.0; // metres of the unknown reference
    auto arc = std::make_shared<CircularArc>();
    arc->ConstructCircle(Point(50, 50), kRadius, false);
    auto ring = std::make_shared<Ring>();
    ring->AddSegment(*arc);
    auto polygon = std::make_shared<Polygon>();
    polygon->AddPart(ring);

    auto back = std::dynamic_pointer_cast<Polygon>(RoundTrip(polygon, esriGeometryPolygon));
    ASSERT_TRUE(back);
    ASSERT_EQ(back->PartCount(), 1u);
    const auto vertices = back->Part(0).Vertices();
    EXPECT_GT(vertices.size(), 90u); // a circle, not its chord
    EXPECT_FALSE(back->Part(0).HasNonLinearSegments());
    // Vertices lie on the circle up to rounding (1e-9 of the radius); file geodatabases keep coordinates
    // on the reference's grid, 0.0001 for the unknown reference, so half a cell on each axis there.
    const double tolerance = GetParam() == Format::FileGDB ? 0.5e-4 * std::sqrt(2.0) : 1e-9 * kRadius;
    for (const WKSPoint& v : vertices)
        EXPECT_NEAR(std::hypot(v.X - 50, v.Y - 50), kRadius, tolerance);
    // The inscribed polygon of 1-degree steps loses (2 pi / 360)^2 / 6 = 5e-5 of the area; allow 1e-4.
    const double circle = 3.141592653589793 * kRadius * kRadius;
    EXPECT_NEAR(back->Area(), circle, 1e-4 * circle);
    EXPECT_GT(back->Area(), 0); // stored clockwise, as drawn
}

TEST_P(GeometryExchangeTest, EmptyShapesStoreAsNullAndReadBackEmpty) {
    auto back = RoundTrip(std::make_shared<Polygon>(), esriGeometryPolygon);
    ASSERT_TRUE(back);
    EXPECT_TRUE(back->IsEmpty());
    EXPECT_EQ(back->GeometryType(), esriGeometryPolygon);
}

TEST_P(GeometryExchangeTest, ShapeOfAnotherKindIsRefused) {
    auto fc = CreateClass(*ws, "points", esriGeometryPoint, nullptr);
    auto f = fc->CreateFeature();
    f->Shape(MakePolygon({Square(0, 0, 1, true)}));
    EXPECT_THROW(f->Store(), Fault);
    EXPECT_EQ(fc->FeatureCount(nullptr), 0);
}

TEST_P(GeometryExchangeTest, ShapesInAnotherReferenceAreProjectedOnStore) {
    SpatialReferenceEnvironment env;
    auto fc = CreateClass(*ws, "mercator", esriGeometryPoint, env.CreateProjectedCoordinateSystem(kWebMercator));
    auto point = MakePoint(1.0, 0.0);
    point->SpatialReference(env.CreateGeographicCoordinateSystem(kWgs84));
    auto f = fc->CreateFeature();
    f->Shape(point);
    f->Store();
    auto stored = std::dynamic_pointer_cast<IPoint>(fc->GetFeature(f->OID())->Shape());
    // One degree of the equator on the sphere of 6378137 m: 111319.4908 m; 1 mm is far beyond rounding.
    EXPECT_NEAR(stored->X(), 111319.4908, 1e-3);
    EXPECT_NEAR(stored->Y(), 0.0, 1e-3);
}

INSTANTIATE_TEST_SUITE_P(Formats, GeometryExchangeTest,
                         ::testing::Values(Format::Shapefile, Format::FileGDB, Format::GeoPackage),
                         [](const auto& info) { return FormatName(info.param); });

// ---- shapefile specifics

TEST(ShapefileShapes, RingsReadBackInStoredOrderWhateverTheirNesting) {
    TempDir dir;
    auto ws = MakeWorkspace(Format::Shapefile, dir);
    // A hole stored after a second exterior ring stays there; a lone counter-clockwise ring stays so.
    const Rings rings = {Square(0, 0, 10, true), Square(20, 0, 5, true), Square(2, 2, 2, false)};
    auto fc = CreateClass(*ws, "order", esriGeometryPolygon, nullptr);
    auto f = fc->CreateFeature();
    f->Shape(MakePolygon(rings));
    f->Store();
    auto g = fc->CreateFeature();
    g->Shape(MakePolygon({Square(0, 0, 3, false)}));
    g->Store();
    EXPECT_EQ(PartsOf(*fc->GetFeature(0)->Shape()), rings);
    EXPECT_EQ(PartsOf(*fc->GetFeature(1)->Shape()), Rings{Square(0, 0, 3, false)});
}

TEST(ShapefileShapes, PrjIsWrittenAndReadThroughTheReferenceLibrary) {
    TempDir dir;
    auto ws = MakeWorkspace(Format::Shapefile, dir);
    auto utm = SpatialReferenceEnvironment().CreateProjectedCoordinateSystem(kUtm33);
    CreateClass(*ws, "utm", esriGeometryPoint, utm);
    CreateClass(*ws, "bare", esriGeometryPoint, nullptr);
    std::ifstream prj(ws->PathName() + "/utm.prj");
    std::string text;
    std::getline(prj, text);
    EXPECT_NE(text.find("WGS_1984_UTM_Zone_33N"), std::string::npos) << text;
    EXPECT_FALSE(std::ifstream(ws->PathName() + "/bare.prj").good());

    auto& fws = dynamic_cast<IFeatureWorkspace&>(*ws);
    auto geo = std::dynamic_pointer_cast<IGeoDataset>(fws.OpenFeatureClass("utm"));
    EXPECT_EQ(geo->SpatialReference()->Name(), "WGS_1984_UTM_Zone_33N");
    EXPECT_TRUE(geo->SpatialReference()->IsEqual(*utm));
    auto bare = std::dynamic_pointer_cast<IGeoDataset>(fws.OpenFeatureClass("bare"));
    EXPECT_TRUE(std::dynamic_pointer_cast<IUnknownCoordinateSystem>(bare->SpatialReference()));
}

} // namespace
} // namespace tess::test
