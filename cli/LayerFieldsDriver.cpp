#include "LayerFieldsDriver.h"

#include <algorithm>
#include <filesystem>

#include "CliOptions.h"
#include "TextUtil.h"
#include "platform/carto/Layers.h"
#include "platform/carto/Map.h"
#include "platform/data/Field.h"
#include "platform/data/WorkspaceFactories.h"
#include "platform/ui/Form.h"

namespace tess::cli {
namespace {

namespace fs = std::filesystem;

struct Storage {
    const char* extension;       //!< of the workspace, lower case
    const char* category;        //!< of the workspace in the browse dialog
    const char* datasetCategory; //!< of a feature dataset inside it; null where there is none
};

constexpr Storage kStorages[] = {
    {".gdb", "File Geodatabase", "File Geodatabase Feature Dataset"},
    {".mdb", "Personal Geodatabase", "Personal Geodatabase Feature Dataset"},
    {".gpkg", "GeoPackage", nullptr},
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

std::shared_ptr<ILayer> FindLayer(const std::shared_ptr<Map>& map, const std::string& name) {
    if (!map)
        return nullptr;
    for (const auto& layer : map->AllLayers())
        if (layer->Name() == name)
            return layer;
    return nullptr;
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
    LayerFieldsDriver(const RunOptions& options, TerminalUI& ui, std::shared_ptr<Map> map)
        : options_(options), ui_(ui), map_(std::move(map)) {}

    void operator()(Form& form) {
        if (ChooseLayer(form) && ChooseFields(form) && ChooseRecords(form) && ChooseOutput(form)) {
            form.Fire("cmdOK", FormEvent::Click);
            if (!form.IsLoaded())
                return;
            // The dialog said why it stays (its message is on the screen); no point in asking again.
            ui_.UsageProblem("the dialog did not take the output " + Quoted(form.Ctl("txtOutput").Text));
        }
        form.Fire("cmdCancel", FormEvent::Click);
    }

private:
    bool Refuse(const std::string& why) {
        ui_.UsageProblem(why);
        return false;
    }

    std::string Title(const Form& form) const { return Quoted(Trim(form.Caption, " :")); }

    bool ChooseLayer(Form& form) {
        Control& layers = form.Ctl("lbxLayers");
        if (layers.ListCount() == 0)
            return Refuse("no layer of the map is of a kind that " + Title(form) + " takes");
        if (options_.inputLayer.empty())
            return true; // the dialog's choice: the layer chosen in the map, else the first
        const int index = FindItem(layers, options_.inputLayer);
        if (index < 0)
            return Refuse("the layer " + Quoted(options_.inputLayer) + " is not one that " + Title(form) +
                          " takes; it takes: " + Join(layers.List));
        layers.ListIndex = index;
        form.Fire("lbxLayers", FormEvent::Click);
        return true;
    }

    bool ChooseFields(Form& form) {
        Control& fields = form.Ctl("lbxFields");
        if (options_.allFields) {
            form.Fire("cmdSelFields", FormEvent::Click);
            return true;
        }
        const Control& layers = form.Ctl("lbxLayers");
        const std::string layerName = layers.ListIndex >= 0 ? layers.List[static_cast<std::size_t>(layers.ListIndex)]
                                                            : std::string();
        const std::shared_ptr<ILayer> layer = FindLayer(map_, layerName);
        for (const std::string& wanted : options_.fields) {
            int index = FindItem(fields, ListedName(layer, wanted));
            if (index < 0)
                index = FindItem(fields, wanted);
            if (index < 0)
                return Refuse("the layer " + Quoted(layerName) + " has no field " + Quoted(wanted) +
                              " to carry over; its fields: " + Join(fields.List));
            fields.Selected[static_cast<std::size_t>(index)] = true;
        }
        return true;
    }

    bool ChooseRecords(Form& form) {
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
        // A bare name is a class of the current folder, whatever its kind.
        const std::string target = fs::path(options_.output).has_parent_path()
                                       ? options_.output
                                       : (fs::current_path() / options_.output).string();
        if (const std::string problem = MakeMissingGeoPackage(target); !problem.empty())
            return Refuse(problem);
        if (std::optional<BrowseResult> location = OutputLocation(target)) {
            ui_.QueueBrowse(*location);
            form.Fire("cmdGetWorkspace", FormEvent::Click);
            return true;
        }
        Control& output = form.Ctl("txtOutput");
        output.Text = target;
        form.Fire("txtOutput", FormEvent::Change);
        return true;
    }

    const RunOptions& options_;
    TerminalUI& ui_;
    std::shared_ptr<Map> map_;
};

} // namespace

std::optional<BrowseResult> OutputLocation(const std::string& outputPath) {
    const fs::path path(outputPath);
    const fs::path location = path.parent_path();
    const std::string name = path.filename().string();
    // A place the catalog cannot show is typed in, and the dialog says what it makes of it.
    if (name.empty() || location.empty())
        return std::nullopt;
    if (const Storage* storage = StorageOf(location))
        return fs::exists(location) ? std::optional(BrowseResult{location.string(), name, storage->category})
                                    : std::nullopt;
    // A feature dataset lives inside its geodatabase, not as a folder of its own.
    const Storage* outer = StorageOf(location.parent_path());
    if (outer && outer->datasetCategory && fs::exists(location.parent_path()))
        return BrowseResult{location.string(), name, outer->datasetCategory};
    return std::nullopt;
}

TerminalUI::FormDriver MakeLayerFieldsDriver(const RunOptions& options, TerminalUI& ui, std::shared_ptr<Map> map) {
    return LayerFieldsDriver(options, ui, std::move(map));
}

} // namespace tess::cli
