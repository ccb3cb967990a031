// SPDX-License-Identifier: MIT
// The panel's Stop with real sockets, scans by both process sources, processes and signals.
#include "Eventually.h"
#include "FolderReader.h"
#include "KernelSource.h"
#include "LocalSocket.h"
#include "PortScanner.h"
#include "ProcessHandle.h"
#include "ServiceActions.h"
#include "ServiceStore.h"
#include "Termination.h"
#include "TestChild.h"
#include "ToolSource.h"
#include "UserDefaults.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <memory>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

struct SourceRow
{
    const char *name;
    std::function<std::unique_ptr<ProcessSource>()> make;
};

class StopByThePanel : public testing::TestWithParam<SourceRow>
{
protected:
    /// Every server counts, whatever its name and folder.
    ScanResult scan()
    {
        return PortScanner::scan(*m_source, m_files, {.ports = {{m_port}}, .homes = {u"/"_s}});
    }

    bool refresh()
    {
        m_store.refresh();
        return eventually([this] { return !m_store.isScanning(); });
    }

    /// A child that alone holds a listening socket.
    TestChild startServer()
    {
        const LocalSocket socket = LocalSocket::listening("127.0.0.1");
        m_port = socket.port();
        return TestChild(TestChild::endsOnTerm);
    }

    QTemporaryDir m_folder;
    UserDefaults m_defaults{m_folder.filePath(u"settings.json"_s)};
    std::unique_ptr<ProcessSource> m_source = GetParam().make();
    FolderReader m_files;
    qint64 m_port = 0;
    ServiceStore m_store{m_defaults, [this](const std::stop_token &) { return scan(); },
                         [](qint64) { return QtFuture::makeReadyFuture(Health::unreachable()); }};
    ServiceActions m_actions{[this](const Service &service) { return m_store.identityOf(service); }};
};

} // namespace

TEST_P(StopByThePanel, EndsTheServer)
{
    TestChild server = startServer();
    ASSERT_TRUE(refresh());
    ASSERT_EQ(m_store.serviceCount(), 1);
    m_actions.stop(m_store.services().front());
    EXPECT_EQ(server.collect(), SIGTERM);
    ASSERT_TRUE(refresh());
    EXPECT_EQ(m_store.serviceCount(), 0);
}

TEST_P(StopByThePanel, SignalsNobodyWhenThePidHasGoneToAnotherProcess)
{
    TestChild server = startServer();
    ASSERT_TRUE(refresh());
    ASSERT_EQ(m_store.serviceCount(), 1);
    const Service listed = m_store.services().front();
    ASSERT_EQ(listed.pid, server.pid());
    kill(server.pid(), SIGKILL);
    server.collect();
    const auto stranger = TestChild::withPidLater(listed.pid, TestChild::endsOnTerm);
    if (!stranger)
        GTEST_SKIP() << "choosing a process id needs the right to (clone3 with set_tid): " << strerror(errno);

    m_actions.stop(listed);
    EXPECT_TRUE(stranger->isAlive());
    ASSERT_TRUE(refresh());
    EXPECT_EQ(m_store.serviceCount(), 0);
    // A process that is stopped later is killed later: by then the other process would have been killed.
    TestChild last(TestChild::ignoresTerm);
    Termination::start(std::make_shared<ProcessHandle>(last.pid()), &m_actions);
    ASSERT_TRUE(eventually([&] { return !last.isAlive(); }));
    EXPECT_EQ(last.collect(), SIGKILL);
    EXPECT_TRUE(stranger->isAlive());
}

INSTANTIATE_TEST_SUITE_P(Sources, StopByThePanel,
                         testing::Values(SourceRow{"kernel", [] { return std::make_unique<KernelSource>(); }},
                                         SourceRow{"tools", [] { return std::make_unique<ToolSource>(); }}),
                         [](const auto &row) { return row.param.name; });

} // namespace portolan
