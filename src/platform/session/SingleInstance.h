#pragma once

#include "StartRequest.h"

#include <QDBusConnection>
#include <QLocalServer>
#include <QLockFile>
#include <QObject>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

#include <optional>

namespace portolan {

/// Sees to it that one Portolan runs per session: by a name on the session bus, which also carries what a
/// second start asks for; where there is no bus, by a lock and a socket in the user's runtime folder.
class SingleInstance : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    enum class Outcome {
        First,      ///< this is the one; it will be told of later starts
        Forwarded,  ///< another one runs and has got the request
        Unanswered, ///< another one runs but does not answer
    };

    /// `runtimeFolder` is used only if `bus` is not connected.
    SingleInstance(const QDBusConnection &bus, const QString &runtimeFolder);
    ~SingleInstance() override;

    /// Becomes the one instance or hands `request` to it. Waits at most 3 seconds for its answer.
    [[nodiscard]] Outcome claim(StartRequest request);

public Q_SLOTS:
    // The names and types of the protocol.
    Q_SCRIPTABLE void Activate(const QVariantMap &platformData);
    Q_SCRIPTABLE void Open(const QStringList &uris, const QVariantMap &platformData);
    Q_SCRIPTABLE void ActivateAction(const QString &name, const QVariantList &parameter,
                                     const QVariantMap &platformData);

Q_SIGNALS:
    /// A later start asks for something; never `None`.
    void requested(StartRequest request);

private:
    Outcome claimOnBus(StartRequest request);
    Outcome claimInFolder(StartRequest request);
    void listen(const QString &socket);

    QDBusConnection m_bus;
    QString m_runtimeFolder;
    std::optional<QLockFile> m_lock;
    QLocalServer m_server;
};

} // namespace portolan
