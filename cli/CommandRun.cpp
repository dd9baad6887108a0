#include "CommandRun.h"

#include <filesystem>
#include <fstream>
#include <ostream>

#include "CalculateDriver.h"
#include "CommandTable.h"
#include "HostSession.h"
#include "Interrupt.h"
#include "LayerFieldsDriver.h"
#include "PlanetaryDrivers.h"
#include "TerminalUI.h"
#include "TextUtil.h"
#include "platform/carto/FeatureLayer.h"
#include "platform/carto/Map.h"
#include "platform/data/DataNotes.h"
#include "platform/data/QueryFilter.h"
#include "platform/data/Workspace.h"
#include "platform/data/WorkspaceFactories.h"
#include "platform/framework/Application.h"
#include "platform/framework/Document.h"
#include "platform/framework/HostContracts.h"
#include "platform/system/Fault.h"
#include "support/DataNotesReport.h"

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

void OpenDocument(Application& app, const RunOptions& options) {
    const std::string& path = options.documentPath;
    std::error_code error;
    if (!fs::is_regular_file(path, error))
        throw UsageError{"cannot open the map document " + Quoted(path) + ": no such file"};
    try {
        app.OpenDocument(path);
    } catch (const std::exception& caught) {
        throw UsageError{"cannot open the map document " + Quoted(path) + ": " + Describe(caught)};
    }
}

std::shared_ptr<FeatureLayer> AddLayers(Application& app, const RunOptions& options) {
    std::vector<std::shared_ptr<FeatureLayer>> layers;
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
        }
        layers.push_back(layer);
    }
    // The map puts each new layer on top: adding the last first keeps the command line's order.
    for (auto it = layers.rbegin(); it != layers.rend(); ++it)
        app.MxDoc()->AddLayer(*it);
    return layers.empty() ? nullptr : layers.front();
}

void ChooseInputLayer(Application& app, const RunOptions& options, const std::shared_ptr<FeatureLayer>& firstGiven) {
    const std::shared_ptr<Map> map = app.MxDoc()->FocusMapObject();
    if (options.inputLayer.empty()) {
        if (firstGiven)
            app.MxDoc()->SelectedLayer(firstGiven);
        return;
    }
    for (const auto& layer : map->AllLayers()) {
        if (layer->Name() == options.inputLayer) {
            app.MxDoc()->SelectedLayer(layer);
            return;
        }
    }
    throw UsageError{"the map has no layer " + Quoted(options.inputLayer) + "; its layers: " +
                     JoinNames(LayerNames(*map))};
}

void WriteReport(const std::string& path, const std::string& rtf) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << rtf;
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
            return Usage("the command " + std::string(entry->commandName) +
                         " has a dialog that the command line cannot answer yet; run it in tessarine-map");
        if (options_.documentPath.empty() && options_.layers.empty())
            return Usage("give a map document (--doc FILE) or datasets (--layer PATH)");
        if (options_.save && options_.savePath.empty() && options_.documentPath.empty())
            return Usage("the document is made from datasets and has no file: give one with --save FILE");

        ui_ = std::make_shared<TerminalUI>(console_, options_.answer, options_.progress);
        UIScope scope(ui_);
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

    ExitCode Run(HostSession& session) {
        const std::string progId = session.FindCommand(options_.commandName);
        if (progId.empty())
            throw UsageError{"unknown command " + Quoted(options_.commandName) + " (see tessarine commands)"};

        Application& app = *session.App();
        if (!options_.documentPath.empty())
            OpenDocument(app, options_);
        else
            app.MxDoc()->Path((fs::current_path() / kUntitledDocument).string());
        const std::shared_ptr<FeatureLayer> firstGiven = AddLayers(app, options_);
        ChooseInputLayer(app, options_, firstGiven);

        ui_->RegisterDriver("frmLayerFields", MakeLayerFieldsDriver(options_, *ui_, app.MxDoc()->FocusMapObject()));
        RegisterCalculateDrivers(options_, *ui_, app.MxDoc()->FocusMapObject(), console_.out);
        RegisterPlanetaryDrivers(options_, *ui_);
        {
            std::shared_ptr<ICommand> command = session.CreateCommand(progId);
            if (!command)
                throw UsageError{"the extension has no command " + Quoted(options_.commandName)};
            if (!command->Enabled())
                throw UsageError{"the command " + Quoted(CaptionText(command->Caption())) + " is disabled"};
            InterruptGuard interrupts;
            command->OnClick();
            if (InterruptPending() && !ui_->StopDelivered())
                console_.err << "tessarine: Ctrl-C came while the run had no progress window to stop it; it ran "
                                "to its end\n";
        }
        ui_->FinishProgress();
        for (const std::string& line : DataNotesLines(DataNotes()))
            console_.err << "tessarine: warning: " << line << '\n';
        return Outcome(app);
    }

    ExitCode Outcome(Application& app) {
        if (!ui_->ReportRtf().empty() && !options_.reportPath.empty()) {
            try {
                WriteReport(options_.reportPath, ui_->ReportRtf());
            } catch (const std::exception& caught) {
                return Failed(caught.what());
            }
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
        const bool ranNothing = entry && (entry->dialog == DialogKind::LayerFields || entry->dialog == DialogKind::Planetary) &&
                                ui_->ReportsShown() == 0;
        if (ui_->ErrorShown() || ranNothing) {
            if (ui_->QuestionsDefaulted() > 0)
                console_.err << "tessarine: a question took the safe answer, as there was no terminal to ask; "
                                "--yes answers Yes\n";
            return ranNothing && !ui_->ErrorShown() ? Failed("the command ran nothing (its dialog was closed)")
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
        }
        return ExitCode::Success;
    }

    const RunOptions& options_;
    Console& console_;
    std::shared_ptr<TerminalUI> ui_;
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
