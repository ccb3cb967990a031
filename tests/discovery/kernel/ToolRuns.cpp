#include "ToolRuns.h"

#include "BuiltinTools.h"

#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <stdexcept>

#include <grp.h>
#include <unistd.h>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

void becomeNobody()
{
    constexpr unsigned nobody = 65534;
    if (setgroups(0, nullptr) != 0 || setgid(nobody) != 0 || setuid(nobody) != 0)
        _exit(4);
}

QByteArray run(const QString &program, const QStringList &arguments, User user)
{
    QProcess process;
    if (user == User::nobody)
        process.setChildProcessModifier(becomeNobody);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
    process.setProcessEnvironment(environment);
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(program, arguments);
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit || process.exitCode() > 1)
        throw std::runtime_error("cannot run " + program.toStdString());
    return process.readAllStandardOutput();
}

// The built-in tools as a program that every user may run: the build may lie in a folder of one user's own.
QString publicProgram()
{
    static const QTemporaryDir folder;
    const QString program = folder.filePath(u"builtin_tool"_s);
    if (!QFileInfo::exists(program)) {
        QFile::copy(QStringLiteral(PORTOLAN_BUILTIN_TOOL), program);
        for (const QString &path : {folder.path(), program})
            QFile::setPermissions(path, QFile::permissions(path) | QFile::ReadOther | QFile::ExeOther);
    }
    return program;
}

} // namespace

Invocation Invocation::listeners()
{
    const QString first = u"/usr/sbin/lsof"_s;
    return {QFileInfo::exists(first) ? first : u"/usr/bin/lsof"_s,
            {u"-nP"_s, u"-iTCP"_s, u"-sTCP:LISTEN"_s, u"-FpcnPT"_s}};
}

Invocation Invocation::workingDirectory(int pid)
{
    return {listeners().path, {u"-a"_s, u"-p"_s, QString::number(pid), u"-d"_s, u"cwd"_s, u"-Fn"_s}};
}

Invocation Invocation::stats(int pid)
{
    return {u"/bin/ps"_s, {u"-o"_s, u"etime=,%cpu=,rss="_s, u"-p"_s, QString::number(pid)}};
}

QByteArray realAnswer(const Invocation &invocation, User user)
{
    return run(invocation.path, invocation.arguments, user);
}

QByteArray builtinAnswer(const Invocation &invocation, User user)
{
    if (user != User::self)
        return run(publicProgram(), QStringList(invocation.path) + invocation.arguments, user);
    const auto answer = BuiltinTools::answer(invocation.path, invocation.arguments);
    if (!answer)
        throw std::runtime_error("the built-in tools do not answer");
    return answer->toUtf8();
}

} // namespace portolan
