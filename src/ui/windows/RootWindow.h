#pragma once

#include "RootContent.h"

#include <QQuickView>

namespace portolan {

/// A window filled by a RootView.
class RootWindow : public QQuickView
{
    Q_OBJECT

public:
    /// RootView's presentations, in its order.
    enum class Presentation : quint8 { Popover, Window };

    /// What `content` names outlives the window.
    RootWindow(QQmlEngine &engine, const RootContent &content, Presentation presentation);

    /// Shows the window, if it is not shown yet, above the others and with the keyboard's focus.
    void bringToFront();

Q_SIGNALS:
    /// The window came into view, having been out of it.
    void appeared();
    /// The user wants the content in a window of its own.
    void detachRequested();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    /// Escape was pressed and nothing inside wanted it.
    virtual void escapePressed() {}
};

} // namespace portolan
