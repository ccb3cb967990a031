#include "VisibleList.h"

#include <algorithm>
#include <vector>

namespace portolan {

namespace {

/// Line breaks are no spaces here.
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

bool matches(const Service &service, const QString &query)
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
        if (query.isEmpty() || matches(service, query))
            candidates.push_back({&service, criteria.pinnedPorts.contains(service.port)});
    }
    return candidates;
}

qint64 uptimeOf(const Service &service)
{
    return service.stats ? service.stats->uptimeSeconds : 0;
}

/// Whether a candidate is shown before another. Nothing but the order asked for separates them.
class Order
{
public:
    Order(SortOrder sortOrder, const QCollator &collator)
        : m_sortOrder(sortOrder)
        , m_collator(collator)
    {}

    bool operator()(const Candidate &a, const Candidate &b) const
    {
        return a.isPinned == b.isPinned ? precedes(*a.service, *b.service) : a.isPinned;
    }

private:
    bool precedes(const Service &a, const Service &b) const
    {
        switch (m_sortOrder) {
        case SortOrder::port:
            return a.port < b.port;
        case SortOrder::name:
            return m_collator.compare(a.displayName, b.displayName) < 0;
        case SortOrder::status:
            return a.health.isHealthy() && !b.health.isHealthy();
        case SortOrder::uptime:
            return uptimeOf(a) > uptimeOf(b);
        }
        Q_UNREACHABLE();
    }

    SortOrder m_sortOrder;
    const QCollator &m_collator;
};

} // namespace

const QCollator &VisibleList::userCollator()
{
    // Making one loads the locale's rules.
    static const QCollator collator = [] {
        QCollator made;
        made.setCaseSensitivity(Qt::CaseInsensitive);
        return made;
    }();
    return collator;
}

QList<Service> VisibleList::of(const QList<Service> &services, const Criteria &criteria,
                               const QCollator &collator)
{
    std::vector<Candidate> candidates = candidatesOf(services, criteria);
    std::ranges::stable_sort(candidates, Order(criteria.sortOrder, collator));
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
