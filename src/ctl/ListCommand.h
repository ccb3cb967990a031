#pragma once

#include "CommandLine.h"
#include "Service.h"

namespace portolan {

/// `portolanctl list`: one look at the machine.
namespace ListCommand {

/// Scans, probes, prints. Returns the program's exit status.
[[nodiscard]] int run(const CommandLine &line);

/// What is said while `services` are known and `isScanning` or their probes are under way. A pure function.
[[nodiscard]] QString progressText(bool isScanning, const QList<Service> &services);

} // namespace ListCommand

} // namespace portolan
