#include "Fonts.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QScreen>

namespace {

qreal pointsPerPixel()
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    return 72 / (screen ? screen->logicalDotsPerInchY() : 96);
}

QFont font(QFontDatabase::SystemFont kind, qreal size, int weight, qreal tracking)
{
    QFont font;
    font.setFamilies(QFontDatabase::systemFont(kind).families());
    font.setPointSizeF(size * pointsPerPixel());
    font.setWeight(QFont::Weight(weight));
    if (tracking != 0)
        font.setLetterSpacing(QFont::AbsoluteSpacing, tracking);
    return font;
}

} // namespace

QFont Fonts::system(qreal size, int weight, qreal tracking)
{
    return font(QFontDatabase::GeneralFont, size, weight, tracking);
}

QFont Fonts::monospaced(qreal size, int weight, qreal tracking)
{
    return font(QFontDatabase::FixedFont, size, weight, tracking);
}

QFont Fonts::digits(qreal size, int weight, qreal tracking)
{
    QFont result = system(size, weight, tracking);
#if QT_VERSION >= QT_VERSION_CHECK(6, 7, 0)
    result.setFeature("tnum", 1);
#endif
    return result;
}
