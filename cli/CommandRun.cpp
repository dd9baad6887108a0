#include "CommandRun.h"

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <ostream>

#include "CalculateDriver.h"
#include "CommandTable.h"
#include "HostSession.h"
#include "Interrupt.h"
#include "BuildPolygonsDriver.h"
#include "LayerFieldsDriver.h"
#include "PlanetaryDrivers.h"
#include "TerminalUI.h"
#include "TextUtil.h"
#include "platform/carto/ActiveView.h"
#include "platform/carto/FeatureLayer.h"
#include "platform/carto/GraphicsContainer.h"
#include "platform/carto/Map.h"
#include "platform/data/DataNotes.h"
#include "platform/data/Dataset.h"
#include "platform/data/SelectionSet.h"
#include "platform/data/QueryFilter.h"
#include "platform/data/Workspace.h"
#include "platform/data/WorkspaceFactories.h"
#include "platform/framework/Application.h"
#include "platform/framework/Document.h"
#include "platform/framework/HostContracts.h"
#include "platform/geometry/Geometry.h"
#include "platform/system/Fault.h"
#include "support/DataNotesReport.h"
#include "support/ReportTemplates.h"

namespace tess::cli {
namespace {

namespace fs = std::filesystem;

// A document made from datasets has no file; it is placed in the current folder under this
// name, so that the dialogs propose their outputs there, as they would beside a saved document.
constexpr const char* kUntitledDocument = "Untitled.map.json";

//! A problem with what the command line asked: the message, and exit code 2.
struct UsageError {
    std::string message;
};

std::string Describe(const std::exception& error) {
    if (const auto* fault = dynamic_cast<const Fault*>(&error))
        return fault->Description();
    return error.what();
}

//! Puts the UI services of this run in place, and the previous ones back after it.
class UIScope {
public:
    explicit UIScope(std::shared_ptr<TerminalUI> ui) : previous_(SetUI(std::move(ui))) {}
    ~UIScope() { SetUI(previous_); }
    UIScope(const UIScope&) = delete;
    UIScope& operator=(const UIScope&) = delete;

private:
    std::shared_ptr<IUIServices> previous_;
};

std::vector<std::string> LayerNames(const Map& map) {
    std::vector<std::string> names;
    for (const auto& layer : map.AllLayers())
        names.push_back(Quoted(layer->Name()));
    return names;
}

std::string JoinNames(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names)
        text += (text.empty() ? "" : ", ") + name;
    return text.empty() ? "none" : text;
}

// The title of the platform's question before it replaces an existing feature class; the run
// gets the answer the user gave to the command line's own question before it started.
constexpr const char* kReplaceQuestionTitle = "Feature Class Already Exists:";

//! Why a file cannot be written at `path`, or nothing: checked before a run, so that a run does not
//! replace its output and then fail to write its report or document.
std::optional<std::string> CannotWrite(const std::string& path) {
    std::error_code error;
    const fs::path file(path);
    if (fs::is_directory(file, error))
        return Quoted(path) + " is a folder";
    const fs::path folder = file.has_parent_path() ? file.parent_path() : fs::path(".");
    if (!fs::is_directory(folder, error))
        return "the folder " + Quoted(folder.string()) + " is not there";
    if (fs::exists(file, error) ? ::access(file.c_str(), W_OK) != 0 : ::access(folder.c_str(), W_OK) != 0)
        return "cannot write " + Quoted(path) + " (permission denied)";
    return std::nullopt;
}

void OpenDocument(Application& app, const RunOptions& options) {
    const std::string& path = options.documentPath;
    std::error_code error;
    if (!fs::is_regular_file(path, error))
        throw UsageError{"cannot open the map document " + Quoted(path) + ": no such file"};
    try {
        // Absolute, so that what the document leaves (the settings' folders) holds from any folder.
        app.OpenDocument(fs::absolute(path).lexically_normal().string());
    } catch (const std::exception& caught) {
        throw UsageError{"cannot open the map document " + Quoted(path) + ": " + Describe(caught)};
    }
}

//! The layers made from --layer (the first given first), and what selected their features.
struct GivenLayers {
    std::vector<std::shared_ptr<FeatureLayer>> layers;
    std::map<const ILayer*, std::string> conditions;
};

GivenLayers AddLayers(Application& app, const RunOptions& options) {
    GivenLayers given;
    for (const LayerSource& source : options.layers) {
        std::shared_ptr<FeatureLayer> layer;
        try {
            layer = std::dynamic_pointer_cast<FeatureLayer>(OpenDatasetLayer(source.path));
        } catch (const std::exception& caught) {
            throw UsageError{"cannot open the layer " + Quoted(source.path) + ": " + Describe(caught)};
        }
        if (!source.name.empty())
            layer->Name(source.name);
        if (!source.where.empty()) {
            auto filter = std::make_shared<QueryFilter>();
            filter->WhereClause(source.where);
            try {
                layer->SelectFeatures(filter, esriSelectionResultNew, false);
            } catch (const std::exception& caught) {
                throw UsageError{"--where " + Quoted(source.where) + " on " + Quoted(source.path) + ": " +
                                 Describe(caught)};
            }
            given.conditions[layer.get()] = "--where " + Quoted(source.where);
        }
        given.layers.push_back(layer);
    }
    // The map puts each new layer on top: adding the last first keeps the command line's order.
    for (auto it = given.layers.rbegin(); it != given.layers.rend(); ++it)
        app.MxDoc()->AddLayer(*it);
    return given;
}

//! Where the data of a layer lies, or was looked for when it is missing, as a path the user can check.
std::string DataPath(const ILayer& layer, const std::string& documentPath) {
    const auto* data = dynamic_cast<const IDataLayer*>(&layer);
    if (!data)
        return "(no data source)";
    const DataSourceInfo source = data->DataSource();
    fs::path path = fs::path(source.workspacePath) / source.datasetName;
    if (path.is_relative() && !documentPath.empty())
        path = fs::path(documentPath).parent_path() / path;
    if (Lower(source.sourceType).find("shapefile") != std::string::npos)
        path += ".shp";
    return path.lexically_normal().string();
}

//! The layers of the map named `name` (top first), and their data's places for messages.
std::vector<std::shared_ptr<ILayer>> LayersNamed(const Map& map, const std::string& name) {
    std::vector<std::shared_ptr<ILayer>> found;
    for (const auto& layer : map.AllLayers())
        if (layer->Name() == name)
            found.push_back(layer);
    return found;
}

//! The layer that --input names: NAME, or NAME:N for the Nth layer of that name from the top.
std::shared_ptr<ILayer> FindInputLayer(const Map& map, const std::string& text, const std::string& documentPath) {
    std::string name = text;
    std::size_t nth = 0;
    std::vector<std::shared_ptr<ILayer>> found = LayersNamed(map, name);
    const auto colon = text.rfind(':');
    if (found.empty() && colon != std::string::npos && colon + 1 < text.size() &&
        text.find_first_not_of("0123456789", colon + 1) == std::string::npos) {
        name = text.substr(0, colon);
        nth = std::stoul(text.substr(colon + 1));
        found = LayersNamed(map, name);
    }
    if (found.empty()) {
        std::vector<std::string> names;
        for (const auto& layer : map.AllLayers())
            names.push_back(layer->Name());
        const std::string nearest = NearestWord(name, names);
        throw UsageError{"the map has no layer " + Quoted(name) +
                         (nearest.empty() ? std::string() : " (did you mean " + Quoted(nearest) + "?)") +
                         "; its layers: " + JoinNames(LayerNames(map))};
    }
    if (nth == 0 && found.size() == 1)
        return found.front();
    if (nth >= 1 && nth <= found.size())
        return found[nth - 1];
    std::vector<std::string> choices;
    for (std::size_t i = 0; i < found.size(); ++i)
        choices.push_back(name + ":" + std::to_string(i + 1) + " (" +
                          DataPath(*found[i], documentPath) + (found[i]->Valid() ? "" : ", missing") + ")");
    throw UsageError{"the map has " + std::to_string(found.size()) + " layers named " + Quoted(name) +
                     (nth > 0 ? ", not " + std::to_string(nth) : std::string()) + "; say which with --input " +
                     JoinWords(choices) + ", counted from the top"};
}

//! The layer the run is to convert, as the options and the document settle it, with the
//! conditions that selected the layers' features.
InputChoice ChooseInputLayer(Application& app, const RunOptions& options, const GivenLayers& given) {
    MxDocument& document = *app.MxDoc();
    const std::shared_ptr<Map> map = document.FocusMapObject();
    InputChoice choice;
    choice.conditions = given.conditions;
    for (const auto& layer : map->AllLayers()) {
        auto feature = std::dynamic_pointer_cast<FeatureLayer>(layer);
        if (!feature || choice.conditions.count(layer.get()))
            continue;
        const KeptSelection& asked = feature->SelectionAsked();
        if (!asked.whereClause.empty())
            choice.conditions[layer.get()] = "the document's selection " + Quoted(asked.whereClause);
        else if (!asked.Empty())
            choice.conditions[layer.get()] = "the document's selection of " + std::to_string(asked.oids.size()) +
                                             " features";
    }

    if (!options.inputLayer.empty()) {
        choice.layer = FindInputLayer(*map, options.inputLayer, document.Path());
        choice.demanded = true;
        choice.origin = "--input";
    } else if (!given.layers.empty()) {
        choice.layer = given.layers.front();
        choice.origin = "the first --layer";
    } else if (std::dynamic_pointer_cast<IFeatureLayer>(document.SelectedLayer())) {
        choice.layer = document.SelectedLayer();
        choice.origin = "the document's chosen layer";
    }
    if (choice.layer && !choice.layer->Valid())
        throw UsageError{"the layer " + Quoted(choice.layer->Name()) + " cannot be converted: its data is missing at " +
                         DataPath(*choice.layer, document.Path()) +
                         (choice.demanded ? std::string() : " (--input chooses another layer)")};
    if (choice.layer)
        document.SelectedLayer(choice.layer);
    return choice;
}

//! Whether the layer reads the class that `target` names.
bool ReadsTarget(const ILayer& layer, const OutputTarget& target) {
    const auto* feature = dynamic_cast<const IFeatureLayer*>(&layer);
    const auto dataset = feature ? std::dynamic_pointer_cast<IDataset>(feature->FeatureClass()) : nullptr;
    if (!dataset || !dataset->Workspace())
        return false;
    std::error_code error;
    if (fs::weakly_canonical(dataset->Workspace()->PathName(), error) != fs::weakly_canonical(target.workspace, error))
        return false;
    const auto bare = [](const std::string& name) {
        return Lower(fs::path(name).extension().string()) == ".shp" ? Lower(fs::path(name).stem().string())
                                                                    : Lower(name);
    };
    return bare(dataset->Name()) == bare(target.name);
}

//! The graphic elements of the focus map and its extent, to tell what a command changed.
struct GraphicsState {
    std::int32_t elements = 0;
    std::int32_t selected = 0;
    std::string extent; //!< "xmin ymin xmax ymax", or "none"
};

std::string ExtentText(const std::shared_ptr<IEnvelope>& extent) {
    if (!extent || extent->IsEmpty())
        return "none";
    char text[160];
    std::snprintf(text, sizeof text, "%.10g %.10g %.10g %.10g", extent->XMin(), extent->YMin(), extent->XMax(),
                  extent->YMax());
    return text;
}

GraphicsState ReadGraphics(Application& app) {
    GraphicsState state;
    const std::shared_ptr<Map> map = app.MxDoc()->FocusMapObject();
    if (auto container = std::dynamic_pointer_cast<IGraphicsContainer>(map))
        state.elements = container->ElementCount();
    if (auto selection = std::dynamic_pointer_cast<IGraphicsContainerSelect>(map))
        state.selected = selection->ElementSelectionCount();
    if (auto view = std::dynamic_pointer_cast<IActiveView>(map))
        state.extent = ExtentText(view->Extent());
    return state;
}

void WriteReport(const std::string& path, const std::string& rtf) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << RtfWithCodePageEscapes(rtf); // a word processor reads it by its declared code page
    file.close();
    if (!file)
        throw std::runtime_error("cannot write the report to " + Quoted(path));
}

