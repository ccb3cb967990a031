#include "Symbol.h"

#include "SymbolSet.h"

namespace portolan {

Symbol::Symbol(QQuickItem *parent)
    : TintedItem(parent)
{
    const auto resize = [this] { setImplicitSize(SymbolSet::box(m_size), SymbolSet::box(m_size)); };
    resize();
    connect(this, &Symbol::changed, this, resize);
    connect(this, &Symbol::changed, this, &QQuickItem::update);
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
