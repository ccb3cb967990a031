#include "ToolQuestions.h"

#include "Printers.h"

#include <gtest/gtest.h>

namespace portolan {

using namespace Qt::StringLiterals;

TEST(ToolQuestions, AreAskedInExactlyTheseWords)
{
    EXPECT_EQ(ToolQuestions::listeners().join(u' '), u"-nP -iTCP -sTCP:LISTEN -FpcnPT"_s);
    EXPECT_EQ(ToolQuestions::workingDirectory(4242).join(u' '), u"-a -p 4242 -d cwd -Fn"_s);
    EXPECT_EQ(ToolQuestions::stats(4242).join(u' '), u"-o etime=,%cpu=,rss= -p 4242"_s);
}

} // namespace portolan
