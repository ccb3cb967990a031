// SPDX-License-Identifier: MIT
// The scan with fake tools.
#include "FakeTools.h"
#include "FolderReader.h"
#include "HungMount.h"
#include "PortScanner.h"
#include "Printers.h"

#include <QDir>
#include <QRandomGenerator>

#include <gmock/gmock.h>

#include <thread>

namespace portolan {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

QStringList summary(const QList<Service> &services)
{
    QStringList lines;
    for (const Service &service : services)
        lines.append(u"%1 %2 %3"_s.arg(service.id(), service.command, service.folderPath.value_or(u"-"_s)));
    return lines;
}

QStringList statsSummary(const QList<Service> &services)
{
    QStringList lines;
    for (const Service &service : services)
        lines.append(service.id() + (service.stats ? u" stats"_s : u" none"_s));
    return lines;
}

/// The inputs of a scan.
struct Options
{
    ToolSource::Options tools;
    PortScanner::ScanOptions scan;
};

QList<Service> scan(const Options &options)
{
    ToolSource source(options.tools);
    FolderReader files;
    return PortScanner::scan(source, files, options.scan).services;
}

class Scan : public testing::Test
{
protected:
    /// With deadlines that only a hanging tool can miss, and a home folder that contains no other processes.
    Options options(int workers) const
    {
        Options options{tools.options(), {}};
        options.tools.workers = workers;
        options.tools.deadline = 3s;
        options.scan.homes = {u"/fake-home/ada"_s};
        return options;
    }

