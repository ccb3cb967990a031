// SPDX-License-Identifier: MIT
#include "Eventually.h"
#include "FakeStatusNotifierWatcher.h"
#include "Printers.h"
#include "PrivateBus.h"
#include "ScopedEnvironment.h"
#include "SniStatusIcon.h"

#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <optional>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

StatusIconArt someArt()
{
    // A half transparent pixel tests the premultiplication, a second row the byte order.
    QImage image(1, 2, QImage::Format_ARGB32_Premultiplied);
    image.setPixelColor(0, 0, QColor(255, 0, 0, 128));
    image.setPixelColor(0, 1, QColor(1, 2, 3, 255));
    return {"<svg/>", {image}};
}

} // namespace

class SniStatus : public testing::Test
{
protected:
    void expectHost(StatusIcon::Host host)
    {
        EXPECT_TRUE(eventually([&] { return m_icon->host() == host; }));
    }

    void showTo(bool hostPresent)
    {
        m_watcher.emplace(m_panel, hostPresent);
        m_icon.emplace(m_program, someArt());
    }

    // Calls a method of the program from the panel and returns the reply.
    QDBusMessage ask(const QString &path, const QString &interface, const QString &method,
                     const QVariantList &arguments)
    {
        QDBusMessage call = QDBusMessage::createMethodCall(m_program.baseService(), path, interface, method);
        call.setArguments(arguments);
        const QDBusPendingCall pending = m_panel.asyncCall(call);
        EXPECT_TRUE(eventually([&] { return pending.isFinished(); }));
        return pending.reply();
    }

    QVariant property(const QString &name)
    {
        const QDBusMessage reply = ask(u"/StatusNotifierItem"_s, u"org.freedesktop.DBus.Properties"_s,
                                       u"Get"_s, {u"org.kde.StatusNotifierItem"_s, name});
        EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << name.toStdString();
        return reply.arguments().value(0).value<QDBusVariant>().variant();
    }

    QDBusMessage askItem(const QString &method, const QVariantList &arguments)
    {
        return ask(u"/StatusNotifierItem"_s, u"org.kde.StatusNotifierItem"_s, method, arguments);
    }

    QDBusMessage askMenu(const QString &method, const QVariantList &arguments)
    {
        return ask(u"/MenuBar"_s, u"com.canonical.dbusmenu"_s, method, arguments);
    }

    QTemporaryDir m_folder;
    ScopedEnvironment m_runtime{"XDG_RUNTIME_DIR", m_folder.path().toLocal8Bit()};
    PrivateBus m_bus;
    QDBusConnection m_program = m_bus.connect();
    QDBusConnection m_panel = m_bus.connect();
    std::optional<FakeStatusNotifierWatcher> m_watcher;
    std::optional<SniStatusIcon> m_icon;
};

TEST_F(SniStatus, RegistersItsConnection)
{
    showTo(true);
    expectHost(StatusIcon::Host::Present);
    EXPECT_EQ(m_watcher->items(), QStringList{m_program.baseService()});
}

TEST_F(SniStatus, HasNoHostWithoutAWatcher)
{
    m_icon.emplace(m_program, someArt());
    EXPECT_EQ(m_icon->host(), StatusIcon::Host::Unknown);
    expectHost(StatusIcon::Host::Absent);
}

TEST_F(SniStatus, HasNoHostWithoutABus)
{
    m_icon.emplace(QDBusConnection(u"no such connection"_s), someArt());
    expectHost(StatusIcon::Host::Absent);
}

TEST_F(SniStatus, HasNoHostIfTheWatcherHasNone)
{
    showTo(false);
    expectHost(StatusIcon::Host::Absent);
    EXPECT_EQ(m_watcher->items().size(), 1) << "registered nevertheless, as a host may start later";
}

