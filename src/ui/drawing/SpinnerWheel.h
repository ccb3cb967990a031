#pragma once

#include "TintedItem.h"

namespace portolan {

/// The eight spokes of a progress indicator. The brightest one is number `step`, modulo eight, clockwise from
/// the top; those before it fade.
class SpinnerWheel : public portolan::TintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int step MEMBER m_step NOTIFY stepChanged FINAL)

public:
    static constexpr int spokes = 8;

    explicit SpinnerWheel(QQuickItem *parent = nullptr);

Q_SIGNALS:
    void stepChanged();

protected:
    [[nodiscard]] QImage mask(const QSize &pixels, qreal scale) const override;

private:
    int m_step = 0;
};

} // namespace portolan
