// SPDX-License-Identifier: MIT
#include "ServiceJson.h"

#include "TerminalText.h"

#include <QJsonArray>
#include <QJsonObject>

#include <cmath>
#include <limits>

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

QJsonObject objectOf(const ListedService &listed)
{
    const Service &service = listed.service;
    QJsonObject object{
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
        {u"pinned"_s, listed.isPinned},
    };
    if (!listed.host.isEmpty())
        object.insert(u"host"_s, listed.host);
    if (listed.age)
        object.insert(u"ageSeconds"_s, qint64(listed.age->count()));
    return object;
}

// QJsonDocument escapes only the control characters that JSON forbids.
QByteArray withEscapedCharacters(const QByteArray &json)
{
    QString result;
    for (const QChar character : QString::fromUtf8(json)) {
        if (character < u'\x7f' || character.isSurrogate() ||
            TerminalText::harmless({&character, 1}) == character)
            result += character;
        else
            result += u"\\u%1"_s.arg(uint(character.unicode()), 4, 16, QChar(u'0'));
    }
    return result.toUtf8();
}

constexpr qsizetype maxServices = 10'000;
constexpr qsizetype maxTextLength = 4096;
constexpr double maxNumber = 1e15; // a double represents every integer up to this one

/// Reads the values of an object. The first that violates the schema sets `isValid` to false for good; values
/// read after that are meaningless.
class Reader
{
public:
    Reader(const QJsonValue &value, bool &isValid)
        : m_object(value.toObject())
        , m_isValid(isValid)
    {
        check(value.isObject());
    }

    void check(bool condition) { m_isValid &= condition; }

    double number(const QString &key, double least, double most)
    {
        const double value = m_object[key].toDouble(qQNaN());
        check(value >= least && value <= most);
        return value;
    }
    qint64 integer(const QString &key, double least, double most)
    {
        const double value = number(key, least, most);
        check(value == std::floor(value));
        return m_isValid ? qint64(value) : 0;
    }
    QString text(const QString &key)
    {
        const QJsonValue value = m_object[key];
        check(value.isString() && value.toString().toUcs4().size() <= maxTextLength);
        return value.toString();
    }
    std::optional<QString> textOrNull(const QString &key)
    {
        return m_object[key].isNull() ? std::nullopt : std::optional(text(key));
    }
    bool boolean(const QString &key)
    {
        check(m_object[key].isBool());
        return m_object[key].toBool();
    }
    Health health(const QString &key)
    {
        Reader health(m_object[key], m_isValid);
        const QString state = health.text(u"state"_s);
        if (state == u"healthy")
            return Health::healthy(health.integer(u"status"_s, 100, 999),
                                   health.integer(u"ms"_s, 0, maxNumber));
        if (state == u"checking")
            return Health::checking();
        if (state == u"unreachable")
            return Health::unreachable();
        check(state == u"unknown");
        return Health::unknown();
    }
    std::optional<ProcessStats> statsOrNull(const QString &key)
    {
        if (m_object[key].isNull())
            return std::nullopt;
        Reader stats(m_object[key], m_isValid);
        return ProcessStats{.uptimeSeconds = stats.integer(u"uptimeSeconds"_s, 0, maxNumber),
                            .cpuPercent = stats.number(u"cpuPercent"_s, 0, maxNumber),
                            .memoryMB = stats.number(u"memoryMB"_s, 0, maxNumber)};
    }

private:
    const QJsonObject m_object;
    bool &m_isValid;
};

std::optional<ListedService> serviceOf(const QJsonValue &value)
{
    bool isValid = true;
    Reader reader(value, isValid);
    ListedService listed;
    Service &service = listed.service;
    service.pid = qint32(reader.integer(u"pid"_s, 1, std::numeric_limits<qint32>::max()));
    service.port = reader.integer(u"port"_s, 1, std::numeric_limits<quint16>::max());
    service.command = reader.text(u"command"_s);
    service.folderPath = reader.textOrNull(u"folderPath"_s);
    service.displayName = reader.text(u"displayName"_s);
    service.framework = Framework::fromRawValue(reader.text(u"framework"_s)).value_or(Framework::generic);
    service.health = reader.health(u"health"_s);
    service.stats = reader.statsOrNull(u"stats"_s);
    listed.isPinned = reader.boolean(u"pinned"_s);
    (void)reader.textOrNull(u"prettyFolder"_s);
    reader.check(reader.text(u"id"_s) == service.id());
    reader.check(reader.text(u"url"_s) == service.url());
    return isValid ? std::optional(listed) : std::nullopt;
}

} // namespace

QByteArray ServiceJson::of(const QList<ListedService> &services, QJsonDocument::JsonFormat format)
{
    QJsonArray array;
    for (const ListedService &listed : services)
        array.append(objectOf(listed));
    const QByteArray json = QJsonDocument(array).toJson(format);
    return withEscapedCharacters(format == QJsonDocument::Compact ? json + '\n' : json);
}

std::optional<QList<ListedService>> ServiceJson::read(const QByteArray &json, const QString &host)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isArray() || document.array().size() > maxServices)
        return std::nullopt;
    QList<ListedService> services;
    for (const QJsonValue value : document.array()) {
        std::optional<ListedService> listed = serviceOf(value);
        if (!listed)
            return std::nullopt;
        listed->host = host;
        services.append(*listed);
    }
    return services;
}

} // namespace portolan
