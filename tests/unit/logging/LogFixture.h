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

// From this size in bytes on a log is rotated at the threshold INFO.
inline constexpr std::uint64_t limit = 15'728'640;

// A folder of the test's own for the log, and another one as the user's temporary folder, so that no marker file of the
// machine has a say. The log's name, and so the mutex's, belongs to the test alone: tests run side by side. The local
// clock, which copies are named after, stands still.
class LogFixture : public testing::Test
{
  protected:
    LogFixture();

    // "KZEB-like" names: the base and the live log.
    std::wstring const& Base() const noexcept { return m_base; }

    std::wstring LogName() const { return m_base + L".log"; }

    std::wstring LogPath() const { return folder / LogName(); }

    // Points the target at the test's log and takes its header away.
    void Configure(zant::LogTargetDefault& target) const;

    TemporaryFolder folder;
    UserTemporaryFolder temporary;
    LocalClock localClock;

  private:
    std::wstring m_base;
};

// Log with arguments as a caller passes them; everything that a test does not care about is empty.
bool LogWide(zant::LogTargetDefault& target, zant::LogLevel level, wchar_t const* format, ...);
bool LogNarrow(zant::LogTargetDefault& target, zant::LogLevel level, char const* format, ...);

// A line at INFO of a message as it stands, at a time in milliseconds since 1970 (0 means now).
bool LogAt(zant::LogTargetDefault& target, std::uint64_t time, wchar_t const* message);

// The same without the lock flag, now.
bool LogUnlocked(zant::LogTargetDefault& target, wchar_t const* message);

// What stands after the last separator of a line.
std::wstring MessageOf(std::wstring const& line);
std::vector<std::wstring> MessagesIn(std::wstring const& path);

// Writes a log in UTF-16 of the given size in bytes, cheaply: one line, which is a hole in the file.
void WriteLogOfSize(std::wstring const& path, std::uint64_t size);

} // namespace test
