// Calls to the status icon's menu and item, with whatever arguments a program on the bus sends.
#include "Require.h"
#include "StatusMenu.h"
#include "StatusNotifierItem.h"

#include <QByteArray>
#include <QDataStream>

namespace portolan {

static void callMenu(QDataStream &in)
{
    StatusMenu menu({QStringLiteral("Open"), QStringLiteral("Quit")});
    int triggered = 0;
    QObject::connect(&menu, &StatusMenu::triggered, [&](int id) {
        require(id == 1 || id == 2);
        ++triggered;
    });
    qint32 id = 0;
    qint32 depth = 0;
    QByteArray text;
    in >> id >> depth >> text;
    const QString name = QString::fromUtf8(text);
    StatusMenuLayout layout;
    menu.GetLayout(id, depth, {name}, layout);
    require(layout.children.size() <= 2);
    require(menu.GetGroupProperties({id, depth, id}, {name}).size() <= 3);
    menu.GetProperty(id, name);
    menu.Event(id, name, QDBusVariant(name), quint32(depth));
    menu.EventGroup({{id, name, QDBusVariant(depth), 0}, {depth, name, QDBusVariant(id), 0}});
    menu.AboutToShow(id);
    QList<int> unknown;
    menu.AboutToShowGroup({id, depth}, unknown);
    require(unknown.size() <= 2 && triggered <= 3);
}

static void callItem(QDataStream &in)
{
    StatusNotifierItem item({}, {}, {}, QDBusObjectPath(QStringLiteral("/MenuBar")));
    qint32 x = 0;
    qint32 y = 0;
    QByteArray text;
    in >> x >> y >> text;
    int activations = 0;
    QObject::connect(&item, &StatusNotifierItem::activated, [&] { ++activations; });
    item.Activate(x, y);
    item.SecondaryActivate(x, y);
    item.ContextMenu(x, y);
    item.Scroll(x, QString::fromUtf8(text));
    require(activations <= 2);
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    QDataStream in(bytes);
    callMenu(in);
    callItem(in);
    return 0;
}

} // namespace portolan
