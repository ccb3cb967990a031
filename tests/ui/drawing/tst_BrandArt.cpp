// SPDX-License-Identifier: MIT
#include "BrandArt.h"
#include "Printers.h"

#include <QPainter>
#include <QSvgRenderer>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <numbers>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

/// The expected dimensions of the figure in a rectangle.
struct Figure
{
    const char *name;
    QRectF rect;
    QPointF center;
    std::array<QPointF, 3> nodes;
    qreal discRadius;
    qreal nodeRadius;
    qreal spokeWidth;
    QRectF bounds;
};

const Figure figures[] = {
    {"Square",
     {0, 0, 100, 100},
     {50, 50},
     {QPointF(23, 28), QPointF(77, 28), QPointF(50, 83)},
     15.5,
     11.5,
     8.5,
     {11.5, 16.5, 77, 78}},
    {"Wide",
     {0, 0, 200, 100},
     {100, 50},
     {QPointF(46, 28), QPointF(154, 28), QPointF(100, 83)},
     15.5,
     11.5,
     8.5,
     {34.5, 16.5, 131, 78}},
    {"Tall",
     {0, 0, 100, 200},
     {50, 100},
     {QPointF(23, 56), QPointF(77, 56), QPointF(50, 166)},
     15.5,
     11.5,
     8.5,
     {11.5, 44.5, 77, 133}},
    {"ElsewhereAndHalfAsLarge",
     {-20, 30, 50, 50},
     {5, 55},
     {QPointF(-8.5, 44), QPointF(18.5, 44), QPointF(5, 71.5)},
     7.75,
     5.75,
     4.25,
     {-14.25, 38.25, 38.5, 39}},
};

constexpr qreal margin = 0.05; // the precision of a circle of four Bezier curves

QPointF direction(qreal degrees)
{
    const qreal radians = degrees * std::numbers::pi / 180;
    return {std::cos(radians), std::sin(radians)};
}

