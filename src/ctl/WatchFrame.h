#pragma once

#include "Ink.h"
#include "Output.h"
#include "Service.h"

#include <QDateTime>
#include <QList>
#include <QSet>
#include <QString>

/// The living list as one picture of the terminal. A pure function.
namespace WatchFrame {

struct Content
{
    QList<Service> services; ///< as shown
    QSet<qint64> pinnedPorts;
    bool isSearching = false; ///< whether there are others that do not match
    QDateTime lastUpdated;    ///< invalid before the first scan
    bool readsKeys = true;    ///< whether a key can end it
};

/// At most as many lines as the terminal has, each at most as wide, separated by line feeds.
[[nodiscard]] QString of(const Content &content, Output::Size size, const Ink &ink);

} // namespace WatchFrame
