// SPDX-License-Identifier: MIT
#pragma once

#include "HomeFolder.h"
#include "PortScanner.h"
#include "ProjectDetector.h"

#include <QString>

#include <chrono>
#include <optional>

namespace portolan {

namespace PortScanner {

/// What a scan depends on besides its rules.
struct ScanOptions
{
    QStringList homes = HomeFolder::paths();
    std::chrono::milliseconds folderDeadline = FolderReader::Limits().deadline;
    std::optional<QSet<qint64>> ports; ///< listeners on others are skipped; absent: on none
    std::stop_token stop;
};

[[nodiscard]] ScanResult scan(ProcessSource &source, FolderReader &files, const ScanOptions &options);

/// Whether a listener is one that a developer wants to see, by its command name, else by its folder.
[[nodiscard]] bool isDevServer(const QString &command, const std::optional<QString> &folder,
                               const QStringList &homes);

} // namespace PortScanner

} // namespace portolan
