// SPDX-License-Identifier: MIT
#include "Commands.h"
#include "DescriptorLimit.h"
#include "OutOfMemory.h"
#include "Output.h"
#include "StandardStreams.h"

#include <QCoreApplication>

#include <csignal>
#include <cstdlib>

using namespace portolan;

namespace {

int run(const CommandLine &line)
{
    switch (line.command) {
    case CommandLine::Command::List:
        return Commands::list(line);
    case CommandLine::Command::Watch:
        return Commands::watch(line);
    case CommandLine::Command::Wait:
        return Commands::wait(line);
    case CommandLine::Command::Stop:
        return Commands::stop(line);
    case CommandLine::Command::Open:
        return Commands::open(line);
    }
    Q_UNREACHABLE();
}

int print(const CommandLine::Reply &reply)
{
    if (!reply.isError)
        return Output::write(reply.text.toUtf8()) ? ExitStatus::success : ExitStatus::failure;
    Output::printError(reply.text);
    return ExitStatus::usageError;
}

// Messages of libraries are dropped: standard error is for messages to the user.
void dropMessage(QtMsgType, const QMessageLogContext &, const QString &) {}

} // namespace

int main(int argc, char **argv)
{
    StandardStreams::reserve();
    OutOfMemory::endsProgramWith("portolanctl: out of memory\n");
    DescriptorLimit::raise();
    const auto parsed = CommandLine::parse(argc, argv);
    if (const auto *reply = std::get_if<CommandLine::Reply>(&parsed))
        return print(*reply);

    qInstallMessageHandler(dropMessage);
    const QCoreApplication application(argc, argv);
    const int status = run(std::get<CommandLine>(parsed));
    // A shell ends its loop only if it sees that the program was killed by the user's Control-C.
    if (status > ExitStatus::endedBy(0)) {
        std::signal(status - ExitStatus::endedBy(0), SIG_DFL);
        std::raise(status - ExitStatus::endedBy(0));
    }
    // Without destroying `application`, which would wait for pending name lookups until the resolver gives
    // up.
    std::_Exit(status);
}
