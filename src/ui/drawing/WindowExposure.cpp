// SPDX-License-Identifier: MIT
#include "WindowExposure.h"

#include <QEvent>

namespace portolan {

void WindowExposure::itemChange(ItemChange change, const ItemChangeData &data)
{
    if (change == ItemSceneChange) {
        if (m_window)
            m_window->removeEventFilter(this);
        m_window = data.window;
        if (m_window)
            m_window->installEventFilter(this);
        check();
    }
    QQuickItem::itemChange(change, data);
}

bool WindowExposure::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Expose || event->type() == QEvent::Show || event->type() == QEvent::Hide)
        check();
    return QQuickItem::eventFilter(watched, event);
}

void WindowExposure::check()
{
    const bool isExposed = m_window && m_window->isVisible() && m_window->isExposed();
    if (m_isExposed == isExposed)
        return;
    m_isExposed = isExposed;
    Q_EMIT isExposedChanged();
}

} // namespace portolan
