// SPDX-License-Identifier: MIT
#pragma once

#include "ImageItem.h"

namespace portolan {

/// A rounded rectangle with a border of one device-independent pixel inside its edge, drawn over the fill. It
/// replaces Rectangle, whose corners and sides do not meet in the software renderer if the device pixel ratio
/// is fractional.
class RoundedRect : public portolan::ImageItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor borderColor MEMBER m_borderColor NOTIFY changed FINAL)
    Q_PROPERTY(qreal radius MEMBER m_radius NOTIFY changed FINAL)
    /// The Qt::Edge at which the rectangle goes on: without border and with square corners; none if 0.
    Q_PROPERTY(int openEdge MEMBER m_openEdge NOTIFY changed FINAL)

protected:
    [[nodiscard]] QImage image(const QSize &pixels, qreal scale) const override;

private:
    QColor m_borderColor = Qt::transparent;
    qreal m_radius = 0;
    int m_openEdge = 0;
};

} // namespace portolan
