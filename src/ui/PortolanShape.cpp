#include "PortolanShape.h"

#include "BrandArt.h"

#include <QPainter>

PortolanShape::PortolanShape(QQuickItem *parent)
    : TintedItem(parent)
{
    setFlag(ItemHasContents);
}

QImage PortolanShape::figure(const QSize &size, qreal) const
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    BrandArt::draw(&painter, image.rect());
    return image;
}
