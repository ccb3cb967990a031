// scan_cost ROUNDS: what one scan costs in a fresh process, and what the ones after it do.
#include "../Meter.h"

#include "PortScanner.h"

#include <QCoreApplication>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    if (argc != 2)
        return 2;
    qsizetype found = 0;
    const auto scan = [&found] { found = PortScanner::scan().size(); };
    report("first", costOf(scan));
    std::vector<Cost> rounds;
    for (int left = std::stoi(argv[1]); left > 0; --left)
        rounds.push_back(costOf(scan));
    report("steady", median(rounds));
    std::printf("found %lld\n", static_cast<long long>(found));
}
