// SPDX-License-Identifier: MIT
#pragma once

#include "ProcessSource.h"
#include "UnreapedChildren.h"

#include <QStringList>

#include <algorithm>
#include <chrono>
#include <thread>

namespace portolan {

/// What lsof and ps say: one run of lsof for the listeners, one more for each working folder, one of ps for
/// the figures of each process. Runs about several processes go side by side on a few threads, and the
/// outcome is that of one after the other.
class ToolSource final : public ProcessSource
{
public:
    /// After so many time-outs in one batch the rest of it counts as not run: a dead mount stops every lsof.
    static constexpr int maxTimeOuts = 2;

    struct Options
    {
        QString lsof; ///< "": where the system keeps it, looked for each time it is run
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
