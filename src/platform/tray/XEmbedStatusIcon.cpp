#include "XEmbedStatusIcon.h"

namespace portolan {

XEmbedStatusIcon::XEmbedStatusIcon(XEmbedTray &tray, const StatusIconArt &art)
    : m_window(art.images, tray.takesAlpha())
{
    // The pointer is at the icon: that is place enough.
    connect(&m_window, &XEmbedIconWindow::clicked, this, [this] { Q_EMIT activated({}); });
    tray.embed(m_window);
    setHost(Host::Present);
}

} // namespace portolan
