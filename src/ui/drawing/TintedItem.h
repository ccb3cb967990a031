// SPDX-License-Identifier: MIT
#pragma once

#include "ImageItem.h"

#include <QColor>

namespace portolan {

/// An item that shows a mask filled with one colour.
class TintedItem : public portolan::ImageItem
{
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY changed FINAL)

public:
    [[nodiscard]] QColor color() const { return m_color; }
    void setColor(const QColor &color) { set(m_color, color); }

protected:
    using ImageItem::ImageItem;

    /// The mask in `pixels` device pixels, at the device pixel ratio `scale`; only its alpha is used. Null to
    /// show nothing.
    [[nodiscard]] virtual QImage mask(const QSize &pixels, qreal scale) const = 0;

    [[nodiscard]] QImage image(const QSize &pixels, qreal scale) const final;

private:
    QColor m_color = Qt::black;
};

} // namespace portolan
