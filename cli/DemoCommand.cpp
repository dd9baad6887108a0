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

// The Mars regions of the demo: planetocentric, longitudes 0 to 360.
constexpr const char* kMarsRegions = "demo/mars_regions.shp";
constexpr const char* kMarsWrapped = "mars_regions_180";
constexpr const char* kMarsGraphic = "mars_regions_graphic";

//! The planetary tools on the Mars regions: wrapped to -180..180, then made planetographic on
//! Mars 2000. Skipped, with a word, when the demo data predate the Mars regions.
ExitCode RunPlanetaryDemo(const fs::path& data, const fs::path& output, const DemoOptions& options,
                          Console& console, const std::string& libraryPath) {
    if (!fs::exists(data / kMarsRegions)) {
        console.out << "\n(The Mars regions are missing from the demo data; data/make-demo-data makes them.)\n";
        return ExitCode::Success;
    }
    std::error_code error;
    for (const char* name : {kMarsWrapped, kMarsGraphic})
        for (const char* part : kShapefileParts)
            fs::remove(output / (std::string(name) + part), error);

    const std::string wrapped = (output / (std::string(kMarsWrapped) + ".shp")).string();
    const std::string graphic = (output / (std::string(kMarsGraphic) + ".shp")).string();
    console.out << "\nTessarine demo: \"Wrap Boundary\" on the Mars regions (0 to 360) to -180 to 180\n\n";
    console.out.flush();
    RunOptions wrap;
    wrap.commandName = "Tessarine_WrapBoundary";
    wrap.layers.push_back({(data / kMarsRegions).string(), "mars_regions", ""});
    wrap.range = "-180,180";
    wrap.output = wrapped;
    wrap.answer = Answer::Yes;
    wrap.progress = options.progress;
    if (const ExitCode code = RunCommand(wrap, console, libraryPath); code != ExitCode::Success)
        return code;

    console.out << "\nTessarine demo: \"OCentric to OGraphic\" on the wrapped regions, Mars 2000\n\n";
    console.out.flush();
    RunOptions toGraphic;
    toGraphic.commandName = "Tessarine_OCentric_OGraphic";
    toGraphic.layers.push_back({wrapped, kMarsWrapped, ""});
    toGraphic.spheroid = "Mars 2000";
    toGraphic.range = "none";
    toGraphic.output = graphic;
    toGraphic.answer = Answer::Yes;
    toGraphic.progress = options.progress;
    const ExitCode code = RunCommand(toGraphic, console, libraryPath);
    if (code == ExitCode::Success)
        console.out << "\nThe wrapped regions are in " << wrapped << ", the planetographic ones in " << graphic
                    << ".\n";
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
    if (code != ExitCode::Success)
        return code;
    console.out << "\nThe vertices are in " << run.output << "; the map with the new layer is " << run.savePath
                << ".\n";
    return RunPlanetaryDemo(data, output, options, console, libraryPath);
}

} // namespace tess::cli
