#include "GraphicsDrivers.h"

#include <CLI/CLI.hpp>

#include <array>
#include <cstdio>
#include <filesystem>
#include <ostream>

#include "CommandRun.h"
#include "CommandTable.h"
#include "LayerFieldsDriver.h" // OutputLocation
#include "TextUtil.h"
#include "platform/carto/ActiveView.h"
#include "platform/carto/Display.h"
#include "platform/carto/GraphicElements.h"
#include "platform/carto/GraphicsContainer.h"
#include "platform/carto/Map.h"
#include "platform/carto/PageLayout.h"
#include "platform/framework/Application.h"
#include "platform/framework/Document.h"
#include "platform/geometry/Envelope.h"
#include "platform/srs/SpatialReference.h"
#include "platform/srs/SpatialReferenceEnvironment.h"
#include "platform/system/Fault.h"
#include "platform/ui/Form.h"

namespace tess::cli {

namespace fs = std::filesystem;


namespace {

//! The lines of the conversion list, by the words a user types (or their numbers, 1 to 5).
constexpr std::array<const char*, 5> kConvertWords = {"points", "polylines", "all-to-polylines", "polygons",
                                                      "all-to-polygons"};
//! The kinds of frmSelectGraphics, in its order.
constexpr std::array<const char*, 11> kTypeWords = {"points",   "lines",       "polygons", "rectangles",
                                                    "ellipses", "circles",     "text",     "pictures",
                                                    "data-graphs", "groups",   "frames"};
constexpr std::array<const char*, 11> kTypeBoxes = {"chkPoints",   "chkLines",    "chkPolygons", "chkRectangles",
                                                    "chkEllipses", "chkCircles",  "chkText",     "chkPictures",
                                                    "chkData",     "chkGroup",    "chkFrames"};

constexpr const char* kShapesExamples = R"(
Examples:
  tessarine graphics-to-shapes --doc map.map.json --convert polygons --output out/areas.shp --save
  tessarine graphics-to-shapes --doc map.map.json --convert all-to-polylines --selected-only \
                               --output out/work.gdb/outlines --spatial-reference EPSG:32633
  tessarine graphics-to-shapes --doc map.map.json --empty point --output out/sites.shp --yes

--convert takes the dialog's lines: 1 points, 2 polylines, 3 all-to-polylines (polylines and the
outlines of polygons), 4 polygons, 5 all-to-polygons (polygons and closed polylines). Without
--selected-only all graphics of the focus map are converted. --spatial-reference is the output's
reference (EPSG:n, a code, a .prj file or WKT); by default the map's.
Lengths are geodesic on WGS 1984, areas on the sphere of its volume.
)";

constexpr const char* kSelectExamples = R"(
Examples:
  tessarine graphics select --doc map.map.json --type circles --type ellipses --save
  tessarine graphics select --doc map.map.json --name "Survey area" --save
  tessarine graphics select --doc map.map.json --pattern "well*" --save

Types: points lines polygons rectangles ellipses circles text pictures data-graphs groups frames.
In a pattern, * stands for any run of characters and & for any one; case does not matter.
The selection grows: what was selected stays. In layout view the page layout's elements are used.
)";

constexpr const char* kNameExamples = R"(
Examples:
  tessarine graphics name --doc map.map.json --name "Field work" --selected --save
  tessarine graphics name --doc map.map.json --name "" --all --yes --save

Without --all or --selected the dialog's choice holds: the selected elements when there are any.
An empty name removes the names; it is confirmed first (--yes confirms).
)";

constexpr const char* kListExamples = R"(
Examples:
  tessarine graphics list --doc map.map.json
  tessarine graphics list --doc map.map.json --layout

Each line: the element's place in the drawing order (bottom first), its kind, its name, whether it
is selected, and its bounds in map units (page units for the layout). Members of groups follow
their group, indented.
)";

std::size_t OptionsGiven(const CLI::App& sub) {
    std::size_t given = 0;
    for (const CLI::Option* option : sub.get_options())
        given += option->count();
    return given;
}

