#include "BrandArt.h"
#include "PortolanShape.h"
#include "Scene.h"

#include <gtest/gtest.h>

namespace portolan {

TEST(PortolanShape, ShowsTheFigureInItsColour)
{
    Scene scene(Qt::black);
    PortolanShape shape;
    scene.put(shape, {5, 5});
    shape.setSize({14, 14});
    shape.setColor(QColor(237, 237, 237));

    const int side = qRound(14 * scene.scale());
    const QImage figure = BrandArt::pixmap(side, shape.color());
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
