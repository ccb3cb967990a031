#include "BuiltinTools.h"
#include "LocalSocket.h"
#include "Printers.h"
#include "ToolRuns.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace portolan {

using namespace Qt::StringLiterals;

static int ownPid()
{
    return int(QCoreApplication::applicationPid());
}

TEST(BuiltinTools, AnswerUnderEveryPathThatAToolCanHave)
{
    const QStringList listeners = Invocation::listeners().arguments;
    EXPECT_TRUE(BuiltinTools::answer(u"/usr/sbin/lsof"_s, listeners));
    EXPECT_TRUE(BuiltinTools::answer(u"/usr/bin/lsof"_s, listeners));
    const QStringList stats = Invocation::stats(ownPid()).arguments;
    EXPECT_TRUE(BuiltinTools::answer(u"/bin/ps"_s, stats));
    EXPECT_TRUE(BuiltinTools::answer(u"/usr/bin/ps"_s, stats));
}

struct OtherInvocation
{
    const char *name;
    QString path;
    QStringList arguments;
};

class BuiltinToolsOther : public testing::TestWithParam<OtherInvocation>
{};

TEST_P(BuiltinToolsOther, IsLeftToTheRealTool)
{
    EXPECT_EQ(BuiltinTools::answer(GetParam().path, GetParam().arguments), std::nullopt);
}

static QStringList cwdOf(const QString &pid)
{
    return {u"-a"_s, u"-p"_s, pid, u"-d"_s, u"cwd"_s, u"-Fn"_s};
}

static QStringList statsOf(const QString &pid)
{
    return {u"-o"_s, u"etime=,%cpu=,rss="_s, u"-p"_s, pid};
}

INSTANTIATE_TEST_SUITE_P(
    Invocations, BuiltinToolsOther,
    testing::Values(
        OtherInvocation{"otherTool", u"/bin/ss"_s, {u"-ltn"_s}},
        OtherInvocation{"otherPath", u"/opt/lsof"_s, cwdOf(u"1"_s)},
        OtherInvocation{"bareName", u"lsof"_s, cwdOf(u"1"_s)},
        OtherInvocation{"nothing", u"/usr/bin/lsof"_s, {}},
        OtherInvocation{"fewerArguments", u"/usr/bin/lsof"_s, {u"-nP"_s, u"-iTCP"_s, u"-sTCP:LISTEN"_s}},
        OtherInvocation{"moreArguments", u"/usr/bin/lsof"_s, cwdOf(u"1"_s) + QStringList(u"-w"_s)},
        OtherInvocation{
            "otherOrder", u"/usr/bin/lsof"_s, {u"-iTCP"_s, u"-nP"_s, u"-sTCP:LISTEN"_s, u"-FpcnPT"_s}},
        OtherInvocation{
            "otherFields", u"/usr/bin/lsof"_s, {u"-nP"_s, u"-iTCP"_s, u"-sTCP:LISTEN"_s, u"-Fpcn"_s}},
        OtherInvocation{"lsofsArgumentsToPs", u"/bin/ps"_s, cwdOf(u"1"_s)},
        OtherInvocation{"pssArgumentsToLsof", u"/usr/bin/lsof"_s, statsOf(u"1"_s)},
        OtherInvocation{"emptyPid", u"/usr/bin/lsof"_s, cwdOf(u""_s)},
        OtherInvocation{"zero", u"/bin/ps"_s, statsOf(u"0"_s)},
        OtherInvocation{"leadingZero", u"/bin/ps"_s, statsOf(u"01"_s)},
        OtherInvocation{"negative", u"/bin/ps"_s, statsOf(u"-1"_s)},
        OtherInvocation{"plus", u"/bin/ps"_s, statsOf(u"+1"_s)},
        OtherInvocation{"blank", u"/bin/ps"_s, statsOf(u" 1"_s)},
        OtherInvocation{"list", u"/usr/bin/lsof"_s, cwdOf(u"1,2"_s)},
        OtherInvocation{"tooLarge", u"/bin/ps"_s, statsOf(u"2147483648"_s)},
        OtherInvocation{"otherDigits", u"/bin/ps"_s, statsOf(u"\u0661"_s)}),
    [](const auto &row) { return row.param.name; });

TEST(BuiltinTools, ListThisProcess)
{
    const LocalSocket socket = LocalSocket::listening("127.0.0.1");
    EXPECT_TRUE(builtinAnswer(Invocation::listeners())
                    .contains("\nn127.0.0.1:" + QByteArray::number(socket.port()) + '\n'));
    EXPECT_EQ(builtinAnswer(Invocation::workingDirectory(ownPid())),
              QStringLiteral("p%1\nn%2\n").arg(ownPid()).arg(QDir::currentPath()).toUtf8());
}

TEST(BuiltinTools, StepAsideWhenTheEnvironmentSaysSo)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"PORTOLAN_TOOLS"_s, u"external"_s);
    process.setProcessEnvironment(environment);
    const Invocation invocation = Invocation::listeners();
    process.start(QStringLiteral(PORTOLAN_BUILTIN_TOOL), QStringList(invocation.path) + invocation.arguments);
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 3);
}

TEST(BuiltinTools, AnswerManyThreadsAtOnce)
{
    std::vector<LocalSocket> sockets;
    for (int i = 0; i < 10; ++i)
        sockets.push_back(LocalSocket::listening("127.0.0.1"));
    std::atomic<int> wrong = 0;
    const auto ask = [&] {
        for (int round = 0; round < 20; ++round) {
            const QByteArray listing = builtinAnswer(Invocation::listeners());
            for (const LocalSocket &socket : sockets)
                wrong += !listing.contains("\nn127.0.0.1:" + QByteArray::number(socket.port()) + '\n');
            wrong += builtinAnswer(Invocation::workingDirectory(ownPid())).isEmpty();
            wrong += builtinAnswer(Invocation::stats(ownPid())).isEmpty();
        }
    };
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back(ask);
    threads.clear();
    EXPECT_EQ(wrong, 0);
}

} // namespace portolan
