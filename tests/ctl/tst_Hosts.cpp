// SPDX-License-Identifier: MIT
#include "Eventually.h"
#include "FakePrograms.h"
#include "JsonSchema.h"
#include "PortolanctlTest.h"
#include "PtyProcess.h"
#include "ScopedEnvironment.h"
#include "TerminalEmulator.h"
#include "TestServer.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTcpServer>
#include <QTcpSocket>

#include <csignal>
#include <optional>

#include <unistd.h>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

const QString sshd = u"/usr/sbin/sshd"_s;

const QString answers = uR"(
import http.server
class Handler(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        self.send_response(204)
        self.end_headers()
    do_HEAD = do_GET
    def log_message(self, *arguments):
        pass
server = http.server.HTTPServer(('127.0.0.1', 0), Handler)
print(server.server_address[1], flush=True)
server.serve_forever()
)"_s;

quint16 freePort()
{
    QTcpServer server;
    EXPECT_TRUE(server.listen(QHostAddress::LocalHost));
    return server.serverPort();
}

bool accepts(quint16 port)
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, port);
    return socket.waitForConnected(1000);
}

/// The answer of an HTTP server on a port of this machine; empty if there is none.
QByteArray answerOn(quint16 port)
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, port);
    socket.write("GET / HTTP/1.0\r\n\r\n");
    while (socket.state() != QTcpSocket::UnconnectedState && socket.waitForReadyRead(30'000)) {
    }
    return socket.readAll();
}

} // namespace

/// Some machines that a real ssh reaches by a real sshd. They share this one, but each has a portolanctl of
/// its own: a script, which usually runs the real one for the servers of a folder that belongs to the
/// machine.
class Hosts : public PortolanctlTest
{
protected:
    void SetUp() override
    {
        if (!QFile::exists(sshd))
            GTEST_SKIP() << "there is no sshd";
        QDir().mkpath(u"/run/sshd"_s); // which sshd needs if run by root
        ASSERT_EQ(QProcess::execute(u"ssh-keygen"_s, {u"-q"_s, u"-t"_s, u"ed25519"_s, u"-N"_s, u""_s, u"-f"_s,
                                                      path(u"host_key"_s)}),
                  0);
        writeFile(u"sshd_config"_s, "ListenAddress 127.0.0.1\nPort " + QByteArray::number(m_port) +
                                        "\nHostKey " + path(u"host_key"_s).toUtf8() +
                                        "\nAuthorizedKeysFile " + path(u"authorized_keys"_s).toUtf8() +
                                        "\nStrictModes no\nPidFile none\nPermitRootLogin yes\nUsePAM no\n"
                                        "PasswordAuthentication no\nUseDNS no\n");
        // ssh finds its settings by the password database alone.
        writeScript(u"bin/ssh"_s, "exec /usr/bin/ssh -F '" + path(u"ssh_config"_s).toUtf8() + "' \"$@\"\n");
        writeFile(u"ssh_config"_s, "");
        m_sshd.start(sshd, {u"-D"_s, u"-e"_s, u"-f"_s, path(u"sshd_config"_s)});
        ASSERT_TRUE(eventually([&] { return accepts(m_port); }))
            << m_sshd.readAllStandardError().toStdString();
    }
    ~Hosts() override
    {
        m_sshd.terminate();
        m_sshd.waitForFinished();
        // A machine's portolanctl notices the end of its ssh only later, and would probe the next test's
        // servers.
        QFile logins(path(u"logins"_s));
        if (!logins.open(QFile::ReadOnly))
            return;
        for (const QByteArray &line : logins.readAll().split('\n')) {
            const pid_t login = line.toInt();
            QFile command(u"/proc/%1/cmdline"_s.arg(login));
            if (login > 1 && command.open(QFile::ReadOnly) &&
                command.readAll().contains(m_files.path().toUtf8()))
                kill(-getpgid(login), SIGKILL);
        }
    }

    [[nodiscard]] QString path(const QString &name) const { return m_files.filePath(name); }

