// SPDX-License-Identifier: MIT
#pragma once

#include "TerminalColors.h"

#include <QByteArrayView>

/// Standard output and standard error: what they are connected to, and writing to them.
namespace portolan::Output {

struct Size
{
    int columns = 80;
    int rows = 24;
};

/// Whether standard output is a terminal.
[[nodiscard]] bool isTerminal();
/// Whether it is a terminal that can erase text and move its cursor.
[[nodiscard]] bool canMoveCursor();
/// The current size of the terminal.
[[nodiscard]] Size size();
/// The colours for standard output: none if it is no terminal or the user wants none.
[[nodiscard]] TerminalColors colors();

/// Waits until standard output takes some bytes without blocking. False if the user asks the program to end
/// first: a reader that has stopped reading, or a terminal stopped by Control-S, may never take more.
[[nodiscard]] bool awaitWritable();

/// Writes `message` to standard error after the program's name. Parts of it that come from elsewhere must be
/// harmless (see TerminalText).
void printError(const QString &message);

/// Writes all of `bytes` to standard output, waiting for its reader until the user asks the program to end.
/// On failure returns false, after writing the reason to standard error unless the reader has closed the
/// pipe.
[[nodiscard]] bool write(QByteArrayView bytes);

} // namespace portolan::Output
