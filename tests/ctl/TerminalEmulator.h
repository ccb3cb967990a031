// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QStringList>

#include <optional>

namespace portolan {

/// The size of a terminal in characters.
struct TerminalSize
{
    int columns = 1000;
    int rows = 1000;
};

/// What a reader sees after `output` was written to an empty terminal of the kind of xterm: its lines without
/// the space at their ends, and without empty ones at the bottom. Attributes are ignored, but for those of
/// `isReversed`; an unknown escape sequence shows as "<?>".
[[nodiscard]] QStringList seenOnTerminal(const QByteArray &output, TerminalSize size = {});

/// The first line of those that is shown in reverse; nothing if none is.
[[nodiscard]] std::optional<int> reversedLine(const QByteArray &output, TerminalSize size = {});

} // namespace portolan
