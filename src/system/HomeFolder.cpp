// SPDX-License-Identifier: MIT
#include "HomeFolder.h"

#include <QFile>
#include <QFileInfo>
#include <QTextBoundaryFinder>

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <vector>

namespace portolan {

namespace {

QString pathFromPasswordDatabase()
{
    std::vector<char> buffer(1024);
    passwd entry{};
    passwd *found = nullptr;
    int error = 0;
    while ((error = getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found)) == ERANGE ||
           error == EINTR) {
        if (error == ERANGE)
            buffer.resize(buffer.size() * 2);
    }
    if (!found || !found->pw_dir)
        return {};
    QString path = QFile::decodeName(found->pw_dir);
    while (path.size() > 1 && path.endsWith(u'/'))
        path.chop(1);
    return path;
}

bool beginsWith(const QString &folder, const QString &home)
{
    if (home.isEmpty() || !folder.startsWith(home))
        return false;
    // A combining mark right after the prefix changes the prefix's last character into another one.
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, folder);
    characters.setPosition(home.size());
    return home.size() == folder.size() || characters.isAtBoundary();
}

} // namespace

QString HomeFolder::path()
{
    static const QString path = pathFromPasswordDatabase();
    return path;
}

QStringList HomeFolder::namesOf(const QString &home)
{
    const QString target = QFileInfo(home).canonicalFilePath();
    return target.isEmpty() || target == home ? QStringList{home} : QStringList{home, target};
}

QStringList HomeFolder::paths()
{
    static const QStringList paths = namesOf(path());
    return paths;
}

bool HomeFolder::holds(const QStringList &homes, const QString &folder)
{
    return std::ranges::any_of(homes, [&](const QString &home) { return beginsWith(folder, home); });
}

QString HomeFolder::abbreviated(const QString &folder, const QStringList &homes)
{
    const auto home =
        std::ranges::find_if(homes, [&](const QString &name) { return beginsWith(folder, name); });
    return home == homes.end() ? folder : u'~' + folder.sliced(home->size());
}

} // namespace portolan
