#include "BuiltinTools.h"

#include "Lsof.h"
#include "ProcFs.h"
#include "Ps.h"

#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool isEnabled()
{
    static const bool enabled = qgetenv("PORTOLAN_TOOLS") != "external" && ProcFs::isReadable();
    return enabled;
}

bool isLsof(const QString &path)
{
    return path == "/usr/sbin/lsof"_L1 || path == "/usr/bin/lsof"_L1;
}

bool isPs(const QString &path)
{
    return path == "/bin/ps"_L1 || path == "/usr/bin/ps"_L1;
}

/// The pid in plain decimal; other notations are for the real tools to judge.
std::optional<pid_t> parsePid(const QString &text)
{
    const bool isPlain =
        !text.startsWith(u'0') && std::ranges::all_of(text, [](QChar c) { return c >= u'0' && c <= u'9'; });
    bool fits = false;
    const int pid = text.toInt(&fits);
    return isPlain && fits ? std::optional(pid) : std::nullopt;
}

/// The pid that stands at `position` when all other `arguments` are those of `pattern`.
std::optional<pid_t> pidIn(QStringList arguments, const QStringList &pattern, qsizetype position)
{
    if (arguments.size() != pattern.size())
        return std::nullopt;
    const auto pid = parsePid(arguments[position]);
    arguments[position] = pattern[position];
    return arguments == pattern ? pid : std::nullopt;
}

std::optional<std::string> lsofAnswer(const QStringList &arguments)
{
    static const QStringList listeners = {u"-nP"_s, u"-iTCP"_s, u"-sTCP:LISTEN"_s, u"-FpcnPT"_s};
    static const QStringList workingDirectory = {u"-a"_s, u"-p"_s, u"PID"_s, u"-d"_s, u"cwd"_s, u"-Fn"_s};
    if (arguments == listeners)
        return Lsof::listeners();
    if (const auto pid = pidIn(arguments, workingDirectory, 2))
        return Lsof::workingDirectory(*pid);
    return std::nullopt;
}

std::optional<std::string> psAnswer(const QStringList &arguments)
{
    static const QStringList stats = {u"-o"_s, u"etime=,%cpu=,rss="_s, u"-p"_s, u"PID"_s};
    if (const auto pid = pidIn(arguments, stats, 3))
        return Ps::stats(*pid);
    return std::nullopt;
}

} // namespace

bool BuiltinTools::standInFor(const QString &path)
{
    return (isLsof(path) || isPs(path)) && isEnabled();
}

std::optional<QString> BuiltinTools::answer(const QString &path, const QStringList &arguments)
{
    if (!standInFor(path))
        return std::nullopt;
    const auto text = isLsof(path) ? lsofAnswer(arguments) : psAnswer(arguments);
    return text ? std::optional(QString::fromStdString(*text)) : std::nullopt;
}
