// SPDX-License-Identifier: MIT
// refresh_cost SECONDS: lets a store refresh itself every five seconds, and prints the average cost of a
// refresh: scan, merge, probes, and every thirty seconds a full rescan.
#include "../Meter.h"

#include "FolderReader.h"
#include "HealthChecker.h"
#include "PortScanner.h"
#include "ServiceStore.h"
#include "SystemSource.h"
#include "UserDefaults.h"
#include "VisibleServicesModel.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <QTimer>

using namespace std::chrono_literals;

int main(int argc, char **argv)
{
    using namespace portolan;
    QCoreApplication application(argc, argv);
    if (argc != 2)
        return 2;
    const std::chrono::seconds duration(std::stoi(argv[1]));
    const QTemporaryDir settings;
    UserDefaults defaults(settings.filePath(QStringLiteral("settings.json")));
    const auto source = SystemSource::make();
    FolderReader files;
    HealthChecker checker;
    ServiceStore store(
        defaults,
        [&](std::stop_token stop) { return PortScanner::scan(*source, files, {.stop = std::move(stop)}); },
        [&](qint64 port) { return checker.check(port); });
    VisibleServicesModel model;
    model.setStore(&store);
    int refreshes = 0;
    QObject::connect(&store, &ServiceStore::isScanningChanged, &store,
                     [&] { refreshes += !store.isScanning(); });

    store.start();
    QTimer::singleShot(4s, &application, &QCoreApplication::quit);
    QCoreApplication::exec(); // the first refresh is not representative
    refreshes = 0;
    QTimer::singleShot(duration, &application, &QCoreApplication::quit);
    Cost cost = costOf([] { QCoreApplication::exec(); });
    cost = {cost.wall / refreshes, cost.cpu / refreshes, cost.children / refreshes};
    report("refresh", cost);
    std::printf("found %lld\n", static_cast<long long>(store.services().size()));
}
