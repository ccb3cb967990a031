// SPDX-License-Identifier: MIT
#include "Output.h"

#include "TerminationSignals.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>

#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace portolan {

using namespace Qt::StringLiterals;

bool Output::isTerminal()
{
    return isatty(STDOUT_FILENO) == 1;
}

bool Output::canMoveCursor()
{
    const QByteArray term = qgetenv("TERM");
    return isTerminal() && !term.isEmpty() && term != "dumb";
}

Output::Size Output::size()
{
    winsize window{};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &window) != 0 || window.ws_col == 0 || window.ws_row == 0)
        return {};
    return {.columns = window.ws_col, .rows = window.ws_row};
}

TerminalColors Output::colors()
{
    if (!isTerminal())
        return {};
    return TerminalColors(
        TerminalColors::depthOfTerminal(qgetenv("TERM"), qgetenv("COLORTERM"), qgetenv("NO_COLOR")));
}

void Output::printError(const QString &message)
{
    std::fprintf(stderr, "portolanctl: %s\n", qUtf8Printable(message));
}

// When poll() reports a pipe writable, it takes up to PIPE_BUF bytes without blocking.
bool Output::awaitWritable()
{
    pollfd watched[] = {{STDOUT_FILENO, POLLOUT, 0}, {TerminationSignals::descriptor(), POLLIN, 0}};
    while (poll(watched, std::size(watched), -1) < 0 && errno == EINTR) {
    }
    return watched[0].revents || !watched[1].revents;
}

bool Output::write(QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        if (!awaitWritable())
            return false;
        const size_t size = std::min<size_t>(size_t(bytes.size()), PIPE_BUF);
        const ssize_t written = ::write(STDOUT_FILENO, bytes.data(), size);
        if (written < 0 && (errno == EINTR || errno == EAGAIN))
            continue;
        if (written < 0) {
            if (errno != EPIPE)
                printError(u"cannot write: "_s + QString::fromLocal8Bit(std::strerror(errno)));
            return false;
        }
        bytes = bytes.sliced(written);
    }
    return true;
}

} // namespace portolan
