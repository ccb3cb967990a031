#pragma once

#include "Ink.h"
#include "KeyReader.h"
#include "Output.h"
#include "Service.h"

#include <QDateTime>
#include <QList>
#include <QSet>
#include <QString>

namespace portolan {

/// The living list as one picture of the terminal. Pure functions.
namespace WatchFrame {

struct Content
{
    QList<Service> services; ///< as shown
    QSet<qint64> pinnedPorts;
    bool isSearching = false; ///< whether there are others that do not match
    QDateTime lastUpdated;    ///< invalid before the first scan
    qsizetype first = 0;      ///< the first service to show where not all fit, as far as others follow
    bool readsKeys = true;    ///< whether a key can scroll and end it
};

/// At most as many lines as the terminal has, each at most as wide, separated by line feeds.
[[nodiscard]] QString of(const Content &content, Output::Size size, const Ink &ink);

/// The first of `services` services to show after `key`, when it was `first` before.
[[nodiscard]] qsizetype scrolled(qsizetype first, Key key, qsizetype services, Output::Size size);

} // namespace WatchFrame

} // namespace portolan
