// SPDX-License-Identifier: MIT
#include "ImageItem.h"

#include <QPainter>
#include <QQuickWindow>
#include <QSGImageNode>

namespace portolan {

ImageItem::ImageItem()
{
    setFlag(ItemHasContents);
    connect(this, &ImageItem::changed, this, &QQuickItem::update);
}

QImage ImageItem::tinted(QImage mask) const
{
    QPainter painter(&mask);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(mask.rect(), m_color);
    painter.end();
    return mask;
}

QSGNode *ImageItem::updatePaintNode(QSGNode *old, UpdatePaintNodeData *)
{
    const qreal scale = window()->effectiveDevicePixelRatio();
    const QSize pixels = (imageSize() * scale).toSize();
    const QImage shown = pixels.isEmpty() ? QImage() : image(pixels, scale);
    if (shown.isNull()) {
        delete old;
        return nullptr;
    }

    auto *node = static_cast<QSGImageNode *>(old);
    if (!node) {
        node = window()->createImageNode();
        node->setOwnsTexture(true);
    }
    node->setTexture(window()->createTextureFromImage(shown));
    // One pixel of the image is one pixel of the window, so interpolation would only blur it.
    node->setFiltering(QSGTexture::Nearest);
    const QSizeF size = QSizeF(pixels) / scale;
    node->setRect(QRectF(QPointF((width() - size.width()) / 2, (height() - size.height()) / 2), size));
    return node;
}

void ImageItem::itemChange(ItemChange change, const ItemChangeData &data)
{
    if (change == ItemDevicePixelRatioHasChanged)
        update();
    QQuickItem::itemChange(change, data);
}

void ImageItem::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    if (newGeometry.size() != oldGeometry.size())
        update();
    QQuickItem::geometryChange(newGeometry, oldGeometry);
}

} // namespace portolan
