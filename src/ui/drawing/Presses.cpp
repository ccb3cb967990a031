// SPDX-License-Identifier: MIT
#include "Presses.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QPointerEvent>
#include <QStyleHints>

namespace portolan {

namespace {

std::chrono::milliseconds doubleClickInterval()
{
    return std::chrono::milliseconds(QGuiApplication::styleHints()->mouseDoubleClickInterval());
}

bool isTrigger(int key)
{
    return key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space;
}

} // namespace

Presses::Presses(QObject *parent)
    : QObject(parent)
{
    qGuiApp->installEventFilter(this);
}

void Presses::holdKeys()
{
    m_keysHeldUntil = m_isKeyDown ? Clock::time_point::max() : Clock::now() + doubleClickInterval();
}

bool Presses::eventFilter(QObject *watched, QEvent *event)
{
    if (!watched->isWindowType())
        return false;
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::TouchBegin:
        press(*static_cast<QPointerEvent *>(event));
        break;
    case QEvent::MouseButtonRelease:
    case QEvent::TouchEnd:
        note(*static_cast<QPointerEvent *>(event));
        break;
    case QEvent::MouseMove:
    case QEvent::TouchUpdate:
        m_hasRested = m_hasRested && isNear(*static_cast<QPointerEvent *>(event));
        break;
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        return isTrigger(static_cast<QKeyEvent *>(event)->key()) &&
               followKey(event->type() == QEvent::KeyPress);
    case QEvent::FocusOut:
        followKey(false); // the release goes to another window
        break;
    default:
        break;
    }
    return false;
}

// Not by QKeyEvent::isAutoRepeat() alone: on a busy machine a repeat can arrive as a release and a press.
bool Presses::followKey(bool isPress)
{
    m_isKeyDown = isPress;
    if (Clock::now() >= m_keysHeldUntil)
        return false;
    holdKeys();
    return isPress;
}

void Presses::press(const QPointerEvent &event)
{
    m_isRepeated = m_hasRested && isNear(event) && isSoon(event);
    if (!m_isRepeated)
        m_place = event.points().first().globalPosition();
    m_hasRested = true;
    note(event);
}

void Presses::note(const QPointerEvent &event)
{
    m_time = Clock::now();
    m_timestamp = event.timestamp();
}

// By either clock: a busy program handles two presses at once, or the second one late.
bool Presses::isSoon(const QPointerEvent &event) const
{
    const auto isShort = [](auto duration) { return duration < doubleClickInterval(); };
    return isShort(Clock::now() - m_time) ||
           (event.timestamp() > m_timestamp &&
            isShort(std::chrono::milliseconds(event.timestamp() - m_timestamp)));
}

bool Presses::isNear(const QPointerEvent &event) const
{
    const QPointF distance = event.points().first().globalPosition() - m_place;
    return distance.manhattanLength() <= QGuiApplication::styleHints()->mouseDoubleClickDistance();
}

} // namespace portolan
