// SPDX-License-Identifier: MIT
#include "Framework.h"
#include "Printers.h"
#include "SymbolSet.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFont>
#include <QRegularExpression>
#include <QSet>

#include <gtest/gtest.h>

#include <cmath>
#include <ostream>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

const QStringList expectedNames{
    u"arrow.clockwise"_s,
    u"arrow.up.right"_s,
    u"atom"_s,
    u"bolt.fill"_s,
    u"checkmark"_s,
    u"chevron.left.forwardslash.chevron.right"_s,
    u"clock"_s,
    u"cpu"_s,
    u"cup.and.saucer.fill"_s,
    u"curlybraces"_s,
    u"doc.on.doc"_s,
    u"ellipsis"_s,
    u"flame.fill"_s,
    u"folder"_s,
    u"gearshape.2.fill"_s,
    u"globe"_s,
    u"hare.fill"_s,
    u"leaf.fill"_s,
    u"macwindow"_s,
    u"magnifyingglass"_s,
    u"memorychip"_s,
    u"minus"_s,
    u"pin.fill"_s,
    u"power"_s,
    u"server.rack"_s,
    u"shield.lefthalf.filled"_s,
    u"shippingbox.fill"_s,
    u"slider.horizontal.3"_s,
    u"sparkles"_s,
    u"square.grid.2x2.fill"_s,
    u"square.on.square"_s,
    u"square.stack.3d.up.fill"_s,
    u"square"_s,
    u"stop.fill"_s,
    u"tram.fill"_s,
    u"wifi.slash"_s,
    u"xmark.circle.fill"_s,
    u"xmark"_s,
};

constexpr int large = 240; // ten pixels to a unit of the grid
constexpr qreal largeStroke = 20;

QString source(const QString &name)
{
    QFile file(u":/qt-project.org/imports/Portolan/symbols/"_s + name + u".svg"_s);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    return QString::fromUtf8(file.readAll());
}

QRect blackBounds(const QImage &image)
{
    QRect bounds;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) > 127)
                bounds |= QRect(x, y, 1, 1);
        }
    }
    return bounds;
}

/// The sum of the alpha of all pixels, in opaque pixels.
qreal coverage(const QImage &image)
{
    qint64 sum = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            sum += qAlpha(image.pixel(x, y));
    }
    return qreal(sum) / 255;
}

} // namespace

TEST(SymbolSet, ContainsExactlyTheExpectedSymbols)
{
    const QDir folder(u":/qt-project.org/imports/Portolan/symbols"_s);
    QStringList files;
    for (const QString &name : expectedNames)
        files << name + u".svg"_s;
    EXPECT_EQ(folder.entryList(QDir::Files, QDir::Name), files);
}

TEST(SymbolSet, ContainsTheSymbolOfEachFramework)
{
    for (const Framework &framework : Framework::allCases())
        EXPECT_TRUE(expectedNames.contains(framework.symbol())) << framework.symbol().toStdString();
}

