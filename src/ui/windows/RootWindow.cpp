// SPDX-License-Identifier: MIT
#include "RootWindow.h"

#include "LoginItem.h"
#include "ServiceActions.h"
#include "ServiceStore.h"
#include "Theme.h"

#include <QKeyEvent>
#include <QQuickItem>

namespace portolan {

using namespace Qt::StringLiterals;

RootWindow::RootWindow(QQmlEngine &engine, const RootContent &content, Presentation presentation)
    : QQuickView(&engine, nullptr)
{
    setTitle(u"Portolan"_s);
    setColor(Theme::canvas);
    setResizeMode(SizeRootObjectToView);
    setInitialProperties({{u"store"_s, QVariant::fromValue(&content.store)},
                          {u"actions"_s, QVariant::fromValue(&content.actions)},
                          {u"loginItem"_s, QVariant::fromValue(&content.loginItem)},
                          {u"presentation"_s, int(presentation)}});
    setSource(QUrl(u"qrc:/qt-project.org/imports/Portolan/RootView.qml"_s));
    connect(rootObject(), SIGNAL(detach()), this, SIGNAL(detachRequested()));
}

void RootWindow::bringToFront()
{
    const bool appears = !isVisible();
    setWindowStates(windowStates() & ~Qt::WindowMinimized);
    show();
    raise();
    requestActivate();
    if (appears)
        Q_EMIT appeared();
}

void RootWindow::keyPressEvent(QKeyEvent *event)
{
    QQuickView::keyPressEvent(event);
    if (!event->isAccepted() && event->key() == Qt::Key_Escape)
        escapePressed();
}

} // namespace portolan
