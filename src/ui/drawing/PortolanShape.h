// SPDX-License-Identifier: MIT
#pragma once

#include "ImageItem.h"

namespace portolan {

/// The brand figure, scaled to the size of the item.
class PortolanShape : public portolan::ImageItem
{
    Q_OBJECT
    QML_ELEMENT

protected:
    [[nodiscard]] QImage image(const QSize &pixels, qreal scale) const override;
};

} // namespace portolan
