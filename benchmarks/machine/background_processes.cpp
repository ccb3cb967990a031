// SPDX-License-Identifier: MIT
// background_processes COUNT DESCRIPTORS AWAKE: that many processes that do nothing but hold that many open
// descriptors each, as the processes of a desktop do; AWAKE of them wake up every second. Prints "ready" and
// lives until the end of standard input.
#include "Children.h"

#include <chrono>
#include <string>
#include <thread>

#include <fcntl.h>

namespace portolan {

namespace {

void idle(int descriptors, bool isAwake)
{
    for (int number = 3; number < descriptors; ++number) {
        if (open("/dev/null", O_RDWR) < 0)
            return;
    }
    while (isAwake)
        std::this_thread::sleep_for(std::chrono::seconds(1));
    for (;;)
        pause();
}

} // namespace

} // namespace portolan

int main(int argc, char **argv)
{
    using namespace portolan;
    if (argc != 4)
        return 2;
    const int count = std::stoi(argv[1]);
    const int descriptors = std::stoi(argv[2]);
    const int awake = std::stoi(argv[3]);
    Children children;
    for (int i = 0; i < count; ++i)
        children.start([=] { idle(descriptors, i < awake); });
    children.standUntilTold("ready");
}
