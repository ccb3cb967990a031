#include "Commands.h"

#include "Output.h"
#include "ProgressLine.h"
#include "ServiceJson.h"
#include "ServiceTable.h"
#include "Session.h"
#include "TerminationSignals.h"

#include <QEventLoop>
#include <QTimer>

namespace portolan {

namespace {

/// Refreshes the store once, with a line on the terminal meanwhile. The number of the signal that ended the
/// wait, or 0.
int refresh(ServiceStore &store)
{
    ProgressLine progress;
    const auto showProgress = [&] {
        progress.setText(ProgressLine::text(store.isScanning(), store.services()));
    };
    QEventLoop loop;
    QObject::connect(&store, &ServiceStore::isScanningChanged, &loop, showProgress);
    QObject::connect(&store, &ServiceStore::servicesChanged, &loop, showProgress);
    const TerminationSignals signals;
    QObject::connect(&signals, &TerminationSignals::received, &loop, &QEventLoop::exit);
    QTimer::singleShot(0, &loop, [&] { store.refresh([&] { loop.quit(); }); });
    return loop.exec();
}

QByteArray json(const ServiceStore &store)
{
    return ServiceJson::of(store.visible(), store.pinnedPorts(), ServiceJson::Layout::indented);
}

QByteArray table(const ServiceStore &store)
{
    const QList<Service> services = store.visible();
    ServiceTable::Look look{.colors = Output::colors()};
    if (Output::isTerminal()) {
        look.columns = Output::size().columns;
        if (services.isEmpty())
            return (ServiceTable::emptyText(!store.services().isEmpty(), look) + u'\n').toUtf8();
    }
    return ServiceTable::of(services, store.pinnedPorts(), look).toUtf8();
}

} // namespace

int Commands::list(const CommandLine &line)
{
    Session session(line);
    const ServiceStore &store = session.store();
    if (const int signal = refresh(session.store()))
        return ExitStatus::endedBy(signal);
    const bool isWritten = Output::write(line.json ? json(store) : table(store));
    return isWritten ? ExitStatus::success : ExitStatus::failure;
}

} // namespace portolan
