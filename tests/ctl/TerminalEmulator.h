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

/// The content of an empty xterm after `output` was written to it: its lines without trailing spaces, and
/// without empty ones at the bottom. Attributes are ignored, except for `isReversed`; an unknown escape
/// sequence shows as "<?>".
[[nodiscard]] QStringList seenOnTerminal(const QByteArray &output, TerminalSize size = {});

/// The first line of those that is shown in reverse; nothing if none is.
[[nodiscard]] std::optional<int> reversedLine(const QByteArray &output, TerminalSize size = {});

} // namespace portolan
