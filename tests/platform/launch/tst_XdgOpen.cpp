// SPDX-License-Identifier: MIT
#include "FakePrograms.h"
#include "Printers.h"
#include "ScopedEnvironment.h"
#include "XdgOpen.h"

#include <gtest/gtest.h>

#include <sys/prctl.h>
#include <sys/wait.h>

namespace portolan {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Makes orphaned descendants children of this process (PR_SET_CHILD_SUBREAPER).
class ChildSubreaper
{
public:
    ChildSubreaper() { prctl(PR_SET_CHILD_SUBREAPER, 1); }
    ~ChildSubreaper()
    {
        waitForAll();
        prctl(PR_SET_CHILD_SUBREAPER, 0);
    }
    Q_DISABLE_COPY_MOVE(ChildSubreaper)

    /// Waits until all children have exited and returns their number.
    int waitForAll() const
    {
        int count = 0;
        while (waitpid(-1, nullptr, 0) > 0)
            ++count;
        return count;
    }
};

} // namespace

class XdgOpenTest : public testing::Test
{
protected:
    FakePrograms m_programs;
    ScopedEnvironment m_path{"PATH", m_programs.folder().toLocal8Bit()};
    ChildSubreaper m_subreaper;
};

TEST_F(XdgOpenTest, OpensWebAddresses)
{
    m_programs.install(u"xdg-open"_s);
    XdgOpen::address(QUrl(u"http://localhost:3000"_s));
    EXPECT_EQ(m_programs.record(u"xdg-open"_s).arguments, QStringList{u"http://localhost:3000"_s});
}

TEST_F(XdgOpenTest, EncodesAddresses)
{
    m_programs.install(u"xdg-open"_s);
    XdgOpen::address(QUrl(u"https://localhost:3000/a b?q=größe"_s));
    EXPECT_EQ(m_programs.record(u"xdg-open"_s).arguments,
              QStringList{u"https://localhost:3000/a%20b?q=gr%C3%B6%C3%9Fe"_s});
}

TEST_F(XdgOpenTest, IgnoresOtherAddresses)
{
    m_programs.install(u"xdg-open"_s);
    for (const QString &address :
         {u"file:///etc/passwd"_s, u"ftp://localhost"_s, u"javascript:1"_s, u"localhost"_s, u"-http://x"_s,
          u"http:"_s, u"http:///x"_s, u""_s, u"http://localhost:70000"_s}) {
        XdgOpen::address(QUrl(address));
        EXPECT_FALSE(XdgOpen::addressWatched(QUrl(address), 30s));
        EXPECT_EQ(m_subreaper.waitForAll(), 0) << address.toStdString();
    }
    EXPECT_FALSE(m_programs.wasStarted(u"xdg-open"_s));
    XdgOpen::address(QUrl(u"http://localhost"_s));
    EXPECT_EQ(m_subreaper.waitForAll(), 1);
    EXPECT_TRUE(m_programs.wasStarted(u"xdg-open"_s));
}

TEST_F(XdgOpenTest, ReportsTheExitStatus)
{
    const QUrl url(u"http://localhost:3000"_s);
    m_programs.install(u"xdg-open"_s);
    EXPECT_TRUE(XdgOpen::addressWatched(url, 30s));
    EXPECT_EQ(m_programs.record(u"xdg-open"_s).arguments, QStringList{url.toString()});
    EXPECT_TRUE(QFile::remove(m_programs.path(u"xdg-open"_s)));
    EXPECT_TRUE(QFile::link(u"/bin/false"_s, m_programs.path(u"xdg-open"_s)));
    EXPECT_FALSE(XdgOpen::addressWatched(url, 30s));
}

TEST_F(XdgOpenTest, PassesFoldersAsPaths)
{
    m_programs.install(u"xdg-open"_s);
    const QString folder = u"/tmp/bob's \"dir\" \\x %20 #1\nö"_s;
    XdgOpen::folder(folder);
    EXPECT_EQ(m_programs.record(u"xdg-open"_s).arguments, QStringList{folder});
}

TEST_F(XdgOpenTest, DoesNothingIfItIsNotInstalled)
{
    m_programs.install(u"not-xdg-open"_s);
    const QUrl url(u"http://localhost:3000"_s);
    EXPECT_FALSE(XdgOpen::isInstalled());
    XdgOpen::address(url);
    XdgOpen::folder(u"/tmp"_s);
    EXPECT_FALSE(XdgOpen::addressWatched(url, 30s));
    EXPECT_EQ(m_subreaper.waitForAll(), 0);
}

} // namespace portolan
