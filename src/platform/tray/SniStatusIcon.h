// SPDX-License-Identifier: MIT
#pragma once

#include "StatusIcon.h"
#include "StatusMenu.h"
#include "StatusNotifierItem.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QTimer>

#include <functional>

namespace portolan {

/// The status icon by the StatusNotifierItem protocol, over `bus`. It registers with the current
/// StatusNotifierWatcher and with every later one.
class SniStatusIcon final : public StatusIcon
{
    Q_OBJECT

public:
    SniStatusIcon(const QDBusConnection &bus, const StatusIconArt &art);
    ~SniStatusIcon() override;

private Q_SLOTS:
    void queryHost(); // a slot, as D-Bus signals are connected by name

private:
    void followWatcher();
    void registerItem();
    void ask(const QDBusMessage &question, const std::function<void(const QDBusMessage &)> &takeReply);

    QDBusConnection m_bus;
    StatusMenu m_menu;
    StatusNotifierItem m_item;
    QDBusServiceWatcher m_watcher;
    QTimer m_retry; // runs while the watcher exists but has not answered
};

} // namespace portolan
