// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QStringList>

namespace portolan {

/// The panel's side of the protocol: accepts registrations and reports whether a host is present.
class FakeStatusNotifierWatcher : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost FINAL)

public:
    FakeStatusNotifierWatcher(const QDBusConnection &bus, bool hasHost)
        : m_bus(bus)
        , m_hasHost(hasHost)
    {
        m_bus.registerObject(QStringLiteral("/StatusNotifierWatcher"), this,
                             QDBusConnection::ExportScriptableContents |
                                 QDBusConnection::ExportAllProperties);
        m_bus.registerService(QStringLiteral("org.kde.StatusNotifierWatcher"));
    }

    ~FakeStatusNotifierWatcher() override
    {
        m_bus.unregisterService(QStringLiteral("org.kde.StatusNotifierWatcher"));
        m_bus.unregisterObject(QStringLiteral("/StatusNotifierWatcher"));
    }

    void setHost(bool present)
    {
        m_hasHost = present;
        if (present)
            Q_EMIT StatusNotifierHostRegistered();
        else
            Q_EMIT StatusNotifierHostUnregistered();
    }

    /// Answers no registration from now on.
    void setSilent() { m_isSilent = true; }

    /// The registered items, in order.
    [[nodiscard]] const QStringList &items() const { return m_items; }

public Q_SLOTS:
    Q_SCRIPTABLE void RegisterStatusNotifierItem(const QString &item)
    {
        m_items += item;
        setDelayedReply(m_isSilent);
    }

Q_SIGNALS:
    Q_SCRIPTABLE void StatusNotifierHostRegistered();
    Q_SCRIPTABLE void StatusNotifierHostUnregistered();

private:
    bool hasHost() const { return m_hasHost; }

    QDBusConnection m_bus;
    QStringList m_items;
    bool m_hasHost;
    bool m_isSilent = false;
};

} // namespace portolan
