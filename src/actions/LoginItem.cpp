// SPDX-License-Identifier: MIT
#include "LoginItem.h"

#include <utility>

namespace portolan {

LoginItem::LoginItem(Autostart entry, QObject *parent)
    : QObject(parent)
    , m_entry(std::move(entry))
{}

bool LoginItem::isEnabled() const
{
    return m_entry.isEnabled();
}

bool LoginItem::setEnabled(bool enabled)
{
    const bool wasEnabled = isEnabled();
    if (enabled && !wasEnabled)
        m_entry.add();
    if (!enabled && wasEnabled)
        m_entry.remove();
    return isEnabled();
}

} // namespace portolan
