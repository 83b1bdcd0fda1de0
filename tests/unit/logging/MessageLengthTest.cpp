#include "tests/unit/logging/LogTargetDefaultTest.h"

using namespace test;
using namespace zant;

namespace
{

class MessageLength : public LogTargetDefaultTest, public testing::WithParamInterface<std::size_t>
{
};

INSTANTIATE_TEST_SUITE_P(Around, MessageLength, testing::Values(4'093, 4'094, 4'095, 100'000));

} // namespace

TEST_P(MessageLength, AFormattedMessageIsCutAt4094Characters)
{
    std::wstring const text(GetParam(), L'x');
    LogWide(Opened(), LogLevel::Info, L"%ls", text.c_str());
    LogWide(target, LogLevel::Info, text.c_str());
    auto const expected = text.substr(0, 4'094);
    EXPECT_EQ(MessagesIn(LogPath()), (std::vector{expected, expected}));
}

TEST_P(MessageLength, AFormattedNarrowMessageIsCutAt4094Characters)
{
    std::string const text(GetParam(), 'x');
    LogNarrow(Opened(), LogLevel::Info, "%s", text.c_str());
    LogNarrow(target, LogLevel::Info, text.c_str());
    std::wstring const expected(std::min<std::size_t>(GetParam(), 4'094), L'x');
    EXPECT_EQ(MessagesIn(LogPath()), (std::vector{expected, expected}));
}

TEST_P(MessageLength, AMessageWithoutArgumentsIsNeverCut)
{
    std::wstring const text(GetParam(), L'x');
    std::string const narrow(GetParam(), 'x');
    LogAt(Opened(), 0, text.c_str());
    target.Log(LogLevel::Info, L"", L"", L"", L"", "", "", narrow.c_str(), nullptr, 0, true);
    EXPECT_EQ(MessagesIn(LogPath()), (std::vector{text, text}));
}
