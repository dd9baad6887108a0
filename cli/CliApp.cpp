#include "CliApp.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <sstream>

#include "BuildPolygonsDriver.h"
#include "CalculateDriver.h"
#include "CommandRun.h"
#include "CommandTable.h"
#include "CommandsListing.h"
#include "DemoCommand.h"
#include "GeodCommand.h"
#include "GraphicsDrivers.h"
#include "PlanetaryDrivers.h"
#include "TextUtil.h"

#ifndef TESS_VERSION
#define TESS_VERSION "0.0.0"
#endif

namespace tess::cli {
namespace {

constexpr const char* kConversionExamples = R"(
Examples:
  tessarine vertices --layer data/demo/trails.shp --output out/trail_vertices.shp --all-fields
  tessarine vertices --layer data/demo/parcels.shp --where "ZONE = 1" --selected \
                     --fields NAME,OWNER --output out/zone1_vertices.shp
  tessarine vertices --doc data/demo.map.json --input parcels --output data/demo/demo.gdb/parcel_vertices --save
  tessarine Tessarine_ShapesToVertices --layer data/demo/demo.gdb/parcels --output out/v.shp --yes

The dialog of the command checks the choices as on the desktop; its messages are shown as text.
--output: a.shp (a folder of shapefiles), file.gdb/Name, file.gdb/Dataset/Name, file.gpkg/Name.
An output that is there is replaced only on --yes or a Yes typed in, asked before the run.
Two layers of one name: --input NAME:1, NAME:2... counted from the top.
Exit codes: 0 done, 1 the run failed, 2 bad usage or nothing run (a condition that selects
nothing, an output not replaced), 3 stopped or cancelled (Ctrl-C; what was written stays).
)";

constexpr const char* kGraphicsExamples = R"(
Examples:
  tessarine graphics select-all --doc map.map.json --save
  tessarine graphics flip --doc map.map.json --save flipped.map.json
  tessarine graphics zoom --doc map.map.json --save
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
        return "\nThis command is " + std::string(kDesktopOnly) + ": " + std::string(kDesktopOnlyWhere) +
               ".\n\nExamples:\n  tessarine commands\n";
    if (entry.dialog == DialogKind::Calculate)
        return kCalculateExamples;
    if (entry.dialog == DialogKind::Planetary)
        return entry.friendly == "wrap" ? kWrapExamples : kGeoCentricExamples;
    if (entry.friendly == "vertices")
        return kConversionExamples;
    if (entry.dialog == DialogKind::BuildPolygons)
        return BuildPolygonsFooter();
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

Exit codes: 0 done, 1 the run failed, 2 bad usage or nothing run, 3 stopped or cancelled (Ctrl-C).
)";

// Help lines are wrapped to fit a terminal of the usual width.
constexpr std::size_t kHelpWidth = 100; // characters

//! A command-line usage problem found after CLI11 has parsed.
struct BadUsage {
    std::string message;
};

//! The description of an option with what holds when it is not given.
std::string WithDefault(std::string description, std::string_view byDefault) {
    return description + " (default: " + std::string(byDefault) + ")";
}

//! Help in the host's own layout: an option's value by its name only, what an option cannot go
//! with said in its description, and positionals by name in the usage line.
class HelpFormatter final : public CLI::Formatter {
public:
    std::string make_option(const CLI::Option* option, bool isPositional) const override {
        return Columns("  " + make_option_name(option, isPositional) + make_option_opts(option),
                       make_option_desc(option));
    }
    std::string make_subcommand(const CLI::App* sub) const override {
        return Columns("  " + sub->get_name(), sub->get_description());
    }
    std::string make_option_opts(const CLI::Option* option) const override {
        if (option->get_positional() || option->get_type_size() == 0)
            return {};
        return " " + option->get_type_name();
    }
    std::string make_option_usage(const CLI::Option* option) const override {
        std::string name = option->get_name();
        if (option->get_expected_max() > 1)
            name += "...";
        return option->get_required() ? name : "[" + name + "]";
    }

private:
    //! A name in the left column and its description wrapped beside it; a name too long for the
    //! column puts the description on the lines below.
    std::string Columns(const std::string& left, const std::string& description) const {
        const std::size_t column = get_column_width();
        std::string text = left;
        std::size_t used = left.size();
        if (used + 2 > column) {
            text += '\n';
            used = 0;
        }
        bool lineStart = true;
        for (const std::string& word : SplitAny(description, " ")) {
            if (!lineStart && used + 1 + word.size() > kHelpWidth) {
                text += '\n';
                used = 0;
                lineStart = true;
            }
            if (lineStart) {
                text += std::string(column - used, ' ');
                used = column;
            } else {
                text += ' ';
                ++used;
            }
            text += word;
            used += word.size();
            lineStart = false;
        }
        return text + '\n';
    }
};

