// SPDX-License-Identifier: MIT
#include "ToolSource.h"

#include "ForEachIndex.h"
#include "LsofOutput.h"
#include "ProcessInspector.h"
#include "Shell.h"
#include "ToolCommands.h"

#include <QHash>

#include <algorithm>
#include <atomic>
#include <limits>
#include <thread>
#include <utility>

#include <unistd.h>

namespace portolan {

namespace {

/// Which process has `pid` now. One that has ended since it was listed is told from any later one by a start
/// that no process has.
std::optional<ProcessIdentity> identityOf(qint32 pid)
{
    const auto identity = ProcessIdentity::of(pid);
    const bool canTell = identity || ProcessIdentity::of(getpid());
    return canTell ? identity.value_or(ProcessIdentity{pid, std::numeric_limits<quint64>::max()})
                   : std::optional<ProcessIdentity>();
}

} // namespace

int ToolSource::Options::defaultWorkers()
{
    return std::clamp(int(std::thread::hardware_concurrency()), 1, 4);
}

ToolSource::ToolSource()
    : ToolSource(Options())
{}

ToolSource::ToolSource(Options options)
    : m_options(std::move(options))
{}

QString ToolSource::lsof() const
{
    return m_options.lsof.isEmpty() ? ToolCommands::lsof() : m_options.lsof;
}

QList<RawListener> ToolSource::listeners(const std::stop_token &stop)
{
    m_unreaped.reap();
    const Shell::Limits limits{.deadline = m_options.listingDeadline, .stop = stop, .unreaped = &m_unreaped};
    QList<RawListener> listeners =
        PortScanner::parseListeners(Shell::run(lsof(), ToolCommands::listeners(), limits).output);
    QHash<qint32, std::optional<ProcessIdentity>> identities;
    for (RawListener &listener : listeners) {
        if (!identities.contains(listener.pid))
            identities.insert(listener.pid, identityOf(listener.pid));
        listener.identity = identities[listener.pid];
    }
    return listeners;
}

std::vector<std::optional<QString>> ToolSource::workingFolders(const QList<qint32> &pids,
                                                               const std::stop_token &stop)
{
    const QStringList texts = outputs(lsof(), ToolCommands::workingFolder, pids, stop);
    std::vector<std::optional<QString>> folders;
    for (qsizetype i = 0; i < pids.size(); ++i)
        folders.push_back(PortScanner::parseCwd(pids[i], texts[i]));
    return folders;
}

std::vector<std::optional<ProcessStats>> ToolSource::stats(const QList<qint32> &pids,
                                                           const std::stop_token &stop)
{
    const QString ps = m_options.ps.isEmpty() ? ToolCommands::ps() : m_options.ps;
    std::vector<std::optional<ProcessStats>> stats;
    for (const QString &text : outputs(ps, ToolCommands::stats, pids, stop))
        stats.push_back(ProcessInspector::parse(text));
    return stats;
}

/// What `tool` prints about each of `pids`, in their order; "" where it failed, and for what came after the
/// last time-out that is tolerated, even if it was under way already.
QStringList ToolSource::outputs(const QString &tool, QStringList (&arguments)(qint32),
                                const QList<qint32> &pids, const std::stop_token &stop)
{
    const Shell::Limits limits{.deadline = m_options.deadline, .stop = stop, .unreaped = &m_unreaped};
    std::vector<Shell::Result> results(size_t(pids.size()));
    std::atomic<int> timeOuts = 0;
    forEachIndex(pids.size(), m_options.workers, [&](qsizetype index) {
        if (timeOuts >= maxTimeOuts || stop.stop_requested())
            return;
        Shell::Result &result = results[size_t(index)];
        result = Shell::run(tool, arguments(pids[index]), limits);
        timeOuts += result.timedOut;
    });

    QStringList texts;
    int timeOutsSoFar = 0;
    for (Shell::Result &result : results) {
        texts.append(timeOutsSoFar < maxTimeOuts ? std::move(result.output) : QString());
        timeOutsSoFar += result.timedOut;
    }
    return texts;
}

} // namespace portolan
