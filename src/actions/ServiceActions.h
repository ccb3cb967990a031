// SPDX-License-Identifier: MIT
#pragma once

#include "HomeFolder.h"
#include "ProcessIdentity.h"
#include "Service.h"

#include <QObject>
#include <QStringList>

#include <functional>
#include <optional>

namespace portolan {

/// What the user can do to a discovered server. Every action acts at once, on the main thread, without
/// waiting for its outcome; none of them reports a failure. Without a folder the folder actions do nothing.
///
/// There is one, which the views are given. Their tests give them another, hence the virtual functions.
class ServiceActions : public QObject
{
    Q_OBJECT

public:
    /// Where the launchers of the code editors may be, the preferred one first. `home` is the user's home
    /// folder.
    [[nodiscard]] static QStringList usualEditors(const QString &home = HomeFolder::path());

    /// Which process was listed as the server's; absent where the system does not tell.
    using IdentityOf = std::function<std::optional<ProcessIdentity>(const Service &service)>;

    explicit ServiceActions(IdentityOf identityOf = {}, QStringList editors = usualEditors(),
                            QObject *parent = nullptr);

    /// Ends the server's process as Termination does. Signals nobody if the process that was listed has
    /// ended, even if another has its pid; where the system does not tell, it is the process with the pid at
    /// this call. Once this object is gone, the process is no longer killed.
    Q_INVOKABLE virtual void stop(const portolan::Service &service);

    /// Opens the server's address in the user's browser.
    Q_INVOKABLE virtual void openInBrowser(const portolan::Service &service);

    /// Puts the server's address, "http://localhost:" and the port, on the clipboard.
    Q_INVOKABLE virtual void copyURL(const portolan::Service &service);
    /// Puts the port's number on the clipboard.
    Q_INVOKABLE virtual void copyPort(const portolan::Service &service);

    /// Shows the project folder in the file manager.
    Q_INVOKABLE virtual void revealInFinder(const portolan::Service &service);
    /// Opens the project folder in the first code editor that is installed, else in the file manager.
    Q_INVOKABLE virtual void openInEditor(const portolan::Service &service);
    /// Opens a terminal window whose shell is in the project folder.
    Q_INVOKABLE virtual void openInTerminal(const portolan::Service &service);

Q_SIGNALS:
    /// The server has been told to end.
    void stopRequested(const portolan::Service &service);

private:
    const IdentityOf m_identityOf;
    const QStringList m_editors;
};

} // namespace portolan
