// SPDX-License-Identifier: MIT
#include "StatusMenu.h"

#include <QDBusMetaType>

#include <numeric>

namespace portolan {

using namespace Qt::StringLiterals;

StatusMenu::StatusMenu(const QStringList &labels)
    : BusObject(u"com.canonical.dbusmenu"_s,
                {
                    {u"GetLayout"_s, {u"i"_s, u"i"_s, u"as"_s}, {u"u"_s, u"(ia{sv}av)"_s}},
                    {u"GetGroupProperties"_s, {u"ai"_s, u"as"_s}, {u"a(ia{sv})"_s}},
                    {u"GetProperty"_s, {u"i"_s, u"s"_s}, {u"v"_s}},
                    {u"Event"_s, {u"i"_s, u"s"_s, u"v"_s, u"u"_s}, {}},
                    {u"EventGroup"_s, {u"a(isvu)"_s}, {u"ai"_s}},
                    {u"AboutToShow"_s, {u"i"_s}, {u"b"_s}},
                    {u"AboutToShowGroup"_s, {u"ai"_s}, {u"ai"_s, u"ai"_s}},
                },
                {
                    {u"Version"_s, 3u},
                    {u"TextDirection"_s, u"ltr"_s},
                    {u"Status"_s, u"normal"_s},
                    {u"IconThemePath"_s, QStringList()},
                })
    , m_labels(labels)
{
    qDBusRegisterMetaType<QList<int>>();
    qDBusRegisterMetaType<StatusMenuLayout>();
    qDBusRegisterMetaType<StatusMenuEntry>();
    qDBusRegisterMetaType<QList<StatusMenuEntry>>();
    qDBusRegisterMetaType<StatusMenuEvent>();
    qDBusRegisterMetaType<QList<StatusMenuEvent>>();
}

std::optional<QVariantList> StatusMenu::call(const QString &method, const QVariantList &arguments)
{
    const int id = arguments[0].toInt();
    if (method == "GetLayout"_L1)
        return layout(id, arguments[1].toInt(), arguments[2].toStringList());
    if (method == "GetGroupProperties"_L1)
        return QVariantList{
            QVariant::fromValue(entries(qdbus_cast<QList<int>>(arguments[0]), arguments[1].toStringList()))};
    if (method == "GetProperty"_L1) {
        const QVariant value = properties(id, {}).value(arguments[1].toString());
        return value.isValid() ? std::optional(QVariantList{QVariant::fromValue(QDBusVariant(value))})
                               : std::nullopt;
    }
    if (method == "Event"_L1) {
        handle(id, arguments[1].toString());
        return QVariantList();
    }
    if (method == "EventGroup"_L1) {
        QList<int> ids;
        for (const StatusMenuEvent &event : qdbus_cast<QList<StatusMenuEvent>>(arguments[0])) {
            handle(event.id, event.type);
            ids.append(event.id);
        }
        return QVariantList{QVariant::fromValue(unknown(ids))};
    }
    if (method == "AboutToShow"_L1)
        return QVariantList{false};
    return QVariantList{QVariant::fromValue(QList<int>()),
                        QVariant::fromValue(unknown(qdbus_cast<QList<int>>(arguments[0])))};
}

std::optional<QVariantList> StatusMenu::layout(int parent, int depth, const QStringList &names) const
{
    if (!isEntry(parent))
        return std::nullopt;
    constexpr uint revision = 1;
    StatusMenuLayout result{parent, properties(parent, names), {}};
    if (parent == 0 && depth != 0)
        for (int id = 1; isEntry(id); ++id)
            result.children += QVariant::fromValue(StatusMenuLayout{id, properties(id, names), {}});
    return QVariantList{revision, QVariant::fromValue(result)};
}

QList<StatusMenuEntry> StatusMenu::entries(QList<int> ids, const QStringList &names) const
{
    if (ids.isEmpty()) { // requests all
        ids.resize(m_labels.size() + 1);
        std::iota(ids.begin(), ids.end(), 0);
    }
    QList<StatusMenuEntry> found;
    for (const int id : std::as_const(ids))
        if (isEntry(id))
            found.append({id, properties(id, names)});
    return found;
}

QList<int> StatusMenu::unknown(const QList<int> &ids) const
{
    QList<int> result;
    std::ranges::copy_if(ids, std::back_inserter(result), [this](int id) { return !isEntry(id); });
    return result;
}

void StatusMenu::handle(int id, const QString &event)
{
    if (event == "clicked"_L1 && id != 0 && isEntry(id))
        Q_EMIT triggered(id);
}

/// Those of an entry's properties that are in `names`, all if it is empty; none if there is no such entry.
QVariantMap StatusMenu::properties(int id, const QStringList &names) const
{
    if (!isEntry(id))
        return {};
    const QString name = id == 0 ? u"children-display"_s : u"label"_s;
    if (!names.isEmpty() && !names.contains(name))
        return {};
    return {{name, id == 0 ? u"submenu"_s : m_labels.at(id - 1)}};
}

} // namespace portolan
