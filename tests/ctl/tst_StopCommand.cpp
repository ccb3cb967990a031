// SPDX-License-Identifier: MIT
#include "Eventually.h"
#include "PortolanctlTest.h"
#include "TestServer.h"

#include <QRegularExpression>
#include <QStandardPaths>

#include <csignal>

#include <unistd.h>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

const QString listens = uR"(
import os, signal, socket, time
def listen():
    return socket.create_server(('127.0.0.1', 0))
def say(*numbers):
    print(*numbers, flush=True)
s = listen()
port = s.getsockname()[1]
)"_s;

const QString obedient = listens + uR"(
say(port)
time.sleep(600)
)"_s;

const QString stubborn = listens + uR"(
signal.signal(signal.SIGTERM, signal.SIG_IGN)
say(port)
time.sleep(600)
)"_s;

// Two processes that accept from the same socket.
const QString shared = listens + uR"(
parent = os.getpid()
child = os.fork()
if child:
    say(port, child)
    os.waitpid(child, 0)
    time.sleep(600)
while os.getppid() == parent:
    time.sleep(0.05)
)"_s;

// Prints each SIGTERM that it gets, and ends slowly.
const QString slowOnTwoPorts = listens + uR"(
other = listen()
signal.pthread_sigmask(signal.SIG_BLOCK, [signal.SIGTERM])
say(port, other.getsockname()[1])
signal.sigwait([signal.SIGTERM])
print('told')
if signal.sigtimedwait([signal.SIGTERM], 0.3):
    print('told again')
)"_s;

const auto stubbornNode = uR"(
process.on('SIGTERM', () => {});
const server = require('http').createServer((request, answer) => answer.end());
server.listen(0, '127.0.0.1', () => console.log(server.address().port));
)"_s;

QString described(const TestServer &server)
{
    return u"shop (process %1, port %2)"_s.arg(server.pid()).arg(server.port());
}

/// Whether `output` says that `server` was stopped, and that it took `least` seconds or more.
bool saysStopped(const QByteArray &output, const TestServer &server, double least)
{
    const QRegularExpression report(u"^%1: Stopping…\n%1: Stopped in (\\d+\\.\\d) s\n$"_s.arg(
        QRegularExpression::escape(described(server))));
    const auto match = report.match(QString::fromUtf8(output));
    return match.hasMatch() && match.captured(1).toDouble() >= least;
}

} // namespace

using StopCommand = PortolanctlTest;

TEST_F(StopCommand, EndsAServerAndSaysSo)
{
    TestServer server(TestServer::python(obedient), folder());
    const Outcome outcome = run({u"stop"_s, server.port()});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.error, QByteArray());
    EXPECT_TRUE(saysStopped(outcome.output, server, 0)) << outcome.output.toStdString();
    EXPECT_EQ(server.endedBy(), SIGTERM);
}

TEST_F(StopCommand, WaitsUntilAServerThatDoesNotListenIsKilled)
{
    TestServer server(TestServer::python(stubborn), folder());
    const Outcome outcome = run({u"stop"_s, server.id()});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.error, QByteArray());
    EXPECT_TRUE(saysStopped(outcome.output, server, 1.5)) << outcome.output.toStdString();
    EXPECT_EQ(server.endedBy(), SIGKILL);
}

TEST_F(StopCommand, KillsAStubbornNode)
{
    if (QStandardPaths::findExecutable(u"node"_s).isEmpty())
        GTEST_SKIP() << "node is not installed";
    TestServer server({u"node"_s, u"-e"_s, stubbornNode}, folder());
    const Outcome outcome = run({u"stop"_s, server.port()});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(saysStopped(outcome.output, server, 1.5)) << outcome.output.toStdString();
    EXPECT_EQ(server.endedBy(), SIGKILL);
}

