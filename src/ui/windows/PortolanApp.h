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

/// The program as the user meets it: a status icon, the popover at it and the window that the popover can be
/// detached into, both showing the one store. Main thread only.
class PortolanApp : public QObject
{
    Q_OBJECT

public:
    /// Shows the status icon and nothing else. What `content` names outlives this.
    explicit PortolanApp(const RootContent &content);
    ~PortolanApp() override;

    /// Does what this start of the program asks for. Where no status icon can be shown, a start that is not
    /// in the background opens the window, so that the user finds the program.
    void start(StartRequest request);
    /// Does what a later start asks for.
    void show(StartRequest request);

private:
    [[nodiscard]] bool isReachable() const; // by its icon
    template <typename Action>
    void onceHostIsKnown(Action action);

    void clickIcon(QPoint anchor);
    void openPopover(QPoint anchor);
    void openWindow();
    void detach();
    void leaveWindow();

    QQmlEngine &engine();
    PopoverWindow &popover();
    DesktopWindow &window();
    void startWhenItAppears(RootWindow &window);

    RootContent m_content;
    std::unique_ptr<StatusIcon> m_icon;
    std::optional<QPoint> m_iconPosition; // as far as a click has told
    ReopenGuard m_reopenGuard;

    // Made when first needed: most of the memory is theirs.
    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<PopoverWindow> m_popover;
    std::unique_ptr<DesktopWindow> m_window;
};

} // namespace portolan
