#include "PortolanctlTest.h"
#include "PtyProcess.h"
#include "ScopedEnvironment.h"
#include "ScriptedServer.h"
#include "TerminalEmulator.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <memory>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

// The lines that hold `port` as a word of their own.
QStringList linesOf(const QStringList &lines, quint16 port)
{
    return lines.filter(QRegularExpression(u"(^|\\s)%1\\s"_s.arg(port)));
}

} // namespace

/// This program is the server that the real portolanctl finds: it listens, from the servers' folder.
class Portolanctl : public PortolanctlTest
{
protected:
    Portolanctl() { QDir::setCurrent(folder()); }
    ~Portolanctl() override { QDir::setCurrent(m_previousFolder); }

    void writeSettings(const QByteArray &json) const
    {
        QDir(configFolder()).mkdir(u"portolan"_s);
        QFile file(settingsPath());
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        file.write(json);
    }
    [[nodiscard]] QString settingsPath() const { return configFolder() + u"/portolan/settings.json"_s; }

    [[nodiscard]] QJsonArray services(const QStringList &arguments) const
    {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.error, QByteArray());
        QJsonParseError error;
        const auto document = QJsonDocument::fromJson(outcome.output, &error);
        EXPECT_EQ(error.error, QJsonParseError::NoError) << error.errorString().toStdString();
        EXPECT_TRUE(document.isArray());
        return document.array();
    }

    [[nodiscard]] static QJsonObject withPort(const QJsonArray &services, quint16 port)
    {
        for (const QJsonValue &service : services) {
            if (service[u"port"_s].toInt() == port)
                return service.toObject();
        }
        return {};
    }

    [[nodiscard]] PtyProcess::Options options(int columns = 120) const
    {
        return {.columns = columns,
                .environment = {{"XDG_CONFIG_HOME", configFolder().toUtf8()},
                                {"TERM", "xterm-256color"},
                                {"COLORTERM", ""},
                                {"NO_COLOR", ""}}};
    }

    const ScriptedServer::Script m_ok =
        ScriptedServer::answers("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n");

private:
    const QString m_previousFolder = QDir::currentPath();
};

TEST_F(Portolanctl, ListsARunningServer)
{
    const ScriptedServer server(m_ok);
    const Outcome outcome = run({u"list"_s});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.error, QByteArray());
    EXPECT_FALSE(outcome.output.contains('\x1b'));
    const QStringList lines = QString::fromUtf8(outcome.output).split(u'\n');
    EXPECT_TRUE(lines.first().contains(u"PORT  NAME"_s));
    const QStringList found = linesOf(lines, server.port());
    ASSERT_EQ(found.size(), 1) << outcome.output.toStdString();
    EXPECT_TRUE(found.first().contains(u"Online 200 · "_s));
    EXPECT_TRUE(found.first().contains(QString::number(getpid())));
    EXPECT_TRUE(found.first().endsWith(HomeFolder::abbreviated(folder(), HomeFolder::paths())));
}

TEST_F(Portolanctl, ListsAsJson)
{
    const ScriptedServer server(ScriptedServer::answers("HTTP/1.1 404 Not Found\r\n\r\n"));
    const QJsonObject service = withPort(services({u"list"_s, u"--json"_s}), server.port());
    EXPECT_EQ(service.keys(), QStringList({u"command"_s, u"displayName"_s, u"folderPath"_s, u"framework"_s,
                                           u"health"_s, u"id"_s, u"pid"_s, u"pinned"_s, u"port"_s,
                                           u"prettyFolder"_s, u"stats"_s, u"url"_s}));
    EXPECT_EQ(service[u"id"_s].toString(), u"%1-%2"_s.arg(getpid()).arg(server.port()));
    EXPECT_EQ(service[u"folderPath"_s].toString(), folder());
    EXPECT_EQ(service[u"url"_s].toString(), u"http://localhost:%1"_s.arg(server.port()));
    EXPECT_EQ(service[u"health"_s][u"state"_s].toString(), u"healthy"_s);
    EXPECT_EQ(service[u"health"_s][u"status"_s].toInt(), 404);
    EXPECT_GT(service[u"stats"_s][u"memoryMB"_s].toDouble(), 1);
}

