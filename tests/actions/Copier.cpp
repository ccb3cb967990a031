// SPDX-License-Identifier: MIT
// Copies a service's address ("url PORT") or port ("port PORT"), reports that, and owns the clipboard until
// its input ends.
#include "ServiceActions.h"

#include <QGuiApplication>
#include <QSocketNotifier>

#include <cstdio>

#include <unistd.h>

int main(int argc, char **argv)
{
    using namespace portolan;
    const QGuiApplication app(argc, argv);
    if (argc != 3)
        return 2;
    Service service;
    service.port = QByteArrayView(argv[2]).toLongLong();
    ServiceActions actions;
    QByteArrayView(argv[1]) == "url" ? actions.copyURL(service) : actions.copyPort(service);
    std::puts("copied");
    std::fflush(stdout);

    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &app, &QCoreApplication::quit);
    return QCoreApplication::exec();
}
