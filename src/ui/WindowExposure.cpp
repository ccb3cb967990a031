#include "WindowExposure.h"

#include <QEvent>

void WindowExposure::setWindow(QQuickWindow *window)
{
    if (m_window == window)
        return;
    if (m_window)
        m_window->removeEventFilter(this);
    m_window = window;
    if (m_window)
        m_window->installEventFilter(this);
    update();
    Q_EMIT windowChanged();
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
