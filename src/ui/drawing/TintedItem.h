#pragma once

#include "ImageItem.h"

#include <QColor>

namespace portolan {

/// An item that shows a mask filled with one colour.
class TintedItem : public portolan::ImageItem
{
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY colorChanged FINAL)

Q_SIGNALS:
    void colorChanged();

protected:
    explicit TintedItem(QQuickItem *parent = nullptr);

    /// The mask in `pixels` device pixels, at the device pixel ratio `scale`; only its alpha is used. Null to
    /// show nothing.
    [[nodiscard]] virtual QImage mask(const QSize &pixels, qreal scale) const = 0;

    [[nodiscard]] QImage image(const QSize &pixels, qreal scale) const final;

private:
    QColor m_color = Qt::black;
};

} // namespace portolan
