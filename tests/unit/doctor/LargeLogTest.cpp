// What ships, in a process of its own: how long it takes, and how much memory.

#include "doctor/verdict/LogReport.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/unit/doctor/LogText.h"
#include "tests/unit/doctor/LongLog.h"
#include "utils/UniqueHandle.h"

#include <chrono>
#include <gtest/gtest.h>
#include <windows.h>

namespace
{

using Seconds = std::chrono::duration<double>;

Seconds SecondsOf(FILETIME const& time)
{
    using Ticks = std::chrono::duration<std::uint64_t, std::ratio<1, 10'000'000>>;
    return Ticks(std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime);
}

// Processor time of this process, the system's on its behalf included. Other processes do not add to it, as they do to
// the time that passes.
Seconds CpuTime()
{
    FILETIME created{};
    FILETIME exited{};
    FILETIME kernel{};
    FILETIME user{};
    EXPECT_TRUE(GetProcessTimes(GetCurrentProcess(), &created, &exited, &kernel, &user));
    return SecondsOf(user) + SecondsOf(kernel);
}

std::string Lines(std::initializer_list<wchar_t const*> messages)
{
    std::wstring text;
    for (auto const* const message : messages)
    {
        text += test::LogText(L"01/05/24 09:30:12:045", message) + L"\r\n";
    }
    return test::Utf16(text);
}

// A file of that size with text at its begin and at its end, and nothing but zeros between, as a lost write leaves
// them.
void WriteSparse(std::wstring const& path, std::string const& begin, std::string const& end, std::uint64_t size)
{
    zant::UniqueHandle const file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
    DWORD written = 0;
    LARGE_INTEGER place;
    place.QuadPart = static_cast<LONGLONG>(size - end.size());
    ASSERT_TRUE(WriteFile(file.Get(), begin.data(), static_cast<DWORD>(begin.size()), &written, nullptr));
    ASSERT_TRUE(SetFilePointerEx(file.Get(), place, nullptr, FILE_BEGIN));
    ASSERT_TRUE(SetEndOfFile(file.Get()));
    ASSERT_TRUE(WriteFile(file.Get(), end.data(), static_cast<DWORD>(end.size()), &written, nullptr));
}

} // namespace

// It takes a ninth of that on the machine that it was written on.
TEST(LargeLog, WithTenCopiesHasItsVerdictWithinThreeSeconds)
{
    test::TemporaryFolder const folder;
    test::WriteLongLog(folder.Path());
    auto const before = CpuTime();
    auto const report = doctor::ReportOfLogs({folder.Path()}, std::nullopt);
    auto const taken = CpuTime() - before;
    EXPECT_EQ(report.summary, "Nothing failed.");
    RecordProperty("milliseconds", static_cast<int>(taken.count() * 1'000));
    EXPECT_LT(taken.count(), 3.0);
}

TEST(LargeLog, OfAGigabyteHasItsVerdictInLittleMemory)
{
    test::TemporaryFolder const folder;
    auto const log = folder / L"KZEB.log";
    constexpr std::uint64_t gigabyte = std::uint64_t{1} << 30;
    auto const begin =
        test::Utf16(test::mark) + Lines({L"****************************** VelmoNotificationCLient Started. "
                                         L"*********************************",
                                         L"Inside OnBackgroundActivated", L"Deferal to complete background task",
                                         L"Timer task bkg thread invocation",
                                         L"Going to launch full trust app for timer background task invocation",
                                         L"Launch Done !! ", L"Service deferral complete"});
    auto const end =
        test::Utf16(L"\r\n") + Lines({L"Inside OnBackgroundActivated", L"Deferal to complete background task",
                                      L"Notification bkg thread invocation",
                                      L"Going to launch full trust app for new notification invocation "});
    ASSERT_NO_FATAL_FAILURE(WriteSparse(log, begin, end, gigabyte));
    auto const report = doctor::ReportOfLogs({log}, std::nullopt);
    EXPECT_TRUE(report.summary.starts_with("The first stage that failed: desktop component,")) << report.summary;
    ASSERT_EQ(report.files.size(), 1u);
    EXPECT_EQ(report.files[0].lines, 11u);
    auto const& launched = report.stages[static_cast<std::size_t>(doctor::Stage::ComponentLaunched)];
    EXPECT_EQ(launched.worked, 1u);
    ASSERT_EQ(launched.findings.size(), 1u);
    EXPECT_EQ(launched.findings[0].first.value().line, 12u); // behind the line of zeros
    EXPECT_LT(test::PeakMemory(), test::mostMemory);
}