//! A word of a closed list, taken without regard to case and stored as its position, which is
//! the value of the enumeration it stands for. A word off the list is refused with the list.
CLI::Validator WordsOf(std::vector<std::string> words) {
    return CLI::Validator(
        [words](std::string& value) -> std::string {
            for (std::size_t i = 0; i < words.size(); ++i)
                if (EqualsNoCase(words[i], value)) {
                    value = std::to_string(i);
                    return {};
                }
            std::string message = "takes " + JoinWords(words) + ", not " + Quoted(value);
            if (const std::string nearest = NearestWord(value, words); !nearest.empty())
                message += " (did you mean " + nearest + "?)";
            return message;
        },
        "");
}

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
    sub.add_option("--progress", style,
                   WithDefault("How progress is shown on stderr: a line rewritten (line), whole lines at most "
                               "once a second (plain), or none; auto is line on a terminal, else plain",
                               "auto"))
        ->transform(WordsOf({"auto", "line", "plain", "none"}))
        ->type_name("auto|line|plain|none");
}

//! Options of one command that cannot go together.
using Exclusions = std::vector<std::pair<const CLI::Option*, const CLI::Option*>>;

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
    Exclusions exclusions;
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
                                   "Selects the features of the --layer before it that meet the condition; "
                                   "a condition that selects nothing converts nothing unless --all is given")
                        ->type_name("SQL")
                        ->allow_extra_args(false);
}

void AddDialogOptions(CLI::App& sub, DocumentOptions& o) {
    sub.add_option("--input", o.run.inputLayer,
                   WithDefault("The layer to convert, by name; NAME:N is the Nth layer of that name, from the top",
                               "the first --layer, else the layer chosen in the document"))
        ->type_name("LAYER[:N]");
    sub.add_option("--output", o.run.output,
                   WithDefault("The new feature class: dir/name.shp, file.gdb/name, file.gdb/Dataset/name, "
                               "file.gpkg/name",
                               "the dialog's proposal, in the folder of the last output or of the document"))
        ->type_name("PATH");
    auto* fields = sub.add_option("--fields", o.fieldsText,
                                  WithDefault("Attribute fields to carry over, by name or alias; not with "
                                              "--all-fields",
                                              "none"))
                       ->type_name("A,B,...");
    auto* allFields = sub.add_flag("--all-fields", o.run.allFields, "Carry over every attribute field");
    auto* all = sub.add_flag("--all", o.all, "Convert all records, also when a selection is empty");
    auto* selected = sub.add_flag("--selected",
                                  o.selected, WithDefault("Convert the selected records only; not with --all",
                                                          "the selection when there is one, else all records"));
    o.exclusions.emplace_back(fields, allFields);
    o.exclusions.emplace_back(all, selected);
}

void AddRunOptions(CLI::App& sub, DocumentOptions& o, bool withReport) {
    auto* yes = sub.add_flag("--yes,-y", o.yes, "Answer Yes (or OK) to every question of the command");
    auto* no = sub.add_flag("--no,-n", o.no,
                            WithDefault("Answer No (or Cancel) to every question; not with --yes",
                                        "ask on a terminal, else No"));
    o.exclusions.emplace_back(yes, no);
    if (withReport)
        sub.add_option("--report", o.run.reportPath, "Also write the report's rich text (RTF) to FILE")
            ->type_name("FILE");
    o.saveOption = sub.add_option("--save", o.run.savePath,
                                  "Write the document back after the run, to FILE when given (default: the "
                                  "document's own file); without --save the file on disk stays as it was")
                       ->type_name("[FILE]")
                       ->expected(0, 1);
    AddProgressOption(sub, o.run.progress);
}

