// SPDX-License-Identifier: MIT
#include "TerminalEmulator.h"

#include "TerminalText.h"

#include <QRegularExpression>

#include <algorithm>
#include <vector>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

struct Cell
{
    QString text = u" "_s; // empty behind a wide character
    bool isReversed = false;
};
using Line = std::vector<Cell>;

class Emulator
{
public:
    explicit Emulator(TerminalSize size)
        : m_size(size)
        , m_bottom(size.rows - 1)
    {}

    void write(const QString &output)
    {
        static const QRegularExpression sequence(
            u"\\G\x1b(?:\\[([?>]?[0-9;]*)([@A-Za-z`])|\\](52;)[^\x07]*\x07|([M=>78])|\\(B)"_s);
        for (qsizetype i = 0; i < output.size();) {
            const auto match = output[i] == u'\x1b' ? sequence.match(output, i) : QRegularExpressionMatch();
            if (!match.hasMatch()) {
                const qsizetype length = output[i].isHighSurrogate() ? 2 : 1;
                put(output[i] == u'\x1b' ? u"<?>"_s : output.sliced(i, length));
                i += length;
                continue;
            }
            i = match.capturedEnd();
            if (match.captured(4) == u"M")
                reverseLineFeed();
            else if (!match.captured(2).isEmpty())
                obey(match.captured(1), match.captured(2).front().unicode());
        }
    }

    [[nodiscard]] const std::vector<Line> &lines() const { return m_lines; }

private:
    void put(const QString &text)
    {
        if (text == u"\r")
            m_column = 0;
        else if (text == u"\n")
            lineFeed();
        else if (text == u"\b")
            m_column = std::max(0, std::min(m_column, m_size.columns - 1) - 1);
        else if (text != u"\x0f")
            putVisible(text);
    }

    void putVisible(const QString &text)
    {
        const int width = TerminalText::width(text);
        if (width == 0) {
            if (m_column > 0)
                cell(m_row, m_column - 1).text += text;
            return;
        }
        if (m_column + width > m_size.columns) {
            m_column = 0;
            lineFeed();
        }
        for (int i = 0; i < width; ++i)
            cell(m_row, m_column + i) = {i == 0 ? text : QString(), m_isReversed};
        m_column += width;
        m_last = text;
    }

    void lineFeed()
    {
        if (m_row == m_bottom)
            scroll(m_top, 1);
        else
            m_row = std::min(m_row + 1, m_size.rows - 1);
    }

    void reverseLineFeed()
    {
        if (m_row == m_top)
            scroll(m_top, -1);
        else
            m_row = std::max(0, m_row - 1);
    }

    // Moves the lines from `top` to the bottom of the region up, or down.
    void scroll(int top, int lines)
    {
        for (int i = 0; i < std::abs(lines); ++i) {
            line(m_bottom);
            m_lines.erase(m_lines.begin() + (lines > 0 ? top : m_bottom));
            m_lines.insert(m_lines.begin() + (lines > 0 ? m_bottom : top), Line());
        }
    }

    void obey(const QString &parameters, char16_t function)
    {
        const QStringList texts = parameters.split(u';');
        const int first = texts[0].toInt();
        const int count = std::max(1, first);
        const int column = std::min(m_column, m_size.columns - 1); // behind the last one until text follows
        switch (function) {
        case u'm':
            for (const QString &text : texts) {
                if (text == u"7")
                    m_isReversed = true;
                else if (text.toInt() == 0 || text == u"27")
                    m_isReversed = false;
            }
            return;
        case u'A':
            m_row = std::max(0, m_row - count);
            return;
        case u'B':
            m_row = std::min(m_size.rows - 1, m_row + count);
            return;
        case u'C':
            m_column = std::min(m_size.columns - 1, m_column + count);
            return;
        case u'D':
            m_column = std::max(0, column - count);
            return;
        case u'G':
        case u'`':
            m_column = count - 1;
            return;
        case u'd':
            m_row = count - 1;
            return;
        case u'H':
            m_row = count - 1;
            m_column = std::max(1, texts.value(1).toInt()) - 1;
            return;
        case u'r':
            m_top = count - 1;
            m_bottom = (texts.value(1).isEmpty() ? m_size.rows : texts[1].toInt()) - 1;
            m_row = m_column = 0;
            return;
        case u'K':
            erase(m_row, first == 0 ? column : 0, first == 1 ? column + 1 : m_size.columns);
            return;
        case u'J':
            erase(m_row, first == 0 ? column : 0, m_size.columns);
            for (int row = first == 0 ? m_row + 1 : 0; row < int(m_lines.size()); ++row)
                erase(row, 0, m_size.columns);
            return;
        case u'X':
            erase(m_row, column, column + count);
            return;
        case u'P':
            line(m_row).resize(size_t(m_size.columns));
            line(m_row).erase(line(m_row).begin() + column, line(m_row).begin() + column + count);
            return;
        case u'@':
            cell(m_row, column);
            line(m_row).insert(line(m_row).begin() + column, size_t(count), Cell());
            return;
        case u'L':
            return scroll(m_row, -count);
        case u'M':
            return scroll(m_row, count);
        case u'S':
            return scroll(m_top, count);
        case u'T':
            return scroll(m_top, -count);
        case u'b':
            for (int i = 0; i < count; ++i)
                putVisible(QString(m_last));
            return;
        case u'h':
        case u'l':
            if (parameters.contains(u"1049"_s)) {
                std::swap(m_lines, m_other);
                if (function == u'h')
                    m_lines.clear();
                m_row = m_column = 0;
            }
            return;
        case u't':
            return;
        default:
            put(u"<?>"_s);
        }
    }

    void erase(int row, int from, int to)
    {
        Line &cells = line(row);
        for (int column = from; column < std::min(to, int(cells.size())); ++column)
            cells[size_t(column)] = {};
    }

    Line &line(int row)
    {
        if (int(m_lines.size()) <= row)
            m_lines.resize(size_t(row) + 1);
        return m_lines[size_t(row)];
    }

    Cell &cell(int row, int column)
    {
        Line &cells = line(row);
        if (int(cells.size()) <= column)
            cells.resize(size_t(column) + 1);
        return cells[size_t(column)];
    }

    const TerminalSize m_size;
    std::vector<Line> m_lines;
    std::vector<Line> m_other;
    int m_row = 0;
    int m_column = 0;
    int m_top = 0;
    int m_bottom;
    bool m_isReversed = false;
    QString m_last;
};

} // namespace

QStringList seenOnTerminal(const QByteArray &output, TerminalSize size)
{
    Emulator emulator(size);
    emulator.write(QString::fromUtf8(output));
    QStringList lines;
    for (const Line &cells : emulator.lines()) {
        QString line;
        for (const Cell &cell : cells)
            line += cell.text;
        while (line.endsWith(u' '))
            line.chop(1);
        lines.append(line);
    }
    while (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

std::optional<int> reversedLine(const QByteArray &output, TerminalSize size)
{
    Emulator emulator(size);
    emulator.write(QString::fromUtf8(output));
    const auto line = std::ranges::find_if(
        emulator.lines(), [](const Line &cells) { return std::ranges::any_of(cells, &Cell::isReversed); });
    return line == emulator.lines().end() ? std::nullopt
                                          : std::optional(int(line - emulator.lines().begin()));
}

} // namespace portolan
