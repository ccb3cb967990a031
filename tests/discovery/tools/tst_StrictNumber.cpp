// SPDX-License-Identifier: MIT
#include "Printers.h"
#include "StrictNumber.h"

#include <gtest/gtest.h>

#include <limits>

namespace portolan {

using namespace Qt::StringLiterals;

TEST(StrictInteger, TakesASignAndDigits)
{
    EXPECT_EQ(StrictNumber::toInt64(u"0"), 0);
    EXPECT_EQ(StrictNumber::toInt64(u"80"), 80);
    EXPECT_EQ(StrictNumber::toInt64(u"+80"), 80);
    EXPECT_EQ(StrictNumber::toInt64(u"-80"), -80);
    EXPECT_EQ(StrictNumber::toInt64(u"-0"), 0);
    EXPECT_EQ(StrictNumber::toInt64(u"0000000000000000000000000000080"), 80);
}

TEST(StrictInteger, TakesExactlyTheTypesRange)
{
    EXPECT_EQ(StrictNumber::toInt32(u"2147483647"), std::numeric_limits<qint32>::max());
    EXPECT_EQ(StrictNumber::toInt32(u"-2147483648"), std::numeric_limits<qint32>::min());
    EXPECT_EQ(StrictNumber::toInt32(u"2147483648"), std::nullopt);
    EXPECT_EQ(StrictNumber::toInt32(u"-2147483649"), std::nullopt);
    EXPECT_EQ(StrictNumber::toInt64(u"9223372036854775807"), std::numeric_limits<qint64>::max());
    EXPECT_EQ(StrictNumber::toInt64(u"-9223372036854775808"), std::numeric_limits<qint64>::min());
    EXPECT_EQ(StrictNumber::toInt64(u"9223372036854775808"), std::nullopt);
    EXPECT_EQ(StrictNumber::toInt64(u"99999999999999999999999999"), std::nullopt);
}

struct TextCase
{
    const char *name;
    QString text;
};

static std::string textName(const testing::TestParamInfo<TextCase> &row)
{
    return row.param.name;
}

class NoStrictInteger : public testing::TestWithParam<TextCase>
{};

TEST_P(NoStrictInteger, IsRefused)
{
    EXPECT_EQ(StrictNumber::toInt32(GetParam().text), std::nullopt);
    EXPECT_EQ(StrictNumber::toInt64(GetParam().text), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, NoStrictInteger,
    testing::Values(TextCase{"empty", u""_s}, TextCase{"plusOnly", u"+"_s}, TextCase{"minusOnly", u"-"_s},
                    TextCase{"plusMinus", u"+-1"_s}, TextCase{"minusPlus", u"-+1"_s},
                    TextCase{"twoPluses", u"++1"_s}, TextCase{"twoMinuses", u"--1"_s},
                    TextCase{"spaceBefore", u" 1"_s}, TextCase{"spaceBehind", u"1 "_s},
                    TextCase{"newlineBehind", u"1\n"_s}, TextCase{"word", u"web"_s},
                    TextCase{"digitsThenWord", u"80web"_s}, TextCase{"hexadecimal", u"0x50"_s},
                    TextCase{"fraction", u"1.0"_s}, TextCase{"exponent", u"1e3"_s},
                    TextCase{"group", u"1,000"_s}, TextCase{"arabicDigits", u"٨٠"_s},
                    TextCase{"fullWidthDigits", u"８０"_s}, TextCase{"nul", QString(QChar(0))},
                    TextCase{"digitThenNul", u"8"_s + QChar(0)}),
    textName);

struct DoubleCase
{
    QString text;
    double value;
};

class StrictDouble : public testing::TestWithParam<DoubleCase>
{};

TEST_P(StrictDouble, IsTaken)
{
    EXPECT_EQ(StrictNumber::toDouble(GetParam().text), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(Texts, StrictDouble,
                         testing::Values(DoubleCase{u"0.0"_s, 0}, DoubleCase{u"12.5"_s, 12.5},
                                         DoubleCase{u"+12.5"_s, 12.5}, DoubleCase{u"-12.5"_s, -12.5},
                                         DoubleCase{u"6400"_s, 6400}, DoubleCase{u".5"_s, 0.5},
                                         DoubleCase{u"5."_s, 5}, DoubleCase{u"1e3"_s, 1000},
                                         DoubleCase{u"204800"_s, 204800}));

class NoStrictDouble : public testing::TestWithParam<TextCase>
{};

TEST_P(NoStrictDouble, IsRefused)
{
    EXPECT_EQ(StrictNumber::toDouble(GetParam().text), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, NoStrictDouble,
    testing::Values(TextCase{"empty", u""_s}, TextCase{"signOnly", u"-"_s}, TextCase{"plusMinus", u"+-1"_s},
                    TextCase{"word", u"abc"_s}, TextCase{"numberThenWord", u"1.5x"_s},
                    TextCase{"decimalComma", u"12,5"_s}, TextCase{"spaceBefore", u" 1.5"_s},
                    TextCase{"tabBehind", u"1.5\t"_s}, TextCase{"hexadecimal", u"0x1p3"_s},
                    TextCase{"notANumber", u"nan"_s}, TextCase{"infinite", u"inf"_s},
                    TextCase{"tooLarge", u"1e999"_s}, TextCase{"dashOnly", u"-"_s},
                    TextCase{"arabicDigits", u"٨"_s}),
    textName);

} // namespace portolan
