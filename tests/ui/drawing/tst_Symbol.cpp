// SPDX-License-Identifier: MIT
#include "Printers.h"
#include "Symbol.h"
#include "SymbolSet.h"
#include "TestWindow.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <memory>

namespace portolan {

using namespace Qt::StringLiterals;

// CMakeLists.txt runs these tests at several device pixel ratios.

namespace {

QImage tinted(QImage image, const QColor &color)
{
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    return image;
}

QImage drawn(const Symbol &symbol, qreal scale)
{
    const int side = qRound(symbol.implicitWidth() * scale);
    const qreal stroke =
        SymbolSet::stroke(symbol.property("size").toReal(), symbol.property("weight").toInt(), scale);
    return tinted(SymbolSet::image(symbol.property("name").toString(), side, stroke),
                  symbol.property("color").value<QColor>());
}

} // namespace

TEST(Symbol, IsRegisteredWithQml)
{
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData("import QtQuick\n"
                      "import Portolan\n"
                      "Symbol { name: 'pin.fill'; size: 8.5; weight: Font.DemiBold; color: Theme.accent }",
                      QUrl());
    const std::unique_ptr<QObject> object(component.create());
    const auto *symbol = qobject_cast<Symbol *>(object.get());
    ASSERT_TRUE(symbol) << component.errorString().toStdString();
    EXPECT_EQ(symbol->property("name"), u"pin.fill"_s);
    EXPECT_EQ(symbol->property("size"), 8.5);
    EXPECT_EQ(symbol->property("weight"), QFont::DemiBold);
    EXPECT_EQ(symbol->property("color"), QColor(59, 130, 246));
}

TEST(Symbol, EmitsEachChangeOnce)
{
    Symbol symbol;
    QSignalSpy changes(&symbol, &Symbol::changed);
    for (int i = 0; i < 2; ++i) {
        symbol.setProperty("name", u"clock"_s);
        symbol.setProperty("size", 9);
        symbol.setProperty("weight", QFont::Medium);
        symbol.setProperty("color", QColor(Qt::red));
    }
    EXPECT_EQ(changes.count(), 4);
}

TEST(Symbol, HasAnImplicitSize)
{
    Symbol symbol;
    for (const auto &[size, side] : {std::pair(8.5, 12),
                                     {9.0, 12},
                                     {11.0, 16},
                                     {11.5, 16},
                                     {12.0, 16},
                                     {12.5, 16},
                                     {15.0, 20},
                                     {26.0, 36}}) {
        symbol.setProperty("size", size);
        EXPECT_EQ(symbol.implicitWidth(), side) << size;
        EXPECT_EQ(symbol.implicitHeight(), side) << size;
    }
}

class SymbolInWindow : public testing::TestWithParam<double>
{};

TEST_P(SymbolInWindow, IsDrawnWithoutScalingAtAnyPosition)
{
    TestWindow window(QColor(10, 10, 10));
    Symbol symbol;
    symbol.setProperty("name", u"doc.on.doc"_s);
    symbol.setProperty("size", GetParam());
    symbol.setProperty("weight", QFont::DemiBold);
    symbol.setProperty("color", QColor(143, 143, 143));
    for (const QPointF &position : {QPointF(0, 0), QPointF(1, 2), QPointF(3, 5), QPointF(6, 7),
                                    QPointF(10.5, 9.5), QPointF(20.3, 11.7)}) {
        window.put(symbol, position);
        EXPECT_TRUE(window.expected(drawn(symbol, window.scale()), position).contains(window.pixels()))
            << position.x() << ", " << position.y();
    }
}

TEST_P(SymbolInWindow, IsCentredInALargerItem)
{
    TestWindow window(QColor(10, 10, 10));
    Symbol symbol;
    symbol.setProperty("name", u"power"_s);
    symbol.setProperty("size", GetParam());
    symbol.setProperty("color", QColor(Qt::white));
    window.put(symbol, {4, 4});
    symbol.setWidth(symbol.implicitWidth() + 12);
    symbol.setHeight(symbol.implicitHeight() + 8);
    EXPECT_TRUE(window.expected(drawn(symbol, window.scale()), {10, 8}).contains(window.pixels()));
}

INSTANTIATE_TEST_SUITE_P(Sizes, SymbolInWindow, testing::Values(8.5, 9, 11.5, 12.5, 15, 26),
                         [](const auto &size) {
                             return QString::number(size.param).replace(u'.', u'_').toStdString();
                         });

TEST(Symbol, UpdatesWithItsProperties)
{
    TestWindow window(Qt::black);
    Symbol symbol;
    symbol.setProperty("name", u"clock"_s);
    symbol.setProperty("color", QColor(Qt::white));
    window.put(symbol, {4, 4});
    QImage last = window.pixels();
    const auto changed = [&] {
        const QImage before = std::exchange(last, window.pixels());
        return before != last && window.expected(drawn(symbol, window.scale()), {4, 4}).contains(last);
    };
    symbol.setProperty("name", u"folder"_s);
    EXPECT_TRUE(changed());
    symbol.setProperty("color", QColor(Qt::green));
    EXPECT_TRUE(changed());
    symbol.setProperty("size", 26);
    window.put(symbol, {4, 4});
    EXPECT_TRUE(changed());
    symbol.setProperty("weight", QFont::DemiBold);
    EXPECT_TRUE(changed());
}

TEST(Symbol, ShowsTranslucentColours)
{
    TestWindow window(Qt::black);
    Symbol symbol;
    symbol.setProperty("name", u"stop.fill"_s);
    symbol.setProperty("size", 26);
    symbol.setProperty("color", QColor(255, 255, 255, 51));
    window.put(symbol, {0, 0});
    const int middle = int(18 * window.scale());
    EXPECT_EQ(window.pixels().pixelColor(middle, middle), QColor(51, 51, 51));
}

TEST(Symbol, ShowsNothingForAnUnknownName)
{
    TestWindow window(Qt::black);
    const QImage empty = window.pixels();
    Symbol symbol;
    symbol.setProperty("color", QColor(Qt::white));
    window.put(symbol, {4, 4});
    for (const QString &name : {u""_s, u"no.such.symbol"_s, u"../qmldir"_s, u"clock.svg"_s}) {
        symbol.setProperty("name", u"clock"_s);
        EXPECT_NE(window.pixels(), empty);
        symbol.setProperty("name", name);
        EXPECT_EQ(window.pixels(), empty) << name.toStdString();
        EXPECT_EQ(symbol.implicitWidth(), SymbolSet::box(symbol.property("size").toReal()));
    }
}

} // namespace portolan
