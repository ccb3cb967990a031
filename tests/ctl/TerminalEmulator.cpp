#include "TerminalEmulator.h"

#include <QRegularExpression>

#include <algorithm>
#include <limits>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

class Emulator
{
public:
    explicit Emulator(qsizetype columns)
        : m_columns(columns)
    {}

    void write(const QString &output)
    {
        static const QRegularExpression sequence(u"^\x1b\\[([?0-9;]*)([A-Za-z])"_s);
        for (qsizetype i = 0; i < output.size();) {
            if (output[i] != u'\x1b') {
                put(output[i++]);
                continue;
            }
            const auto match = sequence.match(output.sliced(i));
            obey(match.captured(1), match.captured(2));
            i += std::max<qsizetype>(1, match.capturedLength());
        }
    }

    QStringList seen() const
    {
        QStringList lines = m_lines;
        for (QString &line : lines) {
            while (line.endsWith(u' '))
                line.chop(1);
        }
        while (!lines.isEmpty() && lines.last().isEmpty())
            lines.removeLast();
        return lines;
    }

private:
    void put(QChar character)
    {
        if (character == u'\r') {
            m_column = 0;
        } else if (character == u'\n') {
            ++m_row;
        } else {
            if (m_column == m_columns) {
                m_column = 0;
                ++m_row;
            }
            QString &line = currentLine();
            line = line.leftJustified(m_column);
            line.replace(m_column++, 1, character);
        }
    }

    void obey(const QString &parameters, const QString &function)
    {
        if (function == u"m")
            return;
        if (function == u"K") {
            currentLine().truncate(cursor());
        } else if (function == u"J") {
            currentLine().truncate(cursor());
            m_lines.resize(m_row + 1);
        } else if (function == u"H" && parameters.isEmpty()) {
            m_row = m_column = 0;
        } else if (parameters == u"?1049" && function == u"h") {
            m_before = std::exchange(m_lines, {});
            m_row = m_column = 0;
        } else if (parameters == u"?1049") {
            m_lines = m_before;
        } else if (parameters != u"?25") {
            for (const QChar character : u"<?>"_s)
                put(character);
        }
    }

    // Behind a line's last column it stays there until something follows.
    [[nodiscard]] qsizetype cursor() const { return std::min(m_column, m_columns - 1); }

    QString &currentLine()
    {
        while (m_lines.size() <= m_row)
            m_lines.append(QString());
        return m_lines[m_row];
    }

    qsizetype m_columns;
    QStringList m_lines;
    QStringList m_before;
    qsizetype m_row = 0;
    qsizetype m_column = 0;
};

} // namespace

QStringList seenOnTerminal(const QByteArray &output, std::optional<int> columns)
{
    Emulator emulator(columns.value_or(std::numeric_limits<int>::max()));
    emulator.write(QString::fromUtf8(output));
    return emulator.seen();
}

} // namespace portolan
