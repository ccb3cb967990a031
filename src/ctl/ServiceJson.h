// SPDX-License-Identifier: MIT
#pragma once

#include "ListedService.h"

#include <QByteArray>
#include <QList>

#include <optional>

namespace portolan {

/// The list as JSON for programs, as docs/portolanctl.schema.json describes it. Pure functions.
namespace ServiceJson {

enum class Layout : bool { oneLine, indented };

/// An array of objects in the given order, as UTF-8 text ended by a line feed. Characters that a terminal
/// might interpret are written as JSON escapes.
[[nodiscard]] QByteArray of(const QList<ListedService> &services, Layout layout);

/// Reads what another machine sent as such an array: the servers of `host`. Nothing where it breaks the
/// schema anywhere. What it holds besides the schema's keys is ignored.
[[nodiscard]] std::optional<QList<ListedService>> read(const QByteArray &json, const QString &host);

} // namespace ServiceJson

} // namespace portolan
