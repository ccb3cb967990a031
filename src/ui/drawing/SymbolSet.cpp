// SPDX-License-Identifier: MIT
#include "SymbolSet.h"

#include <QCache>
#include <QFile>
#include <QFont>
#include <QPainter>
#include <QSvgRenderer>

#include <cmath>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

constexpr qreal grid = 24; // the width and height of a symbol file in its units

struct Key
{
    QString name;
    int side;
    qreal stroke;

    friend bool operator==(const Key &, const Key &) = default;
    friend size_t qHash(const Key &key, size_t seed = 0)
    {
        return qHashMulti(seed, key.name, key.side, key.stroke);
    }
};

QByteArray source(const QString &name)
{
    QFile file(u":/qt-project.org/imports/Portolan/symbols/%1.svg"_s.arg(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The stroke width is set once, on the root element of each file, so that it can be replaced there.
QByteArray withStroke(QByteArray svg, qreal units)
{
    const QByteArray original = R"(stroke-width="2")";
    const QByteArray wanted = "stroke-width=\"" + QByteArray::number(units) + '"';
    return svg.replace(svg.indexOf(original), original.size(), wanted);
}

// White parts of a symbol file are cut out of the black parts below them.
QImage withoutKnockouts(QImage image)
{
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x)
            line[x] = qRgba(0, 0, 0, qAlpha(line[x]) - qRed(line[x]));
    }
    return image;
}

QImage drawn(const Key &key)
{
    const QByteArray svg = source(key.name);
    if (svg.isEmpty() || key.side <= 0)
        return {};
    QSvgRenderer renderer(withStroke(svg, key.stroke * grid / key.side));
    QImage image(key.side, key.side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        renderer.render(&painter);
    }
    return withoutKnockouts(image);
}

} // namespace

qreal SymbolSet::box(qreal size)
{
    return qMax(4.0, std::round(size / 3) * 4);
}

qreal SymbolSet::stroke(qreal size, int weight, qreal scale)
{
    const qreal share = weight >= QFont::DemiBold ? 0.115 : weight >= QFont::Medium ? 0.1 : 0.08;
    const qreal width = qMax(1.0, share * size) * scale;
    return std::round(width * 4) / 4;
}

QImage SymbolSet::image(const QString &name, int side, qreal stroke)
{
    static QCache<Key, QImage> cache(500);
    const Key key{name, side, stroke};
    if (const QImage *known = cache.object(key))
        return *known;
    QImage image = drawn(key);
    cache.insert(key, new QImage(image));
    return image;
}

} // namespace portolan
