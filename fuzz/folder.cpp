// SPDX-License-Identifier: MIT
// The files of a project folder: the bits of the first byte choose marker files, the rest is the
// package.json.
#include "FolderReader.h"
#include "ProjectDetector.h"
#include "Require.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <sys/stat.h>

namespace portolan {

static void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    require(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(bytes);
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    if (size == 0)
        return 0;
    static const QTemporaryDir scratch;
    static FolderReader files;
    const QString folder = scratch.filePath(QStringLiteral("folder"));
    require(QDir().mkpath(folder));
    const auto path = [&](const char *name) { return folder + u'/' + QString::fromLatin1(name); };
    if (data[0] & 1)
        write(path("package.json"),
              QByteArray(reinterpret_cast<const char *>(data + 1), qsizetype(size - 1)));
    if (data[0] & 2)
        write(path("Gemfile"), {});
    if (data[0] & 4)
        mkfifo(QFile::encodeName(path("go.mod")).constData(), 0600);
    if (data[0] & 8)
        write(path("App.sln"), {});
    if (data[0] & 16)
        QFile::link(QStringLiteral("/dev/zero"), path("package.json"));

    const auto found = ProjectDetector::detect({{QStringLiteral("node"), folder}}, files, {}).front();
    require(found.displayName.size() <= 1000);
    const bool isFromPackage = found.framework <= Framework::node;
    require(isFromPackage || (data[0] & 14) != 0);
    require(QDir(folder).removeRecursively());
    return 0;
}

} // namespace portolan
