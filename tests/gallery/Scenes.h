// SPDX-License-Identifier: MIT
#pragma once

#include "Service.h"

#include <QList>
#include <QPointF>
#include <QString>

#include <optional>

namespace portolan {

/// One state of the user interface.
struct GalleryScene
{
    enum class Presentation : quint8 { Popover, Window };
    enum class ScanState : quint8 { Scanned, FirstScan, Rescan };
    enum class Press : quint8 { None, Left, Right };

    QString name;
    QList<Service> services;
    Presentation presentation = Presentation::Popover;
    ScanState scanState = ScanState::Scanned;
    QString searchText;
    QList<qint64> pinnedPorts;
    std::optional<QPointF> pointer; ///< the position of the pointer, in the view's coordinates
    Press press = Press::None;      ///< the button that is clicked there
    QString keys;                   ///< pressed before: t Tab, d Down, k Control-K, m Menu
    int hoverMs = 400;              ///< how long the pointer rests
    int height = 620;               ///< of a window
};

/// All scenes, in the order in which they are shown.
[[nodiscard]] QList<GalleryScene> galleryScenes();

} // namespace portolan
