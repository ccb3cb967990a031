#pragma once

#include "Ink.h"
#include "Service.h"

#include <QList>
#include <QSet>
#include <QString>

#include <optional>

namespace portolan {

/// The list as a table for people. Pure functions.
namespace ServiceTable {

struct Look
{
    std::optional<int> columns; ///< what a line may take; without, every text is shown in full
    Ink ink;
    bool isSteady = false; ///< keeps columns in place while probes are answered
};

/// A header and a line per service, in the given order, each ended by a line feed. Where the columns do not
/// suffice, folder and name are shortened, then figures are left out, the least telling first. Whatever a
/// service is called, a line stays a line.
[[nodiscard]] QString of(const QList<Service> &services, const QSet<qint64> &pinnedPorts, const Look &look);

} // namespace ServiceTable

} // namespace portolan
