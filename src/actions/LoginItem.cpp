#include "LoginItem.h"

#include "LoginItem_p.h"

namespace portolan {

LoginItem::Status LoginItem::status()
{
    return Autostart::ofThisProgram().status();
}

bool LoginItem::setEnabled(bool enabled, const Autostart &entry)
{
    const bool isEnabled = entry.status() == Status::enabled;
    if (enabled && !isEnabled)
        entry.add();
    if (!enabled && isEnabled)
        entry.remove();
    return entry.status() == Status::enabled;
}

bool LoginItem::setEnabled(bool enabled)
{
    return setEnabled(enabled, Autostart::ofThisProgram());
}

} // namespace portolan
