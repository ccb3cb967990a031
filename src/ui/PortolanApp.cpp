#include "PortolanApp.h"

#include "AppIcon.h"
#include "BrandArt.h"
#include "DesktopWindow.h"
#include "PopoverPlacement.h"
#include "PopoverWindow.h"
#include "Screens.h"
#include "ServiceStore.h"

#include <QCoreApplication>
#include <QCursor>

namespace {

StatusIconArt statusIconArt()
{
    StatusIconArt art{BrandArt::symbolicSvg(), {}};
    for (const int size : {22, 32, 44})
        art.images.append(AppIcon::image(size));
    return art;
}

} // namespace

PortolanApp::PortolanApp(ServiceStore &store)
    : m_store(store)
    , m_icon(makeStatusIcon(statusIconArt()))
{
    connect(m_icon.get(), &StatusIcon::activated, this, &PortolanApp::clickIcon);
    connect(m_icon.get(), &StatusIcon::openRequested, this, [this] { openPopover(QCursor::pos()); });
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
            openPopover(m_iconPosition.value_or(PopoverPlacement::fallbackAnchor(Screens::all())));
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
    m_iconPosition =
        anchor.isNull() ? QCursor::pos() : PopoverPlacement::fromDevicePixels(anchor, Screens::all());
    if (m_reopenGuard.swallowsActivation(ReopenGuard::Clock::now()))
        return;
    if (m_popover && m_popover->isVisible())
        m_popover->hide();
    else
        openPopover(*m_iconPosition);
}

void PortolanApp::openPopover(QPoint anchor)
{
    popover().open(anchor);
}

void PortolanApp::openWindow()
{
    window().bringToFront();
}

void PortolanApp::detach()
{
    openWindow();
    m_popover->hide();
}

void PortolanApp::leaveWindow()
{
    // Without a status icon nothing would be left to reach the program by.
    if (!isReachable())
        QCoreApplication::quit();
}

QQmlEngine &PortolanApp::engine()
{
    if (!m_engine) {
        m_engine = std::make_unique<QQmlEngine>();
        connect(m_engine.get(), &QQmlEngine::quit, qApp, &QCoreApplication::quit);
    }
    return *m_engine;
}

PopoverWindow &PortolanApp::popover()
{
    if (!m_popover) {
        m_popover = std::make_unique<PopoverWindow>(engine(), QVariantMap());
        startWhenItAppears(*m_popover);
        connect(m_popover.get(), &PopoverWindow::closedByFocusLoss, this,
                [this] { m_reopenGuard.closedByFocusLoss(ReopenGuard::Clock::now()); });
    }
    return *m_popover;
}

DesktopWindow &PortolanApp::window()
{
    if (!m_window) {
        m_window = std::make_unique<DesktopWindow>(engine(), QVariantMap());
        startWhenItAppears(*m_window);
        connect(m_window.get(), &DesktopWindow::closed, this, &PortolanApp::leaveWindow);
    }
    return *m_window;
}

void PortolanApp::startWhenItAppears(RootWindow &window)
{
    connect(&window, &RootWindow::appeared, &m_store, &ServiceStore::start);
}
