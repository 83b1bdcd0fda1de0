#include "tests/support/ChildProcess.h"

#include <gtest/gtest.h>
#include <winternl.h>

// Of the whole process; the documented functions know threads only.
extern "C" NTSTATUS NTAPI NtSuspendProcess(HANDLE process);
extern "C" NTSTATUS NTAPI NtResumeProcess(HANDLE process);

namespace test
{

namespace
{

std::wstring OwnFolder()
{
    wchar_t path[MAX_PATH] = {};
    std::wstring const own(path, GetModuleFileNameW(nullptr, path, MAX_PATH));
    return own.substr(0, own.rfind(L'\\'));
}

} // namespace

DWORD AwaitExitCode(HANDLE process, std::wstring const& commandLine)
{
    constexpr DWORD limit = 60'000; // shorter than the watchdog's
    if (WaitForSingleObject(process, limit) == WAIT_TIMEOUT)
    {
        ADD_FAILURE() << "after 60 s still running: " << testing::PrintToString(commandLine);
        WaitForSingleObject(process, INFINITE);
    }
    DWORD code = 0;
    GetExitCodeProcess(process, &code);
    return code;
}

ChildProcess::ChildProcess(std::wstring const& program, std::wstring const& arguments)
{
    auto const path = OwnFolder() + L"\\" + program;
    m_commandLine = L"\"" + path + L"\" " + arguments;
    auto commandLine = m_commandLine; // the system may write to it
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(path.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &process))
    {
        ADD_FAILURE() << "cannot be started, error " << GetLastError() << ": " << testing::PrintToString(commandLine);
        return;
    }
    CloseHandle(process.hThread);
    m_process = zant::UniqueHandle(process.hProcess);
}

ChildProcess::~ChildProcess()
{
    if (m_process)
    {
        Kill();
    }
}

testing::AssertionResult ChildProcess::AwaitSignal(HANDLE event) const
{
    constexpr DWORD limit = 30'000; // shorter than the watchdog's
    HANDLE const either[] = {event, m_process.Get()};
    switch (WaitForMultipleObjects(2, either, FALSE, limit))
    {
    case WAIT_OBJECT_0:
        return testing::AssertionSuccess();
    case WAIT_OBJECT_0 + 1:
        return testing::AssertionFailure() << "ended without signalling: " << testing::PrintToString(m_commandLine);
    default:
        return testing::AssertionFailure()
               << "after 30 s still running without having signalled: " << testing::PrintToString(m_commandLine);
    }
}

void ChildProcess::Kill()
{
    TerminateProcess(m_process.Get(), 1);
    ExitCode();
}

void ChildProcess::Suspend() const
{
    EXPECT_GE(NtSuspendProcess(m_process.Get()), 0);
}

void ChildProcess::Resume() const
{
    EXPECT_GE(NtResumeProcess(m_process.Get()), 0);
}

DWORD ChildProcess::ExitCode()
{
    return AwaitExitCode(m_process.Get(), m_commandLine);
}

} // namespace test
