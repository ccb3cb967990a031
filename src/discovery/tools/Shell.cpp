// SPDX-License-Identifier: MIT
#include "Shell.h"

#include "ChildProcess.h"
#include "FileDescriptor.h"
#include "StopSignal.h"
#include "UnreapedChildren.h"

#include <QStringDecoder>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

/// Waits until there is something to read. False at the deadline or on a stop request.
bool awaitReadable(int descriptor, const QDeadlineTimer &deadline, int stop)
{
    while (!deadline.hasExpired()) {
        pollfd watched[] = {{descriptor, POLLIN, 0}, {stop, POLLIN, 0}};
        const int pause = int(std::min<qint64>(deadline.remainingTime(), INT_MAX));
        const int ready = poll(watched, std::size(watched), pause);
        if (ready > 0)
            return !watched[1].revents;
    }
    return false;
}

/// Everything up to end of file; nothing if a limit was reached first.
std::optional<QByteArray> readToEnd(int descriptor, const QDeadlineTimer &deadline, int stop, qsizetype most)
{
    QByteArray bytes;
    std::array<char, 64 * 1024> buffer;
    while (awaitReadable(descriptor, deadline, stop)) {
        const ssize_t count = read(descriptor, buffer.data(), buffer.size());
        if (count == 0)
            return bytes;
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0 || bytes.size() + count > most)
            break;
        bytes.append(buffer.data(), count);
    }
    return std::nullopt;
}

QString decoded(const QByteArray &bytes)
{
    using Converter = QStringConverter;
    QStringDecoder decoder(Converter::Utf8, Converter::Flag::Stateless | Converter::Flag::ConvertInitialBom);
    const QString text = decoder(bytes);
    return decoder.hasError() ? QString() : text;
}

/// This program's environment, but with a UTF-8 locale and C number formats.
QList<QByteArray> toolEnvironment()
{
    QList<QByteArray> environment = ChildSetup::environment();
    environment.removeIf([](const QByteArray &variable) { return variable.startsWith("LC_ALL="); });
    environment.append("LC_ALL=C.UTF-8"_ba);
    return environment;
}

} // namespace

QString Shell::run(const QString &path, const QStringList &arguments)
{
    return run(path, arguments, {}).output;
}

Shell::Result Shell::run(const QString &path, const QStringList &arguments, const Limits &limits)
{
    const QDeadlineTimer deadline =
        limits.deadline ? QDeadlineTimer(*limits.deadline) : QDeadlineTimer(QDeadlineTimer::Forever);
    const StopSignal stop(limits.stop);
    if (!stop.isHeard(limits.stop) || limits.stop.stop_requested())
        return {};
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        return {};
    const FileDescriptor reader(ends[0]);
    FileDescriptor writer(ends[1]);

    std::optional<ChildProcess> child = ChildProcess::start(path, arguments, toolEnvironment(), writer.get());
    if (!child)
        return {};
    writer.close();

    // Read first, then wait: otherwise a child that fills the pipe would never end.
    const std::optional<QByteArray> bytes =
        readToEnd(reader.get(), deadline, stop.descriptor(), limits.maxOutput);
    if (bytes && child->wait(deadline, stop.descriptor()))
        return {.output = decoded(*bytes)};

    const bool timedOut = deadline.hasExpired();
    child->killGroup();
    if (!child->wait(QDeadlineTimer(ChildProcess::killTimeout)) && limits.unreaped)
        limits.unreaped->add(*std::move(child));
    return {.timedOut = timedOut};
}

} // namespace portolan
