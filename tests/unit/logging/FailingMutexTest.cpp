#include "tests/unit/logging/FailingSystem.h"

#include <optional>
#include <thread>
#include <utility>

using namespace test;
using namespace zant;

using FailingMutex = FailingSystem;

TEST_F(FailingMutex, WithoutAMutexTheTargetOpensButWritesNothing)
{
    CreateMutexCall const fault(Failing(HANDLE(nullptr), ERROR_INVALID_HANDLE));
    EXPECT_TRUE(target.Open());
    EXPECT_TRUE(target.isOpen);
    EXPECT_FALSE(target.useLock);
    EXPECT_TRUE(LogAt(target, 0, L"lost"));
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
}

TEST_F(FailingMutex, AMutexThatMayNotBeCreatedIsOpenedWithoutAnyRight)
{
    std::optional<DWORD> access;
    std::wstring name;
    NamedMutex others;
    ASSERT_TRUE(others.CreateOrOpen(LogName().c_str()));
    CreateMutexCall const fault(Failing(HANDLE(nullptr), ERROR_ACCESS_DENIED));
    OpenMutexCall const open([&](auto next, DWORD asked, BOOL inherit, wchar_t const* mutexName) {
        access = asked;
        name = mutexName;
        return next(MUTEX_ALL_ACCESS, inherit, mutexName);
    });
    EXPECT_TRUE(target.Open());
    EXPECT_EQ(access, 0u);
    EXPECT_EQ(name, LogName());
    LogAt(target, 0, L"m");
    EXPECT_EQ(MessagesIn(LogPath()), std::vector<std::wstring>{L"m"});
    EXPECT_TRUE(target.Close());
}

TEST_F(FailingMutex, AMutexThatMayNotBeOpenedEitherIsDoneWithout)
{
    CreateMutexCall const create(Failing(HANDLE(nullptr), ERROR_ACCESS_DENIED));
    OpenMutexCall const open(Failing(HANDLE(nullptr), ERROR_ACCESS_DENIED));
    EXPECT_TRUE(target.Open());
    EXPECT_FALSE(target.useLock);
}

TEST_F(FailingMutex, OtherErrorsOfTheCreationDoNotLeadToAnOpening)
{
    bool opened = false;
    CreateMutexCall const create(Failing(HANDLE(nullptr), ERROR_INVALID_HANDLE));
    OpenMutexCall const open([&](auto...) {
        opened = true;
        return HANDLE(nullptr);
    });
    EXPECT_TRUE(target.Open());
    EXPECT_FALSE(opened);
}

namespace
{

class FailingMutexWait : public FailingSystem, public testing::WithParamInterface<DWORD>
{
};

INSTANTIATE_TEST_SUITE_P(Outcomes, FailingMutexWait, testing::Values(DWORD{WAIT_TIMEOUT}, DWORD{WAIT_FAILED}));

} // namespace

TEST_P(FailingMutexWait, WhileOpeningSilencesTheTarget)
{
    {
        WaitCall const fault(Failing(GetParam(), ERROR_INVALID_HANDLE));
        EXPECT_TRUE(target.Open());
    }
    EXPECT_TRUE(target.isOpen);
    EXPECT_FALSE(target.useLock);
    EXPECT_TRUE(LogAt(target, 0, L"lost"));
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
}

TEST_P(FailingMutexWait, WhileOpeningLeavesOutTheSizeCheck)
{
    WriteLogOfSize(LogPath(), limit);
    WaitCall const fault(Failing(GetParam(), ERROR_INVALID_HANDLE));
    EXPECT_TRUE(target.Open());
    EXPECT_TRUE(Copies().empty());
}

TEST_P(FailingMutexWait, OnceMeansThatNoFurtherLineReachesTheFile)
{
    ASSERT_TRUE(target.Open());
    LogAt(target, 0, L"before");
    {
        WaitCall const fault(Failing(GetParam(), ERROR_INVALID_HANDLE));
        EXPECT_TRUE(LogAt(target, 0, L"lost"));
    }
    EXPECT_TRUE(LogAt(target, 0, L"after"));
    EXPECT_EQ(MessagesIn(LogPath()), std::vector<std::wstring>{L"before"});
}

TEST_P(FailingMutexWait, OnceIsNotForgottenByCloseAndOpen)
{
    ASSERT_TRUE(target.Open());
    {
        WaitCall const fault(Failing(GetParam(), ERROR_INVALID_HANDLE));
        EXPECT_TRUE(LogAt(target, 0, L"lost"));
    }
    target.Close();
    EXPECT_FALSE(target.useLock);
    WriteLogOfSize(LogPath(), limit);
    WaitCall const wait([](auto...) {
        ADD_FAILURE() << "there is nothing to wait for";
        return DWORD{WAIT_OBJECT_0};
    });
    EXPECT_TRUE(target.Open());
    EXPECT_TRUE(target.isOpen);
    EXPECT_FALSE(target.useLock);
    EXPECT_TRUE(Copies().empty());
    LogAt(target, 0, L"lost too");
    EXPECT_EQ(MessagesIn(LogPath()).size(), 1u) << "more than the line that the log was made with";
}

TEST_P(FailingMutexWait, OnceMeansThatLinesWithoutTheLockFlagAreNotWrittenEither)
{
    ASSERT_TRUE(target.Open());
    target.storedHeader.title = L"header";
    target.headerPending = true;
    {
        WaitCall const fault(Failing(GetParam(), ERROR_INVALID_HANDLE));
        EXPECT_TRUE(LogAt(target, 0, L"lost"));
    }
    EXPECT_TRUE(LogUnlocked(target, L"lost"));
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
    EXPECT_TRUE(target.headerPending);
}

