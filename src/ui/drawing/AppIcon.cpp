// SPDX-License-Identifier: MIT
#include "AppIcon.h"

#include "BrandArt.h"
#include "Theme.h"

#include <QPainter>

namespace portolan {

namespace {
// As fractions of the icon's size.
constexpr qreal cornerShare = 0.25;
constexpr qreal figureShare = 0.66;
} // namespace

QImage AppIcon::image(int size)
{
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Theme::textStrong);
    painter.drawRoundedRect(QRectF(image.rect()), cornerShare * size, cornerShare * size);

    QRectF figure(0, 0, figureShare * size, figureShare * size);
    figure.moveCenter(QRectF(image.rect()).center());
    BrandArt::menuBarImage(size).paint(&painter, figure.toRect());
    return image;
}

} // namespace portolan
