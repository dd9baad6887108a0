#include "support/RtfRenderer.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <limits>

#include "support/TextCoding.h"

namespace tess {
namespace {

constexpr int kDefaultFontSize = 24;         // half-points: 12 pt
constexpr int kMaxFontSize = 3276;           // half-points; larger sizes are noise, not text
constexpr std::size_t kMaxControlWordLength = 32;
constexpr int kMaxUnicodeSkip = 16;          // \ucN beyond this only eats text
constexpr int kHalfPointsPerPoint = 2;

constexpr char32_t kNoBreakSpace = 0x00A0;
constexpr char32_t kNoBreakHyphen = 0x2011;
constexpr std::int32_t kUnicodeWrap = 65536; // \u takes signed 16-bit values

using coding::AppendUtf8;
using coding::FromCp1252;
using coding::kHighSurrogateFirst;
using coding::kLowSurrogateFirst;
using coding::kSurrogateEnd;

enum class Destination { Text, Skip, FontTable };

struct CharFormat {
    bool bold = false;
    bool italic = false;
    bool underline = false;
    int fontSize = kDefaultFontSize;
    int font = -1;
    friend bool operator==(const CharFormat&, const CharFormat&) = default;
};

struct GroupState {
    CharFormat chars;
    RtfAlignment alignment = RtfAlignment::Left;
    Destination destination = Destination::Text;
    int unicodeSkip = 1; // \uc: characters that stand in for each \u
};

int HexValue(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

bool IsAsciiLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool IsAsciiDigit(char c) { return c >= '0' && c <= '9'; }

// Destinations whose content is not text of the document.
bool IsSkippedDestination(std::string_view word) {
    static constexpr std::string_view kSkipped[] = {
        "colortbl", "stylesheet", "info", "pict", "object", "header", "headerl", "headerr", "headerf",
        "footer", "footerl", "footerr", "footerf", "footnote", "listtable", "listoverridetable",
        "rsidtbl", "xmlnstbl", "themedata", "colorschememapping", "latentstyles", "datastore",
        "fldinst", "generator", "filetbl", "revtbl", "pgdsctbl", "bkmkstart", "bkmkend", "nonshppict",
        "shppict", "private", "template", "mmathPr", "operator", "author", "title", "subject"};
    return std::find(std::begin(kSkipped), std::end(kSkipped), word) != std::end(kSkipped);
}

class Parser {
public:
    explicit Parser(std::string_view rtf) : rtf_(rtf) { stack_.emplace_back(); }

    RtfDocument Run() {
        while (i_ < rtf_.size()) {
            const char c = rtf_[i_];
            if (c == '{') {
                ++i_;
                skip_ = 0;
                stack_.push_back(stack_.back());
            } else if (c == '}') {
                ++i_;
                skip_ = 0;
                CloseGroup();
            } else if (c == '\\') {
                ++i_;
                ControlSequence();
            } else if (c == '\r' || c == '\n' || c == '\0') {
                ++i_; // line ends of the source are not text
            } else {
                TextByte();
            }
        }
        FlushFontName();
        if (!paragraph_.runs.empty()) {
            paragraph_.alignment = State().alignment;
            paragraph_.closed = false;
            doc_.paragraphs.push_back(std::move(paragraph_));
        }
        return std::move(doc_);
    }

private:
    GroupState& State() { return stack_.back(); }

    void CloseGroup() {
        if (State().destination == Destination::FontTable)
            FlushFontName();
        if (stack_.size() > 1) // a stray closing brace is ignored
            stack_.pop_back();
    }

    void ControlSequence() {
        if (i_ >= rtf_.size())
            return;
        const char c = rtf_[i_];
        if (IsAsciiLetter(c)) {
            ControlWord();
            return;
        }
        ++i_;
        switch (c) {
        case '\'': {
            const int high = i_ < rtf_.size() ? HexValue(rtf_[i_]) : -1;
            const int low = i_ + 1 < rtf_.size() ? HexValue(rtf_[i_ + 1]) : -1;
            if (high < 0 || low < 0)
                return;
            i_ += 2;
            Emit(FromCp1252(static_cast<unsigned char>(high * 16 + low)), true);
            return;
        }
        case '\\':
        case '{':
        case '}':
            Emit(static_cast<unsigned char>(c), true);
            return;
        case '~':
            Emit(kNoBreakSpace, true);
            return;
        case '_':
            Emit(kNoBreakHyphen, true);
            return;
        case '*':
            State().destination = Destination::Skip;
            return;
        case '\r':
        case '\n':
            if (!Skipping())
                EndParagraph();
            return;
        default:
            // "\-" (optional hyphen), "\:" and unknown symbols show nothing, but may stand in for \u.
            if (skip_ > 0)
                --skip_;
            return;
        }
    }

    void ControlWord() {
        const std::size_t start = i_;
        while (i_ < rtf_.size() && IsAsciiLetter(rtf_[i_]))
            ++i_;
        const std::string_view word = rtf_.substr(start, std::min(i_ - start, kMaxControlWordLength));
        bool hasParameter = false;
        bool negative = false;
        std::int64_t parameter = 0;
        if (i_ < rtf_.size() && rtf_[i_] == '-' && i_ + 1 < rtf_.size() && IsAsciiDigit(rtf_[i_ + 1])) {
            negative = true;
            ++i_;
        }
        while (i_ < rtf_.size() && IsAsciiDigit(rtf_[i_])) {
            hasParameter = true;
            if (parameter <= std::numeric_limits<std::int32_t>::max())
                parameter = parameter * 10 + (rtf_[i_] - '0');
            ++i_;
        }
        if (i_ < rtf_.size() && rtf_[i_] == ' ')
            ++i_; // the delimiting blank belongs to the control word
        parameter = std::min<std::int64_t>(parameter, std::numeric_limits<std::int32_t>::max());
        const int value = static_cast<int>(negative ? -parameter : parameter);
        Word(word, hasParameter, value);
    }

    bool Skipping() const { return stack_.back().destination == Destination::Skip; }

    void Word(std::string_view word, bool hasParameter, int value) {
        if (word == "u") {
            Unicode(value);
            return;
        }
        if (skip_ > 0) { // a control word stands in for a \u character
            --skip_;
            return;
        }
        if (Skipping())
            return;
        if (word == "fonttbl") {
            State().destination = Destination::FontTable;
            return;
        }
        if (IsSkippedDestination(word)) {
            State().destination = Destination::Skip;
            return;
        }
        if (State().destination == Destination::FontTable) {
            if (word == "f" && hasParameter) {
                FlushFontName();
                fontNumber_ = value;
                fontName_.clear();
            }
            return;
        }
        CharFormat& chars = State().chars;
        const bool on = !hasParameter || value != 0;
        if (word == "par" || word == "sect" || word == "page" || word == "row") {
            EndParagraph();
        } else if (word == "pard") {
            State().alignment = RtfAlignment::Left;
        } else if (word == "plain") {
            chars = CharFormat{};
        } else if (word == "b") {
            chars.bold = on;
        } else if (word == "i") {
            chars.italic = on;
        } else if (word == "ul") {
            chars.underline = on;
        } else if (word == "ulnone") {
            chars.underline = false;
        } else if (word == "fs") {
            if (hasParameter && value > 0)
                chars.fontSize = std::min(value, kMaxFontSize);
        } else if (word == "f") {
            if (hasParameter)
                chars.font = value;
        } else if (word == "deff") {
            if (hasParameter)
                doc_.defaultFont = value;
        } else if (word == "qc") {
            State().alignment = RtfAlignment::Center;
        } else if (word == "ql") {
            State().alignment = RtfAlignment::Left;
        } else if (word == "qr") {
            State().alignment = RtfAlignment::Right;
        } else if (word == "qj") {
            State().alignment = RtfAlignment::Justify;
        } else if (word == "uc") {
            if (hasParameter)
                State().unicodeSkip = std::clamp(value, 0, kMaxUnicodeSkip);
        } else if (word == "line") {
            Emit(U'\n', false);
        } else if (word == "tab" || word == "cell") {
            Emit(U'\t', false);
        } else if (word == "emdash") {
            Emit(0x2014, false);
        } else if (word == "endash") {
            Emit(0x2013, false);
        } else if (word == "bullet") {
            Emit(0x2022, false);
        } else if (word == "lquote") {
            Emit(0x2018, false);
        } else if (word == "rquote") {
            Emit(0x2019, false);
        } else if (word == "ldblquote") {
            Emit(0x201C, false);
        } else if (word == "rdblquote") {
            Emit(0x201D, false);
        } else if (word == "enspace" || word == "emspace" || word == "qmspace") {
            Emit(U' ', false);
        }
        // Every other control word is formatting we do not render.
    }

    void Unicode(int value) {
        std::int32_t code = value;
        if (code < 0)
            code += kUnicodeWrap;
        const auto c = static_cast<char32_t>(std::max<std::int32_t>(code, 0));
        if (c >= kHighSurrogateFirst && c < kLowSurrogateFirst) {
            Emit(c, false); // a high surrogate that waited in vain shows as such
            highSurrogate_ = c;
        } else if (c >= kLowSurrogateFirst && c < kSurrogateEnd && highSurrogate_ != 0) {
            const char32_t combined =
                coding::kFirstAstral + ((highSurrogate_ - kHighSurrogateFirst) << 10) + (c - kLowSurrogateFirst);
            highSurrogate_ = 0;
            Emit(combined, false);
        } else {
            Emit(c, false);
        }
        skip_ = State().unicodeSkip;
    }

    // Raw text is read as UTF-8, the system's own text; bytes that are not UTF-8 as code page 1252.
    void TextByte() {
        char32_t c = 0;
        const std::size_t length = coding::DecodeUtf8(rtf_, i_, c);
        if (length == 0) {
            Emit(FromCp1252(static_cast<unsigned char>(rtf_[i_++])), true);
            return;
        }
        i_ += length;
        Emit(c, true);
    }

    // One character of the document. `countsForSkip`: plain characters and \'hh
    // may be the stand-ins that follow a \u, and are then dropped.
    void Emit(char32_t c, bool countsForSkip) {
        if (countsForSkip && skip_ > 0) {
            --skip_;
            return;
        }
        if (highSurrogate_ != 0) {
            // Any character but its low half leaves a high surrogate alone: it shows as unreadable.
            highSurrogate_ = 0;
            Emit(coding::kReplacementCharacter, false);
        }
        if (c >= kHighSurrogateFirst && c < kLowSurrogateFirst)
            return; // held until the next character tells whether it pairs
        switch (State().destination) {
        case Destination::Skip:
            return;
        case Destination::FontTable:
            if (c == U';')
                FlushFontName();
            else
                AppendUtf8(fontName_, c);
            return;
        case Destination::Text:
            break;
        }
        if (c < U' ' && c != U'\t' && c != U'\n')
            return;
        const CharFormat& chars = State().chars;
        if (paragraph_.runs.empty() || !SameFormat(paragraph_.runs.back(), chars)) {
            RtfRun run;
            run.bold = chars.bold;
            run.italic = chars.italic;
            run.underline = chars.underline;
            run.fontSize = chars.fontSize;
            run.font = chars.font;
            paragraph_.runs.push_back(std::move(run));
        }
        AppendUtf8(paragraph_.runs.back().text, c);
    }

    static bool SameFormat(const RtfRun& run, const CharFormat& chars) {
        return run.bold == chars.bold && run.italic == chars.italic && run.underline == chars.underline &&
               run.fontSize == chars.fontSize && run.font == chars.font;
    }

    void EndParagraph() {
        paragraph_.alignment = State().alignment;
        paragraph_.closed = true;
        doc_.paragraphs.push_back(std::move(paragraph_));
        paragraph_ = RtfParagraph{};
    }

    void FlushFontName() {
        if (fontNumber_ == kNoFont)
            return;
        std::string name = fontName_;
        const std::size_t first = name.find_first_not_of(' ');
        const std::size_t last = name.find_last_not_of(' ');
        name = first == std::string::npos ? std::string() : name.substr(first, last - first + 1);
        auto existing = std::find_if(doc_.fonts.begin(), doc_.fonts.end(),
                                     [&](const RtfFont& f) { return f.number == fontNumber_; });
        if (existing == doc_.fonts.end())
            doc_.fonts.push_back({fontNumber_, name});
        else if (!name.empty())
            existing->name = name;
        fontNumber_ = kNoFont;
        fontName_.clear();
    }

    static constexpr int kNoFont = std::numeric_limits<int>::min();

    std::string_view rtf_;
    std::size_t i_ = 0;
    std::vector<GroupState> stack_;
    RtfDocument doc_;
    RtfParagraph paragraph_;
    int skip_ = 0;
    char32_t highSurrogate_ = 0;
    int fontNumber_ = kNoFont;
    std::string fontName_;
};

void AppendEscaped(std::string& out, const std::string& text) {
    for (const char c : text) {
        switch (c) {
        case '&': out += "&amp;"; break;
        case '<': out += "&lt;"; break;
        case '>': out += "&gt;"; break;
        case '"': out += "&quot;"; break;
        case '\n': out += "<br>"; break;
        default: out += c; break;
        }
    }
}

// Font names go into a CSS string: keep the characters a font name needs.
std::string CssFontName(const std::string& name) {
    std::string out;
    for (const char c : name)
        if (std::isalnum(static_cast<unsigned char>(c)) || c == ' ' || c == '-' || c == '_')
            out += c;
    return out;
}

const char* AlignmentCss(RtfAlignment alignment) {
    switch (alignment) {
    case RtfAlignment::Center: return "center";
    case RtfAlignment::Right: return "right";
    case RtfAlignment::Justify: return "justify";
    case RtfAlignment::Left: break;
    }
    return "left";
}

std::string PointSize(int halfPoints) {
    std::string out = std::to_string(halfPoints / kHalfPointsPerPoint);
    if (halfPoints % kHalfPointsPerPoint != 0)
        out += ".5";
    return out;
}

} // namespace

std::string RtfDocument::FontName(int number) const {
    for (const RtfFont& f : fonts)
        if (f.number == number)
            return f.name;
    return {};
}

RtfDocument ParseRtf(std::string_view rtf) { return Parser(rtf).Run(); }

std::string RtfToText(std::string_view rtf) {
    const RtfDocument doc = ParseRtf(rtf);
    std::string out;
    for (const RtfParagraph& p : doc.paragraphs) {
        for (const RtfRun& run : p.runs)
            out += run.text;
        if (p.closed)
            out += '\n';
    }
    return out;
}

std::string RtfToHtml(std::string_view rtf) {
    const RtfDocument doc = ParseRtf(rtf);
    const std::string defaultFont = CssFontName(doc.FontName(doc.defaultFont));
    std::string out = "<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"></head>\n<body";
    if (!defaultFont.empty())
        out += " style=\"font-family:'" + defaultFont + "'\"";
    out += ">\n";
    for (const RtfParagraph& p : doc.paragraphs) {
        out += "<p style=\"margin:0;white-space:pre-wrap;text-align:";
        out += AlignmentCss(p.alignment);
        out += "\">";
        bool any = false;
        for (const RtfRun& run : p.runs) {
            if (run.text.empty())
                continue;
            any = true;
            out += "<span style=\"font-size:" + PointSize(run.fontSize) + "pt";
            const std::string font = run.font >= 0 ? CssFontName(doc.FontName(run.font)) : std::string();
            if (!font.empty() && font != defaultFont)
                out += ";font-family:'" + font + "'";
            out += "\">";
            if (run.bold)
                out += "<b>";
            if (run.italic)
                out += "<i>";
            if (run.underline)
                out += "<u>";
            AppendEscaped(out, run.text);
            if (run.underline)
                out += "</u>";
            if (run.italic)
                out += "</i>";
            if (run.bold)
                out += "</b>";
            out += "</span>";
        }
        if (!any)
            out += "<br>";
        out += "</p>\n";
    }
    out += "</body></html>\n";
    return out;
}

} // namespace tess
