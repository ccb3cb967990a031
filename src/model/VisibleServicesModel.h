// SPDX-License-Identifier: MIT
#pragma once

#include "ProcessIdentity.h"
#include "Service.h"

#include <QAbstractListModel>
#include <QPointer>

#include <vector>

namespace portolan {

class ServiceStore;

/// The store's visible list as rows. A change of the list becomes the inserts, removes, moves and data
/// changes that make the difference, never a reset, so that a view's state of a row stays with its service.
///
/// The rows follow the store within one turn of the event loop, however many changes it makes until then. Two
/// services with the same id are two rows.
class VisibleServicesModel : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(portolan::ServiceStore *store READ store WRITE setStore NOTIFY storeChanged REQUIRED FINAL)
    Q_PROPERTY(int count READ count NOTIFY countChanged FINAL)

public:
    enum Role {
        ServiceRole = Qt::UserRole, ///< `service`: the Service
        IsPinnedRole,               ///< `isPinned`: whether its port is pinned
    };

    [[nodiscard]] ServiceStore *store() const;
    /// Shows the list of `store`, at once; nothing once it is null or destroyed.
    void setStore(ServiceStore *store);

    /// The number of rows.
    [[nodiscard]] int count() const { return int(m_rows.size()); }

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void storeChanged();
    void countChanged();

private:
    struct Row
    {
        Service service;
        bool isPinned;
        ProcessIdentity process; ///< tells a service from a later one of the same pid and port
    };
    using Rows = std::vector<Row>;

    void followStore();
    void scheduleUpdate();
    void update();
    [[nodiscard]] Rows wantedRows() const;
    void removeOthers(const Rows &wanted);
    void arrange(const Rows &wanted);
    void refill(const Rows &wanted);

    QPointer<ServiceStore> m_store;
    Rows m_rows;
    bool m_isUpdateScheduled = false;
    bool m_isUpdating = false;
};

} // namespace portolan
