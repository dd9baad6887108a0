#include "support/Format.h"

#include <gtest/gtest.h>

#include <ostream>

#include "platform/system/DateTime.h"

namespace tess {
namespace {

struct NumberCase {
    double value;
    const char* pattern;
    const char* text;
};

void PrintTo(const NumberCase& c, std::ostream* os) { *os << c.value << " as '" << c.pattern << "'"; }

class FormatNumberTest : public ::testing::TestWithParam<NumberCase> {};

TEST_P(FormatNumberTest, MatchesTheHost) {
    const NumberCase& c = GetParam();
    EXPECT_EQ(Format(c.value, c.pattern), c.text) << c.value << " with " << c.pattern;
}

INSTANTIATE_TEST_SUITE_P(
    Patterns, FormatNumberTest,
    ::testing::Values(NumberCase{5, "00", "05"}, NumberCase{59, "00", "59"}, NumberCase{123, "00", "123"},
                      NumberCase{-5, "00", "-05"}, NumberCase{3.14159, "0.00", "3.14"},
                      NumberCase{2.5, "0", "3"},            // half away from zero
                      NumberCase{-2.5, "0", "-3"}, NumberCase{0.125, "0.00", "0.13"},
                      NumberCase{2.675, "0.00", "2.68"},    // decimal rounding of the 15-digit value
                      NumberCase{1234567.891, "#,##0", "1,234,568"}, NumberCase{999.5, "#,##0", "1,000"},
                      NumberCase{0, "#,##0", "0"}, NumberCase{0.5, "#.00", ".50"},
                      NumberCase{3, "0.###", "3."},         // the point always shows
                      NumberCase{0.1, "0.000000000000000", "0.100000000000000"},
                      NumberCase{1.0 / 3.0, "0.000000000000000000", "0.333333333333333000"},
                      NumberCase{12345.678, "#,##0.000000000000000", "12,345.678000000000000"},
                      NumberCase{-0.001, "0.00", "0.00"},   // rounds to zero: no sign
                      NumberCase{0.0001, "0.#############", "0.0001"},
                      NumberCase{42, "\"n = \"0", "n = 42"}, NumberCase{7, "0 \\m", "7 m"}));

TEST(FormatDate, TokensAndNamedFormatsFromTheCLocale) {
    const DateValue date = DateFromCalendar({2024, 3, 5, 14, 7, 9.0});
    EXPECT_EQ(Format(date, "ttttt"), "14:07:09");
    EXPECT_EQ(Format(date, "ddddd"), "03/05/24");
    EXPECT_EQ(Format(date, "ttttt,  ddddd"), "14:07:09,  03/05/24");
    EXPECT_EQ(Format(date, "ddddd ttttt"), "03/05/24 14:07:09");
    EXPECT_EQ(Format(date, "Long Date"), "Tuesday, March 05, 2024");
    EXPECT_EQ(Format(date, "long time"), "14:07:09");
    EXPECT_EQ(Format(date, "dddddd"), "Tuesday, March 05, 2024");
}

} // namespace
} // namespace tess
