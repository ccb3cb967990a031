// SPDX-License-Identifier: MIT
#include "FakeTools.h"
#include "Printers.h"
#include "ToolCommands.h"

#include <gmock/gmock.h>

namespace portolan {

using namespace Qt::StringLiterals;

TEST(ToolCommands, TheFirstExecutableFileIsTaken)
{
    const FakeTools tools;
    const QString plainFile = tools.path(u"plain"_s);
    FakeTools::write(plainFile, "text");
    const QString missing = tools.path(u"missing"_s);
    const QString directory = u"/"_s;

    EXPECT_EQ(ToolCommands::firstExecutable({tools.lsof(), tools.ps()}), tools.lsof());
    EXPECT_EQ(ToolCommands::firstExecutable({missing, tools.ps()}), tools.ps());
    EXPECT_EQ(ToolCommands::firstExecutable({plainFile, directory, tools.ps()}), tools.ps());
}

TEST(ToolCommands, TheFirstOfAllIsTakenIfNoneIsExecutable)
{
    EXPECT_EQ(ToolCommands::firstExecutable({u"/no/such/one"_s, u"/no/such/two"_s}), u"/no/such/one"_s);
}

TEST(ToolCommands, TheSystemsToolsAreFound)
{
    EXPECT_THAT((QStringList{u"/usr/sbin/lsof"_s, u"/usr/bin/lsof"_s}),
                testing::Contains(ToolCommands::lsof()));
    EXPECT_THAT((QStringList{u"/bin/ps"_s, u"/usr/bin/ps"_s}), testing::Contains(ToolCommands::ps()));
}

TEST(ToolCommands, AreExactlyThese)
{
    EXPECT_EQ(ToolCommands::listeners().join(u' '), u"-nP -iTCP -sTCP:LISTEN -FpcnPT"_s);
    EXPECT_EQ(ToolCommands::workingFolder(4242).join(u' '), u"-a -p 4242 -d cwd -Fn"_s);
    EXPECT_EQ(ToolCommands::stats(4242).join(u' '), u"-o etime=,%cpu=,rss= -p 4242"_s);
}

} // namespace portolan
