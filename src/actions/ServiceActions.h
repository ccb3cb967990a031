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

/// What the user can do to a server. Actions are called on the main thread, do not wait for their outcome and
/// do not report failures. For a service without a folder the folder actions do nothing.
///
/// The functions are virtual for the tests of the views.
class ServiceActions : public QObject
{
    Q_OBJECT

public:
    /// The paths at which the launchers of code editors may be, in order of preference. `home` is the user's
    /// home folder.
    [[nodiscard]] static QStringList usualEditors(const QString &home = HomeFolder::path());

    /// The process that was listed for the server; absent where the system does not tell.
    using IdentityOf = std::function<std::optional<ProcessIdentity>(const Service &service)>;

    explicit ServiceActions(IdentityOf identityOf = {}, QStringList editors = usualEditors(),
                            QObject *parent = nullptr);

    /// Ends the server's process as Termination does. Sends no signal if the listed process has ended, even
    /// if another has its pid; where the system does not tell, it stops the process that has the pid at this
    /// call. Once this object is destroyed, the process is no longer killed.
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
    /// The server's process has been told to end.
    void stopRequested(const portolan::Service &service);

private:
    const IdentityOf m_identityOf;
    const QStringList m_editors;
};

} // namespace portolan