class CommandRun {
public:
    CommandRun(const RunOptions& options, Console& console) : options_(options), console_(console) {}

    ExitCode Execute(const std::string& libraryPath) {
        const FriendlyCommand* entry = FindFriendlyCommand(options_.commandName);
        if (entry && entry->dialog == DialogKind::Unsupported)
            return Usage("the command " + std::string(entry->commandName) + " is " + std::string(kDesktopOnly) +
                         ": " + std::string(kDesktopOnlyWhere));
        if (options_.documentPath.empty() && options_.layers.empty())
            return Usage("give a map document (--doc FILE) or datasets (--layer PATH)");
        if (options_.save && options_.savePath.empty() && options_.documentPath.empty())
            return Usage("the document is made from datasets and has no file: give one with --save FILE");
        if (std::optional<std::string> problem = CheckBeforeRun())
            return Usage(*problem);

        ui_ = std::make_shared<TerminalUI>(console_, options_.answer, options_.progress);
        UIScope scope(ui_);
        InterruptGuard interrupts;
        const std::string library = libraryPath.empty() ? FindExtensionLibrary() : libraryPath;
        if (library.empty())
            return Failed("the extension library " + std::string(kExtensionLibraryFileName) +
                          " was not found (set TESS_EXTENSION_LIBRARY to its path)");
        std::unique_ptr<HostSession> session;
        try {
            session = std::make_unique<HostSession>(library);
        } catch (const std::exception& caught) {
            return Failed("cannot load the extension: " + std::string(caught.what()));
        }
        ExitCode code;
        try {
            code = Run(*session);
        } catch (const UsageError& problem) {
            code = Usage(problem.message);
        }
        ui_->FinishProgress();
        return code;
    }

private:
    static constexpr const char* kExtensionLibraryFileName = "libtessarine_extension.so";

