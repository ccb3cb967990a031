// SPDX-License-Identifier: MIT
#pragma once

#include "ListedService.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <optional>

namespace portolan {

/// An operand of the command line: the servers on a port, one server by its id, or servers by their name.
struct ServiceOperand
{
    qint64 port = 0;           ///< 0 if the operand is a name
    std::optional<qint32> pid; ///< absent: any process that listens on the port
    QString name;

    /// Parses a port ("3000"), an id ("4242-3000"), or a name, which contains something else than digits and
    /// hyphens. Nothing if `operand` is none of these.
    [[nodiscard]] static std::optional<ServiceOperand> parse(QStringView operand);

    /// Whether an operand must match one server, or may match all on a port or with a name.
    enum class Meaning : bool { oneServer, severalServers };

    struct Choice
    {
        QList<ListedService> services; ///< without duplicates
        QStringList problems;          ///< harmless texts about the operands that match none or too many
        bool isAmbiguous = false;      ///< whether one of the operands matches too many servers
    };

    /// Those of `services`, in their order, that match `operands`. A name matches the servers with
    /// that whole name or, if there are none, the one whose name starts with it, ignoring case.
    [[nodiscard]] static Choice choose(const QList<ServiceOperand> &operands,
                                       const QList<ListedService> &services, Meaning meaning);

    friend bool operator==(const ServiceOperand &, const ServiceOperand &) = default;
};

} // namespace portolan
