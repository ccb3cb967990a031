// SPDX-License-Identifier: MIT
#include "BrandArt.h"

#include <QIconEngine>
#include <QPainter>
#include <QPainterPathStroker>

#include <array>

namespace portolan {

namespace {

// As fractions of the shorter side.
constexpr qreal spokeWidth = 0.085;
constexpr qreal nodeRadius = 0.115;
constexpr qreal discRadius = 0.155;

// As fractions of width and height.
constexpr std::array<QPointF, 3> nodes{QPointF(0.23, 0.28), QPointF(0.77, 0.28), QPointF(0.5, 0.83)};

QPointF at(const QRectF &rect, const QPointF &share)
{
    return {rect.x() + share.x() * rect.width(), rect.y() + share.y() * rect.height()};
}

QPainterPath spokes(const QRectF &rect, qreal width)
{
    QPainterPath lines;
    for (const QPointF &node : nodes) {
        lines.moveTo(rect.center());
        lines.lineTo(at(rect, node));
    }
    QPainterPathStroker stroker;
    stroker.setWidth(width);
    stroker.setCapStyle(Qt::RoundCap);
    stroker.setJoinStyle(Qt::MiterJoin);
    stroker.setMiterLimit(10);
    return stroker.createStroke(lines);
}

class MenuBarEngine : public QIconEngine
{
public:
    explicit MenuBarEngine(int size)
        : m_size(size)
    {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode, QIcon::State) override
    {
        BrandArt::draw(painter, rect);
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, pixmap.rect(), mode, state);
        return pixmap;
    }

    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override { return {QSize(m_size, m_size)}; }
    QSize actualSize(const QSize &size, QIcon::Mode, QIcon::State) override { return size; }
    QIconEngine *clone() const override { return new MenuBarEngine(*this); }

private:
    int m_size;
};

QByteArray svgPathData(const QPainterPath &path)
{
    const auto point = [&](int i) {
        const QPainterPath::Element element = path.elementAt(i);
        return QByteArray::number(element.x, 'f', 3) + ' ' + QByteArray::number(element.y, 'f', 3);
    };
    QByteArray data;
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::ElementType type = path.elementAt(i).type;
        if (type == QPainterPath::MoveToElement)
            data += 'M' + point(i);
        else if (type == QPainterPath::LineToElement)
            data += 'L' + point(i);
        else if (type == QPainterPath::CurveToElement)
            data += 'C' + point(i) + ' ' + point(i + 1) + ' ' + point(i + 2);
    }
    return data + 'Z';
}

} // namespace

QPainterPath BrandArt::path(const QRectF &rect)
{
    const qreal side = qMin(rect.width(), rect.height());
    QPainterPath figure = spokes(rect, spokeWidth * side);
    for (const QPointF &node : nodes)
        figure.addEllipse(at(rect, node), nodeRadius * side, nodeRadius * side);
    figure.addEllipse(rect.center(), discRadius * side, discRadius * side);
    figure.setFillRule(Qt::WindingFill);
    return figure;
}

bool BrandArt::draw(QPainter *painter, const QRectF &rect)
{
    if (!painter || !painter->isActive())
        return false;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->fillPath(path(rect), Qt::black);
    painter->restore();
    return true;
}

QIcon BrandArt::menuBarImage(int size)
{
    QIcon icon(new MenuBarEngine(size));
    icon.setIsMask(true);
    return icon;
}

QByteArray BrandArt::symbolicSvg()
{
    return R"(<svg xmlns="http://www.w3.org/2000/svg" width="16" height="16" viewBox="0 0 16 16">
<style type="text/css" id="current-color-scheme">.ColorScheme-Text{color:#232629}</style>
<path class="ColorScheme-Text" style="fill:currentColor" d=")" +
           svgPathData(path(QRectF(0, 0, 16, 16))) + R"("/>
</svg>
)";
}

} // namespace portolan
