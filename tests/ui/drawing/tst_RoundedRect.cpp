// SPDX-License-Identifier: MIT
#include "RoundedRect.h"
#include "TestWindow.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace portolan {

// CMakeLists.txt runs these tests at several device pixel ratios.

namespace {

class RoundedRectInWindow : public testing::Test
{
protected:
    RoundedRectInWindow()
    {
        m_rect.setProperty("color", QColor(0, 0, 255));
        m_rect.setProperty("borderColor", QColor(255, 0, 0));
        m_rect.setProperty("radius", 9);
        // On whole pixels at every ratio in steps of 0.25.
        m_window.put(m_rect, {8, 4});
        m_rect.setSize({40, 40});
    }

    [[nodiscard]] QImage shown()
    {
        const QRectF rect(m_rect.position() * m_window.scale(), m_rect.size() * m_window.scale());
        return m_window.pixels().copy(rect.toRect());
    }

    TestWindow m_window{Qt::black};
    RoundedRect m_rect;
};

} // namespace

TEST_F(RoundedRectInWindow, HasStraightSidesWithoutGaps)
{
    for (int step = 0; step < 8; ++step) {
        m_rect.setPosition({8.0 + step, 4.0 + step});
        const QImage image = m_window.pixels();
        // Along the straight part of each side all pixels are equal.
        const qreal scale = m_window.scale();
        const int from = int(std::ceil((m_rect.x() + 10) * scale));
        const int to = int(std::floor((m_rect.x() + 28) * scale));
        for (int y = 0; y < image.height(); ++y) {
            for (int x = from; x < to; ++x)
                EXPECT_EQ(image.pixel(x, y), image.pixel(from, y)) << x << ", " << y << " at step " << step;
        }
        const int top = int(std::ceil((m_rect.y() + 10) * scale));
        const int bottom = int(std::floor((m_rect.y() + 28) * scale));
        for (int x = 0; x < image.width(); ++x) {
            for (int y = top; y < bottom; ++y)
                EXPECT_EQ(image.pixel(x, y), image.pixel(x, top)) << x << ", " << y << " at step " << step;
        }
    }
}

TEST_F(RoundedRectInWindow, HasFillAndBorder)
{
    const QImage image = shown();
    const int middle = image.width() / 2;
    EXPECT_EQ(image.pixelColor(middle, middle), QColor(0, 0, 255));
    EXPECT_EQ(image.pixelColor(middle, int(m_window.scale() + 1.5)), QColor(0, 0, 255));
    EXPECT_EQ(image.pixelColor(middle, 1).blue() < 255, m_window.scale() > 1);
    EXPECT_EQ(m_window.pixels().pixelColor(0, 0), QColor(Qt::black));
}

TEST_F(RoundedRectInWindow, HasRoundCorners)
{
    const QImage image = shown();
    const int side = image.width() - 1;
    const int inside = int(4 * m_window.scale());
    for (const QPoint &corner : {QPoint(0, 0), QPoint(side, 0), QPoint(0, side), QPoint(side, side)}) {
        EXPECT_EQ(image.pixelColor(corner), QColor(Qt::black));
        const QPoint center(side / 2, side / 2);
        const QPoint inwards(corner.x() < center.x() ? inside : -inside,
                             corner.y() < center.y() ? inside : -inside);
        EXPECT_NE(image.pixelColor(corner + inwards), QColor(Qt::black));
    }
}

TEST_F(RoundedRectInWindow, LimitsTheRadiusToHalfItsSize)
{
    m_rect.setProperty("radius", 1000);
    const QImage image = shown();
    const int quarter = image.width() / 4;
    EXPECT_EQ(image.pixelColor(1, 1), QColor(Qt::black));
    EXPECT_EQ(image.pixelColor(quarter / 3, quarter / 3), QColor(Qt::black));
    EXPECT_NE(image.pixelColor(image.width() / 2, 0), QColor(Qt::black));
}

TEST_F(RoundedRectInWindow, GoesOnAtItsOpenEdge)
{
    m_rect.setProperty("openEdge", Qt::BottomEdge);
    QImage image = shown();
    const int side = image.width() - 1;
    EXPECT_EQ(image.pixelColor(0, 0), QColor(Qt::black));
    EXPECT_EQ(image.pixelColor(side / 2, 0).blue(), 0);
    EXPECT_EQ(image.pixelColor(0, side), QColor(255, 0, 0));
    EXPECT_EQ(image.pixelColor(side / 2, side), QColor(0, 0, 255));
    m_rect.setProperty("openEdge", Qt::TopEdge);
    image = shown();
    EXPECT_EQ(image.pixelColor(0, side), QColor(Qt::black));
    EXPECT_EQ(image.pixelColor(0, 0), QColor(255, 0, 0));
    EXPECT_EQ(image.pixelColor(side / 2, 0), QColor(0, 0, 255));
}

TEST_F(RoundedRectInWindow, DrawsTheBorderOverTheFill)
{
    m_rect.setProperty("color", QColor(255, 255, 255, 51));
    m_rect.setProperty("borderColor", QColor(255, 255, 255, 102));
    const QImage image = shown();
    const int middle = image.width() / 2;
    EXPECT_EQ(image.pixelColor(middle, middle), QColor(51, 51, 51));
    // 0.4 of white over 0.2 of white
    EXPECT_NEAR(image.pixelColor(middle, m_window.scale() < 2 ? 0 : 1).red(), 133, 2);
}

TEST_F(RoundedRectInWindow, UpdatesWithItsProperties)
{
    QSignalSpy changes(&m_rect, &RoundedRect::changed);
    QImage last = m_window.pixels();
    const auto changed = [&] { return std::exchange(last, m_window.pixels()) != last; };
    for (int i = 0; i < 2; ++i) {
        m_rect.setProperty("color", QColor(Qt::green));
        EXPECT_EQ(changed(), i == 0);
        m_rect.setProperty("borderColor", QColor(Qt::white));
        EXPECT_EQ(changed(), i == 0);
        m_rect.setProperty("radius", 3);
        EXPECT_EQ(changed(), i == 0);
        m_rect.setProperty("openEdge", Qt::TopEdge);
        EXPECT_EQ(changed(), i == 0);
        m_rect.setSize({20, 30});
        EXPECT_EQ(changed(), i == 0);
    }
    EXPECT_EQ(changes.count(), 4);
}

TEST_F(RoundedRectInWindow, MayBeSmallerThanItsBorder)
{
    for (const QSizeF &size : {QSizeF(1, 1), QSizeF(2, 10), QSizeF(0.1, 0.1), QSizeF(0, 5)}) {
        m_rect.setSize(size);
        m_window.pixels();
    }
    // Then it consists of the border only.
    m_rect.setSize({2, 12});
    const QImage image = shown();
    EXPECT_EQ(image.pixelColor(0, image.height() / 2).red(), 255);
}

} // namespace portolan
