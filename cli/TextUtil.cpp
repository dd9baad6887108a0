#include "TextUtil.h"

#include <algorithm>
#include <cctype>

namespace tess::cli {

std::string Lower(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return result;
}

bool EqualsNoCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && Lower(a) == Lower(b);
}

std::string Trim(std::string_view text, std::string_view characters) {
    const auto first = text.find_first_not_of(characters);
    if (first == std::string_view::npos)
        return {};
    const auto last = text.find_last_not_of(characters);
    return std::string(text.substr(first, last - first + 1));
}

std::string Quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

std::string CaptionText(std::string_view caption) {
    std::string text;
    for (std::size_t i = 0; i < caption.size(); ++i) {
        if (caption[i] != '&') {
            text += caption[i];
        } else if (i + 1 < caption.size() && caption[i + 1] == '&') {
            text += '&';
            ++i;
        }
    }
    return text;
}

std::vector<std::string> SplitAny(std::string_view text, std::string_view separators) {
    std::vector<std::string> pieces;
    std::size_t start = 0;
    while (start <= text.size()) {
        const auto end = text.find_first_of(separators, start);
        const auto piece = text.substr(start, end == std::string_view::npos ? std::string_view::npos : end - start);
        if (!piece.empty())
            pieces.emplace_back(piece);
        if (end == std::string_view::npos)
            break;
        start = end + 1;
    }
    return pieces;
}

} // namespace tess::cli
