#include "HomeFolder.h"
#include "Printers.h"

#include <QDir>

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
    EXPECT_EQ(HomeFolder::abbreviated(GetParam().folder, GetParam().home), GetParam().result);
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

TEST(HomeFolder, IsThePasswordDatabasesWhateverTheEnvironmentSays)
{
    const QString expected = QString::fromLocal8Bit(getpwuid(getuid())->pw_dir);
    qputenv("HOME", "/nowhere");
    EXPECT_EQ(HomeFolder::path(), expected);
    EXPECT_FALSE(HomeFolder::path().endsWith(u'/'));
}

} // namespace portolan
