#include "Printers.h"
#include "SampleServices.h"
#include "WatchFrame.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

const QDateTime noon(QDate(2024, 5, 1), QTime(12, 0, 5));

QStringList frame(const WatchFrame::Content &content, int rows = 24, int columns = 120)
{
    return WatchFrame::of(content, {.columns = columns, .rows = rows}, Ink()).split(u'\n');
}

QList<Service> manyServices()
{
    QList<Service> services;
    for (int port = 3000; port < 3050; ++port) {
        services.append(SampleServices::shop());
        services.last().port = port;
    }
    return services;
}

} // namespace

TEST(WatchFrame, SaysThatItLooksBeforeTheFirstScan)
{
    EXPECT_EQ(frame({}), QStringList({u"Looking for servers… · q to quit"_s}));
}

TEST(WatchFrame, ShowsTheTableAndWhenItWasTrue)
{
    const QStringList lines = frame({.services = {SampleServices::shop()}, .lastUpdated = noon});
    ASSERT_EQ(lines.size(), 4);
    EXPECT_TRUE(lines[0].startsWith(u"PORT"_s));
    EXPECT_TRUE(lines[1].startsWith(u"3000"_s));
    EXPECT_EQ(lines[2], QString());
    EXPECT_EQ(lines[3], u"Updated 12:00:05 · q to quit"_s);
}

TEST(WatchFrame, SaysHowToQuitWithoutKeys)
{
    EXPECT_EQ(frame({.lastUpdated = noon, .readsKeys = false}).last(),
              u"Updated 12:00:05 · Control-C to quit"_s);
}

TEST(WatchFrame, SaysThatNothingRunsOrMatches)
{
    EXPECT_EQ(frame({.lastUpdated = noon}).first(),
              u"Nothing running · Start a dev server and it appears here automatically."_s);
    EXPECT_EQ(frame({.isSearching = true, .lastUpdated = noon}).first(),
              u"No matches · Try a different name or port."_s);
    EXPECT_EQ(frame({.lastUpdated = noon}, 24, 40).first(), u"Nothing running"_s);
}

TEST(WatchFrame, NeverHasMoreLinesThanTheTerminal)
{
    const WatchFrame::Content content{.services = manyServices(), .lastUpdated = noon};
    for (int rows = 1; rows < 60; ++rows) {
        const QStringList lines = frame(content, rows);
        EXPECT_LE(lines.size(), rows);
        EXPECT_EQ(lines.last(), u"Updated 12:00:05 · q to quit"_s);
    }
}

TEST(WatchFrame, SaysHowManyDoNotFit)
{
    const QStringList lines = frame({.services = manyServices(), .lastUpdated = noon}, 10);
    ASSERT_EQ(lines.size(), 10);
    EXPECT_TRUE(lines[6].startsWith(u"3005"_s));
    EXPECT_EQ(lines[7], u"… 44 more"_s);
}

TEST(WatchFrame, ShowsAllThatFit)
{
    const QList<Service> services = manyServices();
    const QStringList lines = frame({.services = services, .lastUpdated = noon}, 53);
    ASSERT_EQ(lines.size(), 53);
    EXPECT_TRUE(lines[50].startsWith(u"3049"_s));
}
