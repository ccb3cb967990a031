// SPDX-License-Identifier: MIT
// The real program, without a desktop.

#include "Eventually.h"
#include "Printers.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

struct Ending
{
    int status = -1;
    QByteArray output;
    QByteArray errors;
};

Ending run(const QStringList &arguments, QProcessEnvironment environment = {})
{
    QProcess process;
    environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(PORTOLAN), arguments);
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit)
        return {};
    return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

} // namespace

TEST(Portolan, PrintsItsVersionWithoutADisplay)
{
    const Ending ending = run({u"--version"_s});
    EXPECT_EQ(ending.status, 0);
    EXPECT_EQ(ending.output, "portolan " PORTOLAN_VERSION "\n");
    EXPECT_EQ(ending.errors, "");
}

TEST(Portolan, PrintsItsOptionsWithoutADisplay)
{
    const Ending ending = run({u"--help"_s});
    EXPECT_EQ(ending.status, 0);
    for (const char *option : {"--background", "--window", "--help", "--version"})
        EXPECT_TRUE(ending.output.contains(option)) << option;
    EXPECT_EQ(ending.errors, "");
}

TEST(Portolan, RefusesAWrongOptionInOneLine)
{
    const Ending ending = run({u"--nonsense"_s});
    EXPECT_EQ(ending.status, 2);
    EXPECT_EQ(ending.output, "");
    EXPECT_EQ(ending.errors, "portolan: unknown option '--nonsense'\n");
}

TEST(Portolan, SaysThatThereIsNoDisplay)
{
    const Ending ending = run({});
    EXPECT_EQ(ending.status, 1);
    EXPECT_EQ(ending.output, "");
    EXPECT_EQ(ending.errors, "portolan: there is no display to show itself on\n");
}

TEST(Portolan, RunsWithoutAScreen)
{
    const QTemporaryDir folder;
    QFile screens(folder.filePath(u"screens.json"_s));
    ASSERT_TRUE(screens.open(QFile::WriteOnly) && screens.write(R"({"screens": []})") > 0);
    screens.close();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen:configfile="_s + screens.fileName());
    environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path=/nowhere"_s);
    environment.insert(u"XDG_RUNTIME_DIR"_s, folder.path());
    environment.insert(u"XDG_CONFIG_HOME"_s, folder.path());

    QProcess program;
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral(PORTOLAN), {u"--background"_s});
    ASSERT_TRUE(eventually([&] { return QFile::exists(folder.filePath(u"portolan.lock"_s)); }));
    // Each request is passed on to the running instance, and succeeds when that has answered.
    EXPECT_EQ(run({u"--window"_s}, environment).status, 0);
    EXPECT_EQ(run({}, environment).status, 0);
    EXPECT_EQ(run({u"--window"_s}, environment).status, 0);
    EXPECT_EQ(program.state(), QProcess::Running);
    program.terminate();
    EXPECT_TRUE(program.waitForFinished());
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 0);
}

TEST(Portolan, SaysThatTheDisplayIsGone)
{
    const QTemporaryDir runtimeFolder;
    QProcessEnvironment environment;
    environment.insert(u"DISPLAY"_s, u"unix:4294967295"_s);
    environment.insert(u"WAYLAND_DISPLAY"_s, u"wayland-0"_s);
    environment.insert(u"XDG_RUNTIME_DIR"_s, runtimeFolder.path());
    const Ending ending = run({}, environment);
    EXPECT_EQ(ending.status, 1);
    EXPECT_EQ(ending.errors, "portolan: there is no display to show itself on\n");
}

} // namespace portolan
