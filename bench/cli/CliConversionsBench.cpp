// The seven conversions other than vertices, as a user runs them, against QGIS
// processing and against the I/O floor, on the same data of 1,000,000 vertices:
//   polygons.shp  5,000 features of two rings of 100 vertices each (one ring per part)
//   lines.shp     10,000 open lines of 100 vertices (for polylines to polygons)
// Each tool writes a shapefile, a file geodatabase class and a GeoPackage table.
//
// Per tool and output kind one iteration runs: tessarine; the QGIS processing
// algorithm that does the nearest thing (shapefile and GeoPackage only;
// skipped with a message where /usr/bin/qgis_process.bin is absent); and an
// ogr2ogr copy of tessarine's output into the same kind, the floor that any
// tool writing those features has to pay, and an ogr2ogr copy of the input into
// that kind, the floor of reading it. The counters are the wall times, the
// ratios tessarine/QGIS (below 0.5 is twice as fast), tessarine/output copy and
// tessarine/input copy, the same ratios of processor time (user and system,
// steadier on a shared machine), and tessarine's peak resident memory. A second benchmark
// runs each tool on a quarter of the features: the peak memory should not grow
// with the feature count.
//
// Needs ogr2ogr (gdal-bin) on the PATH; QGIS is the Debian package qgis.

#include <benchmark/benchmark.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <numbers>
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
#include "platform/geometry/Polygon.h"
#include "platform/geometry/Polyline.h"
#include "platform/geometry/Ring.h"
#include "platform/srs/SpatialReference.h"
#include "platform/srs/SpatialReferenceEnvironment.h"
#include "platform/system/Variant.h"

