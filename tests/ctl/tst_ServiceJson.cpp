// SPDX-License-Identifier: MIT
#include "JsonSchema.h"
#include "Printers.h"
#include "SampleServices.h"
#include "ServiceJson.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace portolan {

using namespace Qt::StringLiterals;
using SampleServices::api;
using SampleServices::shop;
using SampleServices::stranger;

namespace {

QList<ListedService> listed(const QList<Service> &services, const QSet<qint64> &pinned = {})
{
    QList<ListedService> all;
    for (const Service &service : services)
        all.append({.service = service, .isPinned = pinned.contains(service.port)});
    return all;
}

QJsonArray parsed(const QList<Service> &services, const QSet<qint64> &pinned = {},
                  QJsonDocument::JsonFormat format = QJsonDocument::Indented)
{
    QJsonParseError error;
    const auto document = QJsonDocument::fromJson(ServiceJson::of(listed(services, pinned), format), &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << error.errorString().toStdString();
    return document.array();
}

} // namespace

TEST(ServiceJson, HoldsExactlyTheseKeys)
{
    const QStringList keys{u"command"_s, u"displayName"_s,  u"folderPath"_s, u"framework"_s,
                           u"health"_s,  u"id"_s,           u"pid"_s,        u"pinned"_s,
                           u"port"_s,    u"prettyFolder"_s, u"stats"_s,      u"url"_s};
    for (const Service &service : {shop(), api(), stranger()})
        EXPECT_EQ(parsed({service}).first().toObject().keys(), keys);
}

TEST(ServiceJson, HoldsWhatIsKnown)
{
    EXPECT_EQ(
        parsed({api()}, {8080}),
        QJsonArray({QJsonObject{
            {u"id"_s, u"7-8080"_s},
            {u"pid"_s, 7},
            {u"port"_s, 8080},
            {u"command"_s, u"python3"_s},
            {u"folderPath"_s, HomeFolder::path() + u"/api"_s},
            {u"prettyFolder"_s, u"~/api"_s},
            {u"displayName"_s, u"Api"_s},
            {u"framework"_s, u"Flask"_s},
            {u"url"_s, u"http://localhost:8080"_s},
            {u"health"_s, QJsonObject{{u"state"_s, u"unreachable"_s}}},
            {u"stats"_s, QJsonObject{{u"uptimeSeconds"_s, 42}, {u"cpuPercent"_s, 0}, {u"memoryMB"_s, 1536}}},
            {u"pinned"_s, true}}}));
}

TEST(ServiceJson, SaysNullWhereNothingIsKnown)
{
    const QJsonObject object = parsed({stranger()}).first().toObject();
    EXPECT_TRUE(object[u"folderPath"_s].isNull());
    EXPECT_TRUE(object[u"prettyFolder"_s].isNull());
    EXPECT_TRUE(object[u"stats"_s].isNull());
    EXPECT_EQ(object[u"pinned"_s], QJsonValue(false));
}

TEST(ServiceJson, TellsTheHealth)
{
    const auto health = [](Health value) {
        Service service = shop();
        service.health = value;
        return parsed({service}).first()[u"health"_s].toObject();
    };
    EXPECT_EQ(health(Health::healthy(404, 3)),
              QJsonObject({{u"state"_s, u"healthy"_s}, {u"status"_s, 404}, {u"ms"_s, 3}}));
    EXPECT_EQ(health(Health::unknown()), QJsonObject({{u"state"_s, u"unknown"_s}}));
    EXPECT_EQ(health(Health::checking()), QJsonObject({{u"state"_s, u"checking"_s}}));
    EXPECT_EQ(health(Health::unreachable()), QJsonObject({{u"state"_s, u"unreachable"_s}}));
}

TEST(ServiceJson, KeepsTheOrder)
{
    const QJsonArray array = parsed({stranger(), shop(), api()});
    EXPECT_EQ(array[0][u"port"_s].toInt(), 50051);
    EXPECT_EQ(array[1][u"port"_s].toInt(), 3000);
    EXPECT_EQ(array[2][u"port"_s].toInt(), 8080);
}

TEST(ServiceJson, IsAnEmptyArrayWithoutServices)
{
    EXPECT_EQ(ServiceJson::of({}, QJsonDocument::Compact), "[]\n");
    EXPECT_EQ(parsed({}), QJsonArray());
}

TEST(ServiceJson, TakesOneLineIfAsked)
{
    const QByteArray line = ServiceJson::of(listed({shop(), api()}), QJsonDocument::Compact);
    EXPECT_EQ(line.count('\n'), 1);
    EXPECT_TRUE(line.endsWith('\n'));
    EXPECT_EQ(parsed({shop(), api()}, {}, QJsonDocument::Compact), parsed({shop(), api()}));
}

TEST(ServiceJson, KeepsStrangeTextsExactlyAndHarmless)
{
    Service service = shop();
    service.displayName = u"a\x1b[2J\n\x7f\u009b1m\u202e\u2028 \"\\ Größe 🚀"_s;
    const QByteArray json = ServiceJson::of(listed({service}), QJsonDocument::Compact);
    EXPECT_EQ(parsed({service}).first()[u"displayName"_s].toString(), service.displayName);
    for (const QChar character : QString::fromUtf8(json).chopped(1))
        EXPECT_TRUE(character.isPrint() || character.isSurrogate()) << std::hex << uint(character.unicode());
    EXPECT_TRUE(json.contains("Größe 🚀"));
}

TEST(ServiceJson, NamesTheMachineAndSaysHowOldItIs)
{
    const auto json = ServiceJson::of(
        {{.service = shop(), .host = u"web1"_s, .age = std::chrono::seconds(7)}}, QJsonDocument::Compact);
    const QJsonObject object = QJsonDocument::fromJson(json).array().first().toObject();
    EXPECT_EQ(object[u"host"_s], QJsonValue(u"web1"_s));
    EXPECT_EQ(object[u"ageSeconds"_s], QJsonValue(7));
}

TEST(ServiceJson, ReadsWhatItWrites)
{
    Service odd = shop();
    odd.displayName = u"a\x1b[2J\u202e \"\\ Größe 🚀"_s;
    odd.health = Health::checking();
    QList<ListedService> services = listed({shop(), api(), stranger(), odd}, {8080});
    for (ListedService &service : services)
        service.host = u"web1"_s;
    for (const auto format : {QJsonDocument::Compact, QJsonDocument::Indented})
        EXPECT_EQ(ServiceJson::read(ServiceJson::of(services, format), u"web1"_s), services);
    EXPECT_EQ(ServiceJson::read("[]", u"web1"_s), QList<ListedService>());
}

TEST(ServiceJson, KeepsTheNameOfTheHostThatWasAskedAndIgnoresOtherKeys)
{
    QJsonObject object = parsed({shop()}).first().toObject();
    object[u"host"_s] = u"another"_s;
    object[u"ageSeconds"_s] = 5;
    object[u"later"_s] = QJsonArray{1};
    object[u"framework"_s] = u"Yet Unknown"_s;
    const auto read = ServiceJson::read(QJsonDocument(QJsonArray{object}).toJson(), u"web1"_s);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->first().host, u"web1"_s);
    EXPECT_EQ(read->first().age, std::nullopt);
    EXPECT_EQ(read->first().service.framework, Framework::generic);
}

