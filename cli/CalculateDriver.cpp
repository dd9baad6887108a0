#include "CalculateDriver.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <ostream>

#include "CliOptions.h"
#include "SpheroidChoice.h"
#include "TextUtil.h"
#include "calculator/MeasureCatalogue.h"
#include "calculator/frmGeometry.h"
#include "platform/carto/Layers.h"
#include "platform/carto/Map.h"
#include "platform/data/Table.h"
#include "platform/ui/Form.h"

namespace tess::cli {
namespace {

constexpr const char* kDialogTitle = "Calculate Geometry";

std::string NumberText(double value) {
    char text[32];
    const auto [end, error] = std::to_chars(text, text + sizeof text, value);
    return error == std::errc() ? std::string(text, end) : std::string();
}

bool AllDigits(const std::string& text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

int FindItem(const Control& list, const std::string& wanted) {
    for (std::size_t i = 0; i < list.List.size(); ++i)
        if (list.List[i] == wanted)
            return static_cast<int>(i);
    for (std::size_t i = 0; i < list.List.size(); ++i)
        if (EqualsNoCase(list.List[i], wanted))
            return static_cast<int>(i);
    return -1;
}

std::string CheckName(int id) { return "chk" + std::to_string(id); }

//! The combo boxes of an option that the current layer uses (one or two field names).
std::vector<std::string> ComboBoxes(const Form& form, int id) {
    const auto* dialog = dynamic_cast<const frmGeometry*>(&form);
    std::vector<std::string> boxes;
    for (int position = 0; position < 2 && dialog; ++position) {
        const std::int32_t index = ComboIndex(id, position);
        if (index >= 0 && dialog->ComboUseFlags()[static_cast<std::size_t>(index)])
            boxes.push_back(ComboName(id, position));
    }
    return boxes;
}

class SpheroidDriver {
public:
    SpheroidDriver(std::optional<Spheroid> spheroid, bool planetocentric, std::shared_ptr<std::string> problem)
        : spheroid_(std::move(spheroid)), planetocentric_(planetocentric), problem_(std::move(problem)) {}

    void operator()(Form& form) {
        if (spheroid_ && !Choose(form))
            return Cancel(form);
        form.Fire(planetocentric_ ? "optCentric" : "optGraphic", FormEvent::Click);
        form.Fire("cmdOK", FormEvent::Click);
        if (form.IsLoaded()) {
            *problem_ = "--spheroid: the dialog would not take the radii " + form.Ctl("txtMajor").Text + " and " +
                        form.Ctl("txtMinor").Text;
            Cancel(form);
        }
    }

private:
    static void Cancel(Form& form) { form.Fire("cmdCancel", FormEvent::Click); }

    bool Choose(Form& form) {
        const Spheroid& s = *spheroid_;
        const char* list = s.group == "planetary" ? "cbxESRIPlanets"
                           : s.group == "Earth"   ? "cbxESRIEarth"
                           : s.group == "custom"  ? "cbxUSGS"
                                                  : nullptr;
        if (list) {
            Control& combo = form.Ctl(list);
            const int index = FindItem(combo, s.name);
            if (index >= 0) {
                combo.ListIndex = index;
                combo.Text = combo.List[static_cast<std::size_t>(index)];
                const std::string button = s.group == "planetary" ? "cmdLoadESRIPlanetary"
                                           : s.group == "Earth"   ? "cmdLoadESRIEarth"
                                                                  : "cmdLoadUSGS";
                form.Fire(button, FormEvent::Click);
                return true;
            }
        }
        // Radii given, or a code the lists do not hold: typed in, as a custom spheroid.
        for (const auto& [box, axis] : {std::pair{"txtMajor", s.semiMajor}, std::pair{"txtMinor", s.semiMinor}}) {
            form.Ctl(box).Text = NumberText(axis);
            form.Fire(box, FormEvent::Change);
        }
        return true;
    }

    std::optional<Spheroid> spheroid_;
    bool planetocentric_;
    std::shared_ptr<std::string> problem_;
};

class GeometryDriver {
public:
    GeometryDriver(const RunOptions& options, TerminalUI& ui, std::shared_ptr<Map> map, std::ostream& out)
        : options_(options), ui_(ui), map_(std::move(map)), out_(out) {}

    void operator()(Form& form) {
        if (!ChooseLayer(form))
            return Cancel(form);
        if (options_.listMeasures) {
            List(form);
            return Cancel(form);
        }
        if (!ChooseMeasures(form) || !ChooseRecords(form) || !ChooseSpheroid(form))
            return Cancel(form);
        form.Fire("cmdOK", FormEvent::Click);
        if (form.IsLoaded()) {
            ui_.UsageProblem("the field names were not confirmed, so nothing was calculated (--yes confirms them)");
            Cancel(form);
        }
    }

private:
    static void Cancel(Form& form) { form.Fire("cmdCancel", FormEvent::Click); }

    bool Refuse(const std::string& why) {
        ui_.UsageProblem(why);
        return false;
    }

    std::string LayerName(const Form& form) const {
        const Control& layers = form.Ctl("lbxLayers");
        return layers.ListIndex >= 0 ? layers.List[static_cast<std::size_t>(layers.ListIndex)] : std::string();
    }

    bool ChooseLayer(Form& form) {
        Control& layers = form.Ctl("lbxLayers");
        if (layers.ListCount() == 0)
            return Refuse("the map has no point, multipoint, polyline or polygon layer to calculate on");
        if (options_.inputLayer.empty())
            return true; // the dialog's choice: the layer chosen in the map, else the first
        const int index = FindItem(layers, options_.inputLayer);
        if (index < 0) {
            std::string names;
            for (const std::string& name : layers.List)
                names += (names.empty() ? "" : ", ") + Quoted(name);
            return Refuse("the layer " + Quoted(options_.inputLayer) + " is not one that " + Quoted(kDialogTitle) +
                          " takes; it takes: " + names);
        }
        layers.ListIndex = index;
        form.Fire("lbxLayers", FormEvent::Click);
        return true;
    }

    //! The slow mark of an option, from the catalogue of the layer's kind.
    bool Slow(const std::string& layerName, int id) const {
        if (!map_)
            return false;
        for (const auto& layer : map_->AllLayers()) {
            auto feature = std::dynamic_pointer_cast<IFeatureLayer>(layer);
            if (!feature || layer->Name() != layerName || !feature->FeatureClass())
                continue;
            auto geo = std::dynamic_pointer_cast<IGeoDataset>(feature->FeatureClass());
            const MeasureRow* row = FindMeasureRow(feature->FeatureClass()->ShapeType(),
                                                   SpatialKindOf(geo ? geo->SpatialReference() : nullptr), id);
            return row && row->slow;
        }
        return false;
    }

    void List(const Form& form) {
        const std::string layer = LayerName(form);
        out_ << "Measures of the layer " << Quoted(layer) << " (" << form.Ctl("lbSelFeatureType").Caption << "):\n";
        for (int id = 1; id <= kOptionCount; ++id) {
            const Control& check = form.Ctl(CheckName(id));
            if (!check.Visible)
                continue;
            std::string fields;
            for (const std::string& box : ComboBoxes(form, id))
                fields += (fields.empty() ? "" : ",") + form.Ctl(box).Text;
            std::string line = (id < 10 ? "   " : "  ") + std::to_string(id) + "  " + check.Caption;
            line.resize(std::max<std::size_t>(line.size() + 1, 28), ' ');
            line += fields;
            if (Slow(layer, id)) {
                line.resize(std::max<std::size_t>(line.size() + 1, 52), ' ');
                line += "slow";
            }
            out_ << line << '\n';
        }
        out_ << form.Ctl("lblSpheroidOptions").Caption << '\n';
        out_.flush();
    }

    std::string Offered(const Form& form) const {
        std::string offered;
        for (int id = 1; id <= kOptionCount; ++id)
            if (form.Ctl(CheckName(id)).Visible)
                offered += (offered.empty() ? "" : ", ") + std::to_string(id) + " " + Quoted(form.Ctl(CheckName(id)).Caption);
        return offered;
    }

    bool ChooseMeasures(Form& form) {
        if (options_.measures.empty())
            return Refuse("choose what to calculate with --measure (tessarine calculate --list shows what the layer "
                          "offers)");
        for (const std::string& text : options_.measures) {
            const auto equals = text.find('=');
            const std::string key = Trim(text.substr(0, equals));
            int id = 0;
            for (int candidate = 1; candidate <= kOptionCount && !id; ++candidate) {
                const Control& check = form.Ctl(CheckName(candidate));
                if (check.Visible && (EqualsNoCase(check.Caption, key) || (AllDigits(key) && std::stoi(key) == candidate)))
                    id = candidate;
            }
            if (!id)
                return Refuse("the layer " + Quoted(LayerName(form)) + " offers no measure " + Quoted(key) +
                              "; it offers: " + Offered(form));
            Control& check = form.Ctl(CheckName(id));
            check.Value = 1;
            form.Fire(check.Name(), FormEvent::Click);
            if (equals == std::string::npos)
                continue; // the dialog's names
            const std::vector<std::string> boxes = ComboBoxes(form, id);
            std::vector<std::string> names;
            for (const std::string& name : SplitAny(text.substr(equals + 1), ","))
                names.push_back(Trim(name));
            if (names.size() != boxes.size())
                return Refuse("--measure " + Quoted(text) + ": " + Quoted(check.Caption) + " takes " +
                              (boxes.size() == 1 ? std::string("one field name") : "two field names, as NAME_X,NAME_Y"));
            for (std::size_t i = 0; i < boxes.size(); ++i) {
                Control& combo = form.Ctl(boxes[i]);
                combo.Text = names[i];
                form.Fire(boxes[i], FormEvent::Change);
                form.Fire(boxes[i], FormEvent::LostFocus);
            }
        }
        return true;
    }

    bool ChooseRecords(Form& form) {
        const char* option = options_.records == RecordChoice::All        ? "optAll"
                             : options_.records == RecordChoice::Selected ? "optSel"
                                                                          : nullptr;
        if (!option)
            return true;
        const Control& control = form.Ctl(option);
        if (!control.Enabled)
            return Refuse(std::string("--") + (options_.records == RecordChoice::All ? "all" : "selected") +
                          ": the dialog offers no such choice for this layer (it shows " + Quoted(control.Caption) + ")");
        form.Fire(option, FormEvent::Click);
        return true;
    }

    bool ChooseSpheroid(Form& form) {
        if (options_.spheroid.empty() && !options_.planetocentric)
            return true;
        const Control& advanced = form.Ctl("cmdAdvanced");
        const char* which = options_.spheroid.empty() ? "--planetocentric" : "--spheroid";
        if (!advanced.Enabled)
            return Refuse(std::string(which) + " applies to geographic polyline, polygon and multipoint layers; for " +
                          Quoted(LayerName(form)) + " the dialog says: " + Quoted(Trim(advanced.ToolTipText, " :")));
        std::optional<Spheroid> spheroid;
        if (!options_.spheroid.empty()) {
            std::string problem;
            spheroid = ParseSpheroid(options_.spheroid, problem);
            if (!spheroid)
                return Refuse("--spheroid " + Quoted(options_.spheroid) + ": " + problem);
        }
        auto problem = std::make_shared<std::string>();
        ui_.RegisterDriver("frmSpheroidOptionsExt", SpheroidDriver(spheroid, options_.planetocentric, problem));
        form.Fire("cmdAdvanced", FormEvent::Click);
        if (!problem->empty())
            return Refuse(*problem);
        return true;
    }

    const RunOptions& options_;
    TerminalUI& ui_;
    std::shared_ptr<Map> map_;
    std::ostream& out_;
};

} // namespace

const char* const kCalculateExamples = R"(
Examples:
  tessarine calculate --layer data/demo/parcels.shp --list
  tessarine calculate --layer data/demo/parcels.shp --measure "Sph. Area=SPH_AREA" --measure 4 --yes
  tessarine calculate --layer roads.gpkg/roads --measure "Spheroidal Length" --measure "Midpoint=MX,MY" \
                      --spheroid "Clarke 1866" --selected
  tessarine calculate --layer mars.shp --measure 1 --spheroid "Mars 2000" --planetocentric
  tessarine calculate --doc map.map.json --input parcels --measure "Sph. Area" --save

The layer's own table is changed: new fields are doubles, existing numeric fields are overwritten
after the dialog's question (--yes answers it). A measure is named by its caption or number as
--list shows them, with =FIELD or =FIELD_X,FIELD_Y for other field names. --spheroid takes a
catalogue name, a code or the radii a,b as "tessarine geod" does; it and --planetocentric apply to
geographic layers. Ctrl-C stops a run that shows progress; the rows written so far stay.
Exit codes: 0 done, 1 the run failed, 2 bad usage, 3 stopped.
)";

void AddCalculateOptions(CLI::App& sub, RunOptions& run, bool& all, bool& selected) {
    sub.add_option("--input", run.inputLayer,
                   "The layer to calculate on, by name (default: the first --layer, or the map's choice)")
        ->type_name("LAYER");
    sub.add_option("--measure,-m", run.measures,
                   "A measure by caption or number, optionally with its field name(s) (repeatable)")
        ->type_name("WHAT[=FIELDS]")
        ->allow_extra_args(false);
    sub.add_flag("--list", run.listMeasures, "Print the measures the layer offers, with their default fields");
    sub.add_option("--spheroid", run.spheroid,
                   "A catalogue name (\"Mars 2000\"), a code (7030) or the radii a,b; default the layer's own")
        ->type_name("SPHEROID");
    sub.add_flag("--planetocentric", run.planetocentric, "The layer's latitudes are planetocentric");
    auto* allFlag = sub.add_flag("--all", all, "Calculate all records");
    auto* selectedFlag = sub.add_flag("--selected", selected, "Calculate the selected records only");
    allFlag->excludes(selectedFlag);
}

void RegisterCalculateDrivers(const RunOptions& options, TerminalUI& ui, std::shared_ptr<Map> map, std::ostream& out) {
    ui.RegisterDriver("frmGeometry", GeometryDriver(options, ui, std::move(map), out));
}

std::optional<std::string> CalculateFailure(const std::string& report) {
    if (report.find("FUNCTION FAILED") != std::string::npos || report.rfind("Failed to add field", 0) == 0)
        return std::string("nothing was calculated; the report above says why");
    return std::nullopt;
}

} // namespace tess::cli
