#pragma once
#include "simulator/base/Handle.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <string>

namespace test
{

// A device of the test's own, used through the simulator's command line and the helper; switched off at the end. What
// the test starts finds it in the environment.
class SimulatorDevice : public testing::Test
{
  protected:
    struct Outcome
    {
        DWORD exitCode;
        std::wstring output; // both streams
    };

    struct Running
    {
        sim::Handle process;
        std::wstring outputFile;
        std::wstring commandLine;
    };

    SimulatorDevice();
    ~SimulatorDevice() override;

    // input: the file that is its standard input.
    Running Start(std::wstring const& arguments, std::wstring const& input = L"NUL");
    static Outcome Wait(Running const& running);

    Outcome Run(std::wstring const& arguments) { return Wait(Start(arguments)); }
    Outcome RunHelper(std::wstring const& arguments);
    Outcome RunDoctor(std::wstring const& arguments);

    test::TemporaryFolder m_folder;
    std::wstring m_device = m_folder / L"device";

  private:
    Running StartProgram(wchar_t const* program, std::wstring commandLine, std::wstring const& input);

    int m_count = 0;
};

} // namespace test