TEST_F(StopCommand, AsksWhichOfTheProcessesOnAPortIsMeant)
{
    TestServer server(TestServer::python(shared), folder());
    const QString child = QString::number(server.number(1));
    const Outcome outcome = run({u"stop"_s, server.port()});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, QByteArray());
    const QStringList lines = QString::fromUtf8(outcome.error).split(u'\n');
    ASSERT_EQ(lines.size(), 4) << outcome.error.toStdString();
    EXPECT_EQ(lines[0],
              u"portolanctl: 2 processes listen on port %1, name one by its id:"_s.arg(server.port()));
    const QString where = u"  shop  "_s + HomeFolder::abbreviated(folder(), HomeFolder::paths());
    EXPECT_TRUE(lines.contains(u"  %1%2"_s.arg(server.id(), where))) << outcome.error.toStdString();
    EXPECT_TRUE(lines.contains(u"  %1-%2%3"_s.arg(child, server.port(), where)));

    const Outcome again = run({u"stop"_s, u"%1-%2"_s.arg(child, server.port())});
    EXPECT_EQ(again.status, 0);
    EXPECT_TRUE(eventually([&] { return kill(server.number(1), 0) == -1; })); // once its parent has reaped it
    EXPECT_TRUE(server.isRunning());
}

TEST_F(StopCommand, FindsNoServerByAnIdWhoseProcessIsGone)
{
    TestServer gone(TestServer::python(obedient), folder());
    const QString id = gone.id();
    kill(pid_t(gone.pid()), SIGKILL);
    EXPECT_EQ(gone.endedBy(), SIGKILL);
    const Outcome outcome = run({u"stop"_s, id});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, QByteArray());
    EXPECT_EQ(outcome.error, "portolanctl: no server has the id " + id.toLatin1() + '\n');
}

TEST_F(StopCommand, TakesTheWholeIdSeriously)
{
    TestServer server(TestServer::python(obedient), folder());
    TestServer other(TestServer::python(obedient), folder());
    for (const QString &id : {u"%1-%2"_s.arg(server.pid()).arg(other.port()), u"1-%1"_s.arg(server.port())}) {
        EXPECT_EQ(run({u"stop"_s, id}).status, 1) << id.toStdString();
        EXPECT_TRUE(server.isRunning() && other.isRunning());
    }
}

TEST_F(StopCommand, SaysWhenThereIsNoServerAndStopsTheOthers)
{
    TestServer one(TestServer::python(obedient), folder());
    TestServer two(TestServer::python(stubborn), folder());
    const Outcome outcome = run({u"stop"_s, two.port(), u"1"_s, one.id()});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.error, "portolanctl: no server on port 1\n");
    const QString output = QString::fromUtf8(outcome.output);
    EXPECT_LT(output.indexOf(described(one) + u": Stopped"_s),
              output.indexOf(described(two) + u": Stopped"_s));
    EXPECT_EQ(one.endedBy(), SIGTERM);
    EXPECT_EQ(two.endedBy(), SIGKILL);
}

TEST_F(StopCommand, TellsAProcessOnce)
{
    TestServer server(TestServer::python(slowOnTwoPorts), folder());
    const QString other = QString::number(server.number(1));
    const Outcome outcome = run({u"stop"_s, server.port(), server.id(), other});
    EXPECT_EQ(outcome.status, 0) << outcome.error.toStdString();
    EXPECT_EQ(outcome.output.count(": Stopping…"), 2);
    EXPECT_EQ(outcome.output.count(": Stopped in "), 2);
    EXPECT_EQ(server.endedBy(), 0);
    EXPECT_EQ(server.output(), "told\n");
}

TEST_F(StopCommand, DoesNothingIfAnOperandMakesNoSense)
{
    TestServer server(TestServer::python(obedient), folder());
    for (const QString &operand : {u"0"_s, u"70000"_s, u"12-"_s}) {
        const Outcome outcome = run({u"stop"_s, server.port(), operand});
        EXPECT_EQ(outcome.status, 2);
        EXPECT_EQ(outcome.output, QByteArray());
        EXPECT_TRUE(outcome.error.startsWith("portolanctl: '"));
        EXPECT_TRUE(outcome.error.endsWith("' is neither a port, an id such as 4242-3000 nor a name\n"));
        EXPECT_EQ(outcome.error.count('\n'), 1);
    }
    EXPECT_TRUE(server.isRunning());
}

