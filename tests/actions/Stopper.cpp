// Stops the process of the given id, without an event loop, and ends when whatever was to come after that has
// come; with "quit" behind the id it ends at once.
#include "ServiceActions.h"
#include "TestChild.h"

#include <QByteArrayView>

int main(int argc, char **argv)
{
    using namespace portolan;
    // Should a signal go to the group, then to nobody else's.
    setsid();
    if (argc < 2)
        return 2;
    Service service;
    service.pid = QByteArrayView(argv[1]).toInt();
    ServiceActions::stop(service, {});
    if (argc > 2)
        return 0;

    // What is stopped later is killed later.
    TestChild last(TestChild::ignoresTerm);
    service.pid = last.pid();
    ServiceActions::stop(service, {});
    return last.collect() == SIGKILL ? 0 : 1;
}
