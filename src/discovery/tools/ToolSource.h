// SPDX-License-Identifier: MIT
#pragma once

#include "ProcessSource.h"
#include "UnreapedChildren.h"

#include <QStringList>

#include <algorithm>
#include <chrono>
#include <thread>

namespace portolan {

/// The process source of lsof and ps: one run of lsof for the listeners, one more for each working folder,
/// and one of ps for the statistics of each process. The runs for several processes go in parallel on a few
/// threads, with the result of running them one after the other.
class ToolSource final : public ProcessSource
{
public:
    /// After so many time-outs in one batch the rest of it counts as not run: a dead mount blocks every lsof.
    static constexpr int maxTimeOuts = 2;

    struct Options
    {
        QString lsof; ///< "": the usual places, searched for each run
        QString ps;   ///< likewise
        std::chrono::milliseconds listingDeadline = std::chrono::seconds(10);
        std::chrono::milliseconds deadline = std::chrono::seconds(3); ///< of every other run
        /// Threads. No more than four: the tools' own work is what takes the time.
        int workers = std::clamp(int(std::thread::hardware_concurrency()), 1, 4);
    };

    ToolSource();
    explicit ToolSource(Options options);

    [[nodiscard]] QList<RawListener> listeners(const std::stop_token &stop) override;
    [[nodiscard]] std::vector<std::optional<QString>> workingFolders(const QList<qint32> &pids,
                                                                     const std::stop_token &stop) override;
    [[nodiscard]] std::vector<std::optional<ProcessStats>> stats(const QList<qint32> &pids,
                                                                 const std::stop_token &stop) override;

private:
    [[nodiscard]] QStringList outputs(const QString &tool, QStringList (&question)(qint32),
                                      const QList<qint32> &pids, const std::stop_token &stop);
    [[nodiscard]] QString lsof() const;
    [[nodiscard]] QString ps() const;

    const Options m_options;
    UnreapedChildren m_unreaped;
};

} // namespace portolan
