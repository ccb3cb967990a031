// SPDX-License-Identifier: MIT
#pragma once

#include "PointerPresses.h"
#include "RootWindow.h"

#include <QPoint>

namespace portolan {

/// The popover at the status icon. It is as high as its content, and closes when it loses the focus or the
/// desktop is pressed.
class PopoverWindow : public RootWindow
{
    Q_OBJECT

public:
    PopoverWindow(QQmlEngine &engine, const RootContent &content);

    /// Shows the popover for an icon at `anchor`, in device-independent pixels of the virtual desktop.
    void open(QPoint anchor);

Q_SIGNALS:
    /// The popover has closed because another window got the focus, or the wallpaper was clicked.
    void closedByFocusLoss();

protected:
    bool event(QEvent *event) override;
    void escapePressed() override;
    void moveEvent(QMoveEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    [[nodiscard]] QRect placement() const;
    void place();
    void hoverAgain();
    void followPress();
    void closeUnfocused();

    QPoint m_anchor;
    bool m_isPlaced = false; // whether a move by the window manager was corrected
    PointerPresses m_presses;
};

} // namespace portolan
