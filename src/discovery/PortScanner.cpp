#include "PortScanner.h"
#include "PortScanner_p.h"

#include "ExpendableWorker.h"
#include "ForEachIndex.h"
#include "PrintedName.h"
#include "ProcessInspector.h"
#include "StrictNumber.h"
#include "ToolAnswer.h"
#include "ToolQuestions.h"

#include <QHash>
#include <QSet>
#include <QStringList>

#include <algorithm>
#include <array>
#include <atomic>
#include <thread>
#include <utility>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

using PortScanner::RawListener;
using PortScanner::ScanOptions;
using Folders = QHash<qint32, std::optional<QString>>;

/// Never shown. A socket listing may cut a name short, so the cut forms are members beside the full ones.
constexpr std::array systemCommands{
    "ControlCe"_L1,     "ControlCenter"_L1,     "rapportd"_L1,  "sharingd"_L1,  "AirPlayXPCHelper"_L1,
    "identityse"_L1,    "identityservicesd"_L1, "cloudd"_L1,    "trustd"_L1,    "apsd"_L1,
    "nsurlsessiond"_L1, "remoted"_L1,           "launchd"_L1,   "mDNSRespo"_L1, "mDNSResponder"_L1,
    "rpcbind"_L1,       "systemstats"_L1,       "com.apple"_L1, "sshd"_L1,      "distnoted"_L1,
    "syslogd"_L1,       "coreaudiod"_L1,        "netbiosd"_L1,
};

constexpr std::array devCommandExact{"go"_L1, "ng"_L1};

constexpr std::array devCommandPrefixes{
    "node"_L1,  "deno"_L1,     "bun"_L1,     "python"_L1, "ruby"_L1, "php"_L1,     "cargo"_L1,
    "air"_L1,   "java"_L1,     "dotnet"_L1,  "next"_L1,   "vite"_L1, "webpack"_L1, "rails"_L1,
    "puma"_L1,  "gunicorn"_L1, "uvicorn"_L1, "flask"_L1,  "hugo"_L1, "jekyll"_L1,  "esbuild"_L1,
    "turbo"_L1, "watchman"_L1, "rustc"_L1,   "cargo"_L1,
};

constexpr std::array localHosts{"*"_L1, "127.0.0.1"_L1, "[::1]"_L1, "localhost"_L1, "[::]"_L1};

/// After so many time-outs of one kind of run in a scan, the rest of that kind is not tried: as with files.
constexpr int maxTimeOuts = ExpendableWorker::maxTimeOuts;

bool contains(const auto &list, QStringView text)
{
    return std::ranges::any_of(list, [&](QLatin1StringView entry) { return text == entry; });
}

