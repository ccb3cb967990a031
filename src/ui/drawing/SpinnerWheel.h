// SPDX-License-Identifier: MIT
#pragma once

#include "ImageItem.h"

namespace portolan {

/// The eight spokes of a progress indicator. The brightest one is number `step`, modulo eight, clockwise from
/// the top; those before it fade.
class SpinnerWheel : public portolan::ImageItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int step MEMBER m_step NOTIFY changed FINAL)

protected:
    [[nodiscard]] QImage image(const QSize &pixels, qreal scale) const override;

private:
    int m_step = 0;
};

} // namespace portolan
