// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringView>

/// Texts from outside the program (names, commands, folders) made safe for a terminal and cut to its width.
/// Widths are those of the locale, which QCoreApplication has set to a UTF-8 one.
namespace portolan::TerminalText {

/// `text` with everything that a terminal would interpret, or that would reorder or hide other text, replaced
/// by something visible: control characters by their Unicode control pictures, the others by U+FFFD.
[[nodiscard]] QString harmless(QStringView text);

/// The width of the harmless `text` in terminal columns.
[[nodiscard]] int width(QStringView text);

/// The harmless `text` shortened at its end to at most `columns`, with an ellipsis in place of what is
/// missing.
[[nodiscard]] QString elided(QStringView text, int columns);

/// The same, shortened in the middle; more of the end is kept, which is the important part of a path.
[[nodiscard]] QString elidedInTheMiddle(QStringView text, int columns);

} // namespace portolan::TerminalText
