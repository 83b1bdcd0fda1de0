#include "utils/NamedMutex.h"

#include <gtest/gtest.h>
#include <string>
#include <thread>

using namespace zant;

namespace
{

// A name of the test's own: all processes of a session see each other's mutexes.
std::wstring OwnName()
{
    auto const* const test = testing::UnitTest::GetInstance()->current_test_info();
    std::string const name = test->name();
    return std::wstring(name.begin(), name.end()) + std::to_wstring(GetCurrentProcessId());
}

MutexWait OutcomeElsewhere(NamedMutex const& mutex, DWORD milliseconds)
{
    auto outcome = MutexWait::Failed;
    std::thread([&] { outcome = mutex.Wait(milliseconds).Outcome(); }).join();
    return outcome;
}

} // namespace

TEST(NamedMutex, StartsWithoutAHandle)
{
    EXPECT_FALSE(NamedMutex());
}

TEST(NamedMutex, IsCreatedWithoutAnOwner)
{
    NamedMutex mutex;
    EXPECT_TRUE(mutex.CreateOrOpen(OwnName().c_str()));
    EXPECT_TRUE(mutex);
    EXPECT_EQ(OutcomeElsewhere(mutex, 0), MutexWait::Acquired);
}

TEST(NamedMutex, IsTheSameForAllOfItsName)
{
    NamedMutex one, other;
    ASSERT_TRUE(one.CreateOrOpen(OwnName().c_str()));
    ASSERT_TRUE(other.CreateOrOpen(OwnName().c_str()));
    auto const scope = one.Wait(0);
    EXPECT_EQ(OutcomeElsewhere(other, 0), MutexWait::TimedOut);
}

TEST(NamedMutex, IsReleasedAtTheEndOfTheScope)
{
    NamedMutex mutex;
    ASSERT_TRUE(mutex.CreateOrOpen(OwnName().c_str()));
    {
        auto const scope = mutex.Wait(0);
        EXPECT_EQ(scope.Outcome(), MutexWait::Acquired);
        EXPECT_TRUE(scope.IsOwner());
        EXPECT_EQ(OutcomeElsewhere(mutex, 0), MutexWait::TimedOut);
    }
    EXPECT_EQ(OutcomeElsewhere(mutex, 0), MutexWait::Acquired);
}

TEST(NamedMutex, IsReleasedAsOftenAsItWasAcquired)
{
    NamedMutex mutex;
    ASSERT_TRUE(mutex.CreateOrOpen(OwnName().c_str()));
    {
        auto const outer = mutex.Wait(0);
        auto const inner = mutex.Wait(0);
        EXPECT_TRUE(inner.IsOwner());
    }
    EXPECT_EQ(OutcomeElsewhere(mutex, 0), MutexWait::Acquired);
}

TEST(NamedMutex, AnEndedOwnerLeavesItAbandoned)
{
    NamedMutex mutex;
    ASSERT_TRUE(mutex.CreateOrOpen(OwnName().c_str()));
    std::thread([] {
        NamedMutex own;
        own.CreateOrOpen(OwnName().c_str());
        alignas(MutexScope) static std::byte memory[sizeof(MutexScope)];
        new (memory) MutexScope(own.Wait(0)); // never released
    }).join();
    auto const scope = mutex.Wait(0);
    EXPECT_EQ(scope.Outcome(), MutexWait::Abandoned);
    EXPECT_TRUE(scope.IsOwner());
}

TEST(NamedMutex, AWaitWithoutAHandleFails)
{
    auto const scope = NamedMutex().Wait(0);
    EXPECT_EQ(scope.Outcome(), MutexWait::Failed);
    EXPECT_FALSE(scope.IsOwner());
}

TEST(NamedMutex, ANameOfAnotherKindOfObjectGivesNone)
{
    UniqueHandle const event(CreateEventW(nullptr, FALSE, FALSE, OwnName().c_str()));
    NamedMutex mutex;
    EXPECT_FALSE(mutex.CreateOrOpen(OwnName().c_str()));
    EXPECT_FALSE(mutex);
}

TEST(NamedMutex, WithAHandleKeepsIt)
{
    NamedMutex mutex;
    ASSERT_TRUE(mutex.CreateOrOpen(OwnName().c_str()));
    EXPECT_TRUE(mutex.CreateOrOpen(L"another name"));
    auto const scope = mutex.Wait(0);
    NamedMutex same;
    ASSERT_TRUE(same.CreateOrOpen(OwnName().c_str()));
    EXPECT_EQ(OutcomeElsewhere(same, 0), MutexWait::TimedOut);
}
