// SPDX-License-Identifier: MIT
#include "ResponseHead.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace portolan {

using namespace std::string_literals;
using State = ResponseHead::State;

namespace {

// A head that has been given `bytes` one by one: the result does not depend on how they arrive.
ResponseHead readSlowly(const std::string &bytes)
{
    ResponseHead head;
    for (const char byte : bytes)
        head.read({&byte, 1});
    return head;
}

ResponseHead readAtOnce(const std::string &bytes)
{
    ResponseHead head;
    head.read(bytes);
    return head;
}

} // namespace

struct Answer
{
    const char *name;
    std::string bytes;
    State state;
    int status = 0;
    std::string redirect = {};
};

static void PrintTo(const Answer &answer, std::ostream *out)
{
    *out << answer.name;
}

class ResponseHeadOf : public testing::TestWithParam<Answer>
{};

TEST_P(ResponseHeadOf, IsReadHoweverItArrives)
{
    const Answer &answer = GetParam();
    for (const ResponseHead &head : {readAtOnce(answer.bytes), readSlowly(answer.bytes)}) {
        EXPECT_EQ(head.state(), answer.state);
        EXPECT_EQ(head.redirect(), answer.redirect);
        if (answer.state == State::Complete) {
            EXPECT_EQ(head.status(), answer.status);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Answers, ResponseHeadOf,
    testing::Values(
        Answer{"Ordinary", "HTTP/1.1 200 OK\r\nServer: x\r\n\r\n", State::Complete, 200},
        Answer{"Http10", "HTTP/1.0 404 Not Found\r\n\r\n", State::Complete, 404},
        Answer{"Http2AsALine", "HTTP/2 200 \r\n\r\n", State::Complete, 200},
        Answer{"BareLf", "HTTP/1.1 200 OK\nA: b\n\n", State::Complete, 200},
        Answer{"NoReason", "HTTP/1.1 500\r\n\r\n", State::Complete, 500},
        Answer{"SpacesAroundTheStatus", "HTTP/1.1   204   No\r\n\r\n", State::Complete, 204},
        Answer{"UnusualStatus", "HTTP/1.1 999 Request denied\r\n\r\n", State::Complete, 999},
        Answer{"HeaderWithoutColon", "HTTP/1.1 200 OK\r\nodd\r\n\r\n", State::Complete, 200},
        Answer{"NulInAHeader", "HTTP/1.1 200 OK\r\nA: \0b\r\n\r\n"s, State::Complete, 200},
        Answer{"ABodyBehindIt", "HTTP/1.1 200 OK\r\n\r\nHTTP/1.1 500 No\r\n\r\n", State::Complete, 200},
        Answer{"InterimFirst",
               "HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 103 Early\r\nLocation: /no\r\n\r\n"
               "HTTP/1.1 201 Created\r\n\r\n",
               State::Complete, 201},
        Answer{"Redirect", "HTTP/1.1 302 Found\r\nLocation: /login\r\n\r\n", State::Complete, 302, "/login"},
        Answer{"RedirectInOtherLetters", "HTTP/1.1 301 M\r\nLOCATION:\t /a b \r\n\r\n", State::Complete, 301,
               "/a b"},
        Answer{"RedirectTwice", "HTTP/1.1 307 T\r\nLocation: /a\r\nLocation: /b\r\n\r\n", State::Complete,
               307, "/a"},
        Answer{"RedirectToNowhere", "HTTP/1.1 308 P\r\nLocation:\r\n\r\n", State::Complete, 308},
        Answer{"RedirectBehindEarlyHints",
               "HTTP/1.1 103 Early\r\nLocation: /no\r\n\r\nHTTP/1.1 303 S\r\nLocation: /yes\r\n\r\n",
               State::Complete, 303, "/yes"},
        Answer{"LocationOfWhatWasMade", "HTTP/1.1 201 Created\r\nLocation: /x\r\n\r\n", State::Complete, 201},
        Answer{"NotModified", "HTTP/1.1 304 Not Modified\r\nLocation: /x\r\n\r\n", State::Complete, 304},
        Answer{"NotEndedYet", "HTTP/1.1 200 OK\r\nServer: x\r\n", State::Incomplete},
        Answer{"OnlyInterim", "HTTP/1.1 100 Continue\r\n\r\n", State::Incomplete},
        Answer{"StartOfTheProtocol", "HTT", State::Incomplete}, Answer{"Nothing", "", State::Incomplete}),
    [](const auto &row) { return std::string(row.param.name); });

INSTANTIATE_TEST_SUITE_P(
    NoAnswers, ResponseHeadOf,
    testing::Values(Answer{"Http09", "<html>", State::Invalid},
                    Answer{"Ssh", "SSH-2.0-x\r\n", State::Invalid},
                    Answer{"Redis", "-ERR unknown command\r\n", State::Invalid},
                    Answer{"TlsAlert", "\x15\x03\x01\x00\x02\x02\x46"s, State::Invalid},
                    Answer{"EmptyLine", "\r\n\r\n", State::Invalid},
                    Answer{"SpaceFirst", " HTTP/1.1 200 OK\r\n", State::Invalid},
                    Answer{"LowerCase", "http/1.1 200 OK\r\n", State::Invalid},
                    Answer{"NoVersion", "HTTP/ 200 OK\r\n", State::Invalid},
                    Answer{"OddVersion", "HTTP/1,1 200 OK\r\n", State::Invalid},
                    Answer{"NoStatus", "HTTP/1.1\r\n", State::Invalid},
                    Answer{"Status000", "HTTP/1.1 000 Odd\r\n", State::Invalid},
                    Answer{"Status099", "HTTP/1.1 099 Odd\r\n", State::Invalid},
                    Answer{"NegativeStatus", "HTTP/1.1 -20 Odd\r\n", State::Invalid},
                    Answer{"StatusOfFiveDigits", "HTTP/1.1 99999 Odd\r\n", State::Invalid},
                    Answer{"StatusInOneWithItsReason", "HTTP/1.1 200OK\r\n", State::Invalid},
                    Answer{"GarbageAfterAnInterim", "HTTP/1.1 100 C\r\n\r\nhello", State::Invalid}),
    [](const auto &row) { return std::string(row.param.name); });

TEST(ResponseHead, GivesUpAfterSixteenInterimResponses)
{
    const std::string interim = "HTTP/1.1 100 Continue\r\n\r\n";
    ResponseHead head;
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(head.read(interim), State::Incomplete);
    EXPECT_EQ(ResponseHead(head).read("HTTP/1.1 200 OK\r\n\r\n"), State::Complete);
    EXPECT_EQ(head.read(interim), State::Invalid);
}

TEST(ResponseHead, GivesUpAfterAQuarterMegabyte)
{
    for (const std::string &rest : {"X-Odd: 0123456789\r\n"s, "0123456789"s}) {
        ResponseHead head;
        head.read("HTTP/1.1 200 OK\r\nA: ");
        size_t length = 20;
        while (head.read(rest) == State::Incomplete && length < 1 << 20)
            length += rest.size();
        EXPECT_EQ(head.state(), State::Invalid);
        EXPECT_NEAR(double(length), 256 * 1024, double(128 * 1024));
    }
}

TEST(ResponseHead, TakesTheSameLengthHoweverItArrives)
{
    const std::string bytes = "HTTP/1.1 200 OK\r\nA: " + std::string(200'000, 'a') + "\r\n\r\n";
    EXPECT_EQ(readAtOnce(bytes).state(), State::Complete);
    EXPECT_EQ(readSlowly(bytes).state(), State::Complete);
}

TEST(ResponseHead, StaysWhatItIsOnceComplete)
{
    ResponseHead head = readAtOnce("HTTP/1.1 200 OK\r\n\r\n");
    EXPECT_EQ(head.read("garbage\r\n"), State::Complete);
    EXPECT_EQ(head.status(), 200);
}

TEST(ResponseHead, LimitsALocationLineTo8KiB)
{
    const std::string name = "Location: ";
    for (const std::string &lineEnd : {"\r\n"s, "\n"s}) {
        for (const size_t excess : {0, 1, 2, 3, 100'000}) {
            const std::string target(8 * 1024 - name.size() + excess, 'a');
            const std::string headers = name + target + lineEnd + lineEnd;
            const std::string redirect = "HTTP/1.1 302 Found" + lineEnd + headers;
            const std::string page = "HTTP/1.1 200 OK" + lineEnd + headers;
            for (const ResponseHead &head : {readAtOnce(redirect), readSlowly(redirect)})
                EXPECT_EQ(head.state(), excess == 0 ? State::Complete : State::Invalid) << excess;
            for (const ResponseHead &head : {readAtOnce(page), readSlowly(page)})
                EXPECT_EQ(head.state(), State::Complete) << excess;
            if (excess == 0) {
                EXPECT_EQ(readSlowly(redirect).redirect(), target);
            }
        }
    }
}

} // namespace portolan
