#include "ServiceJson.h"

#include "TerminalText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

QJsonValue textOrNull(const std::optional<QString> &text)
{
    return text ? QJsonValue(*text) : QJsonValue();
}

QJsonObject healthOf(const Health &health)
{
    switch (health.state()) {
    case Health::State::healthy:
        return {{u"state"_s, u"healthy"_s}, {u"status"_s, health.status()}, {u"ms"_s, health.ms()}};
    case Health::State::checking:
        return {{u"state"_s, u"checking"_s}};
    case Health::State::unreachable:
        return {{u"state"_s, u"unreachable"_s}};
    case Health::State::unknown:
        break;
    }
    return {{u"state"_s, u"unknown"_s}};
}

QJsonValue statsOf(const std::optional<ProcessStats> &stats)
{
    if (!stats)
        return {};
    return QJsonObject{{u"uptimeSeconds"_s, stats->uptimeSeconds},
                       {u"cpuPercent"_s, stats->cpuPercent},
                       {u"memoryMB"_s, stats->memoryMB}};
}

QJsonObject objectOf(const Service &service, bool isPinned)
{
    return {
        {u"id"_s, service.id()},
        {u"pid"_s, service.pid},
        {u"port"_s, service.port},
        {u"command"_s, service.command},
        {u"folderPath"_s, textOrNull(service.folderPath)},
        {u"prettyFolder"_s, textOrNull(service.prettyFolder())},
        {u"displayName"_s, service.displayName},
        {u"framework"_s, service.framework.rawValue()},
        {u"url"_s, service.url()},
        {u"health"_s, healthOf(service.health)},
        {u"stats"_s, statsOf(service.stats)},
        {u"pinned"_s, isPinned},
    };
}

bool isHarmless(QChar character)
{
    if (character.unicode() < 0x7F || character.isSurrogate())
        return true;
    return TerminalText::harmless(QStringView(&character, 1)) == character;
}

// QJsonDocument escapes the control characters that JSON forbids, and no others.
QByteArray withEscapedCharacters(const QByteArray &json)
{
    QString result;
    for (const QChar character : QString::fromUtf8(json)) {
        if (isHarmless(character))
            result += character;
        else
            result += u"\\u%1"_s.arg(uint(character.unicode()), 4, 16, QChar(u'0'));
    }
    return result.toUtf8();
}

} // namespace

QByteArray ServiceJson::of(const QList<Service> &services, const QSet<qint64> &pinnedPorts, Layout layout)
{
    QJsonArray array;
    for (const Service &service : services)
        array.append(objectOf(service, pinnedPorts.contains(service.port)));
    const bool isOneLine = layout == Layout::oneLine;
    QByteArray json =
        QJsonDocument(array).toJson(isOneLine ? QJsonDocument::Compact : QJsonDocument::Indented);
    if (isOneLine)
        json += '\n';
    return withEscapedCharacters(json);
}

} // namespace portolan
