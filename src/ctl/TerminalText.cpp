// SPDX-License-Identifier: MIT
#include "TerminalText.h"

#include "Characters.h"

#include <QChar>
#include <QList>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <iterator>

#include <wchar.h>

namespace portolan {

namespace {

constexpr char32_t replacement = 0xFFFD;
constexpr char32_t firstControlPicture = 0x2400;
constexpr char32_t deletePicture = 0x2421;
constexpr QChar ellipsis = u'…';

char32_t harmlessCharacter(char32_t character)
{
    if (character < 0x20)
        return firstControlPicture + character;
    if (character == 0x7F)
        return deletePicture;
    return Characters::isShowable(character) ? character : replacement;
}

/// A grapheme boundary, and the width of the text before it.
struct Boundary
{
    qsizetype position;
    int columns;
};

QList<Boundary> boundariesIn(QStringView text)
{
    QList<Boundary> boundaries{{0, 0}};
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text.data(), text.size());
    while (finder.toNextBoundary() > 0) {
        const auto [start, columns] = boundaries.last();
        const QStringView cluster = text.sliced(start, finder.position() - start);
        boundaries.append({finder.position(), columns + TerminalText::width(cluster)});
    }
    return boundaries;
}

// The longest prefix of `text` that takes at most `columns`.
QStringView front(QStringView text, int columns)
{
    const QList<Boundary> boundaries = boundariesIn(text);
    return text.first(
        std::prev(std::ranges::upper_bound(boundaries, columns, {}, &Boundary::columns))->position);
}

// The same for a suffix.
QStringView back(QStringView text, int columns)
{
    const QList<Boundary> boundaries = boundariesIn(text);
    const int hidden = boundaries.last().columns - columns;
    return text.sliced(std::ranges::lower_bound(boundaries, hidden, {}, &Boundary::columns)->position);
}

} // namespace

QString TerminalText::harmless(QStringView text)
{
    QString result;
    result.reserve(text.size());
    for (const uint character : text.toUcs4())
        result += QChar::fromUcs4(harmlessCharacter(character));
    return result;
}

int TerminalText::width(QStringView text)
{
    int columns = 0;
    for (const uint character : text.toUcs4()) {
        const int own = wcwidth(wchar_t(character));
        columns += own < 0 ? 1 : own;
    }
    return columns;
}

QString TerminalText::elided(QStringView text, int columns)
{
    if (width(text) <= columns)
        return text.toString();
    return columns > 0 ? front(text, columns - 1).toString() + ellipsis : QString();
}

QString TerminalText::elidedInTheMiddle(QStringView text, int columns)
{
    if (width(text) <= columns)
        return text.toString();
    if (columns <= 0)
        return {};
    const QStringView start = front(text, (columns - 1) / 3);
    return start.toString() + ellipsis + back(text, columns - 1 - width(start)).toString();
}

} // namespace portolan
