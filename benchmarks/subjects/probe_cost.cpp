// probe_cost ROUNDS PORT...: what probing all ports at once costs, the first time and thereafter.
#include "../Meter.h"

#include "HealthChecker.h"

#include <QCoreApplication>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    if (argc < 3)
        return 2;
    int healthy = 0;
    const auto probeAll = [&] {
        QList<QFuture<Health>> outcomes;
        for (int i = 2; i < argc; ++i)
            outcomes.append(HealthChecker::check(std::stoi(argv[i])));
        healthy = 0;
        for (QFuture<Health> &outcome : outcomes)
            healthy += outcome.result().isHealthy();
    };
    report("first", costOf(probeAll));
    std::vector<Cost> rounds;
    for (int left = std::stoi(argv[1]); left > 0; --left)
        rounds.push_back(costOf(probeAll));
    report("pass", median(rounds));
    std::printf("found %d\n", healthy);
}
