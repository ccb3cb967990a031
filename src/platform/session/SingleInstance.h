// SPDX-License-Identifier: MIT
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

/// Ensures that one instance runs per session. A second start passes its request on to it: over the session
/// bus, where the first one owns a name, or without a bus over a socket in the user's runtime folder, which a
/// lock file guards. Main thread.
class SingleInstance : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    enum class Outcome {
        First,      ///< this is the only instance; `requested` reports later starts
        Forwarded,  ///< another instance runs and has received the request
        Unanswered, ///< another instance runs but does not answer
    };

    /// `runtimeFolder` is used only if `bus` is not connected.
    SingleInstance(const QDBusConnection &bus, const QString &runtimeFolder);
    ~SingleInstance() override;

    /// Becomes the only instance, or sends `request` to the one that runs. Blocks for at most 3 seconds.
    [[nodiscard]] Outcome claim(StartRequest request);

public Q_SLOTS:
    // The methods of org.freedesktop.Application.
    Q_SCRIPTABLE void Activate(const QVariantMap &platformData);
    Q_SCRIPTABLE void Open(const QStringList &uris, const QVariantMap &platformData);
    Q_SCRIPTABLE void ActivateAction(const QString &name, const QVariantList &parameter,
                                     const QVariantMap &platformData);

Q_SIGNALS:
    /// A later start of the program sent this request; never `None`.
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
