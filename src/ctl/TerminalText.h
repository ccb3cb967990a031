#pragma once

#include <QString>
#include <QStringView>

namespace portolan {

/// Texts of strangers (names, commands, folders) made fit for a terminal. Pure functions.
namespace TerminalText {

/// `text` with everything in it that a terminal would obey or that would reorder or hide its neighbours
/// replaced by something visible: control characters by their pictures, the others by U+FFFD.
[[nodiscard]] QString harmless(QStringView text);

/// How many columns a terminal takes to show the harmless `text`.
[[nodiscard]] int width(QStringView text);

/// The harmless `text` cut at its end to at most `columns`, with an ellipsis where something is missing.
[[nodiscard]] QString elided(QStringView text, int columns);

/// The same, cut in the middle, where a path tells least; more of its end is kept than of its start.
[[nodiscard]] QString elidedInTheMiddle(QStringView text, int columns);

} // namespace TerminalText

} // namespace portolan
