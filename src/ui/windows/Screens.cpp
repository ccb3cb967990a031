// SPDX-License-Identifier: MIT
#include "Screens.h"

#include <QGuiApplication>
#include <QScreen>

namespace portolan {

QList<ScreenArea> Screens::all()
{
    QList<ScreenArea> areas;
    for (const QScreen *screen : QGuiApplication::screens()) // starts with the primary one
        areas.append({screen->geometry(), screen->availableGeometry(), screen->devicePixelRatio()});
    if (areas.isEmpty()) {
        constexpr QRect fallback(0, 0, 1920, 1080);
        areas.append({fallback, fallback});
    }
    return areas;
}

} // namespace portolan
