// Text of the system written into the reports' RTF, whose header declares code
// page 1252, and read back by the renderer: characters outside the code page as
// \uN escapes, the others as \'hh, and the way back to UTF-8.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "support/ReportTemplates.h"
#include "support/RtfRenderer.h"
#include "support/TextCoding.h"

namespace tess {
namespace {

// U+00FC and U+00DF are in the code page; U+6771 U+4EAC are not; U+1F600 needs a surrogate pair.
const std::string kZurich = "Z\xC3\xBCrich Stra\xC3\x9F" "e \xE6\x9D\xB1\xE4\xBA\xAC";
const std::string kEmoji = "\xF0\x9F\x98\x80";

bool IsAscii(const std::string& text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

//! A document of the reports' header with `body` as its one paragraph.
std::string Document(const std::string& body) { return std::string(kReportHeader) + "\\uc1 " + body + "\\par}"; }

TEST(RtfText, CodePageCharactersAsHexAndOthersAsSignedUnicode) {
    EXPECT_EQ(RtfText(kZurich + " " + kEmoji), R"(Z\'fcrich Stra\'dfe \u26481?\u20140? \u-10179?\u-8704?)");
    // Above 32767 N is negative; the euro sign and curly quotes are 0x80..0x9F of the code page.
    EXPECT_EQ(RtfText("\xED\x95\x9C"), R"(\u-10916?)");                    // U+D55C
    EXPECT_EQ(RtfText("\xE2\x82\xAC \xE2\x80\x9C"), R"(\'80 \'93)");        // U+20AC, U+201C
    EXPECT_EQ(RtfText("\xEF\xBF\xBF"), R"(\u-1?)");                         // U+FFFF
    EXPECT_EQ(RtfText("\xF4\x8F\xBF\xBF"), R"(\u-9217?\u-8193?)");          // U+10FFFF
    EXPECT_EQ(RtfText("\xC2\xA0\xC3\xBF"), R"(\'a0\'ff)");                  // the ends of Latin-1
}

TEST(RtfText, SyntaxCharactersLineBreaksAndControls) {
    EXPECT_EQ(RtfText(R"(C:\data\{a}.shp)"), R"(C:\\data\\\{a\}.shp)");
    EXPECT_EQ(RtfText("one\r\ntwo\nthree\rfour\tfive"), R"(one\line two\line three\line four\tab five)");
    // Other controls have nothing to show: C0, delete, and C1 (U+0085) written as UTF-8.
    EXPECT_EQ(RtfText(std::string("a\x01" "b\x7F" "c\xC2\x85" "d")), "abcd");
    // A byte that is not UTF-8 is a character of the code page.
    EXPECT_EQ(RtfText("caf\xE9"), R"(caf\'e9)");
}

TEST(RtfText, RoundTripsThroughTheRendererToUtf8) {
    for (const std::string& text :
         {kZurich, kEmoji, kZurich + " " + kEmoji + " {x} \\y\\", std::string("\xE2\x82\xAC\xC5\x93\xE2\x84\xA2")}) {
        const std::string rtf = Document(RtfText(text));
        EXPECT_TRUE(IsAscii(rtf)) << text;
        EXPECT_EQ(RtfToText(rtf), text + "\n");
        EXPECT_NE(RtfToHtml(rtf).find(text.substr(0, 8)), std::string::npos) << text;
    }
}

TEST(RtfText, EveryCharacterRoundTrips) {
    // Random characters from every plane that holds any, controls and surrogates left out:
    // whatever the writer makes of them, the renderer gives the same UTF-8 back.
    std::mt19937 random(20261123);
    std::uniform_int_distribution<std::uint32_t> codePoint(0x20, coding::kLastCodePoint);
    for (int round = 0; round < 200; ++round) {
        std::string text;
        while (text.size() < 60) {
            const char32_t c = codePoint(random) >> (random() % 12); // small values often
            const bool control = c < 0x20 || (c >= 0x7F && c < 0xA0);
            const bool surrogate = c >= coding::kHighSurrogateFirst && c < coding::kSurrogateEnd;
            if (!control && !surrogate)
                coding::AppendUtf8(text, c);
        }
        ASSERT_EQ(RtfToText(Document(RtfText(text))), text + "\n") << round;
    }
}

TEST(RtfWithCodePageEscapes, ARawReportBecomesAsciiAndReadsTheSame) {
    // A report whose names went in without escapes, as an older worker writes it.
    std::string raw = ReportFrameTemplate();
    raw = Replace(raw, "zzzTitle", "Vertices of " + kZurich);
    raw = Replace(raw, "zzzFields", "   1] " + kEmoji + "\\par");
    raw = Replace(raw, "zzzFilename", "/data/" + kZurich + ".shp") + "}";
    const std::string escaped = RtfWithCodePageEscapes(raw);
    EXPECT_TRUE(IsAscii(escaped));
    EXPECT_NE(escaped.find(R"(Vertices of Z\'fcrich Stra\'dfe \u26481?\u20140?)"), std::string::npos) << escaped;
    EXPECT_EQ(RtfToText(escaped), RtfToText(raw));
    EXPECT_NE(RtfToText(escaped).find("/data/" + kZurich + ".shp"), std::string::npos);
    EXPECT_EQ(RtfWithCodePageEscapes(escaped), escaped); // nothing left to escape
    const std::string ascii = R"({\rtf1 \{\\plain\} \'e9\u8364?\par})";
    EXPECT_EQ(RtfWithCodePageEscapes(ascii), ascii);
}

TEST(RtfToText, UnicodeSkipCountsAndBrokenSurrogates) {
    // \uc2: two stand-ins after each \u, which may be \'hh, plain characters or a control symbol.
    EXPECT_EQ(RtfToText(R"({\uc2\u26481\'3f\'3fA\u20140 ??B\u-10179\'3f\'3f\u-8704\~?C})"),
              "\xE6\x9D\xB1" "A\xE4\xBA\xAC" "B" + kEmoji + "C");
    // The skip count belongs to its group.
    EXPECT_EQ(RtfToText(R"({\uc3{\uc0\u252 x}\u252 abcd})"), "\xC3\xBCx\xC3\xBC" "d");
    // A high surrogate without its low half, and a low one alone, are unreadable, not lost.
    EXPECT_EQ(RtfToText(R"(\u-10179?x\u-8704?y\u-10179?\u-10179?\u-8704?)"),
              "\xEF\xBF\xBDx\xEF\xBF\xBDy\xEF\xBF\xBD" + kEmoji);
}

} // namespace
} // namespace tess