TEST_F(Portolanctl, ListsWithoutACommand)
{
    const ScriptedServer server(m_ok);
    EXPECT_FALSE(withPort(services({u"--json"_s}), server.port()).isEmpty());
}

TEST_F(Portolanctl, ProbesNothingIfAsked)
{
    const ScriptedServer server(m_ok);
    const QJsonObject service = withPort(services({u"list"_s, u"--json"_s, u"--no-probe"_s}), server.port());
    EXPECT_EQ(service[u"health"_s].toObject(), QJsonObject({{u"state"_s, u"unknown"_s}}));
    EXPECT_EQ(server.connections(), 0);
}

TEST_F(Portolanctl, FollowsARedirectToAnotherHost)
{
    const ScriptedServer server(ScriptedServer::answers("HTTP/1.1 404 Not Found\r\n\r\n"));
    const ScriptedServer redirector(ScriptedServer::answers(
        "HTTP/1.1 302 Found\r\nLocation: http://away.localhost:" + QByteArray::number(server.port()) +
        "/x\r\n\r\n"));
    const QJsonObject service = withPort(services({u"list"_s, u"--json"_s}), redirector.port());
    EXPECT_EQ(service[u"health"_s][u"status"_s].toInt(), 404);
}

TEST_F(Portolanctl, Searches)
{
    const ScriptedServer one(m_ok);
    const ScriptedServer other(m_ok);
    const QJsonArray found =
        services({u"list"_s, u"--json"_s, u"--no-probe"_s, u"--search"_s, QString::number(one.port())});
    EXPECT_FALSE(withPort(found, one.port()).isEmpty());
    EXPECT_TRUE(withPort(found, other.port()).isEmpty());
    EXPECT_EQ(services({u"list"_s, u"--json"_s, u"--no-probe"_s, u"--search"_s, u"no such server"_s}),
              QJsonArray());
}

TEST_F(Portolanctl, SortsAsStoredUnlessToldOtherwise)
{
    const ScriptedServer silent([](ScriptedServer::Connection &) {});
    const ScriptedServer healthy(m_ok);
    const auto first = [&](const QStringList &more) {
        for (const QJsonValue &service : services(QStringList{u"list"_s, u"--json"_s} + more)) {
            const int port = service[u"port"_s].toInt();
            if (port == silent.port() || port == healthy.port())
                return port;
        }
        return 0;
    };
    const int lower = std::min(silent.port(), healthy.port());
    EXPECT_EQ(first({}), lower);
    EXPECT_EQ(first({u"--sort"_s, u"status"_s}), healthy.port());
    writeSettings(R"({"sortOrder": "status"})");
    EXPECT_EQ(first({}), healthy.port());
    EXPECT_EQ(first({u"--sort=port"_s}), lower);
}

TEST_F(Portolanctl, ShowsPinnedServersFirstAndMarksThem)
{
    const ScriptedServer one(m_ok);
    const ScriptedServer other(m_ok);
    const quint16 pinned = std::max(one.port(), other.port());
    writeSettings("{\"pinnedPorts\": [" + QByteArray::number(pinned) + "]}");
    const QJsonArray all = services({u"list"_s, u"--json"_s, u"--no-probe"_s});
    EXPECT_EQ(all.first()[u"port"_s].toInt(), pinned);
    EXPECT_EQ(all.first()[u"pinned"_s], QJsonValue(true));
    EXPECT_EQ(withPort(all, std::min(one.port(), other.port()))[u"pinned"_s], QJsonValue(false));

    const QStringList lines = QString::fromUtf8(run({u"list"_s, u"--no-probe"_s}).output).split(u'\n');
    EXPECT_TRUE(lines.value(1).startsWith(u'*')) << lines.value(1).toStdString();
}

