// SPDX-License-Identifier: MIT
#include "Commands.h"

#include "Machines.h"
#include "Output.h"
#include "Screen.h"
#include "ServiceJson.h"
#include "TerminalText.h"
#include "TerminationSignals.h"
#include "WatchView.h"
#include "XdgOpen.h"

#include <QEventLoop>
#include <QTimer>
#include <QUrl>

#include <chrono>

namespace portolan {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// How long the row of a stopped server shows the outcome.
constexpr std::chrono::milliseconds noteDuration = 4s;
/// Changes within this time are shown together: every probe result is one.
constexpr std::chrono::milliseconds redrawDelay = 20ms;

// A write that was interrupted because the user asked the program to end counts as success.
int statusAfterFailedWrite()
{
    return TerminationSignals::isPending() ? ExitStatus::success : ExitStatus::failure;
}

/// The live view on the terminal.
class Watch : public QObject
{
public:
    Watch(Machines &machines, const CommandLine &line)
        : m_machines(machines)
        , m_view(line.search, machines.order(), m_screen.readsKeys())
    {
        m_redraw.setSingleShot(true);
        m_redraw.callOnTimeout(this, &Watch::draw);
        connect(&m_machines, &Machines::changed, this, &Watch::redrawSoon);
        connect(&m_machines, &Machines::refreshed, this, [this] {
            m_view.endRefresh();
            redrawSoon();
        });
        connect(&m_screen, &Screen::redrawNeeded, this, &Watch::redrawSoon);
        connect(&m_screen, &Screen::lost, &m_loop, &QEventLoop::quit);
        connect(&m_screen, &Screen::entered, this,
                [this](const Input &input) { obey(m_view.handle(input)); });
    }

    int run()
    {
        if (!m_screen.isOpen()) {
            Output::printError(u"this terminal cannot show it"_s);
            return ExitStatus::usageError;
        }
        connect(&m_signals, &TerminationSignals::received, &m_loop, &QEventLoop::quit);
        draw();
        m_machines.watch();
        return m_loop.exec();
    }

private:
    void redrawSoon()
    {
        if (!m_redraw.isActive())
            m_redraw.start(redrawDelay);
    }

    void draw()
    {
        m_view.setContent({.services = m_machines.services(),
                           .lastUpdated = m_machines.lastUpdated(),
                           .problems = m_machines.problems(),
                           .hasHosts = m_machines.hasHosts()});
        m_view.setSize(Output::size());
        const WatchView::Frame frame = m_view.frame();
        if (!m_screen.show(frame.lines, frame.highlighted))
            m_loop.exit(statusAfterFailedWrite());
    }

    void obey(const WatchView::Request &request)
    {
        redrawSoon();
        const ListedService &chosen = request.service;
        switch (request.kind) {
        case WatchView::Request::None:
            return;
        case WatchView::Request::Quit:
            // A server that was told to end is killed by this program if it does not.
            if (m_stopsUnderWay == 0 || m_isQuitting)
                return m_loop.quit();
            m_isQuitting = true;
            return m_view.setMessage(u"Waiting for a server to end… q: quit at once"_s);
        case WatchView::Request::Refresh:
            return m_machines.watch();
        case WatchView::Request::Open:
            return useAddress(chosen, [](const QString &address) {
                if (!XdgOpen::isInstalled())
                    return u"There is no xdg-open to find a browser with"_s;
                XdgOpen::address(QUrl(address));
                return u"Opening "_s + address;
            });
        case WatchView::Request::Copy:
            return useAddress(chosen, [this](const QString &address) {
                return m_screen.copy(address) ? u"Copied "_s + address : u"This terminal has no clipboard"_s;
            });
        case WatchView::Request::Stop:
            return stop(chosen);
        }
    }

    /// Shows the message that `use` returns for the server's address, or why there is none.
    template <typename Use>
    void useAddress(const ListedService &chosen, Use use)
    {
        m_machines.machine(chosen.host)
            .reach(chosen.service, [this, use](const QString &address, const QString &reason) {
                m_view.setMessage(address.isEmpty() ? reason : use(address));
                redrawSoon();
            });
    }

    void stop(const ListedService &chosen)
    {
        m_view.setNote(chosen, u"Stopping…"_s);
        ++m_stopsUnderWay;
        m_machines.machine(chosen.host).stop(chosen, [this, chosen](const QString &text, bool) {
            if (--m_stopsUnderWay == 0 && m_isQuitting)
                return m_loop.quit();
            m_view.setNote(chosen, text);
            redrawSoon();
            QTimer::singleShot(noteDuration, this, [this, chosen] {
                m_view.setNote(chosen, {});
                redrawSoon();
            });
        });
    }

    Machines &m_machines;
    const TerminationSignals m_signals;
    QEventLoop m_loop;
    Screen m_screen;
    WatchView m_view;
    QTimer m_redraw;
    int m_stopsUnderWay = 0;
    bool m_isQuitting = false; ///< as soon as no stop is under way
};

// Prints a line after each refresh of a machine; simultaneous refreshes share one line.
int watchAsJson(Machines &machines, const CommandLine &line)
{
    QEventLoop loop;
    const TerminationSignals signals;
    QObject::connect(&signals, &TerminationSignals::received, &loop, &QEventLoop::quit);
    QTimer print;
    print.setSingleShot(true);
    print.setInterval(machines.hasHosts() ? 200ms : 0ms);
    print.callOnTimeout(&loop, [&] {
        const auto services = ListedService::visible(machines.services(), line.search, machines.order());
        if (!Output::write(ServiceJson::of(services, QJsonDocument::Compact)))
            loop.exit(statusAfterFailedWrite());
    });
    QObject::connect(&machines, &Machines::refreshed, &print, [&] {
        machines.printNewProblems();
        if (!print.isActive())
            print.start();
    });
    machines.watch();
    return loop.exec();
}

} // namespace

int Commands::watch(const CommandLine &line)
{
    if (!line.json && !Output::canMoveCursor()) {
        Output::printError(u"'watch' needs a terminal, or option '--json'"_s);
        return ExitStatus::usageError;
    }
    Machines machines(line, line.probe);
    const int status = line.json ? watchAsJson(machines, line) : Watch(machines, line).run();
    machines.printNewProblems();
    return machines.problems().isEmpty() ? status : ExitStatus::failure;
}

} // namespace portolan
