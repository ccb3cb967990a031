// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QLatin1StringView>
#include <QList>
#include <QString>

#include <array>

namespace portolan {

/// The style of a piece of text on a terminal.
enum class TextStyle : quint8 {
    Plain,
    Strong, ///< most important
    Faint,  ///< less important
    Accent,
    Online,
    Pending,
    Offline,
};

struct StyledText
{
    QString text;
    TextStyle style = TextStyle::Plain;
};

/// A line for a terminal: harmless texts side by side, without a line feed.
using StyledLine = QList<StyledText>;

/// A colour of the desktop program, and the nearest ones of terminals.
struct TerminalColor
{
    TextStyle style; ///< what it is for
    short basic;     ///< among the eight basic colours
    short ofPalette; ///< in xterm's palette of 256
    QLatin1StringView rgb;
};
inline constexpr std::array terminalColors{
    TerminalColor{TextStyle::Accent, 4, 69, QLatin1StringView("59;130;246")},
    TerminalColor{TextStyle::Online, 2, 41, QLatin1StringView("34;197;94")},
    TerminalColor{TextStyle::Pending, 3, 178, QLatin1StringView("234;179;8")},
    TerminalColor{TextStyle::Offline, 1, 204, QLatin1StringView("244;63;94")},
};

/// Colours texts for a terminal with a given colour depth.
class TerminalColors
{
public:
    enum class Depth : quint8 { None, Sixteen, Palette256, TrueColor };

    /// No colours.
    TerminalColors() = default;
    explicit TerminalColors(Depth depth)
        : m_depth(depth)
    {}

    /// The colour depth of a terminal, by the environment variables TERM, COLORTERM and NO_COLOR.
    [[nodiscard]] static Depth depthOfTerminal(const QByteArray &term, const QByteArray &colorTerm,
                                               const QByteArray &noColor);

    /// `text` with the escape sequences of `style`; `text` itself without colours.
    [[nodiscard]] QString styled(TextStyle style, const QString &text) const;
    [[nodiscard]] QString styled(const StyledLine &line) const;

    [[nodiscard]] Depth depth() const { return m_depth; }

private:
    Depth m_depth = Depth::None;
};

} // namespace portolan
