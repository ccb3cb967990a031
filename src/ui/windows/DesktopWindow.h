#pragma once

#include "RootWindow.h"

namespace portolan {

/// The ordinary window that holds the list for as long as the user wants.
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
