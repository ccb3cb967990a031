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
    return tinted(
        SymbolSet::image(symbol.name(), side, SymbolSet::stroke(symbol.size(), symbol.weight(), scale)),
        symbol.color());
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
    EXPECT_EQ(symbol->name(), u"pin.fill"_s);
    EXPECT_EQ(symbol->size(), 8.5);
    EXPECT_EQ(symbol->weight(), QFont::DemiBold);
    EXPECT_EQ(symbol->color(), QColor(59, 130, 246));
}

TEST(Symbol, EmitsEachChangeOnce)
{
    Symbol symbol;
    QSignalSpy changes(&symbol, &Symbol::changed);
    for (int i = 0; i < 2; ++i) {
        symbol.setName(u"clock"_s);
        symbol.setSize(9);
        symbol.setWeight(QFont::Medium);
        symbol.setColor(Qt::red);
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
        symbol.setSize(size);
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
    symbol.setName(u"doc.on.doc"_s);
    symbol.setSize(GetParam());
    symbol.setWeight(QFont::DemiBold);
    symbol.setColor(QColor(143, 143, 143));
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
    symbol.setName(u"power"_s);
    symbol.setSize(GetParam());
    symbol.setColor(Qt::white);
    window.put(symbol, {4, 4});
    symbol.setSize(GetParam());
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
    symbol.setName(u"clock"_s);
    symbol.setColor(Qt::white);
    window.put(symbol, {4, 4});
    QImage last = window.pixels();
    const auto changed = [&] {
        const QImage before = std::exchange(last, window.pixels());
        return before != last && window.expected(drawn(symbol, window.scale()), {4, 4}).contains(last);
    };
    symbol.setName(u"folder"_s);
    EXPECT_TRUE(changed());
    symbol.setColor(Qt::green);
    EXPECT_TRUE(changed());
    symbol.setSize(26);
    window.put(symbol, {4, 4});
    EXPECT_TRUE(changed());
    symbol.setWeight(QFont::DemiBold);
    EXPECT_TRUE(changed());
}

TEST(Symbol, ShowsTranslucentColours)
{
    TestWindow window(Qt::black);
    Symbol symbol;
    symbol.setName(u"stop.fill"_s);
    symbol.setSize(26);
    symbol.setColor(QColor(255, 255, 255, 51));
    window.put(symbol, {0, 0});
    const int middle = int(18 * window.scale());
    EXPECT_EQ(window.pixels().pixelColor(middle, middle), QColor(51, 51, 51));
}

TEST(Symbol, ShowsNothingForAnUnknownName)
{
    TestWindow window(Qt::black);
    const QImage empty = window.pixels();
    Symbol symbol;
    symbol.setColor(Qt::white);
    window.put(symbol, {4, 4});
    for (const QString &name : {u""_s, u"no.such.symbol"_s, u"../qmldir"_s, u"clock.svg"_s}) {
        symbol.setName(u"clock"_s);
        EXPECT_NE(window.pixels(), empty);
        symbol.setName(name);
        EXPECT_EQ(window.pixels(), empty) << name.toStdString();
        EXPECT_EQ(symbol.implicitWidth(), SymbolSet::box(symbol.size()));
    }
}

} // namespace portolan
