// SPDX-License-Identifier: MIT
#include "DisplayText.h"

#include "Printers.h"

#include <gtest/gtest.h>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

struct Case
{
    const char *name;
    QString text;
    QString shown;
};

class DisplayTextLine : public testing::TestWithParam<Case>
{};

TEST_P(DisplayTextLine, Shows)
{
    EXPECT_EQ(DisplayText::line(GetParam().text), GetParam().shown);
    EXPECT_EQ(DisplayText::path(GetParam().text), GetParam().shown); // which differ for long texts only
}

INSTANTIATE_TEST_SUITE_P(
    , DisplayTextLine,
    testing::Values(
        Case{"Nothing", u""_s, u""_s}, Case{"Ordinary", u"my-app 2"_s, u"my-app 2"_s},
        Case{"Markup", u"<b>&amp;</b>"_s, u"<b>&amp;</b>"_s},
        Case{"LineBreaks", u"a\nb\rc\u2028d\u2029e"_s, u"a\uFFFDb\uFFFDc\uFFFDd\uFFFDe"_s},
        Case{"Controls", u"a\tb\u0007c\u001Bd\u0085e\u007Ff"_s, u"a\uFFFDb\uFFFDc\uFFFDd\uFFFDe\uFFFDf"_s},
        Case{"Nul", u"a"_s + QChar(0) + u"b"_s, u"a\uFFFDb"_s},
        Case{"Overrides", u"\u202Egnp.exe\u202C"_s, u"\uFFFDgnp.exe\uFFFD"_s},
        Case{"Isolates", u"\u2066a\u2067b\u2068c\u2069"_s, u"\uFFFDa\uFFFDb\uFFFDc\uFFFD"_s},
        Case{"Marks", u"\u200Ea\u200Fb\u061Cc"_s, u"\uFFFDa\uFFFDb\uFFFDc"_s},
        Case{"Invisible", u"a\u200Bb\uFEFFc\u00ADd"_s, u"a\uFFFDb\uFFFDc\uFFFDd"_s},
        Case{"Shapeless", u"a\u3164b\u115F\u2800"_s, u"a\uFFFDb\uFFFD\uFFFD"_s},
        Case{"Joiners", u"\u0645\u200C\u0645 \U0001F469\u200D\U0001F4BB"_s,
             u"\u0645\u200C\u0645 \U0001F469\u200D\U0001F4BB"_s},
        Case{"LoneSurrogates", u"a"_s + QChar(0xD800) + u"b"_s + QChar(0xDC00), u"a\uFFFDb\uFFFD"_s},
        Case{"FourAccentsAtMost", u"e\u0301\u0301\u0301\u0301\u0301\u0301!"_s,
             u"e\u0301\u0301\u0301\u0301!"_s},
        Case{"RightToLeft", u"\u05E9\u05DC\u05D5\u05DD"_s, u"\u05E9\u05DC\u05D5\u05DD"_s}),
    [](const auto &row) { return row.param.name; });

TEST(DisplayText, ShortensLongTexts)
{
    const QString most(DisplayText::maxLength, u'a');
    EXPECT_EQ(DisplayText::line(most), most);
    EXPECT_EQ(DisplayText::line(most + u'b'), QString(DisplayText::maxLength - 1, u'a') + u'\u2026');
    EXPECT_EQ(DisplayText::path(most), most);
}

TEST(DisplayText, KeepsBothEndsOfALongPath)
{
    const QString path = u"/home/"_s + QString(9000, u'x') + u"/project"_s;
    const QString shown = DisplayText::path(path);
    EXPECT_EQ(shown.size(), DisplayText::maxLength);
    EXPECT_TRUE(shown.startsWith(u"/home/"_s));
    EXPECT_TRUE(shown.endsWith(u"/project"_s));
    EXPECT_EQ(shown.count(u'\u2026'), 1);
}

TEST(DisplayText, IsolatesTextForASentence)
{
    EXPECT_EQ(DisplayText::isolated(u"\u202Ea"_s), u"\u2068\uFFFDa\u2069"_s);
}

} // namespace

} // namespace portolan
