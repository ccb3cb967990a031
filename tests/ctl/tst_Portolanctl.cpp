// SPDX-License-Identifier: MIT
#include "Eventually.h"
#include "FakePrograms.h"
#include "JsonSchema.h"
#include "PortolanctlTest.h"
#include "PtyProcess.h"
#include "ScopedEnvironment.h"
#include "ScriptedServer.h"
#include "TerminalEmulator.h"
#include "TerminalText.h"
#include "TestServer.h"

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

// The lines that contain `port` as a word.
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
        EXPECT_TRUE(JsonSchema().allows(outcome.output)) << outcome.output.toStdString();
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
                                   {u"watch"_s, u"3000"_s},
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
    for (const char *word : {"list", "watch", "wait", "stop", "open", "--host", "--json", "--no-probe",
                             "--search", "--sort", "--help", "--version"})
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
    EXPECT_EQ(words.size(), 12);
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

TEST_F(Portolanctl, DoesNotSayThatNothingRunsWhereItCouldNotLook)
{
    PtyProcess list(program, {u"list"_s, u"no such server"_s}, options());
    EXPECT_EQ(list.exitStatus(), 1);
    EXPECT_EQ(seenOnTerminal(list.output()),
              QStringList{u"portolanctl: no server is called 'no such server'"_s});
}

/// portolanctl watch on a terminal, with this test's servers only.
class PortolanctlWatch : public Portolanctl
{
protected:
    /// The terminal shows `portolanctl watch` with `arguments`.
    void start(const QStringList &arguments = {}, TerminalSize size = {.columns = 120, .rows = 30},
               const QByteArray &term = "xterm-256color")
    {
        m_size = size;
        PtyProcess::Options all = options(size.columns);
        all.rows = size.rows;
        all.environment.emplaceBack("TERM", term);
        m_watch.emplace(program, QStringList{u"watch"_s} + ownOnly() + arguments, all);
    }
    [[nodiscard]] PtyProcess &watch() { return *m_watch; }
    [[nodiscard]] QStringList seen() const { return seenOnTerminal(m_watch->output(), m_size); }
    [[nodiscard]] QString chosen() const
    {
        const auto line = reversedLine(m_watch->output(), m_size);
        return line ? seen().value(*line) : QString();
    }
    [[nodiscard]] bool awaitLine(const QString &part)
    {
        return m_watch->readUntil([&] { return !seen().filter(part).isEmpty(); });
    }
    [[nodiscard]] bool awaitFooter() { return awaitLine(u"q quit"_s); }
    void resize(TerminalSize size)
    {
        m_size = size;
        m_watch->resize(size.columns, size.rows);
    }
    /// Types q and expects the end, with the terminal as it was.
    void quit()
    {
        m_watch->type("q");
        EXPECT_EQ(m_watch->exitStatus(), 0);
        EXPECT_EQ(seen(), QStringList());
    }
    [[nodiscard]] static std::vector<std::unique_ptr<ScriptedServer>>
    servers(int count, const ScriptedServer::Script &script)
    {
        std::vector<std::unique_ptr<ScriptedServer>> all;
        for (int i = 0; i < count; ++i)
            all.push_back(std::make_unique<ScriptedServer>(script));
        std::ranges::sort(all, {}, &ScriptedServer::port);
        return all;
    }

private:
    std::optional<PtyProcess> m_watch;
    TerminalSize m_size;
};

TEST_F(PortolanctlWatch, FollowsWhatHappens)
{
    auto server = std::make_unique<ScriptedServer>(m_ok);
    const quint16 port = server->port();
    start();
    const auto lines = [&] { return linesOf(seen(), port); };
    ASSERT_TRUE(
        watch().readUntil([&] { return lines().size() == 1 && lines().first().contains(u"Online 200"_s); }));
    server.reset();
    EXPECT_TRUE(watch().readUntil([&] { return lines().isEmpty(); }));
    const ScriptedServer next(m_ok);
    EXPECT_TRUE(watch().readUntil([&] { return linesOf(seen(), next.port()).size() == 1; }));
    quit();
}

class PortolanctlWatchEnds : public PortolanctlWatch, public testing::WithParamInterface<const char *>
{};

