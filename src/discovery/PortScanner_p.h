// SPDX-License-Identifier: MIT
#pragma once

#include "PortScanner.h"

#include <QString>

namespace portolan::PortScanner {

/// Whether a listener counts as a development server, by its command name, else by its folder.
[[nodiscard]] bool isDevServer(const QString &command, const std::optional<QString> &folder,
                               const QStringList &homes);

} // namespace portolan::PortScanner
