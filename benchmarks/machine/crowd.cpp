// crowd COUNT DESCRIPTORS: that many processes that do nothing but hold that many open descriptors each, as
// the processes of a desktop do. Prints "ready" and lives until the end of standard input.
#include "Children.h"

#include <string>

#include <fcntl.h>

namespace {

void idle(int descriptors)
{
    for (int number = 3; number < descriptors; ++number) {
        if (open("/dev/null", O_RDWR) < 0)
            return;
    }
    for (;;)
        pause();
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3)
        return 2;
    const int count = std::stoi(argv[1]);
    const int descriptors = std::stoi(argv[2]);
    Children children;
    for (int i = 0; i < count; ++i)
        children.start([descriptors] { idle(descriptors); });
    children.standUntilTold("ready");
}
