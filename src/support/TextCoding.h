#pragma once
// Characters between UTF-8 (the system's text) and code page 1252 (the code page
// that the reports' RTF declares), for the RTF writer and renderer and for
// terminal output.

#include <array>
#include <string>
#include <string_view>

namespace tess::coding {

inline constexpr char32_t kReplacementCharacter = 0xFFFD;
inline constexpr char32_t kHighSurrogateFirst = 0xD800;
inline constexpr char32_t kLowSurrogateFirst = 0xDC00;
inline constexpr char32_t kSurrogateEnd = 0xE000;
inline constexpr char32_t kFirstAstral = 0x10000; //!< first code point beyond 16 bits
inline constexpr char32_t kLastCodePoint = 0x10FFFF;

// Code page 1252 at 0x80..0x9F; the rest of the page above ASCII equals Latin-1. Unused slots
// map to the replacement character.
inline constexpr std::array<char32_t, 32> kCp1252High = {
    0x20AC, 0xFFFD, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0xFFFD, 0x017D, 0xFFFD, 0xFFFD, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0xFFFD, 0x017E, 0x0178};
inline constexpr unsigned char kCp1252HighFirst = 0x80;
inline constexpr unsigned char kCp1252HighLast = 0x9F;
inline constexpr char32_t kLatin1Last = 0xFF;

inline char32_t FromCp1252(unsigned char byte) {
    if (byte >= kCp1252HighFirst && byte <= kCp1252HighLast)
        return kCp1252High[byte - kCp1252HighFirst];
    return byte;
}

//! The byte of code page 1252 for c (0x80..0xFF), or -1 when the page has no such character.
inline int ToCp1252(char32_t c) {
    if (c > kCp1252HighLast && c <= kLatin1Last)
        return static_cast<int>(c);
    if (c == kReplacementCharacter)
        return -1;
    for (std::size_t i = 0; i < kCp1252High.size(); ++i)
        if (kCp1252High[i] == c)
            return static_cast<int>(kCp1252HighFirst + i);
    return -1;
}

//! Decodes one well-formed UTF-8 sequence at text[i] into c and returns its length; 0 when the
//! bytes there are not one (overlong forms, surrogates and values past U+10FFFF included).
inline std::size_t DecodeUtf8(std::string_view text, std::size_t i, char32_t& c) {
    const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(text[k]); };
    const unsigned char lead = byte(i);
    std::size_t length = 0;
    char32_t minimum = 0;
    if (lead < 0x80) {
        c = lead;
        return 1;
    } else if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
        minimum = 0x80;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        minimum = 0x800;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        minimum = kFirstAstral;
    } else {
        return 0;
    }
    if (i + length > text.size())
        return 0;
    char32_t value = lead & (0x7F >> length);
    for (std::size_t k = 1; k < length; ++k) {
        if ((byte(i + k) & 0xC0) != 0x80)
            return 0;
        value = (value << 6) | (byte(i + k) & 0x3F);
    }
    if (value < minimum || value > kLastCodePoint || (value >= kHighSurrogateFirst && value < kSurrogateEnd))
        return 0;
    c = value;
    return length;
}

//! Appends c as UTF-8; surrogates and values past U+10FFFF become the replacement character.
inline void AppendUtf8(std::string& out, char32_t c) {
    if ((c >= kHighSurrogateFirst && c < kSurrogateEnd) || c > kLastCodePoint)
        c = kReplacementCharacter;
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < kFirstAstral) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

} // namespace tess::coding