std::string Joined(const std::vector<std::string>& items) {
    std::string text;
    for (const std::string& item : items)
        text += (text.empty() ? "" : ", ") + item;
    return text.empty() ? "(none)" : text;
}

template <std::size_t N>
int WordIndex(const std::array<const char*, N>& words, const std::string& word) {
    for (std::size_t i = 0; i < N; ++i)
        if (EqualsNoCase(words[i], word))
            return static_cast<int>(i);
    return -1;
}

int ConvertIndex(const std::string& text) {
    if (text.size() == 1 && text[0] >= '1' && text[0] <= '5')
        return text[0] - '1';
    return WordIndex(kConvertWords, text);
}

//! A reference given on the command line: EPSG:n, a bare code, a .prj file, or WKT.
std::shared_ptr<ISpatialReference> ReadReference(const std::string& text) {
    SpatialReferenceEnvironment environment;
    std::error_code error;
    if (fs::is_regular_file(text, error))
        return environment.CreateESRISpatialReferenceFromPRJFile(text);
    if (!text.empty() && text.find_first_not_of("0123456789") == std::string::npos)
        return environment.CreateFromWkt("EPSG:" + text);
    return environment.CreateFromWkt(text);
}

class GraphicsShapefileDriver {
public:
    GraphicsShapefileDriver(GraphicsShapefileChoices choices, TerminalUI& ui) : choices_(std::move(choices)), ui_(ui) {}

    void operator()(Form& form) {
        if (ChooseReference(form) && ChooseMode(form) && ChooseOutput(form)) {
            if (!form.Ctl("cmdOK").Enabled) {
                Refuse("the output needs a spatial reference and the map has none: give --spatial-reference");
            } else {
                form.Fire("cmdOK", FormEvent::Click);
                if (!form.IsLoaded())
                    return;
                // The dialog has said why it stays.
                ui_.UsageProblem("nothing was converted: the dialog went back to its choices");
            }
        }
        form.Fire("cmdCancel", FormEvent::Click);
    }

private:
    bool Refuse(const std::string& why) {
        ui_.UsageProblem(why);
        return false;
    }

    bool ChooseReference(Form& form) {
        if (choices_.spatialReference.empty())
            return true;
        std::shared_ptr<ISpatialReference> reference;
        try {
            reference = ReadReference(choices_.spatialReference);
        } catch (const std::exception& caught) {
            const auto* fault = dynamic_cast<const Fault*>(&caught);
            return Refuse("unknown spatial reference " + Quoted(choices_.spatialReference) + ": " +
                          (fault ? fault->Description() : std::string(caught.what())));
        }
        if (!reference || std::dynamic_pointer_cast<IUnknownCoordinateSystem>(reference))
            return Refuse("unknown spatial reference " + Quoted(choices_.spatialReference) +
                          ": an output needs a geographic or projected one");
        ui_.QueueSpatialReference(reference);
        form.Fire("cmdSpRef", FormEvent::Click);
        return true;
    }

    bool ChooseMode(Form& form) {
        if (!choices_.empty.empty()) {
            form.Fire("optNew", FormEvent::Click);
            const std::string option = "opt" + std::string(1, static_cast<char>(std::toupper(choices_.empty[0]))) +
                                       Lower(choices_.empty.substr(1));
            form.Fire(option, FormEvent::Click);
            return true;
        }
        Control& list = form.Ctl("lbxGraphics");
        if (!form.Ctl("optConvert").Enabled)
            return Refuse("the map offers no graphics to convert (the dialog shows " +
                          Quoted(list.ListCount() > 0 ? list.List[0] : std::string()) + ")");
        form.Fire("optConvert", FormEvent::Click);
        Control& selected = form.Ctl("chkSelected");
        if ((selected.Value == 1) != choices_.selectedOnly) {
            selected.Value = choices_.selectedOnly ? 1 : 0;
            form.Fire("chkSelected", FormEvent::Click);
        }
        if (choices_.convert < 0 || choices_.convert >= list.ListCount())
            return Refuse("the dialog has no conversion line " + std::to_string(choices_.convert + 1));
        list.ListIndex = choices_.convert;
        form.Fire("lbxGraphics", FormEvent::Click);
        return true;
    }

