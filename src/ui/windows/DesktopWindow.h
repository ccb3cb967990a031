#pragma once

#include "RootWindow.h"

namespace portolan {

/// The ordinary window with the list, into which the popover can be detached.
class DesktopWindow : public RootWindow
{
    Q_OBJECT

public:
    DesktopWindow(QQmlEngine &engine, const RootContent &content);

Q_SIGNALS:
    /// The user closed the window.
    void closed();

protected:
    void closeEvent(QCloseEvent *event) override;
};

} // namespace portolan