    FakeTools tools;
};

class ScanWorkers : public Scan, public testing::WithParamInterface<int>
{
protected:
    Options options() const { return Scan::options(GetParam()); }
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Workers, ScanWorkers, testing::Values(1, 2, 4));

TEST_P(ScanWorkers, FillsAService)
{
    QTemporaryDir home;
    ASSERT_TRUE(QDir(home.path()).mkpath(u"code/shop"_s));
    FakeTools::write(home.filePath(u"code/shop/package.json"_s),
                     R"({"name":"@acme/shop-front","dependencies":{"next":"15"}})");
    tools.addServer(42, "node", "*:3000", QFile::encodeName(home.filePath(u"code/shop"_s)));
    tools.onPs(42, "echo '  3-04:05:06   12.5  204800'");
    const QList<Service> services = scan(options());
    ASSERT_EQ(services.size(), 1);
    EXPECT_EQ(services[0], (Service{.pid = 42,
                                    .port = 3000,
                                    .command = u"node"_s,
                                    .folderPath = home.filePath(u"code/shop"_s),
                                    .displayName = u"Shop Front"_s,
                                    .framework = Framework::next,
                                    .health = Health::unknown(),
                                    .stats = ProcessStats{273906, 12.5, 200}}));
}

TEST_P(ScanWorkers, AsksTheToolsInExactlyTheseWords)
{
    tools.addServer(42, "node", "*:3000", "/srv/shop");
    EXPECT_EQ(scan(options()).size(), 1);
    EXPECT_THAT(tools.lsofCalls(),
                ElementsAre(u"-nP -iTCP -sTCP:LISTEN -FpcnPT"_s, u"-a -p 42 -d cwd -Fn"_s));
    EXPECT_THAT(tools.psCalls(), ElementsAre(u"-o etime=,%cpu=,rss= -p 42"_s));
}

TEST_P(ScanWorkers, AsksNothingAboutPortsThatAreNotWanted)
{
    tools.addServer(42, "node", "*:3000", "/a");
    tools.addServer(43, "node", "*:3001", "/b");
    tools.addServer(44, "node", "*:3000", "/c");
    Options wanted = options();
    wanted.scan.ports = {3000, 80};
    EXPECT_THAT(summary(scan(wanted)), ElementsAre(u"42-3000 node /a"_s, u"44-3000 node /c"_s));
    EXPECT_THAT(tools.lsofCalls(), UnorderedElementsAre(u"-nP -iTCP -sTCP:LISTEN -FpcnPT"_s,
                                                        u"-a -p 42 -d cwd -Fn"_s, u"-a -p 44 -d cwd -Fn"_s));
    EXPECT_EQ(tools.psCalls().size(), 2);
    wanted.scan.ports->clear();
    EXPECT_THAT(scan(wanted), IsEmpty());
}

TEST_P(ScanWorkers, SortsByPortAndKeepsTheToolsOrderWithinAPort)
{
    tools.addServer(10, "node", "*:8080", "/a");
    tools.addServer(12, "node", "*:3000", "/b");
    tools.addServer(11, "node", "*:3000", "/c");
    tools.addServer(9, "node", "127.0.0.1:5173", "/d");
    EXPECT_THAT(summary(scan(options())), ElementsAre(u"12-3000 node /b"_s, u"11-3000 node /c"_s,
                                                      u"9-5173 node /d"_s, u"10-8080 node /a"_s));
}

TEST_P(ScanWorkers, AProcessOnOnePortIsOneServiceTheFirst)
{
    tools.onListing("printf '%s\\n' p10 cnode 'n*:3000' 'n[::1]:3000' cother 'n127.0.0.1:3000' 'n*:3001'\n"
                    "printf '%s\\n' p11 cnode 'n*:3000'");
    tools.onCwd(10, "echo n/a");
    tools.onCwd(11, "echo n/b");
    tools.onPs(10, "echo 1 1 1");
    tools.onPs(11, "echo 1 1 1");
    EXPECT_THAT(summary(scan(options())), ElementsAre(u"10-3000 node /a"_s, u"11-3000 node /b"_s));
}

TEST_P(ScanWorkers, AsksOncePerProcessForTheFolderAndOncePerServiceForFigures)
{
    tools.onListing(
        "printf '%s\\n' p10 cnode 'n*:3000' 'n*:3001' p11 cmyserver 'n*:3002' p10 cnode 'n*:3003'");
    tools.onCwd(10, "exit 1");
    tools.onCwd(11, "echo n/srv");
    tools.onPs(10, "echo 1 1 1024");
    EXPECT_THAT(statsSummary(scan(options())),
                ElementsAre(u"10-3000 stats"_s, u"10-3001 stats"_s, u"10-3003 stats"_s));
    EXPECT_THAT(tools.lsofCalls(),
                testing::UnorderedElementsAre(u"-nP -iTCP -sTCP:LISTEN -FpcnPT"_s, u"-a -p 10 -d cwd -Fn"_s,
                                              u"-a -p 11 -d cwd -Fn"_s));
    EXPECT_EQ(tools.psCalls().size(), 3);
}

TEST_P(ScanWorkers, KeepsOnlyDevServers)
{
    tools.addServer(1, "ControlCenter", "*:7000", "/fake-home/ada/x");
    tools.addServer(2, "myserver", "*:7001", "/fake-home/ada/x");
    tools.addServer(3, "myserver", "*:7002", "/srv/x");
    tools.addServer(4, "myserver", "*:7003", "/fake-home/adam/x");
    tools.addServer(5, "GO", "*:7004", "/srv/x");
    tools.addServer(6, "nodemon", "*:7005", "/srv/x");
    tools.addServer(7, "controlcenter", "*:7006", "/fake-home/ada/x");
    EXPECT_THAT(summary(scan(options())),
                ElementsAre(u"2-7001 myserver /fake-home/ada/x"_s, u"4-7003 myserver /fake-home/adam/x"_s,
                            u"5-7004 GO /srv/x"_s, u"6-7005 nodemon /srv/x"_s,
                            u"7-7006 controlcenter /fake-home/ada/x"_s));
    EXPECT_EQ(tools.lsofCalls().size(), 8) << "folders are asked for before anything is dropped";
    EXPECT_EQ(tools.psCalls().size(), 5) << "figures only of what is kept";
}

TEST_P(ScanWorkers, AFolderThatCannotBeFoundIsAbsent)
{
    tools.addServer(1, "node", "*:3000", "");
    tools.addServer(2, "node", "*:3001", "/x");
    tools.addServer(3, "node", "*:3002", "/x");
    tools.addServer(4, "myserver", "*:3003", "/x");
    tools.addServer(5, "node", "*:3004", "/x");
    tools.onCwd(2, "exit 1");
    tools.onCwd(3, "echo p3; echo 'n/proc/3/cwd (readlink: Permission denied)'");
    tools.onCwd(4, "kill -KILL $$");
    tools.onCwd(5, "printf 'n/caf\\351\\n'");
    const QList<Service> services = scan(options());
    EXPECT_THAT(summary(services),
                ElementsAre(u"1-3000 node "_s, u"2-3001 node -"_s, u"3-3002 node -"_s, u"5-3004 node -"_s));
    for (const Service &service : services)
        EXPECT_EQ(service.displayName, u"Node"_s);
}

TEST_P(ScanWorkers, FiguresThatCannotBeReadAreAbsent)
{
    tools.addServer(1, "node", "*:3000", "/x");
    tools.addServer(2, "node", "*:3001", "/x");
    tools.addServer(3, "node", "*:3002", "/x");
    tools.onPs(1, "exit 1");
    tools.onPs(2, "echo 01:30 0.0");
    EXPECT_THAT(statsSummary(scan(options())),
                ElementsAre(u"1-3000 none"_s, u"2-3001 none"_s, u"3-3002 stats"_s));
}

TEST_P(ScanWorkers, UsesGoodOutputOfAToolThatFails)
{
    tools.addServer(1, "node", "*:3000", "/x");
    tools.onListing("printf '%s\\n' p1 cnode 'n*:3000'; exit 1");
    EXPECT_EQ(scan(options()).size(), 1);
}

TEST_P(ScanWorkers, OutputThatIsNotUtf8IsNone)
{
    tools.onListing("printf 'p1\\ncnode\\nn*:3000\\np2\\nc\\377\\n'");
    EXPECT_THAT(scan(options()), IsEmpty());
}

TEST_P(ScanWorkers, WithoutToolsThereIsNothingOrLess)
{
    tools.addServer(1, "node", "*:3000", "/x");
    Options without = options();
    without.tools.ps = u"/no/such/ps"_s;
    EXPECT_THAT(statsSummary(scan(without)), ElementsAre(u"1-3000 none"_s));
    without.tools.lsof = u"/no/such/lsof"_s;
    EXPECT_THAT(scan(without), IsEmpty());
}

TEST_P(ScanWorkers, AHangingListingIsEmpty)
{
    tools.addServer(1, "node", "*:3000", "/x");
    tools.onListing("printf '%s\\n' p1 cnode 'n*:3000'; exec sleep 1000");
    Options hurried = options();
    hurried.tools.listingDeadline = 300ms;
    EXPECT_THAT(scan(hurried), IsEmpty());
}

TEST_P(ScanWorkers, OneHangingLookupLosesOnlyItsOwnAnswer)
{
    for (int pid = 1; pid <= 5; ++pid)
        tools.addServer(pid, "node", "*:300" + QByteArray::number(pid), "/x");
    tools.onCwd(2, "echo n/half; exec sleep 1000");
    tools.onPs(3, "sleep 1000 & wait");
    const QList<Service> services = scan(options());
    EXPECT_THAT(summary(services), ElementsAre(u"1-3001 node /x"_s, u"2-3002 node -"_s, u"3-3003 node /x"_s,
                                               u"4-3004 node /x"_s, u"5-3005 node /x"_s));
    EXPECT_THAT(statsSummary(services), ElementsAre(u"1-3001 stats"_s, u"2-3002 stats"_s, u"3-3003 none"_s,
                                                    u"4-3004 stats"_s, u"5-3005 stats"_s));
}

TEST_P(ScanWorkers, AfterTwoTimeOutsOfAKindTheRestOfItCountsAsNotTried)
{
    for (int pid = 1; pid <= 8; ++pid)
        tools.addServer(pid, "node", "*:300" + QByteArray::number(pid), "/x");
    tools.onCwd(2, "exec sleep 1000");
    tools.onCwd(4, "trap '' TERM; while :; do sleep 1; done");
    const QList<Service> services = scan(options());
    EXPECT_THAT(summary(services),
                ElementsAre(u"1-3001 node /x"_s, u"2-3002 node -"_s, u"3-3003 node /x"_s, u"4-3004 node -"_s,
                            u"5-3005 node -"_s, u"6-3006 node -"_s, u"7-3007 node -"_s, u"8-3008 node -"_s));
    for (const Service &service : services)
        EXPECT_TRUE(service.stats) << "the other kind is not concerned";
    if (GetParam() == 1) {
        EXPECT_EQ(tools.lsofCalls().size(), 1 + 4);
    }
}

TEST_P(ScanWorkers, ADeadMountCostsTwoDeadlinesAndTheNextScanTriesAgain)
{
    for (int pid = 1; pid <= 9; ++pid) {
        tools.addServer(pid, "node", "*:300" + QByteArray::number(pid), "/x");
        tools.onPs(pid, "exec sleep 1000");
    }
    Options hurried = options();
    hurried.tools.deadline = 250ms;
    for (int tick = 0; tick < 2; ++tick) {
        tools.forgetCalls();
        EXPECT_EQ(scan(hurried).size(), 9);
        EXPECT_GE(tools.psCalls().size(), 2);
        EXPECT_LE(tools.psCalls().size(), 2 + GetParam() - 1);
    }
}

TEST_P(ScanWorkers, AStopEndsTheScan)
{
    tools.addServer(1, "node", "*:3000", "/x");
    tools.addServer(2, "node", "*:3001", "/x");
    tools.onCwd(1, "echo $$ > pid; exec sleep 1000");
    std::stop_source stop;
    Options stopped = options();
    stopped.tools.deadline = 1h;
    stopped.scan.stop = stop.get_token();
    std::jthread stopper([&] {
        waitUntil([&] { return !contentsOf(tools.path(u"pid"_s)).isEmpty(); });
        stop.request_stop();
    });
    (void)scan(stopped);
    EXPECT_FALSE(isRunning(contentsOf(tools.path(u"pid"_s)).trimmed().toInt()));
    EXPECT_THAT(tools.psCalls(), IsEmpty());
}

TEST_F(Scan, SideBySideGivesWhatOneAfterTheOtherGives)
{
    QRandomGenerator random(4711);
    const auto delay = [&] {
        return "sleep 0.0" + QByteArray::number(100 + random.bounded(60)).last(2) + "; ";
    };
    for (int pid = 1; pid <= 24; ++pid) {
        const QByteArray number = QByteArray::number(pid);
        const QByteArray port = QByteArray::number(3000 + random.bounded(8));
        tools.addServer(pid, random.bounded(4) ? "node" : "myserver", "*:" + port, "");
        tools.onCwd(pid, delay() + (random.bounded(3) ? "echo n/fake-home/ada/" + number : "exit 1"_ba));
        tools.onPs(pid, delay() + (random.bounded(4) ? "echo " + number + " 1.5 1024" : "exit 1"_ba));
    }
    Options patient = options(1);
    patient.tools.deadline = 1h;
    const QList<Service> expected = scan(patient);
    ASSERT_GT(expected.size(), 10);
    for (const int workers : {2, 3, 4, 8}) {
        patient.tools.workers = workers;
        EXPECT_EQ(scan(patient), expected) << workers;
    }
}

TEST_F(Scan, SeveralScansAtOnceDoNotDisturbEachOther)
{
    for (int pid = 1; pid <= 6; ++pid)
        tools.addServer(pid, "node", "*:300" + QByteArray::number(pid), "/x");
    const Options shared = options(2);
    ToolSource source(shared.tools);
    FolderReader files;
    const auto scanShared = [&] { return PortScanner::scan(source, files, shared.scan).services; };
    const QList<Service> expected = scanShared();
    std::vector<QList<Service>> results(4);
    {
        std::vector<std::jthread> threads;
        for (QList<Service> &result : results)
            threads.emplace_back([&] { result = scanShared(); });
    }
    for (const QList<Service> &result : results)
        EXPECT_EQ(result, expected);
}

TEST_F(Scan, KeepsNothingBetweenCalls)
{
    tools.addServer(1, "node", "*:3000", "/x");
    EXPECT_THAT(summary(scan(options(2))), ElementsAre(u"1-3000 node /x"_s));
    tools.onCwd(1, "echo n/y");
    EXPECT_THAT(summary(scan(options(2))), ElementsAre(u"1-3000 node /y"_s));
    tools.onListing(":");
    EXPECT_THAT(scan(options(2)), IsEmpty());
}

TEST_F(Scan, LeavesNothingBehind)
{
    for (int pid = 1; pid <= 6; ++pid)
        tools.addServer(pid, "node", "*:300" + QByteArray::number(pid), "/x");
    EXPECT_EQ(scan(options(4)).size(), 6);
    const qsizetype descriptors = openDescriptors();
    const qsizetype threadsBefore = threads();
    for (int tick = 0; tick < 10; ++tick)
        EXPECT_EQ(scan(options(4)).size(), 6);
    EXPECT_EQ(openDescriptors(), descriptors);
    EXPECT_TRUE(waitUntil([&] { return threads() == threadsBefore; }));
}

TEST_F(Scan, AFolderThatWasDeletedCountsAsAbsent)
{
    QTemporaryDir home;
    ASSERT_TRUE(QDir(home.path()).mkpath(u"really (deleted)"_s));
    Options own = options(2);
    own.scan.homes = {home.path()};
    tools.addServer(1, "node", "*:3001", QFile::encodeName(home.filePath(u"gone (deleted)"_s)));
    tools.addServer(2, "tool", "*:3002", QFile::encodeName(home.filePath(u"gone (deleted)"_s)));
    tools.addServer(3, "tool", "*:3003", QFile::encodeName(home.filePath(u"really (deleted)"_s)));
    const QList<Service> services = scan(own);
    EXPECT_THAT(summary(services),
                ElementsAre(u"1-3001 node -"_s, u"3-3003 tool "_s + home.filePath(u"really (deleted)"_s)));
    EXPECT_EQ(services[0].displayName, u"Node"_s);
}

TEST_F(Scan, FoldersOnADeadMountAreListedByName)
{
    const std::unique_ptr<HungMount> mount = HungMount::create();
    if (!mount)
        GTEST_SKIP() << "mounting is not permitted here";
    collectChildren();
    for (int pid = 1; pid <= 4; ++pid)
        tools.addServer(pid, "node", "*:300" + QByteArray::number(pid),
                        QFile::encodeName(mount->path()) + "/shop" + QByteArray::number(pid));
    Options hurried = options(2);
    hurried.scan.folderDeadline = 200ms;
    ToolSource source(hurried.tools);
    FolderReader files;
    for (int tick = 0; tick < 6; ++tick) {
        const QList<Service> services = PortScanner::scan(source, files, hurried.scan).services;
        ASSERT_EQ(services.size(), 4);
        for (const Service &service : services) {
            EXPECT_EQ(service.displayName, u"shop%1"_s.arg(service.pid));
            EXPECT_EQ(service.framework, Framework::node);
        }
    }
    EXPECT_EQ(mount->taken(), 4) << "each folder is asked for once";
    EXPECT_LE(children().size(), 5) << "one stuck process for each, and the one at work";
}

} // namespace portolan
