// SPDX-License-Identifier: MIT
#include "PortolanShape.h"

#include "BrandArt.h"

#include <QPainter>

namespace portolan {

PortolanShape::PortolanShape(QQuickItem *parent)
    : TintedItem(parent)
{}

QImage PortolanShape::mask(const QSize &pixels, qreal) const
{
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    BrandArt::draw(&painter, image.rect());
    return image;
}

} // namespace portolan
