// SPDX-License-Identifier: MIT
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

TEST(DesktopEntry, UsesTheLastLineWithAKey)
{
    EXPECT_EQ(DesktopEntry("[Desktop Entry]\nHidden=true\nHidden=false\n").value("Hidden"), "false");
    EXPECT_EQ(DesktopEntry("[Desktop Entry]\r\nHidden=false\r\nHidden=true").value("Hidden"), "true");
}

TEST(DesktopEntry, IsEmptyWithoutItsGroup)
{
    for (const QByteArray &text :
         {QByteArray(), QByteArray("\n\n"), QByteArray("Hidden=true\n"), QByteArray("[Other]\nHidden=true\n"),
          QByteArray("[Desktop Entry]\n=true\n")})
        EXPECT_EQ(DesktopEntry(text).value("Hidden"), std::nullopt) << text.toStdString();
}

struct TextCase
{
    QString text;
    QByteArray value;
};

class TextValue : public testing::TestWithParam<TextCase>
{};

TEST_P(TextValue, IsEscapedAndUnescaped)
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

TEST(DesktopEntry, KeepsUnknownEscapes)
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

TEST_P(ExecValue, IsWrittenAndParsed)
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

TEST(DesktopEntry, TakesTheFirstWordOfACommandLine)
{
    EXPECT_EQ(DesktopEntry::programOf(""), u""_s);
    EXPECT_EQ(DesktopEntry::programOf("portolan"), u"portolan"_s);
    EXPECT_EQ(DesktopEntry::programOf("  portolan  -x"), u"portolan"_s);
    EXPECT_EQ(DesktopEntry::programOf("\"/a b/p\""), u"/a b/p"_s);
    EXPECT_EQ(DesktopEntry::programOf("\"unfinished"), u"unfinished"_s);
    EXPECT_EQ(DesktopEntry::programOf("\"a\\\\"), u"a\\"_s);
}

} // namespace portolan
