#pragma once

#include "Service.h"

#include <QList>
#include <QSet>

#include <stop_token>

namespace portolan {

/// Discovery's single entry point.
namespace PortScanner {

/// The development servers that listen on this machine now, sorted by port. Blocks while the tools run, so
/// never on the main thread; any number of scans may run at once. Never fails: an empty list means nothing
/// was found. A stop request makes it return early with a list that means nothing.
[[nodiscard]] QList<Service> scan(std::stop_token stop = {});

/// Those of them that listen on one of `ports`, at the price of those alone.
[[nodiscard]] QList<Service> scanPorts(const QSet<qint64> &ports);

} // namespace PortScanner

} // namespace portolan
