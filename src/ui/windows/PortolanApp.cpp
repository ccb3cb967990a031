// SPDX-License-Identifier: MIT
#include "PortolanApp.h"

#include "AppIcon.h"
#include "BrandArt.h"
#include "DesktopWindow.h"
#include "DisplayServer.h"
#include "PopoverPlacement.h"
#include "PopoverWindow.h"
#include "Screens.h"
#include "ServiceStore.h"
#include "XSettings.h"

#include <QGuiApplication>
#include <QQuickWindow>
#include <QStyleHints>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

/// Qt aborts the program if a window is opened while no screen is connected.
bool canShow()
{
    return QGuiApplication::primaryScreen();
}

StatusIconArt statusIconArt()
{
    StatusIconArt art{BrandArt::symbolicSvg(), {}};
    for (const int size : {22, 32, 44})
        art.images.append(AppIcon::image(size));
    return art;
}

// The software renderer takes a third of the memory and a fifth of the time to the first frame. Qt's own
// variables override it.
void drawInSoftware()
{
    if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND") && !qEnvironmentVariableIsSet("QSG_RHI_BACKEND"))
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}

// Qt asks the desktop itself only with a platform theme, which few desktops have for Qt 6.
void followDoubleClickTime()
{
    const QVariant milliseconds = XSettings::read().value(u"Net/DoubleClickTime"_s);
    if (milliseconds.toInt() > 0)
        QGuiApplication::styleHints()->setMouseDoubleClickInterval(milliseconds.toInt());
}

} // namespace

PortolanApp::PortolanApp(const RootContent &content)
    : m_content(content)
    , m_icon(makeStatusIcon(statusIconArt()))
{
    m_hadIcon = isReachable();
    connect(m_icon.get(), &StatusIcon::hostChanged, this, [this] { m_hadIcon |= isReachable(); });
    connect(m_icon.get(), &StatusIcon::activated, this, &PortolanApp::clickIcon);
    connect(m_icon.get(), &StatusIcon::menuShown, this, [this] { takeIconPosition({}); });
    connect(m_icon.get(), &StatusIcon::openRequested, this, [this] { openPopover(iconPosition()); });
    connect(m_icon.get(), &StatusIcon::quitRequested, qApp, &QCoreApplication::quit);
}

PortolanApp::~PortolanApp() = default;

void PortolanApp::start(StartRequest request)
{
    if (request == StartRequest::Window)
        return openWindow();
    if (request == StartRequest::None)
        return;
    onceHostIsKnown([this] {
        if (!isReachable())
            openWindow();
    });
}

void PortolanApp::show(StartRequest request)
{
    if (request == StartRequest::Window)
        return openWindow();
    onceHostIsKnown([this] {
        if (isReachable())
            openPopover(iconPosition());
        else
            openWindow();
    });
}

bool PortolanApp::isReachable() const
{
    return m_icon->host() == StatusIcon::Host::Present;
}

template <typename Action>
void PortolanApp::onceHostIsKnown(Action action)
{
    if (m_icon->host() != StatusIcon::Host::Unknown)
        action();
    else
        connect(m_icon.get(), &StatusIcon::hostChanged, this, action, Qt::SingleShotConnection);
}

void PortolanApp::clickIcon(QPoint anchor)
{
    takeIconPosition(anchor);
    if (m_reopenGuard.shouldIgnore(ReopenGuard::Clock::now()))
        return;
    if (m_popover && m_popover->isVisible())
        m_popover->hide();
    else
        openPopover(*m_iconPosition);
}

void PortolanApp::takeIconPosition(QPoint reported)
{
    m_iconPosition = PopoverPlacement::clickedPoint(reported, DisplayServer::pointer(), Screens::all());
}

QPoint PortolanApp::iconPosition() const
{
    return m_iconPosition.value_or(PopoverPlacement::fallbackAnchor(Screens::all()));
}

void PortolanApp::openPopover(QPoint anchor)
{
    // Where the popover cannot be placed, it would be one more tiled window, or one in the middle of the
    // screen.
    if (!DisplayServer::canPlaceWindows())
        return openWindow();
    if (canShow())
        popover().open(anchor);
}

void PortolanApp::openWindow()
{
    if (!canShow())
        return;
    window().open();
    if (m_popover)
        m_popover->hide();
}

void PortolanApp::leaveWindow()
{
    // Without a status icon the user could not open the program again. One that was there comes back with its
    // panel.
    if (!isReachable() && !m_hadIcon)
        QCoreApplication::quit();
}

QQmlEngine &PortolanApp::engine()
{
    if (!m_engine) {
        drawInSoftware();
        followDoubleClickTime();
        m_engine = std::make_unique<QQmlEngine>();
        connect(m_engine.get(), &QQmlEngine::quit, qApp, &QCoreApplication::quit);
    }
    return *m_engine;
}

PopoverWindow &PortolanApp::popover()
{
    if (!m_popover) {
        m_popover = std::make_unique<PopoverWindow>(engine(), m_content);
        startWhenItAppears(*m_popover);
        connect(m_popover.get(), &RootWindow::detachRequested, this, &PortolanApp::openWindow);
        connect(m_popover.get(), &PopoverWindow::closedByFocusLoss, this,
                [this] { m_reopenGuard.closedByFocusLoss(ReopenGuard::Clock::now()); });
    }
    return *m_popover;
}

DesktopWindow &PortolanApp::window()
{
    if (!m_window) {
        m_window = std::make_unique<DesktopWindow>(engine(), m_content);
        startWhenItAppears(*m_window);
        connect(m_window.get(), &DesktopWindow::closed, this, &PortolanApp::leaveWindow);
    }
    return *m_window;
}

void PortolanApp::startWhenItAppears(RootWindow &window)
{
    connect(&window, &RootWindow::appeared, &m_content.store, &ServiceStore::start);
}

} // namespace portolan
