#include "SpheroidChoice.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <map>
#include <sstream>

#include "TextUtil.h"
#include "platform/srs/SpatialReference.h"
#include "platform/srs/SpatialReferenceEnvironment.h"
#include "platform/system/Arrays.h"
#include "platform/system/Collection.h"
#include "spheroids/USGS_Functions.h"

namespace tess::cli {
namespace {

// Positions in the answer of GetSpheroids: rows then names, for each group.
struct Group {
    int rows;
    int names;
    const char* word;
};
constexpr Group kGroups[] = {{0, 1, "custom"}, {2, 3, "planetary"}, {4, 5, "Earth"}};
// Positions in a row: name, semi-major axis, semi-minor axis, constant name (platform rows).
constexpr int kRowMajor = 1;
constexpr int kRowMinor = 2;
constexpr int kRowConstant = 3;
constexpr const char* kConstantPrefix = "esriSRSpheroid_";

//! Lower case without blanks, "_", "-" or full stops: "Mars 2000." and "mars2000" meet.
std::string Key(std::string_view text) {
    std::string key;
    for (const char c : text)
        if (std::isalnum(static_cast<unsigned char>(c)))
            key += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return key;
}

//! Constant name -> code, from the platform's tables ("constant code display name" per line).
std::map<std::string, std::string> CodesOfConstants() {
    std::map<std::string, std::string> codes;
    std::istringstream lines(USGS_Functions::ESRIPlanetString() + USGS_Functions::ESRICommonEarthString());
    std::string constant;
    std::string code;
    std::string rest;
    while (lines >> constant >> code && std::getline(lines, rest))
        codes[constant] = code;
    return codes;
}

bool ParseNumber(const std::string& text, double& value) {
    const std::string trimmed = Trim(text);
    const char* end = trimmed.data() + trimmed.size();
    const auto [stop, error] = std::from_chars(trimmed.data(), end, value);
    return error == std::errc() && stop == end;
}

bool AllDigits(const std::string& text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](unsigned char c) { return std::isdigit(c); });
}

} // namespace

std::vector<Spheroid> SpheroidCatalogue() {
    std::vector<Spheroid> catalogue;
    const std::shared_ptr<IVariantArray> lists = USGS_Functions::GetSpheroids();
    if (!lists)
        return catalogue;
    const std::map<std::string, std::string> codes = CodesOfConstants();
    for (const Group& group : kGroups) {
        const auto rows = lists->Element(group.rows).As<Collection>();
        const auto names = lists->Element(group.names).As<IStringArray>();
        if (!rows || !names)
            continue;
        for (std::int32_t i = 0; i < names->Count(); ++i) {
            const std::string name = names->Element(i);
            const auto row = rows->Item(name).As<IVariantArray>();
            if (!row)
                continue;
            Spheroid spheroid;
            spheroid.name = name;
            spheroid.semiMajor = row->Element(kRowMajor).ToDouble();
            spheroid.semiMinor = row->Element(kRowMinor).ToDouble();
            spheroid.group = group.word;
            if (row->Count() > kRowConstant && std::string(group.word) != "custom") {
                spheroid.constant = row->Element(kRowConstant).ToString();
                if (auto it = codes.find(spheroid.constant); it != codes.end())
                    spheroid.code = it->second;
            }
            catalogue.push_back(std::move(spheroid));
        }
    }
    return catalogue;
}

std::optional<Spheroid> ParseSpheroid(const std::string& text, std::string& problem) {
    const std::vector<std::string> axes = SplitAny(text, ",");
    if (text.find(',') != std::string::npos) {
        double a = 0;
        double b = 0;
        if (axes.size() != 2 || !ParseNumber(axes[0], a) || !ParseNumber(axes[1], b)) {
            problem = "--spheroid " + Quoted(text) + ": two axes are given as a,b (e.g. 6378137,6356752.314245)";
            return std::nullopt;
        }
        if (!(a > 0) || !(b > 0) || b > a) {
            problem = "--spheroid " + Quoted(text) + ": the axes must be above 0, the semi-minor not above the "
                                                     "semi-major";
            return std::nullopt;
        }
        return Spheroid{"a=" + Trim(axes[0]) + " b=" + Trim(axes[1]), a, b, "", "", ""};
    }

    const std::string trimmed = Trim(text);
    const std::vector<Spheroid> catalogue = SpheroidCatalogue();
    const std::string key = Key(trimmed);
    for (const Spheroid& spheroid : catalogue) {
        const bool byCode = AllDigits(trimmed) && spheroid.code == trimmed;
        const std::string constant = spheroid.constant.rfind(kConstantPrefix, 0) == 0
                                         ? spheroid.constant.substr(std::string_view(kConstantPrefix).size())
                                         : spheroid.constant;
        if (byCode || (!key.empty() && (Key(spheroid.name) == key || (!constant.empty() &&
                                                                       (Key(constant) == key ||
                                                                        Key(spheroid.constant) == key)))))
            return spheroid;
    }
    if (AllDigits(trimmed)) {
        // A code outside the catalogue: the platform may still know it.
        const SpatialReferenceEnvironment factory;
        if (const std::shared_ptr<ISpheroid> found = USGS_Functions::SpheroidFromCode(factory, trimmed))
            return Spheroid{found->Name(), found->SemiMajorAxis(), found->SemiMinorAxis(), "", "", trimmed};
        problem = "--spheroid " + trimmed + ": no spheroid has this code";
        return std::nullopt;
    }
    problem = "--spheroid " + Quoted(trimmed) + ": no spheroid of the catalogue has this name "
                                                "(tessarine geod spheroids lists them)";
    return std::nullopt;
}

} // namespace tess::cli