//! Fills the run options from what CLI11 parsed; the order of --layer and --where matters.
void Complete(CLI::App& sub, DocumentOptions& o) {
    for (const auto& [first, second] : o.exclusions)
        if (first->count() > 0 && second->count() > 0)
            throw BadUsage{first->get_name() + " and " + second->get_name() + " cannot be given together"};
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
           (entry.dialog == DialogKind::Unsupported ? "; " + std::string(kDesktopOnly) : "");
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

//! The words that name a level of the command line in messages: "vertices", "graphics flip".
std::string LevelName(const CLI::App& level) {
    std::string name;
    for (const CLI::App* at = &level; at && at->get_parent(); at = at->get_parent())
        name = at->get_name() + (name.empty() ? "" : " " + name);
    return name;
}

//! The names an option answers to, dashes included.
std::vector<std::string> OptionNames(const CLI::App& level) {
    std::vector<std::string> names;
    for (const CLI::Option* option : level.get_options()) {
        for (const std::string& name : option->get_lnames())
            names.push_back("--" + name);
        for (const std::string& name : option->get_snames())
            names.push_back("-" + name);
    }
    return names;
}

std::vector<std::string> CommandNames(const CLI::App& level) {
    std::vector<std::string> names;
    for (const CLI::App* sub : level.get_subcommands([](const CLI::App*) { return true; }))
        names.push_back(sub->get_name());
    return names;
}

//! A negative number is a value, not an option.
bool IsNumber(const std::string& word) {
    char* end = nullptr;
    std::strtod(word.c_str(), &end);
    return end != word.c_str() && *end == '\0';
}

//! What CLI11 left over at one level, said as a usage problem: an option the level does not have
//! (with the nearest one it has), a command it does not have, or a word that belongs to no option.
std::optional<std::string> Leftover(const CLI::App& level) {
    const std::vector<std::string> left = level.remaining();
    if (left.empty())
        return std::nullopt;
    const std::string where = LevelName(level);
    // Messages start with "tessarine: " already; the top level needs no name of its own.
    const std::string named = where.empty() ? "there is" : where + " has";
    const std::string help = "tessarine " + (where.empty() ? "" : where + " ") + "--help";
    for (const std::string& word : left) {
        if (word.size() < 2 || word.front() != '-' || IsNumber(word))
            continue;
        const std::string option = word.substr(0, word.find('='));
        std::string message = named + " no option " + option;
        if (const std::string nearest = NearestWord(option, OptionNames(level)); !nearest.empty())
            message += "; did you mean " + nearest + "?";
        return message + " (" + help + " lists them)";
    }
    const std::string& word = left.front();
    const std::vector<std::string> commands = CommandNames(level);
    if (!commands.empty()) {
        std::string message = named + " no command " + Quoted(word);
        if (const std::string nearest = NearestWord(word, commands); !nearest.empty())
            message += " (did you mean " + nearest + "?)";
        return message + "; its commands: " + JoinWords(commands, "and");
    }
    if (const CLI::App* parent = level.get_parent()) {
        const std::vector<std::string> siblings = CommandNames(*parent);
        if (std::find(siblings.begin(), siblings.end(), word) != siblings.end())
            return "one command at a time: " + Quoted(level.get_name()) + " and " + Quoted(word) + " were both given";
    }
    return (where.empty() ? std::string() : where + ": ") + "unexpected argument " + Quoted(word) +
           " (a value goes right after its option's name; quote a value that has blanks; " + help + ")";
}

//! CLI11's own complaints in the host's words, naming the option.
std::string ParseProblem(const CLI::ParseError& error) {
    const std::string text = error.what();
    const auto colon = text.find(": ");
    const std::string option = colon == std::string::npos ? std::string() : text.substr(0, colon);
    const std::string detail = colon == std::string::npos ? text : text.substr(colon + 2);
    if (dynamic_cast<const CLI::ValidationError*>(&error) && !option.empty())
        return option + " " + detail;
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) && !option.empty()) {
        // CLI11 says "1 required PATH missing" and "At Most 1 required but received 2".
        constexpr std::string_view kRequired = " required ";
        const auto required = detail.find(kRequired);
        const auto missing = detail.rfind(" missing");
        if (missing != std::string::npos) {
            const auto type = required == std::string::npos ? missing : required + kRequired.size();
            const std::string valueName = type < missing ? detail.substr(type, missing - type) : std::string();
            return option + " needs a value" + (valueName.empty() ? std::string() : " (" + valueName + ")");
        }
        constexpr std::string_view kAtMost = "At Most ";
        constexpr std::string_view kReceived = " received ";
        if (detail.rfind(kAtMost, 0) == 0 && detail.find(kReceived) != std::string::npos) {
            const std::string most = detail.substr(kAtMost.size(), detail.find(' ', kAtMost.size()) - kAtMost.size());
            const std::string received = detail.substr(detail.find(kReceived) + kReceived.size());
            if (most == "1" && option.front() == '-')
                return option + " was given more than once; give it once";
            return option + " takes at most " + most + " values; " + received + " were given";
        }
    }
    return text;
}

