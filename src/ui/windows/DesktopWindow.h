// SPDX-License-Identifier: MIT
#pragma once

#include "RootWindow.h"

namespace portolan {

/// The ordinary window with the list, into which the popover can be detached. It has no frame of the window
/// manager: its content includes the title bar and the border.
class DesktopWindow : public RootWindow
{
    Q_OBJECT

public:
    DesktopWindow(QQmlEngine &engine, const RootContent &content);

    /// Shows the window, with its buttons in the desktop's present order, and brings it to the front.
    void open();

Q_SIGNALS:
    /// The user closed the window.
    void closed();

protected:
    void closeEvent(QCloseEvent *event) override;

private Q_SLOTS:
    void showMenu();

private:
    Qt::WindowStates m_lastState; ///< while it was visible, but minimised
};

} // namespace portolan
