#pragma once

#include "RootWindow.h"

#include <QPoint>

namespace portolan {

/// The popover at the status icon. It is as high as its content and closes when it loses the focus.
class PopoverWindow : public RootWindow
{
    Q_OBJECT

public:
    PopoverWindow(QQmlEngine &engine, const RootContent &content);

    /// Shows the popover for an icon at `anchor`, in device-independent pixels of the virtual desktop.
    void open(QPoint anchor);

Q_SIGNALS:
    /// The popover has closed because another window got the focus.
    void closedByFocusLoss();

protected:
    void escapePressed() override;

private:
    void place();
    void followFocus(const QWindow *focused);

    QPoint m_anchor;
};

} // namespace portolan
