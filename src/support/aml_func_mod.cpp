#include "support/aml_func_mod.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "frame/ErrorHandling.h"
#include "platform/data/Field.h"
#include "platform/framework/Application.h"
#include "platform/system/Fault.h"
#include "platform/system/Variant.h"

namespace tess {
namespace {

namespace fs = std::filesystem;

constexpr char kQuote = '"';
constexpr char kBlank = ' ';
constexpr char kPathSeparator = '/';
constexpr char kForeignSeparator = '\\';
constexpr int kDigitsPerGroup = 3;
//! An extension is split off a taken name only when its "." lies this close to the end.
constexpr std::size_t kExtensionWindow = 5;
//! First suffix tried for a taken name: "name_2".
constexpr int kFirstUniqueSuffix = 2;
//! Buffer for the password database entry of the user; grown when the system asks for more.
constexpr std::size_t kPasswdBufferSize = 1024;

// Blanks only, as the host's Trim.
std::string Trim(const std::string& text) {
    const std::size_t first = text.find_first_not_of(kBlank);
    if (first == std::string::npos)
        return {};
    const std::size_t last = text.find_last_not_of(kBlank);
    return text.substr(first, last - first + 1);
}

bool EndsWith(const std::string& text, const std::string& tail) {
    return !tail.empty() && text.size() >= tail.size() &&
           text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

std::vector<std::string> SplitImpl(const std::string& text, const std::string& delimiter) {
    std::vector<std::string> parts(1);
    std::string work = text;
    std::size_t lastSplit = 0;
    bool inQuotes = false;
    std::size_t quoteStart = 0;
    for (std::size_t i = 0; i < work.size();) {
        if (work[i] == kQuote) {
            if (!inQuotes) {
                inQuotes = true;
                quoteStart = i++;
            } else {
                // The pair closes: both quotes leave the working copy, and the walk goes on
                // at the character that followed the closing one.
                work.erase(i, 1);
                work.erase(quoteStart, 1);
                inQuotes = false;
                i -= 1;
            }
        } else if (!inQuotes && !delimiter.empty() && work.compare(i, delimiter.size(), delimiter) == 0) {
            parts.back() = Trim(work.substr(lastSplit, i - lastSplit));
            parts.emplace_back();
            i += delimiter.size();
            lastSplit = i;
        } else {
            ++i;
        }
    }
    parts.back() = Trim(work.substr(std::min(lastSplit, work.size())));
    // A quoted part may have carried a delimiter to its end.
    for (std::string& part : parts)
        if (EndsWith(part, delimiter))
            part = Trim(part.substr(0, part.size() - delimiter.size()));
    return parts;
}

std::vector<std::string> PathParts(const std::string& path) {
    std::string unified = path;
    std::replace(unified.begin(), unified.end(), kForeignSeparator, kPathSeparator);
    std::vector<std::string> parts;
    ParseString(unified, parts, std::string(1, kPathSeparator));
    return parts;
}

std::string Join(const std::vector<std::string>& parts, std::size_t count, const std::string& glue) {
    std::string out;
    for (std::size_t k = 0; k < count; ++k) {
        if (k > 0)
            out += glue;
        out += parts[k];
    }
    return out;
}

bool Contains(const std::string& set, char c) { return set.find(c) != std::string::npos; }

} // namespace

void ParseString(const std::string& text, std::vector<std::string>& parts, const std::string& delimiter) {
    TrappedVoid("ParseString ", [&] {
        if (Trim(Subst(text, delimiter)).empty())
            return;
        parts = SplitImpl(text, delimiter);
    });
}

std::string Subst(const std::string& text, const std::string& find, const std::optional<std::string>& replacement) {
    return Trapped("Subst ", std::string(), [&] {
        std::string out = text;
        if (find.empty())
            return out;
        if (!replacement) {
            for (std::size_t at = out.find(find); at != std::string::npos; at = out.find(find))
                out = Before(out, find) + After(out, find);
            return out;
        }
        // Searching on behind the overwritten text keeps a replacement that contains `find`
        // from being found again and again.
        for (std::size_t at = out.find(find); at != std::string::npos; at = out.find(find, at + find.size()))
            out.replace(at, std::min(replacement->size(), out.size() - at), *replacement, 0,
                        std::min(replacement->size(), out.size() - at));
        return out;
    });
}

std::string Before(const std::string& text, const std::string& marker) {
    const std::size_t at = text.find(marker);
    return at == std::string::npos ? std::string() : text.substr(0, at);
}

std::string After(const std::string& text, const std::string& marker) {
    const std::size_t at = text.find(marker);
    return at == std::string::npos ? std::string() : text.substr(at + marker.size());
}

std::string BasicTrimAvenue(const std::string& text, const std::string& leftSet, const std::string& rightSet) {
    std::size_t end = text.size();
    while (end > 0 && Contains(rightSet, text[end - 1]))
        --end;
    std::size_t start = 0;
    while (start < end && Contains(leftSet, text[start]))
        ++start;
    return text.substr(start, end - start);
}

std::string InsertCommas(const Variant& value) {
    return Trapped("InsertCommas ", std::string(), [&] {
        const std::string text = value.ToString();
        const std::size_t point = text.find('.');
        std::string whole = point == std::string::npos ? text : text.substr(0, point);
        if (whole.size() > kDigitsPerGroup) {
            std::string grouped;
            std::size_t end = whole.size();
            while (end > 0) {
                const std::size_t start = end > kDigitsPerGroup ? end - kDigitsPerGroup : 0;
                grouped.insert(0, "," + whole.substr(start, end - start));
                end = start;
            }
            whole = BasicTrimAvenue(grouped, ",", ",");
        }
        return point == std::string::npos ? whole : whole + "." + text.substr(point + 1);
    });
}

bool FieldIsNumeric(const std::shared_ptr<IField>& field) {
    return Trapped("FieldIsNumeric ", false, [&] {
        if (!field)
            return false;
        switch (field->Type()) {
        case esriFieldTypeSmallInteger:
        case esriFieldTypeInteger:
        case esriFieldTypeSingle:
        case esriFieldTypeDouble:
            return true;
        default:
            return false;
        }
    });
}

std::string ClipExtension(const std::string& path) {
    return Trapped("ClipExtension ", std::string(), [&] {
        std::vector<std::string> parts;
        ParseString(path, parts, ".");
        if (parts.empty())
            return std::string();
        if (parts.size() == 1)
            return parts.front();
        return Join(parts, parts.size() - 1, ".");
    });
}

std::string SetExtension(const std::string& path, const std::string& extension) {
    return Trapped("SetExtension ", std::string(), [&] { return ClipExtension(path) + "." + extension; });
}

std::string ReturnDir(const std::string& path) {
    return Trapped("ReturnDir ", std::string(), [&] {
        const std::vector<std::string> parts = PathParts(path);
        if (parts.empty())
            return std::string();
        const std::size_t count = parts.size() == 1 ? 1 : parts.size() - 1;
        return Join(parts, count, std::string(1, kPathSeparator)) + kPathSeparator;
    });
}

std::string ReturnFilename(const std::string& path) {
    return Trapped("ReturnFilename ", std::string(), [&] {
        const std::vector<std::string> parts = PathParts(path);
        return parts.empty() ? std::string() : parts.back();
    });
}

std::string GetFullFileString(const std::string& path) {
    // Resolving fails for paths that do not exist; the path then stands as given.
    std::error_code error;
    const fs::path full = fs::canonical(fs::path(path), error);
    if (error || full.empty())
        return path;
    return full.string();
}

bool FileExists(const std::string& path) {
    return Trapped("FileExists ", false, [&] {
        std::error_code error;
        return !path.empty() && fs::is_regular_file(fs::path(path), error);
    });
}

bool ExistFileDir(const std::string& path) {
    std::error_code error;
    return !path.empty() && fs::exists(fs::path(path), error) && !error;
}

std::string MakeUniqueFilename(const std::string& path) {
    return Trapped("MakeUniqueFilename ", std::string(), [&] {
        if (!ExistFileDir(path))
            return path;
        std::string base = path;
        std::string extension;
        const std::size_t dot = path.rfind('.');
        if (dot != std::string::npos && dot + kExtensionWindow >= path.size()) {
            base = path.substr(0, dot);
            extension = path.substr(dot);
        }
        for (int n = kFirstUniqueSuffix;; ++n) {
            std::string candidate = base + "_" + std::to_string(n) + extension;
            if (!ExistFileDir(candidate))
                return candidate;
        }
    });
}

std::string GetMxDocPath(const std::shared_ptr<IApplication>& application) {
    return Trapped("GetMxDocPath ", std::string(), [&] {
        if (!application)
            throw Fault(fault::ObjectNotSet, "aml_func_mod", "Object variable or With block variable not set");
        const std::shared_ptr<ITemplates> templates = application->Templates();
        return templates->Item(templates->Count() - 1);
    });
}

std::string GetTheUserName() {
    return Trapped("GetTheUserName ", std::string(), [&] {
        std::string name;
        std::vector<char> buffer(kPasswdBufferSize);
        passwd entry{};
        passwd* found = nullptr;
        int status = 0;
        while ((status = getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found)) == ERANGE)
            buffer.resize(buffer.size() * 2);
        if (status == 0 && found && found->pw_name)
            name = found->pw_name;
        if (name.empty())
            for (const char* variable : {"USER", "LOGNAME"})
                if (const char* value = std::getenv(variable); value && *value) {
                    name = value;
                    break;
                }
        return BasicTrimAvenue(name, "", std::string(1, '\0'));
    });
}

} // namespace tess
