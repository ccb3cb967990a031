// SPDX-License-Identifier: MIT
#include "TitleButtons.h"

#include "XSettings.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QSettings>
#include <QStandardPaths>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

QStringList known(const QStringList &names)
{
    QStringList buttons;
    for (const QString &name : names) {
        if (TitleButtons().right.contains(name))
            buttons.append(name);
    }
    return buttons;
}

QStringList named(const QString &letters)
{
    QStringList buttons;
    for (const QChar letter : letters) {
        if (letter == u'I')
            buttons.append(u"minimize"_s);
        else if (letter == u'A')
            buttons.append(u"maximize"_s);
        else if (letter == u'X')
            buttons.append(u"close"_s);
    }
    return buttons;
}

TitleButtons fromKWin()
{
    const QString file = QStandardPaths::locate(QStandardPaths::GenericConfigLocation, u"kwinrc"_s);
    QSettings settings(file, QSettings::IniFormat);
    settings.beginGroup("org.kde.kdecoration2");
    return TitleButtons::fromLetters(settings.value("ButtonsOnLeft", u"MS"_s).toString(),
                                     settings.value("ButtonsOnRight", u"HIAX"_s).toString());
}

QDBusPendingCall askPortal()
{
    QDBusMessage call = QDBusMessage::createMethodCall(u"org.freedesktop.portal.Desktop"_s,
                                                       u"/org/freedesktop/portal/desktop"_s,
                                                       u"org.freedesktop.portal.Settings"_s, u"Read"_s);
    call.setArguments({u"org.gnome.desktop.wm.preferences"_s, u"button-layout"_s});
    call.setAutoStartService(false); // a portal that does not run is not worth starting
    return QDBusConnection::sessionBus().asyncCall(call);
}

// Portals answer with a variant in a variant.
QString textIn(QVariant value)
{
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value.toString();
}

} // namespace

TitleButtons TitleButtons::fromLayout(const QString &layout)
{
    return {known(layout.section(u':', 0, 0).split(u',')), known(layout.section(u':', 1).split(u','))};
}

TitleButtons TitleButtons::fromLetters(const QString &left, const QString &right)
{
    return {named(left), named(right)};
}

void TitleButtons::find(QObject *context, const std::function<void(const TitleButtons &)> &found)
{
    if (qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':').contains(u"KDE"_s))
        return found(fromKWin());
    if (const QString layout = XSettings::read().value(u"Gtk/DecorationLayout"_s).toString();
        !layout.isEmpty())
        return found(fromLayout(layout));
    auto *watcher = new QDBusPendingCallWatcher(askPortal(), context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context, [watcher, found] {
        watcher->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (reply.isValid())
            found(fromLayout(textIn(QVariant::fromValue(reply.value()))));
    });
}

} // namespace portolan