class Parser {
public:
    explicit Parser(Console& console) : console_(console) {}

    int Run(const std::vector<std::string>& rawArgs) {
        const std::vector<std::string> args = WithFriendlyNames(rawArgs);
        CLI::App app{"tessarine " TESS_VERSION " - geometry tools for GIS analysts, headless"};
        Build(app);
        if (!args.empty() && !args.front().empty() && args.front().front() != '-' && !IsCommand(app, args.front())) {
            console_.err << "tessarine: unknown command " << Quoted(args.front());
            if (const std::string nearest = NearestWord(args.front(), KnownCommands(app)); !nearest.empty())
                console_.err << "; did you mean " << nearest << "?";
            console_.err << " (tessarine commands lists them, tessarine --help tells the rest)\n";
            return static_cast<int>(ExitCode::Usage);
        }
        try {
            std::vector<std::string> reversed(args.rbegin(), args.rend());
            app.parse(reversed); // CLI11 takes the arguments last first
        } catch (const CLI::Success& help) {
            return app.exit(help, console_.out, console_.err);
        } catch (const CLI::ParseError& error) {
            return Usage(ParseProblem(error));
        }
        try {
            for (const CLI::App* level = &app; level;) {
                if (std::optional<std::string> problem = Leftover(*level))
                    throw BadUsage{*problem};
                const std::vector<CLI::App*> chosen = level->get_subcommands();
                level = chosen.empty() ? nullptr : chosen.front();
            }
            return Dispatch(app);
        } catch (const BadUsage& problem) {
            return Usage(problem.message);
        }
    }

private:
    static bool IsCommand(const CLI::App& app, const std::string& word) {
        const auto named = app.get_subcommands([&word](const CLI::App* sub) { return sub->check_name(word); });
        return !named.empty();
    }

    //! Every word that starts a command line: the commands and the command names they stand for.
    static std::vector<std::string> KnownCommands(const CLI::App& app) {
        std::vector<std::string> names = CommandNames(app);
        for (const FriendlyCommand& entry : FriendlyCommands())
            names.emplace_back(entry.commandName);
        return names;
    }

    int Usage(const std::string& message) {
        console_.err << "tessarine: " << message << '\n';
        return static_cast<int>(ExitCode::Usage);
    }

    //! A level given without what it needs to run: its help, and the exit code of a run of nothing.
    int ExplainOnly(const CLI::App& level) {
        const CLI::App* parent = level.get_parent();
        console_.out << (parent ? level.help("tessarine" + std::string(parent->get_parent() ? " " : "") +
                                             LevelName(*parent))
                                : level.help());
        return static_cast<int>(ExitCode::Usage);
    }

