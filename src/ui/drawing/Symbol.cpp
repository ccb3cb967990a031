// SPDX-License-Identifier: MIT
#include "Symbol.h"

#include "SymbolSet.h"

namespace portolan {

Symbol::Symbol()
{
    fitBox();
    connect(this, &ImageItem::changed, this, &Symbol::fitBox);
}

void Symbol::fitBox()
{
    setImplicitSize(SymbolSet::box(m_size), SymbolSet::box(m_size));
}

QSizeF Symbol::imageSize() const
{
    return {implicitWidth(), implicitHeight()};
}

QImage Symbol::image(const QSize &pixels, qreal scale) const
{
    const QImage mask = SymbolSet::image(m_name, pixels.width(), SymbolSet::stroke(m_size, m_weight, scale));
    return mask.isNull() ? mask : tinted(mask);
}

} // namespace portolan
