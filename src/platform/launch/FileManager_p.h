#pragma once

#include <QDBusConnection>
#include <QString>

#include <chrono>
#include <functional>

namespace portolan {

namespace FileManager {

/// As the public one, on the given bus; `otherwise` opens the folder when the bus's file manager does not
/// answer within `patience`.
void show(const QString &folder, const QDBusConnection &bus, std::chrono::milliseconds patience,
          const std::function<void(const QString &folder)> &otherwise);

} // namespace FileManager

} // namespace portolan
