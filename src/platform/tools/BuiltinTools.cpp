#include "BuiltinTools.h"

#include "Lsof.h"
#include "ProcFs.h"
#include "Ps.h"
#include "ToolQuestions.h"

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
    for (const QString &argument : arguments) {
        bool isNumber = false;
        const int pid = argument.toInt(&isNumber);
        if (isNumber)
            return pid > 0 && arguments == question(pid) ? std::optional(pid) : std::nullopt;
    }
    return std::nullopt;
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
