// SPDX-License-Identifier: MIT
#include "TerminalColors.h"

#include <array>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

struct Codes
{
    QLatin1StringView sixteen;
    QLatin1StringView palette256;
    QLatin1StringView trueColor;
};

// In the order of TextStyle. Strong and faint are relative to the terminal's own colours, which may be dark
// on light; the others are the desktop program's colours, as near as the terminal comes.
constexpr std::array<Codes, 7> codes{{
    {""_L1, ""_L1, ""_L1},
    {"1"_L1, "1"_L1, "1"_L1},
    {"2"_L1, "2"_L1, "2"_L1},
    {"34"_L1, "38;5;69"_L1, "38;2;59;130;246"_L1},
    {"32"_L1, "38;5;41"_L1, "38;2;34;197;94"_L1},
    {"33"_L1, "38;5;178"_L1, "38;2;234;179;8"_L1},
    {"31"_L1, "38;5;204"_L1, "38;2;244;63;94"_L1},
}};

} // namespace

TerminalColors::Depth TerminalColors::depthOfTerminal(const QByteArray &term, const QByteArray &colorTerm,
                                                      const QByteArray &noColor)
{
    if (!noColor.isEmpty() || term.isEmpty() || term == "dumb")
        return Depth::None;
    if (colorTerm == "truecolor" || colorTerm == "24bit")
        return Depth::TrueColor;
    return term.contains("256color") ? Depth::Palette256 : Depth::Sixteen;
}

QString TerminalColors::styled(TextStyle style, const QString &text) const
{
    const Codes &code = codes[size_t(style)];
    const QLatin1StringView chosen = m_depth == Depth::TrueColor    ? code.trueColor
                                     : m_depth == Depth::Palette256 ? code.palette256
                                                                    : code.sixteen;
    if (m_depth == Depth::None || chosen.isEmpty() || text.isEmpty())
        return text;
    return "\x1b["_L1 + chosen + u'm' + text + "\x1b[0m"_L1;
}

QString TerminalColors::styled(const StyledLine &line) const
{
    QString result;
    for (const StyledText &piece : line)
        result += styled(piece.style, piece.text);
    return result;
}

} // namespace portolan
