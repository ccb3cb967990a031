// SPDX-License-Identifier: MIT
// Calls to the status icon's menu and item, with arbitrary values.
#include "Require.h"
#include "StatusMenu.h"
#include "StatusNotifierItem.h"

#include <QByteArray>
#include <QDBusVariant>
#include <QDataStream>

namespace portolan {

using namespace Qt::StringLiterals;

struct Menu : StatusMenu
{
    using StatusMenu::call;
    using StatusMenu::StatusMenu;
};

struct Item : StatusNotifierItem
{
    using StatusNotifierItem::call;
    using StatusNotifierItem::StatusNotifierItem;
};

static void callMenu(int id, int other, const QString &text)
{
    Menu menu({u"Open"_s, u"Quit"_s});
    int triggered = 0;
    QObject::connect(&menu, &StatusMenu::triggered, [&](int entry) {
        require(entry == 1 || entry == 2);
        ++triggered;
    });
    const QList<int> ids{id, other, id};
    const auto layout = menu.call(u"GetLayout"_s, {id, other, QStringList{text}});
    require(layout.has_value() == (id >= 0 && id <= 2));
    if (layout)
        require(layout->at(1).value<StatusMenuLayout>().children.size() <= 2);
    const auto group = menu.call(u"GetGroupProperties"_s, {QVariant::fromValue(ids), QStringList{text}});
    require(group->first().value<QList<StatusMenuEntry>>().size() <= 3);
    menu.call(u"GetProperty"_s, {id, text});
    menu.call(u"Event"_s, {id, text, QVariant::fromValue(QDBusVariant(text)), uint(other)});
    const QList<StatusMenuEvent> events{{id, text, QDBusVariant(other), 0},
                                        {other, text, QDBusVariant(id), 0}};
    menu.call(u"EventGroup"_s, {QVariant::fromValue(events)});
    menu.call(u"AboutToShow"_s, {id});
    menu.call(u"AboutToShowGroup"_s, {QVariant::fromValue(ids)});
    require(triggered <= 3);
}

static void callItem(int x, int y, const QString &text)
{
    Item item({}, {}, {}, QDBusObjectPath(u"/MenuBar"_s));
    item.call(u"Activate"_s, {x, y});
    item.call(u"SecondaryActivate"_s, {x, y});
    item.call(u"ContextMenu"_s, {x, y});
    item.call(u"Scroll"_s, {x, text});
    item.call(u"ProvideXdgActivationToken"_s, {text});
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    QDataStream in(bytes);
    qint32 first = 0;
    qint32 second = 0;
    in >> first >> second;
    const QString text = QString::fromUtf8(bytes.sliced(std::min<qsizetype>(8, bytes.size())));
    callMenu(first, second, text);
    callItem(first, second, text);
    return 0;
}

} // namespace portolan
