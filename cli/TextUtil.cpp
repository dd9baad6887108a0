#include "TextUtil.h"

#include <algorithm>
#include <cctype>
#include <limits>

namespace tess::cli {

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

std::string JoinWords(const std::vector<std::string>& items, std::string_view last) {
    std::string text;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (i > 0)
            text += i + 1 == items.size() ? " " + std::string(last) + " " : ", ";
        text += items[i];
    }
    return text;
}

std::size_t EditDistance(std::string_view a, std::string_view b) {
    const std::string x = Lower(a);
    const std::string y = Lower(b);
    // Rows of the optimal string alignment table: two back, one back, this one.
    std::vector<std::size_t> older(y.size() + 1);
    std::vector<std::size_t> previous(y.size() + 1);
    std::vector<std::size_t> current(y.size() + 1);
    for (std::size_t j = 0; j <= y.size(); ++j)
        previous[j] = j;
    for (std::size_t i = 1; i <= x.size(); ++i) {
        current[0] = i;
        for (std::size_t j = 1; j <= y.size(); ++j) {
            const std::size_t cost = x[i - 1] == y[j - 1] ? 0 : 1;
            current[j] = std::min({previous[j] + 1, current[j - 1] + 1, previous[j - 1] + cost});
            if (i > 1 && j > 1 && x[i - 1] == y[j - 2] && x[i - 2] == y[j - 1])
                current[j] = std::min(current[j], older[j - 2] + 1);
        }
        std::swap(older, previous);
        std::swap(previous, current);
    }
    return previous[y.size()];
}

std::string NearestWord(std::string_view typed, const std::vector<std::string>& candidates) {
    // Dashes in front are the option's marks, not what was mistyped.
    const std::string_view word = typed.substr(std::min(typed.find_first_not_of('-'), typed.size()));
    if (word.empty())
        return {};
    std::string best;
    std::size_t bestDistance = std::numeric_limits<std::size_t>::max();
    std::vector<std::string> prefixed;
    for (const std::string& candidate : candidates) {
        const std::string_view bare = std::string_view(candidate).substr(
            std::min(candidate.find_first_not_of('-'), candidate.size()));
        const std::size_t distance = EditDistance(word, bare);
        if (distance < bestDistance) {
            bestDistance = distance;
            best = candidate;
        }
        if (bare.size() > word.size() && Lower(bare.substr(0, word.size())) == Lower(word))
            prefixed.push_back(candidate);
    }
    const std::size_t allowed = std::max<std::size_t>(1, word.size() / 3);
    if (bestDistance <= allowed)
        return best;
    return prefixed.size() == 1 ? prefixed.front() : std::string();
}

} // namespace tess::cli
