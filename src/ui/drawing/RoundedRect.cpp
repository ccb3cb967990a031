// SPDX-License-Identifier: MIT
#include "RoundedRect.h"

#include <QCache>
#include <QPainter>
#include <QPainterPath>

namespace portolan {

namespace {

struct Key
{
    QSize size;
    qreal radius;
    qreal line;
    int openEdge;
    QRgba64 color;
    QRgba64 borderColor;

    friend bool operator==(const Key &, const Key &) = default;
    friend size_t qHash(const Key &key, size_t seed = 0)
    {
        return qHashMulti(seed, key.size.width(), key.size.height(), key.radius, key.line, key.openEdge,
                          quint64(key.color), quint64(key.borderColor));
    }
};

QPainterPath rounded(const QRectF &rect, qreal radius)
{
    const qreal maximum = qMin(rect.width(), rect.height()) / 2;
    QPainterPath path;
    path.addRoundedRect(rect, qBound(0.0, radius, maximum), qBound(0.0, radius, maximum));
    return path;
}

QImage drawn(const Key &key)
{
    QImage image(key.size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);

    QRectF outer = image.rect();
    // Beyond the image.
    if (key.openEdge == Qt::TopEdge)
        outer.setTop(-key.radius - key.line);
    if (key.openEdge == Qt::BottomEdge)
        outer.setBottom(outer.bottom() + key.radius + key.line);
    const QPainterPath shape = rounded(outer, key.radius);
    painter.fillPath(shape, QColor(key.color));

    const QRectF inner = outer.adjusted(key.line, key.line, -key.line, -key.line);
    QPainterPath line = shape;
    if (inner.isValid())
        line.addPath(rounded(inner, key.radius - key.line));
    painter.fillPath(line, QColor(key.borderColor));
    return image;
}

} // namespace

QImage RoundedRect::image(const QSize &pixels, qreal scale) const
{
    // The cards of the list are equal and share one image.
    constexpr qsizetype bytes = 4 * 1024 * 1024;
    static QCache<Key, QImage> cache(bytes);
    const Key key{pixels, m_radius * scale, scale, m_openEdge, color().rgba64(), m_borderColor.rgba64()};
    if (const QImage *known = cache.object(key))
        return *known;
    QImage image = drawn(key);
    cache.insert(key, new QImage(image), image.sizeInBytes());
    return image;
}

} // namespace portolan
