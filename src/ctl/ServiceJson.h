// SPDX-License-Identifier: MIT
#pragma once

#include "ListedService.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QList>

#include <optional>

/// The list as JSON for programs, as docs/portolanctl.schema.json describes it. Pure functions.
namespace portolan::ServiceJson {

/// An array of objects in the given order, as UTF-8 text ended by a line feed, `Compact` on one line.
/// Characters that a terminal might interpret are written as JSON escapes.
[[nodiscard]] QByteArray of(const QList<ListedService> &services, QJsonDocument::JsonFormat format);

/// Parses such an array from another machine: the servers of `host`. Nothing if it violates the schema
/// anywhere. Unknown keys are ignored.
[[nodiscard]] std::optional<QList<ListedService>> read(const QByteArray &json, const QString &host);

} // namespace portolan::ServiceJson
