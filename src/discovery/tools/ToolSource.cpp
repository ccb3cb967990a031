// SPDX-License-Identifier: MIT
#include "ToolSource.h"

#include "LsofOutput.h"
#include "ProcessInspector.h"
#include "Shell.h"

#include <QHash>
#include <QStandardPaths>

#include <algorithm>
#include <atomic>
#include <limits>
#include <system_error>
#include <thread>
#include <utility>

#include <unistd.h>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

QStringList listenersQuestion()
{
    return {u"-nP"_s, u"-iTCP"_s, u"-sTCP:LISTEN"_s, u"-FpcnPT"_s};
}

QStringList workingFolderQuestion(qint32 pid)
{
    return {u"-a"_s, u"-p"_s, QString::number(pid), u"-d"_s, u"cwd"_s, u"-Fn"_s};
}

QStringList statsQuestion(qint32 pid)
{
    return {u"-o"_s, u"etime=,%cpu=,rss="_s, u"-p"_s, QString::number(pid)};
}

/// The process that has `pid` now. If there is none, one with an impossible start time, so that no later
/// process is taken for the listed one. Absent where the system does not tell start times.
std::optional<ProcessIdentity> identityOf(qint32 pid)
{
    const auto identity = ProcessIdentity::of(pid);
    const bool canTell = identity || ProcessIdentity::of(getpid());
    return canTell ? identity.value_or(ProcessIdentity{pid, std::numeric_limits<quint64>::max()})
                   : std::optional<ProcessIdentity>();
}

} // namespace

ToolSource::ToolSource()
    : ToolSource(Options())
{}

ToolSource::ToolSource(Options options)
    : m_options(std::move(options))
{}

QString ToolSource::lsof() const
{
    return m_options.lsof.isEmpty()
               ? QStandardPaths::findExecutable(u"lsof"_s, {u"/usr/sbin"_s, u"/usr/bin"_s})
               : m_options.lsof;
}

QString ToolSource::ps() const
{
    return m_options.ps.isEmpty() ? QStandardPaths::findExecutable(u"ps"_s, {u"/bin"_s, u"/usr/bin"_s})
                                  : m_options.ps;
}

QList<RawListener> ToolSource::listeners(const std::stop_token &stop)
{
    m_unreaped.reap();
    const Shell::Limits limits{.deadline = m_options.listingDeadline, .stop = stop, .unreaped = &m_unreaped};
    QList<RawListener> listeners =
        PortScanner::parseListeners(Shell::run(lsof(), listenersQuestion(), limits).output);
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
    const QStringList texts = outputs(lsof(), workingFolderQuestion, pids, stop);
    std::vector<std::optional<QString>> folders;
    for (qsizetype i = 0; i < pids.size(); ++i)
        folders.push_back(PortScanner::parseCwd(pids[i], texts[i]));
    return folders;
}

std::vector<std::optional<ProcessStats>> ToolSource::stats(const QList<qint32> &pids,
                                                           const std::stop_token &stop)
{
    std::vector<std::optional<ProcessStats>> stats;
    for (const QString &text : outputs(ps(), statsQuestion, pids, stop))
        stats.push_back(ProcessInspector::parse(text));
    return stats;
}

/// The output of `tool` for each of `pids`, in their order; "" if it failed, and for all after the last
/// time-out that is tolerated, even if they were under way already.
QStringList ToolSource::outputs(const QString &tool, QStringList (&question)(qint32),
                                const QList<qint32> &pids, const std::stop_token &stop)
{
    const Shell::Limits limits{.deadline = m_options.deadline, .stop = stop, .unreaped = &m_unreaped};
    std::vector<Shell::Result> results(size_t(pids.size()));
    std::atomic<qsizetype> next = 0;
    std::atomic<int> timeOuts = 0;
    const auto work = [&] {
        for (qsizetype i = next++; i < pids.size(); i = next++) {
            if (timeOuts >= maxTimeOuts || stop.stop_requested())
                return;
            results[size_t(i)] = Shell::run(tool, question(pids[i]), limits);
            timeOuts += results[size_t(i)].timedOut;
        }
    };
    {
        std::vector<std::jthread> helpers;
        try {
            for (qsizetype i = 1; i < std::min<qsizetype>(m_options.workers, pids.size()); ++i)
                helpers.emplace_back(work);
        } catch (const std::system_error &) {
            // No more threads can be created: the existing ones do all of it.
        }
        work();
    }

    QStringList texts;
    int timeOutsSoFar = 0;
    for (Shell::Result &result : results) {
        texts.append(timeOutsSoFar < maxTimeOuts ? std::move(result.output) : QString());
        timeOutsSoFar += result.timedOut;
    }
    return texts;
}

} // namespace portolan
