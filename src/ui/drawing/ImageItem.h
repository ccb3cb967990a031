#pragma once

#include <QImage>
#include <QQuickItem>
#include <QtQmlIntegration>

namespace portolan {

/// An item that shows one image pixel for pixel: the image is drawn at the window's scale for just the pixels
/// that it covers, so that it is sharp at every scale and costs the renderer one copied image.
class ImageItem : public QQuickItem
{
    Q_OBJECT
    QML_ANONYMOUS

protected:
    explicit ImageItem(QQuickItem *parent = nullptr);

    /// The size of what is shown, which stands in the middle of the item.
    [[nodiscard]] virtual QSizeF imageSize() const { return size(); }
    /// What is shown on `pixels`, of which `scale` make a device-independent one; null for nothing.
    [[nodiscard]] virtual QImage image(const QSize &pixels, qreal scale) const = 0;

    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *data) final;
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
};

} // namespace portolan
