// SPDX-License-Identifier: MIT
// probe_cost ROUNDS PORT...: the cost of probing all ports at once, for the first time and later.
#include "../Meter.h"

#include "HealthChecker.h"

#include <QCoreApplication>

#include <atomic>
#include <latch>

int main(int argc, char **argv)
{
    using namespace portolan;
    const QCoreApplication application(argc, argv);
    if (argc < 3)
        return 2;
    HealthChecker checker;
    std::atomic<int> healthy = 0;
    const auto probeAll = [&] {
        healthy = 0;
        std::latch pending(argc - 2);
        for (int i = 2; i < argc; ++i) {
            checker.check(std::stoi(argv[i])).then(QtFuture::Launch::Sync, [&](Health health) {
                healthy += health.isHealthy();
                pending.count_down();
            });
        }
        pending.wait();
    };
    report("first", costOf(probeAll));
    std::vector<Cost> rounds;
    for (int left = std::stoi(argv[1]); left > 0; --left)
        rounds.push_back(costOf(probeAll));
    report("pass", median(rounds));
    std::printf("found %d\n", healthy.load());
}
