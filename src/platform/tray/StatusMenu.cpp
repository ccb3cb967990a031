#include "StatusMenu.h"

#include <QDBusMetaType>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

QVariantMap filtered(const QVariantMap &properties, const QStringList &names)
{
    if (names.isEmpty())
        return properties;
    QVariantMap result;
    for (const auto &[name, value] : properties.asKeyValueRange())
        if (names.contains(name))
            result.insert(name, value);
    return result;
}

} // namespace

QDBusArgument &operator<<(QDBusArgument &out, const StatusMenuLayout &layout)
{
    out.beginStructure();
    out << layout.id << layout.properties;
    out.beginArray(QMetaType::fromType<QDBusVariant>());
    for (const StatusMenuLayout &child : layout.children)
        out << QDBusVariant(QVariant::fromValue(child));
    out.endArray();
    out.endStructure();
    return out;
}

const QDBusArgument &operator>>(const QDBusArgument &in, StatusMenuLayout &layout)
{
    in.beginStructure();
    in >> layout.id >> layout.properties;
    layout.children.clear();
    in.beginArray();
    while (!in.atEnd()) {
        QDBusVariant child;
        in >> child;
        layout.children.append(qdbus_cast<StatusMenuLayout>(child.variant().value<QDBusArgument>()));
    }
    in.endArray();
    in.endStructure();
    return in;
}

QDBusArgument &operator<<(QDBusArgument &out, const StatusMenuEntry &entry)
{
    out.beginStructure();
    out << entry.id << entry.properties;
    out.endStructure();
    return out;
}

const QDBusArgument &operator>>(const QDBusArgument &in, StatusMenuEntry &entry)
{
    in.beginStructure();
    in >> entry.id >> entry.properties;
    in.endStructure();
    return in;
}

QDBusArgument &operator<<(QDBusArgument &out, const StatusMenuEvent &event)
{
    out.beginStructure();
    out << event.id << event.type << event.data << event.timestamp;
    out.endStructure();
    return out;
}

const QDBusArgument &operator>>(const QDBusArgument &in, StatusMenuEvent &event)
{
    in.beginStructure();
    in >> event.id >> event.type >> event.data >> event.timestamp;
    in.endStructure();
    return in;
}

StatusMenu::StatusMenu(const QStringList &labels, QObject *parent)
    : QObject(parent)
    , m_labels(labels)
{
    qDBusRegisterMetaType<QList<int>>();
    qDBusRegisterMetaType<StatusMenuLayout>();
    qDBusRegisterMetaType<StatusMenuEntry>();
    qDBusRegisterMetaType<QList<StatusMenuEntry>>();
    qDBusRegisterMetaType<StatusMenuEvent>();
    qDBusRegisterMetaType<QList<StatusMenuEvent>>();
}

uint StatusMenu::GetLayout(int parentId, int recursionDepth, const QStringList &propertyNames,
                           StatusMenuLayout &layout)
{
    constexpr uint revision = 1;
    if (!isEntry(parentId)) {
        sendErrorReply(QDBusError::InvalidArgs, u"no such menu entry"_s);
        return revision;
    }
    layout = {parentId, filtered(properties(parentId), propertyNames), {}};
    if (parentId == 0 && recursionDepth != 0)
        for (int id = 1; isEntry(id); ++id)
            layout.children.append({id, filtered(properties(id), propertyNames), {}});
    return revision;
}

QList<StatusMenuEntry> StatusMenu::GetGroupProperties(const QList<int> &ids, const QStringList &propertyNames)
{
    QList<StatusMenuEntry> entries;
    if (ids.isEmpty()) { // requests all
        for (int id = 0; isEntry(id); ++id)
            entries.append({id, filtered(properties(id), propertyNames)});
        return entries;
    }
    for (const int id : ids)
        if (isEntry(id))
            entries.append({id, filtered(properties(id), propertyNames)});
    return entries;
}

QDBusVariant StatusMenu::GetProperty(int id, const QString &name)
{
    const QVariant value = isEntry(id) ? properties(id).value(name) : QVariant();
    if (value.isValid())
        return QDBusVariant(value);
    sendErrorReply(QDBusError::InvalidArgs, u"no such property"_s);
    return QDBusVariant(QString()); // an invalid variant cannot be marshalled
}

void StatusMenu::Event(int id, const QString &type, const QDBusVariant &, uint)
{
    if (type == "clicked"_L1 && id != 0 && isEntry(id))
        Q_EMIT triggered(id);
}

QList<int> StatusMenu::EventGroup(const QList<StatusMenuEvent> &events)
{
    QList<int> unknownIds;
    for (const StatusMenuEvent &event : events) {
        if (isEntry(event.id))
            Event(event.id, event.type, event.data, event.timestamp);
        else
            unknownIds.append(event.id);
    }
    return unknownIds;
}

bool StatusMenu::AboutToShow(int)
{
    return false;
}

QList<int> StatusMenu::AboutToShowGroup(const QList<int> &ids, QList<int> &unknownIds)
{
    for (const int id : ids)
        if (!isEntry(id))
            unknownIds.append(id);
    return {};
}

QString StatusMenu::textDirection() const
{
    return u"ltr"_s;
}

QString StatusMenu::status() const
{
    return u"normal"_s;
}

QVariantMap StatusMenu::properties(int id) const
{
    if (id == 0)
        return {{u"children-display"_s, u"submenu"_s}};
    return {{u"label"_s, m_labels.at(id - 1)}};
}

} // namespace portolan
