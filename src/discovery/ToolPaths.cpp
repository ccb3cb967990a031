#include "ToolPaths.h"

#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool isExecutableFile(const QString &path)
{
    const QFileInfo file(path);
    return file.isFile() && file.isExecutable();
}

} // namespace

QString ToolPaths::lsof()
{
    return firstExecutable({u"/usr/sbin/lsof"_s, u"/usr/bin/lsof"_s});
}

QString ToolPaths::ps()
{
    return firstExecutable({u"/bin/ps"_s, u"/usr/bin/ps"_s});
}

QString ToolPaths::firstExecutable(const QStringList &candidates)
{
    const auto found = std::ranges::find_if(candidates, isExecutableFile);
    return found == candidates.end() ? candidates.first() : *found;
}