    ExitCode Usage(const std::string& message) {
        console_.err << "tessarine: " << message << '\n';
        return ExitCode::Usage;
    }
    ExitCode Failed(const std::string& message) {
        console_.err << "tessarine: " << message << '\n';
        return ExitCode::Failed;
    }

    //! What the command line itself can tell is wrong before anything is loaded: an output that
    //! names no class, a report or document that could not be written after the run.
    std::optional<std::string> CheckBeforeRun() {
        if (!options_.output.empty()) {
            target_ = ReadOutputTarget(options_.output);
            if (!target_->problem.empty())
                return target_->problem;
        }
        if (!options_.reportPath.empty())
            if (std::optional<std::string> why = CannotWrite(options_.reportPath))
                return "--report: " + *why;
        if (options_.save) {
            const std::string& path = options_.savePath.empty() ? options_.documentPath : options_.savePath;
            if (std::optional<std::string> why = CannotWrite(path))
                return "--save: " + *why;
        }
        return std::nullopt;
    }

    //! An output that is there is replaced only when the user says so, and that is settled before
    //! the run: declining inside it would leave the run without an output. A class that a layer of
    //! the map reads is never replaced: the run would destroy its own input.
    std::optional<ExitCode> DecideReplacement(const Map& map) {
        if (!target_ || !OutputExists(*target_))
            return std::nullopt;
        for (const auto& layer : map.AllLayers())
            if (ReadsTarget(*layer, *target_))
                return Usage("--output " + options_.output + " is the data of the map's layer " +
                             Quoted(layer->Name()) + "; what the map shows is never replaced: choose another output");
        const std::string refused = target_->shown + " exists and was not replaced (--yes replaces it)";
        if (options_.answer == Answer::No)
            return Usage(refused);
        if (options_.answer == Answer::Ask) {
            if (!console_.inIsTerminal)
                return Usage(target_->shown + " exists and was not replaced: there is no terminal to ask (--yes "
                                              "replaces it)");
            const std::optional<bool> replace = ui_->Confirm(target_->shown + " exists. Replace it?");
            if (!replace) {
                console_.err << "tessarine: cancelled; nothing was run\n";
                return ExitCode::Stopped;
            }
            if (!*replace)
                return Usage(refused);
        }
        ui_->AnswerInAdvance(kReplaceQuestionTitle, MsgBoxResult::Yes);
        return std::nullopt;
    }

