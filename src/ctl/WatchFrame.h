#pragma once

#include "KeyReader.h"
#include "Output.h"
#include "Service.h"
#include "TerminalColors.h"

#include <QDateTime>
#include <QList>
#include <QSet>
#include <QString>

namespace portolan {

/// What the live view shows on the terminal at one time. Pure functions.
namespace WatchFrame {

struct Content
{
    QList<Service> services; ///< as shown
    QSet<qint64> pinnedPorts;
    bool isSearching = false; ///< whether there are other services, which do not match
    QDateTime lastUpdated;    ///< invalid before the first scan
    qsizetype first = 0;      ///< the first service to show where not all fit; too large a value is reduced
    bool readsKeys = true;    ///< whether keys can scroll and quit
};

/// At most as many lines as the terminal has, each at most as wide, separated by line feeds.
[[nodiscard]] QString of(const Content &content, Output::Size size, const TerminalColors &colors);

/// The first of `services` services to show after `key` has been pressed, when it was `first` before.
[[nodiscard]] qsizetype scrolled(qsizetype first, Key key, qsizetype services, Output::Size size);

} // namespace WatchFrame

} // namespace portolan
