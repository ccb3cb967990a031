#pragma once

#include <QImage>
#include <QQuickItem>
#include <QtQmlIntegration>

namespace portolan {

/// An item that shows an image rendered at the window's device pixel ratio. It is copied without scaling, so
/// it is sharp at every ratio.
class ImageItem : public QQuickItem
{
    Q_OBJECT
    QML_ANONYMOUS

protected:
    explicit ImageItem(QQuickItem *parent = nullptr);

    /// The size of the image in device-independent pixels. It is centred in the item.
    [[nodiscard]] virtual QSizeF imageSize() const { return size(); }
    /// The image in `pixels` device pixels, at the device pixel ratio `scale`; null to show nothing.
    [[nodiscard]] virtual QImage image(const QSize &pixels, qreal scale) const = 0;

    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *data) final;
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
};

} // namespace portolan
