#include <gtest/gtest.h>

#include "platform/srs/SpatialReference.h"
#include "platform/srs/SpatialReferenceEnvironment.h"
#include "platform/srs/Spheroid.h"
#include "platform/system/Fault.h"

namespace tess {
namespace {

// The 56 Earth spheroid codes of the catalogue, in its order.
const std::int32_t kEarthCodes[] = {
    7001, 7002, 7041, 7003, 7004, 7005, 7006, 7007, 7008, 7009, 7034, 7013, 7010, 7011,
    7012, 7014, 7042, 7015, 7044, 7016, 7045, 7018, 7031, 7036, 7019, 7020, 7021, 7022,
    7023, 7024, 7025, 7032, 7033, 7027, 7035, 7028, 7029, 7026, 7043, 7030, 107001, 107002,
    107003, 107004, 7053, 107006, 107007, 107008, 107036, 7052, 7051, 7054, 7055, 7057, 7058, 107037,
};
constexpr std::int32_t kFirstPlanetCode = 107900;
constexpr std::int32_t kLastPlanetCode = 107970;

void ExpectUsable(const ISpheroid& s, std::int32_t code) {
    EXPECT_GT(s.SemiMinorAxis(), 0.0) << code;
    EXPECT_GE(s.SemiMajorAxis(), s.SemiMinorAxis()) << code;
    EXPECT_FALSE(s.Name().empty()) << code;
    EXPECT_EQ(s.FactoryCode(), code);
}

TEST(SpheroidCodes, EveryEarthCodeResolves) {
    static_assert(std::size(kEarthCodes) == 56);
    const SpatialReferenceEnvironment factory;
    for (std::int32_t code : kEarthCodes) {
        std::shared_ptr<ISpheroid> s;
        ASSERT_NO_THROW(s = factory.CreateSpheroid(code)) << code;
        ExpectUsable(*s, code);
        // Earth radii lie between 6.35e6 and 6.4e6 m, also for those defined in feet.
        EXPECT_GT(s->SemiMajorAxis(), 6.35e6) << code;
        EXPECT_LT(s->SemiMajorAxis(), 6.4e6) << code;
    }
}

TEST(SpheroidCodes, EveryPlanetaryCodeResolves) {
    const SpatialReferenceEnvironment factory;
    int count = 0;
    for (std::int32_t code = kFirstPlanetCode; code <= kLastPlanetCode; ++code, ++count) {
        std::shared_ptr<ISpheroid> s;
        ASSERT_NO_THROW(s = factory.CreateSpheroid(code)) << code;
        ExpectUsable(*s, code);
    }
    EXPECT_EQ(count, 71);
}

TEST(SpheroidCodes, AxesAndNamesOfASample) {
    struct Case {
        std::int32_t code;
        const char* name;
        double a;
        double b;
    };
    // Values as the database defines them; where it gives a and 1/f, b follows from them.
    const Case cases[] = {
        {7030, "WGS_1984", 6378137.0, 6356752.314245179},
        {7008, "Clarke_1866", 6378206.4, 6356583.8},
        {7019, "GRS_1980", 6378137.0, 6356752.314140356},
        {7036, "GRS_1967", 6378160.0, 6356774.516090714},
        {7055, "Clarke_1880_Intl_Ft", 20926202.0 * 0.3048, 20854895.0 * 0.3048},
        {107905, "Mars_2000_IAU_IAG", 3396190.0, 3376200.0},
        {107900, "Mercury_2000_IAU_IAG", 2439700.0, 2439700.0},
        {107903, "Moon_2000_IAU_IAG", 1737400.0, 1737400.0},
        {107037, "WGS_1984_Major_Auxiliary_Sphere", 6378137.0, 6378137.0},
    };
    const SpatialReferenceEnvironment factory;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.code);
        auto s = factory.CreateSpheroid(c.code);
        EXPECT_EQ(s->Name(), c.name);
        // 1 mm: well below any difference between two spheroids, above the rounding of 1/f.
        EXPECT_NEAR(s->SemiMajorAxis(), c.a, 1e-3);
        EXPECT_NEAR(s->SemiMinorAxis(), c.b, 1e-3);
        EXPECT_NEAR(s->Flattening(), (c.a - c.b) / c.a, 1e-12);
    }
}

TEST(SpheroidCodes, FoundByAuthorityCodeOrEngineName) {
    struct Case {
        const char* text;
        double a;
        double b;
    };
    // b where the definition gives 1/f: a (1 - 1/rf).
    const Case cases[] = {
        {"EPSG:7030", 6378137.0, 6356752.314245179},  {"epsg:7019", 6378137.0, 6356752.314140356},
        {"ESRI:107905", 3396190.0, 3376200.0},        {"WGS84", 6378137.0, 6356752.314245179},
        {"grs80", 6378137.0, 6356752.314140356},      {"clrk66", 6378206.4, 6356583.8},
        {"Mod_Airy", 6377340.189, 6356034.446},       {"mod-airy", 6377340.189, 6356034.446},
        {"intl", 6378388.0, 6356911.946127946},       {"sphere", 6370997.0, 6370997.0},
    };
    const SpatialReferenceEnvironment factory;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        const auto s = factory.FindSpheroid(c.text);
        ASSERT_NE(s, nullptr);
        EXPECT_NEAR(s->SemiMajorAxis(), c.a, 1e-3); // metres, as above
        EXPECT_NEAR(s->SemiMinorAxis(), c.b, 1e-3);
    }
    EXPECT_EQ(factory.FindSpheroid("EPSG:7030")->FactoryCode(), 7030);
    // An ESRI code is not an EPSG one, a reference is not a spheroid, and the rest is unknown.
    for (const char* unknown :
         {"EPSG:107905", "EPSG:4326", "EPSG:99999", "EPSG:", ":7030", "nonsense", "", "WGS 1984x"})
        EXPECT_EQ(factory.FindSpheroid(unknown), nullptr) << unknown;
}

TEST(SpheroidCodes, SpheroidsCloneAndDatumsCarryThem) {
    const SpatialReferenceEnvironment factory;
    auto wgs84 = factory.CreateSpheroid(7030);
    auto copy = CloneAs<ISpheroid>(*wgs84);
    ASSERT_NE(copy, nullptr);
    EXPECT_NE(copy, wgs84);
    EXPECT_TRUE(dynamic_cast<const IClone&>(*copy).IsEqual(dynamic_cast<const IClone&>(*wgs84)));
    EXPECT_EQ(copy->Name(), "WGS_1984");

    auto datum = factory.CreateDatum(6326);
    EXPECT_EQ(datum->Name(), "D_WGS_1984");
    EXPECT_EQ(datum->Spheroid()->SemiMajorAxis(), 6378137.0);
    auto mars = factory.CreateDatum(106905);
    EXPECT_EQ(mars->Name(), "D_Mars_2000");
    EXPECT_EQ(mars->Spheroid()->Name(), "Mars_2000_IAU_IAG");
    EXPECT_THROW(Spheroid("bad", 1.0, 2.0), Fault);
}

} // namespace
} // namespace tess
