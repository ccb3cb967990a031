// SPDX-License-Identifier: MIT
#pragma once

#include "TintedItem.h"

#include <QFont>

namespace portolan {

/// A symbol of SymbolSet, sized like a character of a font of `size` device-independent pixels and `weight`:
/// in a square box of about 4/3 of the size, rounded to a multiple of four, so that the box is a whole number
/// of pixels at every device pixel ratio in steps of 0.25. An unknown name shows an empty box.
class Symbol : public portolan::TintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY changed FINAL)
    Q_PROPERTY(qreal size READ size WRITE setSize NOTIFY changed FINAL)
    Q_PROPERTY(int weight READ weight WRITE setWeight NOTIFY changed FINAL)

public:
    explicit Symbol(QQuickItem *parent = nullptr);

    [[nodiscard]] QString name() const { return m_name; }
    void setName(const QString &name) { set(m_name, name); }

    [[nodiscard]] qreal size() const { return m_size; }
    void setSize(qreal size);

    /// A QFont::Weight; Normal, Medium and DemiBold have different stroke widths.
    [[nodiscard]] int weight() const { return m_weight; }
    void setWeight(int weight) { set(m_weight, weight); }

protected:
    [[nodiscard]] QSizeF imageSize() const override;
    [[nodiscard]] QImage mask(const QSize &pixels, qreal scale) const override;

private:
    QString m_name;
    qreal m_size = 13;
    int m_weight = QFont::Normal;
};

} // namespace portolan
