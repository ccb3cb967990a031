#include "VisibleServicesModel.h"

#include "ListMerge.h"
#include "ServiceKey.h"
#include "ServiceStore.h"

#include <QHash>

#include <algorithm>
#include <utility>

namespace portolan {

struct VisibleServicesModel::Row
{
    Service service;
    bool isPinned;
};

VisibleServicesModel::VisibleServicesModel(QObject *parent)
    : QAbstractListModel(parent)
{}

VisibleServicesModel::~VisibleServicesModel() = default;

ServiceStore *VisibleServicesModel::store() const
{
    return m_store;
}

void VisibleServicesModel::setStore(ServiceStore *store)
{
    if (m_store == store)
        return;
    if (m_store)
        disconnect(m_store, &QObject::destroyed, this, nullptr);
    m_store = store;
    m_notifiers = {};
    if (store) {
        m_notifiers = {store->bindableVisible().addNotifier([this] { scheduleUpdate(); }),
                       store->bindablePinnedPorts().addNotifier([this] { scheduleUpdate(); })};
        connect(store, &QObject::destroyed, this, &VisibleServicesModel::followStore);
    }
    followStore();
}

/// Shows another store than before, or none.
void VisibleServicesModel::followStore()
{
    Q_EMIT storeChanged();
    update();
}

int VisibleServicesModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant VisibleServicesModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Row &row = *m_rows[size_t(index.row())];
    switch (role) {
    case ServiceRole:
        return QVariant::fromValue(row.service);
    case IsPinnedRole:
        return row.isPinned;
    case KeyRole:
        return row.service.id();
    default:
        return {};
    }
}

QHash<int, QByteArray> VisibleServicesModel::roleNames() const
{
    return {{ServiceRole, "service"}, {IsPinnedRole, "isPinned"}, {KeyRole, "key"}};
}

void VisibleServicesModel::scheduleUpdate()
{
    if (!std::exchange(m_isUpdateScheduled, true))
        QMetaObject::invokeMethod(this, &VisibleServicesModel::update, Qt::QueuedConnection);
}

void VisibleServicesModel::update()
{
    // Someone who was told of a row may run an event loop, or change the store, before the other rows are
    // done.
    if (m_isUpdating) {
        m_isUpdateScheduled = true;
        return;
    }
    m_isUpdateScheduled = false;
    m_isUpdating = true;
    const int oldCount = count();
    const Rows wanted = wantedRows();
    arrange(wanted);
    refill(wanted);
    m_isUpdating = false;
    if (count() != oldCount)
        Q_EMIT countChanged();
    if (std::exchange(m_isUpdateScheduled, false))
        scheduleUpdate();
}

VisibleServicesModel::Rows VisibleServicesModel::wantedRows() const
{
    Rows rows;
    if (!m_store)
        return rows;
    const QSet<qint64> pinnedPorts = m_store->pinnedPorts();
    const QList<Service> visible = m_store->visible();
    rows.reserve(visible.size());
    for (const Service &service : visible)
        rows.push_back(std::make_shared<Row>(Row{service, pinnedPorts.contains(service.port)}));
    return rows;
}

/// For each wanted row the present row of the same service. Of several rows with one key, the first goes with
/// the first.
std::vector<int> VisibleServicesModel::originsOf(const Rows &wanted) const
{
    QHash<ServiceKey, int> firstWithKey;
    firstWithKey.reserve(qsizetype(m_rows.size()));
    std::vector<int> nextWithKey(m_rows.size());
    for (int row = count() - 1; row >= 0; --row) {
        nextWithKey[row] = firstWithKey.value(keyOf(m_rows[row]->service), ListMerge::newRow);
        firstWithKey.insert(keyOf(m_rows[row]->service), row);
    }
    std::vector<int> origins;
    origins.reserve(wanted.size());
    for (const auto &row : wanted) {
        const auto first = firstWithKey.find(keyOf(row->service));
        const bool isNew = first == firstWithKey.end() || *first == ListMerge::newRow;
        origins.push_back(isNew ? ListMerge::newRow : std::exchange(*first, nextWithKey[*first]));
    }
    return origins;
}

/// Makes the rows the wanted ones, in their order. Rows that stay keep their old content.
void VisibleServicesModel::arrange(const Rows &wanted)
{
    using Kind = ListMerge::Step::Kind;
    for (const auto &[kind, row, count, other] : ListMerge::steps(int(m_rows.size()), originsOf(wanted))) {
        const auto begin = m_rows.begin() + row;
        const auto end = begin + count;
        switch (kind) {
        case Kind::remove:
            beginRemoveRows({}, row, row + count - 1);
            m_rows.erase(begin, end);
            endRemoveRows();
            break;
        case Kind::insert:
            beginInsertRows({}, row, row + count - 1);
            m_rows.insert(begin, wanted.begin() + other, wanted.begin() + other + count);
            endInsertRows();
            break;
        case Kind::move:
            beginMoveRows({}, row, row + count - 1, {}, other);
            if (other < row)
                std::rotate(m_rows.begin() + other, begin, end);
            else
                std::rotate(begin, end, m_rows.begin() + other);
            endMoveRows();
            break;
        }
    }
}

/// Gives rows that stayed their new content, and tells it once for each run of rows in which the same
/// changed.
void VisibleServicesModel::refill(const Rows &wanted)
{
    const auto changedRoles = [this, &wanted](int row) {
        const Row &before = *m_rows[row];
        const Row &after = *wanted[row];
        QList<int> roles;
        if (&before != &after && before.service != after.service)
            roles.append(ServiceRole);
        if (before.isPinned != after.isPinned)
            roles.append(IsPinnedRole);
        return roles;
    };
    for (int row = 0; row < count();) {
        const int first = row;
        const QList<int> roles = changedRoles(first);
        do {
            m_rows[row] = wanted[row];
            ++row;
        } while (row < count() && changedRoles(row) == roles);
        if (!roles.isEmpty())
            Q_EMIT dataChanged(index(first), index(row - 1), roles);
    }
}

} // namespace portolan