    bool ChooseOutput(Form& form) {
        if (choices_.output.empty())
            return true; // the dialog's proposal
        const std::string target = fs::path(choices_.output).has_parent_path()
                                       ? choices_.output
                                       : (fs::current_path() / choices_.output).string();
        if (std::optional<BrowseResult> location = OutputLocation(target)) {
            ui_.QueueBrowse(*location);
            form.Fire("cmdGetWorkspace", FormEvent::Click);
            return true;
        }
        const fs::path folder = fs::path(target).parent_path();
        std::error_code error;
        if (folder.extension() == ".gdb" || folder.parent_path().extension() == ".gdb")
            return Refuse("the geodatabase of " + Quoted(target) + " does not exist");
        if (!fs::is_directory(folder, error))
            return Refuse("the folder " + Quoted(folder.string()) + " of the output does not exist");
        form.Ctl("txtOutput").Text = target;
        form.Fire("txtOutput", FormEvent::Change);
        return true;
    }

    GraphicsShapefileChoices choices_;
    TerminalUI& ui_;
};

//! The container the selection dialog works on: the page layout in layout view, the focus map otherwise.
std::shared_ptr<IGraphicsContainerSelect> DialogContainer(const MxDocument& document) {
    if (document.LayoutActive())
        return document.Layout();
    return document.FocusMapObject();
}

class SelectGraphicsDriver {
public:
    SelectGraphicsDriver(const GraphicsToolOptions& options, TerminalUI& ui, std::shared_ptr<MxDocument> document,
                         Console& console)
        : options_(options), ui_(ui), document_(std::move(document)), console_(console) {}

    void operator()(Form& form) {
        if (ChooseTypes(form) && ChooseNames(form)) {
            form.Ctl("txtName").Text = options_.pattern;
            auto container = DialogContainer(*document_);
            const std::int32_t before = container->ElementSelectionCount();
            form.Fire("cmdOK", FormEvent::Click);
            const std::int32_t after = container->ElementSelectionCount();
            const std::int32_t total = std::dynamic_pointer_cast<IGraphicsContainer>(container)->ElementCount();
            console_.out << "Selected graphic elements: " << after << " of " << total << " (" << (after - before)
                         << " added)\n";
            if (!form.IsLoaded())
                return;
        }
        form.Fire("cmdClose", FormEvent::Click);
    }

private:
    bool ChooseTypes(Form& form) {
        for (const std::string& word : options_.types) {
            const int index = WordIndex(kTypeWords, word);
            Control& box = form.Ctl(kTypeBoxes[static_cast<std::size_t>(index)]);
            if (!box.Enabled) {
                ui_.UsageProblem("--type " + word + ": the dialog offers no such elements (it shows " +
                                 Quoted(box.Caption) + ")");
                return false;
            }
            box.Value = 1;
        }
        return true;
    }

    bool ChooseNames(Form& form) {
        Control& list = form.Ctl("lbxNamesActive");
        std::vector<std::string> offered;
        for (const std::string& line : list.List)
            offered.push_back(line.substr(0, line.rfind(" [")));
        for (const std::string& name : options_.names) {
            int found = -1;
            for (std::size_t i = 0; i < offered.size() && found < 0; ++i)
                if (offered[i] == name)
                    found = static_cast<int>(i);
            for (std::size_t i = 0; i < offered.size() && found < 0; ++i)
                if (EqualsNoCase(offered[i], name))
                    found = static_cast<int>(i);
            if (found < 0 || !list.Visible) {
                ui_.UsageProblem("--name " + Quoted(name) + ": no element bears that name; the names: " +
                                 Joined(list.Visible ? offered : std::vector<std::string>{}));
                return false;
            }
            list.Selected[static_cast<std::size_t>(found)] = true;
        }
        return true;
    }

    const GraphicsToolOptions& options_;
    TerminalUI& ui_;
    std::shared_ptr<MxDocument> document_;
    Console& console_;
};

class NameElementsDriver {
public:
    NameElementsDriver(const GraphicsToolOptions& options, TerminalUI& ui, Console& console)
        : options_(options), ui_(ui), console_(console) {}

