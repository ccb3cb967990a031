// SPDX-License-Identifier: MIT
#include "ServiceOperand.h"

#include "TerminalText.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

/// A number as people write it: digits alone, from 1 to `most`.
std::optional<qint32> number(QStringView text, qint32 most)
{
    if (!std::ranges::all_of(text, [](QChar c) { return c >= u'0' && c <= u'9'; }))
        return std::nullopt;
    bool fits = false;
    const qint32 value = text.toInt(&fits);
    return fits && value >= 1 && value <= most ? std::optional(value) : std::nullopt;
}

} // namespace

std::optional<ServiceOperand> ServiceOperand::parse(QStringView operand)
{
    const auto isPartOfId = [](QChar c) { return c == u'-' || (c >= u'0' && c <= u'9'); };
    if (!std::ranges::all_of(operand, isPartOfId))
        return ServiceOperand{.name = operand.toString()};
    const qsizetype hyphen = operand.indexOf(u'-');
    const auto port = number(operand.sliced(hyphen + 1), std::numeric_limits<quint16>::max());
    if (!port)
        return std::nullopt;
    if (hyphen < 0)
        return ServiceOperand{.port = *port};
    const auto pid = number(operand.first(hyphen), std::numeric_limits<qint32>::max());
    return pid ? std::optional(ServiceOperand{.port = *port, .pid = pid}) : std::nullopt;
}

QList<ListedService> ServiceOperand::in(const QList<ListedService> &services) const
{
    const auto those = [&](auto condition) {
        QList<ListedService> found;
        std::ranges::copy_if(services, std::back_inserter(found),
                             [&](const ListedService &listed) { return condition(listed.service); });
        return found;
    };
    if (name.isEmpty())
        return those(
            [this](const Service &service) { return service.port == port && (!pid || service.pid == *pid); });
    const auto called = those([this](const Service &service) {
        return service.displayName.compare(name, Qt::CaseInsensitive) == 0;
    });
    if (!called.isEmpty())
        return called;
    return those(
        [this](const Service &service) { return service.displayName.startsWith(name, Qt::CaseInsensitive); });
}

bool ServiceOperand::isAmbiguous(const QList<ListedService> &found) const
{
    return !name.isEmpty() && std::ranges::any_of(found, [&](const ListedService &listed) {
        return listed.service.displayName.compare(found.first().service.displayName, Qt::CaseInsensitive);
    });
}

QString ServiceOperand::noneText() const
{
    if (!name.isEmpty())
        return u"no server is called '%1'"_s.arg(TerminalText::harmless(name));
    return pid ? u"no server has the id %1-%2"_s.arg(*pid).arg(port) : u"no server on port %1"_s.arg(port);
}

QString ServiceOperand::severalText(const QList<ListedService> &candidates) const
{
    QString text = QString::number(candidates.size());
    if (!name.isEmpty())
        text += u" servers are called '%1', name one by its id:"_s.arg(TerminalText::harmless(name));
    else
        text += u" processes listen on port %1, name one by its id:"_s.arg(port);
    for (const ListedService &listed : candidates) {
        text += u"\n"_s;
        for (const QString &part : {listed.host, listed.service.id(), listed.service.displayName,
                                    listed.service.prettyFolder().value_or(QString())}) {
            if (!part.isEmpty())
                text += u"  "_s + TerminalText::harmless(part);
        }
    }
    return text;
}

} // namespace portolan
