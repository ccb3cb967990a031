#include "Program.h"

#include "Commands.h"
#include "Output.h"
#include "StandardStreams.h"

#include <QCoreApplication>

#include <algorithm>
#include <csignal>
#include <vector>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

int print(const QString &text)
{
    return Output::write(text.toUtf8()) ? 0 : 1;
}

QStringList argumentsOf(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return arguments;
}

std::variant<CommandLine, CommandLine::Error> parsed(const QStringList &arguments)
{
    std::vector<CommandShape> shapes;
    std::ranges::transform(commands(), std::back_inserter(shapes), &Command::shape);
    return CommandLine::parse(arguments, shapes);
}

// Nothing is logged, also not by the libraries in use: standard error is for the user's own mistakes.
void dropMessage(QtMsgType, const QMessageLogContext &, const QString &) {}

} // namespace

int Program::run(int argc, char **argv)
{
    StandardStreams::reserve();
    const auto result = parsed(argumentsOf(argc, argv));
    if (const auto *error = std::get_if<CommandLine::Error>(&result)) {
        Output::complain(error->message);
        return usageError;
    }
    const auto &line = std::get<CommandLine>(result);
    if (line.help)
        return print(helpText());
    if (line.version)
        return print(u"portolanctl " PORTOLAN_VERSION "\n"_s);

    qInstallMessageHandler(dropMessage);
    const QCoreApplication application(argc, argv);
    const auto named = std::ranges::find(commands(), line.command,
                                         [](const Command &command) { return command.shape.name; });
    const int status = (named == commands().end() ? commands().front() : *named).run(line);
    // A shell ends its loop only when it sees that the program died of the user's Control-C.
    if (status > endedBy(0)) {
        std::signal(status - endedBy(0), SIG_DFL);
        std::raise(status - endedBy(0));
    }
    return status;
}

QString Program::helpText()
{
    QString text = u"Shows the dev servers of this machine.\n\n"
                   "Usage: portolanctl [COMMAND] [OPTION...]\n\nCommands:\n"_s;
    for (const Command &command : commands()) {
        QString usage = command.shape.name;
        if (!command.shape.operandName.isEmpty())
            usage += u' ' + command.shape.operandName;
        text += "  "_L1 + usage.leftJustified(18) + command.summary + u'\n';
    }
    return text +
           u"\nOptions of list and watch:\n"
           "  --json          print JSON: an array of objects; with watch, one array per line and refresh\n"
           "  --no-probe      do not ask the servers whether they answer\n"
           "  --search TEXT   only servers whose name, port, folder or framework has TEXT in it\n"
           "  --sort ORDER    by port, name, status or uptime instead of the stored order\n"
           "\n"
           "  --help, -h      print this and exit\n"
           "  --version       print the version and exit\n"_s;
}

} // namespace portolan
