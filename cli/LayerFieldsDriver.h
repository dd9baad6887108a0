#pragma once
// Drives the layer-and-fields dialog of the conversions from the options, as a
// user would: picks the layer, the fields, all or selected records and the
// output, then clicks OK. Every rule and message of the dialog applies; when the
// dialog does not take the options, the driver tells the UI why and cancels.
// The command line's own rules stand around it: the layer it was told to take
// is the one taken, and a condition that selected nothing converts nothing.

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "TerminalUI.h"

namespace tess {
class ILayer;
class Map;
} // namespace tess

namespace tess::cli {

struct RunOptions;

//! The layer a run is to convert, as the command line settled it before the dialog opened.
struct InputChoice {
    std::shared_ptr<ILayer> layer; //!< null: the dialog's own choice
    bool demanded = false;         //!< named by --input: a layer the dialog does not take is refused
    std::string origin;            //!< how it was chosen, for messages: "the first --layer"...
    //! Per layer, the condition that made its selection, in the words of the command line
    //! (--where "A = 1", the document's selection "A = 1"); layers without one are not in it.
    std::map<const ILayer*, std::string> conditions;
};

//! The driver for frmLayerFields. `map` is the focus map, where the dialog's layers are found.
TerminalUI::FormDriver MakeLayerFieldsDriver(const RunOptions& options, TerminalUI& ui, std::shared_ptr<Map> map,
                                             InputChoice input);

//! Where a --output path lies, in the words of the catalog's browse dialog: the location (a
//! folder, a geodatabase, a feature dataset), the name in it and the location's category.
//! Nothing for a plain folder, which the dialog takes typed into its output box.
std::optional<BrowseResult> OutputLocation(const std::string& outputPath);

//! What a --output path names, read as the dialog will make it.
struct OutputTarget {
    std::string problem;   //!< why the path names no feature class tessarine can make; empty: it does
    std::string shown;     //!< the path for messages, with the name as it will be made
    std::string workspace; //!< the folder, geodatabase or GeoPackage that holds the class
    std::string dataset;   //!< its feature dataset in a geodatabase; empty: none
    std::string name;      //!< the class's name as it will be made; a shapefile's ends in ".shp"
    bool placeExists = false; //!< whether the workspace (and dataset) are there already
};

//! Reads a --output path: a container named without a class in it, an extension that no format
//! has, a geodatabase or feature dataset that is not there are problems (usage errors).
OutputTarget ReadOutputTarget(const std::string& outputPath);
//! Whether a feature class or table of the target's name is there (the dialog would ask to replace it).
bool OutputExists(const OutputTarget& target);

} // namespace tess::cli
