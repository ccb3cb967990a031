// SPDX-License-Identifier: MIT
#include "PrintedName.h"

#include <QList>

#include <algorithm>
#include <cctype>
#include <optional>

namespace portolan {

namespace {

constexpr QByteArrayView escapedBytes = "\b\f\n\r\t\\";
constexpr QByteArrayView escapeLetters = "bfnrt\\";

struct Escape
{
    char byte;
    qsizetype length; ///< its length in characters
};

/// The escape that `text` begins with, if any.
std::optional<Escape> escapeAt(QByteArrayView text)
{
    if (text.size() < 2 || text.front() != '\\')
        return std::nullopt;
    if (const qsizetype letter = escapeLetters.indexOf(text[1]); letter >= 0)
        return Escape{escapedBytes[letter], 2};
    const QByteArrayView digits = text.sliced(2).first(std::min<qsizetype>(2, text.size() - 2));
    const bool isHex =
        digits.size() == 2 && std::ranges::all_of(digits, [](char c) { return std::isxdigit(uchar(c)); });
    if (text[1] != 'x' || !isHex)
        return std::nullopt;
    return Escape{char(digits.toInt(nullptr, 16)), 4};
}

bool isPrintable(char32_t character)
{
    switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Other_Surrogate:
    case QChar::Other_NotAssigned:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return false;
    default:
        return true;
    }
}

/// The length in bytes of the printable multi-byte character that `text` begins with; 0 if there is none.
qsizetype printableLength(QByteArrayView text)
{
    for (qsizetype length = 2; uchar(text.front()) >= 0x80 && length <= std::min<qsizetype>(4, text.size());
         ++length) {
        const QByteArrayView bytes = text.first(length);
        const QList<uint> character = bytes.isValidUtf8() ? QString::fromUtf8(bytes).toUcs4() : QList<uint>();
        if (!character.isEmpty())
            return isPrintable(character.front()) ? length : 0;
    }
    return 0;
}

QByteArray printedByte(uchar byte)
{
    if (const qsizetype letter = escapedBytes.indexOf(char(byte)); letter >= 0)
        return QByteArray("\\") + escapeLetters[letter];
    if (byte < 0x20)
        return QByteArray("^") + char(byte + 0x40);
    if (byte < 0x7f)
        return QByteArray(1, char(byte));
    return "\\x" + QByteArray::number(byte, 16);
}

} // namespace

QString PrintedName::of(QByteArrayView name)
{
    const auto isPlain = [](char c) { return c >= ' ' && c <= '~' && c != '\\'; };
    if (std::ranges::all_of(name, isPlain))
        return QString::fromLatin1(name);
    QByteArray printed;
    while (!name.isEmpty()) {
        const qsizetype length = printableLength(name);
        printed += length > 0 ? name.first(length).toByteArray() : printedByte(uchar(name.front()));
        name = name.sliced(std::max<qsizetype>(length, 1));
    }
    return QString::fromUtf8(printed);
}

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
