// SPDX-License-Identifier: MIT
#include "PopoverPlacement.h"

#include <gtest/gtest.h>

#include <ostream>

void PrintTo(const QRect &rect, std::ostream *out)
{
    *out << rect.width() << 'x' << rect.height() << '+' << rect.x() << '+' << rect.y();
}

void PrintTo(const QPoint &point, std::ostream *out)
{
    *out << point.x() << ',' << point.y();
}

namespace portolan {

namespace {

constexpr QSize popoverSize(384, 600);

// A screen of 1280 x 800 with a panel of 30 pixels at one of its edges.
const ScreenArea NoPanel{QRect(0, 0, 1280, 800), QRect(0, 0, 1280, 800)};
const ScreenArea TopPanel{QRect(0, 0, 1280, 800), QRect(0, 30, 1280, 770)};
const ScreenArea BottomPanel{QRect(0, 0, 1280, 800), QRect(0, 0, 1280, 770)};
const ScreenArea LeftPanel{QRect(0, 0, 1280, 800), QRect(30, 0, 1250, 800)};
const ScreenArea RightPanel{QRect(0, 0, 1280, 800), QRect(0, 0, 1250, 800)};

} // namespace

struct PlacementCase
{
    const char *name;
    QPoint anchor;
    QList<ScreenArea> screens;
    QRect expected;
};

void PrintTo(const PlacementCase &placement, std::ostream *out)
{
    *out << placement.name;
}

class PopoverPosition : public testing::TestWithParam<PlacementCase>
{};

TEST_P(PopoverPosition, IsNextToTheIcon)
{
    const auto &[name, anchor, screens, expected] = GetParam();
    EXPECT_EQ(PopoverPlacement::place(anchor, popoverSize, screens), expected);
}

INSTANTIATE_TEST_SUITE_P(
    Edges, PopoverPosition,
    testing::Values(PlacementCase{"TopCentred", {640, 15}, {TopPanel}, {448, 34, 384, 600}},
                    PlacementCase{"TopRightCorner", {1265, 15}, {TopPanel}, {892, 34, 384, 600}},
                    PlacementCase{"TopLeftCorner", {5, 5}, {TopPanel}, {4, 34, 384, 600}},
                    PlacementCase{"BottomCentred", {640, 785}, {BottomPanel}, {448, 166, 384, 600}},
                    PlacementCase{"BottomRightCorner", {1275, 795}, {BottomPanel}, {892, 166, 384, 600}},
                    PlacementCase{"LeftCentred", {15, 400}, {LeftPanel}, {34, 100, 384, 600}},
                    // The edge of the panel counts, not the nearer top edge.
                    PlacementCase{"LeftTop", {25, 5}, {LeftPanel}, {34, 4, 384, 600}},
                    PlacementCase{"RightCentred", {1265, 400}, {RightPanel}, {862, 100, 384, 600}},
                    PlacementCase{"RightBottom", {1255, 795}, {RightPanel}, {862, 196, 384, 600}}),
    [](const auto &test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    // Panels that reserve no space: the popover must not cover the icon.
    PanelsWithoutReservedSpace, PopoverPosition,
    testing::Values(PlacementCase{"Top", {640, 10}, {NoPanel}, {448, 27, 384, 600}},
                    PlacementCase{"Bottom", {640, 790}, {NoPanel}, {448, 174, 384, 600}},
                    PlacementCase{"Left", {10, 400}, {NoPanel}, {27, 100, 384, 600}},
                    PlacementCase{"Right", {1270, 400}, {NoPanel}, {870, 100, 384, 600}},
                    PlacementCase{"Corner", {1270, 12}, {NoPanel}, {892, 29, 384, 600}}),
    [](const auto &test) { return test.param.name; });

namespace {
// To the right of the primary screen, and higher; to its left; above it.
const ScreenArea Second{QRect(1280, -200, 1920, 1080), QRect(1280, -200, 1920, 1040)};
const ScreenArea LeftOf{QRect(-1024, 0, 1024, 768), QRect(-1024, 24, 1024, 744)};
const ScreenArea Above{QRect(0, -900, 1600, 900), QRect(0, -900, 1600, 860)};
} // namespace

INSTANTIATE_TEST_SUITE_P(
    SeveralScreens, PopoverPosition,
    testing::Values(PlacementCase{"OnTheSecond", {3100, 860}, {TopPanel, Second}, {2812, 236, 384, 600}},
                    PlacementCase{"NotOverTheBorder", {1300, 860}, {TopPanel, Second}, {1284, 236, 384, 600}},
                    PlacementCase{"NegativeCoordinates", {-20, 12}, {TopPanel, LeftOf}, {-388, 28, 384, 600}},
                    PlacementCase{"NegativeAbove", {800, -20}, {TopPanel, Above}, {608, -644, 384, 600}},
                    PlacementCase{
                        "OutsideUsesThePrimary", {5000, 5000}, {TopPanel, Second}, {892, 196, 384, 600}}),
    [](const auto &test) { return test.param.name; });

namespace {
const ScreenArea Netbook{QRect(0, 0, 800, 480), QRect(0, 30, 800, 450)};
const ScreenArea NetbookBelow{QRect(0, 0, 800, 480), QRect(0, 0, 800, 450)};
const ScreenArea NarrowScreen{QRect(0, 0, 320, 480), QRect(0, 30, 320, 450)};
} // namespace

INSTANTIATE_TEST_SUITE_P(
    SmallScreens, PopoverPosition,
    testing::Values(PlacementCase{"LowerThanTheContent", {790, 15}, {Netbook}, {412, 34, 384, 442}},
                    PlacementCase{"LowerWithThePanelBelow", {790, 470}, {NetbookBelow}, {412, 4, 384, 442}},
                    // The width is fixed: the popover starts at the left edge and is cut off.
                    PlacementCase{"NarrowerThanTheContent", {300, 15}, {NarrowScreen}, {4, 34, 384, 442}}),
    [](const auto &test) { return test.param.name; });

struct Conversion
{
    const char *name;
    QPoint devicePixels;
    QList<ScreenArea> screens;
    QPoint expected;
};

void PrintTo(const Conversion &conversion, std::ostream *out)
{
    *out << conversion.name;
}

class DevicePixels : public testing::TestWithParam<Conversion>
{};

TEST_P(DevicePixels, AreConvertedByTheScaleOfTheirScreen)
{
    const auto &[name, devicePixels, screens, expected] = GetParam();
    EXPECT_EQ(PopoverPlacement::clickedPoint(devicePixels, std::nullopt, screens), expected);
}

namespace {

ScreenArea scaled(QRect devicePixels, qreal scale)
{
    const QRect area(devicePixels.topLeft(), devicePixels.size() / scale);
    return {area, area, scale};
}

const ScreenArea One = scaled({0, 0, 1920, 1080}, 1);
const ScreenArea OneAndAQuarter = scaled({0, 0, 1920, 1080}, 1.25);
const ScreenArea OneAndAHalf = scaled({0, 0, 1920, 1080}, 1.5);
const ScreenArea Two = scaled({0, 0, 3840, 2160}, 2);
const ScreenArea TwoBeside = scaled({1920, 0, 3840, 2160}, 2);

} // namespace

INSTANTIATE_TEST_SUITE_P(Scales, DevicePixels,
                         testing::Values(Conversion{"One", {1900, 15}, {One}, {1900, 15}},
                                         Conversion{
                                             "OneAndAQuarter", {1900, 15}, {OneAndAQuarter}, {1520, 12}},
                                         Conversion{"OneAndAHalf", {1905, 15}, {OneAndAHalf}, {1270, 10}},
                                         Conversion{"Two", {3800, 30}, {Two}, {1900, 15}},
                                         // Each screen is scaled from its own top left corner.
                                         Conversion{"SecondScreen", {5720, 30}, {One, TwoBeside}, {3820, 15}},
                                         Conversion{"FirstOfTwo", {1900, 30}, {One, TwoBeside}, {1900, 30}}),
                         [](const auto &test) { return test.param.name; });

TEST(PopoverPlacement, FallsBackToTheRightEndOfThePanel)
{
    EXPECT_EQ(PopoverPlacement::fallbackAnchor({TopPanel, Second}), QPoint(1279, 0));
    EXPECT_EQ(PopoverPlacement::fallbackAnchor({BottomPanel, Second}), QPoint(1279, 799));
    EXPECT_EQ(PopoverPlacement::fallbackAnchor({LeftPanel}), QPoint(1279, 0));
    EXPECT_EQ(PopoverPlacement::fallbackAnchor({NoPanel}), QPoint(1279, 0));
}

TEST(ClickedPoint, IsWhereThePointerIsIfThePanelNamesAPlaceFarFromIt)
{
    // A panel that always reports its own corner, and one that reports logical coordinates at a scale of 2.
    EXPECT_EQ(PopoverPlacement::clickedPoint({0, 27}, QPoint(1200, 14), {TopPanel}), QPoint(1200, 14));
    EXPECT_EQ(PopoverPlacement::clickedPoint({1800, 15}, QPoint(1800, 15), {Two}), QPoint(1800, 15));
    // Near the pointer the panel is right: it may report the middle of the icon.
    EXPECT_EQ(PopoverPlacement::clickedPoint({1200, 15}, QPoint(1190, 4), {TopPanel}), QPoint(1200, 15));
}

TEST(ClickedPoint, IsThePointerOrThePanelsEndIfThePanelNamesNone)
{
    EXPECT_EQ(PopoverPlacement::clickedPoint({}, QPoint(1200, 14), {TopPanel}), QPoint(1200, 14));
    EXPECT_EQ(PopoverPlacement::clickedPoint({}, std::nullopt, {BottomPanel}), QPoint(1279, 799));
}

TEST(OnDesktop, IsWhatIsNeitherAPanelNorNearTheIcon)
{
    EXPECT_TRUE(PopoverPlacement::isOnDesktop({300, 400}, {1200, 15}, {TopPanel}));
    EXPECT_FALSE(PopoverPlacement::isOnDesktop({300, 15}, {1200, 15}, {TopPanel}));
    EXPECT_FALSE(PopoverPlacement::isOnDesktop({1210, 20}, {1200, 15}, {NoPanel}));
    EXPECT_TRUE(PopoverPlacement::isOnDesktop({1000, 20}, {1200, 15}, {NoPanel}));
}

} // namespace portolan
