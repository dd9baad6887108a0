#include "LayerFieldsDriver.h"

#include <algorithm>
#include <filesystem>

#include "CliOptions.h"
#include "TextUtil.h"
#include "platform/carto/Layers.h"
#include "platform/carto/Map.h"
#include "platform/data/Field.h"
#include "platform/data/SelectionSet.h"
#include "platform/data/Table.h"
#include "platform/data/Workspace.h"
#include "platform/data/WorkspaceFactories.h"
#include "platform/ui/Form.h"
#include "support/MyGeneralOperations.h"
#include "support/aml_func_mod.h"

namespace tess::cli {
namespace {

namespace fs = std::filesystem;

struct Storage {
    const char* extension;       //!< of the workspace, lower case
    const char* category;        //!< of the workspace in the browse dialog
    const char* datasetCategory; //!< of a feature dataset inside it; null where there is none
    const char* words;           //!< what it is, for messages
};

constexpr Storage kStorages[] = {
    {".gdb", "File Geodatabase", "File Geodatabase Feature Dataset", "a file geodatabase"},
    {".mdb", "Personal Geodatabase", "Personal Geodatabase Feature Dataset", "a personal geodatabase"},
    {".gpkg", "GeoPackage", nullptr, "a GeoPackage"},
};

const Storage* StorageOf(const fs::path& path) {
    const std::string extension = Lower(path.extension().string());
    for (const Storage& storage : kStorages)
        if (extension == storage.extension)
            return &storage;
    return nullptr;
}

// A GeoPackage is one file, as a shapefile is: a new class in one that is not there yet makes it,
// in a folder that is.
// Answers what went wrong; empty when all is well.
std::string MakeMissingGeoPackage(const std::string& outputPath) {
    const fs::path location = fs::path(outputPath).parent_path();
    const Storage* storage = StorageOf(location);
    if (!storage || std::string_view(storage->extension) != ".gpkg" || location.filename().empty())
        return {};
    std::error_code error;
    const fs::path folder = location.has_parent_path() ? location.parent_path() : fs::path(".");
    if (fs::exists(location, error) || !fs::is_directory(folder, error))
        return {};
    try {
        GeoPackageWorkspaceFactory().Create(folder.string(), location.filename().string());
    } catch (const std::exception& caught) {
        return "cannot make the GeoPackage " + Quoted(location.string()) + ": " + caught.what();
    }
    return {};
}

bool Exists(const fs::path& path) {
    std::error_code error;
    return fs::exists(path, error);
}

std::string Join(const std::vector<std::string>& items) {
    std::string text;
    for (const std::string& item : items)
        text += (text.empty() ? "" : ", ") + item;
    return text.empty() ? "(none)" : text;
}

int FindItem(const Control& list, const std::string& wanted) {
    const auto& items = list.List;
    auto exact = std::find(items.begin(), items.end(), wanted);
    if (exact != items.end())
        return static_cast<int>(exact - items.begin());
    for (std::size_t i = 0; i < items.size(); ++i)
        if (EqualsNoCase(items[i], wanted))
            return static_cast<int>(i);
    return -1;
}

//! The lines of the list that show `name`, top first.
std::vector<int> LinesNamed(const Control& list, const std::string& name) {
    std::vector<int> lines;
    for (std::size_t i = 0; i < list.List.size(); ++i)
        if (list.List[i] == name)
            lines.push_back(static_cast<int>(i));
    return lines;
}

//! The feature layers of the map with data that bear `name`, top first: the ones the dialog may list.
std::vector<std::shared_ptr<ILayer>> ValidLayersNamed(const std::shared_ptr<Map>& map, const std::string& name) {
    std::vector<std::shared_ptr<ILayer>> layers;
    if (map)
        for (const auto& layer : map->AllLayers())
            if (layer->Valid() && layer->Name() == name && std::dynamic_pointer_cast<IFeatureLayer>(layer))
                layers.push_back(layer);
    return layers;
}

//! The alias under which the dialog lists a field given by name (or already by alias).
std::string ListedName(const std::shared_ptr<ILayer>& layer, const std::string& field) {
    auto fields = std::dynamic_pointer_cast<ILayerFields>(layer);
    if (!fields)
        return field;
    for (std::int32_t i = 0; i < fields->FieldCount(); ++i)
        if (EqualsNoCase(fields->Field(i)->Name(), field))
            return fields->FieldInfo(i)->Alias();
    return field;
}

class LayerFieldsDriver {
public:
    LayerFieldsDriver(const RunOptions& options, TerminalUI& ui, std::shared_ptr<Map> map, InputChoice input)
        : options_(options), ui_(ui), map_(std::move(map)), input_(std::move(input)) {}

