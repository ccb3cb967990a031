#include "Printers.h"
#include "SampleServices.h"
#include "WatchFrame.h"

#include <gtest/gtest.h>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

const QDateTime noon(QDate(2024, 5, 1), QTime(12, 0, 5));

QStringList frame(const WatchFrame::Content &content, int rows = 24, int columns = 120)
{
    return WatchFrame::of(content, {.columns = columns, .rows = rows}, TerminalColors()).split(u'\n');
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
        EXPECT_EQ(lines.last(), rows < 53 ? u"Updated 12:00:05 · ↑ ↓ to scroll · q to quit"_s
                                          : u"Updated 12:00:05 · q to quit"_s);
    }
    EXPECT_EQ(frame({.lastUpdated = noon}, 1), QStringList{u"Updated 12:00:05 · q to quit"_s});
}

TEST(WatchFrame, SpeaksOfScrollingOnlyWhereKeysAreRead)
{
    EXPECT_EQ(frame({.services = manyServices(), .lastUpdated = noon, .readsKeys = false}, 10).last(),
              u"Updated 12:00:05 · Control-C to quit"_s);
}

TEST(WatchFrame, SaysHowManyDoNotFit)
{
    const QStringList lines = frame({.services = manyServices(), .lastUpdated = noon}, 10);
    ASSERT_EQ(lines.size(), 10);
    EXPECT_TRUE(lines[6].startsWith(u"3005"_s));
    EXPECT_EQ(lines[7], u"… 44 more"_s);
}

TEST(WatchFrame, ShowsTheListFromAnyOfThemOn)
{
    const auto lines = [](qsizetype first) {
        return frame({.services = manyServices(), .lastUpdated = noon, .first = first}, 10);
    };
    EXPECT_TRUE(lines(7)[0].startsWith(u"PORT"_s));
    EXPECT_TRUE(lines(7)[1].startsWith(u"3007"_s));
    EXPECT_TRUE(lines(7)[6].startsWith(u"3012"_s));
    EXPECT_EQ(lines(7)[7], u"… 7 above, 37 more"_s);
    EXPECT_TRUE(lines(44)[6].startsWith(u"3049"_s));
    EXPECT_EQ(lines(44)[7], u"… 44 above"_s);
    EXPECT_EQ(lines(1000), lines(44));
    EXPECT_EQ(lines(-1), lines(0));
}

TEST(WatchFrame, ScrollsByLinesAndPagesWithinTheList)
{
    const auto scrolled = [](qsizetype first, Key key, qsizetype services = 50) {
        return WatchFrame::scrolled(first, key, services, {.columns = 80, .rows = 10}); // six at once
    };
    EXPECT_EQ(scrolled(0, Key::down), 1);
    EXPECT_EQ(scrolled(44, Key::down), 44);
    EXPECT_EQ(scrolled(1, Key::up), 0);
    EXPECT_EQ(scrolled(0, Key::up), 0);
    EXPECT_EQ(scrolled(3, Key::pageDown), 9);
    EXPECT_EQ(scrolled(40, Key::pageDown), 44);
    EXPECT_EQ(scrolled(40, Key::pageUp), 34);
    EXPECT_EQ(scrolled(3, Key::pageUp), 0);
    EXPECT_EQ(scrolled(3, Key::end), 44);
    EXPECT_EQ(scrolled(3, Key::home), 0);
    EXPECT_EQ(scrolled(49, Key::up), 43) << "from where the list ends now";
    EXPECT_EQ(scrolled(0, Key::down, 7), 0) << "where all fit";
    EXPECT_EQ(scrolled(0, Key::down, 0), 0);
}

TEST(WatchFrame, ShowsAllThatFit)
{
    const QList<Service> services = manyServices();
    const QStringList lines = frame({.services = services, .lastUpdated = noon}, 53);
    ASSERT_EQ(lines.size(), 53);
    EXPECT_TRUE(lines[50].startsWith(u"3049"_s));
}

} // namespace portolan
