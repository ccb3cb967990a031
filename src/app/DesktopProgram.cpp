#include "DesktopProgram.h"

#include "BusWatcher.h"
#include "DisplayServer.h"
#include "PortolanApp.h"
#include "ServiceStore.h"
#include "SingleInstance.h"
#include "StandardStreams.h"
#include "StartOptions.h"
#include "SystemLoginItem.h"
#include "SystemServiceActions.h"
#include "TerminationSignals.h"
#include "UserDefaults.h"

#include <QGuiApplication>
#include <QLoggingCategory>
#include <QStandardPaths>

#include <cstdio>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

enum ExitStatus { Success = 0, Failure = 1, UsageError = 2 };

int print(const QString &text)
{
    return std::fputs(qUtf8Printable(text), stdout) >= 0 && std::fflush(stdout) == 0 ? Success : Failure;
}

int complain(const QString &message, ExitStatus status)
{
    std::fprintf(stderr, "portolan: %s\n", qUtf8Printable(message));
    return status;
}

QStringList argumentsOf(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return arguments;
}

void describe(QGuiApplication &application)
{
    application.setApplicationName(u"portolan"_s);
    application.setApplicationVersion(u"" PORTOLAN_VERSION ""_s);
    application.setDesktopFileName(u"portolan"_s);
    // A status icon is left when the last window has closed.
    application.setQuitOnLastWindowClosed(false);
}

int serve(StartRequest request)
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    SingleInstance instance(bus, QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation));
    switch (instance.claim(request)) {
    case SingleInstance::Outcome::First:
        break;
    case SingleInstance::Outcome::Forwarded:
        return Success;
    case SingleInstance::Outcome::Unanswered:
        return complain(u"another one runs but does not answer"_s, Failure);
    }

    UserDefaults defaults;
    ServiceStore store(defaults);
    SystemServiceActions actions;
    SystemLoginItem loginItem;
    PortolanApp app({store, actions, loginItem});
    QObject::connect(&instance, &SingleInstance::requested, &app, &PortolanApp::show);

    const TerminationSignals signals;
    QObject::connect(&signals, &TerminationSignals::received, qApp, &QCoreApplication::quit);

    const BusWatcher busWatcher(bus);
    QObject::connect(&busWatcher, &BusWatcher::disconnected, qApp, &QCoreApplication::quit);

    app.start(request);
    return QCoreApplication::exec();
}

} // namespace

int DesktopProgram::run(int argc, char **argv)
{
    StandardStreams::reserve();
    const auto parsed = StartOptions::parse(argumentsOf(argc, argv));
    if (const auto *error = std::get_if<StartOptions::Error>(&parsed))
        return complain(error->message, UsageError);
    const auto &options = std::get<StartOptions>(parsed);
    if (options.purpose == StartOptions::Purpose::PrintHelp)
        return print(StartOptions::helpText());
    if (options.purpose == StartOptions::Purpose::PrintVersion)
        return print(u"portolan " PORTOLAN_VERSION "\n"_s);

    std::optional<QByteArray> platform = DisplayServer::platformPlugin();
    if (!platform)
        return complain(u"there is no display to show itself on"_s, Failure);
    // Qt is told of the platform as if it were an option: a variable would reach every program started from
    // here. The user's own options are not Qt's.
    QByteArray option("-platform");
    std::array<char *, 4> words{argv[0], option.data(), platform->data(), nullptr};
    int wordCount = platform->isEmpty() ? 1 : 3;
    // Qt warns of every portal and bus that a desktop does without. QT_LOGGING_RULES shows it again.
    QLoggingCategory::setFilterRules(u"qt.qpa.*.warning=false"_s);
    QGuiApplication application(wordCount, words.data());
    describe(application);
    return serve(options.request);
}

} // namespace portolan
