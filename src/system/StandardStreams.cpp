// SPDX-License-Identifier: MIT
#include "StandardStreams.h"

#include <initializer_list>

#include <fcntl.h>
#include <unistd.h>

namespace portolan {

void StandardStreams::reserve()
{
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        // open() takes the lowest free number, and those below are in use by now.
        if (fcntl(stream, F_GETFD) < 0)
            (void)open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
}

} // namespace portolan
