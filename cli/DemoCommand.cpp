#include "DemoCommand.h"

#include <filesystem>
#include <ostream>

#include "CommandRun.h"
#include "GraphicsDrivers.h"
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
    return RunGraphicsToShapesDemo(run.savePath, output, options, console, libraryPath);
}

} // namespace tess::cli
