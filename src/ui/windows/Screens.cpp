#include "Screens.h"

#include <QGuiApplication>
#include <QScreen>

namespace portolan {

QList<ScreenArea> Screens::all()
{
    QList<ScreenArea> areas;
    for (const QScreen *screen : QGuiApplication::screens()) // the primary one comes first
        areas.append({screen->geometry(), screen->availableGeometry(), screen->devicePixelRatio()});
    if (areas.isEmpty()) {
        constexpr QRect usual(0, 0, 1920, 1080);
        areas.append({usual, usual});
    }
    return areas;
}

} // namespace portolan
