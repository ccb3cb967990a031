// SPDX-License-Identifier: MIT
#include "ListedService.h"

#include "VisibleList.h"

#include <algorithm>

namespace portolan {

QList<ListedService> ListedService::visible(QList<ListedService> all, const QString &searchText,
                                            SortOrder order)
{
    all.removeIf([&](const ListedService &one) {
        return !VisibleList::matches(one.service, searchText) &&
               !one.host.contains(searchText.trimmed(), Qt::CaseInsensitive);
    });
    // Not std::ranges, whose subranges clang 14 does not compile with this standard library.
    std::stable_sort(all.begin(), all.end(), [order](const ListedService &a, const ListedService &b) {
        return a.isPinned == b.isPinned ? VisibleList::precedes(a.service, b.service, order) : a.isPinned;
    });
    return all;
}

} // namespace portolan
