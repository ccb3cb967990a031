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

QStringList lines(const QList<Service> &services, const QSet<qint64> &pinned = {},
                  const ServiceTable::Look &look = {})
{
    QString table = ServiceTable::of(services, pinned, look);
    EXPECT_TRUE(table.endsWith(u'\n'));
    table.chop(1);
    return table.split(u'\n');
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
    EXPECT_EQ(lines({}), QStringList({u"PORT  NAME  FRAMEWORK  STATUS  UPTIME  CPU  MEMORY  PID  FOLDER"_s}));
}

TEST(ServiceTable, MarksPinnedServices)
{
    Service plain = shop();
    plain.folderPath.reset();
    Service other = api();
    other.folderPath.reset();
    EXPECT_EQ(
        lines({other, plain}, {8080}),
        QStringList({u"   PORT  NAME  FRAMEWORK  STATUS              UPTIME  CPU  MEMORY   PID  FOLDER"_s,
                     u"*  8080  Api   Flask      Offline                42s   0%  1.5 GB     7  —"_s,
                     u"   3000  Shop  Next.js    Online 200 · 12 ms  1h 30m   2%   87 MB  4242  —"_s}));
}

TEST(ServiceTable, SaysCheckingWhileAProbeIsUnderWay)
{
    Service service = shop();
    service.health = Health::checking();
    EXPECT_TRUE(lines({service}).last().contains(u"  Checking  "_s));
}

TEST(ServiceTable, StaysALinePerServiceWhateverTheyAreCalled)
{
    Service service = shop();
    service.displayName = u"a\nb\x1b[2J"_s;
    service.folderPath = u"/srv/\u202eevil\r\n"_s;
    const QStringList table = lines({service});
    ASSERT_EQ(table.size(), 2);
    EXPECT_TRUE(table.last().contains(u"a␊b␛[2J"_s));
    EXPECT_TRUE(table.last().endsWith(u"/srv/\ufffdevil␍␊"_s));
}

TEST(ServiceTable, AlignsWideCharacters)
{
    Service wide = shop();
    wide.displayName = u"日本"_s;
    const QStringList table = lines({wide, shop()});
    EXPECT_TRUE(table[1].startsWith(u"3000  日本  Next.js"_s));
    EXPECT_TRUE(table[2].startsWith(u"3000  Shop  Next.js"_s));
}

TEST(ServiceTable, ShowsEverythingInFullWithoutALimit)
{
    Service service = shop();
    service.displayName = QString(300, u'n');
    service.folderPath = u'/' + QString(500, u'f');
    EXPECT_TRUE(lines({service}).last().contains(service.displayName));
    EXPECT_TRUE(lines({service}).last().endsWith(*service.folderPath));
}

TEST(ServiceTable, ShortensTheFolderFirst)
{
    EXPECT_EQ(
        lines({shop()}, {}, {.columns = 90}).last(),
        u"3000  Shop  Next.js    Online 200 · 12 ms  1h 30m   2%   87 MB  4242  /srv/c…ers/acme/shop"_s);
}

TEST(ServiceTable, ThenTheName)
{
    Service service = shop();
    service.displayName = u"An endless name for a shop"_s;
    EXPECT_EQ(
        lines({service}, {}, {.columns = 95}).last(),
        u"3000  An endless n…  Next.js    Online 200 · 12 ms  1h 30m   2%   87 MB  4242  /srv/…/acme/shop"_s);
}

TEST(ServiceTable, ThenLeavesOutFigures)
{
    Service service = shop();
    service.folderPath = u"/srv/shop"_s;
    const QString whole = lines({service}).last();
    const int enough = int(whole.size());
    EXPECT_EQ(lines({service}, {}, {.columns = enough}).last(), whole);
    EXPECT_EQ(lines({service}, {}, {.columns = enough - 1}).last(),
              u"3000  Shop  Next.js    Online 200 · 12 ms  1h 30m   2%   87 MB  /srv/shop"_s);
    EXPECT_EQ(lines({service}, {}, {.columns = 40}).last(), u"3000  Shop  Online 200 · 12 ms"_s);
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
    EXPECT_EQ(lines({shop()}, {}, {.columns = 4}).last(), u"3000"_s);
}

TEST(ServiceTable, ColoursStatesAndNothingWithoutColours)
{
    const QStringList table =
        lines({shop(), api(), stranger()}, {}, {.colors = TerminalColors(TerminalColors::Depth::Sixteen)});
    EXPECT_TRUE(table[0].contains(u"\x1b[2mPORT\x1b[0m"_s));
    EXPECT_TRUE(table[1].contains(u"\x1b[32mOnline 200 · 12 ms\x1b[0m"_s));
    EXPECT_TRUE(table[2].contains(u"\x1b[31mOffline\x1b[0m"_s));
    EXPECT_TRUE(table[3].contains(u"\x1b[2m—\x1b[0m"_s));
    EXPECT_FALSE(ServiceTable::of({shop(), api(), stranger()}, {}, {}).contains(u'\x1b'));
}

TEST(ServiceTable, KeepsItsColumnsInPlaceWhileProbesAreAnswered)
{
    Service unknown = shop();
    unknown.health = Health::unknown();
    const ServiceTable::Look look{.isSteady = true};
    EXPECT_EQ(lines({unknown}, {}, look).first(), lines({shop()}, {}, look).first());
    EXPECT_NE(lines({unknown}).first(), lines({shop()}).first());
}

} // namespace portolan
