#include "BuildPolygonsDriver.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <stdexcept>

#include "CliOptions.h"
#include "TextUtil.h"
#include "platform/carto/Layers.h"
#include "platform/carto/Map.h"
#include "platform/ui/Form.h"

namespace tess::cli {
namespace {

namespace fs = std::filesystem;

constexpr int kChecked = 1;
constexpr int kGrey = 2;

std::string Join(const std::vector<std::string>& items) {
    std::string text;
    for (const std::string& item : items)
        text += (text.empty() ? "" : ", ") + item;
    return text.empty() ? "(none)" : text;
}

int FindItem(const Control& list, const std::string& wanted) {
    const auto& items = list.List;
    if (auto exact = std::find(items.begin(), items.end(), wanted); exact != items.end())
        return static_cast<int>(exact - items.begin());
    for (std::size_t i = 0; i < items.size(); ++i)
        if (EqualsNoCase(items[i], wanted))
            return static_cast<int>(i);
    return -1;
}

bool EndsWithNoCase(const std::string& text, const std::string& tail) {
    return text.size() >= tail.size() && EqualsNoCase(std::string_view(text).substr(text.size() - tail.size()), tail);
}

//! A --labels value that is a path rather than a layer's name.
bool NamesDataset(const std::string& text) {
    std::error_code error;
    return text.find_first_of("/\\") != std::string::npos || EndsWithNoCase(text, ".shp") || fs::exists(text, error);
}

//! The layer name a dataset gets: its file or class name without extension.
std::string LayerNameOf(const std::string& path) {
    fs::path p(path);
    while (!p.empty() && p.filename().empty())
        p = p.parent_path();
    return p.stem().string();
}

class BuildPolygonsDriver {
public:
    BuildPolygonsDriver(const RunOptions& options, TerminalUI& ui, std::shared_ptr<Map> map, InputChoice input)
        : options_(options), build_(options.build), ui_(ui), map_(std::move(map)), input_(std::move(input)) {}

    void operator()(Form& form) {
        if (ChooseLayer(form) && ChooseRecords(form) && ChooseTolerance(form) && ChooseLabels(form) &&
            ChooseOutput(form)) {
            if (!form.Ctl("cmdOK").Enabled) {
                Refuse("the dialog keeps OK off for these options");
            } else {
                form.Fire("cmdOK", FormEvent::Click);
                if (!form.IsLoaded())
                    return;
                ui_.UsageProblem("the dialog did not take the output " +
                                 Quoted(options_.output.empty() ? form.Ctl("txtOutput").Text : options_.output));
            }
        }
        form.Fire("cmdCancel", FormEvent::Click);
    }

private:
    bool Refuse(const std::string& why) {
        ui_.UsageProblem(why);
        return false;
    }

    bool ChooseLayer(Form& form) {
        Control& layers = form.Ctl("lbxLayers");
        if (layers.ListCount() == 0)
            return Refuse("no layer of the map holds polylines; \"Build Polygons\" takes polyline layers only");
        if (!input_.layer)
            return true;
        const std::string name = input_.layer->Name();
        const int line = FindItem(layers, name);
        if (line < 0) {
            if (input_.demanded || input_.origin.find("--layer") != std::string::npos)
                return Refuse(input_.origin + ", " + Quoted(name) + ", holds no polylines; \"Build Polygons\" takes: " +
                              Join(layers.List));
            ui_.Note(Quoted(name) + " holds no polylines; the dialog chose " + Quoted(layers.List.at(0)));
            return true;
        }
        if (layers.ListIndex != line) {
            layers.ListIndex = line;
            form.Fire("lbxLayers", FormEvent::Click);
        }
        return true;
    }

    bool ChooseRecords(Form& form) {
        const char* option = options_.records == RecordChoice::All        ? "optAll"
                             : options_.records == RecordChoice::Selected ? "optSel"
                                                                          : nullptr;
        return !option || Click(form, option, options_.records == RecordChoice::All ? "--all" : "--selected");
    }

    //! Clicks an option button the way a user can: only when it is enabled.
    bool Click(Form& form, const char* option, const std::string& given) {
        const Control& control = form.Ctl(option);
        if (!control.Enabled)
            return Refuse(given + ": the dialog offers no such choice here (it shows " + Quoted(control.Caption) + ")");
        form.Fire(option, FormEvent::Click);
        return true;
    }

    bool ChooseTolerance(Form& form) {
        if (build_.clusterTolerance.empty())
            return true; // the dialog's proposal, from the layer's reference
        const std::string& text = build_.clusterTolerance;
        std::size_t used = 0;
        double value = -1.0;
        try {
            value = std::stod(text, &used);
        } catch (const std::exception&) {
            used = 0;
        }
        if (used == 0 || used != text.size() || !std::isfinite(value) || value < 0.0)
            return Refuse("--cluster-tolerance " + Quoted(text) + " is not a distance: give a number of 0 or more, "
                          "in the units of the polyline layer (" + Trim(form.Ctl("lblUnits").Caption.substr(6), " ") + ")");
        form.Ctl("txtCluster").Text = text;
        form.Fire("txtCluster", FormEvent::Change);
        return true;
    }

