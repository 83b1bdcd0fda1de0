#include "tests/e2e/ClientProcess.h"

#include "tests/support/ChildProcess.h"

#include <gtest/gtest.h>

namespace test
{

namespace
{

struct Pipe
{
    // inherited: the end that the client gets.
    explicit Pipe(sim::Handle Pipe::* inherited)
    {
        HANDLE read = nullptr;
        HANDLE write = nullptr;
        EXPECT_TRUE(CreatePipe(&read, &write, nullptr, 0));
        from = sim::Handle(read);
        to = sim::Handle(write);
        SetHandleInformation((this->*inherited).Get(), HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
    }

    sim::Handle from;
    sim::Handle to;
};

} // namespace

ClientProcess::ClientProcess(std::wstring const& messages)
{
    // The client's ends go with these: else neither side would hear of the other's end.
    Pipe input(&Pipe::from);
    Pipe output(&Pipe::to);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = input.from.Get();
    startup.hStdOutput = output.to.Get();
    startup.hStdError = output.to.Get();
    auto commandLine = L"service_client.exe " + messages;
    PROCESS_INFORMATION started{};
    if (!CreateProcessW(CLIENT_PROGRAM, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                        &started))
    {
        ADD_FAILURE() << "the client cannot be started, error " << GetLastError();
        return;
    }
    CloseHandle(started.hThread);
    m_process = sim::Handle(started.hProcess);
    m_input = std::move(input.to);
    m_output = std::move(output.from);
    input.from = sim::Handle();
    output.to = sim::Handle();
    EXPECT_EQ(Answer(), "ready");
}

ClientProcess::~ClientProcess()
{
    if (m_process)
    {
        TerminateProcess(m_process.Get(), 1);
        ExitCode();
    }
}

void ClientProcess::Say(std::string_view line) const
{
    auto const text = std::string(line) + "\n";
    DWORD written = 0;
    EXPECT_TRUE(WriteFile(m_input.Get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr));
}

std::string ClientProcess::Answer() const
{
    std::string line;
    char character = 0;
    for (DWORD size = 0; ReadFile(m_output.Get(), &character, 1, &size, nullptr) && size == 1 && character != '\n';)
    {
        if (character != '\r')
        {
            line += character;
        }
    }
    return line;
}

DWORD ClientProcess::ExitCode() const
{
    return AwaitExitCode(m_process.Get(), L"service_client.exe");
}

} // namespace test