    void operator()(Form& form) {
        const char* option = options_.all ? "optAll" : options_.selected ? "optSel" : nullptr;
        if (option) {
            if (!form.Ctl(option).Enabled) {
                ui_.UsageProblem(std::string("--") + (options_.all ? "all" : "selected") +
                                 ": the dialog offers no such choice (it shows " + Quoted(form.Ctl(option).Caption) +
                                 ")");
                form.Fire("cmdCancel", FormEvent::Click);
                return;
            }
            form.Fire(option, FormEvent::Click);
        }
        const std::string chosen = form.Ctl(form.Ctl("optAll").Value == 1 ? "optAll" : "optSel").Caption;
        form.Ctl("txtName").Text = options_.name;
        form.Fire("cmdOK", FormEvent::Click);
        if (!form.IsLoaded()) {
            console_.out << (options_.name.empty() ? "Names removed: " : "Named " + Quoted(options_.name) + ": ")
                         << chosen.substr(chosen.find("(n = ")) << '\n';
            return;
        }
        ui_.UsageProblem("the empty name was not confirmed; nothing was renamed (--yes confirms)");
        form.Fire("cmdCancel", FormEvent::Click);
    }

private:
    const GraphicsToolOptions& options_;
    TerminalUI& ui_;
    Console& console_;
};

ExitCode Usage(Console& console, const std::string& message) {
    console.err << "tessarine: " << message << '\n';
    return ExitCode::Usage;
}

void AddDocumentOption(CLI::App& sub, GraphicsToolOptions& o) {
    sub.add_option("--doc", o.documentPath, "The map document (*.map.json) to work on")->type_name("FILE");
}

void AddRunOptions(CLI::App& sub, GraphicsToolOptions& o, bool withReport) {
    auto* yes = sub.add_flag("--yes,-y", o.yes, "Answer Yes (or OK) to every question of the command");
    auto* no = sub.add_flag("--no,-n", o.no, "Answer No (or Cancel) to every question");
    yes->excludes(no);
    if (withReport)
        sub.add_option("--report", o.reportPath, "Also write the report's rich text (RTF) to FILE")->type_name("FILE");
    o.saveOption = sub.add_option("--save", o.savePath, "Write the document back after the run (to FILE when given)")
                       ->type_name("[FILE]")
                       ->expected(0, 1);
}

std::string Bounds(const IElement& element, const std::shared_ptr<IDisplay>& display) {
    Envelope bounds;
    element.QueryBounds(display, bounds);
    if (bounds.IsEmpty())
        return "empty";
    std::array<char, 128> text{};
    std::snprintf(text.data(), text.size(), "%.10g %.10g %.10g %.10g", bounds.XMin(), bounds.YMin(), bounds.XMax(),
                  bounds.YMax());
    return text.data();
}

void ListElement(std::ostream& out, const std::string& place, const std::shared_ptr<IElement>& element,
                 const std::string& selected, const std::shared_ptr<IDisplay>& display, int depth) {
    auto properties = std::dynamic_pointer_cast<IElementProperties>(element);
    std::array<char, 512> line{};
    std::snprintf(line.data(), line.size(), "%*s%-6s %-10s %-24s %-3s %s", depth * 2, "", place.c_str(),
                  KindWord(KindOf(*element)).c_str(), Quoted(properties ? properties->Name() : "").c_str(),
                  selected.c_str(), Bounds(*element, display).c_str());
    out << line.data() << '\n';
    if (auto group = std::dynamic_pointer_cast<IGroupElement>(element))
        for (std::int32_t i = 0; i < group->ElementCount(); ++i)
            ListElement(out, place + "." + std::to_string(i + 1), group->Element(i), "", display, depth + 1);
}

