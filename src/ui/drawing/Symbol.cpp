#include "Symbol.h"

#include "SymbolSet.h"

namespace portolan {

Symbol::Symbol(QQuickItem *parent)
    : TintedItem(parent)
{
    setImplicitSize(SymbolSet::box(m_size), SymbolSet::box(m_size));
}

void Symbol::setName(const QString &name)
{
    if (m_name == name)
        return;
    m_name = name;
    update();
    Q_EMIT nameChanged();
}

void Symbol::setSize(qreal size)
{
    if (m_size == size)
        return;
    m_size = size;
    setImplicitSize(SymbolSet::box(m_size), SymbolSet::box(m_size));
    update();
    Q_EMIT sizeChanged();
}

void Symbol::setWeight(int weight)
{
    if (m_weight == weight)
        return;
    m_weight = weight;
    update();
    Q_EMIT weightChanged();
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
