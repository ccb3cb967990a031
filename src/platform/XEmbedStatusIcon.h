#pragma once

#include "StatusIcon.h"

#include <QMenu>
#include <QSystemTrayIcon>

/// The status icon in a status area of the older kind. To be made only while there is one and no notifier
/// host: at its first use the toolkit decides for good which of the two it talks to.
class XEmbedStatusIcon final : public StatusIcon
{
    Q_OBJECT

public:
    explicit XEmbedStatusIcon(const StatusIconArt &art);

private:
    QMenu m_menu;
    QSystemTrayIcon m_icon;
};
