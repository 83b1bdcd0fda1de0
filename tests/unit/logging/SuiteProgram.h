#pragma once
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WrappedSystem.h"

#include <string>

namespace test
{

// The version of the program that SuiteProgram installs.
inline constexpr wchar_t suiteVersion[] = L"12.0.65535.32768";

// Installs the desktop suite's program for this process while it exists, with a version or without one: the system's
// folder for programs is then a folder of its own. In the machine's own folder other programs would find it, and one
// that reads its version would keep it from being removed.
class SuiteProgram
{
  public:
    enum class Kind
    {
        WithVersion,
        WithoutVersion
    };

    explicit SuiteProgram(Kind kind = Kind::WithVersion);

  private:
    TemporaryFolder m_programs;
    RegGetValueCall m_folderForPrograms;
};

} // namespace test
