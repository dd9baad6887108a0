// Simplify, Area and Centroid of a 10,000-vertex polygon, with and without
// holes. Area and Centroid must be one pass over the vertices; Simplify of a
// valid ring must not pay for an overlay.

#include <benchmark/benchmark.h>

#include <cmath>
#include <numbers>
#include <vector>

#include "platform/geometry/Point.h"
#include "platform/geometry/Polygon.h"

namespace {

using namespace tess;

constexpr int kVertices = 10000;
constexpr int kHoles = 20;
constexpr int kHoleVertices = 50;
//! Depth of the notches between vertices, relative to the radius: a coastline-like edge whose
//! segments are about as long as the spacing of the vertices.
constexpr double kNotch = 2e-4;

//! A notched circle around (cx, cy): radius r alternating with (1 - kNotch) r.
std::shared_ptr<Ring> Star(double cx, double cy, double r, int n, bool clockwise) {
    std::vector<WKSPoint> pts;
    pts.reserve(static_cast<std::size_t>(n) + 1);
    for (int i = 0; i < n; ++i) {
        const double a = (clockwise ? -2.0 : 2.0) * std::numbers::pi * i / n;
        const double radius = i % 2 == 0 ? r : (1.0 - kNotch) * r;
        pts.push_back({cx + radius * std::cos(a), cy + radius * std::sin(a)});
    }
    pts.push_back(pts.front());
    auto ring = std::make_shared<Ring>();
    ring->AddWKSPoints(static_cast<std::int32_t>(pts.size()), pts.data());
    return ring;
}

//! The outer ring counter-clockwise, so that Simplify has something to do (turn it).
std::shared_ptr<Polygon> MakePolygon(bool withHoles) {
    auto polygon = std::make_shared<Polygon>();
    polygon->AddPart(Star(0.0, 0.0, 1000.0, kVertices, false));
    if (withHoles) {
        for (int h = 0; h < kHoles; ++h) {
            const double a = 2.0 * std::numbers::pi * h / kHoles;
            polygon->AddPart(Star(500.0 * std::cos(a), 500.0 * std::sin(a), 50.0, kHoleVertices, true));
        }
    }
    return polygon;
}

void BM_Simplify(benchmark::State& state) {
    const auto source = MakePolygon(state.range(0) != 0);
    for (auto _ : state) {
        state.PauseTiming();
        Polygon copy(*source);
        state.ResumeTiming();
        copy.Simplify();
        benchmark::DoNotOptimize(copy.PartCount());
    }
}
BENCHMARK(BM_Simplify)->Arg(0)->Arg(1)->ArgName("holes")->Unit(benchmark::kMicrosecond);

void BM_Area(benchmark::State& state) {
    const auto polygon = MakePolygon(state.range(0) != 0);
    for (auto _ : state) benchmark::DoNotOptimize(polygon->Area());
}
BENCHMARK(BM_Area)->Arg(0)->Arg(1)->ArgName("holes")->Unit(benchmark::kMicrosecond);

void BM_Centroid(benchmark::State& state) {
    const auto polygon = MakePolygon(state.range(0) != 0);
    Point centroid;
    for (auto _ : state) {
        polygon->QueryCentroid(centroid);
        benchmark::DoNotOptimize(centroid.X());
    }
}
BENCHMARK(BM_Centroid)->Arg(0)->Arg(1)->ArgName("holes")->Unit(benchmark::kMicrosecond);

void BM_LabelPoint(benchmark::State& state) {
    const auto polygon = MakePolygon(state.range(0) != 0);
    polygon->Simplify();
    Point label;
    for (auto _ : state) {
        polygon->QueryLabelPoint(label);
        benchmark::DoNotOptimize(label.X());
    }
}
BENCHMARK(BM_LabelPoint)->Arg(0)->Arg(1)->ArgName("holes")->Unit(benchmark::kMicrosecond);

} // namespace
