#pragma once

#include "StatusIcon.h"
#include "XEmbedIconWindow.h"
#include "XEmbedTray.h"

namespace portolan {

/// The status icon in a status area of the older kind, which knows of no menu: every click is an activation.
class XEmbedStatusIcon final : public StatusIcon
{
    Q_OBJECT

public:
    /// To be made while `tray` is present, and to be dropped when it goes.
    XEmbedStatusIcon(XEmbedTray &tray, const StatusIconArt &art);

private:
    XEmbedIconWindow m_window;
};

} // namespace portolan
