#include "support/GeneralHelpers.h"

#include <gtest/gtest.h>

#include <ostream>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "platform/srs/SpatialReference.h"
#include "platform/ui/Form.h"
#include "support/QuickSort.h"
#include "TestSupport.h"

namespace tess {
namespace {

struct KeyCase {
    int key;
    const char* text;
    int caret;
    bool passesReal;
    bool passesPositive;
};

void PrintTo(const KeyCase& c, std::ostream* os) { *os << "key " << c.key << " on '" << c.text << "' at " << c.caret; }

class KeyFilterTest : public ::testing::TestWithParam<KeyCase> {};

TEST_P(KeyFilterTest, RefusedKeysBecomeZero) {
    const KeyCase& c = GetParam();
    Control box("txtValue", ControlKind::TextBox);
    box.Text = c.text;
    int real = c.key;
    CheckNumericReal(real, box, c.caret);
    EXPECT_EQ(real, c.passesReal ? c.key : 0) << "key " << c.key << " on '" << c.text << "'";
    int positive = c.key;
    CheckNumericRealPositive(positive, box, c.caret);
    EXPECT_EQ(positive, c.passesPositive ? c.key : 0) << "key " << c.key << " on '" << c.text << "'";
}

INSTANTIATE_TEST_SUITE_P(
    Keys, KeyFilterTest,
    ::testing::Values(KeyCase{8, "", kCaretAtEnd, true, true},      // backspace
                      KeyCase{3, "", kCaretAtEnd, true, true},      // control keys below 8 pass
                      KeyCase{9, "", kCaretAtEnd, false, false},    // 9..43 refused
                      KeyCase{13, "", kCaretAtEnd, false, false}, KeyCase{43, "", kCaretAtEnd, false, false},
                      KeyCase{44, "1", kCaretAtEnd, true, true},    // the comma passes on purpose
                      KeyCase{45, "", kCaretAtEnd, true, false},    // minus only for signed values
                      KeyCase{47, "", kCaretAtEnd, false, false}, KeyCase{48, "", kCaretAtEnd, true, true},
                      KeyCase{57, "", kCaretAtEnd, true, true}, KeyCase{58, "", kCaretAtEnd, false, false},
                      KeyCase{'a', "", kCaretAtEnd, false, false},
                      KeyCase{46, "1.5", kCaretAtEnd, false, false}, // a second point
                      KeyCase{46, "15", kCaretAtEnd, true, true}, KeyCase{46, "15", 1, true, true},
                      KeyCase{46, "1.5", 0, false, false},
                      KeyCase{46, "", kCaretAtEnd, false, false},    // "." alone is not numeric here
                      KeyCase{46, "-", kCaretAtEnd, false, false}));

struct TrimCase {
    double number;
    bool thousands;
    const char* text;
};

void PrintTo(const TrimCase& c, std::ostream* os) { *os << c.number << (c.thousands ? " grouped" : ""); }

class TrimZerosTest : public ::testing::TestWithParam<TrimCase> {};

TEST_P(TrimZerosTest, CutsTrailingZerosThenPoint) {
    const TrimCase& c = GetParam();
    EXPECT_EQ(TrimZerosAndDecimals(c.number, c.thousands), c.text);
}

INSTANTIATE_TEST_SUITE_P(Numbers, TrimZerosTest,
                         ::testing::Values(TrimCase{2.5, false, "2.5"}, TrimCase{3, false, "3"},
                                           TrimCase{100, false, "100"}, TrimCase{0, false, "0"},
                                           TrimCase{1234567.25, true, "1,234,567.25"},
                                           TrimCase{1234567.25, false, "1234567.25"},
                                           TrimCase{6378137.0, true, "6,378,137"},
                                           TrimCase{0.1, false, "0.1"}, TrimCase{-42.125, false, "-42.125"},
                                           TrimCase{6356752.31424518, false, "6356752.31424518"}));

class OpenDocTest : public test::ScriptedUITest {};

TEST_F(OpenDocTest, ExistingFileGoesToTheViewer) {
    const std::filesystem::path file =
        std::filesystem::temp_directory_path() / ("tess_manual_" + std::to_string(getpid()) + ".pdf");
    std::ofstream(file) << "%PDF";
    OpenDoc(file.string());
    std::filesystem::remove(file);
    EXPECT_EQ(ui_->Texts("open"), std::vector<std::string>{file.string()});
    EXPECT_TRUE(ui_->Messages().empty());
}

TEST_F(OpenDocTest, MissingFileShowsMessageAndOpensNothing) {
    OpenDoc("/nowhere/Tessarine_Manual.pdf");
    EXPECT_TRUE(ui_->Texts("open").empty());
    ASSERT_EQ(ui_->Messages().size(), 1u);
    EXPECT_EQ(ui_->Log()[0].title, "Missing File:");
    EXPECT_EQ(ui_->Messages()[0],
              "Unable to find the following file:\r\n\r\n/nowhere/Tessarine_Manual.pdf\r\n\r\nBailing out...");
}

// A reference that is equal to another when their codes match, and of equal precision
// when their resolutions match.
class FakeReference final : public ISpatialReference {
public:
    FakeReference(std::int32_t code, double resolution) : code_(code), resolution_(resolution) {}
    std::string Name() const override { return "Fake"; }
    std::int32_t FactoryCode() const override { return code_; }
    double XYTolerance() const override { return resolution_ * 10; }
    void XYTolerance(double) override {}
    std::int32_t XYToleranceValid() const override { return 3; }
    double XYResolution() const override { return resolution_; }
    void XYResolution(double resolution) override { resolution_ = resolution; }
    bool IsXYPrecisionEqual(const ISpatialReference& other) const override {
        return other.XYResolution() == resolution_;
    }
    void GetFalseOriginAndUnits(double& x, double& y, double& units) const override {
        x = y = 0;
        units = 1 / resolution_;
    }
    std::shared_ptr<ISpatialReference> Clone() const override { return std::make_shared<FakeReference>(*this); }
    bool IsEqual(const ISpatialReference& other) const override { return other.FactoryCode() == code_; }
    std::string ExportToESRI() const override { return {}; }

private:
    std::int32_t code_;
    double resolution_;
};

TEST(CompareSpatialReferences, NeedsSameSystemAndSamePrecision) {
    const auto wgs = std::make_shared<FakeReference>(4326, 1e-9);
    const auto wgsCoarse = std::make_shared<FakeReference>(4326, 1e-3);
    const auto utm = std::make_shared<FakeReference>(32633, 1e-9);
    EXPECT_TRUE(CompareSpatialReferences(wgs, std::make_shared<FakeReference>(4326, 1e-9)));
    EXPECT_FALSE(CompareSpatialReferences(wgs, wgsCoarse));
    EXPECT_FALSE(CompareSpatialReferences(wgs, utm));
    EXPECT_TRUE(CompareSpatialReferences(nullptr, nullptr));
    EXPECT_FALSE(CompareSpatialReferences(wgs, nullptr));
    EXPECT_FALSE(CompareSpatialReferences(nullptr, wgs));
}

TEST(StringsAscending, SortsTheRangeByBinaryOrder) {
    std::vector<std::string> items{"pear", "Apple", "apple", "banana", "", "Zebra", "apple"};
    StringsAscending(items, 0, static_cast<std::int32_t>(items.size()) - 1);
    EXPECT_EQ(items, (std::vector<std::string>{"", "Apple", "Zebra", "apple", "apple", "banana", "pear"}));
    std::vector<std::string> part{"d", "c", "b", "a"};
    StringsAscending(part, 1, 2);
    StringsAscending(part, 3, 3); // one element: nothing to do
    EXPECT_EQ(part, (std::vector<std::string>{"d", "b", "c", "a"}));
}

TEST(StringsAscending, LargeAdversarialInputsSortCorrectly) {
    // Reversed and all-equal inputs: the cases that break naive pivots or deep recursion.
    constexpr int kCount = 20000;
    std::vector<std::string> expected, reversed, equal(kCount, "same");
    for (int k = 0; k < kCount; ++k)
        expected.push_back(std::to_string(100000 + k));
    reversed.assign(expected.rbegin(), expected.rend());
    StringsAscending(reversed, 0, kCount - 1);
    StringsAscending(equal, 0, kCount - 1);
    EXPECT_EQ(reversed, expected);
    EXPECT_EQ(equal, std::vector<std::string>(kCount, "same"));
}

class StringsAscendingFaultTest : public test::ScriptedUITest {};

TEST_F(StringsAscendingFaultTest, RangeOutsideArrayIsReported) {
    std::vector<std::string> items{"b", "a"};
    StringsAscending(items, 0, 5);
    EXPECT_EQ(items, (std::vector<std::string>{"b", "a"}));
    ASSERT_EQ(ui_->Errors().size(), 1u);
    EXPECT_NE(ui_->Errors()[0].find("StringsAscending "), std::string::npos);
}

} // namespace
} // namespace tess
