#pragma once

#include "RootWindow.h"

#include <QPoint>

namespace portolan {

/// The panel at the status icon: as high as its content, gone as soon as the user turns to something else.
class PopoverWindow : public RootWindow
{
    Q_OBJECT

public:
    PopoverWindow(QQmlEngine &engine, const RootContent &content);

    /// Shows the popover at the icon, `anchor`.
    void open(QPoint anchor);

Q_SIGNALS:
    /// The popover closed by itself, as the focus went elsewhere.
    void closedByFocusLoss();

protected:
    void escapePressed() override;

private:
    void place();
    void followFocus(const QWindow *focused);

    QPoint m_anchor;
};

} // namespace portolan