    void operator()(Form& form) {
        if (ChooseLayer(form) && ChooseFields(form) && ChooseRecords(form) && ChooseOutput(form)) {
            form.Fire("cmdOK", FormEvent::Click);
            if (!form.IsLoaded())
                return;
            // The dialog said why it stays (its message is on the screen); no point in asking again.
            ui_.UsageProblem("the dialog did not take the output " +
                             Quoted(options_.output.empty() ? form.Ctl("txtOutput").Text : options_.output));
        }
        form.Fire("cmdCancel", FormEvent::Click);
    }

private:
    bool Refuse(const std::string& why) {
        ui_.UsageProblem(why);
        return false;
    }

    std::string Title(const Form& form) const { return Quoted(Trim(form.Caption, " :")); }

    void Pick(Form& form, int line) {
        Control& layers = form.Ctl("lbxLayers");
        if (layers.ListIndex != line) {
            layers.ListIndex = line;
            form.Fire("lbxLayers", FormEvent::Click);
        }
    }

    bool ChooseLayer(Form& form) {
        Control& layers = form.Ctl("lbxLayers");
        if (layers.ListCount() == 0)
            return Refuse("no layer of the map is of a kind that " + Title(form) + " takes");
        if (input_.layer) {
            const std::string name = input_.layer->Name();
            const std::vector<int> lines = LinesNamed(layers, name);
            const auto sameNamed = ValidLayersNamed(map_, name);
            const auto at = std::find(sameNamed.begin(), sameNamed.end(), input_.layer);
            if (lines.empty()) {
                if (input_.demanded)
                    return Refuse("the layer " + Quoted(name) + " is not one that " + Title(form) +
                                  " takes; it takes: " + Join(layers.List));
                ui_.Note(input_.origin + ", " + Quoted(name) + ", is not one that " + Title(form) +
                         " takes; the dialog chose " + Quoted(layers.List.at(0)) + " (--input chooses)");
            } else if (lines.size() == sameNamed.size() && at != sameNamed.end()) {
                // The list shows the map's layers in the map's order: the Nth of a name is the Nth line of it.
                Pick(form, lines[static_cast<std::size_t>(at - sameNamed.begin())]);
            } else {
                // Some layers of that name are of a kind the dialog does not take, so their lines
                // cannot be matched to the layers; a name of their own tells them apart.
                const std::string why = std::to_string(sameNamed.size()) + " layers are named " + Quoted(name) +
                                        " and " + Title(form) + " takes " + std::to_string(lines.size()) +
                                        " of them";
                if (input_.demanded)
                    return Refuse(why + ", so which is which cannot be told; name them apart with --layer "
                                        "PATH:NAME");
                Pick(form, lines.front());
                ui_.Note(why + ": the first it lists is converted (--layer PATH:NAME names them apart)");
            }
        }
        chosen_ = ChosenLayer(layers);
        return true;
    }

    //! The map's layer behind the list's selected line.
    std::shared_ptr<ILayer> ChosenLayer(const Control& layers) const {
        if (layers.ListIndex < 0)
            return nullptr;
        const std::string& name = layers.List[static_cast<std::size_t>(layers.ListIndex)];
        const std::vector<int> lines = LinesNamed(layers, name);
        const auto sameNamed = ValidLayersNamed(map_, name);
        if (sameNamed.empty())
            return nullptr;
        const auto line = std::find(lines.begin(), lines.end(), layers.ListIndex);
        const auto nth = static_cast<std::size_t>(line - lines.begin());
        return lines.size() == sameNamed.size() ? sameNamed[nth] : sameNamed.front();
    }

