// SPDX-License-Identifier: MIT
#include "DisplayText.h"

#include "Characters.h"

namespace portolan {

namespace {

constexpr char16_t replacement = u'\uFFFD';
constexpr char16_t ellipsis = u'\u2026';
constexpr char16_t firstStrongIsolate = u'\u2068';
constexpr char16_t popDirectionalIsolate = u'\u2069';
constexpr int maxCombiningMarks = 4;

bool isCombining(char32_t character)
{
    const QChar::Category category = QChar::category(character);
    return category == QChar::Mark_NonSpacing || category == QChar::Mark_Enclosing;
}

QString sanitized(QStringView text)
{
    QString result;
    result.reserve(text.size());
    int combiningMarks = 0;
    for (const char32_t character : text.toUcs4()) { // which replaces lone surrogates by U+FFFD
        combiningMarks = isCombining(character) ? combiningMarks + 1 : 0;
        if (combiningMarks > maxCombiningMarks)
            continue;
        if (Characters::isShowable(character))
            result += QChar::fromUcs4(character);
        else
            result += replacement;
    }
    return result;
}

} // namespace

QString DisplayText::line(const QString &text)
{
    const QStringView all(text);
    if (all.size() <= maxLength)
        return sanitized(all);
    return sanitized(all.first(maxLength - 1)) + ellipsis;
}

QString DisplayText::path(const QString &text)
{
    const QStringView all(text);
    if (all.size() <= maxLength)
        return sanitized(all);
    return sanitized(all.first(maxLength / 2)) + ellipsis + sanitized(all.last(maxLength / 2 - 1));
}

QString DisplayText::isolated(const QString &text)
{
    return firstStrongIsolate + line(text) + popDirectionalIsolate;
}

} // namespace portolan
