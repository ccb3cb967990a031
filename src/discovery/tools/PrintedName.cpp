#include "PrintedName.h"

#include <QByteArrayView>

#include <algorithm>
#include <cctype>
#include <optional>

namespace portolan {

namespace {

struct Escape
{
    char byte;
    qsizetype length; ///< how many characters spell it
};

/// The escape that `text` begins with, if it does with one.
std::optional<Escape> escapeAt(QByteArrayView text)
{
    constexpr QByteArrayView letters = "bfnrt\\";
    constexpr QByteArrayView bytes = "\b\f\n\r\t\\";
    if (text.size() < 2 || text.front() != '\\')
        return std::nullopt;
    if (const qsizetype letter = letters.indexOf(text[1]); letter >= 0)
        return Escape{bytes[letter], 2};
    const QByteArrayView digits = text.sliced(2).first(std::min<qsizetype>(2, text.size() - 2));
    const bool isHex =
        digits.size() == 2 && std::ranges::all_of(digits, [](char c) { return std::isxdigit(uchar(c)); });
    if (text[1] != 'x' || !isHex)
        return std::nullopt;
    return Escape{char(digits.toInt(nullptr, 16)), 4};
}

} // namespace

QString PrintedName::plain(const QString &printed)
{
    if (!printed.contains(u'\\'))
        return printed;
    const QByteArray text = printed.toUtf8();
    QByteArray name;
    for (qsizetype i = 0; i < text.size();) {
        const auto escape = escapeAt(QByteArrayView(text).sliced(i));
        name += escape ? escape->byte : text[i];
        i += escape ? escape->length : 1;
    }
    return QString::fromUtf8(name);
}

} // namespace portolan
