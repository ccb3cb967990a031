// SPDX-License-Identifier: MIT
#include "Printers.h"
#include "Screens.h"

#include <QGuiApplication>
#include <QScreen>

#include <gtest/gtest.h>

namespace portolan {

// CMakeLists.txt runs this test with a screen and without one.

TEST(Screens, AreNeverEmpty)
{
    const QList<ScreenArea> areas = Screens::all();
    ASSERT_FALSE(areas.isEmpty());
    EXPECT_EQ(areas.size(), std::max<qsizetype>(1, QGuiApplication::screens().size()));
    if (const QScreen *primary = QGuiApplication::primaryScreen()) {
        EXPECT_EQ(areas.first().geometry, primary->geometry());
    }
    const QRect popover =
        PopoverPlacement::place(PopoverPlacement::fallbackAnchor(areas), QSize(384, 300), areas);
    EXPECT_EQ(popover.size(), QSize(384, 300));
    EXPECT_TRUE(areas.first().available.contains(popover));
}

} // namespace portolan
