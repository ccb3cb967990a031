// SPDX-License-Identifier: MIT
#include "TintedItem.h"

#include <QPainter>

namespace portolan {

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
