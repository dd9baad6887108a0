#include "platform/system/Text.h"

#include <algorithm>
#include <cctype>

namespace tess {
namespace {

char LowerChar(char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); }

bool SameNoCase(char a, char b) { return LowerChar(a) == LowerChar(b); }

} // namespace

std::string Lower(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), LowerChar);
    return result;
}

bool EqualsNoCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), SameNoCase);
}

bool EndsWithNoCase(std::string_view text, std::string_view tail) {
    return text.size() >= tail.size() && EqualsNoCase(text.substr(text.size() - tail.size()), tail);
}

std::string StripTrailingSeparator(std::string path) {
    if (!path.empty() && IsPathSeparator(path.back()))
        path.pop_back();
    return path;
}

} // namespace tess