    bool ChooseFields(Form& form) {
        Control& fields = form.Ctl("lbxFields");
        if (options_.allFields) {
            form.Fire("cmdSelFields", FormEvent::Click);
            return true;
        }
        const std::string layerName = chosen_ ? chosen_->Name() : std::string();
        for (const std::string& wanted : options_.fields) {
            int index = FindItem(fields, ListedName(chosen_, wanted));
            if (index < 0)
                index = FindItem(fields, wanted);
            if (index < 0)
                return Refuse("the layer " + Quoted(layerName) + " has no field " + Quoted(wanted) +
                              " to carry over; its fields: " + Join(fields.List));
            fields.Selected[static_cast<std::size_t>(index)] = true;
        }
        return true;
    }

    //! A condition that selected nothing asked for a subset that is empty: the dialog would offer
    //! all records instead, which is right for a user who selected nothing, not for one who asked.
    bool ConditionSelectedSomething() {
        if (!chosen_ || options_.records == RecordChoice::All)
            return true;
        const auto condition = input_.conditions.find(chosen_.get());
        if (condition == input_.conditions.end())
            return true;
        auto owner = std::dynamic_pointer_cast<IFeatureSelection>(chosen_);
        auto layer = std::dynamic_pointer_cast<IFeatureLayer>(chosen_);
        const std::shared_ptr<ISelectionSet> selection = owner ? owner->SelectionSet() : nullptr;
        if (selection && selection->Count() > 0)
            return true;
        const std::int32_t total =
            layer && layer->FeatureClass() ? layer->FeatureClass()->FeatureCount(nullptr) : 0;
        return Refuse(condition->second + " selects no feature of " + Quoted(chosen_->Name()) +
                      ", so there is nothing to convert; --all converts all " + std::to_string(total) +
                      " records");
    }

    bool ChooseRecords(Form& form) {
        if (!ConditionSelectedSomething())
            return false;
        const char* option = nullptr;
        if (options_.records == RecordChoice::All)
            option = "optAll";
        else if (options_.records == RecordChoice::Selected)
            option = "optSel";
        if (!option)
            return true;
        const Control& control = form.Ctl(option);
        if (!control.Enabled)
            return Refuse("--" + std::string(options_.records == RecordChoice::All ? "all" : "selected") +
                          ": the dialog offers no such choice for this layer (it shows " + Quoted(control.Caption) +
                          ")");
        form.Fire(option, FormEvent::Click);
        if (control.Value != 1)
            return Refuse(std::string("the dialog would not take --") +
                          (options_.records == RecordChoice::All ? "all" : "selected"));
        return true;
    }

    bool ChooseOutput(Form& form) {
        if (options_.output.empty())
            return true; // the dialog's proposal
        // Absolute, so that the settings the run leaves mean the same place from any folder; a bare
        // name is a class of the current folder, whatever its kind.
        const std::string output = fs::absolute(options_.output).lexically_normal().string();
        if (const std::string problem = MakeMissingGeoPackage(output); !problem.empty())
            return Refuse(problem);
        if (std::optional<BrowseResult> location = OutputLocation(output)) {
            ui_.QueueBrowse(*location);
            form.Fire("cmdGetWorkspace", FormEvent::Click);
            return true;
        }
        Control& box = form.Ctl("txtOutput");
        box.Text = output;
        form.Fire("txtOutput", FormEvent::Change);
        return true;
    }

