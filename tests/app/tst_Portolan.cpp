// The real program as far as it runs without a desktop.

#include "Printers.h"

#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

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
