// A process that logs, for the tests with several of them:
//   logging_writer write PATH TAG COUNT          COUNT lines "TAG 1", "TAG 2", …
//   logging_writer rotate PATH TAG COUNT         the same; its middle line looks 900 seconds old to the next one,
//                                                which therefore checks the file's size
//   logging_writer hold NAME READY               owns the mutex NAME, sets the event READY and never releases it
//   logging_writer copy PATH READY               copies the log, sets the event READY in the middle and never ends
// The first two wait, before the first line, until the event that PATH's file name plus "-start" names is set. They
// wait for the log's mutex as long as it takes: a busy machine may stop its owner for longer than the log's own limit.
#include "logging/DatedName.h"
#include "logging/LogPath.h"
#include "logging/LogTargetDefault.h"
#include "logging/Rotation.h"
#include "tests/support/WrappedSystem.h"

#include <string>

using namespace test;
using namespace zant;

WRAP(ReadFileCall, ReadFile);
WRAP(WaitCall, WaitForSingleObject);

namespace
{

bool Write(std::wstring const& path, std::wstring const& tag, unsigned count, bool rotates)
{
    WaitCall const patient([](auto next, HANDLE handle, DWORD) { return next(handle, INFINITE); });
    LogTargetDefault target;
    target.filePath = path;
    target.fileName = FileNameOf(path);
    target.storedHeader = {}; // the tests count lines
    UniqueHandle const start(CreateEventW(nullptr, TRUE, FALSE, (target.fileName + L"-start").c_str()));
    if (!target.Open() || WaitForSingleObject(start.Get(), INFINITE) != WAIT_OBJECT_0)
    {
        return false;
    }
    for (unsigned line = 1; line <= count; ++line)
    {
        auto const time =
            rotates && line == count / 2 ? (static_cast<std::uint64_t>(target.lastCheck) + 900) * 1'000 : 0;
        auto const message = tag + L' ' + std::to_wstring(line);
        target.Log(LogLevel::Info, L"", L"", L"", L"", L"", L"", message.c_str(), nullptr, time, true);
    }
    return target.useLock;
}

void WaitForever()
{
    UniqueHandle const never(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    WaitForSingleObject(never.Get(), INFINITE);
}

bool Hold(wchar_t const* mutexName, wchar_t const* readyName)
{
    NamedMutex mutex;
    UniqueHandle const ready(OpenEventW(EVENT_MODIFY_STATE, FALSE, readyName));
    if (!mutex.CreateOrOpen(mutexName))
    {
        return false;
    }
    auto const scope = mutex.Wait(INFINITE);
    SetEvent(ready.Get());
    WaitForever();
    return scope.IsOwner();
}

bool Copy(wchar_t const* path, wchar_t const* readyName)
{
    UniqueHandle const ready(OpenEventW(EVENT_MODIFY_STATE, FALSE, readyName));
    int blocks = 0;
    ReadFileCall const stopping([&](auto next, auto... arguments) {
        if (++blocks == 100)
        {
            SetEvent(ready.Get());
            WaitForever();
        }
        return next(arguments...);
    });
    MoveContentToCopy(path, LocalNow());
    return false; // the log was shorter than that
}

} // namespace

int wmain(int count, wchar_t** arguments)
{
    std::wstring const what = count > 1 ? arguments[1] : L"";
    if (what == L"hold" && count == 4)
    {
        return Hold(arguments[2], arguments[3]) ? 0 : 1;
    }
    if (what == L"copy" && count == 4)
    {
        return Copy(arguments[2], arguments[3]) ? 0 : 1;
    }
    if ((what == L"write" || what == L"rotate") && count == 5)
    {
        return Write(arguments[2], arguments[3], std::stoul(arguments[4]), what == L"rotate") ? 0 : 1;
    }
    return 2;
}
