#include "support/RtfRenderer.h"

#include <gtest/gtest.h>

#include <random>

#include "support/ReportTemplates.h"

namespace tess {
namespace {

bool Contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

TEST(RtfToText, ParagraphsEscapesAndDestinations) {
    const std::string rtf =
        R"({\rtf1\ansi{\fonttbl{\f0\fswiss Arial;}}{\*\generator Msftedit 5.41;}\pard\qc\b Title\b0\par)"
        "\r\n"
        R"(Braces \{ and \} and \\ stay\par caf\'e9 \u8364? na\u239\'efve\par a\tab b\line c\par })";
    EXPECT_EQ(RtfToText(rtf), "Title\nBraces { and } and \\ stay\ncafé € naïve\na\tb\nc\n");
}

TEST(RtfToText, UnknownWordsAndDestinationsAreSkipped) {
    const std::string rtf = R"({\rtf1{\colortbl;\red255\green0\blue0;}\madeupword12 text{\*\unknowndest hidden}\par})";
    EXPECT_EQ(RtfToText(rtf), "text\n");
}

TEST(RtfToText, UnbalancedBracesAreTolerated) {
    EXPECT_EQ(RtfToText(R"(}}a\par}}}b)"), "a\nb");
    EXPECT_EQ(RtfToText(R"({{{\b bold\par)"), "bold\n");
}

TEST(RtfToText, SurrogatePairsAndUcSkipCounts) {
    // U+1F600 as a surrogate pair; \uc2 makes two stand-in characters follow each \u.
    EXPECT_EQ(RtfToText(R"({\uc2\u-10179\'3f\'3f\u-8704xxy})"), "\xF0\x9F\x98\x80y");
    EXPECT_EQ(RtfToText(R"({\uc0\u233 e})"), "\xC3\xA9" "e");
}

TEST(RtfToText, RawUtf8PassesAndStrayBytesReadAsCodePage) {
    EXPECT_EQ(RtfToText("Stra\xC3\x9F" "e"), "Stra\xC3\x9F" "e");
    EXPECT_EQ(RtfToText("\x80 \xE9"), "\xE2\x82\xAC \xC3\xA9");
}

TEST(ParseRtf, FormatsFontsAndAlignment) {
    const RtfDocument doc =
        ParseRtf(R"({\rtf1\deff0{\fonttbl{\f0\fswiss\fprq2\fcharset0 Arial;}{\f1 Courier New;}})"
                 R"(\pard\qc\b\fs17 Head\b0\par\pard\i\f1 body {\ul under}\i0 plain\par})");
    ASSERT_EQ(doc.fonts.size(), 2u);
    EXPECT_EQ(doc.FontName(0), "Arial");
    EXPECT_EQ(doc.FontName(1), "Courier New");
    ASSERT_EQ(doc.paragraphs.size(), 2u);
    EXPECT_EQ(doc.paragraphs[0].alignment, RtfAlignment::Center);
    ASSERT_EQ(doc.paragraphs[0].runs.size(), 1u);
    EXPECT_TRUE(doc.paragraphs[0].runs[0].bold);
    EXPECT_EQ(doc.paragraphs[0].runs[0].fontSize, 17);
    const auto& runs = doc.paragraphs[1].runs;
    EXPECT_EQ(doc.paragraphs[1].alignment, RtfAlignment::Left);
    ASSERT_EQ(runs.size(), 3u);
    EXPECT_EQ(runs[0].text, "body ");
    EXPECT_TRUE(runs[0].italic);
    EXPECT_EQ(runs[0].font, 1);
    EXPECT_TRUE(runs[1].underline);
    EXPECT_EQ(runs[2].text, "plain"); // the blank after \i0 belongs to the control word
    EXPECT_FALSE(runs[2].italic);
    EXPECT_FALSE(runs[2].underline); // the group ended the underline
}

TEST(RtfToHtml, AlignmentFormatsAndEscaping) {
    const std::string html =
        RtfToHtml(R"({\rtf1\deff0{\fonttbl{\f0 Arial;}}\pard\qc\b\fs17 A <b> & "c"\b0\par\par\pard\i x\par})");
    EXPECT_TRUE(Contains(html, "font-family:'Arial'"));
    EXPECT_TRUE(Contains(html, "text-align:center\"><span style=\"font-size:8.5pt\"><b>A &lt;b&gt; &amp; "
                               "&quot;c&quot;</b></span></p>"));
    EXPECT_TRUE(Contains(html, "<br></p>"));  // the empty paragraph keeps its line
    EXPECT_TRUE(Contains(html, "text-align:left\"><span style=\"font-size:8.5pt\"><i>x</i></span>"));
}

// A report as a worker builds it: the shared frame with its placeholders filled, and the
// timing block that closes the outermost group.
std::string FilledFrame() {
    std::string rtf = ReportFrameTemplate();
    rtf = Replace(rtf, "zzzTitle", "Graphics to Polygons");
    rtf = Replace(rtf, "zzzNumRecs", "1,204");
    rtf = Replace(rtf, "zzzComment", R"(   Created from 1,204 graphic elements\par)");
    rtf = Replace(rtf, "zzzOptionTitle", "Feature Class Option:");
    rtf = Replace(rtf, "zzzOption", "Polygons from graphics");
    rtf = Replace(rtf, "zzzFields", R"(   Name\par)" "\r\n" R"(   Area\par)");
    rtf = Replace(rtf, "zzzFilename", "/data/out/poly.shp");
    return rtf;
}

TEST(ReportRendering, SharedFrameToText) {
    const DateValue begin{45356.5};         // 2024-03-05 12:00:00
    const DateValue end{45356.5 + 61.0 / 86400.0};
    const std::string rtf = FilledFrame() + std::string(kReportLineBreak) + ReturnTimeElapsedRTF(begin, end, 8) + "}";
    EXPECT_EQ(RtfToText(rtf),
              "Graphics to Polygons\n"
              "   1,204 Records\n"
              "   Created from 1,204 graphic elements\n"
              "------------------------------------------------------------------------\n"
              "Feature Class Option:\n"
              "   Polygons from graphics\n"
              "Attribute Fields:\n"
              "   Name\n"
              "   Area\n"
              "Shapefile saved to:\n"
              "   /data/out/poly.shp\n"
              "Analysis Began:   Tuesday, March 05, 2024 at 12:00:00\n"
              "Analysis Complete:   Tuesday, March 05, 2024 at 12:01:01\n"
              "Time Elapsed:   1 minute, 1 second...\n");
}

TEST(ReportRendering, SharedFrameToHtml) {
    const std::string html = RtfToHtml(FilledFrame() + "}");
    EXPECT_TRUE(Contains(html, "text-align:center\"><span style=\"font-size:8.5pt\"><b>Graphics to Polygons</b>"));
    EXPECT_TRUE(Contains(html, "<b>Feature Class Option:</b>"));
    EXPECT_TRUE(Contains(html, "<b>Shapefile saved to:</b>"));
    EXPECT_TRUE(Contains(html, "   /data/out/poly.shp"));
    EXPECT_FALSE(Contains(html, "zzz"));
    EXPECT_FALSE(Contains(html, "Msftedit")); // the generator destination is not text
}

TEST(ReportRendering, ConversionLinesAndTimingBlockToHtml) {
    std::string rtf = std::string(kReportHeader) + "\r\n" +
                      R"({\*\generator Msftedit 5.41.15.1507;}\viewkind4\uc1\pard\qc\b\f0\fs16 Shapes to Vertices Successful:\par)" +
                      "\r\n" + R"(\pard ---------------------------------------------\par)" + "\r\n" +
                      R"(Input Parameters:\b0\par)";
    for (std::string_view line : {kReportInputLayerLine, kReportDoAllLine, kReportFieldReport, kReportFilenameLine,
                                  kReportSpRefLine, kReportNumRecsLine, kReportProbReport})
        rtf += "\r\n" + std::string(line);
    rtf += "\r\n" + ReturnTimeElapsedRTF(DateValue{45356.5}, DateValue{45356.5 + 3600.0 / 86400.0}, 8) + "\r\n}";
    rtf = Replace(rtf, "zzzFClass", "roads");
    rtf = Replace(rtf, "zzzDoAll", "Converted All Features (n = 3)");
    rtf = Replace(rtf, "zzzFieldReport", R"(       1] NAME\par)");
    rtf = Replace(rtf, "zzzFilename", "Saved to: /tmp/v.shp");
    rtf = Replace(rtf, "zzzSpRef", "Spatial Reference:  GCS_WGS_1984");
    rtf = Replace(rtf, "zzzNumRecs", "Contains 12 points");
    rtf = Replace(rtf, "zzzProbReport", "");
    const std::string text = RtfToText(rtf);
    EXPECT_TRUE(Contains(text, "  ** Input Feature Layer: roads\n"));
    EXPECT_TRUE(Contains(text, "       1] NAME\n"));
    EXPECT_TRUE(Contains(text, "Time Elapsed:   1 hour, 0 minutes, 0 seconds...\n"));
    const std::string html = RtfToHtml(rtf);
    // The timing block: 8 pt headings in bold, the values in italics.
    EXPECT_TRUE(Contains(html, "<span style=\"font-size:8pt\"><b>Analysis Began:</b></span>"));
    EXPECT_TRUE(Contains(html, "<span style=\"font-size:8pt\"><i>   Tuesday, March 05, 2024 at 12:00:00</i></span>"));
}

TEST(RtfRobustness, RandomAndTruncatedInputNeverFails) {
    // Fixed seed: the same thousands of cases on every run.
    std::mt19937 random(20240305);
    const std::string report = FilledFrame() + ReturnTimeElapsedRTF(DateValue{45356.5}, DateValue{45357.0}, 8) + "}";
    const std::string alphabet = "{}\\'*uc0123456789-abfiqprt ;\r\n\x80\xC3\xA9\xFF?";
    constexpr int kCases = 4000;
    constexpr std::size_t kMaxRandomLength = 400;
    std::size_t totalOutput = 0;
    for (int n = 0; n < kCases; ++n) {
        std::string input;
        switch (n % 4) {
        case 0: // a report cut anywhere
            input = report.substr(0, random() % (report.size() + 1));
            break;
        case 1: { // a report with bytes changed
            input = report;
            for (int k = 0; k < 8; ++k)
                input[random() % input.size()] = static_cast<char>(random() % 256);
            break;
        }
        case 2: { // strings over the characters that matter to the parser
            const std::size_t length = random() % kMaxRandomLength;
            for (std::size_t k = 0; k < length; ++k)
                input += alphabet[random() % alphabet.size()];
            break;
        }
        default: { // any bytes at all
            const std::size_t length = random() % kMaxRandomLength;
            for (std::size_t k = 0; k < length; ++k)
                input += static_cast<char>(random() % 256);
            break;
        }
        }
        const std::string text = RtfToText(input);
        const std::string html = RtfToHtml(input);
        totalOutput += text.size() + html.size();
        ASSERT_TRUE(Contains(html, "</body></html>")) << "case " << n;
    }
    EXPECT_GT(totalOutput, 0u);
}

TEST(RtfRobustness, DeepNestingAndHugeParameters) {
    const std::string deep = std::string(100000, '{') + "x" + std::string(50000, '}');
    EXPECT_EQ(RtfToText(deep), "x");
    EXPECT_EQ(RtfToText(R"(\fs99999999999999999999 a\u99999999999 \u-99999999999 b\uc99999999 c)"), "a\xEF\xBF\xBD" "c");
}

} // namespace
} // namespace tess
