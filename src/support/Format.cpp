#include "support/Format.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <iterator>

#include "platform/system/DateTime.h"
#include "platform/system/Text.h"

namespace tess {
namespace {

// The host shows doubles with at most 15 significant digits.
constexpr int kSignificantDigits = 15;
constexpr int kDigitsPerGroup = 3;

// strftime formats of the host's named date and time formats.
constexpr const char* kTimeFormat = "%X";
constexpr const char* kShortDateFormat = "%x";
constexpr const char* kLongDateFormat = "%A, %B %d, %Y";
constexpr const char* kShortTimeFormat = "%H:%M";

struct NumberPattern {
    std::string prefix;
    std::string suffix;
    int wholeZeros = 0;   // forced digits of the whole part
    bool grouping = false;
    bool point = false;
    int decimalZeros = 0; // forced decimals
    int decimalDigits = 0; // all decimal placeholders, forced and optional
};

bool IsPlaceholder(char c) { return c == '0' || c == '#' || c == '.' || c == ','; }

// Appends the literal at pattern[i] (quoted text, an escaped character or a
// plain one) and moves i past it.
void TakeLiteral(std::string_view pattern, std::size_t& i, std::string& out) {
    const char c = pattern[i];
    if (c == '"') {
        const std::size_t close = pattern.find('"', i + 1);
        const std::size_t end = close == std::string_view::npos ? pattern.size() : close;
        out.append(pattern.substr(i + 1, end - i - 1));
        i = close == std::string_view::npos ? pattern.size() : close + 1;
    } else if (c == '\\' && i + 1 < pattern.size()) {
        out += pattern[i + 1];
        i += 2;
    } else {
        out += c;
        ++i;
    }
}

NumberPattern ParsePattern(std::string_view pattern) {
    NumberPattern p;
    std::size_t i = 0;
    while (i < pattern.size() && !IsPlaceholder(pattern[i]))
        TakeLiteral(pattern, i, p.prefix);
    for (; i < pattern.size() && IsPlaceholder(pattern[i]); ++i) {
        const char c = pattern[i];
        if (c == '.') {
            p.point = true;
        } else if (c == ',') {
            p.grouping = p.grouping || !p.point;
        } else if (!p.point) {
            p.wholeZeros += c == '0' ? 1 : 0;
        } else {
            ++p.decimalDigits;
            p.decimalZeros += c == '0' ? 1 : 0;
        }
    }
    while (i < pattern.size())
        TakeLiteral(pattern, i, p.suffix);
    return p;
}

// The value's decimal digits (no leading zeros) and the position of the point:
// value = 0.digits x 10^pointPosition, cut to 15 significant digits.
void DecimalDigits(double magnitude, std::string& digits, int& pointPosition) {
    digits.clear();
    pointPosition = 0;
    if (magnitude == 0.0)
        return;
    std::array<char, 64> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%.*e", kSignificantDigits - 1, magnitude);
    const std::string text(buffer.data());
    const std::size_t e = text.find('e');
    for (std::size_t k = 0; k < e; ++k)
        if (std::isdigit(static_cast<unsigned char>(text[k])))
            digits += text[k];
    pointPosition = std::stoi(text.substr(e + 1)) + 1;
}

// Rounds digits half away from zero so that `decimals` digits stay behind the point.
void RoundDigits(std::string& digits, int& pointPosition, int decimals) {
    const long keep = static_cast<long>(pointPosition) + decimals;
    if (keep >= static_cast<long>(digits.size()))
        return;
    if (keep < 0) {
        digits.clear();
        return;
    }
    const bool up = digits[static_cast<std::size_t>(keep)] >= '5';
    digits.resize(static_cast<std::size_t>(keep));
    if (!up)
        return;
    std::size_t k = digits.size();
    while (k > 0 && digits[k - 1] == '9') {
        digits[k - 1] = '0';
        --k;
    }
    if (k == 0) {
        digits.insert(digits.begin(), '1');
        ++pointPosition;
    } else {
        ++digits[k - 1];
    }
}

char DigitAt(const std::string& digits, long index) {
    if (index < 0 || index >= static_cast<long>(digits.size()))
        return '0';
    return digits[static_cast<std::size_t>(index)];
}

std::string Grouped(const std::string& whole) {
    std::string out;
    const std::size_t n = whole.size();
    for (std::size_t k = 0; k < n; ++k) {
        if (k > 0 && (n - k) % kDigitsPerGroup == 0)
            out += ',';
        out += whole[k];
    }
    return out;
}

std::string Strftime(const std::tm& tm, const char* format) {
    std::array<char, 256> buffer{};
    const std::size_t length = std::strftime(buffer.data(), buffer.size(), format, &tm);
    return std::string(buffer.data(), length);
}


} // namespace

std::string Format(double value, std::string_view pattern) {
    if (!std::isfinite(value) || pattern.empty()) // no pattern: the general form
        return Variant(value).ToString();
    const NumberPattern p = ParsePattern(pattern);

    std::string digits;
    int pointPosition = 0;
    DecimalDigits(std::fabs(value), digits, pointPosition);
    RoundDigits(digits, pointPosition, p.decimalDigits);

    std::string whole;
    for (long k = 0; k < pointPosition; ++k)
        whole += DigitAt(digits, k);
    const std::size_t firstNonZero = whole.find_first_not_of('0');
    whole = firstNonZero == std::string::npos ? std::string() : whole.substr(firstNonZero);
    if (static_cast<int>(whole.size()) < p.wholeZeros)
        whole.insert(0, static_cast<std::size_t>(p.wholeZeros) - whole.size(), '0');

    std::string decimals;
    for (int k = 0; k < p.decimalDigits; ++k)
        decimals += DigitAt(digits, static_cast<long>(pointPosition) + k);
    while (static_cast<int>(decimals.size()) > p.decimalZeros && decimals.back() == '0')
        decimals.pop_back();

    const bool zero = whole.find_first_not_of('0') == std::string::npos &&
                      decimals.find_first_not_of('0') == std::string::npos;
    std::string out = p.prefix;
    if (value < 0.0 && !zero)
        out += '-';
    out += p.grouping ? Grouped(whole) : whole;
    if (p.point)
        out += '.' + decimals;
    out += p.suffix;
    return out;
}

std::string Format(DateValue date, std::string_view pattern) {
    const std::tm tm = TmFromDate(date);
    if (EqualsNoCase(pattern, "long date"))
        return Strftime(tm, kLongDateFormat);
    if (EqualsNoCase(pattern, "long time"))
        return Strftime(tm, kTimeFormat);
    if (EqualsNoCase(pattern, "short date"))
        return Strftime(tm, kShortDateFormat);
    if (EqualsNoCase(pattern, "short time"))
        return Strftime(tm, kShortTimeFormat);
    if (EqualsNoCase(pattern, "general date"))
        return Variant(date).ToString();

    // Longest token first: "dddddd" before "ddddd".
    struct Token {
        std::string_view text;
        const char* format;
    };
    constexpr Token kTokens[] = {{"dddddd", kLongDateFormat}, {"ddddd", kShortDateFormat}, {"ttttt", kTimeFormat}};
    std::string out;
    for (std::size_t i = 0; i < pattern.size();) {
        const auto token = std::find_if(std::begin(kTokens), std::end(kTokens),
                                        [&](const Token& t) { return pattern.substr(i, t.text.size()) == t.text; });
        if (token != std::end(kTokens)) {
            out += Strftime(tm, token->format);
            i += token->text.size();
        } else {
            out += pattern[i++];
        }
    }
    return out;
}

} // namespace tess
