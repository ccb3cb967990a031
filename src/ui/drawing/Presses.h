// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointF>
#include <QtQmlIntegration>

#include <chrono>

class QPointerEvent;

namespace portolan {

/// Recognises presses that repeat the previous one, after which something else may be under the pointer.
/// Follows the events of all windows. Main thread.
class Presses : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    explicit Presses(QObject *parent = nullptr);

    /// Whether the press that is being delivered came within the desktop's double-click interval after the
    /// last press or release, with the pointer at rest in between.
    Q_INVOKABLE [[nodiscard]] bool isRepeated() const { return m_isRepeated; }

    /// Withholds Return, Enter and Space from the windows until none has been down for the double-click
    /// interval. To be called when a key press may have removed the focused item, so that its repeats do not
    /// act on the next one.
    Q_INVOKABLE void holdKeys();

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    using Clock = std::chrono::steady_clock;

    bool followKey(bool isPress);
    void press(const QPointerEvent &event);
    void note(const QPointerEvent &event);
    [[nodiscard]] bool isSoon(const QPointerEvent &event) const;
    [[nodiscard]] bool isNear(const QPointerEvent &event) const;

    bool m_isRepeated = false;
    bool m_hasRested = false; // since the last press
    QPointF m_place;          // of the first press of a series
    Clock::time_point m_time; // of the last press or release
    quint64 m_timestamp = 0;  // the same by the display server's clock
    bool m_isKeyDown = false;
    Clock::time_point m_keysHeldUntil;
};

} // namespace portolan
