#pragma once
// Shapes for the geometry tests, written as WKT: POINT, MULTIPOINT, LINESTRING,
// MULTILINESTRING, POLYGON and MULTIPOLYGON. Rings are taken exactly as written
// (orientation, order, repeated vertices), so the tests can feed Simplify any input.
// Also a spatial reference stand-in with a chosen grid and tolerance.

#include <memory>
#include <string>
#include <vector>

#include "platform/geometry/Geometries.h"
#include "platform/srs/SpatialReference.h"
#include "platform/system/Fault.h"

namespace tess::testing {

std::shared_ptr<IGeometry> FromWkt(const std::string& wkt);

template <class T> std::shared_ptr<T> Wkt(const std::string& wkt) {
    return std::dynamic_pointer_cast<T>(FromWkt(wkt));
}

//! The vertices of each part, for comparisons.
std::vector<std::vector<WKSPoint>> PartsOf(const IGeometry& g);

//! A full circle (or any arc) ring, as a polygon of one ring.
std::shared_ptr<Polygon> CirclePolygon(double cx, double cy, double r, bool clockwise);

//! A reference with a chosen grid (origin and units) and cluster tolerance.
class FakeReference final : public ISpatialReference {
public:
    FakeReference(double originX, double originY, double units, double tolerance)
        : ox_(originX), oy_(originY), units_(units), tolerance_(tolerance) {}
    std::string Name() const override { return "Fake"; }
    std::int32_t FactoryCode() const override { return 0; }
    double XYTolerance() const override { return tolerance_; }
    void XYTolerance(double t) override { tolerance_ = t; }
    std::int32_t XYToleranceValid() const override { return tolerance_ > 0.0 ? 3 : 1; }
    double XYResolution() const override { return 1.0 / units_; }
    void XYResolution(double r) override { units_ = 1.0 / r; }
    bool IsXYPrecisionEqual(const ISpatialReference&) const override { return false; }
    void GetFalseOriginAndUnits(double& x, double& y, double& u) const override {
        x = ox_;
        y = oy_;
        u = units_;
    }
    std::shared_ptr<ISpatialReference> Clone() const override { return std::make_shared<FakeReference>(*this); }
    bool IsEqual(const ISpatialReference& other) const override { return &other == this; }
    std::string ExportToESRI() const override { return ""; }

private:
    double ox_, oy_, units_, tolerance_;
};

} // namespace tess::testing
