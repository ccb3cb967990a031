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

/// A file manager that notes what it is asked for and answers as told.
class FakeFileManager : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    enum Manner { answers, refuses, isSilent };

    FakeFileManager(QDBusConnection bus, Manner manner)
        : m_manner(manner)
    {
        bus.registerObject(u"/org/freedesktop/FileManager1"_s, this, QDBusConnection::ExportAllSlots);
        if (!bus.registerService(u"org.freedesktop.FileManager1"_s))
            qFatal("the file manager's name is taken");
    }

    QList<QStringList> asked;
    QStringList startupIds;

public Q_SLOTS:
    void ShowFolders(const QStringList &addresses, const QString &startupId)
    {
        asked.append(addresses);
        startupIds.append(startupId);
        if (m_manner == refuses)
            sendErrorReply(QDBusError::Failed, u"no"_s);
        if (m_manner == isSilent)
            setDelayedReply(true);
    }

private:
    Manner m_manner;
};

} // namespace

class FileManagerTest : public testing::Test
{
protected:
    void show(const QString &folder, std::chrono::milliseconds patience = 30s)
    {
        FileManager::show(folder, m_bus.connect(), patience,
                          [this](const QString &path) { m_otherwise.append(path); });
    }

    PrivateBus m_bus;
    QStringList m_otherwise;
};

struct FolderCase
{
    QString folder;
    QString address;
};

class FileManagerFolders : public FileManagerTest, public testing::WithParamInterface<FolderCase>
{};

TEST_P(FileManagerFolders, AreGivenAsAddresses)
{
    const FakeFileManager manager(m_bus.connect(), FakeFileManager::answers);
    show(GetParam().folder);
    ASSERT_TRUE(eventually([&] { return !manager.asked.isEmpty(); }));
    settle();
    EXPECT_EQ(manager.asked, QList<QStringList>{{GetParam().address}});
    EXPECT_EQ(manager.startupIds, QStringList{u""_s});
    EXPECT_EQ(m_otherwise, QStringList());
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

TEST_F(FileManagerTest, IsDoneWithoutWhereThereIsNone)
{
    show(u"/tmp/a b"_s);
    ASSERT_TRUE(eventually([&] { return !m_otherwise.isEmpty(); }));
    EXPECT_EQ(m_otherwise, QStringList{u"/tmp/a b"_s});
}

TEST_F(FileManagerTest, IsDoneWithoutWhenItRefuses)
{
    const FakeFileManager manager(m_bus.connect(), FakeFileManager::refuses);
    show(u"/tmp"_s);
    ASSERT_TRUE(eventually([&] { return !m_otherwise.isEmpty(); }));
    EXPECT_EQ(m_otherwise, QStringList{u"/tmp"_s});
    EXPECT_EQ(manager.asked.size(), 1);
}

TEST_F(FileManagerTest, IsDoneWithoutWhenItDoesNotAnswerInTime)
{
    const FakeFileManager manager(m_bus.connect(), FakeFileManager::isSilent);
    show(u"/tmp"_s, 100ms);
    ASSERT_TRUE(eventually([&] { return !m_otherwise.isEmpty(); }));
    EXPECT_EQ(m_otherwise, QStringList{u"/tmp"_s});
    EXPECT_EQ(manager.asked.size(), 1);
}

TEST_F(FileManagerTest, IsDoneWithoutWhereThereIsNoBus)
{
    FileManager::show(u"/tmp"_s, QDBusConnection(u"no such connection"_s), 30s,
                      [this](const QString &path) { m_otherwise.append(path); });
    ASSERT_TRUE(eventually([&] { return !m_otherwise.isEmpty(); }));
    EXPECT_EQ(m_otherwise, QStringList{u"/tmp"_s});
}

TEST_F(FileManagerTest, IsNotWaitedFor)
{
    const FakeFileManager manager(m_bus.connect(), FakeFileManager::isSilent);
    show(u"/tmp"_s);
    // Had the call waited for an answer, this thread could not have served it and the time would be up.
    EXPECT_EQ(manager.asked.size(), 0);
    EXPECT_EQ(m_otherwise, QStringList());
    EXPECT_TRUE(eventually([&] { return manager.asked.size() == 1; }));
}

TEST_F(FileManagerTest, IsReplacedOnTheSessionsBusAfterFiveSecondsOfSilence)
{
    const ScopedEnvironment bus("DBUS_SESSION_BUS_ADDRESS", m_bus.address().toLocal8Bit());
    const FakeFileManager manager(m_bus.connect(), FakeFileManager::isSilent);
    if (!m_bus.connect().interface()->isServiceRegistered(QDBusConnection::sessionBus().baseService()))
        GTEST_SKIP() << "this process was on another session bus before";
    FakePrograms programs;
    programs.install(u"xdg-open"_s);
    const ScopedEnvironment path("PATH", programs.folder().toLocal8Bit());

    QElapsedTimer time;
    time.start();
    const EventLoopTicker ticker;
    FileManager::show(u"/tmp/a b"_s);
    EXPECT_EQ(programs.record(u"xdg-open"_s).arguments, QStringList{u"/tmp/a b"_s});
    EXPECT_EQ(manager.asked.size(), 1);
    EXPECT_GE(time.elapsed(), 5000 * 95 / 100); // the bus library counts in coarse timers
    EXPECT_GT(ticker.ticks(), 100);
}

} // namespace portolan

#include "tst_FileManager.moc"