TEST_F(Portolanctl, WritesEverythingToAPipeThatIsSlowAndDoesNotWait)
{
    std::vector<std::unique_ptr<ScriptedServer>> servers;
    for (int i = 0; i < 30; ++i)
        servers.push_back(std::make_unique<ScriptedServer>(m_ok));
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_CLOEXEC | O_NONBLOCK), 0);
    fcntl(ends[1], F_SETPIPE_SZ, 4096);
    QProcess list;
    prepare(list);
    list.setChildProcessModifier([writer = ends[1]] { dup2(writer, STDOUT_FILENO); });
    list.start(program, {u"list"_s, u"--json"_s, u"--no-probe"_s});
    ASSERT_TRUE(list.waitForStarted());
    close(ends[1]);

    QByteArray output;
    std::array<char, 1000> piece;
    for (ssize_t count = -1; count != 0;) {
        usleep(2000);
        count = read(ends[0], piece.data(), piece.size());
        ASSERT_TRUE(count >= 0 || errno == EAGAIN);
        output.append(piece.data(), std::max<ssize_t>(count, 0));
    }
    close(ends[0]);
    EXPECT_EQ(finished(list).status, 0);
    EXPECT_GT(output.size(), 4096);
    EXPECT_GE(QJsonDocument::fromJson(output).array().size(), 30);
}

TEST_F(Portolanctl, FailsWhereStandardOutputIsClosed)
{
    QProcess list;
    prepare(list);
    list.setChildProcessModifier([] { close(STDOUT_FILENO); });
    list.start(program, {u"list"_s, u"--no-probe"_s});
    const Outcome outcome = finished(list);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.error, "portolanctl: cannot write: Bad file descriptor\n");
}

TEST_F(Portolanctl, NeverTouchesTheSettings)
{
    EXPECT_EQ(run({u"list"_s, u"--sort=name"_s}).status, 0);
    EXPECT_FALSE(QFileInfo::exists(configFolder() + u"/portolan"_s));

    const QByteArray odd = R"({"pinnedPorts": "none", "sortOrder": 7)";
    writeSettings(odd);
    const QDateTime before = QFileInfo(settingsPath()).lastModified();
    EXPECT_EQ(run({u"list"_s, u"--sort=name"_s}).status, 0);
    QFile file(settingsPath());
    ASSERT_TRUE(file.open(QFile::ReadOnly));
    EXPECT_EQ(file.readAll(), odd);
    EXPECT_EQ(QFileInfo(settingsPath()).lastModified(), before);
    EXPECT_EQ(QDir(configFolder() + u"/portolan"_s).entryList(QDir::Files).size(), 1);
}

TEST_F(Portolanctl, WritesNothingRawThatAFolderIsCalled)
{
    const QString name = u"evil\x1b[31m\x07\u009b1m\n\u202e"_s;
    ASSERT_TRUE(QDir(folder()).mkdir(name));
    ASSERT_TRUE(QDir::setCurrent(folder() + u'/' + name));
    const ScriptedServer server(m_ok);
    for (const QString &format : {u"--no-probe"_s, u"--json"_s}) {
        const Outcome outcome = run({u"list"_s, format});
        EXPECT_EQ(outcome.status, 0);
        EXPECT_FALSE(outcome.output.contains('\x1b'));
        EXPECT_FALSE(outcome.output.contains('\x07'));
        EXPECT_FALSE(outcome.output.contains("\u009b"));
        EXPECT_FALSE(outcome.output.contains("\u202e"));
        EXPECT_TRUE(outcome.output.contains(QByteArray::number(server.port())));
    }
}

TEST_F(Portolanctl, RefusesWhatMakesNoSenseInOneLine)
{
    const QList<QStringList> lines{{u"lst"_s},
                                   {u"list"_s, u"--nonsense"_s},
                                   {u"list"_s, u"3000"_s},
                                   {u"list"_s, u"--sort=size"_s},
                                   {u"list"_s, u"--search"_s},
                                   {u"watch"_s}};
    for (const QStringList &arguments : lines) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, 2) << arguments.join(u' ').toStdString();
        EXPECT_EQ(outcome.output, QByteArray());
        EXPECT_TRUE(outcome.error.startsWith("portolanctl: "));
        EXPECT_EQ(outcome.error.count('\n'), 1);
        EXPECT_TRUE(outcome.error.endsWith('\n'));
    }
}

