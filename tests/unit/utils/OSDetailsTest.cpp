#include "utils/OSDetails.h"
#include "tests/support/RecordingHook.h"
#include "tests/support/RecordingLogger.h"
#include "tests/support/WrappedSystem.h"

#include <algorithm>
#include <bit>
#include <gtest/gtest.h>
#include <initializer_list>
#include <optional>
#include <string_view>
#include <windows.h>

using namespace test;
using namespace zant;

namespace
{

using HookLines = std::vector<test::RecordingHook::Line>;
using LoggerLines = std::vector<test::RecordingLogger::Line>;

constexpr wchar_t missing2[] = L"Inside _GetOSDetails. Failed to find IsWow64Process2";
constexpr wchar_t failed2[] = L"Inside _GetOSDetails. IsWow64Process2 failed with 5";
constexpr wchar_t missing1[] = L"Inside _GetOSDetailsDeprecated. Failed to find IsWow64Process";
constexpr wchar_t failed1[] = L"Inside _GetOSDetailsDeprecated. IsWow64Process failed with 31";

HookLines HookErrors(std::initializer_list<wchar_t const*> messages)
{
    HookLines lines;
    for (auto const* const message : messages)
    {
        lines.emplace_back(50, L"ZANTUtils", L"OSUtils", L"", L"", message);
    }
    return lines;
}

// Sets the answers of the system's two functions while it exists. Initially both exist and fail.
class SimulatedKernel
{
  public:
    SimulatedKernel() { s_current = this; }

    SimulatedKernel(SimulatedKernel const&) = delete;
    SimulatedKernel& operator=(SimulatedKernel const&) = delete;

    ~SimulatedKernel() { s_current = nullptr; }

    void Lacks(std::string_view name) { m_lacking.push_back(name); }

    std::optional<BOOL> isEmulated = std::nullopt; // the answer of the old function; nullopt: it fails
    std::optional<std::pair<USHORT, USHORT>> machines = std::nullopt; // of the process and native, the new one's

  private:
    static BOOL WINAPI IsWow64Process(HANDLE process, BOOL* result)
    {
        EXPECT_EQ(process, GetCurrentProcess());
        if (!s_current->isEmulated)
        {
            SetLastError(ERROR_GEN_FAILURE);
            return FALSE;
        }
        *result = *s_current->isEmulated;
        return TRUE;
    }

    static BOOL WINAPI IsWow64Process2(HANDLE process, USHORT* processMachine, USHORT* nativeMachine)
    {
        EXPECT_EQ(process, GetCurrentProcess());
        if (!s_current->machines)
        {
            SetLastError(ERROR_ACCESS_DENIED);
            return FALSE;
        }
        std::tie(*processMachine, *nativeMachine) = *s_current->machines;
        return TRUE;
    }

    FARPROC Find(GetProcAddressCall::Next const& next, HMODULE module, char const* name) const
    {
        std::string_view const wanted = name;
        if (wanted != "IsWow64Process" && wanted != "IsWow64Process2")
        {
            return next(module, name);
        }
        EXPECT_EQ(module, GetModuleCall::Original(L"kernel32.dll"));
        if (std::find(m_lacking.begin(), m_lacking.end(), wanted) != m_lacking.end())
        {
            SetLastError(ERROR_PROC_NOT_FOUND);
            return nullptr;
        }
        return wanted == "IsWow64Process" ? std::bit_cast<FARPROC>(&IsWow64Process)
                                          : std::bit_cast<FARPROC>(&IsWow64Process2);
    }

    static inline SimulatedKernel const* s_current = nullptr;

    std::vector<std::string_view> m_lacking;
    GetProcAddressCall m_find{[this](auto next, HMODULE module, char const* name) { return Find(next, module, name); }};
};

struct Details
{
    bool operator==(Details const&) const = default;

