#include "PlanetaryDrivers.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <filesystem>

#include "CliOptions.h"
#include "LayerFieldsDriver.h" // OutputLocation
#include "SpheroidChoice.h"
#include "TextUtil.h"
#include "platform/ui/Form.h"

namespace tess::cli {
namespace {

namespace fs = std::filesystem;

bool ParseNumber(const std::string& text, double& value) {
    const std::string trimmed = Trim(text);
    const char* end = trimmed.data() + trimmed.size();
    const auto [stop, error] = std::from_chars(trimmed.data(), end, value);
    return !trimmed.empty() && error == std::errc() && stop == end;
}

//! The numbers of "a,b,..." when there are exactly `count` of them.
bool ParseNumbers(const std::string& text, std::size_t count, std::vector<double>& values) {
    values.clear();
    for (const std::string& piece : SplitAny(text, ",")) {
        double value = 0;
        if (!ParseNumber(piece, value))
            return false;
        values.push_back(value);
    }
    return values.size() == count;
}

std::string NumberText(double value) {
    char text[32];
    const auto [end, error] = std::to_chars(text, text + sizeof text, value);
    return error == std::errc() ? std::string(text, end) : std::string();
}

std::string Join(const std::vector<std::string>& items) {
    std::string text;
    for (const std::string& item : items)
        text += (text.empty() ? "" : ", ") + Quoted(item);
    return text.empty() ? "(none)" : text;
}

//! The option button of a --range; null with `problem` set for any other range.
const char* RangeOption(const std::string& range, bool allowNone, std::string& problem) {
    std::vector<double> ends;
    if (ParseNumbers(range, 2, ends)) {
        if (ends[0] == -180 && ends[1] == 180)
            return "optWrap180";
        if (ends[0] == 0 && ends[1] == 360)
            return "optWrap360";
    }
    if (allowNone && EqualsNoCase(Trim(range), "none"))
        return "optNoWrap";
    problem = "--range " + Quoted(range) + ": the ranges are -180,180 and 0,360" +
              (allowNone ? std::string(" (or none)") : std::string("; --box W,S,E,N gives any other box"));
    return nullptr;
}

//! What the two dialogs share: the layer, the shift, the output and OK.
class PlanetaryDriver {
public:
    PlanetaryDriver(const RunOptions& options, TerminalUI& ui) : options_(options), ui_(ui) {}

protected:
    bool Refuse(const std::string& why) {
        ui_.UsageProblem(why);
        return false;
    }

    static std::string Title(const Form& form) { return Quoted(Trim(form.Caption, " :")); }

    static void Type(Form& form, const std::string& box, const std::string& text) {
        form.Ctl(box).Text = text;
        form.Fire(box, FormEvent::Change);
    }

    bool ChooseLayer(Form& form) {
        Control& layers = form.Ctl("lbxLayers");
        if (layers.ListCount() == 0)
            return Refuse("no layer of the map is in geographic coordinates, and " + Title(form) +
                          " takes only those");
        if (options_.inputLayer.empty())
            return true; // the dialog's choice: the layer chosen in the map, else the first
        for (int i = 0; i < layers.ListCount(); ++i) {
            if (layers.List[static_cast<std::size_t>(i)] == options_.inputLayer) {
                layers.ListIndex = i;
                form.Fire("lbxLayers", FormEvent::Click);
                return true;
            }
        }
        return Refuse("the layer " + Quoted(options_.inputLayer) + " is not one that " + Title(form) +
                      " takes (only layers in geographic coordinates are); it takes: " + Join(layers.List));
    }

    bool ChooseShift(Form& form) {
        if (options_.shift.empty())
            return true;
        double shift = 0;
        if (!ParseNumber(options_.shift, shift))
            return Refuse("--shift " + Quoted(options_.shift) + ": give the shift in decimal degrees");
        Type(form, "txtLongShift", NumberText(shift));
        return true;
    }

    bool ChooseOutput(Form& form) {
        if (options_.output.empty())
            return true; // the dialog's proposal
        const std::string target = fs::path(options_.output).has_parent_path()
                                       ? options_.output
                                       : (fs::current_path() / options_.output).string();
        if (std::optional<BrowseResult> location = OutputLocation(target)) {
            ui_.QueueBrowse(*location);
            form.Fire("cmdGetWorkspace", FormEvent::Click);
            return true;
        }
        Type(form, "txtOutput", target);
        return true;
    }

