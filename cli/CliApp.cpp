#include "CliApp.h"

#include <CLI/CLI.hpp>

#include <map>
#include <ostream>
#include <sstream>

#include "CalculateDriver.h"
#include "CommandRun.h"
#include "CommandTable.h"
#include "CommandsListing.h"
#include "DemoCommand.h"
#include "GeodCommand.h"
#include "PlanetaryDrivers.h"
#include "TextUtil.h"

#ifndef TESS_VERSION
#define TESS_VERSION "0.0.0"
#endif

namespace tess::cli {
namespace {

const std::map<std::string, ProgressStyle> kProgressStyles{
    {"auto", ProgressStyle::Auto}, {"line", ProgressStyle::Line},
    {"plain", ProgressStyle::Plain}, {"none", ProgressStyle::None}};

constexpr const char* kConversionExamples = R"(
Examples:
  tessarine vertices --layer data/demo/trails.shp --output out/trail_vertices.shp --all-fields
  tessarine vertices --layer data/demo/parcels.shp --where "ZONE = 1" --selected \
                     --fields NAME,OWNER --output out/zone1_vertices.shp
  tessarine vertices --doc data/demo.map.json --input parcels --output data/demo/demo.gdb/parcel_vertices --save
  tessarine Tessarine_ShapesToVertices --layer data/demo/demo.gdb/parcels --output out/v.shp --yes

The dialog of the command checks the choices as on the desktop; its messages are shown as text.
--output: a.shp (a folder of shapefiles), file.gdb/Name, file.gdb/Dataset/Name, file.gpkg/Name.
Exit codes: 0 done, 1 the run failed, 2 bad usage, 3 stopped (Ctrl-C; what was written stays).
)";

constexpr const char* kGraphicsExamples = R"(
Examples:
  tessarine graphics select-all --doc map.map.json --save
  tessarine graphics flip --doc map.map.json --save flipped.map.json
  tessarine graphics zoom --doc map.map.json --save
)";

constexpr const char* kGeodExamples = R"(
Positions are longitude before latitude, in decimal degrees. Without numbers on the command line,
one problem is read from each line of the input (blanks or commas between the numbers).
  inverse: lon1 lat1 lon2 lat2         ->  distance azimuth1 azimuth2
  direct:  lon1 lat1 azimuth distance  ->  lon2 lat2 azimuth2
azimuth2 is the direction of travel at the far point. Distances are in the unit of the axes.

Examples:
  tessarine geod inverse -77.0365 38.8977 2.2945 48.8584
  tessarine geod direct 0 0 90 111319.49
  tessarine geod inverse --spheroid "Mars 2000" < pairs.txt
  tessarine geod direct --spheroid 6378137,6356752.314245 10 50 45 100000
  tessarine geod spheroids
)";

constexpr const char* kCommandsExamples = R"(
Each line shows a menu item as the map host shows it, the command's name, and what to type after
"tessarine" to run it.

Examples:
  tessarine commands
  tessarine commands | grep vertices
)";

constexpr const char* kDemoExamples = R"(
The demo datasets are made by data/make-demo-data; scripts/demo makes them, builds and runs this.

Examples:
  tessarine demo
  tessarine demo --output /tmp/tessarine-demo --progress plain
)";

//! The help's closing text of a command of the table.
std::string Footer(const FriendlyCommand& entry) {
    if (entry.dialog == DialogKind::None)
        return kGraphicsExamples;
    if (entry.dialog == DialogKind::Unsupported)
        return "\nThe dialog of this command cannot be answered from the command line yet; it runs in "
               "tessarine-map.\n\nExamples:\n  tessarine commands\n";
    if (entry.dialog == DialogKind::Calculate)
        return kCalculateExamples;
    if (entry.dialog == DialogKind::Planetary)
        return entry.friendly == "wrap" ? kWrapExamples : kGeoCentricExamples;
    if (entry.friendly == "vertices")
        return kConversionExamples;
    const std::string name(entry.friendly);
    return "\nThe options are those of \"tessarine vertices --help\": the same dialog serves every "
           "conversion.\n\nExamples:\n  tessarine " + name + " --layer data/demo/parcels.shp --output out/" + name +
           ".shp --all-fields\n  tessarine " + name + " --doc data/demo.map.json --input parcels --output out/" +
           name + ".shp --yes\n";
}

