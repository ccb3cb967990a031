#include "ToolQuestions.h"

namespace portolan {

using namespace Qt::StringLiterals;

const QStringList &ToolQuestions::lsofPaths()
{
    static const QStringList paths = {u"/usr/sbin/lsof"_s, u"/usr/bin/lsof"_s};
    return paths;
}

const QStringList &ToolQuestions::psPaths()
{
    static const QStringList paths = {u"/bin/ps"_s, u"/usr/bin/ps"_s};
    return paths;
}

const QStringList &ToolQuestions::listeners()
{
    static const QStringList arguments = {u"-nP"_s, u"-iTCP"_s, u"-sTCP:LISTEN"_s, u"-FpcnPT"_s};
    return arguments;
}

QStringList ToolQuestions::workingDirectory(qint32 pid)
{
    return {u"-a"_s, u"-p"_s, QString::number(pid), u"-d"_s, u"cwd"_s, u"-Fn"_s};
}

QStringList ToolQuestions::stats(qint32 pid)
{
    return {u"-o"_s, u"etime=,%cpu=,rss="_s, u"-p"_s, QString::number(pid)};
}

} // namespace portolan
