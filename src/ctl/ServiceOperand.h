#pragma once

#include "Service.h"

#include <QStringView>

#include <optional>

namespace portolan {

/// What an operand means: the servers on a port, or one of them by its id.
struct ServiceOperand
{
    qint64 port = 0;
    std::optional<qint32> pid; ///< absent: any process that listens there

    /// Reads a port ("3000") or an id ("4242-3000"); nothing if `operand` is neither.
    [[nodiscard]] static std::optional<ServiceOperand> parse(QStringView operand);

    [[nodiscard]] bool means(const Service &service) const;

    friend bool operator==(const ServiceOperand &, const ServiceOperand &) = default;
};

} // namespace portolan
