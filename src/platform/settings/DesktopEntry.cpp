#include "DesktopEntry.h"

#include <QStringList>

#include <algorithm>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView mainGroup("[Desktop Entry]");

bool isGroup(QByteArrayView line)
{
    return line.trimmed().startsWith('[');
}

QByteArrayView keyOf(QByteArrayView line)
{
    const qsizetype equals = line.indexOf('=');
    const bool isComment = line.trimmed().startsWith('#');
    return equals < 0 || isComment ? QByteArrayView() : line.first(equals).trimmed();
}

/// A word of Exec, before the escapes that all texts have.
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

/// The first word of a command line, its quotes taken off.
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
    : m_lines(text.split('\n'))
{}

QList<qsizetype> DesktopEntry::linesWith(QByteArrayView key) const
{
    QList<qsizetype> found;
    bool inMainGroup = false;
    for (qsizetype i = 0; i < m_lines.size(); ++i) {
        if (isGroup(m_lines[i]))
            inMainGroup = QByteArrayView(m_lines[i]).trimmed() == mainGroup;
        else if (inMainGroup && keyOf(m_lines[i]) == key)
            found.append(i);
    }
    return found;
}

std::optional<QByteArray> DesktopEntry::value(QByteArrayView key) const
{
    const auto lines = linesWith(key);
    if (lines.isEmpty())
        return std::nullopt;
    const QByteArray &line = m_lines[lines.last()];
    return line.sliced(line.indexOf('=') + 1).trimmed();
}

bool DesktopEntry::isTrue(QByteArrayView key) const
{
    return value(key) == "true";
}

QList<QByteArray> DesktopEntry::list(QByteArrayView key) const
{
    QList<QByteArray> texts = value(key).value_or(QByteArray()).split(';');
    texts.removeAll(QByteArray());
    return texts;
}

void DesktopEntry::set(QByteArrayView key, const QByteArray &value)
{
    const QByteArray line = key.toByteArray() + '=' + value;
    if (const auto lines = linesWith(key); !lines.isEmpty())
        m_lines[lines.last()] = line;
    else
        m_lines.insert(endOfGroup(), line);
}

void DesktopEntry::remove(QByteArrayView key)
{
    const auto lines = linesWith(key);
    for (auto line = lines.crbegin(); line != lines.crend(); ++line)
        m_lines.remove(*line);
}

/// Where a new line of the main group goes: behind its last one. Begins the group if there is none.
qsizetype DesktopEntry::endOfGroup()
{
    const auto isMain = [](const QByteArray &line) { return QByteArrayView(line).trimmed() == mainGroup; };
    auto group = std::ranges::find_if(m_lines, isMain);
    if (group == m_lines.end()) {
        // The empty piece behind the last newline stays the last.
        const qsizetype last = m_lines.last().isEmpty() ? m_lines.size() - 1 : m_lines.size();
        group = m_lines.insert(last, mainGroup.toByteArray());
        if (group + 1 == m_lines.end())
            group = m_lines.insert(m_lines.size(), QByteArray()) - 1;
    }
    auto end = std::find_if(group + 1, m_lines.end(), isGroup);
    while (QByteArrayView(*(end - 1)).trimmed().isEmpty())
        --end;
    return end - m_lines.begin();
}

QByteArray DesktopEntry::text() const
{
    return m_lines.join('\n');
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
