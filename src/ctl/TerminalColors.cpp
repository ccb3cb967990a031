// SPDX-License-Identifier: MIT
#include "TerminalColors.h"

#include <algorithm>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

/// The parameters between "ESC [" and "m"; empty for a style without attributes. Strong and faint are
/// relative to the terminal's own colours, which may be dark on light.
QString codeOf(TextStyle style, TerminalColors::Depth depth)
{
    if (style == TextStyle::Strong)
        return u"1"_s;
    if (style == TextStyle::Faint)
        return u"2"_s;
    const auto color = std::ranges::find(terminalColors, style, &TerminalColor::style);
    if (color == terminalColors.end())
        return {};
    if (depth == TerminalColors::Depth::TrueColor)
        return "38;2;"_L1 + color->rgb;
    return depth == TerminalColors::Depth::Palette256 ? u"38;5;%1"_s.arg(color->ofPalette)
                                                      : u"3%1"_s.arg(color->basic);
}

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
    const QString code = codeOf(style, m_depth);
    if (m_depth == Depth::None || code.isEmpty() || text.isEmpty())
        return text;
    return "\x1b["_L1 + code + u'm' + text + "\x1b[0m"_L1;
}

QString TerminalColors::styled(const StyledLine &line) const
{
    QString result;
    for (const StyledText &piece : line)
        result += styled(piece.style, piece.text);
    return result;
}

} // namespace portolan
