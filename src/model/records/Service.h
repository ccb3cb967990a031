// SPDX-License-Identifier: MIT
#pragma once

#include "Framework.h"
#include "Health.h"
#include "ProcessStats.h"

#include <QList>
#include <QString>

#include <optional>

namespace portolan {

/// One discovered development server. A plain value: two services are equal only when all their fields are.
/// `pid`, `port`, `command` and `folderPath` stay as the scan set them; the other fields may change.
struct Service
{
    Q_GADGET
    Q_PROPERTY(QString key READ id CONSTANT FINAL)
    Q_PROPERTY(qint32 pid MEMBER pid CONSTANT FINAL)
    Q_PROPERTY(qint64 port MEMBER port CONSTANT FINAL)
    Q_PROPERTY(QString displayName MEMBER displayName CONSTANT FINAL)
    Q_PROPERTY(portolan::Framework framework MEMBER framework CONSTANT FINAL)
    Q_PROPERTY(portolan::Health health MEMBER health CONSTANT FINAL)
    Q_PROPERTY(bool hasFolder READ hasFolder CONSTANT FINAL)
    Q_PROPERTY(QString folder READ folderOrEmpty CONSTANT FINAL)
    Q_PROPERTY(bool hasStats READ hasStats CONSTANT FINAL)
    Q_PROPERTY(portolan::ProcessStats stats READ statsOrNone CONSTANT FINAL)

public:
    qint32 pid = 0;
    qint64 port = 0;
    QString command;                   ///< the process's command name, from the socket listing
    std::optional<QString> folderPath; ///< its working folder, absolute; absent when it could not be found
    QString displayName;
    Framework framework;
    Health health;
    std::optional<ProcessStats> stats; ///< absent when they could not be read

    /// The identity of a service: pid, "-" and port in decimal, e.g. "4242-3000".
    [[nodiscard]] QString id() const;
    /// Where the user opens it: "http://localhost:" and the port. A string, as QUrl does not hold numbers
    /// beyond the range of ports.
    [[nodiscard]] QString url() const;
    /// `folderPath` with the user's home folder written as "~".
    [[nodiscard]] std::optional<QString> prettyFolder() const;

    friend bool operator==(const Service &, const Service &) = default;

private:
    // QML has no std::optional, so these are read in two steps.
    bool hasFolder() const { return folderPath.has_value(); }
    QString folderOrEmpty() const { return prettyFolder().value_or(QString()); }
    bool hasStats() const { return stats.has_value(); }
    ProcessStats statsOrNone() const { return stats.value_or(ProcessStats()); }
};

/// Hashes all eight fields.
[[nodiscard]] size_t qHash(const Service &service, size_t seed = 0);

} // namespace portolan

Q_DECLARE_METATYPE(portolan::Service)
