// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
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
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY changed FINAL)

Q_SIGNALS:
    /// A property that the image depends on has changed.
    void changed();

protected:
    ImageItem();

    /// What the figure is filled or drawn with.
    [[nodiscard]] const QColor &color() const { return m_color; }
    /// The size of the image in device-independent pixels. It is centred in the item.
    [[nodiscard]] virtual QSizeF imageSize() const { return size(); }
    /// The image in `pixels` device pixels, at the device pixel ratio `scale`; null to show nothing.
    [[nodiscard]] virtual QImage image(const QSize &pixels, qreal scale) const = 0;
    /// `mask`, of which only the alpha is used, filled with the item's colour.
    [[nodiscard]] QImage tinted(QImage mask) const;

    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *data) final;
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;

private:
    QColor m_color = Qt::transparent;
};

} // namespace portolan
