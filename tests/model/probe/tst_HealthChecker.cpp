// SPDX-License-Identifier: MIT
#include "DescriptorLimit.h"
#include "HealthChecker.h"
#include "LocalSocket.h"
#include "Printers.h"
#include "Probe.h"
#include "ProbeSet.h"
#include "ProcessFacts.h"
#include "ScopedEnvironment.h"
#include "ScriptedServer.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSslConfiguration>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <ostream>
#include <thread>

#include <poll.h>
#include <sys/resource.h>

namespace portolan {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Connection = ScriptedServer::Connection;

void PrintTo(const Health &health, std::ostream *out)
{
    *out << "state " << int(health.state()) << ", status " << health.status() << ", " << health.ms() << " ms";
}

namespace {

// The result of a check; nothing if there is none.
std::optional<Health> outcome(const QFuture<Health> &check)
{
    waitUntil([&] { return check.isFinished(); });
    return check.isFinished() ? std::optional(check.result()) : std::nullopt;
}

std::optional<Health> outcomeOf(qint64 port)
{
    HealthChecker checker;
    return outcome(checker.check(port));
}

// The status of a healthy outcome, 0 of an unreachable one, -1 of any other.
qint64 statusOf(const std::optional<Health> &health)
{
    if (!health)
        return -1;
    return health->isHealthy() ? health->status() : *health == Health::unreachable() ? 0 : -1;
}

constexpr qint64 unreachable = 0;

QByteArray redirect(const QByteArray &location)
{
    return "HTTP/1.1 302 Found\r\nLocation: " + location + "\r\nContent-Length: 0\r\n\r\n";
}

QByteArray address(const ScriptedServer &server)
{
    return "http://127.0.0.1:" + QByteArray::number(server.port()) + '/';
}

// A script that hangs up on every request but a GET, which it answers with `response`.
ScriptedServer::Script answersOnlyGet(const QByteArray &response)
{
    return [response](Connection &connection) {
        if (connection.readRequest() == "GET")
            connection.send(response);
    };
}

// A script that answers every request with `start` and then with `rest` over and over.
ScriptedServer::Script neverStops(const QByteArray &start, const QByteArray &rest)
{
    return [start, rest](Connection &connection) {
        if (connection.readRequest().isEmpty() || !connection.send(start))
            return;
        while (connection.send(rest)) {
        }
    };
}

// Waits for the first connection to a server that listens.
void awaitConnection(const LocalSocket &server)
{
    pollfd connection{.fd = server.descriptor(), .events = POLLIN, .revents = 0};
    EXPECT_EQ(::poll(&connection, 1, 60'000), 1);
}

// The CPU time of this process so far.
std::chrono::microseconds processorTime()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return std::chrono::seconds(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           std::chrono::microseconds(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec);
}

// The folders under /proc of this process's threads of that name.
QStringList threadsNamed(const QByteArray &name)
{
    QStringList folders;
    const QDir tasks(u"/proc/self/task"_s);
    for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        if (contentsOf(tasks.filePath(task) + u"/comm"_s) == name + '\n')
            folders.append(tasks.filePath(task));
    }
    return folders;
}

// How often a thread has gone to sleep so far.
qint64 sleepCount(const QString &thread)
{
    static const QRegularExpression count(u"\nvoluntary_ctxt_switches:\\s*(\\d+)"_s);
    return count.match(QString::fromLatin1(contentsOf(thread + u"/status"_s))).captured(1).toLongLong();
}

} // namespace

// One row: the behaviour of a server, the result of the probe and the requests that the server got.
struct Server
{
    const char *name;
    ScriptedServer::Script script;
    qint64 status;
    QList<QByteArray> methods;
};

static void PrintTo(const Server &server, std::ostream *out)
{
    *out << server.name;
}

class HealthCheckerProbes : public testing::TestWithParam<Server>
{};

TEST_P(HealthCheckerProbes, AServerThat)
{
    const ScriptedServer server(GetParam().script);
    EXPECT_EQ(statusOf(outcomeOf(server.port())), GetParam().status);
    EXPECT_EQ(server.methods(), GetParam().methods);
}

static std::string nameOf(const testing::TestParamInfo<Server> &row)
{
    return row.param.name;
}

static Server answersWith(const char *name, const QByteArray &response, qint64 status)
{
    return {name, ScriptedServer::answers(response), status, {"HEAD"}};
}

INSTANTIATE_TEST_SUITE_P(
    AnyStatus, HealthCheckerProbes,
    testing::Values(
        answersWith("Is200", "HTTP/1.1 200 OK\r\n\r\n", 200),
        answersWith("Is204", "HTTP/1.1 204 No Content\r\n\r\n", 204),
        answersWith("Is301WithoutLocation", "HTTP/1.1 301 Moved\r\n\r\n", 301),
        answersWith("Is304", "HTTP/1.1 304 Not Modified\r\n\r\n", 304),
        answersWith("Is400", "HTTP/1.1 400 Bad Request\r\n\r\n", 400),
        answersWith("Is401", "HTTP/1.1 401 Unauthorized\r\nWWW-Authenticate: Basic\r\n\r\n", 401),
        answersWith("Is404", "HTTP/1.1 404 Not Found\r\n\r\n", 404),
        answersWith("Is405", "HTTP/1.1 405 Method Not Allowed\r\nAllow: GET\r\n\r\n", 405),
        answersWith("Is407",
                    "HTTP/1.1 407 Proxy Authentication Required\r\nProxy-Authenticate: Basic\r\n\r\n", 407),
        answersWith("Is417", "HTTP/1.1 417 Expectation Failed\r\n\r\n", 417),
        answersWith("Is500", "HTTP/1.1 500 Internal Server Error\r\n\r\n", 500),
        answersWith("Is501", "HTTP/1.1 501 Not Implemented\r\n\r\n", 501),
        answersWith("Is503", "HTTP/1.1 503 Service Unavailable\r\nRetry-After: 1\r\n\r\n", 503),
        answersWith("Is599", "HTTP/1.1 599 Odd\r\n\r\n", 599)),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    OddForm, HealthCheckerProbes,
    testing::Values(
        answersWith("SpeaksHttp10", "HTTP/1.0 200 OK\r\nServer: Old\r\n\r\n", 200),
        answersWith("EndsItsLinesWithBareLf", "HTTP/1.1 200 OK\nServer: Odd\n\n", 200),
        answersWith("GivesNoReason", "HTTP/1.1 200\r\n\r\n", 200),
        answersWith("SendsABodyToAHead", "HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nhello", 200),
        answersWith("AnnouncesMoreThanItSends", "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nhello", 200),
        answersWith("FirstSays100", "HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 200 OK\r\n\r\n", 200),
        answersWith("FirstSays103", "HTTP/1.1 103 Early Hints\r\nLink: </a>\r\n\r\nHTTP/1.1 204 No\r\n\r\n",
                    204),
        answersWith("SendsAnUnknownEncoding", "HTTP/1.1 200 OK\r\nContent-Encoding: odd\r\n\r\n", 200),
        answersWith("SendsTwoLengths", "HTTP/1.1 200 OK\r\nContent-Length: 1\r\nContent-Length: 2\r\n\r\n",
                    200),
        answersWith("SendsAHeaderWithoutColon", "HTTP/1.1 200 OK\r\nno colon here\r\n\r\n", 200),
        answersWith("SendsANegativeLength", "HTTP/1.1 200 OK\r\nContent-Length: -1\r\n\r\n", 200),
        answersWith("SendsNulInAHeader", QByteArray("HTTP/1.1 200 OK\r\nA: \0b\r\n\r\n", 26), 200),
        Server{"HoldsTheConnectionAfterItsAnswer",
               [](Connection &connection) {
                   connection.readRequest();
                   connection.send("HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nhello");
                   connection.hang();
               },
               200,
               {"HEAD"}},
        Server{"DripsItsAnswerByteByByte",
               [](Connection &connection) {
                   connection.readRequest();
                   for (const char byte : QByteArray("HTTP/1.1 200 OK\r\nA: b\r\n\r\n")) {
                       connection.send(QByteArrayView(&byte, 1));
                       connection.pause(10ms);
                   }
               },
               200,
               {"HEAD"}}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    NoHead, HealthCheckerProbes,
    testing::Values(
        Server{
            "DropsIt", answersOnlyGet("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n"), 200, {"HEAD", "GET"}},
        Server{"ResetsIt",
               [](Connection &connection) {
                   if (connection.readRequest() == "HEAD")
                       connection.reset();
                   else
                       connection.send("HTTP/1.1 201 Created\r\nContent-Length: 0\r\n\r\n");
               },
               201,
               {"HEAD", "GET"}},
        Server{"AnswersItWithGarbage",
               [](Connection &connection) {
                   connection.send(connection.readRequest() == "HEAD" ? QByteArrayView("?!\r\n\r\n")
                                                                      : "HTTP/1.1 404 No\r\n\r\n");
               },
               404,
               {"HEAD", "GET"}},
        Server{
            "AnswersTheGetWithABigBody",
            answersOnlyGet("HTTP/1.1 200 OK\r\nContent-Length: 3000000\r\n\r\n" + QByteArray(3000000, 'x')),
            200,
            {"HEAD", "GET"}},
        Server{"AnswersTheGetInChunks",
               answersOnlyGet("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n0\r\n\r\n"),
               200,
               {"HEAD", "GET"}},
        Server{"EndsTheBodyOfTheGetByClosing",
               answersOnlyGet("HTTP/1.0 200 OK\r\n\r\nsome text"),
               200,
               {"HEAD", "GET"}},
        Server{"SendsMoreThanItAnnounces",
               answersOnlyGet("HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\n0123456789"),
               200,
               {"HEAD", "GET"}},
        Server{"SendsWhatOnlyClaimsToBeCompressed",
               answersOnlyGet("HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\nContent-Length: 3\r\n\r\nabc"),
               200,
               {"HEAD", "GET"}},
        Server{"SendsLessThanItAnnounces",
               answersOnlyGet("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nhello"),
               200,
               {"HEAD", "GET"}},
        Server{"SendsBrokenChunks",
               answersOnlyGet("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\n"),
               200,
               {"HEAD", "GET"}},
        Server{"SendsABodyWithoutEnd",
               [](Connection &connection) {
                   if (connection.readRequest() != "GET" || !connection.send("HTTP/1.1 200 OK\r\n\r\n"))
                       return;
                   while (connection.send(QByteArray(64 * 1024, 'x'))) {
                   }
               },
               200,
               {"HEAD", "GET"}},
        Server{"SendsAStreamOfEvents",
               [](Connection &connection) {
                   if (connection.readRequest() != "GET" ||
                       !connection.send("HTTP/1.1 200 OK\r\nContent-Type: text/event-stream\r\n\r\n"))
                       return;
                   while (connection.send("data: x\n\n") && connection.pause(200ms)) {
                   }
               },
               200,
               {"HEAD", "GET"}}),
    nameOf);

static Server isNoHttp(const char *name, ScriptedServer::Script script)
{
    return {name, std::move(script), unreachable, {"HEAD", "GET"}};
}

INSTANTIATE_TEST_SUITE_P(
    NoHttp, HealthCheckerProbes,
    testing::Values(
        isNoHttp("ClosesAfterTheRequest", [](Connection &connection) { connection.readRequest(); }),
        isNoHttp("ResetsAfterTheRequest",
                 [](Connection &connection) {
                     connection.readRequest();
                     connection.reset();
                 }),
        isNoHttp("SpeaksHttp09", ScriptedServer::answers("<html>hello</html>")),
        isNoHttp("SendsGarbage", ScriptedServer::answers(QByteArray("\0\xff\xfe\r\n\n\r\0garbage", 15))),
        isNoHttp("SendsAnEmptyLine", ScriptedServer::answers("\r\n\r\n")),
        isNoHttp("AnswersLikeRedis", ScriptedServer::answers("-ERR unknown command\r\n")),
        isNoHttp("SpeaksOnlyTls", ScriptedServer::answers(QByteArray("\x15\x03\x01\x00\x02\x02\x46", 7))),
        isNoHttp("HasStatus000", ScriptedServer::answers("HTTP/1.1 000 Odd\r\n\r\n")),
        isNoHttp("HasANegativeStatus", ScriptedServer::answers("HTTP/1.1 -1 Odd\r\n\r\n")),
        isNoHttp("HasAStatusOfFiveDigits", ScriptedServer::answers("HTTP/1.1 99999 Odd\r\n\r\n")),
        isNoHttp("ClosesWithinItsHeaders", ScriptedServer::answers("HTTP/1.1 200 OK\r\nServer: x\r\n")),
        isNoHttp("ClosesAfterAnInterimResponse", ScriptedServer::answers("HTTP/1.1 100 Continue\r\n\r\n")),
        isNoHttp("SwitchesProtocolsUnasked",
                 ScriptedServer::answers("HTTP/1.1 101 Switching\r\nUpgrade: x\r\n\r\n")),
        isNoHttp("NeverStopsSendingHeaders", neverStops("HTTP/1.1 200 OK\r\n", "X-Odd: 0123456789\r\n")),
        isNoHttp("NeverStopsSendingOneHeader", neverStops("HTTP/1.1 200 OK\r\nX-Odd: ", "0123456789")),
        isNoHttp("NeverStopsSayingContinue", neverStops("", "HTTP/1.1 100 Continue\r\n\r\n")),
        isNoHttp("SendsAStatusLineOfAMegabyte",
                 ScriptedServer::answers("HTTP/1.1 200 " + QByteArray(1 << 20, 'O') + "\r\n\r\n"))),
    nameOf);

TEST(HealthChecker, IsUnreachableWhereTheServerClosesEveryConnectionAtOnce)
{
    const ScriptedServer server([](Connection &) {});
    EXPECT_EQ(outcomeOf(server.port()), Health::unreachable());
    EXPECT_EQ(server.connections(), 2);
}

TEST(HealthChecker, IsUnreachableWhereTheServerResetsEveryConnectionAtOnce)
{
    const ScriptedServer server([](Connection &connection) { connection.reset(); });
    EXPECT_EQ(outcomeOf(server.port()), Health::unreachable());
    EXPECT_EQ(server.connections(), 2);
}

// The prober hangs up on the greeting, so the server may never read the request.
TEST(HealthChecker, IsUnreachableWhereTheServerGreetsInAnotherProtocol)
{
    for (const char *greeting : {"SSH-2.0-OpenSSH_9.2\r\n", "220 localhost ESMTP\r\n"}) {
        const ScriptedServer server([greeting](Connection &connection) {
            connection.send(greeting);
            connection.hang();
        });
        EXPECT_EQ(outcomeOf(server.port()), Health::unreachable());
        EXPECT_EQ(server.connections(), 2);
    }
}

TEST(HealthChecker, TakesAnAnswerThatComesBeforeTheRequest)
{
    const ScriptedServer server([](Connection &connection) {
        connection.send("HTTP/1.1 503 Service Unavailable\r\n\r\n");
        connection.hang();
    });
    EXPECT_EQ(statusOf(outcomeOf(server.port())), 503);
    EXPECT_EQ(server.connections(), 1);
}

TEST(HealthChecker, IsUnreachableWhereNothingListens)
{
    const auto closed = LocalSocket::bound("127.0.0.1");
    EXPECT_EQ(outcomeOf(closed.port()), Health::unreachable());
}

TEST(HealthChecker, IsUnreachableOnPortZero)
{
    EXPECT_EQ(outcomeOf(0), Health::unreachable());
}

TEST(HealthChecker, IsUnknownWhereNoAddressCanBeMadeOfThePort)
{
    for (const qint64 port :
         {qint64(-1), qint64(65536), std::numeric_limits<qint64>::min(), std::numeric_limits<qint64>::max()})
        EXPECT_EQ(outcomeOf(port), Health::unknown()) << port;
}

TEST(HealthChecker, FinishesWhatIsUnderWayAsUnreachableWhenItEnds)
{
    const ScriptedServer silent([](ScriptedServer::Connection &connection) { connection.hang(); });
    QList<QFuture<Health>> probes;
    {
        HealthChecker checker;
        for (int i = 0; i < 100; ++i)
            probes.append(checker.check(silent.port()));
        waitUntil([&] { return silent.connections() == 100; });
    }
    for (const QFuture<Health> &probe : probes) {
        ASSERT_TRUE(probe.isFinished());
        EXPECT_EQ(probe.result(), Health::unreachable());
    }
}

TEST(HealthChecker, FinishesWhatIsUnderWayElsewhereAsUnreachableWhenItEnds)
{
    const ScriptedServer silent([](ScriptedServer::Connection &connection) { connection.hang(); });
    const ScriptedServer server(ScriptedServer::answers(
        "HTTP/1.1 302 Found\r\nLocation: http://away.localhost:" + QByteArray::number(silent.port()) +
        "/\r\n\r\n"));
    QList<QFuture<Health>> probes;
    {
        HealthChecker checker;
        for (int i = 0; i < 20; ++i)
            probes.append(checker.check(server.port()));
        waitUntil([&] { return silent.connections() == 20; });
    }
    for (const QFuture<Health> &probe : probes) {
        ASSERT_TRUE(probe.isFinished());
        EXPECT_EQ(probe.result(), Health::unreachable());
    }
}

TEST(HealthChecker, EndsWithoutEverHavingProbed)
{
    const HealthChecker checker;
}

TEST(HealthChecker, IsUnknownWithoutDescriptorsAndRecoversWithThem)
{
    const ScriptedServer server(ScriptedServer::answers("HTTP/1.1 200 OK\r\n\r\n"));
    HealthChecker checker;
    rlimit limit{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
    const rlimit none{.rlim_cur = 0, .rlim_max = limit.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    QFuture<Health> probe = checker.check(server.port());
    EXPECT_TRUE(probe.isFinished());
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
    EXPECT_EQ(probe.result(), Health::unknown());

    probe = checker.check(server.port());
    ASSERT_TRUE(outcome(probe));
    EXPECT_EQ(probe.result().status(), 200);

    // The thread has all that it needs by now, but no descriptor for a socket.
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    probe = checker.check(server.port());
    const auto without = outcome(probe);
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
    EXPECT_EQ(without, Health::unknown());
    EXPECT_EQ(statusOf(outcome(checker.check(server.port()))), 200);
}

TEST(HealthChecker, SleepsWithoutAWakeUpWhileThereIsNothingToProbe)
{
    const ScriptedServer server(ScriptedServer::answers("HTTP/1.1 200 OK\r\n\r\n"));
    const QStringList others = threadsNamed("portolan-probes");
    HealthChecker checker;
    ASSERT_TRUE(outcome(checker.check(server.port())));
    QStringList threads = threadsNamed("portolan-probes");
    threads.removeIf([&](const QString &thread) { return others.contains(thread); });
    ASSERT_EQ(threads.size(), 1);
    std::this_thread::sleep_for(300ms);
    const qint64 before = sleepCount(threads.first());
    EXPECT_GT(before, 0);
    std::this_thread::sleep_for(Probe::totalLimit + 500ms);
    EXPECT_EQ(sleepCount(threads.first()), before);
}

TEST(HealthChecker, SendsTheseRequestsAndNothingElse)
{
    const ScriptedServer server(answersOnlyGet("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n"));
    EXPECT_EQ(statusOf(outcomeOf(server.port())), 200);
    const QByteArray rest = " / HTTP/1.1\r\nHost: 127.0.0.1:" + QByteArray::number(server.port()) +
                            "\r\nUser-Agent: Portolan\r\nAccept: */*\r\n\r\n";
    EXPECT_EQ(server.requests(), QList<QByteArray>({"HEAD" + rest, "GET" + rest}));
}

TEST(HealthChecker, CountsTheFailedHeadIntoTheTime)
{
    const ScriptedServer server([](Connection &connection) {
        if (connection.readRequest() == "HEAD")
            connection.pause(150ms);
        else if (connection.pause(150ms))
            connection.send("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n");
    });
    const auto before = Clock::now();
    const auto health = outcomeOf(server.port());
    const auto elapsed = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - before);
    EXPECT_EQ(statusOf(health), 200);
    EXPECT_GE(health->ms(), 300);
    EXPECT_LE(health->ms(), elapsed.count());
}

TEST(HealthChecker, ChecksAreIndependent)
{
    HealthChecker checker;
    const ScriptedServer server(
        ScriptedServer::answers("HTTP/1.1 200 OK\r\nSet-Cookie: a=b\r\nContent-Length: 0\r\n"
                                "ETag: \"x\"\r\nCache-Control: max-age=3600\r\n\r\n"));
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(statusOf(outcome(checker.check(server.port()))), 200);
    const QList<QByteArray> requests = server.requests();
    EXPECT_EQ(requests, QList<QByteArray>(3, requests.first()));
    EXPECT_EQ(server.connections(), 3);
}

TEST(HealthChecker, TakesNothingFromTheSurroundings)
{
    const ScriptedServer proxy(ScriptedServer::answers("HTTP/1.1 502 Bad Gateway\r\n\r\n"));
    const ScriptedServer server(
        ScriptedServer::answers("HTTP/1.1 401 Unauthorized\r\nWWW-Authenticate: Basic\r\n\r\n"));
    QTemporaryDir home;
    QFile netrc(home.filePath(QStringLiteral(".netrc")));
    ASSERT_TRUE(netrc.open(QFile::WriteOnly));
    netrc.write("default login me password secret\n");
    netrc.close();
    const QByteArray realHome = qgetenv("HOME");
    const char *const proxies[] = {"http_proxy", "HTTP_PROXY", "all_proxy", "ALL_PROXY"};
    qputenv("HOME", home.path().toLocal8Bit());
    for (const char *name : proxies)
        qputenv(name, address(proxy));

    EXPECT_EQ(statusOf(outcomeOf(server.port())), 401);

    for (const char *name : proxies)
        qunsetenv(name);
    qputenv("HOME", realHome);
    EXPECT_EQ(proxy.connections(), 0);
    EXPECT_EQ(server.methods(), QList<QByteArray>{"HEAD"});
    EXPECT_FALSE(server.requests().first().contains("Authorization"));
}

// A server that redirects the first `hops` requests to itself and answers the next with 200.
static ScriptedServer::Script redirectsTimes(int hops)
{
    return [left = std::make_shared<std::atomic<int>>(hops)](Connection &connection) {
        if (!connection.readRequest().isEmpty())
            connection.send(left->fetch_sub(1) > 0 ? redirect("/next")
                                                   : "HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n");
    };
}

TEST(HealthCheckerRedirect, IsFollowedToTheFinalStatus)
{
    const ScriptedServer target(ScriptedServer::answers("HTTP/1.1 404 Not Found\r\n\r\n"));
    const ScriptedServer server(ScriptedServer::answers(redirect(address(target) + "login?next=/")));
    EXPECT_EQ(statusOf(outcomeOf(server.port())), 404);
    EXPECT_EQ(server.methods(), QList<QByteArray>{"HEAD"});
    ASSERT_EQ(target.methods(), QList<QByteArray>{"HEAD"});
    EXPECT_TRUE(target.requests().first().startsWith("HEAD /login?next=/ HTTP/1.1\r\n"));
}

TEST(HealthCheckerRedirect, LeadsAwayAndBack)
{
    const ScriptedServer last(ScriptedServer::answers("HTTP/1.1 204 No Content\r\n\r\n"));
    const ScriptedServer away(ScriptedServer::answers(redirect(address(last) + "home")));
    const ScriptedServer server(ScriptedServer::answers(
        redirect("http://away.localhost:" + QByteArray::number(away.port()) + "/away?x=1")));
    EXPECT_EQ(statusOf(outcomeOf(server.port())), 204);
    ASSERT_EQ(away.methods(), QList<QByteArray>{"HEAD"});
    EXPECT_EQ(away.requests().first(),
              "HEAD /away?x=1 HTTP/1.1\r\nHost: away.localhost:" + QByteArray::number(away.port()) +
                  "\r\nUser-Agent: Portolan\r\nAccept: */*\r\n\r\n");
    ASSERT_EQ(last.methods(), QList<QByteArray>{"HEAD"});
    EXPECT_TRUE(last.requests().first().startsWith("HEAD /home HTTP/1.1\r\n"));
}

TEST(HealthCheckerRedirect, LeadsAGetAwayToo)
{
    const ScriptedServer away([](Connection &connection) {
        if (connection.readRequest() == "GET" && connection.send("HTTP/1.1 200 OK\r\n\r\n"))
            while (connection.send(QByteArray(64 * 1024, 'x'))) {
            }
    });
    const ScriptedServer server(
        ScriptedServer::answers(redirect("http://away.localhost:" + QByteArray::number(away.port()) + "/")));
    EXPECT_EQ(statusOf(outcomeOf(server.port())), 200);
    EXPECT_EQ(away.methods(), QList<QByteArray>({"HEAD", "GET"}));
    EXPECT_EQ(server.methods(), QList<QByteArray>({"HEAD", "GET"}));
}

TEST(HealthCheckerRedirect, ToAServerThatNeverStopsIsUnreachable)
{
    const ScriptedServer away(neverStops("HTTP/1.1 200 OK\r\n", "X-Odd: 0123456789\r\n"));
    const ScriptedServer server(
        ScriptedServer::answers(redirect("http://away.localhost:" + QByteArray::number(away.port()) + "/")));
    EXPECT_EQ(outcomeOf(server.port()), Health::unreachable());
}

TEST(HealthCheckerRedirect, PrintsNothingOfWhatIsSaidInAnotherProtocol)
{
    const ScriptedServer away(ScriptedServer::answers("HTTP/1.1 101 Switching\r\nUpgrade: x\r\n\r\nhello\n"));
    const ScriptedServer server(
        ScriptedServer::answers(redirect("http://away.localhost:" + QByteArray::number(away.port()) + "/")));
    testing::internal::CaptureStdout();
    EXPECT_EQ(outcomeOf(server.port()), Health::unreachable());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(away.methods(), QList<QByteArray>({"HEAD", "GET"}));
}

TEST(HealthCheckerRedirect, ToASilentServerIsUnreachableInTime)
{
    const auto silent = LocalSocket::listening("127.0.0.1");
    const ScriptedServer server(ScriptedServer::answers(
        redirect("http://away.localhost:" + QByteArray::number(silent.port()) + "/")));
    const auto before = Clock::now();
    EXPECT_EQ(outcomeOf(server.port()), Health::unreachable());
    EXPECT_GE(Clock::now() - before, 5s);
    EXPECT_EQ(server.methods(), QList<QByteArray>({"HEAD", "GET"}));
}

// The server listens on 127.0.0.1 alone, and the name stands for ::1 too.
TEST(HealthCheckerRedirect, FindsLocalhostOnEitherAddress)
{
    const ScriptedServer target(ScriptedServer::answers("HTTP/1.1 200 OK\r\n\r\n"));
    const ScriptedServer server(
        ScriptedServer::answers(redirect("http://localhost:" + QByteArray::number(target.port()) + "/")));
    EXPECT_EQ(statusOf(outcomeOf(server.port())), 200);
    EXPECT_EQ(target.methods(), QList<QByteArray>{"HEAD"});
}

TEST(HealthCheckerRedirect, ReachesTheIpv6AddressOfThisMachineByEitherName)
{
    const ScriptedServer target(ScriptedServer::answers("HTTP/1.1 200 OK\r\n\r\n"),
                                ScriptedServer::Address::ipv6);
    if (target.port() == 0)
        GTEST_SKIP() << "this machine has no IPv6";
    const QByteArray port = ':' + QByteArray::number(target.port());
    QList<QByteArray> requests;
    for (const QByteArray &host : {QByteArray("localhost"), QByteArray("[::1]")}) {
        const ScriptedServer server(ScriptedServer::answers(redirect("http://" + host + port + "/x")));
        EXPECT_EQ(statusOf(outcomeOf(server.port())), 200);
        requests.append("HEAD /x HTTP/1.1\r\nHost: " + host + port +
                        "\r\nUser-Agent: Portolan\r\nAccept: */*\r\n\r\n");
    }
    EXPECT_EQ(target.requests(), requests);
}

TEST(HealthCheckerIpv6, IsProbedOnlyWhereAskedForAndOnlyAfterARefusal)
{
    const ScriptedServer server(ScriptedServer::answers("HTTP/1.1 204 No Content\r\n\r\n"),
                                ScriptedServer::Address::ipv6);
    if (server.port() == 0)
        GTEST_SKIP() << "this machine has no IPv6";
    for (const auto &value : {std::optional<QByteArray>(), std::optional<QByteArray>("::1")}) {
        const ScopedEnvironment other("PORTOLAN_PROBE", value);
        EXPECT_EQ(statusOf(outcomeOf(server.port())), unreachable);
    }
    EXPECT_EQ(server.connections(), 0);

    const ScopedEnvironment localhost("PORTOLAN_PROBE", "localhost");
    EXPECT_EQ(statusOf(outcomeOf(server.port())), 204);
    const QByteArray host = "localhost:" + QByteArray::number(server.port());
    EXPECT_EQ(server.requests(), QList<QByteArray>{"HEAD / HTTP/1.1\r\nHost: " + host +
                                                   "\r\nUser-Agent: Portolan\r\nAccept: */*\r\n\r\n"});

    const ScriptedServer ipv4(ScriptedServer::answers("HTTP/1.1 200 OK\r\n\r\n"));
    EXPECT_EQ(statusOf(outcomeOf(ipv4.port())), 200);
    EXPECT_TRUE(ipv4.requests().first().contains("\r\nHost: 127.0.0.1:"));
    const auto closed = LocalSocket::bound("127.0.0.1");
    EXPECT_EQ(statusOf(outcomeOf(closed.port())), unreachable);
}

TEST(HealthCheckerIpv6, IsSentAGetWhereItDoesNotAnswerAHead)
{
    const ScriptedServer server(
        [](Connection &connection) {
            if (connection.readRequest() == "GET")
                connection.send("HTTP/1.1 200 OK\r\n\r\n");
        },
        ScriptedServer::Address::ipv6);
    if (server.port() == 0)
        GTEST_SKIP() << "this machine has no IPv6";
    const ScopedEnvironment localhost("PORTOLAN_PROBE", "localhost");
    EXPECT_EQ(statusOf(outcomeOf(server.port())), 200);
    EXPECT_EQ(server.methods(), QList<QByteArray>({"HEAD", "GET"}));
}

TEST(HealthCheckerRedirect, ToAPortOfThisMachineWhereNothingListensIsUnreachable)
{
    const auto closed = LocalSocket::bound("127.0.0.1");
    for (const QByteArray &host : {QByteArray("localhost"), QByteArray("[::1]"), QByteArray("127.0.0.1")}) {
        const ScriptedServer server(ScriptedServer::answers(
            redirect("http://" + host + ':' + QByteArray::number(closed.port()) + '/')));
        EXPECT_EQ(outcomeOf(server.port()), Health::unreachable());
        EXPECT_EQ(server.methods(), QList<QByteArray>({"HEAD", "GET"}));
    }
}

TEST(HealthCheckerRedirect, IsFollowedTwentyTimes)
{
    const ScriptedServer server(redirectsTimes(20));
    EXPECT_EQ(statusOf(outcomeOf(server.port())), 200);
    EXPECT_EQ(server.methods(), QList<QByteArray>(21, "HEAD"));
}

TEST(HealthCheckerRedirect, FailsTheRequestAfterTwenty)
{
    const ScriptedServer server(redirectsTimes(21));
    EXPECT_EQ(statusOf(outcomeOf(server.port())), 200);
    EXPECT_EQ(server.methods(), QList<QByteArray>(21, "HEAD") << "GET");
}

TEST(HealthCheckerRedirect, LoopIsUnreachable)
{
    const ScriptedServer server(ScriptedServer::answers(redirect("/")));
    EXPECT_EQ(outcomeOf(server.port()), Health::unreachable());
    EXPECT_EQ(server.methods(), QList<QByteArray>(21, "HEAD") + QList<QByteArray>(21, "GET"));
}

TEST(HealthCheckerRedirect, TakesNoCookiesAlong)
{
    const ScriptedServer server([](Connection &connection) {
        connection.readRequest();
        connection.send(
            "HTTP/1.1 302 Found\r\nSet-Cookie: a=b; Path=/\r\nLocation: /x\r\nContent-Length: 0\r\n\r\n");
    });
    EXPECT_EQ(outcomeOf(server.port()), Health::unreachable());
    for (const QByteArray &request : server.requests())
        EXPECT_FALSE(request.contains("Cookie")) << request.toStdString();
}

TEST(HealthCheckerRedirect, TakesNoCredentialsAlong)
{
    const ScriptedServer target(ScriptedServer::answers("HTTP/1.1 200 OK\r\n\r\n"));
    const ScriptedServer server(
        ScriptedServer::answers(redirect("http://me:secret@" + address(target).sliced(7))));
    EXPECT_EQ(statusOf(outcomeOf(server.port())), 200);
    ASSERT_EQ(target.requests().size(), 1);
    EXPECT_FALSE(target.requests().first().contains("Authorization"));
}

TEST(HealthCheckerRedirect, CannotInjectAHeader)
{
    const ScriptedServer target(ScriptedServer::answers("HTTP/1.1 200 OK\r\n\r\n"));
    const ScriptedServer server(ScriptedServer::answers(redirect(address(target) + "a%0d%0aX-Odd: 1")));
    EXPECT_EQ(statusOf(outcomeOf(server.port())), 200);
    ASSERT_EQ(target.requests().size(), 1);
    EXPECT_FALSE(target.requests().first().contains("\r\nX-Odd"));
}

// Ends the checker as soon as a connection for TLS is there, and then the program.
[[noreturn]] static void exitWithinTls()
{
    const auto silent = LocalSocket::listening("127.0.0.1");
    {
        const ScriptedServer server(ScriptedServer::answers(
            redirect("https://127.0.0.1:" + QByteArray::number(silent.port()) + "/")));
        HealthChecker checker;
        const QFuture<Health> check = checker.check(server.port());
        awaitConnection(silent);
    }
    std::exit(0);
}

TEST(HealthCheckerDeathTest, EndsWithinTlsAndLetsTheProgramExit)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    for (int i = 0; i < 5; ++i)
        EXPECT_EXIT(exitWithinTls(), testing::ExitedWithCode(0), "");
}

TEST(HealthCheckerRedirect, OffHostTakesOneThreadThatEndsWithTheChecker)
{
    const ScriptedServer server(ScriptedServer::answers("HTTP/1.1 200 OK\r\n\r\n"));
    const ScriptedServer redirector(ScriptedServer::answers(
        redirect("http://away.localhost:" + QByteArray::number(server.port()) + "/")));
    {
        HealthChecker checker;
        EXPECT_EQ(statusOf(outcome(checker.check(server.port()))), 200);
        EXPECT_EQ(threadsNamed("portolan-remote").size(), 0);
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(statusOf(outcome(checker.check(redirector.port()))), 200);
        EXPECT_EQ(threadsNamed("portolan-remote").size(), 1);
    }
    // The kernel lists a thread for a moment after it has been joined.
    EXPECT_TRUE(waitUntil([] { return threadsNamed("portolan-remote").isEmpty(); }));
}

TEST(HealthCheckerRedirect, ToAServerThatNeverStopsDoesNotDelayTheEndOfTheChecker)
{
    const ScriptedServer away(neverStops("HTTP/1.1 100 Continue\r\n", "X-Odd: 0123456789\r\n"));
    const ScriptedServer server(
        ScriptedServer::answers(redirect("http://away.localhost:" + QByteArray::number(away.port()) + "/")));
    std::optional<HealthChecker> checker(std::in_place);
    const QFuture<Health> check = checker->check(server.port());
    waitUntil([&] { return away.connections() > 0; });
    checker.reset();
    ASSERT_TRUE(check.isFinished());
    EXPECT_EQ(check.result(), Health::unreachable());
}

class HealthCheckerRedirectTo : public testing::TestWithParam<std::pair<const char *, QByteArray>>
{};

TEST_P(HealthCheckerRedirectTo, IsNotFollowed)
{
    const ScriptedServer server(ScriptedServer::answers(redirect(GetParam().second)));
    EXPECT_EQ(outcomeOf(server.port()), Health::unreachable());
    EXPECT_EQ(server.methods(), QList<QByteArray>({"HEAD", "GET"}));
}

INSTANTIATE_TEST_SUITE_P(
    Targets, HealthCheckerRedirectTo,
    testing::Values(std::pair{"Ftp", QByteArray("ftp://127.0.0.1/")},
                    std::pair{"File", QByteArray("file:///etc/hostname")},
                    std::pair{"Gopher", QByteArray("gopher://127.0.0.1/")},
                    std::pair{"Telnet", QByteArray("telnet://127.0.0.1/")},
                    std::pair{"UnknownScheme", QByteArray("vscode://open")},
                    std::pair{"NoAddressAtAll", QByteArray("http://:::/")},
                    std::pair{"TlsOnAPortWithoutTls", QByteArray("https://127.0.0.1:9/")},
                    std::pair{"HundredKilobytes", "http://127.0.0.1:9/" + QByteArray(100000, 'a')}),
    [](const auto &row) { return std::string(row.param.first); });

// Answers a HEAD after `delay` and no GET. Whether a probe of it is healthy says on which side of the idle
// limit the delay is, provided that this machine kept to it.
static void expectAnswerAfter(std::chrono::milliseconds delay, std::chrono::milliseconds tolerated,
                              qint64 status)
{
    for (int attempt = 0; attempt < 5; ++attempt) {
        std::atomic<bool> wasLate = false;
        const ScriptedServer server([&](Connection &connection) {
            const auto end = Clock::now() + delay + tolerated;
            if (connection.readRequest() == "HEAD" && connection.pause(delay))
                connection.send("HTTP/1.1 200 OK\r\n\r\n");
            wasLate = wasLate || Clock::now() > end;
        });
        const qint64 got = statusOf(outcomeOf(server.port()));
        if (got == status || !wasLate) {
            EXPECT_EQ(got, status);
            return;
        }
    }
    GTEST_SKIP() << "this machine is too busy to answer in time";
}

TEST(HealthCheckerTime, AnAnswerAfter2400MsCounts)
{
    expectAnswerAfter(2400ms, 50ms, 200);
}

TEST(HealthCheckerTime, AnAnswerAfter2600MsIsTooLate)
{
    expectAnswerAfter(2600ms, 1h, unreachable);
}

TEST(HealthCheckerTime, SilenceIsUnreachableAfterBothRequests)
{
    const auto silent = LocalSocket::listening("127.0.0.1");
    const auto before = Clock::now();
    EXPECT_EQ(outcomeOf(silent.port()), Health::unreachable());
    EXPECT_GE(Clock::now() - before, 5s);
}

TEST(HealthCheckerTime, SilenceAfterTheStartOfAnAnswerIsUnreachable)
{
    const ScriptedServer server([](Connection &connection) {
        connection.readRequest();
        connection.send("HTTP/1.1 200 OK\r\nServer: ");
        connection.hang();
    });
    EXPECT_EQ(outcomeOf(server.port()), Health::unreachable());
    EXPECT_EQ(server.methods(), QList<QByteArray>({"HEAD", "GET"}));
}

TEST(HealthCheckerTime, EveryByteRestartsTheIdleLimitUpToTheTotalLimit)
{
    const ScriptedServer server([](Connection &connection) {
        connection.readRequest();
        for (const char byte : QByteArray("HTTP/1.1 200 OK\r\n\r\n")) {
            if (!connection.send(QByteArrayView(&byte, 1)) || !connection.pause(400ms))
                return;
        }
    });
    const auto before = Clock::now();
    EXPECT_EQ(outcomeOf(server.port()), Health::unreachable());
    EXPECT_GE(Clock::now() - before, 6s);
    EXPECT_EQ(server.methods(), QList<QByteArray>({"HEAD", "GET"}));
}

TEST(HealthCheckerTime, AByteInTimeExtendsTheWait)
{
    const ScriptedServer server([](Connection &connection) {
        connection.readRequest();
        connection.send("H");
        if (connection.pause(1400ms) && connection.send("TTP/1.1 200 OK\r\n") && connection.pause(1400ms))
            connection.send("\r\n");
    });
    EXPECT_EQ(statusOf(outcomeOf(server.port())), 200);
    EXPECT_EQ(server.methods(), QList<QByteArray>{"HEAD"});
}

TEST(HealthCheckerCrowd, TwoHundredSilentServersCostOneThreadAndHardlyAnyWork)
{
    const auto silent = LocalSocket::listening("127.0.0.1");
    const auto before = processorTime();
    const qsizetype threadsBefore = threads();
    HealthChecker checker;
    QList<QFuture<Health>> checks;
    for (int i = 0; i < 200; ++i)
        checks.append(checker.check(silent.port()));
    std::this_thread::sleep_for(500ms);
    EXPECT_LE(threads(), threadsBefore + 1);
    for (const QFuture<Health> &check : checks)
        EXPECT_EQ(outcome(check), Health::unreachable());
    EXPECT_LT(processorTime() - before, 2s);
}

TEST(HealthCheckerCrowd, RunsNoMoreProbesAtATimeThanItSays)
{
    const ScriptedServer good(ScriptedServer::answers("HTTP/1.1 200 OK\r\n\r\n"));
    const auto silent = LocalSocket::listening("127.0.0.1");
    const qsizetype before = openDescriptors();
    HealthChecker checker;
    QList<QFuture<Health>> probes;
    for (int i = 0; i < ProbeSet::maxUnderWay + 100; ++i)
        probes.append(checker.check(silent.port()));
    const QFuture<Health> last = checker.check(good.port());
    qsizetype most = 0;
    for (const auto end = Clock::now() + 60s; !last.isFinished() && Clock::now() < end;) {
        most = std::max(most, openDescriptors() - before);
        std::this_thread::sleep_for(20ms);
    }
    EXPECT_EQ(statusOf(outcome(last)), 200);
    EXPECT_EQ(probes.front().result(), Health::unreachable());
    const int limit = ProbeSet::mostUnderWay(DescriptorLimit::current());
    EXPECT_GE(most, limit);
    EXPECT_LE(most, limit + 10) << "besides the sockets: the thread's own, and the good server's";
}

TEST(HealthCheckerCrowd, NeighboursOfHostileServersAreUnharmed)
{
    const ScriptedServer good(ScriptedServer::answers("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n"));
    const ScriptedServer headers(neverStops("HTTP/1.1 200 OK\r\n", "X-Odd: 0123456789\r\n"));
    const ScriptedServer interim(neverStops("", "HTTP/1.1 100 Continue\r\n\r\n"));
    const ScriptedServer names(ScriptedServer::answers(redirect("http://does-not-exist.invalid/")));
    const auto silent = LocalSocket::listening("127.0.0.1");
    const QList<quint16> hostile{headers.port(), interim.port(), names.port(), silent.port()};

    HealthChecker checker;
    QList<QFuture<Health>> bad;
    QList<QFuture<Health>> fine;
    for (const quint16 port : hostile)
        bad.append(checker.check(port));
    for (int i = 0; i < 59; ++i)
        fine.append(checker.check(good.port()));
    for (const QFuture<Health> &check : fine)
        EXPECT_EQ(statusOf(outcome(check)), 200);
    for (const QFuture<Health> &check : bad)
        EXPECT_EQ(outcome(check), Health::unreachable());
}

TEST(HealthCheckerCrowd, DoesNotReadAllCertificatesOfTheMachineForEveryTlsRequest)
{
    const auto beforeReading = processorTime();
    QSslConfiguration::systemCaCertificates();
    const auto reading = processorTime() - beforeReading;

    const ScriptedServer closing([](Connection &) {});
    const ScriptedServer server(
        ScriptedServer::answers(redirect("https://127.0.0.1:" + QByteArray::number(closing.port()) + "/")));
    HealthChecker checker;
    const auto start = processorTime();
    for (int i = 0; i < 10; ++i) // of two requests each
        EXPECT_EQ(outcome(checker.check(server.port())), Health::unreachable());
    EXPECT_LT(processorTime() - start, 10 * reading);
}

TEST(HealthCheckerCrowd, ManyThreadsMayAskAtOnce)
{
    const ScriptedServer server(ScriptedServer::answers("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n"));
    HealthChecker checker;
    std::atomic<int> healthy = 0;
    {
        std::vector<std::jthread> askers;
        for (int i = 0; i < 8; ++i)
            askers.emplace_back([&] {
                for (int n = 0; n < 10; ++n)
                    healthy += statusOf(outcome(checker.check(server.port()))) == 200;
            });
    }
    EXPECT_EQ(healthy, 80);
}

TEST(HealthCheckerCrowd, LeavesNoDescriptorBehind)
{
    const ScriptedServer server(ScriptedServer::answers("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n"));
    const ScriptedServer leadingAway(ScriptedServer::answers(
        redirect("http://away.localhost:" + QByteArray::number(server.port()) + "/")));
    HealthChecker checker;
    const auto closed = LocalSocket::bound("127.0.0.1");
    EXPECT_EQ(statusOf(outcome(checker.check(leadingAway.port()))), 200);
    const qsizetype before = openDescriptors();
    for (int i = 0; i < 50; ++i) {
        EXPECT_EQ(statusOf(outcome(checker.check(server.port()))), 200);
        EXPECT_EQ(statusOf(outcome(checker.check(closed.port()))), unreachable);
        EXPECT_EQ(statusOf(outcome(checker.check(leadingAway.port()))), 200);
    }
    // The server closes its ends later.
    EXPECT_TRUE(waitUntil([&] { return openDescriptors() <= before; }));
}

} // namespace portolan
