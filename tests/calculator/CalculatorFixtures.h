#pragma once
// Shared pieces of the calculator tests: a layer in a temporary workspace, the
// options of a run built from the catalogue's default field names, the values
// read back, and counters around the geodesy that the run calls.

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "ConversionFixtures.h"
#include "calculator/MeasureCatalogue.h"
#include "calculator/modCalcGeometry.h"
#include "geodesy/GeodesyConstants.h"
#include "platform/data/Cursor.h"
#include "platform/srs/SpatialReferenceEnvironment.h"

namespace tess::test {

inline constexpr double kWgsA = MyGeometricOperations::kWgs84SemiMajor; // metres
inline constexpr double kWgsB = MyGeometricOperations::kWgs84SemiMinor; // metres
inline constexpr double kMarsA = 3396190.0;                             // metres, Mars 2000
inline constexpr double kMarsB = 3376200.0;

inline std::shared_ptr<ISpatialReference> Wgs84() {
    constexpr std::int32_t kWgs84 = 4326;
    return SpatialReferenceEnvironment().CreateGeographicCoordinateSystem(kWgs84);
}

inline std::shared_ptr<ISpatialReference> Mars2000() {
    constexpr std::int32_t kMars2000 = 104905; // GCS_Mars_2000
    return SpatialReferenceEnvironment().CreateGeographicCoordinateSystem(kMars2000);
}

//! Calls of the geodesy made by runs, counted.
struct GeodesyCalls {
    static inline int sphericalPairs = 0;  // SphericalPolygonArea2
    static inline int spheroidalPairs = 0; // SpheroidalPolylineMidpoint2
    static inline int vincenty = 0;        // DistanceVincentyPoints2
    static inline int toGraphic = 0;       // FeaturePlanetOCentricToPlanetOGraphic
    static void Reset() { sphericalPairs = spheroidalPairs = vincenty = toGraphic = 0; }
};

inline void CountGeodesyCalls() {
    GeodesyCalls::Reset();
    CalculatorGeodesy& g = CalcGeodesy();
    g.SphericalPolygonArea2 = [](IPolygon& p, bool w, double& x, double& y, double a, double b) {
        ++GeodesyCalls::sphericalPairs;
        return DefaultCalcGeodesy().SphericalPolygonArea2(p, w, x, y, a, b);
    };
    g.SpheroidalPolylineMidpoint2 = [](const IPolyline& l, double& pos, bool r, double& len, double a, double b) {
        ++GeodesyCalls::spheroidalPairs;
        return DefaultCalcGeodesy().SpheroidalPolylineMidpoint2(l, pos, r, len, a, b);
    };
    g.DistanceVincentyPoints2 = [](const IPoint& p, const IPoint& q, double& z1, double& z2, double a, double b) {
        ++GeodesyCalls::vincenty;
        return DefaultCalcGeodesy().DistanceVincentyPoints2(p, q, z1, z2, a, b);
    };
    g.FeaturePlanetOCentricToPlanetOGraphic = [](const IGeometry& s, double& a, double& b, double shift) {
        ++GeodesyCalls::toGraphic;
        return DefaultCalcGeodesy().FeaturePlanetOCentricToPlanetOGraphic(s, a, b, shift);
    };
}

//! The options with the catalogue's default names, ticked in the order given.
inline std::vector<OptionChoice> Defaults(esriGeometryType shape, std::int32_t kind, const std::vector<int>& ids) {
    std::vector<OptionChoice> choices;
    for (int id : ids) {
        const MeasureRow* row = FindMeasureRow(shape, kind, id);
        EXPECT_TRUE(row) << "no option " << id;
        if (!row)
            continue;
        choices.push_back({static_cast<std::int16_t>(id), row->fields[0], row->fields[1] ? row->fields[1] : ""});
    }
    return choices;
}

//! Values of one stored row, by field name.
using RowValues = std::map<std::string, Variant>;

//! Every row of the class in storage order, with the named fields.
inline std::vector<RowValues> ReadRows(IFeatureClass& featureClass, const std::vector<std::string>& fields) {
    std::vector<RowValues> rows;
    auto cursor = featureClass.Search(nullptr, false);
    for (auto feature = cursor->NextFeature(); feature; feature = cursor->NextFeature()) {
        RowValues row;
        for (const std::string& name : fields) {
            const std::int32_t index = featureClass.FindField(name);
            row[name] = index >= 0 ? feature->Value(index) : Variant();
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

//! A host with one workspace, counters around the geodesy, and runs over its layers.
class CalcTest : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        CountGeodesyCalls();
        workspace_ = std::dynamic_pointer_cast<IFeatureWorkspace>(MakeWorkspace(Format::GeoPackage, dir_));
        ASSERT_TRUE(workspace_);
    }
    void TearDown() override {
        CalcGeodesy() = DefaultCalcGeodesy();
        HostTest::TearDown();
    }

    std::shared_ptr<FeatureLayer> Layer(const std::string& name, esriGeometryType type,
                                        const std::shared_ptr<ISpatialReference>& sr,
                                        const std::vector<std::shared_ptr<IGeometry>>& shapes) {
        auto featureClass = CreateClass(*workspace_, name, type, sr);
        auto cursor = featureClass->Insert(true);
        auto buffer = featureClass->CreateFeatureBuffer();
        for (const auto& shape : shapes) {
            if (shape && sr)
                shape->SpatialReference(sr);
            buffer->Shape(shape);
            cursor->InsertFeature(*buffer);
        }
        cursor->Flush();
        cursor.reset();
        return AddLayer(featureClass, name);
    }

    //! Runs the calculator with the layer's own spheroid axes given by the caller.
    std::string Run(const std::shared_ptr<FeatureLayer>& layer, const std::vector<OptionChoice>& choices,
                    double a = kWgsA, double b = kWgsB, bool geocentric = false, bool all = true,
                    const std::string& spheroid = "WGS_1984") {
        auto sr = std::dynamic_pointer_cast<IGeoDataset>(layer->FeatureClass())->SpatialReference();
        const ComboFlags flags = ComboUseFlagsFor(layer->FeatureClass()->ShapeType(), SpatialKindOf(sr));
        auto options = MakeGeometryOptions(layer, all, choices, flags, spheroid, a, b, geocentric);
        return CalcGeometry(options, app_, true, false, clock_);
    }

    std::vector<RowValues> Rows(const std::shared_ptr<FeatureLayer>& layer, const std::vector<std::string>& fields) {
        return ReadRows(*layer->FeatureClass(), fields);
    }

    std::shared_ptr<IFeatureWorkspace> workspace_;
    Clock clock_; // empty: the system's clock
};

} // namespace tess::test
