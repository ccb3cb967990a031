// SPDX-License-Identifier: MIT
// Parsing the output of lsof: listeners, ports, working folders.
#include "LsofOutput.h"
#include "Printers.h"
#include "ProcessFacts.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>

namespace portolan {

using namespace Qt::StringLiterals;
using PortScanner::parseCwd;
using PortScanner::parseListeners;
using PortScanner::port;

static void PrintTo(const RawListener &listener, std::ostream *out)
{
    *out << listener.pid << ' ' << listener.command.toStdString() << ' ' << listener.port;
}

static QString recorded(const char *folder, const char *file)
{
    const QString path = QStringLiteral(PORTOLAN_TEST_DATA "/%1/%2.txt")
                             .arg(QLatin1StringView(folder), QLatin1StringView(file));
    EXPECT_TRUE(QFile::exists(path)) << path.toStdString();
    return QString::fromUtf8(contentsOf(path));
}

static std::string fileName(const char *file)
{
    std::string name = file;
    std::ranges::replace(name, '-', '_');
    return name;
}

struct PortCase
{
    const char *name;
    QString text;
    std::optional<qint64> port;
};

class SocketName : public testing::TestWithParam<PortCase>
{};

TEST_P(SocketName, GivesThePortOfALocalHost)
{
    EXPECT_EQ(port(GetParam().text), GetParam().port);
}

INSTANTIATE_TEST_SUITE_P(
    Names, SocketName,
    testing::Values(
        PortCase{"any", u"*:3000"_s, 3000}, PortCase{"loopback", u"127.0.0.1:5173"_s, 5173},
        PortCase{"loopback6", u"[::1]:8080"_s, 8080}, PortCase{"any6", u"[::]:4000"_s, 4000},
        PortCase{"localhost", u"localhost:3000"_s, 3000},
        PortCase{"anyIPv4InDigits", u"0.0.0.0:3000"_s, std::nullopt},
        PortCase{"concreteAddress", u"192.168.1.5:3000"_s, std::nullopt},
        PortCase{"otherLoopback", u"127.0.0.2:3000"_s, std::nullopt},
        PortCase{"mappedLoopback", u"[::ffff:127.0.0.1]:3000"_s, std::nullopt},
        PortCase{"concreteAddress6", u"[fe80::1]:3000"_s, std::nullopt},
        PortCase{"withoutBrackets", u"::1:3000"_s, std::nullopt},
        PortCase{"otherCase", u"LOCALHOST:3000"_s, std::nullopt},
        PortCase{"spaceInFront", u" *:3000"_s, std::nullopt}, PortCase{"noHost", u":3000"_s, std::nullopt},
        PortCase{"noColon", u"*"_s, std::nullopt}, PortCase{"noColonButDigits", u"3000"_s, std::nullopt},
        PortCase{"empty", u""_s, std::nullopt}, PortCase{"colonOnly", u":"_s, std::nullopt},
        PortCase{"emptyPort", u"*:"_s, std::nullopt}, PortCase{"word", u"*:web"_s, std::nullopt},
        PortCase{"anyPort", u"*:*"_s, std::nullopt}, PortCase{"spaceBehind", u"*:80 "_s, std::nullopt},
        PortCase{"spaceBeforeDigits", u"*: 80"_s, std::nullopt},
        PortCase{"carriageReturn", u"*:80\r"_s, std::nullopt},
        PortCase{"hexadecimal", u"*:0x50"_s, std::nullopt},
        PortCase{"connection", u"127.0.0.1:80->127.0.0.1:3000"_s, std::nullopt},
        PortCase{"plus", u"*:+80"_s, 80}, PortCase{"minus", u"*:-80"_s, -80}, PortCase{"zero", u"*:0"_s, 0},
        PortCase{"privileged", u"*:80"_s, 80}, PortCase{"beyondTcp", u"*:65536"_s, 65536},
        PortCase{"greatest", u"*:9223372036854775807"_s, std::numeric_limits<qint64>::max()},
        PortCase{"tooLarge", u"*:9223372036854775808"_s, std::nullopt},
        PortCase{"twoColons", u"*:80:90"_s, std::nullopt}),
    [](const auto &row) { return std::string(row.param.name); });

struct ListenersCase
{
    const char *name;
    QString text;
    QList<RawListener> listeners;
};

class Listeners : public testing::TestWithParam<ListenersCase>
{};

TEST_P(Listeners, AreReadFromFieldOutput)
{
    EXPECT_EQ(parseListeners(GetParam().text), GetParam().listeners);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, Listeners,
    testing::Values(
        ListenersCase{"empty", u""_s, {}}, ListenersCase{"newlinesOnly", u"\n\n\n"_s, {}},
        ListenersCase{"one", u"p123\ncnode\nf22\nPTCP\nn*:3000\nTST=LISTEN\n"_s, {{123, u"node"_s, 3000}}},
        ListenersCase{"noLastNewline", u"p123\ncnode\nn*:3000"_s, {{123, u"node"_s, 3000}}},
        ListenersCase{"emptyLines", u"\np123\n\ncnode\n\n\nn*:3000\n\n"_s, {{123, u"node"_s, 3000}}},
        ListenersCase{"twoFamilies",
                      u"p10\ncnode\nf20\nn*:3000\nf21\nn[::1]:3000\n"_s,
                      {{10, u"node"_s, 3000}, {10, u"node"_s, 3000}}},
        ListenersCase{"inTheToolsOrder",
                      u"p10\ncnode\nn*:3001\nn*:3000\np9\ncvite\nn*:80\n"_s,
                      {{10, u"node"_s, 3001}, {10, u"node"_s, 3000}, {9, u"vite"_s, 80}}},
        ListenersCase{"foreignHosts", u"p1\ncx\nn192.168.1.5:3000\nn0.0.0.0:3000\n"_s, {}},
        ListenersCase{
            "badNamesAreSkippedOneByOne", u"p1\ncx\nn*:\nn*:web\nn\nnx\nn*:+80\n"_s, {{1, u"x"_s, 80}}},
        ListenersCase{"nameBeforeAnyProcess", u"n*:3000\np1\ncx\n"_s, {}},
        ListenersCase{"badPidDropsAllItsNames",
                      u"p1\ncx\nn*:1\npxyz\ncy\nn*:2\nn*:3\np4\ncz\nn*:4\n"_s,
                      {{1, u"x"_s, 1}, {4, u"z"_s, 4}}},
        ListenersCase{"emptyPid", u"p\ncx\nn*:1\n"_s, {}},
        ListenersCase{"pidWithSpace", u"p 1\ncx\nn*:1\n"_s, {}},
        ListenersCase{"pidOutOfRange", u"p2147483648\ncx\nn*:1\n"_s, {}},
        ListenersCase{"signedPids",
                      u"p+5\ncx\nn*:1\np-5\ncx\nn*:1\np2147483647\ncx\nn*:1\n"_s,
                      {{5, u"x"_s, 1}, {-5, u"x"_s, 1}, {2147483647, u"x"_s, 1}}},
        ListenersCase{"noCommand", u"p1\nn*:80\n"_s, {{1, u""_s, 80}}},
        ListenersCase{"commandIsNotCarriedOver",
                      u"p1\ncnode\nn*:80\np2\nn*:81\n"_s,
                      {{1, u"node"_s, 80}, {2, u""_s, 81}}},
        ListenersCase{"lastCommandHolds",
                      u"p1\nca\nn*:1\ncb\nn*:2\nc\nn*:3\n"_s,
                      {{1, u"a"_s, 1}, {1, u"b"_s, 2}, {1, u""_s, 3}}},
        ListenersCase{"commandAsItIs", u"p1\nc  My Server (x) \nn*:80\n"_s, {{1, u"  My Server (x) "_s, 80}}},
        ListenersCase{"lettersAreCaseSensitive", u"p1\ncx\nP2\nCy\nN*:80\nn*:81\n"_s, {{1, u"x"_s, 81}}},
        ListenersCase{"unknownFields",
                      u"p1\ng1\nR0\ncx\nLada\nu1000\nf3\na \ntIPv4\nG0x2\nd123\no0t0\nPTCP\nn*:80\nTQR=0\n"_s,
                      {{1, u"x"_s, 80}}},
        ListenersCase{"carriageReturnsBelongToTheValue", u"p1\r\ncx\r\nn*:80\r\n"_s, {}},
        ListenersCase{"nulCharacter", u"p1\ncx\0y\nn*:80\n"_s, {{1, u"x\0y"_s, 80}}}),
    [](const auto &row) { return std::string(row.param.name); });

struct RecordedListeners
{
    const char *file;
    QList<RawListener> listeners;
};

class RecordedListing : public testing::TestWithParam<RecordedListeners>
{};

TEST_P(RecordedListing, IsRead)
{
    EXPECT_EQ(parseListeners(recorded("listeners", GetParam().file)), GetParam().listeners);
}

/// Wherever the text is truncated, everything before that is parsed as usual, and no other process is
/// invented.
TEST_P(RecordedListing, IsReadUpToACutAnywhere)
{
    const QString text = recorded("listeners", GetParam().file);
    for (qsizetype cut = 0; cut <= text.size(); ++cut) {
        const qsizetype lastLine = text.lastIndexOf(u'\n', cut - text.size() - 1) + 1;
        const QList<RawListener> whole =
            cut == 0 ? QList<RawListener>() : parseListeners(text.first(std::min(lastLine, cut)));
        const QList<RawListener> listeners = parseListeners(text.first(cut));
        ASSERT_LE(listeners.size(), whole.size() + 1) << cut;
        ASSERT_EQ(listeners.first(whole.size()), whole) << cut;
        ASSERT_EQ(whole, GetParam().listeners.first(whole.size())) << cut;
        if (listeners.size() > whole.size()) {
            const RawListener &next = GetParam().listeners[whole.size()];
            ASSERT_EQ(listeners.last().pid, next.pid) << cut;
            ASSERT_EQ(listeners.last().command, next.command) << cut;
            ASSERT_TRUE(QString::number(next.port).startsWith(QString::number(listeners.last().port))) << cut;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Files, RecordedListing,
    testing::Values(
        RecordedListeners{"six-processes",
                          {{21794, u"node"_s, 23000},
                           {21794, u"node"_s, 23000},
                           {21796, u"my server (x)"_s, 25173},
                           {21796, u"my server (x)"_s, 25173},
                           {21799, u"café"_s, 24000},
                           {21806, u"gunicorn"_s, 24002},
                           {21809, u"gunicorn"_s, 24002},
                           {21811, u"bad\\xff^[[31m\\tx"_s, 24003}}},
        RecordedListeners{"c-locale", {{22416, u"caf\\xc3\\xa9"_s, 24001}, {22421, u"node"_s, 24005}}},
        RecordedListeners{"newer-lsof-with-f-lines",
                          {{4711, u"node"_s, 3000}, {4711, u"node"_s, 3000}, {4712, u""_s, 4000}}}),
    [](const auto &row) { return fileName(row.param.file); });

struct CwdCase
{
    const char *name;
    QString text;
    std::optional<QString> folder;
};

class WorkingDirectory : public testing::TestWithParam<CwdCase>
{};

TEST_P(WorkingDirectory, IsTheFirstName)
{
    EXPECT_EQ(parseCwd(42, GetParam().text), GetParam().folder);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, WorkingDirectory,
    testing::Values(
        CwdCase{"empty", u""_s, std::nullopt}, CwdCase{"noName", u"p42\nfcwd\n"_s, std::nullopt},
        CwdCase{"plain", u"p42\nfcwd\nn/srv/shop\n"_s, u"/srv/shop"_s},
        CwdCase{"noLastNewline", u"p42\nn/srv/shop"_s, u"/srv/shop"_s},
        CwdCase{"firstOfTwo", u"n/a\nn/b\n"_s, u"/a"_s}, CwdCase{"presentButEmpty", u"p42\nn\n"_s, u""_s},
        CwdCase{"emptyLines", u"\n\np42\n\nn/a\n"_s, u"/a"_s},
        CwdCase{"spacesStay", u"n /a b \n"_s, u" /a b "_s}, CwdCase{"otherCase", u"N/a\n"_s, std::nullopt},
        CwdCase{"notPermitted", u"p42\nn/proc/42/cwd (readlink: Permission denied)\n"_s, std::nullopt},
        CwdCase{"gone", u"p42\nn/proc/42/cwd (readlink: No such file or directory)\n"_s, std::nullopt},
        CwdCase{"notStatable", u"p42\nn/proc/42/cwd (stat: Permission denied)\n"_s, std::nullopt},
        CwdCase{"anotherProcessesLink", u"n/proc/421/cwd (x)\n"_s, u"/proc/421/cwd (x)"_s},
        CwdCase{"folderOfTheKernel", u"n/proc/42\n"_s, u"/proc/42"_s},
        CwdCase{"folderWithBrackets", u"n/srv/x (readlink: a)\n"_s, u"/srv/x (readlink: a)"_s}),
    [](const auto &row) { return std::string(row.param.name); });

struct RecordedCwdCase
{
    const char *file;
    qint32 pid;
    std::optional<QString> folder;
};

class RecordedCwd : public testing::TestWithParam<RecordedCwdCase>
{};

TEST_P(RecordedCwd, IsRead)
{
    EXPECT_EQ(parseCwd(GetParam().pid, recorded("cwd", GetParam().file)), GetParam().folder);
}

INSTANTIATE_TEST_SUITE_P(Files, RecordedCwd,
                         testing::Values(RecordedCwdCase{"plain", 21794, u"/tmp/rec/srv/shop"_s},
                                         RecordedCwdCase{"spaces-and-utf8", 21796,
                                                         u"/tmp/rec/srv/café com tabs"_s},
                                         RecordedCwdCase{"escapes", 21799, u"/tmp/rec/srv/odd\tna\\me"_s},
                                         RecordedCwdCase{"root", 21806, u"/"_s},
                                         RecordedCwdCase{"deleted", 22416, u"/tmp/rec/srv/gone (deleted)"_s},
                                         RecordedCwdCase{"another-users-process", 22416, std::nullopt},
                                         RecordedCwdCase{"zombie", 22423, std::nullopt}),
                         [](const auto &row) { return fileName(row.param.file); });

struct EscapeCase
{
    const char *name;
    QString printed;
    QString folder;
};

class CwdEscape : public testing::TestWithParam<EscapeCase>
{};

TEST_P(CwdEscape, IsUndone)
{
    EXPECT_EQ(parseCwd(7, u"p7\nfcwd\nn"_s + GetParam().printed + u'\n'), GetParam().folder);
}

INSTANTIATE_TEST_SUITE_P(Folders, CwdEscape,
                         testing::Values(EscapeCase{"letters", uR"(/a\b\f\n\r\tz)"_s, u"/a\b\f\n\r\tz"_s},
                                         EscapeCase{"backslash", uR"(/back\\slash)"_s, uR"(/back\slash)"_s},
                                         EscapeCase{"backslashBeforeALetter", uR"(/a\\new)"_s,
                                                    uR"(/a\new)"_s},
                                         EscapeCase{"bytes", uR"(/caf\xc3\xa9)"_s, u"/café"_s},
                                         EscapeCase{"caret", uR"(/^[x^)"_s, uR"(/^[x^)"_s},
                                         EscapeCase{"unknown", uR"(/\q\x4\)"_s, uR"(/\q\x4\)"_s}),
                         [](const auto &row) { return std::string(row.param.name); });

} // namespace portolan
