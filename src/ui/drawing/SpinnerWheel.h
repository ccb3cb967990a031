// SPDX-License-Identifier: MIT
#pragma once

#include "TintedItem.h"

namespace portolan {

/// The eight spokes of a progress indicator. The brightest one is number `step`, modulo eight, clockwise from
/// the top; those before it fade.
class SpinnerWheel : public portolan::TintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int step READ step WRITE setStep NOTIFY changed FINAL)

public:
    static constexpr int spokes = 8;

    explicit SpinnerWheel(QQuickItem *parent = nullptr);

    [[nodiscard]] int step() const { return m_step; }
    void setStep(int step) { set(m_step, step); }

protected:
    [[nodiscard]] QImage mask(const QSize &pixels, qreal scale) const override;

private:
    int m_step = 0;
};

} // namespace portolan
