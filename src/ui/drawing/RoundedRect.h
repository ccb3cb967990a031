#pragma once

#include "ImageItem.h"

#include <QColor>

namespace portolan {

/// A rounded rectangle with a border of one device-independent pixel inside its edge, drawn over the fill. It
/// replaces Rectangle, whose corners and sides do not meet in the software renderer if the device pixel ratio
/// is fractional.
class RoundedRect : public portolan::ImageItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged FINAL)
    Q_PROPERTY(QColor borderColor READ borderColor WRITE setBorderColor NOTIFY borderColorChanged FINAL)
    Q_PROPERTY(qreal radius READ radius WRITE setRadius NOTIFY radiusChanged FINAL)

public:
    explicit RoundedRect(QQuickItem *parent = nullptr);

    [[nodiscard]] QColor color() const { return m_color; }
    void setColor(const QColor &color);

    [[nodiscard]] QColor borderColor() const { return m_borderColor; }
    void setBorderColor(const QColor &color);

    [[nodiscard]] qreal radius() const { return m_radius; }
    void setRadius(qreal radius);

Q_SIGNALS:
    void colorChanged();
    void borderColorChanged();
    void radiusChanged();

protected:
    [[nodiscard]] QImage image(const QSize &pixels, qreal scale) const override;

private:
    QColor m_color = Qt::transparent;
    QColor m_borderColor = Qt::transparent;
    qreal m_radius = 0;
};

} // namespace portolan
