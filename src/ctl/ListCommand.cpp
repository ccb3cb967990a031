#include "ListCommand.h"

#include "EmptyText.h"
#include "Output.h"
#include "Program.h"
#include "ProgressLine.h"
#include "ServiceJson.h"
#include "ServiceTable.h"
#include "Session.h"
#include "TerminationSignals.h"

#include <QCoroTask>

#include <QEventLoop>
#include <QTimer>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

// Refreshes the store once, with a line on the terminal meanwhile. The number of the signal that ended the
// wait, or 0.
int refresh(ServiceStore &store)
{
    ProgressLine progress;
    const auto say = [&] {
        progress.setText(ListCommand::progressText(store.isScanning(), store.services()));
    };
    const auto onScan = store.bindableIsScanning().addNotifier(say);
    const auto onServices = store.bindableServices().addNotifier(say);

    QEventLoop loop;
    const TerminationSignals signals;
    QObject::connect(&signals, &TerminationSignals::received, &loop, &QEventLoop::exit);
    QTimer::singleShot(0, &loop, [&] { QCoro::connect(store.refresh(), &loop, &QEventLoop::quit); });
    return loop.exec();
}

QByteArray table(const ServiceStore &store)
{
    const QList<Service> services = store.visible();
    const bool isTerminal = Output::isTerminal();
    if (isTerminal && services.isEmpty())
        return (emptyText(!store.services().isEmpty(), Output::size().columns, Output::ink()) + u'\n')
            .toUtf8();
    ServiceTable::Look look{.ink = Output::ink()};
    if (isTerminal)
        look.columns = Output::size().columns;
    return ServiceTable::of(services, store.pinnedPorts(), look).toUtf8();
}

} // namespace

int ListCommand::run(const CommandLine &line)
{
    Session session(line);
    ServiceStore &store = session.store();
    if (const int signal = refresh(store))
        return Program::endedBy(signal);
    return Output::write(line.json ? ServiceJson::of(store.visible(), store.pinnedPorts(),
                                                     ServiceJson::Layout::indented)
                                   : table(store))
               ? 0
               : 1;
}

QString ListCommand::progressText(bool isScanning, const QList<Service> &services)
{
    if (isScanning)
        return u"Looking for servers…"_s;
    const auto answered = std::ranges::count_if(
        services, [](const Service &service) { return service.health.state() != Health::State::unknown; });
    return u"Asking the servers… %1 of %2"_s.arg(answered).arg(services.size());
}

} // namespace portolan
