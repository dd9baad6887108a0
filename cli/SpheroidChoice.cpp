#include "SpheroidChoice.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <map>
#include <memory>
#include <optional>
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
    return error == std::errc() && stop == end && std::isfinite(value);
}

bool AllDigits(const std::string& text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](unsigned char c) { return std::isdigit(c); });
}

// The series of the solutions are made for small flattenings; beyond 1/2 (b below a/2) they
// give nothing a user could trust, and a second number that small is usually 1/f or f.
constexpr double kMaxFlattening = 0.5;
constexpr const char* kForms = "write a,b (6378137,6356752.314245) or a,f=1/RF (6378137,f=1/298.257223563)";

//! "f=1/298.257223563" or "f=0.0033528": the flattening; nothing when the text is not of that form.
std::optional<double> Flattening(const std::string& text) {
    const std::string trimmed = Trim(text);
    if (trimmed.size() < 2 || std::tolower(static_cast<unsigned char>(trimmed[0])) != 'f' || trimmed[1] != '=')
        return std::nullopt;
    const std::string value = trimmed.substr(2);
    double f = 0;
    if (const auto slash = value.find('/'); slash != std::string::npos) {
        double numerator = 0;
        double inverse = 0;
        if (!ParseNumber(value.substr(0, slash), numerator) || numerator != 1 ||
            !ParseNumber(value.substr(slash + 1), inverse) || !(inverse > 0))
            return std::nullopt;
        f = 1 / inverse;
    } else if (!ParseNumber(value, f)) {
        return std::nullopt;
    }
    return f;
}

//! "a,b" or "a,f=...".
std::optional<Spheroid> FromNumbers(const std::string& text, std::string& problem) {
    const std::vector<std::string> parts = SplitAny(text, ",");
    const std::string what = "--spheroid " + Quoted(text) + ": ";
    double a = 0;
    if (parts.size() != 2 || !ParseNumber(parts[0], a) || !(a > 0)) {
        problem = what + "expected a semi-major axis above 0, then the semi-minor axis or the flattening: " + kForms;
        return std::nullopt;
    }
    const std::string aText = Trim(parts[0]);
    if (Trim(parts[1]).find('=') != std::string::npos) {
        const std::optional<double> f = Flattening(parts[1]);
        if (!f || !(*f >= 0 && *f <= kMaxFlattening)) {
            problem = what + "the flattening is written f=1/RF or f=F, with f from 0 to 1/2 (" + aText +
                      ",f=1/298.257223563)";
            return std::nullopt;
        }
        return Spheroid{"a=" + aText + " " + Trim(parts[1]), a, a - a * *f, "", "", ""};
    }
    double b = 0;
    if (!ParseNumber(parts[1], b)) {
        problem = what + "the semi-minor axis is no number: " + kForms;
        return std::nullopt;
    }
    if (b > a || b < a * (1 - kMaxFlattening)) {
        const std::string bText = Trim(parts[1]);
        problem = what + bText + " is no semi-minor axis for a = " + aText + " (b lies between a/2 and a). ";
        if (b > 1 / kMaxFlattening && b < a * (1 - kMaxFlattening))
            problem += "For a and the inverse flattening write " + aText + ",f=1/" + bText;
        else if (b >= 0 && b <= kMaxFlattening)
            problem += "For a and the flattening write " + aText + ",f=" + bText;
        else if (b > a)
            problem += "The semi-major axis comes first: " + bText + "," + aText;
        else
            problem += std::string("To give the spheroid by numbers, ") + kForms;
        return std::nullopt;
    }
    return Spheroid{"a=" + aText + " b=" + Trim(parts[1]), a, b, "", "", ""};
}

Spheroid FromPlatform(const ISpheroid& found, const std::string& code) {
    return Spheroid{found.Name(), found.SemiMajorAxis(), found.SemiMinorAxis(), "", "", code};
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
    if (text.find(',') != std::string::npos)
        return FromNumbers(text, problem);

    const std::string trimmed = Trim(text);
    const SpatialReferenceEnvironment factory;
    if (trimmed.find(':') != std::string::npos) {
        if (const std::shared_ptr<ISpheroid> found = factory.FindSpheroid(trimmed))
            return FromPlatform(*found, trimmed);
        problem = "--spheroid " + Quoted(trimmed) + ": no spheroid has this code (EPSG:7030, ESRI:107905...)";
        return std::nullopt;
    }

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
        if (const std::shared_ptr<ISpheroid> found = USGS_Functions::SpheroidFromCode(factory, trimmed))
            return FromPlatform(*found, trimmed);
        problem = "--spheroid " + trimmed + ": no spheroid has this code (a sphere of this radius is " + trimmed +
                  "," + trimmed + ")";
        return std::nullopt;
    }
    if (const std::shared_ptr<ISpheroid> found = factory.FindSpheroid(trimmed))
        return FromPlatform(*found, "");
    problem = "--spheroid " + Quoted(trimmed) +
              ": no spheroid has this name (tessarine geod spheroids lists the catalogue; WGS84, GRS80, "
              "clrk66 and the other ellipsoid names of PROJ strings are known too)";
    return std::nullopt;
}

} // namespace tess::cli
