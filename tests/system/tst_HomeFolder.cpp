// SPDX-License-Identifier: MIT
#include "HomeFolder.h"
#include "Printers.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <pwd.h>
#include <unistd.h>

namespace portolan {

using namespace Qt::StringLiterals;

struct AbbreviationCase
{
    QString folder;
    QString home;
    QString result;
};

class Abbreviation : public testing::TestWithParam<AbbreviationCase>
{};

TEST_P(Abbreviation, ReplacesTheHomeFoldersText)
{
    EXPECT_EQ(HomeFolder::abbreviated(GetParam().folder, {GetParam().home}), GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(
    Paths, Abbreviation,
    testing::Values(AbbreviationCase{u"/home/ada/dev/shop"_s, u"/home/ada"_s, u"~/dev/shop"_s},
                    AbbreviationCase{u"/home/ada"_s, u"/home/ada"_s, u"~"_s},
                    AbbreviationCase{u"/home/adam/site"_s, u"/home/ada"_s, u"~m/site"_s},
                    AbbreviationCase{u"/srv/site"_s, u"/home/ada"_s, u"/srv/site"_s},
                    AbbreviationCase{u"/home/Ada/x"_s, u"/home/ada"_s, u"/home/Ada/x"_s},
                    AbbreviationCase{u""_s, u"/home/ada"_s, u""_s},
                    AbbreviationCase{u"/home/ada"_s, u""_s, u"/home/ada"_s},
                    AbbreviationCase{u"/home/zoë/x"_s, u"/home/zoë"_s, u"~/x"_s},
                    AbbreviationCase{u"/home/🦊/x"_s, u"/home/🦊"_s, u"~/x"_s},
                    // e and a combining accent are one character, which is not the home folder's e.
                    AbbreviationCase{u"/home/ane\u0301"_s, u"/home/ane"_s, u"/home/ane\u0301"_s}));

TEST(HomeFolder, BehindASymbolicLinkHasTwoNames)
{
    const QTemporaryDir folder;
    const QString target = QFileInfo(folder.path()).canonicalFilePath() + u"/var/home/ada"_s;
    ASSERT_TRUE(QDir().mkpath(target));
    ASSERT_TRUE(QFile::link(folder.filePath(u"var/home"_s), folder.filePath(u"home"_s)));
    const QString home = folder.filePath(u"home/ada"_s);

    const QStringList names = HomeFolder::namesOf(home);
    EXPECT_EQ(names, (QStringList{home, target}));
    EXPECT_EQ(HomeFolder::namesOf(target), QStringList{target});
    EXPECT_EQ(HomeFolder::namesOf(u"/nowhere/ada"_s), QStringList{u"/nowhere/ada"_s});

    EXPECT_TRUE(HomeFolder::holds(names, home + u"/shop"_s));
    EXPECT_TRUE(HomeFolder::holds(names, target + u"/shop"_s));
    EXPECT_FALSE(HomeFolder::holds(names, u"/srv/shop"_s));
    EXPECT_EQ(HomeFolder::abbreviated(home + u"/shop"_s, names), u"~/shop"_s);
    EXPECT_EQ(HomeFolder::abbreviated(target + u"/shop"_s, names), u"~/shop"_s);
    EXPECT_EQ(HomeFolder::abbreviated(target, names), u"~"_s);
    EXPECT_EQ(HomeFolder::abbreviated(u"/srv/shop"_s, names), u"/srv/shop"_s);
}

TEST(HomeFolder, IsThePasswordDatabasesWhateverTheEnvironmentSays)
{
    const QString expected = QString::fromLocal8Bit(getpwuid(getuid())->pw_dir);
    qputenv("HOME", "/nowhere");
    EXPECT_EQ(HomeFolder::path(), expected);
    EXPECT_FALSE(HomeFolder::path().endsWith(u'/'));
}

} // namespace portolan
