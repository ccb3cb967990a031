#pragma once

#include "TintedItem.h"

/// The brand figure, filling the item.
class PortolanShape : public TintedItem
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit PortolanShape(QQuickItem *parent = nullptr);

protected:
    [[nodiscard]] QSizeF figureSize() const override { return size(); }
    [[nodiscard]] QImage figure(const QSize &size, qreal scale) const override;
};
