#pragma once
#include <string>

namespace test
{

// The version of the program that SuiteProgram installs.
inline constexpr wchar_t suiteVersion[] = L"12.0.65535.32768";

// Installs the desktop suite's program while it exists, with a version or without one. The install folder belongs to
// the machine, so tests that use this run one at a time.
class SuiteProgram
{
  public:
    enum class Kind
    {
        WithVersion,
        WithoutVersion
    };

    explicit SuiteProgram(Kind kind = Kind::WithVersion);
    SuiteProgram(SuiteProgram const&) = delete;
    SuiteProgram& operator=(SuiteProgram const&) = delete;
    ~SuiteProgram();

  private:
    std::wstring m_folders[3]; // made for it, the outermost first
    std::wstring m_path;
};

} // namespace test
