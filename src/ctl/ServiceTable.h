// SPDX-License-Identifier: MIT
#pragma once

#include "ListedService.h"
#include "TerminalColors.h"

#include <QList>

#include <optional>

/// The list as a table, and the text shown instead of an empty one. Pure functions.
namespace portolan::ServiceTable {

struct Layout
{
    std::optional<int> columns; ///< the maximum width of a line; if absent, every text is shown in full
    bool isSteady = false;      ///< keeps the column positions while probes are answered
    bool hasHosts = false;      ///< whether there is a column that names the machines
};

/// A header and a line per service, in the given order. If there is not enough space, folder and name are
/// shortened, then columns are left out, the least important first. Control characters in names are replaced.
[[nodiscard]] QList<StyledLine> of(const QList<ListedService> &services, const Layout &layout);

/// The line shown on a terminal instead of an empty table: that nothing runs or, if `isSearching`, that
/// nothing matches. Only its first half if the whole is wider than the terminal.
[[nodiscard]] StyledLine emptyText(bool isSearching, int columns);

} // namespace portolan::ServiceTable
