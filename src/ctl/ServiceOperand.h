// SPDX-License-Identifier: MIT
#pragma once

#include "ListedService.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <optional>

namespace portolan {

/// What an operand means: the servers on a port, one of them by its id, or one by its name.
struct ServiceOperand
{
    qint64 port = 0;           ///< 0 where it is a name
    std::optional<qint32> pid; ///< absent: any process that listens on the port
    QString name;

    /// Reads a port ("3000"), an id ("4242-3000"), or a name: anything but digits and hyphens. Nothing if
    /// `operand` is none of them.
    [[nodiscard]] static std::optional<ServiceOperand> parse(QStringView operand);

    /// Whether an operand has to mean one server, or may mean all on a port or of a name.
    enum class Meaning : bool { oneServer, severalServers };

    struct Choice
    {
        QList<ListedService> services; ///< none twice
        QStringList problems;          ///< harmless texts about the operands that are of no use
        bool isAmbiguous = false;      ///< whether one of those means too many servers
    };

    /// Those of `services`, in their order, that `operands` mean. A name means the servers that are called so
    /// and, where there are none, the one whose name starts with it, in upper or lower case.
    [[nodiscard]] static Choice choose(const QList<ServiceOperand> &operands,
                                       const QList<ListedService> &services, Meaning meaning);

    friend bool operator==(const ServiceOperand &, const ServiceOperand &) = default;
};

} // namespace portolan
