#include "Printers.h"
#include "ProbeLoop.h"
#include "ScriptedServer.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <sys/resource.h>

namespace portolan {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

namespace {

bool isFinished(const QFuture<Health> &probe)
{
    const auto end = Clock::now() + 60s;
    while (!probe.isFinished() && Clock::now() < end)
        std::this_thread::sleep_for(1ms);
    return probe.isFinished();
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

// The folders under /proc of the threads that probe.
QStringList probingThreads()
{
    QStringList folders;
    const QDir tasks(u"/proc/self/task"_s);
    for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        if (contents(tasks.filePath(task) + u"/comm"_s) == "portolan-probes\n")
            folders.append(tasks.filePath(task));
    }
    return folders;
}

// How often a thread has gone to sleep so far.
qint64 sleepCount(const QString &thread)
{
    static const QRegularExpression count(u"\nvoluntary_ctxt_switches:\\s*(\\d+)"_s);
    return count.match(QString::fromLatin1(contents(thread + u"/status"_s))).captured(1).toLongLong();
}

} // namespace

TEST(ProbeLoop, FinishesWhatIsUnderWayAsUnreachableWhenItEnds)
{
    const ScriptedServer silent([](ScriptedServer::Connection &connection) { connection.hang(); });
    QList<QFuture<Health>> probes;
    {
        ProbeLoop loop;
        for (int i = 0; i < 100; ++i)
            probes.append(loop.probe(silent.port()));
        const auto end = Clock::now() + 60s;
        while (silent.connections() < 100 && Clock::now() < end)
            std::this_thread::sleep_for(1ms);
    }
    for (const QFuture<Health> &probe : probes) {
        ASSERT_TRUE(probe.isFinished());
        EXPECT_EQ(probe.result(), Health::unreachable());
    }
}

TEST(ProbeLoop, FinishesWhatIsUnderWayElsewhereAsUnreachableWhenItEnds)
{
    const ScriptedServer silent([](ScriptedServer::Connection &connection) { connection.hang(); });
    const ScriptedServer server(ScriptedServer::answers(
        "HTTP/1.1 302 Found\r\nLocation: http://away.localhost:" + QByteArray::number(silent.port()) +
        "/\r\n\r\n"));
    QList<QFuture<Health>> probes;
    {
        ProbeLoop loop;
        for (int i = 0; i < 20; ++i)
            probes.append(loop.probe(server.port()));
        const auto end = Clock::now() + 60s;
        while (silent.connections() < 20 && Clock::now() < end)
            std::this_thread::sleep_for(1ms);
    }
    for (const QFuture<Health> &probe : probes) {
        ASSERT_TRUE(probe.isFinished());
        EXPECT_EQ(probe.result(), Health::unreachable());
    }
}

TEST(ProbeLoop, EndsWithoutEverHavingProbed)
{
    const ProbeLoop loop;
}

TEST(ProbeLoop, IsUnreachableWithoutDescriptorsAndRecoversWithThem)
{
    const ScriptedServer server(ScriptedServer::answers("HTTP/1.1 200 OK\r\n\r\n"));
    ProbeLoop loop;
    rlimit limit{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
    const rlimit none{.rlim_cur = 0, .rlim_max = limit.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    QFuture<Health> probe = loop.probe(server.port());
    EXPECT_TRUE(probe.isFinished());
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
    EXPECT_EQ(probe.result(), Health::unreachable());

    probe = loop.probe(server.port());
    ASSERT_TRUE(isFinished(probe));
    EXPECT_EQ(probe.result().status(), 200);
}

TEST(ProbeLoop, SleepsWithoutAWakeUpWhileThereIsNothingToProbe)
{
    const ScriptedServer server(ScriptedServer::answers("HTTP/1.1 200 OK\r\n\r\n"));
    const QStringList others = probingThreads();
    ProbeLoop loop;
    ASSERT_TRUE(isFinished(loop.probe(server.port())));
    QStringList threads = probingThreads();
    threads.removeIf([&](const QString &thread) { return others.contains(thread); });
    ASSERT_EQ(threads.size(), 1);
    std::this_thread::sleep_for(300ms);
    const qint64 before = sleepCount(threads.first());
    EXPECT_GT(before, 0);
    std::this_thread::sleep_for(Probe::totalLimit + 500ms);
    EXPECT_EQ(sleepCount(threads.first()), before);
}

} // namespace portolan
