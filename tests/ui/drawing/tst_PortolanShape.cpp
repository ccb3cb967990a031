#include "BrandArt.h"
#include "PortolanShape.h"
#include "Scene.h"

#include <QPainter>

#include <gtest/gtest.h>

namespace portolan {

namespace {

/// The figure on `side` x `side` transparent pixels: its alpha, and `color` everywhere.
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
    Scene scene(Qt::black);
    PortolanShape shape;
    scene.put(shape, {5, 5});
    shape.setSize({14, 14});
    shape.setColor(QColor(237, 237, 237));

    const QImage figure = figureIn(shape.color(), qRound(14 * scene.scale()));
    EXPECT_TRUE(scene.expected(figure, {5, 5}).contains(scene.pixels()));
}

TEST(PortolanShape, FillsItsRectangle)
{
    Scene scene(Qt::black);
    PortolanShape shape;
    scene.put(shape, {0, 0});
    shape.setSize({100, 50});
    shape.setColor(Qt::white);
    const QImage pixels = scene.pixels();
    const auto at = [&](qreal x, qreal y) {
        return pixels.pixelColor(int(x * scene.scale()), int(y * scene.scale()));
    };
    EXPECT_EQ(at(23, 14), QColor(Qt::white));
    EXPECT_EQ(at(77, 14), QColor(Qt::white));
    EXPECT_EQ(at(50, 41), QColor(Qt::white));
    EXPECT_EQ(at(50, 25), QColor(Qt::white));
    EXPECT_EQ(at(50, 12), QColor(Qt::black));
}

TEST(PortolanShape, ShowsNothingWithoutASize)
{
    Scene scene(Qt::black);
    const QImage empty = scene.pixels();
    PortolanShape shape;
    scene.put(shape, {5, 5});
    shape.setColor(Qt::white);
    EXPECT_EQ(scene.pixels(), empty);
}

} // namespace portolan
