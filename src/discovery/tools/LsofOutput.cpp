// SPDX-License-Identifier: MIT
#include "LsofOutput.h"

#include "PrintedName.h"
#include "StrictNumber.h"

#include <algorithm>
#include <array>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

constexpr std::array acceptedHosts{"*"_L1, "127.0.0.1"_L1, "[::1]"_L1, "localhost"_L1, "[::]"_L1};

} // namespace

QList<RawListener> PortScanner::parseListeners(const QString &output)
{
    QList<RawListener> listeners;
    std::optional<qint32> pid;
    QString command;
    for (QStringView line : QStringView(output).tokenize(u'\n', Qt::SkipEmptyParts)) {
        const QStringView value = line.sliced(1);
        switch (line.front().unicode()) {
        case 'p':
            pid = StrictNumber::toInt32(value);
            command.clear();
            break;
        case 'c':
            command = value.toString();
            break;
        case 'n':
            if (const std::optional<qint64> number = port(value); pid && number)
                listeners.append({.pid = *pid, .command = command, .port = *number});
            break;
        default:
            break;
        }
    }
    return listeners;
}

std::optional<qint64> PortScanner::port(QStringView fromName)
{
    const qsizetype colon = fromName.lastIndexOf(u':');
    if (colon < 0)
        return std::nullopt;
    const QStringView host = fromName.first(colon);
    if (std::ranges::none_of(acceptedHosts, [&](QLatin1StringView accepted) { return host == accepted; }))
        return std::nullopt;
    return StrictNumber::toInt64(fromName.sliced(colon + 1));
}

std::optional<QString> PortScanner::parseCwd(qint32 pid, const QString &output)
{
    for (QStringView line : QStringView(output).tokenize(u'\n', Qt::SkipEmptyParts)) {
        if (!line.startsWith(u'n'))
            continue;
        const QStringView name = line.sliced(1);
        // Not a folder but lsof's error message about one: "/proc/42/cwd (readlink: ...)".
        const bool isMessage = name.startsWith(u"/proc/") && name.startsWith(u"/proc/%1/cwd ("_s.arg(pid));
        return isMessage ? std::nullopt : std::optional(PrintedName::plain(name.toString()));
    }
    return std::nullopt;
}

} // namespace portolan
