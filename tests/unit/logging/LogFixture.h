#pragma once
#include "logging/LogTargetDefault.h"
#include "tests/support/Files.h"
#include "tests/support/UserTemporaryFolder.h"
#include "tests/unit/logging/LocalClock.h"

#include <gtest/gtest.h>

namespace test
{

// The byte-order mark of UTF-16, little-endian.
inline std::string const wideMark = "\xFF\xFE";

// The size in bytes from which a log is rotated at the threshold INFO.
inline constexpr std::uint64_t limit = 15'728'640;

// A folder for the log and another one as the user's temporary folder, so that marker files of the machine have no
// effect. The name of the log, and so of the mutex, is unique: tests run side by side. The local clock, which
// determines the names of copies, stands still.
class LogFixture : public testing::Test
{
  protected:
    LogFixture();

    // "KZEB-like" names: the base and the live log.
    std::wstring const& Base() const noexcept { return m_base; }

    std::wstring LogName() const { return m_base + L".log"; }

    std::wstring LogPath() const { return folder / LogName(); }

    // Points the target at the test's log and removes its header.
    void Configure(zant::LogTargetDefault& target) const;

    TemporaryFolder folder;
    UserTemporaryFolder temporary;
    LocalClock localClock;

  private:
    std::wstring m_base;
};

// Calls Log with these arguments and empty ones for the rest.
bool LogWide(zant::LogTargetDefault& target, zant::LogLevel level, wchar_t const* format, ...);
bool LogNarrow(zant::LogTargetDefault& target, zant::LogLevel level, char const* format, ...);

// Logs a line at INFO without arguments, at a time in milliseconds since 1970 (0 means now).
bool LogAt(zant::LogTargetDefault& target, std::uint64_t time, wchar_t const* message);

// The same without the lock flag, now.
bool LogUnlocked(zant::LogTargetDefault& target, wchar_t const* message);

// The message of a line: what follows its last separator.
std::wstring MessageOf(std::wstring const& line);
std::vector<std::wstring> MessagesIn(std::wstring const& path);

// Writes a log in UTF-16 of the given size in bytes, cheaply: one line, which is a hole in the file.
void WriteLogOfSize(std::wstring const& path, std::uint64_t size);

} // namespace test
