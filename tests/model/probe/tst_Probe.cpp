#include "Probe.h"

#include <gtest/gtest.h>

#include <string>

namespace portolan {

using namespace std::chrono_literals;
using Clock = Probe::Clock;
using Next = Probe::Next;

namespace {

ResponseHead response(const std::string &bytes)
{
    ResponseHead head;
    EXPECT_EQ(head.read(bytes), ResponseHead::State::complete) << bytes;
    return head;
}

class ProbeOfAPort : public testing::Test
{
protected:
    static constexpr Clock::time_point start{1h};

    HealthPromise promise;
    QFuture<Health> outcome = promise.future();
    std::optional<Probe> probe{std::in_place, quint16(3000), std::move(promise), start};
};

} // namespace

TEST_F(ProbeOfAPort, FirstAsksForTheHeadOfTheRoot)
{
    EXPECT_EQ(probe->method(), Probe::Method::head);
    EXPECT_EQ(probe->target().url(), "http://127.0.0.1:3000/");
    EXPECT_EQ(probe->deadline(), start + 2500ms);
    EXPECT_FALSE(outcome.isFinished());
}

TEST_F(ProbeOfAPort, EndsWithAResponseWhateverItsStatus)
{
    EXPECT_EQ(probe->answered(response("HTTP/1.1 405 No\r\n\r\n"), start + 12'999'999ns), Next::end);
    ASSERT_TRUE(outcome.isFinished());
    EXPECT_EQ(outcome.result(), Health::healthy(405, 12));
}

TEST_F(ProbeOfAPort, AsksForAllAfterAFailureAndCountsBothTimes)
{
    EXPECT_EQ(probe->failed(start + 100ms), Next::ask);
    EXPECT_EQ(probe->method(), Probe::Method::get);
    EXPECT_EQ(probe->deadline(), start + 2600ms);
    EXPECT_EQ(probe->answered(response("HTTP/1.1 200 OK\r\n\r\n"), start + 150ms), Next::end);
    EXPECT_EQ(outcome.result(), Health::healthy(200, 150));
}

TEST_F(ProbeOfAPort, IsUnreachableAfterTwoFailures)
{
    EXPECT_EQ(probe->failed(start + 1ms), Next::ask);
    EXPECT_EQ(probe->failed(start + 2ms), Next::end);
    EXPECT_EQ(outcome.result(), Health::unreachable());
}

TEST_F(ProbeOfAPort, IsUnreachableWhenItIsDropped)
{
    probe.reset();
    ASSERT_TRUE(outcome.isFinished());
    EXPECT_EQ(outcome.result(), Health::unreachable());
}

TEST_F(ProbeOfAPort, WaitsLongerForWhoTalksButNotForEver)
{
    probe->received(start + 400ms);
    EXPECT_EQ(probe->deadline(), start + 2900ms);
    probe->received(start + 800ms);
    EXPECT_EQ(probe->deadline(), start + 3000ms);
}

TEST_F(ProbeOfAPort, FollowsRedirectsWithinTheTimeOfTheirRequest)
{
    const ResponseHead redirect = response("HTTP/1.1 302 Found\r\nLocation: /a\r\n\r\n");
    EXPECT_EQ(probe->answered(redirect, start + 700ms), Next::ask);
    EXPECT_EQ(probe->method(), Probe::Method::head);
    EXPECT_EQ(probe->target().path(), "/a");
    probe->received(start + 2s);
    EXPECT_EQ(probe->deadline(), start + 3s);
    EXPECT_EQ(probe->answered(response("HTTP/1.1 404 No\r\n\r\n"), start + 800ms), Next::end);
    EXPECT_EQ(outcome.result(), Health::healthy(404, 800));
}

TEST_F(ProbeOfAPort, FollowsTwentyRedirectsOfEachRequest)
{
    const ResponseHead redirect = response("HTTP/1.1 302 Found\r\nLocation: /a\r\n\r\n");
    for (const auto method : {Probe::Method::head, Probe::Method::get}) {
        EXPECT_EQ(probe->method(), method);
        EXPECT_EQ(probe->target().path(), "/"); // from the start again
        for (int i = 0; i < 20; ++i)
            EXPECT_EQ(probe->answered(redirect, start), Next::ask);
        EXPECT_EQ(probe->answered(redirect, start), method == Probe::Method::head ? Next::ask : Next::end);
    }
    EXPECT_EQ(outcome.result(), Health::unreachable());
}

TEST_F(ProbeOfAPort, TakesARedirectThatLeadsNowhereForAFailure)
{
    const ResponseHead redirect = response("HTTP/1.1 302 Found\r\nLocation: ftp://127.0.0.1/\r\n\r\n");
    EXPECT_EQ(probe->answered(redirect, start), Next::ask);
    EXPECT_EQ(probe->method(), Probe::Method::get);
    EXPECT_EQ(probe->answered(redirect, start), Next::end);
    EXPECT_EQ(outcome.result(), Health::unreachable());
}

TEST_F(ProbeOfAPort, SettlesForTheRedirectThatCannotBeFollowed)
{
    const ResponseHead redirect = response("HTTP/1.1 307 T\r\nLocation: https://example.invalid/\r\n\r\n");
    EXPECT_EQ(probe->answered(redirect, start), Next::ask);
    EXPECT_FALSE(probe->target().isLocal());
    probe->settleForRedirect(start + 3ms);
    EXPECT_EQ(outcome.result(), Health::healthy(307, 3));
}

} // namespace portolan
