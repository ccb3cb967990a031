// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <memory>

class QObject;

namespace portolan {

class ProcessHandle;

/// How a process is ended: it is asked to end, and killed if it does not.
namespace Termination {

/// How long a process has to end by itself before it is killed.
inline constexpr std::chrono::milliseconds gracePeriod(1500);

/// Sends SIGTERM now and, if the process is still there after `gracePeriod`, SIGKILL: to this process, never
/// to another that has got its id. Returns at once. The kill needs the event loop of this thread, and does
/// not come once `owner` is gone.
void start(std::shared_ptr<const ProcessHandle> process, QObject *owner);

} // namespace Termination

} // namespace portolan
