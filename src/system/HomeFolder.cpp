#include "HomeFolder.h"

#include <QFile>
#include <QTextBoundaryFinder>

#include <pwd.h>
#include <unistd.h>

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

} // namespace

QString HomeFolder::path()
{
    static const QString path = pathFromPasswordDatabase();
    return path;
}

bool HomeFolder::holds(const QString &home, const QString &folder)
{
    if (home.isEmpty() || !folder.startsWith(home))
        return false;
    // A combining mark right behind the prefix belongs to the prefix's last character, which is then another
    // one.
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, folder);
    characters.setPosition(home.size());
    return home.size() == folder.size() || characters.isAtBoundary();
}

QString HomeFolder::abbreviated(const QString &folder, const QString &home)
{
    return holds(home, folder) ? u'~' + folder.sliced(home.size()) : folder;
}

} // namespace portolan
