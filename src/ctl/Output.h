// SPDX-License-Identifier: MIT
#pragma once

#include "TerminalColors.h"

#include <QByteArrayView>

/// What standard output is connected to, and writing to it and to standard error.
namespace portolan::Output {

struct Size
{
    int columns = 80;
    int rows = 24;
};

/// Whether standard output is a terminal.
[[nodiscard]] bool isTerminal();
/// Whether it is one that can erase text and move its cursor.
[[nodiscard]] bool canMoveCursor();
/// How large it is now.
[[nodiscard]] Size size();
/// Colours for what is written to it: none where it is no terminal or the user wants none.
[[nodiscard]] TerminalColors colors();

/// Waits until standard output takes some bytes without blocking. False when the user asks the program to end
/// first: a reader that has stopped reading, or a terminal stopped by Control-S, may never take more.
[[nodiscard]] bool awaitWritable();

/// Writes `message` to standard error after the program's name. Parts of it that come from elsewhere have to
/// be harmless (see TerminalText).
void printError(const QString &message);

/// Writes all of `bytes` to standard output, waiting for its reader, but no longer than until the user asks
/// the program to end. On failure writes why to standard error, unless the reader has closed the pipe, and
/// returns false.
[[nodiscard]] bool write(QByteArrayView bytes);

} // namespace portolan::Output
