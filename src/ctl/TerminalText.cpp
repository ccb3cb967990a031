// SPDX-License-Identifier: MIT
#include "TerminalText.h"

#include "Characters.h"

#include <QChar>
#include <QList>
#include <QTextBoundaryFinder>

#include <locale.h>
#include <wchar.h>

namespace portolan {

using namespace Qt::StringLiterals;

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

// wcwidth() knows how wide characters are, but only in a UTF-8 locale. One is set for the calling thread
// here, as the program's own locale may be another.
class WidthLocale
{
public:
    WidthLocale()
    {
        static const locale_t utf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
        m_previous = uselocale(utf8);
    }
    ~WidthLocale() { uselocale(m_previous); }
    Q_DISABLE_COPY_MOVE(WidthLocale)

    [[nodiscard]] static int width(char32_t character)
    {
        const int columns = wcwidth(static_cast<wchar_t>(character));
        return columns < 0 ? 1 : columns;
    }

private:
    locale_t m_previous;
};

// The longest start of `text` that fits and ends between two grapheme clusters.
QStringView front(QStringView text, int columns)
{
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text.data(), text.size());
    qsizetype end = 0;
    while (characters.toNextBoundary() >= 0) {
        columns -= TerminalText::width(text.sliced(end, characters.position() - end));
        if (columns < 0)
            break;
        end = characters.position();
    }
    return text.first(end);
}

// The same at the end.
QStringView back(QStringView text, int columns)
{
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text.data(), text.size());
    characters.toEnd();
    qsizetype start = text.size();
    while (characters.toPreviousBoundary() >= 0) {
        columns -= TerminalText::width(text.sliced(characters.position(), start - characters.position()));
        if (columns < 0)
            break;
        start = characters.position();
    }
    return text.sliced(start);
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
    const WidthLocale locale;
    int columns = 0;
    for (const uint character : text.toUcs4())
        columns += WidthLocale::width(character);
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
