// SPDX-License-Identifier: MIT
#include "LoginItem.h"
#include "ScopedEnvironment.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace portolan {

using namespace Qt::StringLiterals;

class LoginItemTest : public testing::Test
{
protected:
    [[nodiscard]] QString file() const { return m_folder.filePath(u"autostart/portolan.desktop"_s); }

    [[nodiscard]] Autostart entry() const
    {
        return Autostart({.userFolder = m_folder.filePath(u"autostart"_s),
                          .systemFolders = {},
                          .desktops = {u"XFCE"_s},
                          .program = u"/bin/true"_s});
    }

    void write(const QByteArray &keys) const
    {
        QDir().mkpath(m_folder.filePath(u"autostart"_s));
        QFile target(file());
        ASSERT_TRUE(target.open(QIODevice::WriteOnly));
        target.write("[Desktop Entry]\n" + keys);
    }

    /// Changes whenever the file is written; 0 if there is none.
    [[nodiscard]] ino_t incarnation() const
    {
        struct stat facts = {};
        return stat(QFile::encodeName(file()).constData(), &facts) == 0 ? facts.st_ino : 0;
    }

    QTemporaryDir m_folder;
};

TEST_F(LoginItemTest, IsTurnedOnAndOff)
{
    EXPECT_TRUE(LoginItem(entry()).setEnabled(true));
    EXPECT_TRUE(entry().isEnabled());
    EXPECT_FALSE(LoginItem(entry()).setEnabled(false));
    EXPECT_FALSE(entry().isEnabled());
}

TEST_F(LoginItemTest, TouchesNothingWhenItIsOnAlready)
{
    LoginItem(entry()).setEnabled(true);
    const ino_t before = incarnation();
    EXPECT_TRUE(LoginItem(entry()).setEnabled(true));
    EXPECT_EQ(incarnation(), before);
}

TEST_F(LoginItemTest, TouchesNothingWhenItIsOffAlready)
{
    EXPECT_FALSE(LoginItem(entry()).setEnabled(false));
    EXPECT_EQ(incarnation(), 0u);

    for (const QByteArray &keys : {"Exec=/no/such/program\n"_ba, "Exec=sh\nHidden=true\n"_ba}) {
        write(keys);
        const ino_t before = incarnation();
        EXPECT_FALSE(LoginItem(entry()).setEnabled(false));
        EXPECT_EQ(incarnation(), before) << keys.toStdString();
    }
}

TEST_F(LoginItemTest, IsTurnedOnAgainAfterTheDesktopTurnedItOff)
{
    for (const QByteArray &keys : {"Exec=sh\nHidden=true\n"_ba, "Exec=sh\nOnlyShowIn=KDE;\n"_ba}) {
        write(keys);
        EXPECT_FALSE(entry().isEnabled()) << keys.toStdString();
        EXPECT_TRUE(LoginItem(entry()).setEnabled(true)) << keys.toStdString();
        EXPECT_TRUE(entry().isEnabled()) << keys.toStdString();
    }
}

TEST_F(LoginItemTest, StaysOffWhereTheProgramIsGone)
{
    const Autostart gone({.userFolder = m_folder.filePath(u"autostart"_s),
                          .systemFolders = {},
                          .desktops = {},
                          .program = u"/no/such/program"_s});
    EXPECT_FALSE(LoginItem(gone).setEnabled(true));
    EXPECT_FALSE(gone.isEnabled());
}

TEST_F(LoginItemTest, StaysOffWhereNothingCanBeWritten)
{
    QFile inTheWay(m_folder.filePath(u"autostart"_s));
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    EXPECT_FALSE(LoginItem(entry()).setEnabled(true));
}

TEST_F(LoginItemTest, IsThisProgramsOwn)
{
    const ScopedEnvironment config("XDG_CONFIG_HOME", m_folder.path().toLocal8Bit());
    LoginItem loginItem;
    EXPECT_FALSE(loginItem.isEnabled());
    EXPECT_TRUE(loginItem.setEnabled(true));
    EXPECT_TRUE(QFile::exists(file()));
    EXPECT_TRUE(loginItem.isEnabled());
    EXPECT_FALSE(loginItem.setEnabled(false));
    EXPECT_FALSE(loginItem.isEnabled());
}

} // namespace portolan
