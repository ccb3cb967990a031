// SPDX-License-Identifier: MIT
#include "SpinnerWheel.h"

#include <QPainter>

#include <utility>

namespace portolan {

QImage SpinnerWheel::image(const QSize &pixels, qreal) const
{
    constexpr int spokes = 8;
    const qreal side = qMin(pixels.width(), pixels.height());
    const qreal thickness = side / 8;
    QImage mask(pixels, QImage::Format_ARGB32_Premultiplied);
    mask.fill(Qt::transparent);
    QPainter painter(&mask);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.translate(QRectF(mask.rect()).center());
    for (int spoke = 0; spoke < spokes; ++spoke) {
        const int age = ((m_step - spoke) % spokes + spokes) % spokes;
        painter.setBrush(QColor::fromRgbF(0, 0, 0, float(1 - 0.12 * age)));
        painter.drawRoundedRect(QRectF(-thickness / 2, -side / 2, thickness, side * 0.3), thickness / 2,
                                thickness / 2);
        painter.rotate(360.0 / spokes);
    }
    painter.end();
    return tinted(std::move(mask));
}

} // namespace portolan
