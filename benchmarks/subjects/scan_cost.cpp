// SPDX-License-Identifier: MIT
// scan_cost ROUNDS [SECONDS]: the cost of the first scan of a process, of the scans right after it, and of
// one SECONDS later.
#include "../Meter.h"

#include "FolderReader.h"
#include "PortScanner.h"
#include "SystemSource.h"

#include <QCoreApplication>

#include <thread>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace portolan {

namespace {

/// Makes every server run between two scans, as a probe does: reading a process that has slept costs less.
void wake(const QList<Service> &services)
{
    for (const Service &service : services) {
        const int client = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        const linger leaveNothingBehind{.l_onoff = 1, .l_linger = 0};
        setsockopt(client, SOL_SOCKET, SO_LINGER, &leaveNothingBehind, sizeof leaveNothingBehind);
        sockaddr_in address{.sin_family = AF_INET, .sin_port = htons(std::uint16_t(service.port))};
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        (void)connect(client, reinterpret_cast<sockaddr *>(&address), sizeof address);
        close(client);
    }
}

} // namespace

} // namespace portolan

int main(int argc, char **argv)
{
    using namespace portolan;
    const QCoreApplication application(argc, argv);
    if (argc < 2)
        return 2;
    QList<Service> found;
    const auto source = SystemSource::make();
    FolderReader files;
    const auto scan = [&] { found = PortScanner::scan(*source, files).services; };
    report("first", costOf(scan));
    std::vector<Cost> rounds;
    for (int left = std::stoi(argv[1]); left > 0; --left) {
        wake(found);
        rounds.push_back(costOf(scan));
    }
    if (!rounds.empty())
        report("steady", median(rounds));
    if (argc > 2) {
        std::this_thread::sleep_for(std::chrono::seconds(std::stoi(argv[2])));
        wake(found);
        report("later", costOf(scan));
    }
    std::printf("found %lld\n", static_cast<long long>(found.size()));
}
