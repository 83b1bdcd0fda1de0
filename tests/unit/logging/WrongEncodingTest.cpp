#include "tests/unit/logging/LogTargetDefaultTest.h"

using namespace test;
using namespace zant;

namespace
{

class WrongEncoding : public LogTargetDefaultTest
{
  protected:
    std::wstring AsideName() const { return Base() + L" 2024-1-5 09-30-12.log"; }
};

} // namespace

TEST_F(WrongEncoding, AUtf8FileIsSetAsideAndANewFileBegun)
{
    WriteBytes(LogPath(), "\xEF\xBB\xBFold");
    Opened();
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
    EXPECT_EQ(ReadBytes(folder / AsideName()), "\xEF\xBB\xBFold");
    EXPECT_EQ(target.setAsidePath, folder / AsideName());
}

TEST_F(WrongEncoding, AFileWithoutAMarkIsSetAside)
{
    WriteBytes(LogPath(), "plain");
    Opened();
    EXPECT_EQ(ReadBytes(folder / AsideName()), "plain");
}

TEST_F(WrongEncoding, AFileShorterThanAMarkIsSetAside)
{
    WriteBytes(LogPath(), "\xFF");
    Opened();
    EXPECT_EQ(ReadBytes(folder / AsideName()), "\xFF");
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
}

TEST_F(WrongEncoding, TheFileIsAppendedToAsItStandsWhenItsDatedNameIsTaken)
{
    WriteBytes(LogPath(), "plain");
    WriteBytes(folder / AsideName(), "earlier");
    Opened();
    EXPECT_EQ(ReadBytes(folder / AsideName()), "earlier");
    EXPECT_EQ(ReadBytes(LogPath()), "plain");
    EXPECT_EQ(target.setAsidePath, L"");
}

// The file did not exist when the name was checked.
TEST_F(WrongEncoding, TheFileReplacesNothingThatHasItsDatedNameByThen)
{
    WriteBytes(LogPath(), "plain");
    WriteBytes(folder / AsideName(), "earlier");
    {
        GetFileAttributesCall const attributes([this](auto next, wchar_t const* path) {
            return path == folder / AsideName() ? INVALID_FILE_ATTRIBUTES : next(path);
        });
        Opened();
    }
    EXPECT_EQ(ReadBytes(folder / AsideName()), "earlier");
    EXPECT_EQ(ReadBytes(LogPath()), "plain");
    EXPECT_EQ(target.setAsidePath, L"");
}

TEST_F(WrongEncoding, AnyFileServesOutputInUtf8)
{
    WriteBytes(LogPath(), "plain");
    target.wideOutput = false;
    Opened();
    EXPECT_EQ(ReadBytes(LogPath()), "plain");
}

TEST_F(WrongEncoding, AnOpenHandleIsClosedBeforeTheFileIsSetAside)
{
    Opened();
    target.file.Reset();
    WriteBytes(LogPath(), "plain");
    target.file = UniqueHandle(CreateFileW(LogPath().c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                           nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_TRUE(target.OpenFile(target.file));
    EXPECT_EQ(ReadBytes(folder / AsideName()), "plain");
}

// Neither process keeps the other one from renaming it.
TEST_F(WrongEncoding, TheFileIsSetAsideThoughTwoProcessesLookAtItAtTheSameTime)
{
    WriteBytes(LogPath(), "plain");
    LogTargetDefault other;
    Configure(other);
    auto isFirst = true;
    {
        ReadFileCall const read([&](auto next, auto... arguments) {
            if (std::exchange(isFirst, false))
            {
                EXPECT_TRUE(other.Open());
            }
            return next(arguments...);
        });
        Opened();
    }
    EXPECT_EQ(ReadBytes(folder / AsideName()), "plain");
    LogAt(target, 0, L"one");
    LogAt(other, 0, L"two");
    EXPECT_EQ(MessagesIn(LogPath()), (std::vector<std::wstring>{L"one", L"two"}));
}