ExitCode ListGraphics(const GraphicsToolOptions& o, Console& console) {
    std::error_code error;
    if (!fs::is_regular_file(o.documentPath, error))
        return Usage(console, "cannot open the map document " + Quoted(o.documentPath) + ": no such file");
    std::shared_ptr<Application> app = Application::Create();
    try {
        app->OpenDocument(o.documentPath);
    } catch (const std::exception& caught) {
        const auto* fault = dynamic_cast<const Fault*>(&caught);
        return Usage(console, "cannot open the map document " + Quoted(o.documentPath) + ": " +
                                  (fault ? fault->Description() : std::string(caught.what())));
    }
    std::shared_ptr<MxDocument> document = app->MxDoc();
    std::shared_ptr<GraphicsContainerBase> container;
    std::shared_ptr<IActiveView> view;
    if (o.layout) {
        container = document->Layout();
        view = document->Layout();
        console.out << "Page layout";
    } else {
        container = document->FocusMapObject();
        view = document->FocusMapObject();
        console.out << "Focus map " << Quoted(document->FocusMapObject()->Name());
    }
    console.out << " (" << (document->LayoutActive() ? "layout" : "data") << " view active): "
                << container->ElementCount() << " elements, " << container->ElementSelectionCount()
                << " selected\n";
    std::array<char, 256> header{};
    std::snprintf(header.data(), header.size(), "%-6s %-10s %-24s %-3s %s", "#", "kind", "name", "sel",
                  "xmin ymin xmax ymax");
    console.out << header.data() << '\n';
    const std::shared_ptr<IDisplay> display = view->ScreenDisplay();
    for (std::int32_t i = 0; i < container->ElementCount(); ++i) {
        std::shared_ptr<IElement> element = container->ElementAt(i);
        ListElement(console.out, std::to_string(i), element, container->ElementSelected(element) ? "yes" : "no",
                    display, 0);
    }
    return ExitCode::Success;
}

} // namespace

bool IsGraphicsTool(DialogKind kind) {
    return kind == DialogKind::GraphicsShapefile || kind == DialogKind::SelectGraphics ||
           kind == DialogKind::NameElements;
}

std::unique_ptr<GraphicsToolOptions> AddGraphicsToolOptions(CLI::App& sub, const FriendlyCommand& entry) {
    auto o = std::make_unique<GraphicsToolOptions>();
    o->kind = entry.dialog;
    o->commandName = std::string(entry.commandName);
    AddDocumentOption(sub, *o);
    switch (entry.dialog) {
    case DialogKind::GraphicsShapefile: {
        auto* empty = sub.add_option("--empty", o->empty, "Make an empty feature class of this geometry")
                          ->check(CLI::IsMember({"point", "polyline", "polygon"}, CLI::ignore_case).description(""))
                          ->type_name("point|polyline|polygon");
        auto* convert = sub.add_option("--convert", o->convert, "Convert the map's graphics by this line of the "
                                                                "dialog (see below)")
                            ->type_name("OPTION");
        empty->excludes(convert);
        sub.add_flag("--selected-only", o->selectedOnly, "Convert the selected graphics only")->needs(convert);
        sub.add_option("--output", o->output, "The new feature class: dir/name.shp, file.gdb/name, "
                                              "file.gdb/Dataset/name (default: the dialog's proposal)")
            ->type_name("PATH");
        sub.add_option("--spatial-reference", o->spatialReference,
                       "The output's reference: EPSG:n, a .prj file or WKT (default: the map's)")
            ->type_name("SRS");
        AddRunOptions(sub, *o, true);
        sub.footer(kShapesExamples);
        break;
    }
    case DialogKind::SelectGraphics:
        sub.add_option("--type", o->types, "Select every element of this kind (repeatable)")
            ->type_name("TYPE")
            ->allow_extra_args(false);
        sub.add_option("--name", o->names, "Select the elements that bear this name (repeatable)")
            ->type_name("NAME")
            ->allow_extra_args(false);
        sub.add_option("--pattern", o->pattern, "Select the elements whose names match: * any run, & any one")
            ->type_name("PATTERN");
        AddRunOptions(sub, *o, false);
        sub.footer(kSelectExamples);
        break;
    default: {
        o->nameOption = sub.add_option("--name", o->name, "The name to give (\"\" removes names)")->type_name("NAME");
        auto* all = sub.add_flag("--all", o->all, "Name all graphic elements of the focus map");
        auto* selected = sub.add_flag("--selected", o->selected, "Name the selected graphic elements");
        all->excludes(selected);
        AddRunOptions(sub, *o, false);
        sub.footer(kNameExamples);
        break;
    }
    }
    return o;
}

