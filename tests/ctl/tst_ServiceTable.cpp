// SPDX-License-Identifier: MIT
#include "Printers.h"
#include "SampleServices.h"
#include "ServiceTable.h"
#include "TerminalText.h"

#include <gtest/gtest.h>

namespace portolan {

using namespace Qt::StringLiterals;
using SampleServices::api;
using SampleServices::shop;
using SampleServices::stranger;

namespace {

QList<ListedService> listed(const QList<Service> &services, const QSet<qint64> &pinned)
{
    QList<ListedService> all;
    for (const Service &service : services)
        all.append({.service = service, .isPinned = pinned.contains(service.port)});
    return all;
}

QStringList lines(const QList<ListedService> &services, const ServiceTable::Layout &layout = {},
                  const TerminalColors &colors = TerminalColors())
{
    QStringList table;
    for (const StyledLine &line : ServiceTable::of(services, layout))
        table.append(colors.styled(line));
    return table;
}

QStringList lines(const QList<Service> &services, const QSet<qint64> &pinned = {},
                  const ServiceTable::Layout &layout = {})
{
    return lines(listed(services, pinned), layout);
}

} // namespace

TEST(ServiceTable, ShowsEverythingInAlignedColumns)
{
    EXPECT_EQ(
        lines({shop(), api(), stranger()}),
        QStringList({
            u" PORT  NAME  FRAMEWORK  STATUS              UPTIME  CPU  MEMORY     PID  FOLDER"_s,
            u" 3000  Shop  Next.js    Online 200 · 12 ms  1h 30m   2%   87 MB    4242  /srv/customers/acme/shop"_s,
            u" 8080  Api   Flask      Offline                42s   0%  1.5 GB       7  ~/api"_s,
            u"50051  Java  Java       —                        —    —       —  123456  —"_s,
        }));
}

TEST(ServiceTable, IsAHeaderWithoutServices)
{
    EXPECT_EQ(lines(QList<Service>()),
              QStringList({u"PORT  NAME  FRAMEWORK  STATUS  UPTIME  CPU  MEMORY  PID  FOLDER"_s}));
}

TEST(ServiceTable, MarksPinnedServices)
{
    Service plain = shop();
    plain.folderPath.reset();
    Service other = api();
    other.folderPath.reset();
    EXPECT_EQ(
        lines(QList{other, plain}, {8080}),
        QStringList({u"   PORT  NAME  FRAMEWORK  STATUS              UPTIME  CPU  MEMORY   PID  FOLDER"_s,
                     u"*  8080  Api   Flask      Offline                42s   0%  1.5 GB     7  —"_s,
                     u"   3000  Shop  Next.js    Online 200 · 12 ms  1h 30m   2%   87 MB  4242  —"_s}));
}

TEST(ServiceTable, SaysCheckingWhileAProbeIsUnderWay)
{
    Service service = shop();
    service.health = Health::checking();
    EXPECT_TRUE(lines(QList{service}).last().contains(u"  Checking  "_s));
}

TEST(ServiceTable, StaysALinePerServiceWhateverTheyAreCalled)
{
    Service service = shop();
    service.displayName = u"a\nb\x1b[2J"_s;
    service.folderPath = u"/srv/\u202eevil\r\n"_s;
    const QStringList table = lines(QList{service});
    ASSERT_EQ(table.size(), 2);
    EXPECT_TRUE(table.last().contains(u"a␊b␛[2J"_s));
    EXPECT_TRUE(table.last().endsWith(u"/srv/\ufffdevil␍␊"_s));
}

TEST(ServiceTable, AlignsWideCharacters)
{
    Service wide = shop();
    wide.displayName = u"日本"_s;
    const QStringList table = lines(QList{wide, shop()});
    EXPECT_TRUE(table[1].startsWith(u"3000  日本  Next.js"_s));
    EXPECT_TRUE(table[2].startsWith(u"3000  Shop  Next.js"_s));
}

TEST(ServiceTable, ShowsEverythingInFullWithoutALimit)
{
    Service service = shop();
    service.displayName = QString(300, u'n');
    service.folderPath = u'/' + QString(500, u'f');
    EXPECT_TRUE(lines(QList{service}).last().contains(service.displayName));
    EXPECT_TRUE(lines(QList{service}).last().endsWith(*service.folderPath));
}

TEST(ServiceTable, ShortensTheFolderFirst)
{
    EXPECT_EQ(
        lines(QList{shop()}, {}, {.columns = 90}).last(),
        u"3000  Shop  Next.js    Online 200 · 12 ms  1h 30m   2%   87 MB  4242  /srv/c…ers/acme/shop"_s);
}

TEST(ServiceTable, ThenTheName)
{
    Service service = shop();
    service.displayName = u"An endless name for a shop"_s;
    EXPECT_EQ(
        lines(QList{service}, {}, {.columns = 95}).last(),
        u"3000  An endless n…  Next.js    Online 200 · 12 ms  1h 30m   2%   87 MB  4242  /srv/…/acme/shop"_s);
}

TEST(ServiceTable, ThenLeavesOutFigures)
{
    Service service = shop();
    service.folderPath = u"/srv/shop"_s;
    const QString whole = lines(QList{service}).last();
    const int enough = int(whole.size());
    EXPECT_EQ(lines(QList{service}, {}, {.columns = enough}).last(), whole);
    EXPECT_EQ(lines(QList{service}, {}, {.columns = enough - 1}).last(),
              u"3000  Shop  Next.js    Online 200 · 12 ms  1h 30m   2%   87 MB  /srv/shop"_s);
    EXPECT_EQ(lines(QList{service}, {}, {.columns = 40}).last(), u"3000  Shop  Online 200 · 12 ms"_s);
}

TEST(ServiceTable, KeepsEveryLineWithinTheColumns)
{
    Service service = shop();
    service.displayName = u"An endless 名前 for a shop"_s;
    for (int columns = 1; columns < 140; ++columns) {
        for (const QString &line : lines({service, api(), stranger()}, {8080}, {.columns = columns}))
            EXPECT_LE(TerminalText::width(line), columns) << line.toStdString();
    }
}

TEST(ServiceTable, KeepsTheNameAndTheStateWhereThereIsHardlyRoom)
{
    EXPECT_EQ(lines({shop(), api()}, {}, {.columns = 20}),
              QStringList({u"PORT  NAME  STATUS"_s, u"3000  Shop  Online …"_s, u"8080  Api   Offline"_s}));
    EXPECT_EQ(lines(QList{shop()}, {}, {.columns = 4}).last(), u"3000"_s);
}

TEST(ServiceTable, ColoursStatesAndNothingWithoutColours)
{
    const QStringList table =
        lines(listed({shop(), api(), stranger()}, {}), {}, TerminalColors(TerminalColors::Depth::Sixteen));
    EXPECT_TRUE(table[0].contains(u"\x1b[2mPORT\x1b[0m"_s));
    EXPECT_TRUE(table[1].contains(u"\x1b[32mOnline 200 · 12 ms\x1b[0m"_s));
    EXPECT_TRUE(table[2].contains(u"\x1b[31mOffline\x1b[0m"_s));
    EXPECT_TRUE(table[3].contains(u"\x1b[2m—\x1b[0m"_s));
    EXPECT_FALSE(lines({shop(), api(), stranger()}).join(u'\n').contains(u'\x1b'));
}

TEST(ServiceTable, KeepsItsColumnsInPlaceWhileProbesAreAnswered)
{
    Service unknown = shop();
    unknown.health = Health::unknown();
    const ServiceTable::Layout steady{.isSteady = true};
    EXPECT_EQ(lines(QList{unknown}, {}, steady).first(), lines(QList{shop()}, {}, steady).first());
    EXPECT_NE(lines(QList{unknown}).first(), lines(QList{shop()}).first());
}

TEST(ServiceTable, NamesTheMachines)
{
    Service plain = api();
    plain.folderPath.reset();
    const QList<ListedService> services{{.service = plain, .host = u"web1"_s},
                                        {.service = plain, .host = u"a\x1b[2J"_s + QString(40, u'h')}};
    const QStringList table = lines(services, {.hasHosts = true});
    EXPECT_TRUE(table[0].startsWith(u"HOST                  PORT"_s)) << table[0].toStdString();
    EXPECT_TRUE(table[1].startsWith(u"web1                  8080"_s));
    EXPECT_TRUE(table[2].startsWith(u"a␛[2Jhhhhhhhhhhhhhh…  8080"_s));
    EXPECT_FALSE(lines(services)[1].contains(u"web1"_s));
}

TEST(ServiceTable, SaysHowOldItIsOrWhatCameOfAStopInPlaceOfTheStatus)
{
    const TerminalColors sixteen(TerminalColors::Depth::Sixteen);
    const QStringList table = lines(
        {{.service = shop(), .age = std::chrono::seconds(72)}, {.service = shop(), .note = u"Stopping…"_s}},
        {}, sixteen);
    EXPECT_TRUE(table[1].contains(u"\x1b[2m1m ago\x1b[0m"_s)) << table[1].toStdString();
    EXPECT_TRUE(table[1].contains(u"\x1b[2mShop\x1b[0m"_s)) << "all of the line is faint";
    EXPECT_TRUE(table[2].contains(u"\x1b[33mStopping…\x1b[0m"_s));
}

} // namespace portolan