/// What `tool` prints for `question` about each of `pids`, in their order; "" where it failed.
///
/// The runs go side by side, but the outcome is that of one after the other: what was already under way when
/// the last time-out that is tolerated came counts as not run.
QStringList outputs(const QString &tool, QStringList (&question)(qint32), const QList<qint32> &pids,
                    const ScanOptions &options)
{
    const Shell::Limits limits{.deadline = options.toolDeadline, .stop = options.stop};
    // What is answered in this process takes less time than a thread takes to start.
    const int workers = ToolAnswer::isImmediate(tool) ? 1 : options.workers;
    std::vector<Shell::Result> results(size_t(pids.size()));
    std::atomic<int> timeOuts = 0;
    forEachIndex(pids.size(), workers, [&](qsizetype index) {
        if (timeOuts >= maxTimeOuts || options.stop.stop_requested())
            return;
        Shell::Result &result = results[size_t(index)];
        result = ToolAnswer::to(tool, question(pids[index]), limits);
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

QList<RawListener> listeners(const ScanOptions &options)
{
    const Shell::Limits limits{.deadline = options.listingDeadline, .stop = options.stop};
    return PortScanner::parseListeners(
        ToolAnswer::to(options.lsof, ToolQuestions::listeners(), limits).output);
}

/// The first of each process and port, as far as the port is asked for.
QList<RawListener> wantedListeners(const QList<RawListener> &listeners, const ScanOptions &options)
{
    QSet<std::pair<qint32, qint64>> seen;
    QList<RawListener> distinct;
    for (const RawListener &listener : listeners) {
        if (options.ports && !options.ports->contains(listener.port))
            continue;
        const std::pair key(listener.pid, listener.port);
        if (seen.contains(key))
            continue;
        seen.insert(key);
        distinct.append(listener);
    }
    return distinct;
}

Folders workingFolders(const QList<RawListener> &listeners, const ScanOptions &options)
{
    Folders folders;
    QList<qint32> pids;
    for (const RawListener &listener : listeners) {
        if (folders.contains(listener.pid))
            continue;
        folders.insert(listener.pid, std::nullopt);
        pids.append(listener.pid);
    }
    const QStringList answers = outputs(options.lsof, ToolQuestions::workingDirectory, pids, options);
    for (qsizetype i = 0; i < pids.size(); ++i)
        folders[pids[i]] = PortScanner::parseCwd(pids[i], answers[i]);
    return folders;
}

QList<Service> devServers(const QList<RawListener> &listeners, const Folders &folders, const QString &home)
{
    QList<Service> services;
    for (const RawListener &listener : listeners) {
        const std::optional<QString> folder = folders.value(listener.pid);
        if (PortScanner::isDevServer(listener.command, folder, home))
            services.append({.pid = listener.pid,
                             .port = listener.port,
                             .command = listener.command,
                             .folderPath = folder});
    }
    return services;
}

void detectProjects(QList<Service> &services, const ScanOptions &options)
{
    std::vector<ProjectDetector::Subject> subjects;
    for (const Service &service : std::as_const(services))
        subjects.push_back({service.command, service.folderPath});
    ExpendableWorker files(options.folderDeadline, options.stop);
    std::vector<ProjectDetector::Project> projects = ProjectDetector::detect(subjects, files);
    for (qsizetype i = 0; i < services.size(); ++i) {
        services[i].displayName = std::move(projects[size_t(i)].displayName);
        services[i].framework = projects[size_t(i)].framework;
    }
}

void readStats(QList<Service> &services, const ScanOptions &options)
{
    QList<qint32> pids;
    for (const Service &service : std::as_const(services))
        pids.append(service.pid);
    const QStringList answers = outputs(options.ps, ToolQuestions::stats, pids, options);
    for (qsizetype i = 0; i < services.size(); ++i)
        services[i].stats = ProcessInspector::parse(answers[i]);
}

} // namespace

int PortScanner::ScanOptions::defaultWorkers()
{
    return std::clamp(int(std::thread::hardware_concurrency()), 1, 4);
}

QList<Service> PortScanner::scan(std::stop_token stop)
{
    ScanOptions options;
    options.stop = std::move(stop);
    return scan(options);
}

QList<Service> PortScanner::scanPorts(const QSet<qint64> &ports)
{
    ScanOptions options;
    options.ports = ports;
    return scan(options);
}

QList<Service> PortScanner::scan(const ScanOptions &options)
{
    const QList<RawListener> distinct = wantedListeners(listeners(options), options);
    QList<Service> services = devServers(distinct, workingFolders(distinct, options), options.home);
    readStats(services, options);
    detectProjects(services, options);
    std::ranges::stable_sort(services, {}, &Service::port);
    return services;
}

QList<RawListener> PortScanner::parseListeners(const QString &output)
{
    QList<RawListener> listeners;
    std::optional<qint32> pid;
    QString command;
    for (QStringView line : QStringView(output).tokenize(u'\n', Qt::SkipEmptyParts)) {
        const QStringView value = line.sliced(1);
        switch (line.front().unicode()) {
        case 'p':
            pid = StrictNumber::toInt32(value);
            command.clear();
            break;
        case 'c':
            command = value.toString();
            break;
        case 'n':
            if (const std::optional<qint64> number = port(value); pid && number)
                listeners.append({*pid, command, *number});
            break;
        default:
            break;
        }
    }
    return listeners;
}

std::optional<qint64> PortScanner::port(QStringView fromName)
{
    const qsizetype colon = fromName.lastIndexOf(u':');
    if (colon < 0 || !contains(localHosts, fromName.first(colon)))
        return std::nullopt;
    return StrictNumber::toInt64(fromName.sliced(colon + 1));
}

std::optional<QString> PortScanner::resolveCwd(qint32 pid)
{
    return parseCwd(pid, ToolAnswer::to(ToolPaths::lsof(), ToolQuestions::workingDirectory(pid)).output);
}

std::optional<QString> PortScanner::parseCwd(qint32 pid, const QString &output)
{
    for (QStringView line : QStringView(output).tokenize(u'\n', Qt::SkipEmptyParts)) {
        if (!line.startsWith(u'n'))
            continue;
        const QStringView name = line.sliced(1);
        // Not a folder but lsof's complaint about what it could not look up: "/proc/42/cwd (readlink: ...)".
        const bool isComplaint = name.startsWith(u"/proc/") && name.startsWith(u"/proc/%1/cwd ("_s.arg(pid));
        return isComplaint ? std::nullopt : std::optional(PrintedName::plain(name.toString()));
    }
    return std::nullopt;
}

bool PortScanner::isDevServer(const QString &command, const std::optional<QString> &folder,
                              const QString &home)
{
    if (contains(systemCommands, command))
        return false;
    const QString lower = command.toLower();
    if (contains(devCommandExact, lower))
        return true;
    const auto begins = [&](QLatin1StringView prefix) { return lower.startsWith(prefix); };
    if (std::ranges::any_of(devCommandPrefixes, begins))
        return true;
    return folder && HomeFolder::holds(home, *folder);
}

} // namespace portolan
