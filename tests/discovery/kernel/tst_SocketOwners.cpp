// SPDX-License-Identifier: MIT
#include "SocketOwners.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

namespace portolan {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// Fake processes, and a record of which were read.
class FakeProcessTable : public ProcessTable
{
public:
    struct Process
    {
        ino_t incarnation;
        ProcessStat stat;
        std::vector<SocketDescriptor> sockets;
        std::optional<std::chrono::nanoseconds> runTime = 1ns;
    };

    std::map<pid_t, Process> all;
    std::vector<pid_t> read;
    bool isReadable = true;

    std::optional<std::vector<ProcessId>> processes() override
    {
        if (!isReadable)
            return std::nullopt;
        std::vector<ProcessId> list;
        for (const auto &[pid, process] : all)
            list.push_back({pid, process.incarnation});
        return list;
    }
    std::optional<ProcessStat> stat(pid_t pid,
                                    const std::optional<std::chrono::nanoseconds> & /*runTime*/) override
    {
        return all.contains(pid) ? std::optional(all[pid].stat) : std::nullopt;
    }
    std::optional<std::chrono::nanoseconds> runTime(pid_t pid) override
    {
        return all.contains(pid) ? all[pid].runTime : std::nullopt;
    }
    unsigned descriptorCount(pid_t pid) override
    {
        return all.contains(pid) ? unsigned(all[pid].sockets.size()) : 0;
    }
    unsigned readSockets(pid_t pid, std::vector<SocketDescriptor> &sockets) override
    {
        read.push_back(pid);
        sockets = all.contains(pid) ? all[pid].sockets : std::vector<SocketDescriptor>();
        return descriptorCount(pid);
    }
    bool holds(pid_t pid, const SocketDescriptor &socket) override
    {
        return all.contains(pid) && std::ranges::count(all[pid].sockets, socket) > 0;
    }
};

class SocketOwnersTest : public testing::Test
{
protected:
    SocketOwnersTest()
    {
        add(1, "init", {});
        add(20, "node", {{3, 500}, {4, 501}});
        add(30, "shell", {{3, 600}});
    }

    void add(pid_t pid, const std::string &name, std::vector<SocketDescriptor> sockets)
    {
        ++m_births;
        table.all[pid] = {.incarnation = m_births,
                          .stat = {.command = name, .state = 'S', .startTicks = m_births},
                          .sockets = std::move(sockets)};
    }

    /// An action of the process itself, which uses CPU time.
    void open(pid_t pid, SocketDescriptor socket)
    {
        table.all[pid].sockets.push_back(socket);
        *table.all[pid].runTime += 1ns;
    }
    void close(pid_t pid)
    {
        table.all[pid].sockets.clear();
        *table.all[pid].runTime += 1ns;
    }

    /// The owners found `after` the previous call.
    std::vector<SocketOwner> find(const std::vector<ino_t> &inodes, std::chrono::milliseconds after = 5s)
    {
        table.read.clear();
        m_now += after;
        return owners.find(inodes, m_now);
    }

    SocketOwner owner(pid_t pid, const std::string &name, std::vector<SocketDescriptor> sockets)
    {
        return {pid, name, std::move(sockets), table.all[pid].stat.startTicks};
    }
    SocketOwner node() { return owner(20, "node", {{3, 500}}); }

