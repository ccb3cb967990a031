// SPDX-License-Identifier: MIT
#pragma once

#include "BusObject.h"

#include <QDBusVariant>
#include <QStringList>

namespace portolan {

/// An entry of the menu with its children, which are such layouts: (ia{sv}av).
struct StatusMenuLayout
{
    int id = 0;
    QVariantMap properties;
    QVariantList children;

    static auto fields(auto &self) { return std::tie(self.id, self.properties, self.children); }
};

/// The properties of one entry: (ia{sv}).
struct StatusMenuEntry
{
    int id = 0;
    QVariantMap properties;

    static auto fields(auto &self) { return std::tie(self.id, self.properties); }
};

/// An event of one entry: (isvu).
struct StatusMenuEvent
{
    int id = 0;
    QString type;
    QDBusVariant data;
    uint timestamp = 0;

    static auto fields(auto &self) { return std::tie(self.id, self.type, self.data, self.timestamp); }
};

/// The status icon's menu, for the bus: one level of entries, which never change.
class StatusMenu : public BusObject
{
    Q_OBJECT

public:
    /// The entry `labels[i]` has the id i + 1; the id 0 is the root.
    explicit StatusMenu(const QStringList &labels);

Q_SIGNALS:
    void triggered(int id);

protected:
    std::optional<QVariantList> call(const QString &method, const QVariantList &arguments) override;

private:
    [[nodiscard]] bool isEntry(int id) const { return id >= 0 && id <= m_labels.size(); }
    [[nodiscard]] QVariantMap properties(int id, const QStringList &names) const;
    [[nodiscard]] std::optional<QVariantList> layout(int parent, int depth, const QStringList &names) const;
    [[nodiscard]] QList<StatusMenuEntry> entries(QList<int> ids, const QStringList &names) const;
    [[nodiscard]] QList<int> unknown(const QList<int> &ids) const;
    void handle(int id, const QString &event);

    const QStringList m_labels;
};

} // namespace portolan
