// SPDX-License-Identifier: MIT
#include "XEmbedStatusIcon.h"

namespace portolan {

XEmbedStatusIcon::XEmbedStatusIcon(XEmbedTray &tray, const StatusIconArt &art)
    : m_window(art.images, tray.supportsAlpha())
    , m_menu(menuLabels())
{
    // A null point: the popover then opens at the pointer, which is on the icon.
    connect(&m_window, &XEmbedIconWindow::clicked, this, [this] { Q_EMIT activated({}); });
    connect(&m_window, &XEmbedIconWindow::rightClicked, this, [this] {
        Q_EMIT menuShown();
        m_menu.open();
    });
    connect(&m_menu, &XEmbedMenu::chosen, this, &XEmbedStatusIcon::chooseMenuEntry);
    tray.embed(m_window);
    setHost(Host::Present);
}

} // namespace portolan
