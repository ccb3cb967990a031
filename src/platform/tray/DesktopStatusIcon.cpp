// SPDX-License-Identifier: MIT
#include "DesktopStatusIcon.h"

namespace portolan {

DesktopStatusIcon::DesktopStatusIcon(const QDBusConnection &bus, const StatusIconArt &art)
    : m_art(art)
    , m_item(bus, art)
{
    forwardSignals(m_item);
    connect(&m_item, &StatusIcon::hostChanged, this, &DesktopStatusIcon::update);
    update();
}

void DesktopStatusIcon::update()
{
    if (m_item.host() == Host::Unknown)
        return;
    if (m_item.host() == Host::Present) {
        m_embedded.reset();
        m_tray.reset();
        setHost(Host::Present);
        return;
    }
    if (!m_tray) {
        m_tray.emplace();
        connect(&*m_tray, &XEmbedTray::changed, this, &DesktopStatusIcon::update);
    }
    m_embedded.reset();
    if (m_tray->isPresent())
        forwardSignals(m_embedded.emplace(*m_tray, m_art));
    setHost(m_tray->isPresent() ? Host::Present : Host::Absent);
}

void DesktopStatusIcon::forwardSignals(StatusIcon &icon)
{
    connect(&icon, &StatusIcon::activated, this, &StatusIcon::activated);
    connect(&icon, &StatusIcon::menuShown, this, &StatusIcon::menuShown);
    connect(&icon, &StatusIcon::openRequested, this, &StatusIcon::openRequested);
    connect(&icon, &StatusIcon::quitRequested, this, &StatusIcon::quitRequested);
}

std::unique_ptr<StatusIcon> makeStatusIcon(const StatusIconArt &art)
{
    return std::make_unique<DesktopStatusIcon>(QDBusConnection::sessionBus(), art);
}

} // namespace portolan
