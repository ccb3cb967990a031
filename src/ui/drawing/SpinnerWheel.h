#pragma once

#include "TintedItem.h"

namespace portolan {

/// Eight spokes, the brightest of which is number `step` (clockwise from the top), as one image: sharp at
/// every size and scale.
class SpinnerWheel : public portolan::TintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int step READ step WRITE setStep NOTIFY stepChanged FINAL)

public:
    static constexpr int spokes = 8;

    explicit SpinnerWheel(QQuickItem *parent = nullptr);

    [[nodiscard]] int step() const { return m_step; }
    /// Counts on beyond the last spoke.
    void setStep(int step);

Q_SIGNALS:
    void stepChanged();

protected:
    [[nodiscard]] QImage mask(const QSize &pixels, qreal scale) const override;

private:
    int m_step = 0;
};

} // namespace portolan
