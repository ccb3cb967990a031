#pragma once

#include "Service.h"
#include "TerminalColors.h"

#include <QList>
#include <QSet>
#include <QString>

#include <optional>

namespace portolan {

/// The list as a table for people, and the text shown instead of an empty one. Pure functions.
namespace ServiceTable {

struct Look
{
    std::optional<int> columns; ///< the greatest width of a line; without it every text is shown in full
    TerminalColors colors;
    bool isSteady = false; ///< keeps the columns in place while probes are answered
};

/// A header and a line per service, in the given order, each ended by a line feed. Where the columns do not
/// suffice, folder and name are shortened, then columns are left out, the least important first. Control
/// characters in names are replaced.
[[nodiscard]] QString of(const QList<Service> &services, const QSet<qint64> &pinnedPorts, const Look &look);

/// The line shown on a terminal instead of an empty table: that nothing runs or, when `isSearching` hides
/// what does, that nothing matches. Where it is wider than the terminal, only its first half.
[[nodiscard]] QString emptyText(bool isSearching, const Look &look);

} // namespace ServiceTable

} // namespace portolan
