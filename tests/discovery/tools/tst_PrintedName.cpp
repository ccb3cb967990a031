#include "Lsof_p.h"
#include "PrintedName.h"
#include "Printers.h"

#include <gtest/gtest.h>

namespace portolan {

using namespace Qt::StringLiterals;

class PrintedNames : public testing::TestWithParam<QString>
{};

TEST_P(PrintedNames, ArePlainAgain)
{
    const QString printed = QString::fromStdString(Lsof::escaped(GetParam().toStdString()));
    EXPECT_EQ(PrintedName::plain(printed), GetParam()) << printed.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Names, PrintedNames,
                         testing::Values(u"/home/ada/my shop"_s, u"/tmp/bob's \"dir\" \\x"_s,
                                         u"/a\nb\tc\rd"_s, u"/\b\f"_s, u"/größe/🦊"_s, u"/two\\\\"_s,
                                         u"/back\\n"_s, u"/\u009b1m"_s, u"/caret^["_s, u""_s));

TEST(PrintedName, KeepsWhatIsNoEscape)
{
    for (const QString &text :
         {u"\\"_s, u"a\\"_s, u"\\y"_s, u"\\x"_s, u"\\x4"_s, u"\\xg0"_s, u"^["_s, u"\\x-1"_s})
        EXPECT_EQ(PrintedName::plain(text), text);
    EXPECT_EQ(PrintedName::plain(u"\\x41"_s), u"A"_s);
}

} // namespace portolan
