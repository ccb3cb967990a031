#pragma once

#include "StatusIcon.h"
#include "XEmbedIconWindow.h"
#include "XEmbedTray.h"

namespace portolan {

/// The status icon in an XEmbed tray. Such trays show no menu: every click is an activation.
class XEmbedStatusIcon final : public StatusIcon
{
    Q_OBJECT

public:
    /// `tray` must be present; destroy this object when it no longer is.
    XEmbedStatusIcon(XEmbedTray &tray, const StatusIconArt &art);

private:
    XEmbedIconWindow m_window;
};

} // namespace portolan
