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
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY changed FINAL)
    Q_PROPERTY(QColor borderColor MEMBER m_borderColor NOTIFY changed FINAL)
    Q_PROPERTY(qreal radius MEMBER m_radius NOTIFY changed FINAL)

public:
    explicit RoundedRect(QQuickItem *parent = nullptr);

Q_SIGNALS:
    void changed();

protected:
    [[nodiscard]] QImage image(const QSize &pixels, qreal scale) const override;

private:
    QColor m_color = Qt::transparent;
    QColor m_borderColor = Qt::transparent;
    qreal m_radius = 0;
};

} // namespace portolan
