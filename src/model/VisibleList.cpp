// SPDX-License-Identifier: MIT
#include "VisibleList.h"

#include <algorithm>
#include <vector>

namespace portolan {

namespace {

/// Line breaks do not count as spaces.
bool isSpace(QChar character)
{
    return character == u'\t' || character.category() == QChar::Separator_Space;
}

QString queryOf(const QString &searchText)
{
    const auto begin = std::find_if_not(searchText.begin(), searchText.end(), isSpace);
    const auto end = std::find_if_not(searchText.rbegin(), std::make_reverse_iterator(begin), isSpace).base();
    return searchText.sliced(begin - searchText.begin(), end - begin).toLower();
}

bool contains(const Service &service, const QString &query)
{
    if (service.displayName.toLower().contains(query) || QString::number(service.port).contains(query))
        return true;
    const std::optional<QString> folder = service.prettyFolder();
    return (folder && folder->toLower().contains(query)) ||
           service.framework.rawValue().toLower().contains(query);
}

struct Candidate
{
    const Service *service;
    bool isPinned;
};

std::vector<Candidate> candidatesOf(const QList<Service> &services, const VisibleList::Criteria &criteria)
{
    const QString query = queryOf(criteria.searchText);
    std::vector<Candidate> candidates;
    candidates.reserve(services.size());
    for (const Service &service : services) {
        if (query.isEmpty() || contains(service, query))
            candidates.push_back({&service, criteria.pinnedPorts.contains(service.port)});
    }
    return candidates;
}

qint64 uptimeOf(const Service &service)
{
    return service.stats ? service.stats->uptimeSeconds : 0;
}

} // namespace

const QCollator &VisibleList::userCollator()
{
    // Constructing one loads the locale's rules.
    static const QCollator collator = [] {
        QCollator made;
        made.setCaseSensitivity(Qt::CaseInsensitive);
        return made;
    }();
    return collator;
}

bool VisibleList::matches(const Service &service, const QString &searchText)
{
    const QString query = queryOf(searchText);
    return query.isEmpty() || contains(service, query);
}

bool VisibleList::precedes(const Service &a, const Service &b, SortOrder sortOrder, const QCollator &collator)
{
    switch (sortOrder) {
    case SortOrder::port:
        return a.port < b.port;
    case SortOrder::name:
        return collator.compare(a.displayName, b.displayName) < 0;
    case SortOrder::status:
        return a.health.isHealthy() && !b.health.isHealthy();
    case SortOrder::uptime:
        return uptimeOf(a) > uptimeOf(b);
    }
    Q_UNREACHABLE();
}

QList<Service> VisibleList::of(const QList<Service> &services, const Criteria &criteria,
                               const QCollator &collator)
{
    std::vector<Candidate> candidates = candidatesOf(services, criteria);
    // Stable: candidates that compare equal keep their order.
    std::ranges::stable_sort(candidates, [&](const Candidate &a, const Candidate &b) {
        return a.isPinned == b.isPinned ? precedes(*a.service, *b.service, criteria.sortOrder, collator)
                                        : a.isPinned;
    });
    QList<Service> visible;
    visible.reserve(qsizetype(candidates.size()));
    for (const Candidate &candidate : candidates)
        visible.append(*candidate.service);
    return visible;
}

bool VisibleList::hasOrder(const QList<Service> &services, const QString &searchText)
{
    return candidatesOf(services, {searchText, {}, {}}).size() > 1;
}

} // namespace portolan
