#include "SniStatusIcon.h"

#include "StatusIconTheme.h"

#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

constexpr auto WatcherService = "org.kde.StatusNotifierWatcher"_L1;
constexpr auto WatcherPath = "/StatusNotifierWatcher"_L1;
constexpr auto ItemPath = "/StatusNotifierItem"_L1;
constexpr auto MenuPath = "/MenuBar"_L1;

constexpr auto Exported = QDBusConnection::ExportScriptableSlots | QDBusConnection::ExportAllProperties;

QDBusMessage registration(const QString &item)
{
    QDBusMessage call = QDBusMessage::createMethodCall(WatcherService, WatcherPath, WatcherService,
                                                       u"RegisterStatusNotifierItem"_s);
    call << item;
    return call;
}

QDBusMessage hostQuery()
{
    QDBusMessage call = QDBusMessage::createMethodCall(WatcherService, WatcherPath,
                                                       u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    call << QString(WatcherService) << u"IsStatusNotifierHostRegistered"_s;
    return call;
}

} // namespace

SniStatusIcon::SniStatusIcon(const QDBusConnection &bus, const StatusIconArt &art)
    : m_bus(bus)
    , m_menu(menuLabels())
    , m_item(StatusIconTheme::IconName, StatusIconTheme::pathWithIcon(art.symbolicSvg), art.images,
             QDBusObjectPath(MenuPath))
    , m_watcher(WatcherService, bus, QDBusServiceWatcher::WatchForOwnerChange)
{
    connect(&m_item, &StatusNotifierItem::activated, this, &StatusIcon::activated);
    connect(&m_menu, &StatusMenu::triggered, this, [this](int id) { chooseMenuEntry(id - 1); });
    // Panels read the item as soon as it is registered, so the objects have to exist before.
    m_bus.registerObject(ItemPath, &m_item, Exported);
    m_bus.registerObject(MenuPath, &m_menu, Exported);
    followWatcher();
    if (m_bus.isConnected())
        registerItem();
    else
        setHost(Host::Absent); // calls without a bus are never answered
}

SniStatusIcon::~SniStatusIcon()
{
    m_bus.unregisterObject(ItemPath);
    m_bus.unregisterObject(MenuPath);
}

void SniStatusIcon::followWatcher()
{
    connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &, const QString &, const QString &owner) {
                if (owner.isEmpty())
                    setHost(Host::Absent);
                else
                    registerItem();
            });
    for (const QString &signal : {u"StatusNotifierHostRegistered"_s, u"StatusNotifierHostUnregistered"_s})
        m_bus.connect(WatcherService, WatcherPath, WatcherService, signal, this, SLOT(queryHost()));
}

void SniStatusIcon::registerItem()
{
    auto *pending = new QDBusPendingCallWatcher(m_bus.asyncCall(registration(m_bus.baseService())), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending] {
        pending->deleteLater();
        if (pending->isError())
            setHost(Host::Absent);
        else
            queryHost();
    });
}

void SniStatusIcon::queryHost()
{
    auto *pending = new QDBusPendingCallWatcher(m_bus.asyncCall(hostQuery()), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending] {
        pending->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *pending;
        const bool present = reply.isValid() && reply.value().variant().toBool();
        setHost(present ? Host::Present : Host::Absent);
    });
}

} // namespace portolan
