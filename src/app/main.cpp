// SPDX-License-Identifier: MIT
#include "DescriptorLimit.h"
#include "DisplayServer.h"
#include "FolderReader.h"
#include "HealthChecker.h"
#include "LoginItem.h"
#include "OutOfMemory.h"
#include "PortScanner.h"
#include "PortolanApp.h"
#include "ServiceActions.h"
#include "ServiceStore.h"
#include "SingleInstance.h"
#include "StandardStreams.h"
#include "StartOptions.h"
#include "SystemSource.h"
#include "TerminationSignals.h"
#include "UserDefaults.h"

#include <QDBusConnection>
#include <QGuiApplication>
#include <QLoggingCategory>
#include <QStandardPaths>

#include <array>
#include <cstdio>
#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace portolan {

namespace {

enum ExitStatus { Success = 0, Failure = 1, UsageError = 2 };

int fail(const QString &message, ExitStatus status = Failure)
{
    std::fprintf(stderr, "portolan: %s\n", qUtf8Printable(message));
    return status;
}

int print(const StartOptions::Reply &reply)
{
    if (reply.isError)
        return fail(reply.text, UsageError);
    return std::fputs(qUtf8Printable(reply.text), stdout) >= 0 && std::fflush(stdout) == 0 ? Success
                                                                                           : Failure;
}

void describe(QGuiApplication &application)
{
    application.setApplicationName(u"portolan"_s);
    application.setApplicationVersion(u"" PORTOLAN_VERSION ""_s);
    application.setDesktopFileName(u"org.portolan.portolan"_s);
    // The status icon remains after the last window has closed.
    application.setQuitOnLastWindowClosed(false);
}

int serve(StartRequest request, FolderReader &files)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    SingleInstance instance(bus, QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation));
    switch (instance.claim(request)) {
    case SingleInstance::Outcome::First:
        break;
    case SingleInstance::Outcome::Forwarded:
        return Success;
    case SingleInstance::Outcome::Unanswered:
        return fail(u"another one runs but does not answer"_s);
    }

    UserDefaults defaults;
    const std::unique_ptr<ProcessSource> source = SystemSource::make();
    HealthChecker checker;
    ServiceStore store(
        defaults,
        [&](std::stop_token stop) { return PortScanner::scan(*source, files, {.stop = std::move(stop)}); },
        [&](qint64 port) { return checker.check(port); });
    ServiceActions actions([&store](const Service &service) { return store.identityOf(service); });
    QObject::connect(&actions, &ServiceActions::stopRequested, &store, &ServiceStore::expectEnd);
    LoginItem loginItem;
    PortolanApp app({store, actions, loginItem});
    QObject::connect(&instance, &SingleInstance::requested, &app, &PortolanApp::show);

    const TerminationSignals signals;
    QObject::connect(&signals, &TerminationSignals::received, qApp, &QCoreApplication::quit);

    // libdbus itself emits this signal when the session ends, as the last message of the connection.
    bus.connect({}, u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s, u"Disconnected"_s,
                qApp, SLOT(quit()));

    app.start(request);
    return QCoreApplication::exec();
}

} // namespace

} // namespace portolan

int main(int argc, char **argv)
{
    using namespace portolan;
    StandardStreams::reserve();
    OutOfMemory::endsProgramWith("portolan: out of memory\n");
    DescriptorLimit::raise();
    const auto parsed = StartOptions::parse(argc, argv);
    if (const auto *reply = std::get_if<StartOptions::Reply>(&parsed))
        return print(*reply);

    std::optional<QByteArray> platform = DisplayServer::platformPlugin();
    if (!platform)
        return fail(u"there is no display to show itself on"_s);
    // The platform is passed to Qt as an option: an environment variable would be inherited by every program
    // started from here. The user's own options are not passed to Qt.
    QByteArray option("-platform");
    std::array<char *, 4> words{argv[0], option.data(), platform->data(), nullptr};
    int wordCount = platform->isEmpty() ? 1 : 3;
    // Qt warns about every missing portal and bus, and about every item that a screen reader requests after
    // it was destroyed. QT_LOGGING_RULES enables these warnings.
    QLoggingCategory::setFilterRules(u"qt.qpa.*.warning=false\nqt.accessibility.*.warning=false"_s);
    FolderReader files; // first, while there is little memory to copy
    QGuiApplication application(wordCount, words.data());
    describe(application);
    return serve(std::get<StartRequest>(parsed), files);
}