    bool ChooseLabels(Form& form) {
        if (build_.labels.empty()) {
            if (!options_.fields.empty() || options_.allFields)
                return Refuse("--fields and --all-fields choose fields of the label points: give --labels");
            return true;
        }
        Control& check = form.Ctl("chkUseLabelPoints");
        Control& points = form.Ctl("cbxPointLayers");
        if (check.Value == kGrey)
            return Refuse("--labels: the map has no point layer to take labels from");
        const std::string name = NamesDataset(build_.labels) ? LayerNameOf(build_.labels) : build_.labels;
        const int line = FindItem(points, name);
        if (line < 0)
            return Refuse("--labels " + Quoted(build_.labels) + " is no point layer of the map; the point layers: " +
                          Join(points.List));
        check.Value = kChecked;
        form.Fire("chkUseLabelPoints", FormEvent::Click);
        if (points.ListIndex != line) {
            points.ListIndex = line;
            form.Fire("cbxPointLayers", FormEvent::Click);
        }
        if (!build_.labelRule.empty()) {
            const char* option = build_.labelRule == "first"     ? "optFirstLabelPoint"
                                 : build_.labelRule == "nearest" ? "optCentroidLabelPoint"
                                                                 : nullptr;
            if (!option)
                return Refuse("--label-rule " + Quoted(build_.labelRule) + ": give first or nearest");
            form.Fire(option, FormEvent::Click);
        }
        if (build_.allLabels && !Click(form, "optAllLabelPoints", "--all-labels"))
            return false;
        if (build_.selectedLabels && !Click(form, "optSelLabelPoints", "--selected-labels"))
            return false;
        Control& fields = form.Ctl("lbxFields");
        if (options_.allFields) {
            form.Fire("cmdSelFields", FormEvent::Click);
        } else {
            for (const std::string& wanted : options_.fields) {
                const int index = FindItem(fields, wanted);
                if (index < 0)
                    return Refuse("the label point layer " + Quoted(name) + " has no field " + Quoted(wanted) +
                                  "; its fields: " + Join(fields.List));
                fields.Selected[static_cast<std::size_t>(index)] = true;
            }
            form.Fire("lbxFields", FormEvent::Click);
        }
        if (fields.SelCount() == 0)
            return Refuse("--labels needs the fields the polygons are to take from the points: --fields A,B or "
                          "--all-fields");
        return true;
    }

    bool ChooseOutput(Form& form) {
        if (options_.output.empty())
            return true;
        const std::string output = fs::absolute(options_.output).lexically_normal().string();
        if (std::optional<BrowseResult> location = OutputLocation(output)) {
            ui_.QueueBrowse(*location);
            form.Fire("cmdGetWorkspace", FormEvent::Click);
            return true;
        }
        form.Ctl("txtOutput").Text = output;
        form.Fire("txtOutput", FormEvent::Change);
        return true;
    }

    const RunOptions& options_;
    const BuildPolygonsOptions& build_;
    TerminalUI& ui_;
    std::shared_ptr<Map> map_;
    InputChoice input_;
};

} // namespace

void AddBuildPolygonsOptions(CLI::App& sub, BuildPolygonsOptions& options) {
    sub.add_option("--cluster-tolerance", options.clusterTolerance,
                   "Line ends and vertices closer together than this come together before regions are found, in "
                   "the units of the polyline layer (default: the tolerance of its spatial reference)")
        ->type_name("T");
    sub.add_option("--labels", options.labels,
                   "Point layer (by name, or a dataset to add) whose points give the polygons their attributes")
        ->type_name("LAYER|PATH");
    sub.add_option("--label-rule", options.labelRule,
                   "With several points in a polygon: first (the first found) or nearest (to the polygon's "
                   "centroid); default: the last run's choice")
        ->type_name("first|nearest");
    auto* all = sub.add_flag("--all-labels", options.allLabels, "Consider all label points");
    auto* selected = sub.add_flag("--selected-labels", options.selectedLabels,
                                  "Consider only the selected label points; not with --all-labels");
    all->excludes(selected);
}

void CompleteBuildPolygonsOptions(RunOptions& run) {
    BuildPolygonsOptions& build = run.build;
    if (build.labels.empty() && (!build.labelRule.empty() || build.allLabels || build.selectedLabels))
        throw std::invalid_argument("--label-rule, --all-labels and --selected-labels go with --labels");
    if (!build.labels.empty() && NamesDataset(build.labels)) {
        LayerSource source;
        source.path = build.labels;
        source.name = LayerNameOf(build.labels);
        run.layers.push_back(source);
    }
}

const char* BuildPolygonsFooter() {
    return "\nEvery region that the lines bound together becomes one polygon, with Uniq_ID and Area; the lines' "
           "attributes stay behind. Ends and vertices closer than the cluster tolerance are joined first (see "
           "docs/build-polygons.md).\n\nExamples:\n"
           "  tessarine build-polygons --layer data/demo/boundaries.shp --cluster-tolerance 0.5 --output "
           "out/regions.shp\n"
           "  tessarine build-polygons --layer data/demo/boundaries.shp --cluster-tolerance 0.5 --labels "
           "data/demo/region_labels.shp --label-rule nearest --fields NAME --output out/regions.shp\n";
}

TerminalUI::FormDriver MakeBuildPolygonsDriver(const RunOptions& options, TerminalUI& ui, std::shared_ptr<Map> map,
                                               InputChoice input) {
    return BuildPolygonsDriver(options, ui, std::move(map), std::move(input));
}

} // namespace tess::cli
