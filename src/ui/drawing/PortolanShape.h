// SPDX-License-Identifier: MIT
#pragma once

#include "TintedItem.h"

namespace portolan {

/// The brand figure, scaled to the size of the item.
class PortolanShape : public portolan::TintedItem
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit PortolanShape(QQuickItem *parent = nullptr);

protected:
    [[nodiscard]] QImage mask(const QSize &pixels, qreal scale) const override;
};

} // namespace portolan
