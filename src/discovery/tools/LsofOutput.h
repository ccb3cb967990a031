// SPDX-License-Identifier: MIT
#pragma once

#include "ProcessSource.h"

#include <QList>
#include <QString>
#include <QStringView>

#include <optional>

// Parses the output of lsof. Pure functions.
namespace portolan::PortScanner {

/// The listeners in lsof's field output, in its order. Malformed lines are skipped one by one.
[[nodiscard]] QList<RawListener> parseListeners(const QString &output);

/// The port in a socket name like "*:3000" or "[::1]:8080"; absent unless it is bound to all addresses or to
/// the loopback address.
[[nodiscard]] std::optional<qint64> port(QStringView fromName);

/// The working folder in lsof's answer about `pid`, unescaped.
[[nodiscard]] std::optional<QString> parseCwd(qint32 pid, const QString &output);

} // namespace portolan::PortScanner
