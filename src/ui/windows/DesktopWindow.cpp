// SPDX-License-Identifier: MIT
#include "DesktopWindow.h"

#include "AppIcon.h"
#include "TitleButtons.h"
#include "WindowHints.h"

#include <QCursor>
#include <QIcon>
#include <QPixmap>
#include <QQuickItem>

namespace portolan {

namespace {
constexpr QSize defaultSize(480, 620);
constexpr QSize smallestSize(400, 440);
} // namespace

DesktopWindow::DesktopWindow(QQmlEngine &engine, const RootContent &content)
    : RootWindow(engine, content, Presentation::Window)
{
    setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowSystemMenuHint | Qt::WindowMinMaxButtonsHint |
             Qt::WindowCloseButtonHint);
    connect(rootObject(), SIGNAL(windowMenuRequested()), this, SLOT(showMenu()));
    QIcon icon;
    for (const int size : {16, 32, 48, 128})
        icon.addPixmap(QPixmap::fromImage(AppIcon::image(size)));
    setIcon(icon);
    setMinimumSize(smallestSize);
    resize(defaultSize);
    connect(this, &QWindow::windowStateChanged, this, [this] {
        if (isVisible() && !(windowStates() & Qt::WindowMinimized))
            m_lastState = windowStates() & (Qt::WindowMaximized | Qt::WindowFullScreen);
    });
}

void DesktopWindow::open()
{
    TitleButtons::find(this, [this](const TitleButtons &buttons) {
        rootObject()->setProperty("leftButtons", buttons.left);
        rootObject()->setProperty("rightButtons", buttons.right);
    });
    WindowHints::setRole(*this, "portolan-desktop");
    // Window managers forget the state of a window that was closed, whose size is still that of the state.
    const Qt::WindowStates closedAs = isVisible() ? Qt::WindowNoState : m_lastState;
    if (closedAs)
        resize(defaultSize);
    bringToFront();
    if (closedAs)
        setWindowStates(closedAs);
}

void DesktopWindow::showMenu()
{
    WindowHints::showMenu(*this, QCursor::pos());
}

void DesktopWindow::closeEvent(QCloseEvent *event)
{
    RootWindow::closeEvent(event);
    Q_EMIT closed();
}

} // namespace portolan
