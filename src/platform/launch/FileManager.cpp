// SPDX-License-Identifier: MIT
#include "FileManager.h"

#include "FileManager_p.h"
#include "XdgOpen.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QUrl>

namespace portolan {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

void FileManager::show(const QString &folder, const QDBusConnection &bus, std::chrono::milliseconds timeout,
                       const std::function<void(const QString &folder)> &fallback)
{
    if (!bus.isConnected())
        return fallback(folder);

    const QStringList addresses{QString::fromLatin1(QUrl::fromLocalFile(folder).toEncoded())};
    const QString startupId;
    auto call =
        QDBusMessage::createMethodCall(u"org.freedesktop.FileManager1"_s, u"/org/freedesktop/FileManager1"_s,
                                       u"org.freedesktop.FileManager1"_s, u"ShowFolders"_s);
    call.setArguments({addresses, startupId});

    auto *answer = new QDBusPendingCallWatcher(bus.asyncCall(call, int(timeout.count())));
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, answer, [answer, folder, fallback] {
        answer->deleteLater();
        if (answer->isError())
            fallback(folder);
    });
}

void FileManager::show(const QString &folder)
{
    show(folder, QDBusConnection::sessionBus(), 5s, XdgOpen::folder);
}

} // namespace portolan
