// SPDX-License-Identifier: MIT
#include "WindowExposure.h"

#include <QEvent>

namespace portolan {

void WindowExposure::setItem(QQuickItem *item)
{
    if (m_item == item)
        return;
    if (m_item)
        m_item->disconnect(this);
    m_item = item;
    if (item)
        connect(item, &QQuickItem::windowChanged, this, &WindowExposure::watch);
    watch(item ? item->window() : nullptr);
    Q_EMIT itemChanged();
}

void WindowExposure::watch(QQuickWindow *window)
{
    if (m_window)
        m_window->removeEventFilter(this);
    m_window = window;
    if (m_window)
        m_window->installEventFilter(this);
    update();
}

bool WindowExposure::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Expose || event->type() == QEvent::Show || event->type() == QEvent::Hide)
        update();
    return QObject::eventFilter(watched, event);
}

void WindowExposure::update()
{
    m_isExposed = m_window && m_window->isVisible() && m_window->isExposed();
}

} // namespace portolan
