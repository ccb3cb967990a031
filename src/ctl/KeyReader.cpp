#include "KeyReader.h"

#include <algorithm>
#include <array>
#include <utility>

namespace portolan {

namespace {

struct Row
{
    QByteArrayView sent;
    Key key;
};

// Terminals differ in Home and End, and in application mode send the short sequences with an O.
constexpr std::array rows{
    Row{"q", Key::quit},           Row{"Q", Key::quit},       Row{"k", Key::up},
    Row{"\x1b[A", Key::up},        Row{"\x1bOA", Key::up},    Row{"j", Key::down},
    Row{"\x1b[B", Key::down},      Row{"\x1bOB", Key::down},  Row{"\x1b[5~", Key::pageUp},
    Row{"\x1b[6~", Key::pageDown}, Row{"\x1b[H", Key::home},  Row{"\x1bOH", Key::home},
    Row{"\x1b[1~", Key::home},     Row{"\x1b[7~", Key::home}, Row{"\x1b[F", Key::end},
    Row{"\x1bOF", Key::end},       Row{"\x1b[4~", Key::end},  Row{"\x1b[8~", Key::end},
};

std::optional<Key> keyOf(QByteArrayView sent)
{
    const auto row = std::ranges::find(rows, sent, &Row::sent);
    return row != rows.end() ? std::optional(row->key) : std::nullopt;
}

constexpr char escape = '\x1b';

/// Whether `sequence` lacks its final character, such as a letter.
bool isIncomplete(QByteArrayView sequence)
{
    if (sequence.size() == 2)
        return sequence.back() == '[' || sequence.back() == 'O';
    return sequence.back() >= ' ' && sequence.back() < '@';
}

} // namespace

std::optional<Key> KeyReader::read(char character)
{
    if (character == escape) {
        m_sequence = QByteArray(1, escape);
        return std::nullopt;
    }
    if (m_sequence.isEmpty())
        return keyOf(QByteArrayView(&character, 1));
    m_sequence += character;
    if (isIncomplete(m_sequence))
        return std::nullopt;
    const QByteArray sent = std::exchange(m_sequence, {});
    // The Escape was a key of its own, and another key follows.
    return keyOf(sent.size() == 2 ? sent.last(1) : sent);
}

} // namespace portolan
