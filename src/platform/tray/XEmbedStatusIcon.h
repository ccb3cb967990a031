// SPDX-License-Identifier: MIT
#pragma once

#include "StatusIcon.h"
#include "XEmbedIconWindow.h"
#include "XEmbedMenu.h"
#include "XEmbedTray.h"

namespace portolan {

/// The status icon in an XEmbed tray. Such trays show no menu, so it shows its own.
class XEmbedStatusIcon final : public StatusIcon
{
    Q_OBJECT

public:
    /// `tray` must be present; destroy this object when it no longer is.
    XEmbedStatusIcon(XEmbedTray &tray, const StatusIconArt &art);

private:
    XEmbedIconWindow m_window;
    XEmbedMenu m_menu;
};

} // namespace portolan