TEST_F(SniStatus, FollowsTheWatchersHost)
{
    showTo(false);
    expectHost(StatusIcon::Host::Absent);
    m_watcher->setHost(true);
    expectHost(StatusIcon::Host::Present);
    m_watcher->setHost(false);
    expectHost(StatusIcon::Host::Absent);
}

TEST_F(SniStatus, RegistersAgainWhenThePanelRestarts)
{
    m_icon.emplace(m_program, someArt());
    expectHost(StatusIcon::Host::Absent);
    for (int start = 0; start < 2; ++start) {
        m_watcher.emplace(m_panel, true);
        expectHost(StatusIcon::Host::Present);
        EXPECT_EQ(m_watcher->items(), QStringList{m_program.baseService()});
        m_watcher.reset();
        expectHost(StatusIcon::Host::Absent);
    }
}

TEST_F(SniStatus, ExportsItsProperties)
{
    showTo(true);
    EXPECT_EQ(property(u"Category"_s), u"ApplicationStatus"_s);
    EXPECT_EQ(property(u"Id"_s), u"portolan"_s);
    EXPECT_EQ(property(u"Title"_s), u"Portolan"_s);
    EXPECT_EQ(property(u"Status"_s), u"Active"_s);
    EXPECT_EQ(property(u"ItemIsMenu"_s), false);
    EXPECT_EQ(property(u"WindowId"_s), 0);
    EXPECT_EQ(property(u"Menu"_s).value<QDBusObjectPath>().path(), u"/MenuBar"_s);
    EXPECT_EQ(qdbus_cast<StatusNotifierToolTip>(property(u"ToolTip"_s)).title, u"Portolan"_s);
}

TEST_F(SniStatus, ExportsNoNameToAPanelThatWouldNotRecolourTheIcon)
{
    const ScopedEnvironment desktop("XDG_CURRENT_DESKTOP", "LXQt");
    showTo(true);
    EXPECT_EQ(property(u"IconThemePath"_s).toString(), QString());
    EXPECT_EQ(property(u"IconName"_s).toString(), QString());
    EXPECT_FALSE(qdbus_cast<QList<StatusNotifierPixmap>>(property(u"IconPixmap"_s)).isEmpty());
}

TEST_F(SniStatus, ExportsTheNameOfAnExistingIcon)
{
    const ScopedEnvironment desktop("XDG_CURRENT_DESKTOP", "ubuntu:GNOME");
    showTo(true);
    const QString icon = property(u"IconThemePath"_s).toString() + "/hicolor/symbolic/apps/"_L1 +
                         property(u"IconName"_s).toString() + ".svg"_L1;
    QFile file(icon);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << icon.toStdString();
    EXPECT_EQ(file.readAll(), "<svg/>");
}

TEST_F(SniStatus, ExportsNoNameWithoutAnIcon)
{
    const ScopedEnvironment desktop("XDG_CURRENT_DESKTOP", "GNOME");
    m_icon.emplace(m_program, StatusIconArt{{}, someArt().images});
    EXPECT_EQ(property(u"IconThemePath"_s).toString(), QString());
    EXPECT_EQ(property(u"IconName"_s).toString(), QString());
}

TEST_F(SniStatus, ExportsPixelsInNetworkByteOrderNotPremultiplied)
{
    showTo(true);
    const auto pixmaps = qdbus_cast<QList<StatusNotifierPixmap>>(property(u"IconPixmap"_s));
    ASSERT_EQ(pixmaps.size(), 1);
    EXPECT_EQ(pixmaps[0].width, 1);
    EXPECT_EQ(pixmaps[0].height, 2);
    EXPECT_EQ(pixmaps[0].argb.toHex(), "80ff0000ff010203");
}

