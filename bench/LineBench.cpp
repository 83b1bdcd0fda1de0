// What a log line costs, compared with the five system calls that it needs.
#include "app/AppLog.h"
#include "app/SetUpLogging.h"
#include "bench/BareLine.h"
#include "bench/SpdlogPeer.h"
#include "bench/harness/Bench.h"
#include "logging/LogTargetDefault.h"
#include "utils/Utf8.h"

#include <windows.h>

using namespace zant;

// The five calls, so that they can be left out: what remains is what a line computes.
extern "C"
{
    extern decltype(&ReleaseMutex) __real___imp_ReleaseMutex;
    extern decltype(&SetFilePointerEx) __real___imp_SetFilePointerEx;
    extern decltype(&WaitForSingleObject) __real___imp_WaitForSingleObject;
    extern decltype(&WriteFile) __real___imp_WriteFile;
}

namespace
{

BOOL WINAPI Release(HANDLE mutex)
{
    return __real___imp_ReleaseMutex(mutex);
}

BOOL WINAPI Seek(HANDLE file, LARGE_INTEGER distance, LARGE_INTEGER* position, DWORD method)
{
    return __real___imp_SetFilePointerEx(file, distance, position, method);
}

DWORD WINAPI Wait(HANDLE mutex, DWORD milliseconds)
{
    return __real___imp_WaitForSingleObject(mutex, milliseconds);
}

BOOL WINAPI Write(HANDLE file, void const* bytes, DWORD size, DWORD* written, OVERLAPPED* overlapped)
{
    return __real___imp_WriteFile(file, bytes, size, written, overlapped);
}

} // namespace

extern "C"
{
    decltype(&ReleaseMutex) __wrap___imp_ReleaseMutex = &Release;
    decltype(&SetFilePointerEx) __wrap___imp_SetFilePointerEx = &Seek;
    decltype(&WaitForSingleObject) __wrap___imp_WaitForSingleObject = &Wait;
    decltype(&WriteFile) __wrap___imp_WriteFile = &Write;
}

namespace
{

void UseTheSystemItself()
{
    __wrap___imp_ReleaseMutex = __real___imp_ReleaseMutex;
    __wrap___imp_SetFilePointerEx = __real___imp_SetFilePointerEx;
    __wrap___imp_WaitForSingleObject = __real___imp_WaitForSingleObject;
    __wrap___imp_WriteFile = __real___imp_WriteFile;
}

void LeaveInputAndOutputOut()
{
    __wrap___imp_ReleaseMutex = [](HANDLE) WINAPI -> BOOL { return TRUE; };
    __wrap___imp_SetFilePointerEx = [](HANDLE, LARGE_INTEGER, LARGE_INTEGER* position, DWORD) WINAPI -> BOOL {
        *position = {};
        return TRUE;
    };
    __wrap___imp_WaitForSingleObject = [](HANDLE, DWORD) WINAPI -> DWORD { return WAIT_OBJECT_0; };
    __wrap___imp_WriteFile = [](HANDLE, void const*, DWORD size, DWORD* written, OVERLAPPED*) WINAPI -> BOOL {
        *written = size;
        return TRUE;
    };
}

void LogLine(unsigned level, wchar_t const* format, wchar_t const* argument = nullptr)
{
    AppLog(level, L"ZEB", L"ZEBMain", L"", L"", format, argument);
}

// The limits of a fixed text and of a formatted one.
void CompareLines(bench::Bench& bench, std::wstring const& folder, std::size_t length, double fixed, double formatted)
{
    constexpr int linesPerBlock = 20;
    std::wstring const message(length, L'x');
    auto const narrow = ToUtf8(message).value();
    bench::BareLine const floor(folder + L"floor.log", message);
    bench::SpdlogPeer peer(ToUtf8(folder).value() + "peer.log");
    bench.Compare(
        {"A line with a message of " + std::to_string(length) + " characters",
         {{"floor: the five bare calls", bench::Timed([&] { floor.Write(); })},
          {"AppLog, a fixed text", bench::Timed([&] { LogLine(30, message.c_str()); }), fixed},
          {"AppLog, formatted by \"%ls\"", bench::Timed([&] { LogLine(30, L"%ls", message.c_str()); }), formatted},
          {"spdlog *", bench::Timed([&] { peer.Log(narrow); })}},
         linesPerBlock});
}

void MeasureWhatALineComputes(bench::Bench& bench)
{
    constexpr int linesPerBlock = 1'000, blocks = 200;
    std::wstring const message(100, L'x');
    LeaveInputAndOutputOut();
    bench.Show(
        "A line without input and output",
        {bench::Nanoseconds("AppLog below the threshold", bench::Timed([] { LogLine(20, L"%ls", L"not written"); }),
                            100, linesPerBlock, blocks),
         bench::Nanoseconds("AppLog, a fixed text of 100", bench::Timed([&] { LogLine(30, message.c_str()); }), 500,
                            linesPerBlock, blocks),
         bench::Nanoseconds("AppLog, 100 formatted by \"%ls\"",
                            bench::Timed([&] { LogLine(30, L"%ls", message.c_str()); }), 500, linesPerBlock, blocks)});
    UseTheSystemItself();
}

} // namespace

int wmain(int count, wchar_t** arguments)
{
    if (count != 2)
    {
        std::printf("line_bench FOLDER: writes its logs into FOLDER, which ends in a backslash\n");
        return 2;
    }
    std::wstring const folder = arguments[1];
    UseTheSystemItself();
    SetEnvironmentVariableW(L"TMP", folder.c_str());
    SetUpLogging();
    if (!g_defaultLogTarget->useLock || !g_defaultLogTarget->file)
    {
        std::printf("the log cannot be opened\n");
        return 2;
    }
    bench::Bench bench("line", 2);
    CompareLines(bench, folder, 100, 1.03, 1.04);
    CompareLines(bench, folder, 4'000, 1.08, 1.15);
    std::printf(
        "  * takes no lock between processes and writes half the bytes: not the same work, for comparison only\n");
    MeasureWhatALineComputes(bench);
    return bench.Conclude();
}
