// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QString>

#include <chrono>
#include <functional>

namespace portolan::FileManager {

/// As the public function, on the given bus; `fallback` is called with the folder if the file manager on that
/// bus fails or does not answer within `timeout`.
void show(const QString &folder, const QDBusConnection &bus, std::chrono::milliseconds timeout,
          const std::function<void(const QString &folder)> &fallback);

} // namespace portolan::FileManager
