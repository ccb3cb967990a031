// SPDX-License-Identifier: MIT
#pragma once

#include "HomeFolder.h"
#include "Service.h"

/// Services as a scan might find them.
namespace portolan::SampleServices {

inline Service shop()
{
    return {.pid = 4242,
            .port = 3000,
            .command = QStringLiteral("node"),
            .folderPath = QStringLiteral("/srv/customers/acme/shop"),
            .displayName = QStringLiteral("Shop"),
            .framework = Framework::next,
            .health = Health::healthy(200, 12),
            .stats = ProcessStats{5400, 1.5, 87.4}};
}

inline Service api()
{
    return {.pid = 7,
            .port = 8080,
            .command = QStringLiteral("python3"),
            .folderPath = HomeFolder::path() + QStringLiteral("/api"),
            .displayName = QStringLiteral("Api"),
            .framework = Framework::flask,
            .health = Health::unreachable(),
            .stats = ProcessStats{42, 0, 1536}};
}

/// A service of which almost nothing is known.
inline Service stranger()
{
    return {.pid = 123456,
            .port = 50051,
            .command = QStringLiteral("java"),
            .displayName = QStringLiteral("Java"),
            .framework = Framework::java};
}

} // namespace portolan::SampleServices