TEST_P(PortolanctlWatchEnds, AndLeavesTheTerminalAsItWas)
{
    start();
    const termios before = watch().mode();
    ASSERT_TRUE(awaitFooter());
    EXPECT_FALSE(watch().mode().c_lflag & ECHO);
    const QByteArray how = GetParam();
    if (how == "q")
        watch().type("q");
    else if (how == "ControlC")
        watch().type("\x03");
    else
        watch().sendSignal(how == "Terminated" ? SIGTERM : SIGHUP);
    EXPECT_EQ(watch().exitStatus(), 0);
    EXPECT_EQ(watch().mode().c_lflag, before.c_lflag);
    EXPECT_EQ(watch().mode().c_iflag, before.c_iflag);
    EXPECT_EQ(watch().mode().c_cc[VQUIT], before.c_cc[VQUIT]);
    for (const char *end : {"\x1b[?1049l", "1000l"})
        EXPECT_TRUE(watch().output().contains(end)) << end;
    EXPECT_EQ(seen(), QStringList());
}

INSTANTIATE_TEST_SUITE_P(By, PortolanctlWatchEnds, testing::Values("q", "ControlC", "Terminated", "HungUp"),
                         [](const auto &row) { return std::string(row.param); });

TEST_F(PortolanctlWatch, EndsAlsoOnATerminalThatTakesNoMore)
{
    start();
    ASSERT_TRUE(awaitFooter());
    watch().type("\x13"); // Control-S
    watch().sendSignal(SIGTERM);
    EXPECT_EQ(watch().exitStatus(), 0);
}

TEST_F(PortolanctlWatch, EndsWhereTheTerminalGoesAwayThoughItHearsOfNoHangUp)
{
    const std::pair<QByteArray, QByteArray> settings("XDG_CONFIG_HOME", configFolder().toUtf8());
    PtyProcess shell(u"/bin/sh"_s, {u"-c"_s, u"trap '' HUP; exec \"$1\" watch"_s, u"sh"_s, program},
                     {.environment = {settings, {"TERM", "xterm"}}});
    ASSERT_TRUE(shell.readUntil([&] { return shell.output().contains("q quit"); }));
    shell.closeTerminal();
    EXPECT_EQ(shell.exitStatus(), 0);
}

TEST_F(PortolanctlWatch, IsSuspendedByControlZAndComesBack)
{
    start();
    const termios before = watch().mode();
    ASSERT_TRUE(awaitFooter());
    watch().type("\x1a");
    ASSERT_TRUE(watch().awaitStop());
    EXPECT_TRUE(watch().readUntil([&] { return seen().isEmpty(); }));
    EXPECT_EQ(watch().mode().c_lflag, before.c_lflag);
    watch().sendSignal(SIGCONT);
    ASSERT_TRUE(awaitFooter());
    EXPECT_FALSE(watch().mode().c_lflag & ICANON);
    quit();
}

TEST_F(PortolanctlWatch, TakesTheTerminalBackAfterHavingBeenStopped)
{
    start();
    const termios others = watch().mode();
    ASSERT_TRUE(awaitFooter());
    watch().sendSignal(SIGSTOP);
    ASSERT_TRUE(watch().awaitStop());
    watch().setMode(others); // like a shell that uses the same terminal
    watch().sendSignal(SIGCONT);
    ASSERT_TRUE(watch().readUntil([&] { return watch().output().count("\x1b[?1049h") == 2; }));
    ASSERT_TRUE(awaitFooter());
    EXPECT_FALSE(watch().mode().c_lflag & ICANON);
    quit();
    EXPECT_EQ(watch().mode().c_lflag, others.c_lflag);
}

TEST_F(PortolanctlWatch, SaysHowToQuitWhereItReadsNoKeys)
{
    PtyProcess watch(u"/bin/sh"_s, {u"-c"_s, u"exec \"$1\" watch < /dev/null"_s, u"sh"_s, program},
                     options());
    EXPECT_TRUE(watch.readUntil([&] { return watch.output().contains("Control-C to quit"); }));
    EXPECT_FALSE(watch.output().contains("q quit"));
    watch.type("\x03");
    EXPECT_EQ(watch.exitStatus(), 0);
}

