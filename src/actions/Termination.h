// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <memory>

class QObject;

namespace portolan {

class ProcessHandle;

/// Ends a process: SIGTERM, then SIGKILL if it does not end.
namespace Termination {

/// How long a process has to end by itself before it is killed.
inline constexpr std::chrono::milliseconds gracePeriod(1500);

/// Sends SIGTERM now and, if the process is still there after `gracePeriod`, SIGKILL: to this process, never
/// to another that got its pid. Returns at once. SIGKILL needs the event loop of this thread, and is not sent
/// once `owner` is destroyed.
void start(std::shared_ptr<const ProcessHandle> process, QObject *owner);

} // namespace Termination

} // namespace portolan