namespace
{

// Two threads wait for the mutex. Without a ledger of handles, which would count those of the threads.
class FailingMutexThreads : public LogFixture, public testing::WithParamInterface<DWORD>
{
  protected:
    // A line whose wait succeeds, but only after that of another thread's line has failed.
    void LogBehindAFailedWait()
    {
        HANDLE mutex = nullptr;
        WaitCall const wait([&](auto next, HANDLE handle, DWORD milliseconds) {
            if (mutex == nullptr)
            {
                mutex = handle;
                auto const result = next(handle, milliseconds);
                std::thread([&] { LogAt(target, 0, L"lost"); }).join();
                return result;
            }
            return handle == mutex ? GetParam() : next(handle, milliseconds);
        });
        EXPECT_TRUE(LogAt(target, 0, L"lost too"));
    }

    // The next line rotates.
    void OpenWithARotationDue()
    {
        Configure(target);
        ASSERT_TRUE(target.Open());
        target.file.Reset();
        WriteLogOfSize(LogPath(), limit);
        target.lastLine = target.lastCheck + 900;
    }

    LogTargetDefault target;
};

INSTANTIATE_TEST_SUITE_P(Outcomes, FailingMutexThreads, testing::Values(DWORD{WAIT_TIMEOUT}, DWORD{WAIT_FAILED}));

} // namespace

TEST_P(FailingMutexThreads, WriteNothingOnceTheWaitOfOneHasFailed)
{
    Configure(target);
    ASSERT_TRUE(target.Open());
    LogBehindAFailedWait();
    EXPECT_FALSE(target.useLock);
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
}

TEST_P(FailingMutexThreads, DoNotRotateOnceTheWaitOfOneHasFailed)
{
    ASSERT_NO_FATAL_FAILURE(OpenWithARotationDue());
    LogBehindAFailedWait();
    EXPECT_FALSE(target.file);
    EXPECT_FALSE(FileExists(folder / (Base() + L" 2024-1-5 09-30-12.log")));
}

// The rotation is completed.
TEST_P(FailingMutexThreads, WriteNothingBehindARotationDuringWhichTheWaitOfOneHasFailed)
{
    ASSERT_NO_FATAL_FAILURE(OpenWithARotationDue());
    HANDLE mutex = nullptr;
    WaitCall const wait([&](auto next, HANDLE handle, DWORD milliseconds) {
        auto const isFirst = mutex == nullptr;
        mutex = isFirst ? handle : mutex;
        return handle == mutex && !isFirst ? GetParam() : next(handle, milliseconds);
    });
    auto isFirst = true;
    ReadFileCall const checking([&](auto next, auto... arguments) {
        if (std::exchange(isFirst, false))
        {
            std::thread([&] { LogAt(target, 0, L"lost"); }).join();
        }
        return next(arguments...);
    });
    LogAt(target, 0, L"lost too");
    EXPECT_FALSE(isFirst);
    EXPECT_FALSE(target.useLock);
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
}

// The line has released the mutex.
TEST_P(FailingMutexThreads, LeaveTheMutexToOthersOnceTheWaitOfOneHasFailed)
{
    Configure(target);
    ASSERT_TRUE(target.Open());
    LogBehindAFailedWait();
    NamedMutex others;
    ASSERT_TRUE(others.CreateOrOpen(LogName().c_str()));
    auto outcome = MutexWait::Failed;
    std::thread([&] { outcome = others.Wait(0).Outcome(); }).join();
    EXPECT_EQ(outcome, MutexWait::Acquired);
}

TEST_F(FailingMutex, TheWaitLastsAtMostTwoSeconds)
{
    std::vector<DWORD> waits;
    WaitCall const wait([&](auto next, HANDLE handle, DWORD milliseconds) {
        waits.push_back(milliseconds);
        return next(handle, milliseconds);
    });
    ASSERT_TRUE(target.Open());
    LogAt(target, 0, L"m");
    EXPECT_EQ(waits, (std::vector<DWORD>{2'000, 2'000}));
}

TEST_F(FailingMutex, TheLockIsUsedAgainAfterCloseAndOpen)
{
    ASSERT_TRUE(target.Open());
    target.Close();
    EXPECT_TRUE(target.useLock);
    ASSERT_TRUE(target.Open());
    EXPECT_TRUE(target.useLock);
}

namespace
{

class FailingMutexAbandoned : public FailingSystem
{
  protected:
    int released = 0;

  private:
    WaitCall m_wait{[](auto next, HANDLE handle, DWORD milliseconds) {
        auto const result = next(handle, milliseconds);
        return result == WAIT_OBJECT_0 ? DWORD{WAIT_ABANDONED} : result;
    }};
    ReleaseMutexCall m_release{[this](auto next, HANDLE handle) {
        ++released;
        return next(handle);
    }};
};

} // namespace

TEST_F(FailingMutexAbandoned, IsOwnedAndReleasedByALine)
{
    ASSERT_TRUE(target.Open());
    released = 0;
    LogAt(target, 0, L"m");
    EXPECT_EQ(released, 1);
    EXPECT_TRUE(target.useLock);
    EXPECT_EQ(MessagesIn(LogPath()), std::vector<std::wstring>{L"m"});
}

TEST_F(FailingMutexAbandoned, IsOwnedAndReleasedByOpen)
{
    WriteLogOfSize(LogPath(), limit);
    EXPECT_TRUE(target.Open());
    EXPECT_EQ(released, 1);
    EXPECT_TRUE(target.isOpen);
    EXPECT_TRUE(target.useLock);
    EXPECT_EQ(Copies().size(), 1u) << "the size was not checked";
}
