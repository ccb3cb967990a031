#include "RootWindow.h"

#include "Theme.h"

#include <QKeyEvent>

using namespace Qt::StringLiterals;

RootWindow::RootWindow(QQmlEngine &engine, const QVariantMap &properties)
    : QQuickView(&engine, nullptr)
{
    setTitle(u"Portolan"_s);
    setColor(Theme::canvas());
    setResizeMode(SizeRootObjectToView);
    setInitialProperties(properties);
    setSource(QUrl(u"qrc:/qt-project.org/imports/Portolan/RootView.qml"_s));
}

void RootWindow::bringToFront()
{
    const bool appears = !isVisible();
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