TEST_F(SniStatus, ReportsThePositionOfAClick)
{
    showTo(true);
    QList<QPoint> clicks;
    QObject::connect(&*m_icon, &StatusIcon::activated, [&](QPoint anchor) { clicks += anchor; });
    askItem(u"Activate"_s, {1265, 15});
    askItem(u"SecondaryActivate"_s, {1266, 16});
    askItem(u"ContextMenu"_s, {1267, 17});
    askItem(u"Scroll"_s, {120, u"vertical"_s});
    EXPECT_EQ(clicks, (QList<QPoint>{{1265, 15}, {1266, 16}, {1267, 17}}));
}

TEST_F(SniStatus, ComputesWithNoCoordinateThatNoScreenHas)
{
    showTo(true);
    QPoint click;
    QObject::connect(&*m_icon, &StatusIcon::activated, [&](QPoint anchor) { click = anchor; });
    askItem(u"Activate"_s, {std::numeric_limits<int>::max(), std::numeric_limits<int>::min()});
    EXPECT_TRUE(eventually([&] { return !click.isNull(); }));
    EXPECT_EQ(click, QPoint(32767, -32768));
}

TEST_F(SniStatus, RefusesCallsThatItsInterfaceDoesNotName)
{
    showTo(true);
    // Panels ask for methods of other items first, and go by this very error.
    for (const QString &unknown : {u"deleteLater"_s, u"XAyatanaSecondaryActivate"_s})
        EXPECT_EQ(QDBusError(askItem(unknown, {})).type(), QDBusError::UnknownMethod);
    EXPECT_EQ(QDBusError(askItem(u"Activate"_s, {u"1"_s, 2})).type(), QDBusError::InvalidArgs);
    const auto read = [this](const QString &interface, const QString &name) {
        return ask(u"/StatusNotifierItem"_s, u"org.freedesktop.DBus.Properties"_s, u"Get"_s,
                   {interface, name})
            .type();
    };
    EXPECT_EQ(read(u"org.kde.StatusNotifierItem"_s, u"objectName"_s), QDBusMessage::ErrorMessage);
    EXPECT_EQ(read(u"org.kde.Other"_s, u"Id"_s), QDBusMessage::ErrorMessage);
}

TEST_F(SniStatus, HasNoHostWhileTheWatcherDoesNotAnswer)
{
    showTo(true);
    m_watcher->setSilent();
    m_icon.emplace(m_program, someArt());
    expectHost(StatusIcon::Host::Absent);
}

TEST_F(SniStatus, ExportsItsMenu)
{
    showTo(true);
    const QDBusMessage reply = askMenu(u"GetLayout"_s, {0, -1, QStringList()});
    ASSERT_EQ(reply.signature(), u"u(ia{sv}av)"_s);
    const auto root = qdbus_cast<StatusMenuLayout>(reply.arguments().at(1));
    EXPECT_EQ(root.id, 0);
    EXPECT_EQ(root.properties, (QVariantMap{{u"children-display"_s, u"submenu"_s}}));
    ASSERT_EQ(root.children.size(), 2);
    EXPECT_EQ(qdbus_cast<StatusMenuLayout>(root.children[0]).properties,
              (QVariantMap{{u"label"_s, u"Open Portolan"_s}}));
    EXPECT_EQ(qdbus_cast<StatusMenuLayout>(root.children[1]).properties,
              (QVariantMap{{u"label"_s, u"Quit"_s}}));
}

TEST_F(SniStatus, ExportsTheRequestedPartOfItsMenu)
{
    showTo(true);
    const QDBusMessage flat = askMenu(u"GetLayout"_s, {0, 0, QStringList()});
    EXPECT_TRUE(qdbus_cast<StatusMenuLayout>(flat.arguments().at(1)).children.isEmpty());
    const QDBusMessage leaf = askMenu(u"GetLayout"_s, {2, -1, QStringList()});
    EXPECT_EQ(qdbus_cast<StatusMenuLayout>(leaf.arguments().at(1)).id, 2);
    EXPECT_EQ(askMenu(u"GetLayout"_s, {3, -1, QStringList()}).type(), QDBusMessage::ErrorMessage);
    const QDBusMessage filtered = askMenu(u"GetLayout"_s, {0, -1, QStringList{u"icon-name"_s}});
    const QVariant child = qdbus_cast<StatusMenuLayout>(filtered.arguments().at(1)).children.at(0);
    EXPECT_TRUE(qdbus_cast<StatusMenuLayout>(child).properties.isEmpty());
}