    ExitCode Run(HostSession& session) {
        const std::string progId = session.FindCommand(options_.commandName);
        if (progId.empty())
            throw UsageError{"unknown command " + Quoted(options_.commandName) + " (see tessarine commands)"};

        Application& app = *session.App();
        if (!options_.documentPath.empty())
            OpenDocument(app, options_);
        else
            app.MxDoc()->Path((fs::current_path() / kUntitledDocument).string());
        const GivenLayers given = AddLayers(app, options_);
        const FriendlyCommand* entry = FindFriendlyCommand(options_.commandName);
        if (!entry || entry->dialog == DialogKind::LayerFields)
            ui_->RegisterDriver("frmLayerFields", MakeLayerFieldsDriver(options_, *ui_, app.MxDoc()->FocusMapObject(),
                                                                        ChooseInputLayer(app, options_, given)));
        else if (entry->dialog == DialogKind::BuildPolygons)
            ui_->RegisterDriver("frmBuildParams", MakeBuildPolygonsDriver(options_, *ui_, app.MxDoc()->FocusMapObject(),
                                                                          ChooseInputLayer(app, options_, given)));
        else if (entry->dialog == DialogKind::Calculate || entry->dialog == DialogKind::Planetary)
            ChooseInputLayer(app, options_, given); // their dialogs start on the map's chosen layer
        RegisterCalculateDrivers(options_, *ui_, app.MxDoc()->FocusMapObject(), console_.out);
        RegisterPlanetaryDrivers(options_, *ui_);
        if (options_.dialogDrivers)
            options_.dialogDrivers(*ui_, app.MxDoc());
        if (std::optional<ExitCode> declined = DecideReplacement(*app.MxDoc()->FocusMapObject()))
            return *declined;
        const GraphicsState before = ReadGraphics(app);
        {
            std::shared_ptr<ICommand> command = session.CreateCommand(progId);
            if (!command)
                throw UsageError{"the extension has no command " + Quoted(options_.commandName)};
            if (!command->Enabled())
                throw UsageError{"the command " + Quoted(CaptionText(command->Caption())) + " is disabled"};
            // Ctrl-C while the document and layers were read: nothing has run yet, so nothing runs.
            if (TakeInterrupt()) {
                console_.err << "tessarine: cancelled; nothing was run\n";
                return ExitCode::Stopped;
            }
            command->OnClick();
            if (InterruptPending() && !ui_->StopDelivered())
                console_.err << "tessarine: Ctrl-C came while the run had no progress window to stop it; it ran "
                                "to its end\n";
        }
        ui_->FinishProgress();
        for (const std::string& line : DataNotesLines(DataNotes()))
            console_.err << "tessarine: warning: " << line << '\n';
        if (entry && entry->dialog == DialogKind::None && !ui_->ErrorShown())
            TellGraphicsChange(before, ReadGraphics(app));
        return Outcome(app);
    }

