#include "spheroids/USGS_Functions.h"

#include "frame/ErrorHandling.h"
#include "platform/srs/SpatialReference.h"
#include "platform/srs/SpatialReferenceEnvironment.h"
#include "platform/system/Arrays.h"
#include "platform/system/Clone.h"
#include "platform/system/Collection.h"
#include "platform/system/Fault.h"
#include "platform/system/Variant.h"
#include "spheroids/SpheroidTables.h"

#include <filesystem>
#include <fstream>
#include <string_view>
#include <vector>

namespace tess::USGS_Functions {

namespace {

constexpr const char* kCustomFileName = "spheroids.dat";
constexpr std::size_t kCustomFieldCount = 4;
constexpr const char* kLineBreak = "\r\n";

std::string& AppPathValue() {
    static std::string folder = ".";
    return folder;
}

std::vector<std::string> Split(std::string_view text, std::string_view separator) {
    std::vector<std::string> pieces;
    std::size_t start = 0;
    for (;;) {
        const std::size_t at = text.find(separator, start);
        if (at == std::string_view::npos) {
            pieces.emplace_back(text.substr(start));
            return pieces;
        }
        pieces.emplace_back(text.substr(start, at - start));
        start = at + separator.size();
    }
}

std::string TrimBlanks(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return {};
    const std::size_t last = text.find_last_not_of(' ');
    return std::string(text.substr(first, last - first + 1));
}

//! The name itself, or with " (2)", " (3)"... when the collection already has it as a key
//! (in any case).
std::string UniqueName(const Collection& rows, const std::string& name) {
    std::string unique = name;
    int counter = 1;
    while (rows.Exists(unique)) {
        ++counter;
        unique = name + " (" + std::to_string(counter) + ")";
    }
    return unique;
}

std::shared_ptr<StrArray> NamesArray(const std::vector<std::string>& names) {
    // The list is copied into an array sized to the last index: with no names that size
    // is -1 and the whole catalogue fails.
    if (names.empty())
        throw Fault(fault::OutOfRange, "GetSpheroids", "Subscript out of range");
    auto array = std::make_shared<StrArray>();
    for (const auto& name : names)
        array->Add(name);
    return array;
}

void ReadCustomFile(const std::string& path, Collection& rows, std::vector<std::string>& names) {
    std::ifstream file(path, std::ios::binary);
    std::string line;
    while (std::getline(file, line)) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        const std::vector<std::string> fields = Split(line, ",");
        if (fields.size() != kCustomFieldCount || !IsNumeric(std::string_view(fields[1])) ||
            !IsNumeric(std::string_view(fields[2])))
            continue; // skipped without a message
        const std::string name = UniqueName(rows, fields[0]);
        auto row = std::make_shared<VarArray>();
        row->Add(name);
        row->Add(Variant(fields[1]).ToDouble());
        row->Add(Variant(fields[2]).ToDouble());
        row->Add(fields[3]);
        rows.Add(Variant(std::static_pointer_cast<IVariantArray>(row)), name);
        names.push_back(name);
    }
}

struct TableLine {
    std::string constant;
    std::string code;
    std::string display;
};

TableLine ParseTableLine(const std::string& line) {
    const std::vector<std::string> pieces = Split(line, " ");
    TableLine parsed;
    parsed.constant = pieces.at(0);
    parsed.code = pieces.at(1);
    // The display text starts right after the blank that follows the first place of the code.
    const std::size_t position = line.find(parsed.code) + 1; // 1-based
    const std::size_t length = line.size() - position - parsed.code.size();
    parsed.display = line.substr(line.size() - length);
    if (!parsed.display.empty() && parsed.display.back() == '.')
        parsed.display.pop_back();
    return parsed;
}

void AddPlatformRows(const std::string& table, Collection& rows, std::vector<std::string>& names) {
    const SpatialReferenceEnvironment factory;
    for (const std::string& piece : Split(table, kLineBreak)) {
        const std::string line = TrimBlanks(piece);
        if (line.empty())
            continue; // the text ends in an empty piece
        const TableLine parsed = ParseTableLine(line);
        const std::string name = UniqueName(rows, parsed.display);
        const std::shared_ptr<ISpheroid> spheroid = SpheroidFromCode(factory, parsed.code);
        if (!spheroid)
            continue; // a code this platform does not know: the row is dropped
        const auto clonable = std::dynamic_pointer_cast<IClone>(spheroid);
        if (!clonable)
            throw Fault(fault::ObjectNotSet, "GetSpheroids", "Object variable or With block variable not set");
        auto row = std::make_shared<VarArray>();
        row->Add(name);
        row->Add(spheroid->SemiMajorAxis());
        row->Add(spheroid->SemiMinorAxis());
        row->Add(parsed.constant);
        row->Add(Variant(clonable->Clone()));
        rows.Add(Variant(std::static_pointer_cast<IVariantArray>(row)), name);
        names.push_back(name);
    }
}

std::string CustomFilePath() {
    std::string path = AppPath();
    if (path.empty() || (path.back() != '\\' && path.back() != '/'))
        path += '/';
    return path + kCustomFileName;
}

} // namespace

std::string AppPath() { return AppPathValue(); }

void AppPath(const std::string& folder) { AppPathValue() = folder; }

std::shared_ptr<IVariantArray> GetSpheroids() {
    return Trapped("GetSpheroids ", std::shared_ptr<IVariantArray>(), [] {
        Variant customRows = Variant::Nothing();
        Variant customNames = Variant::Nothing();
        const std::string path = CustomFilePath();
        if (std::filesystem::is_regular_file(path)) {
            auto rows = std::make_shared<Collection>();
            std::vector<std::string> names;
            ReadCustomFile(path, *rows, names);
            customNames = Variant(std::static_pointer_cast<IStringArray>(NamesArray(names)));
            customRows = Variant(rows);
        }

        auto planetRows = std::make_shared<Collection>();
        std::vector<std::string> planetNames;
        AddPlatformRows(ESRIPlanetString(), *planetRows, planetNames);

        auto earthRows = std::make_shared<Collection>();
        std::vector<std::string> earthNames;
        AddPlatformRows(ESRICommonEarthString(), *earthRows, earthNames);

        auto result = std::make_shared<VarArray>();
        result->Add(customRows);
        result->Add(customNames);
        result->Add(Variant(planetRows));
        result->Add(Variant(std::static_pointer_cast<IStringArray>(NamesArray(planetNames))));
        result->Add(Variant(earthRows));
        result->Add(Variant(std::static_pointer_cast<IStringArray>(NamesArray(earthNames))));
        return std::static_pointer_cast<IVariantArray>(result);
    });
}

std::string ESRIPlanetString() {
    return Trapped("ESRIPlanetString ", std::string(), [] { return std::string(detail::kPlanetTable); });
}

std::string ESRICommonEarthString() {
    return Trapped("ESRICommonEarthString ", std::string(), [] { return std::string(detail::kCommonEarthTable); });
}

std::shared_ptr<ISpheroid> SpheroidFromCode(const ISpatialReferenceFactory& factory, const std::string& code) {
    try {
        return factory.CreateSpheroid(Variant(code).ToLong());
    } catch (const std::exception&) {
        return nullptr; // an unknown code is normal on an older platform
    }
}

} // namespace tess::USGS_Functions