    const RunOptions& options_;
    TerminalUI& ui_;
    std::shared_ptr<Map> map_;
    InputChoice input_;
    std::shared_ptr<ILayer> chosen_;
};

std::shared_ptr<IFeatureWorkspace> OpenWorkspace(const std::string& path) {
    try {
        auto factory = WorkspaceFactoryForPath(path);
        return factory ? std::dynamic_pointer_cast<IFeatureWorkspace>(factory->OpenFromFile(path, 0)) : nullptr;
    } catch (const std::exception&) {
        return nullptr;
    }
}

bool HasFeatureDataset(const std::string& geodatabase, const std::string& dataset) {
    auto workspace = OpenWorkspace(geodatabase);
    if (!workspace)
        return false;
    try {
        return workspace->OpenFeatureDataset(dataset) != nullptr;
    } catch (const std::exception&) {
        return false;
    }
}

} // namespace

std::optional<BrowseResult> OutputLocation(const std::string& outputPath) {
    const fs::path path(outputPath);
    const fs::path location = path.parent_path();
    const std::string name = path.filename().string();
    // A place the catalog cannot show is typed in, and the dialog says what it makes of it.
    if (name.empty() || location.empty())
        return std::nullopt;
    if (const Storage* storage = StorageOf(location)) {
        // A GeoPackage is one file, made with its first class; its folder must be there.
        const bool makeable = !storage->datasetCategory && Exists(location.parent_path().empty() ? "." : location.parent_path());
        return Exists(location) || makeable ? std::optional(BrowseResult{location.string(), name, storage->category})
                                            : std::nullopt;
    }
    // A feature dataset lives inside its geodatabase, not as a folder of its own.
    const Storage* outer = StorageOf(location.parent_path());
    if (outer && outer->datasetCategory && Exists(location.parent_path()))
        return BrowseResult{location.string(), name, outer->datasetCategory};
    return std::nullopt;
}

OutputTarget ReadOutputTarget(const std::string& outputPath) {
    OutputTarget target;
    const fs::path path(outputPath);
    const fs::path location = path.parent_path();
    const std::string name = path.filename().string();
    const std::string given = "--output " + outputPath;
    if (name.empty() || name == "." || name == "..") {
        target.problem = given + " names a folder, not a feature class in it: write " +
                         (fs::path(outputPath) / "NAME.shp").lexically_normal().string();
        return target;
    }
    if (const Storage* storage = StorageOf(path)) {
        target.problem = given + " names " + storage->words + ", not a feature class in it: write " +
                         (path / "NAME").string();
        return target;
    }
    // In a container the class is named as the browse dialog names it: legal characters, no ".shp".
    auto className = [&name] {
        std::string bare = name;
        if (Lower(fs::path(bare).extension().string()) == ".shp")
            bare = fs::path(bare).stem().string();
        return ReplaceBadChars(bare, true, true, true, true);
    };
    if (const Storage* storage = StorageOf(location)) {
        target.workspace = location.string();
        target.name = className();
        target.shown = (location / target.name).string();
        target.placeExists = Exists(location);
        if (!target.placeExists && storage->datasetCategory)
            target.problem = given + ": " + storage->words + " " + Quoted(location.string()) + " is not there";
        return target;
    }
    const Storage* outer = StorageOf(location.parent_path());
    if (outer && outer->datasetCategory) {
        target.workspace = location.parent_path().string();
        target.dataset = location.filename().string();
        target.name = className();
        target.shown = (location / target.name).string();
        if (!Exists(target.workspace))
            target.problem = given + ": " + outer->words + " " + Quoted(target.workspace) + " is not there";
        else if (!HasFeatureDataset(target.workspace, target.dataset))
            target.problem = given + ": " + Quoted(target.workspace) + " has no feature dataset " +
                             Quoted(target.dataset);
        target.placeExists = target.problem.empty();
        return target;
    }
    const std::string extension = Lower(path.extension().string());
    if (!extension.empty() && extension != ".shp") {
        target.problem = given + ": no format that tessarine writes has the extension " + extension + "; write " +
                         (location / path.stem()).string() + ".shp for a shapefile, or FILE.gpkg/" +
                         path.stem().string() + " for a class in a GeoPackage";
        return target;
    }
    target.workspace = location.empty() ? "." : location.string();
    target.name = SetExtension(name, "shp");
    target.shown = (location / target.name).string();
    target.placeExists = Exists(target.workspace);
    return target;
}

bool OutputExists(const OutputTarget& target) {
    if (!target.placeExists || !target.problem.empty())
        return false;
    auto workspace = OpenWorkspace(target.workspace);
    return workspace && CheckIfFeatureClassExists(workspace, target.name);
}

TerminalUI::FormDriver MakeLayerFieldsDriver(const RunOptions& options, TerminalUI& ui, std::shared_ptr<Map> map,
                                             InputChoice input) {
    return LayerFieldsDriver(options, ui, std::move(map), std::move(input));
}

} // namespace tess::cli
