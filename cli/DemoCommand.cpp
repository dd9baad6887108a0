#include "DemoCommand.h"

#include <filesystem>
#include <ostream>

#include "CommandRun.h"
#include "CommandTable.h"
#include "GraphicsDrivers.h"
#include "HostSession.h"
#include "TextUtil.h"

namespace tess::cli {
namespace {

namespace fs = std::filesystem;

constexpr const char* kDemoDocument = "demo.map.json";
// A dataset of the demo that make-demo-data writes; its absence means the script has not run.
constexpr const char* kDemoProbe = "demo/parcels.shp";
constexpr const char* kShapefileParts[] = {".shp", ".shx", ".dbf", ".prj", ".cpg"};

//! One conversion of the demo: the command, the layer of the demo map it runs on, and the
//! shapefile it writes.
struct DemoStep {
    const char* command;
    const char* layer;
    const char* output;
};

// Each conversion once, on a layer of the kind it takes. Trails carry a selection in the demo map;
// every step converts all records.
constexpr DemoStep kSteps[] = {
    {"vertices", "parcels", "parcels_vertices"},
    {"label-points", "parcels", "parcels_label_points"},
    {"centroids", "trails", "trails_midpoints"},
    {"spherical-centroids", "parcels", "parcels_spherical_centroids"},
    {"to-polygons", "trails", "trails_polygons"},
    {"to-polylines", "parcels", "parcels_outlines"},
    {"split", "parcels", "parcels_parts"},
    {"combine", "parcels", "parcels_combined"},
};

fs::path FindDataFolder(const std::string& given) {
    if (!given.empty())
        return given;
    if (fs::exists(fs::path("data") / kDemoDocument))
        return "data";
    // Installed: beside the program's share folder.
    if (const fs::path program = ProgramFolder(); !program.empty()) {
        const fs::path installed = program.parent_path() / "share" / "tessarine" / "data";
        if (fs::exists(installed / kDemoDocument))
            return installed;
    }
#ifdef TESS_DEMO_DATA_DIR
    if (fs::exists(fs::path(TESS_DEMO_DATA_DIR) / kDemoDocument))
        return TESS_DEMO_DATA_DIR;
#endif
    return "data";
}

// Graphics to shapes: the demo map's graphics, curves and all, become one polygon class.
constexpr const char* kGraphicsOutput = "graphics_polygons";
constexpr int kAllToPolygons = 4; // the dialog's fifth line: polylines and polygons to polygons

//! Converts the graphics of `document` into output/graphics_polygons.shp and saves the document.
ExitCode RunGraphicsToShapesDemo(const fs::path& document, const fs::path& output, const DemoOptions& options,
                                 Console& console, const std::string& libraryPath) {
    std::error_code error;
    for (const char* part : kShapefileParts)
        fs::remove(output / (std::string(kGraphicsOutput) + part), error);
    console.out << "\nTessarine demo: \"Graphic Elements to Shapes\" on the graphics of " << document.string()
                << "\n\n";
    console.out.flush();

    GraphicsShapefileChoices choices;
    choices.convert = kAllToPolygons;
    choices.output = (output / (std::string(kGraphicsOutput) + ".shp")).string();
    RunOptions run;
    run.commandName = "Tessarine_MakeShapefile";
    run.documentPath = document.string();
    run.answer = Answer::Yes;
    run.save = true;
    run.progress = options.progress;
    run.dialogDrivers = [choices](TerminalUI& ui, const std::shared_ptr<MxDocument>&) {
        ui.RegisterDriver("frmGraphicsShapefile", MakeGraphicsShapefileDriver(choices, ui));
    };
    const ExitCode code = RunCommand(run, console, libraryPath);
    if (code == ExitCode::Success)
        console.out << "\nThe graphics are in " << choices.output << ", with their names, areas on the sphere "
                    << "and symbols; the map is " << document.string() << ".\n";
    return code;
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
    // The last demo's outputs go, so that each run writes the same names.
    for (const DemoStep& step : kSteps)
        for (const char* part : kShapefileParts)
            fs::remove(output / (std::string(step.output) + part), error);

    // Every step opens the map that the one before it saved, so the map gathers the new layers.
    const std::string savedDocument = (output / kDemoDocument).string();
    std::string currentDocument = document.string();
    std::size_t number = 0;
    for (const DemoStep& step : kSteps) {
        const FriendlyCommand* entry = FindFriendlyCommand(step.command);
        if (!entry) {
            console.err << "tessarine: the demo's command " << Quoted(step.command) << " is not in the table\n";
            return ExitCode::Failed;
        }
        ++number;
        console.out << (number == 1 ? "" : "\n") << "Tessarine demo, " << number << " of " << std::size(kSteps)
                    << ": \"" << entry->caption << "\" (tessarine " << step.command << ") on the layer \""
                    << step.layer << "\" of " << currentDocument << "\n\n";
        console.out.flush();

        RunOptions run;
        run.commandName = std::string(entry->commandName);
        run.documentPath = currentDocument;
        run.inputLayer = step.layer;
        run.output = (output / (std::string(step.output) + ".shp")).string();
        run.allFields = true;
        run.records = RecordChoice::All;
        run.answer = Answer::Yes;
        run.save = true;
        run.savePath = savedDocument;
        run.progress = options.progress;
        const ExitCode code = RunCommand(run, console, libraryPath);
        if (code != ExitCode::Success)
            return code;
        currentDocument = savedDocument;
    }
    if (const ExitCode code = RunGraphicsToShapesDemo(savedDocument, output, options, console, libraryPath);
        code != ExitCode::Success)
        return code;
    if (const ExitCode code = RunPlanetaryDemo(data, output, options, console, libraryPath);
        code != ExitCode::Success)
        return code;
    if (const ExitCode code = RunBuildPolygonsDemo(data, output, options.progress, console, libraryPath);
        code != ExitCode::Success)
        return code;
    console.out << "\nThe outputs are in " << output.string() << "/; the map with the new layers is " << savedDocument
                << ".\n";
    return ExitCode::Success;
}

} // namespace tess::cli
