// SPDX-License-Identifier: MIT
// Stops the process with the given id, and ends when everything that follows has happened; with "quit" after
// the id it ends at once.
#include "Eventually.h"
#include "ServiceActions.h"
#include "TestChild.h"

#include <QByteArrayView>
#include <QCoreApplication>

int main(int argc, char **argv)
{
    using namespace portolan;
    // A signal to the group must not reach other processes.
    setsid();
    if (argc < 2)
        return 2;
    const QCoreApplication app(argc, argv);
    ServiceActions actions;
    Service service;
    service.pid = QByteArrayView(argv[1]).toInt();
    actions.stop(service);
    if (argc > 2)
        return 0;

    // A process that is stopped later is killed later.
    TestChild last(TestChild::ignoresTerm);
    service.pid = last.pid();
    actions.stop(service);
    return eventually([&] { return !last.isAlive(); }) && last.collect() == SIGKILL ? 0 : 1;
}
