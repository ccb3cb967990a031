// SPDX-License-Identifier: MIT
#pragma once

#include "ProcessIdentity.h"
#include "ProcessStats.h"

#include <QList>
#include <QString>

#include <optional>
#include <stop_token>
#include <vector>

namespace portolan {

/// One listening TCP socket that is bound to all addresses or to the loopback address.
struct RawListener
{
    qint32 pid = 0;
    QString command; ///< the process's name, in lsof's spelling (PrintedName.h); "" if it has none
    qint64 port = 0;
    std::optional<ProcessIdentity> identity; ///< absent where the system does not tell

    friend bool operator==(const RawListener &, const RawListener &) = default;
};

/// The source of discovery's information about processes. Has no rules about what is a development server.
///
/// All calls block, never fail, and may come from any thread and from several at once. A stop request makes
/// them return early with meaningless results.
class ProcessSource
{
public:
    virtual ~ProcessSource() = default;

    /// The listening sockets of all processes that may be inspected, by ascending pid and descriptor. A
    /// process that holds several sockets for one port is listed once for each.
    [[nodiscard]] virtual QList<RawListener> listeners(const std::stop_token &stop) = 0;

    /// The working folder of each of `pids`, in their order; absent where it cannot be found.
    [[nodiscard]] virtual std::vector<std::optional<QString>> workingFolders(const QList<qint32> &pids,
                                                                             const std::stop_token &stop) = 0;

    /// The statistics of each of `pids`, in their order; absent where they cannot be read.
    [[nodiscard]] virtual std::vector<std::optional<ProcessStats>> stats(const QList<qint32> &pids,
                                                                         const std::stop_token &stop) = 0;
};

} // namespace portolan
