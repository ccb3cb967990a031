// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringView>

/// Texts from outside the program (names, commands, folders) made safe for a terminal and cut to its width.
/// Widths are those of the locale, which QCoreApplication has made a UTF-8 one.
namespace portolan::TerminalText {

/// `text` with everything that a terminal would interpret, or that would reorder or hide other text, replaced
/// by something visible: control characters by their Unicode control pictures, the others by U+FFFD.
[[nodiscard]] QString harmless(QStringView text);

/// How many columns a terminal takes to show the harmless `text`.
[[nodiscard]] int width(QStringView text);

/// The harmless `text` cut at its end to at most `columns`, with an ellipsis where something is missing.
[[nodiscard]] QString elided(QStringView text, int columns);

/// The same, cut in the middle; more of the end is kept than of the start, as the end of a path tells more.
[[nodiscard]] QString elidedInTheMiddle(QStringView text, int columns);

} // namespace portolan::TerminalText