TEST_F(Portolanctl, TellsItsVersionAndHowToUseIt)
{
    EXPECT_EQ(run({u"--version"_s}).output, "portolanctl " PORTOLAN_VERSION "\n");
    const Outcome help = run({u"--help"_s});
    EXPECT_EQ(help.status, 0);
    for (const char *word : {"list", "watch", "stop", "open", "--json", "--no-probe", "--search", "--sort",
                             "--help", "--version"})
        EXPECT_TRUE(help.output.contains(word)) << word;
}

TEST_F(Portolanctl, HasAManPageThatTellsAllThatTheHelpTells)
{
    QFile page(QStringLiteral(PORTOLANCTL_MAN));
    ASSERT_TRUE(page.open(QFile::ReadOnly));
    const QString manual = QString::fromUtf8(page.readAll().replace("\\-", "-"));
    const QString help = QString::fromUtf8(run({u"--help"_s}).output);
    static const QRegularExpression optionOrCommand(u"(--[a-z-]+)|^  ([a-z]+)  "_s,
                                                    QRegularExpression::MultilineOption);
    QSet<QString> words;
    for (auto match = optionOrCommand.globalMatch(help); match.hasNext();)
        words.insert(match.next().captured().trimmed());
    for (const QString &word : std::as_const(words)) {
        EXPECT_TRUE(manual.contains(
            QRegularExpression(u"^\\.BI? \"? ?"_s + word, QRegularExpression::MultilineOption)))
            << word.toStdString();
    }
    EXPECT_EQ(words.size(), 10);
}

TEST_F(Portolanctl, EndsQuietlyWhenNobodyReadsOn)
{
    const ScriptedServer server(m_ok);
    const Outcome outcome = runInShell(u"\"$1\" list --json | head -n 1"_s);
    EXPECT_EQ(outcome.output, "[\n");
    EXPECT_EQ(outcome.error, QByteArray());
    const Outcome ignoring = runInShell(u"trap '' PIPE; \"$1\" list --json | :"_s);
    EXPECT_EQ(ignoring.error, QByteArray());
}

TEST_F(Portolanctl, SaysWhenItCannotWrite)
{
    const Outcome outcome = runInShell(u"\"$1\" list > /dev/full"_s);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.error, "portolanctl: cannot write: No space left on device\n");
}

TEST_F(Portolanctl, NeedsNoLibraryOfTheDesktop)
{
    const Outcome outcome = runInShell(u"LD_TRACE_LOADED_OBJECTS=1 \"$1\""_s);
    EXPECT_TRUE(outcome.output.contains("libQt6Core"));
    for (const char *library : {"libQt6Gui", "libQt6DBus", "libQt6Qml", "libQt6Widgets", "libxcb", "libX11"})
        EXPECT_FALSE(outcome.output.contains(library)) << library;
}

TEST_F(Portolanctl, SaysNothingAboutTheLocale)
{
    const Outcome outcome = runInShell(u"LC_ALL=C \"$1\" list --no-probe"_s);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.error, QByteArray());
}

TEST_F(Portolanctl, ColoursTheTableOnATerminal)
{
    const ScriptedServer server(m_ok);
    PtyProcess list(program, QStringList{u"list"_s} + ownOnly(), options());
    EXPECT_EQ(list.exitStatus(), 0);
    EXPECT_TRUE(list.output().contains("\x1b[38;5;41mOnline 200"));
    EXPECT_EQ(linesOf(seenOnTerminal(list.output()), server.port()).size(), 1);
}

