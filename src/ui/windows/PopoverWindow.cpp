// SPDX-License-Identifier: MIT
#include "PopoverWindow.h"

#include "DisplayServer.h"
#include "PopoverPlacement.h"
#include "Screens.h"
#include "Theme.h"
#include "WindowHints.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QQuickItem>

#include <optional>

namespace portolan {

using namespace Qt::StringLiterals;

PopoverWindow::PopoverWindow(QQmlEngine &engine, const RootContent &content)
    : RootWindow(engine, content, Presentation::Popover)
{
    setTitle(u"Portolan popover"_s);
    QSurfaceFormat translucent = requestedFormat();
    translucent.setAlphaBufferSize(8);
    setFormat(translucent);
    setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    connect(rootObject(), &QQuickItem::implicitHeightChanged, this, &PopoverWindow::place);
    connect(&m_presses, &PointerPresses::pressed, this, &PopoverWindow::followPress);
}

void PopoverWindow::open(QPoint anchor)
{
    m_anchor = anchor;
    m_isPlaced = isVisible();
    place();
    const bool isComposited = WindowHints::isComposited();
    setColor(isComposited ? QColor(Qt::transparent) : Theme::canvas);
    rootObject()->setProperty("cornerRadius", isComposited ? 10 : 0);
    WindowHints::skipTaskBar(*this);
    bringToFront();
    m_presses.setEnabled(true);
}

QRect PopoverWindow::placement() const
{
    const QSize content = QSizeF(rootObject()->implicitWidth(), rootObject()->implicitHeight()).toSize();
    return PopoverPlacement::place(m_anchor, content, Screens::all());
}

void PopoverWindow::place()
{
    setGeometry(placement());
}

void PopoverWindow::followPress()
{
    const std::optional<QPoint> pointer = DisplayServer::pointer();
    if (isVisible() && pointer && !geometry().contains(*pointer) &&
        PopoverPlacement::isOnDesktop(*pointer, m_anchor, Screens::all()) &&
        DisplayServer::isPointerOnDesktop())
        closeUnfocused();
}

// Xwayland does not know where the pointer is until it moves over an X11 window: a new window gets an enter
// event for the last known position.
bool PopoverWindow::event(QEvent *event)
{
    return (event->type() == QEvent::Enter && !DisplayServer::pointer()) || RootWindow::event(event);
}

// Some window managers move a window when it is shown again, but accept a move after that.
void PopoverWindow::moveEvent(QMoveEvent *event)
{
    RootWindow::moveEvent(event);
    hoverAgain();
    if (!isVisible() || m_isPlaced || event->pos() == placement().topLeft())
        return;
    m_isPlaced = true;
    QMetaObject::invokeMethod(this, &PopoverWindow::place, Qt::QueuedConnection);
}

// Above a panel at the bottom it grows upwards, so another row may be under a resting pointer without an
// event.
void PopoverWindow::hoverAgain()
{
    const std::optional<QPoint> pointer = DisplayServer::pointer();
    if (!isVisible() || !pointer || !geometry().contains(*pointer) ||
        QGuiApplication::mouseButtons() != Qt::NoButton)
        return;
    QMouseEvent move(QEvent::MouseMove, mapFromGlobal(*pointer), *pointer, Qt::NoButton, Qt::NoButton,
                     QGuiApplication::keyboardModifiers());
    QCoreApplication::sendEvent(this, &move);
}

void PopoverWindow::hideEvent(QHideEvent *event)
{
    m_presses.setEnabled(false);
    RootWindow::hideEvent(event);
}

// Only the loss of a focus that it had closes the popover: the previous owner, such as the icon's menu, may
// lose it only after the popover has appeared.
void PopoverWindow::focusOutEvent(QFocusEvent *event)
{
    RootWindow::focusOutEvent(event);
    if (isVisible())
        closeUnfocused();
}

void PopoverWindow::closeUnfocused()
{
    hide();
    Q_EMIT closedByFocusLoss();
}

void PopoverWindow::escapePressed()
{
    hide();
}

} // namespace portolan