TEST_F(StopCommand, FindsAServerByItsNameOrTheStartOfIt)
{
    for (const QString &name : {u"Front-Of-Shop"_s, u"front-of"_s}) {
        ASSERT_TRUE(QDir(folder()).mkpath(u"front-of-shop"_s));
        TestServer server(TestServer::python(obedient), folder() + u"/front-of-shop"_s);
        TestServer other(TestServer::python(obedient), folder());
        const Outcome outcome = run({u"stop"_s, name});
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.error, QByteArray());
        EXPECT_EQ(server.endedBy(), SIGTERM);
        EXPECT_TRUE(other.isRunning());
    }
}

TEST_F(StopCommand, StopsNothingWhereANameIsAmbiguous)
{
    for (const char *name : {"twin-a", "twin-b"})
        ASSERT_TRUE(QDir(folder()).mkdir(QString::fromLatin1(name)));
    TestServer a(TestServer::python(obedient), folder() + u"/twin-a"_s);
    TestServer b(TestServer::python(obedient), folder() + u"/twin-b"_s);
    TestServer other(TestServer::python(obedient), folder());
    const Outcome outcome = run({u"stop"_s, other.port(), u"twin"_s});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, QByteArray());
    const QString error = QString::fromUtf8(outcome.error);
    EXPECT_TRUE(error.startsWith(u"portolanctl: 2 servers match 'twin', name one by its id:\n"_s));
    EXPECT_TRUE(error.contains(u"  %1  twin-a  "_s.arg(a.id())) &&
                error.contains(u"  %1  twin-b  "_s.arg(b.id())));
    EXPECT_TRUE(a.isRunning() && b.isRunning() && other.isRunning());
}

TEST_F(StopCommand, SaysWhenNoServerIsCalledSo)
{
    const Outcome outcome = run({u"stop"_s, u"a\x1b[31m\x07\nb"_s});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(QString::fromUtf8(outcome.error), u"portolanctl: no server is called 'a␛[31m␇␊b'\n"_s);
}

TEST_F(StopCommand, WritesNothingRawThatAFolderIsCalled)
{
    const QString evil = folder() + u"/evil\x1b[31m\x07\u009b1m\n\u202e"_s;
    ASSERT_TRUE(QDir().mkdir(evil));
    TestServer server(TestServer::python(shared), evil);
    for (const QString &operand : {server.port(), server.id()}) {
        const Outcome outcome = run({u"stop"_s, operand});
        for (const QByteArray &text : {outcome.output, outcome.error}) {
            for (const char *raw : {"\x1b", "\x07", "\u009b", "\u202e"})
                EXPECT_FALSE(text.contains(raw)) << text.toStdString();
        }
        EXPECT_EQ(outcome.output.count('\n') + outcome.error.count('\n'), operand == server.port() ? 3 : 2);
    }
}

TEST_F(StopCommand, TellsTheNameAsItIs)
{
    const QString odd = folder() + u"/100%1 %2 %3"_s;
    ASSERT_TRUE(QDir().mkdir(odd));
    TestServer server(TestServer::python(obedient), odd);
    const QString output = QString::fromUtf8(run({u"stop"_s, server.port()}).output);
    EXPECT_EQ(output.count(u"100%1 %2 %3 (process "_s + QString::number(server.pid())), 2)
        << output.toStdString();
}

TEST_F(StopCommand, GoesThroughWithItThoughNobodyReads)
{
    TestServer server(TestServer::python(stubborn), folder());
    const Outcome outcome = runInShell(u"\"$1\" stop %1 | :"_s.arg(server.port()));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(server.endedBy(), SIGKILL);
}

TEST_F(StopCommand, SaysWhatTheUserMayNotStop)
{
    const QStringList nobody{u"setpriv"_s, u"--reuid=65534"_s, u"--regid=65534"_s, u"--clear-groups"_s};
    // The capability to signal other users' processes.
    const QString unarmed = u"exec setpriv --bounding-set=-kill --inh-caps=-kill \"$1\" stop %1"_s;
    if (getuid() != 0)
        GTEST_SKIP() << "only root sees servers that it may not stop";
    TestServer server(nobody + TestServer::python(obedient), QDir::rootPath());
    const Outcome outcome = runInShell(unarmed.arg(server.port()));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(outcome.error.endsWith(": Belongs to another user\n")) << outcome.error.toStdString();
    EXPECT_TRUE(server.isRunning());
}

} // namespace portolan