TEST_F(Portolanctl, HonoursNoColor)
{
    const ScriptedServer server(m_ok);
    PtyProcess::Options plain = options();
    plain.environment.append(std::pair<QByteArray, QByteArray>("NO_COLOR", "1"));
    PtyProcess list(program, QStringList{u"list"_s} + ownOnly(), plain);
    EXPECT_EQ(list.exitStatus(), 0);
    EXPECT_FALSE(list.output().contains("\x1b[3"));
    EXPECT_FALSE(list.output().contains("\x1b[1m"));
    EXPECT_FALSE(list.output().contains("\x1b[2m"));
}

TEST_F(Portolanctl, KeepsWithinTheTerminal)
{
    const ScriptedServer server(m_ok);
    PtyProcess list(program, QStringList{u"list"_s} + ownOnly(), options(60));
    EXPECT_EQ(list.exitStatus(), 0);
    const QStringList lines = seenOnTerminal(list.output());
    EXPECT_EQ(linesOf(lines, server.port()).size(), 1);
    for (const QString &line : lines)
        EXPECT_LE(line.size(), 60) << line.toStdString();
}

TEST_F(Portolanctl, ShowsWhatItWaitsForAndLeavesNoTraceOfIt)
{
    const ScriptedServer slow([](ScriptedServer::Connection &connection) {
        connection.readRequest();
        if (connection.pause(std::chrono::milliseconds(900)))
            connection.send("HTTP/1.1 200 OK\r\n\r\n");
    });
    PtyProcess list(program, QStringList{u"list"_s} + ownOnly(), options());
    EXPECT_EQ(list.exitStatus(), 0);
    EXPECT_TRUE(list.output().contains("Asking the servers…"));
    const QStringList lines = seenOnTerminal(list.output());
    EXPECT_TRUE(lines.filter(u"Asking"_s).isEmpty());
    EXPECT_TRUE(lines.filter(u"Looking"_s).isEmpty());
    EXPECT_TRUE(lines.value(0).contains(u"PORT"_s));
    EXPECT_EQ(linesOf(lines, slow.port()).size(), 1);
}

TEST_F(Portolanctl, LeavesNoTraceWhenInterrupted)
{
    const ScriptedServer silent([](ScriptedServer::Connection &connection) { connection.hang(); });
    PtyProcess list(program, QStringList{u"list"_s} + ownOnly(), options());
    ASSERT_TRUE(list.readUntil([&] { return list.output().contains("Asking"); }));
    list.sendSignal(SIGINT);
    EXPECT_EQ(list.endSignal(), SIGINT) << "a shell's loop ends only then";
    EXPECT_EQ(seenOnTerminal(list.output()), QStringList());
}

TEST_F(Portolanctl, SaysWhenNothingMatches)
{
    const ScriptedServer server(m_ok);
    PtyProcess list(program, {u"list"_s, u"--search"_s, u"no such server"_s}, options());
    EXPECT_EQ(list.exitStatus(), 0);
    EXPECT_EQ(seenOnTerminal(list.output()), QStringList{u"No matches · Try a different name or port."_s});
}

TEST_F(Portolanctl, WatchFollowsWhatHappens)
{
    auto server = std::make_unique<ScriptedServer>(m_ok);
    const quint16 port = server->port();
    PtyProcess watch(program, QStringList{u"watch"_s} + ownOnly(), options());
    const auto seen = [&] { return linesOf(seenOnTerminal(watch.output()), port); };
    ASSERT_TRUE(
        watch.readUntil([&] { return seen().size() == 1 && seen().first().contains(u"Online 200"_s); }));
    server.reset();
    EXPECT_TRUE(watch.readUntil([&] { return seen().isEmpty(); }));
    const ScriptedServer next(m_ok);
    EXPECT_TRUE(
        watch.readUntil([&] { return linesOf(seenOnTerminal(watch.output()), next.port()).size() == 1; }));
    watch.type("q");
    EXPECT_EQ(watch.exitStatus(), 0);
}

class PortolanctlWatchEnds : public Portolanctl, public testing::WithParamInterface<const char *>
{};