std::unique_ptr<GraphicsToolOptions> AddGraphicsList(CLI::App& graphics, CLI::App*& listCommand) {
    auto o = std::make_unique<GraphicsToolOptions>();
    o->list = true;
    listCommand = graphics.add_subcommand("list", "List the graphic elements of a map document: kind, name, "
                                                  "selection, bounds");
    AddDocumentOption(*listCommand, *o);
    listCommand->add_flag("--layout", o->layout, "List the page layout's elements instead of the focus map's");
    listCommand->footer(kListExamples);
    return o;
}

TerminalUI::FormDriver MakeGraphicsShapefileDriver(const GraphicsShapefileChoices& choices, TerminalUI& ui) {
    return GraphicsShapefileDriver(choices, ui);
}

ExitCode RunGraphicsTool(const CLI::App& sub, GraphicsToolOptions& o, Console& console,
                         const std::string& libraryPath) {
    if (OptionsGiven(sub) == 0) {
        console.out << sub.help();
        return ExitCode::Success;
    }
    if (o.documentPath.empty())
        return Usage(console, "give a map document (--doc FILE)");
    if (o.list)
        return ListGraphics(o, console);

    RunOptions run;
    run.commandName = o.commandName;
    run.documentPath = o.documentPath;
    run.answer = o.yes ? Answer::Yes : o.no ? Answer::No : Answer::Ask;
    run.reportPath = o.reportPath;
    // The host's checks of an output (its folder, a class that is there) hold for this tool too.
    run.output = o.output;
    run.save = o.saveOption && o.saveOption->count() > 0;
    run.savePath = o.savePath;
    run.progress = o.progress;

    switch (o.kind) {
    case DialogKind::GraphicsShapefile: {
        GraphicsShapefileChoices choices;
        choices.empty = Lower(o.empty);
        choices.selectedOnly = o.selectedOnly;
        choices.output = o.output;
        choices.spatialReference = o.spatialReference;
        if (o.empty.empty() && o.convert.empty())
            return Usage(console, "say what to make: --empty point|polyline|polygon, or --convert OPTION");
        if (!o.convert.empty()) {
            choices.convert = ConvertIndex(o.convert);
            if (choices.convert < 0)
                return Usage(console, "--convert " + Quoted(o.convert) +
                                          ": not a line of the dialog; one of 1 to 5, points, polylines, "
                                          "all-to-polylines, polygons, all-to-polygons");
        }
        run.dialogDrivers = [choices](TerminalUI& ui, const std::shared_ptr<MxDocument>&) {
            ui.RegisterDriver("frmGraphicsShapefile", MakeGraphicsShapefileDriver(choices, ui));
        };
        break;
    }
    case DialogKind::SelectGraphics: {
        if (o.types.empty() && o.names.empty() && o.pattern.empty())
            return Usage(console, "say what to select: --type TYPE, --name NAME or --pattern PATTERN");
        for (const std::string& word : o.types)
            if (WordIndex(kTypeWords, word) < 0)
                return Usage(console, "--type " + Quoted(word) + ": not a kind of element; one of points, lines, "
                                      "polygons, rectangles, ellipses, circles, text, pictures, data-graphs, "
                                      "groups, frames");
        run.dialogDrivers = [&o, &console](TerminalUI& ui, const std::shared_ptr<MxDocument>& document) {
            ui.RegisterDriver("frmSelectGraphics", SelectGraphicsDriver(o, ui, document, console));
        };
        break;
    }
    default:
        if (!o.nameOption || o.nameOption->count() == 0)
            return Usage(console, "give the name with --name NAME (--name \"\" removes names)");
        run.dialogDrivers = [&o, &console](TerminalUI& ui, const std::shared_ptr<MxDocument>&) {
            ui.RegisterDriver("frmNameElements", NameElementsDriver(o, ui, console));
        };
        break;
    }
    return RunCommand(run, console, libraryPath);
}

} // namespace tess::cli
