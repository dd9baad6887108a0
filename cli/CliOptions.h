#pragma once
// The options of one run of the headless host, with their defaults, as the
// command line gives them. The library function RunCommand (HostSession.h)
// takes them; main only parses.

#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

namespace tess {
class MxDocument;
}

namespace tess::cli {

class TerminalUI;

//! What the process answers.
enum class ExitCode : int {
    Success = 0,
    Failed = 1,  //!< the run failed (a fault report was shown)
    Usage = 2,   //!< bad usage or nothing run: unknown command or layer, missing folder, an output
                 //!< not to be replaced, a condition that selects nothing, a command given nothing
    Stopped = 3, //!< the user stopped the run (what was written so far stays) or cancelled at a question
};

//! How questions of the system (Yes/No, OK/Cancel) are answered.
enum class Answer {
    Ask, //!< a prompt on a terminal; without one the safe answer (No, Cancel)
    Yes, //!< --yes: Yes or OK
    No,  //!< --no: No or Cancel
};

//! Which records of the input a conversion takes.
enum class RecordChoice {
    DialogDefault, //!< as the dialog proposes: the selection when there is one, else all
    All,
    Selected,
};

//! How progress is shown on the error stream.
enum class ProgressStyle {
    Auto,  //!< Line on a terminal, Plain otherwise
    Line,  //!< one line rewritten with a carriage return
    Plain, //!< whole lines, at most one a second
    None,
};

//! A dataset named with --layer, and the selection that --where makes on it.
struct LayerSource {
    std::string path;  //!< a.shp, file.gdb/Class, file.gdb/Dataset/Class, file.gpkg/layer
    std::string name;  //!< the layer's name in the map; empty: the class's name
    std::string where; //!< attribute condition of the selection; empty: nothing selected
};

//! What build-polygons takes beyond the options of the conversions; empty texts: the dialog's own.
struct BuildPolygonsOptions {
    std::string clusterTolerance; //!< --cluster-tolerance, as typed
    std::string labels;           //!< --labels: a layer of the map, or a dataset added as one
    std::string labelRule;        //!< --label-rule: "first" or "nearest"
    bool allLabels = false;       //!< --all-labels
    bool selectedLabels = false;  //!< --selected-labels
};

struct RunOptions {
    std::string commandName;          //!< the command's Name, e.g. "Tessarine_ShapesToVertices"
    std::string documentPath;         //!< --doc: the map document to open
    std::vector<LayerSource> layers;  //!< --layer: datasets added to the map, in the order given
    std::string inputLayer;           //!< --input: the layer to work on, NAME or NAME:N; empty: the first
    std::string output;               //!< --output: the new feature class; empty: the dialog's proposal
    std::vector<std::string> fields;  //!< --fields: attribute fields to carry over, by name or alias
    bool allFields = false;           //!< --all-fields
    RecordChoice records = RecordChoice::DialogDefault;
    Answer answer = Answer::Ask;
    std::string reportPath;           //!< --report: where to write the report's rich text
    bool save = false;                //!< --save: write the document back
    std::string savePath;             //!< --save FILE: where to; empty: the document's own file
    ProgressStyle progress = ProgressStyle::Auto;
    //! Puts in place the drivers of dialogs other than the conversions' (the graphics tools'),
    //! once the document is open and before the command is clicked.
    std::function<void(TerminalUI& ui, const std::shared_ptr<MxDocument>& document)> dialogDrivers;

    // tessarine calculate
    std::vector<std::string> measures; //!< --measure: a caption or number, with =FIELD[,FIELD]
    bool listMeasures = false;         //!< --list: print what the layer offers, calculate nothing
    std::string spheroid;              //!< --spheroid: a catalogue name, a code or a,b; empty: the layer's
    bool planetocentric = false;       //!< --planetocentric

    // tessarine wrap, ocentric-to-ographic, ographic-to-ocentric
    std::string range; //!< --range: "-180,180", "0,360" (or "none" for the conversions)
    std::string box;   //!< --box: "W,S,E,N"
    std::string shift; //!< --shift: decimal degrees; empty: the dialog's remembered shift
    BuildPolygonsOptions build;       //!< build-polygons only
};

//! The streams of a run, and whether they are terminals.
struct Console {
    std::istream& in;
    std::ostream& out;
    std::ostream& err;
    bool inIsTerminal = false;
    bool errIsTerminal = false;
};

} // namespace tess::cli
