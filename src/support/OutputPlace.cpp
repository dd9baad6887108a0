#include <optional>

#include "platform/system/Text.h"
#include "platform/ui/UIServices.h"
#include "support/MyGeneralOperations.h"
#include "support/aml_func_mod.h"

namespace tess {
namespace {

constexpr const char* kFeatureDatasetWord = "Feature Dataset";
constexpr const char* kLineBreak = "\r\n";
constexpr const char* kOutputBrowseFilter = "Feature Classes";
constexpr const char* kInvalidOutputTypeTitle = "Invalid Feature Class Type:";

} // namespace

OutputPlace OutputPlaceOf(const BrowseResult& chosen) {
    OutputPlace place;
    place.directory = chosen.FullName;
    place.name = chosen.Name;
    if (chosen.Category.find(kFeatureDatasetWord) != std::string::npos) {
        const std::string location = StripTrailingSeparator(chosen.FullName);
        place.datasetName = ReturnFilename(location);
        place.directory = ReturnDir(location);
        place.isFeatureDataset = true;
    }
    place.directory = StripTrailingSeparator(place.directory);
    place.kind = OutputKindOfCategory(chosen.Category);
    return place;
}

std::optional<OutputPlace> BrowseForOutputPlace(const std::string& title, const std::string& startingLocation,
                                                const std::string& name, bool breakLines) {
    const std::string gap = breakLines ? std::string(kLineBreak) : std::string();
    for (;;) {
        BrowseRequest request;
        request.Save = true;
        request.Title = title;
        request.StartingLocation = startingLocation;
        request.Name = name;
        request.AllowMultiSelect = false;
        request.Filters = {kOutputBrowseFilter};
        const std::optional<BrowseResult> chosen = UI().Browse(request);
        if (!chosen)
            return std::nullopt;
        const OutputPlace place = OutputPlaceOf(*chosen);
        if (place.kind != output_kind::Unknown)
            return place;
        const MsgBoxResult answer =
            UI().MessageBox("Unexpected Feature Class Type (" + chosen->Category + ")!" + kLineBreak +
                                "This function will only create shapefiles or feature classes in " + gap +
                                "File or Personal GeoDatabases.  Please click 'OK' to select a " + gap +
                                "new Feature Class Name, or 'Cancel' to bail out.",
                            MsgBoxButtons::OKCancel, MsgBoxIcon::Exclamation, kInvalidOutputTypeTitle);
        if (answer != MsgBoxResult::OK)
            return std::nullopt;
    }
}

std::string OutputPathText(const std::string& directory, bool isFeatureDataset, const std::string& datasetName,
                           const std::string& name) {
    return isFeatureDataset ? directory + "/" + datasetName + "/" + name : directory + "/" + name;
}

} // namespace tess
