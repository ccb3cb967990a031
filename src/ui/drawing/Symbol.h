// SPDX-License-Identifier: MIT
#pragma once

#include "ImageItem.h"

#include <QFont>

namespace portolan {

/// A symbol of SymbolSet, sized like a character of a font of `size` device-independent pixels and `weight`:
/// in a square box of about 4/3 of the size, rounded to a multiple of four, so that the box is a whole number
/// of pixels at every device pixel ratio in steps of 0.25. An unknown name shows an empty box.
class Symbol : public portolan::ImageItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString name MEMBER m_name NOTIFY changed FINAL)
    Q_PROPERTY(qreal size MEMBER m_size NOTIFY changed FINAL)
    /// A QFont::Weight; Normal, Medium and DemiBold have different stroke widths.
    Q_PROPERTY(int weight MEMBER m_weight NOTIFY changed FINAL)

public:
    Symbol();

protected:
    [[nodiscard]] QSizeF imageSize() const override;
    [[nodiscard]] QImage image(const QSize &pixels, qreal scale) const override;

private:
    void fitBox();

    QString m_name;
    qreal m_size = 13;
    int m_weight = QFont::Normal;
};

} // namespace portolan
