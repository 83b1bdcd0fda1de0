#include "tests/e2e/SimulatorDevice.h"

#include "simulator/base/Text.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Files.h"

namespace test
{

SimulatorDevice::SimulatorDevice()
{
    SetEnvironmentVariableW(L"VELMO_SIM_HOME", m_device.c_str());
    SetEnvironmentVariableW(L"VELMO_SIM_PACKAGE", PACKAGE_FOLDER);
}

SimulatorDevice::~SimulatorDevice()
{
    Run(L"stop");
}

SimulatorDevice::Running SimulatorDevice::Start(std::wstring const& arguments, std::wstring const& input)
{
    return StartProgram(SIM_PROGRAM, L"sim.exe " + arguments, input);
}

SimulatorDevice::Outcome SimulatorDevice::RunHelper(std::wstring const& arguments)
{
    return Wait(StartProgram(HELPER_PROGRAM, L"helper.exe " + arguments, L"NUL"));
}

SimulatorDevice::Outcome SimulatorDevice::RunDoctor(std::wstring const& arguments)
{
    return Wait(StartProgram(DOCTOR_PROGRAM, L"doctor.exe " + arguments, L"NUL"));
}

SimulatorDevice::Running SimulatorDevice::StartProgram(wchar_t const* program, std::wstring commandLine,
                                                       std::wstring const& input)
{
    Running running;
    running.outputFile = m_folder / (L"output" + std::to_wstring(++m_count));
    SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
    sim::Handle const output(CreateFileW(running.outputFile.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ, &inheritable,
                                         CREATE_ALWAYS, 0, nullptr));
    sim::Handle const inputFile(
        CreateFileW(input.c_str(), GENERIC_READ, FILE_SHARE_READ, &inheritable, OPEN_EXISTING, 0, nullptr));
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = inputFile.Get();
    startup.hStdOutput = output.Get();
    startup.hStdError = output.Get();
    PROCESS_INFORMATION started{};
    EXPECT_TRUE(
        CreateProcessW(program, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &started));
    CloseHandle(started.hThread);
    running.process = sim::Handle(started.hProcess);
    running.commandLine = commandLine;
    return running;
}

SimulatorDevice::Outcome SimulatorDevice::Wait(Running const& running)
{
    Outcome outcome{};
    outcome.exitCode = AwaitExitCode(running.process.Get(), running.commandLine);
    outcome.output = sim::FromUtf8(ReadBytes(running.outputFile));
    return outcome;
}

} // namespace test
