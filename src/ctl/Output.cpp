#include "Output.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <sys/ioctl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

bool Output::isTerminal()
{
    return isatty(STDOUT_FILENO) == 1;
}

bool Output::isAddressable()
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

Ink Output::ink()
{
    if (!isTerminal())
        return Ink();
    return Ink(Ink::depthOfTerminal(qgetenv("TERM"), qgetenv("COLORTERM"), qgetenv("NO_COLOR")));
}

void Output::complain(const QString &message)
{
    std::fprintf(stderr, "portolanctl: %s\n", qUtf8Printable(message));
}

bool Output::write(QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t written = ::write(STDOUT_FILENO, bytes.data(), size_t(bytes.size()));
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0) {
            if (errno != EPIPE)
                complain(u"cannot write: "_s + QString::fromLocal8Bit(std::strerror(errno)));
            return false;
        }
        bytes = bytes.sliced(written);
    }
    return true;
}
