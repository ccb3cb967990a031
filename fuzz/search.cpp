// SPDX-License-Identifier: MIT
// Search texts against lists: the first line is the search text, each other one a server.
#include "Require.h"
#include "VisibleList.h"

#include <QCollator>
#include <QStringList>

#include <algorithm>

namespace portolan {

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    QStringList lines = QString::fromUtf8(QByteArrayView(data, qsizetype(size))).split(u'\n');
    const QString searchText = lines.takeFirst();
    QList<Service> services;
    for (const QString &line : lines) {
        const qint64 number = services.size();
        services.append({.pid = qint32(number), .port = number % 7, .command = line, .displayName = line});
    }
    static const QCollator collator;
    for (const SortOrder order : SortOrder::allCases()) {
        const QList<Service> all = VisibleList::of(services, {{}, {3}, order}, collator);
        require(std::ranges::is_permutation(all, services));
        const QList<Service> found = VisibleList::of(services, {searchText, {3}, order}, collator);
        require(
            std::ranges::all_of(found, [&](const Service &service) { return services.contains(service); }));
        require(VisibleList::of(found, {searchText, {3}, order}, collator) == found);
        require(VisibleList::hasOrder(services, searchText) == (found.size() > 1));
    }
    return 0;
}

} // namespace portolan
