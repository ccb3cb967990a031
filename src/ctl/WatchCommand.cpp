#include "Commands.h"

#include "KeyReader.h"
#include "Output.h"
#include "Screen.h"
#include "ServiceJson.h"
#include "Session.h"
#include "TerminationSignals.h"
#include "WatchFrame.h"

#include <QEventLoop>
#include <QTimer>

#include <chrono>

namespace portolan {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// A write that was given up because the user asked the program to end has not failed.
int statusAfterFailedWrite()
{
    return TerminationSignals::isPending() ? ExitStatus::success : ExitStatus::failure;
}

// Changes that come at the same time cause one redraw.
int watchOnScreen(ServiceStore &store)
{
    QEventLoop loop;
    const TerminationSignals signals;
    QObject::connect(&signals, &TerminationSignals::received, &loop, &QEventLoop::quit);

    Screen screen;
    KeyReader keys;
    qsizetype first = 0;
    QTimer redraw;
    redraw.setSingleShot(true);
    redraw.callOnTimeout(&screen, [&] {
        const WatchFrame::Content content{.services = store.visible(),
                                          .pinnedPorts = store.pinnedPorts(),
                                          .isSearching = !store.services().isEmpty(),
                                          .lastUpdated = store.lastUpdated(),
                                          .first = first,
                                          .readsKeys = screen.readsKeys()};
        if (!screen.show(WatchFrame::of(content, Output::size(), Output::colors())))
            loop.exit(statusAfterFailedWrite());
    });
    const auto redrawSoon = [&] { redraw.start(0ms); };
    QObject::connect(&store, &ServiceStore::visibleChanged, &redraw, redrawSoon);
    QObject::connect(&store, &ServiceStore::lastUpdatedChanged, &redraw, redrawSoon);
    QObject::connect(&screen, &Screen::redrawNeeded, &redraw, redrawSoon);
    QObject::connect(&screen, &Screen::typed, &loop, [&](char character) {
        const auto key = keys.read(character);
        if (key == Key::quit)
            return loop.quit();
        if (!key)
            return;
        first = WatchFrame::scrolled(first, *key, store.visible().size(), Output::size());
        redrawSoon();
    });

    redrawSoon();
    store.setAutoRefresh(true);
    store.start();
    return loop.exec();
}

// Prints one line per refresh, after its last probe.
int watchAsJson(ServiceStore &store)
{
    QEventLoop loop;
    const TerminationSignals signals;
    QObject::connect(&signals, &TerminationSignals::received, &loop, &QEventLoop::quit);

    QTimer next;
    next.setSingleShot(true);
    const auto print = [&] {
        if (Output::write(
                ServiceJson::of(store.visible(), store.pinnedPorts(), ServiceJson::Layout::oneLine)))
            next.start(ServiceStore::usualInterval);
        else
            loop.exit(statusAfterFailedWrite());
    };
    next.callOnTimeout(&loop, [&] { store.refresh(print); });
    next.start(0s);
    return loop.exec();
}

} // namespace

int Commands::watch(const CommandLine &line)
{
    if (!line.json && !Output::canMoveCursor()) {
        Output::printError(u"'watch' needs a terminal, or option '--json'"_s);
        return ExitStatus::usageError;
    }
    Session session(line);
    return line.json ? watchAsJson(session.store()) : watchOnScreen(session.store());
}

} // namespace portolan
