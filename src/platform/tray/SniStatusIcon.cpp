// SPDX-License-Identifier: MIT
#include "SniStatusIcon.h"

#include "StatusIconTheme.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

constexpr auto watcherService = "org.kde.StatusNotifierWatcher"_L1;
constexpr auto watcherPath = "/StatusNotifierWatcher"_L1;
constexpr auto itemPath = "/StatusNotifierItem"_L1;
constexpr auto menuPath = "/MenuBar"_L1;

// A panel that hangs must not keep the program from showing its window; it is asked again when it may answer.
constexpr int timeoutMs = 1000;
constexpr std::chrono::seconds retryInterval(10);

QDBusMessage registration(const QString &item)
{
    QDBusMessage call = QDBusMessage::createMethodCall(watcherService, watcherPath, watcherService,
                                                       u"RegisterStatusNotifierItem"_s);
    call << item;
    return call;
}

QDBusMessage hostQuery()
{
    QDBusMessage call = QDBusMessage::createMethodCall(watcherService, watcherPath,
                                                       u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    call << QString(watcherService) << u"IsStatusNotifierHostRegistered"_s;
    return call;
}

} // namespace

SniStatusIcon::SniStatusIcon(const QDBusConnection &bus, const StatusIconArt &art)
    : m_bus(bus)
    , m_menu(menuLabels())
    , m_item(StatusIconTheme::iconName,
             StatusIconTheme::isRecoloured() ? StatusIconTheme::pathWithIcon(art.symbolicSvg) : QString(),
             art.images, QDBusObjectPath(menuPath))
    , m_watcher(watcherService, bus, QDBusServiceWatcher::WatchForOwnerChange)
{
    connect(&m_item, &StatusNotifierItem::activated, this, &StatusIcon::activated);
    connect(&m_menu, &StatusMenu::triggered, this, [this](int id) { chooseMenuEntry(id - 1); });
    // Panels read the item as soon as it is registered, so the objects have to exist before.
    m_bus.registerVirtualObject(itemPath, &m_item);
    m_bus.registerVirtualObject(menuPath, &m_menu);
    m_retry.setSingleShot(true);
    m_retry.setInterval(retryInterval);
    connect(&m_retry, &QTimer::timeout, this, &SniStatusIcon::registerItem);
    followWatcher();
    if (m_bus.isConnected())
        registerItem();
    else
        setHost(Host::Absent); // calls without a bus are never answered
}

SniStatusIcon::~SniStatusIcon()
{
    m_bus.unregisterObject(itemPath);
    m_bus.unregisterObject(menuPath);
}

void SniStatusIcon::followWatcher()
{
    connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &, const QString &, const QString &owner) {
                m_retry.stop();
                if (owner.isEmpty())
                    setHost(Host::Absent);
                else
                    registerItem();
            });
    for (const QString &signal : {u"StatusNotifierHostRegistered"_s, u"StatusNotifierHostUnregistered"_s})
        m_bus.connect(watcherService, watcherPath, watcherService, signal, this, SLOT(queryHost()));
}

void SniStatusIcon::registerItem()
{
    ask(registration(m_bus.baseService()), [this](const QDBusMessage &) { queryHost(); });
}

void SniStatusIcon::queryHost()
{
    ask(hostQuery(), [this](const QDBusMessage &reply) {
        const bool present = reply.arguments().value(0).value<QDBusVariant>().variant().toBool();
        setHost(present ? Host::Present : Host::Absent);
    });
}

void SniStatusIcon::ask(const QDBusMessage &question,
                        const std::function<void(const QDBusMessage &)> &takeReply)
{
    auto *pending = new QDBusPendingCallWatcher(m_bus.asyncCall(question, timeoutMs), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending, takeReply] {
        pending->deleteLater();
        if (!pending->isError())
            return takeReply(pending->reply());
        setHost(Host::Absent);
        if (pending->error().type() == QDBusError::NoReply)
            m_retry.start();
    });
}

} // namespace portolan
