// SPDX-License-Identifier: MIT
#pragma once

#include "SniStatusIcon.h"
#include "XEmbedStatusIcon.h"
#include "XEmbedTray.h"

#include <optional>

namespace portolan {

/// The status icon in the status area that the desktop has: a StatusNotifier host if there is one, else an
/// XEmbed tray. Switches between them as panels start and exit.
class DesktopStatusIcon final : public StatusIcon
{
    Q_OBJECT

public:
    DesktopStatusIcon(const QDBusConnection &bus, const StatusIconArt &art);

private:
    void update();
    void forwardSignals(StatusIcon &icon);

    StatusIconArt m_art;
    SniStatusIcon m_item;
    std::optional<XEmbedTray> m_tray; // exists only while there is no StatusNotifier host
    std::optional<XEmbedStatusIcon> m_embedded;
};

} // namespace portolan
