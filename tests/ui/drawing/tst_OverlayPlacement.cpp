// SPDX-License-Identifier: MIT
#include "OverlayPlacement.h"

#include "Printers.h"

#include <gtest/gtest.h>

namespace portolan {

namespace {

constexpr QSizeF size(180, 240);
constexpr QRectF bounds(4, 4, 376, 600);

TEST(MenuPlacement, OpensAtThePointer)
{
    EXPECT_EQ(OverlayPlacement::menu(QRectF(50, 60, 0, 0), size, bounds), QPointF(50, 60));
}

TEST(MenuPlacement, OpensBelowItsControl)
{
    EXPECT_EQ(OverlayPlacement::menu(QRectF(50, 60, 26, 26), size, bounds), QPointF(50, 90));
}

TEST(MenuPlacement, AlignsToTheRightSideAtTheRightEdge)
{
    EXPECT_EQ(OverlayPlacement::menu(QRectF(340, 60, 26, 26), size, bounds), QPointF(340 + 26 - 180, 90));
    EXPECT_EQ(OverlayPlacement::menu(QRectF(340, 60, 0, 0), size, bounds), QPointF(340 - 180, 60));
}

TEST(MenuPlacement, OpensAboveAtTheBottomEdge)
{
    EXPECT_EQ(OverlayPlacement::menu(QRectF(50, 500, 26, 26), size, bounds), QPointF(50, 500 - 4 - 240));
    EXPECT_EQ(OverlayPlacement::menu(QRectF(50, 500, 0, 0), size, bounds), QPointF(50, 500 - 240));
}

TEST(MenuPlacement, StaysInsideIfItFitsNowhere)
{
    const QRectF low(4, 4, 376, 300);
    EXPECT_EQ(OverlayPlacement::menu(QRectF(50, 150, 26, 26), size, low), QPointF(50, 4));
    EXPECT_EQ(OverlayPlacement::menu(QRectF(-80, 20, 0, 0), size, bounds), QPointF(4, 20));
}

TEST(MenuPlacement, ShowsItsTopLeftCornerIfItIsTooLarge)
{
    EXPECT_EQ(OverlayPlacement::menu(QRectF(50, 60, 0, 0), size, QRectF(4, 4, 100, 100)), QPointF(4, 4));
}

TEST(ToolTipPlacement, IsCentredBelowItsControl)
{
    EXPECT_EQ(OverlayPlacement::toolTip(QRectF(100, 60, 26, 26), QSizeF(60, 20), bounds), QPointF(83, 92));
}

TEST(ToolTipPlacement, IsAboveAtTheBottomEdge)
{
    EXPECT_EQ(OverlayPlacement::toolTip(QRectF(100, 570, 26, 26), QSizeF(60, 20), bounds), QPointF(83, 544));
}

TEST(ToolTipPlacement, KeepsAMarginToTheEdge)
{
    EXPECT_EQ(OverlayPlacement::toolTip(QRectF(4, 60, 26, 26), QSizeF(60, 20), bounds).x(), 8);
    EXPECT_EQ(OverlayPlacement::toolTip(QRectF(354, 60, 26, 26), QSizeF(60, 20), bounds).x(), 380 - 4 - 60);
}

} // namespace

} // namespace portolan
