// SPDX-License-Identifier: MIT
#include "Fonts.h"
#include "Printers.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QScreen>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

namespace portolan {

using namespace Qt::StringLiterals;

// CMakeLists.txt runs these tests at several resolutions, and without a screen.

namespace {

const auto pangram = u"The quick brown fox jumps over the lazy dog 0123456789"_s;

/// The exact width of `text` at `size`, measured at a size so large that rounding to pixels does not matter.
qreal outlineWidth(QFont font, qreal size, const QString &text)
{
    constexpr int large = 1000;
    font.setPixelSize(large);
    return QFontMetricsF(font).horizontalAdvance(text) * size / large;
}

class ScaledText : public testing::Test
{
protected:
    std::unique_ptr<QQuickItem> make(const QString &text, const QFont &font)
    {
        QQmlComponent component(&m_engine);
        component.setData("import Portolan; ScaledText {}", QUrl());
        std::unique_ptr<QObject> object(
            component.createWithInitialProperties({{u"text"_s, text}, {u"font"_s, font}}));
        EXPECT_TRUE(object) << component.errorString().toStdString();
        return std::unique_ptr<QQuickItem>(qobject_cast<QQuickItem *>(object.release()));
    }

private:
    QQmlEngine m_engine;
};

} // namespace

class FontSize : public testing::TestWithParam<double>
{};

TEST_P(FontSize, IsInDeviceIndependentPixels)
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    const qreal dotsPerInch = screen ? screen->logicalDotsPerInchY() : 96;
    for (const QFont &font :
         {Fonts::system(GetParam()), Fonts::monospaced(GetParam()), Fonts::digits(GetParam())}) {
        if (GetParam() == std::floor(GetParam())) {
            EXPECT_EQ(font.pixelSize(), GetParam());
        } else {
            EXPECT_NEAR(font.pointSizeF() * dotsPerInch / 72, GetParam(), 1e-6);
        }
    }
}

TEST_P(FontSize, IsKeptByScaling)
{
    for (const QFont &font : {Fonts::system(GetParam()), Fonts::monospaced(GetParam(), QFont::Medium)}) {
        const QFont whole = Fonts::whole(font);
        EXPECT_EQ(QFontInfo(whole).pixelSize(), whole.pixelSize());
        const qreal drawn = QFontMetricsF(whole).horizontalAdvance(pangram) * Fonts::ratio(font);
        const qreal wanted = outlineWidth(font, GetParam(), pangram);
        // An error of half a pixel would be 3.5 to 6 percent.
        EXPECT_NEAR(drawn / wanted, 1, 0.02) << font.toString().toStdString();
    }
}

TEST_P(FontSize, WholePixelsNeedNoScaling)
{
    const bool whole = GetParam() == std::floor(GetParam());
    EXPECT_EQ(qFuzzyCompare(Fonts::ratio(Fonts::system(GetParam())), 1.0), whole);
}

INSTANTIATE_TEST_SUITE_P(
    AllUsed, FontSize, testing::Values(8.5, 9.0, 10.0, 10.5, 11.0, 11.5, 12.0, 12.5, 13.0, 13.5, 14.0, 15.0),
    [](const auto &size) { return QString::number(size.param).replace(u'.', u'_').toStdString(); });

TEST(Fonts, AreTheDesktopsOwn)
{
    EXPECT_EQ(Fonts::system(12).families(), QFontDatabase::systemFont(QFontDatabase::GeneralFont).families());
    EXPECT_EQ(Fonts::digits(12).families(), QFontDatabase::systemFont(QFontDatabase::GeneralFont).families());
    EXPECT_EQ(Fonts::monospaced(12).families(),
              QFontDatabase::systemFont(QFontDatabase::FixedFont).families());
}

TEST(Fonts, HaveWeightAndTracking)
{
    const QFont font = Fonts::system(10, QFont::DemiBold, 0.8);
    EXPECT_EQ(font.weight(), QFont::DemiBold);
    EXPECT_EQ(font.letterSpacingType(), QFont::AbsoluteSpacing);
    EXPECT_NEAR(font.letterSpacing(), 0.8, 1.0 / 64);
    EXPECT_EQ(Fonts::system(10).weight(), QFont::Normal);
    EXPECT_EQ(Fonts::system(10).letterSpacing(), 0);
}

TEST(Fonts, TrackingIsInPixels)
{
    const QString text = u"SERVICES"_s;
    const qreal plain = QFontMetricsF(Fonts::system(10)).horizontalAdvance(text);
    const qreal tracked = QFontMetricsF(Fonts::system(10, QFont::Normal, 0.8)).horizontalAdvance(text);
    EXPECT_NEAR(tracked - plain, 0.8 * text.size(), 0.5);
}

TEST(Fonts, DigitsHaveEqualWidths)
{
    const QFontMetricsF metrics(Fonts::digits(10, QFont::Medium));
    for (const QChar digit : u"123456789"_s)
        EXPECT_EQ(metrics.horizontalAdvance(digit), metrics.horizontalAdvance(u'0')) << digit.digitValue();
}

TEST_F(ScaledText, HasTheSizeOfItsFont)
{
    for (const qreal size : {8.5, 10.5, 11.5, 13.5}) {
        const auto item = make(pangram, Fonts::system(size));
        EXPECT_NEAR(item->implicitWidth() / outlineWidth(Fonts::system(size), size, pangram), 1, 0.02)
            << size;
        EXPECT_LT(item->implicitHeight(), make(pangram, Fonts::system(size + 2))->implicitHeight()) << size;
    }
}

TEST_F(ScaledText, IsNotElidedAtItsImplicitWidth)
{
    QString text;
    for (const QChar character : pangram) {
        text += character;
        for (const qreal size : {8.5, 11.5, 13.5}) {
            const auto item = make(text, Fonts::system(size, QFont::DemiBold));
            item->setProperty("elide", Qt::ElideRight);
            EXPECT_FALSE(item->property("truncated").toBool()) << text.toStdString() << " at " << size;
        }
    }
}

TEST_F(ScaledText, IsElidedAtLessWidth)
{
    const auto item = make(pangram, Fonts::system(13.5));
    item->setProperty("elide", Qt::ElideRight);
    item->setWidth(item->implicitWidth() - 4);
    EXPECT_TRUE(item->property("truncated").toBool());
}

} // namespace portolan
