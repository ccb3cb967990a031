// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

#include <chrono>
#include <optional>

/// Programs that are started for the user and then are on their own.
namespace portolan::DetachedProgram {

/// Starts the executable at the absolute path `program`, with `arguments` as they are, and returns without
/// waiting for it. It lives in a session of its own and outlives this program, leaves no zombie, has
/// /dev/null for standard input and outputs and no other descriptor of ours, the limit of descriptors that we
/// were started with, all signals as by default, and our environment without what was meant for this program
/// alone, the desktop's token to activate it. A program that cannot be started is silently left.
void start(const QString &program, const QStringList &arguments);

/// As start(), but waits for up to `patience` for the program to end. Returns its exit status: 127 if it
/// could not be started, 128 more than the signal's number if one ended it. Nothing if it lives on; it then
/// stays our child, which makes this for programs that end soon themselves.
[[nodiscard]] std::optional<int> startAndWatch(const QString &program, const QStringList &arguments,
                                               std::chrono::milliseconds patience);

} // namespace portolan::DetachedProgram
