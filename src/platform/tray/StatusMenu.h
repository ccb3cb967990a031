#pragma once

#include <QDBusArgument>
#include <QDBusContext>
#include <QDBusVariant>
#include <QList>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

namespace portolan {

/// An entry of the menu with its children: (ia{sv}av).
struct StatusMenuLayout
{
    int id = 0;
    QVariantMap properties;
    QList<StatusMenuLayout> children;
};

/// The properties of one entry: (ia{sv}).
struct StatusMenuEntry
{
    int id = 0;
    QVariantMap properties;
};

/// An event of one entry: (isvu).
struct StatusMenuEvent
{
    int id = 0;
    QString type;
    QDBusVariant data;
    uint timestamp = 0;
};

QDBusArgument &operator<<(QDBusArgument &out, const StatusMenuLayout &layout);
const QDBusArgument &operator>>(const QDBusArgument &in, StatusMenuLayout &layout);
QDBusArgument &operator<<(QDBusArgument &out, const StatusMenuEntry &entry);
const QDBusArgument &operator>>(const QDBusArgument &in, StatusMenuEntry &entry);
QDBusArgument &operator<<(QDBusArgument &out, const StatusMenuEvent &event);
const QDBusArgument &operator>>(const QDBusArgument &in, StatusMenuEvent &event);

/// The status icon's menu, exported over D-Bus: one level of entries, which never change.
class StatusMenu : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version CONSTANT FINAL)
    Q_PROPERTY(QString TextDirection READ textDirection CONSTANT FINAL)
    Q_PROPERTY(QString Status READ status CONSTANT FINAL)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath CONSTANT FINAL)

public:
    /// The entry `labels[i]` has the id i + 1; the id 0 is the root.
    explicit StatusMenu(const QStringList &labels, QObject *parent = nullptr);

public Q_SLOTS:
    // The methods of com.canonical.dbusmenu.
    Q_SCRIPTABLE uint GetLayout(int parentId, int recursionDepth, const QStringList &propertyNames,
                                portolan::StatusMenuLayout &layout);
    Q_SCRIPTABLE QList<portolan::StatusMenuEntry> GetGroupProperties(const QList<int> &ids,
                                                                     const QStringList &propertyNames);
    Q_SCRIPTABLE QDBusVariant GetProperty(int id, const QString &name);
    Q_SCRIPTABLE void Event(int id, const QString &type, const QDBusVariant &data, uint timestamp);
    Q_SCRIPTABLE QList<int> EventGroup(const QList<portolan::StatusMenuEvent> &events);
    Q_SCRIPTABLE bool AboutToShow(int id);
    Q_SCRIPTABLE QList<int> AboutToShowGroup(const QList<int> &ids, QList<int> &unknownIds);

Q_SIGNALS:
    void triggered(int id);

private:
    uint version() const { return 3; }
    QString textDirection() const;
    QString status() const;
    QStringList iconThemePath() const { return {}; }

    bool isEntry(int id) const { return id >= 0 && id <= m_labels.size(); }
    QVariantMap properties(int id) const;

    QStringList m_labels;
};

} // namespace portolan
