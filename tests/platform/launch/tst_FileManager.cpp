// SPDX-License-Identifier: MIT
#include "EventLoopTicker.h"
#include "Eventually.h"
#include "FakePrograms.h"
#include "FileManager.h"
#include "FileManager_p.h"
#include "Printers.h"
#include "PrivateBus.h"
#include "ScopedEnvironment.h"

#include <QDBusConnectionInterface>
#include <QDBusContext>
#include <QDBusMessage>
#include <QElapsedTimer>

#include <gmock/gmock.h>

namespace portolan {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A file manager that records the calls and answers in a chosen way.
class FakeFileManager : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    enum Behaviour { answers, fails, doesNotAnswer };

    FakeFileManager(QDBusConnection bus, Behaviour behaviour)
        : m_behaviour(behaviour)
    {
        bus.registerObject(u"/org/freedesktop/FileManager1"_s, this, QDBusConnection::ExportAllSlots);
        if (!bus.registerService(u"org.freedesktop.FileManager1"_s))
            qFatal("the file manager's name is taken");
    }

    QList<QStringList> calls;
    QStringList startupIds;

public Q_SLOTS:
    void ShowFolders(const QStringList &addresses, const QString &startupId)
    {
        calls.append(addresses);
        startupIds.append(startupId);
        if (m_behaviour == fails)
            sendErrorReply(QDBusError::Failed, u"no"_s);
        if (m_behaviour == doesNotAnswer)
            setDelayedReply(true);
    }

private:
    Behaviour m_behaviour;
};

} // namespace

class FileManagerTest : public testing::Test
{
protected:
    void show(const QString &folder, std::chrono::milliseconds timeout = 30s)
    {
        FileManager::show(folder, m_bus.connect(), timeout,
                          [this](const QString &path) { m_fallbacks.append(path); });
    }

    PrivateBus m_bus;
    QStringList m_fallbacks;
};

struct FolderCase
{
    QString folder;
    QString address;
};

class FileManagerFolders : public FileManagerTest, public testing::WithParamInterface<FolderCase>
{};

TEST_P(FileManagerFolders, ArePassedAsFileUrls)
{
    const FakeFileManager manager(m_bus.connect(), FakeFileManager::answers);
    show(GetParam().folder);
    ASSERT_TRUE(eventually([&] { return !manager.calls.isEmpty(); }));
    settle();
    EXPECT_EQ(manager.calls, QList<QStringList>{{GetParam().address}});
    EXPECT_EQ(manager.startupIds, QStringList{u""_s});
    EXPECT_EQ(m_fallbacks, QStringList());
}

INSTANTIATE_TEST_SUITE_P(
    Paths, FileManagerFolders,
    testing::Values(FolderCase{u"/home/ada/shop"_s, u"file:///home/ada/shop"_s},
                    FolderCase{u"/tmp/bob's \"dir\" \\x"_s, u"file:///tmp/bob's%20%22dir%22%20%5Cx"_s},
                    FolderCase{u"/tmp/100%/#1?x;y"_s, u"file:///tmp/100%25/%231%3Fx;y"_s},
                    FolderCase{u"/tmp/%00%2F"_s, u"file:///tmp/%2500%252F"_s},
                    FolderCase{u"/tmp/a\nb"_s, u"file:///tmp/a%0Ab"_s},
                    FolderCase{u"/tmp/größe/🦊"_s, u"file:///tmp/gr%C3%B6%C3%9Fe/%F0%9F%A6%8A"_s},
                    FolderCase{u"/tmp/-x"_s, u"file:///tmp/-x"_s}, FolderCase{u"/"_s, u"file:///"_s}));

TEST_F(FileManagerTest, FallsBackIfThereIsNoFileManager)
{
    show(u"/tmp/a b"_s);
    ASSERT_TRUE(eventually([&] { return !m_fallbacks.isEmpty(); }));
    EXPECT_EQ(m_fallbacks, QStringList{u"/tmp/a b"_s});
}

TEST_F(FileManagerTest, FallsBackIfTheCallFails)
{
    const FakeFileManager manager(m_bus.connect(), FakeFileManager::fails);
    show(u"/tmp"_s);
    ASSERT_TRUE(eventually([&] { return !m_fallbacks.isEmpty(); }));
    EXPECT_EQ(m_fallbacks, QStringList{u"/tmp"_s});
    EXPECT_EQ(manager.calls.size(), 1);
}

TEST_F(FileManagerTest, FallsBackAfterTheTimeout)
{
    const FakeFileManager manager(m_bus.connect(), FakeFileManager::doesNotAnswer);
    show(u"/tmp"_s, 100ms);
    ASSERT_TRUE(eventually([&] { return !m_fallbacks.isEmpty(); }));
    EXPECT_EQ(m_fallbacks, QStringList{u"/tmp"_s});
    EXPECT_EQ(manager.calls.size(), 1);
}

TEST_F(FileManagerTest, FallsBackIfThereIsNoBus)
{
    FileManager::show(u"/tmp"_s, QDBusConnection(u"no such connection"_s), 30s,
                      [this](const QString &path) { m_fallbacks.append(path); });
    ASSERT_TRUE(eventually([&] { return !m_fallbacks.isEmpty(); }));
    EXPECT_EQ(m_fallbacks, QStringList{u"/tmp"_s});
}

TEST_F(FileManagerTest, DoesNotBlock)
{
    const FakeFileManager manager(m_bus.connect(), FakeFileManager::doesNotAnswer);
    show(u"/tmp"_s);
    // The fake runs in this thread: a blocking call could not have been answered yet.
    EXPECT_EQ(manager.calls.size(), 0);
    EXPECT_EQ(m_fallbacks, QStringList());
    EXPECT_TRUE(eventually([&] { return manager.calls.size() == 1; }));
}

TEST_F(FileManagerTest, FallsBackToXdgOpenAfterFiveSecondsOnTheSessionBus)
{
    const ScopedEnvironment bus("DBUS_SESSION_BUS_ADDRESS", m_bus.address().toLocal8Bit());
    const FakeFileManager manager(m_bus.connect(), FakeFileManager::doesNotAnswer);
    if (!m_bus.connect().interface()->isServiceRegistered(QDBusConnection::sessionBus().baseService()))
        GTEST_SKIP() << "this process is already connected to another session bus";
    FakePrograms programs;
    programs.install(u"xdg-open"_s);
    const ScopedEnvironment path("PATH", programs.folder().toLocal8Bit());

    QElapsedTimer time;
    time.start();
    const EventLoopTicker ticker;
    FileManager::show(u"/tmp/a b"_s);
    EXPECT_EQ(programs.record(u"xdg-open"_s).arguments, QStringList{u"/tmp/a b"_s});
    EXPECT_EQ(manager.calls.size(), 1);
    EXPECT_GE(time.elapsed(), 5000 * 95 / 100); // D-Bus timeouts use coarse timers
    EXPECT_GT(ticker.ticks(), 100);
}

} // namespace portolan

#include "tst_FileManager.moc"
