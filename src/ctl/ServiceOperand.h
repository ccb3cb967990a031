// SPDX-License-Identifier: MIT
#pragma once

#include "ListedService.h"

#include <QList>
#include <QString>
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

    /// Those of `services` that it means. A name means the servers that are called so and, where there are
    /// none, those whose names start with it, in upper or lower case.
    [[nodiscard]] QList<ListedService> in(const QList<ListedService> &services) const;

    /// Whether it is the start of several names: those of `found`, which is what it means.
    [[nodiscard]] bool isAmbiguous(const QList<ListedService> &found) const;

    /// Says that it means none.
    [[nodiscard]] QString noneText() const;
    /// Says that it means several, and lists them: `candidates`.
    [[nodiscard]] QString severalText(const QList<ListedService> &candidates) const;

    friend bool operator==(const ServiceOperand &, const ServiceOperand &) = default;
};

} // namespace portolan
