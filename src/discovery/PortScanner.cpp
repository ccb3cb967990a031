// SPDX-License-Identifier: MIT
#include "PortScanner.h"
#include "PortScanner_p.h"

#include "ProcessSource.h"
#include "ProjectDetector.h"

#include <algorithm>
#include <array>
#include <utility>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

using PortScanner::ScanOptions;
using Folders = QHash<qint32, std::optional<QString>>;

/// Never shown. Socket listings may truncate names, so the truncated forms are listed beside the full ones.
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

bool contains(const auto &list, QStringView text)
{
    return std::ranges::any_of(list, [&](QLatin1StringView entry) { return text == entry; });
}

/// The first listener of each process and port, if the port is asked for.
QList<RawListener> wantedListeners(const QList<RawListener> &listeners, const ScanOptions &options)
{
    QSet<std::pair<qint32, qint64>> seen;
    QList<RawListener> distinct;
    for (const RawListener &listener : listeners) {
        const std::pair key(listener.pid, listener.port);
        if (seen.contains(key) || (options.ports && !options.ports->contains(listener.port)))
            continue;
        seen.insert(key);
        distinct.append(listener);
    }
    return distinct;
}

/// Clears the folders that were deleted, which the kernel marks at the end of their path; a folder may also
/// have such a name.
void removeDeleted(std::vector<std::optional<QString>> &folders, FolderReader &files,
                   const ScanOptions &options)
{
    std::vector<std::optional<QString> *> marked;
    std::vector<FolderReader::Question> questions;
    for (std::optional<QString> &folder : folders) {
        if (!folder || !folder->endsWith(" (deleted)"_L1))
            continue;
        marked.push_back(&folder);
        questions.push_back({FolderReader::Kind::IsFolder, *folder});
    }
    if (questions.empty())
        return;
    const auto answers = files.ask(questions, {options.folderDeadline, options.stop});
    for (size_t i = 0; i < marked.size(); ++i) {
        if (answers[i].value_or(QByteArray()).isEmpty())
            marked[i]->reset();
    }
}

Folders workingFolders(const QList<RawListener> &listeners, ProcessSource &source, FolderReader &files,
                       const ScanOptions &options)
{
    QSet<qint32> seen;
    QList<qint32> pids;
    for (const RawListener &listener : listeners) {
        if (!seen.contains(listener.pid))
            pids.append(listener.pid);
        seen.insert(listener.pid);
    }
    std::vector<std::optional<QString>> answers = source.workingFolders(pids, options.stop);
    removeDeleted(answers, files, options);
    Folders folders;
    for (qsizetype i = 0; i < pids.size(); ++i)
        folders.insert(pids[i], answers[size_t(i)]);
    return folders;
}

ScanResult devServers(const QList<RawListener> &listeners, const Folders &folders, const QStringList &homes)
{
    ScanResult found;
    for (const RawListener &listener : listeners) {
        const std::optional<QString> folder = folders.value(listener.pid);
        if (!PortScanner::isDevServer(listener.command, folder, homes))
            continue;
        found.services.append(
            {.pid = listener.pid, .port = listener.port, .command = listener.command, .folderPath = folder});
        if (listener.identity)
            found.identities.insert(listener.pid, *listener.identity);
    }
    return found;
}

void readStats(QList<Service> &services, ProcessSource &source, const std::stop_token &stop)
{
    QList<qint32> pids;
    for (const Service &service : std::as_const(services))
        pids.append(service.pid);
    const std::vector<std::optional<ProcessStats>> answers = source.stats(pids, stop);
    for (qsizetype i = 0; i < services.size(); ++i)
        services[i].stats = answers[size_t(i)];
}

void detectProjects(QList<Service> &services, FolderReader &files, const ScanOptions &options)
{
    std::vector<ProjectDetector::Subject> subjects;
    for (const Service &service : std::as_const(services))
        subjects.push_back({service.command, service.folderPath});
    std::vector<ProjectDetector::Project> projects =
        ProjectDetector::detect(subjects, files, {options.folderDeadline, options.stop});
    for (qsizetype i = 0; i < services.size(); ++i) {
        services[i].displayName = std::move(projects[size_t(i)].displayName);
        services[i].framework = projects[size_t(i)].framework;
    }
}

} // namespace

ScanResult PortScanner::scan(ProcessSource &source, FolderReader &files, const ScanOptions &options)
{
    const QList<RawListener> distinct = wantedListeners(source.listeners(options.stop), options);
    const Folders folders = workingFolders(distinct, source, files, options);
    ScanResult found = devServers(distinct, folders, options.homes);
    readStats(found.services, source, options.stop);
    detectProjects(found.services, files, options);
    std::ranges::stable_sort(found.services, {}, &Service::port);
    return found;
}

bool PortScanner::isDevServer(const QString &command, const std::optional<QString> &folder,
                              const QStringList &homes)
{
    if (contains(systemCommands, command))
        return false;
    const QString lower = command.toLower();
    if (contains(devCommandExact, lower))
        return true;
    const auto begins = [&](QLatin1StringView prefix) { return lower.startsWith(prefix); };
    if (std::ranges::any_of(devCommandPrefixes, begins))
        return true;
    return folder && HomeFolder::holds(homes, *folder);
}

} // namespace portolan
