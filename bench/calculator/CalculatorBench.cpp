// `tessarine calculate` on 1,000,000 polygons and 1,000,000 polylines with
// geographic coordinates, in a GeoPackage: the spherical area of the polygons
// and the spheroidal length of the lines written into the layers' own tables,
// against QGIS (exportaddgeometrycolumns with the WGS 84 ellipsoid,
// which writes a new dataset with area and perimeter or length) and against
// PostGIS (UPDATE ... SET a = ST_Area(geom::geography) / ST_Length, after a
// load that is timed on its own).
//
// Counters, in seconds unless named otherwise:
//   tess_polygons, tess_lines     the two calculate runs, reading and writing included
//   tess_io_polygons, tess_io_lines  the same runs with "Number of Vertices", which needs no
//                                 geodesy: the rest of the time is the geodesy's share
//   tess_shp_polygons, tess_shp_lines  the same two runs on shapefiles made from the same data
//                                 (ogr2ogr, not timed): a shapefile's rows are rewritten in place,
//                                 a GeoPackage's go through SQLite's update with its spatial index
//   tess_peak_mb                  the largest resident size of a calculate run (MiB)
//   *_cpu                         user and system time of the same command: on a shared machine
//                                 the wall times carry the other users' load
//   qgis_polygons, qgis_lines     0 when qgis_process is absent (a message says so)
//   pg_load, pg_polygons, pg_lines  0 when PostgreSQL with PostGIS is absent
// Ratios peer / tessarine (above 1: tessarine is faster) are counters too.

#include <benchmark/benchmark.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
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
#include "platform/geometry/Polygon.h"
#include "platform/geometry/Polyline.h"
#include "platform/geometry/Ring.h"
#include "platform/srs/SpatialReference.h"
#include "platform/srs/SpatialReferenceEnvironment.h"

namespace {

namespace fs = std::filesystem;
using namespace tess;

constexpr int kFeatures = 1000000;
constexpr int kColumns = 1000;        // features per row of the grid
constexpr double kCell = 0.01;        // degrees between grid cells
constexpr double kSize = 0.008;       // degrees across a square or a line
constexpr int kWgs84 = 4326;
constexpr const char* kQgis = "/usr/bin/qgis_process.bin";

class BenchFolder {
public:
    BenchFolder() : path_(fs::temp_directory_path() / ("tess-bench-calc-" + std::to_string(::getpid()))) {
        fs::remove_all(path_);
        fs::create_directories(path_);
    }
    ~BenchFolder() {
        std::error_code error;
        fs::remove_all(path_, error);
    }
    const fs::path& Path() const { return path_; }
    std::string operator/(const std::string& name) const { return (path_ / name).string(); }

private:
    fs::path path_;
};

std::shared_ptr<IFields> ClassFields(esriGeometryType type) {
    auto fields = std::make_shared<Fields>();
    auto def = std::make_shared<GeometryDef>();
    def->GeometryType(type);
    def->SpatialReference(SpatialReferenceEnvironment().CreateGeographicCoordinateSystem(kWgs84));
    auto shape = std::make_shared<Field>();
    shape->Name("Shape");
    shape->Type(esriFieldTypeGeometry);
    shape->GeometryDef(def);
    fields->AddField(shape);
    return fields;
}

//! polygons: small clockwise squares; lines: four-segment zigzags; both on a grid over Europe.
void MakeData(const std::string& gpkg) {
    auto workspace = std::dynamic_pointer_cast<IFeatureWorkspace>(
        GeoPackageWorkspaceFactory().Create(fs::path(gpkg).parent_path().string(), fs::path(gpkg).filename().string()));
    for (const bool polygons : {true, false}) {
        auto featureClass = workspace->CreateFeatureClass(
            polygons ? "polygons" : "lines", ClassFields(polygons ? esriGeometryPolygon : esriGeometryPolyline),
            nullptr, nullptr, esriFTSimple, "Shape", "");
        auto cursor = featureClass->Insert(true);
        auto buffer = featureClass->CreateFeatureBuffer();
        for (int i = 0; i < kFeatures; ++i) {
            const double x = -10.0 + (i % kColumns) * kCell;
            const double y = 35.0 + (i / kColumns) * kCell * 0.02;
            if (polygons) {
                const WKSPoint ring[] = {{x, y}, {x, y + kSize}, {x + kSize, y + kSize}, {x + kSize, y}, {x, y}};
                auto r = std::make_shared<Ring>();
                r->AddWKSPoints(5, ring);
                auto polygon = std::make_shared<Polygon>();
                polygon->AddGeometry(r);
                buffer->Shape(polygon);
            } else {
                const double q = kSize / 4;
                const WKSPoint path[] = {{x, y}, {x + q, y + q}, {x + 2 * q, y}, {x + 3 * q, y + q}, {x + kSize, y}};
                auto p = std::make_shared<Path>();
                p->AddWKSPoints(5, path);
                auto line = std::make_shared<Polyline>();
                line->AddGeometry(p);
                buffer->Shape(line);
            }
            cursor->InsertFeature(*buffer);
        }
        cursor->Flush();
    }
}

struct Outcome {
    double seconds = 0;
    double cpuSeconds = 0;
    double peakMb = 0;
    int status = -1;
};

//! Runs the command (through the shell) and measures its wall time and the peak resident size of
//! the process tree it waits for.
Outcome Run(const std::string& command) {
    const auto start = std::chrono::steady_clock::now();
    const pid_t pid = ::fork();
    if (pid == 0) {
        ::execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char*>(nullptr));
        ::_exit(127);
    }
    int status = 0;
    rusage usage{};
    ::wait4(pid, &status, 0, &usage); // the child and the descendants it waited for
    Outcome outcome;
    outcome.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    const auto seconds = [](const timeval& t) { return static_cast<double>(t.tv_sec) + t.tv_usec / 1e6; };
    outcome.cpuSeconds = seconds(usage.ru_utime) + seconds(usage.ru_stime);
    outcome.peakMb = static_cast<double>(usage.ru_maxrss) / 1024.0; // KiB -> MiB
    outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    if (outcome.status != 0)
        std::cerr << "command failed (" << outcome.status << "): " << command << '\n';
    return outcome;
}

