// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QObject>
#include <QString>

namespace portolan {

/// Uptime, CPU and memory of a listening process.
struct ProcessStats
{
    Q_GADGET
    Q_PROPERTY(QString uptimeText READ uptimeText CONSTANT FINAL)
    Q_PROPERTY(QString cpuText READ cpuText CONSTANT FINAL)
    Q_PROPERTY(QString memoryText READ memoryText CONSTANT FINAL)

public:
    qint64 uptimeSeconds = 0; ///< whole seconds since the process started
    double cpuPercent = 0;    ///< percent of one CPU
    double memoryMB = 0;      ///< resident memory in units of 1024 KiB

    /// "42s", "59m", "23h 59m" or "2d 7h": at most two units.
    [[nodiscard]] QString uptimeText() const;
    /// "13%": without decimals.
    [[nodiscard]] QString cpuText() const;
    /// "87 MB" below 1024 MB, "1.5 GB" from there on.
    [[nodiscard]] QString memoryText() const;

    friend bool operator==(const ProcessStats &, const ProcessStats &) = default;
    friend size_t qHash(const ProcessStats &stats, size_t seed = 0)
    {
        return qHashMulti(seed, stats.uptimeSeconds, stats.cpuPercent, stats.memoryMB);
    }
};

} // namespace portolan
