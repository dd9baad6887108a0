// The report of a run whose names and paths hold characters outside code page
// 1252: the RTF written with --report is ASCII with escapes, and the report
// printed on the terminal is UTF-8.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "CliTestSupport.h"
#include "support/RtfRenderer.h"

namespace tess::test {
namespace {

namespace fs = std::filesystem;

TEST(ReportEncoding, NamesAndPathsOutsideTheCodePageAreEscapedInTheRtfAndUtf8OnTheTerminal) {
    TempDir dir;
    CopyDemoData(dir.Path());
    // A layer name with braces (RTF's own syntax), Latin-1, CJK and an emoji; a folder named alike.
    const std::string layer = "Z\xC3\xBCrich {Stra\xC3\x9F" "e} \xE6\x9D\xB1\xE4\xBA\xAC \xF0\x9F\x98\x80";
    const std::string folder = "Stra\xC3\x9F" "e \xE6\x9D\xB1\xE4\xBA\xAC";
    fs::create_directories(dir.Path() / folder);
    const std::string output = (dir.Path() / folder / "v.shp").string();
    const ProcessResult run =
        RunTessarine({"vertices", "--layer", (dir.Path() / "data" / "demo" / "parcels.shp").string() + ":" + layer,
                      "--output", output, "--all-fields", "--report", dir / "report.rtf"},
                     dir.Path());
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.out.find("Input Feature Layer: " + layer), std::string::npos) << run.out;
    EXPECT_NE(run.out.find(output), std::string::npos) << run.out;

    std::ifstream file(dir / "report.rtf", std::ios::binary);
    const std::string rtf((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    EXPECT_EQ(rtf.rfind(R"({\rtf1\ansi\ansicpg1252)", 0), 0u);
    EXPECT_TRUE(std::all_of(rtf.begin(), rtf.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; }))
        << rtf;
    EXPECT_NE(rtf.find(R"(Input Feature Layer: Z\'fcrich \{Stra\'dfe\} \u26481?\u20140? \u-10179?\u-8704?)"),
              std::string::npos)
        << rtf;
    EXPECT_NE(rtf.find(R"(Stra\'dfe \u26481?\u20140?/v.shp)"), std::string::npos) << rtf;
    // Read back, the file says what the terminal said.
    const std::string text = RtfToText(rtf);
    EXPECT_NE(text.find("Input Feature Layer: " + layer), std::string::npos) << text;
    EXPECT_NE(text.find(output), std::string::npos) << text;
}

} // namespace
} // namespace tess::test
