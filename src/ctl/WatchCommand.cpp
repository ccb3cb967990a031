#include "WatchCommand.h"

#include "KeyReader.h"
#include "Output.h"
#include "Program.h"
#include "Screen.h"
#include "ServiceJson.h"
#include "Session.h"
#include "TerminationSignals.h"
#include "WatchFrame.h"

#include <QCoroTask>

#include <QEventLoop>
#include <QTimer>

#include <chrono>

namespace portolan {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// Output that was given up because the user wants an end has not failed.
int statusAfterFailedWrite()
{
    return TerminationSignals::isPending() ? 0 : 1;
}

// Redraws once for all the changes that come at the same time.
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
        if (!screen.show(WatchFrame::of(content, Output::size(), Output::ink())))
            loop.exit(statusAfterFailedWrite());
    });
    const auto redrawSoon = [&] { redraw.start(0ms); };
    QObject::connect(&store, &ServiceStore::visibleChanged, &redraw, redrawSoon);
    QObject::connect(&store, &ServiceStore::lastUpdatedChanged, &redraw, redrawSoon);
    QObject::connect(&screen, &Screen::lostPicture, &redraw, redrawSoon);
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

// One line per refresh, after its last probe.
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
    next.callOnTimeout(&loop, [&] { QCoro::connect(store.refresh(), &loop, print); });
    next.start(0s);
    return loop.exec();
}

} // namespace

int WatchCommand::run(const CommandLine &line)
{
    if (!line.json && !Output::isAddressable()) {
        Output::complain(u"'watch' needs a terminal, or option '--json'"_s);
        return Program::usageError;
    }
    Session session(line);
    return line.json ? watchAsJson(session.store()) : watchOnScreen(session.store());
}

} // namespace portolan
