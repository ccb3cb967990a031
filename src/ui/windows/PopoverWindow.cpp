#include "PopoverWindow.h"

#include "PopoverPlacement.h"
#include "Screens.h"
#include "WindowHints.h"

#include <QGuiApplication>
#include <QQuickItem>

namespace portolan {

namespace {

// A transient window of the popover counts as part of it.
bool belongsTo(const QWindow *window, const QWindow *owner)
{
    while (window && window != owner)
        window = window->transientParent();
    return window;
}

} // namespace

PopoverWindow::PopoverWindow(QQmlEngine &engine, const RootContent &content)
    : RootWindow(engine, content, Presentation::Popover)
{
    setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    connect(rootObject(), &QQuickItem::implicitHeightChanged, this, &PopoverWindow::place);
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &PopoverWindow::followFocus);
}

void PopoverWindow::open(QPoint anchor)
{
    m_anchor = anchor;
    place();
    WindowHints::skipTaskBar(*this);
    bringToFront();
}

void PopoverWindow::place()
{
    const QSize content = QSizeF(rootObject()->implicitWidth(), rootObject()->implicitHeight()).toSize();
    setGeometry(PopoverPlacement::place(m_anchor, content, Screens::all()));
}

void PopoverWindow::followFocus(const QWindow *focused)
{
    if (!isVisible() || belongsTo(focused, this))
        return;
    hide();
    Q_EMIT closedByFocusLoss();
}

void PopoverWindow::escapePressed()
{
    hide();
}

} // namespace portolan
