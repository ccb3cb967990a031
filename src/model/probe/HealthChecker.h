#pragma once

#include "Health.h"

#include <QFuture>

namespace portolan {

/// Asks whether something answers HTTP on a local port, with which status code and how fast.
namespace HealthChecker {

/// Probes http://127.0.0.1:`port`/ with a HEAD request and, where that gets no response, a GET. Any thread;
/// returns at once. The future always finishes with a value, on a thread of the checker's own, within 3 s per
/// request: `healthy` for any HTTP response, `unreachable` for none, `unknown` when no address can be made of
/// `port`.
[[nodiscard]] QFuture<Health> check(qint64 port);

} // namespace HealthChecker

} // namespace portolan
