#include "tests/unit/explore/EitherSystem.h"

using namespace test;

namespace
{

class MutexRules : public EitherSystem
{
  protected:
    HANDLE Create() const { return CreateMutexW(nullptr, FALSE, name.c_str()); }

    // Unique: tests run side by side.
    std::wstring const name = L"mutex of " + std::to_wstring(GetCurrentProcessId());
};

} // namespace

ON_EITHER_SYSTEM(MutexRules);

TEST_P(MutexRules, OneNameIsOneMutex)
{
    Opened const one(Create());
    EXPECT_NE(GetLastError(), DWORD{ERROR_ALREADY_EXISTS});
    Opened const two(Create());
    EXPECT_EQ(GetLastError(), DWORD{ERROR_ALREADY_EXISTS});
    EXPECT_TRUE(one && two);
    EXPECT_NE(one.Get(), two.Get());
}

TEST_P(MutexRules, OneThatIsFreeIsAcquiredAndReleased)
{
    Opened const mutex(Create());
    EXPECT_EQ(WaitForSingleObject(mutex.Get(), 0), DWORD{WAIT_OBJECT_0});
    EXPECT_TRUE(ReleaseMutex(mutex.Get()));
    EXPECT_FALSE(ReleaseMutex(mutex.Get()));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_NOT_OWNER});
}

TEST_P(MutexRules, AnotherProcessWaitsInVainWhileItIsOwned)
{
    Opened const mutex(Create());
    WaitForSingleObject(mutex.Get(), 0);
    AsAnotherProcess([&] {
        Opened const same(Create());
        EXPECT_EQ(WaitForSingleObject(same.Get(), 1), DWORD{WAIT_TIMEOUT});
        EXPECT_FALSE(ReleaseMutex(same.Get()));
        EXPECT_EQ(GetLastError(), DWORD{ERROR_NOT_OWNER});
    });
    ReleaseMutex(mutex.Get());
    AsAnotherProcess([&] {
        Opened const same(Create());
        EXPECT_EQ(WaitForSingleObject(same.Get(), 1), DWORD{WAIT_OBJECT_0});
        ReleaseMutex(same.Get());
    });
}

TEST_P(MutexRules, ItsOwnerAcquiresItAgainAndReleasesItAsOften)
{
    Opened const mutex(Create());
    WaitForSingleObject(mutex.Get(), 0);
    EXPECT_EQ(WaitForSingleObject(mutex.Get(), 0), DWORD{WAIT_OBJECT_0});
    ReleaseMutex(mutex.Get());
    AsAnotherProcess([&] {
        Opened const same(Create());
        EXPECT_EQ(WaitForSingleObject(same.Get(), 1), DWORD{WAIT_TIMEOUT});
    });
    EXPECT_TRUE(ReleaseMutex(mutex.Get()));
    EXPECT_FALSE(ReleaseMutex(mutex.Get()));
}

TEST_P(MutexRules, OneWhoseOwnerEndedIsAbandonedOnce)
{
    Opened const mutex(Create());
    AsAnotherProcess([&] {
        Opened const same(Create());
        EXPECT_EQ(WaitForSingleObject(same.Get(), 1), DWORD{WAIT_OBJECT_0});
    });
    EXPECT_EQ(WaitForSingleObject(mutex.Get(), 1), DWORD{WAIT_ABANDONED});
    EXPECT_TRUE(ReleaseMutex(mutex.Get()));
    EXPECT_EQ(WaitForSingleObject(mutex.Get(), 1), DWORD{WAIT_OBJECT_0});
    EXPECT_TRUE(ReleaseMutex(mutex.Get()));
}

TEST_P(MutexRules, ItIsGoneWithItsLastHandle)
{
    {
        Opened const one(Create());
        Opened const two(OpenMutexW(SYNCHRONIZE, FALSE, name.c_str()));
        EXPECT_TRUE(two);
    }
    EXPECT_EQ(OpenMutexW(SYNCHRONIZE, FALSE, name.c_str()), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_FILE_NOT_FOUND});
}

TEST_P(MutexRules, AHandleThatIsNoneCannotBeWaitedFor)
{
    Opened mutex(Create());
    auto* const handle = mutex.Get();
    mutex.Close();
    EXPECT_EQ(WaitForSingleObject(handle, 0), DWORD{WAIT_FAILED});
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_HANDLE});
}
