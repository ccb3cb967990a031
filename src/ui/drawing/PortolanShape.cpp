// SPDX-License-Identifier: MIT
#include "PortolanShape.h"

#include "BrandArt.h"

#include <QPainter>

#include <utility>

namespace portolan {

QImage PortolanShape::image(const QSize &pixels, qreal) const
{
    QImage mask(pixels, QImage::Format_ARGB32_Premultiplied);
    mask.fill(Qt::transparent);
    QPainter painter(&mask);
    BrandArt::draw(&painter, mask.rect());
    painter.end();
    return tinted(std::move(mask));
}

} // namespace portolan
