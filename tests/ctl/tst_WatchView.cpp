// SPDX-License-Identifier: MIT
#include "Printers.h"
#include "SampleServices.h"
#include "TerminalText.h"
#include "WatchView.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

namespace portolan {

using namespace Qt::StringLiterals;
using Request = WatchView::Request;

namespace {

const QDateTime noon(QDate(2024, 5, 1), QTime(12, 0, 5));

ListedService serverOn(int port, const QString &name = u"Shop"_s)
{
    ListedService listed{.service = SampleServices::shop()};
    listed.service.port = port;
    listed.service.displayName = name;
    return listed;
}

QList<ListedService> serversOn(int first, int last)
{
    QList<ListedService> services;
    for (int port = first; port <= last; ++port)
        services.append(serverOn(port));
    return services;
}

/// A view of `services` on a terminal of `rows` lines.
WatchView viewOf(const QList<ListedService> &services, int rows = 24, int columns = 120,
                 bool readsKeys = true)
{
    WatchView view({}, SortOrder::port, readsKeys);
    view.setSize({.columns = columns, .rows = rows});
    view.setContent({.services = services, .lastUpdated = noon});
    return view;
}

QStringList linesOf(const WatchView &view)
{
    QStringList lines;
    for (const StyledLine &line : view.frame().lines)
        lines.append(TerminalColors().styled(line));
    return lines;
}

/// The selected line; empty if there is none.
QString chosen(const WatchView &view)
{
    const auto row = view.frame().highlighted;
    return row ? linesOf(view).value(*row) : QString();
}

Request type(WatchView &view, const QString &text)
{
    Request last;
    for (const uint character : text.toUcs4())
        last = view.handle({.character = character});
    return last;
}

} // namespace

TEST(WatchView, SaysThatItLooksBeforeTheFirstScan)
{
    WatchView view({}, SortOrder::port, true);
    EXPECT_EQ(linesOf(view).size(), 1);
    EXPECT_TRUE(linesOf(view).first().startsWith(u"Looking for servers… · Enter open"_s));
}

TEST(WatchView, ShowsTheTableWhenItWasTrueAndTheKeys)
{
    const QStringList lines = linesOf(viewOf({serverOn(3000)}));
    ASSERT_EQ(lines.size(), 4);
    EXPECT_TRUE(lines[0].startsWith(u"PORT"_s));
    EXPECT_TRUE(lines[1].startsWith(u"3000"_s));
    EXPECT_EQ(lines[2], QString());
    EXPECT_EQ(lines[3],
              u"Updated 12:00:05 · Enter open · c copy · s stop · / search · O order · ? keys · q quit"_s);
}

TEST(WatchView, NamesTheMostImportantKeysWhereThereIsLittleRoom)
{
    EXPECT_EQ(linesOf(viewOf({}, 24, 80)).last(),
              u"Updated 12:00:05 · Enter open · s stop · / search · O order · ? keys · q quit"_s);
    EXPECT_EQ(linesOf(viewOf({}, 24, 31)).last(), u"Updated 12:00:05 · q quit"_s);
    EXPECT_EQ(linesOf(viewOf({}, 24, 20)).last(), u"Updated 12:00:05"_s);
}

TEST(WatchView, SaysHowToQuitWithoutKeys)
{
    const WatchView view = viewOf({serverOn(3000)}, 24, 120, false);
    EXPECT_EQ(linesOf(view).last(), u"Updated 12:00:05 · Control-C to quit"_s);
    EXPECT_EQ(view.frame().highlighted, std::nullopt);
}

TEST(WatchView, SaysThatNothingRunsOrMatches)
{
    EXPECT_EQ(linesOf(viewOf({})).first(),
              u"Nothing running · Start a dev server and it appears here automatically."_s);
    EXPECT_EQ(linesOf(viewOf({}, 24, 40)).first(), u"Nothing running"_s);
    WatchView view = viewOf({serverOn(3000)});
    type(view, u"/zzz"_s);
    EXPECT_EQ(linesOf(view).first(), u"No matches · Try a different name or port."_s);
}

TEST(WatchView, KeepsWithinTheTerminal)
{
    const QString all = u"/ssOO?jk"_s;
    for (int rows = 1; rows < 60; ++rows) {
        for (const int columns : {1, 10, 31, 80, 200}) {
            WatchView view = viewOf(serversOn(3000, 3049), rows, columns);
            for (const QChar key : all) {
                const WatchView::Frame frame = view.frame();
                ASSERT_LE(frame.lines.size(), rows);
                for (const QString &line : linesOf(view))
                    ASSERT_LE(TerminalText::width(line), columns) << line.toStdString();
                ASSERT_LT(frame.highlighted.value_or(0), frame.lines.size());
                (void)view.handle({.character = key.unicode()});
            }
        }
    }
}

TEST(WatchView, SaysHowManyDoNotFit)
{
    const QStringList lines = linesOf(viewOf(serversOn(3000, 3049), 10));
    ASSERT_EQ(lines.size(), 10);
    EXPECT_TRUE(lines[6].startsWith(u"3005"_s));
    EXPECT_EQ(lines[7], u"… 44 more"_s);
    EXPECT_EQ(linesOf(viewOf(serversOn(3000, 3049), 53))[50].left(4), u"3049"_s);
}

struct MoveCase
{
    const char *name;
    QList<Input> inputs;
    QString port;   ///< the chosen one
    QString others; ///< the text about those that are not shown
};

class WatchViewMoves : public testing::TestWithParam<MoveCase>
{};

TEST_P(WatchViewMoves, WithinTheList)
{
    WatchView view = viewOf(serversOn(3000, 3049), 10); // six at once
    for (const Input &input : GetParam().inputs)
        EXPECT_EQ(view.handle(input).kind, Request::None);
    EXPECT_EQ(chosen(view).left(4), GetParam().port);
    EXPECT_EQ(linesOf(view)[7], GetParam().others);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, WatchViewMoves,
    testing::Values(
        MoveCase{"NotAtAll", {}, u"3000"_s, u"… 44 more"_s},
        MoveCase{"Down", {{Input::Down}}, u"3001"_s, u"… 44 more"_s},
        MoveCase{"J", {{.character = u'j'}}, u"3001"_s, u"… 44 more"_s},
        MoveCase{"UpFromTheTop", {{Input::Up}}, u"3000"_s, u"… 44 more"_s},
        MoveCase{"DownAndUp", {{Input::Down}, {Input::Down}, {.character = u'k'}}, u"3001"_s, u"… 44 more"_s},
        MoveCase{"Page", {{Input::PageDown}}, u"3006"_s, u"… 1 above, 43 more"_s},
        MoveCase{"PageAndBack", {{Input::PageDown}, {Input::PageUp}}, u"3000"_s, u"… 44 more"_s},
        MoveCase{"End", {{Input::End}}, u"3049"_s, u"… 44 above"_s},
        MoveCase{"DownFromTheEnd", {{Input::End}, {Input::Down}}, u"3049"_s, u"… 44 above"_s},
        MoveCase{"EndAndHome", {{Input::End}, {Input::Home}}, u"3000"_s, u"… 44 more"_s},
        MoveCase{"Wheel", {{Input::WheelDown}}, u"3003"_s, u"… 3 above, 41 more"_s},
        MoveCase{"WheelBack", {{Input::End}, {Input::WheelUp}}, u"3046"_s, u"… 41 above, 3 more"_s},
        MoveCase{"Click", {{.kind = Input::Click, .row = 3}}, u"3002"_s, u"… 44 more"_s},
        MoveCase{"ClickAfterScrolling",
                 {{Input::WheelDown}, {.kind = Input::Click, .row = 6}},
                 u"3008"_s,
                 u"… 3 above, 41 more"_s},
        MoveCase{"ClickBesidesTheList",
                 {{.kind = Input::Click, .row = 0}, {.kind = Input::Click, .row = 7}},
                 u"3000"_s,
                 u"… 44 more"_s}),
    [](const auto &row) { return std::string(row.param.name); });

TEST(WatchView, KeepsTheServerChosenWhereverItsRowGetsTo)
{
    WatchView view = viewOf({serverOn(3000, u"B"_s), serverOn(3001, u"C"_s), serverOn(3002, u"A"_s)});
    (void)view.handle({Input::Down});
    EXPECT_EQ(chosen(view).left(4), u"3001"_s);
    type(view, u"O"_s); // by name
    EXPECT_EQ(view.frame().highlighted, 3);
    EXPECT_EQ(chosen(view).left(4), u"3001"_s);
    EXPECT_EQ(linesOf(view).last(), u"Sorted by name"_s);
    view.setContent({.services = {serverOn(3001, u"C"_s), serverOn(3002, u"Z"_s)}, .lastUpdated = noon});
    EXPECT_EQ(view.frame().highlighted, 1);
    EXPECT_EQ(chosen(view).left(4), u"3001"_s);
}

TEST(WatchView, ChoosesTheOneInThePlaceOfAServerThatIsGone)
{
    WatchView view = viewOf(serversOn(3000, 3002));
    (void)view.handle({Input::Down});
    view.setContent({.services = {serverOn(3000), serverOn(3002)}, .lastUpdated = noon});
    EXPECT_EQ(chosen(view).left(4), u"3002"_s);
    view.setContent({.services = {serverOn(3000)}, .lastUpdated = noon});
    EXPECT_EQ(chosen(view).left(4), u"3000"_s);
    view.setContent({.lastUpdated = noon});
    EXPECT_EQ(view.frame().highlighted, std::nullopt);
}

TEST(WatchView, TellsServersOfTwoMachinesApart)
{
    ListedService one = serverOn(3000);
    one.host = u"a"_s;
    ListedService other = serverOn(3000);
    other.host = u"b"_s;
    WatchView view = viewOf({one, other});
    (void)view.handle({Input::Down});
    EXPECT_EQ(type(view, u"o"_s).service.host, u"b"_s);
}

TEST(WatchView, AsksForWhatTheKeysMean)
{
    WatchView view = viewOf(serversOn(3000, 3002));
    (void)view.handle({Input::Down});
    for (const auto &[key, kind] : {std::pair(u'o', Request::Open), std::pair(u'c', Request::Copy)}) {
        const Request request = view.handle({.character = key});
        EXPECT_EQ(request.kind, kind);
        EXPECT_EQ(request.service, serverOn(3001));
    }
    EXPECT_EQ(view.handle({Input::Enter}).kind, Request::Open);
    EXPECT_EQ(type(view, u"r"_s).kind, Request::Refresh);
    EXPECT_EQ(type(view, u"x"_s).kind, Request::None);
    EXPECT_EQ(type(view, u"q"_s).kind, Request::Quit);
    WatchView empty = viewOf({});
    for (const char16_t key : {u'o', u'c', u's', u'y'})
        EXPECT_EQ(empty.handle({.character = key}).kind, Request::None);
}

TEST(WatchView, StopsTheServerThatWasAskedAboutAndOnlyAfterAYes)
{
    WatchView view = viewOf(serversOn(3000, 3002));
    EXPECT_EQ(type(view, u"s"_s).kind, Request::None);
    EXPECT_EQ(linesOf(view).last(), u"y: stop Shop (process 4242, port 3000) · other keys: no"_s);
    EXPECT_EQ(type(view, u"n"_s).kind, Request::None);
    EXPECT_EQ(type(view, u"y"_s).kind, Request::None);
    EXPECT_EQ(type(view, u"sx"_s).kind, Request::None);
    type(view, u"s"_s);
    view.setContent({.services = serversOn(2999, 3002), .lastUpdated = noon}); // while it is asked
    const Request request = type(view, u"y"_s);
    EXPECT_EQ(request.kind, Request::Stop);
    EXPECT_EQ(request.service.service.port, 3000);
}

TEST(WatchView, ShowsWhatComesOfAStopThoughTheServerIsGone)
{
    WatchView view = viewOf(serversOn(3000, 3001));
    view.setNote(serverOn(3000), u"Stopping…"_s);
    EXPECT_TRUE(linesOf(view)[1].contains(u"Stopping…"_s));
    view.setContent({.services = {serverOn(3001)}, .lastUpdated = noon});
    view.setNote(serverOn(3000), u"Stopped in 0.1 s"_s);
    EXPECT_TRUE(linesOf(view)[1].contains(u"Stopped in 0.1 s"_s));
    EXPECT_TRUE(linesOf(view)[2].startsWith(u"3001"_s));
    view.setNote(serverOn(3000), {});
    EXPECT_TRUE(linesOf(view)[1].startsWith(u"3001"_s));
}

TEST(WatchView, SearchesHostsAsItSearchesNames)
{
    ListedService listed = serverOn(3000);
    listed.host = u"web1"_s;
    EXPECT_EQ(ListedService::visible({listed}, u" Web1 "_s, SortOrder::port).size(), 1);
    EXPECT_EQ(ListedService::visible({listed}, u" Shop "_s, SortOrder::port).size(), 1);
    EXPECT_EQ(ListedService::visible({listed}, u"web2"_s, SortOrder::port).size(), 0);
}

TEST(WatchView, SaysThatItRefreshesUntilItHas)
{
    WatchView view = viewOf(serversOn(3000, 3001));
    EXPECT_EQ(type(view, u"r"_s).kind, Request::Refresh);
    EXPECT_EQ(linesOf(view).last(), u"Refreshing…"_s);
    view.setContent({.services = serversOn(3000, 3001), .lastUpdated = noon});
    EXPECT_EQ(linesOf(view).last(), u"Refreshing…"_s);
    view.endRefresh();
    EXPECT_TRUE(linesOf(view).last().startsWith(u"Updated "_s));
    view.setMessage(u"Copied"_s);
    view.endRefresh();
    EXPECT_EQ(linesOf(view).last(), u"Copied"_s);
}

TEST(WatchView, SearchesAsOneTypesAndEscapeClears)
{
    WatchView view = viewOf({serverOn(3000, u"Größe"_s), serverOn(3001, u"Other"_s)});
    type(view, u"/Grö"_s);
    EXPECT_EQ(linesOf(view).size(), 4);
    EXPECT_TRUE(linesOf(view)[1].startsWith(u"3000"_s));
    EXPECT_EQ(linesOf(view).last(), u"/Grö_ · Enter: done · Escape: clear"_s);
    type(view, u"q😀"_s); // letters, not keys
    EXPECT_EQ(linesOf(view).first(), u"No matches · Try a different name or port."_s);
    (void)view.handle({Input::Backspace});
    (void)view.handle({Input::Backspace});
    (void)view.handle({Input::Enter});
    EXPECT_TRUE(linesOf(view)[1].startsWith(u"3000"_s));
    EXPECT_TRUE(linesOf(view).last().startsWith(u"Updated 12:00:05 · /Grö · "_s));
    (void)view.handle({Input::Escape});
    EXPECT_EQ(linesOf(view).size(), 5);
    for (int i = 0; i < 3; ++i)
        (void)view.handle({Input::Backspace});
    EXPECT_EQ(type(view, u"q"_s).kind, Request::Quit);
}

TEST(WatchView, GoesThroughTheOrders)
{
    WatchView view = viewOf({});
    for (const char *order : {"name", "status", "uptime", "port", "name"}) {
        type(view, u"O"_s);
        EXPECT_EQ(linesOf(view).last(), u"Sorted by "_s + QString::fromLatin1(order));
    }
}

TEST(WatchView, ShowsTheKeysUntilTheNext)
{
    WatchView view = viewOf(serversOn(3000, 3001), 10);
    type(view, u"?"_s);
    EXPECT_EQ(linesOf(view).size(), 10);
    for (const char *key : {"Enter o", "c ", "s, then y", "/ ", "O ", "r ", "? ", "q "})
        EXPECT_EQ(linesOf(view)
                      .filter(QRegularExpression(u'^' + QRegularExpression::escape(QString::fromLatin1(key))))
                      .size(),
                  1)
            << key;
    EXPECT_EQ(type(view, u"s"_s).kind, Request::None);
    EXPECT_TRUE(linesOf(view)[1].startsWith(u"3000"_s));
    EXPECT_TRUE(linesOf(view).last().startsWith(u"Updated"_s));
}

TEST(WatchView, SaysWhichMachinesDoNotAnswer)
{
    WatchView view({}, SortOrder::port, true);
    view.setSize({.columns = 60, .rows = 10});
    view.setContent({.services = serversOn(3000, 3001),
                     .lastUpdated = noon,
                     .problems = {u"web1: Connection refused"_s, u"web2: does not answer"_s},
                     .hasHosts = true});
    const QStringList lines = linesOf(view);
    EXPECT_TRUE(lines[0].startsWith(u"HOST"_s));
    EXPECT_EQ(lines.mid(4, 2), (QStringList{u"web1: Connection refused"_s, u"web2: does not answer"_s}));
}

TEST(WatchView, HasNoControlCharacterInAnyLine)
{
    const QString evil = u"a\x1b[2J\x07\u009b1m\u202e\n"_s;
    ListedService service = serverOn(3000, evil);
    service.service.folderPath = u"/srv/"_s + evil;
    service.host = service.note = evil;
    WatchView view(evil, SortOrder::port, true);
    view.setSize({.columns = 300, .rows = 30});
    view.setContent({.services = {service}, .lastUpdated = noon, .hasHosts = true});
    for (const QString &keys : {u""_s, u"s"_s, u"n/"_s}) {
        type(view, keys);
        for (const QString &line : linesOf(view)) {
            for (const QChar character : line)
                EXPECT_TRUE(character.isPrint()) << line.toStdString();
        }
    }
    (void)view.handle({Input::Escape});
    view.setMessage(evil);
    EXPECT_EQ(linesOf(view).last(), TerminalText::harmless(evil));
}

} // namespace portolan