TEST_P(PortolanctlWatchEnds, AndLeavesTheTerminalAsItWas)
{
    PtyProcess watch(program, QStringList{u"watch"_s} + ownOnly(), options());
    const termios before = watch.mode();
    ASSERT_TRUE(watch.readUntil([&] { return watch.output().contains("q to quit"); }));
    EXPECT_FALSE(watch.mode().c_lflag & ECHO);
    const QByteArray how = GetParam();
    if (how == "q")
        watch.type("q");
    else if (how == "ControlC")
        watch.type("\x03");
    else
        watch.sendSignal(how == "Terminated" ? SIGTERM : SIGHUP);
    ASSERT_TRUE(watch.readUntil([&] { return watch.output().contains("\x1b[?1049l"); }));
    EXPECT_EQ(watch.exitStatus(), 0);
    EXPECT_EQ(watch.mode().c_lflag, before.c_lflag);
    EXPECT_TRUE(watch.output().contains("\x1b[?25h"));
    EXPECT_EQ(seenOnTerminal(watch.output()), QStringList());
}

INSTANTIATE_TEST_SUITE_P(By, PortolanctlWatchEnds, testing::Values("q", "ControlC", "Terminated", "HungUp"),
                         [](const auto &row) { return std::string(row.param); });

TEST_F(Portolanctl, WatchKnowsNoOtherKeys)
{
    PtyProcess watch(program, {u"watch"_s}, options());
    ASSERT_TRUE(watch.readUntil([&] { return watch.output().contains("q to quit"); }));
    watch.type("x\x1a\x1c"); // Control-Z, Control-\: they would leave the terminal as it is now
    watch.type("q");
    EXPECT_EQ(watch.exitStatus(), 0);
    EXPECT_TRUE(watch.output().contains("\x1b[?1049l"));
}

TEST_F(Portolanctl, WatchEndsAlsoOnATerminalThatTakesNoMore)
{
    PtyProcess watch(program, {u"watch"_s}, options());
    ASSERT_TRUE(watch.readUntil([&] { return watch.output().contains("q to quit"); }));
    watch.type("\x13"); // Control-S
    watch.sendSignal(SIGTERM);
    EXPECT_EQ(watch.exitStatus(), 0);
}

TEST_F(Portolanctl, WatchTakesTheTerminalBackAfterHavingBeenStopped)
{
    PtyProcess watch(program, {u"watch"_s}, options());
    const termios others = watch.mode();
    const QByteArrayView ownScreen = "\x1b[?1049h\x1b[?25l";
    const auto hasPicture = [&] {
        return watch.output().indexOf("Updated", watch.output().lastIndexOf(ownScreen)) > 0;
    };
    ASSERT_TRUE(watch.readUntil(hasPicture));
    EXPECT_EQ(watch.output().count(ownScreen), 1);
    watch.sendSignal(SIGSTOP);
    ASSERT_TRUE(watch.awaitStop());
    watch.setMode(others); // as a shell does, which writes here too
    watch.sendSignal(SIGCONT);
    ASSERT_TRUE(watch.readUntil([&] { return watch.output().count(ownScreen) == 2 && hasPicture(); }));
    EXPECT_FALSE(watch.mode().c_lflag & ICANON);
    watch.type("q");
    EXPECT_EQ(watch.exitStatus(), 0);
    EXPECT_EQ(watch.mode().c_lflag, others.c_lflag);
}

TEST_F(Portolanctl, WatchSaysHowToQuitWhereItReadsNoKeys)
{
    PtyProcess watch(u"/bin/sh"_s, {u"-c"_s, u"exec \"$1\" watch < /dev/null"_s, u"sh"_s, program},
                     options());
    EXPECT_TRUE(watch.readUntil([&] { return watch.output().contains("Control-C to quit"); }));
    EXPECT_FALSE(watch.output().contains("q to quit"));
    watch.type("\x03");
    EXPECT_EQ(watch.exitStatus(), 0);
}

