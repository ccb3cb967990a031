#include "Launches.h"

#include "Eventually.h"
#include "Printers.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>

#include <sys/wait.h>
#include <unistd.h>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

/// Ended ones that nobody has collected count.
bool hasChildren()
{
    return waitid(P_ALL, 0, nullptr, WEXITED | WNOHANG | WNOWAIT) == 0 || errno != ECHILD;
}

} // namespace

class LaunchesTest : public testing::Test
{
protected:
    ~LaunchesTest() override
    {
        for (const pid_t pid : running()) {
            kill(pid, SIGKILL);
            waitpid(pid, nullptr, 0);
        }
    }

    /// Starts a program that stays until it is killed.
    void launch(Launches &launches) const
    {
        launches.start(u"/bin/sh"_s, {u"-c"_s, u"echo $$ >> '%1'; exec sleep 1000"_s.arg(notes())});
    }

    /// The programs that were started and are there.
    [[nodiscard]] QList<pid_t> running() const
    {
        QList<pid_t> pids;
        QFile file(notes());
        if (!file.open(QFile::ReadOnly))
            return pids;
        for (const QByteArray &line : file.readAll().split('\n')) {
            if (const pid_t pid = line.toInt(); pid > 0 && kill(pid, 0) == 0)
                pids.append(pid);
        }
        return pids;
    }

    [[nodiscard]] QString notes() const { return m_folder.filePath(u"pids"_s); }

    QTemporaryDir m_folder;
};

TEST_F(LaunchesTest, RunSideBySide)
{
    Launches launches;
    launch(launches);
    launch(launches);
    EXPECT_TRUE(eventually([&] { return running().size() == 2; }));
}

TEST_F(LaunchesTest, LeaveTheirProgramsRunningInTheEnd)
{
    {
        Launches launches;
        launch(launches);
        ASSERT_TRUE(eventually([&] { return running().size() == 1; }));
    }
    EXPECT_EQ(running().size(), 1);
}

TEST_F(LaunchesTest, CollectWhatHasEnded)
{
    const QString sign = m_folder.filePath(u"sign"_s);
    Launches launches;
    launches.start(u"/no/such/program"_s, {});
    launches.start(u"/bin/sh"_s, {u"-c"_s, u"> '%1'"_s.arg(sign)});
    EXPECT_TRUE(eventually([&] { return QFile::exists(sign) && !hasChildren(); }));
}

} // namespace portolan
