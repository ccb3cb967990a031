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
using Layout = ServiceJson::Layout;

namespace {

QJsonArray parsed(const QList<Service> &services, const QSet<qint64> &pinned = {},
                  Layout layout = Layout::indented)
{
    QJsonParseError error;
    const auto document = QJsonDocument::fromJson(ServiceJson::of(services, pinned, layout), &error);
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
    EXPECT_EQ(ServiceJson::of({}, {}, Layout::oneLine), "[]\n");
    EXPECT_EQ(parsed({}), QJsonArray());
}

TEST(ServiceJson, TakesOneLineIfAsked)
{
    const QByteArray line = ServiceJson::of({shop(), api()}, {}, Layout::oneLine);
    EXPECT_EQ(line.count('\n'), 1);
    EXPECT_TRUE(line.endsWith('\n'));
    EXPECT_EQ(parsed({shop(), api()}, {}, Layout::oneLine), parsed({shop(), api()}));
}

TEST(ServiceJson, KeepsStrangeTextsExactlyAndHarmless)
{
    Service service = shop();
    service.displayName = u"a\x1b[2J\n\x7f\u009b1m\u202e\u2028 \"\\ Größe 🚀"_s;
    const QByteArray json = ServiceJson::of({service}, {}, Layout::oneLine);
    EXPECT_EQ(parsed({service}).first()[u"displayName"_s].toString(), service.displayName);
    for (const QChar character : QString::fromUtf8(json).chopped(1))
        EXPECT_TRUE(character.isPrint() || character.isSurrogate()) << std::hex << uint(character.unicode());
    EXPECT_TRUE(json.contains("Größe 🚀"));
}

} // namespace portolan
