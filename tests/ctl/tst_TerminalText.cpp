// SPDX-License-Identifier: MIT
#include "Printers.h"
#include "TerminalText.h"

#include <gtest/gtest.h>

namespace portolan {

using namespace Qt::StringLiterals;

struct HarmlessCase
{
    const char *name;
    QString text;
    QString harmless;
};

class HarmlessText : public testing::TestWithParam<HarmlessCase>
{};

TEST_P(HarmlessText, Is)
{
    EXPECT_EQ(TerminalText::harmless(GetParam().text), GetParam().harmless);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, HarmlessText,
    testing::Values(HarmlessCase{"Empty", u""_s, u""_s}, HarmlessCase{"Plain", u"My shop"_s, u"My shop"_s},
                    HarmlessCase{"Umlauts", u"Größe ñ Ω 日本 שלום"_s, u"Größe ñ Ω 日本 שלום"_s},
                    HarmlessCase{"Emoji", u"👩‍💻 🚀"_s, u"👩‍💻 🚀"_s},
                    HarmlessCase{"EscapeSequence", u"a\x1b[31mb"_s, u"a␛[31mb"_s},
                    HarmlessCase{"TitleSequence", u"\x1b]0;x\x07"_s, u"␛]0;x␇"_s},
                    HarmlessCase{"LineBreaks", u"a\r\nb\tc"_s, u"a␍␊b␉c"_s},
                    HarmlessCase{"Nul", QString(QChar(0)), u"␀"_s}, HarmlessCase{"Delete", u"\x7f"_s, u"␡"_s},
                    HarmlessCase{"C1Introducer", u"a\u009b31mb"_s, u"a\ufffd31mb"_s},
                    HarmlessCase{"NextLine", u"\u0085"_s, u"\ufffd"_s},
                    HarmlessCase{"LineSeparators", u"a\u2028b\u2029c"_s, u"a\ufffdb\ufffdc"_s},
                    HarmlessCase{"BidiOverride", u"\u202egpj.exe\u202c"_s, u"\ufffdgpj.exe\ufffd"_s},
                    HarmlessCase{"BidiIsolates", u"\u2066a\u2069\u200e\u200f\u061c"_s,
                                 u"\ufffda\ufffd\ufffd\ufffd\ufffd"_s},
                    HarmlessCase{"ZeroWidthSpace", u"a\u200bb\ufeff"_s, u"a\ufffdb\ufffd"_s},
                    HarmlessCase{"Shapeless", u"a\u3164b\u115F\u2800"_s, u"a\uFFFDb\uFFFD\uFFFD"_s},
                    HarmlessCase{"SoftHyphen", u"a\u00adb"_s, u"a\ufffdb"_s},
                    HarmlessCase{"LoneSurrogate", u"a"_s + QChar(0xD800) + u'b', u"a\ufffdb"_s},
                    HarmlessCase{"NonCharacter", u"a"_s + QChar(0xFFFE), u"a\ufffd"_s},
                    HarmlessCase{"LanguageTag", u"\U000E0041"_s, u"\ufffd"_s}),
    [](const auto &row) { return std::string(row.param.name); });

// All control and format characters and line breaks of Unicode, noncharacters, and characters that change the
// direction of text. Only the joiners stay: emoji and some scripts need them.
TEST(HarmlessText, HoldsNothingThatATerminalMightObey)
{
    int replaced = 0;
    for (char32_t character = 0; character <= QChar::LastValidCodePoint; ++character) {
        const QChar::Category category = QChar::category(character);
        const QChar::Direction direction = QChar::direction(character);
        const bool isControl = category == QChar::Other_Control || category == QChar::Other_Format ||
                               category == QChar::Other_Surrogate || category == QChar::Separator_Line ||
                               category == QChar::Separator_Paragraph;
        const bool isBidi =
            (direction >= QChar::DirLRE && direction <= QChar::DirPDF && direction != QChar::DirAL) ||
            (direction >= QChar::DirLRI && direction <= QChar::DirPDI);
        if ((!isControl && !isBidi && !QChar::isNonCharacter(character)) || character == 0x200C ||
            character == 0x200D)
            continue;
        const QString text = TerminalText::harmless(QString::fromUcs4(&character, 1));
        EXPECT_FALSE(text.toUcs4().contains(uint(character))) << std::hex << uint(character);
        for (const uint shown : text.toUcs4())
            EXPECT_TRUE(shown == QChar::ReplacementCharacter || (shown >= 0x2400 && shown <= 0x2421));
        ++replaced;
    }
    EXPECT_GT(replaced, 2000);
}

struct WidthCase
{
    QString text;
    int width;
};

class TextWidth : public testing::TestWithParam<WidthCase>
{};

TEST_P(TextWidth, IsCountedInColumns)
{
    EXPECT_EQ(TerminalText::width(GetParam().text), GetParam().width) << GetParam().text.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Rows, TextWidth,
                         testing::Values(WidthCase{u""_s, 0}, WidthCase{u"abc"_s, 3},
                                         WidthCase{u"Größe"_s, 5}, WidthCase{u"日本"_s, 4},
                                         WidthCase{u"ｆｕｌｌ"_s, 8}, WidthCase{u"🚀"_s, 2},
                                         WidthCase{u"e\u0301"_s, 1}, WidthCase{u"한글"_s, 4},
                                         WidthCase{u"·—…"_s, 3}, WidthCase{u"␛\ufffd"_s, 2}));

TEST(ElidedText, IsWholeWhereItFits)
{
    EXPECT_EQ(TerminalText::elided(u"shop", 4), u"shop"_s);
    EXPECT_EQ(TerminalText::elidedInTheMiddle(u"~/shop", 6), u"~/shop"_s);
}

TEST(ElidedText, LosesItsEnd)
{
    EXPECT_EQ(TerminalText::elided(u"frontend", 5), u"fron…"_s);
    EXPECT_EQ(TerminalText::elided(u"frontend", 1), u"…"_s);
    EXPECT_EQ(TerminalText::elided(u"frontend", 0), u""_s);
}

TEST(ElidedText, LosesTheMiddleOfAPath)
{
    EXPECT_EQ(TerminalText::elidedInTheMiddle(u"~/dev/customers/acme/shop", 13), u"~/de…cme/shop"_s);
    EXPECT_EQ(TerminalText::elidedInTheMiddle(u"~/dev/customers/acme/shop", 1), u"…"_s);
    EXPECT_EQ(TerminalText::elidedInTheMiddle(u"~/dev/customers/acme/shop", 0), u""_s);
}

TEST(ElidedText, NeverDividesACharacterNorTakesMoreRoom)
{
    const QString text = u"日本e\u0301👩‍💻語の長い名前"_s;
    for (int columns = 0; columns < 24; ++columns) {
        for (const QString &elided :
             {TerminalText::elided(text, columns), TerminalText::elidedInTheMiddle(text, columns)}) {
            EXPECT_LE(TerminalText::width(elided), columns);
            EXPECT_FALSE(elided.contains(QChar::ReplacementCharacter));
            EXPECT_FALSE(elided.startsWith(QChar(0x301)) || elided.contains(u"…\u0301"_s))
                << elided.toStdString();
        }
    }
}

} // namespace portolan
