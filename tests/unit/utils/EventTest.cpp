#include "utils/Event.h"
#include "tests/support/RecordingHook.h"
#include "tests/support/WrappedSystem.h"

#include <gtest/gtest.h>
#include <memory>
#include <thread>

using namespace test;

namespace
{

using Lines = std::vector<test::RecordingHook::Line>;
using zant::EventWaitResult;

// Nothing in the library frees a record; a test does.
struct Free
{
    void operator()(zant::ZANT_Event_t* record) const
    {
        CloseHandle(record->handle);
        delete record;
    }
};

using Record = std::unique_ptr<zant::ZANT_Event_t, Free>;

bool IsSignalled(Record const& record)
{
    return WaitCall::Original(record->handle, 0) == WAIT_OBJECT_0;
}

TEST(Event, IsPrivateResetsAutomaticallyAndStartsNotSignalled)
{
    CreateEventCall const create(
        [&](auto system, SECURITY_ATTRIBUTES* attributes, BOOL manual, BOOL initial, wchar_t const* name) {
            EXPECT_EQ(attributes, nullptr);
            EXPECT_FALSE(manual);
            EXPECT_FALSE(initial);
            EXPECT_EQ(name, nullptr);
            return system(attributes, manual, initial, name);
        });
    Record const record(zant::CreateEvnt());
    EXPECT_FALSE(IsSignalled(record));
}

TEST(Event, IsNeverSignalledWhenItIsNew)
{
    CreateEventCall const create([&](auto system, auto attributes, BOOL manual, BOOL, auto name) {
        return system(attributes, manual, TRUE, name);
    });
    Record const record(zant::CreateEvnt());
    EXPECT_FALSE(IsSignalled(record));
}

TEST(Event, KeepsASignalThatCameBeforeTheWait)
{
    Record const record(zant::CreateEvnt());
    zant::SetEvnt(record.get());
    EXPECT_EQ(zant::WaitforEvent(record.get(), INFINITE), EventWaitResult::Signalled);
}

TEST(Event, ReleasesAWaitFromAnotherThread)
{
    Record const record(zant::CreateEvnt());
    std::thread signaller([&] { zant::SetEvnt(record.get()); });
    EXPECT_EQ(zant::WaitforEvent(record.get(), INFINITE), EventWaitResult::Signalled);
    signaller.join();
}

TEST(Event, TakesItsSignalWithTheWait)
{
    Record const record(zant::CreateEvnt());
    zant::SetEvnt(record.get());
    zant::WaitforEvent(record.get(), 0);
    EXPECT_EQ(zant::WaitforEvent(record.get(), 0), EventWaitResult::TimedOut);
}

TEST(Event, WaitsAsLongAsItIsTold)
{
    Record const record(zant::CreateEvnt());
    std::vector<DWORD> timeouts;
    WaitCall const wait([&](auto, HANDLE handle, DWORD timeout) -> DWORD {
        EXPECT_EQ(handle, record->handle);
        timeouts.push_back(timeout);
        return WAIT_TIMEOUT;
    });
    EXPECT_EQ(zant::WaitforEvent(record.get(), 60'000), EventWaitResult::TimedOut);
    EXPECT_EQ(timeouts, std::vector<DWORD>{60'000});
}

class EventWait : public testing::TestWithParam<std::pair<DWORD, std::int32_t>>
{
};

TEST_P(EventWait, TellsItsOutcomeAndLeavesTheEventNotSignalled)
{
    auto const [outcome, result] = GetParam();
    Record const record(zant::CreateEvnt());
    zant::SetEvnt(record.get());
    {
        WaitCall const wait([&](auto, HANDLE, DWORD) -> DWORD { return outcome; });
        EXPECT_EQ(static_cast<std::int32_t>(zant::WaitforEvent(record.get(), 0)), result);
    }
    EXPECT_FALSE(IsSignalled(record));
}

INSTANTIATE_TEST_SUITE_P(Outcomes, EventWait,
                         testing::Values(std::pair(WAIT_OBJECT_0, 0), std::pair(WAIT_TIMEOUT, 1),
                                         std::pair(WAIT_ABANDONED_0, 2), std::pair(WAIT_FAILED, 2),
                                         std::pair(WAIT_OBJECT_0 + 1, 2)));

TEST(Event, StaysSignalledWhenTheSignalComesAfterTheWaitTimedOut)
{
    test::RecordingHook const log;
    Record const record(zant::CreateEvnt());
    EXPECT_EQ(zant::WaitforEvent(record.get(), 0), EventWaitResult::TimedOut);
    zant::SetEvnt(record.get());
    EXPECT_TRUE(IsSignalled(record));
    EXPECT_EQ(log.Lines(), Lines());
}

TEST(Event, CannotBeMadeWhenTheSystemHasNone)
{
    test::RecordingHook const log;
    CreateEventCall const create([](auto, auto, BOOL, BOOL, auto) -> HANDLE { return nullptr; });
    EXPECT_EQ(zant::CreateEvnt(), nullptr);
    EXPECT_EQ(log.Lines(), (Lines{{50, L"ZANTUtils", L"ZANTEventsIntl", L"", L"", L"Failed to create Event"},
                                  {40, L"ZANTUtils", L"ZANTEvents", L"", L"", L"Failed in CreateEvnt"}}));
}

TEST(EventRecord, IsFilledWithANewEvent)
{
    zant::ZANT_Event_t record{nullptr};
    EXPECT_EQ(zant::CreateEvntIntl(&record), 0);
    EXPECT_TRUE(CloseHandle(record.handle));
}

TEST(EventRecord, IsNotFilledWhenTheSystemHasNoEvent)
{
    CreateEventCall const create([](auto, auto, BOOL, BOOL, auto) -> HANDLE { return nullptr; });
    zant::ZANT_Event_t record{nullptr};
    EXPECT_EQ(zant::CreateEvntIntl(&record), -1);
    EXPECT_EQ(record.handle, nullptr);
}

TEST(EventNull, IsReportedWhenSet)
{
    test::RecordingHook const log;
    zant::SetEvnt(nullptr);
    EXPECT_EQ(log.Lines(),
              (Lines{{50, L"ZANTUtils", L"ZANTEvents", L"", L"", L"NULL ZANT_Event_t object passed in SetEvnt "}}));
}

TEST(EventNull, IsReportedWhenWaitedForAndFailsAtOnce)
{
    test::RecordingHook const log;
    EXPECT_EQ(zant::WaitforEvent(nullptr, INFINITE), EventWaitResult::Failed);
    EXPECT_EQ(log.Lines(), (Lines{{50, L"ZANTUtils", L"ZANTEvents", L"", L"",
                                   L"NULL ZANT_Event_t object passed in WaitforEvent "}}));
}

} // namespace

WRAP(CreateEventCall, CreateEventW);
WRAP(WaitCall, WaitForSingleObject);
