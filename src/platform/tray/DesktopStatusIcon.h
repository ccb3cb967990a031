#pragma once

#include "SniStatusIcon.h"
#include "XEmbedStatusIcon.h"
#include "XEmbedTray.h"

#include <optional>

namespace portolan {

/// The status icon by whichever way this desktop has: a notifier host first, else an embedding tray. Changes
/// its mind when panels come and go.
class DesktopStatusIcon final : public StatusIcon
{
    Q_OBJECT

public:
    DesktopStatusIcon(const QDBusConnection &bus, const StatusIconArt &art);

private:
    void choose();
    void passOn(StatusIcon &icon);

    StatusIconArt m_art;
    SniStatusIcon m_item;
    std::optional<XEmbedTray> m_tray; // watched only while there is no notifier host
    std::optional<XEmbedStatusIcon> m_embedded;
};

} // namespace portolan
