// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>

namespace portolan {

/// Reports the presses of pointer buttons anywhere on an X11 display: a click on the wallpaper of some
/// desktops moves no focus, so no other event reports it. Nothing is reported on other displays, and through
/// Xwayland only what is pressed over X11 windows. Main thread.
class PointerPresses : public QObject, private QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    /// Nothing is reported until the first call with true.
    void setEnabled(bool enabled);

Q_SIGNALS:
    /// A button has been pressed, wherever the pointer is; the window below it has not got the press yet, or
    /// never will.
    void pressed();

private:
    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

    bool m_enabled = false;
    quint8 m_extension = 0; // the number of the input extension's events
};

} // namespace portolan