qreal distance(const QPointF &a, const QPointF &b)
{
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

/// The distance of `point` from the line segment between `a` and `b`.
qreal distance(const QPointF &point, const QPointF &a, const QPointF &b)
{
    const QPointF along = b - a;
    const qreal share = QPointF::dotProduct(point - a, along) / QPointF::dotProduct(along, along);
    return distance(point, a + std::clamp(share, 0.0, 1.0) * along);
}

/// The distance of `point` from the outline of the figure; negative outside.
qreal depth(const Figure &figure, const QPointF &point)
{
    qreal result = figure.discRadius - distance(point, figure.center);
    for (const QPointF &node : figure.nodes) {
        result = std::max(result, figure.nodeRadius - distance(point, node));
        result = std::max(result, figure.spokeWidth / 2 - distance(point, figure.center, node));
    }
    return result;
}

QImage drawn(int size)
{
    QImage image(size, size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    EXPECT_TRUE(BrandArt::draw(&painter, image.rect()));
    return image;
}

} // namespace

class BrandFigure : public testing::TestWithParam<Figure>
{};

TEST_P(BrandFigure, HasItsDisc)
{
    const Figure &figure = GetParam();
    const QPainterPath path = BrandArt::path(figure.rect);
    EXPECT_TRUE(path.contains(figure.center));
    for (int degrees = 0; degrees < 360; degrees += 5) {
        EXPECT_TRUE(path.contains(figure.center + (figure.discRadius - margin) * direction(degrees)))
            << degrees;
        const QPointF outside = figure.center + (figure.discRadius + margin) * direction(degrees);
        EXPECT_EQ(path.contains(outside), depth(figure, outside) > 0) << degrees;
    }
    // There is no spoke to the left, to the right and upwards.
    for (const int degrees : {0, 180, 270})
        EXPECT_FALSE(path.contains(figure.center + (figure.discRadius + margin) * direction(degrees)))
            << degrees;
}

TEST_P(BrandFigure, HasItsNodes)
{
    const Figure &figure = GetParam();
    const QPainterPath path = BrandArt::path(figure.rect);
    for (const QPointF &node : figure.nodes) {
        EXPECT_TRUE(path.contains(node));
        for (int degrees = 0; degrees < 360; degrees += 5) {
            EXPECT_TRUE(path.contains(node + (figure.nodeRadius - margin) * direction(degrees))) << degrees;
            const QPointF outside = node + (figure.nodeRadius + margin) * direction(degrees);
            EXPECT_EQ(path.contains(outside), depth(figure, outside) > 0) << degrees;
        }
        const QPointF away = (node - figure.center) / distance(node, figure.center);
        EXPECT_FALSE(path.contains(node + (figure.nodeRadius + margin) * away));
    }
}

TEST_P(BrandFigure, HasItsSpokes)
{
    const Figure &figure = GetParam();
    const QPainterPath path = BrandArt::path(figure.rect);
    for (const QPointF &node : figure.nodes) {
        const qreal length = distance(node, figure.center);
        const QPointF along = (node - figure.center) / length;
        const QPointF across(-along.y(), along.x());
        const qreal halfway = (figure.discRadius + length - figure.nodeRadius) / 2;
        const QPointF middle = figure.center + halfway * along;
        EXPECT_TRUE(path.contains(middle));
        for (const int side : {-1, 1}) {
            EXPECT_TRUE(path.contains(middle + side * (figure.spokeWidth / 2 - margin) * across));
            EXPECT_FALSE(path.contains(middle + side * (figure.spokeWidth / 2 + margin) * across));
        }
    }
}

TEST_P(BrandFigure, IsTheUnionOfItsParts)
{
    const Figure &figure = GetParam();
    const QPainterPath path = BrandArt::path(figure.rect);
    EXPECT_EQ(path.fillRule(), Qt::WindingFill);
    int inside = 0;
    for (qreal y = figure.rect.top() + 0.25; y < figure.rect.bottom(); y += 1.3) {
        for (qreal x = figure.rect.left() + 0.25; x < figure.rect.right(); x += 1.3) {
            const qreal at = depth(figure, {x, y});
            if (std::abs(at) < margin)
                continue;
            EXPECT_EQ(path.contains(QPointF(x, y)), at > 0) << x << ", " << y;
            inside += at > 0;
        }
    }
    EXPECT_GT(inside, 100);
}

TEST_P(BrandFigure, HasItsBounds)
{
    const QRectF bounds = BrandArt::path(GetParam().rect).boundingRect();
    EXPECT_NEAR(bounds.left(), GetParam().bounds.left(), margin);
    EXPECT_NEAR(bounds.top(), GetParam().bounds.top(), margin);
    EXPECT_NEAR(bounds.right(), GetParam().bounds.right(), margin);
    EXPECT_NEAR(bounds.bottom(), GetParam().bounds.bottom(), margin);
}

INSTANTIATE_TEST_SUITE_P(All, BrandFigure, testing::ValuesIn(figures),
                         [](const auto &figure) { return std::string(figure.param.name); });

TEST(BrandArt, DrawsOpaqueBlackWithoutHolesWherePartsOverlap)
{
    const QImage image = drawn(100);
    for (const QPoint &point :
         {QPoint(50, 50), QPoint(50, 60), QPoint(44, 45), QPoint(23, 28), QPoint(50, 76)})
        EXPECT_EQ(image.pixelColor(point), QColor(Qt::black)) << point.x() << ", " << point.y();
    EXPECT_EQ(image.pixelColor(50, 20).alpha(), 0);
}

TEST(BrandArt, DrawsNothingWithoutAPainter)
{
    EXPECT_FALSE(BrandArt::draw(nullptr, QRectF(0, 0, 18, 18)));

    QImage image(18, 18, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    const QImage before = image;
    QPainter painter(&image);
    painter.end();
    EXPECT_FALSE(BrandArt::draw(&painter, image.rect()));
    EXPECT_EQ(image, before);
}

TEST(BrandArt, RestoresTheStateOfThePainter)
{
    QImage image(18, 18, QImage::Format_ARGB32);
    QPainter painter(&image);
    painter.setBrush(Qt::red);
    painter.setRenderHint(QPainter::Antialiasing, false);
    BrandArt::draw(&painter, image.rect());
    EXPECT_EQ(painter.brush(), QBrush(Qt::red));
    EXPECT_FALSE(painter.testRenderHint(QPainter::Antialiasing));
}

TEST(MenuBarImage, IsATemplateOfItsSize)
{
    const QIcon icon = BrandArt::menuBarImage(18);
    EXPECT_TRUE(icon.isMask());
    EXPECT_EQ(icon.availableSizes(), QList<QSize>({QSize(18, 18)}));
}

TEST(MenuBarImage, IsRenderedForEachScale)
{
    const QIcon icon = BrandArt::menuBarImage(18);
    for (const qreal scale : {1.0, 1.5, 2.0, 3.0}) {
        const QPixmap pixmap = icon.pixmap(QSize(18, 18), scale);
        EXPECT_EQ(pixmap.devicePixelRatio(), scale);
        EXPECT_EQ(pixmap.size(), QSize(18, 18) * scale);
        const QImage image = pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
        EXPECT_EQ(image.convertToFormat(QImage::Format_Alpha8),
                  drawn(int(18 * scale)).convertToFormat(QImage::Format_Alpha8))
            << scale;
    }
}

TEST(MenuBarImage, IsNotFlipped)
{
    const QImage image = BrandArt::menuBarImage(18).pixmap(QSize(100, 100)).toImage();
    EXPECT_EQ(image.pixelColor(23, 28).alpha(), 255);
    EXPECT_EQ(image.pixelColor(77, 28).alpha(), 255);
    EXPECT_EQ(image.pixelColor(50, 83).alpha(), 255);
    EXPECT_EQ(image.pixelColor(23, 72).alpha(), 0);
}

TEST(SymbolicSvg, DrawsTheFigure)
{
    QSvgRenderer renderer(BrandArt::symbolicSvg());
    ASSERT_TRUE(renderer.isValid());
    EXPECT_EQ(renderer.viewBoxF(), QRectF(0, 0, 16, 16));
    QImage image(64, 64, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter);
    painter.end();
    const QImage black = drawn(64);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            EXPECT_NEAR(qAlpha(image.pixel(x, y)), qAlpha(black.pixel(x, y)), 16) << x << ", " << y;
    }
}

TEST(SymbolicSvg, CanBeRecoloured)
{
    const QByteArray svg = BrandArt::symbolicSvg();
    EXPECT_TRUE(svg.contains("id=\"current-color-scheme\""));
    EXPECT_TRUE(svg.contains("class=\"ColorScheme-Text\""));
    EXPECT_TRUE(svg.contains("fill:currentColor"));
}

} // namespace portolan
