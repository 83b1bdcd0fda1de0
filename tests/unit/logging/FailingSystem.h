#pragma once
#include "tests/unit/logging/HandleLedger.h"
#include "tests/unit/logging/LogFixture.h"

namespace test
{

// A target and a system whose functions fail.
class FailingSystem : public LogFixture
{
  protected:
    FailingSystem() { Configure(target); }

    // Logs two lines, the second 900 seconds later, and a third one, which finds the file at its limit.
    void LogUpToARotation()
    {
        auto const later = (static_cast<std::uint64_t>(target.lastCheck) + 900) * 1'000;
        LogAt(target, 0, L"1");
        LogAt(target, later, L"2");
        LogAt(target, later, L"3");
    }

    void OpenAtTheLimit()
    {
        EXPECT_TRUE(target.Open());
        target.file.Reset();
        WriteLogOfSize(LogPath(), limit);
        EXPECT_TRUE(target.OpenFile(target.file));
    }

    std::vector<std::wstring> Copies() const
    {
        auto names = NamesIn(folder.Path());
        std::erase_if(names, [this](auto const& name) { return !name.starts_with(Base() + L" "); });
        return names;
    }

    HandleLedger const handles;
    zant::LogTargetDefault target;
};

// Fails the opening of files with a certain access.
template <typename Predicate>
auto FailingToOpen(Predicate fails)
{
    return [=](auto next, wchar_t const* path, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security,
               DWORD disposition, DWORD flags, HANDLE model) {
        if (fails(access, share, disposition))
        {
            SetLastError(ERROR_ACCESS_DENIED);
            return INVALID_HANDLE_VALUE;
        }
        return next(path, access, share, security, disposition, flags, model);
    };
}

} // namespace test
