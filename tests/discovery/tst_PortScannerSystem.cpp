// SPDX-License-Identifier: MIT
// The scan of real listening sockets, by both process sources.
#include "FileDescriptor.h"
#include "FolderReader.h"
#include "HungMount.h"
#include "KernelSource.h"
#include "PortScanner.h"
#include "Printers.h"
#include "ProcessFacts.h"
#include "ToolSource.h"

#include <gmock/gmock.h>

#include <csignal>
#include <cstring>
#include <tuple>

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <netinet/in.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace portolan {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

enum class Stack { both, oneFamily };

sockaddr_storage addressOf(const char *host, in_port_t port)
{
    sockaddr_storage storage{};
    auto *const v4 = reinterpret_cast<sockaddr_in *>(&storage);
    auto *const v6 = reinterpret_cast<sockaddr_in6 *>(&storage);
    if (inet_pton(AF_INET, host, &v4->sin_addr) == 1) {
        v4->sin_family = AF_INET;
        v4->sin_port = htons(port);
    } else if (inet_pton(AF_INET6, host, &v6->sin6_addr) == 1) {
        v6->sin6_family = AF_INET6;
        v6->sin6_port = htons(port);
    }
    return storage;
}

/// A socket that listens on `host`, by default on a port of the kernel's choice.
class Listener
{
public:
    explicit Listener(const char *host, Stack stack = Stack::oneFamily, in_port_t port = 0)
    {
        const sockaddr_storage address = addressOf(host, port);
        m_socket = FileDescriptor(socket(address.ss_family, SOCK_STREAM | SOCK_CLOEXEC, 0));
        const int yes = 1;
        const int v6Only = stack == Stack::oneFamily;
        setsockopt(m_socket.get(), SOL_SOCKET, SO_REUSEPORT, &yes, sizeof yes);
        if (address.ss_family == AF_INET6)
            setsockopt(m_socket.get(), IPPROTO_IPV6, IPV6_V6ONLY, &v6Only, sizeof v6Only);
        const socklen_t size = address.ss_family == AF_INET6 ? sizeof(sockaddr_in6) : sizeof(sockaddr_in);
        if (bind(m_socket.get(), reinterpret_cast<const sockaddr *>(&address), size) != 0 ||
            listen(m_socket.get(), 8) != 0)
            m_socket.close();
    }

    [[nodiscard]] bool isOpen() const { return m_socket.isOpen(); }
    [[nodiscard]] in_port_t port() const
    {
        sockaddr_storage address{};
        socklen_t size = sizeof address;
        getsockname(m_socket.get(), reinterpret_cast<sockaddr *>(&address), &size);
        // The port is at the same place in both families.
        return ntohs(reinterpret_cast<const sockaddr_in *>(&address)->sin_port);
    }

private:
    FileDescriptor m_socket;
};

/// A process that only holds the descriptors that it inherited or was told to open.
class ForkedServer
{
public:
    ForkedServer(const char *command, const char *host, in_port_t port)
    {
        int ready[2];
        if (pipe(ready) != 0)
            return;
        m_pid = fork();
        if (m_pid == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            prctl(PR_SET_NAME, command);
            const Listener listener(host, Stack::oneFamily, port);
            const char told = listener.isOpen() ? '1' : '0';
            if (write(ready[1], &told, 1) != 1)
                _exit(1);
            for (;;)
                pause();
        }
        char told = '0';
        m_listens = read(ready[0], &told, 1) == 1 && told == '1';
        close(ready[0]);
        close(ready[1]);
    }
    ~ForkedServer()
    {
        kill(m_pid, SIGKILL);
        waitpid(m_pid, nullptr, 0);
    }
    Q_DISABLE_COPY_MOVE(ForkedServer)

    [[nodiscard]] pid_t pid() const { return m_pid; }
    [[nodiscard]] bool listens() const { return m_listens; }

private:
    pid_t m_pid = -1;
    bool m_listens = false;
};

enum class Source { kernel, tools };

std::unique_ptr<ProcessSource> make(Source source, std::chrono::milliseconds deadline = 10min)
{
    if (source == Source::kernel)
        return std::make_unique<KernelSource>();
    ToolSource::Options options;
    options.listingDeadline = 10min;
    options.deadline = deadline;
    return std::make_unique<ToolSource>(options);
}

/// With the tests' working folder as the home folder, since the name of a test program is not accepted by
/// itself.
QList<Service> scan(ProcessSource &source, const QString &home = QDir::currentPath())
{
    FolderReader files;
    return PortScanner::scan(source, files, {.homes = {home}}).services;
}

QList<Service> scan(Source source)
{
    return scan(*make(source));
}

QList<Service> ownServices(const QList<Service> &services)
{
    QList<Service> own;
    for (const Service &service : services) {
        if (service.pid == getpid())
            own.append(service);
    }
    return own;
}

QList<qint64> ownPorts(const QList<Service> &services)
{
    QList<qint64> ports;
    for (const Service &service : ownServices(services))
        ports.append(service.port);
    return ports;
}

/// An address of this machine that is not its loopback; empty if there is none.
std::string interfaceAddress()
{
    ifaddrs *all = nullptr;
    if (getifaddrs(&all) != 0)
        return {};
    std::string found;
    for (const ifaddrs *entry = all; entry && found.empty(); entry = entry->ifa_next) {
        if (!entry->ifa_addr || entry->ifa_addr->sa_family != AF_INET)
            continue;
        char text[INET_ADDRSTRLEN] = {};
        inet_ntop(AF_INET, &reinterpret_cast<const sockaddr_in *>(entry->ifa_addr)->sin_addr, text,
                  sizeof text);
        if (std::strncmp(text, "127.", 4) != 0)
            found = text;
    }
    freeifaddrs(all);
    return found;
}

} // namespace

