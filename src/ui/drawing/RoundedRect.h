// SPDX-License-Identifier: MIT
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
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY changed FINAL)
    Q_PROPERTY(QColor borderColor READ borderColor WRITE setBorderColor NOTIFY changed FINAL)
    Q_PROPERTY(qreal radius READ radius WRITE setRadius NOTIFY changed FINAL)
    /// The Qt::Edge at which the rectangle goes on: without border and with square corners; none if 0.
    Q_PROPERTY(int openEdge READ openEdge WRITE setOpenEdge NOTIFY changed FINAL)

public:
    explicit RoundedRect(QQuickItem *parent = nullptr);

    [[nodiscard]] QColor color() const { return m_color; }
    void setColor(const QColor &color) { set(m_color, color); }

    [[nodiscard]] QColor borderColor() const { return m_borderColor; }
    void setBorderColor(const QColor &color) { set(m_borderColor, color); }

    [[nodiscard]] qreal radius() const { return m_radius; }
    void setRadius(qreal radius) { set(m_radius, radius); }

    [[nodiscard]] int openEdge() const { return m_openEdge; }
    void setOpenEdge(int edge) { set(m_openEdge, edge); }

protected:
    [[nodiscard]] QImage image(const QSize &pixels, qreal scale) const override;

private:
    QColor m_color = Qt::transparent;
    QColor m_borderColor = Qt::transparent;
    qreal m_radius = 0;
    int m_openEdge = 0;
};

} // namespace portolan
