// SPDX-License-Identifier: MIT
#pragma once

#include "ProcessSource.h"

#include <memory>

/// The process source of this machine.
namespace portolan::SystemSource {

/// The kernel's tables; the tools with PORTOLAN_TOOLS=external in the environment, and where /proc cannot be
/// read.
[[nodiscard]] std::unique_ptr<ProcessSource> make();

} // namespace portolan::SystemSource