    FakeProcessTable table;
    SocketOwners owners{table};

private:
    ino_t m_births = 100;
    SocketOwners::Clock::time_point m_now;
};

TEST_F(SocketOwnersTest, FirstReadsEveryProcessOnce)
{
    EXPECT_THAT(find({500}), ElementsAre(node()));
    EXPECT_THAT(table.read, ElementsAre(1, 20, 30));
}

TEST_F(SocketOwnersTest, ThenReadsNone)
{
    find({500});
    EXPECT_THAT(find({500}), ElementsAre(node()));
    EXPECT_THAT(table.read, IsEmpty());
}

TEST_F(SocketOwnersTest, ReadsNewProcessesOnly)
{
    find({500});
    add(25, "worker", {{3, 500}});
    EXPECT_THAT(find({500}), ElementsAre(node(), owner(25, "worker", {{3, 500}})));
    EXPECT_THAT(table.read, ElementsAre(25));
}

TEST_F(SocketOwnersTest, NewServerCostsNoReadingOfOldProcesses)
{
    find({500});
    add(40, "vite", {{20, 700}});
    EXPECT_THAT(find({500, 700}), ElementsAre(node(), owner(40, "vite", {{20, 700}})));
    EXPECT_THAT(table.read, ElementsAre(40));
}

TEST_F(SocketOwnersTest, SocketWithoutKnownOwnerIsLookedForInProcessesThatHaveRun)
{
    find({500});
    open(30, {7, 700});
    EXPECT_THAT(find({500, 700}), ElementsAre(node(), owner(30, "shell", {{7, 700}})));
    EXPECT_THAT(table.read, ElementsAre(30));
}

TEST_F(SocketOwnersTest, SocketThatStillHasNoOwnerIsLookedForInAllProcesses)
{
    find({500});
    // In place of another, by a running process that is not charged for it yet.
    table.all[30].sockets = {{3, 700}};
    EXPECT_THAT(find({500, 700}), ElementsAre(node(), owner(30, "shell", {{3, 700}})));
    EXPECT_THAT(table.read, ElementsAre(1, 20, 30));
}

TEST_F(SocketOwnersTest, ProcessWithoutAKnownRunTimeIsAlwaysRead)
{
    table.all[1].runTime.reset();
    find({500});
    find({500}, SocketOwners::rescanInterval);
    EXPECT_THAT(table.read, ElementsAre(1));
}

TEST_F(SocketOwnersTest, SocketThatBeginsToListenIsRememberedOfItsHolders)
{
    find({500});
    EXPECT_THAT(find({500, 600}), ElementsAre(node(), owner(30, "shell", {{3, 600}})));
    EXPECT_THAT(table.read, IsEmpty());
}

TEST_F(SocketOwnersTest, SocketThatNobodyHoldsIsLookedForOnce)
{
    EXPECT_THAT(find({900}), IsEmpty());
    EXPECT_THAT(find({900}), IsEmpty());
    EXPECT_THAT(table.read, IsEmpty());
    add(41, "late", {{3, 900}});
    EXPECT_THAT(find({900}), ElementsAre(owner(41, "late", {{3, 900}})));
}

TEST_F(SocketOwnersTest, SocketThatNobodyHoldsDoesNotHideANewOne)
{
    find({900});
    EXPECT_THAT(find({500, 900}), ElementsAre(node()));
}

TEST_F(SocketOwnersTest, EndedProcessIsForgotten)
{
    find({500});
    table.all.erase(20);
    EXPECT_THAT(find({500}), IsEmpty());
}

TEST_F(SocketOwnersTest, ZombieOwnsNothing)
{
    find({500});
    table.all[20].stat.state = 'Z';
    EXPECT_THAT(find({500}), IsEmpty());
}

TEST_F(SocketOwnersTest, PidOfAnotherProcessIsNotTheOldOwner)
{
    find({500});
    add(20, "stranger", {{3, 501}});
    EXPECT_THAT(find({500}), IsEmpty());
    EXPECT_THAT(find({500, 501}), ElementsAre(owner(20, "stranger", {{3, 501}})));
}

TEST_F(SocketOwnersTest, StartTimeTellsAnotherProcessToo)
{
    find({500});
    table.all[20].stat.startTicks += 1;
    table.all[20].sockets.clear();
    EXPECT_THAT(find({500}), IsEmpty());
}

TEST_F(SocketOwnersTest, ReusedPidIsReadAsNew)
{
    find({500});
    add(1, "worker", {{7, 500}});
    EXPECT_THAT(find({500}), ElementsAre(owner(1, "worker", {{7, 500}}), node()));
    EXPECT_THAT(table.read, ElementsAre(1));
}

TEST_F(SocketOwnersTest, ClosedDescriptorMakesItsProcessBeRead)
{
    find({500});
    table.all[20].sockets = {{9, 500}};
    EXPECT_THAT(find({500}), ElementsAre(owner(20, "node", {{9, 500}})));
    EXPECT_THAT(table.read, ElementsAre(20));
}

TEST_F(SocketOwnersTest, SocketThatNoLongerListensIsNotLookedFor)
{
    find({500, 501});
    EXPECT_THAT(find({501}), ElementsAre(owner(20, "node", {{4, 501}})));
    EXPECT_THAT(table.read, IsEmpty());
}

TEST_F(SocketOwnersTest, NameIsAlwaysTheCurrentOne)
{
    find({500});
    table.all[20].stat.command = "next-server (v1";
    EXPECT_THAT(find({500}), ElementsAre(owner(20, "next-server (v1", {{3, 500}})));
}

TEST_F(SocketOwnersTest, SocketHandedToAnOldProcessIsSeenAfterTheRescanInterval)
{
    find({500});
    open(1, {5, 500});
    EXPECT_THAT(find({500}, SocketOwners::rescanInterval - 1ms), ElementsAre(node()));
    EXPECT_THAT(find({500}, 1ms), ElementsAre(owner(1, "init", {{5, 500}}), node()));
    EXPECT_THAT(table.read, ElementsAre(1));
    EXPECT_THAT(find({500}), SizeIs(2));
    EXPECT_THAT(table.read, IsEmpty());
}

TEST_F(SocketOwnersTest, ClosedSocketIsForgottenAfterTheRescanIntervalToo)
{
    find({500});
    open(1, {5, 500});
    find({500}, SocketOwners::rescanInterval);
    close(1);
    EXPECT_THAT(find({500}, SocketOwners::rescanInterval), ElementsAre(node()));
}

// As when it shares its table of descriptors with another process, which has run.
TEST_F(SocketOwnersTest, ProcessThatHasNotRunAndHoldsMoreIsRead)
{
    find({500});
    table.all[1].sockets = {{5, 500}};
    EXPECT_THAT(find({500}, SocketOwners::rescanInterval), SizeIs(2));
    EXPECT_THAT(table.read, ElementsAre(1));
}

TEST_F(SocketOwnersTest, AllIsReadAgainAfterTheRereadInterval)
{
    table.all[1].sockets = {{5, 400}};
    find({500});
    table.all[1].sockets = {{5, 500}}; // in the table of another process, and as many as before
    EXPECT_THAT(find({500}, SocketOwners::rereadInterval - 1ms), ElementsAre(node()));
    EXPECT_THAT(find({500}, SocketOwners::rescanInterval), SizeIs(2));
    EXPECT_THAT(table.read, ElementsAre(1, 20, 30));
}

TEST_F(SocketOwnersTest, ReusedPidIsReadEvenIfItHasRunForAsLong)
{
    find({500});
    add(30, "worker", {{7, 500}});
    EXPECT_THAT(find({500}, SocketOwners::rescanInterval),
                ElementsAre(node(), owner(30, "worker", {{7, 500}})));
    EXPECT_THAT(table.read, ElementsAre(30));
}

TEST_F(SocketOwnersTest, UnreadableTableGivesNoneAndForgetsNothing)
{
    find({500});
    table.isReadable = false;
    EXPECT_THAT(find({500}), IsEmpty());
    table.isReadable = true;
    EXPECT_THAT(find({500}), ElementsAre(node()));
    EXPECT_THAT(table.read, IsEmpty());
}

} // namespace portolan
