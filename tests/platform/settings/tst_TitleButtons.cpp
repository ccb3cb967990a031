// SPDX-License-Identifier: MIT
#include "TitleButtons.h"
#include "XSettings.h"

#include <gtest/gtest.h>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

const QString minimize = u"minimize"_s;
const QString maximize = u"maximize"_s;
const QString close = u"close"_s;

} // namespace

TEST(TitleButtons, AreAllAtTheRightUnlessTheDesktopSaysOtherwise)
{
    EXPECT_EQ(TitleButtons(), (TitleButtons{{}, {minimize, maximize, close}}));
}

TEST(TitleButtons, ReadsALayout)
{
    const auto read = TitleButtons::fromLayout;
    EXPECT_EQ(read(u"menu:minimize,maximize,close"_s), TitleButtons());
    EXPECT_EQ(read(u"appmenu:close"_s), (TitleButtons{{}, {close}}));
    EXPECT_EQ(read(u"close,minimize,maximize:"_s), (TitleButtons{{close, minimize, maximize}, {}}));
    EXPECT_EQ(read(u"close,minimize:icon,spacer,maximize"_s), (TitleButtons{{close, minimize}, {maximize}}));
    EXPECT_EQ(read(u":"_s), (TitleButtons{{}, {}}));
    EXPECT_EQ(read(u"close"_s), (TitleButtons{{close}, {}}));
}

TEST(TitleButtons, ReadsLetters)
{
    EXPECT_EQ(TitleButtons::fromLetters(u"MS"_s, u"HIAX"_s), TitleButtons());
    EXPECT_EQ(TitleButtons::fromLetters(u"XIA"_s, u"M_"_s), (TitleButtons{{close, minimize, maximize}, {}}));
}

namespace {

// A text of each kind, and a colour, as a settings daemon in `order` (0: little endian) writes them.
QByteArray settings(bool isBigEndian)
{
    const auto number = [isBigEndian](quint32 value, int bytes) {
        QByteArray result;
        for (int i = 0; i < bytes; ++i)
            result.append(char(value >> 8 * (isBigEndian ? bytes - 1 - i : i)));
        return result;
    };
    const auto name = [&](int type, const QByteArray &text) {
        const QByteArray padding((4 - text.size() % 4) % 4, '\0');
        return QByteArray(1, char(type)) + '\0' + number(text.size(), 2) + text + padding + number(7, 4);
    };
    return QByteArray(1, char(isBigEndian)) + QByteArray(3, '\0') + number(99, 4) + number(3, 4) +
           name(2, "Gtk/Color") + QByteArray(8, 'x') + name(0, "Net/DoubleClickTime") + number(250, 4) +
           name(1, "Gtk/DecorationLayout") + number(6, 4) + ":close" + QByteArray(2, '\0');
}

} // namespace

TEST(XSettings, ReadsNumbersAndTextsInEitherByteOrder)
{
    for (const bool isBigEndian : {false, true}) {
        const QVariantHash found = XSettings::parse(settings(isBigEndian));
        EXPECT_EQ(found.value(u"Net/DoubleClickTime"_s), 250);
        EXPECT_EQ(found.value(u"Gtk/DecorationLayout"_s), u":close"_s);
    }
}

TEST(XSettings, EndsAtWhatIsMalformed)
{
    const QByteArray whole = settings(false);
    for (qsizetype size = 0; size < whole.size() - 2; ++size)
        EXPECT_LT(XSettings::parse(whole.first(size)).size(), 3) << size;
    QByteArray huge = whole;
    huge[8] = huge[9] = huge[10] = huge[11] = '\xff'; // the number of settings
    EXPECT_EQ(XSettings::parse(huge).size(), 3);
}

} // namespace portolan
