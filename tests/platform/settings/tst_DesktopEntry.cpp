#include "DesktopEntry.h"
#include "Printers.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

constexpr auto full = "# made by hand\n"
                      "[Desktop Entry]\n"
                      "Name=Portolan\n"
                      "Name[de]=Hafenbuch\n"
                      "# Exec=commented out\n"
                      " Exec = portolan --background \n"
                      "X-Mine=1;2;\n"
                      "\n"
                      "[Desktop Action quit]\n"
                      "Exec=portolan quit\n"
                      "X-GNOME-Autostart-enabled=false\n";

} // namespace

TEST(DesktopEntry, ReadsTheMainGroupOnly)
{
    const DesktopEntry entry(full);
    EXPECT_EQ(entry.value("Name"), "Portolan");
    EXPECT_EQ(entry.value("Name[de]"), "Hafenbuch");
    EXPECT_EQ(entry.value("Exec"), "portolan --background");
    EXPECT_EQ(entry.list("X-Mine"), (QList<QByteArray>{"1", "2"}));
    EXPECT_EQ(entry.value("X-GNOME-Autostart-enabled"), std::nullopt);
    EXPECT_EQ(entry.value("exec"), std::nullopt);
    EXPECT_EQ(entry.value("# Exec"), std::nullopt);
}

TEST(DesktopEntry, StaysAsItIsToTheByte)
{
    for (const QByteArray &text :
         {QByteArray(full), QByteArray("[Desktop Entry]\r\nA=1\r\n"), QByteArray("no newline"), QByteArray(),
          QByteArray("\n\n"), QByteArray("[Desktop Entry]\nA=\xff\xfe\n")})
        EXPECT_EQ(DesktopEntry(text).text(), text);
}

TEST(DesktopEntry, ChangesOneLineOnly)
{
    DesktopEntry entry(full);
    entry.set("Exec", "/usr/bin/portolan");
    EXPECT_EQ(entry.text(),
              QByteArray(full).replace(" Exec = portolan --background \n", "Exec=/usr/bin/portolan\n"));
}

TEST(DesktopEntry, AddsAtTheEndOfTheMainGroup)
{
    DesktopEntry entry(full);
    entry.set("Hidden", "true");
    EXPECT_EQ(entry.text(), QByteArray(full).replace("X-Mine=1;2;\n", "X-Mine=1;2;\nHidden=true\n"));
    EXPECT_TRUE(entry.isTrue("Hidden"));
    entry.remove("Hidden");
    EXPECT_EQ(entry.text(), full);
}

struct NewKeyCase
{
    QByteArray before;
    QByteArray after;
};

class NewKey : public testing::TestWithParam<NewKeyCase>
{};

TEST_P(NewKey, FindsItsPlace)
{
    DesktopEntry entry(GetParam().before);
    entry.set("K", "v");
    EXPECT_EQ(entry.text(), GetParam().after);
    EXPECT_EQ(entry.value("K"), "v");
}

INSTANTIATE_TEST_SUITE_P(Texts, NewKey,
                         testing::Values(NewKeyCase{"", "[Desktop Entry]\nK=v\n"},
                                         NewKeyCase{"# x\n", "# x\n[Desktop Entry]\nK=v\n"},
                                         NewKeyCase{"# x", "# x\n[Desktop Entry]\nK=v\n"},
                                         NewKeyCase{"[Other]\nK=1\n", "[Other]\nK=1\n[Desktop Entry]\nK=v\n"},
                                         NewKeyCase{"[Desktop Entry]", "[Desktop Entry]\nK=v"},
                                         NewKeyCase{"[Desktop Entry]\n\n\n[B]\n",
                                                    "[Desktop Entry]\nK=v\n\n\n[B]\n"},
                                         NewKeyCase{"[Desktop Entry]\nA=1", "[Desktop Entry]\nA=1\nK=v"}));

TEST(DesktopEntry, LetsTheLastOfSeveralLinesCount)
{
    DesktopEntry entry("[Desktop Entry]\nHidden=true\nHidden=false\n");
    EXPECT_FALSE(entry.isTrue("Hidden"));
    entry.set("Hidden", "true");
    EXPECT_EQ(entry.text(), "[Desktop Entry]\nHidden=true\nHidden=true\n");
    entry.remove("Hidden");
    EXPECT_EQ(entry.text(), "[Desktop Entry]\n");
}

struct TextCase
{
    QString text;
    QByteArray value;
};

class TextValue : public testing::TestWithParam<TextCase>
{};

TEST_P(TextValue, IsEscapedAndBack)
{
    EXPECT_EQ(DesktopEntry::escaped(GetParam().text), GetParam().value);
    EXPECT_EQ(DesktopEntry::unescaped(GetParam().value), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Texts, TextValue,
                         testing::Values(TextCase{u"/usr/bin/portolan"_s, "/usr/bin/portolan"},
                                         TextCase{u""_s, ""}, TextCase{u"/a b"_s, "/a b"},
                                         TextCase{u" a"_s, "\\sa"}, TextCase{u"a\\b"_s, "a\\\\b"},
                                         TextCase{u"a\nb\tc\rd"_s, "a\\nb\\tc\\rd"},
                                         TextCase{u"\\n"_s, "\\\\n"}, TextCase{u"größe"_s, "größe"}));

TEST(DesktopEntry, LeavesUnknownEscapesAlone)
{
    EXPECT_EQ(DesktopEntry::unescaped("a\\qb\\"), u"a\\qb\\"_s);
}

struct ExecCase
{
    QString program;
    QByteArray value;
};

class ExecValue : public testing::TestWithParam<ExecCase>
{};

TEST_P(ExecValue, NamesTheProgramAndBack)
{
    EXPECT_EQ(DesktopEntry::exec(GetParam().program, {u"--background"_s}),
              GetParam().value + " --background");
    EXPECT_EQ(DesktopEntry::programOf(GetParam().value + " --background"), GetParam().program);
}

INSTANTIATE_TEST_SUITE_P(
    Paths, ExecValue,
    testing::Values(ExecCase{u"/usr/bin/portolan"_s, "/usr/bin/portolan"},
                    ExecCase{u"/my dir/portolan"_s, R"("/my dir/portolan")"},
                    ExecCase{u"/100%/p"_s, "/100%%/p"}, ExecCase{u"/it's/p"_s, R"("/it's/p")"},
                    ExecCase{u"/a\"b/p"_s, R"("/a\\"b/p")"}, ExecCase{u"/a$b/p"_s, R"("/a\\$b/p")"},
                    ExecCase{u"/a`b/p"_s, R"("/a\\`b/p")"}, ExecCase{u"/a\\b/p"_s, R"("/a\\\\b/p")"},
                    ExecCase{u"/größe/p"_s, "/größe/p"}, ExecCase{u"/a\nb/p"_s, R"("/a\nb/p")"}));

TEST(DesktopEntry, TakesTheFirstWordOfAnyCommandLine)
{
    EXPECT_EQ(DesktopEntry::programOf(""), u""_s);
    EXPECT_EQ(DesktopEntry::programOf("portolan"), u"portolan"_s);
    EXPECT_EQ(DesktopEntry::programOf("  portolan  -x"), u"portolan"_s);
    EXPECT_EQ(DesktopEntry::programOf("\"/a b/p\""), u"/a b/p"_s);
    EXPECT_EQ(DesktopEntry::programOf("\"unfinished"), u"unfinished"_s);
    EXPECT_EQ(DesktopEntry::programOf("\"a\\\\"), u"a\\"_s);
}

} // namespace portolan
