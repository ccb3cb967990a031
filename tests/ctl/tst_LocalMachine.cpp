// SPDX-License-Identifier: MIT
#include "Eventually.h"
#include "HomeFolder.h"
#include "LocalMachine.h"
#include "LocalSocket.h"
#include "TestChild.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstring>

namespace portolan {

using namespace Qt::StringLiterals;

/// The servers are children that share a listening socket with this program.
class LocalMachineStop : public testing::Test
{
protected:
    LocalMachineStop()
    {
        QDir::setCurrent(m_folder.path());
        QObject::connect(&m_machine, &Machine::refreshed, &m_machine, [this] { m_hasRefreshed = true; });
    }
    ~LocalMachineStop() override { QDir::setCurrent(m_previousFolder); }

    /// The services that a scan finds of the process: one for each of its ports, at least one.
    QList<ListedService> allScanned(pid_t pid)
    {
        m_hasRefreshed = false;
        m_machine.refresh();
        EXPECT_TRUE(eventually([&] { return m_hasRefreshed; }));
        QList<ListedService> found;
        for (const ListedService &listed : m_machine.services()) {
            if (listed.service.pid == pid)
                found.append(listed);
        }
        EXPECT_FALSE(found.isEmpty());
        return found.isEmpty() ? QList{ListedService()} : found;
    }
    ListedService scanned(pid_t pid) { return allScanned(pid).constFirst(); }

    /// The report of the stop, with "!" before it if the server still runs.
    QString stop(const ListedService &service)
    {
        QString report;
        m_machine.stop(service,
                       [&](const QString &text, bool hasEnded) { report += hasEnded ? text : u'!' + text; });
        EXPECT_EQ(report, QString()) << "it comes later";
        EXPECT_TRUE(eventually([&] { return !report.isEmpty(); }));
        return report;
    }

    /// Requests a refresh, which ends at once if a scan is under way.
    bool isScanning()
    {
        m_hasRefreshed = false;
        m_machine.refresh();
        return m_hasRefreshed;
    }

    LocalMachine &machine() { return m_machine; }

private:
    const QString m_previousFolder = QDir::currentPath();
    const QTemporaryDir m_folder{HomeFolder::path() + u"/portolan-test-XXXXXX"_s};
    const LocalSocket m_socket = LocalSocket::listening("127.0.0.1");
    UserDefaults m_settings{m_folder.filePath(u"settings.json"_s), UserDefaults::Access::ReadOnly};
    bool m_hasRefreshed = false;
    LocalMachine m_machine{m_settings, false};
};

TEST_F(LocalMachineStop, EndsTheProcess)
{
    TestChild child(TestChild::endsOnTerm);
    EXPECT_TRUE(stop(scanned(child.pid())).startsWith(u"Stopped in "_s));
    EXPECT_EQ(child.collect(), SIGTERM);
}

TEST_F(LocalMachineStop, IsOfTheProcessWhicheverOfItsPortsIsMeant)
{
    const LocalSocket second = LocalSocket::listening("127.0.0.1");
    TestChild child(TestChild::endsOnTerm);
    const QList<ListedService> services = allScanned(child.pid());
    ASSERT_EQ(services.size(), 2);
    QStringList reports;
    for (const ListedService &service : services)
        machine().stop(service, [&](const QString &text, bool) { reports += text; });
    EXPECT_TRUE(eventually([&] { return reports.size() == 2; }));
    for (const QString &report : reports)
        EXPECT_TRUE(report.startsWith(u"Stopped in "_s)) << report.toStdString();
    EXPECT_EQ(child.collect(), SIGTERM);
}

TEST_F(LocalMachineStop, IsFollowedByNoScan)
{
    TestChild child(TestChild::endsOnTerm);
    EXPECT_TRUE(stop(scanned(child.pid())).startsWith(u"Stopped in "_s));
    EXPECT_FALSE(isScanning());
}

TEST_F(LocalMachineStop, SaysThatAProcessHadEnded)
{
    TestChild collected(TestChild::endsOnTerm);
    TestChild uncollected(TestChild::endsOnTerm);
    const ListedService one = scanned(collected.pid());
    const ListedService other = scanned(uncollected.pid());
    kill(one.service.pid, SIGTERM);
    collected.collect();
    kill(other.service.pid, SIGTERM);
    siginfo_t ended = {};
    ASSERT_EQ(waitid(P_PID, id_t(other.service.pid), &ended, WEXITED | WNOWAIT), 0);
    EXPECT_EQ(stop(one), u"Had ended"_s);
    EXPECT_EQ(stop(other), u"Had ended"_s);
}

TEST_F(LocalMachineStop, NeverReachesAProcessThatGotTheIdSinceTheScan)
{
    TestChild child(TestChild::endsOnTerm);
    const ListedService server = scanned(child.pid());
    kill(server.service.pid, SIGTERM);
    child.collect();
    const auto newcomer = TestChild::withPidLater(server.service.pid, TestChild::endsOnTerm);
    if (!newcomer)
        GTEST_SKIP() << "choosing a process id needs the right to (clone3 with set_tid): " << strerror(errno);
    EXPECT_EQ(stop(server), u"Had ended"_s);
    (void)scanned(newcomer->pid()); // the next scan knows the newcomer, and the user may still mean the other
    EXPECT_EQ(stop(server), u"Had ended"_s);
    EXPECT_TRUE(newcomer->isAlive());
}

} // namespace portolan