namespace {

namespace fs = std::filesystem;
using namespace tess;

constexpr int kPolygonFeatures = 5000;
constexpr int kRingsPerPolygon = 2;
constexpr int kLineFeatures = 10000;
constexpr int kVerticesPerPart = 100; // a ring's closing vertex included
constexpr int kQuarter = 4;           // the smaller run of the memory benchmark
constexpr double kCell = 0.01;        // degrees between neighbouring shapes
constexpr double kRadius = 0.003;     // degrees, of a ring or a line's arc
constexpr int kWgs84 = 4326;
constexpr const char* kQgis = "/usr/bin/qgis_process.bin";

enum class Kind { Shapefile, FileGdb, GeoPackage };

struct Tool {
    const char* command;  //!< tessarine's
    const char* input;    //!< "polygons" or "lines"
    const char* qgis;     //!< the QGIS algorithm, or nullptr
};

const Tool kTools[] = {
    {"label-points", "polygons", "native:pointonsurface"},
    {"centroids", "polygons", "native:centroids"},
    {"spherical-centroids", "polygons", nullptr},
    {"to-polylines", "polygons", "native:polygonstolines"},
    {"to-polygons", "lines", "qgis:linestopolygons"},
    {"split", "polygons", "native:multiparttosingleparts"},
    {"combine", "polygons", "native:dissolve"},
};

class BenchFolder {
public:
    BenchFolder() : path_(fs::temp_directory_path() / ("tess-bench-conv-" + std::to_string(::getpid()))) {
        fs::remove_all(path_);
        fs::create_directories(path_);
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

std::shared_ptr<IFeatureClass> NewClass(const fs::path& folder, const std::string& name, esriGeometryType type) {
    auto workspace =
        std::dynamic_pointer_cast<IFeatureWorkspace>(ShapefileWorkspaceFactory().OpenFromFile(folder.string(), 0));
    auto fields = std::make_shared<Fields>();
    auto def = std::make_shared<GeometryDef>();
    def->GeometryType(type);
    def->SpatialReference(SpatialReferenceEnvironment().CreateGeographicCoordinateSystem(kWgs84));
    auto shape = std::make_shared<Field>();
    shape->Name("Shape");
    shape->Type(esriFieldTypeGeometry);
    shape->GeometryDef(def);
    fields->AddField(shape);
    auto id = std::make_shared<Field>();
    id->Name("SHAPE_ID");
    id->Type(esriFieldTypeInteger);
    fields->AddField(id);
    return workspace->CreateFeatureClass(name, fields, nullptr, nullptr, esriFTSimple, "Shape", "");
}

//! A circle of kVerticesPerPart vertices about (cx, cy), clockwise; closed when `closed`.
std::vector<WKSPoint> Circle(double cx, double cy, bool closed) {
    std::vector<WKSPoint> points(kVerticesPerPart);
    const int steps = closed ? kVerticesPerPart - 1 : kVerticesPerPart;
    for (int v = 0; v < steps; ++v) {
        const double a = -2.0 * std::numbers::pi * v / kVerticesPerPart;
        points[static_cast<std::size_t>(v)] = {cx + kRadius * std::cos(a), cy + kRadius * std::sin(a)};
    }
    if (closed)
        points.back() = points.front();
    return points;
}

//! Shapes laid out on a grid of kCell, rows of 100.
WKSPoint Cell(int i) { return {(i % 100) * kCell, (i / 100) * kCell}; }

void MakePolygons(const fs::path& folder, const std::string& name, int features) {
    auto polygons = NewClass(folder, name, esriGeometryPolygon);
    auto cursor = polygons->Insert(true);
    auto buffer = polygons->CreateFeatureBuffer();
    const std::int32_t idIndex = polygons->FindField("SHAPE_ID");
    for (int f = 0; f < features; ++f) {
        auto polygon = std::make_shared<Polygon>();
        for (int r = 0; r < kRingsPerPolygon; ++r) {
            const WKSPoint c = Cell(f * kRingsPerPolygon + r);
            const auto points = Circle(c.X, c.Y, true);
            auto ring = std::make_shared<Ring>();
            ring->AddWKSPoints(kVerticesPerPart, points.data());
            polygon->AddPart(ring);
        }
        buffer->Shape(polygon);
        buffer->Value(idIndex, Variant(f + 1));
        cursor->InsertFeature(*buffer);
    }
    cursor->Flush();
}

void MakeLines(const fs::path& folder, const std::string& name, int features) {
    auto lines = NewClass(folder, name, esriGeometryPolyline);
    auto cursor = lines->Insert(true);
    auto buffer = lines->CreateFeatureBuffer();
    const std::int32_t idIndex = lines->FindField("SHAPE_ID");
    for (int f = 0; f < features; ++f) {
        const WKSPoint c = Cell(f);
        const auto points = Circle(c.X, c.Y, false);
        auto path = std::make_shared<Path>();
        path->AddWKSPoints(kVerticesPerPart, points.data());
        auto line = std::make_shared<Polyline>();
        line->AddPart(path);
        buffer->Shape(line);
        buffer->Value(idIndex, Variant(f + 1));
        cursor->InsertFeature(*buffer);
    }
    cursor->Flush();
}

//! The inputs, made once: full size in the folder, a quarter in its "quarter" folder.
void MakeInputs() {
    const fs::path folder = Folder();
    if (fs::exists(folder / "polygons.shp"))
        return;
    fs::create_directories(folder / "quarter");
    MakePolygons(folder, "polygons", kPolygonFeatures);
    MakeLines(folder, "lines", kLineFeatures);
    MakePolygons(folder / "quarter", "polygons", kPolygonFeatures / kQuarter);
    MakeLines(folder / "quarter", "lines", kLineFeatures / kQuarter);
}

struct Measured {
    double seconds = 0;    //!< wall time
    double cpuSeconds = 0; //!< user and system time: steadier than wall time on a shared machine
    double peakMegabytes = 0;
};

double SecondsOf(const timeval& t) { return static_cast<double>(t.tv_sec) + 1e-6 * static_cast<double>(t.tv_usec); }

//! Runs the shell command and measures its wall time and its peak resident memory.
Measured Run(const std::string& command) {
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = ::fork();
    if (child < 0)
        throw std::runtime_error("cannot fork");
    if (child == 0) {
        ::execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char*>(nullptr));
        ::_exit(127);
    }
    int status = 0;
    rusage usage{};
    if (::wait4(child, &status, 0, &usage) != child || !WIFEXITED(status) || WEXITSTATUS(status) != 0)
        throw std::runtime_error("failed: " + command);
    Measured m;
    m.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    m.cpuSeconds = SecondsOf(usage.ru_utime) + SecondsOf(usage.ru_stime);
    constexpr double kKilobytesPerMegabyte = 1024.0;
    m.peakMegabytes = static_cast<double>(usage.ru_maxrss) / kKilobytesPerMegabyte;
    return m;
}

std::string Quote(const fs::path& path) { return "'" + path.string() + "'"; }

//! Where an output of the kind goes, as tessarine and ogr2ogr name it.
struct Place {
    std::string tessOutput; //!< --output of tessarine
    std::string floorCopy;  //!< the ogr2ogr command that copies tessarine's output
    std::string inputCopy;  //!< the ogr2ogr command that copies the input into the kind (without the file)
    std::string qgisOutput; //!< OUTPUT= of QGIS, empty when QGIS does not write the kind
};

Place PlaceFor(Kind kind, const std::string& name) {
    const fs::path out = Folder() / "out";
    switch (kind) {
    case Kind::Shapefile:
        return {(out / (name + ".shp")).string(),
                "ogr2ogr -f 'ESRI Shapefile' " + Quote(out / "floor.shp") + " " + Quote(out / (name + ".shp")),
                "ogr2ogr -f 'ESRI Shapefile' " + Quote(out / "input_copy.shp"), (out / "qgis.shp").string()};
    case Kind::FileGdb:
        return {(out / "tess.gdb" / name).string(),
                "ogr2ogr -f OpenFileGDB " + Quote(out / "floor.gdb") + " " + Quote(out / "tess.gdb") + " " + name,
                "ogr2ogr -f OpenFileGDB " + Quote(out / "input_copy.gdb"), ""};
    case Kind::GeoPackage:
        return {(out / "tess.gpkg" / name).string(),
                "ogr2ogr -f GPKG " + Quote(out / "floor.gpkg") + " " + Quote(out / "tess.gpkg") + " " + name,
                "ogr2ogr -f GPKG " + Quote(out / "input_copy.gpkg"), (out / "qgis.gpkg").string()};
    }
    return {};
}

void FreshOutputFolder() {
    const fs::path out = Folder() / "out";
    fs::remove_all(out);
    fs::create_directories(out);
    FileGDBWorkspaceFactory().Create(out.string(), "tess.gdb");
    GeoPackageWorkspaceFactory().Create(out.string(), "tess.gpkg");
}

std::string TessarineCommand(const Tool& tool, const fs::path& inputFolder, const std::string& output) {
    return std::string(TESS_CLI_BINARY) + " " + tool.command + " --layer " +
           Quote(inputFolder / (std::string(tool.input) + ".shp")) +
           " --all-fields --all --yes --progress none --output " + Quote(output) + " > /dev/null";
}

void BM_Conversion(benchmark::State& state, Tool tool, Kind kind) {
    MakeInputs();
    ::setenv("TESS_REGISTRY", (Folder() / "registry.json").c_str(), 1);
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    const bool haveQgis = tool.qgis && fs::exists(kQgis);
    const std::string name = std::string("tess_") + tool.input;
    double tessTotal = 0, floorTotal = 0, inputTotal = 0, qgisTotal = 0, peak = 0;
    double tessCpu = 0, floorCpu = 0, inputCpu = 0, qgisCpu = 0;
    for (auto _ : state) {
        FreshOutputFolder();
        const Place place = PlaceFor(kind, name);
        const Measured tess = Run(TessarineCommand(tool, Folder(), place.tessOutput));
        const Measured floor = Run(place.floorCopy + " > /dev/null 2>&1");
        const Measured input =
            Run(place.inputCopy + " " + Quote(Folder() / (std::string(tool.input) + ".shp")) + " > /dev/null 2>&1");
        state.SetIterationTime(tess.seconds);
        tessTotal += tess.seconds;
        floorTotal += floor.seconds;
        inputTotal += input.seconds;
        tessCpu += tess.cpuSeconds;
        floorCpu += floor.cpuSeconds;
        inputCpu += input.cpuSeconds;
        peak = std::max(peak, tess.peakMegabytes);
        if (haveQgis && !place.qgisOutput.empty()) {
            const Measured qgis = Run(std::string(kQgis) + " run " + tool.qgis + " -- INPUT=" +
                                      Quote(Folder() / (std::string(tool.input) + ".shp")) +
                                      " OUTPUT=" + Quote(place.qgisOutput) + " > /dev/null 2>&1");
            qgisTotal += qgis.seconds;
            qgisCpu += qgis.cpuSeconds;
        }
    }
    const double n = static_cast<double>(state.iterations());
    state.counters["tessarine_s"] = tessTotal / n;
    state.counters["floor_s"] = floorTotal / n;
    state.counters["ratio_floor"] = tessTotal / floorTotal;
    // The tools that write far less than they read (points, one feature) meet their floor in the
    // reading: a copy of the input into the same kind bounds that.
    state.counters["input_copy_s"] = inputTotal / n;
    state.counters["ratio_input_copy"] = tessTotal / inputTotal;
    state.counters["peak_MB"] = peak;
    state.counters["cpu_ratio_floor"] = tessCpu / floorCpu;
    state.counters["cpu_ratio_input_copy"] = tessCpu / inputCpu;
    if (qgisTotal > 0) {
        state.counters["qgis_s"] = qgisTotal / n;
        state.counters["ratio_qgis"] = tessTotal / qgisTotal;
        state.counters["cpu_ratio_qgis"] = tessCpu / qgisCpu;
    } else if (!tool.qgis) {
        state.SetLabel("no QGIS equivalent");
    } else if (!haveQgis) {
        state.SetLabel("QGIS skipped: " + std::string(kQgis) + " not found (Debian package qgis)");
    } else {
        state.SetLabel("QGIS does not write this kind");
    }
}

//! Peak memory of a full run against a run on a quarter of the features, into shapefiles.
void BM_PeakMemory(benchmark::State& state, Tool tool) {
    MakeInputs();
    ::setenv("TESS_REGISTRY", (Folder() / "registry.json").c_str(), 1);
    double full = 0, quarter = 0;
    for (auto _ : state) {
        FreshOutputFolder();
        const Measured big = Run(TessarineCommand(tool, Folder(), (Folder() / "out" / "full.shp").string()));
        const Measured small =
            Run(TessarineCommand(tool, Folder() / "quarter", (Folder() / "out" / "quarter.shp").string()));
        state.SetIterationTime(big.seconds);
        full = std::max(full, big.peakMegabytes);
        quarter = std::max(quarter, small.peakMegabytes);
    }
    state.counters["peak_full_MB"] = full;
    state.counters["peak_quarter_MB"] = quarter;
    state.counters["growth"] = full / quarter;
}

const int kRegistered = [] {
    const std::pair<Kind, const char*> kinds[] = {
        {Kind::Shapefile, "shapefile"}, {Kind::FileGdb, "filegdb"}, {Kind::GeoPackage, "geopackage"}};
    for (const Tool& tool : kTools) {
        for (const auto& [kind, label] : kinds)
            benchmark::RegisterBenchmark((std::string("Conversion/") + tool.command + "/" + label).c_str(),
                                         BM_Conversion, tool, kind)
                ->UseManualTime()
                ->Unit(benchmark::kSecond)
                ->Iterations(1);
        benchmark::RegisterBenchmark((std::string("PeakMemory/") + tool.command).c_str(), BM_PeakMemory, tool)
            ->UseManualTime()
            ->Unit(benchmark::kSecond)
            ->Iterations(1);
    }
    return 0;
}();

} // namespace
