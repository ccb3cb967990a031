// scan_cost ROUNDS [SECONDS]: what one scan costs in a fresh process, what the ones right after it do, and
// what one does that comes SECONDS later.
#include "../Meter.h"

#include "PortScanner.h"

#include <QCoreApplication>

#include <thread>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    if (argc < 2)
        return 2;
    qsizetype found = 0;
    const auto scan = [&found] { found = PortScanner::scan().size(); };
    report("first", costOf(scan));
    std::vector<Cost> rounds;
    for (int left = std::stoi(argv[1]); left > 0; --left)
        rounds.push_back(costOf(scan));
    report("steady", median(rounds));
    if (argc > 2) {
        std::this_thread::sleep_for(std::chrono::seconds(std::stoi(argv[2])));
        report("later", costOf(scan));
    }
    std::printf("found %lld\n", static_cast<long long>(found));
}
