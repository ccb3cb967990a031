// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The user's terminal emulator.
namespace portolan::Terminal {

/// Opens a terminal window that runs the user's shell in the folder at the absolute path `folder`. Does not
/// wait for the terminal. Does nothing if no terminal emulator is installed.
void open(const QString &folder);

} // namespace portolan::Terminal
