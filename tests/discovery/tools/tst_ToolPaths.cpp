#include "FakeTools.h"
#include "Printers.h"
#include "ToolPaths.h"

#include <gmock/gmock.h>

namespace portolan {

using namespace Qt::StringLiterals;

TEST(ToolPaths, TheFirstExecutableFileIsTaken)
{
    const FakeTools tools;
    const QString plainFile = tools.path(u"plain"_s);
    FakeTools::write(plainFile, "text");
    const QString missing = tools.path(u"missing"_s);
    const QString directory = u"/"_s;

    EXPECT_EQ(ToolPaths::firstExecutable({tools.lsof(), tools.ps()}), tools.lsof());
    EXPECT_EQ(ToolPaths::firstExecutable({missing, tools.ps()}), tools.ps());
    EXPECT_EQ(ToolPaths::firstExecutable({plainFile, directory, tools.ps()}), tools.ps());
}

TEST(ToolPaths, TheFirstOfAllIsTakenIfNoneIsExecutable)
{
    EXPECT_EQ(ToolPaths::firstExecutable({u"/no/such/one"_s, u"/no/such/two"_s}), u"/no/such/one"_s);
}

TEST(ToolPaths, TheSystemsToolsAreFound)
{
    EXPECT_THAT((QStringList{u"/usr/sbin/lsof"_s, u"/usr/bin/lsof"_s}), testing::Contains(ToolPaths::lsof()));
    EXPECT_THAT((QStringList{u"/bin/ps"_s, u"/usr/bin/ps"_s}), testing::Contains(ToolPaths::ps()));
}

} // namespace portolan
