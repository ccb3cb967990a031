// SPDX-License-Identifier: MIT
#pragma once

#include "FolderReader.h"
#include "HomeFolder.h"
#include "ProcessIdentity.h"
#include "Service.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QStringList>

#include <chrono>
#include <optional>
#include <stop_token>

namespace portolan {

class ProcessSource;

/// What a scan found.
struct ScanResult
{
    QList<Service> services;                   ///< sorted by port
    QHash<qint32, ProcessIdentity> identities; ///< of their processes, by pid, where the system tells
};

/// Discovery's single entry point.
namespace PortScanner {

struct ScanOptions
{
    std::stop_token stop = {};               ///< ends the scan early, with a meaningless result
    std::optional<QSet<qint64>> ports = {};  ///< listeners on other ports are ignored; absent: none are
    QStringList homes = HomeFolder::paths(); ///< the names of the user's home folder
    /// The time for one question to the folder reader.
    std::chrono::milliseconds folderDeadline = FolderReader::Limits().deadline;
};

/// The development servers that listen now, according to `source`; project files are read by `files`. Blocks,
/// so never on the main thread; any number of scans may run at once. Never fails: an empty list means that
/// nothing was found.
[[nodiscard]] ScanResult scan(ProcessSource &source, FolderReader &files, const ScanOptions &options = {});

} // namespace PortScanner

} // namespace portolan