    bool result;
    std::uint32_t bits;
    std::uint32_t architecture;
};

void PrintTo(Details const& details, std::ostream* stream)
{
    *stream << details.result << ", " << details.bits << " bits, architecture " << details.architecture;
}

// With other values in the output than any outcome has.
Details GetDetails()
{
    std::uint32_t bits = 16;
    std::uint32_t architecture = 99;
    auto const result = _GetOSDetails(bits, architecture);
    return {result, bits, architecture};
}

Details GetDetailsDeprecated(std::uint32_t bits)
{
    std::uint32_t architecture = 99;
    auto const result = _GetOSDetailsDeprecated(bits, architecture);
    return {result, bits, architecture};
}

class OSDetails : public testing::Test
{
  protected:
    SimulatedKernel kernel;
    test::RecordingHook const hook;
};

TEST(OSDetailsOfThisSystem, AreThoseOfAnX64Process)
{
    EXPECT_EQ(GetDetails(), (Details{true, 64, 1}));
}

TEST_F(OSDetails, AreX64OnAnAmd64Machine)
{
    kernel.machines = {IMAGE_FILE_MACHINE_UNKNOWN, 0x8664};
    EXPECT_EQ(GetDetails(), (Details{true, 64, 1}));
    EXPECT_EQ(hook.Lines(), HookLines());
}

TEST_F(OSDetails, AreArm64OnAnArm64Machine)
{
    kernel.machines = {IMAGE_FILE_MACHINE_UNKNOWN, 0xAA64};
    EXPECT_EQ(GetDetails(), (Details{true, 64, 2}));
}

TEST_F(OSDetails, AreThoseOfTheMachineAndSay64BitsAlsoUnderEmulation)
{
    kernel.machines = {IMAGE_FILE_MACHINE_AMD64, 0xAA64};
    EXPECT_EQ(GetDetails(), (Details{true, 64, 2}));
    kernel.machines = {IMAGE_FILE_MACHINE_I386, 0x8664};
    EXPECT_EQ(GetDetails(), (Details{true, 64, 1}));
}

TEST_F(OSDetails, HaveAnUnknownArchitectureOnAnyOtherMachine)
{
    for (USHORT const machine : std::initializer_list<USHORT>{0, 0x014C, 0x01C4, 0x0200, 0x8665, 0xAA63, 0xFFFF})
    {
        kernel.machines = {IMAGE_FILE_MACHINE_UNKNOWN, machine};
        EXPECT_EQ(GetDetails(), (Details{true, 64, 0})) << machine;
    }
}

TEST_F(OSDetails, ComeFromTheOldFunctionWhereTheNewOneIsMissing)
{
    kernel.Lacks("IsWow64Process2");
    kernel.isEmulated = TRUE;
    EXPECT_EQ(GetDetails(), (Details{true, 64, 1}));
    EXPECT_EQ(hook.Lines(), HookErrors({missing2}));
}

TEST_F(OSDetails, OfANative64BitProcessSay32BitsWhereTheNewFunctionIsMissing)
{
    kernel.Lacks("IsWow64Process2");
    kernel.isEmulated = FALSE;
    EXPECT_EQ(GetDetails(), (Details{true, 32, 0}));
}

TEST_F(OSDetails, ComeFromTheOldFunctionWhenTheNewOneFails)
{
    kernel.isEmulated = FALSE;
    EXPECT_EQ(GetDetails(), (Details{true, 32, 0}));
    EXPECT_EQ(hook.Lines(), HookErrors({failed2}));
}

TEST_F(OSDetails, StaySixtyFourBitsWhenTheOldFunctionIsMissingAsWell)
{
    kernel.Lacks("IsWow64Process2");
    kernel.Lacks("IsWow64Process");
    EXPECT_EQ(GetDetails(), (Details{false, 64, 1}));
    EXPECT_EQ(hook.Lines(), HookErrors({missing2, missing1}));
}

TEST_F(OSDetails, StaySixtyFourBitsWhenTheOldFunctionFailsAsWell)
{
    EXPECT_EQ(GetDetails(), (Details{false, 64, 1}));
    EXPECT_EQ(hook.Lines(), HookErrors({failed2, failed1}));
}

TEST_F(OSDetails, AreNotFoundWithoutTheKernelsModule)
{
    GetModuleCall const noModule([](auto, wchar_t const*) -> HMODULE { return nullptr; });
    EXPECT_EQ(GetDetails(), (Details{false, 64, 1}));
    EXPECT_EQ(hook.Lines(), HookErrors({missing2, missing1}));
}

TEST_F(OSDetails, OfTheOldKindSay64BitsForAnEmulatedProcessOnly)
{
    kernel.isEmulated = TRUE;
    EXPECT_EQ(GetDetailsDeprecated(32), (Details{true, 64, 1}));
    kernel.isEmulated = FALSE;
    EXPECT_EQ(GetDetailsDeprecated(64), (Details{true, 32, 0}));
    kernel.isEmulated = 2; // neither of the documented answers
    EXPECT_EQ(GetDetailsDeprecated(64), (Details{true, 32, 0}));
    EXPECT_EQ(hook.Lines(), HookLines());
}

TEST_F(OSDetails, OfTheOldKindKeepTheGivenBitsWithoutItsFunction)
{
    kernel.Lacks("IsWow64Process");
    EXPECT_EQ(GetDetailsDeprecated(64), (Details{false, 64, 1}));
    EXPECT_EQ(GetDetailsDeprecated(32), (Details{false, 32, 0}));
    EXPECT_EQ(GetDetailsDeprecated(0), (Details{false, 0, 1}));
    EXPECT_EQ(hook.Lines(), HookErrors({missing1, missing1, missing1}));
}

TEST_F(OSDetails, OfTheOldKindKeepTheGivenBitsWhenItsFunctionFails)
{
    EXPECT_EQ(GetDetailsDeprecated(64), (Details{false, 64, 1}));
    EXPECT_EQ(GetDetailsDeprecated(32), (Details{false, 32, 0}));
    EXPECT_EQ(hook.Lines(), HookErrors({failed1, failed1}));
}

TEST(OSDetailsErrors, AreLoggedByTheLoggerWithoutAHook)
{
    SimulatedKernel kernel;
    test::RecordingLogger const logger;
    EXPECT_EQ(GetDetails(), (Details{false, 64, 1}));
    EXPECT_EQ(logger.Lines(),
              (LoggerLines{{LogLevel::Error, L"", L"OSUtils", failed2}, {LogLevel::Error, L"", L"OSUtils", failed1}}));
}

TEST(OSDetailsErrors, AreLoggedByTheHookAloneWhereBothAre)
{
    SimulatedKernel kernel;
    test::RecordingLogger const logger;
    test::RecordingHook const hook;
    GetDetails();
    EXPECT_EQ(hook.Lines(), HookErrors({failed2, failed1}));
    EXPECT_EQ(logger.Lines(), LoggerLines());
}

TEST(OSDetailsErrors, ChangeNothingWhereNobodyLogs)
{
    SimulatedKernel kernel;
    EXPECT_EQ(GetDetails(), (Details{false, 64, 1}));
    kernel.isEmulated = FALSE;
    EXPECT_EQ(GetDetails(), (Details{true, 32, 0}));
}

} // namespace

WRAP(GetModuleCall, GetModuleHandleW);
WRAP(GetProcAddressCall, GetProcAddress);
