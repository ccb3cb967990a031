// SPDX-License-Identifier: MIT
#include "Eventually.h"
#include "PortolanctlTest.h"
#include "PtyProcess.h"
#include "ScriptedServer.h"
#include "TerminalEmulator.h"

#include <QTcpServer>
#include <QTcpSocket>

#include <csignal>

namespace portolan {

using namespace Qt::StringLiterals;

class WaitCommand : public PortolanctlTest
{
protected:
    /// A port on which nothing listens while this object lives.
    struct SilentPort
    {
        SilentPort() { EXPECT_TRUE(socket.bind(QHostAddress::LocalHost)); }
        [[nodiscard]] QString text() const { return QString::number(socket.localPort()); }
        QTcpSocket socket;
    };

    void start(QProcess &wait, const QStringList &arguments) const
    {
        prepare(wait);
        wait.start(program, QStringList{u"wait"_s} + arguments);
        ASSERT_TRUE(wait.waitForStarted());
    }

    [[nodiscard]] static QString portOf(const ScriptedServer &server)
    {
        return QString::number(server.port());
    }

    const ScriptedServer::Script m_fails =
        ScriptedServer::answers("HTTP/1.1 500 No\r\nContent-Length: 0\r\n\r\n");
};

TEST_F(WaitCommand, ReturnsAtOnceWhereAllPortsAnswerWhateverTheStatus)
{
    const ScriptedServer one(m_fails);
    const ScriptedServer other(ScriptedServer::answers("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n"));
    const Outcome outcome = run({u"wait"_s, portOf(one), portOf(other), portOf(one)});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output + outcome.error, QByteArray());
}

TEST_F(WaitCommand, ReturnsAsSoonAsTheLastPortAnswers)
{
    const ScriptedServer one(m_fails);
    quint16 port = 0;
    {
        QTcpServer unused;
        ASSERT_TRUE(unused.listen(QHostAddress::LocalHost));
        port = unused.serverPort();
    }
    QProcess wait;
    start(wait, {portOf(one), QString::number(port)});
    ASSERT_TRUE(eventually([&] { return one.connections() > 0; }));
    EXPECT_FALSE(wait.waitForFinished(500));
    EXPECT_EQ(one.connections(), 1) << "a port that has answered is not asked again";
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost, port));
    QObject::connect(&server, &QTcpServer::newConnection, &server, [&] {
        QTcpSocket *socket = server.nextPendingConnection();
        QObject::connect(socket, &QTcpSocket::readyRead, socket,
                         [socket] { socket->write("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n"); });
    });
    EXPECT_TRUE(eventually([&] {
        QCoreApplication::processEvents();
        return wait.state() == QProcess::NotRunning;
    }));
    EXPECT_EQ(wait.exitCode(), 0);
}

TEST_F(WaitCommand, SaysAtTheTimeoutWhichPortsDoNotAnswer)
{
    const ScriptedServer answers(m_fails);
    const SilentPort silent;
    const SilentPort other;
    const Outcome one = run({u"wait"_s, u"--timeout=2"_s, portOf(answers), silent.text()});
    EXPECT_EQ(one.status, 1);
    EXPECT_EQ(one.output, QByteArray());
    EXPECT_EQ(QString::fromUtf8(one.error), u"portolanctl: port %1 does not answer\n"_s.arg(silent.text()));
    const Outcome two = run({u"wait"_s, silent.text(), other.text(), u"--timeout"_s, u"0"_s});
    EXPECT_EQ(two.status, 1);
    EXPECT_EQ(QString::fromUtf8(two.error),
              u"portolanctl: ports %1 and %2 do not answer\n"_s.arg(silent.text(), other.text()));
}

TEST_F(WaitCommand, ProbesAgainAndAgain)
{
    const ScriptedServer refuses([](ScriptedServer::Connection &) {}); // closes without an answer
    QProcess wait;
    start(wait, {portOf(refuses)});
    EXPECT_TRUE(eventually([&] { return refuses.connections() >= 6; }));
    EXPECT_EQ(wait.state(), QProcess::Running);
    wait.kill();
    wait.waitForFinished();
}

TEST_F(WaitCommand, ShowsOnATerminalWhatItWaitsForAndLeavesNoTrace)
{
    const SilentPort silent;
    PtyProcess wait(program, {u"wait"_s, silent.text()}, {.environment = {{"TERM", "xterm"}}});
    EXPECT_TRUE(wait.readUntil([&] {
        return seenOnTerminal(wait.output()) == QStringList{u"Waiting for port %1…"_s.arg(silent.text())};
    }));
    wait.type("\x03");
    EXPECT_EQ(wait.endSignal(), SIGINT) << "a shell's && needs that";
    EXPECT_EQ(seenOnTerminal(wait.output()), QStringList());
}

TEST_F(WaitCommand, PutsItsErrorInThePlaceOfWhatItWaitsFor)
{
    const SilentPort silent;
    PtyProcess wait(program, {u"wait"_s, silent.text(), u"--timeout"_s, u"0.5"_s},
                    {.environment = {{"TERM", "xterm"}}});
    EXPECT_EQ(wait.exitStatus(), 1);
    EXPECT_TRUE(wait.output().contains("Waiting for port"));
    EXPECT_EQ(seenOnTerminal(wait.output()),
              QStringList{u"portolanctl: port %1 does not answer"_s.arg(silent.text())});
}

TEST_F(WaitCommand, EndsWhenNobodyIsLeftToHearOfIt)
{
    const SilentPort silent;
    const Outcome outcome = runInShell(u"{ \"$1\" wait %1; echo $? >&2; } | true"_s.arg(silent.text()));
    EXPECT_EQ(outcome.error, "141\n");
}

} // namespace portolan
