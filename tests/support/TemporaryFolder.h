#pragma once
#include <string>

namespace test
{

// A folder for one test, under the temporary folder. Removed after a test that passed; kept, and named in the test's
// output, after one that failed.
class TemporaryFolder
{
  public:
    TemporaryFolder();
    TemporaryFolder(TemporaryFolder const&) = delete;
    TemporaryFolder& operator=(TemporaryFolder const&) = delete;
    ~TemporaryFolder();

    // Without a trailing backslash.
    std::wstring const& Path() const noexcept { return m_path; }

    std::wstring operator/(std::wstring const& name) const { return m_path + L"\\" + name; }

  private:
    std::wstring m_path;
};

} // namespace test
