#include "DisplayText.h"

#include "Characters.h"

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

constexpr char16_t mark = u'\uFFFD';
constexpr char16_t ellipsis = u'\u2026';
constexpr char16_t firstStrongIsolate = u'\u2068';
constexpr char16_t popDirectionalIsolate = u'\u2069';
constexpr int mostCombiningMarks = 4;

bool isCombining(char32_t character)
{
    const QChar::Category category = QChar::category(character);
    return category == QChar::Mark_NonSpacing || category == QChar::Mark_Enclosing;
}

QString harmless(QStringView text)
{
    QString result;
    result.reserve(text.size());
    int combiningMarks = 0;
    for (const char32_t character : text.toUcs4()) { // lone surrogates have become marks
        combiningMarks = isCombining(character) ? combiningMarks + 1 : 0;
        if (combiningMarks > mostCombiningMarks)
            continue;
        if (Characters::isShowable(character))
            result += QChar::fromUcs4(character);
        else
            result += mark;
    }
    return result;
}

} // namespace

QString DisplayText::line(const QString &text)
{
    const QStringView all(text);
    if (all.size() <= longest)
        return harmless(all);
    return harmless(all.first(longest - 1)) + ellipsis;
}

QString DisplayText::path(const QString &text)
{
    const QStringView all(text);
    if (all.size() <= longest)
        return harmless(all);
    return harmless(all.first(longest / 2)) + ellipsis + harmless(all.last(longest / 2 - 1));
}

QString DisplayText::isolated(const QString &text)
{
    return firstStrongIsolate + line(text) + popDirectionalIsolate;
}

} // namespace portolan
