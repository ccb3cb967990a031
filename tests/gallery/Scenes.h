#pragma once

#include "Service.h"

#include <QList>
#include <QPointF>
#include <QString>

#include <optional>

namespace portolan {

/// One state of the panel that is worth looking at.
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
    std::optional<QPointF> pointer; ///< where the pointer rests, in the view's coordinates
    Press press = Press::None;      ///< what is pressed there
    QString keys;                   ///< typed first: t Tab, d Down, k Control-K, m Menu
    int hoverMs = 400;              ///< milliseconds that the pointer rests
    int height = 620;               ///< of a window
};

/// All of them, in the order of their showing.
[[nodiscard]] QList<GalleryScene> galleryScenes();

} // namespace portolan