TEST_F(PortolanctlWatch, FollowsTheSizeOfTheTerminal)
{
    const auto all = servers(12, m_ok);
    start({u"--no-probe"_s});
    ASSERT_TRUE(
        watch().readUntil([&] { return seen().value(0).endsWith(u"FOLDER"_s) && seen().size() == 15; }));
    for (const TerminalSize size : {TerminalSize{50, 20}, TerminalSize{31, 10}, TerminalSize{120, 40}}) {
        resize(size);
        EXPECT_TRUE(watch().readUntil([&] {
            const QStringList lines = seen();
            return lines.value(0).endsWith(size.columns == 31   ? u"STATUS"_s
                                           : size.columns == 50 ? u"UPTIME"_s
                                                                : u"FOLDER"_s) &&
                   lines.size() == std::min(15, size.rows) && lines.last().startsWith(u"Updated"_s);
        })) << seen().join(u'\n').toStdString();
    }
    quit();
}

TEST_F(PortolanctlWatch, ObeysTheKeysOfTheTerminal)
{
    const auto all = servers(30, m_ok);
    start({u"--no-probe"_s}, {.columns = 120, .rows = 12}); // eight at once
    const auto choosesAfter = [&](QByteArrayView keys, size_t row) {
        watch().type(keys);
        return watch().readUntil([&] { return linesOf({chosen()}, all[row]->port()).size() == 1; });
    };
    EXPECT_TRUE(choosesAfter("", 0));
    EXPECT_TRUE(choosesAfter("\x1bOB", 1));
    EXPECT_TRUE(choosesAfter("j", 2));
    EXPECT_TRUE(choosesAfter("\x1b[6~", 10));
    EXPECT_TRUE(choosesAfter("\x1bOA", 9));
    EXPECT_TRUE(choosesAfter("k", 8));
    EXPECT_TRUE(choosesAfter("\x1b[5~", 0));
    EXPECT_TRUE(choosesAfter("\x1bOF", 29));
    EXPECT_TRUE(choosesAfter("\x1bOH", 0));
    EXPECT_TRUE(choosesAfter("\x1b[<65;1;1M", 3)) << "the wheel";
    EXPECT_TRUE(choosesAfter("\x1b[<0;5;4M\x1b[<0;5;4m", 5)) << "a click";
    quit();
}

TEST_F(PortolanctlWatch, SearchesSortsAndShowsItsKeys)
{
    const auto all = servers(3, m_ok);
    const QByteArray last = QByteArray::number(all[2]->port());
    start({u"--no-probe"_s});
    ASSERT_TRUE(watch().readUntil([&] { return seen().size() == 6; }));
    watch().type("\x1b"); // clears what was searched for on the command line
    watch().type('/' + last);
    EXPECT_TRUE(awaitLine(u'/' + QString::fromLatin1(last) + u"_ · Enter: done"_s));
    EXPECT_TRUE(
        watch().readUntil([&] { return seen().value(1).trimmed().startsWith(QString::fromLatin1(last)); }));
    watch().type("\x1b");
    EXPECT_TRUE(
        watch().readUntil([&] { return seen().filter(u"/"_s + QString::fromLatin1(last)).isEmpty(); }));
    watch().type("O");
    EXPECT_TRUE(awaitLine(u"Sorted by name"_s));
    watch().type("?");
    EXPECT_TRUE(awaitLine(u"s, then y     stop"_s));
    watch().type(" r");
    EXPECT_TRUE(awaitLine(u"Updated "_s));
    quit();
}

TEST_F(PortolanctlWatch, StopsAServerAndShowsWhatCameOfIt)
{
    const QString listens = u"import socket, time\ns = socket.create_server(('127.0.0.1', 0))\n"
                            "print(s.getsockname()[1], flush=True)\ntime.sleep(600)\n"_s;
    TestServer server(TestServer::python(listens), folder());
    start({u"--no-probe"_s});
    ASSERT_TRUE(watch().readUntil([&] { return chosen().contains(server.port()); }));
    watch().type("s");
    EXPECT_TRUE(awaitLine(u"y: stop shop (process %1, port %2)"_s.arg(server.pid()).arg(server.port())));
    watch().type("n");
    EXPECT_TRUE(awaitFooter());
    EXPECT_TRUE(server.isRunning());
    watch().type("sy");
    EXPECT_TRUE(awaitLine(u"Stopped in "_s));
    EXPECT_TRUE(linesOf(seen().filter(u"Stopped in"_s), quint16(server.port().toInt())).size() == 1);
    EXPECT_EQ(server.endedBy(), SIGTERM);
    EXPECT_TRUE(watch().readUntil([&] { return seen().filter(u"Stopped in"_s).isEmpty(); }));
    quit();
}

