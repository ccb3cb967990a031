// SPDX-License-Identifier: MIT
#include "DesktopEntry.h"

#include <QStringList>

#include <algorithm>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

/// `text` quoted as one argument of Exec, without the escapes that apply to all strings.
QString execWord(const QString &text)
{
    static const QString needsQuotes = u" \t\n\"'\\><~|&;$*?#()`"_s;
    static const QString needsBackslash = u"\"`$\\"_s;

    QString word;
    for (const QChar c : text) {
        if (needsBackslash.contains(c))
            word += u'\\';
        word += c;
        if (c == u'%')
            word += c;
    }
    const bool isPlain = std::ranges::none_of(text, [](QChar c) { return needsQuotes.contains(c); });
    return isPlain && !text.isEmpty() ? word : u'"' + word + u'"';
}

/// The first argument of a command line, unquoted.
QString firstWord(QStringView commandLine)
{
    const QStringView line = commandLine.trimmed();
    const bool isQuoted = line.startsWith(u'"');
    const QChar end = isQuoted ? u'"' : u' ';
    QString word;
    for (qsizetype i = isQuoted ? 1 : 0; i < line.size() && line[i] != end; ++i) {
        if (isQuoted && line[i] == u'\\' && i + 1 < line.size())
            ++i;
        word += line[i];
    }
    return word;
}

} // namespace

DesktopEntry::DesktopEntry(const QByteArray &text)
{
    bool inMainGroup = false;
    for (const QByteArray &line : text.split('\n')) {
        const QByteArray content = line.trimmed();
        const qsizetype equals = content.indexOf('=');
        if (content.startsWith('['))
            inMainGroup = content == "[Desktop Entry]";
        else if (inMainGroup && equals > 0 && !content.startsWith('#'))
            m_values.insert(content.first(equals).trimmed(), content.sliced(equals + 1).trimmed());
    }
}

std::optional<QByteArray> DesktopEntry::value(const QByteArray &key) const
{
    const auto found = m_values.constFind(key);
    return found == m_values.constEnd() ? std::nullopt : std::optional(*found);
}

QList<QByteArray> DesktopEntry::list(const QByteArray &key) const
{
    QList<QByteArray> texts = value(key).value_or(QByteArray()).split(';');
    texts.removeAll(QByteArray());
    return texts;
}

QByteArray DesktopEntry::escaped(const QString &text)
{
    QString value = text;
    value.replace(u'\\', uR"(\\)"_s)
        .replace(u'\n', uR"(\n)"_s)
        .replace(u'\t', uR"(\t)"_s)
        .replace(u'\r', uR"(\r)"_s);
    if (value.startsWith(u' '))
        value.replace(0, 1, uR"(\s)"_s);
    return value.toUtf8();
}

QString DesktopEntry::unescaped(QByteArrayView value)
{
    const QString escapes = u"sntr\\"_s;
    const QString characters = u" \n\t\r\\"_s;

    const QString text = QString::fromUtf8(value);
    QString plain;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const qsizetype escape = text[i] == u'\\' && i + 1 < text.size() ? escapes.indexOf(text[i + 1]) : -1;
        plain += escape < 0 ? text[i] : characters[escape];
        if (escape >= 0)
            ++i;
    }
    return plain;
}

QByteArray DesktopEntry::exec(const QString &program, const QStringList &arguments)
{
    QStringList words{execWord(program)};
    for (const QString &argument : arguments)
        words.append(execWord(argument));
    return escaped(words.join(u' '));
}

QString DesktopEntry::programOf(QByteArrayView exec)
{
    return firstWord(unescaped(exec)).replace("%%"_L1, "%"_L1);
}

} // namespace portolan
