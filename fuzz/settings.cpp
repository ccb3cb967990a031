// SPDX-License-Identifier: MIT
// The settings file, with arbitrary content.
#include "Require.h"
#include "UserDefaults.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>

namespace portolan {

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    static const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("settings.json"));
    QFile file(path);
    require(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(reinterpret_cast<const char *>(data), qint64(size));
    file.close();

    UserDefaults defaults(path);
    const auto order = defaults.string(u"sortOrder");
    (void)defaults.boolean(u"autoRefresh");
    defaults.setIntegers(u"pinnedPorts", {3000});
    const UserDefaults again(path);
    require(again.integers(u"pinnedPorts") == QList<qint64>{3000});
    require(again.string(u"sortOrder") == order);
    for (const QString &broken : QDir(folder.path()).entryList({QStringLiteral("*broken*")}))
        QFile::remove(folder.filePath(broken));
    return 0;
}

} // namespace portolan
