// SPDX-License-Identifier: MIT
#include "Probe.h"
#include "ScopedEnvironment.h"

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
    EXPECT_EQ(head.read(bytes), ResponseHead::State::Complete) << bytes;
    return head;
}

std::string methodOf(const Probe &probe)
{
    const std::string text = probe.requestText();
    return text.substr(0, text.find(' '));
}

class ProbeOfAPort : public testing::Test
{
protected:
    static constexpr Clock::time_point start{1h};

    HealthPromise promise;
    QFuture<Health> outcome = promise.future();
    std::optional<Probe> probe{std::in_place, ProbeRequest{3000, std::move(promise)}, start};
};

} // namespace

TEST_F(ProbeOfAPort, FirstRequestsTheHeadOfTheRoot)
{
    EXPECT_EQ(methodOf(*probe), "HEAD");
    EXPECT_EQ(probe->target().url(), "http://127.0.0.1:3000/");
    EXPECT_EQ(probe->deadline(), start + 2500ms);
    EXPECT_FALSE(outcome.isFinished());
}

TEST_F(ProbeOfAPort, EndsWithAResponseWhateverItsStatus)
{
    EXPECT_EQ(probe->answered(response("HTTP/1.1 405 No\r\n\r\n"), start + 12'999'999ns), Next::End);
    ASSERT_TRUE(outcome.isFinished());
    EXPECT_EQ(outcome.result(), Health::healthy(405, 12));
}

TEST_F(ProbeOfAPort, SendsAGetAfterAFailureAndCountsTheTimeOfBoth)
{
    EXPECT_EQ(probe->failed(start + 100ms), Next::Request);
    EXPECT_EQ(methodOf(*probe), "GET");
    EXPECT_EQ(probe->deadline(), start + 2600ms);
    EXPECT_EQ(probe->answered(response("HTTP/1.1 200 OK\r\n\r\n"), start + 150ms), Next::End);
    EXPECT_EQ(outcome.result(), Health::healthy(200, 150));
}

TEST_F(ProbeOfAPort, IsUnreachableAfterTwoFailures)
{
    EXPECT_EQ(probe->failed(start + 1ms), Next::Request);
    EXPECT_EQ(probe->failed(start + 2ms), Next::End);
    EXPECT_EQ(outcome.result(), Health::unreachable());
}

TEST_F(ProbeOfAPort, TriesARefusedRequestOnLocalhostWhereAskedTo)
{
    const ScopedEnvironment localhost("PORTOLAN_PROBE", "localhost");
    for (const std::string method : {"HEAD", "GET"}) {
        EXPECT_EQ(methodOf(*probe), method);
        EXPECT_EQ(probe->target().url(), "http://127.0.0.1:3000/");
        EXPECT_EQ(probe->failed(start, true), Next::Request);
        EXPECT_EQ(methodOf(*probe), method);
        EXPECT_EQ(probe->target().url(), "http://localhost:3000/");
        EXPECT_EQ(probe->failed(start, true), method == "HEAD" ? Next::Request : Next::End);
    }
    EXPECT_EQ(outcome.result(), Health::unreachable());
}

TEST_F(ProbeOfAPort, IsUnreachableWhenDestroyed)
{
    probe.reset();
    ASSERT_TRUE(outcome.isFinished());
    EXPECT_EQ(outcome.result(), Health::unreachable());
}

TEST_F(ProbeOfAPort, WaitsLongerWhileBytesArriveButNotIndefinitely)
{
    probe->received(start + 400ms);
    EXPECT_EQ(probe->deadline(), start + 2900ms);
    probe->received(start + 800ms);
    EXPECT_EQ(probe->deadline(), start + 3000ms);
}

TEST_F(ProbeOfAPort, FollowsRedirectsWithinTheTimeOfTheirRequest)
{
    const ResponseHead redirect = response("HTTP/1.1 302 Found\r\nLocation: /a\r\n\r\n");
    EXPECT_EQ(probe->answered(redirect, start + 700ms), Next::Request);
    EXPECT_EQ(methodOf(*probe), "HEAD");
    EXPECT_EQ(probe->target().path(), "/a");
    probe->received(start + 2s);
    EXPECT_EQ(probe->deadline(), start + 3s);
    EXPECT_EQ(probe->answered(response("HTTP/1.1 404 No\r\n\r\n"), start + 800ms), Next::End);
    EXPECT_EQ(outcome.result(), Health::healthy(404, 800));
}

TEST_F(ProbeOfAPort, FollowsTwentyRedirectsOfEachRequest)
{
    const ResponseHead redirect = response("HTTP/1.1 302 Found\r\nLocation: /a\r\n\r\n");
    for (const std::string method : {"HEAD", "GET"}) {
        EXPECT_EQ(methodOf(*probe), method);
        EXPECT_EQ(probe->target().path(), "/"); // from the start again
        for (int i = 0; i < 20; ++i)
            EXPECT_EQ(probe->answered(redirect, start), Next::Request);
        EXPECT_EQ(probe->answered(redirect, start), method == "HEAD" ? Next::Request : Next::End);
    }
    EXPECT_EQ(outcome.result(), Health::unreachable());
}

TEST_F(ProbeOfAPort, CountsARedirectToNoHttpAddressAsAFailure)
{
    const ResponseHead redirect = response("HTTP/1.1 302 Found\r\nLocation: ftp://127.0.0.1/\r\n\r\n");
    EXPECT_EQ(probe->answered(redirect, start), Next::Request);
    EXPECT_EQ(methodOf(*probe), "GET");
    EXPECT_EQ(probe->answered(redirect, start), Next::End);
    EXPECT_EQ(outcome.result(), Health::unreachable());
}

TEST_F(ProbeOfAPort, FollowsARedirectToAnotherHost)
{
    const ResponseHead redirect = response("HTTP/1.1 307 T\r\nLocation: https://example.invalid/\r\n\r\n");
    EXPECT_EQ(probe->answered(redirect, start), Next::Request);
    EXPECT_FALSE(probe->target().isLocal());
    EXPECT_EQ(probe->target().url(), "https://example.invalid/");
    EXPECT_FALSE(outcome.isFinished());
}

} // namespace portolan
