#include "FileManager.h"

#include "FileManager_p.h"
#include "XdgOpen.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QUrl>

namespace portolan {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

void FileManager::show(const QString &folder, const QDBusConnection &bus, std::chrono::milliseconds patience,
                       const std::function<void(const QString &folder)> &otherwise)
{
    if (!bus.isConnected())
        return otherwise(folder);

    const QStringList addresses{QString::fromLatin1(QUrl::fromLocalFile(folder).toEncoded())};
    const QString startupId;
    auto call =
        QDBusMessage::createMethodCall(u"org.freedesktop.FileManager1"_s, u"/org/freedesktop/FileManager1"_s,
                                       u"org.freedesktop.FileManager1"_s, u"ShowFolders"_s);
    call.setArguments({addresses, startupId});

    auto *answer = new QDBusPendingCallWatcher(bus.asyncCall(call, int(patience.count())));
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, answer, [answer, folder, otherwise] {
        answer->deleteLater();
        if (answer->isError())
            otherwise(folder);
    });
}

void FileManager::show(const QString &folder)
{
    show(folder, QDBusConnection::sessionBus(), 5s, XdgOpen::folder);
}

} // namespace portolan
