// SPDX-License-Identifier: MIT
#include "ServiceOperand.h"

#include "TerminalText.h"

#include <QSet>

#include <algorithm>
#include <functional>
#include <limits>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

/// A number of digits only, from 1 to `most`.
std::optional<qint32> number(QStringView text, qint32 most)
{
    if (!std::ranges::all_of(text, [](QChar c) { return c >= u'0' && c <= u'9'; }))
        return std::nullopt;
    bool fits = false;
    const qint32 value = text.toInt(&fits);
    return fits && value >= 1 && value <= most ? std::optional(value) : std::nullopt;
}

/// Those of `services` that match the operand.
QList<ListedService> meantBy(const ServiceOperand &operand, QList<ListedService> services)
{
    if (operand.name.isEmpty()) {
        services.removeIf([&](const ListedService &listed) {
            return listed.service.port != operand.port || (operand.pid && listed.service.pid != *operand.pid);
        });
        return services;
    }
    services.removeIf([&](const ListedService &listed) {
        return !listed.service.displayName.startsWith(operand.name, Qt::CaseInsensitive);
    });
    const auto isCalledSo = [&](const ListedService &listed) {
        return listed.service.displayName.compare(operand.name, Qt::CaseInsensitive) == 0;
    };
    if (std::ranges::any_of(services, isCalledSo))
        services.removeIf(std::not_fn(isCalledSo));
    return services;
}

bool haveSeveralNames(const QList<ListedService> &services)
{
    return std::ranges::any_of(services, [&](const ListedService &listed) {
        return listed.service.displayName.compare(services.first().service.displayName, Qt::CaseInsensitive);
    });
}

QString noneText(const ServiceOperand &operand)
{
    if (!operand.name.isEmpty())
        return u"no server is called '%1'"_s.arg(TerminalText::harmless(operand.name));
    return operand.pid ? u"no server has the id %1-%2"_s.arg(*operand.pid).arg(operand.port)
                       : u"no server on port %1"_s.arg(operand.port);
}

QString severalText(const ServiceOperand &operand, const QList<ListedService> &candidates)
{
    QString text = QString::number(candidates.size());
    if (!operand.name.isEmpty())
        text += u" servers match '%1', name one by its id:"_s.arg(TerminalText::harmless(operand.name));
    else
        text += u" processes listen on port %1, name one by its id:"_s.arg(operand.port);
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

ServiceOperand::Choice ServiceOperand::choose(const QList<ServiceOperand> &operands,
                                              const QList<ListedService> &services, Meaning meaning)
{
    Choice choice;
    QSet<QString> keys;
    for (const ServiceOperand &operand : operands) {
        const QList<ListedService> found = meantBy(operand, services);
        const bool areTooMany = meaning == Meaning::oneServer
                                    ? found.size() > 1
                                    : !operand.name.isEmpty() && haveSeveralNames(found);
        if (found.isEmpty()) {
            choice.problems.append(noneText(operand));
        } else if (areTooMany) {
            choice.problems.append(severalText(operand, found));
            choice.isAmbiguous = true;
        } else {
            for (const ListedService &listed : found)
                keys.insert(listed.key());
        }
    }
    choice.services = services;
    choice.services.removeIf([&](const ListedService &listed) { return !keys.contains(listed.key()); });
    return choice;
}

} // namespace portolan
