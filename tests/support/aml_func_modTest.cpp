#include "support/aml_func_mod.h"

#include <gtest/gtest.h>

#include <ostream>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "platform/data/Field.h"
#include "platform/system/Variant.h"
#include "TestSupport.h"

namespace tess {
namespace {

namespace fs = std::filesystem;

struct ParseCase {
    const char* text;
    const char* delimiter;
    std::vector<std::string> parts;
};

void PrintTo(const ParseCase& c, std::ostream* os) { *os << "'" << c.text << "' on '" << c.delimiter << "'"; }

class ParseStringTest : public ::testing::TestWithParam<ParseCase> {};

TEST_P(ParseStringTest, SplitsAsDescribed) {
    const ParseCase& c = GetParam();
    std::vector<std::string> parts;
    ParseString(c.text, parts, c.delimiter);
    EXPECT_EQ(parts, c.parts) << "text: " << c.text;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ParseStringTest,
    ::testing::Values(ParseCase{"a,b,c", ",", {"a", "b", "c"}},
                      ParseCase{"\"a,b\",c", ",", {"a,b", "c"}},            // quotes protect and vanish
                      ParseCase{" a , b ", ",", {"a", "b"}},                 // parts are trimmed
                      ParseCase{"abc", ",", {"abc"}},                        // no delimiter: one part
                      ParseCase{"a,,b", ",", {"a", "", "b"}},                // empty parts stay
                      ParseCase{"a,", ",", {"a", ""}},
                      ParseCase{"\"a,\",b", ",", {"a", "b"}},                // quoted trailing delimiter is cut
                      ParseCase{"\"x\"\"y\",z", ",", {"xy", "z"}},           // two pairs in a row
                      ParseCase{"\"open,b", ",", {"\"open,b"}},              // an unclosed quote never splits
                      ParseCase{"C:\\data\\x.shp", "\\", {"C:", "data", "x.shp"}}));

TEST(ParseString, OnlyDelimitersAndBlanksLeaveArrayUntouched) {
    std::vector<std::string> parts{"kept"};
    ParseString(" , ,, ", parts, ",");
    EXPECT_EQ(parts, std::vector<std::string>{"kept"});
    std::vector<std::string> empty;
    ParseString("", empty, ",");
    EXPECT_TRUE(empty.empty());
}

TEST(Subst, RemovesOrOverwritesEveryOccurrenceBeforeAfterTakeTheFirst) {
    EXPECT_EQ(Subst("a,b,,c", ","), "abc");
    EXPECT_EQ(Subst("aabb", "ab"), "");          // a cut can make a new match, which goes too
    EXPECT_EQ(Subst("a.b.c", ".", "_"), "a_b_c");
    EXPECT_EQ(Subst("xABy", "AB", "C"), "xCBy");  // overwritten in place: the tail of find stays
    EXPECT_EQ(Subst("xAB", "B", "CDE"), "xAC");   // the text keeps its length
    EXPECT_EQ(Subst("a.b", ".", "."), "a.b");     // a replacement holding `find` ends
    EXPECT_EQ(Subst("abc", "", "x"), "abc");
    EXPECT_EQ(After("key=value=2", "="), "value=2");
    EXPECT_EQ(Before("novalue", "="), "");
}

TEST(BasicTrimAvenue, RightEndFirstThenLeft) {
    EXPECT_EQ(BasicTrimAvenue("abc   ", "", " "), "abc");
    EXPECT_EQ(BasicTrimAvenue("xxaxx", "x", "x"), "a");
    EXPECT_EQ(BasicTrimAvenue("12.5000", "", "0"), "12.5");
    EXPECT_EQ(BasicTrimAvenue("aaaa", "a", "a"), "");
    EXPECT_EQ(BasicTrimAvenue(std::string("bob\0\0", 5), "", std::string(1, '\0')), "bob");
}

TEST(InsertCommas, GroupsTheWholePart) {
    EXPECT_EQ(InsertCommas(Variant(1234567.89)), "1,234,567.89");
    EXPECT_EQ(InsertCommas(Variant(123)), "123");
    EXPECT_EQ(InsertCommas(Variant(1000)), "1,000");
    EXPECT_EQ(InsertCommas(Variant(123456)), "123,456");
    EXPECT_EQ(InsertCommas(Variant(0.5)), "0.5");
    EXPECT_EQ(InsertCommas(Variant(std::string("98765"))), "98,765");
    // The sign counts as a character of the whole part, as the routine walks it.
    EXPECT_EQ(InsertCommas(Variant(-123)), "-,123");
}

struct PathCase {
    const char* path;
    const char* dir;
    const char* file;
    const char* clipped;
};

void PrintTo(const PathCase& c, std::ostream* os) { *os << "'" << c.path << "'"; }

class PathFunctionsTest : public ::testing::TestWithParam<PathCase> {};

TEST_P(PathFunctionsTest, BothSeparatorsJoinedWithSlash) {
    const PathCase& c = GetParam();
    EXPECT_EQ(ReturnDir(c.path), c.dir);
    EXPECT_EQ(ReturnFilename(c.path), c.file);
    EXPECT_EQ(ClipExtension(c.path), c.clipped);
}

INSTANTIATE_TEST_SUITE_P(Cases, PathFunctionsTest,
                         ::testing::Values(PathCase{"C:\\data\\x.shp", "C:/data/", "x.shp", "C:\\data\\x"},
                                           PathCase{"/home/u/roads.shp", "/home/u/", "roads.shp", "/home/u/roads"},
                                           PathCase{"/home/u\\mixed/a.b.c", "/home/u/mixed/", "a.b.c",
                                                    "/home/u\\mixed/a.b"},
                                           PathCase{"plain", "plain/", "plain", "plain"},
                                           PathCase{"/data/out/", "/data/out/", "", "/data/out/"},
                                           PathCase{"", "", "", ""}));

TEST(SetExtension, ReplacesTheLastDotPart) {
    EXPECT_EQ(SetExtension("name", "shp"), "name.shp");
    EXPECT_EQ(SetExtension("/tmp/out.dbf", "shp"), "/tmp/out.shp");
}

class FileFunctionsTest : public ::testing::Test {
protected:
    void SetUp() override {
        dir_ = fs::temp_directory_path() / ("tess_support_files_" + std::to_string(getpid()) + "_" +
                                            ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(dir_);
        fs::create_directories(dir_ / "folder.gdb");
        std::ofstream(dir_ / "roads.shp") << "x";
    }
    void TearDown() override { fs::remove_all(dir_); }
    std::string Path(const char* name) const { return (dir_ / name).string(); }
    fs::path dir_;
};

TEST_F(FileFunctionsTest, FilesAndFoldersAreToldApart) {
    EXPECT_TRUE(FileExists(Path("roads.shp")));
    EXPECT_FALSE(FileExists(Path("folder.gdb")));
    EXPECT_TRUE(ExistFileDir(Path("folder.gdb")));
    EXPECT_TRUE(ExistFileDir(Path("roads.shp")));
    EXPECT_FALSE(ExistFileDir(Path("missing.shp")));
    EXPECT_FALSE(FileExists(""));
}

TEST_F(FileFunctionsTest, UniqueNamesCountFromTwo) {
    EXPECT_EQ(MakeUniqueFilename(Path("free.shp")), Path("free.shp"));
    EXPECT_EQ(MakeUniqueFilename(Path("roads.shp")), Path("roads_2.shp"));
    std::ofstream(dir_ / "roads_2.shp") << "x";
    EXPECT_EQ(MakeUniqueFilename(Path("roads.shp")), Path("roads_3.shp"));
    EXPECT_EQ(MakeUniqueFilename(Path("folder.gdb")), Path("folder_2.gdb"));
    std::ofstream(dir_ / "data.backup") << "x"; // the "." is seven characters from the end
    EXPECT_EQ(MakeUniqueFilename(Path("data.backup")), Path("data.backup_2"));
}

TEST_F(FileFunctionsTest, FullFileStringResolvesOrGivesBack) {
    const std::string dotted = dir_.string() + "/folder.gdb/../roads.shp";
    EXPECT_EQ(GetFullFileString(dotted), fs::canonical(Path("roads.shp")).string());
    EXPECT_EQ(GetFullFileString(Path("nothing/here")), Path("nothing/here"));
}

TEST(FieldIsNumeric, FourNumberTypesOnly) {
    auto field = std::make_shared<Field>();
    const std::pair<esriFieldType, bool> cases[] = {
        {esriFieldTypeSmallInteger, true}, {esriFieldTypeInteger, true}, {esriFieldTypeSingle, true},
        {esriFieldTypeDouble, true},       {esriFieldTypeString, false}, {esriFieldTypeDate, false},
        {esriFieldTypeOID, false},         {esriFieldTypeGeometry, false}};
    for (const auto& [type, numeric] : cases) {
        field->Type(type);
        EXPECT_EQ(FieldIsNumeric(field), numeric) << "type " << type;
    }
    EXPECT_FALSE(FieldIsNumeric(nullptr));
}

class MxDocPathTest : public test::ExtensionUITest {};

TEST_F(MxDocPathTest, SavedDocumentOrTheDefaultTemplate) {
    EXPECT_EQ(GetMxDocPath(app_), Application::NormalTemplatePath());
    const fs::path dir = fs::temp_directory_path() / ("tess_support_doc_" + std::to_string(getpid()));
    fs::create_directories(dir);
    const std::string path = (dir / "demo.map.json").string();
    app_->SaveDocument(path);
    EXPECT_EQ(GetMxDocPath(app_), path);
    fs::remove_all(dir);
    EXPECT_EQ(GetMxDocPath(nullptr), "");
    EXPECT_EQ(ui_->Errors().size(), 1u); // no application: reported
}

TEST(GetTheUserName, GivesAName) {
    const std::string name = GetTheUserName();
    EXPECT_FALSE(name.empty());
    EXPECT_EQ(name.find('\0'), std::string::npos);
}

} // namespace
} // namespace tess
