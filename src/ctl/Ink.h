#pragma once

#include <QByteArray>
#include <QString>

namespace portolan {

/// What a piece of text is, as far as its colour goes.
enum class Tone : quint8 {
    plain,
    strong, ///< what the eye looks for
    faint,  ///< what can wait
    accent,
    online,
    pending,
    offline,
};

/// Colours texts for a terminal, with the greatest depth of colour that it has.
class Ink
{
public:
    enum class Depth : quint8 { none, sixteen, palette, exact };

    Ink() = default;
    explicit Ink(Depth depth)
        : m_depth(depth)
    {}

    /// What a terminal can show, by the environment variables TERM, COLORTERM and NO_COLOR.
    [[nodiscard]] static Depth depthOfTerminal(const QByteArray &term, const QByteArray &colorTerm,
                                               const QByteArray &noColor);

    /// `text` in `tone`; `text` itself without colours.
    [[nodiscard]] QString operator()(Tone tone, const QString &text) const;

private:
    Depth m_depth = Depth::none;
};

} // namespace portolan
