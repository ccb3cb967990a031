// SPDX-License-Identifier: MIT
#include "PrintedName.h"
#include "Printers.h"

#include <gtest/gtest.h>

namespace portolan {

using namespace Qt::StringLiterals;

struct PrintedRow
{
    QByteArray name;
    QByteArray printed;
};

class PrintedNames : public testing::TestWithParam<PrintedRow>
{};

TEST_P(PrintedNames, AreLsofsOwn)
{
    EXPECT_EQ(PrintedName::of(GetParam().name).toUtf8(), GetParam().printed);
}

// What lsof 4.95 printed for processes of these names.
INSTANTIATE_TEST_SUITE_P(
    Names, PrintedNames,
    testing::Values(PrintedRow{"node", "node"}, PrintedRow{"", ""}, PrintedRow{" a  b ", " a  b "},
                    PrintedRow{"next-server (v1", "next-server (v1"}, PrintedRow{"a^b%s\"'", "a^b%s\"'"},
                    PrintedRow{"a\nb", "a\\nb"}, PrintedRow{"a\tb", "a\\tb"}, PrintedRow{"a\rb", "a\\rb"},
                    PrintedRow{"a\bb", "a\\bb"}, PrintedRow{"a\fb", "a\\fb"}, PrintedRow{"a\\b", "a\\\\b"},
                    PrintedRow{"a\x01z", "a^Az"}, PrintedRow{"a\vb", "a^Kb"}, PrintedRow{"a\x1b[b", "a^[[b"},
                    PrintedRow{"a\x7fz", "a\\x7fz"}, PrintedRow{"caf\xc3\xa9", "caf\xc3\xa9"},
                    PrintedRow{"caf\xe9", "caf\\xe9"}, PrintedRow{"\xff\xfe", "\\xff\\xfe"},
                    PrintedRow{"\xc3", "\\xc3"}, PrintedRow{"\xe6\x97\xa5z", "\xe6\x97\xa5z"},
                    PrintedRow{"\xe6\x97z", "\\xe6\\x97z"}, PrintedRow{"a\xc2\x85z", "a\\xc2\\x85z"},
                    PrintedRow{"\xed\xa0\x80x", "\\xed\\xa0\\x80x"},
                    PrintedRow{"\xe2\x80\x8bx", "\xe2\x80\x8bx"},
                    PrintedRow{"\xee\x80\x80x", "\xee\x80\x80x"}));

TEST(PrintedName, CanBeUndone)
{
    for (const QString &name :
         {u"/home/ada/my shop"_s, u"/tmp/bob's \"dir\" \\x"_s, u"/a\nb\tc\rd"_s, u"/\b\f"_s,
          u"/größe/🦊"_s, u"/two\\\\"_s, u"/back\\n"_s, u"/\u009b1m"_s, u"/caret^["_s, u""_s})
        EXPECT_EQ(PrintedName::plain(PrintedName::of(name.toUtf8())), name);
}

TEST(PrintedName, KeepsWhatIsNoEscape)
{
    for (const QString &text :
         {u"\\"_s, u"a\\"_s, u"\\y"_s, u"\\x"_s, u"\\x4"_s, u"\\xg0"_s, u"^["_s, u"\\x-1"_s})
        EXPECT_EQ(PrintedName::plain(text), text);
    EXPECT_EQ(PrintedName::plain(u"\\x41"_s), u"A"_s);
}

} // namespace portolan
