// `tessarine vertices` against the nearest ogr2ogr command on the same data: a
// polyline shapefile of 1,000,000 vertices (1,000 lines of 1,000) turned into a
// point shapefile of its vertices carrying the lines' ID. ogr2ogr does it with
// SQLite-dialect SQL, ST_DissolvePoints and -explodecollections; it writes no
// coordinate fields, while tessarine adds Uniq_ID, X_Coord and Y_Coord.
//
// One iteration runs both; the counters give both times and their ratio
// (tessarine / ogr2ogr: below 1 is faster). Needs ogr2ogr (gdal-bin) on the PATH.

#include <benchmark/benchmark.h>

#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/data/Cursor.h"
#include "platform/data/Field.h"
#include "platform/data/Fields.h"
#include "platform/data/Row.h"
#include "platform/data/Table.h"
#include "platform/data/Workspace.h"
#include "platform/data/WorkspaceFactories.h"
#include "platform/geometry/Path.h"
#include "platform/geometry/Polyline.h"
#include "platform/srs/SpatialReference.h"
#include "platform/srs/SpatialReferenceEnvironment.h"
#include "platform/system/Variant.h"

namespace {

namespace fs = std::filesystem;
using namespace tess;

constexpr int kLines = 1000;
constexpr int kVerticesPerLine = 1000;
constexpr double kVertexStep = 1e-4; // degrees between neighbouring vertices
constexpr int kWgs84 = 4326;

//! The run's own folder, removed at the end.
class BenchFolder {
public:
    BenchFolder() : path_(fs::temp_directory_path() / ("tess-bench-cli-" + std::to_string(::getpid()))) {
        fs::remove_all(path_);
        fs::create_directories(path_ / "out");
    }
    ~BenchFolder() {
        std::error_code error;
        fs::remove_all(path_, error);
    }
    const fs::path& Path() const { return path_; }

private:
    fs::path path_;
};

fs::path Folder() {
    static const BenchFolder folder;
    return folder.Path();
}

void MakeLines(const fs::path& folder) {
    auto workspace =
        std::dynamic_pointer_cast<IFeatureWorkspace>(ShapefileWorkspaceFactory().OpenFromFile(folder.string(), 0));
    auto fields = std::make_shared<Fields>();
    auto def = std::make_shared<GeometryDef>();
    def->GeometryType(esriGeometryPolyline);
    def->SpatialReference(SpatialReferenceEnvironment().CreateGeographicCoordinateSystem(kWgs84));
    auto shape = std::make_shared<Field>();
    shape->Name("Shape");
    shape->Type(esriFieldTypeGeometry);
    shape->GeometryDef(def);
    fields->AddField(shape);
    auto id = std::make_shared<Field>();
    id->Name("LINE_ID");
    id->Type(esriFieldTypeInteger);
    fields->AddField(id);
    auto lines = workspace->CreateFeatureClass("lines", fields, nullptr, nullptr, esriFTSimple, "Shape", "");
    auto cursor = lines->Insert(true);
    auto buffer = lines->CreateFeatureBuffer();
    const std::int32_t idIndex = lines->FindField("LINE_ID");
    std::vector<WKSPoint> points(kVerticesPerLine);
    for (int line = 0; line < kLines; ++line) {
        for (int v = 0; v < kVerticesPerLine; ++v)
            points[static_cast<std::size_t>(v)] = {v * kVertexStep, line * kVertexStep};
        auto path = std::make_shared<Path>();
        path->AddWKSPoints(kVerticesPerLine, points.data());
        auto polyline = std::make_shared<Polyline>();
        polyline->AddPart(path);
        buffer->Shape(polyline);
        buffer->Value(idIndex, Variant(line + 1));
        cursor->InsertFeature(*buffer);
    }
    cursor->Flush();
}

double Seconds(const std::string& command) {
    const auto start = std::chrono::steady_clock::now();
    if (std::system(command.c_str()) != 0)
        throw std::runtime_error("failed: " + command);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void BM_VerticesAgainstOgr2ogr(benchmark::State& state) {
    const fs::path folder = Folder();
    if (!fs::exists(folder / "lines.shp"))
        MakeLines(folder);
    ::setenv("TESS_REGISTRY", (folder / "registry.json").c_str(), 1);
    const std::string lines = (folder / "lines.shp").string();
    const std::string tessarine = std::string(TESS_CLI_BINARY) + " vertices --layer " + lines +
                                  " --all-fields --yes --progress none --output " + (folder / "out/tess.shp").string() +
                                  " > /dev/null";
    const std::string ogr2ogr =
        "ogr2ogr -f \"ESRI Shapefile\" " + (folder / "out/ogr.shp").string() + " " + lines +
        " -dialect SQLite -sql \"SELECT LINE_ID, ST_DissolvePoints(geometry) AS geometry FROM lines\""
        " -explodecollections -nlt POINT";
    double tessTotal = 0;
    double ogrTotal = 0;
    for (auto _ : state) {
        fs::remove_all(folder / "out");
        fs::create_directories(folder / "out");
        const double tess = Seconds(tessarine);
        const double ogr = Seconds(ogr2ogr);
        state.SetIterationTime(tess);
        tessTotal += tess;
        ogrTotal += ogr;
    }
    const double n = static_cast<double>(state.iterations());
    state.counters["tessarine_s"] = tessTotal / n;
    state.counters["ogr2ogr_s"] = ogrTotal / n;
    state.counters["ratio"] = tessTotal / ogrTotal;
    state.counters["vertices"] = static_cast<double>(kLines) * kVerticesPerLine;
}

BENCHMARK(BM_VerticesAgainstOgr2ogr)->UseManualTime()->Unit(benchmark::kSecond)->Iterations(3);

} // namespace