    void writeFile(const QString &name, const QByteArray &content,
                   QFile::OpenMode mode = QFile::WriteOnly) const
    {
        QDir().mkpath(QFileInfo(path(name)).path());
        QFile file(path(name));
        ASSERT_TRUE(file.open(mode));
        file.write(content);
    }
    void writeScript(const QString &name, const QByteArray &content) const
    {
        writeFile(name, "#!/bin/sh\n" + content);
        QFile(path(name)).setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    /// The folder of the servers of a machine.
    [[nodiscard]] QString folderOf(const QString &host) const { return folder() + u"/on-"_s + host; }

    /// Makes a machine on which portolanctl is `script`; none if that is empty.
    void addHost(const QString &host, const QByteArray &script)
    {
        const QByteArray key = path(host + u".key"_s).toUtf8();
        ASSERT_EQ(QProcess::execute(u"ssh-keygen"_s, {u"-q"_s, u"-t"_s, u"ed25519"_s, u"-N"_s, u""_s, u"-f"_s,
                                                      QString::fromUtf8(key)}),
                  0);
        QFile publicKey(QString::fromUtf8(key) + u".pub"_s);
        ASSERT_TRUE(publicKey.open(QFile::ReadOnly));
        writeScript(host + u"/login"_s,
                    "echo $$ >> '" + path(u"logins"_s).toUtf8() + "'\nPATH='" + path(host).toUtf8() +
                        "':/usr/bin:/bin XDG_CONFIG_HOME='" + configFolder().toUtf8() +
                        "'\nexport PATH XDG_CONFIG_HOME\neval \"$SSH_ORIGINAL_COMMAND\"\n");
        if (!script.isEmpty())
            writeScript(host + u"/portolanctl"_s, script);
        writeFile(u"authorized_keys"_s,
                  "command=\"" + path(host + u"/login"_s).toUtf8() + "\" " + publicKey.readAll(),
                  QFile::Append);
        writeFile(u"ssh_config"_s,
                  "Host " + host.toUtf8() + "\n  HostName 127.0.0.1\n  Port " + QByteArray::number(m_port) +
                      "\n  IdentityFile " + key +
                      "\n  IdentitiesOnly yes\n  StrictHostKeyChecking no\n  LogLevel ERROR\n"
                      "  UserKnownHostsFile /dev/null\n",
                  QFile::Append);
    }

    /// The script of a machine on which the real portolanctl lists the servers in the machine's folder.
    [[nodiscard]] QByteArray real(const QString &host) const
    {
        return "case $1 in\nlist|watch) exec '" + program.toUtf8() + "' \"$@\" --search on-" + host.toUtf8() +
               ";;\n*) exec '" + program.toUtf8() + "' \"$@\";;\nesac\n";
    }
    void addRealHost(const QString &host) { addHost(host, real(host)); }

    [[nodiscard]] TestServer serverOn(const QString &host, const QString &name) const
    {
        const QString where = folderOf(host) + u'/' + name;
        QDir().mkpath(where);
        return TestServer(TestServer::python(answers), where);
    }

    [[nodiscard]] static QStringList linesOf(const QByteArray &text)
    {
        QStringList lines = QString::fromUtf8(text).split(u'\n', Qt::SkipEmptyParts);
        lines.sort();
        return lines;
    }

    [[nodiscard]] PtyProcess::Options onTerminal() const
    {
        return {.columns = 120,
                .rows = 20,
                .environment = {{"XDG_CONFIG_HOME", configFolder().toUtf8()}, {"TERM", "xterm-256color"}}};
    }

    const quint16 m_port = freePort();
    QTemporaryDir m_files;
    QProcess m_sshd;
    const ScopedEnvironment m_path{"PATH", m_files.filePath(u"bin"_s).toUtf8() + ':' + qgetenv("PATH")};
};

TEST_F(Hosts, AreListedSideBySide)
{
    for (const QString &host : {u"web1"_s, u"web2"_s})
        addRealHost(host);
    const TestServer b = serverOn(u"web1"_s, u"b"_s);
    const TestServer a = serverOn(u"web2"_s, u"a"_s);
    const Outcome table = run({u"list"_s, u"--host=web1"_s, u"--host=web2"_s, u"--sort=name"_s});
    EXPECT_EQ(table.status, 0) << table.error.toStdString();
    EXPECT_EQ(table.error, QByteArray());
    const QStringList lines = QString::fromUtf8(table.output).split(u'\n');
    ASSERT_EQ(lines.size(), 4) << table.output.toStdString();
    EXPECT_TRUE(lines[0].startsWith(u"HOST"_s));
    EXPECT_TRUE(lines[1].startsWith(u"web2"_s) && lines[1].contains(a.port())) << lines[1].toStdString();
    EXPECT_TRUE(lines[2].startsWith(u"web1"_s) && lines[2].contains(u"Online 204"_s));

    const Outcome json = run({u"list"_s, u"--json"_s, u"--host=web1"_s, u"--host=web2"_s, u"--sort=name"_s});
    EXPECT_TRUE(JsonSchema().allows(json.output));
    const QJsonArray array = QJsonDocument::fromJson(json.output).array();
    EXPECT_EQ(array[0][u"host"_s], QJsonValue(u"web2"_s));
    EXPECT_EQ(array[1][u"id"_s], QJsonValue(b.id()));
}

TEST_F(Hosts, ThatCannotBeUsedCostALineEach)
{
    addRealHost(u"web1"_s);
    const TestServer server = serverOn(u"web1"_s, u"a"_s);
    addHost(u"bare"_s, "");
    addHost(u"hangs"_s, "exec sleep 600\n");
    addHost(u"floods"_s, "exec cat /dev/zero\n");
    addHost(u"halves"_s, "'" + program.toUtf8() + "' \"$@\" | head -c 100\n");
    addHost(u"fails"_s, "printf 'portolanctl: \\033]0;x\\007 \\342\\200\\256no\\n' >&2\nexit 1\n");
    addHost(u"lies"_s, "echo '[{\"port\": 70000}]'\n");
    writeFile(u"ssh_config"_s, "Host closed\n  HostName 127.0.0.1\n  Port 1\n", QFile::Append);
    const Outcome outcome = run({u"list"_s, u"--json"_s, u"--host=web1"_s, u"--host=bare"_s,
                                 u"--host=hangs"_s, u"--host=floods"_s, u"--host=halves"_s, u"--host=fails"_s,
                                 u"--host=lies"_s, u"--host=closed"_s});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(linesOf(outcome.error),
              (QStringList{u"portolanctl: bare: has no portolanctl"_s,
                           u"portolanctl: closed: connect to host 127.0.0.1 port 1: Connection refused"_s,
                           u"portolanctl: fails: ␛]0;x␇ \ufffdno"_s, u"portolanctl: floods: sends too much"_s,
                           u"portolanctl: halves: sends what is no list of servers"_s,
                           u"portolanctl: hangs: does not answer"_s,
                           u"portolanctl: lies: sends what is no list of servers"_s}));
    const QJsonArray array = QJsonDocument::fromJson(outcome.output).array();
    ASSERT_EQ(array.size(), 1) << outcome.output.toStdString();
    EXPECT_EQ(array[0][u"id"_s], QJsonValue(server.id()));
}

TEST_F(Hosts, ReachTheTerminalWithoutControlCharacters)
{
    addHost(u"evil"_s, uR"raw(cat <<'END'
[{"command":"c","displayName":"a\u001b[31m\u009b1m\u202e\u0007\n","folderPath":"/\u001b]0;x\u0007","framework":"\u001bc",
"health":{"state":"unknown"},"id":"7-80","pid":7,"pinned":true,"port":80,"prettyFolder":null,"stats":null,
"url":"http://localhost:80"}]
END
)raw"_s.toUtf8());
    for (const QStringList &arguments : {QStringList{}, {u"--json"_s}}) {
        const Outcome outcome = run(QStringList{u"list"_s, u"--host=evil"_s} + arguments);
        EXPECT_EQ(outcome.status, 0) << outcome.error.toStdString();
        for (const char *raw : {"\x1b", "\x07", "\u009b", "\u202e"})
            EXPECT_FALSE(outcome.output.contains(raw)) << outcome.output.toStdString();
    }
    PtyProcess list(program, {u"list"_s, u"--host=evil"_s}, onTerminal());
    EXPECT_EQ(list.exitStatus(), 0);
    EXPECT_TRUE(list.output().contains("a␛[31m\ufffd1m"));
    EXPECT_FALSE(list.output().contains("\x1b]0;"));
}

/// portolanctl watch of some machines on a terminal.
class HostsWatch : public Hosts
{
protected:
    void start(const QStringList &hosts)
    {
        QStringList arguments{u"watch"_s};
        for (const QString &host : hosts)
            arguments.append(u"--host="_s + host);
        m_watch.emplace(program, arguments, onTerminal());
    }
    [[nodiscard]] PtyProcess &watch() { return *m_watch; }
    [[nodiscard]] QStringList seen() const
    {
        return seenOnTerminal(m_watch->output(), {.columns = 120, .rows = 20});
    }
    [[nodiscard]] bool awaitLine(const QString &part)
    {
        return m_watch->readUntil([&] { return !seen().filter(part).isEmpty(); });
    }
    [[nodiscard]] bool awaitNoLine(const QString &part)
    {
        return m_watch->readUntil([&] { return seen().filter(part).isEmpty(); });
    }
    [[nodiscard]] bool awaitRow(const TestServer &server, const QString &part)
    {
        return m_watch->readUntil(
            [&] { return !seen().filter(u' ' + server.port() + u' ').filter(part).isEmpty(); });
    }
    void quit()
    {
        m_watch->type("q");
        EXPECT_EQ(m_watch->exitStatus(), 0);
    }

private:
    std::optional<PtyProcess> m_watch;
};

TEST_F(HostsWatch, ShowsHowOldTheRowsAreOfAMachineThatDiedUntilItIsBack)
{
    addRealHost(u"web1"_s);
    // Its connection ends in the middle of its second list, and is restored.
    addHost(u"dies"_s, "'" + program.toUtf8() + "' \"$@\" --search on-dies | { head -n 1; [ -e '" +
                           path(u"well"_s).toUtf8() + "' ] && cat; head -c 50; }\n");
    const TestServer a = serverOn(u"web1"_s, u"a"_s);
    const TestServer b = serverOn(u"dies"_s, u"b"_s);
    start({u"web1"_s, u"dies"_s});
    EXPECT_TRUE(awaitRow(a, u"Online 204"_s));
    EXPECT_TRUE(awaitRow(b, u"Online 204"_s));
    EXPECT_TRUE(awaitRow(b, u"s ago"_s));
    EXPECT_TRUE(awaitLine(u"dies: ended the connection"_s));
    EXPECT_TRUE(awaitRow(a, u"Online 204"_s));
    writeFile(u"well"_s, "");
    EXPECT_TRUE(awaitRow(b, u"Online 204"_s));
    EXPECT_TRUE(awaitNoLine(u"dies: "_s));
    quit();
}

// The machine is reached through a relay, which is stopped: the connection stays open but silent.
TEST_F(HostsWatch, ShowsHowOldTheRowsAreOfAMachineThatHangsUntilItIsBack)
{
    addRealHost(u"web1"_s);
    addRealHost(u"hangs"_s);
    writeScript(u"relay"_s,
                "echo $$ > '" + path(u"pid"_s).toUtf8() + "'\nwhile [ -e '" + path(u"frozen"_s).toUtf8() +
                    "' ]; do sleep 0.1; done\nexec ssh -W 127.0.0.1:" + QByteArray::number(m_port) +
                    " web1\n");
    writeFile(u"ssh_config"_s, "  ProxyCommand '" + path(u"relay"_s).toUtf8() + "'\n", QFile::Append);
    const TestServer a = serverOn(u"web1"_s, u"a"_s);
    const TestServer b = serverOn(u"hangs"_s, u"b"_s);
    start({u"web1"_s, u"hangs"_s});
    EXPECT_TRUE(awaitRow(a, u"Online 204"_s));
    EXPECT_TRUE(awaitRow(b, u"Online 204"_s));

    QFile pid(path(u"pid"_s));
    ASSERT_TRUE(pid.open(QFile::ReadOnly));
    const pid_t relay = pid.readAll().trimmed().toInt();
    ASSERT_GT(relay, 1);
    writeFile(u"frozen"_s, "");
    ASSERT_EQ(kill(relay, SIGSTOP), 0);
    EXPECT_TRUE(awaitRow(b, u"s ago"_s));
    EXPECT_TRUE(awaitLine(u"hangs: "_s));
    const TestServer next = serverOn(u"web1"_s, u"next"_s);
    EXPECT_TRUE(awaitRow(next, u"Online 204"_s)) << "the others go on";
    EXPECT_TRUE(awaitRow(b, u"s ago"_s));

    kill(relay, SIGKILL);
    ASSERT_TRUE(QFile::remove(path(u"frozen"_s)));
    EXPECT_TRUE(awaitRow(b, u"Online 204"_s));
    EXPECT_TRUE(awaitNoLine(u"hangs: "_s));
    quit();
}

TEST_F(HostsWatch, OpensAndCopiesTheAddressOfAForwardedPort)
{
    addRealHost(u"web1"_s);
    FakePrograms programs;
    programs.install(u"xdg-open"_s);
    const ScopedEnvironment withBrowser("PATH", programs.folder().toLocal8Bit() + ':' + qgetenv("PATH"));
    const TestServer server = serverOn(u"web1"_s, u"a"_s);
    start({u"web1"_s});
    ASSERT_TRUE(awaitRow(server, u"Online 204"_s));
    watch().type("o");
    EXPECT_TRUE(awaitLine(u"Opening http://localhost:"_s));
    ASSERT_TRUE(eventually([&] { return programs.wasStarted(u"xdg-open"_s); }));
    const QString address = programs.record(u"xdg-open"_s).arguments.value(0);
    const quint16 port = quint16(QUrl(address).port());
    EXPECT_NE(QString::number(port), server.port()) << "which is taken on this machine";
    EXPECT_TRUE(answerOn(port).startsWith("HTTP/1.0 204"));
    watch().type("c");
    EXPECT_TRUE(awaitLine(u"Copied "_s + address));
    EXPECT_TRUE(watch().output().contains("\x1b]52;c;" + address.toLatin1().toBase64() + '\a'));
    quit();
    EXPECT_TRUE(eventually([&] { return !accepts(port); })) << "it is forwarded no longer";
}

TEST_F(Hosts, AreWatchedByPrograms)
{
    addRealHost(u"web1"_s);
    addHost(u"floods"_s, "exec yes '[]'\n");
    const TestServer server = serverOn(u"web1"_s, u"a"_s);
    QProcess watch;
    prepare(watch);
    watch.start(program, {u"watch"_s, u"--json"_s, u"--host=web1"_s, u"--host=floods"_s});
    QByteArray line;
    const JsonSchema schema;
    while (!line.contains(server.id().toLatin1()) && watch.waitForReadyRead(30'000)) {
        while (watch.canReadLine()) {
            line = watch.readLine();
            EXPECT_TRUE(schema.allows(line)) << line.toStdString();
        }
    }
    EXPECT_TRUE(line.contains("\"host\":\"web1\"")) << line.toStdString();
    EXPECT_TRUE(eventually([&] {
        watch.waitForReadyRead(10);
        return watch.readAllStandardError().contains("portolanctl: floods: sends too much\n");
    }));
    watch.terminate();
    EXPECT_EQ(finished(watch).status, 1);
}

TEST_F(Hosts, AreWaitedFor)
{
    for (const QString &host : {u"web1"_s, u"web2"_s})
        addRealHost(host);
    const TestServer server = serverOn(u"web1"_s, u"a"_s);
    const QStringList both{u"wait"_s, server.port(), u"--host=web1"_s, u"--host=web2"_s};
    const Outcome outcome = run(both);
    EXPECT_EQ(outcome.status, 0) << outcome.error.toStdString();
    EXPECT_EQ(outcome.output + outcome.error, QByteArray());
    const Outcome late = run(both + QStringList{u"1"_s, u"--timeout=2"_s});
    EXPECT_EQ(late.status, 1);
    EXPECT_EQ(linesOf(late.error), (QStringList{u"portolanctl: web1: port 1 does not answer"_s,
                                                u"portolanctl: web2: port 1 does not answer"_s}));
}

TEST_F(Hosts, WaitNoLongerThanTheyAreAsked)
{
    addHost(u"web1"_s,
            "echo $$ > '" + path(u"pid"_s).toUtf8() + "'\nexec '" + program.toUtf8() + "' \"$@\"\n");
    QProcess wait;
    prepare(wait);
    wait.start(program, {u"wait"_s, u"1"_s, u"--host=web1"_s});
    QFile pid(path(u"pid"_s));
    ASSERT_TRUE(eventually([&] { return pid.size() > 0; }) && pid.open(QFile::ReadOnly));
    const pid_t remote = pid.readAll().trimmed().toInt();
    EXPECT_EQ(kill(remote, 0), 0);
    wait.kill();
    wait.waitForFinished();
    EXPECT_TRUE(eventually([&] { return kill(remote, 0) != 0; }));
}

TEST_F(Hosts, StopTheServerThatIsMeant)
{
    for (const QString &host : {u"web1"_s, u"web2"_s})
        addRealHost(host);
    TestServer one = serverOn(u"web1"_s, u"shop-front"_s);
    TestServer two = serverOn(u"web2"_s, u"shop-back"_s);
    const QStringList hosts{u"--host=web1"_s, u"--host=web2"_s};

    const Outcome ambiguous = run(QStringList{u"stop"_s, u"shop"_s} + hosts);
    EXPECT_EQ(ambiguous.status, 1);
    EXPECT_EQ(ambiguous.output, QByteArray());
    const QString error = QString::fromUtf8(ambiguous.error);
    EXPECT_TRUE(error.startsWith(u"portolanctl: 2 servers match 'shop', name one by its id:\n"_s));
    EXPECT_TRUE(error.contains(u"  web1  %1  shop-front  "_s.arg(one.id()))) << error.toStdString();
    EXPECT_TRUE(one.isRunning() && two.isRunning());

    const Outcome outcome = run(QStringList{u"stop"_s, u"shop-b"_s} + hosts);
    EXPECT_EQ(outcome.status, 0) << outcome.error.toStdString();
    const QString who = u"shop-back (process %1, port %2) on web2: "_s.arg(two.pid()).arg(two.port());
    EXPECT_EQ(QString::fromUtf8(outcome.output), who + u"Stopping…\n"_s + who + u"Stopped\n"_s);
    EXPECT_EQ(two.endedBy(), SIGTERM);
    EXPECT_TRUE(one.isRunning());
}

TEST_F(Hosts, OpenThroughAForwardedPortUntilControlC)
{
    addHost(u"web1"_s, "");
    FakePrograms programs;
    programs.install(u"xdg-open"_s);
    const ScopedEnvironment withBrowser("PATH", programs.folder().toLocal8Bit() + ':' + qgetenv("PATH"));
    const TestServer server = serverOn(u"web1"_s, u"a"_s);
    PtyProcess open(program, {u"open"_s, u"--host=web1"_s, server.port()}, onTerminal());
    ASSERT_TRUE(open.readUntil([&] { return open.output().contains("Control-C ends the connection."); }))
        << open.output().toStdString();
    const QUrl url(programs.record(u"xdg-open"_s).arguments.value(0));
    EXPECT_EQ(url.host(), u"localhost"_s);
    EXPECT_NE(QString::number(url.port()), server.port()) << "which is taken on this machine";
    EXPECT_TRUE(answerOn(quint16(url.port())).startsWith("HTTP/1.0 204"));
    open.type("\x03");
    EXPECT_EQ(open.exitStatus(), 0);
    EXPECT_TRUE(eventually([&] { return !accepts(quint16(url.port())); }));
}

TEST_F(Hosts, OpenTakesNoPortThatABrowserReachesElsewhere)
{
    addHost(u"web1"_s, "");
    FakePrograms programs;
    programs.install(u"xdg-open"_s);
    const ScopedEnvironment withBrowser("PATH", programs.folder().toLocal8Bit() + ':' + qgetenv("PATH"));
    QTcpServer other;
    ASSERT_TRUE(other.listen(QHostAddress::LocalHostIPv6));
    PtyProcess open(program, {u"open"_s, u"--host=web1"_s, QString::number(other.serverPort())},
                    onTerminal());
    ASSERT_TRUE(open.readUntil([&] { return open.output().contains("Control-C ends the connection."); }))
        << open.output().toStdString();
    const QUrl url(programs.record(u"xdg-open"_s).arguments.value(0));
    EXPECT_GT(url.port(), 0);
    EXPECT_NE(url.port(), other.serverPort());
}

TEST_F(Hosts, StopNamesTheServerOnceWhenItFails)
{
    const TestServer server = serverOn(u"web1"_s, u"shop"_s);
    const QString who = u"shop (process %1, port %2)"_s.arg(server.pid()).arg(server.port());
    addHost(u"web1"_s, "[ $1 = stop ] && { echo 'portolanctl: " + who.toUtf8() +
                           ": Still runs' >&2; exit 1; }\n" + real(u"web1"_s));
    const Outcome outcome = run({u"stop"_s, u"--host=web1"_s, server.port()});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(QString::fromUtf8(outcome.error), u"portolanctl: "_s + who + u" on web1: Still runs\n"_s);
}

TEST_F(Hosts, OpenSaysWhyNotInALine)
{
    writeFile(u"ssh_config"_s, "Host closed\n  HostName 127.0.0.1\n  Port 1\n", QFile::Append);
    const Outcome outcome = run({u"open"_s, u"--host=closed"_s, u"3000"_s});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, QByteArray());
    EXPECT_EQ(outcome.error, "portolanctl: closed: connect to host 127.0.0.1 port 1: Connection refused\n");
}

TEST_F(Hosts, NeedSsh)
{
    const ScopedEnvironment path("PATH", m_files.path().toUtf8());
    const Outcome outcome = run({u"list"_s, u"--host=web1"_s});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.error, "portolanctl: web1: there is no ssh\n");
}

} // namespace portolan