const QString ignoresSigterm = u"import signal, socket, time\nsignal.signal(signal.SIGTERM, signal.SIG_IGN)\n"
                               "s = socket.create_server(('127.0.0.1', 0))\n"
                               "print(s.getsockname()[1], flush=True)\ntime.sleep(600)\n"_s;

TEST_F(PortolanctlWatch, EndsOnlyOnceAServerThatItWasToldToStopHasEnded)
{
    TestServer server(TestServer::python(ignoresSigterm), folder());
    start({u"--no-probe"_s});
    ASSERT_TRUE(watch().readUntil([&] { return chosen().contains(server.port()); }));
    watch().type("sy");
    EXPECT_TRUE(awaitLine(u"Stopping…"_s));
    watch().type("q");
    EXPECT_TRUE(awaitLine(u"Waiting for a server to end… q: quit at once"_s));
    EXPECT_EQ(watch().exitStatus(), 0);
    EXPECT_EQ(server.endedBy(), SIGKILL);
}

TEST_F(PortolanctlWatch, EndsAtOnceWithASecondQ)
{
    TestServer server(TestServer::python(ignoresSigterm), folder());
    start({u"--no-probe"_s});
    ASSERT_TRUE(watch().readUntil([&] { return chosen().contains(server.port()); }));
    watch().type("syqq");
    EXPECT_EQ(watch().exitStatus(), 0);
    EXPECT_TRUE(server.isRunning());
}

TEST_F(PortolanctlWatch, OpensAndCopiesTheAddress)
{
    FakePrograms programs;
    programs.install(u"xdg-open"_s);
    const ScopedEnvironment path("PATH", programs.folder().toLocal8Bit() + ':' + qgetenv("PATH"));
    const ScriptedServer server(m_ok);
    const QString address = u"http://localhost:%1"_s.arg(server.port());
    start({u"--no-probe"_s});
    ASSERT_TRUE(watch().readUntil([&] { return !chosen().isEmpty(); }));
    watch().type("\r");
    EXPECT_TRUE(awaitLine(u"Opening "_s + address));
    EXPECT_TRUE(eventually([&] { return programs.wasStarted(u"xdg-open"_s); }));
    EXPECT_EQ(programs.record(u"xdg-open"_s).arguments, QStringList{address});
    watch().type("c");
    EXPECT_TRUE(awaitLine(u"Copied "_s + address));
    EXPECT_TRUE(watch().output().contains("\x1b]52;c;" + address.toLatin1().toBase64() + '\a'));
    quit();
}

TEST_F(PortolanctlWatch, CopiesNothingOnTheConsole)
{
    const ScriptedServer server(m_ok);
    start({u"--no-probe"_s}, {.columns = 80, .rows = 25}, "linux");
    ASSERT_TRUE(watch().readUntil([&] { return watch().output().contains("shop"); }));
    watch().type("c");
    ASSERT_TRUE(watch().readUntil([&] { return watch().output().contains("has no clipboard"); }));
    EXPECT_FALSE(watch().output().contains("]52;"));
    watch().type("q");
    EXPECT_EQ(watch().exitStatus(), 0);
}

TEST_F(PortolanctlWatch, WorksOnATerminalThatThisMachineDoesNotKnow)
{
    const ScriptedServer server(m_ok);
    start({u"--no-probe"_s}, {.columns = 80, .rows = 25}, "some-new-terminal");
    EXPECT_TRUE(watch().readUntil([&] { return linesOf(seen(), server.port()).size() == 1; }));
    quit();
}

TEST_F(PortolanctlWatch, CutsNothingOffAFullLine)
{
    const QString deep = folder() + u'/' + QString(150, u'd') + u"/end!"_s;
    ASSERT_TRUE(QDir().mkpath(deep));
    ASSERT_TRUE(QDir::setCurrent(deep));
    const ScriptedServer server(m_ok);
    for (const int columns : {90, 101, 120}) {
        start({}, {.columns = columns, .rows = 24});
        EXPECT_TRUE(watch().readUntil([&] {
            const QStringList lines = seen();
            return lines.size() == 4 && lines[1].size() == columns && lines[1].endsWith(u"/end!"_s) &&
                   lines[3].startsWith(u"Updated"_s);
        })) << seen().join(u'\n').toStdString();
        quit();
    }
}

