#include "BuiltinTools.h"

#include "Lsof.h"
#include "ProcFs.h"
#include "Ps.h"
#include "ToolQuestions.h"

#include <algorithm>

namespace portolan {

namespace {

bool isEnabled()
{
    static const bool enabled = qgetenv("PORTOLAN_TOOLS") != "external" && ProcFs::isReadable();
    return enabled;
}

bool isLsof(const QString &path)
{
    return ToolQuestions::lsofPaths().contains(path);
}

bool isPs(const QString &path)
{
    return ToolQuestions::psPaths().contains(path);
}

/// The pid that `arguments` ask `question` about. In plain decimal: other notations are for the real tools to
/// judge.
std::optional<pid_t> pidIn(const QStringList &arguments, QStringList (&question)(qint32))
{
    const auto number = std::ranges::find_if(
        arguments, [](const QString &argument) { return !argument.isEmpty() && argument[0].isDigit(); });
    const int pid = number == arguments.end() ? 0 : number->toInt();
    return pid > 0 && arguments == question(pid) ? std::optional(pid) : std::nullopt;
}

std::optional<std::string> lsofAnswer(const QStringList &arguments)
{
    if (arguments == ToolQuestions::listeners())
        return Lsof::listeners();
    if (const auto pid = pidIn(arguments, ToolQuestions::workingDirectory))
        return Lsof::workingDirectory(*pid);
    return std::nullopt;
}

std::optional<std::string> psAnswer(const QStringList &arguments)
{
    if (const auto pid = pidIn(arguments, ToolQuestions::stats))
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

} // namespace portolan