constexpr const char* kTopFooter = R"(
Examples:
  tessarine commands
  tessarine demo
  tessarine vertices --help
  tessarine geod inverse -77.0365 38.8977 2.2945 48.8584
)";

//! A command-line usage problem found after CLI11 has parsed.
struct BadUsage {
    std::string message;
};

LayerSource ParseLayer(const std::string& text) {
    LayerSource source;
    source.path = text;
    // PATH:NAME; a colon inside the path's folders is no name.
    const auto colon = text.rfind(':');
    if (colon != std::string::npos && colon > 0 && text.find_first_of("/\\", colon) == std::string::npos &&
        colon + 1 < text.size()) {
        source.path = text.substr(0, colon);
        source.name = text.substr(colon + 1);
    }
    return source;
}

void AddProgressOption(CLI::App& sub, ProgressStyle& style) {
    sub.add_option("--progress", style, "How progress is shown on stderr: a line rewritten on a terminal, "
                                        "plain lines elsewhere, or none")
        ->transform(CLI::CheckedTransformer(kProgressStyles, CLI::ignore_case).description(""))
        ->type_name("auto|line|plain|none");
}

//! The options of a command that runs on a document or on datasets.
struct DocumentOptions {
    RunOptions run;
    std::vector<std::string> layerTexts;
    std::vector<std::string> whereTexts;
    std::string fieldsText;
    bool yes = false;
    bool no = false;
    bool all = false;
    bool selected = false;
    CLI::Option* layerOption = nullptr;
    CLI::Option* whereOption = nullptr;
    CLI::Option* saveOption = nullptr;
};

void AddMapOptions(CLI::App& sub, DocumentOptions& o, bool withDatasets) {
    sub.add_option("--doc", o.run.documentPath, "The map document (*.map.json) to work on")->type_name("FILE");
    if (!withDatasets)
        return;
    o.layerOption = sub.add_option("--layer", o.layerTexts,
                                   "A dataset to add to the map, as a layer (repeatable): a.shp, "
                                   "file.gdb/Class, file.gpkg/layer; :NAME names the layer")
                        ->type_name("PATH[:NAME]")
                        ->allow_extra_args(false); // one dataset per --layer, so that --where finds its own
    o.whereOption = sub.add_option("--where", o.whereTexts,
                                   "Selects the features of the --layer before it that meet the condition")
                        ->type_name("SQL")
                        ->allow_extra_args(false);
}

void AddDialogOptions(CLI::App& sub, DocumentOptions& o) {
    sub.add_option("--input", o.run.inputLayer,
                   "The layer to convert, by name (default: the first --layer, or the map's choice)")
        ->type_name("LAYER");
    sub.add_option("--output", o.run.output, "The new feature class (default: the dialog's proposal)")
        ->type_name("PATH");
    auto* fields = sub.add_option("--fields", o.fieldsText, "Attribute fields to carry over, by name or alias")
                       ->type_name("A,B,...");
    auto* allFields = sub.add_flag("--all-fields", o.run.allFields, "Carry over every attribute field");
    fields->excludes(allFields);
    auto* all = sub.add_flag("--all", o.all, "Convert all records");
    auto* selected = sub.add_flag("--selected", o.selected, "Convert the selected records only");
    all->excludes(selected);
}

void AddRunOptions(CLI::App& sub, DocumentOptions& o, bool withReport) {
    auto* yes = sub.add_flag("--yes,-y", o.yes, "Answer Yes (or OK) to every question of the command");
    auto* no = sub.add_flag("--no,-n", o.no, "Answer No (or Cancel) to every question");
    yes->excludes(no);
    if (withReport)
        sub.add_option("--report", o.run.reportPath, "Also write the report's rich text (RTF) to FILE")
            ->type_name("FILE");
    o.saveOption = sub.add_option("--save", o.run.savePath,
                                  "Write the document back after the run (to FILE when given)")
                       ->type_name("[FILE]")
                       ->expected(0, 1);
    AddProgressOption(sub, o.run.progress);
}

