#include "DemoCommand.h"

#include <filesystem>
#include <ostream>

#include "CommandRun.h"
#include "TextUtil.h"

namespace tess::cli {
namespace {

namespace fs = std::filesystem;

constexpr const char* kDemoDocument = "demo.map.json";
// A dataset of the demo that make-demo-data writes; its absence means the script has not run.
constexpr const char* kDemoProbe = "demo/parcels.shp";
constexpr const char* kDemoLayer = "parcels";
constexpr const char* kVertexOutput = "parcels_vertices";
constexpr const char* kShapefileParts[] = {".shp", ".shx", ".dbf", ".prj", ".cpg"};

fs::path FindDataFolder(const std::string& given) {
    if (!given.empty())
        return given;
    if (fs::exists(fs::path("data") / kDemoDocument))
        return "data";
#ifdef TESS_DEMO_DATA_DIR
    if (fs::exists(fs::path(TESS_DEMO_DATA_DIR) / kDemoDocument))
        return TESS_DEMO_DATA_DIR;
#endif
    return "data";
}

// Polygons built from the demo fences: 0.5 m closes their 0.3 m gaps and leaves the 2 m one open.
constexpr const char* kRegionOutput = "regions";
constexpr const char* kClusterTolerance = "0.5"; // metres

ExitCode RunBuildPolygonsDemo(const fs::path& data, const fs::path& output, ProgressStyle progress, Console& console,
                              const std::string& libraryPath) {
    std::error_code error;
    for (const char* part : kShapefileParts)
        fs::remove(output / (std::string(kRegionOutput) + part), error);
    console.out << "\nTessarine demo: \"Build Polygons from Polylines\" on the fence lines of "
                << (data / "demo/boundaries.shp").string() << ", cluster tolerance " << kClusterTolerance
                << " m, names from the nearest label point\n\n";
    console.out.flush();
    RunOptions run;
    run.commandName = "Tessarine_BuildPolygon";
    run.layers.push_back({(data / "demo/boundaries.shp").string(), "boundaries", ""});
    run.layers.push_back({(data / "demo/region_labels.shp").string(), "region_labels", ""});
    run.output = (output / (std::string(kRegionOutput) + ".shp")).string();
    run.fields = {"NAME", "KIND"};
    run.build.clusterTolerance = kClusterTolerance;
    run.build.labels = "region_labels";
    run.build.labelRule = "nearest";
    run.answer = Answer::Yes;
    run.progress = progress;
    const ExitCode code = RunCommand(run, console, libraryPath);
    if (code == ExitCode::Success)
        console.out << "\nThe regions are in " << run.output << ".\n";
    return code;
}

} // namespace

ExitCode RunDemo(const DemoOptions& options, Console& console, const std::string& libraryPath) {
    const fs::path data = FindDataFolder(options.dataFolder);
    const fs::path document = data / kDemoDocument;
    if (!fs::exists(document)) {
        console.err << "tessarine: the demo document " << Quoted(document.string())
                    << " was not found; run the demo from the source folder, or give --data FOLDER\n";
        return ExitCode::Usage;
    }
    if (!fs::exists(data / kDemoProbe)) {
        console.err << "tessarine: the demo datasets are missing; make them with data/make-demo-data\n";
        return ExitCode::Usage;
    }
    const fs::path output = options.outputFolder;
    std::error_code error;
    fs::create_directories(output, error);
    if (error) {
        console.err << "tessarine: cannot make the folder " << Quoted(output.string()) << ": " << error.message()
                    << '\n';
        return ExitCode::Failed;
    }
    // The last demo's output goes, so that each run writes the same names.
    for (const char* part : kShapefileParts)
        fs::remove(output / (std::string(kVertexOutput) + part), error);

    console.out << "Tessarine demo: \"Convert Shapes to Vertices\" on the layer \"" << kDemoLayer << "\" of "
                << document.string() << "\n\n";
    console.out.flush();

    RunOptions run;
    run.commandName = "Tessarine_ShapesToVertices";
    run.documentPath = document.string();
    run.inputLayer = kDemoLayer;
    run.output = (output / (std::string(kVertexOutput) + ".shp")).string();
    run.allFields = true;
    run.records = RecordChoice::All;
    run.answer = Answer::Yes;
    run.save = true;
    run.savePath = (output / kDemoDocument).string();
    run.progress = options.progress;
    const ExitCode code = RunCommand(run, console, libraryPath);
    if (code == ExitCode::Success)
        console.out << "\nThe vertices are in " << run.output << "; the map with the new layer is "
                    << run.savePath << ".\n";
    if (code != ExitCode::Success)
        return code;
    return RunBuildPolygonsDemo(data, output, options.progress, console, libraryPath);
}

} // namespace tess::cli