TEST_F(PortolanctlWatch, ShowsWideAndCombiningCharactersInTheirColumns)
{
    const QString name = u"日本 Größe e\u0301 한글"_s;
    ASSERT_TRUE(QDir(folder()).mkdir(name));
    ASSERT_TRUE(QDir::setCurrent(folder() + u'/' + name));
    const ScriptedServer server(m_ok);
    start({u"--no-probe"_s});
    EXPECT_TRUE(awaitLine(name + u"  "_s)) << seen().join(u'\n').toStdString();
    const QStringList lines = seen();
    const int header = int(lines[0].indexOf(u"FRAMEWORK"_s));
    const QString before = lines[1].first(lines[1].indexOf(name) + name.size() + 2);
    EXPECT_EQ(TerminalText::width(before), header);
    quit();
}

// Every control and format character of Unicode except the joiners, in the name of a folder and so of a
// server.
TEST_F(PortolanctlWatch, WritesNoControlCharacterOfAName)
{
    QString name;
    QString evil;
    for (char32_t character = 1; character <= QChar::LastValidCodePoint; ++character) {
        const QChar::Category category = QChar::category(character);
        const bool isControl = category == QChar::Other_Control || category == QChar::Other_Format ||
                               category == QChar::Separator_Line || category == QChar::Separator_Paragraph;
        if (isControl && character != 0x200C && character != 0x200D)
            evil += QChar::fromUcs4(character);
    }
    const QString parent = QDir::currentPath();
    for (const uint character : evil.toUcs4()) {
        name += QChar::fromUcs4(character);
        if (name.toUtf8().size() < 240 && !evil.endsWith(name))
            continue;
        QDir::setCurrent(parent);
        ASSERT_TRUE(QDir().mkdir(u"x"_s + name));
        ASSERT_TRUE(QDir::setCurrent(u"x"_s + name));
        const ScriptedServer server(m_ok);
        start({u"--no-probe"_s}, {.columns = 900, .rows = 12});
        ASSERT_TRUE(watch().readUntil([&] { return linesOf(seen(), server.port()).size() == 1; }));
        watch().type("s");
        ASSERT_TRUE(awaitLine(u"y: stop "_s));
        const QString output = QString::fromUtf8(watch().output());
        for (const uint raw : name.toUcs4()) {
            // ncurses itself writes these; the lines that are shown tell whether it did.
            const bool isOfScreen = raw < ' ' && QByteArrayView("\x1b\r\n\b\x0e\x0f").contains(char(raw));
            EXPECT_TRUE(isOfScreen || !output.contains(QChar::fromUcs4(raw))) << std::hex << raw;
        }
        EXPECT_TRUE(seen().filter(u"<?>"_s).isEmpty()) << seen().join(u'\n').toStdString();
        EXPECT_EQ(seen().size(), 4);
        watch().type("n");
        quit();
        name.clear();
    }
}

TEST_F(Portolanctl, DoesNotWatchOnADumbTerminal)
{
    PtyProcess::Options dumb = options();
    dumb.environment.emplaceBack("TERM", "dumb");
    PtyProcess watch(program, {u"watch"_s}, dumb);
    EXPECT_EQ(watch.exitStatus(), 2);
    EXPECT_EQ(watch.output(), "portolanctl: 'watch' needs a terminal, or option '--json'\r\n");
}

TEST_F(Portolanctl, ListsServersByName)
{
    ASSERT_TRUE(QDir(folder()).mkdir(u"only-this"_s));
    const ScriptedServer other(m_ok);
    ASSERT_TRUE(QDir::setCurrent(folder() + u"/only-this"_s));
    const ScriptedServer server(m_ok);
    // A process has one working folder, so both servers are named after it.
    EXPECT_EQ(services({u"list"_s, u"--json"_s, u"--no-probe"_s, u"only-t"_s, QString::number(server.port())})
                  .size(),
              2);
    const Outcome outcome = run({u"list"_s, u"--json"_s, u"--no-probe"_s, u"no such server"_s});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "[\n]\n");
    EXPECT_EQ(outcome.error, "portolanctl: no server is called 'no such server'\n");
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
        const QByteArray line = watch.readLine();
        EXPECT_TRUE(JsonSchema().allows(line)) << line.toStdString();
        const auto document = QJsonDocument::fromJson(line);
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
