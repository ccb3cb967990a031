#pragma once

#include "Service.h"

#include <QByteArray>
#include <QList>
#include <QSet>

namespace portolan {

/// The list as JSON for programs. Pure functions.
namespace ServiceJson {

enum class Layout : bool { oneLine, indented };

/// An array of objects in the given order, as UTF-8 text ended by a line feed. Characters that a terminal
/// might interpret are written as JSON escapes.
[[nodiscard]] QByteArray of(const QList<Service> &services, const QSet<qint64> &pinnedPorts, Layout layout);

} // namespace ServiceJson

} // namespace portolan