//! Fills the run options from what CLI11 parsed; the order of --layer and --where matters.
void Complete(CLI::App& sub, DocumentOptions& o) {
    RunOptions& run = o.run;
    run.answer = o.yes ? Answer::Yes : o.no ? Answer::No : Answer::Ask;
    run.records = o.all ? RecordChoice::All : o.selected ? RecordChoice::Selected : RecordChoice::DialogDefault;
    run.fields = SplitAny(o.fieldsText, ",");
    for (std::string& field : run.fields)
        field = Trim(field);
    run.save = o.saveOption && o.saveOption->count() > 0;
    if (!o.layerOption)
        return;
    std::size_t where = 0;
    for (const CLI::Option* option : sub.parse_order()) {
        if (option == o.layerOption) {
            run.layers.push_back(ParseLayer(o.layerTexts[run.layers.size()]));
        } else if (option == o.whereOption) {
            if (run.layers.empty())
                throw BadUsage{"--where selects on the --layer before it; there is none"};
            if (!run.layers.back().where.empty())
                throw BadUsage{"only one --where for each --layer"};
            run.layers.back().where = o.whereTexts[where++];
        }
    }
}

std::size_t OptionsGiven(const CLI::App& sub) {
    std::size_t given = 0;
    for (const CLI::Option* option : sub.get_options())
        given += option->count();
    return given;
}

std::string Describe(const FriendlyCommand& entry) {
    return std::string(entry.caption) + " (" + std::string(entry.commandName) + ")" +
           (entry.dialog == DialogKind::Unsupported ? ", in tessarine-map for now" : "");
}

//! Command names (Tessarine_ShapesToVertices) stand for their friendly words.
std::vector<std::string> WithFriendlyNames(std::vector<std::string> args) {
    if (args.empty())
        return args;
    const FriendlyCommand* entry = FindFriendlyCommand(args.front());
    if (!entry || !EqualsNoCase(entry->commandName, args.front()))
        return args;
    std::vector<std::string> words = SplitAny(entry->friendly, " ");
    words.insert(words.end(), args.begin() + 1, args.end());
    return words;
}

class Parser {
public:
    explicit Parser(Console& console) : console_(console) {}

    int Run(const std::vector<std::string>& rawArgs) {
        const std::vector<std::string> args = WithFriendlyNames(rawArgs);
        CLI::App app{"tessarine " TESS_VERSION " - geometry tools for GIS analysts, headless"};
        Build(app);
        if (!args.empty() && !args.front().empty() && args.front().front() != '-' && !IsCommand(app, args.front())) {
            console_.err << "tessarine: unknown command " << Quoted(args.front())
                         << " (tessarine commands lists them, tessarine --help tells the rest)\n";
            return static_cast<int>(ExitCode::Usage);
        }
        try {
            std::vector<std::string> reversed(args.rbegin(), args.rend());
            app.parse(reversed); // CLI11 takes the arguments last first
        } catch (const CLI::ParseError& error) {
            return Exit(app, error);
        }
        try {
            return Dispatch(app);
        } catch (const BadUsage& problem) {
            console_.err << "tessarine: " << problem.message << '\n';
            return static_cast<int>(ExitCode::Usage);
        }
    }

private:
    static bool IsCommand(const CLI::App& app, const std::string& word) {
        const auto named = app.get_subcommands([&word](const CLI::App* sub) { return sub->check_name(word); });
        return !named.empty();
    }

    int Exit(CLI::App& app, const CLI::ParseError& error) {
        // Help and version go to the output and end well; the rest is bad usage.
        const int code = app.exit(error, console_.out, console_.err);
        return code == 0 ? 0 : static_cast<int>(ExitCode::Usage);
    }

