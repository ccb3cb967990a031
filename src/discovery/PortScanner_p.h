#pragma once

#include "HomeFolder.h"
#include "PortScanner.h"
#include "ProjectDetector.h"
#include "ToolPaths.h"

#include <QString>
#include <QStringView>

#include <chrono>
#include <optional>

namespace portolan {

namespace PortScanner {

/// One listening socket as lsof reports it.
struct RawListener
{
    qint32 pid = 0;
    QString command; ///< exactly as printed; "" when lsof named none
    qint64 port = 0;

    friend bool operator==(const RawListener &, const RawListener &) = default;
};

/// What a scan depends on besides its rules. The defaults are the system's.
struct ScanOptions
{
    QString lsof = ToolPaths::lsof();
    QString ps = ToolPaths::ps();
    QString home = HomeFolder::path();
    std::chrono::milliseconds listingDeadline = std::chrono::seconds(10);
    std::chrono::milliseconds toolDeadline = std::chrono::seconds(3);
    std::chrono::milliseconds folderDeadline = ProjectDetector::deadline;
    int workers = defaultWorkers();
    std::optional<QSet<qint64>> ports; ///< listeners on others are passed over; absent: on none
    std::stop_token stop;

    /// One for each core, but no more than four: the tools' own work is what takes the time.
    [[nodiscard]] static int defaultWorkers();
};

[[nodiscard]] QList<Service> scan(const ScanOptions &options);

/// The listeners in lsof's field output, in its order. Malformed lines are passed over one by one.
[[nodiscard]] QList<RawListener> parseListeners(const QString &output);

/// The port in a socket name like "*:3000" or "[::1]:8080"; nothing unless it is bound to all addresses or to
/// the loopback.
[[nodiscard]] std::optional<qint64> port(QStringView fromName);

/// Asks lsof for the working directory of a process; nothing when there is none to be known. May block for as
/// long as a dead mount does.
[[nodiscard]] std::optional<QString> resolveCwd(qint32 pid);

/// The working directory in lsof's answer about `pid`, with lsof's escapes undone.
[[nodiscard]] std::optional<QString> parseCwd(qint32 pid, const QString &output);

/// Whether a listener is one that a developer wants to see, by its command name, else by its folder.
[[nodiscard]] bool isDevServer(const QString &command, const std::optional<QString> &folder,
                               const QString &home);

} // namespace PortScanner

} // namespace portolan
