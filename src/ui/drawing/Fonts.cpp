// SPDX-License-Identifier: MIT
#include "Fonts.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QScreen>

#include <cmath>

namespace portolan {

namespace {

qreal pointsPerPixel()
{
    constexpr qreal defaultDotsPerInch = 96;
    const QScreen *screen = QGuiApplication::primaryScreen(); // null while no screen is connected
    // QFont uses whole dots per inch.
    return 72.0 / qRound(screen ? screen->logicalDotsPerInchY() : defaultDotsPerInch);
}

qreal sizeOf(const QFont &font)
{
    return font.pixelSize() > 0 ? font.pixelSize() : font.pointSizeF() / pointsPerPixel();
}

QFont font(QFontDatabase::SystemFont kind, qreal size, int weight)
{
    QFont font;
    font.setFamilies(QFontDatabase::systemFont(kind).families());
    if (size == std::floor(size))
        font.setPixelSize(int(size));
    else
        font.setPointSizeF(size * pointsPerPixel());
    font.setWeight(QFont::Weight(weight));
    return font;
}

} // namespace

QFont Fonts::system(qreal size, int weight, qreal tracking)
{
    QFont result = font(QFontDatabase::GeneralFont, size, weight);
    if (tracking != 0)
        result.setLetterSpacing(QFont::AbsoluteSpacing, tracking);
    return result;
}

QFont Fonts::monospaced(qreal size, int weight)
{
    return font(QFontDatabase::FixedFont, size, weight);
}

QFont Fonts::digits(qreal size, int weight)
{
    QFont result = system(size, weight);
#if QT_VERSION >= QT_VERSION_CHECK(6, 7, 0)
    result.setFeature("tnum", 1);
#endif
    return result;
}

QFont Fonts::whole(const QFont &font)
{
    QFont result = font;
    result.setPixelSize(qMax(1, qRound(sizeOf(font))));
    return result;
}

qreal Fonts::ratio(const QFont &font)
{
    return sizeOf(font) / whole(font).pixelSize();
}

} // namespace portolan