TEST(SymbolSet, ContainsEachSymbolUsedInAView)
{
    // `name: "x"` of a Symbol and `symbol: a ? "x" : "y"` of what contains one.
    static const QRegularExpression line(uR"(^\s*symbol:.*|\bSymbol\s*\{[^{}]*?\bname:[^\n]*)"_s,
                                         QRegularExpression::MultilineOption);
    static const QRegularExpression text(uR"re("([^"]*)")re"_s);
    QDirIterator files(QStringLiteral(PORTOLAN_VIEWS), {u"*.qml"_s}, QDir::Files,
                       QDirIterator::Subdirectories);
    ASSERT_TRUE(files.hasNext());
    while (files.hasNext()) {
        QFile file(files.next());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        auto lines = line.globalMatch(QString::fromUtf8(file.readAll()));
        while (lines.hasNext()) {
            auto texts = text.globalMatch(lines.next().captured());
            while (texts.hasNext()) {
                const QString name = texts.next().captured(1);
                EXPECT_TRUE(expectedNames.contains(name))
                    << name.toStdString() << " in " << file.fileName().toStdString();
            }
        }
    }
}

TEST(SymbolSet, HasNoImageForAnUnknownName)
{
    EXPECT_TRUE(SymbolSet::image(u"no.such.symbol"_s, 24, 2).isNull());
    EXPECT_TRUE(SymbolSet::image(QString(), 24, 2).isNull());
    EXPECT_TRUE(SymbolSet::image(u"clock"_s, 0, 2).isNull());
}

TEST(SymbolSet, CachesImages)
{
    EXPECT_EQ(SymbolSet::image(u"clock"_s, 24, 2).cacheKey(), SymbolSet::image(u"clock"_s, 24, 2).cacheKey());
    EXPECT_NE(SymbolSet::image(u"clock"_s, 24, 2), SymbolSet::image(u"clock"_s, 24, 3));
}

TEST(SymbolSet, NoTwoSymbolsLookAlike)
{
    for (const int side : {12, 16, 20}) {
        QSet<QByteArray> seen;
        for (const QString &name : expectedNames) {
            const QImage image = SymbolSet::image(name, side, side / 12.0);
            const QByteArray bytes(reinterpret_cast<const char *>(image.constBits()), image.sizeInBytes());
            EXPECT_FALSE(seen.contains(bytes)) << name.toStdString() << " at " << side;
            seen << bytes;
        }
    }
}

class SymbolFile : public testing::TestWithParam<QString>
{};

TEST_P(SymbolFile, HasTheCommonGridStrokeAndColours)
{
    const QString svg = source(GetParam());
    EXPECT_TRUE(svg.startsWith(uR"(<svg xmlns="http://www.w3.org/2000/svg" width="24" height="24" )"
                               uR"(viewBox="0 0 24 24" fill="none" stroke="#000" stroke-width="2" )"
                               uR"(stroke-linecap="round" stroke-linejoin="round">)"));
    static const QRegularExpression paint(uR"re((?:fill|stroke)="([^"]*)")re"_s);
    auto paints = paint.globalMatch(svg);
    while (paints.hasNext())
        EXPECT_TRUE(QStringList({u"none"_s, u"#000"_s, u"#fff"_s}).contains(paints.next().captured(1)));
}

TEST_P(SymbolFile, KeepsAMarginInTheGrid)
{
    const QRect bounds = blackBounds(SymbolSet::image(GetParam(), large, largeStroke));
    EXPECT_GE(bounds.left(), 8);
    EXPECT_GE(bounds.top(), 8);
    EXPECT_LE(bounds.right(), large - 8);
    EXPECT_LE(bounds.bottom(), large - 8);
}

TEST_P(SymbolFile, IsCentred)
{
    const QPointF middle = QRectF(blackBounds(SymbolSet::image(GetParam(), large, largeStroke))).center();
    EXPECT_NEAR(middle.x(), large / 2.0, 10);
    EXPECT_NEAR(middle.y(), large / 2.0, 10);
}

TEST_P(SymbolFile, HasAMinimumSize)
{
    const QRect bounds = blackBounds(SymbolSet::image(GetParam(), large, largeStroke));
    EXPECT_GE(qMax(bounds.width(), bounds.height()), 140);
}

TEST_P(SymbolFile, CoversMoreWithBolderStrokes)
{
    const qreal regular = coverage(SymbolSet::image(GetParam(), 40, 3));
    const qreal bold = coverage(SymbolSet::image(GetParam(), 40, 3.5));
    EXPECT_GT(regular, 0);
    if (source(GetParam()).contains(u"stroke=\"#fff\""_s))
        EXPECT_GE(bold, 0.93 * regular); // the white strokes between the parts widen too
    else
        EXPECT_GE(bold, regular);
}

INSTANTIATE_TEST_SUITE_P(All, SymbolFile, testing::ValuesIn(expectedNames), [](const auto &name) {
    return QString(name.param).replace(u'.', u'_').toStdString();
});

TEST(SymbolBox, IsAWholeNumberOfPixelsAtEveryRatio)
{
    for (qreal size = 6; size <= 40; size += 0.5) {
        for (qreal scale = 1; scale <= 3; scale += 0.25) {
            const qreal pixels = SymbolSet::box(size) * scale;
            EXPECT_EQ(pixels, std::round(pixels)) << size << " at " << scale;
        }
    }
}

TEST(SymbolBox, GrowsWithTheSize)
{
    for (qreal size = 6; size <= 40; size += 0.5) {
        EXPECT_GE(SymbolSet::box(size + 0.5), SymbolSet::box(size));
        EXPECT_NEAR(SymbolSet::box(size), size * 4 / 3, 2);
    }
}

TEST(SymbolStroke, GrowsWithTheWeight)
{
    for (const qreal scale : {1.0, 1.25, 1.5, 2.0}) {
        for (const qreal size : {11.0, 11.5, 12.0, 12.5, 15.0, 26.0}) {
            const qreal regular = SymbolSet::stroke(size, QFont::Normal, scale);
            const qreal medium = SymbolSet::stroke(size, QFont::Medium, scale);
            const qreal semibold = SymbolSet::stroke(size, QFont::DemiBold, scale);
            EXPECT_LE(regular, medium) << size << " at " << scale;
            EXPECT_LE(medium, semibold) << size << " at " << scale;
            EXPECT_LT(regular, semibold) << size << " at " << scale;
        }
    }
}

TEST(SymbolStroke, IsNeverThinnerThanAPixel)
{
    for (const qreal scale : {1.0, 1.25, 1.5, 2.0})
        EXPECT_GE(SymbolSet::stroke(8.5, QFont::Normal, scale), scale);
}

} // namespace portolan
