#pragma once
#include "explore/log/MemorySystem.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <optional>
#include <ostream>

namespace test
{

enum class Where
{
    System, // the calls reach the system
    Memory
};

void PrintTo(Where where, std::ostream* out);

// A rule of the system's calls: each test runs on the system, and on that in memory of which the exploration takes it
// for granted.
class EitherSystem : public testing::TestWithParam<Where>
{
  protected:
    EitherSystem();

    bool IsMemory() const { return m_memory.has_value(); }

    // In a folder of the test's own.
    std::wstring Path(std::wstring_view name) const { return m_folder + L"\\" + std::wstring(name); }

    // Calls the body as another process, with one thread, which ends then.
    void AsAnotherProcess(std::function<void()> const& body);

    void MakeHardLink(std::wstring const& path, std::wstring const& existing);

    // A file on which nothing fits.
    HANDLE OpenOnFullDisk();

  private:
    std::optional<TemporaryFolder> m_temporary;
    std::optional<explore::MemorySystem> m_memory;
    std::wstring m_folder;
};

// Closes its handle at the end of the test's scope.
class Opened
{
  public:
    explicit Opened(HANDLE handle) : m_handle(handle) {}
    Opened(std::wstring const& path, DWORD access, DWORD share, DWORD disposition = OPEN_EXISTING)
        : Opened(CreateFileW(path.c_str(), access, share, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr))
    {
    }
    Opened(Opened const&) = delete;
    Opened& operator=(Opened const&) = delete;
    ~Opened() { Close(); }

    explicit operator bool() const { return m_handle != INVALID_HANDLE_VALUE && m_handle != nullptr; }
    HANDLE Get() const { return m_handle; }
    void Close();

    bool Write(std::string_view bytes) const;
    std::string Read(DWORD count) const;
    bool Seek(LONGLONG place, DWORD from = FILE_BEGIN) const;
    LONGLONG Size() const;

  private:
    HANDLE m_handle;
};

inline constexpr DWORD shareNone = 0;
inline constexpr DWORD shareReadWrite = FILE_SHARE_READ | FILE_SHARE_WRITE;
inline constexpr DWORD shareAll = shareReadWrite | FILE_SHARE_DELETE;

void MakeFile(std::wstring const& path, std::string_view bytes = {});
std::string ContentOf(std::wstring const& path);
bool IsThere(std::wstring const& path);

} // namespace test

#define ON_EITHER_SYSTEM(Suite)                                                                                        \
    INSTANTIATE_TEST_SUITE_P(On, Suite, testing::Values(test::Where::System, test::Where::Memory),                     \
                             testing::PrintToStringParamName())