    //! Clicks OK; a dialog that stays has said why in its message.
    void Confirm(Form& form) {
        form.Fire("cmdOK", FormEvent::Click);
        if (form.IsLoaded() && form.Visible()) {
            ui_.UsageProblem("the dialog " + Title(form) + " did not take the options (its message above says why)");
            form.Fire("cmdCancel", FormEvent::Click);
        }
    }

    const RunOptions& options_;
    TerminalUI& ui_;
};

class WrapDriver final : public PlanetaryDriver {
public:
    using PlanetaryDriver::PlanetaryDriver;

    void operator()(Form& form) {
        if (ChooseLayer(form) && ChooseBox(form) && ChooseShift(form) && ChooseOutput(form))
            return Confirm(form);
        form.Fire("cmdCancel", FormEvent::Click);
    }

private:
    bool ChooseBox(Form& form) {
        if (!options_.range.empty() && !options_.box.empty())
            return Refuse("give either --range or --box, not both");
        if (!options_.range.empty()) {
            std::string problem;
            const char* option = RangeOption(options_.range, false, problem);
            if (!option)
                return Refuse(problem);
            form.Fire(option, FormEvent::Click);
            return true;
        }
        if (options_.box.empty())
            return Refuse("choose the box: --range -180,180, --range 0,360 or --box W,S,E,N");
        std::vector<double> box;
        if (!ParseNumbers(options_.box, 4, box))
            return Refuse("--box " + Quoted(options_.box) + ": give West,South,East,North in decimal degrees");
        form.Fire("optCustom", FormEvent::Click);
        // The dialog itself judges the box.
        Type(form, "txtWest", NumberText(box[0]));
        Type(form, "txtSouth", NumberText(box[1]));
        Type(form, "txtEast", NumberText(box[2]));
        Type(form, "txtNorth", NumberText(box[3]));
        return true;
    }
};

class GeoCentricDriver final : public PlanetaryDriver {
public:
    GeoCentricDriver(const RunOptions& options, TerminalUI& ui, std::shared_ptr<std::optional<Spheroid>> chosen)
        : PlanetaryDriver(options, ui), chosen_(std::move(chosen)) {}

    void operator()(Form& form) {
        if (ChooseLayer(form) && ChooseSpheroid(form) && ChooseRange(form) && ChooseShift(form) &&
            ChooseOutput(form))
            return Confirm(form);
        form.Fire("cmdCancel", FormEvent::Click);
    }

private:
    bool ChooseSpheroid(Form& form) {
        if (options_.spheroid.empty())
            return true; // the layer's own
        std::string problem;
        *chosen_ = ParseSpheroid(options_.spheroid, problem);
        if (!*chosen_)
            return Refuse(problem.rfind("--spheroid", 0) == 0 ? problem
                                                              : "--spheroid " + Quoted(options_.spheroid) + ": " + problem);
        form.Fire("cmdGetSpheroid", FormEvent::Click);
        return true;
    }

    bool ChooseRange(Form& form) {
        if (options_.range.empty())
            return true;
        std::string problem;
        const char* option = RangeOption(options_.range, true, problem);
        if (!option)
            return Refuse(problem);
        form.Fire(option, FormEvent::Click);
        return true;
    }

    std::shared_ptr<std::optional<Spheroid>> chosen_;
};

//! Answers the spheroid dialog with the spheroid that --spheroid named: loaded from its list when
//! the dialog has it there, else typed in as radii.
class SpheroidDriver {
public:
    SpheroidDriver(TerminalUI& ui, std::shared_ptr<std::optional<Spheroid>> chosen)
        : ui_(ui), chosen_(std::move(chosen)) {}

