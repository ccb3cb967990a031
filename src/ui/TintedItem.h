#pragma once

#include <QColor>
#include <QImage>
#include <QQuickItem>
#include <QtQmlIntegration>

/// An item that shows a one-coloured figure pixel for pixel: the figure is drawn at the window's scale for
/// just the pixels that it covers, so that it is sharp at every scale and costs the renderer one copied
/// image.
class TintedItem : public QQuickItem
{
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged FINAL)

public:
    [[nodiscard]] QColor color() const { return m_color; }
    void setColor(const QColor &color);

Q_SIGNALS:
    void colorChanged();

protected:
    using QQuickItem::QQuickItem;

    /// The size of the figure, which stands in the middle of the item.
    [[nodiscard]] virtual QSizeF figureSize() const = 0;
    /// The figure for `size` in pixels, of which `scale` make a device-independent one; only its alpha is
    /// used. Null where there is nothing to show.
    [[nodiscard]] virtual QImage figure(const QSize &size, qreal scale) const = 0;

    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *data) final;
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;

private:
    QColor m_color = Qt::black;
};
