// SPDX-License-Identifier: MIT
#pragma once

#include "RootContent.h"

#include <QQuickView>

namespace portolan {

/// A window that shows a RootView.
class RootWindow : public QQuickView
{
    Q_OBJECT

public:
    /// The values of RootView.Presentation.
    enum class Presentation : quint8 { Popover, Window };

    /// The objects in `content` must outlive the window.
    RootWindow(QQmlEngine &engine, const RootContent &content, Presentation presentation);

    /// Shows the window, raises it and requests the keyboard focus.
    void bringToFront();

Q_SIGNALS:
    /// The window was hidden and is now shown.
    void appeared();
    /// The user wants to open the content in a desktop window.
    void detachRequested();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    /// Escape was pressed, and no item has handled it.
    virtual void escapePressed() {}
};

} // namespace portolan