    void operator()(Form& form) {
        if (!*chosen_)
            return form.Fire("cmdCancel", FormEvent::Click);
        const Spheroid& s = **chosen_;
        if (!Load(form, s)) {
            for (const auto& [box, axis] : {std::pair{"txtMajor", s.semiMajor}, std::pair{"txtMinor", s.semiMinor}}) {
                form.Ctl(box).Text = NumberText(axis);
                form.Fire(box, FormEvent::Change);
            }
        }
        form.Fire("cmdOK", FormEvent::Click);
        if (form.IsLoaded()) {
            ui_.UsageProblem("--spheroid: the spheroid dialog would not take the radii " + form.Ctl("txtMajor").Text +
                             " and " + form.Ctl("txtMinor").Text);
            form.Fire("cmdCancel", FormEvent::Click);
        }
    }

private:
    static bool Load(Form& form, const Spheroid& s) {
        const char* list = s.group == "planetary" ? "cbxESRIPlanets"
                           : s.group == "Earth"   ? "cbxESRIEarth"
                           : s.group == "custom"  ? "cbxUSGS"
                                                  : nullptr;
        if (!list)
            return false;
        Control& combo = form.Ctl(list);
        for (int i = 0; i < combo.ListCount(); ++i) {
            if (!EqualsNoCase(combo.List[static_cast<std::size_t>(i)], s.name))
                continue;
            combo.ListIndex = i;
            combo.Text = combo.List[static_cast<std::size_t>(i)];
            form.Fire(s.group == "planetary" ? "cmdLoadESRIPlanetary"
                      : s.group == "Earth"   ? "cmdLoadESRIEarth"
                                             : "cmdLoadUSGS",
                      FormEvent::Click);
            return true;
        }
        return false;
    }

    TerminalUI& ui_;
    std::shared_ptr<std::optional<Spheroid>> chosen_;
};

} // namespace

const char* const kWrapExamples = R"(
Examples:
  tessarine wrap --layer data/demo/mars_craters.shp --range -180,180 --output out/craters_180.shp
  tessarine wrap --layer world.gpkg/countries --range 0,360 --shift 10 --output out/world.gdb/countries_360
  tessarine wrap --layer tiles.shp --box -10,-10,10,10 --output out/tiles_wrapped.shp

Every feature is cut at the box's edges and the pieces are moved by whole box widths and heights to
the other side; the pieces of one feature stay in one record. The shift (decimal degrees) is added
to the longitudes first. Only layers in geographic coordinates are taken.
Exit codes: 0 done, 1 the run failed, 2 bad usage, 3 stopped (Ctrl-C; what was written stays).
)";

const char* const kGeoCentricExamples = R"(
Examples:
  tessarine ocentric-to-ographic --layer data/demo/mars_craters.shp --range -180,180 --output out/graphic.shp
  tessarine ographic-to-ocentric --layer graphic.shp --spheroid "Mars 2000" --output out/centric.shp
  tessarine ocentric-to-ographic --layer moon.shp --spheroid 1737400,1737400 --shift -180 --output out/m.shp

The latitudes are converted with the radii of --spheroid (a catalogue name, a code or a,b as in
"tessarine geod"; default the layer's own), then the shift is added to the longitudes, then the
range (-180,180, 0,360 or none) wraps them. Nothing in the output records which latitudes it holds.
Exit codes: 0 done, 1 the run failed, 2 bad usage, 3 stopped (Ctrl-C; what was written stays).
)";

void AddPlanetaryOptions(CLI::App& sub, RunOptions& run, bool wrap) {
    sub.add_option("--input", run.inputLayer,
                   "The layer to convert, by name (default: the first --layer, or the map's choice)")
        ->type_name("LAYER");
    sub.add_option("--output", run.output, "The new feature class (default: the dialog's proposal)")
        ->type_name("PATH");
    sub.add_option("--range", run.range,
                   wrap ? "Wrap to -180,180 or 0,360 (latitudes -90,90)" : "Then wrap to -180,180, 0,360 or none")
        ->type_name(wrap ? "-180,180|0,360" : "-180,180|0,360|none");
    sub.add_option("--shift", run.shift, "Add this to every longitude first (decimal degrees)")->type_name("DEG");
    if (wrap)
        sub.add_option("--box", run.box, "Wrap to this box instead (decimal degrees)")->type_name("W,S,E,N");
    else
        sub.add_option("--spheroid", run.spheroid,
                       "A catalogue name (\"Mars 2000\"), a code (104905) or the radii a,b; default the layer's own")
            ->type_name("SPHEROID");
}

void RegisterPlanetaryDrivers(const RunOptions& options, TerminalUI& ui) {
    ui.RegisterDriver("frmBoundaryWrap", WrapDriver(options, ui));
    auto chosen = std::make_shared<std::optional<Spheroid>>();
    ui.RegisterDriver("frmGeoCentric", GeoCentricDriver(options, ui, chosen));
    ui.RegisterDriver("frmSpheroidOptions", SpheroidDriver(ui, chosen));
}

std::optional<std::string> PlanetaryFailure(const std::string& report) {
    if (report.find("'CreateGeneralFeatureClass' Function failed unexpectedly...") != std::string::npos)
        return std::string("no output was made, so nothing was converted; the messages above say why");
    return std::nullopt;
}

} // namespace tess::cli
