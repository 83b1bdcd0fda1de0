#include "tests/unit/logging/FailingSystem.h"

#include <functional>

using namespace test;
using namespace zant;

namespace
{

// The log is created by another process while this one is about to do so.
class SimultaneousCreation : public FailingSystem
{
  protected:
    // The arguments with which the log is opened for writing.
    std::vector<DWORD> dispositions;
    std::function<void()> beforeCreation = [] {};
    DWORD creationError = ERROR_SUCCESS;

  private:
    CreateFileCall const m_createFile{[this](auto next, wchar_t const* path, DWORD access, DWORD share, auto* security,
                                             DWORD disposition, DWORD flags, HANDLE model) {
        if (access == GENERIC_WRITE && (flags & FILE_FLAG_OPEN_REPARSE_POINT) != 0)
        {
            dispositions.push_back(disposition);
        }
        if (disposition == CREATE_NEW)
        {
            beforeCreation();
            if (creationError != ERROR_SUCCESS)
            {
                SetLastError(creationError);
                return INVALID_HANDLE_VALUE;
            }
        }
        return next(path, access, share, security, disposition, flags, model);
    }};
};

} // namespace

TEST_F(SimultaneousCreation, LetsTheLoserOpenWhatTheWinnerMade)
{
    beforeCreation = [this] { WriteBytes(LogPath(), wideMark + Utf16(L"winner\r\n")); };
    EXPECT_TRUE(target.Open());
    EXPECT_EQ(dispositions, (std::vector<DWORD>{OPEN_EXISTING, CREATE_NEW, OPEN_EXISTING}));
    LogAt(target, 0, L"loser");
    EXPECT_EQ(MessagesIn(LogPath()), (std::vector<std::wstring>{L"winner", L"loser"}));
}

TEST_F(SimultaneousCreation, IsAssumedOnce)
{
    UniqueHandle winner;
    beforeCreation = [&] {
        winner = UniqueHandle(CreateFileW(LogPath().c_str(), GENERIC_READ, 0, nullptr, OPEN_ALWAYS, 0, nullptr));
    };
    EXPECT_FALSE(target.Open());
    EXPECT_TRUE(winner);
    EXPECT_EQ(dispositions, (std::vector<DWORD>{OPEN_EXISTING, CREATE_NEW, OPEN_EXISTING}));
}

TEST_F(SimultaneousCreation, IsNotAssumedForAnyOtherError)
{
    beforeCreation = [this] { WriteBytes(LogPath(), wideMark); };
    creationError = ERROR_ACCESS_DENIED;
    EXPECT_FALSE(target.Open());
    EXPECT_EQ(dispositions, (std::vector<DWORD>{OPEN_EXISTING, CREATE_NEW}));
}
