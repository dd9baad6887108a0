// The geodesy module against GeographicLib on the same inputs, in one run:
//  - one inverse problem per call (DistanceVincentyNumbers2 / Geodesic::Inverse);
//  - polygon area and polyline length over rings of 1,000 and 100,000 vertices
//    (SphericalPolygonArea2, SpheroidalPolylineLength2 / PolygonArea).
// GeographicLib leaves the invalid-operation flag raised after some inputs; our
// checked routines then save and restore the caller's flags on every call. The
// "CallerFlagsRaised" case measures that path, the others start clean.

#include "geodesy/PolylineMeasures.h"
#include "geodesy/SphericalArea.h"
#include "geodesy/Vincenty.h"
#include "platform/geometry/Path.h"
#include "platform/geometry/Polygon.h"
#include "platform/geometry/Polyline.h"
#include "platform/geometry/Ring.h"
#include "platform/srs/SpatialReference.h"
#include "platform/srs/SpatialReferenceEnvironment.h"

#include <GeographicLib/Geodesic.hpp>
#include <GeographicLib/PolygonArea.hpp>
#include <benchmark/benchmark.h>

#include <cfenv>
#include <cmath>
#include <random>
#include <vector>

namespace {

using namespace tess;

constexpr double kA = 6378137.0, kB = 6356752.31424518; // WGS 1984, metres
constexpr int kInputCount = 4096;
constexpr int kCheckedFlags = FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW;

struct Line {
    double lon1, lat1, lon2, lat2;
};

// Lines from 1 m to about 10,000 km, evenly in the logarithm of the span, none nearly antipodal.
const std::vector<Line>& Lines() {
    static const std::vector<Line> lines = [] {
        std::mt19937_64 rng(42);
        std::uniform_real_distribution<double> lon(-180, 180), lat(-80, 80), unit(0, 1);
        std::vector<Line> out;
        for (int i = 0; i < kInputCount; ++i) {
            const double lon1 = lon(rng), lat1 = lat(rng);
            const double span = std::pow(10.0, -5.0 + 7.0 * unit(rng)); // degrees
            out.push_back({lon1, lat1, lon1 + (2 * unit(rng) - 1) * std::min(span, 90.0),
                           std::clamp(lat1 + (2 * unit(rng) - 1) * std::min(span, 80.0), -89.0, 89.0)});
        }
        return out;
    }();
    return lines;
}

void BM_DistanceVincentyNumbers2(benchmark::State& state) {
    const auto& lines = Lines();
    std::feclearexcept(kCheckedFlags);
    std::size_t i = 0;
    for (auto _ : state) {
        const Line& l = lines[i++ % kInputCount];
        double az1, az2;
        benchmark::DoNotOptimize(
            MyGeometricOperations::DistanceVincentyNumbers2(l.lon1, l.lat1, l.lon2, l.lat2, az1, az2, kA, kB));
    }
}
BENCHMARK(BM_DistanceVincentyNumbers2);

void BM_DistanceVincentyNumbers2_CallerFlagsRaised(benchmark::State& state) {
    const auto& lines = Lines();
    std::feraiseexcept(FE_INVALID);
    std::size_t i = 0;
    for (auto _ : state) {
        const Line& l = lines[i++ % kInputCount];
        double az1, az2;
        benchmark::DoNotOptimize(
            MyGeometricOperations::DistanceVincentyNumbers2(l.lon1, l.lat1, l.lon2, l.lat2, az1, az2, kA, kB));
    }
    std::feclearexcept(kCheckedFlags);
}
BENCHMARK(BM_DistanceVincentyNumbers2_CallerFlagsRaised);

void BM_GeographicLibInverse(benchmark::State& state) {
    const auto& lines = Lines();
    const GeographicLib::Geodesic geodesic(kA, (kA - kB) / kA);
    std::size_t i = 0;
    for (auto _ : state) {
        const Line& l = lines[i++ % kInputCount];
        double s12, az1, az2;
        geodesic.Inverse(l.lat1, l.lon1, l.lat2, l.lon2, s12, az1, az2);
        benchmark::DoNotOptimize(s12);
    }
    std::feclearexcept(kCheckedFlags);
}
BENCHMARK(BM_GeographicLibInverse);

// A clockwise star-shaped ring of n vertices, 2 to 8 degrees around (20, 40).
std::vector<WKSPoint> StarRing(int n) {
    std::mt19937_64 rng(7);
    std::uniform_real_distribution<double> radius(2.0, 8.0);
    std::vector<WKSPoint> ring;
    for (int k = 0; k < n; ++k) {
        const double angle = -2.0 * M_PI * k / n; // clockwise
        const double r = radius(rng);
        ring.push_back({20.0 + r * std::cos(angle), 40.0 + r * std::sin(angle)});
    }
    return ring;
}

std::shared_ptr<ISpatialReference> Wgs84() {
    static const auto reference = SpatialReferenceEnvironment().CreateGeographicCoordinateSystem(4326);
    return reference;
}

void BM_SphericalPolygonArea2(benchmark::State& state) {
    const auto coords = StarRing(static_cast<int>(state.range(0)));
    auto ring = std::make_shared<Ring>();
    ring->AddWKSPoints(static_cast<std::int32_t>(coords.size()), coords.data());
    ring->Close();
    Polygon polygon;
    polygon.AddGeometry(ring);
    polygon.SpatialReference(Wgs84());
    std::feclearexcept(kCheckedFlags);
    for (auto _ : state) {
        double lon, lat;
        benchmark::DoNotOptimize(MyGeometricOperations::SphericalPolygonArea2(polygon, false, lon, lat, kA, kB));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_SphericalPolygonArea2)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);

void BM_GeographicLibPolygonArea(benchmark::State& state) {
    const auto coords = StarRing(static_cast<int>(state.range(0)));
    const GeographicLib::Geodesic geodesic(kA, (kA - kB) / kA);
    for (auto _ : state) {
        GeographicLib::PolygonArea area(geodesic);
        for (const WKSPoint& p : coords)
            area.AddPoint(p.Y, p.X);
        double perimeter, value;
        area.Compute(false, true, perimeter, value);
        benchmark::DoNotOptimize(value);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    std::feclearexcept(kCheckedFlags);
}
BENCHMARK(BM_GeographicLibPolygonArea)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);

void BM_SpheroidalPolylineLength2(benchmark::State& state) {
    const auto coords = StarRing(static_cast<int>(state.range(0)));
    auto path = std::make_shared<Path>();
    path->AddWKSPoints(static_cast<std::int32_t>(coords.size()), coords.data());
    path->AddWKSPoints(1, coords.data()); // closed, as the ring's perimeter
    Polyline polyline;
    polyline.AddGeometry(path);
    polyline.SpatialReference(Wgs84());
    std::feclearexcept(kCheckedFlags);
    for (auto _ : state)
        benchmark::DoNotOptimize(MyGeometricOperations::SpheroidalPolylineLength2(polyline, kA, kB));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_SpheroidalPolylineLength2)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);

void BM_GeographicLibPolylineLength(benchmark::State& state) {
    const auto coords = StarRing(static_cast<int>(state.range(0)));
    const GeographicLib::Geodesic geodesic(kA, (kA - kB) / kA);
    for (auto _ : state) {
        GeographicLib::PolygonArea perimeter(geodesic, true);
        for (const WKSPoint& p : coords)
            perimeter.AddPoint(p.Y, p.X);
        perimeter.AddPoint(coords[0].Y, coords[0].X);
        double length, unused;
        perimeter.Compute(false, true, length, unused);
        benchmark::DoNotOptimize(length);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    std::feclearexcept(kCheckedFlags);
}
BENCHMARK(BM_GeographicLibPolylineLength)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);

} // namespace