struct HostCase
{
    const char *name;
    const char *host;
    Stack stack;
    bool listed;
};

class RealListener : public testing::TestWithParam<std::tuple<HostCase, Source>>
{};

class RealScan : public testing::TestWithParam<Source>
{};

TEST_P(RealListener, IsListedIfItsHostIsLocalOrAny)
{
    const auto &[host, source] = GetParam();
    const Listener listener(host.host, host.stack);
    if (!listener.isOpen())
        GTEST_SKIP() << host.host << " is not to be had here";
    const QList<qint64> ports = ownPorts(scan(source));
    EXPECT_EQ(ports.count(listener.port()), host.listed ? 1 : 0);
}

static std::string nameOf(Source source)
{
    return source == Source::kernel ? "kernel" : "tools";
}

INSTANTIATE_TEST_SUITE_P(
    Hosts, RealListener,
    testing::Combine(testing::Values(HostCase{"loopback", "127.0.0.1", Stack::oneFamily, true},
                                     HostCase{"loopback6", "::1", Stack::oneFamily, true},
                                     HostCase{"any", "0.0.0.0", Stack::oneFamily, true},
                                     HostCase{"any6", "::", Stack::oneFamily, true},
                                     HostCase{"dual", "::", Stack::both, true},
                                     HostCase{"otherLoopback", "127.0.0.2", Stack::oneFamily, false}),
                     testing::Values(Source::kernel, Source::tools)),
    [](const auto &row) { return std::get<0>(row.param).name + ('_' + nameOf(std::get<1>(row.param))); });

INSTANTIATE_TEST_SUITE_P(Sources, RealScan, testing::Values(Source::kernel, Source::tools),
                         [](const auto &row) { return nameOf(row.param); });

TEST_P(RealScan, AConcreteInterfaceIsNotListed)
{
    const std::string address = interfaceAddress();
    if (address.empty())
        GTEST_SKIP() << "this machine has no interface but its loopback";
    const Listener listener(address.c_str());
    ASSERT_TRUE(listener.isOpen());
    EXPECT_FALSE(ownPorts(scan(GetParam())).contains(listener.port()));
}

TEST_P(RealScan, FillsThisProcess)
{
    const Listener listener("127.0.0.1");
    const QList<Service> own = ownServices(scan(GetParam()));
    ASSERT_EQ(own.size(), 1);
    EXPECT_EQ(own[0].port, listener.port());
    EXPECT_EQ(own[0].folderPath, QDir::currentPath());
    EXPECT_EQ(own[0].displayName, QDir::current().dirName());
    EXPECT_EQ(own[0].health, Health::unknown());
    ASSERT_TRUE(own[0].stats);
    EXPECT_GT(own[0].stats->memoryMB, 1);
    EXPECT_TRUE(QString::fromUtf8(contentsOf(u"/proc/self/comm"_s)).startsWith(own[0].command));
}

TEST_P(RealScan, BothFamiliesOnOnePortAreOneService)
{
    const Listener v4("0.0.0.0");
    const Listener v6("::", Stack::oneFamily, v4.port());
    if (!v6.isOpen())
        GTEST_SKIP() << "no IPv6 here";
    EXPECT_EQ(ownPorts(scan(GetParam())), QList<qint64>{v4.port()});
}

