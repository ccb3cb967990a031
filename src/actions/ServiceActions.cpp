// SPDX-License-Identifier: MIT
#include "ServiceActions.h"

#include "Clipboard.h"
#include "DetachedProgram.h"
#include "FileManager.h"
#include "ProcessHandle.h"
#include "Terminal.h"
#include "Termination.h"
#include "XdgOpen.h"

#include <QStandardPaths>
#include <QUrl>

#include <algorithm>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace portolan {

namespace {

bool isInstalled(const QString &path)
{
    return !QStandardPaths::findExecutable(path).isEmpty();
}

} // namespace

QStringList ServiceActions::usualEditors(const QString &home)
{
    struct Editor
    {
        QLatin1StringView command;
        QLatin1StringView flatpak;
    };
    QStringList paths;
    for (const auto &[command, flatpak] :
         {Editor{"code"_L1, "com.visualstudio.code"_L1}, Editor{"cursor"_L1, "co.anysphere.cursor"_L1}}) {
        paths += {
            "/usr/local/bin/"_L1 + command,
            "/opt/homebrew/bin/"_L1 + command,
            // Where Linux packages put the same launcher.
            "/usr/bin/"_L1 + command,
            "/usr/share/"_L1 + command + "/bin/"_L1 + command,
            "/snap/bin/"_L1 + command,
            "/var/lib/flatpak/exports/bin/"_L1 + flatpak,
            home + "/.local/share/flatpak/exports/bin/"_L1 + flatpak,
            "/home/linuxbrew/.linuxbrew/bin/"_L1 + command,
            home + "/.local/bin/"_L1 + command,
        };
    }
    return paths;
}

ServiceActions::ServiceActions(IdentityOf identityOf, QStringList editors, QObject *parent)
    : QObject(parent)
    , m_identityOf(std::move(identityOf))
    , m_editors(std::move(editors))
{}

void ServiceActions::stop(const Service &service)
{
    const auto identity = m_identityOf ? m_identityOf(service) : std::nullopt;
    Termination::start(
        std::make_shared<ProcessHandle>(identity ? ProcessHandle(*identity) : ProcessHandle(service.pid)),
        this);
    Q_EMIT stopRequested(service);
}

void ServiceActions::openInBrowser(const Service &service)
{
    XdgOpen::address(QUrl(service.url()));
}

void ServiceActions::copyURL(const Service &service)
{
    Clipboard::setText(service.url());
}

void ServiceActions::copyPort(const Service &service)
{
    Clipboard::setText(QString::number(service.port));
}

void ServiceActions::revealInFinder(const Service &service)
{
    if (service.folderPath)
        FileManager::show(*service.folderPath);
}

void ServiceActions::openInEditor(const Service &service)
{
    if (!service.folderPath)
        return;
    const auto editor = std::ranges::find_if(m_editors, isInstalled);
    if (editor == m_editors.end())
        return revealInFinder(service);
    // Some launchers are the editor itself, which must not end with this program.
    DetachedProgram::start(*editor, {*service.folderPath});
}

void ServiceActions::openInTerminal(const Service &service)
{
    if (service.folderPath)
        Terminal::open(*service.folderPath);
}

} // namespace portolan
