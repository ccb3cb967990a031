#include "Escalation.h"
#include "TestChild.h"

#include <gtest/gtest.h>

namespace portolan {

using namespace std::chrono_literals;

TEST(Escalation, KillsEachWhenItsTimeIsOver)
{
    Escalation escalation(20ms);
    TestChild first(TestChild::ignoresTerm);
    TestChild second(TestChild::ignoresTerm);
    escalation.add(std::make_shared<ProcessHandle>(first.pid()));
    escalation.add(std::make_shared<ProcessHandle>(second.pid()));
    EXPECT_EQ(first.collect(), SIGKILL);
    EXPECT_EQ(second.collect(), SIGKILL);

    TestChild third(TestChild::ignoresTerm);
    escalation.add(std::make_shared<ProcessHandle>(third.pid()));
    EXPECT_EQ(third.collect(), SIGKILL);
}

TEST(Escalation, SparesThoseWhoseTimeIsNotOverWhenItEnds)
{
    TestChild child(TestChild::ignoresTerm);
    {
        Escalation escalation(1h);
        escalation.add(std::make_shared<ProcessHandle>(child.pid()));
    }
    EXPECT_TRUE(child.isAlive());
}

TEST(Escalation, EndsWithoutEverHavingHadWork)
{
    const Escalation escalation(1h);
}

TEST(Escalation, IsNotHeldUpByThoseThatAreGone)
{
    Escalation escalation(1ms);
    escalation.add(std::make_shared<ProcessHandle>(0));
    TestChild gone(TestChild::endsOnTerm);
    const auto handle = std::make_shared<ProcessHandle>(gone.pid());
    handle->send(SIGTERM);
    gone.collect();
    escalation.add(handle);
    TestChild last(TestChild::ignoresTerm);
    escalation.add(std::make_shared<ProcessHandle>(last.pid()));
    EXPECT_EQ(last.collect(), SIGKILL);
}

} // namespace portolan
