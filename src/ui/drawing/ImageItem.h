// SPDX-License-Identifier: MIT
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

Q_SIGNALS:
    /// A property that the image depends on has changed.
    void changed();

protected:
    explicit ImageItem(QQuickItem *parent = nullptr);

    /// The size of the image in device-independent pixels. It is centred in the item.
    [[nodiscard]] virtual QSizeF imageSize() const { return size(); }
    /// The image in `pixels` device pixels, at the device pixel ratio `scale`; null to show nothing.
    [[nodiscard]] virtual QImage image(const QSize &pixels, qreal scale) const = 0;

    /// Sets a property of a subclass.
    template <typename Value>
    void set(Value &property, const Value &value)
    {
        if (property == value)
            return;
        property = value;
        update();
        Q_EMIT changed();
    }

    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *data) final;
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
};

} // namespace portolan