    //! The one-click graphics commands show nothing of their own: say what they changed.
    void TellGraphicsChange(const GraphicsState& before, const GraphicsState& after) {
        console_.out << after.selected << " of " << after.elements << " graphic elements selected";
        if (after.selected == before.selected && after.elements == before.elements)
            console_.out << " (unchanged)";
        else
            console_.out << " (before: " << before.selected << ")";
        console_.out << '\n';
        if (after.extent != before.extent)
            console_.out << "Map extent: " << after.extent << " (before: " << before.extent << ")\n";
        console_.out.flush();
    }

    ExitCode Outcome(Application& app) {
        if (!ui_->ReportRtf().empty() && !options_.reportPath.empty()) {
            try {
                WriteReport(options_.reportPath, ui_->ReportRtf());
            } catch (const std::exception& caught) {
                return Failed(caught.what());
            }
        }
        if (ui_->Cancelled()) {
            console_.err << "tessarine: cancelled at a question (Ctrl-C); the command did not finish\n";
            return ExitCode::Stopped;
        }
        if (ui_->StopDelivered()) {
            console_.err << "tessarine: stopped; what was written so far is kept\n";
            return ExitCode::Stopped;
        }
        if (!ui_->UsageProblemText().empty())
            return Usage(ui_->UsageProblemText());
        if (const FriendlyCommand* run = FindFriendlyCommand(options_.commandName); run && run->dialog == DialogKind::Calculate)
            if (std::optional<std::string> failure = CalculateFailure(ui_->ReportRtf()))
                return Failed(*failure);
        if (const FriendlyCommand* run = FindFriendlyCommand(options_.commandName); run && run->dialog == DialogKind::Planetary)
            if (std::optional<std::string> failure = PlanetaryFailure(ui_->ReportRtf()))
                return Failed(*failure);
        const FriendlyCommand* entry = FindFriendlyCommand(options_.commandName);
        const bool reports = entry && (entry->dialog == DialogKind::LayerFields ||
                                       entry->dialog == DialogKind::GraphicsShapefile ||
                                       entry->dialog == DialogKind::Planetary);
        const bool ranNothing = reports && ui_->ReportsShown() == 0;
        // A run that refuses its input before making anything says so in its report alone.
        const bool reportedFailure = ui_->ReportRtf().find(" Failed  !!!") != std::string::npos;
        if (ui_->ErrorShown() || ranNothing || reportedFailure) {
            if (ui_->QuestionsDefaulted() > 0)
                console_.err << "tessarine: a question took the safe answer, as there was no terminal to ask; "
                                "--yes answers Yes\n";
            return ranNothing && !ui_->ErrorShown() ? Usage("the command ran nothing (its dialog was closed)")
                                                    : ExitCode::Failed;
        }
        if (options_.save) {
            try {
                app.SaveDocument(options_.savePath);
            } catch (const std::exception& caught) {
                return Failed("cannot save the document: " + Describe(caught));
            }
            for (const std::string& fault : app.ExtensionFaults())
                console_.err << "tessarine: " << fault << '\n';
        } else if (!options_.documentPath.empty() && app.MxDoc()->IsDirty()) {
            console_.err << "tessarine: the document " << options_.documentPath
                         << " on disk was not changed (--save writes the changes into it)\n";
        }
        return ExitCode::Success;
    }

    const RunOptions& options_;
    Console& console_;
    std::shared_ptr<TerminalUI> ui_;
    std::optional<OutputTarget> target_; // what --output names
};

} // namespace

std::shared_ptr<IFeatureLayer> OpenDatasetLayer(const std::string& path) {
    // A dataset of the current folder has no folder in its path.
    const std::string located = fs::path(path).has_parent_path() ? path : "./" + path;
    auto layer = std::make_shared<FeatureLayer>();
    layer->FeatureClass(OpenFeatureClassAtPath(located));
    return layer;
}

ExitCode RunCommand(const RunOptions& options, Console& console, const std::string& libraryPath) {
    return CommandRun(options, console).Execute(libraryPath);
}

} // namespace tess::cli
