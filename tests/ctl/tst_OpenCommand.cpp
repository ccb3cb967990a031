// SPDX-License-Identifier: MIT
#include "FakePrograms.h"
#include "PortolanctlTest.h"
#include "ScopedEnvironment.h"
#include "TestServer.h"

#include <unistd.h>

namespace portolan {

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
    /// Lets only the fake programs be found.
    [[nodiscard]] ScopedEnvironment onlyRecorders() const
    {
        return {"PATH", m_recorders.folder().toLocal8Bit()};
    }

    /// The same, followed by the system's programs.
    [[nodiscard]] ScopedEnvironment recordersFirst() const
    {
        return {"PATH", m_recorders.folder().toLocal8Bit() + ':' + qgetenv("PATH")};
    }
    /// Installs the shell script `lines` as xdg-open.
    void installScript(QByteArrayView lines) const
    {
        QFile file(m_recorders.path(u"xdg-open"_s));
        file.remove();
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        file.write("#!/bin/sh\n" + lines.toByteArray());
        ASSERT_TRUE(file.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
    }

    TestServer m_server{TestServer::python(listens), folder()};
    FakePrograms m_recorders;
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

TEST_F(OpenCommand, DoesNotWaitForTheBrowserToEnd)
{
    const QByteArray pidFile = QFile::encodeName(m_recorders.path(u"pid"_s));
    installScript("echo $$ > '" + pidFile + "'\nexec sleep 600\n");
    const auto path = recordersFirst();
    const Outcome outcome = run({u"open"_s, m_server.port()});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.error, QByteArray());

    QFile pid(m_recorders.path(u"pid"_s));
    ASSERT_TRUE(eventually([&] { return pid.size() > 0; }) && pid.open(QFile::ReadOnly));
    EXPECT_EQ(kill(pid.readAll().trimmed().toInt(), SIGKILL), 0);
}

TEST_F(OpenCommand, SaysWhenNoBrowserCouldBeStarted)
{
    for (const QByteArrayView script : {"exit 3\n", "kill -9 $$\n"}) {
        installScript(script);
        const auto path = recordersFirst();
        const Outcome outcome = run({u"open"_s, m_server.port()});
        const QByteArray address = "http://localhost:" + m_server.port().toLatin1() + '\n';
        EXPECT_EQ(outcome.status, 1) << script.data();
        EXPECT_EQ(outcome.output, "Opening " + address);
        EXPECT_EQ(outcome.error, "portolanctl: xdg-open could not open " + address);
    }
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

} // namespace portolan
