// SPDX-License-Identifier: MIT
#include "Eventually.h"
#include "PrivateBus.h"
#include "SingleInstance.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <future>

namespace portolan {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Outcome = SingleInstance::Outcome;

namespace {

/// A session with a runtime folder and, if `hasBus`, a session bus.
class Session
{
public:
    explicit Session(bool hasBus)
        : m_hasBus(hasBus)
    {}

    QDBusConnection connection()
    {
        return m_hasBus ? m_bus.connect() : QDBusConnection(u"no such connection"_s);
    }

    QString folder() const { return m_folder.path(); }

    /// Starts a second instance in another thread and returns its outcome.
    Outcome start(StartRequest request)
    {
        auto outcome = std::async(std::launch::async, [&] {
            SingleInstance second(connection(), folder());
            return second.claim(request);
        });
        EXPECT_TRUE(eventually([&] { return outcome.wait_for(0s) == std::future_status::ready; }));
        return outcome.get();
    }

private:
    bool m_hasBus;
    PrivateBus m_bus;
    QTemporaryDir m_folder;
};

} // namespace

// The parameter is whether the session has a bus.
class SingleInstances : public testing::TestWithParam<bool>
{
protected:
    void expectRequests(const QList<StartRequest> &expected)
    {
        EXPECT_TRUE(eventually([&] { return m_requests.size() >= expected.size(); }));
        EXPECT_EQ(m_requests, expected);
    }

    Session m_session{GetParam()};
    SingleInstance m_first{m_session.connection(), m_session.folder()};
    QList<StartRequest> m_requests;
    QMetaObject::Connection m_noted =
        QObject::connect(&m_first, &SingleInstance::requested, &m_first,
                         [this](StartRequest request) { m_requests += request; });
};

INSTANTIATE_TEST_SUITE_P(Sessions, SingleInstances, testing::Bool(),
                         [](const auto &test) { return test.param ? "Bus" : "NoBus"; });

TEST_P(SingleInstances, TheFirstStartSucceeds)
{
    EXPECT_EQ(m_first.claim(StartRequest::Open), Outcome::First);
    EXPECT_EQ(m_requests, QList<StartRequest>()) << "its own request is not emitted";
}

TEST_P(SingleInstances, ASecondStartForwardsItsRequest)
{
    ASSERT_EQ(m_first.claim(StartRequest::None), Outcome::First);
    EXPECT_EQ(m_session.start(StartRequest::Open), Outcome::Forwarded);
    EXPECT_EQ(m_session.start(StartRequest::Window), Outcome::Forwarded);
    expectRequests({StartRequest::Open, StartRequest::Window});
}

TEST_P(SingleInstances, ASecondStartInTheBackgroundForwardsNothing)
{
    ASSERT_EQ(m_first.claim(StartRequest::None), Outcome::First);
    EXPECT_EQ(m_session.start(StartRequest::None), Outcome::Forwarded);
    EXPECT_EQ(m_session.start(StartRequest::Open), Outcome::Forwarded);
    expectRequests({StartRequest::Open});
}

TEST_P(SingleInstances, ReportsThatTheFirstDoesNotAnswer)
{
    ASSERT_EQ(m_first.claim(StartRequest::None), Outcome::First);
    // Blocks this thread, whose event loop would have to answer.
    SingleInstance second(m_session.connection(), m_session.folder());
    EXPECT_EQ(second.claim(StartRequest::Open), Outcome::Unanswered);
}

TEST(SingleInstanceInFolder, RunsIfTheFolderIsUnusable)
{
    SingleInstance alone(QDBusConnection(u"no such connection"_s), u"/proc/self/no-such-folder"_s);
    EXPECT_EQ(alone.claim(StartRequest::Open), Outcome::First);
}

TEST(SingleInstanceInFolder, SucceedsAfterTheFirstHasEnded)
{
    const QTemporaryDir folder;
    const QDBusConnection noBus(u"no such connection"_s);
    {
        SingleInstance first(noBus, folder.path());
        ASSERT_EQ(first.claim(StartRequest::Open), Outcome::First);
    }
    SingleInstance next(noBus, folder.path());
    EXPECT_EQ(next.claim(StartRequest::Open), Outcome::First);
}

} // namespace portolan
