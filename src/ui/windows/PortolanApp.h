// SPDX-License-Identifier: MIT
#pragma once

#include "ReopenGuard.h"
#include "RootContent.h"
#include "StartRequest.h"
#include "StatusIcon.h"

#include <QObject>
#include <QPoint>
#include <QQmlEngine>

#include <memory>
#include <optional>

namespace portolan {

class DesktopWindow;
class PopoverWindow;
class RootWindow;

/// The user interface of the program: the status icon, the popover, and the window into which the popover can
/// be detached. Both show the same store. Main thread only.
class PortolanApp : public QObject
{
    Q_OBJECT

public:
    /// Shows the status icon. The objects in `content` must outlive this one.
    explicit PortolanApp(const RootContent &content);
    ~PortolanApp() override;

    /// Handles the request of this start of the program. `Open` shows nothing but the status icon, or the
    /// window if the desktop has no status area.
    void start(StartRequest request);
    /// Handles the request of a later start.
    void show(StartRequest request);

private:
    [[nodiscard]] bool isReachable() const; // through a status icon
    template <typename Action>
    void onceHostIsKnown(Action action);

    void clickIcon(QPoint anchor);
    void takeIconPosition(QPoint reported);
    [[nodiscard]] QPoint iconPosition() const;
    void openPopover(QPoint anchor);
    void openWindow();
    void leaveWindow();

    QQmlEngine &engine();
    PopoverWindow &popover();
    DesktopWindow &window();
    void startWhenItAppears(RootWindow &window);

    RootContent m_content;
    std::unique_ptr<StatusIcon> m_icon;
    std::optional<QPoint> m_iconPosition; // known after the first click
    bool m_hadIcon = false;
    ReopenGuard m_reopenGuard;

    // Created on demand, as they take most of the memory.
    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<PopoverWindow> m_popover;
    std::unique_ptr<DesktopWindow> m_window;
};

} // namespace portolan