TEST_F(SniStatus, ExportsThePropertiesOfItsMenu)
{
    showTo(true);
    EXPECT_EQ(askMenu(u"GetProperty"_s, {1, u"label"_s}).arguments().at(0).value<QDBusVariant>().variant(),
              u"Open Portolan"_s);
    EXPECT_EQ(askMenu(u"GetProperty"_s, {1, u"icon-name"_s}).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(askMenu(u"GetProperty"_s, {9, u"label"_s}).type(), QDBusMessage::ErrorMessage);

    const auto group = [this](const QList<int> &ids) {
        const QDBusMessage reply =
            askMenu(u"GetGroupProperties"_s, {QVariant::fromValue(ids), QStringList()});
        return qdbus_cast<QList<StatusMenuEntry>>(reply.arguments().at(0));
    };
    EXPECT_EQ(group({}).size(), 3);
    ASSERT_EQ(group({2, 9}).size(), 1);
    EXPECT_EQ(group({2, 9})[0].properties.value(u"label"_s), u"Quit"_s);

    const QDBusMessage version = ask(u"/MenuBar"_s, u"org.freedesktop.DBus.Properties"_s, u"Get"_s,
                                     {u"com.canonical.dbusmenu"_s, u"Version"_s});
    EXPECT_EQ(version.arguments().at(0).value<QDBusVariant>().variant(), 3u);
}

TEST_F(SniStatus, ReportsTheChosenMenuEntry)
{
    showTo(true);
    QStringList chosen;
    QObject::connect(&*m_icon, &StatusIcon::openRequested, [&] { chosen += u"open"_s; });
    QObject::connect(&*m_icon, &StatusIcon::quitRequested, [&] { chosen += u"quit"_s; });
    const QVariant nothing = QVariant::fromValue(QDBusVariant(0));

    askMenu(u"Event"_s, {1, u"hovered"_s, nothing, 0u});
    askMenu(u"Event"_s, {0, u"clicked"_s, nothing, 0u});
    askMenu(u"Event"_s, {3, u"clicked"_s, nothing, 0u});
    EXPECT_EQ(chosen, QStringList());
    askMenu(u"Event"_s, {1, u"clicked"_s, nothing, 0u});
    askMenu(u"Event"_s, {2, u"clicked"_s, nothing, 0u});
    EXPECT_EQ(chosen, (QStringList{u"open"_s, u"quit"_s}));

    const QList<StatusMenuEvent> events{{1, u"clicked"_s, QDBusVariant(0), 0},
                                        {7, u"clicked"_s, QDBusVariant(0), 0}};
    const QDBusMessage reply = askMenu(u"EventGroup"_s, {QVariant::fromValue(events)});
    EXPECT_EQ(qdbus_cast<QList<int>>(reply.arguments().at(0)), QList<int>{7});
    EXPECT_EQ(chosen.size(), 3);
}

TEST_F(SniStatus, NeedsNoUpdateBeforeItsMenuIsShown)
{
    showTo(true);
    EXPECT_EQ(askMenu(u"AboutToShow"_s, {0}).arguments().at(0), false);
    const QDBusMessage group = askMenu(u"AboutToShowGroup"_s, {QVariant::fromValue(QList<int>{0, 8})});
    EXPECT_EQ(qdbus_cast<QList<int>>(group.arguments().at(0)), QList<int>());
    EXPECT_EQ(qdbus_cast<QList<int>>(group.arguments().at(1)), QList<int>{8});
}

} // namespace portolan