std::string Quote(const std::string& text) { return "'" + text + "'"; }

Outcome Calculate(const std::string& gpkg, const std::string& layer, const std::string& measure) {
    return Run(std::string(TESS_CLI_BINARY) + " calculate --layer " + Quote(gpkg + "/" + layer) + " --measure " +
               Quote(measure) + " --yes --progress none > /dev/null");
}

bool HavePostgis() {
    return std::system("command -v pg_ctlcluster > /dev/null && ls /usr/share/postgresql/*/extension/postgis.control "
                       "> /dev/null 2>&1") == 0;
}

void BM_CalculateAgainstPeers(benchmark::State& state) {
    BenchFolder folder;
    const std::string data = folder / "data.gpkg";
    MakeData(data);
    const bool qgis = fs::exists(kQgis);
    const bool postgis = HavePostgis();
    if (!qgis)
        std::cerr << "QGIS is not installed (package qgis): its columns stay 0\n";
    if (!postgis)
        std::cerr << "PostgreSQL with PostGIS is not installed: its columns stay 0\n";
    const std::string peers = std::string("bash -c 'source ") + TESS_PEER_COMMANDS + " >/dev/null 2>&1; ";

    for (auto _ : state) {
        const std::string work = folder / "work.gpkg";
        fs::copy_file(data, work, fs::copy_options::overwrite_existing);
        const Outcome polygons = Calculate(work, "polygons", "Sph. Area=SPH_AREA");
        const Outcome lines = Calculate(work, "lines", "Spheroidal Length=SPH_LEN");
        const Outcome ioPolygons = Calculate(work, "polygons", "Number of Vertices=NV");
        const Outcome ioLines = Calculate(work, "lines", "Number of Vertices=NV");
        state.counters["tess_polygons"] = polygons.seconds;
        state.counters["tess_lines"] = lines.seconds;
        state.counters["tess_io_polygons"] = ioPolygons.seconds;
        state.counters["tess_io_lines"] = ioLines.seconds;
        state.counters["tess_polygons_cpu"] = polygons.cpuSeconds;
        state.counters["tess_lines_cpu"] = lines.cpuSeconds;
        state.counters["tess_io_polygons_cpu"] = ioPolygons.cpuSeconds;
        state.counters["tess_io_lines_cpu"] = ioLines.cpuSeconds;
        Run("ogr2ogr -f 'ESRI Shapefile' " + Quote(folder / "shp") + " " + Quote(data) + " > /dev/null 2>&1");
        const Outcome shpPolygons = Calculate(folder / "shp", "polygons.shp", "Sph. Area=SPH_AREA");
        const Outcome shpLines = Calculate(folder / "shp", "lines.shp", "Spheroidal Length=SPH_LEN");
        state.counters["tess_shp_polygons"] = shpPolygons.seconds;
        state.counters["tess_shp_lines"] = shpLines.seconds;
        state.counters["tess_shp_polygons_cpu"] = shpPolygons.cpuSeconds;
        state.counters["tess_shp_lines_cpu"] = shpLines.cpuSeconds;
        state.counters["tess_peak_mb"] = std::max(
            {polygons.peakMb, lines.peakMb, ioPolygons.peakMb, ioLines.peakMb, shpPolygons.peakMb, shpLines.peakMb});

        if (qgis) {
            const std::string run = std::string("QT_QPA_PLATFORM=offscreen ") + kQgis +
                                    " run qgis:exportaddgeometrycolumns --ELLIPSOID=WGS84 -- INPUT=";
            const Outcome qp = Run(run + Quote(data + "|layername=polygons") + " CALC_METHOD=2 OUTPUT=" +
                                   Quote(folder / "q_polygons.gpkg") + " > /dev/null 2>&1");
            const Outcome ql = Run(run + Quote(data + "|layername=lines") + " CALC_METHOD=2 OUTPUT=" +
                                   Quote(folder / "q_lines.gpkg") + " > /dev/null 2>&1");
            state.counters["qgis_polygons"] = qp.seconds;
            state.counters["qgis_lines"] = ql.seconds;
            state.counters["qgis_polygons_cpu"] = qp.cpuSeconds;
            state.counters["qgis_lines_cpu"] = ql.cpuSeconds;
            state.counters["qgis_peak_mb"] = std::max(qp.peakMb, ql.peakMb);
            state.counters["qgis_over_tess_polygons"] = qp.seconds / polygons.seconds;
            state.counters["qgis_over_tess_lines"] = ql.seconds / lines.seconds;
        }
        if (postgis) {
            Run(peers + "peer_pg_start' > /dev/null 2>&1");
            const std::string psql = "psql -q -d ${PEER_PGDB:-peers} -c ";
            const Outcome load = Run(peers + "ogr2ogr -f PostgreSQL PG:dbname=$PEER_PGDB " + data +
                                     " -lco GEOMETRY_NAME=geom -lco SPATIAL_INDEX=NONE -overwrite'");
            const Outcome pp = Run(peers + psql +
                                   "\"ALTER TABLE polygons ADD COLUMN IF NOT EXISTS a double precision; UPDATE "
                                   "polygons SET a = ST_Area(geom::geography)\"'");
            const Outcome pl = Run(peers + psql +
                                   "\"ALTER TABLE lines ADD COLUMN IF NOT EXISTS l double precision; UPDATE lines "
                                   "SET l = ST_Length(geom::geography)\"'");
            state.counters["pg_load"] = load.seconds;
            state.counters["pg_polygons"] = pp.seconds;
            state.counters["pg_lines"] = pl.seconds;
            state.counters["pg_load_cpu"] = load.cpuSeconds; // the client side only
            state.counters["pg_over_tess_polygons"] = pp.seconds / polygons.seconds;
            state.counters["pg_over_tess_lines"] = pl.seconds / lines.seconds;
        }
    }
}

BENCHMARK(BM_CalculateAgainstPeers)->Iterations(1)->Unit(benchmark::kSecond)->UseRealTime();

} // namespace
