// SPDX-License-Identifier: MIT
#pragma once

#include "ProcessSource.h"
#include "ProcessTable.h"
#include "SocketOwners.h"

#include <mutex>

namespace portolan {

/// The kernel's own tables: the listening sockets by netlink, everything else from /proc. Costs a hundredth
/// of what the tools do. Remembers between calls which process holds which socket. Ignores stop requests,
/// since it waits for nothing but the kernel.
class KernelSource final : public ProcessSource
{
public:
    [[nodiscard]] QList<RawListener> listeners(const std::stop_token &stop) override;
    [[nodiscard]] std::vector<std::optional<QString>> workingFolders(const QList<qint32> &pids,
                                                                     const std::stop_token &stop) override;
    [[nodiscard]] std::vector<std::optional<ProcessStats>> stats(const QList<qint32> &pids,
                                                                 const std::stop_token &stop) override;

private:
    [[nodiscard]] std::optional<QString> workingFolder(qint32 pid);
    [[nodiscard]] std::optional<ProcessStats> statsOf(qint32 pid);

    std::mutex m_mutex; ///< guards the other members
    KernelProcessTable m_table;
    SocketOwners m_owners{m_table};
};

} // namespace portolan
