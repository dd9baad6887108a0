#include "platform/system/UID.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "platform/system/Fault.h"

namespace tess {
namespace {

// Hex digits in each group of "{8-4-4-4-12}".
constexpr std::array<std::size_t, 5> kGuidGroups{8, 4, 4, 4, 12};

bool IsHex(char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; }

bool IsGuidText(const std::string& text) {
    if (text.size() < 2 || text.front() != '{' || text.back() != '}')
        return false;
    std::size_t i = 1;
    for (std::size_t g = 0; g < kGuidGroups.size(); ++g) {
        for (std::size_t n = 0; n < kGuidGroups[g]; ++n, ++i)
            if (i >= text.size() || !IsHex(text[i]))
                return false;
        const char expected = g + 1 < kGuidGroups.size() ? '-' : '}';
        if (i >= text.size() || text[i] != expected)
            return false;
        ++i;
    }
    return i == text.size();
}

// A ProgID: letters, digits, "." and "_", starting with a letter.
bool IsProgIdText(const std::string& text) {
    if (text.empty() || !std::isalpha(static_cast<unsigned char>(text.front())))
        return false;
    return std::all_of(text.begin(), text.end(), [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) || c == '.' || c == '_';
    });
}

std::string Upper(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return static_cast<char>(std::toupper(static_cast<unsigned char>(c))); });
    return text;
}

} // namespace

void UID::Value(const std::string& value) {
    if (IsGuidText(value)) {
        value_ = Upper(value);
        return;
    }
    if (!IsProgIdText(value))
        throw Fault(fault::InvalidCall, "tess.UID", "Invalid procedure call or argument: \"" + value + "\"");
    value_ = value;
}

bool UID::Compare(const IUID& other) const {
    return Upper(value_) == Upper(other.Value()) && subType_ == other.SubType();
}

bool UID::IsGuid() const { return IsGuidText(value_); }

} // namespace tess
