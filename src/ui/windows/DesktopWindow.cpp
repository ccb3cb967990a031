#include "DesktopWindow.h"

#include "AppIcon.h"

#include <QIcon>
#include <QPixmap>

namespace portolan {

namespace {
constexpr QSize InitialSize(480, 620);
constexpr QSize MinimumSize(400, 440);
} // namespace

DesktopWindow::DesktopWindow(QQmlEngine &engine, const RootContent &content)
    : RootWindow(engine, content, Presentation::Window)
{
    QIcon icon;
    for (const int size : {16, 32, 48, 128})
        icon.addPixmap(QPixmap::fromImage(AppIcon::image(size)));
    setIcon(icon);
    setMinimumSize(MinimumSize);
    resize(InitialSize);
}

void DesktopWindow::closeEvent(QCloseEvent *event)
{
    RootWindow::closeEvent(event);
    Q_EMIT closed();
}

} // namespace portolan
