// SPDX-License-Identifier: MIT
#pragma once

#include "ProcessSource.h"
#include "UnreapedChildren.h"

#include <QStringList>

#include <chrono>

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
        QString lsof; ///< "": where the system keeps it
        QString ps;   ///< likewise
        std::chrono::milliseconds listingDeadline = std::chrono::seconds(10);
        std::chrono::milliseconds deadline = std::chrono::seconds(3); ///< of every other run
        int workers = defaultWorkers();

        /// One for each core, but no more than four: the tools' own work is what takes the time.
        [[nodiscard]] static int defaultWorkers();
    };

    ToolSource();
    explicit ToolSource(Options options);

    [[nodiscard]] QList<RawListener> listeners(const std::stop_token &stop) override;
    [[nodiscard]] std::vector<std::optional<QString>> workingFolders(const QList<qint32> &pids,
                                                                     const std::stop_token &stop) override;
    [[nodiscard]] std::vector<std::optional<ProcessStats>> stats(const QList<qint32> &pids,
                                                                 const std::stop_token &stop) override;

private:
    [[nodiscard]] QStringList outputs(const QString &tool, QStringList (&arguments)(qint32),
                                      const QList<qint32> &pids, const std::stop_token &stop);
    [[nodiscard]] QString lsof() const;

    const Options m_options;
    UnreapedChildren m_unreaped;
};

} // namespace portolan
