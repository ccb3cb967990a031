// SPDX-License-Identifier: MIT
#pragma once

#include "Service.h"

#include <QList>

namespace portolan {

/// `count` servers as a scan finds them, sorted by port; their statistics depend on `round`, as if it were
/// the number of the scan, and every twentieth is a new process in each round.
inline QList<Service> sampleServices(qsizetype count, int round = 0)
{
    QList<Service> services;
    services.reserve(count);
    for (qsizetype i = 0; i < count; ++i) {
        const qint32 generation = i % 20 == 0 ? round : 0;
        services.append({
            .pid = qint32(1000 + i * 10 + generation % 10),
            .port = 1024 + i * 6,
            .command = QStringLiteral("node"),
            .folderPath = QStringLiteral("/home/ada/code/project-%1").arg(i),
            .displayName = QStringLiteral("Project %1").arg((i * 7919) % count),
            .framework = Framework::vite,
            .health = Health::healthy(200, i % 40),
            .stats = ProcessStats{.uptimeSeconds = 60 + i + 5 * round,
                                  .cpuPercent = double(i % 30) / 10,
                                  .memoryMB = double(40 + i % 200)},
        });
    }
    return services;
}

} // namespace portolan
