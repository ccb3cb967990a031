// SPDX-License-Identifier: MIT
#include "BrandArt.h"
#include "PortolanShape.h"
#include "TestWindow.h"

#include <QPainter>

#include <gtest/gtest.h>

namespace portolan {

namespace {

/// The figure in `side` x `side` pixels: every pixel has the colour `color`, with the alpha of the figure.
QImage figureIn(const QColor &color, int side)
{
    QImage image(side, side, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        BrandArt::draw(&painter, image.rect());
    }
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x)
            image.setPixel(x, y, (image.pixel(x, y) & ~RGB_MASK) | (color.rgb() & RGB_MASK));
    }
    return image;
}

} // namespace

TEST(PortolanShape, ShowsTheFigureInItsColour)
{
    TestWindow window(Qt::black);
    PortolanShape shape;
    window.put(shape, {5, 5});
    shape.setSize({14, 14});
    shape.setProperty("color", QColor(237, 237, 237));

    const QImage figure = figureIn(QColor(237, 237, 237), qRound(14 * window.scale()));
    EXPECT_TRUE(window.expected(figure, {5, 5}).contains(window.pixels()));
}

TEST(PortolanShape, FillsItsRectangle)
{
    TestWindow window(Qt::black);
    PortolanShape shape;
    window.put(shape, {0, 0});
    shape.setSize({100, 50});
    shape.setProperty("color", QColor(Qt::white));
    const QImage pixels = window.pixels();
    const auto at = [&](qreal x, qreal y) {
        return pixels.pixelColor(int(x * window.scale()), int(y * window.scale()));
    };
    EXPECT_EQ(at(23, 14), QColor(Qt::white));
    EXPECT_EQ(at(77, 14), QColor(Qt::white));
    EXPECT_EQ(at(50, 41), QColor(Qt::white));
    EXPECT_EQ(at(50, 25), QColor(Qt::white));
    EXPECT_EQ(at(50, 12), QColor(Qt::black));
}

TEST(PortolanShape, ShowsNothingWithoutASize)
{
    TestWindow window(Qt::black);
    const QImage empty = window.pixels();
    PortolanShape shape;
    window.put(shape, {5, 5});
    shape.setProperty("color", QColor(Qt::white));
    EXPECT_EQ(window.pixels(), empty);
}

} // namespace portolan
