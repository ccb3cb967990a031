#include "Eventually.h"
#include "Mailbox.h"

#include <QCoroTask>

#include <gtest/gtest.h>

#include <memory>
#include <numeric>
#include <optional>
#include <thread>
#include <vector>

namespace portolan {

namespace {

/// A coroutine that reads a mailbox until nothing comes any more.
struct Reader
{
    std::vector<int> letters;
    bool isDone = false;
    std::optional<Mailbox<int>::Sender> sender;

    QCoro::Task<> read(Waits &waits, int count)
    {
        Mailbox<int> mailbox(waits);
        sender = mailbox.sender();
        for (int i = 0; i < count; ++i) {
            const std::optional<int> letter = co_await mailbox.next();
            if (!letter)
                break;
            letters.push_back(*letter);
        }
        isDone = true;
    }
};

} // namespace

TEST(Mailbox, DeliversInTheOrderOfArrivalThroughTheEventLoop)
{
    Waits waits;
    Reader reader;
    reader.read(waits, 3);
    reader.sender->send(1);
    reader.sender->send(2);
    EXPECT_TRUE(reader.letters.empty());
    ASSERT_TRUE(eventually([&] { return reader.letters.size() == 2; }));
    EXPECT_FALSE(reader.isDone);
    reader.sender->send(3);
    ASSERT_TRUE(eventually([&] { return reader.isDone; }));
    EXPECT_EQ(reader.letters, std::vector({1, 2, 3}));
}

TEST(Mailbox, WhatIsSentToOneThatIsGoneIsDropped)
{
    Waits waits;
    Reader reader;
    reader.read(waits, 1);
    reader.sender->send(1);
    ASSERT_TRUE(eventually([&] { return reader.isDone; }));
    reader.sender->send(2);
    settle();
    EXPECT_EQ(reader.letters, std::vector({1}));
}

TEST(Mailbox, LettersNotYetDeliveredAreDroppedWhenCancelled)
{
    Waits waits;
    Reader reader;
    reader.read(waits, 2);
    reader.sender->send(1);
    waits.cancel();
    EXPECT_TRUE(reader.isDone);
    settle();
    EXPECT_TRUE(reader.letters.empty());
}

TEST(Mailbox, TakesLettersFromManyThreads)
{
    constexpr int senders = 4;
    constexpr int lettersEach = 500;
    Waits waits;
    Reader reader;
    reader.read(waits, senders * lettersEach);
    std::vector<std::jthread> threads;
    for (int first = 0; first < senders; ++first) {
        threads.emplace_back([sender = *reader.sender, first] {
            for (int i = 0; i < lettersEach; ++i)
                sender.send(first + senders * i);
        });
    }
    ASSERT_TRUE(eventually([&] { return reader.isDone; }));
    std::ranges::sort(reader.letters);
    std::vector<int> all(senders * lettersEach);
    std::iota(all.begin(), all.end(), 0);
    EXPECT_EQ(reader.letters, all);
}

TEST(Mailbox, MayGoWhileThreadsAreSending)
{
    for (int round = 0; round < 50; ++round) {
        Reader reader;
        std::jthread thread;
        {
            Waits waits;
            reader.read(waits, 1000);
            thread = std::jthread([sender = *reader.sender] {
                for (int i = 0; i < 1000; ++i)
                    sender.send(i);
            });
            ASSERT_TRUE(eventually([&] { return !reader.letters.empty(); }));
        }
        EXPECT_TRUE(reader.isDone);
    }
}

} // namespace portolan
