// SPDX-License-Identifier: MIT
#include "Printers.h"
#include "Theme.h"

#include <QMetaProperty>

#include <gtest/gtest.h>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

struct Row
{
    const char *name;
    const QColor &color;
    double red;
    double green;
    double blue;
    double opacity;
};

constexpr double of255(int value)
{
    return value / 255.0;
}

const Row rows[] = {
    {"canvas", Theme::canvas, of255(10), of255(10), of255(10), 1},
    {"elevated", Theme::elevated, 0, 0, 0, 1},
    {"card", Theme::card, 1, 1, 1, 0.03},
    {"cardHover", Theme::cardHover, 1, 1, 1, 0.06},
    {"border", Theme::border, 1, 1, 1, 0.09},
    {"borderStrong", Theme::borderStrong, 1, 1, 1, 0.16},
    {"textStrong", Theme::textStrong, of255(237), of255(237), of255(237), 1},
    {"text", Theme::text, of255(199), of255(199), of255(199), 1},
    {"textMuted", Theme::textMuted, of255(143), of255(143), of255(143), 1},
    {"textFaint", Theme::textFaint, of255(92), of255(92), of255(92), 1},
    {"accent", Theme::accent, of255(59), of255(130), of255(246), 1},
    {"online", Theme::online, of255(34), of255(197), of255(94), 1},
    {"offline", Theme::offline, of255(244), of255(63), of255(94), 1},
    {"pending", Theme::pending, of255(234), of255(179), of255(8), 1},
};

} // namespace

class ThemeColor : public testing::TestWithParam<Row>
{};

TEST_P(ThemeColor, IsExact)
{
    // QColor stores each component in 16 bits.
    constexpr double step = 0.5 / 65535 + 1e-7;
    const QColor &color = GetParam().color;
    EXPECT_NEAR(color.redF(), GetParam().red, step);
    EXPECT_NEAR(color.greenF(), GetParam().green, step);
    EXPECT_NEAR(color.blueF(), GetParam().blue, step);
    EXPECT_NEAR(color.alphaF(), GetParam().opacity, step);
}

TEST_P(ThemeColor, IsTheSameInQml)
{
    const QMetaObject &theme = Theme::staticMetaObject;
    const QMetaProperty property = theme.property(theme.indexOfProperty(GetParam().name));
    ASSERT_TRUE(property.isValid());
    EXPECT_TRUE(property.isConstant());
    EXPECT_FALSE(property.isWritable());
    const Theme object;
    EXPECT_EQ(property.read(&object).value<QColor>(), GetParam().color);
}

INSTANTIATE_TEST_SUITE_P(All, ThemeColor, testing::ValuesIn(rows),
                         [](const auto &row) { return std::string(row.param.name); });

TEST(Theme, HasNoOtherColours)
{
    const QMetaObject &theme = Theme::staticMetaObject;
    EXPECT_EQ(theme.propertyCount() - theme.propertyOffset(), int(std::size(rows)));
}

} // namespace portolan