    void Build(CLI::App& app) {
        app.name("tessarine");
        app.set_version_flag("--version", "tessarine " TESS_VERSION);
        app.require_subcommand(0, 1);
        app.footer(kTopFooter);
        app.get_formatter()->column_width(kHelpColumn);

        commands_ = app.add_subcommand("commands", "Show the toolbar and menus as a map host shows them");
        commands_->footer(kCommandsExamples);
        demo_ = app.add_subcommand("demo", "Run Shapes to Vertices on the bundled demo data into ./demo-output/");
        demo_->add_option("--data", demoOptions_.dataFolder, "The folder of demo.map.json (default: ./data)")
            ->type_name("FOLDER");
        demo_->add_option("--output", demoOptions_.outputFolder, "Where the outputs go")->type_name("FOLDER");
        AddProgressOption(*demo_, demoOptions_.progress);
        demo_->footer(kDemoExamples);

        graphics_ = app.add_subcommand("graphics", "Select, unselect, flip the selection of, or zoom to, the "
                                                   "graphic elements of a map document");
        graphics_->require_subcommand(0, 1);
        graphics_->footer(kGraphicsExamples);

        for (const FriendlyCommand& entry : FriendlyCommands()) {
            const std::vector<std::string> words = SplitAny(entry.friendly, " ");
            CLI::App* parent = words.size() > 1 ? graphics_ : &app;
            if (words.size() > 1 && words.front() != "graphics")
                continue;
            CLI::App* sub = parent->add_subcommand(words.back(), Describe(entry));
            auto& options = documents_[sub];
            options.run.commandName = std::string(entry.commandName);
            const bool withDialog = entry.dialog != DialogKind::None;
            AddMapOptions(*sub, options, withDialog);
            if (entry.dialog == DialogKind::Calculate)
                AddCalculateOptions(*sub, options.run, options.all, options.selected);
            else if (entry.dialog == DialogKind::Planetary)
                AddPlanetaryOptions(*sub, options.run, entry.friendly == "wrap");
            else if (withDialog)
                AddDialogOptions(*sub, options);
            AddRunOptions(*sub, options, withDialog);
            sub->footer(Footer(entry));
        }

        geod_ = app.add_subcommand("geod", "Geodesic distances and positions on a spheroid (Vincenty)");
        geod_->require_subcommand(0, 1);
        geod_->footer(kGeodExamples);
        for (const auto& [word, direct, what] :
             {std::tuple{"inverse", false, "Distance and azimuths between two positions"},
              std::tuple{"direct", true, "The position at a distance and azimuth from a start"}}) {
            CLI::App* sub = geod_->add_subcommand(word, what);
            auto& options = geodOptions_[sub];
            options.direct = direct;
            sub->add_option("values", options.values,
                            direct ? "lon1 lat1 azimuth distance (else read from the input)"
                                   : "lon1 lat1 lon2 lat2 (else read from the input)")
                ->expected(0, 4);
            sub->add_option("--spheroid", options.spheroid,
                            "A catalogue name (\"Mars 2000\"), a code (7030) or the axes a,b; default WGS 1984")
                ->type_name("SPHEROID");
            sub->footer(kGeodExamples);
        }
        spheroids_ = geod_->add_subcommand("spheroids", "List the spheroid catalogue (group, code, name, a, b)");
        spheroids_->footer(kGeodExamples);
    }

    int Dispatch(CLI::App& app) {
        if (*commands_)
            return static_cast<int>(ListCommands(console_));
        if (*demo_)
            return static_cast<int>(RunDemo(demoOptions_, console_));
        if (*spheroids_)
            return static_cast<int>(ListSpheroids(console_));
        for (auto& [sub, options] : geodOptions_)
            if (*sub)
                return static_cast<int>(RunGeod(options, console_));
        for (auto& [sub, options] : documents_) {
            if (!*sub)
                continue;
            // Without arguments a command explains itself.
            if (OptionsGiven(*sub) == 0) {
                console_.out << sub->help();
                return static_cast<int>(ExitCode::Success);
            }
            Complete(*sub, options);
            return static_cast<int>(RunCommand(options.run, console_));
        }
        // A group without its command, or nothing at all: the help of the level reached.
        for (CLI::App* group : {graphics_, geod_})
            if (*group) {
                console_.out << group->help();
                return static_cast<int>(ExitCode::Success);
            }
        console_.out << app.help();
        return static_cast<int>(ExitCode::Success);
    }

    // Wide enough for the longest option name with its value's name.
    static constexpr std::size_t kHelpColumn = 34;

    Console& console_;
    CLI::App* commands_ = nullptr;
    CLI::App* demo_ = nullptr;
    DemoOptions demoOptions_;
    CLI::App* graphics_ = nullptr;
    CLI::App* geod_ = nullptr;
    CLI::App* spheroids_ = nullptr;
    std::map<CLI::App*, DocumentOptions> documents_;
    std::map<CLI::App*, GeodOptions> geodOptions_;
};

} // namespace

int RunTessarine(const std::vector<std::string>& args, Console& console) {
    Parser parser(console);
    return parser.Run(args);
}

} // namespace tess::cli