TEST_F(Portolanctl, WatchFollowsTheSizeOfTheTerminal)
{
    const ScriptedServer server(m_ok);
    PtyProcess watch(program, QStringList{u"watch"_s} + ownOnly(), options(120));
    const auto lines = [&] { return seenOnTerminal(watch.output()); };
    ASSERT_TRUE(watch.readUntil([&] { return lines().value(0).endsWith(u"FOLDER"_s); }));
    watch.resize(50, 20);
    EXPECT_TRUE(watch.readUntil([&] {
        const bool isNarrow =
            std::ranges::all_of(lines(), [](const QString &line) { return line.size() <= 50; });
        return isNarrow && lines().value(0).contains(u"PORT"_s) && !lines().value(0).contains(u"FOLDER"_s);
    }));
    watch.type("q");
    EXPECT_EQ(watch.exitStatus(), 0);
}

TEST_F(Portolanctl, WatchScrollsWhatDoesNotFit)
{
    std::vector<std::unique_ptr<ScriptedServer>> servers;
    std::vector<quint16> ports;
    for (int i = 0; i < 6; ++i) {
        servers.push_back(std::make_unique<ScriptedServer>(m_ok));
        ports.push_back(servers.back()->port());
    }
    std::ranges::sort(ports);
    PtyProcess watch(program, QStringList{u"watch"_s, u"--no-probe"_s} + ownOnly(), options());
    watch.resize(120, 7); // a header, three servers, what is said about the others, air, the footer
    const auto shows = [&](size_t first, const QString &others) {
        return watch.readUntil([&] {
            const QStringList lines = seenOnTerminal(watch.output());
            return lines.size() == 7 && linesOf(lines.sliced(1, 1), ports[first]).size() == 1 &&
                   lines[4] == others;
        });
    };
    EXPECT_TRUE(shows(0, u"… 3 more"_s));
    watch.type("\x1b[B");
    EXPECT_TRUE(shows(1, u"… 1 above, 2 more"_s));
    watch.type("\x1b[6~");
    EXPECT_TRUE(shows(3, u"… 3 above"_s));
    watch.type("k");
    EXPECT_TRUE(shows(2, u"… 2 above, 1 more"_s));
    watch.type("\x1b[H");
    EXPECT_TRUE(shows(0, u"… 3 more"_s));
    watch.type("q");
    EXPECT_EQ(watch.exitStatus(), 0);
}

TEST_F(Portolanctl, WatchCutsNothingOffAFullLine)
{
    const QString deep = folder() + u'/' + QString(150, u'd') + u"/end!"_s;
    ASSERT_TRUE(QDir().mkpath(deep));
    ASSERT_TRUE(QDir::setCurrent(deep));
    const ScriptedServer server(m_ok);
    for (const int columns : {90, 101, 120}) {
        PtyProcess watch(program, QStringList{u"watch"_s} + ownOnly(), options(columns));
        EXPECT_TRUE(watch.readUntil([&] {
            const QStringList lines = seenOnTerminal(watch.output(), columns);
            return lines.size() == 4 && lines[1].size() == columns && lines[1].endsWith(u"/end!"_s) &&
                   lines[3].startsWith(u"Updated"_s);
        })) << seenOnTerminal(watch.output(), columns).join(u'\n').toStdString();
        watch.type("q");
        EXPECT_EQ(watch.exitStatus(), 0);
    }
}

TEST_F(Portolanctl, WatchPrintsALineOfJsonPerRefresh)
{
    const ScriptedServer server(m_ok);
    QProcess watch;
    prepare(watch);
    watch.start(program, {u"watch"_s, u"--json"_s});
    for (int refresh = 0; refresh < 2; ++refresh) {
        while (!watch.canReadLine() && watch.waitForReadyRead(60'000)) {
        }
        const auto document = QJsonDocument::fromJson(watch.readLine());
        ASSERT_TRUE(document.isArray());
        EXPECT_EQ(withPort(document.array(), server.port())[u"health"_s][u"state"_s].toString(),
                  u"healthy"_s);
    }
    watch.terminate();
    EXPECT_TRUE(watch.waitForFinished(60'000));
    EXPECT_EQ(watch.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(watch.exitCode(), 0);
}

} // namespace portolan