TEST_P(RealScan, TwoProcessesOnOnePortAreTwoServices)
{
    FolderReader files; // first: its process would have the listener too, for a moment
    const Listener own("127.0.0.1");
    const in_port_t port = own.port();
    const ForkedServer other("node", "127.0.0.1", port);
    ASSERT_TRUE(other.listens());
    const std::unique_ptr<ProcessSource> source = make(GetParam());
    QList<qint32> pids;
    for (const Service &service :
         PortScanner::scan(*source, files, {.homes = {QDir::currentPath()}}).services) {
        if (service.port == port)
            pids.append(service.pid);
    }
    EXPECT_THAT(pids, testing::UnorderedElementsAre(getpid(), other.pid()));
}

TEST_P(RealScan, ADevelopersCommandIsListedWhateverItsFolder)
{
    const Listener own("127.0.0.1");
    const ForkedServer node("node", "::1", 0);
    if (!node.listens())
        GTEST_SKIP() << "no IPv6 here";
    const QList<Service> services = scan(*make(GetParam()), u"/fake-home/ada"_s);
    EXPECT_THAT(ownServices(services), testing::IsEmpty());
    EXPECT_TRUE(std::ranges::any_of(services, [&](const Service &service) {
        return service.pid == node.pid() && service.command == u"node"_s &&
               service.folderPath == QDir::currentPath();
    }));
}

TEST(SystemScan, AServerWhoseNameWasCutInsideABracketIsListed)
{
    const ForkedServer next("next-server (v15.3.2)", "127.0.0.1", 0);
    ASSERT_TRUE(next.listens());
    const QList<Service> services = scan(Source::kernel);
    const auto found = std::ranges::find(services, next.pid(), &Service::pid);
    ASSERT_NE(found, services.end());
    EXPECT_EQ(found->command, u"next-server (v1"_s);
    EXPECT_EQ(found->framework, Framework::node);
    EXPECT_TRUE(found->stats);
}

TEST_P(RealScan, WhatEndedIsGone)
{
    in_port_t port = 0;
    {
        const Listener listener("127.0.0.1");
        port = listener.port();
        EXPECT_TRUE(ownPorts(scan(GetParam())).contains(port));
    }
    EXPECT_FALSE(ownPorts(scan(GetParam())).contains(port));
}

TEST_P(RealScan, SaysWhichProcessesItSaw)
{
    const ForkedServer node("node", "127.0.0.1", 0);
    ASSERT_TRUE(node.listens());
    const auto source = make(GetParam());
    FolderReader files;
    const ScanResult found = PortScanner::scan(*source, files);
    EXPECT_TRUE(std::ranges::is_sorted(found.services, {}, &Service::port));
    EXPECT_TRUE(std::ranges::any_of(found.services,
                                    [&](const Service &service) { return service.pid == node.pid(); }));
    ASSERT_TRUE(found.identities.contains(node.pid()));
    EXPECT_EQ(found.identities[node.pid()], ProcessIdentity::of(node.pid()));
}

TEST(SystemScan, OfCertainPortsFindsNoOthers)
{
    const ForkedServer node("node", "127.0.0.1", 0);
    const ForkedServer other("node", "127.0.0.1", 0);
    KernelSource source;
    FolderReader files;
    qint64 port = 0;
    for (const Service &service : PortScanner::scan(source, files).services)
        port = service.pid == node.pid() ? service.port : port;
    const QList<Service> services = PortScanner::scan(source, files, {.ports = {{port}}}).services;
    ASSERT_EQ(services.size(), 1);
    EXPECT_EQ(services[0].pid, node.pid());
}

TEST_P(RealScan, WithADeadMountTheListComesAllTheSame)
{
    const std::unique_ptr<HungMount> mount = HungMount::create();
    if (!mount)
        GTEST_SKIP() << "mounting is not permitted here";
    const ForkedServer node("node", "127.0.0.1", 0);
    ASSERT_TRUE(node.listens());
    const QList<Service> services = scan(*make(GetParam(), 1s));
    EXPECT_TRUE(
        std::ranges::any_of(services, [&](const Service &service) { return service.pid == node.pid(); }));
    EXPECT_TRUE(waitpid(-1, nullptr, WNOHANG) == 0) << "the server is the only child";
}

} // namespace portolan
