#include "PortolanctlTest.h"
#include "Recorders.h"
#include "ScopedEnvironment.h"
#include "TestServer.h"

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

const QString listens = uR"(
import socket, time
s = socket.create_server(('127.0.0.1', 0))
print(s.getsockname()[1], flush=True)
time.sleep(600)
)"_s;

} // namespace

class OpenCommand : public PortolanctlTest
{
protected:
    /// Makes the stand-ins all programs that there are.
    [[nodiscard]] ScopedEnvironment onlyRecorders() const
    {
        return {"PATH", m_recorders.folder().toLocal8Bit()};
    }

    TestServer m_server{TestServer::python(listens), folder()};
    Recorders m_recorders;
};

TEST_F(OpenCommand, ShowsTheServerInTheBrowser)
{
    m_recorders.install(u"xdg-open"_s);
    const auto path = onlyRecorders();
    const Outcome outcome = run({u"open"_s, m_server.port()});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "Opening http://localhost:" + m_server.port().toLatin1() + '\n');
    EXPECT_EQ(outcome.error, QByteArray());
    const StartRecord record = m_recorders.record(u"xdg-open"_s);
    EXPECT_EQ(record.arguments, QStringList{u"http://localhost:"_s + m_server.port()});
    EXPECT_NE(record.session, getsid(0));
}

TEST_F(OpenCommand, DoesNotWaitForTheBrowser)
{
    QFile browser(m_recorders.path(u"xdg-open"_s));
    ASSERT_TRUE(browser.open(QFile::WriteOnly));
    browser.write("#!/bin/sh\necho $$ > '" + QFile::encodeName(m_recorders.path(u"pid"_s)) + ".part'\nmv '" +
                  QFile::encodeName(m_recorders.path(u"pid"_s)) + ".part' '" +
                  QFile::encodeName(m_recorders.path(u"pid"_s)) + "'\nexec sleep 600\n");
    browser.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    browser.close();
    const ScopedEnvironment path("PATH", m_recorders.folder().toLocal8Bit() + ':' + qgetenv("PATH"));
    EXPECT_EQ(run({u"open"_s, m_server.port()}).status, 0);

    QFile pid(m_recorders.path(u"pid"_s));
    ASSERT_TRUE(eventually([&] { return pid.exists(); }) && pid.open(QFile::ReadOnly));
    EXPECT_EQ(kill(pid.readAll().trimmed().toInt(), SIGKILL), 0);
}

TEST_F(OpenCommand, SaysWhenThereIsNoServer)
{
    m_recorders.install(u"xdg-open"_s);
    const auto path = onlyRecorders();
    const Outcome outcome = run({u"open"_s, u"1"_s});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, QByteArray());
    EXPECT_EQ(outcome.error, "portolanctl: no server on port 1\n");
    EXPECT_FALSE(m_recorders.wasStarted(u"xdg-open"_s));
}

TEST_F(OpenCommand, SaysWhenNothingCanOpenIt)
{
    const auto path = onlyRecorders();
    const Outcome outcome = run({u"open"_s, m_server.port()});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, QByteArray());
    EXPECT_EQ(outcome.error, "portolanctl: there is no xdg-open to find a browser with\n");
}

TEST_F(OpenCommand, TakesAPortOnly)
{
    for (const QString &operand :
         {u"shop"_s, m_server.id(), u"http://localhost:3000"_s, u"a\x1b]0;b\x07\nc"_s}) {
        const Outcome outcome = run({u"open"_s, operand});
        EXPECT_EQ(outcome.status, 2);
        EXPECT_EQ(outcome.output, QByteArray());
        EXPECT_TRUE(outcome.error.startsWith("portolanctl: '"));
        EXPECT_TRUE(outcome.error.endsWith("' is no port\n"));
        EXPECT_EQ(outcome.error.count('\n'), 1);
        EXPECT_FALSE(outcome.error.contains('\x1b'));
        EXPECT_FALSE(outcome.error.contains('\x07'));
    }
}
