// Reading and updating a 1,000,000-feature point shapefile through the data library, side by
// side with ogr2ogr copying the same file in a subprocess. Each benchmark reports features
// per second and its rate over ogr2ogr's (above 1 is faster than ogr2ogr), both by wall-clock
// time (vs_ogr2ogr_wall) and by processor time (vs_ogr2ogr_cpu, user + system; the fairer
// figure on a machine shared with other work).
//
// The update includes what makes it safe: the working copy of the files and the journaled
// swap when the cursor is released.

#include <benchmark/benchmark.h>

#include <stdlib.h>
#include <sys/resource.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "platform/data/Cursor.h"
#include "platform/data/Field.h"
#include "platform/data/Fields.h"
#include "platform/data/Row.h"
#include "platform/data/Table.h"
#include "platform/data/WorkspaceFactories.h"
#include "platform/geometry/Point.h"

namespace {

namespace fs = std::filesystem;
using namespace tess;

constexpr int kFeatures = 1000000;
constexpr double kGridWidth = 1000.0; // points on a 1000 x 1000 grid, unit spacing
constexpr double kMicro = 1e-6;        // seconds per microsecond

//! User and system processor time of this process (RUSAGE_SELF) or its finished children, seconds.
double CpuSeconds(int who) {
    rusage r{};
    ::getrusage(who, &r);
    return static_cast<double>(r.ru_utime.tv_sec + r.ru_stime.tv_sec) +
           kMicro * static_cast<double>(r.ru_utime.tv_usec + r.ru_stime.tv_usec);
}

double WallSeconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

//! Features per second.
struct Rates {
    double wall = 0.0;
    double cpu = 0.0;
};

//! The shapefile and its folder, made once and removed at exit.
class Data {
public:
    static Data& Get() {
        static Data data;
        return data;
    }
    const std::string& Folder() const { return folder_; }
    std::shared_ptr<IFeatureClass> Class() {
        auto ws = ShapefileWorkspaceFactory().OpenFromFile(folder_, 0);
        return std::dynamic_pointer_cast<IFeatureWorkspace>(ws)->OpenFeatureClass("points");
    }
    //! ogr2ogr's copying rates, measured once.
    const Rates& OgrRates() {
        if (ogr_.wall == 0.0) {
            const double cpu = CpuSeconds(RUSAGE_CHILDREN);
            const double wall = CopyWithOgr2ogr();
            ogr_.wall = kFeatures / wall;
            ogr_.cpu = kFeatures / (CpuSeconds(RUSAGE_CHILDREN) - cpu);
        }
        return ogr_;
    }
    //! Seconds ogr2ogr takes to copy the shapefile.
    double CopyWithOgr2ogr() {
        const std::string out = root_ + "/copy";
        fs::remove_all(out);
        fs::create_directory(out);
        const std::string command = "ogr2ogr -f \"ESRI Shapefile\" \"" + out + "/points.shp\" \"" + folder_ +
                                    "/points.shp\" > /dev/null 2>&1";
        const double start = WallSeconds();
        if (std::system(command.c_str()) != 0)
            throw std::runtime_error("ogr2ogr failed");
        return WallSeconds() - start;
    }

private:
    Data() {
        const char* base = std::getenv("TMPDIR");
        std::string pattern = std::string(base && *base ? base : "/tmp") + "/tess-bench-XXXXXX";
        if (!::mkdtemp(pattern.data()))
            throw std::runtime_error("cannot make a temporary folder");
        root_ = pattern;
        folder_ = root_ + "/data";
        auto ws = ShapefileWorkspaceFactory().Create(root_, "data");
        auto fields = std::make_shared<Fields>();
        auto def = std::make_shared<GeometryDef>();
        def->GeometryType(esriGeometryPoint);
        auto shape = std::make_shared<Field>();
        shape->Name("Shape");
        shape->Type(esriFieldTypeGeometry);
        shape->GeometryDef(def);
        fields->AddField(shape);
        auto val = std::make_shared<Field>();
        val->Name("VAL");
        val->Type(esriFieldTypeInteger);
        fields->AddField(val);
        auto fc = std::dynamic_pointer_cast<IFeatureWorkspace>(ws)->CreateFeatureClass(
            "points", fields, nullptr, nullptr, esriFTSimple, "Shape", "");
        auto cursor = fc->Insert(true);
        auto buffer = fc->CreateFeatureBuffer();
        const std::int32_t v = fc->FindField("VAL");
        for (int i = 0; i < kFeatures; ++i) {
            buffer->Shape(std::make_shared<Point>(i % static_cast<int>(kGridWidth), i / static_cast<int>(kGridWidth)));
            buffer->Value(v, i);
            cursor->InsertFeature(*buffer);
        }
    }
    ~Data() {
        std::error_code ec;
        fs::remove_all(root_, ec);
    }
    std::string root_;
    std::string folder_;
    Rates ogr_;
};

//! Puts the ratios of this benchmark's rates to ogr2ogr's.
void CompareWithOgr2ogr(benchmark::State& state, double wall, double cpu) {
    const Rates& ogr = Data::Get().OgrRates();
    const double features = static_cast<double>(kFeatures) * static_cast<double>(state.iterations());
    state.counters["vs_ogr2ogr_wall"] = features / wall / ogr.wall;
    state.counters["vs_ogr2ogr_cpu"] = features / cpu / ogr.cpu;
}

void BM_Ogr2ogrCopy(benchmark::State& state) {
    auto& data = Data::Get();
    const double cpu = CpuSeconds(RUSAGE_CHILDREN);
    for (auto _ : state) {
        const double seconds = data.CopyWithOgr2ogr();
        state.SetIterationTime(seconds);
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * kFeatures);
    state.counters["cpu_s_per_copy"] = (CpuSeconds(RUSAGE_CHILDREN) - cpu) / static_cast<double>(state.iterations());
}

void BM_ReadShapefile(benchmark::State& state) {
    auto& data = Data::Get();
    data.OgrRates();
    auto fc = data.Class();
    double sum = 0.0;
    const double wall = WallSeconds(), cpu = CpuSeconds(RUSAGE_SELF);
    for (auto _ : state) {
        auto cursor = fc->Search(nullptr, true);
        while (auto f = cursor->NextFeature()) {
            sum += std::static_pointer_cast<IPoint>(f->Shape())->X();
            benchmark::DoNotOptimize(sum);
        }
    }
    CompareWithOgr2ogr(state, WallSeconds() - wall, CpuSeconds(RUSAGE_SELF) - cpu);
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * kFeatures);
}

void BM_UpdateShapefile(benchmark::State& state) {
    auto& data = Data::Get();
    data.OgrRates();
    auto fc = data.Class();
    const std::int32_t v = fc->FindField("VAL");
    int pass = 0;
    const double wall = WallSeconds(), cpu = CpuSeconds(RUSAGE_SELF);
    for (auto _ : state) {
        ++pass;
        auto cursor = fc->Update(nullptr, true);
        while (auto f = cursor->NextFeature()) {
            f->Value(v, pass);
            cursor->UpdateFeature(*f);
        }
    }
    CompareWithOgr2ogr(state, WallSeconds() - wall, CpuSeconds(RUSAGE_SELF) - cpu);
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * kFeatures);
}

BENCHMARK(BM_Ogr2ogrCopy)->UseManualTime()->Iterations(2)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadShapefile)->UseRealTime()->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_UpdateShapefile)->UseRealTime()->Iterations(2)->Unit(benchmark::kMillisecond);

} // namespace
