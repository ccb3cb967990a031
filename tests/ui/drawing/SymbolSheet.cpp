// SPDX-License-Identifier: MIT
// Draws all symbols into one picture, at the sizes at which they are used and larger, for visual inspection.
//
//     symbol_sheet FILE.png [SCALE [SIZE:WEIGHT...]]
#include "SymbolSet.h"
#include "Theme.h"

#include "Framework.h"

#include <QDir>
#include <QGuiApplication>
#include <QPainter>

#include <cmath>
#include <cstdio>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

struct Setting
{
    qreal size;
    int weight;
};

QColor colorOf(const QString &symbol)
{
    for (const Framework &framework : Framework::allCases()) {
        const SrgbColor accent = framework.accent();
        if (framework.symbol() == symbol)
            return QColor(accent.red, accent.green, accent.blue);
    }
    return Theme::textStrong;
}

QImage tinted(QImage image, const QColor &color)
{
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    return image;
}

QList<Setting> settings(const QStringList &arguments)
{
    QList<Setting> result;
    for (const QString &argument : arguments)
        result << Setting{argument.section(u':', 0, 0).toDouble(), argument.section(u':', 1, 1).toInt()};
    if (result.isEmpty())
        result = {{9, 400}, {11.5, 600}, {12, 500}, {15, 600}, {26, 400}, {72, 600}};
    return result;
}

} // namespace

} // namespace portolan

int main(int argc, char **argv)
{
    using namespace portolan;
    const QGuiApplication app(argc, argv);
    const QStringList arguments = app.arguments();
    if (arguments.size() < 2) {
        std::fputs("symbol_sheet FILE.png [SCALE [SIZE:WEIGHT...]]\n", stderr);
        return 2;
    }
    const qreal scale = arguments.value(2, u"1"_s).toDouble();
    const QList<Setting> columns = settings(arguments.mid(3));
    const QStringList names = QDir(u":/qt-project.org/imports/Portolan/symbols"_s)
                                  .entryList(QDir::Files, QDir::Name)
                                  .replaceInStrings(u".svg"_s, QString());

    const auto pixels = [scale](const Setting &setting) {
        return int(std::round(SymbolSet::box(setting.size) * scale));
    };
    int width = 0;
    int height = 0;
    for (const Setting &setting : columns) {
        width += pixels(setting) + 8;
        height = qMax(height, pixels(setting) + 8);
    }
    constexpr int symbolsAcross = 6;
    const int rows = (int(names.size()) + symbolsAcross - 1) / symbolsAcross;
    QImage sheet(width * symbolsAcross, height * rows, QImage::Format_RGB32);
    sheet.fill(Theme::canvas);
    QPainter painter(&sheet);
    for (int i = 0; i < names.size(); ++i) {
        QPoint position(i % symbolsAcross * width, i / symbolsAcross * height);
        for (const Setting &setting : columns) {
            const int side = pixels(setting);
            const qreal stroke = SymbolSet::stroke(setting.size, setting.weight, scale);
            const QImage image = SymbolSet::image(names[i], side, stroke);
            painter.drawImage(position + QPoint(4, (height - side) / 2), tinted(image, colorOf(names[i])));
            position.rx() += side + 8;
        }
    }
    painter.end();
    return sheet.save(arguments[1]) ? 0 : 1;
}
