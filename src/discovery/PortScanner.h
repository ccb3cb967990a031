// SPDX-License-Identifier: MIT
#pragma once

#include "ProcessIdentity.h"
#include "Service.h"

#include <QHash>
#include <QList>
#include <QSet>

#include <stop_token>

namespace portolan {

class FolderReader;
class ProcessSource;

/// What a scan found.
struct ScanResult
{
    QList<Service> services;                   ///< sorted by port
    QHash<qint32, ProcessIdentity> identities; ///< of their processes by pid, as far as the system tells
};

/// Discovery's single entry point.
namespace PortScanner {

/// The development servers that listen on this machine now, as `source` knows it; project files are read by
/// `files`. Blocks, so never on the main thread; any number of scans may run at once. Never fails: an empty
/// list means that nothing was found. A stop request makes it return early with a list that means nothing.
[[nodiscard]] ScanResult scan(ProcessSource &source, FolderReader &files, std::stop_token stop = {});

/// Those of them that listen on one of `ports`; about others nothing is asked.
[[nodiscard]] ScanResult scanPorts(ProcessSource &source, FolderReader &files, const QSet<qint64> &ports);

} // namespace PortScanner

} // namespace portolan
