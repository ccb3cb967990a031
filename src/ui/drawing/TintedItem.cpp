#include "TintedItem.h"

#include <QPainter>

namespace portolan {

void TintedItem::setColor(const QColor &color)
{
    if (m_color == color)
        return;
    m_color = color;
    update();
    Q_EMIT colorChanged();
}

QImage TintedItem::image(const QSize &pixels, qreal scale) const
{
    QImage tinted = mask(pixels, scale);
    if (tinted.isNull())
        return tinted;
    QPainter painter(&tinted);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(tinted.rect(), m_color);
    return tinted;
}

} // namespace portolan
