// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

#include <chrono>
#include <optional>

/// Starts programs that then run independently of this one.
namespace portolan::DetachedProgram {

/// Starts the executable at the absolute path `program`, with `arguments` unchanged, and returns without
/// waiting for it. It runs in a session of its own, outlives this program and leaves no zombie. Its standard
/// streams are /dev/null, it inherits no other descriptor, and it has default signals, the limit of
/// descriptors that this program was started with, and ChildSetup::environment(). A failure is not reported.
void start(const QString &program, const QStringList &arguments);

/// As start(), but waits for up to `patience` for the program to end. Returns its exit status: 127 if it
/// could not be started, 128 plus the signal's number if one ended it. Nothing if it still runs; it then
/// stays a child of this program, so this is for programs that end soon.
[[nodiscard]] std::optional<int> startAndWatch(const QString &program, const QStringList &arguments,
                                               std::chrono::milliseconds patience);

} // namespace portolan::DetachedProgram