TEST(ServiceJson, ReadsNothingThatIsNoList)
{
    for (const char *text :
         {"", "[", "{}", "null", "[1]", "[{}]", "[[]]", "portolanctl: no\n", "[]]", "\xff"})
        EXPECT_EQ(ServiceJson::read(text, u"web1"_s), std::nullopt) << text;
}

/// A violation of the schema: a key, and a value that it must not have. A key with a dot is one of an object.
struct BreachCase
{
    const char *key;
    QByteArray value; ///< as JSON; empty: the key is missing
};

QJsonArray withBreach(const BreachCase &breach)
{
    QJsonObject object = parsed({shop()}).first().toObject();
    const QStringList path = QString::fromLatin1(breach.key).split(u'.');
    QJsonObject inner = object[path[0]].toObject();
    QJsonObject &changed = path.size() > 1 ? inner : object;
    if (breach.value.isEmpty())
        changed.remove(path.last());
    else
        changed[path.last()] = QJsonDocument::fromJson('[' + breach.value + ']').array().first();
    if (path.size() > 1)
        object[path[0]] = inner;
    return {object};
}

const QList<BreachCase> breaches{{"id", ""},
                                 {"id", "7"},
                                 {"pid", "0"},
                                 {"pid", "-1"},
                                 {"pid", "2147483648"},
                                 {"pid", "1.5"},
                                 {"pid", "\"4242\""},
                                 {"port", "0"},
                                 {"port", "65536"},
                                 {"port", "null"},
                                 {"command", "null"},
                                 {"folderPath", "1"},
                                 {"prettyFolder", "{}"},
                                 {"displayName", ""},
                                 {"displayName", "[]"},
                                 {"displayName", '"' + QByteArray(4097, 'n') + '"'},
                                 {"framework", "true"},
                                 {"url", "[]"},
                                 {"health", "null"},
                                 {"health", "{}"},
                                 {"health.state", "\"well\""},
                                 {"health.status", "99"},
                                 {"health.status", "1000"},
                                 {"health.status", ""},
                                 {"health.ms", "-1"},
                                 {"health.ms", "0.5"},
                                 {"stats", "[]"},
                                 {"stats", "{}"},
                                 {"stats.uptimeSeconds", "-1"},
                                 {"stats.uptimeSeconds", "1e300"},
                                 {"stats.cpuPercent", "\"1\""},
                                 {"stats.memoryMB", "-0.5"},
                                 {"pinned", "0"},
                                 {"pinned", ""}};

TEST(ServiceJson, ReadsNothingThatBreaksTheSchema)
{
    const JsonSchema schema;
    for (const BreachCase &breach : breaches) {
        const QByteArray json = QJsonDocument(withBreach(breach)).toJson(QJsonDocument::Compact);
        EXPECT_EQ(ServiceJson::read(json, u"web1"_s), std::nullopt) << json.left(400).toStdString();
        EXPECT_FALSE(schema.allows(json)) << json.left(400).toStdString();
    }
    EXPECT_TRUE(schema.allows(ServiceJson::of(listed({shop(), api(), stranger()}), QJsonDocument::Compact)));
}

TEST(ServiceJson, ReadsNothingThatDoesNotFitTogether)
{
    for (const BreachCase &breach :
         {BreachCase{"id", "\"4243-3000\""}, BreachCase{"url", "\"http://elsewhere.example\""}}) {
        EXPECT_EQ(ServiceJson::read(QJsonDocument(withBreach(breach)).toJson(), u"web1"_s), std::nullopt);
    }
}

TEST(ServiceJson, ReadsNoMoreServersThanAMachineCanHave)
{
    QJsonArray array = parsed({shop()});
    const QJsonObject one = array.first().toObject();
    while (array.size() < 10'000)
        array.append(one);
    EXPECT_TRUE(ServiceJson::read(QJsonDocument(array).toJson(), u"web1"_s));
    array.append(one);
    EXPECT_FALSE(ServiceJson::read(QJsonDocument(array).toJson(), u"web1"_s));
}

} // namespace portolan
