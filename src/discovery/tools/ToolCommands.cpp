// SPDX-License-Identifier: MIT
#include "ToolCommands.h"

#include <QFileInfo>

#include <algorithm>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

bool isExecutableFile(const QString &path)
{
    const QFileInfo file(path);
    return file.isFile() && file.isExecutable();
}

} // namespace

QString ToolCommands::lsof()
{
    return firstExecutable({u"/usr/sbin/lsof"_s, u"/usr/bin/lsof"_s});
}

QString ToolCommands::ps()
{
    return firstExecutable({u"/bin/ps"_s, u"/usr/bin/ps"_s});
}

QString ToolCommands::firstExecutable(const QStringList &candidates)
{
    const auto found = std::ranges::find_if(candidates, isExecutableFile);
    return found == candidates.end() ? candidates.first() : *found;
}

QStringList ToolCommands::listeners()
{
    return {u"-nP"_s, u"-iTCP"_s, u"-sTCP:LISTEN"_s, u"-FpcnPT"_s};
}

QStringList ToolCommands::workingFolder(qint32 pid)
{
    return {u"-a"_s, u"-p"_s, QString::number(pid), u"-d"_s, u"cwd"_s, u"-Fn"_s};
}

QStringList ToolCommands::stats(qint32 pid)
{
    return {u"-o"_s, u"etime=,%cpu=,rss="_s, u"-p"_s, QString::number(pid)};
}

} // namespace portolan
