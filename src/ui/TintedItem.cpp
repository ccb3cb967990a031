#include "TintedItem.h"

#include <QPainter>
#include <QQuickWindow>
#include <QSGImageNode>

namespace {

QImage tinted(QImage figure, const QColor &color)
{
    QPainter painter(&figure);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(figure.rect(), color);
    return figure;
}

} // namespace

void TintedItem::setColor(const QColor &color)
{
    if (m_color == color)
        return;
    m_color = color;
    update();
    Q_EMIT colorChanged();
}

QSGNode *TintedItem::updatePaintNode(QSGNode *old, UpdatePaintNodeData *)
{
    const qreal scale = window()->effectiveDevicePixelRatio();
    const QSize pixels = (figureSize() * scale).toSize();
    const QImage image = pixels.isEmpty() ? QImage() : figure(pixels, scale);
    if (image.isNull()) {
        delete old;
        return nullptr;
    }

    auto *node = static_cast<QSGImageNode *>(old);
    if (!node) {
        node = window()->createImageNode();
        node->setOwnsTexture(true);
    }
    node->setTexture(window()->createTextureFromImage(tinted(image, m_color)));
    // One pixel of the image is one of the window: interpolating could only blur it.
    node->setFiltering(QSGTexture::Nearest);
    const QSizeF shown = QSizeF(pixels) / scale;
    node->setRect(QRectF(QPointF((width() - shown.width()) / 2, (height() - shown.height()) / 2), shown));
    return node;
}

void TintedItem::itemChange(ItemChange change, const ItemChangeData &data)
{
    if (change == ItemDevicePixelRatioHasChanged)
        update();
    QQuickItem::itemChange(change, data);
}

void TintedItem::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    if (newGeometry.size() != oldGeometry.size())
        update();
    QQuickItem::geometryChange(newGeometry, oldGeometry);
}
