#include "Printers.h"
#include "Recorders.h"
#include "ScopedEnvironment.h"
#include "XdgOpen.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

class XdgOpenTest : public testing::Test
{
protected:
    Recorders m_recorders;
    ScopedEnvironment m_path{"PATH", m_recorders.folder().toLocal8Bit()};
};

TEST_F(XdgOpenTest, OpensWebAddresses)
{
    m_recorders.install(u"xdg-open"_s);
    XdgOpen::address(QUrl(u"http://localhost:3000"_s));
    EXPECT_EQ(m_recorders.record(u"xdg-open"_s).arguments, QStringList{u"http://localhost:3000"_s});
}

TEST_F(XdgOpenTest, OpensSecureAddressesEncoded)
{
    m_recorders.install(u"xdg-open"_s);
    XdgOpen::address(QUrl(u"https://localhost:3000/a b?q=größe"_s));
    EXPECT_EQ(m_recorders.record(u"xdg-open"_s).arguments,
              QStringList{u"https://localhost:3000/a%20b?q=gr%C3%B6%C3%9Fe"_s});
}

TEST_F(XdgOpenTest, LeavesAllOtherAddressesAlone)
{
    m_recorders.install(u"xdg-open"_s);
    for (const QString &address :
         {u"file:///etc/passwd"_s, u"ftp://localhost"_s, u"javascript:1"_s, u"localhost"_s, u"-http://x"_s,
          u"http:"_s, u"http:///x"_s, u""_s, u"http://localhost:70000"_s})
        XdgOpen::address(QUrl(address));
    // What is started later has come and gone by the time that this one has.
    XdgOpen::address(QUrl(u"http://last"_s));
    EXPECT_EQ(m_recorders.record(u"xdg-open"_s).arguments, QStringList{u"http://last"_s});
}

TEST_F(XdgOpenTest, OpensFoldersByTheirPath)
{
    m_recorders.install(u"xdg-open"_s);
    const QString folder = u"/tmp/bob's \"dir\" \\x %20 #1\nö"_s;
    XdgOpen::folder(folder);
    EXPECT_EQ(m_recorders.record(u"xdg-open"_s).arguments, QStringList{folder});
}

TEST_F(XdgOpenTest, DoesNothingWhereItIsNotInstalled)
{
    XdgOpen::address(QUrl(u"http://localhost:3000"_s));
    XdgOpen::folder(u"/tmp"_s);
}
