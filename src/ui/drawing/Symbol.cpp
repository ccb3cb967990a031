// SPDX-License-Identifier: MIT
#include "Symbol.h"

#include "SymbolSet.h"

namespace portolan {

Symbol::Symbol(QQuickItem *parent)
    : TintedItem(parent)
{
    setImplicitSize(SymbolSet::box(m_size), SymbolSet::box(m_size));
}

void Symbol::setSize(qreal size)
{
    setImplicitSize(SymbolSet::box(size), SymbolSet::box(size));
    set(m_size, size);
}

QSizeF Symbol::imageSize() const
{
    return {SymbolSet::box(m_size), SymbolSet::box(m_size)};
}

QImage Symbol::mask(const QSize &pixels, qreal scale) const
{
    return SymbolSet::image(m_name, pixels.width(), SymbolSet::stroke(m_size, m_weight, scale));
}

} // namespace portolan
