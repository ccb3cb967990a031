#include "Waits.h"

#include <QCoroTask>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace portolan {

namespace {

/// Something to wait for that happens when the test says so.
class Gate : public Wait
{
public:
    explicit Gate(Waits &waits)
        : Wait(waits)
    {}
    using Wait::wake;

    Awaiter<Gate> opened() { return {this}; }

private:
    friend Awaiter<Gate>;
    bool isReady() const { return isCancelled(); }
    void begin() {}
    bool result() { return !isCancelled(); }
};

struct Waiter
{
    std::vector<bool> results;
    /// Held by the coroutine's frame: gone when the frame is.
    std::weak_ptr<int> frame;

    QCoro::Task<> wait(Gate &gate, int times)
    {
        const auto token = std::make_shared<int>();
        frame = token;
        for (int i = 0; i < times; ++i)
            results.push_back(co_await gate.opened());
    }
};

} // namespace

TEST(Waits, AWaitLastsUntilItIsWoken)
{
    Waits waits;
    Gate gate(waits);
    Waiter waiter;
    waiter.wait(gate, 2);
    EXPECT_TRUE(waiter.results.empty());
    gate.wake();
    EXPECT_EQ(waiter.results, std::vector({true}));
    gate.wake();
    EXPECT_EQ(waiter.results, std::vector({true, true}));
    EXPECT_TRUE(waiter.frame.expired());
}

TEST(Waits, WakingWithoutAWaiterDoesNothing)
{
    Waits waits;
    Gate gate(waits);
    gate.wake();
    Waiter waiter;
    waiter.wait(gate, 1);
    EXPECT_TRUE(waiter.results.empty());
    gate.wake();
    EXPECT_EQ(waiter.results, std::vector({true}));
}

TEST(Waits, CancellingEndsEveryWaitAndFreesTheCoroutines)
{
    Waits waits;
    Gate first(waits);
    Gate second(waits);
    Waiter a, b;
    a.wait(first, 1);
    b.wait(second, 1);
    waits.cancel();
    EXPECT_EQ(a.results, std::vector({false}));
    EXPECT_EQ(b.results, std::vector({false}));
    EXPECT_TRUE(a.frame.expired());
    EXPECT_TRUE(b.frame.expired());
}

TEST(Waits, LaterWaitsEndAtOnceWhenCancelled)
{
    Waits waits;
    Gate gate(waits);
    waits.cancel();
    Waiter waiter;
    waiter.wait(gate, 3);
    EXPECT_EQ(waiter.results, std::vector({false, false, false}));
}

TEST(Waits, TheirDestructionCancels)
{
    Waiter waiter;
    const auto waitInFrame = [&waiter](Waits &waits) -> QCoro::Task<> {
        Gate gate(waits);
        waiter.results.push_back(co_await gate.opened());
    };
    {
        Waits waits;
        waitInFrame(waits);
    }
    EXPECT_EQ(waiter.results, std::vector({false}));
}

TEST(Waits, ACoroutineThatEndsMayEndOthers)
{
    Waits waits;
    Gate first(waits);
    Gate second(waits);
    std::vector<int> ended;
    const auto wakeOther = [&](Gate &own, Gate &other, int number) -> QCoro::Task<> {
        co_await own.opened();
        ended.push_back(number);
        other.wake();
    };
    wakeOther(first, second, 1);
    wakeOther(second, first, 2);
    waits.cancel();
    EXPECT_EQ(ended.size(), 2);
}

} // namespace portolan
