#include "logging/LogTargetRegistry.h"

#include "tests/support/RecordingTarget.h"
#include "tests/support/WrappedSystem.h"
#include "tests/unit/logging/LogFixture.h"

#include <thread>

using namespace test;
using namespace zant;

namespace
{

std::uint64_t DispatchWide(LogTargetRegistry const& registry, wchar_t const* group, wchar_t const* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    auto const result =
        Dispatch(registry, group, LogLevel::Info, L"r", L"p", L"co", L"ca", L"detail", L"origin", format, arguments);
    va_end(arguments);
    return result;
}

// Makes a target the default target of the process while it exists.
class DefaultTarget
{
  public:
    explicit DefaultTarget(LogTargetDefault* target) { g_defaultLogTarget = target; }

    DefaultTarget(DefaultTarget const&) = delete;
    DefaultTarget& operator=(DefaultTarget const&) = delete;

    ~DefaultTarget() { g_defaultLogTarget = nullptr; }
};

class LogTargetRegistryDefault : public LogFixture
{
  protected:
    LogTargetRegistry registry;
};

} // namespace

TEST(LogTargetRegistry, IsOneForTheProcess)
{
    EXPECT_EQ(&GetLogTargetRegistry(), &GetLogTargetRegistry());
}

TEST(LogTargetRegistry, KeepsTargetsInTheOrderOfRegistration)
{
    RecordingTarget first(L"G"), second(L"G"), other(L"g");
    LogTargetRegistry registry;
    registry.Register(second);
    registry.Register(other);
    registry.Register(first);
    ASSERT_NE(registry.Find(L"G"), nullptr);
    EXPECT_EQ(*registry.Find(L"G"), (LogTargetRegistry::Targets{&second, &first}));
    EXPECT_EQ(*registry.Find(L"g"), LogTargetRegistry::Targets{&other});
    EXPECT_EQ(registry.Find(L"other"), nullptr);
}

TEST(LogTargetRegistry, CountsEachRegistrationOnce)
{
    RecordingTarget target(L"G");
    LogTargetRegistry registry, another;
    registry.Register(target);
    registry.Register(target);
    EXPECT_EQ(target.refCount, 1u);
    EXPECT_EQ(registry.Find(L"G")->size(), 1u);
    another.Register(target);
    EXPECT_EQ(target.refCount, 2u);
}

TEST(LogTargetRegistry, CountsUnderTheTargetsLock)
{
    RecordingTarget target(L"G");
    LogTargetRegistry registry;
    UniqueHandle const arrived(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    std::uint32_t countBeforeLeaving = 0;
    EnterCriticalSectionCall const enter([&](auto next, CRITICAL_SECTION* section) {
        if (section == &target.refLock)
        {
            SetEvent(arrived.Get());
        }
        next(section);
    });
    LeaveCriticalSectionCall const leave([&](auto next, CRITICAL_SECTION* section) {
        if (section == &target.refLock)
        {
            countBeforeLeaving = target.refCount;
        }
        next(section);
    });
    EnterCriticalSectionCall::Original(&target.refLock);
    std::thread registering([&] {
        registry.Register(target);
        SetEvent(arrived.Get()); // also without having come to the lock
    });
    WaitForSingleObject(arrived.Get(), INFINITE); // the watchdog ends a test that hangs here
    EXPECT_EQ(target.refCount, 0u);
    LeaveCriticalSectionCall::Original(&target.refLock);
    registering.join();
    EXPECT_EQ(countBeforeLeaving, 1u);
}

TEST(LogTargetRegistryDispatch, DoesNothingForANullGroup)
{
    RecordingTarget target(L"");
    LogTargetRegistry registry;
    registry.Register(target);
    EXPECT_EQ(DispatchWide(registry, nullptr, L"m"), 0u);
    EXPECT_TRUE(target.calls.empty());
}

TEST(LogTargetRegistryDispatch, DoesNothingForAnUnknownGroup)
{
    RecordingTarget target(L"G");
    LogTargetRegistry registry;
    registry.Register(target);
    EXPECT_EQ(DispatchWide(registry, L"H", L"m"), 0u);
    EXPECT_TRUE(target.calls.empty());
}

TEST(LogTargetRegistryDispatch, GivesEveryTargetTheWholeCall)
{
    RecordingTarget first(L"G"), second(L"G");
    LogTargetRegistry registry;
    registry.Register(first);
    registry.Register(second);
    DispatchWide(registry, L"G", L"%d %ls", 5, L"five");
    RecordedCall const expected = {.level = LogLevel::Info,
                                   .fields = {L"r", L"p", L"co", L"ca"},
                                   .detail = L"detail",
                                   .origin = L"origin",
                                   .message = L"5 five"};
    EXPECT_EQ(first.calls, std::vector{expected});
    EXPECT_EQ(second.calls, std::vector{expected});
}

TEST(LogTargetRegistryDispatch, ReturnsWhatTheLastTargetReturned)
{
    RecordingTarget first(L"G"), second(L"G");
    LogTargetRegistry registry;
    registry.Register(first);
    registry.Register(second);
    second.result = false;
    EXPECT_EQ(DispatchWide(registry, L"G", L"m"), 0u);
    first.result = false;
    second.result = true;
    EXPECT_EQ(DispatchWide(registry, L"G", L"m"), 1u);
}

TEST_F(LogTargetRegistryDefault, FailsWithoutADefaultTarget)
{
    EXPECT_FALSE(RegisterDefaultTarget(registry));
}

TEST_F(LogTargetRegistryDefault, RegistersNothingWhenTheTargetCannotBeOpened)
{
    LogTargetDefault target;
    DefaultTarget const installed(&target);
    target.enabled = false;
    EXPECT_FALSE(RegisterDefaultTarget(registry));
    EXPECT_EQ(registry.Find(L"ZEB"), nullptr);
    EXPECT_EQ(target.refCount, 0u);
}

TEST_F(LogTargetRegistryDefault, OpensAndRegistersTheTargetUnderItsGroup)
{
    LogTargetDefault target;
    DefaultTarget const installed(&target);
    Configure(target);
    EXPECT_TRUE(RegisterDefaultTarget(registry));
    EXPECT_TRUE(target.isOpen);
    EXPECT_EQ(target.refCount, 1u);
    ASSERT_NE(registry.Find(L"ZEB"), nullptr);
    EXPECT_EQ(*registry.Find(L"ZEB"), LogTargetRegistry::Targets{&target});
}

TEST_F(LogTargetRegistryDefault, SucceedsAgainWithoutRegisteringTwice)
{
    LogTargetDefault target;
    DefaultTarget const installed(&target);
    Configure(target);
    EXPECT_TRUE(RegisterDefaultTarget(registry));
    EXPECT_TRUE(RegisterDefaultTarget(registry));
    EXPECT_EQ(target.refCount, 1u);
    EXPECT_EQ(registry.Find(L"ZEB")->size(), 1u);
}
