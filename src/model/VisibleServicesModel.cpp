// SPDX-License-Identifier: MIT
#include "VisibleServicesModel.h"

#include "ServiceKey.h"
#include "ServiceStore.h"

#include <QHash>

#include <algorithm>
#include <utility>

namespace portolan {

namespace {

/// A later process with the same pid and port has a row of its own, so that nothing that was meant for the
/// earlier one reaches it: its row is removed, which closes its menu and cancels a press on it.
using RowKey = std::pair<ServiceKey, quint64>;

const auto keyOfRow = [](const auto &row) { return RowKey(keyOf(row.service), row.process.startTicks); };

} // namespace

ServiceStore *VisibleServicesModel::store() const
{
    return m_store;
}

void VisibleServicesModel::setStore(ServiceStore *store)
{
    if (m_store == store)
        return;
    if (m_store)
        m_store->disconnect(this);
    m_store = store;
    if (store) {
        connect(store, &ServiceStore::visibleChanged, this, &VisibleServicesModel::scheduleUpdate);
        connect(store, &ServiceStore::pinnedPortsChanged, this, &VisibleServicesModel::scheduleUpdate);
        // The list may be equal though a process is another one.
        connect(store, &ServiceStore::lastUpdatedChanged, this, &VisibleServicesModel::scheduleUpdate);
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
    const Row &row = m_rows[size_t(index.row())];
    switch (role) {
    case ServiceRole:
        return QVariant::fromValue(row.service);
    case IsPinnedRole:
        return row.isPinned;
    default:
        return {};
    }
}

QHash<int, QByteArray> VisibleServicesModel::roleNames() const
{
    return {{ServiceRole, "service"}, {IsPinnedRole, "isPinned"}};
}

void VisibleServicesModel::scheduleUpdate()
{
    if (!std::exchange(m_isUpdateScheduled, true))
        QMetaObject::invokeMethod(this, &VisibleServicesModel::update, Qt::QueuedConnection);
}

void VisibleServicesModel::update()
{
    // A slot that is called for one row may run an event loop or change the store before the other rows are
    // updated.
    if (m_isUpdating) {
        m_isUpdateScheduled = true;
        return;
    }
    m_isUpdateScheduled = false;
    m_isUpdating = true;
    const int oldCount = count();
    const Rows wanted = wantedRows();
    removeOthers(wanted);
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
        rows.push_back({service, pinnedPorts.contains(service.port),
                        m_store->identityOf(service).value_or(ProcessIdentity())});
    return rows;
}

/// Removes the rows that are not wanted, each run of them at once. Of several rows with the same key, the
/// last are removed.
void VisibleServicesModel::removeOthers(const Rows &wanted)
{
    QHash<RowKey, int> places;
    for (const Row &row : wanted)
        ++places[keyOfRow(row)];
    std::vector<bool> isWanted;
    for (const Row &row : m_rows)
        isWanted.push_back(places[keyOfRow(row)]-- > 0);

    // From the end, so that the indices of the other rows stay valid.
    for (int end = count(); end > 0;) {
        int first = end;
        while (first > 0 && !isWanted[first - 1])
            --first;
        if (first < end) {
            beginRemoveRows({}, first, end - 1);
            m_rows.erase(m_rows.begin() + first, m_rows.begin() + end);
            endRemoveRows();
        }
        end = first - 1;
    }
}

/// Inserts and moves rows, a run at a time, until their keys are the wanted ones in their order. Rows that
/// stay keep their old content.
void VisibleServicesModel::arrange(const Rows &wanted)
{
    const auto placeOf = [&](const Row &row, int from) {
        return int(std::ranges::find(m_rows.begin() + from, m_rows.end(), keyOfRow(row), keyOfRow) -
                   m_rows.begin());
    };
    const int wantedCount = int(wanted.size());
    for (int row = 0; row < wantedCount;) {
        const int first = row;
        const int from = placeOf(wanted[first], first);
        if (from == count()) {
            while (row < wantedCount && placeOf(wanted[row], first) == count())
                ++row;
            beginInsertRows({}, first, row - 1);
            m_rows.insert(m_rows.begin() + first, wanted.begin() + first, wanted.begin() + row);
            endInsertRows();
            continue;
        }
        int end = from;
        while (row < wantedCount && end < count() && keyOfRow(m_rows[end]) == keyOfRow(wanted[row])) {
            ++row;
            ++end;
        }
        if (from == first)
            continue;
        // The rows in between and those that belong here swap: the smaller group is reported as moved.
        if (from - first < end - from)
            beginMoveRows({}, first, from - 1, {}, end);
        else
            beginMoveRows({}, from, end - 1, {}, first);
        std::rotate(m_rows.begin() + first, m_rows.begin() + from, m_rows.begin() + end);
        endMoveRows();
    }
}

/// Updates the content of rows that stayed, with one dataChanged() for each run of rows in which the same
/// roles changed.
void VisibleServicesModel::refill(const Rows &wanted)
{
    const auto changedRoles = [this, &wanted](int row) {
        const Row &before = m_rows[row];
        const Row &after = wanted[row];
        QList<int> roles;
        if (before.service != after.service)
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
