#include <gtest/gtest.h>

#include <cmath>

#include "platform/srs/SpatialReference.h"
#include "platform/srs/SpatialReferenceEnvironment.h"
#include "platform/srs/Transform.h"
#include "platform/system/Fault.h"

namespace tess {
namespace {

enum class Kind { Geographic, Projected };

struct ReferenceCase {
    std::int32_t code;
    Kind kind;
    const char* name;
    const char* datum;
    const char* spheroid;
    const char* unit;
};

// Names as the host shows them (ESRI WKT), for Earth, web, UTM and planetary references.
const ReferenceCase kReferences[] = {
    {4326, Kind::Geographic, "GCS_WGS_1984", "D_WGS_1984", "WGS_1984", "Degree"},
    {4267, Kind::Geographic, "GCS_North_American_1927", "D_North_American_1927", "Clarke_1866", "Degree"},
    {104905, Kind::Geographic, "GCS_Mars_2000", "D_Mars_2000", "Mars_2000_IAU_IAG", "Degree"},
    {104903, Kind::Geographic, "GCS_Moon_2000", "D_Moon_2000", "Moon_2000_IAU_IAG", "Degree"},
    {32633, Kind::Projected, "WGS_1984_UTM_Zone_33N", "D_WGS_1984", "WGS_1984", "Meter"},
    {3857, Kind::Projected, "WGS_1984_Web_Mercator_Auxiliary_Sphere", "D_WGS_1984", "WGS_1984", "Meter"},
    {2236, Kind::Projected, "NAD_1983_StatePlane_Florida_East_FIPS_0901_Feet", "D_North_American_1983", "GRS_1980",
     "Foot_US"},
};

TEST(SpatialReference, NamesAndKindsByCode) {
    const SpatialReferenceEnvironment factory;
    for (const ReferenceCase& c : kReferences) {
        SCOPED_TRACE(c.code);
        std::shared_ptr<IGeographicCoordinateSystem> geographic;
        if (c.kind == Kind::Geographic) {
            geographic = factory.CreateGeographicCoordinateSystem(c.code);
            EXPECT_EQ(geographic->CoordinateUnit()->Name(), c.unit);
            EXPECT_EQ(geographic->FactoryCode(), c.code);
            EXPECT_EQ(geographic->Name(), c.name);
        } else {
            auto projected = factory.CreateProjectedCoordinateSystem(c.code);
            EXPECT_EQ(projected->Name(), c.name);
            EXPECT_EQ(projected->FactoryCode(), c.code);
            EXPECT_EQ(projected->CoordinateUnit()->Name(), c.unit);
            EXPECT_EQ(std::dynamic_pointer_cast<IGeographicCoordinateSystem>(projected), nullptr);
            geographic = projected->GeographicCoordinateSystem();
        }
        EXPECT_EQ(std::dynamic_pointer_cast<IUnknownCoordinateSystem>(geographic), nullptr);
        EXPECT_EQ(geographic->Datum()->Name(), c.datum);
        EXPECT_EQ(geographic->Datum()->Spheroid()->Name(), c.spheroid);
    }
}

TEST(SpatialReference, DatumSpheroidAxesInMetres) {
    const SpatialReferenceEnvironment factory;
    auto wgs84 = factory.CreateGeographicCoordinateSystem(4326)->Datum()->Spheroid();
    // Exact: both axes come straight from the database's definition.
    EXPECT_EQ(wgs84->SemiMajorAxis(), 6378137.0);
    EXPECT_EQ(wgs84->SemiMinorAxis(), 6356752.314245179);
    auto mars = factory.CreateGeographicCoordinateSystem(104905)->Datum()->Spheroid();
    EXPECT_EQ(mars->SemiMajorAxis(), 3396190.0);
    // 0.01 m: the minor axis is derived from the stored inverse flattening.
    EXPECT_NEAR(mars->SemiMinorAxis(), 3376200.0, 0.01);
    auto utm = factory.CreateProjectedCoordinateSystem(2236);
    // 1e-15 relative: the US survey foot is 1200/3937 m.
    EXPECT_NEAR(utm->CoordinateUnit()->MetersPerUnit(), 1200.0 / 3937.0, 1e-15);
    EXPECT_NEAR(factory.CreateGeographicCoordinateSystem(4326)->CoordinateUnit()->RadiansPerUnit(),
                M_PI / 180.0, 1e-15);
}

TEST(SpatialReference, UnknownCodesFaultNamingTheCode) {
    const SpatialReferenceEnvironment factory;
    const std::function<void()> calls[] = {
        [&] { factory.CreateGeographicCoordinateSystem(999999); },
        [&] { factory.CreateProjectedCoordinateSystem(999999); },
        [&] { factory.CreateSpheroid(999999); },
        [&] { factory.CreateDatum(999999); },
    };
    for (const auto& call : calls) {
        try {
            call();
            ADD_FAILURE() << "no fault";
        } catch (const Fault& f) {
            EXPECT_EQ(f.Number(), fault::SpatialReferenceFailed);
            EXPECT_NE(f.Description().find("999999"), std::string::npos) << f.Description();
        }
    }
    // A code of the other kind is refused too.
    EXPECT_THROW(factory.CreateGeographicCoordinateSystem(32633), Fault);
    EXPECT_THROW(factory.CreateProjectedCoordinateSystem(4326), Fault);
}

TEST(SpatialReference, UnknownReference) {
    const SpatialReferenceEnvironment factory;
    auto unknown = factory.CreateUnknown();
    EXPECT_EQ(unknown->Name(), "Unknown");
    EXPECT_EQ(unknown->FactoryCode(), 0);
    EXPECT_EQ(unknown->ExportToESRI(), "");
    EXPECT_EQ(ExportToWkt(*unknown), "");
    EXPECT_TRUE(unknown->IsEqual(*factory.CreateUnknown()));
    EXPECT_TRUE(unknown->IsEqual(*unknown->Clone()));
    auto wgs84 = factory.CreateGeographicCoordinateSystem(4326);
    EXPECT_FALSE(unknown->IsEqual(*wgs84));
    EXPECT_FALSE(wgs84->IsEqual(*unknown));
    EXPECT_NE(std::dynamic_pointer_cast<IUnknownCoordinateSystem>(factory.CreateFromWkt("  ")), nullptr);
}

TEST(SpatialReference, IsEqualComparesTheSystemNotTheText) {
    const SpatialReferenceEnvironment factory;
    auto wgs84 = factory.CreateGeographicCoordinateSystem(4326);
    auto fromEsri = factory.CreateFromWkt(wgs84->ExportToESRI());
    auto fromWkt2 = FromWkt(ExportToWkt(*wgs84));
    EXPECT_TRUE(wgs84->IsEqual(*fromEsri));
    EXPECT_TRUE(fromEsri->IsEqual(*wgs84));
    EXPECT_TRUE(wgs84->IsEqual(*fromWkt2));
    EXPECT_EQ(fromEsri->Name(), "GCS_WGS_1984");
    // Identified again from the text alone.
    EXPECT_EQ(fromEsri->FactoryCode(), 4326);
    EXPECT_FALSE(wgs84->IsEqual(*factory.CreateGeographicCoordinateSystem(4267)));
    EXPECT_FALSE(wgs84->IsEqual(*factory.CreateProjectedCoordinateSystem(32633)));
    auto utm = factory.CreateProjectedCoordinateSystem(32633);
    EXPECT_TRUE(utm->IsEqual(*utm->Clone()));
    EXPECT_FALSE(utm->IsEqual(*factory.CreateProjectedCoordinateSystem(32634)));
    EXPECT_THROW(FromWkt("GEOGCS[nonsense"), Fault);
}

TEST(SpatialReference, ToleranceAndResolutionDefaults) {
    const SpatialReferenceEnvironment factory;
    struct Case {
        std::shared_ptr<ISpatialReference> sr;
        double resolution;
        double tolerance;
        double falseOrigin;
    };
    const double grid = -4503599627370496.0 * 0.0001; // 2^52 steps of 0.1 mm below zero
    const double foot = 1200.0 / 3937.0;
    const Case cases[] = {
        {factory.CreateGeographicCoordinateSystem(4326), 1e-9, 8.983152841195215e-09, -400.0},
        {factory.CreateGeographicCoordinateSystem(104905), 1e-9, 8.983152841195215e-09, -400.0},
        {factory.CreateProjectedCoordinateSystem(32633), 0.0001, 0.001, grid},
        {factory.CreateProjectedCoordinateSystem(2236), 0.0001 / foot, 0.001 / foot, grid / foot},
        {factory.CreateUnknown(), 0.0001, 0.001, grid},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.sr->Name());
        // 1e-12 relative: defaults scaled by a unit factor differ from the literal by rounding only.
        EXPECT_NEAR(c.sr->XYResolution(), c.resolution, c.resolution * 1e-12);
        EXPECT_NEAR(c.sr->XYTolerance(), c.tolerance, c.tolerance * 1e-12);
        EXPECT_EQ(c.sr->XYToleranceValid(), 3);
        double x = 0.0;
        double y = 0.0;
        double units = 0.0;
        c.sr->GetFalseOriginAndUnits(x, y, units);
        EXPECT_NEAR(x, c.falseOrigin, std::fabs(c.falseOrigin) * 1e-12);
        EXPECT_EQ(x, y);
        EXPECT_NEAR(units, 1.0 / c.resolution, 1e-12 / c.resolution);
        EXPECT_TRUE(c.sr->IsXYPrecisionEqual(*c.sr->Clone()));
    }
}

TEST(SpatialReference, PrecisionChangesStayWithTheObject) {
    const SpatialReferenceEnvironment factory;
    auto sr = factory.CreateProjectedCoordinateSystem(32633);
    auto copy = sr->Clone();
    copy->XYResolution(0.001);
    EXPECT_FALSE(sr->IsXYPrecisionEqual(*copy));
    EXPECT_TRUE(sr->IsEqual(*copy)); // precision is not part of IsEqual
    EXPECT_EQ(sr->XYResolution(), 0.0001);
    copy->XYTolerance(0.0001);
    EXPECT_EQ(copy->XYToleranceValid(), 2); // below the resolution
    copy->XYTolerance(-1.0);
    EXPECT_EQ(copy->XYToleranceValid(), 1);
    EXPECT_THROW(copy->XYResolution(0.0), Fault);
}

} // namespace
} // namespace tess