    void Build(CLI::App& app) {
        app.name("tessarine");
        app.set_version_flag("--version", "tessarine " TESS_VERSION);
        app.require_subcommand(0, 1);
        app.allow_extras();
        app.footer(kTopFooter);
        app.formatter(std::make_shared<HelpFormatter>());
        app.get_formatter()->column_width(kHelpColumn);

        commands_ = app.add_subcommand("commands", "Show the toolbar and menus as a map host shows them");
        commands_->footer(kCommandsExamples);
        demo_ = app.add_subcommand("demo", "Run each conversion on the bundled demo data into ./demo-output/");
        demo_->add_option("--data", demoOptions_.dataFolder,
                          WithDefault("The folder of demo.map.json", "./data, else the installed or the sources' data/"))
            ->type_name("FOLDER");
        demo_->add_option("--output", demoOptions_.outputFolder, WithDefault("Where the outputs go", "demo-output"))
            ->type_name("FOLDER");
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
            if (IsGraphicsTool(entry.dialog)) {
                graphicsTools_[sub] = AddGraphicsToolOptions(*sub, entry);
                continue;
            }
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
            if (entry.dialog == DialogKind::BuildPolygons)
                AddBuildPolygonsOptions(*sub, options.run.build);
            AddRunOptions(*sub, options, withDialog);
            sub->footer(Footer(entry));
        }

        CLI::App* list = nullptr;
        std::unique_ptr<GraphicsToolOptions> listOptions = AddGraphicsList(*graphics_, list);
        graphicsTools_[list] = std::move(listOptions);

        geod_ = std::make_unique<GeodCommandLine>(app);
        // Every level keeps what it cannot place, for Leftover to name in the host's words.
        std::vector<CLI::App*> levels{&app};
        for (std::size_t i = 0; i < levels.size(); ++i)
            for (CLI::App* sub : levels[i]->get_subcommands([](const CLI::App*) { return true; })) {
                sub->allow_extras();
                levels.push_back(sub);
            }
    }

    int Dispatch(CLI::App& app) {
        if (*commands_)
            return static_cast<int>(ListCommands(console_));
        if (*demo_)
            return static_cast<int>(RunDemo(demoOptions_, console_));
        if (const std::optional<ExitCode> code = geod_->Dispatch(console_))
            return static_cast<int>(*code);
        for (auto& [sub, options] : graphicsTools_)
            if (*sub)
                return OptionsGiven(*sub) == 0 ? ExplainOnly(*sub)
                                               : static_cast<int>(RunGraphicsTool(*sub, *options, console_));
        for (auto& [sub, options] : documents_) {
            if (!*sub)
                continue;
            // Without arguments a command explains itself; it ran nothing.
            if (OptionsGiven(*sub) == 0)
                return ExplainOnly(*sub);
            Complete(*sub, options);
            if (sub->get_name() == "build-polygons")
                try {
                    CompleteBuildPolygonsOptions(options.run);
                } catch (const std::invalid_argument& caught) {
                    throw BadUsage{caught.what()};
                }
            return static_cast<int>(RunCommand(options.run, console_));
        }
        // A group without its command, or nothing at all: the help of the level reached.
        for (CLI::App* group : {graphics_, geod_->Group()})
            if (*group)
                return ExplainOnly(*group);
        return ExplainOnly(app);
    }

    // Wide enough for the longest option name with its value's name.
    static constexpr std::size_t kHelpColumn = 34;

    Console& console_;
    CLI::App* commands_ = nullptr;
    CLI::App* demo_ = nullptr;
    DemoOptions demoOptions_;
    CLI::App* graphics_ = nullptr;
    std::unique_ptr<GeodCommandLine> geod_;
    std::map<CLI::App*, DocumentOptions> documents_;
    std::map<CLI::App*, std::unique_ptr<GraphicsToolOptions>> graphicsTools_;
};

} // namespace

int RunTessarine(const std::vector<std::string>& args, Console& console) {
    Parser parser(console);
    return parser.Run(args);
}

} // namespace tess::cli
